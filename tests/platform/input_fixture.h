// A person's hands: keyboard, mouse, and the mouse in the notification area.
#pragma once

#include "tests/platform/platform_test.h"

namespace platform {

enum class MouseUse { kClick, kDoubleClick, kRightClick };

// What only a backend can do; sim/input.cpp and win32/input.cpp give it.

// Uses the mouse on the only icon in the notification area; waits some seconds at most until it is
// the only one. False when it isn't, or when nothing can be done there for a person.
bool UseMouseOnIcon(MouseUse use);

void MoveMouse(Point place);
void PressKey(std::int32_t key);
void ReleaseKey(std::int32_t key);

// A picture that needn't be given back.
HICON TestPicture();

}  // namespace platform
