// The work that timers find due and post to the window. Each piece asks a library that the driver
// set names; as no driver set is read yet, none is known, and nothing is due.
#include "app/main_frame.h"

namespace vgl {

void CMainFrame::OnKickInvitationEvents() {}

void CMainFrame::OnCheckNetPilot() {}

void CMainFrame::FlushUsageLog() {}

}  // namespace vgl
