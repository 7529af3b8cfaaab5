// The programs of the simulated machine: what a path starts, and what was started.
//
//   machine.programs().Add(u"C:\\Drivers\\K_QD21RX.EXE", [](const char16_t* arguments) {
//     return 0U;                                        // runs as a process of its own
//   });
//   machine.programs().Starts().back().arguments;       // what the agent gave it
//
// Without a body any file whose name ends in .EXE is a program, of which every start ends at once
// with code 0. A name without a folder is looked for in the folder of the program that starts it
// and in the system's folders; the machine has no search path.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/processes.h"

namespace sim {

class Machine;
class Process;
class Thread;

class Programs {
 public:
  // Gets what stands behind the program in the command line; its result is the exit code.
  using Body = std::function<std::uint32_t(const char16_t* arguments)>;

  struct Start {
    std::uint64_t time = 0;            // virtual milliseconds
    std::uint32_t starterId = 0;       // of the process that started it
    std::u16string path;               // as the file was made
    std::u16string commandLine;        // whole, as it was given
    std::u16string arguments;          // behind the program and the blanks that follow it
    const Process* process = nullptr;  // what was started
  };

  explicit Programs(Machine& machine);
  ~Programs();
  Programs(const Programs&) = delete;
  Programs& operator=(const Programs&) = delete;

  // What a process had the shell do.
  struct ShellExecution {
    std::uint64_t time = 0;
    std::uint32_t starterId = 0;
    std::u16string verb;
    std::u16string file;
    std::u16string parameters;
    std::u16string directory;
    std::int32_t show = 0;
    std::int64_t result = 0;  // of ShellExecuteW
  };

  // From now on `path` starts that body, in place of an earlier one. A file is made there if there
  // is none; without a file nothing starts.
  void Add(std::u16string_view path, Body body);

  // All that processes have started, in order.
  const std::vector<Start>& Starts() const { return m_starts; }
  // All that processes have had the shell do, in order, also what failed. What is a program there
  // was started, too.
  const std::vector<ShellExecution>& ShellExecutions() const { return m_shellExecutions; }

  // --- for the simulation ---

  // What CreateProcessW does. 0 or its error.
  std::int32_t Run(Process& starter, std::u16string_view commandLine,
                   platform::ProcessInformation* started);
  // What ShellExecuteW does, and its result.
  std::int64_t Execute(Process& starter, ShellExecution execution);
  // A handle to a thread of the process, to be waited for.
  platform::HANDLE OpenThread(Process& process, const Thread& thread);
  // A process or a thread has ended: who waits for it goes on.
  void TellEnded();
  void TellThreadEnded(const Thread& thread);

 private:
  class Started;
  class StartedThread;

  platform::HANDLE Open(Process& starter, const Process& process, std::u16string_view kind);

  Machine& m_machine;
  std::map<std::u16string, Body> m_bodies;  // by their folded paths
  std::vector<Start> m_starts;
  std::vector<ShellExecution> m_shellExecutions;
  // Of which there are handles.
  std::vector<std::weak_ptr<Started>> m_started;
  std::vector<std::weak_ptr<StartedThread>> m_threads;
};

}  // namespace sim
