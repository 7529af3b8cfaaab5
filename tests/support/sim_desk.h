// Agents on a simulated machine, for tests of whole sessions. Everything is defaulted: the suite is
// installed, with one printer, and the tray log is on.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "desk/default_machine.h"
#include "platform/sim/machine.h"

namespace vgl {

class SimAgent {
 public:
  SimAgent(sim::Machine& machine, sim::Process& process) : m_machine(machine), m_process(process) {}

  sim::Process& process() const { return m_process; }
  bool HasEnded() const { return m_process.ended(); }
  std::uint32_t ExitCode() const { return m_process.exitCode(); }

  // Null when it has none.
  sim::Window* Window() const;
  // Ids of the window's running timers, in order.
  std::vector<std::uint64_t> Timers() const;
  void Post(std::uint32_t message, platform::WPARAM wParam = 0, platform::LPARAM lParam = 0) const;
  // Closes it as another program would, and waits for its end. The exit code.
  std::uint32_t Close() const;

 private:
  sim::Machine& m_machine;
  sim::Process& m_process;
};

class SimDesk {
 public:
  explicit SimDesk(std::uint64_t seed = 0);

  sim::Machine machine;

  // Starts an agent and lets it come as far as it gets without time passing.
  SimAgent StartAgent(std::u16string commandLine = desk::OptionsOfDefaultPrinter());
  // Starts an agent and waits until its window stands and it waits for messages.
  SimAgent StartedAgent(std::u16string commandLine = desk::OptionsOfDefaultPrinter());
  void RunFor(std::uint64_t milliseconds) { machine.RunFor(milliseconds); }

  // Writes a parameter file into the temp folder; its full path.
  std::u16string WriteParamFile(std::u16string_view name, std::u16string_view text);

  // The tray log's lines without process and time, in order.
  std::vector<std::string> LogTexts() const;
  bool HasLogged(const std::string& text) const;
};

}  // namespace vgl
