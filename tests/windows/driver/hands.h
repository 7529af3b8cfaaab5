// A person's hands before a Windows desktop: the mouse on icons in the notification area, menus,
// message boxes, keys. As Wine has these; the icons are the windows in which it shows them.
//
// What has to be there first, an icon or a menu, is waited for, half a minute at most.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/windows/driver/open_menu.h"

namespace driver {

enum class MouseUse { kClick, kDoubleClick, kRightClick };

// Uses the mouse on one of the icons in the notification area: the one at `index` in the order in
// which they were added. Waits until there are `count`. False when there aren't.
bool UseMouseOnIcon(std::size_t index, std::size_t count, MouseUse use);

// The agent's hidden window; null when the process has none.
HWND TrayWindowOf(DWORD processId);

// The menu that a process shows, from the top downwards. Nothing when it shows none.
std::optional<std::vector<ShownEntry>> LookAtMenu(DWORD processId);
// Clicks on an entry of it, by its id. Empty when that was done, else what stood against it.
std::string ChooseFromMenu(DWORD processId, std::uint32_t id);
// False when the process shows none.
bool EscapeFromMenu(DWORD processId);

// Presses OK in a message box of the process. False when it shows none.
bool AnswerBox(DWORD processId);

// Keys by their numbers, VK_...
void PressKeys(const std::vector<std::uint32_t>& keys);
void ReleaseKeys(const std::vector<std::uint32_t>& keys);

}  // namespace driver
