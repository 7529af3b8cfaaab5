// What each result of the frame's start-up leads to, and the Run values that start an agent again.
#include <gtest/gtest.h>

#include "Common/text_conversion.h"
#include "Common/tray_log.h"
#include "app/tray_app.h"
#include "tests/support/frame_fixture.h"
#include "tests/support/operations_of.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char16_t kRun[] = u"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr HKEY kUser = HKEY_CURRENT_USER;

class StartResult : public FrameTest {
 protected:
  CTrayIconApp app;
  CCmdLineInfo cmdInfo;

  StartResult() { cmdInfo.m_szPrinterName = desk::kPrinterName; }
  void SetRunValue(std::u16string_view name, std::u16string_view text) {
    machine.registry().SetString(kUser, kRun, name, text);
  }
  std::vector<std::u16string> RunValues() { return machine.registry().ValueNames(kUser, kRun); }
};

TEST_F(StartResult, OneHidesTheWindowAndRuns) {
  machine.desktop().Find(frame->m_hWnd)->visible = true;
  EXPECT_TRUE(app.ActOnStartUp(1, cmdInfo));
  EXPECT_FALSE(machine.desktop().Find(frame->m_hWnd)->visible);
  EXPECT_FALSE(HasLogged("CMainFrame::DestroyWindow"));
}

TEST_F(StartResult, OneHidesTheWindowAndThenBringsItUpToDate) {
  g_bTrayLogEnabled = 0;
  EXPECT_EQ(OperationsOf(inside.process(), [this] { app.ActOnStartUp(1, cmdInfo); }),
            (std::vector<std::string>{"ShowWindow", "UpdateWindow"}));
}

TEST_F(StartResult, ZeroEndsByTheFramesOrderlyEndAndKeepsTheAutoStart) {
  SetRunValue(desk::kPrinterName, u"agent");
  EXPECT_FALSE(app.ActOnStartUp(0, cmdInfo));
  EXPECT_TRUE(HasLogged("CMainFrame::DestroyWindow"));
  EXPECT_EQ(RunValues(), std::vector<std::u16string>{desk::kPrinterName});
  EXPECT_EQ(machine.registry().Dword(kUser, desk::kRecordPath, u"TrayIconEnable"), 1U);
}

TEST_F(StartResult, MinusTwoEndsWithoutTouchingTheAutoStart) {
  SetRunValue(desk::kPrinterName, u"agent");
  EXPECT_FALSE(app.ActOnStartUp(-2, cmdInfo));
  EXPECT_TRUE(HasLogged("CMainFrame::DestroyWindow"));
  EXPECT_EQ(RunValues(), std::vector<std::u16string>{desk::kPrinterName});
  EXPECT_EQ(machine.registry().Dword(kUser, desk::kRecordPath, u"TrayIconEnable"), 1U);
}

TEST_F(StartResult, AnyOtherResultRuns) { EXPECT_TRUE(app.ActOnStartUp(2, cmdInfo)); }

TEST_F(StartResult, MinusOneOfAPortFindsItsRunValueByTheParameterFile) {
  SetRunValue(u"agent", u"x.exe /FU \"K_Q0001.tmp\"");
  cmdInfo.m_szPrinterName.clear();
  cmdInfo.m_szFileName = u"K_Q0001.tmp";
  EXPECT_FALSE(app.ActOnStartUp(-1, cmdInfo));
  EXPECT_TRUE(RunValues().empty());
}

class InsideStart : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  CTrayIconApp app;

  InsideStart() { desk::SetUpDefaultMachine(machine); }
};

TEST_F(InsideStart, IdentityAndFlagsReachTheFrame) {
  ASSERT_TRUE(app.InitInstance((desk::OptionsOfDefaultPrinter() + u" /I").c_str()));
  const CMainFrame& frame = *g_pMainFrame;
  EXPECT_EQ(frame.m_szPrinterName.view(), u"Studio 7200");
  EXPECT_EQ(frame.m_szDriverName.view(), u"KAVRO Studio 7200");
  EXPECT_EQ(frame.m_szPortName.view(), u"USB001");
  EXPECT_EQ(frame.m_szModelID.view(), u"S7200");
  EXPECT_EQ(frame.m_fIconInstall, 1);
  EXPECT_EQ(frame.m_fRemove, 0);
  EXPECT_NE(frame.m_hWnd, HWND{});
}

