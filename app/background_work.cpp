// The work that timers find due and post to the window.
#include "Common/CVglLog.h"
#include "app/main_frame.h"
#include "menu/net_pilot.h"

namespace vgl {

// The one that asks stays, and with it the library that it has loaded.
void CMainFrame::OnKickInvitationEvents() {
  if (m_pcInv == nullptr) m_pcInv = std::make_unique<CSmartInvitation>();
  const std::int32_t level = m_pcInv->GetInvitationLevel(Identity());
  if (level != 0) StartInvitation(level, Identity());
}

void CMainFrame::OnCheckNetPilot() { CheckNetPilot(Identity(), m_csNetPilotString); }

// What couldn't be written is given up: the next record starts afresh.
void CMainFrame::OnFlushUsageLog() { g_VglLog.get().FlushVglLog(); }

}  // namespace vgl
