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

}  // namespace

bool IsMenuShown() { return !Shown().List().empty(); }

void ChooseFromMenu(HWND owner, int index) {
  sim::OpenMenu* menu = MenuOf(owner);
  if (menu == nullptr) return;
  std::vector<sim::MenuItem> items = Shown().ItemsOf(*menu);
  std::erase_if(items, [](const sim::MenuItem& item) { return !item.CanBeChosen(); });
  EXPECT_TRUE(Shown().Choose(*menu, items.at(static_cast<std::size_t>(index)).id));
}

void EscapeFromMenu(HWND owner) {
  if (sim::OpenMenu* menu = MenuOf(owner)) Shown().Dismiss(*menu);
}

}  // namespace platform
