// A whole small Windows in one object: processes, registry, files, windows, named objects, one
// clock.
//
//   sim::Machine machine;
//   machine.files().WriteFile(u"C:\\x.txt", "hello");            // what a test sets up or looks at
//   auto& agent = machine.StartProcess(u"C:\\a.exe", u"/R", body);  // `body` runs on its own stack
//   machine.RunFor(3000);                                        // virtual milliseconds
//
// The faces of the parts (files(), registry(), ...) are for tests and tools: they are no platform
// calls, cost no time and never fail by fault injection.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.h"
#include "platform/sim/desktop.h"
#include "platform/sim/drawing_state.h"
#include "platform/sim/file_tree.h"
#include "platform/sim/library.h"
#include "platform/sim/named_objects.h"
#include "platform/sim/notification_area.h"
#include "platform/sim/process.h"
#include "platform/sim/programs.h"
#include "platform/sim/registry_tree.h"
#include "platform/sim/scheduler.h"
#include "platform/sim/spooler_state.h"
#include "platform/sim/system_state.h"

namespace sim {

// Something that happened, in words: "set timer 4: 3000 ms".
struct Event {
  std::uint64_t time = 0;       // virtual milliseconds since the machine was made
  std::uint32_t processId = 0;  // 0 for what the test or tool did
  std::u16string text;

  friend bool operator==(const Event&, const Event&) = default;
};

class Machine {
 public:
  // The body of a program: its result is the exit code.
  using Body = std::function<std::uint32_t(const char16_t* commandLine)>;

  // The same seed and the same doings give the same trace. Seed 0 lets every thread run until it
  // waits; with any other, each platform call that doesn't give something back may let another
  // ready thread go first, as the seed has it.
  explicit Machine(std::uint64_t seed = 0);
  // Ends whatever still runs.
  ~Machine();
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  FileTree& files() { return m_files; }
  RegistryTree& registry() { return m_registry; }
  NamedObjects& objects() { return m_objects; }
  Desktop& desktop() { return m_desktop; }
  NotificationArea& tray() { return m_tray; }
  Programs& programs() { return m_programs; }
  SystemState& system() { return m_system; }
  DrawingState& drawing() { return m_drawing; }
  SpoolerState& spooler() { return m_spooler; }
  Libraries& libraries() { return m_libraries; }
  Scheduler& scheduler() { return m_scheduler; }
  const platform::Platform& platform() const { return *m_platform; }

  // Virtual milliseconds since the machine was made.
  std::uint64_t now() const { return m_scheduler.now(); }

  // Starts a process; it runs when the machine does. The process object lives as long as the
  // machine.
  Process& StartProcess(std::u16string imagePath, std::u16string commandLine, Body body);
  // Starts one more thread of a process that runs.
  Thread& StartThread(Process& process, std::function<void()> body);
  // Ends a process from outside, as a log-off does: nothing of its code runs any more.
  void EndProcess(Process& process, std::uint32_t exitCode = 1);
  const std::vector<std::unique_ptr<Process>>& processes() const { return m_processes; }

  // Lets everybody run until all wait, at the time it is now.
  void Settle() { m_scheduler.AwaitQuiet(now()); }
  // Lets that much virtual time pass.
  void RunFor(std::uint64_t milliseconds) { m_scheduler.AwaitQuiet(now() + milliseconds); }
  // Lets time pass until `condition` holds whenever everybody waits; false when it doesn't within
  // `limit` milliseconds.
  bool RunUntil(const std::function<bool()>& condition, std::uint64_t limit);
  // As RunUntil for the end of one process.
  bool RunUntilEnded(const Process& process, std::uint64_t limit);

  // Whether events are kept for trace(), as they are at first; a long run may only want to observe.
  void KeepTrace(bool keep) { m_keepsTrace = keep; }
  const std::vector<Event>& trace() const { return m_trace; }
  // Calls `observer` for each event as it happens.
  void Observe(std::function<void(const Event&)> observer) { m_observer = std::move(observer); }
  // Adds an event of the running process (or of the test) to the trace.
  void Trace(std::u16string text);

 private:
  friend class Inside;
  friend class Programs;
  struct Services;

  Process& AddProcess(std::u16string imagePath, std::u16string commandLine);
  void FinishThread(Thread& thread);

  Scheduler m_scheduler;
  std::vector<Event> m_trace;
  bool m_keepsTrace = true;
  std::function<void(const Event&)> m_observer;
  SystemState m_system;
  SpoolerState m_spooler;
  DrawingState m_drawing;
  NamedObjects m_objects;
  RegistryTree m_registry;
  FileTree m_files;
  Libraries m_libraries;
  Desktop m_desktop;
  NotificationArea m_tray;
  Programs m_programs;
  std::unique_ptr<Services> m_services;
  std::unique_ptr<platform::Platform> m_platform;
  std::vector<std::unique_ptr<Process>> m_processes;
  std::uint32_t m_nextProcessId = 0x1000;
};

// While it lives, the calling host thread is the main thread of a new simulated process, so that a
// test can call the code under test straight away. Calls that wait let the other processes run.
class Inside {
 public:
  explicit Inside(Machine& machine,
                  std::u16string imagePath = u"C:\\Program Files\\KAVRO\\test.exe");
  // Ends the process, if it still runs, with exit code 0.
  ~Inside();
  Inside(const Inside&) = delete;
  Inside& operator=(const Inside&) = delete;

  Process& process() { return m_process; }

  // Runs `body` and tells whether it ended the process (ExitProcess); after that nothing more can
  // be called inside.
  bool EndsProcess(const std::function<void()>& body);

 private:
  Machine& m_machine;
  Process& m_process;
};

}  // namespace sim
