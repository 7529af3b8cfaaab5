// Messages: posted, sent, and the one that ends a loop.
#include <atomic>

#include "tests/platform/windowing_fixture.h"

namespace platform {
namespace {

using PostedMessages = WindowingContract;
using SentMessages = WindowingContract;
using QuitMessage = WindowingContract;

// --- Posted

TEST_F(PostedMessages, AMessageWhoseArgumentsArePointersCantBePosted) {
  const HWND window = MakeWindow();
  for (const std::uint32_t message : {WM_CREATE, WM_NCCREATE, WM_DRAWITEM, WM_MEASUREITEM}) {
    Os().process.SetLastError(0);
    EXPECT_FALSE(windowing.PostMessageW(window, message, 0, 0)) << message;
    EXPECT_EQ(Os().process.GetLastError(), ERROR_MESSAGE_SYNC_ONLY) << message;
  }
}

TEST_F(PostedMessages, OneArrivesAsItWasPosted) {
  const HWND window = MakeWindow();
  EXPECT_TRUE(windowing.PostMessageW(window, WM_USER + 7, 0xFEDCBA9876543210, -5));
  const Message message = TakeNext();
  EXPECT_EQ(message.window, window);
  EXPECT_EQ(message.message, WM_USER + 7);
  EXPECT_EQ(message.wParam, 0xFEDCBA9876543210);
  EXPECT_EQ(message.lParam, -5);
}

TEST_F(PostedMessages, TheyWaitUntilTheyAreDispatched) {
  const HWND window = MakeWindow();
  windowing.PostMessageW(window, WM_USER, 1, 2);
  EXPECT_TRUE(ReceivedOf(window, WM_USER).empty());
  HandleNext();
  EXPECT_EQ(ReceivedOf(window, WM_USER), (std::vector<Received>{{WM_USER, 1, 2}}));
}

TEST_F(PostedMessages, TheyKeepTheirOrderAcrossTheWindowsOfAThread) {
  const HWND first = MakeWindow();
  const HWND second = MakeWindow();
  for (WPARAM i = 0; i < 6; ++i) windowing.PostMessageW(i % 2 == 0 ? first : second, WM_USER, i, 0);
  for (WPARAM i = 0; i < 6; ++i) {
    const Message message = HandleNext();
    EXPECT_EQ(message.wParam, i);
    EXPECT_EQ(message.window, i % 2 == 0 ? first : second);
  }
}

TEST_F(PostedMessages, DispatchingGivesTheProceduresResult) {
  const HWND window = MakeWindow([](HWND, std::uint32_t message, WPARAM wParam, LPARAM) {
    return message == WM_USER ? std::optional<LRESULT>(static_cast<LRESULT>(wParam) + 1)
                              : std::nullopt;
  });
  windowing.PostMessageW(window, WM_USER, 41, 0);
  EXPECT_EQ(windowing.DispatchMessageW(TakeNext()), 42);
}

TEST_F(PostedMessages, AWindowThatIsGoneGetsNone) {
  const HWND window = MakeWindow();
  windowing.DestroyWindow(window);
  EXPECT_FALSE(windowing.PostMessageW(window, WM_USER, 0, 0));
  EXPECT_EQ(LastError(), ERROR_INVALID_WINDOW_HANDLE);
}

TEST_F(PostedMessages, TheyGoWithTheirWindow) {
  const HWND window = MakeWindow();
  const HWND other = MakeWindow();
  windowing.PostMessageW(window, WM_USER, 1, 0);
  windowing.PostMessageW(other, WM_USER, 2, 0);
  windowing.DestroyWindow(window);
  EXPECT_EQ(HandleNext().wParam, 2u);
}

TEST_F(PostedMessages, WithoutAWindowOneIsForTheCallingThread) {
  EXPECT_TRUE(windowing.PostMessageW(HWND{}, WM_USER, 3, 4));
  const Message message = TakeNext();
  EXPECT_EQ(message.window, HWND{});
  EXPECT_EQ(message.wParam, 3u);
  EXPECT_EQ(message.lParam, 4);
  EXPECT_EQ(windowing.DispatchMessageW(message), 0);  // there is nobody to get it
}

TEST_F(PostedMessages, OneOfAnotherThreadEndsTheWaiting) {
  const HWND window = MakeWindow();
  const auto join = machine.StartThread([&] {
    os.process.Sleep(50);
    windowing.PostMessageW(window, WM_USER, 9, 0);
  });
  EXPECT_EQ(HandleNext().wParam, 9u);
  join();
}

TEST_F(PostedMessages, WhatTheProcedurePostsComesBehindWhatWaits) {
  const HWND window = MakeWindow([&](HWND w, std::uint32_t message, WPARAM wParam, LPARAM) {
    if (message == WM_USER && wParam == 1) windowing.PostMessageW(w, WM_USER, 3, 0);
    return std::nullopt;
  });
  windowing.PostMessageW(window, WM_USER, 1, 0);
  windowing.PostMessageW(window, WM_USER, 2, 0);
  EXPECT_EQ(HandleNext().wParam, 1u);
  EXPECT_EQ(HandleNext().wParam, 2u);
  EXPECT_EQ(HandleNext().wParam, 3u);
}

TEST_F(PostedMessages, OnlyKeysAreTranslated) {
  Message message;
  message.window = MakeWindow();
  message.message = WM_USER;
  EXPECT_FALSE(windowing.TranslateMessage(message));
}

TEST_F(PostedMessages, ClosingByAPostedMessageHappensWhenItIsDispatched) {
  const HWND window = MakeWindow();
  windowing.PostMessageW(window, WM_CLOSE, 0, 0);
  windowing.PostMessageW(HWND{}, WM_USER, 0, 0);
  EXPECT_TRUE(windowing.IsWindow(window));
  HandleNext();  // the closing, then the test's own
  EXPECT_FALSE(windowing.IsWindow(window));
}

// --- Sent

TEST_F(SentMessages, TwoHandlesStandForEveryTopLevelWindow) {
  constexpr std::uint32_t kNobodysMessage = 0xCABC;  // of the numbers that programs agree upon
  const HWND first = MakeWindow();
  const HWND second = MakeWindow();
  windowing.SendMessageW(HWND_BROADCAST, kNobodysMessage, 1, 2);
  windowing.SendMessageW(HWND{~std::uint64_t{0}}, kNobodysMessage, 3, 4);
  const std::vector<Received> both{{kNobodysMessage, 1, 2}, {kNobodysMessage, 3, 4}};
  EXPECT_EQ(ReceivedOf(first, kNobodysMessage), both);
  EXPECT_EQ(ReceivedOf(second, kNobodysMessage), both);
}

TEST_F(SentMessages, WithinAThreadOneIsHandledAtOnce) {
  const HWND window = MakeWindow([](HWND, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
    return message == WM_USER ? std::optional<LRESULT>(static_cast<LRESULT>(wParam) * 100 + lParam)
                              : std::nullopt;
  });
  windowing.PostMessageW(window, WM_USER + 1, 0, 0);
  EXPECT_EQ(windowing.SendMessageW(window, WM_USER, 12, 34), 1234);
  EXPECT_TRUE(ReceivedOf(window, WM_USER + 1).empty());  // what was posted before still waits
}

TEST_F(SentMessages, AWindowThatIsGoneGetsNone) {
  const HWND window = MakeWindow();
  windowing.DestroyWindow(window);
  EXPECT_EQ(windowing.SendMessageW(window, WM_USER, 0, 0), 0);
  EXPECT_EQ(LastError(), ERROR_INVALID_WINDOW_HANDLE);
}

TEST_F(SentMessages, OneOfAnotherThreadIsHandledByTheWindowsThreadWhileItWaits) {
  const std::uint32_t here = os.process.GetCurrentThreadId();
  std::atomic<std::uint32_t> handledBy = 0;
  const HWND window = MakeWindow([&](HWND, std::uint32_t message, WPARAM, LPARAM) {
    if (message != WM_USER) return std::optional<LRESULT>();
    handledBy = os.process.GetCurrentThreadId();
    return std::optional<LRESULT>(55);
  });
  std::atomic<LRESULT> result = 0;
  const auto join = machine.StartThread([&] {
    result = windowing.SendMessageW(window, WM_USER, 0, 0);
    windowing.PostMessageW(window, WM_USER + 1, 0, 0);
  });
  // A sent message is never taken from the queue: the first to be taken is the posted one.
  EXPECT_EQ(HandleNext().message, WM_USER + 1);
  EXPECT_EQ(handledBy, here);
  EXPECT_EQ(result, 55);
  join();
}

TEST_F(SentMessages, OneComesBeforeThoseThatWerePosted) {
  const HWND window = MakeWindow();
  windowing.PostMessageW(window, WM_USER, 0, 0);
  std::atomic<bool> sending = false;
  const auto join = machine.StartThread([&] {
    sending = true;
    windowing.SendMessageW(window, WM_USER + 1, 0, 0);
  });
  EXPECT_TRUE(WaitUntil([&] { return sending.load(); }));
  os.process.Sleep(50);
  EXPECT_EQ(TakeNext().message, WM_USER);
  EXPECT_EQ(ReceivedOf(window, WM_USER + 1).size(), 1u);
  join();
}

TEST_F(SentMessages, TwoThreadsMaySendToEachOther) {
  // The answer to a message may need the sender: it handles messages while it waits.
  std::atomic<HWND> there{};
  const HWND here = MakeWindow([&](HWND, std::uint32_t message, WPARAM, LPARAM) {
    return message == WM_USER ? std::optional<LRESULT>(7) : std::nullopt;
  });
  const auto join = machine.StartThread([&] {
    const HWND window = MakeWindow([&](HWND, std::uint32_t message, WPARAM, LPARAM) {
      if (message != WM_USER) return std::optional<LRESULT>();
      return std::optional<LRESULT>(windowing.SendMessageW(here, WM_USER, 0, 0) + 1);
    });
    there = window;
    HandleNext();
    windowing.DestroyWindow(window);
  });
  EXPECT_TRUE(WaitUntil([&] { return there.load() != HWND{}; }));
  EXPECT_EQ(windowing.SendMessageW(there, WM_USER, 0, 0), 8);
  windowing.PostMessageW(there, WM_USER + 1, 0, 0);
  join();
}

// --- The end of a loop

TEST_F(QuitMessage, ItGivesItsExitCode) {
  windowing.PostQuitMessage(7);
  Message message;
  EXPECT_EQ(windowing.GetMessageW(&message), 0);
  EXPECT_EQ(message.message, WM_QUIT);
  EXPECT_EQ(message.wParam, 7u);
}

TEST_F(QuitMessage, ItComesWhenThePostedMessagesAreUsedUp) {
  const HWND window = MakeWindow();
  windowing.PostMessageW(window, WM_USER, 1, 0);
  windowing.PostQuitMessage(0);
  windowing.PostMessageW(window, WM_USER, 2, 0);
  EXPECT_EQ(HandleNext().wParam, 1u);
  EXPECT_EQ(HandleNext().wParam, 2u);
  EXPECT_EQ(HandleNext().message, WM_QUIT);
}

TEST_F(QuitMessage, ItComesBeforeADueTimer) {
  const HWND window = MakeWindow();
  windowing.SetTimer(window, 1, 20);
  os.process.Sleep(100);
  windowing.PostQuitMessage(0);
  EXPECT_EQ(HandleNext().message, WM_QUIT);
}

TEST_F(QuitMessage, ItEndsOneLoopOnly) {
  const HWND window = MakeWindow();
  windowing.PostQuitMessage(0);
  EXPECT_EQ(HandleNext().message, WM_QUIT);
  windowing.PostMessageW(window, WM_USER, 1, 0);
  EXPECT_EQ(HandleNext().wParam, 1u);
}

TEST_F(QuitMessage, ItIsForTheCallingThreadOnly) {
  const HWND window = MakeWindow();
  RunInAnotherThread([&] {
    windowing.PostQuitMessage(0);
    EXPECT_EQ(HandleNext().message, WM_QUIT);
  });
  windowing.PostMessageW(window, WM_USER, 1, 0);
  EXPECT_EQ(HandleNext().message, WM_USER);
}

}  // namespace
}  // namespace platform
