// The status window and the preferences window: both belong to the run helper, another program.
#include "app/main_frame.h"

namespace vgl {

// The run helper is named by the driver set, which the agent can't read yet; so both actions fail
// as they do for a set that names none.

void CMainFrame::OpenStatusWindow() {
  MessageBoxRtl(m_hWnd, m_szMsgStatus.c_str(), m_szAppTitle.c_str());
}

void CMainFrame::OpenPreferencesWindow() {
  MessageBoxRtl(m_hWnd, m_szMsgPrefs.c_str(), m_szAppTitle.c_str());
}

}  // namespace vgl
