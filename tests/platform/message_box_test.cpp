// Message boxes. A box is a window of the class "#32770"; a command with a button's id answers it.
#include <atomic>

#include "tests/platform/windowing_fixture.h"

namespace platform {
namespace {

class MessageBoxes : public WindowingContract {
 protected:
  HWND Box(const char16_t* caption) { return windowing.FindWindowW(u"#32770", caption); }

  bool Answer(const char16_t* caption) {
    const HWND box = Box(caption);
    return box != HWND{} && windowing.PostMessageW(box, WM_COMMAND, IDOK, 0);
  }

  // A window whose timer 1 answers the box of that caption as soon as it is there.
  HWND MakeAnsweringWindow(const char16_t* caption) {
    const HWND window = MakeWindow([=, this](HWND w, std::uint32_t message, WPARAM id, LPARAM) {
      if (message == WM_TIMER && id == 1 && Answer(caption)) windowing.KillTimer(w, 1);
      return std::nullopt;
    });
    windowing.SetTimer(window, 1, 50);
    return window;
  }
};

TEST_F(MessageBoxes, TimersGoOnWhileABoxIsShown) {
  const HWND owner = MakeAnsweringWindow(u"PlatformTest box");
  EXPECT_EQ(windowing.MessageBoxW(owner, u"text", u"PlatformTest box", MB_OK), IDOK);
  EXPECT_GE(ReceivedOf(owner, WM_TIMER).size(), 1u);
}

TEST_F(MessageBoxes, ABoxIsGoneWhenItWasAnswered) {
  const HWND owner = MakeAnsweringWindow(u"PlatformTest box");
  windowing.MessageBoxW(owner, u"text", u"PlatformTest box", MB_OK);
  EXPECT_EQ(Box(u"PlatformTest box"), HWND{});
  EXPECT_TRUE(windowing.IsWindow(owner));
}

TEST_F(MessageBoxes, ABoxNeedsNoOwner) {
  MakeAnsweringWindow(u"PlatformTest box");
  EXPECT_EQ(windowing.MessageBoxW(HWND{}, u"text", u"PlatformTest box", MB_OK), IDOK);
}

TEST_F(MessageBoxes, ABoxMayRunFromRightToLeft) {
  const HWND owner = MakeAnsweringWindow(u"\u05D0\u05D1 box");
  EXPECT_EQ(windowing.MessageBoxW(owner, u"\u05D0", u"\u05D0\u05D1 box", MB_RIGHT | MB_RTLREADING),
            IDOK);
}

TEST_F(MessageBoxes, AnOwnerThatIsGoneGetsNoBox) {
  const HWND owner = MakeWindow();
  windowing.DestroyWindow(owner);
  // Wine's answer is -1.
  EXPECT_TRUE(HoldsExcept(OnWine(),
                          windowing.MessageBoxW(owner, u"text", u"PlatformTest box", MB_OK) == 0));
}

TEST_F(MessageBoxes, PostedMessagesAreDispatchedWhileABoxIsShown) {
  const HWND owner = MakeAnsweringWindow(u"PlatformTest box");
  windowing.PostMessageW(owner, WM_USER, 1, 2);
  windowing.MessageBoxW(owner, u"text", u"PlatformTest box", MB_OK);
  EXPECT_EQ(ReceivedOf(owner, WM_USER), (std::vector<Received>{{WM_USER, 1, 2}}));
}

TEST_F(MessageBoxes, AnotherThreadMayAnswerABox) {
  const HWND owner = MakeWindow();
  std::atomic<bool> answered = false;
  const auto join = machine.StartThread(
      [&] { answered = WaitUntil([&] { return Answer(u"PlatformTest box"); }); });
  EXPECT_EQ(windowing.MessageBoxW(owner, u"text", u"PlatformTest box", MB_OK), IDOK);
  EXPECT_TRUE(answered);
  join();
}

// Closing a box cancels it, and cancelling one that has nothing but an OK button answers with that.
TEST_F(MessageBoxes, ABoxWithOnlyOneButtonIsAnsweredWithItByClosing) {
  const HWND owner = MakeWindow([&](HWND w, std::uint32_t message, WPARAM, LPARAM) {
    if (message == WM_TIMER && Box(u"PlatformTest box") != HWND{}) {
      windowing.KillTimer(w, 1);
      windowing.PostMessageW(Box(u"PlatformTest box"), WM_CLOSE, 0, 0);
    }
    return std::nullopt;
  });
  windowing.SetTimer(owner, 1, 50);
  // Wine's answer is IDCANCEL.
  EXPECT_TRUE(HoldsExcept(
      OnWine(), windowing.MessageBoxW(owner, u"text", u"PlatformTest box", MB_OK) == IDOK));
}

TEST_F(MessageBoxes, ABoxWithinABoxIsAnsweredFirst) {
  std::vector<std::u16string> answered;
  const HWND owner = MakeWindow([&](HWND w, std::uint32_t message, WPARAM id, LPARAM) {
    if (message == WM_TIMER && id == 2) {
      windowing.KillTimer(w, 2);
      windowing.SetTimer(w, 3, 50);
      windowing.MessageBoxW(HWND{}, u"text", u"PlatformTest inner", MB_OK);
      answered.emplace_back(u"inner");
      EXPECT_TRUE(Answer(u"PlatformTest outer"));
    }
    if (message == WM_TIMER && id == 3 && Answer(u"PlatformTest inner")) windowing.KillTimer(w, 3);
    return std::nullopt;
  });
  windowing.SetTimer(owner, 2, 50);
  windowing.MessageBoxW(owner, u"text", u"PlatformTest outer", MB_OK);
  answered.emplace_back(u"outer");
  EXPECT_EQ(answered, (std::vector<std::u16string>{u"inner", u"outer"}));
}

}  // namespace
}  // namespace platform
