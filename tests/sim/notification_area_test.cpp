// The notification area of the simulated machine: what a test sees of it and does there.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

#include "platform/sim/machine.h"

namespace sim {
namespace {

using namespace platform;

constexpr std::uint32_t kCallback = WM_USER + 1;
constexpr HWND kNoWindow{0x7FFFFFF0};

// The mouse messages that the windows of icons were told of since the test began.
std::vector<LPARAM> g_told;

LRESULT Default(HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
  if (message == kCallback) g_told.push_back(lParam);
  return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
}

// Handles what there is, until a message that is posted last.
void HandleMessages(HWND window) {
  Os().windowing.PostMessageW(window, WM_USER + 2, 0, 0);
  Message message;
  EXPECT_EQ(Os().windowing.GetMessageW(&message), 1);
  EXPECT_EQ(message.message, WM_USER + 2);
}

HWND MakeWindow() {
  Os().windowing.RegisterClassW({.procedure = Default, .className = u"Tray"});  // once is enough
  return Os().windowing.CreateWindowExW(0, u"Tray", u"", 0, HMODULE{});
}

NotifyIconData Icon(HWND window, std::u16string_view tip = u"Studio 7200", std::uint32_t id = 1) {
  NotifyIconData data{.window = window,
                      .id = id,
                      .flags = NIF_MESSAGE | NIF_ICON | NIF_TIP,
                      .callbackMessage = kCallback};
  data.tip[tip.copy(data.tip, std::size(data.tip) - 1)] = u'\0';
  return data;
}

bool Notify(std::uint32_t message, const NotifyIconData& data) {
  return Os().shell.Shell_NotifyIconW(message, data);
}

std::vector<std::u16string> TraceOf(const Machine& machine, std::u16string_view beginning) {
  std::vector<std::u16string> lines;
  for (const Event& event : machine.trace())
    if (event.text.starts_with(beginning)) lines.push_back(event.text);
  return lines;
}

class SimulatedTray : public testing::Test {
 protected:
  SimulatedTray() { g_told.clear(); }

  Machine machine;
  Inside inside{machine};
  NotificationArea& tray = machine.tray();
};

// --- Icons

TEST_F(SimulatedTray, AnIconBearsWhatItWasAddedWith) {
  const HWND window = MakeWindow();
  ASSERT_TRUE(Notify(NIM_ADD, Icon(window, u"Studio 7200", 9)));
  ASSERT_EQ(tray.Icons().size(), 1U);
  const TrayIcon& icon = tray.Icons()[0];
  EXPECT_EQ(icon.window, window);
  EXPECT_EQ(icon.id, 9U);
  EXPECT_EQ(icon.callbackMessage, kCallback);
  EXPECT_EQ(icon.tip, u"Studio 7200");
  EXPECT_EQ(icon.picture, u"");
  EXPECT_EQ(icon.process, &inside.process());
}

TEST_F(SimulatedTray, IconsStandAsTheyWereAdded) {
  const HWND window = MakeWindow();
  Notify(NIM_ADD, Icon(window, u"first", 2));
  Notify(NIM_ADD, Icon(window, u"second", 1));
  ASSERT_EQ(tray.Icons().size(), 2U);
  EXPECT_EQ(tray.Icons()[0].tip, u"first");
  EXPECT_EQ(tray.Icons()[1].tip, u"second");
}

TEST_F(SimulatedTray, TheIconOfAProcessIsFound) {
  Process& other = machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    Notify(NIM_ADD, Icon(MakeWindow(), u"other"));
    Os().process.Sleep(INFINITE);
    return 0U;
  });
  EXPECT_EQ(tray.FindOf(other), nullptr);
  Os().process.Sleep(1);
  ASSERT_NE(tray.FindOf(other), nullptr);
  EXPECT_EQ(tray.FindOf(other)->tip, u"other");
  EXPECT_EQ(tray.FindOf(inside.process()), nullptr);
}

TEST_F(SimulatedTray, OnlyWhatTheFlagsNameIsTaken) {
  const HWND window = MakeWindow();
  NotifyIconData data = Icon(window, u"tip");
  data.flags = NIF_MESSAGE;
  data.icon = HICON{77};
  ASSERT_TRUE(Notify(NIM_ADD, data));
  EXPECT_EQ(tray.Icons()[0].tip, u"");
  EXPECT_EQ(tray.Icons()[0].icon, HICON{});

  data = Icon(window, u"changed");
  data.flags = NIF_TIP;
  data.callbackMessage = 0;
  ASSERT_TRUE(Notify(NIM_MODIFY, data));
  EXPECT_EQ(tray.Icons()[0].tip, u"changed");
  EXPECT_EQ(tray.Icons()[0].callbackMessage, kCallback);
}

