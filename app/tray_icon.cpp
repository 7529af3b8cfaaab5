// The icon in the notification area: its picture and tip, and what the pointer does to it.
#include <algorithm>

#include "Common/tray_log.h"
#include "app/main_frame.h"

namespace vgl {

using namespace platform;

namespace {

// The pictures, by "TrayIconSelected".
constexpr std::uint16_t kIconResources[] = {700, 701, 702};
constexpr std::int32_t kIconSize = 16;

}  // namespace

std::int32_t CMainFrame::UpdateTrayIcon(std::uint32_t index, IconChange change) {
  if (!SetIconTip()) return 0;
  if (change == IconChange::Add) {
    m_nid.window = m_hWnd;
    m_nid.id = 0;
    m_nid.flags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    m_nid.callbackMessage = WM_VGL3_TRAYICON;
    for (std::size_t i = 0; i < std::size(m_hIcon); ++i)
      m_hIcon[i] = Os().resources.LoadImageW(hBmpDll, kIconResources[i], IMAGE_ICON, kIconSize,
                                             kIconSize, 0);
  }
  // A record with a number beyond the pictures isn't to be; such an icon has none.
  m_nid.icon = index < std::size(m_hIcon) ? m_hIcon[index] : HICON{};
  if (change == IconChange::Add) return Os().shell.Shell_NotifyIconW(NIM_ADD, m_nid) ? 1 : 0;
  Os().shell.Shell_NotifyIconW(NIM_MODIFY, m_nid);
  return 1;
}

// A printer's name is cut to the tip's room; a port's that doesn't fit has no icon. The two differ
// in the whole suite.
bool CMainFrame::SetIconTip() {
  const std::u16string_view name = PrinterOrPort().view();
  const std::size_t room = std::size(m_nid.tip) - 1;
  if (m_szPrinterName.empty() && name.size() > room) return false;
  const std::u16string_view shown = name.substr(0, room);
  *std::copy(shown.begin(), shown.end(), m_nid.tip) = u'\0';
  return true;
}

void CMainFrame::OnTrayNotify(std::uint32_t mouseMessage) {
  switch (mouseMessage) {
    case WM_LBUTTONDOWN:
      m_uhClick = ArmTimer(TMID_CLICK, Os().windowing.GetDoubleClickTime());
      break;
    case WM_LBUTTONDBLCLK:
      StopTimer(TMID_CLICK, m_uhClick);
      if (PassesLivenessGate(u"Post WM_CLOSE(1)")) OpenStatusWindow();
      break;
    case WM_RBUTTONDOWN:
      if (PassesLivenessGate(u"Post WM_CLOSE(2)")) OpenMenu();
      break;
    default:
      break;
  }
}

bool CMainFrame::PassesLivenessGate(const char16_t* logText) {
  // A printer that is being installed can't be opened yet.
  if (m_fIconInstall != 0 || ChkDelPrn() != 0) return true;
  TrayLogText(logText);
  Os().windowing.PostMessageW(m_hWnd, WM_CLOSE, 0, 0);
  return false;
}

}  // namespace vgl
