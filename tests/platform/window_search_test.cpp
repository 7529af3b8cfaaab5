// Finding windows: all of the desktop's, by what is kept with them, and the children of one; and
// bringing one in front of all others.
#include <algorithm>
#include <utility>
#include <vector>

#include "tests/platform/process_fixture.h"
#include "tests/platform/window_search_fixture.h"

namespace platform {
namespace {

using Handles = std::vector<HWND>;

class WindowEnumeration : public WindowingContract {
 protected:
  // All that an enumeration comes to, in its order, which says nothing.
  Handles All() {
    Handles found;
    EXPECT_TRUE(windowing.EnumWindows(
        [](HWND window, LPARAM argument) {
          reinterpret_cast<Handles*>(argument)->push_back(window);
          return 1;
        },
        reinterpret_cast<LPARAM>(&found)));
    return found;
  }
  std::ptrdiff_t TimesFound(HWND window) { return std::ranges::count(All(), window); }

  HWND FindByTitle(const std::u16string& title) {
    for (const HWND window : All()) {
      char16_t text[MAX_PATH] = {};
      windowing.GetWindowTextW(window, text, MAX_PATH);
      if (text == title) return window;
    }
    return HWND{};
  }

  // A window that is no more.
  HWND Gone() {
    const HWND window = MakeWindow();
    windowing.DestroyWindow(window);
    return window;
  }
};

using WindowProperties = WindowEnumeration;
using WindowPlaces = WindowEnumeration;
using DialogItems = WindowEnumeration;

// --- The desktop's windows

TEST_F(WindowEnumeration, ItComesToEachWindowOnceHiddenOrNot) {
  const HWND hidden = MakeWindow();
  const HWND shown = MakeWindow();
  windowing.ShowWindow(shown, 1);
  EXPECT_EQ(TimesFound(hidden), 1);
  EXPECT_EQ(TimesFound(shown), 1);
}

TEST_F(WindowEnumeration, AWindowThatIsGoneIsNotFound) { EXPECT_EQ(TimesFound(Gone()), 0); }

TEST_F(WindowEnumeration, AChildIsNotFound) {
  const HWND parent = MakeWindow();
  const HWND child = MakeControl(parent, 1);
  EXPECT_EQ(TimesFound(parent), 1);
  EXPECT_EQ(TimesFound(child), 0);
}

TEST_F(WindowEnumeration, AChildIsNotFoundByItsTitleEither) {
  const HWND control = MakeControl(MakeWindow(), 1);
  windowing.SetWindowTextW(control, u"PlatformTest control");
  EXPECT_EQ(windowing.FindWindowW(nullptr, u"PlatformTest control"), HWND{});
}

TEST_F(WindowEnumeration, WindowsOfOtherThreadsAreFound) {
  std::ptrdiff_t found = 0;
  const HWND window = MakeWindow();
  RunInAnotherThread([&] { found = TimesFound(window); });
  EXPECT_EQ(found, 1);
}

TEST_F(WindowEnumeration, AnAnswerOf0EndsItAndIsAFailure) {
  const HWND first = MakeWindow();
  const HWND second = MakeWindow();
  struct Search {
    Handles mine;
    Handles seen;
  };
  Search search{.mine = {first, second}, .seen = {}};
  EXPECT_FALSE(windowing.EnumWindows(
      [](HWND window, LPARAM argument) {
        auto& told = *reinterpret_cast<Search*>(argument);
        told.seen.push_back(window);
        return std::ranges::count(told.mine, window) == 0 ? 1 : 0;
      },
      reinterpret_cast<LPARAM>(&search)));
  ASSERT_FALSE(search.seen.empty());
  EXPECT_EQ(std::ranges::count(search.mine, search.seen.back()), 1);
  search.seen.pop_back();
  for (const HWND window : search.mine) EXPECT_EQ(std::ranges::count(search.seen, window), 0);
}

TEST_F(WindowEnumeration, AWindowThatGoesMeanwhileIsPassedOver) {
  Handles mine = {MakeWindow(), MakeWindow()};
  struct Search {
    Handles& mine;
    int found = 0;
  };
  Search search{.mine = mine};
  EXPECT_TRUE(windowing.EnumWindows(
      [](HWND window, LPARAM argument) {
        auto& told = *reinterpret_cast<Search*>(argument);
        if (std::ranges::count(told.mine, window) == 0) return 1;
        ++told.found;
        for (const HWND each : told.mine) Os().windowing.DestroyWindow(each);
        return 1;
      },
      reinterpret_cast<LPARAM>(&search)));
  EXPECT_EQ(search.found, 1);
}

class WindowsOfOthers : public WindowEnumeration {
 protected:
  void SetUp() override {
    char16_t temp[MAX_PATH] = {};
    ASSERT_NE(os.files.GetTempPathW(MAX_PATH, temp), 0u);
    folder = std::u16string(temp) + u"PlatformTest";
    machine.RemoveFolder(folder);
    machine.MakeFolder(folder);
  }
  void TearDown() override { machine.RemoveFolder(folder); }

