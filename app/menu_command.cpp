// Commands of the context menu.
#include "menu/menu_command.h"

#include "app/main_frame.h"
#include "menu/menu_head.h"

namespace vgl {

using namespace platform;

void CMainFrame::OnCommand(std::uint32_t id) {
  if (id == IDM_STATUS) OpenStatusWindow();
  if (id == IDM_SET_ENV) OpenPreferencesWindow();
  OnAux(id);
}

void CMainFrame::OnAux(std::uint32_t id) {
  RunMenuCommand({.identity = Identity(),
                  .netPilotName = m_csNetPilotString.c_str(),
                  .vifName = m_csVifName.c_str(),
                  .window = m_hWnd,
                  .busyText = m_csMsgBusy.c_str(),
                  .busyCaption = m_csMsgCaption.c_str(),
                  .utyCall = m_cUtyCall},
                 id);
}

}  // namespace vgl
