// The person before a menu of Windows: keys, which reach a menu through its owner whether that is
// in front or not.
#include "tests/platform/menu_fixture.h"

#include <windows.h>

namespace platform {
namespace {

void Press(HWND owner, ::WPARAM key) {
  const auto window = reinterpret_cast<::HWND>(static_cast<std::uintptr_t>(owner));
  EXPECT_TRUE(::PostMessageW(window, WM_KEYDOWN, key, 0));
}

}  // namespace

bool IsMenuShown() { return ::FindWindowW(L"#32768", nullptr) != nullptr; }

void ChooseFromMenu(HWND owner, int index) {
  for (int i = 0; i <= index; ++i) Press(owner, VK_DOWN);
  Press(owner, VK_RETURN);
}

void SelectNextInMenu(HWND owner) { Press(owner, VK_DOWN); }

void EscapeFromMenu(HWND owner) { Press(owner, VK_ESCAPE); }

}  // namespace platform
