#include <algorithm>

#include "Common/tray_log.h"
#include "tests/support/frame_fixture.h"

namespace vgl {
namespace {

using namespace platform;

class WindowProcedure : public FrameTest {
 protected:
  // How many message boxes have been shown so far.
  std::ptrdiff_t BoxesShown() {
    return std::count_if(machine.trace().begin(), machine.trace().end(), [](const auto& event) {
      return event.text.starts_with(u"message box \"");
    });
  }
};

TEST_F(WindowProcedure, PrivateMessagesAreWmUserPlusHundreds) {
  EXPECT_EQ(WM_VGL3_TRAYICON, 1124U);
  EXPECT_EQ(WM_VGL3_UPDATE_ICON, 1224U);
  EXPECT_EQ(WM_VGL3_KICK_INVITATION, 1324U);
  EXPECT_EQ(WM_VGL3_CHECK_NETPILOT, 1424U);
  EXPECT_EQ(WM_VGL3_FLUSH_VGLLOG, 1524U);
}

TEST_F(WindowProcedure, CloseIsLoggedAndTheSystemsDefaultDestroysTheWindow) {
  Send(WM_CLOSE);
  EXPECT_TRUE(HasLogged("WM_CLOSE"));
  EXPECT_TRUE(HasLogged("WM_DESTROY"));
  EXPECT_FALSE(WindowStands());
}

TEST_F(WindowProcedure, DestroyShutsTheFrameDownAndThenAsksTheLoopToEndWithZero) {
  frame->StartUp();
  Send(WM_CLOSE);
  EXPECT_TRUE(HasLogged("CMainFrame::DestroyWindow"));
  Message message;
  EXPECT_EQ(Os().windowing.GetMessageW(&message), 0);
  EXPECT_EQ(message.wParam, 0U);
}

TEST_F(WindowProcedure, DestroyWaitsForARunningUtilityWithTheFrameStillWhole) {
  frame->StartUp();
  StartUtility();
  StopUtility(700);
  bool wholeWhileWaiting = false;
  machine.StartProcess(u"C:\\onlooker.exe", u"", [&](const char16_t*) {
    Os().process.Sleep(600);
    wholeWhileWaiting = WindowStands() && PeriodOf(TMID_MASKCHECK) == 3000;
    return 0U;
  });
  const std::uint64_t start = machine.now();
  Send(WM_CLOSE);
  EXPECT_EQ(machine.now() - start, 700U);
  EXPECT_TRUE(wholeWhileWaiting);
  EXPECT_FALSE(WindowStands());
}

TEST_F(WindowProcedure, CommandOfTheStatusEntryShowsThatNoStatusWindowCanBeOpened) {
  frame->StartUp();
  machine.desktop().AnswerBoxesAtOnce();
  Send(WM_COMMAND, IDM_STATUS);
  const auto shown = [](const sim::Event& event) {
    return event.text ==
           u"message box \"KAVRO Vigil 3\": \r\nUnable to open Printer Status window for this "
           u"printer.";
  };
  EXPECT_EQ(std::count_if(machine.trace().begin(), machine.trace().end(), shown), 1);
}

TEST_F(WindowProcedure, CommandOfThePreferencesEntryShowsThatNoPreferencesWindowCanBeOpened) {
  frame->StartUp();
  machine.desktop().AnswerBoxesAtOnce();
  Send(WM_COMMAND, IDM_SET_ENV);
  const auto shown = [](const sim::Event& event) {
    return event.text ==
           u"message box \"KAVRO Vigil 3\": \r\nUnable to open Monitoring Preferences window for "
           u"this printer.";
  };
  EXPECT_EQ(std::count_if(machine.trace().begin(), machine.trace().end(), shown), 1);
}

TEST_F(WindowProcedure, OnlyTheLowWordOfACommandIsItsId) {
  frame->StartUp();
  machine.desktop().AnswerBoxesAtOnce();
  const std::size_t before = machine.trace().size();
  Send(WM_COMMAND, 0x10000 | IDM_STATUS);
  EXPECT_GT(machine.trace().size(), before);
}

TEST_F(WindowProcedure, CommandWithoutDriverValueDoesNothing) {
  frame->StartUp();
  const std::size_t before = machine.trace().size();
  Send(WM_COMMAND, 925);
  EXPECT_EQ(machine.trace().size(), before);
}

TEST_F(WindowProcedure, UpdateIconReadsTheRecordAnewWhateverItsArguments) {
  const HKEY hive = HKEY_CURRENT_USER;
  machine.registry().SetDword(hive, desk::kRecordPath, u"TrayIconSelected", 2);
  Send(WM_VGL3_UPDATE_ICON, 0, 0);
  EXPECT_EQ(frame->m_nIconSelected, 2U);

  machine.registry().SetDword(hive, desk::kRecordPath, u"TrayIconSelected", 1);
  Send(WM_VGL3_UPDATE_ICON, 77, -5);
  EXPECT_EQ(frame->m_nIconSelected, 1U);
}

TEST_F(WindowProcedure, UpdateIconReadsARecordThatMayOnlyBeRead) {
  machine.registry().SetDword(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconSelected", 2);
  machine.registry().Deny(HKEY_CURRENT_USER, desk::kRecordPath, false);
  Send(WM_VGL3_UPDATE_ICON);
  EXPECT_EQ(frame->m_nIconSelected, 2U);
}

TEST_F(WindowProcedure, UpdateIconWithoutARecordChangesNothing) {
  frame->m_nIconSelected = 1;
  machine.registry().RemoveKey(HKEY_CURRENT_USER, desk::kRecordPath);
  Send(WM_VGL3_UPDATE_ICON);
  EXPECT_EQ(frame->m_nIconSelected, 1U);
}

TEST_F(WindowProcedure, UpdateIconWithAValueOfEightBytesChangesNothing) {
  frame->m_nIconSelected = 1;
  machine.registry().SetBytes(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconSelected", REG_BINARY,
                              std::string(8, '\2'));
  Send(WM_VGL3_UPDATE_ICON);
  EXPECT_EQ(frame->m_nIconSelected, 1U);
}

TEST_F(WindowProcedure, PostedWorkMessagesAreTakenWithoutEffectWhenNothingIsDue) {
  frame->StartUp();
  const std::vector<sim::Timer> timers = machine.desktop().TimersOf(frame->m_hWnd);
  for (const std::uint32_t message :
       {WM_VGL3_KICK_INVITATION, WM_VGL3_CHECK_NETPILOT, WM_VGL3_FLUSH_VGLLOG})
    Send(message);
  EXPECT_EQ(machine.desktop().TimersOf(frame->m_hWnd).size(), timers.size());
  EXPECT_TRUE(WindowStands());
}

TEST_F(WindowProcedure, MessagesBeforeTheFrameExistsGetTheDefaultHandling) {
  g_pMainFrame = nullptr;
  Send(WM_CLOSE);
  EXPECT_FALSE(WindowStands());
  EXPECT_FALSE(HasLogged("WM_CLOSE"));
}

TEST_F(WindowProcedure, SlotsAreTheIds920To998) {
  EXPECT_FALSE(frame->IsExMenuSlot(919));
  EXPECT_TRUE(frame->IsExMenuSlot(920));
  EXPECT_TRUE(frame->IsExMenuSlot(998));
  EXPECT_FALSE(frame->IsExMenuSlot(999));
  EXPECT_FALSE(frame->IsExMenuSlot(0));
}

TEST_F(WindowProcedure, WithoutSlotsNoIdIsOne) {
  frame->m_nExMenuMax = 0;
  EXPECT_FALSE(frame->IsExMenuSlot(920));
}

TEST_F(WindowProcedure, OwnerDrawMessagesWithoutAnItemAreLeftToTheDefault) {
  Send(WM_MEASUREITEM, 0, 0);
  Send(WM_DRAWITEM, 0, 0);
  EXPECT_TRUE(WindowStands());
}

// The default's result of WM_NCCREATE is 1, and of everything else that comes here 0: so a handler
// that decided a result, or left the default out, would show.
TEST_F(WindowProcedure, EveryMessageHasTheDefaultsResult) {
  frame->StartUp();
  machine.desktop().AnswerBoxesAtOnce();
  EXPECT_EQ(TrayWindowProc(frame->m_hWnd, WM_NCCREATE, 0, 0), 1);
  for (const std::uint32_t message :
       {WM_COMMAND, WM_TIMER, WM_VGL3_TRAYICON, WM_VGL3_UPDATE_ICON, WM_VGL3_KICK_INVITATION,
        WM_VGL3_CHECK_NETPILOT, WM_VGL3_FLUSH_VGLLOG, WM_USER + 1, WM_DESTROY}) {
    const std::uint64_t defaults = machine.desktop().defaultHandlings();
    EXPECT_EQ(TrayWindowProc(frame->m_hWnd, message, 0, 0), 0) << message;
    EXPECT_EQ(machine.desktop().defaultHandlings(), defaults + 1) << message;
  }
}

TEST_F(WindowProcedure, LeftButtonDownArmsTheClickTimerWithTheDoubleClickTime) {
  machine.system().doubleClickTime = 350;
  Send(WM_VGL3_TRAYICON, 0, WM_LBUTTONDOWN);
  EXPECT_EQ(frame->m_uhClick, TMID_CLICK);
  EXPECT_EQ(PeriodOf(TMID_CLICK), 350U);
}

TEST_F(WindowProcedure, DoubleClickStopsTheClickTimerAndOpensTheStatusWindow) {
  frame->StartUp();
  machine.desktop().AnswerBoxesAtOnce();
  Send(WM_VGL3_TRAYICON, 0, WM_LBUTTONDOWN);
  const std::ptrdiff_t before = BoxesShown();
  Send(WM_VGL3_TRAYICON, 0, WM_LBUTTONDBLCLK);
  EXPECT_EQ(frame->m_uhClick, 0U);
  EXPECT_EQ(PeriodOf(TMID_CLICK), 0U);
  EXPECT_EQ(BoxesShown(), before + 1);
}

}  // namespace
}  // namespace vgl
