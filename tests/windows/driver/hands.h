// A person's hands before a Windows desktop: the mouse on icons in the notification area, menus,
// message boxes, keys. As Wine has these; the icons are the windows in which it shows them.
//
// What has to be there first, an icon or a menu, is waited for, some seconds at most.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace driver {

enum class MouseUse { kClick, kDoubleClick, kRightClick };

// Uses the mouse on one of the icons in the notification area: the one at `index` in the order in
// which they were added. Waits until there are `count`. False when there aren't.
bool UseMouseOnIcon(std::size_t index, std::size_t count, MouseUse use);

// The agent's hidden window; null when the process has none.
HWND TrayWindowOf(DWORD processId);

// What a menu is told reaches it through its owner, whether that is in front or not. False when the
// process shows none.
bool ChooseFromMenu(DWORD processId, int position);
bool EscapeFromMenu(DWORD processId);

// Presses OK in a message box of the process. False when it shows none.
bool AnswerBox(DWORD processId);

// Keys by their numbers, VK_...
void PressKeys(const std::vector<std::uint32_t>& keys);
void ReleaseKeys(const std::vector<std::uint32_t>& keys);

}  // namespace driver
