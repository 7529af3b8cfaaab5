// The running process and its threads, and starting others.
#pragma once

#include "platform/types.h"

namespace platform {

inline constexpr std::int32_t ERROR_FILENAME_EXCED_RANGE = 206;

// A process that was started. Both handles are the caller's to close (KernelObjects::CloseHandle);
// one is free for a wait once the process or thread has ended.
struct ProcessInformation {
  HANDLE process{};
  HANDLE thread{};  // its first one
  std::uint32_t processId = 0;
  std::uint32_t threadId = 0;
};

// What a thread runs; its result is the thread's exit code.
using THREADPROC = std::uint32_t (*)(void* parameter);

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

  // Starts the program that the command line begins with: in "" or up to a blank. Without quotes it
  // may hold blanks: the text up to the first blank is tried, then up to the second, and so on; the
  // first that is a file counts. Where the last name has no extension and there is nothing of that
  // name, .exe is tried too. A name without a folder is looked for in the folder of the running
  // program, the current folder, the system's folders and the search path. The new process gets
  // default security, the caller's environment and current folder, and no handles. The system may
  // write to `commandLine` meanwhile.
  // False, `*started` is then undefined: for what was tried first, 2 when there is no such file, 3
  // when its folder isn't there either, 5 for a folder; 5 for a file that may not be read, 193 for
  // one that is no program, 87 for an empty command line, 206 for one of 32767 characters or more.
  virtual bool CreateProcessW(char16_t* commandLine, ProcessInformation* started) = 0;

  // Starts a thread of this process that runs `procedure`; its handle is the caller's to close and
  // is free for a wait once the thread has ended, and the thread goes on without it. HANDLE{} on
  // failure.
  virtual HANDLE CreateThread(THREADPROC procedure, void* parameter) = 0;

  // Ends the process where it stands: no destructor of the stack runs, the system takes back what
  // it holds. Does not return.
  [[noreturn]] virtual void ExitProcess(std::uint32_t code) = 0;
};

}  // namespace platform
