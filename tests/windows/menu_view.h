// What a menu hook (tests/windows/stubs/menu_hook.cpp), which runs in an agent's own thread, hands
// over of the menu that is open there. No other process can read a menu.
//
// Who wants to know makes the section, puts the hook on the thread, and sends a window of that
// thread the registered message; both bear the one name. When the answer is there, so is the view.
#pragma once

#include <windows.h>

#include <cstdint>

inline constexpr wchar_t kMenuViewName[] = L"KavroMenuView";
inline constexpr char kMenuHookExport[] = "TellMenu";

struct MenuViewItem {
  std::uint32_t id;
  std::uint32_t type;
  std::uint32_t state;
  RECT place;          // on the screen
  wchar_t label[260];  // of what the agent draws itself, the text that it keeps for that
};

struct MenuView {
  std::uint32_t count;  // 0: no menu is open
  MenuViewItem items[200];
};
