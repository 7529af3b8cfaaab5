// The icon in the notification area: what the pointer does to it, and the record of its picture.
#include "app/main_frame.h"
#include "platform/owned.h"

namespace vgl {

using namespace platform;

void CMainFrame::OnTrayNotify(std::uint32_t mouseMessage) {
  switch (mouseMessage) {
    case WM_LBUTTONDOWN:
      m_uhClick = ArmTimer(TMID_CLICK, Os().windowing.GetDoubleClickTime());
      break;
    case WM_LBUTTONDBLCLK:
      StopTimer(TMID_CLICK, m_uhClick);
      OpenStatusWindow();
      break;
    default:
      break;
  }
}

void CMainFrame::OnIconUpdate() {
  OwnedKey record;
  if (Os().registry.RegOpenKeyExW(HKEY_CURRENT_USER, m_szRegKey.c_str(), KEY_READ, record.Out()) !=
      ERROR_SUCCESS)
    return;
  std::uint32_t selected = 0;
  std::uint32_t bytes = sizeof selected;
  if (Os().registry.RegQueryValueExW(record.get(), u"TrayIconSelected", nullptr, &selected,
                                     &bytes) == ERROR_SUCCESS)
    m_nIconSelected = selected;
  Os().windowing.UpdateWindow(m_hWnd);
}

}  // namespace vgl
