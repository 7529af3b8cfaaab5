#include "tests/support/frame_fixture.h"

namespace vgl {
namespace {

using namespace platform;

using MainFrame = FrameTest;

TEST_F(MainFrame, ConstructorClearsEverythingAndMakesTheSlots) {
  const CMainFrame fresh;
  EXPECT_EQ(fresh.m_nExMenuMax, 79);
  EXPECT_EQ(fresh.m_pExMenu[78].nID, 0U);
  EXPECT_TRUE(fresh.m_pExMenu[78].szMenuName.empty());
  EXPECT_TRUE(fresh.m_szPrinterName.empty());
  EXPECT_TRUE(fresh.m_szDatPath.empty());
  EXPECT_TRUE(fresh.m_csNetPilotString.empty());
  EXPECT_EQ(fresh.m_hWnd, HWND{});
  EXPECT_EQ(fresh.m_nIconSelected, 0U);
  EXPECT_EQ(fresh.m_nid.window, HWND{});
  EXPECT_EQ(fresh.m_uhMaskCheck, 0U);
  EXPECT_EQ(fresh.m_pcInv, nullptr);
}

TEST_F(MainFrame, DestructorLogsTheEndOfTheInvitationObject) {
  frame->m_pcInv = std::make_unique<CSmartInvitation>();
  frame.reset();
  EXPECT_TRUE(HasLogged("delete m_pcInv"));
}

TEST_F(MainFrame, PrinterIsCalledByItsPortWhereNoNameIsKnown) {
  EXPECT_EQ(frame->PrinterOrPort().view(), u"Studio 7200");
  frame->m_szPrinterName.Clear();
  EXPECT_EQ(frame->PrinterOrPort().view(), u"USB001");
}

TEST_F(MainFrame, StartUpFillsTheFixedTexts) {
  EXPECT_EQ(frame->StartUp(), 1);
  EXPECT_EQ(frame->m_szAppTitle.view(), u"KAVRO Vigil 3");
  EXPECT_EQ(frame->m_szMsgStatus.view(),
            u"\r\nUnable to open Printer Status window for this printer.");
  EXPECT_EQ(frame->m_szMsgPrefs.view(),
            u"\r\nUnable to open Monitoring Preferences window for this printer.");
  EXPECT_EQ(frame->m_szMsgMemory.view(), u"Insufficient memory.");
  EXPECT_EQ(frame->m_szMsgNoFile.view(), u"Could not find specified file.");
}

TEST_F(MainFrame, StartUpThatIsToRemoveAnAgentEndsQuietlyWithoutATrace) {
  frame->m_fRemove = 1;
  EXPECT_EQ(frame->StartUp(), 0);
  EXPECT_TRUE(machine.desktop().TimersOf(frame->m_hWnd).empty());
}

TEST_F(MainFrame, DestroyWindowStopsItsTimersAndLeavesTheOtherTwoToTheWindow) {
  frame->StartUp();
  for (const std::uint64_t id : {TMID_PRINTERCHECK, TMID_INVITATION, TMID_NETPILOT, TMID_CLICK})
    Os().windowing.SetTimer(frame->m_hWnd, id, 60000);
  frame->m_uInvitationPeriod = 5;
  EXPECT_EQ(frame->DestroyWindow(), 0);
  EXPECT_EQ(frame->m_uInvitationPeriod, 0U);
  EXPECT_EQ(PeriodOf(TMID_MASKCHECK) + PeriodOf(TMID_PRINTERCHECK) + PeriodOf(TMID_INVITATION) +
                PeriodOf(TMID_FLUSHLOG),
            0U);
  EXPECT_EQ(PeriodOf(TMID_NETPILOT), 60000U);
  EXPECT_EQ(PeriodOf(TMID_CLICK), 60000U);
  EXPECT_TRUE(WindowStands());
}

TEST_F(MainFrame, DestroyWindowTakesItsStepsInOrder) {
  ASSERT_EQ(frame->StartUp(), 1);
  for (const std::uint64_t id : {TMID_PRINTERCHECK, TMID_INVITATION})
    Os().windowing.SetTimer(frame->m_hWnd, id, 60000);
  std::vector<std::string> steps;
  const auto note = [&](const char* step) {
    // What can be seen is gone at the first step that comes behind it.
    if (frame->m_hMapFile == HANDLE{} && steps.size() == 1) steps.push_back("map left");
    if (frame->m_hMenu == HMENU{} && steps.size() == 3) steps.push_back("menu destroyed");
    steps.push_back(step);
  };
  machine.Observe([&](const sim::Event& event) {
    if (event.text == u"killed timer TMID_MASKCHECK") note("mask check");
    if (event.text == u"icon deleted") note("icon");
    if (event.text == u"killed timer TMID_PRINTERCHECK") note("printer check");
    if (event.text == u"killed timer TMID_INVITATION") note("invitations");
    if (event.text == u"killed timer TMID_FLUSHLOG") note("flush");
  });
  machine.files().OnAppend([&](std::uint32_t, const std::u16string&, std::string_view line) {
    if (line.find("ChkDelPrn : start") != std::string_view::npos) note("printer looked for");
  });
  frame->DestroyWindow();
  machine.Observe(nullptr);
  EXPECT_EQ(steps, (std::vector<std::string>{"mask check", "map left", "icon", "menu destroyed",
                                             "printer check", "invitations", "printer looked for",
                                             "flush"}));
}

TEST_F(MainFrame, DestroyWindowOfAFrameThatNeverStartedHasNothingToTakeAway) {
  EXPECT_EQ(frame->DestroyWindow(), 0);
  EXPECT_EQ(inside.process().Ledger(), std::vector<std::u16string>{u"window TrayIconWClass"});
}

TEST_F(MainFrame, DestroyWindowAsksForThePrinterBeforeItStopsTheFlushOfTheUsageLog) {
  frame->StartUp();
  bool flushArmed = false;
  machine.files().OnAppend([&](std::uint32_t, const std::u16string&, std::string_view line) {
    if (line.find("ChkDelPrn : start") != std::string_view::npos)
      flushArmed = PeriodOf(TMID_FLUSHLOG) != 0 && PeriodOf(TMID_MASKCHECK) == 0;
  });
  frame->DestroyWindow();
  EXPECT_TRUE(flushArmed);
}

TEST_F(MainFrame, ChkDelPrnAsksWhetherAUtilityRuns) {
  StartUtility();
  EXPECT_EQ(frame->ChkDelPrn(), 1);
  EXPECT_TRUE(HasLogged("Utility executing"));
}

TEST_F(MainFrame, DestroyWindowAsksForThePrinterAlsoAfterAStartThatLost) {
  frame->m_fRemove = 1;
  frame->StartUp();
  frame->DestroyWindow();
  EXPECT_TRUE(HasLogged("CMainFrame::DestroyWindow"));
  EXPECT_TRUE(HasLogged("CMainFrame::ChkDelPrn : start"));
  EXPECT_TRUE(HasLogged("PrinterName : Studio 7200"));
}

TEST_F(MainFrame, DisableIconRegWritesZeroIntoThePrintersRecord) {
  EXPECT_EQ(frame->DisableIconReg(), 1);
  EXPECT_EQ(machine.registry().Dword(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconEnable"), 0U);
}

TEST_F(MainFrame, DisableIconRegFindsTheRecordByPortWhereNoPrinterNameIsKnown) {
  const std::u16string record = u"Software\\KAVRO\\VGL3\\VGLData\\KVNTarget\\P0000000000000000";
  machine.registry().SetString(HKEY_CURRENT_USER, record, u"Name", u"usb001");
  frame->m_szPrinterName.Clear();
  EXPECT_EQ(frame->DisableIconReg(), 1);
  EXPECT_EQ(machine.registry().Dword(HKEY_CURRENT_USER, record, u"TrayIconEnable"), 0U);
  EXPECT_EQ(machine.registry().Dword(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconEnable"), 1U);
}

TEST_F(MainFrame, DisableIconRegWithoutARecordMakesNone) {
  machine.registry().RemoveKey(HKEY_CURRENT_USER, desk::kRecordPath);
  EXPECT_EQ(frame->DisableIconReg(), 0);
  EXPECT_FALSE(machine.registry().HasKey(HKEY_CURRENT_USER, desk::kRecordPath));
}

TEST_F(MainFrame, DisableIconRegOfARecordThatCantBeWrittenGivesZero) {
  machine.registry().Deny(HKEY_CURRENT_USER, desk::kRecordPath, false);
  EXPECT_EQ(frame->DisableIconReg(), 0);
  EXPECT_EQ(machine.registry().Dword(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconEnable"), 1U);
}

class ReadingOrder : public FrameTest {
 protected:
  // The style of the box that is shown for these texts.
  std::uint32_t StyleOf(const char16_t* text, const char16_t* caption) {
    std::uint32_t style = ~0U;
    machine.desktop().AnswerBoxesAtOnce();
    machine.Observe([&](const sim::Event& event) {
      if (!event.text.starts_with(u"message box \"")) return;
      style = machine.desktop().Find(u"#32770", nullptr)->style;
    });
    frame->MessageBoxRtl(frame->m_hWnd, text, caption);
    machine.Observe(nullptr);
    return style;
  }
};

TEST_F(ReadingOrder, LeftToRightTextsGetAPlainBox) {
  EXPECT_EQ(StyleOf(u"Insufficient memory.", u"KAVRO Vigil 3"), 0U);
}

TEST_F(ReadingOrder, AHebrewLetterInTheTextTurnsTheBoxRound) {
  EXPECT_EQ(StyleOf(u"abc \u05D0", u"KAVRO Vigil 3"), 0x180000U);
}

TEST_F(ReadingOrder, AnArabicLetterInTheCaptionTurnsTheBoxRound) {
  EXPECT_EQ(StyleOf(u"abc", u"\u0627"), 0x180000U);
}

TEST_F(ReadingOrder, EmptyTextsGetAPlainBox) { EXPECT_EQ(StyleOf(u"", u""), 0U); }

TEST_F(ReadingOrder, ANullTextOrCaptionCountsAsEmpty) {
  EXPECT_EQ(StyleOf(nullptr, nullptr), 0U);
  EXPECT_EQ(StyleOf(nullptr, u"KAVRO Vigil 3"), 0U);
  EXPECT_EQ(StyleOf(u"abc", nullptr), 0U);
  EXPECT_EQ(StyleOf(nullptr, u"\u0627"), 0x180000U);
  EXPECT_EQ(StyleOf(u"\u05D0", nullptr), 0x180000U);
}

TEST_F(ReadingOrder, ASystemThatDoesntTellCharacterTypesGetsAPlainBox) {
  inside.process().FailNext("GetStringTypeExW", ERROR_INVALID_PARAMETER);
  EXPECT_EQ(StyleOf(u"\u05D0", u"abc"), 0U);
}

}  // namespace
}  // namespace vgl
