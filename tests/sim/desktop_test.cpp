// What a test sees and does at the simulated machine's keyboard, mouse and screen.
#include <gtest/gtest.h>

#include "platform/sim/machine.h"

namespace sim {
namespace {

using namespace platform;

class SimulatedDesktop : public testing::Test {
 protected:
  static HWND MakeWindow() {
    Os().windowing.RegisterClassW(  // once is enough
        {.procedure =
             [](HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
               return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
             },
         .className = u"Plain"});
    return Os().windowing.CreateWindowExW(0, u"Plain", u"", WS_OVERLAPPEDWINDOW, HMODULE{});
  }

  Machine machine;
  Inside inside{machine};
  Desktop& desktop = machine.desktop();
  Windowing& windowing = Os().windowing;
};

TEST_F(SimulatedDesktop, TheWindowInFrontIsTheOneThatWasBroughtThereLast) {
  const HWND first = MakeWindow();
  const HWND second = MakeWindow();
  EXPECT_EQ(desktop.foreground(), HWND{});
  windowing.SetForegroundWindow(first);
  windowing.SetForegroundWindow(second);
  EXPECT_EQ(desktop.foreground(), second);
}

TEST_F(SimulatedDesktop, AWindowThatIsNotAllowedToTheFrontStaysBehind) {
  const HWND window = MakeWindow();
  inside.process().FailNext("SetForegroundWindow", ERROR_ACCESS_DENIED);
  EXPECT_FALSE(windowing.SetForegroundWindow(window));
  EXPECT_EQ(desktop.foreground(), HWND{});
}

TEST_F(SimulatedDesktop, AWindowThatGoesIsNoLongerInFrontAndHasNoKeys) {
  const HWND beside = MakeWindow();
  const HWND window = MakeWindow();
  windowing.SetForegroundWindow(window);
  windowing.SetFocus(window);
  EXPECT_EQ(desktop.FocusBeside(beside), window);
  windowing.DestroyWindow(window);
  EXPECT_EQ(desktop.foreground(), HWND{});
  EXPECT_EQ(desktop.FocusBeside(beside), HWND{});
}

TEST_F(SimulatedDesktop, AProcessThatEndsHasNothingInFront) {
  machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    Os().windowing.SetForegroundWindow(MakeWindow());
    Os().process.Sleep(10);
    return 0U;
  });
  Os().process.Sleep(5);
  EXPECT_NE(desktop.foreground(), HWND{});
  Os().process.Sleep(10);
  EXPECT_EQ(desktop.foreground(), HWND{});
}

TEST_F(SimulatedDesktop, EachThreadHasAWindowForItsKeys) {
  const HWND own = MakeWindow();
  windowing.SetFocus(own);
  machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    Os().windowing.SetFocus(MakeWindow());
    Os().process.Sleep(INFINITE);
    return 0U;
  });
  Os().process.Sleep(1);
  EXPECT_EQ(desktop.FocusBeside(own), own);
}

TEST_F(SimulatedDesktop, KeysAreHeldUntilTheyAreReleased) {
  desktop.HoldKey(VK_SHIFT);
  desktop.HoldKey(VK_SPACE);
  EXPECT_LT(windowing.GetAsyncKeyState(VK_SHIFT), 0);
  EXPECT_LT(windowing.GetAsyncKeyState(VK_SPACE), 0);
  EXPECT_EQ(windowing.GetAsyncKeyState(VK_CONTROL), 0);
  desktop.ReleaseKey(VK_SHIFT);
  desktop.ReleaseKey(VK_SHIFT);
  EXPECT_EQ(windowing.GetAsyncKeyState(VK_SHIFT), 0);
  EXPECT_LT(windowing.GetAsyncKeyState(VK_SPACE), 0);
}

TEST_F(SimulatedDesktop, TheMouseIsWhereItWasMoved) {
  Point place{5, 5};
  EXPECT_TRUE(windowing.GetCursorPos(&place));
  EXPECT_EQ(place, (Point{0, 0}));
  desktop.MoveMouse({-40, 900});  // a second screen may begin left of the first
  EXPECT_TRUE(windowing.GetCursorPos(&place));
  EXPECT_EQ(place, (Point{-40, 900}));
}

TEST_F(SimulatedDesktop, WithoutAccessNobodyKnowsWhereTheMouseIs) {
  Point place{5, 5};
  inside.process().FailNext("GetCursorPos", ERROR_ACCESS_DENIED);
  EXPECT_FALSE(windowing.GetCursorPos(&place));
  EXPECT_EQ(Os().process.GetLastError(), ERROR_ACCESS_DENIED);
}

TEST_F(SimulatedDesktop, ATestMayMakeAWindowAChild) {
  const HWND parent = MakeWindow();
  const HWND child = MakeWindow();
  Window& window = *desktop.Find(child);
  window.style |= WS_CHILD;
  window.owner = parent;
  EXPECT_EQ(windowing.GetWindowLongPtrW(child, GWL_STYLE) & WS_CHILD, WS_CHILD);
  EXPECT_EQ(windowing.GetParent(child), parent);
}

TEST_F(SimulatedDesktop, OnlyTheStyleIsKnownOfAWindow) {
  EXPECT_EQ(windowing.GetWindowLongPtrW(MakeWindow(), -20), 0);
}

}  // namespace
}  // namespace sim
