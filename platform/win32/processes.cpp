// The running process of Windows and its threads.
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
  [[noreturn]] void ExitProcess(std::uint32_t code) override { ::ExitProcess(code); }
};

}  // namespace

Processes& Win32Processes() { return *new ProcessesOfWindows; }

}  // namespace platform
