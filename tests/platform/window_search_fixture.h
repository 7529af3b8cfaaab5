// What other programs do to windows, for the tests of searches.
#pragma once

#include <cstdint>

#include "tests/platform/windowing_fixture.h"

namespace platform {

// What only a backend can do; sim/window_setup.cpp and win32/window_setup.cpp give it.

// Keeps a number with a window under that name. It goes with the window.
void SetWindowProperty(HWND window, const char16_t* name, HANDLE value);
// A child of a window of the calling thread; it goes with that.
HWND MakeControl(HWND dialog, std::int32_t id);
bool IsAlwaysInFront(HWND window);

}  // namespace platform
