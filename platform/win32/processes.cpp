// The running process of Windows and its threads, and starting others.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

namespace platform {
namespace {

class ProcessesOfWindows final : public Processes {
 public:
  std::uint32_t GetCurrentProcessId() override { return ::GetCurrentProcessId(); }
  std::uint32_t GetCurrentThreadId() override { return ::GetCurrentThreadId(); }
  std::int32_t GetLastError() override { return static_cast<std::int32_t>(::GetLastError()); }
  void SetLastError(std::int32_t error) override { ::SetLastError(static_cast<DWORD>(error)); }
  void Sleep(std::uint32_t milliseconds) override { ::Sleep(milliseconds); }

  bool CreateProcessW(char16_t* commandLine, ProcessInformation* started) override {
    STARTUPINFOW startup{};
    static_assert(sizeof(startup) == 104);
    startup.cb = sizeof(startup);
    // The layouts are the same (constants.cpp).
    auto* startedOfTheirs = reinterpret_cast<PROCESS_INFORMATION*>(started);
    return ::CreateProcessW(nullptr, text_cast(commandLine), nullptr, nullptr, FALSE, 0, nullptr,
                            nullptr, &startup, startedOfTheirs) != FALSE;
  }

  HANDLE CreateThread(THREADPROC procedure, void* parameter) override {
    // Windows' type differs in the names of its types only; 64-bit Windows has one way of calling.
    auto* start = reinterpret_cast<LPTHREAD_START_ROUTINE>(reinterpret_cast<void (*)()>(procedure));
    return handle_cast<HANDLE>(::CreateThread(nullptr, 0, start, parameter, 0, nullptr));
  }

  [[noreturn]] void ExitProcess(std::uint32_t code) override { ::ExitProcess(code); }
};

}  // namespace

Processes& Win32Processes() { return *new ProcessesOfWindows; }

}  // namespace platform
