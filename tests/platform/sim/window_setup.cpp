// What other programs do to windows of the simulated machine.
#include "platform/sim/machine.h"
#include "platform/sim/text.h"
#include "tests/platform/window_search_fixture.h"

namespace platform {
namespace {

constexpr std::uint32_t kTopmost = 8;  // WS_EX_TOPMOST

sim::Window& At(HWND window) { return *sim::RunningProcess().machine().desktop().Find(window); }

LRESULT LeaveToTheSystem(HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
  return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

void SetWindowProperty(HWND window, const char16_t* name, HANDLE value) {
  At(window).properties[sim::FoldCase(name)] = static_cast<std::uint64_t>(value);
}

HWND MakeControl(HWND dialog, std::int32_t id) {
  Windowing& windowing = Os().windowing;
  windowing.RegisterClassW({.procedure = LeaveToTheSystem, .className = u"Control"});
  const HWND control = windowing.CreateWindowExW(0, u"Control", u"", WS_CHILD, HMODULE{});
  At(control).owner = dialog;
  At(control).controlId = id;
  return control;
}

bool IsAlwaysInFront(HWND window) { return (At(window).exStyle & kTopmost) != 0; }

}  // namespace platform
