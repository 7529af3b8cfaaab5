// Icons in the notification area, and what their windows are told.
#include <algorithm>
#include <string>

#include "tests/platform/input_fixture.h"
#include "tests/platform/windowing_fixture.h"

namespace platform {
namespace {

constexpr std::uint32_t kCallback = WM_USER + 33;
constexpr LPARAM kMouseMove = 512;  // comes between the others, whenever the mouse has moved

class NotificationArea : public WindowingContract {
 protected:
  ~NotificationArea() override {
    for (const NotifyIconData& data : m_added) os.shell.Shell_NotifyIconW(NIM_DELETE, data);
  }

  static NotifyIconData Icon(HWND window, std::uint32_t id = 7) {
    NotifyIconData data;
    data.window = window;
    data.id = id;
    data.flags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    data.callbackMessage = kCallback;
    data.icon = TestPicture();
    const std::u16string_view tip = u"PlatformTest";
    data.tip[tip.copy(data.tip, tip.size())] = u'\0';
    return data;
  }

  bool Add(const NotifyIconData& data) {
    const bool added = os.shell.Shell_NotifyIconW(NIM_ADD, data);
    if (added) m_added.push_back(data);
    return added;
  }
  bool Modify(const NotifyIconData& data) { return os.shell.Shell_NotifyIconW(NIM_MODIFY, data); }
  bool Delete(const NotifyIconData& data) {
    std::erase_if(m_added, [&](const NotifyIconData& added) {
      return added.window == data.window && added.id == data.id;
    });
    return os.shell.Shell_NotifyIconW(NIM_DELETE, data);
  }

  // What the window is told when a person does that; `count` messages, fewer when no more come.
  std::vector<Received> ToldOf(HWND window, MouseUse use, std::size_t count) {
    constexpr std::uint64_t kTick = 1;
    EXPECT_TRUE(UseMouseOnIcon(use));
    windowing.SetTimer(window, kTick, 20);
    for (int tick = 0; tick < 300 && Callbacks(window).size() < count; ++tick) HandleNext();
    windowing.KillTimer(window, kTick);
    return Callbacks(window);
  }

  // All so far, without the moves.
  std::vector<Received> Callbacks(HWND window) {
    std::vector<Received> callbacks = ReceivedOf(window, kCallback);
    std::erase_if(callbacks, [](const Received& one) { return one.lParam == kMouseMove; });
    return callbacks;
  }

  static Received Callback(std::uint32_t mouseMessage, std::uint32_t id = 7) {
    return {kCallback, id, mouseMessage};
  }