TEST_F(SimulatedTray, ATipHasRoomFor127Characters) {
  NotifyIconData data = Icon(MakeWindow());
  std::fill(std::begin(data.tip), std::end(data.tip), u'x');
  ASSERT_TRUE(Notify(NIM_ADD, data));
  EXPECT_EQ(tray.Icons()[0].tip, std::u16string(127, u'x'));
}

class Picture final : public HandleBody {
 public:
  std::u16string Describe() const override { return u"icon 700 of C:\\X.DLL"; }
  bool IsKernelObject() const override { return false; }
};

TEST_F(SimulatedTray, ThePictureIsTheOneThatTheLedgerNames) {
  NotifyIconData data = Icon(MakeWindow());
  const std::uint64_t handle = inside.process().AddHandle(std::make_shared<Picture>());
  data.icon = HICON{handle};
  ASSERT_TRUE(Notify(NIM_ADD, data));
  inside.process().CloseHandle(handle);  // the shell has a copy
  EXPECT_EQ(tray.Icons()[0].picture, u"icon 700 of C:\\X.DLL");
  EXPECT_EQ(TraceOf(machine, u"icon "),
            std::vector<std::u16string>{u"icon added: \"Studio 7200\", icon 700 of C:\\X.DLL"});
}

TEST_F(SimulatedTray, TheTraceTellsWhatHappensToIcons) {
  const HWND window = MakeWindow();
  Notify(NIM_ADD, Icon(window));
  Notify(NIM_ADD, Icon(window));
  Notify(NIM_MODIFY, Icon(window, u"Studio 7300"));
  Notify(NIM_DELETE, Icon(window));
  Notify(NIM_DELETE, Icon(window));
  Notify(NIM_ADD, Icon(window));
  Os().windowing.DestroyWindow(window);
  EXPECT_EQ(TraceOf(machine, u"icon "),
            (std::vector<std::u16string>{
                u"icon added: \"Studio 7200\"", u"icon modified: \"Studio 7300\"", u"icon deleted",
                u"icon added: \"Studio 7200\"", u"icon gone with its window"}));
}

// --- The mouse

TEST_F(SimulatedTray, TheWindowIsToldOfEachPressAndRelease) {
  const HWND window = MakeWindow();
  Notify(NIM_ADD, Icon(window));
  tray.Click(tray.Icons()[0]);
  HandleMessages(window);
  EXPECT_EQ(std::exchange(g_told, {}), (std::vector<LPARAM>{513, 514}));
  tray.DoubleClick(tray.Icons()[0]);
  HandleMessages(window);
  EXPECT_EQ(std::exchange(g_told, {}), (std::vector<LPARAM>{513, 514, 515, 514}));
  tray.RightClick(tray.Icons()[0]);
  HandleMessages(window);
  EXPECT_EQ(std::exchange(g_told, {}), (std::vector<LPARAM>{516, 517}));
  tray.Tell(tray.Icons()[0], 512);
  HandleMessages(window);
  EXPECT_EQ(std::exchange(g_told, {}), std::vector<LPARAM>{512});
}

TEST_F(SimulatedTray, TheWindowIsToldOnceItHandlesMessages) {
  Notify(NIM_ADD, Icon(MakeWindow()));
  tray.Click(tray.Icons()[0]);
  EXPECT_TRUE(g_told.empty());
  Os().process.Sleep(10);
  EXPECT_TRUE(g_told.empty());
}

TEST_F(SimulatedTray, AWaitingProcessIsToldAtOnce) {
  const Process& other = machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    Notify(NIM_ADD, Icon(MakeWindow()));
    Message message;
    Os().windowing.GetMessageW(&message);  // never comes back
    return 0U;
  });
  Os().process.Sleep(1);
  tray.RightClick(*tray.FindOf(other));
  Os().process.Sleep(0);
  EXPECT_EQ(g_told, (std::vector<LPARAM>{516, 517}));
}

TEST_F(SimulatedTray, WhatWasToldAWindowThatGoesIsDropped) {
  const HWND window = MakeWindow();
  const HWND other = MakeWindow();
  Notify(NIM_ADD, Icon(window));
  Notify(NIM_ADD, Icon(other));
  tray.Click(tray.Icons()[0]);
  tray.RightClick(tray.Icons()[1]);
  Os().windowing.DestroyWindow(window);
  HandleMessages(other);
  EXPECT_EQ(g_told, (std::vector<LPARAM>{516, 517}));
}

