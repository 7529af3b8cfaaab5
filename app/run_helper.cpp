// The start of the run helper: its parameter file, its command line.
#include "Common/CVglLog.h"
#include "Common/printer_lookup.h"
#include "Common/start_program.h"
#include "Common/temp_file.h"
#include "Common/tray_log.h"
#include "Common/wide_format.h"
#include "app/main_frame.h"
#include "platform/owned.h"

namespace vgl {

using namespace platform;

namespace {

// Each name comes with its length, so that it may hold any character.
std::u16string ParamText(const CMainFrame& frame, const std::u16string& port, bool withE) {
  const FixedText<260>& printer = frame.m_szPrinterName;
  const FixedText<260>& model = frame.m_szModelID;
  return WideFormat(u"/P%d \"%s\"\n/O%d \"%s\"\n/M%d \"%s\"\n%s", printer.length(), printer,
                    port.size(), port, model.length(), model, withE ? u"/E" : u"");
}

// Whether the text with its terminator is in a new file of that path.
bool WriteWholeFile(const std::u16string& path, const std::u16string& text) {
  const OwnedFile file(Os().files.CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                                              CREATE_ALWAYS, FILE_ATTRIBUTE_TEMPORARY));
  return file && WriteText(file.get(), std::u16string_view(text.c_str(), text.size() + 1));
}

}  // namespace

std::int32_t CMainFrame::StartVGLExe(const char16_t* exePath, bool withE) {
  TrayLogText(u"CMainFrame::StartVGLExe");
  // The port as it is now: it may have been changed since this agent started.
  std::u16string driver;
  std::u16string port;
  GetDriverAndPort(m_szPrinterName.c_str(), driver, port);
  TrayLogPair(u"CMainFrame::StartVGLExe : printer name", m_szPrinterName.c_str());
  TrayLogPair(u"CMainFrame::StartVGLExe : port name", port.c_str());
  TrayLogPair(u"CMainFrame::StartVGLExe : model id", m_szModelID.c_str());
  const std::u16string text = ParamText(*this, port, withE);
  TrayLogPair(u"CMainFrame::StartVGLExe : command line", text.c_str());

  const std::u16string path = NewTempFile(kTempFilePrefix);
  if (path.empty()) return 0;
  if (!WriteWholeFile(path, text) ||
      StartExe(WideFormat(u"%s /FU \"%s\"", exePath, path).c_str()) == 0) {
    DeleteIfThere(path);
    return 0;
  }
  if (!withE)
    g_VglLog.get().Increment(VGLLOG_TRAYICON, kCountStatusWindow, m_szPrinterName.c_str());
  return 1;
}

}  // namespace vgl