 private:
  std::vector<NotifyIconData> m_added;
};

TEST_F(NotificationArea, AnIconIsAddedChangedAndTakenAway) {
  NotifyIconData data = Icon(MakeWindow());
  EXPECT_TRUE(Add(data));
  data.tip[0] = u'X';
  EXPECT_TRUE(Modify(data));
  EXPECT_TRUE(Delete(data));
}

TEST_F(NotificationArea, AnIconIsAddedOnce) {
  const NotifyIconData data = Icon(MakeWindow());
  EXPECT_TRUE(Add(data));
  EXPECT_FALSE(Add(data));
}

TEST_F(NotificationArea, AnIconThatWasTakenAwayCanBeAddedAgain) {
  const NotifyIconData data = Icon(MakeWindow());
  EXPECT_TRUE(Add(data));
  EXPECT_TRUE(Delete(data));
  EXPECT_TRUE(Add(data));
}

TEST_F(NotificationArea, WhatIsNotThereIsNeitherChangedNorTakenAway) {
  const NotifyIconData data = Icon(MakeWindow());
  EXPECT_FALSE(Modify(data));
  EXPECT_FALSE(Delete(data));
  EXPECT_TRUE(Add(data));
  EXPECT_TRUE(Delete(data));
  EXPECT_FALSE(Modify(data));
  EXPECT_FALSE(Delete(data));
}

TEST_F(NotificationArea, WindowAndIdTogetherNameAnIcon) {
  const HWND first = MakeWindow();
  const HWND second = MakeWindow();
  EXPECT_TRUE(Add(Icon(first, 1)));
  EXPECT_TRUE(Add(Icon(first, 2)));
  EXPECT_TRUE(Add(Icon(second, 1)));
  EXPECT_TRUE(Delete(Icon(first, 1)));
  EXPECT_TRUE(Modify(Icon(first, 2)));
  EXPECT_TRUE(Modify(Icon(second, 1)));
  EXPECT_FALSE(Modify(Icon(second, 2)));
}

TEST_F(NotificationArea, AnIconNeedsNeitherPictureNorTip) {
  NotifyIconData data = Icon(MakeWindow());
  data.flags = NIF_MESSAGE;
  EXPECT_TRUE(Add(data));
}

TEST_F(NotificationArea, ATipMayFillItsRoom) {
  NotifyIconData data = Icon(MakeWindow());
  std::fill(std::begin(data.tip), std::end(data.tip), u'x');  // not even a terminator
  EXPECT_TRUE(Add(data));
}

TEST_F(NotificationArea, AWindowThatIsGoneGetsNoIcon) {
  const HWND window = MakeWindow();
  windowing.DestroyWindow(window);
  // Wine takes every window's word for it, and drops the icon after some time.
  EXPECT_TRUE(HoldsExcept(OnWine(), !Add(Icon(window))));
}

TEST_F(NotificationArea, WhatIsNeitherAddingNorChangingNorTakingAwayIsRefused) {
  const NotifyIconData data = Icon(MakeWindow());
  EXPECT_TRUE(Add(data));
  EXPECT_FALSE(os.shell.Shell_NotifyIconW(99, data));
}

// --- What a window is told

TEST_F(NotificationArea, AClickIsToldAsPressAndRelease) {
  const HWND window = MakeWindow();
  ASSERT_TRUE(Add(Icon(window, 9)));
  EXPECT_EQ(ToldOf(window, MouseUse::kClick, 2),
            (std::vector{Callback(WM_LBUTTONDOWN, 9), Callback(WM_LBUTTONUP, 9)}));
}

TEST_F(NotificationArea, TheSecondPressOfADoubleClickIsToldAsOne) {
  const HWND window = MakeWindow();
  ASSERT_TRUE(Add(Icon(window)));
  EXPECT_EQ(ToldOf(window, MouseUse::kDoubleClick, 4),
            (std::vector{Callback(WM_LBUTTONDOWN), Callback(WM_LBUTTONUP),
                         Callback(WM_LBUTTONDBLCLK), Callback(WM_LBUTTONUP)}));
}

TEST_F(NotificationArea, ARightClickIsToldAsPressAndRelease) {
  const HWND window = MakeWindow();
  ASSERT_TRUE(Add(Icon(window)));
  EXPECT_EQ(ToldOf(window, MouseUse::kRightClick, 2),
            (std::vector{Callback(WM_RBUTTONDOWN), Callback(WM_RBUTTONUP)}));
}

TEST_F(NotificationArea, AWindowIsToldBeforeItGetsWhatIsPosted) {
  const HWND window = MakeWindow();
  ASSERT_TRUE(Add(Icon(window)));
  windowing.PostMessageW(window, WM_USER + 1, 0, 0);
  ASSERT_TRUE(UseMouseOnIcon(MouseUse::kRightClick));
  os.process.Sleep(1000);  // the way from the mouse to the window leads through other programs
  EXPECT_EQ(TakeNext().message, WM_USER + 1);
  EXPECT_EQ(Callbacks(window), (std::vector{Callback(WM_RBUTTONDOWN), Callback(WM_RBUTTONUP)}));
}

TEST_F(NotificationArea, ChangingOneThingKeepsTheOthers) {
  const HWND window = MakeWindow();
  ASSERT_TRUE(Add(Icon(window)));
  NotifyIconData data;
  data.window = window;
  data.id = 7;
  data.flags = NIF_TIP;  // so the callback message of 0 doesn't count
  EXPECT_TRUE(Modify(data));
  EXPECT_EQ(ToldOf(window, MouseUse::kClick, 2),
            (std::vector{Callback(WM_LBUTTONDOWN), Callback(WM_LBUTTONUP)}));
}

}  // namespace
}  // namespace platform
