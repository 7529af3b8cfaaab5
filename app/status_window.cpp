// The status window and the preferences window: both belong to the run helper, another program,
// which is started for them.
#include "Common/CVglLog.h"
#include "Common/kv_open_printer.h"
#include "Common/path_lookup.h"
#include "app/main_frame.h"

namespace vgl {

using namespace platform;

struct CMainFrame::RunHelperWindow {
  bool isPreferences;
  const FixedText<260>& failureText;
};

void CMainFrame::OpenStatusWindow() { OpenByRunHelper({false, m_szMsgStatus}); }

void CMainFrame::OpenPreferencesWindow() {
  // The status window is counted where the helper is started; this one here.
  if (OpenByRunHelper({true, m_szMsgPrefs}))
    g_VglLog.get().Increment(VGLLOG_TRAYICON, kCountPreferences, m_szPrinterName.c_str());
}

bool CMainFrame::OpenByRunHelper(const RunHelperWindow& window) {
  // Only an installer at work counts: a printer that can't be opened for another reason may well
  // have a status to show.
  if (IsInstallerActive(PrinterOrPort().c_str())) {
    MessageBoxRtl(m_hWnd, m_csMsgBusy.c_str(), m_csMsgCaption.c_str());
    return false;
  }
  PathText path;
  if (GetRunHelperPath(&path, m_szDriverName.c_str(), m_szModelID.c_str(),
                       m_szPrinterName.c_str()) != 0 &&
      StartVGLExe(path.c_str(), window.isPreferences) != 0)
    return true;
  MessageBoxRtl(m_hWnd, window.failureText.c_str(), m_szAppTitle.c_str());
  return false;
}

}  // namespace vgl
