#include <functional>
#include <optional>
#include <span>

#include "Common/CVglLog.h"
#include "Common/text_conversion.h"
#include "Common/tray_log.h"
#include "desk/printer_library.h"
#include "desk/usage_log_file.h"
#include "desk/usage_log_library.h"
#include "menu/menu_head.h"
#include "tests/support/frame_fixture.h"

namespace vgl {
namespace {

using namespace platform;
using namespace std::string_literals;

class WindowProcedure : public FrameTest {
 protected:
  const std::vector<sim::Programs::Start>& Starts() { return machine.programs().Starts(); }
  // What stands in the parameter file of the only program that was started.
  std::u16string ParamFileOfTheStart() {
    constexpr std::u16string_view kOption = u"/FU \"";
    EXPECT_EQ(Starts().size(), 1U);
    std::u16string path = Starts().at(0).arguments.substr(kOption.size());
    path.pop_back();
    const std::string bytes = machine.files().ReadFile(path).value_or("");
    return TextFromUtf16Le(std::as_bytes(std::span(bytes)));
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
    wholeWhileWaiting = WindowStands() && PeriodOf(TMID_MASKCHECK) == 3000 &&
                        machine.tray().FindOf(inside.process()) != nullptr;
    return 0U;
  });
  const std::uint64_t start = machine.now();
  Send(WM_CLOSE);
  EXPECT_EQ(machine.now() - start, 700U);
  EXPECT_TRUE(wholeWhileWaiting);
  EXPECT_FALSE(WindowStands());
}

TEST_F(WindowProcedure, CommandOfTheStatusEntryStartsTheRunHelper) {
  frame->StartUp();
  Send(WM_COMMAND, IDM_STATUS);
  EXPECT_EQ(ParamFileOfTheStart(), u"/P11 \"Studio 7200\"\n/O6 \"USB001\"\n/M5 \"S7200\"\n\0"s);
}

TEST_F(WindowProcedure, CommandOfThePreferencesEntryStartsTheRunHelperWithE) {
  frame->StartUp();
  Send(WM_COMMAND, IDM_SET_ENV);
  EXPECT_EQ(ParamFileOfTheStart(), u"/P11 \"Studio 7200\"\n/O6 \"USB001\"\n/M5 \"S7200\"\n/E\0"s);
}

TEST_F(WindowProcedure, OnlyTheLowWordOfACommandIsItsId) {
  frame->StartUp();
  Send(WM_COMMAND, 0x10000 | IDM_STATUS);
  EXPECT_EQ(Starts().size(), 1U);
}

TEST_F(WindowProcedure, CommandWithoutDriverValueDoesNothing) {
  frame->StartUp();
  g_bTrayLogEnabled = 0;  // which tells where the value was looked for
  const std::size_t before = machine.trace().size();
  Send(WM_COMMAND, 925);
  EXPECT_EQ(machine.trace().size(), before);
}

// The driver set names neither an invitation library nor NetPilot.
TEST_F(WindowProcedure, PostedWorkMessagesAreTakenWithoutEffectWhenNothingIsDue) {
  frame->StartUp();
  g_bTrayLogEnabled = 0;  // which tells where a library was looked for
  const std::vector<std::u16string> held = inside.process().Ledger();
  for (const std::uint32_t message : {WM_VGL3_KICK_INVITATION, WM_VGL3_CHECK_NETPILOT}) {
    const std::size_t events = machine.trace().size();
    TrayWindowProc(frame->m_hWnd, message, 0, 0);
    EXPECT_EQ(machine.trace().size(), events) << message;
    EXPECT_EQ(inside.process().Ledger(), held) << message;
  }
}

TEST_F(WindowProcedure, AFlushHandsTheCountsOverAndTheNextCountStartsAfresh) {
  frame->StartUp();
  CVglLog& log = g_VglLog.get();
  ASSERT_NE(log.m_pnLogData, nullptr);
  Send(WM_VGL3_FLUSH_VGLLOG, 5, -5);
  EXPECT_FALSE(desk::UsageLogLibraryOf(machine).calls.empty());
  EXPECT_EQ(log.m_pnLogData, nullptr);
  EXPECT_EQ(log.m_pnReadData, nullptr);
  EXPECT_EQ(log.m_pszVersion, nullptr);
  EXPECT_EQ(log.m_csPrinterName, u"");
  EXPECT_EQ(log.m_csSerialID, u"");
  Send(WM_COMMAND, IDM_SET_ENV);
  ASSERT_NE(log.m_pnLogData, nullptr);
  EXPECT_EQ(log.m_pnLogData[1], 0U);
  EXPECT_EQ(log.m_pnLogData[3], 1U);
}

// What couldn't be written is given up, so that the next record starts afresh all the same.
class FailedFlush : public WindowProcedure {
 protected:
  // A count, a write that fails, and a count behind it.
  void ExpectAFreshStartAfter(const std::function<void()>& failure) {
    frame->StartUp();
    failure();
    Send(WM_VGL3_FLUSH_VGLLOG);
    for (const std::u16string& file : machine.files().List())
      EXPECT_EQ(file.find(u"VGL_TrayIcon"), std::u16string::npos);
    const CVglLog& log = g_VglLog.get();
    EXPECT_EQ(log.m_pnLogData, nullptr);
    EXPECT_EQ(log.m_pnReadData, nullptr);
    EXPECT_EQ(log.m_pszVersion, nullptr);
    EXPECT_EQ(log.m_csPrinterName, u"");
    Send(WM_COMMAND, IDM_SET_ENV);
    ASSERT_NE(log.m_pnLogData, nullptr);
    EXPECT_EQ(log.m_pnLogData[1], 0U);
    EXPECT_EQ(log.m_pnLogData[3], 1U);
  }
};

TEST_F(FailedFlush, ForASerialNumberWithASmallLetterClearsTheLog) {
  ExpectAFreshStartAfter([this] { desk::PrinterLibraryOf(machine).serial = "K7200a0001"; });
}

TEST_F(FailedFlush, ForASerialNumberThatDoesntComeClearsTheLog) {
  ExpectAFreshStartAfter([this] { desk::PrinterLibraryOf(machine).printerAnswers = false; });
}

// The counts go before the frame does.
TEST_F(WindowProcedure, DestroyHandsTheCountsOver) {
  frame->StartUp();
  Send(WM_COMMAND, IDM_STATUS);
  Send(WM_CLOSE);
  const std::optional<std::string> file =
      machine.files().ReadFile(u"C:\\ProgramData\\KAVRO\\VGL3\\LOG\\VGL_TrayIcon_K7200A0001.xml");
  ASSERT_TRUE(file.has_value());
  EXPECT_EQ(desk::ParseUsageLog(*file).value().counters,
            (std::vector<std::uint32_t>{0, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
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
        WM_VGL3_CHECK_NETPILOT, WM_VGL3_FLUSH_VGLLOG, WM_MEASUREITEM, WM_DRAWITEM, WM_USER + 1,
        WM_DESTROY}) {
    const std::uint64_t defaults = machine.desktop().defaultHandlings();
    EXPECT_EQ(TrayWindowProc(frame->m_hWnd, message, 0, 0), 0) << message;
    EXPECT_EQ(machine.desktop().defaultHandlings(), defaults + 1) << message;
  }
  // The default's handling of it sends WM_DESTROY and WM_NCDESTROY, which have theirs.
  const std::uint64_t defaults = machine.desktop().defaultHandlings();
  EXPECT_EQ(TrayWindowProc(frame->m_hWnd, WM_CLOSE, 0, 0), 0);
  EXPECT_EQ(machine.desktop().defaultHandlings(), defaults + 3);
  EXPECT_FALSE(WindowStands());
}

}  // namespace
}  // namespace vgl
