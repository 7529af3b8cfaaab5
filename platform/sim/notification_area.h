// The notification area of the simulated machine: its icons, and what a person does with them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/shell.h"

namespace sim {

class Machine;
class Process;

struct TrayIcon {
  platform::HWND window{};
  std::uint32_t id = 0;
  std::uint32_t callbackMessage = 0;  // 0: the window is told nothing
  platform::HICON icon{};
  std::u16string picture;  // what `icon` is, as the ledger of its process calls it; empty: nothing
  std::u16string tip;
  const Process* process = nullptr;  // that added it
};

class NotificationArea {
 public:
  explicit NotificationArea(Machine& machine) : m_machine(machine) {}
  NotificationArea(const NotificationArea&) = delete;
  NotificationArea& operator=(const NotificationArea&) = delete;

  // In the order in which they were added.
  const std::vector<TrayIcon>& Icons() const { return m_icons; }
  // The oldest that the process has added; null if none stands. It is there until an icon is added
  // or goes.
  const TrayIcon* FindOf(const Process& process) const;

  // Sends an icon's window that mouse message, as the shell does: without waiting.
  void Tell(const TrayIcon& icon, std::uint32_t mouseMessage);
  // What a person does, as the window is told of it: a button goes down and comes up, all at once.
  void Click(const TrayIcon& icon);
  void DoubleClick(const TrayIcon& icon);
  void RightClick(const TrayIcon& icon);

  // From now on the shell refuses everything, or no longer does.
  void Refuse(bool refuse) { m_refuses = refuse; }

  // --- for the simulation ---

  // What NIM_... does; false when it is refused.
  bool Notify(const Process& process, std::uint32_t message, const platform::NotifyIconData& data);
  // The icons of a window go with it. Their process has left them behind.
  void DropWindow(platform::HWND window);
  // How many icons a process has added and not taken away.
  std::size_t HeldBy(const Process& process) const;

 private:
  std::vector<TrayIcon>::iterator Find(const platform::NotifyIconData& data);
  void Update(TrayIcon& icon, const Process& process, const platform::NotifyIconData& data);

  Machine& m_machine;
  std::vector<TrayIcon> m_icons;
  std::map<const Process*, std::size_t> m_leftBehind;  // how many went with their windows
  bool m_refuses = false;
};

}  // namespace sim
