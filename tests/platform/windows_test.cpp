// Window classes, windows, and where keyboard and mouse are.
#include <algorithm>

#include "tests/platform/input_fixture.h"
#include "tests/platform/windowing_fixture.h"

namespace platform {
namespace {

class Windows : public WindowingContract {
 protected:
  // The messages of a window that say how it came and went.
  std::vector<std::uint32_t> LifeOf(HWND window) {
    std::vector<std::uint32_t> life;
    for (const std::uint32_t message : Messages(window)) {
      if (message == WM_NCCREATE || message == WM_CREATE || message == WM_CLOSE ||
          message == WM_DESTROY || message == WM_NCDESTROY) {
        life.push_back(message);
      }
    }
    return life;
  }

  // A window's caption, as the system tells it for a room of that many characters.
  std::u16string CaptionOf(HWND window, std::int32_t chars = 100) {
    std::u16string text(100, u'?');
    const std::int32_t length = windowing.GetWindowTextW(window, text.data(), chars);
    EXPECT_EQ(text[static_cast<std::size_t>(length)], u'\0');
    text.resize(static_cast<std::size_t>(length));
    return text;
  }

  HWND GoneWindow() {
    const HWND window = MakeWindow();
    EXPECT_TRUE(windowing.DestroyWindow(window));
    return window;
  }
};

using WindowClasses = Windows;
using Captions = Windows;
using Styles = Windows;
using Parents = Windows;
using KeyboardAndMouse = Windows;
using Numbers = std::vector<std::uint32_t>;

LRESULT DefaultProcedure(HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
  return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
}

// --- Classes

TEST_F(WindowClasses, AClassIsRegisteredOnce) {
  WindowClass windowClass;
  windowClass.style = CS_BYTEALIGNWINDOW;
  windowClass.procedure = DefaultProcedure;
  windowClass.instance = os.modules.GetModuleHandleW(nullptr);
  windowClass.background = 6;  // a system colour's number plus 1
  windowClass.className = u"PlatformTestOnce";
  EXPECT_NE(windowing.RegisterClassW(windowClass), 0);
  EXPECT_EQ(windowing.RegisterClassW(windowClass), 0);
  EXPECT_EQ(LastError(), ERROR_CLASS_ALREADY_EXISTS);

  windowClass.className = u"PLATFORMTESTonce";  // case makes no difference
  EXPECT_EQ(windowing.RegisterClassW(windowClass), 0);
  EXPECT_EQ(LastError(), ERROR_CLASS_ALREADY_EXISTS);
}

TEST_F(WindowClasses, WindowsOfTwoClassesHaveTwoProcedures) {
  WindowClass windowClass;
  windowClass.procedure = [](HWND window, std::uint32_t message, WPARAM wParam,
                             LPARAM lParam) -> LRESULT {
    if (message == WM_USER) return 77;
    return DefaultProcedure(window, message, wParam, lParam);
  };
  windowClass.instance = os.modules.GetModuleHandleW(nullptr);
  windowClass.className = u"PlatformTestSecond";
  ASSERT_NE(windowing.RegisterClassW(windowClass), 0);
  const HWND second = windowing.CreateWindowExW(0, u"PlatformTestSecond", u"", WS_OVERLAPPEDWINDOW,
                                                windowClass.instance);
  const HWND first = MakeWindow([](HWND, std::uint32_t message, WPARAM, LPARAM) {
    return message == WM_USER ? std::optional<LRESULT>(11) : std::nullopt;
  });
  EXPECT_EQ(windowing.SendMessageW(first, WM_USER, 0, 0), 11);
  EXPECT_EQ(windowing.SendMessageW(second, WM_USER, 0, 0), 77);
  EXPECT_TRUE(windowing.DestroyWindow(second));
}

TEST_F(WindowClasses, AWindowNeedsAClass) {
  EXPECT_EQ(windowing.CreateWindowExW(0, u"PlatformTestMissing", u"", WS_OVERLAPPEDWINDOW,
                                      os.modules.GetModuleHandleW(nullptr)),
            HWND{});
  // Wine says 1411, that the class doesn't exist.
  EXPECT_TRUE(HoldsExcept(OnWine(), LastError() == ERROR_CANNOT_FIND_WND_CLASS)) << LastError();
}

// --- Coming and going

TEST_F(Windows, TheProcedureIsToldOfTheWindowBeforeItsHandleIsGiven) {
  HWND told{};
  const HWND window = MakeWindow([&](HWND w, std::uint32_t message, WPARAM, LPARAM) {
    if (message == WM_CREATE) told = w;
    return std::nullopt;
  });
  EXPECT_NE(window, HWND{});
  EXPECT_EQ(told, window);
  EXPECT_EQ(LifeOf(window), (Numbers{WM_NCCREATE, WM_CREATE}));
}

TEST_F(Windows, AWindowThatRefusesItsFirstMessageIsNotMade) {
  HWND refused{};
  EXPECT_EQ(MakeWindow([&](HWND w, std::uint32_t message, WPARAM, LPARAM) {
              if (message != WM_NCCREATE) return std::optional<LRESULT>();
              refused = w;
              return std::optional<LRESULT>(0);
            }),
            HWND{});
  EXPECT_NE(refused, HWND{});
  EXPECT_FALSE(windowing.IsWindow(refused));
}

TEST_F(Windows, AWindowThatRefusesItsCreationIsDestroyed) {
  HWND refused{};
  EXPECT_EQ(MakeWindow([&](HWND w, std::uint32_t message, WPARAM, LPARAM) {
              if (message != WM_CREATE) return std::optional<LRESULT>();
              refused = w;
              return std::optional<LRESULT>(-1);
            }),
            HWND{});
  EXPECT_FALSE(windowing.IsWindow(refused));
  EXPECT_EQ(LifeOf(refused).back(), WM_NCDESTROY);
}

TEST_F(Windows, DestroyingTellsTheProcedureTwice) {
  const HWND window = MakeWindow();
  EXPECT_TRUE(windowing.DestroyWindow(window));
  EXPECT_EQ(LifeOf(window), (Numbers{WM_NCCREATE, WM_CREATE, WM_DESTROY, WM_NCDESTROY}));
}

TEST_F(Windows, AWindowIsOneUntilItsLastMessage) {
  bool atDestroy = false;
  const HWND window = MakeWindow([&](HWND w, std::uint32_t message, WPARAM, LPARAM) {
    if (message == WM_DESTROY) atDestroy = windowing.IsWindow(w);
    return std::nullopt;
  });
  EXPECT_TRUE(windowing.IsWindow(window));
  EXPECT_TRUE(windowing.DestroyWindow(window));
  EXPECT_TRUE(atDestroy);
  EXPECT_FALSE(windowing.IsWindow(window));
}

TEST_F(Windows, WhatIsNoWindowIsNone) {
  EXPECT_FALSE(windowing.IsWindow(HWND{}));
  EXPECT_FALSE(windowing.IsWindow(HWND{0x7FFFFFF0}));
  EXPECT_FALSE(windowing.IsWindow(HWND{~std::uint64_t{0}}));
}

TEST_F(Windows, AWindowThatIsGoneCannotBeDestroyed) {
  // Wine takes it for a window of another thread, and says 5.
  EXPECT_FALSE(windowing.DestroyWindow(GoneWindow()));
  EXPECT_TRUE(HoldsExcept(OnWine(), LastError() == ERROR_INVALID_WINDOW_HANDLE)) << LastError();
  EXPECT_FALSE(windowing.DestroyWindow(HWND{}));
  EXPECT_TRUE(HoldsExcept(OnWine(), LastError() == ERROR_INVALID_WINDOW_HANDLE)) << LastError();
}

TEST_F(Windows, AWindowIsDestroyedByItsOwnThreadOnly) {
  const HWND window = MakeWindow();
  RunInAnotherThread([&] {
    EXPECT_FALSE(windowing.DestroyWindow(window));
    EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
  });
  EXPECT_TRUE(windowing.IsWindow(window));
}

TEST_F(Windows, AWindowGoesWithItsThread) {
  HWND window{};
  RunInAnotherThread([&] { window = MakeWindow(); });
  EXPECT_NE(window, HWND{});
  EXPECT_FALSE(windowing.IsWindow(window));
}

TEST_F(Windows, ClosingDestroysUnlessTheProcedureSaysOtherwise) {
  const HWND window = MakeWindow();
  EXPECT_EQ(windowing.SendMessageW(window, WM_CLOSE, 0, 0), 0);
  EXPECT_FALSE(windowing.IsWindow(window));
  EXPECT_EQ(LifeOf(window), (Numbers{WM_NCCREATE, WM_CREATE, WM_CLOSE, WM_DESTROY, WM_NCDESTROY}));

  const HWND stubborn = MakeWindow([](HWND, std::uint32_t message, WPARAM, LPARAM) {
    return message == WM_CLOSE ? std::optional<LRESULT>(0) : std::nullopt;
  });
  windowing.SendMessageW(stubborn, WM_CLOSE, 0, 0);
  EXPECT_TRUE(windowing.IsWindow(stubborn));
}

// --- Finding

TEST_F(Windows, AWindowIsFoundByClassAndTitle) {
  const HWND window = MakeWindow({}, u"PlatformTest A");
  const HWND other = MakeWindow({}, u"PlatformTest B");
  EXPECT_EQ(windowing.FindWindowW(kClass, u"PlatformTest A"), window);
  EXPECT_EQ(windowing.FindWindowW(kClass, u"PlatformTest B"), other);
  EXPECT_EQ(windowing.FindWindowW(kClass, u"PlatformTest C"), HWND{});
  EXPECT_EQ(windowing.FindWindowW(u"PlatformTestMissing", u"PlatformTest A"), HWND{});
}

TEST_F(Windows, WhatIsNotToldMayBeAnything) {
  const HWND window = MakeWindow({}, u"PlatformTest A");
  EXPECT_EQ(windowing.FindWindowW(kClass, nullptr), window);
  EXPECT_EQ(windowing.FindWindowW(nullptr, u"PlatformTest A"), window);
}

TEST_F(Windows, FindingIgnoresCase) {
  const HWND window = MakeWindow({}, u"PlatformTest A");
  EXPECT_EQ(windowing.FindWindowW(u"PLATFORMtestWINDOW", u"platformTEST a"), window);
}

TEST_F(Windows, AWindowOfAnotherThreadIsFound) {
  const HWND window = MakeWindow({}, u"PlatformTest A");
  RunInAnotherThread([&] { EXPECT_EQ(windowing.FindWindowW(kClass, u"PlatformTest A"), window); });
}

TEST_F(Windows, AWindowThatIsGoneIsNotFound) {
  MakeWindow({}, u"PlatformTest A");
  windowing.DestroyWindow(windowing.FindWindowW(kClass, u"PlatformTest A"));
  EXPECT_EQ(windowing.FindWindowW(kClass, u"PlatformTest A"), HWND{});
}

// --- Captions

TEST_F(Captions, AWindowIsMadeWithOne) {
  EXPECT_EQ(CaptionOf(MakeWindow({}, u"PlatformTest \u05D0")), u"PlatformTest \u05D0");
}

TEST_F(Captions, AnotherOneCanBeSet) {
  const HWND window = MakeWindow({}, u"PlatformTest A");
  EXPECT_TRUE(windowing.SetWindowTextW(window, u"PlatformTest B, which is longer"));
  EXPECT_EQ(CaptionOf(window), u"PlatformTest B, which is longer");
  EXPECT_EQ(windowing.FindWindowW(kClass, u"PlatformTest A"), HWND{});
  EXPECT_EQ(windowing.FindWindowW(kClass, u"PlatformTest B, which is longer"), window);
}

TEST_F(Captions, OneThatDoesNotFitIsCut) {
  const HWND window = MakeWindow({}, u"123456");
  EXPECT_EQ(CaptionOf(window, 7), u"123456");
  EXPECT_EQ(CaptionOf(window, 6), u"12345");
  EXPECT_EQ(CaptionOf(window, 1), u"");
}

TEST_F(Captions, NoRoomIsLeftAlone) {
  const HWND window = MakeWindow({}, u"123456");
  char16_t text[] = u"x";
  EXPECT_EQ(windowing.GetWindowTextW(window, text, 0), 0);
  EXPECT_EQ(text[0], u'x');
}

TEST_F(Captions, AnEmptyOneHasNoLength) {
  EXPECT_EQ(CaptionOf(MakeWindow({}, u"")), u"");
  const HWND window = MakeWindow({}, u"PlatformTest A");
  EXPECT_TRUE(windowing.SetWindowTextW(window, u""));
  EXPECT_EQ(CaptionOf(window), u"");
}

TEST_F(Captions, NullIsAnEmptyOne) {
  const HWND window = MakeWindow({}, u"PlatformTest A");
  EXPECT_TRUE(windowing.SetWindowTextW(window, nullptr));
  EXPECT_EQ(CaptionOf(window), u"");
}

TEST_F(Captions, ALongOneIsKeptWhole) {
  const HWND window = MakeWindow({}, u"PlatformTest A");
  const std::u16string longText(5000, u'c');
  EXPECT_TRUE(windowing.SetWindowTextW(window, longText.c_str()));
  std::u16string told(6000, u'?');
  EXPECT_EQ(windowing.GetWindowTextW(window, told.data(), 6000), 5000);
  EXPECT_EQ(std::u16string(told.c_str()), longText);
}

TEST_F(Captions, AWindowThatIsGoneHasNone) {
  const HWND gone = GoneWindow();
  char16_t text[10] = {};
  os.process.SetLastError(7777);
  EXPECT_EQ(windowing.GetWindowTextW(gone, text, 10), 0);
  EXPECT_EQ(LastError(), ERROR_INVALID_WINDOW_HANDLE);
  os.process.SetLastError(7777);
  EXPECT_FALSE(windowing.SetWindowTextW(gone, u"x"));
  EXPECT_EQ(LastError(), ERROR_INVALID_WINDOW_HANDLE);
}

// --- Showing

TEST_F(Windows, ShowingTellsWhetherTheWindowWasVisible) {
  constexpr std::int32_t kShow = 5;
  const HWND window = MakeWindow();
  EXPECT_FALSE(windowing.ShowWindow(window, SW_HIDE));
  EXPECT_FALSE(windowing.ShowWindow(window, kShow));
  EXPECT_TRUE(windowing.ShowWindow(window, kShow));
  EXPECT_TRUE(windowing.ShowWindow(window, SW_HIDE));
  EXPECT_FALSE(windowing.ShowWindow(window, SW_HIDE));
}

TEST_F(Windows, OnlyAWindowIsUpdated) {
  EXPECT_TRUE(windowing.UpdateWindow(MakeWindow()));
  // Wine doesn't tell that there is no window.
  EXPECT_TRUE(HoldsExcept(OnWine(), !windowing.UpdateWindow(GoneWindow())));
}

// --- Styles

TEST_F(Styles, AWindowHasTheOneItWasMadeWith) {
  const auto style =
      static_cast<std::uint64_t>(windowing.GetWindowLongPtrW(MakeWindow(), GWL_STYLE));
  EXPECT_EQ(style & WS_OVERLAPPEDWINDOW, WS_OVERLAPPEDWINDOW);
  EXPECT_EQ(style & (WS_CHILD | WS_MINIMIZE), 0u);
}

TEST_F(Styles, TheStyleTellsWhetherTheWindowIsShown) {
  constexpr std::int32_t kShow = 5;
  const HWND window = MakeWindow();
  EXPECT_EQ(windowing.GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE, 0);
  windowing.ShowWindow(window, kShow);
  EXPECT_EQ(windowing.GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE, WS_VISIBLE);
  windowing.ShowWindow(window, SW_HIDE);
  EXPECT_EQ(windowing.GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE, 0);
}

TEST_F(Styles, AWindowThatIsGoneHasNone) {
  const HWND gone = GoneWindow();
  os.process.SetLastError(7777);
  EXPECT_EQ(windowing.GetWindowLongPtrW(gone, GWL_STYLE), 0);
  EXPECT_EQ(LastError(), ERROR_INVALID_WINDOW_HANDLE);
}

// --- Parents

TEST_F(Parents, ATopLevelWindowHasNone) {
  const HWND window = MakeWindow();
  os.process.SetLastError(7777);
  EXPECT_EQ(windowing.GetParent(window), HWND{});
  EXPECT_EQ(LastError(), 7777);
}

TEST_F(Parents, AMessageBoxHasItsOwner) {
  constexpr std::uint64_t kLook = 1;
  HWND parent{};
  const HWND owner = MakeWindow([&](HWND window, std::uint32_t message, WPARAM id, LPARAM) {
    if (message == WM_TIMER && id == kLook) {
      const HWND box = windowing.FindWindowW(u"#32770", u"PlatformTest box");
      if (box != HWND{} && windowing.PostMessageW(box, WM_COMMAND, IDOK, 0)) {
        parent = windowing.GetParent(box);
        windowing.KillTimer(window, kLook);
      }
    }
    return std::nullopt;
  });
  windowing.SetTimer(owner, kLook, 50);
  EXPECT_EQ(windowing.MessageBoxW(owner, u"text", u"PlatformTest box", MB_OK), IDOK);
  EXPECT_EQ(parent, owner);
}

TEST_F(Parents, AWindowThatIsGoneHasNone) {
  const HWND gone = GoneWindow();
  os.process.SetLastError(7777);
  EXPECT_EQ(windowing.GetParent(gone), HWND{});
  EXPECT_EQ(LastError(), ERROR_INVALID_WINDOW_HANDLE);
}

// --- Keyboard and mouse

TEST_F(KeyboardAndMouse, AWindowIsBroughtToTheFront) {
  EXPECT_TRUE(windowing.SetForegroundWindow(MakeWindow()));
}

TEST_F(KeyboardAndMouse, AWindowThatIsGoneIsNotBroughtToTheFront) {
  const HWND gone = GoneWindow();
  os.process.SetLastError(7777);
  EXPECT_FALSE(windowing.SetForegroundWindow(gone));
  EXPECT_EQ(LastError(), ERROR_INVALID_WINDOW_HANDLE);
}

TEST_F(KeyboardAndMouse, TheWindowThatHadTheKeysIsTold) {
  const HWND window = MakeWindow();
  windowing.SetFocus(window);
  EXPECT_EQ(windowing.SetFocus(window), window);
  EXPECT_EQ(windowing.SetFocus(HWND{}), window);
  EXPECT_EQ(windowing.SetFocus(HWND{}), HWND{});
}

TEST_F(KeyboardAndMouse, KeysGoToNoWindowOfAnotherThread) {
  const HWND window = MakeWindow();
  windowing.SetFocus(window);
  RunInAnotherThread([&] {
    os.process.SetLastError(7777);
    EXPECT_EQ(windowing.SetFocus(window), HWND{});
    EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
  });
  EXPECT_EQ(windowing.SetFocus(HWND{}), window);
}

TEST_F(KeyboardAndMouse, KeysGoToNoWindowThatIsGone) {
  const HWND gone = GoneWindow();
  os.process.SetLastError(7777);
  EXPECT_EQ(windowing.SetFocus(gone), HWND{});
  EXPECT_EQ(LastError(), ERROR_INVALID_WINDOW_HANDLE);
}

TEST_F(KeyboardAndMouse, KeysThatNobodyHoldsAreUp) {
  for (const std::int32_t key : {VK_SHIFT, VK_CONTROL, VK_SPACE})
    EXPECT_GE(windowing.GetAsyncKeyState(key), 0) << key;
}

TEST_F(KeyboardAndMouse, AKeyIsDownWhileItIsHeld) {
  const auto isDown = [&] { return windowing.GetAsyncKeyState(VK_CONTROL) < 0; };
  EXPECT_TRUE(WaitUntil([&] {
    PressKey(VK_CONTROL);  // a key that is held repeats
    return isDown();
  }));
  EXPECT_GE(windowing.GetAsyncKeyState(VK_SHIFT), 0);
  ReleaseKey(VK_CONTROL);
  EXPECT_TRUE(WaitUntil([&] { return !isDown(); }));
}

TEST_F(KeyboardAndMouse, TheMouseIsWhereItWasMoved) {
  MoveMouse({300, 200});
  Point place;
  EXPECT_TRUE(WaitUntil([&] {
    return windowing.GetCursorPos(&place) && place == Point{300, 200};
  }));
}

// --- The system's own handling

TEST_F(Windows, TheSystemAllowsAWindowAndIgnoresWhatItDoesNotKnow) {
  const HWND window = MakeWindow();
  EXPECT_EQ(windowing.DefWindowProcW(window, WM_USER + 5, 1, 2), 0);
  EXPECT_EQ(windowing.DefWindowProcW(window, WM_COMMAND, 1, 2), 0);
  EXPECT_EQ(windowing.DefWindowProcW(window, WM_TIMER, 1, 0), 0);
}

TEST_F(Windows, TheTimeOfADoubleClickIsShort) {
  const std::uint32_t time = windowing.GetDoubleClickTime();
  EXPECT_GE(time, 1u);
  EXPECT_LE(time, 5000u);  // the longest that can be set
}

}  // namespace
}  // namespace platform