TEST_F(SimulatedTray, AnIconWithoutCallbackMessageTellsNothing) {
  const HWND window = MakeWindow();
  NotifyIconData data = Icon(window);
  data.flags = NIF_TIP;
  Notify(NIM_ADD, data);
  tray.Click(tray.Icons()[0]);
  HandleMessages(window);
  EXPECT_TRUE(TraceOf(machine, u"got ").empty());
}

// --- What is left behind

TEST_F(SimulatedTray, AnIconIsInTheLedgerUntilItIsTakenAway) {
  const HWND window = MakeWindow();
  Notify(NIM_ADD, Icon(window));
  EXPECT_EQ(inside.process().Ledger(),
            (std::vector<std::u16string>{u"window Tray", u"icon in the notification area"}));
  Notify(NIM_DELETE, Icon(window));
  EXPECT_EQ(inside.process().Ledger(), std::vector<std::u16string>{u"window Tray"});
}

TEST_F(SimulatedTray, AnIconWhoseWindowWasDestroyedIsGoneAndLeftBehind) {
  const HWND window = MakeWindow();
  Notify(NIM_ADD, Icon(window));
  Os().windowing.DestroyWindow(window);
  EXPECT_TRUE(tray.Icons().empty());
  EXPECT_FALSE(Notify(NIM_DELETE, Icon(window)));
  EXPECT_EQ(inside.process().Ledger(),
            std::vector<std::u16string>{u"icon in the notification area"});
}

TEST_F(SimulatedTray, AnIconCanBeTakenAwayWhileItsWindowIsBeingDestroyed) {
  Os().windowing.RegisterClassW(
      {.procedure =
           [](HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
             if (message == WM_DESTROY) {
               EXPECT_TRUE(Notify(NIM_DELETE, Icon(window)));
             }
             return Default(window, message, wParam, lParam);
           },
       .className = u"Tidy"});
  const HWND window = Os().windowing.CreateWindowExW(0, u"Tidy", u"", 0, HMODULE{});
  Notify(NIM_ADD, Icon(window));
  Os().windowing.DestroyWindow(window);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(SimulatedTray, AProcessThatEndsLeavesItsIconsBehind) {
  Process& other = machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    Notify(NIM_ADD, Icon(MakeWindow()));
    return 0U;
  });
  Os().process.Sleep(1);
  EXPECT_TRUE(tray.Icons().empty());
  EXPECT_EQ(other.Ledger(),
            (std::vector<std::u16string>{u"window Tray", u"icon in the notification area"}));
}

// --- A shell that refuses

TEST_F(SimulatedTray, AShellThatRefusesDoesNothing) {
  const HWND window = MakeWindow();
  tray.Refuse(true);
  EXPECT_FALSE(Notify(NIM_ADD, Icon(window)));
  tray.Refuse(false);
  EXPECT_TRUE(Notify(NIM_ADD, Icon(window)));
  tray.Refuse(true);
  EXPECT_FALSE(Notify(NIM_MODIFY, Icon(window, u"other")));
  EXPECT_FALSE(Notify(NIM_DELETE, Icon(window)));
  ASSERT_EQ(tray.Icons().size(), 1U);
  EXPECT_EQ(tray.Icons()[0].tip, u"Studio 7200");
}

TEST_F(SimulatedTray, TheCallFailsWhenItIsToldTo) {
  const HWND window = MakeWindow();
  inside.process().FailNext("Shell_NotifyIconW", ERROR_ACCESS_DENIED);
  EXPECT_FALSE(Notify(NIM_ADD, Icon(window)));
  EXPECT_TRUE(tray.Icons().empty());
  EXPECT_TRUE(Notify(NIM_ADD, Icon(window)));
}

TEST_F(SimulatedTray, TakingAwayIsNoCallThatFailsByNumber) {
  const HWND window = MakeWindow();
  inside.process().FailCall(1);
  EXPECT_FALSE(Notify(NIM_ADD, Icon(window)));
  EXPECT_EQ(inside.process().failedOperation(), "Shell_NotifyIconW");
  EXPECT_TRUE(Notify(NIM_ADD, Icon(window)));
  inside.process().FailCall(1);
  EXPECT_TRUE(Notify(NIM_DELETE, Icon(window)));
}

TEST_F(SimulatedTray, AWindowThatIsGoneGetsNoIcon) {
  EXPECT_FALSE(Notify(NIM_ADD, Icon(kNoWindow)));
  EXPECT_FALSE(Notify(NIM_ADD, Icon(HWND{})));
  EXPECT_TRUE(tray.Icons().empty());
}

}  // namespace
}  // namespace sim