TEST_F(InsideStart, ExitInstanceTakesTheFrameAway) {
  ASSERT_TRUE(app.InitInstance(desk::OptionsOfDefaultPrinter().c_str()));
  ASSERT_TRUE(g_pMainFrame != nullptr);
  app.ExitInstance();
  EXPECT_TRUE(g_pMainFrame == nullptr);
}

TEST_F(InsideStart, WindowClassIsAlignedToBytes) {
  app.InitInstance(desk::OptionsOfDefaultPrinter().c_str());
  EXPECT_EQ(machine.desktop().ClassOf(inside.process(), u"TrayIconWClass")->style, 0x2000U);
}

TEST_F(StartResult, MinusOneDropsTheAutoStartTheParameterFileAndTheIcon) {
  SetRunValue(desk::kPrinterName, u"agent");
  const std::u16string file = machine.system().tempFolder + u"K_Q0001.tmp";
  machine.files().WriteFile(file, "x");
  cmdInfo.m_szFileName = u"K_Q0001.tmp";
  EXPECT_FALSE(app.ActOnStartUp(-1, cmdInfo));
  EXPECT_TRUE(HasLogged("CTrayIconApp::DeleteStartupReg"));
  EXPECT_TRUE(RunValues().empty());
  EXPECT_FALSE(machine.files().Exists(file));
  EXPECT_EQ(machine.registry().Dword(kUser, desk::kRecordPath, u"TrayIconEnable"), 0U);
  EXPECT_TRUE(HasLogged("CMainFrame::DestroyWindow"));
}

TEST_F(StartResult, MinusOneDropsTheAutoStartThenTheFileThenTheIconAndThenEndsTheFrame) {
  SetRunValue(desk::kPrinterName, u"agent");
  machine.files().WriteFile(machine.system().tempFolder + u"K_Q0001.tmp", "x");
  cmdInfo.m_szFileName = u"K_Q0001.tmp";
  Os().windowing.SetTimer(frame->m_hWnd, TMID_MASKCHECK, 3000);
  g_bTrayLogEnabled = 0;
  const std::size_t before = machine.trace().size();
  EXPECT_FALSE(app.ActOnStartUp(-1, cmdInfo));
  // What each of the four does first, of what is seen from outside.
  const char16_t* const deeds[] = {u"deleted value ", u"deleted file ", u"set ",
                                   u"killed timer TMID_MASKCHECK"};
  ASSERT_EQ(machine.trace().size(), before + std::size(deeds));
  for (std::size_t i = 0; i < std::size(deeds); ++i)
    EXPECT_TRUE(machine.trace()[before + i].text.starts_with(deeds[i])) << i;
}

TEST_F(StartResult, RunValueNamedAfterThePrinterGoes) {
  SetRunValue(u"studio 7200", u"agent");
  SetRunValue(u"Other", u"other");
  app.DeleteStartupReg(desk::kPrinterName, u"");
  EXPECT_EQ(RunValues(), std::vector<std::u16string>{u"Other"});
}

TEST_F(StartResult, RunValueNamedAfterThePrintersRecordGoes) {
  SetRunValue(u"KVLTarget\\P0000000000000000", u"agent");
  SetRunValue(u"KVLTarget\\P0000000000000001", u"of another printer");
  app.DeleteStartupReg(desk::kPrinterName, u"");
  EXPECT_EQ(RunValues(), std::vector<std::u16string>{u"KVLTarget\\P0000000000000001"});
}

TEST_F(StartResult, WithoutARecordNothingIsDeletedUnderADerivedName) {
  machine.registry().RemoveKey(kUser, desk::kRecordPath);
  // An empty value name would stand for the key's default value.
  SetRunValue(u"", u"default");
  app.DeleteStartupReg(desk::kPrinterName, u"");
  EXPECT_EQ(RunValues(), std::vector<std::u16string>{u""});
}

