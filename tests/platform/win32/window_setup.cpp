// What other programs do to windows of Windows.
#include "tests/platform/window_search_fixture.h"

#include <windows.h>

namespace platform {
namespace {

::HWND Native(HWND window) { return reinterpret_cast<::HWND>(static_cast<std::uintptr_t>(window)); }

}  // namespace

void SetWindowProperty(HWND window, const char16_t* name, HANDLE value) {
  EXPECT_TRUE(::SetPropW(Native(window), reinterpret_cast<const wchar_t*>(name),
                         reinterpret_cast<::HANDLE>(static_cast<std::uintptr_t>(value))));
}

HWND MakeControl(HWND dialog, std::int32_t id) {
  const ::HWND control = ::CreateWindowExW(
      0, L"STATIC", L"", WS_CHILD, 0, 0, 9, 9, Native(dialog),
      reinterpret_cast<::HMENU>(static_cast<std::intptr_t>(id)), nullptr, nullptr);
  return HWND{reinterpret_cast<std::uintptr_t>(control)};
}

bool IsAlwaysInFront(HWND window) {
  return (::GetWindowLongPtrW(Native(window), GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
}

}  // namespace platform
