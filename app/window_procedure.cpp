// The window procedure: which message has the agent do what.
#include "Common/CVglLog.h"
#include "Common/tray_log.h"
#include "app/main_frame.h"

namespace vgl {

using namespace platform;

// No handler decides a result: every message goes on to the system's own handling, which is what
// closes the window on WM_CLOSE.
LRESULT TrayWindowProc(HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
  if (g_pMainFrame != nullptr) g_pMainFrame->OnMessage(message, wParam, lParam);
  return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
}

void CMainFrame::OnMessage(std::uint32_t message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_DESTROY:
      OnDestroy();
      break;
    case WM_CLOSE:
      TrayLogText(u"WM_CLOSE");
      break;
    case WM_MEASUREITEM:
      if (auto* item = reinterpret_cast<MeasureItem*>(lParam); item && IsExMenuSlot(item->itemId))
        OnMeasureItem(*item);
      break;
    case WM_DRAWITEM:
      if (auto* item = reinterpret_cast<const DrawItem*>(lParam);
          item && IsExMenuSlot(item->itemId))
        OnDrawItem(*item);
      break;
    case WM_COMMAND:
      OnCommand(static_cast<std::uint32_t>(wParam & 0xFFFF));
      break;
    case WM_TIMER:
      OnTimer(wParam);
      break;
    case WM_VGL3_TRAYICON:
      OnTrayNotify(static_cast<std::uint32_t>(lParam));
      break;
    case WM_VGL3_UPDATE_ICON:
      OnIconUpdate();
      break;
    case WM_VGL3_KICK_INVITATION:
      OnKickInvitationEvents();
      break;
    case WM_VGL3_CHECK_NETPILOT:
      OnCheckNetPilot();
      break;
    case WM_VGL3_FLUSH_VGLLOG:
      OnFlushUsageLog();
      break;
    default:
      break;
  }
}

void CMainFrame::OnDestroy() {
  TrayLogText(u"WM_DESTROY");
  CheckUtyCall(1);
  g_VglLog.get().WriteVglLogFile();
  DestroyWindow();
  Os().windowing.PostQuitMessage(0);
}

}  // namespace vgl