TEST_F(StartResult, WithoutAPrinterNameTheFirstRunValueThatHoldsTheFileNameGoes) {
  SetRunValue(u"a", u"x.exe /FU \"K_Q0002.tmp\"");
  SetRunValue(u"b", u"x.exe /FU \"K_Q0001.tmp\"");
  SetRunValue(u"c", u"x.exe /FU \"K_Q0001.tmp\"");
  app.DeleteStartupReg(u"", u"K_Q0001.tmp");
  EXPECT_EQ(RunValues(), (std::vector<std::u16string>{u"a", u"c"}));
}

TEST_F(StartResult, TheSearchForTheFileNameEndsAtAValueWithEmptyData) {
  SetRunValue(u"a", u"");
  SetRunValue(u"b", u"x.exe /FU \"K_Q0001.tmp\"");
  app.DeleteStartupReg(u"", u"K_Q0001.tmp");
  EXPECT_EQ(RunValues(), (std::vector<std::u16string>{u"a", u"b"}));
}

TEST_F(StartResult, WithoutPrinterAndFileNameNothingIsDeleted) {
  SetRunValue(u"a", u"x.exe");
  app.DeleteStartupReg(u"", u"");
  EXPECT_EQ(RunValues(), std::vector<std::u16string>{u"a"});
}

// A value's data come out of a buffer of 256 characters, in which the terminator may be missing.
TEST_F(StartResult, ARunValueOf256CharactersIsSearchedToItsEnd) {
  SetRunValue(u"a", std::u16string(244, u'x') + u"K_Q0001.tmp");
  machine.registry().SetBytes(kUser, kRun, u"b", REG_SZ,
                              Utf16LeFromText(std::u16string(245, u'x') + u"K_Q0001.tmp"));
  app.DeleteStartupReg(u"", u"K_Q0001.tmp");
  EXPECT_EQ(RunValues(), std::vector<std::u16string>{u"b"});
  app.DeleteStartupReg(u"", u"K_Q0001.tmp");
  EXPECT_TRUE(RunValues().empty());
}

TEST_F(StartResult, TheSearchForTheFileNameEndsAtAValueOfMoreThan256Characters) {
  SetRunValue(u"a", u"other.exe");
  SetRunValue(u"b", u"K_Q0001.tmp" + std::u16string(245, u'x'));
  SetRunValue(u"c", u"x.exe /FU \"K_Q0001.tmp\"");
  app.DeleteStartupReg(u"", u"K_Q0001.tmp");
  EXPECT_EQ(RunValues(), (std::vector<std::u16string>{u"a", u"b", u"c"}));
}

TEST_F(StartResult, TheSearchForTheFileNameEndsAtAValueWhoseNameHasMoreThan255Characters) {
  const std::u16string longest(255, u'n');
  SetRunValue(longest, u"other.exe");
  SetRunValue(longest + u"n", u"other.exe");
  SetRunValue(u"c", u"x.exe /FU \"K_Q0001.tmp\"");
  app.DeleteStartupReg(u"", u"K_Q0001.tmp");
  EXPECT_EQ(RunValues().size(), 3U);
  machine.registry().RemoveValue(kUser, kRun, longest + u"n");
  app.DeleteStartupReg(u"", u"K_Q0001.tmp");
  EXPECT_EQ(RunValues(), std::vector<std::u16string>{longest});
}

TEST_F(StartResult, ARunValueWithoutTerminatorAndOfOddLengthIsSearched) {
  machine.registry().SetBytes(kUser, kRun, u"a", REG_SZ, std::string("K\0_\0Q\0 ", 7));
  app.DeleteStartupReg(u"", u"K_Q");
  EXPECT_TRUE(RunValues().empty());
}

TEST_F(StartResult, ARunKeyThatCantBeWrittenIsLeftAlone) {
  SetRunValue(desk::kPrinterName, u"agent");
  machine.registry().Deny(kUser, kRun, false);
  app.DeleteStartupReg(desk::kPrinterName, u"");
  EXPECT_EQ(RunValues(), std::vector<std::u16string>{desk::kPrinterName});
}

}  // namespace
}  // namespace vgl
