// The work that timers find due and post to the window.
#include "Common/CVglLog.h"
#include "app/main_frame.h"

namespace vgl {

// The driver set's library decides on invitations, its VIF names NetPilot; neither is asked yet, so
// nothing is due.
void CMainFrame::OnKickInvitationEvents() {}

void CMainFrame::OnCheckNetPilot() {}

// What couldn't be written is given up: the next record starts afresh.
void CMainFrame::OnFlushUsageLog() {
  g_VglLog.get().WriteVglLogFile();
  g_VglLog.get().Clear();
}

}  // namespace vgl
