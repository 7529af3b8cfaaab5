// In front of the Windows headers, whose macros rename its constants.
#include "app/agent_messages.h"

#include "tests/windows/driver/hands.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string>

#include "tests/windows/driver/text.h"

namespace driver {

namespace {

// How long something that is to come is waited for, and how often it is looked for.
constexpr DWORD kPatience = 30000;
constexpr DWORD kGlance = 20;

bool WaitUntil(const std::function<bool()>& condition) {
  for (DWORD waited = 0; waited < kPatience; waited += kGlance) {
    if (condition()) return true;
    Sleep(kGlance);
  }
  return condition();
}

std::wstring ClassOf(HWND window) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  return name;
}

BOOL CALLBACK NoteIcon(HWND window, LPARAM icons) {
  // "__winex11_tray_icon" of Wine 8, "__wine_tray_icon" of later ones.
  if (ClassOf(window).find(L"_tray_icon") != std::wstring::npos && IsWindowVisible(window))
    reinterpret_cast<std::vector<HWND>*>(icons)->push_back(window);
  return TRUE;
}

RECT PlaceOf(HWND window) {
  RECT place = {};
  GetWindowRect(window, &place);
  return place;
}

// From left to right, which is the order in which they were added.
std::vector<HWND> IconWindows() {
  std::vector<HWND> icons;
  EnumChildWindows(GetDesktopWindow(), NoteIcon, reinterpret_cast<LPARAM>(&icons));
  std::sort(icons.begin(), icons.end(),
            [](HWND left, HWND right) { return PlaceOf(left).left < PlaceOf(right).left; });
  return icons;
}

struct WindowSearch {
  DWORD processId;
  std::wstring className;
  bool visible;
  HWND found;
};

BOOL CALLBACK TakeWindow(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<WindowSearch*>(parameter);
  DWORD processId = 0;
  GetWindowThreadProcessId(window, &processId);
  if (processId != search.processId || ClassOf(window) != search.className ||
      (search.visible && !IsWindowVisible(window)))
    return TRUE;
  search.found = window;
  return FALSE;
}

HWND WindowOf(DWORD processId, const wchar_t* className, bool visible) {
  WindowSearch search = {processId, className, visible, nullptr};
  EnumWindows(TakeWindow, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND MenuOf(DWORD processId) { return WindowOf(processId, L"#32768", true); }
HWND BoxOf(DWORD processId) { return WindowOf(processId, L"#32770", true); }

void PressButton(DWORD down, DWORD up) {
  std::array<INPUT, 2> input = {};
  for (INPUT& one : input) one.type = INPUT_MOUSE;
  input[0].mi.dwFlags = down;
  input[1].mi.dwFlags = up;
  SendInput(2, input.data(), sizeof(INPUT));
}

void SendKeys(const std::vector<std::uint32_t>& keys, DWORD flags) {
  for (const std::uint32_t key : keys) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = static_cast<WORD>(key);
    input.ki.dwFlags = flags;
    SendInput(1, &input, sizeof input);
  }
}

void UseMouseOn(const RECT& place, MouseUse use) {
  SetCursorPos((place.left + place.right) / 2, (place.top + place.bottom) / 2);
  if (use == MouseUse::kRightClick)
    PressButton(MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP);
  else
    PressButton(MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP);
  if (use == MouseUse::kDoubleClick) PressButton(MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP);
}

bool MenuIsGone(DWORD processId) {
  return WaitUntil([&] { return MenuOf(processId) == nullptr; });
}

}  // namespace

bool UseMouseOnIcon(std::size_t index, std::size_t count, MouseUse use) {
  if (!WaitUntil([&] { return IconWindows().size() == count; })) return false;
  UseMouseOn(PlaceOf(IconWindows()[index]), use);
  return true;
}

HWND TrayWindowOf(DWORD processId) {
  return WindowOf(processId, Native(vgl::kTrayWindowClass), false);
}

std::optional<std::vector<ShownEntry>> LookAtMenu(DWORD processId) {
  if (!WaitUntil([&] { return MenuOf(processId) != nullptr; })) return std::nullopt;
  return ReadOpenMenu(TrayWindowOf(processId));
}

std::string ChooseFromMenu(DWORD processId, std::uint32_t id) {
  const std::optional<std::vector<ShownEntry>> menu = LookAtMenu(processId);
  if (!menu) return "shows no menu";
  const auto chosen = std::find_if(menu->begin(), menu->end(), [&](const ShownEntry& shown) {
    return shown.entry.id == id && shown.entry.CanBeChosen() && !IsRectEmpty(&shown.place);
  });
  if (chosen == menu->end())
    return "shows a menu in which entry " + std::to_string(id) + " can't be chosen";
  UseMouseOn(chosen->place, MouseUse::kClick);
  return MenuIsGone(processId) ? "" : "doesn't close its menu";
}

// By a key, which reaches a menu through its owner, whether that is in front or not.
bool EscapeFromMenu(DWORD processId) {
  if (!WaitUntil([&] { return MenuOf(processId) != nullptr; })) return false;
  PostMessageW(TrayWindowOf(processId), WM_KEYDOWN, VK_ESCAPE, 0);
  return MenuIsGone(processId);
}

bool AnswerBox(DWORD processId) {
  HWND box = nullptr;
  if (!WaitUntil([&] { return (box = BoxOf(processId)) != nullptr; })) return false;
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  return WaitUntil([&] { return !IsWindow(box); });
}

void PressKeys(const std::vector<std::uint32_t>& keys) { SendKeys(keys, 0); }
void ReleaseKeys(const std::vector<std::uint32_t>& keys) { SendKeys(keys, KEYEVENTF_KEYUP); }

}  // namespace driver
