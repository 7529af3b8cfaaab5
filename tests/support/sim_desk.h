// Agents on a simulated machine, for tests of whole sessions. Everything is defaulted: the suite is
// installed, with one printer and its driver set, and the tray log is on.
//
//   SimDesk desk;
//   const SimAgent agent = desk.StartedAgent();
//   agent.DoubleClick();
//   EXPECT_EQ(desk.machine.programs().Starts().size(), 1U);
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "desk/default_machine.h"
#include "desk/resource_library.h"
#include "platform/sim/machine.h"

namespace vgl {

// What a SimDesk does to its machine, for tests that have one of their own (default_machine.h).
void AddToProfile(sim::Machine& machine, std::string_view line);
void AddToVif(sim::Machine& machine, std::string_view lines);
// What the install description of the driver set says under the driver's key and under its menu
// key, in place of what it said under that name. `value` is the text itself and holds no quote and
// no semicolon.
void SetDriverValue(sim::Machine& machine, std::string_view name, std::string_view value);
void SetMenuValue(sim::Machine& machine, std::string_view name, std::string_view value);
std::vector<std::u16string> TempFilesOf(sim::Machine& machine);

class SimAgent {
 public:
  SimAgent(sim::Machine& machine, sim::Process& process) : m_machine(machine), m_process(process) {}

  sim::Process& process() const { return m_process; }
  bool HasEnded() const { return m_process.ended(); }
  std::uint32_t ExitCode() const { return m_process.exitCode(); }
  // What it holds now, or had not given back at its end, in alphabetical order.
  std::vector<std::u16string> Ledger() const;

  // Null when it has none.
  sim::Window* Window() const;
  // Ids of the window's running timers, in order.
  std::vector<std::uint64_t> Timers() const;
  // The period of one of them in ms, 0 when it isn't running.
  std::uint32_t PeriodOf(std::uint64_t timer) const;
  void Post(std::uint32_t message, platform::WPARAM wParam = 0, platform::LPARAM lParam = 0) const;
  // Closes it as another program would, and waits for its end. The exit code.
  std::uint32_t Close() const;

  // Its icon in the notification area; null when none stands there.
  const sim::TrayIcon* Icon() const;
  // What a person does to the icon; no time passes. A click that is to open the menu needs
  // SimDesk::RunFor of the double click time behind it.
  void Click() const;
  void DoubleClick() const;
  void RightClick() const;

  // Its context menu, while it is open.
  bool MenuIsOpen() const;
  std::vector<sim::MenuItem> MenuItems() const;
  void Choose(std::uint32_t id) const;
  void DismissMenu() const;

  // The usage counts that it has in memory; empty where nothing was counted since the last flush.
  std::vector<std::uint32_t> Counts() const;

 private:
  sim::OpenMenu* OpenMenu() const;

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

  // --- printers

  // Adds one of the default driver; the options of an agent for it.
  std::u16string AddPrinter(const std::u16string& name, const std::u16string& port = u"USB002");

  void DeletePrinter() { machine.spooler().RemovePrinter(desk::kPrinterName); }
  // Its value "VGLSetting"; not 0 masks it.
  void SetMask(std::uint32_t value);
  // From now on an installer of printers is at work, until it is ended.
  sim::Process& StartInstaller();

  // --- the driver set

  // Adds a line to the model's section of the profile, in front of the others: it counts.
  void AddToProfile(std::string_view line) { vgl::AddToProfile(machine, line); }
  void AddToVif(std::string_view lines) { vgl::AddToVif(machine, lines); }
  void SetDriverValue(std::string_view name, std::string_view value) {
    vgl::SetDriverValue(machine, name, value);
  }
  void SetMenuValue(std::string_view name, std::string_view value) {
    vgl::SetMenuValue(machine, name, value);
  }
  // Puts another language resource library in the place of the plain one.
  void SetResourceLibrary(const desk::ResourceLibrary& library);

  // --- what is in the user's registry

  std::vector<std::u16string> RunValues();
  void SetRunValue(std::u16string_view name, std::u16string_view commandLine);

  // Writes a parameter file into the temp folder; its full path.
  std::u16string WriteParamFile(std::u16string_view name, std::u16string_view text);
  // Full paths of all files of the temp folder.
  std::vector<std::u16string> TempFiles() { return TempFilesOf(machine); }

  // The message boxes that have been shown so far, as "caption: text", whoever showed them.
  std::vector<std::u16string> BoxesShown() const;
  // The counts in the printer's usage log file; empty when there is none.
  std::vector<std::uint32_t> CountsInFile();

  // The tray log's lines without process and time, in order; those of one agent.
  std::vector<std::string> LogTexts() const;
  std::vector<std::string> LogTextsOf(const SimAgent& agent) const;
  bool HasLogged(const std::string& text) const;

 private:
  // Of the lines that begin with that text as they stand in the file.
  std::vector<std::string> LogTextsThatBegin(const std::string& begin) const;
};

}  // namespace vgl
