// Commands of the context menu, and the messages by which the system has its entries measured and
// drawn.
#include "app/main_frame.h"
#include "menu/menu_head.h"

namespace vgl {

using namespace platform;

void CMainFrame::OnCommand(std::uint32_t id) {
  if (id == IDM_STATUS) OpenStatusWindow();
  if (id == IDM_SET_ENV) OpenPreferencesWindow();
  OnAux(id);
}

// Carries out the command text that the driver set gives for an entry. No driver set is read yet,
// so there is none for any entry.
void CMainFrame::OnAux(std::uint32_t /*id*/) {}

bool CMainFrame::IsExMenuSlot(std::uint32_t id) const {
  return id >= kFirstExMenuId && id - kFirstExMenuId < static_cast<std::uint32_t>(m_nExMenuMax);
}

// No slot is filled yet, so the system has none measured or drawn; a message that says otherwise is
// left to its default.
void CMainFrame::OnMeasureItem(MeasureItem& /*item*/) {}
void CMainFrame::OnDrawItem(const DrawItem& /*item*/) {}

}  // namespace vgl
