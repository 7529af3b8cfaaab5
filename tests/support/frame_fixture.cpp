#include "tests/support/frame_fixture.h"

#include "Common/tray_log.h"

namespace vgl {

using namespace platform;

namespace {
constexpr char16_t kUtilitySemaphore[] = u"VGL_UtyCall_OBJ_Studio 7200";
}

FrameTest::FrameTest() : inside(machine), frame(std::make_unique<CMainFrame>()) {
  desk::SetUpDefaultMachine(machine);
  desk::EnableTrayLog(machine);
  TrayLogInit(TrayLogPath().c_str());
  EXPECT_TRUE(frame->m_szPrinterName.Assign(desk::kPrinterName));
  EXPECT_TRUE(frame->m_szPortName.Assign(desk::kPortName));
  EXPECT_TRUE(frame->m_szDriverName.Assign(desk::kDriverName));
  EXPECT_TRUE(frame->m_szModelID.Assign(desk::kModelId));
  EXPECT_TRUE(frame->m_szRegKey.Assign(desk::kRecordPath));
  g_pMainFrame = frame.get();
  WindowClass windowClass;
  windowClass.procedure = TrayWindowProc;
  windowClass.className = kTrayWindowClass;
  Os().windowing.RegisterClassW(windowClass);
  frame->m_hWnd =
      Os().windowing.CreateWindowExW(0, kTrayWindowClass, kTrayWindowTitle, 0, HMODULE{});
}

FrameTest::~FrameTest() {
  g_pMainFrame = nullptr;
  frame.reset();
}

std::vector<Message> FrameTest::Pump(std::uint32_t milliseconds) {
  std::vector<Message> messages;
  const std::uint64_t stop = Os().windowing.SetTimer(HWND{}, 0, milliseconds);
  Message message;
  while (Os().windowing.GetMessageW(&message) == 1) {
    if (message.window == HWND{} && message.message == WM_TIMER && message.wParam == stop) break;
    if (message.window == frame->m_hWnd) messages.push_back(message);
    Os().windowing.DispatchMessageW(message);
  }
  Os().windowing.KillTimer(HWND{}, stop);
  return messages;
}

void FrameTest::Send(std::uint32_t message, WPARAM wParam, LPARAM lParam) {
  Os().windowing.SendMessageW(frame->m_hWnd, message, wParam, lParam);
}

std::uint32_t FrameTest::PeriodOf(std::uint64_t id) {
  for (const sim::Timer& timer : machine.desktop().TimersOf(frame->m_hWnd))
    if (timer.id == id) return timer.period;
  return 0;
}

bool FrameTest::HasLogged(const std::string& text) {
  return machine.files().ReadFile(desk::kTrayLogFile).value_or("").find("; " + text + "\r\n") !=
         std::string::npos;
}

void FrameTest::StartUtility() {
  frame->m_cUtyCall.hSemaphore = Os().objects.CreateSemaphoreW(1, 1, kUtilitySemaphore);
  Os().objects.WaitForSingleObject(frame->m_cUtyCall.hSemaphore, 0);
}

void FrameTest::StopUtility(std::uint64_t afterMilliseconds) {
  machine.StartProcess(u"C:\\utility.exe", u"", [afterMilliseconds](const char16_t*) {
    const HANDLE semaphore = Os().objects.CreateSemaphoreW(1, 1, kUtilitySemaphore);
    Os().process.Sleep(static_cast<std::uint32_t>(afterMilliseconds));
    Os().objects.ReleaseSemaphore(semaphore, 1, nullptr);
    Os().objects.CloseHandle(semaphore);
    return 0U;
  });
}

}  // namespace vgl
