// One agent for each printer: the look for another one, the hand-over to it, the published window.
#include "Common/instance_map.h"
#include "Common/tray_log.h"
#include "app/main_frame.h"

namespace vgl {

using namespace platform;

std::int32_t CMainFrame::DuplicationChk() {
  TrayLogText(u"CMainFrame::DuplicationChk : start");
  m_hMapFile = HANDLE{};
  HWND other{};
  TrayLogText(u"enter : MultiExecuteCheck");
  const std::int32_t answer =
      MultiExecuteCheck(m_szPrinterName.c_str(), m_szPortName.c_str(), 0, 0, &other, &m_hMapFile);
  TrayLogText(u"exit : MultiExecuteCheck");
  if (answer == kMapOtherRuns && other != HWND{}) {
    HandOverTo(other);
    CloseMap();
    TrayLogText(u"CMainFrame::DuplicationChk : end2");
    return 0;
  }
  if (answer == kMapFailure) {
    MessageBoxRtl(HWND{}, m_szMsgMemory.c_str(), m_szAppTitle.c_str());
    // What the check may have told was closed by it: closing it again could hit a handle of
    // somebody else's.
    m_hMapFile = HANDLE{};
    return 0;
  }
  PublishWindow();
  TrayLogText(u"CMainFrame::DuplicationChk : end");
  return 1;
}

// The one that runs either ends or shows its icon anew.
void CMainFrame::HandOverTo(HWND other) {
  if (m_fRemove != 0) {
    TrayLogText(u"Post WM_CLOSE");
    Os().windowing.PostMessageW(other, WM_CLOSE, 0, 0);
    return;
  }
  // The selected icon isn't known yet at this point of the start, and the receiver doesn't look at
  // it.
  Os().windowing.PostMessageW(other, WM_VGL3_UPDATE_ICON, 0, m_nIconSelected);
}

// From here on the suite's other programs find the agent. Whether that worked changes nothing for
// the agent itself.
void CMainFrame::PublishWindow() {
  TrayLogText(u"enter : SethWindow");
  const std::int32_t result = SethWindow(m_szPrinterName.c_str(), m_szPortName.c_str(), m_hWnd);
  TrayLogInt(u"exit : SethWindow", result);
}

void CMainFrame::LeaveMap() {
  // A walk that failed has closed the section already.
  if (!ReleaseMapSlot(m_hMapFile, m_szPrinterName.c_str(), m_szPortName.c_str()))
    m_hMapFile = HANDLE{};
  CloseMap();
}

void CMainFrame::CloseMap() {
  if (m_hMapFile != HANDLE{}) Os().objects.CloseHandle(m_hMapFile);
  m_hMapFile = HANDLE{};
}

}  // namespace vgl
