#include "app/tray_app.h"

#include <new>

#include "Common/reg_library.h"
#include "Common/tray_log.h"
#include "profile/os_identification.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::int32_t kFromMachineRunKey = 2;
constexpr std::uint32_t kWaitAtLogon = 2000;
constexpr std::uint32_t kWaitAlways = 100;
constexpr std::uint32_t kWaitForPredecessor = 1500;

void LogStart(const char16_t* commandLine) {
  TrayLogInit(TrayLogPath().c_str());
  TrayLogText(u"***** LOG START ******");
  TrayLogText(u"CTrayIconApp::InitInstance");
  TrayLogPair(u"CmdLine", commandLine);
}

void LogCmdLineInfo(const CCmdLineInfo& cmdInfo) {
  TrayLogPair(u"cmdInfo.m_szPrinterName", cmdInfo.m_szPrinterName.c_str());
  TrayLogPair(u"cmdInfo.m_szDriverName", cmdInfo.m_szDriverName.c_str());
  TrayLogPair(u"cmdInfo.m_szPortName", cmdInfo.m_szPortName.c_str());
  TrayLogPair(u"cmdInfo.m_szModelID", cmdInfo.m_szModelID.c_str());
  TrayLogInt(u"cmdInfo.m_IconFrom", cmdInfo.m_IconFrom);
  TrayLogInt(u"cmdInfo.m_fRemove", cmdInfo.m_fRemove);
  TrayLogInt(u"cmdInfo.m_fIconInstall", cmdInfo.m_fIconInstall);
}

// Where the driver's branch of the registry is reached through the driver set's own library, there
// is no agent without it. Other systems have no such library.
bool HasDriverEnvironment(const CCmdLineInfo& cmdInfo) {
  if (g_bRegLibraryMode != 0 || !IsWin2000OrLater()) return true;
  return LoadMonitorEnv(cmdInfo.m_szDriverName.c_str()) == 1;
}

// Gives a predecessor time to go. Which printer's window it is that stands there doesn't matter:
// the test only lengthens the wait. At logon everything starts at once, and the wait is longer
// anyway.
void WaitForHandOver(const CCmdLineInfo& cmdInfo) {
  if (cmdInfo.m_IconFrom == kFromMachineRunKey) {
    Os().process.Sleep(kWaitAtLogon);
    return;
  }
  Os().process.Sleep(kWaitAlways);
  if (cmdInfo.m_fRemove != 0) return;
  if (Os().windowing.FindWindowW(kTrayWindowClass, kTrayWindowTitle) != HWND{})
    Os().process.Sleep(kWaitForPredecessor);
}

bool HasIdentity(CCmdLineInfo& cmdInfo) {
  if (cmdInfo.m_szPrinterName.empty()) return !cmdInfo.m_szPortName.empty();
  return cmdInfo.ResolvePrinterInfo() != 0;
}

// Neither result is tested: without a window the rest works on a null handle.
HWND MakeTrayWindow() {
  constexpr std::uint64_t kBackgroundBrush = 1;
  const HMODULE instance = Os().modules.GetModuleHandleW(nullptr);
  WindowClass windowClass;
  windowClass.style = CS_BYTEALIGNWINDOW;
  windowClass.procedure = TrayWindowProc;
  windowClass.instance = instance;
  windowClass.background = kBackgroundBrush;
  windowClass.className = kTrayWindowClass;
  Os().windowing.RegisterClassW(windowClass);
  return Os().windowing.CreateWindowExW(0, kTrayWindowClass, kTrayWindowTitle,
                                        WS_MINIMIZE | WS_OVERLAPPEDWINDOW, instance);
}

// False when a name is too long for its field.
bool CopyIdentity(const CCmdLineInfo& cmdInfo, CMainFrame& frame) {
  return frame.m_szModelID.Assign(cmdInfo.m_szModelID) &&
         frame.m_szPrinterName.Assign(cmdInfo.m_szPrinterName) &&
         frame.m_szPortName.Assign(cmdInfo.m_szPortName) &&
         frame.m_szDriverName.Assign(cmdInfo.m_szDriverName);
}

}  // namespace

bool CTrayIconApp::InitInstance(const char16_t* commandLine) {
  LogStart(commandLine);
  m_msg = Message{};
  Os().windowing.InitCommonControls();

  CCmdLineInfo cmdInfo(commandLine);
  if (!HasDriverEnvironment(cmdInfo)) return false;
  // A printer whose driver isn't of this suite gets no agent.
  if (cmdInfo.ResolveModelID() == 0) return false;
  LogCmdLineInfo(cmdInfo);
  WaitForHandOver(cmdInfo);
  if (!HasIdentity(cmdInfo)) return false;

  // The window procedure finds the frame only there, from the window's first message on.
  m_frame.reset(new (std::nothrow) CMainFrame);
  if (m_frame == nullptr) return false;
  g_pMainFrame = m_frame.get();
  m_frame->m_hWnd = MakeTrayWindow();
  // The window stands already, but the frame has nothing yet that its orderly end would give back.
  if (!CopyIdentity(cmdInfo, *m_frame)) return false;
  m_frame->m_fRemove = cmdInfo.m_fRemove;
  m_frame->m_fIconInstall = cmdInfo.m_fIconInstall;

  const std::int32_t result = m_frame->StartUp();
  TrayLogInt(u"MainFrame.StartUp() : Result", result);
  return ActOnStartUp(result, cmdInfo);
}

bool CTrayIconApp::ActOnStartUp(std::int32_t result, CCmdLineInfo& cmdInfo) {
  CMainFrame& frame = *g_pMainFrame;
  const bool ends = result == CMainFrame::kEndQuietly || result == CMainFrame::kEndMasked ||
                    result == CMainFrame::kEndAndDropAutoStart;
  if (result == CMainFrame::kEndAndDropAutoStart) {
    DeleteStartupReg(cmdInfo.m_szPrinterName.c_str(), cmdInfo.m_szFileName.c_str());
    cmdInfo.DeleteParamFile(cmdInfo.m_szFileName.c_str());
    frame.DisableIconReg();
  }
  if (ends) {
    frame.DestroyWindow();
    return false;
  }
  Os().windowing.ShowWindow(frame.m_hWnd, SW_HIDE);
  Os().windowing.UpdateWindow(frame.m_hWnd);
  return true;
}

void CTrayIconApp::Run() {
  for (;;) {
    const std::int32_t got = Os().windowing.GetMessageW(&m_msg);
    if (got == 0 || got == -1) return;
    Os().windowing.TranslateMessage(m_msg);
    Os().windowing.DispatchMessageW(m_msg);
  }
}

void CTrayIconApp::ExitInstance() {
  m_frame.reset();
  g_pMainFrame = nullptr;
  if (g_bRegLibraryMode != 0) ReleaseRegLibrary();
  if (g_bTrayLogEnabled != 0)
    TrayLogText(u"***** LOG END ******");
  else
    TrayLogCloseStray();
}

std::int32_t TrayAgentMain(const char16_t* commandLine) {
  CTrayIconApp app;
  if (app.InitInstance(commandLine)) app.Run();
  app.ExitInstance();
  return app.ExitCode();
}

}  // namespace vgl
