// Keyboard and mouse. Icons are found as the windows in which Wine shows them; where Windows' own
// shell has them, nobody outside knows.
#include <array>
#include <cwchar>
#include <vector>

#include "tests/platform/input_fixture.h"

#include <windows.h>

namespace platform {
namespace {

BOOL CALLBACK NoteIcon(::HWND window, ::LPARAM icons) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  // "__winex11_tray_icon" of Wine 8, "__wine_tray_icon" of later ones.
  if (std::wcsstr(name, L"_tray_icon") != nullptr && IsWindowVisible(window))
    reinterpret_cast<std::vector<::HWND>*>(icons)->push_back(window);
  return TRUE;
}

std::vector<::HWND> IconWindows() {
  std::vector<::HWND> icons;
  EnumChildWindows(GetDesktopWindow(), NoteIcon, reinterpret_cast<::LPARAM>(&icons));
  return icons;
}

void Press(DWORD down, DWORD up) {
  std::array<INPUT, 2> input{};
  for (INPUT& one : input) one.type = INPUT_MOUSE;
  input[0].mi.dwFlags = down;
  input[1].mi.dwFlags = up;
  EXPECT_EQ(SendInput(2, input.data(), sizeof(INPUT)), 2u);
}

void SendKey(std::int32_t key, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = static_cast<WORD>(key);
  input.ki.dwFlags = flags;
  EXPECT_EQ(SendInput(1, &input, sizeof(INPUT)), 1u);
}

}  // namespace

bool UseMouseOnIcon(MouseUse use) {
  if (!WaitUntil([] { return IconWindows().size() == 1; })) return false;
  RECT place{};
  GetWindowRect(IconWindows()[0], &place);
  MoveMouse({(place.left + place.right) / 2, (place.top + place.bottom) / 2});
  if (use == MouseUse::kRightClick) {
    Press(MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP);
  } else {
    Press(MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP);
  }
  if (use == MouseUse::kDoubleClick) Press(MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP);
  return true;
}

void MoveMouse(Point place) { EXPECT_TRUE(SetCursorPos(place.x, place.y)); }
void PressKey(std::int32_t key) { SendKey(key, 0); }
void ReleaseKey(std::int32_t key) { SendKey(key, KEYEVENTF_KEYUP); }

HICON TestPicture() {
  // 32512 is the system's own picture of a program.
  return HICON{reinterpret_cast<std::uintptr_t>(LoadIconW(nullptr, MAKEINTRESOURCEW(32512)))};
}

}  // namespace platform
