#include "platform/sim/process_calls.h"

#include "platform/sim/machine.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

std::uint32_t ProcessCalls::GetCurrentProcessId() {
  return Call("GetCurrentProcessId").process().id();
}

std::uint32_t ProcessCalls::GetCurrentThreadId() {
  return Call("GetCurrentThreadId").thread().id();
}

std::int32_t ProcessCalls::GetLastError() { return Call("GetLastError").thread().lastError; }

void ProcessCalls::SetLastError(std::int32_t error) {
  Call("SetLastError").thread().lastError = error;
}

void ProcessCalls::Sleep(std::uint32_t milliseconds) {
  const Call call("Sleep");
  if (call.Inert()) return;
  if (milliseconds == 0) {
    m_machine.scheduler().Yield();
    return;
  }
  m_machine.Trace(u"sleeps " + Decimal(milliseconds) + u" ms");
  const std::uint64_t until = milliseconds == INFINITE ? kNever : m_machine.now() + milliseconds;
  // A message that comes in meanwhile wakes the thread, but not its sleep.
  while (m_machine.now() < until) m_machine.scheduler().Block(until);
}

bool ProcessCalls::CreateProcessW(char16_t* commandLine, ProcessInformation* started) {
  Call call("CreateProcessW");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return false;
  const std::int32_t error = m_machine.programs().Run(call.process(), View(commandLine), started);
  if (error != 0) call.SetLastError(error);
  return error == 0;
}

HANDLE ProcessCalls::CreateThread(THREADPROC procedure, void* parameter) {
  Call call("CreateThread");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return HANDLE{};
  const Thread& thread =
      m_machine.StartThread(call.process(), [procedure, parameter] { procedure(parameter); });
  m_machine.Trace(u"started a thread");
  return m_machine.programs().OpenThread(call.process(), thread);
}

void ProcessCalls::ExitProcess(std::uint32_t code) {
  const Call call("ExitProcess");
  call.process().BeginEnd(code);
  call.thread().unwinding = true;
  throw ProcessEnded{};
}

}  // namespace sim
