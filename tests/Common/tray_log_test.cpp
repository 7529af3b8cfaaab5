#include "Common/tray_log.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "Common/log_stream.h"
#include "platform/owned.h"
#include "platform/sim/machine.h"
#include "tests/support/file_holder.h"

namespace vgl {
namespace {

using platform::HKEY_CURRENT_USER;
using platform::HKEY_LOCAL_MACHINE;

constexpr char16_t kKey[] = u"SOFTWARE\\KAVRO\\VGL3";
constexpr char16_t kFile[] = u"C:\\ProgramData\\KAVRO\\VGL3\\K_QD41TR.LOG";

// A machine whose first process has the id 1000 (hexadecimal) and starts ten minutes after the
// system.
class TrayLog : public testing::Test {
 protected:
  TrayLog() { machine.files().MakeFolder(u"C:\\ProgramData\\KAVRO\\VGL3"); }

  void SwitchOn() { machine.registry().SetDword(HKEY_CURRENT_USER, kKey, u"K_QTR", 1); }
  void StartLogging() {
    SwitchOn();
    ASSERT_EQ(TrayLogInit(kFile), 1);
  }
  std::string Log() { return machine.files().ReadFile(kFile).value_or("(no file)"); }

  sim::Machine machine;
  sim::Inside inside{machine};
};

TEST_F(TrayLog, LiesBelowTheCommonDataFolder) {
  EXPECT_EQ(TrayLogPath(), u"C:\\ProgramData\\KAVRO\\VGL3\\K_QD41TR.LOG");
}

TEST_F(TrayLog, LiesInTheRootOfCWhenTheFolderIsUnknown) {
  inside.process().FailNext("SHGetSpecialFolderPathW", platform::ERROR_ACCESS_DENIED);
  EXPECT_EQ(TrayLogPath(), u"C:\\K_QD41TR.LOG");
}

TEST_F(TrayLog, AskingForItsPlaceMakesNoFolder) {
  machine.system().commonAppData = u"D:\\Common";
  EXPECT_EQ(TrayLogPath(), u"C:\\K_QD41TR.LOG");
  EXPECT_FALSE(machine.files().Exists(u"D:\\Common"));
}

TEST_F(TrayLog, IsOffInANewProcess) {
  SwitchOn();
  EXPECT_EQ(TrayLogText(u"a"), 0);
  EXPECT_EQ(g_bTrayLogEnabled.get(), 0);
  EXPECT_EQ(Log(), "(no file)");
}

TEST_F(TrayLog, AnyOtherNumberThanZeroSwitchesItOn) {
  for (const std::uint32_t number : {1u, 2u, 0x80000000u, 0xFFFFFFFFu}) {
    machine.registry().SetDword(HKEY_CURRENT_USER, kKey, u"K_QTR", number);
    EXPECT_EQ(TrayLogInit(kFile), 1) << number;
    EXPECT_EQ(g_bTrayLogEnabled.get(), 1) << number;
  }
}

TEST_F(TrayLog, ZeroLeavesItOff) {
  machine.registry().SetDword(HKEY_CURRENT_USER, kKey, u"K_QTR", 0);
  EXPECT_EQ(TrayLogInit(kFile), 0);
  EXPECT_EQ(g_bTrayLogEnabled.get(), 0);
}

TEST_F(TrayLog, AMissingValueLeavesItOff) {
  machine.registry().MakeKey(HKEY_CURRENT_USER, kKey);
  EXPECT_EQ(TrayLogInit(kFile), 0);
}

TEST_F(TrayLog, AMissingKeyLeavesItOff) { EXPECT_EQ(TrayLogInit(kFile), 0); }

TEST_F(TrayLog, AValueOfTheMachineAloneLeavesItOff) {
  machine.registry().SetDword(HKEY_LOCAL_MACHINE, kKey, u"K_QTR", 1);
  EXPECT_EQ(TrayLogInit(kFile), 0);
}

TEST_F(TrayLog, AKeyThatMayNotBeReadLeavesItOff) {
  SwitchOn();
  machine.registry().Deny(HKEY_CURRENT_USER, kKey, true);
  EXPECT_EQ(TrayLogInit(kFile), 0);
}

TEST_F(TrayLog, AKeyThatMayOnlyBeReadIsEnough) {
  SwitchOn();
  machine.registry().Deny(HKEY_CURRENT_USER, kKey, false);
  EXPECT_EQ(TrayLogInit(kFile), 1);
}

TEST_F(TrayLog, AValueOfAnotherTypeCountsByItsFourBytes) {
  machine.registry().SetString(HKEY_CURRENT_USER, kKey, u"K_QTR", u"0");  // 30 00 00 00
  EXPECT_EQ(TrayLogInit(kFile), 1);
  machine.registry().SetBytes(HKEY_CURRENT_USER, kKey, u"K_QTR", platform::REG_SZ,
                              std::string(4, '\0'));
  EXPECT_EQ(TrayLogInit(kFile), 0);
}

TEST_F(TrayLog, AValueOfAnotherLengthThanFourBytesLeavesItOff) {
  for (const std::size_t length : {0U, 1U, 2U, 3U, 5U, 8U}) {
    for (const std::uint32_t type : {platform::REG_DWORD, platform::REG_SZ}) {
      machine.registry().SetBytes(HKEY_CURRENT_USER, kKey, u"K_QTR", type,
                                  std::string(length, '\1'));
      EXPECT_EQ(TrayLogInit(kFile), 0) << length;
      EXPECT_EQ(g_bTrayLogEnabled.get(), 0) << length;
    }
  }
  machine.registry().SetBytes(HKEY_CURRENT_USER, kKey, u"K_QTR", platform::REG_DWORD,
                              std::string(4, '\1'));
  EXPECT_EQ(TrayLogInit(kFile), 1);
}

TEST_F(TrayLog, APathOf259CharactersIsTaken) {
  SwitchOn();
  const std::u16string path = u"C:\\" + std::u16string(256, u'a');
  EXPECT_EQ(TrayLogInit(path.c_str()), 1);
  EXPECT_EQ(g_szTrayLogPath.get().view(), path);
}

TEST_F(TrayLog, APathOf260CharactersLeavesItOff) {
  SwitchOn();
  const std::u16string path = u"C:\\" + std::u16string(257, u'a');
  EXPECT_EQ(TrayLogInit(path.c_str()), 0);
  EXPECT_TRUE(g_szTrayLogPath.get().empty());
}

TEST_F(TrayLog, WithoutAPathTheSwitchIsNotEvenRead) {
  SwitchOn();
  EXPECT_EQ(TrayLogInit(nullptr), 0);
  EXPECT_EQ(TrayLogInit(u""), 0);
  EXPECT_EQ(inside.process().calls(), 0u);
}

TEST_F(TrayLog, InitClosesTheKeyThatItOpened) {
  StartLogging();
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(TrayLog, ASecondInitForgetsTheFirst) {
  StartLogging();
  EXPECT_EQ(TrayLogInit(nullptr), 0);
  EXPECT_EQ(g_bTrayLogEnabled.get(), 0);
  EXPECT_TRUE(g_szTrayLogPath.get().empty());
  EXPECT_EQ(TrayLogText(u"a"), 0);
  EXPECT_EQ(Log(), "(no file)");
}

TEST_F(TrayLog, TheSwitchIsReadAtInitAlone) {
  StartLogging();
  machine.registry().RemoveKey(HKEY_CURRENT_USER, kKey);
  EXPECT_EQ(TrayLogText(u"a"), 1);
}

TEST_F(TrayLog, InitAloneWritesNothing) {
  StartLogging();
  EXPECT_EQ(Log(), "(no file)");
}

TEST_F(TrayLog, ATextIsOneLine) {
  StartLogging();
  EXPECT_EQ(TrayLogText(u"***** LOG START ******"), 1);
  EXPECT_EQ(Log(), "1000;   10:00.000; ***** LOG START ******\r\n");
}

TEST_F(TrayLog, APairIsNameAndValue) {
  StartLogging();
  EXPECT_EQ(TrayLogPair(u"CmdLine", u"/FU \"C:\\p.tmp\""), 1);
  EXPECT_EQ(Log(), "1000;   10:00.000; CmdLine : /FU \"C:\\p.tmp\"\r\n");
}

TEST_F(TrayLog, ANumberIsNameAndNumberWithItsSign) {
  StartLogging();
  EXPECT_EQ(TrayLogInt(u"result", -2), 1);
  EXPECT_EQ(TrayLogInt(u"result", 2147483647), 1);
  EXPECT_EQ(Log(),
            "1000;   10:00.000; result : -2\r\n"
            "1000;   10:00.000; result : 2147483647\r\n");
}

TEST_F(TrayLog, EmptyTextsAreLinesToo) {
  StartLogging();
  EXPECT_EQ(TrayLogText(u""), 1);
  EXPECT_EQ(TrayLogPair(u"m_szDatPath", u""), 1);
  EXPECT_EQ(Log(),
            "1000;   10:00.000; \r\n"
            "1000;   10:00.000; m_szDatPath : \r\n");
}

TEST_F(TrayLog, APercentSignOfATextIsNoDirective) {
  StartLogging();
  TrayLogText(u"100%% %s %d");
  TrayLogPair(u"%s", u"%d");
  EXPECT_EQ(Log(),
            "1000;   10:00.000; 100%% %s %d\r\n"
            "1000;   10:00.000; %s : %d\r\n");
}

TEST_F(TrayLog, ATextWithItsOwnNewlineLeavesABlankLine) {
  StartLogging();
  TrayLogText(u"ChkDelPrn() Registry Ember\n");
  EXPECT_EQ(Log(), "1000;   10:00.000; ChkDelPrn() Registry Ember\r\n\r\n");
}

TEST_F(TrayLog, ANameBeyondTheCodePageIsShownAsWellAsItCan) {
  StartLogging();
  TrayLogPair(u"PrinterName", u"B\u00FCro \u30D7");
  EXPECT_EQ(Log(), "1000;   10:00.000; PrinterName : B\xFCro ?\r\n");
}

TEST_F(TrayLog, ALineIsNotLimitedInLength) {
  StartLogging();
  const std::u16string text(40000, u'x');
  EXPECT_EQ(TrayLogText(text.c_str()), 1);
  EXPECT_EQ(Log(), "1000;   10:00.000; " + std::string(40000, 'x') + "\r\n");
}

TEST_F(TrayLog, TheTimeGoesOnAndBeginsAnewWhenTheTicksWrap) {
  machine.system().bootTicks = 0xFFFFFFFF;
  StartLogging();
  TrayLogText(u"last");
  machine.RunFor(1);
  TrayLogText(u"first");
  EXPECT_EQ(Log(),
            "1000;71582:47.295; last\r\n"
            "1000;    0:00.000; first\r\n");
}

TEST_F(TrayLog, NullTextsAreRefusedWithoutALine) {
  StartLogging();
  EXPECT_EQ(TrayLogText(nullptr), 0);
  EXPECT_EQ(TrayLogPair(nullptr, u"a"), 0);
  EXPECT_EQ(TrayLogPair(u"a", nullptr), 0);
  EXPECT_EQ(TrayLogInt(nullptr, 1), 0);
  EXPECT_EQ(Log(), "(no file)");
}

TEST_F(TrayLog, NoCallIsMadeWhileItIsOff) {
  EXPECT_EQ(TrayLogText(u"a"), 0);
  EXPECT_EQ(TrayLogPair(u"a", u"b"), 0);
  EXPECT_EQ(TrayLogInt(u"a", 1), 0);
  EXPECT_EQ(TrayLogText(nullptr), 0);
  EXPECT_EQ(inside.process().calls(), 0u);
}

TEST_F(TrayLog, ALineCostsSixCalls) {
  StartLogging();
  const auto calls = inside.process().calls();
  TrayLogPair(u"name", u"value");
  // Process id, ticks, code page; opening, writing, closing.
  EXPECT_EQ(inside.process().calls() - calls, 6u);
}

TEST_F(TrayLog, AFolderThatIsNotThereCostsTheLine) {
  SwitchOn();
  ASSERT_EQ(TrayLogInit(u"C:\\nowhere\\K_QD41TR.LOG"), 1);
  EXPECT_EQ(TrayLogText(u"a"), 0);
  EXPECT_FALSE(machine.files().Exists(u"C:\\nowhere"));
}

TEST_F(TrayLog, AFileThatCantBeOpenedCostsTheLineAndNotTheNext) {
  StartLogging();
  inside.process().FailNext("CreateFileW", platform::ERROR_ACCESS_DENIED);
  EXPECT_EQ(TrayLogText(u"a"), 0);
  EXPECT_EQ(TrayLogText(u"b"), 1);
  EXPECT_EQ(Log(), "1000;   10:00.000; b\r\n");
}

TEST_F(TrayLog, AFailureBehindTheOpeningIsNotTold) {
  StartLogging();
  for (const char* operation : {"WideCharToMultiByte", "WriteFile"}) {
    inside.process().FailNext(operation, platform::ERROR_ACCESS_DENIED);
    EXPECT_EQ(TrayLogText(u"a"), 1) << operation;
  }
  EXPECT_EQ(Log(), "");
}

TEST_F(TrayLog, NothingStaysOpenBetweenLines) {
  StartLogging();
  TrayLogText(u"a");
  EXPECT_EQ(Log(), "1000;   10:00.000; a\r\n");
  EXPECT_EQ(g_pTrayLogFile.get(), nullptr);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(TrayLog, TheStreamIsKnownToTheProcessWhileALineIsWritten) {
  StartLogging();
  int lines = 0;
  int known = 0;
  machine.files().OnAppend([&](std::uint32_t, const std::u16string&, std::string_view) {
    ++lines;
    known += g_pTrayLogFile.get() != nullptr ? 1 : 0;
  });
  TrayLogText(u"a");
  TrayLogInt(u"b", 1);
  EXPECT_EQ(lines, 2);
  EXPECT_EQ(known, 2);
}

TEST_F(TrayLog, InitForgetsAStrayStream) {
  SwitchOn();
  CLogStream stream;
  g_pTrayLogFile = &stream;
  EXPECT_EQ(TrayLogInit(kFile), 1);
  EXPECT_EQ(g_pTrayLogFile.get(), nullptr);
  g_pTrayLogFile = &stream;
  EXPECT_EQ(TrayLogInit(nullptr), 0);
  EXPECT_EQ(g_pTrayLogFile.get(), nullptr);
}

TEST_F(TrayLog, ALineIsWrittenWhileAnotherProcessHasTheFileOpenForSharedWriting) {
  machine.files().WriteFile(kFile, "other\r\n");
  StartLogging();
  const sim::Process& other = HoldOpenForSharedWriting(machine, kFile);
  EXPECT_EQ(TrayLogText(u"a"), 1);
  EXPECT_FALSE(other.ended());
  EXPECT_EQ(Log(), "other\r\n1000;   10:00.000; a\r\n");
}

TEST_F(TrayLog, AFileRemovedBetweenLinesIsMadeAnew) {
  StartLogging();
  TrayLogText(u"a");
  machine.files().Remove(kFile);
  TrayLogText(u"b");
  EXPECT_EQ(Log(), "1000;   10:00.000; b\r\n");
}

TEST_F(TrayLog, LinesOfTwoAgentsStandInOrderInOneFile) {
  StartLogging();
  machine.StartProcess(u"C:\\agent.exe", u"", [](const char16_t*) {
    TrayLogInit(kFile);
    TrayLogText(u"second agent");
    return 0u;
  });
  TrayLogText(u"before");
  machine.RunFor(1500);
  TrayLogText(u"after");
  EXPECT_EQ(Log(),
            "1000;   10:00.000; before\r\n"
            "1004;   10:00.000; second agent\r\n"
            "1000;   10:01.500; after\r\n");
}

TEST_F(TrayLog, OneAgentsSwitchIsNotAnothers) {
  StartLogging();
  std::int32_t logged = -1;
  machine.StartProcess(u"C:\\agent.exe", u"", [&](const char16_t*) {
    logged = TrayLogText(u"never set up");
    return 0u;
  });
  machine.Settle();
  EXPECT_EQ(logged, 0);
}

TEST_F(TrayLog, AStrayStreamIsClosedAtTheEnd) {
  CLogStream stream;
  ASSERT_TRUE(stream.Open(kFile, CLogStream::Sharing::Everybody));
  g_pTrayLogFile = &stream;
  TrayLogCloseStray();
  EXPECT_FALSE(stream.IsOpen());
  EXPECT_EQ(g_pTrayLogFile.get(), nullptr);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(TrayLog, WithoutAStrayStreamTheEndMakesNoCall) {
  TrayLogCloseStray();
  EXPECT_EQ(inside.process().calls(), 0u);
}

TEST(TrayLogTurns, TwoProcessesThatWriteAtOnceLoseNoLine) {
  // Every seed lets the processes take turns differently, between any two calls.
  for (std::uint64_t seed = 1; seed <= 50; ++seed) {
    sim::Machine machine(seed);
    machine.files().MakeFolder(u"C:\\ProgramData\\KAVRO\\VGL3");
    machine.registry().SetDword(HKEY_CURRENT_USER, kKey, u"K_QTR", 1);
    const auto body = [](const char16_t*) {
      TrayLogInit(kFile);
      for (int i = 0; i < 3; ++i) TrayLogInt(u"line", i);
      return 0u;
    };
    machine.StartProcess(u"C:\\a.exe", u"", body);
    machine.StartProcess(u"C:\\b.exe", u"", body);
    machine.Settle();
    const std::string log = machine.files().ReadFile(kFile).value_or("");
    for (const char* line :
         {"1000;   10:00.000; line : 0\r\n", "1000;   10:00.000; line : 1\r\n",
          "1000;   10:00.000; line : 2\r\n", "1004;   10:00.000; line : 0\r\n",
          "1004;   10:00.000; line : 1\r\n", "1004;   10:00.000; line : 2\r\n"}) {
      EXPECT_NE(log.find(line), std::string::npos) << "seed " << seed << ": " << line;
    }
    EXPECT_EQ(log.size(), 6u * 29u) << "seed " << seed;
  }
}

// What a run writes, with the call of every number failing once.
TEST(TrayLogFaults, NoFailingCallLeaksOrSticks) {
  for (std::uint64_t number = 1;; ++number) {
    sim::Machine machine;
    machine.files().MakeFolder(u"C:\\ProgramData\\KAVRO\\VGL3");
    machine.registry().SetDword(HKEY_CURRENT_USER, kKey, u"K_QTR", 1);
    sim::Inside inside(machine);
    inside.process().FailCall(number);
    TrayLogInit(TrayLogPath().c_str());
    TrayLogText(u"a");
    TrayLogPair(u"a", u"b");
    TrayLogInt(u"a", 1);
    EXPECT_EQ(g_pTrayLogFile.get(), nullptr) << "call " << number;
    EXPECT_TRUE(inside.process().Ledger().empty()) << "call " << number;
    if (inside.process().calls() < number) {
      EXPECT_GT(number, 18u);  // the loop did reach the lines
      break;
    }
  }
}

}  // namespace
}  // namespace vgl
