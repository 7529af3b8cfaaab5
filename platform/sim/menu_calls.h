// The platform's calls on menus.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/menus.h"
#include "platform/sim/menu.h"
#include "platform/sim/process.h"

namespace sim {

class WindowingCalls;

// A menu that a process has loaded, with all that open from it.
class LoadedMenu final : public HandleBody {
 public:
  LoadedMenu(MenuLists lists, std::u16string name)
      : m_lists(std::move(lists)), m_name(std::move(name)) {}
  std::u16string Describe() const override { return m_name; }
  bool IsKernelObject() const override { return false; }

  MenuLists& lists() { return m_lists; }
  // Takes away that list and those that open from it.
  void Destroy(std::size_t first);

 private:
  MenuLists m_lists;
  std::u16string m_name;
};

// One list of a menu: what a menu handle stands for. A menu that opens from another has the handle
// of the whole, and in the upper half its place there.
struct MenuPlace {
  std::shared_ptr<LoadedMenu> menu;  // null: there is no such menu
  std::size_t list = 0;

  explicit operator bool() const { return menu != nullptr; }
  std::vector<MenuItem>& items() const { return *menu->lists()[list]; }
  // By command, here and in what opens from here. Null when there is none.
  MenuItem* FindItem(std::uint32_t id) const;
};

MenuPlace FindMenu(const Process& process, platform::HMENU menu);

class MenuCalls final : public platform::Menus {
 public:
  // `windowing` has the loop in which a menu is shown.
  MenuCalls(Machine& machine, WindowingCalls& windowing)
      : m_machine(machine), m_windowing(windowing) {}

  platform::HMENU GetSubMenu(platform::HMENU menu, std::int32_t position) override;
  bool ModifyMenuW(platform::HMENU menu, std::uint32_t item, std::uint32_t flags,
                   std::uint64_t newId, const char16_t* text) override;
  bool AppendMenuW(platform::HMENU menu, std::uint32_t flags, std::uint64_t id,
                   const char16_t* text) override;
  bool GetMenuItemInfoW(platform::HMENU menu, std::uint32_t item, bool byPosition,
                        platform::MenuItemInfo* info) override;
  bool SetMenuItemInfoW(platform::HMENU menu, std::uint32_t item, bool byPosition,
                        const platform::MenuItemInfo* info) override;
  bool DestroyMenu(platform::HMENU menu) override;
  bool DrawMenuBar(platform::HWND window) override;
  bool TrackPopupMenu(platform::HMENU menu, std::uint32_t flags, std::int32_t x, std::int32_t y,
                      platform::HWND owner) override;

 private:
  Machine& m_machine;
  WindowingCalls& m_windowing;
};

}  // namespace sim
