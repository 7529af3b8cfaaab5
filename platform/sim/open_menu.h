// The menus that are shown on the simulated machine, and the person before them.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/sim/drawing_state.h"
#include "platform/sim/menu.h"

namespace sim {

class Machine;
class Thread;

// An item of a menu that is shown, as the person before it sees it.
struct ShownItem {
  MenuItem item;
  platform::Rect area;  // from the menu's upper left corner
  bool isSelected = false;
  std::vector<Drawn> drawn;  // by the owner when it was last asked to, for an owner-drawn item
};

// A menu that TrackPopupMenu shows. It goes when that returns.
struct OpenMenu {
  platform::HMENU menu{};
  platform::HWND owner{};
  std::uint32_t flags = 0;
  std::int32_t x = 0;
  std::int32_t y = 0;
  Thread* thread = nullptr;
  platform::Size size;
  std::vector<ShownItem> shown;

  // --- for the simulation ---
  bool closed = false;
  std::optional<std::uint32_t> chosen;
  std::optional<std::uint32_t> pointedAt;
};

class OpenMenus {
 public:
  explicit OpenMenus(Machine& machine) : m_machine(machine) {}
  OpenMenus(const OpenMenus&) = delete;
  OpenMenus& operator=(const OpenMenus&) = delete;

  // Those that wait for a choice, oldest first.
  std::vector<OpenMenu*> List() const;
  // As the process has them now: the items of the menu itself, without those that open from it.
  std::vector<MenuItem> ItemsOf(const OpenMenu& open) const;

  // Chooses the item of that id, in the menu or in one that opens from it: the menu closes, and its
  // owner gets WM_COMMAND. False when there is no such item or it is disabled; the menu stays then.
  bool Choose(OpenMenu& open, std::uint32_t id);
  // Moves the mouse onto the item of that id, which is drawn anew as selected; the one that was
  // selected before is drawn anew as well.
  void PointAt(OpenMenu& open, std::uint32_t id);
  // Closes a menu without a choice, as Escape and a click elsewhere do.
  void Dismiss(OpenMenu& open);

  // --- for the simulation ---

  std::shared_ptr<OpenMenu> Add(OpenMenu menu);
  void Remove(const OpenMenu& menu);
  void DropThread(const Thread& thread);
  bool IsShownBy(const Thread& thread) const;
  // Dismisses what the thread shows.
  void Cancel(const Thread& thread);

 private:
  Machine& m_machine;
  std::vector<std::shared_ptr<OpenMenu>> m_menus;
};

}  // namespace sim
