// The menu that an agent shows: what is in it, and where. Read in the agent's own thread, by a
// library that is put there (KVMENU.DLL, in the driver's folder).
#pragma once

#include <windows.h>

#include <optional>
#include <vector>

#include "desk/menu_lines.h"

namespace driver {

struct ShownEntry {
  desk::MenuLine entry;
  RECT place = {};  // on the screen
};

// From the top downwards. Nothing when the window's thread shows no menu, or can't be asked.
std::optional<std::vector<ShownEntry>> ReadOpenMenu(HWND trayWindow);

}  // namespace driver
