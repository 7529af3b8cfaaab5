// The person before a menu of the simulated machine.
#include <algorithm>

#include "platform/sim/machine.h"
#include "tests/platform/menu_fixture.h"

namespace platform {
namespace {

sim::OpenMenus& Shown() { return sim::RunningProcess().machine().desktop().menus(); }

sim::OpenMenu* MenuOf(HWND owner) {
  for (sim::OpenMenu* menu : Shown().List())
    if (menu->owner == owner) return menu;
  ADD_FAILURE() << "no menu is shown for that window";
  return nullptr;
}

std::vector<sim::MenuItem> WhatCanBeChosen(const sim::OpenMenu& menu) {
  std::vector<sim::MenuItem> items = Shown().ItemsOf(menu);
  std::erase_if(items, [](const sim::MenuItem& item) { return !item.CanBeChosen(); });
  return items;
}

}  // namespace

bool IsMenuShown() { return !Shown().List().empty(); }

void ChooseFromMenu(HWND owner, int index) {
  sim::OpenMenu* menu = MenuOf(owner);
  if (menu == nullptr) return;
  const std::vector<sim::MenuItem> items = WhatCanBeChosen(*menu);
  EXPECT_TRUE(Shown().Choose(*menu, items.at(static_cast<std::size_t>(index)).id));
}

void SelectNextInMenu(HWND owner) {
  sim::OpenMenu* menu = MenuOf(owner);
  if (menu == nullptr) return;
  const std::vector<sim::MenuItem> items = WhatCanBeChosen(*menu);
  const auto selected = std::ranges::find(items, menu->pointedAt, &sim::MenuItem::id);
  Shown().PointAt(*menu, selected == items.end() ? items.at(0).id : std::next(selected)->id);
}

void EscapeFromMenu(HWND owner) {
  if (sim::OpenMenu* menu = MenuOf(owner)) Shown().Dismiss(*menu);
}

}  // namespace platform
