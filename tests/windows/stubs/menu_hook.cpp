// The hook that tells what stands in an agent's open menu (tests/windows/menu_view.h).
#include "tests/windows/menu_view.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr UINT kGetMenu = 0x1E1;  // MN_GETHMENU

BOOL CALLBACK TakeMenuWindow(HWND window, LPARAM found) {
  wchar_t name[16] = {};
  GetClassNameW(window, name, 16);
  if (lstrcmpW(name, L"#32768") != 0 || !IsWindowVisible(window)) return TRUE;
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

MenuViewItem ViewOf(HWND window, HMENU menu, UINT position) {
  MenuViewItem view = {};
  MENUITEMINFOW info = {};
  info.cbSize = sizeof info;
  info.fMask = MIIM_ID | MIIM_FTYPE | MIIM_STATE | MIIM_STRING | MIIM_DATA;
  info.dwTypeData = view.label;
  info.cch = static_cast<UINT>(std::size(view.label));
  if (!GetMenuItemInfoW(menu, position, TRUE, &info)) return view;
  view.id = info.wID;
  view.type = info.fType;
  view.state = info.fState;
  if ((info.fType & MFT_OWNERDRAW) != 0 && info.dwItemData != 0)
    lstrcpynW(view.label, reinterpret_cast<const wchar_t*>(info.dwItemData),
              static_cast<int>(std::size(view.label)));
  GetMenuItemRect(window, menu, position, &view.place);
  return view;
}

void TellOpenMenu(MenuView& view) {
  view.count = 0;
  HWND window = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), TakeMenuWindow, reinterpret_cast<LPARAM>(&window));
  if (window == nullptr) return;
  const HMENU menu = reinterpret_cast<HMENU>(SendMessageW(window, kGetMenu, 0, 0));
  const int count = std::min(GetMenuItemCount(menu), static_cast<int>(std::size(view.items)));
  for (int i = 0; i < count; ++i)
    view.items[view.count++] = ViewOf(window, menu, static_cast<UINT>(i));
}

void TellSection() {
  const HANDLE section = OpenFileMappingW(FILE_MAP_WRITE, FALSE, kMenuViewName);
  if (section == nullptr) return;
  void* const view = MapViewOfFile(section, FILE_MAP_WRITE, 0, 0, sizeof(MenuView));
  if (view != nullptr) {
    TellOpenMenu(*static_cast<MenuView*>(view));
    UnmapViewOfFile(view);
  }
  CloseHandle(section);
}

}  // namespace

extern "C" LRESULT CALLBACK TellMenu(int code, WPARAM wParam, LPARAM lParam) {
  const auto* const call = reinterpret_cast<const CWPSTRUCT*>(lParam);
  if (code == HC_ACTION && call->message == RegisterWindowMessageW(kMenuViewName)) TellSection();
  return CallNextHookEx(nullptr, code, wParam, lParam);
}
