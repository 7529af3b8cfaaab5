// Whether the printer is still there and still to be watched.
#include "Common/tray_log.h"
#include "app/main_frame.h"

namespace vgl {

using namespace platform;

void CMainFrame::OnMaskCheckTimer() {
  TrayLogText(u"CMainFrame::OnTimer : Mask check");
  StopTimer(TMID_MASKCHECK, m_uhMaskCheck);
  m_uhMaskCheck = ArmTimer(TMID_MASKCHECK, kMaskCheckPeriod);
}

void CMainFrame::OnPrinterCheckTimer() {
  TrayLogText(u"CMainFrame::OnTimer : Printer check");
  StopTimer(TMID_PRINTERCHECK, m_uhPrinterCheck);
  // A printer that is being installed can't be opened yet.
  if (m_fIconInstall == 0 && ChkDelPrn() == 0) {
    TrayLogText(u"Post WM_CLOSE(2)");
    Os().windowing.PostMessageW(m_hWnd, WM_CLOSE, 0, 0);
    return;
  }
  m_uhPrinterCheck = ArmTimer(TMID_PRINTERCHECK, m_uEndTime);
}

// Doesn't look for the printer itself yet, and so takes none for deleted: the answer is always 1.
std::int32_t CMainFrame::ChkDelPrn() {
  TrayLogText(u"CMainFrame::ChkDelPrn : start");
  TrayLogPair(u"PrinterName", m_szPrinterName.c_str());
  CheckUtyCall(0);
  return 1;
}

}  // namespace vgl
