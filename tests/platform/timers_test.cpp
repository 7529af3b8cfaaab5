// Timers. Periods are long beside the steps of the clock (up to 16 ms) and the hiccups of a busy
// machine.
#include "tests/platform/windowing_fixture.h"

namespace platform {
namespace {

class Timers : public WindowingContract {
 protected:
  std::uint32_t Now() { return os.system.GetTickCount(); }

  // Handles messages up to the next WM_TIMER; its id.
  WPARAM NextTimer() {
    const Message message = HandleNext();
    EXPECT_EQ(message.message, WM_TIMER);
    return message.wParam;
  }

  static constexpr std::uint32_t kStep = 16;
};

TEST_F(Timers, ATimerTellsItsWindowAndItsId) {
  const HWND window = MakeWindow();
  EXPECT_EQ(windowing.SetTimer(window, 4, 20), 4u);
  const Message message = HandleNext();
  EXPECT_EQ(message.window, window);
  EXPECT_EQ(message.message, WM_TIMER);
  EXPECT_EQ(message.wParam, 4u);
  EXPECT_EQ(message.lParam, 0);
  EXPECT_EQ(ReceivedOf(window, WM_TIMER).size(), 1u);
}

TEST_F(Timers, TheFirstComesAfterOnePeriod) {
  const HWND window = MakeWindow();
  const std::uint32_t before = Now();
  windowing.SetTimer(window, 1, 150);
  NextTimer();
  EXPECT_GE(Now() - before, 150 - kStep);
  EXPECT_LT(Now() - before, 1000u);
}

TEST_F(Timers, ATimerComesAgainAndAgain) {
  const HWND window = MakeWindow();
  const std::uint32_t before = Now();
  windowing.SetTimer(window, 1, 60);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(NextTimer(), 1u);
  EXPECT_GE(Now() - before, 300 - kStep);
}

TEST_F(Timers, SettingItAgainStartsItsPeriodAgain) {
  const HWND window = MakeWindow();
  windowing.SetTimer(window, 1, 400);
  os.process.Sleep(250);
  const std::uint32_t again = Now();
  EXPECT_EQ(windowing.SetTimer(window, 1, 400), 1u);
  NextTimer();
  EXPECT_GE(Now() - again, 400 - kStep);
}

TEST_F(Timers, SettingItAgainChangesItsPeriod) {
  const HWND window = MakeWindow();
  windowing.SetTimer(window, 1, 60000);
  windowing.SetTimer(window, 1, 30);
  const std::uint32_t before = Now();
  NextTimer();
  NextTimer();
  EXPECT_LT(Now() - before, 2000u);
}

TEST_F(Timers, SeveralComeInTheOrderInWhichTheyAreDue) {
  const HWND window = MakeWindow();
  windowing.SetTimer(window, 1, 450);
  windowing.SetTimer(window, 2, 150);
  windowing.SetTimer(window, 3, 300);
  for (const WPARAM expected : {2u, 3u, 1u}) {
    EXPECT_EQ(NextTimer(), expected);
    windowing.KillTimer(window, expected);
  }
}

TEST_F(Timers, TheSameIdOfTwoWindowsMeansTwoTimers) {
  const HWND first = MakeWindow();
  const HWND second = MakeWindow();
  windowing.SetTimer(first, 1, 100);
  windowing.SetTimer(second, 1, 100);
  windowing.KillTimer(first, 1);
  EXPECT_EQ(HandleNext().window, second);
}

TEST_F(Timers, AKilledOneComesNoMore) {
  const HWND window = MakeWindow();
  windowing.SetTimer(window, 1, 30);
  windowing.SetTimer(window, 2, 200);
  EXPECT_EQ(NextTimer(), 1u);
  EXPECT_TRUE(windowing.KillTimer(window, 1));
  EXPECT_EQ(NextTimer(), 2u);
}

TEST_F(Timers, OneThatIsNotThereCannotBeKilled) {
  const HWND window = MakeWindow();
  EXPECT_FALSE(windowing.KillTimer(window, 1));
  windowing.SetTimer(window, 1, 1000);
  EXPECT_TRUE(windowing.KillTimer(window, 1));
  EXPECT_FALSE(windowing.KillTimer(window, 1));
}

TEST_F(Timers, OneThatWasMissedSeveralTimesComesOnce) {
  const HWND window = MakeWindow();
  windowing.SetTimer(window, 1, 400);
  os.process.Sleep(1000);  // due twice, and again 200 ms from here
  EXPECT_EQ(NextTimer(), 1u);
  windowing.SetTimer(window, 2, 50);
  EXPECT_EQ(NextTimer(), 2u);
}

TEST_F(Timers, TheyGiveWayToPostedMessages) {
  const HWND window = MakeWindow();
  windowing.SetTimer(window, 1, 20);
  os.process.Sleep(100);
  windowing.PostMessageW(window, WM_USER, 1, 0);
  windowing.PostMessageW(window, WM_USER, 2, 0);
  EXPECT_EQ(HandleNext().message, WM_USER);
  EXPECT_EQ(HandleNext().message, WM_USER);
  EXPECT_EQ(HandleNext().message, WM_TIMER);
}

TEST_F(Timers, OneGoesWithItsWindow) {
  const HWND window = MakeWindow();
  const HWND other = MakeWindow();
  windowing.SetTimer(window, 1, 30);
  windowing.SetTimer(other, 2, 200);
  windowing.DestroyWindow(window);
  EXPECT_EQ(NextTimer(), 2u);
}

TEST_F(Timers, AWindowThatIsGoneGetsNone) {
  const HWND window = MakeWindow();
  windowing.DestroyWindow(window);
  EXPECT_EQ(windowing.SetTimer(window, 1, 30), 0u);
}

TEST_F(Timers, WithoutAWindowTheSystemChoosesTheId) {
  const std::uint64_t first = windowing.SetTimer(HWND{}, 0, 30);
  const std::uint64_t second = windowing.SetTimer(HWND{}, 0, 60000);
  EXPECT_NE(first, 0u);
  EXPECT_NE(second, 0u);
  EXPECT_NE(second, first);

  const Message message = HandleNext();
  EXPECT_EQ(message.window, HWND{});
  EXPECT_EQ(message.message, WM_TIMER);
  EXPECT_EQ(message.wParam, first);

  EXPECT_TRUE(windowing.KillTimer(HWND{}, first));
  EXPECT_FALSE(windowing.KillTimer(HWND{}, first));
  EXPECT_TRUE(windowing.KillTimer(HWND{}, second));
}

TEST_F(Timers, NoPeriodIsShorterThanTheShortest) {
  const HWND window = MakeWindow();
  const std::uint32_t before = Now();
  windowing.SetTimer(window, 1, 0);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(NextTimer(), 1u);
  EXPECT_GE(Now() - before, 20 * USER_TIMER_MINIMUM - kStep);
}

TEST_F(Timers, OneSetByItsOwnHandlerStartsFromThere) {
  WPARAM count = 0;
  const HWND window = MakeWindow([&](HWND w, std::uint32_t message, WPARAM, LPARAM) {
    if (message == WM_TIMER && ++count == 1) windowing.SetTimer(w, 1, 300);
    return std::nullopt;
  });
  windowing.SetTimer(window, 1, 30);
  NextTimer();
  const std::uint32_t again = Now();
  NextTimer();
  EXPECT_GE(Now() - again, 300 - kStep);
}

}  // namespace
}  // namespace platform
