#include "menu/menu_head.h"
#include "tests/support/frame_fixture.h"

namespace vgl {
namespace {

using namespace platform;

// The messages that a timer posted, without the WM_TIMER that came first.
std::vector<std::uint32_t> PostedNumbers(const std::vector<Message>& messages) {
  std::vector<std::uint32_t> numbers;
  for (const Message& message : messages)
    if (message.message != WM_TIMER) numbers.push_back(message.message);
  return numbers;
}

class Timers : public FrameTest {
 protected:
  // A click that comes through has no menu to open, which would wait for a choice.
  Timers() { machine.files().Remove(desk::kResourceLibraryPath); }
  std::uint64_t Arm(std::uint64_t id, std::uint32_t milliseconds) {
    return Os().windowing.SetTimer(frame->m_hWnd, id, milliseconds);
  }
  void WriteProfile(const std::string& text) {
    machine.files().WriteFile(u"C:\\Driver\\model.dat", text);
    EXPECT_TRUE(frame->m_szDatPath.Assign(u"C:\\Driver\\model.dat"));
  }
};

TEST_F(Timers, EveryTimerIsLoggedWithItsId) {
  Send(WM_TIMER, 4711);
  EXPECT_TRUE(HasLogged("CMainFrame::OnTimer ID : 4711"));
}

TEST_F(Timers, NetPilotTimerPostsItsCheckAndGoesOnEveryQuarterOfAnHour) {
  frame->m_uhNetPilot = Arm(TMID_NETPILOT, 60000);
  EXPECT_EQ(PostedNumbers(Pump(60010)), std::vector<std::uint32_t>{WM_VGL3_CHECK_NETPILOT});
  EXPECT_EQ(frame->m_uhNetPilot, TMID_NETPILOT);
  EXPECT_EQ(PeriodOf(TMID_NETPILOT), 900000U);
  EXPECT_TRUE(HasLogged("PostMessage WM_VGL3_CHECK_NETPILOT"));
  EXPECT_TRUE(HasLogged("SetTimer TMID_NETPILOT default"));
  EXPECT_TRUE(HasLogged("SetTimer TMID_NETPILOT : 900000"));
}

TEST_F(Timers, NetPilotTimerTakesItsPeriodFromTheProfile) {
  WriteProfile("[S7200]\r\nNetPilotCheckTime=120000\r\n");
  frame->m_uhNetPilot = Arm(TMID_NETPILOT, 60000);
  Pump(60010);
  EXPECT_EQ(PeriodOf(TMID_NETPILOT), 120000U);
  EXPECT_FALSE(HasLogged("SetTimer TMID_NETPILOT default"));
  EXPECT_TRUE(HasLogged("SetTimer TMID_NETPILOT : 120000"));
}

TEST_F(Timers, NetPilotTimerTakesTheDefaultWhereTheProfileDoesntSpeakOfIt) {
  WriteProfile("[S7200]\r\nOther=1\r\n");
  frame->m_uhNetPilot = Arm(TMID_NETPILOT, 60000);
  Pump(60010);
  EXPECT_EQ(PeriodOf(TMID_NETPILOT), 900000U);
}

TEST_F(Timers, NetPilotTimerTakesTheDefaultForAProfileValueOfZero) {
  WriteProfile("[S7200]\r\nNetPilotCheckTime=0\r\n");
  frame->m_uhNetPilot = Arm(TMID_NETPILOT, 60000);
  Pump(60010);
  EXPECT_EQ(PeriodOf(TMID_NETPILOT), 900000U);
}

TEST_F(Timers, FlushLogTimerPostsAndRunsOn) {
  frame->m_uhFlushLog = Arm(TMID_FLUSHLOG, 900000);
  EXPECT_EQ(PostedNumbers(Pump(1800010)),
            (std::vector<std::uint32_t>{WM_VGL3_FLUSH_VGLLOG, WM_VGL3_FLUSH_VGLLOG}));
  EXPECT_EQ(frame->m_uhFlushLog, TMID_FLUSHLOG);
  EXPECT_TRUE(HasLogged("PostMessage WM_VGL3_FLUSH_VGLLOG"));
}

TEST_F(Timers, InvitationTimerPostsAndGoesOnWithThePeriodOfTheLibrary) {
  frame->m_uInvitationPeriod = 7000;
  frame->m_uhInvitationMonitor = Arm(TMID_INVITATION, 60000);
  EXPECT_EQ(PostedNumbers(Pump(60010)), std::vector<std::uint32_t>{WM_VGL3_KICK_INVITATION});
  EXPECT_EQ(frame->m_uhInvitationMonitor, TMID_INVITATION);
  EXPECT_EQ(PeriodOf(TMID_INVITATION), 7000U);
}

TEST_F(Timers, InvitationTimerEndsWithAPeriodOfZero) {
  frame->m_uhInvitationMonitor = Arm(TMID_INVITATION, 60000);
  EXPECT_EQ(PostedNumbers(Pump(60010)), std::vector<std::uint32_t>{WM_VGL3_KICK_INVITATION});
  EXPECT_EQ(frame->m_uhInvitationMonitor, 0U);
  EXPECT_EQ(PeriodOf(TMID_INVITATION), 0U);
}

TEST_F(Timers, ClickTimerActsAsARightClickOnce) {
  frame->m_uhClick = Arm(TMID_CLICK, 500);
  const std::vector<Message> messages = Pump(2000);
  ASSERT_EQ(PostedNumbers(messages), std::vector<std::uint32_t>{WM_VGL3_TRAYICON});
  EXPECT_EQ(messages.back().wParam, 0U);
  EXPECT_EQ(messages.back().lParam, 516);
  EXPECT_EQ(frame->m_uhClick, 0U);
}

TEST_F(Timers, ASecondPressRestartsTheClickTimer) {
  Send(WM_VGL3_TRAYICON, 0, WM_LBUTTONDOWN);
  Pump(400);
  Send(WM_VGL3_TRAYICON, 0, WM_LBUTTONDOWN);
  EXPECT_TRUE(PostedNumbers(Pump(400)).empty());
  EXPECT_EQ(PostedNumbers(Pump(200)), std::vector<std::uint32_t>{WM_VGL3_TRAYICON});
}

TEST_F(Timers, MaskCheckIsReArmedWithThreeSeconds) {
  frame->m_uhMaskCheck = Arm(TMID_MASKCHECK, 3000);
  Pump(6010);
  EXPECT_EQ(frame->m_uhMaskCheck, TMID_MASKCHECK);
  EXPECT_EQ(PeriodOf(TMID_MASKCHECK), 3000U);
  EXPECT_TRUE(HasLogged("CMainFrame::OnTimer : Mask check"));
}

TEST_F(Timers, PrinterCheckIsReArmedWithItsPeriodWhileThePrinterIsThere) {
  frame->m_uEndTime = 5000;
  frame->m_uhPrinterCheck = Arm(TMID_PRINTERCHECK, 5000);
  Pump(5010);
  EXPECT_EQ(frame->m_uhPrinterCheck, TMID_PRINTERCHECK);
  EXPECT_EQ(PeriodOf(TMID_PRINTERCHECK), 5000U);
  EXPECT_TRUE(HasLogged("CMainFrame::OnTimer : Printer check"));
  EXPECT_TRUE(HasLogged("CMainFrame::ChkDelPrn : start"));
}

TEST_F(Timers, PrinterCheckOfAPrinterInInstallationTestsNothing) {
  frame->m_fIconInstall = 1;
  frame->m_uEndTime = 5000;
  frame->m_uhPrinterCheck = Arm(TMID_PRINTERCHECK, 5000);
  Pump(5010);
  EXPECT_EQ(frame->m_uhPrinterCheck, TMID_PRINTERCHECK);
  EXPECT_FALSE(HasLogged("CMainFrame::ChkDelPrn : start"));
}

TEST_F(Timers, AnUnknownIdPassesTheGateAndHasNoEffect) {
  StartUtility();
  Send(WM_TIMER, 99);
  EXPECT_TRUE(HasLogged("CMainFrame::OnTimer ID : 99"));
  EXPECT_TRUE(HasLogged("return utility executing"));
  EXPECT_TRUE(machine.desktop().TimersOf(frame->m_hWnd).empty());
}

TEST_F(Timers, AnIdOfZeroMatchesNoTimerThatIsOff) {
  EXPECT_TRUE(PostedNumbers(Pump()).empty());
  Send(WM_TIMER, 0);
  EXPECT_TRUE(PostedNumbers(Pump()).empty());
  EXPECT_TRUE(machine.desktop().TimersOf(frame->m_hWnd).empty());
}

TEST_F(Timers, AMessageThatComesAfterItsFieldWasClearedMatchesNothing) {
  frame->m_uhClick = 0;
  Send(WM_TIMER, TMID_CLICK);
  EXPECT_TRUE(PostedNumbers(Pump()).empty());
}

TEST_F(Timers, ChecksStandAsideWhileAUtilityRunsAndTheirTimersGoOn) {
  frame->m_uEndTime = 5000;
  frame->m_uhMaskCheck = Arm(TMID_MASKCHECK, 3000);
  frame->m_uhPrinterCheck = Arm(TMID_PRINTERCHECK, 5000);
  StartUtility();
  Pump(10010);
  EXPECT_TRUE(HasLogged("Utility executing"));
  EXPECT_TRUE(HasLogged("return utility executing"));
  EXPECT_FALSE(HasLogged("CMainFrame::OnTimer : Mask check"));
  EXPECT_FALSE(HasLogged("CMainFrame::OnTimer : Printer check"));
  EXPECT_EQ(PeriodOf(TMID_MASKCHECK), 3000U);
  EXPECT_EQ(PeriodOf(TMID_PRINTERCHECK), 5000U);
}

TEST_F(Timers, ChecksComeBackWhenTheUtilityHasEnded) {
  frame->m_uhMaskCheck = Arm(TMID_MASKCHECK, 3000);
  StartUtility();
  StopUtility(4000);
  Pump(6010);
  EXPECT_TRUE(HasLogged("Utility not executing"));
  EXPECT_TRUE(HasLogged("CMainFrame::OnTimer : Mask check"));
}

TEST_F(Timers, TheOtherTimersAreServedWhileAUtilityRuns) {
  StartUtility();
  frame->m_uhNetPilot = Arm(TMID_NETPILOT, 100);
  frame->m_uhFlushLog = Arm(TMID_FLUSHLOG, 200);
  frame->m_uhInvitationMonitor = Arm(TMID_INVITATION, 300);
  frame->m_uhClick = Arm(TMID_CLICK, 400);
  EXPECT_EQ(PostedNumbers(Pump(410)),
            (std::vector<std::uint32_t>{WM_VGL3_CHECK_NETPILOT, WM_VGL3_FLUSH_VGLLOG,
                                        WM_VGL3_KICK_INVITATION, WM_VGL3_FLUSH_VGLLOG,
                                        WM_VGL3_TRAYICON}));
}

TEST_F(Timers, TheFirstFieldInOrderDecides) {
  frame->m_uhPrinterCheck = frame->m_uhMaskCheck = frame->m_uhClick = 5;
  frame->m_uhInvitationMonitor = frame->m_uhFlushLog = frame->m_uhNetPilot = 5;
  const auto next = [this] {
    Send(WM_TIMER, 5);
    return PostedNumbers(Pump());
  };
  EXPECT_EQ(next(), std::vector<std::uint32_t>{WM_VGL3_CHECK_NETPILOT});
  EXPECT_EQ(next(), std::vector<std::uint32_t>{WM_VGL3_FLUSH_VGLLOG});
  frame->m_uhFlushLog = 0;
  EXPECT_EQ(next(), std::vector<std::uint32_t>{WM_VGL3_KICK_INVITATION});
  EXPECT_EQ(next(), std::vector<std::uint32_t>{WM_VGL3_TRAYICON});
  EXPECT_FALSE(HasLogged("CMainFrame::OnTimer : Mask check"));
  next();
  EXPECT_TRUE(HasLogged("CMainFrame::OnTimer : Mask check"));
  EXPECT_FALSE(HasLogged("CMainFrame::OnTimer : Printer check"));
  next();
  EXPECT_TRUE(HasLogged("CMainFrame::OnTimer : Printer check"));
}

TEST_F(Timers, ATimerThatCantBeReArmedEndsItsWork) {
  frame->m_uEndTime = 5000;
  frame->m_uInvitationPeriod = 5000;
  const std::pair<std::uint64_t, std::uint64_t*> timers[] = {
      {TMID_MASKCHECK, &frame->m_uhMaskCheck},
      {TMID_PRINTERCHECK, &frame->m_uhPrinterCheck},
      {TMID_NETPILOT, &frame->m_uhNetPilot},
      {TMID_INVITATION, &frame->m_uhInvitationMonitor}};
  for (const auto& [id, field] : timers) {
    *field = Arm(id, 3000);
    inside.process().FailNext("SetTimer", ERROR_NO_SYSTEM_RESOURCES);
    Send(WM_TIMER, id);
    EXPECT_EQ(*field, 0U) << id;
    EXPECT_EQ(PeriodOf(id), 0U) << id;
  }
}

TEST_F(Timers, GoOnWhileAMessageBoxIsOpen) {
  machine.files().Remove(desk::kRunHelperPath);
  frame->m_uhMaskCheck = Arm(TMID_MASKCHECK, 3000);
  // A second pair of hands closes the box after ten seconds.
  machine.StartProcess(u"C:\\person.exe", u"", [](const char16_t*) {
    Os().process.Sleep(10000);
    const HWND box = Os().windowing.FindWindowW(u"#32770", nullptr);
    Os().windowing.PostMessageW(box, WM_COMMAND, 1, 0);
    return 0U;
  });
  Send(WM_COMMAND, IDM_STATUS);
  EXPECT_TRUE(HasLogged("CMainFrame::OnTimer : Mask check"));
}

}  // namespace
}  // namespace vgl
