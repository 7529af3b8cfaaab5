#include "platform/sim/process.h"

#include <algorithm>
#include <cstdlib>

#include "platform/process_wide.h"
#include "platform/sim/machine.h"

namespace sim {

Process::Process(Machine& machine, std::uint32_t id, std::u16string imagePath,
                 std::u16string commandLine)
    : m_machine(machine),
      m_id(id),
      m_imagePath(std::move(imagePath)),
      m_commandLine(std::move(commandLine)) {}

Process::~Process() { FreeWideVariables(); }

void Process::FreeWideVariables() {
  // What goes may ask for another variable: that one is made anew then, and goes as well.
  while (!m_wideVariables.empty())
    for (const auto& [key, variable] : std::exchange(m_wideVariables, {}))
      variable.destroy(variable.value);
}

std::vector<std::u16string> Process::Ledger() const {
  if (ending()) return m_leftovers;
  std::vector<std::u16string> held;
  for (const auto& [handle, body] : m_handles) held.push_back(body->Describe());
  for (const Window* window : m_machine.desktop().WindowsOf(*this))
    held.push_back(u"window " + window->className);
  held.insert(held.end(), m_machine.tray().HeldBy(*this), u"icon in the notification area");
  return held;
}

void Process::FailNext(std::string_view operation, std::int32_t error, std::uint64_t after) {
  m_failNext.push_back({std::string(operation), error, after});
}

std::uint64_t Process::AddHandle(std::shared_ptr<HandleBody> body) {
  const std::uint64_t handle = m_nextHandle;
  m_nextHandle += 4;
  m_handles.emplace(handle, std::move(body));
  return handle;
}

std::int32_t Process::FaultOf(const char* operation, bool release, std::int32_t usual) {
  const auto named = std::find_if(m_failNext.begin(), m_failNext.end(),
                                  [&](const Fault& fault) { return fault.operation == operation; });
  if (named != m_failNext.end() && named->after == 0) {
    const std::int32_t error = named->error;
    m_failNext.erase(named);
    return error;
  }
  if (named != m_failNext.end()) --named->after;
  if (m_calls != m_failAt || release) return 0;
  m_failedOperation = operation;
  return usual;
}

void* Process::Copy(const void* key, void* (*make)(), void (*destroy)(void*)) {
  const auto found = m_wideVariables.find(key);
  if (found != m_wideVariables.end()) return found->second.value;
  void* value = make();
  m_wideVariables.emplace(key, WideVariable{value, destroy});
  return value;
}

void Process::RemoveThread(Thread& thread) { std::erase(m_threads, &thread); }

void Process::BeginEnd(std::uint32_t exitCode) {
  if (ending()) return;
  m_leftovers = Ledger();
  m_exitCode = exitCode;
  m_machine.desktop().DropProcess(*this);
  m_handles.clear();
  for (Thread* thread : m_threads) m_machine.scheduler().Wake(*thread);
}

Process& RunningProcess() {
  const Thread* thread = CurrentThread();
  if (thread == nullptr || thread->process() == nullptr) std::abort();
  return *thread->process();
}

Call::Call(const char* operation, Kind kind)
    : m_operation(operation),
      m_kind(kind),
      m_process(RunningProcess()),
      m_thread(*CurrentThread()) {
  if (m_thread.unwinding) return;
  const bool tooMany = m_process.EnterCall();
  if (kind == kRelease) return;
  if (tooMany) {
    machine().Trace(u"stopped: too many calls");
    m_process.BeginEnd(kStoppedExitCode);
    m_thread.unwinding = true;
    throw ProcessEnded{};
  }
  m_process.machine().scheduler().MayInterleave();
}

std::int32_t Call::Failure(std::int32_t usual) {
  if (m_thread.unwinding) return usual;
  const std::int32_t error = m_process.FaultOf(m_operation, m_kind == kRelease, usual);
  if (error != 0) m_thread.lastError = error;
  return error;
}

bool Call::Inert() const { return m_thread.unwinding; }

void Call::SetLastError(std::int32_t error) const { m_thread.lastError = error; }

}  // namespace sim

namespace platform {

const Platform& Os() { return sim::RunningProcess().machine().platform(); }

void* ProcessCopy(const void* key, void* (*make)(), void (*destroy)(void*)) {
  return sim::RunningProcess().Copy(key, make, destroy);
}

}  // namespace platform