  std::u16string folder;
};

TEST_F(WindowsOfOthers, AHiddenWindowOfAnotherProgramIsFoundWhileItRuns) {
  const std::u16string path = folder + u"\\child.exe";
  MakeProgram(path);
  std::u16string command = u"\"" + path + u"\" /child 1000";
  ProcessInformation started;
  ASSERT_TRUE(os.process.CreateProcessW(command.data(), &started));
  HWND found{};
  EXPECT_TRUE(WaitUntil([&] { return (found = FindByTitle(path)) != HWND{}; }));
  EXPECT_EQ(windowing.GetPropW(found, u"PlatformTest"), HANDLE{});
  EXPECT_EQ(os.objects.WaitForSingleObject(started.process, 60000), WAIT_OBJECT_0);
  EXPECT_EQ(FindByTitle(path), HWND{});
  os.objects.CloseHandle(started.thread);
  os.objects.CloseHandle(started.process);
}

// --- What is kept with a window

TEST_F(WindowProperties, OneIsToldByItsName) {
  const HWND window = MakeWindow();
  SetWindowProperty(window, u"PlatformTestOne", HANDLE{17});
  SetWindowProperty(window, u"PlatformTestTwo", HANDLE{18});
  EXPECT_EQ(windowing.GetPropW(window, u"PlatformTestOne"), HANDLE{17});
  EXPECT_EQ(windowing.GetPropW(window, u"PlatformTestTwo"), HANDLE{18});
}

TEST_F(WindowProperties, ANameHasNoCase) {
  const HWND window = MakeWindow();
  SetWindowProperty(window, u"PlatformTestOne", HANDLE{17});
  EXPECT_EQ(windowing.GetPropW(window, u"PLATFORMTESTone"), HANDLE{17});
}

TEST_F(WindowProperties, OneThatWasSetAgainHasTheNewValue) {
  const HWND window = MakeWindow();
  SetWindowProperty(window, u"PlatformTestOne", HANDLE{17});
  SetWindowProperty(window, u"PlatformTestOne", HANDLE{19});
  EXPECT_EQ(windowing.GetPropW(window, u"PlatformTestOne"), HANDLE{19});
}

TEST_F(WindowProperties, OneThatIsMissingIsNothing) {
  const HWND window = MakeWindow();
  const HWND other = MakeWindow();
  SetWindowProperty(other, u"PlatformTestOne", HANDLE{17});
  EXPECT_EQ(windowing.GetPropW(window, u"PlatformTestOne"), HANDLE{});
  EXPECT_EQ(windowing.GetPropW(other, u"PlatformTestOneAndMore"), HANDLE{});
}

TEST_F(WindowProperties, WhatIsNoWindowHasNone) {
  for (const HWND none : {HWND{}, Gone()}) {
    os.process.SetLastError(7777);
    EXPECT_EQ(windowing.GetPropW(none, u"PlatformTestOne"), HANDLE{});
    EXPECT_EQ(LastError(), ERROR_INVALID_WINDOW_HANDLE);
  }
}

// --- In front of all others

constexpr std::uint32_t kInPlace = SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE;

TEST_F(WindowPlaces, AWindowIsPutInFrontForGoodAndBack) {
  const HWND window = MakeWindow();
  EXPECT_FALSE(IsAlwaysInFront(window));
  EXPECT_TRUE(windowing.SetWindowPos(window, HWND_TOPMOST, 0, 0, 0, 0, kInPlace));
  EXPECT_TRUE(IsAlwaysInFront(window));
  EXPECT_TRUE(windowing.SetWindowPos(window, HWND_NOTOPMOST, 0, 0, 0, 0, kInPlace));
  EXPECT_FALSE(IsAlwaysInFront(window));
}

TEST_F(WindowPlaces, ItIsShownOnlyWithTheFlagForThat) {
  const HWND window = MakeWindow();
  EXPECT_TRUE(windowing.SetWindowPos(window, HWND_TOPMOST, 0, 0, 0, 0, kInPlace));
  EXPECT_EQ(windowing.GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE, 0);
  EXPECT_TRUE(
      windowing.SetWindowPos(window, HWND_NOTOPMOST, 0, 0, 0, 0, kInPlace | SWP_SHOWWINDOW));
  EXPECT_NE(windowing.GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE, 0);
}

TEST_F(WindowPlaces, WhatIsNoWindowHasNoPlace) {
  for (const HWND none : {HWND{}, Gone()}) {
    os.process.SetLastError(7777);
    EXPECT_FALSE(windowing.SetWindowPos(none, HWND_TOPMOST, 0, 0, 0, 0, kInPlace));
    EXPECT_EQ(LastError(), ERROR_INVALID_WINDOW_HANDLE);
  }
}

// --- A dialog's controls

TEST_F(DialogItems, AControlIsFoundByItsNumber) {
  const HWND dialog = MakeWindow();
  const HWND first = MakeControl(dialog, 1001);
  const HWND second = MakeControl(dialog, 1002);
  EXPECT_EQ(windowing.GetDlgItem(dialog, 1001), first);
  EXPECT_EQ(windowing.GetDlgItem(dialog, 1002), second);
}

TEST_F(DialogItems, OfTwoWithOneNumberTheFirstIsFound) {
  const HWND dialog = MakeWindow();
  const HWND first = MakeControl(dialog, 1001);
  MakeControl(dialog, 1001);
  EXPECT_EQ(windowing.GetDlgItem(dialog, 1001), first);
}

TEST_F(DialogItems, ANumberThatIsMissingIsNotFound) {
  const HWND dialog = MakeWindow();
  const HWND other = MakeWindow();
  MakeControl(other, 1001);
  EXPECT_EQ(windowing.GetDlgItem(dialog, 1001), HWND{});
  EXPECT_EQ(windowing.GetDlgItem(other, 0), HWND{});
}

TEST_F(DialogItems, AControlsTextIsSet) {
  const HWND dialog = MakeWindow();
  const HWND control = MakeControl(dialog, 1001);
  EXPECT_TRUE(windowing.SetWindowTextW(control, u"Order\r\nink"));
  char16_t text[20] = {};
  EXPECT_EQ(windowing.GetWindowTextW(control, text, 20), 10);
  EXPECT_EQ(std::u16string(text), u"Order\r\nink");
}

TEST_F(DialogItems, AControlGoesWithItsDialog) {
  const HWND dialog = MakeWindow();
  const HWND control = MakeControl(dialog, 1001);
  EXPECT_TRUE(windowing.IsWindow(control));
  windowing.DestroyWindow(dialog);
  EXPECT_FALSE(windowing.IsWindow(control));
}

TEST_F(DialogItems, WhatIsNoWindowHasNone) {
  for (const HWND none : {HWND{}, Gone()}) {
    os.process.SetLastError(7777);
    EXPECT_EQ(windowing.GetDlgItem(none, 1001), HWND{});
    // Wine 8 tells no error of a window that is gone.
    EXPECT_TRUE(
        HoldsExcept(OnWine(8) && none != HWND{}, LastError() == ERROR_INVALID_WINDOW_HANDLE));
  }
}

}  // namespace
}  // namespace platform
