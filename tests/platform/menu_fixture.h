// The menus of KVRES.DLL, and the person before one that is shown.
#pragma once

#include <optional>
#include <string>

#include "tests/platform/library_fixture.h"
#include "tests/platform/windowing_fixture.h"

namespace platform {

// What only a backend can do; sim/menu_setup.cpp and win32/menu_setup.cpp give it.

// Whether the program shows a menu.
bool IsMenuShown();
// Chooses from the menu that is shown for `owner`, counting from 0 what can be chosen. Nothing of
// it is selected so far.
void ChooseFromMenu(HWND owner, int index);
// Has the next of what can be chosen selected, the first one at first. It is seen once the thread
// handles messages again.
void SelectNextInMenu(HWND owner);
// Closes it by Escape.
void EscapeFromMenu(HWND owner);

class MenuContract : public WindowingContract {
 protected:
  // A menu of KVRES.DLL, which must be there.
  OwnedMenu LoadTestMenu(std::uint16_t id) {
    const OwnedModule library(os.modules.LoadLibraryW(ResourceLibrary().c_str()));
    OwnedMenu menu(os.resources.LoadMenuW(library.get(), id));
    EXPECT_TRUE(menu) << "error " << LastError();
    return menu;
  }

  // What `mask` asks for, without the text's letters. Nothing when there is no such item.
  std::optional<MenuItemInfo> Info(HMENU menu, std::uint32_t item, std::uint32_t mask,
                                   bool byPosition = false) {
    MenuItemInfo info{.mask = mask};
    if (!menus.GetMenuItemInfoW(menu, item, byPosition, &info)) return std::nullopt;
    return info;
  }

  std::u16string Text(HMENU menu, std::uint32_t item, bool byPosition = false) {
    char16_t text[400] = {};
    MenuItemInfo info{.mask = MIIM_STRING, .typeData = text, .cch = 400};
    EXPECT_TRUE(menus.GetMenuItemInfoW(menu, item, byPosition, &info));
    EXPECT_EQ(info.cch, std::u16string(text).size());
    return text;
  }

  Menus& menus = os.menus;
};

}  // namespace platform
