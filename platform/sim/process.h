// A simulated process: its handles, its faults, its copies of process-wide variables, its end.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/types.h"

namespace sim {

class Machine;
class Thread;

// Exit code of a process that passed the bound of StopAfterCalls.
inline constexpr std::uint32_t kStoppedExitCode = 0xDEAD;

// What a handle stands for. It goes when its handle is closed or its process ends; an object that
// several handles share lives behind it.
class HandleBody {
 public:
  virtual ~HandleBody() = default;
  // How the ledger lists it, as "file C:\x".
  virtual std::u16string Describe() const = 0;
  // Whether CloseHandle closes it; keys and searches have closing calls of their own.
  virtual bool IsKernelObject() const { return true; }
};

class Process {
 public:
  Process(Machine& machine, std::uint32_t id, std::u16string imagePath, std::u16string commandLine);
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  Machine& machine() const { return m_machine; }
  std::uint32_t id() const { return m_id; }
  const std::u16string& imagePath() const { return m_imagePath; }
  const std::u16string& commandLine() const { return m_commandLine; }

  // Ending: its exit code stands and what it held is dropped. Ended: its threads are gone, too.
  bool ending() const { return m_exitCode.has_value(); }
  bool ended() const { return ending() && m_threads.empty(); }
  std::uint32_t exitCode() const { return m_exitCode.value(); }

  // What the process holds now; once it is ending, what it had not given back by itself.
  std::vector<std::u16string> Ledger() const;

  // Lets the `number`th platform call from now on fail, counted from 1, if it is one that can fail.
  // Calls that give something back (closing, releasing) are counted but don't fail by number.
  void FailCall(std::uint64_t number) {
    m_failAt = m_calls + number;
    m_failedOperation.clear();
  }
  // Lets the next call of that operation fail with `error`, or the one `after` calls later, also
  // when it gives something back. It must be one that can fail at all (its contract names a
  // failure).
  void FailNext(std::string_view operation, std::int32_t error, std::uint64_t after = 0);
  // Ends the process by force at its call of that number from now on: a bound for endless loops,
  // which are to make their calls outside destructors.
  void StopAfterCalls(std::uint64_t number) { m_stopAt = m_calls + number; }
  std::uint64_t calls() const { return m_calls; }
  // The operation that FailCall hit; empty when the call of that number wasn't one that can fail,
  // or hasn't come.
  const std::string& failedOperation() const { return m_failedOperation; }

  // --- for the simulation ---

  std::uint64_t AddHandle(std::shared_ptr<HandleBody> body);
  // Null when `handle` isn't open in this process or is of another kind.
  template <class T>
  std::shared_ptr<T> FindHandle(std::uint64_t handle) const {
    const auto found = m_handles.find(handle);
    return found == m_handles.end() ? nullptr : std::dynamic_pointer_cast<T>(found->second);
  }
  // Calls `visit` with each open handle of that kind and its body, oldest first.
  template <class T, class Visit>
  void ForEachHandle(const Visit& visit) const {
    for (const auto& [handle, body] : m_handles)
      if (const T* wanted = dynamic_cast<const T*>(body.get())) visit(handle, *wanted);
  }
  bool CloseHandle(std::uint64_t handle) { return m_handles.erase(handle) != 0; }

  // Counts a call of the running thread. True when the bound of StopAfterCalls is passed.
  bool EnterCall() { return ++m_calls > m_stopAt && m_stopAt != 0; }
  // Whether the call that was counted last is to fail: 0, or the error (`usual` when none was
  // named).
  std::int32_t FaultOf(const char* operation, bool release, std::int32_t usual);

  void* Copy(const void* key, void* (*make)(), void (*destroy)(void*));

  // Destroys the copies of process-wide variables, by a thread of the process that is at its end.
  void FreeWideVariables();

  void AddThread(Thread& thread) { m_threads.push_back(&thread); }
  void RemoveThread(Thread& thread);
  const std::vector<Thread*>& threads() const { return m_threads; }

  // Sets the exit code, drops handles and windows, and has every other thread unwound.
  void BeginEnd(std::uint32_t exitCode);

 private:
  struct WideVariable {
    void* value;
    void (*destroy)(void*);
  };

  Machine& m_machine;
  std::uint32_t m_id;
  std::u16string m_imagePath;
  std::u16string m_commandLine;
  std::optional<std::uint32_t> m_exitCode;
  std::vector<std::u16string> m_leftovers;
  std::vector<Thread*> m_threads;
  std::map<std::uint64_t, std::shared_ptr<HandleBody>> m_handles;
  std::uint64_t m_nextHandle = 0x40;
  std::unordered_map<const void*, WideVariable> m_wideVariables;
  std::uint64_t m_calls = 0;
  std::uint64_t m_failAt = 0;
  std::uint64_t m_stopAt = 0;
  std::string m_failedOperation;
  struct Fault {
    std::string operation;
    std::int32_t error;
    std::uint64_t after;
  };
  std::vector<Fault> m_failNext;
};

// One platform call of the running simulated thread; every operation of the simulation begins with
// one. It counts the call, may let another thread go first, and tells whether the call is to fail.
class Call {
 public:
  enum Kind { kOrdinary, kRelease };

  explicit Call(const char* operation, Kind kind = kOrdinary);

  // 0 when the call is to be carried out; else the error that it fails with (`usual` unless the
  // test named one), which is also the thread's last error then.
  std::int32_t Failure(std::int32_t usual);

  // For calls that give something back: true while the process is being taken down, when they do
  // nothing and succeed.
  bool Inert() const;

  Thread& thread() const { return m_thread; }
  Process& process() const { return m_process; }
  Machine& machine() const { return m_process.machine(); }
  void SetLastError(std::int32_t error) const;

 private:
  const char* m_operation;
  Kind m_kind;
  Process& m_process;
  Thread& m_thread;
};

// The process of the calling simulated thread. Asking on a thread that belongs to none is a mistake
// in a test or tool and ends the program.
Process& RunningProcess();

}  // namespace sim
