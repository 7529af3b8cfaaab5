// What a person and other programs do on a simulated machine while agents run there, as a session
// script has it. tests/windows/driver does the same under Wine.
//
// Those that give a text give an empty one when it was done, else what stood against it, and then
// nothing has changed; the others can always be done. What a deed leads to happens when the machine
// runs.
#pragma once

#include <string>
#include <vector>

#include "desk/menu_lines.h"
#include "desk/script.h"
#include "platform/sim/machine.h"

namespace desk {

class Deeds {
 public:
  explicit Deeds(sim::Machine& machine) : m_machine(machine) {}
  Deeds(const Deeds&) = delete;
  Deeds& operator=(const Deeds&) = delete;

  // Lets the machine run until `agent` has done what it is at and takes messages, a minute at most.
  std::string AwaitReady(const sim::Process& agent);

  // --- A person's

  // Click, DoubleClick or RightClick on the icon of `agent`.
  std::string UseMouse(sim::Process& agent, Command::Kind kind);
  // An entry of the menu that `agent` shows, by its id.
  std::string Choose(const sim::Process& agent, std::uint32_t id);
  std::string Dismiss(const sim::Process& agent);
  // What stands in that menu, from the top downwards.
  std::string ReadMenu(const sim::Process& agent, std::vector<MenuLine>& entries);
  // Presses OK in the message box that `agent` showed last.
  std::string Answer(const sim::Process& agent);
  void Hold(const std::vector<std::uint32_t>& keys);
  // All that are held down.
  void Release();

  // --- Other programs'

  std::string AddPrinter(const Command& command);
  std::string DeletePrinter(const std::u16string& printer);
  // Sets a number among the printer's data.
  std::string SetData(const std::u16string& printer, const std::u16string& name,
                      std::uint32_t value);
  // Sets "TrayIconSelected" in the record of a printer or port and tells `agent`.
  std::string SelectIcon(sim::Process& agent, const std::u16string& name, std::uint32_t icon);
  // Below HKEY_CURRENT_USER.
  void SetValue(const Command& command);
  // The time so many seconds ago, in 8 bytes.
  void SetTime(const Command& command);
  // Has Windows start an agent with that file of the temp folder when the user logs on.
  void Autostart(const std::u16string& fileName, const std::u16string& valueName);
  // A process that does nothing but hold the installers' mutex.
  void StartInstaller();
  // There must be one that was started and not ended.
  void EndInstaller();

 private:
  sim::OpenMenu* MenuOf(const sim::Process& agent);

  sim::Machine& m_machine;
  sim::Process* m_installer = nullptr;
  std::vector<std::uint32_t> m_heldKeys;
};

}  // namespace desk
