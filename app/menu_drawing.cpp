// The messages by which the system has the menu's extension entries measured and drawn.
#include "app/main_frame.h"
#include "menu/owner_draw.h"

namespace vgl {

using namespace platform;

bool CMainFrame::IsExMenuSlot(std::uint32_t id) const {
  return id >= kFirstExMenuId && id - kFirstExMenuId < static_cast<std::uint32_t>(m_nExMenuMax);
}

void CMainFrame::OnMeasureItem(MeasureItem& item) {
  MeasureExMenuItem(m_pExMenu[item.itemId - kFirstExMenuId], item);
}

void CMainFrame::OnDrawItem(const DrawItem& item) {
  DrawExMenuItem(m_pExMenu[item.itemId - kFirstExMenuId], item, m_bRtlReading == 1, Identity());
}

}  // namespace vgl
