// The running process and its threads.
#pragma once

#include "platform/types.h"

namespace platform {

class Processes {
 public:
  virtual ~Processes() = default;

  virtual std::uint32_t GetCurrentProcessId() = 0;
  virtual std::uint32_t GetCurrentThreadId() = 0;

  // The reason of the calling thread's last failed call; a call that succeeds may leave it as it
  // was.
  virtual std::int32_t GetLastError() = 0;
  virtual void SetLastError(std::int32_t error) = 0;

  // Stops the calling thread for that long; 0 lets other threads go first.
  virtual void Sleep(std::uint32_t milliseconds) = 0;

  // Ends the process where it stands: no destructor of the stack runs, the system takes back what
  // it holds. Does not return.
  [[noreturn]] virtual void ExitProcess(std::uint32_t code) = 0;
};

}  // namespace platform
