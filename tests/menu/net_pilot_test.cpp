// NetPilot's daily start: when it is due, whether the printer answers, and what is kept in the
// printer's record.
#include "menu/net_pilot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <optional>

#include "Common/CVglLog.h"
#include "Common/printer_library_exports.h"
#include "Common/tray_log.h"
#include "desk/default_machine.h"
#include "desk/printer_library.h"
#include "tests/support/log_texts.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;
using Lines = std::vector<std::string>;

constexpr char16_t kLibrary[] = u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\K_S72PR.DLL";
constexpr char16_t kNetPilot[] = u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\NETPILOT.EXE";
constexpr char16_t kPortRecord[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVNTarget\\P0000000000000004";
constexpr char16_t kRoot[] = u"";
constexpr PrinterIdentity kPrinter{.printerName = desk::kPrinterName,
                                   .driverName = desk::kDriverName,
                                   .modelId = desk::kModelId,
                                   .portName = desk::kPortName};
constexpr PrinterIdentity kPort{.printerName = u"",
                                .driverName = desk::kDriverName,
                                .modelId = desk::kModelId,
                                .portName = desk::kPortName};
// Of the machine's beginning: 5 January 2026, 9:00.
constexpr std::int64_t kNow = 1767603600;

// --- When a start is due

TEST(NetPilotTime, IsCountedInWholeSecondsOf32Bits) {
  constexpr std::int64_t kLast = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t kFirst = std::numeric_limits<std::int64_t>::min();
  const struct {
    std::int64_t then;
    std::int64_t now;
    std::uint32_t seconds;
  } cases[] = {
      {1000, 1000, 0},
      {1000, 1001, 1},
      {1001, 1000, 0},  // of the future
      {kNow, 0, 0},
      {0, 4294967294, 4294967294},
      {0, 4294967295, 4294967295},
      {0, 4294967296, 4294967295},  // and so on
      {0, kLast, 4294967295},
      {kFirst, kLast, 4294967295},
      {kLast, kFirst, 0},
      {-1, 1, 2},
      {kFirst, kFirst, 0},
  };
  for (const auto& each : cases)
    EXPECT_EQ(SecondsFrom(each.then, each.now), each.seconds) << each.then << " " << each.now;
}

// Of seconds * 1000 the low 32 bits count: those of 4294968 are 4294968000 - 4294967296 = 704.
TEST(NetPilotTime, IsDueAfterADayAndNotForADayAfterEachWrapOfItsMilliseconds) {
  const struct {
    std::uint32_t seconds;
    bool isDue;
  } cases[] = {
      {0, false},         {1, false},      {86399, false},
      {86400, true},      {4294967, true},  // 4294967000 ms
      {4294968, false},                     // 704
      {4381367, false},                     // 86399704
      {4381368, true},                      // 86400704
      {8589934, true},                      // 4294966704
      {8589935, false},                     // 408
      {4294967295, true},                   // 4294966296: any longer time counts as this one
  };
  for (const auto& each : cases) EXPECT_EQ(IsNetPilotDue(each.seconds), each.isDue) << each.seconds;
}

class NetPilot : public testing::Test {
 protected:
  NetPilot() {
    desk::SetUpDefaultMachine(machine);
    desk::EnableTrayLog(machine);
    TrayLogInit(TrayLogPath().c_str());
    machine.files().WriteFile(kNetPilot, "");
  }

  void Check(const PrinterIdentity& identity = kPrinter) {
    CheckNetPilot(identity, u"NETPILOT.EXE");
  }
  static std::string Bytes(std::int64_t seconds) {
    std::string bytes;
    for (int shift = 0; shift < 64; shift += 8)
      bytes += static_cast<char>(static_cast<std::uint64_t>(seconds) >> shift & 0xFF);
    return bytes;
  }
  void SetLastKick(std::string_view bytes, std::uint32_t type = REG_BINARY) {
    machine.registry().SetBytes(HKEY_CURRENT_USER, desk::kRecordPath, u"LastKickNetPilot", type,
                                bytes);
  }
  std::optional<std::string> LastKick(std::u16string_view record = desk::kRecordPath) {
    return machine.registry().Bytes(HKEY_CURRENT_USER, record, u"LastKickNetPilot");
  }
  void DontAnswer() {
    machine.spooler().SetData(desk::kPrinterName, u"PrinterDriverData", u"PrinterAnswers",
                              REG_DWORD, std::string(4, '\0'));
  }
  std::size_t Starts() { return machine.programs().Starts().size(); }
  // The count of starts of NetPilot; nothing where nothing was counted.
  std::optional<std::uint32_t> Counted() {
    const CVglLog& log = g_VglLog.get();
    if (log.m_pnLogData == nullptr) return std::nullopt;
    return log.m_pnLogData[12];
  }
  Lines Logged() { return TextsOfLog(machine.files().ReadFile(desk::kTrayLogFile).value_or("")); }
  bool HasLogged(const std::string& text) {
    const Lines lines = Logged();
    return std::find(lines.begin(), lines.end(), text) != lines.end();
  }
  Texts Held() { return inside.process().Ledger(); }

  sim::Machine machine;
  sim::Inside inside{machine};
  desk::PrinterLibrary& face = desk::PrinterLibraryOf(machine);
};

// --- Whether the printer answers

class PrinterStatus : public NetPilot {
 protected:
  // The log line of a failure to ask.
  void ExpectFailure(const std::string& line) {
    EXPECT_EQ(IsGetPrinterStatus(kPrinter), 0) << line;
    EXPECT_EQ(Logged().back(), line);
    EXPECT_TRUE(face.statusCalls.empty());
    EXPECT_EQ(Held(), Texts{});
  }
};

TEST_F(PrinterStatus, IsAskedForByThePrintersNameWithEmptyCells) {
  EXPECT_EQ(IsGetPrinterStatus(kPrinter), 1);
  EXPECT_EQ(face.statusCalls,
            (std::vector<desk::PrinterLibrary::StatusCall>{{u"Studio 7200", true}}));
  EXPECT_EQ(Logged(), Lines{"PrGetPrinterStatus2() OK."});
  EXPECT_EQ(Held(), Texts{});  // the library is freed
}

TEST_F(PrinterStatus, IsAskedForWithoutANameWhereOnlyAPortIsKnown) {
  EXPECT_EQ(IsGetPrinterStatus(kPort), 1);
  EXPECT_EQ(face.statusCalls, (std::vector<desk::PrinterLibrary::StatusCall>{{u"", true}}));
}

TEST_F(PrinterStatus, IsThereForEveryResultThatIsntNegative) {
  const struct {
    std::int32_t result;
    std::int32_t answered;
    const char* line;
  } cases[] = {
      {0, 1, "PrGetPrinterStatus2() OK."},
      {1, 1, "PrGetPrinterStatus2() OK."},
      {2147483647, 1, "PrGetPrinterStatus2() OK."},
      {-1, 0, "Err PrGetPrinterStatus2()"},
      {-2147483647 - 1, 0, "Err PrGetPrinterStatus2()"},
  };
  for (const auto& each : cases) {
    face.statusResult = each.result;
    EXPECT_EQ(IsGetPrinterStatus(kPrinter), each.answered) << each.result;
    EXPECT_EQ(Logged().back(), each.line);
    EXPECT_EQ(Held(), Texts{});
  }
}

TEST_F(PrinterStatus, BlockIsGivenBackWhateverTheResult) {
  for (const std::int32_t result : {0, -1}) {
    face.statusResult = result;
    IsGetPrinterStatus(kPrinter);
    EXPECT_TRUE(face.blocksHeld.empty()) << result;
  }
  EXPECT_EQ(face.blocksGiven, 2U);
}

TEST_F(PrinterStatus, WithoutABlockHasNothingToGiveBack) {
  face.givesStatus = false;
  EXPECT_EQ(IsGetPrinterStatus(kPrinter), 1);
  EXPECT_EQ(machine.libraries().At(kLibrary).Calls(kPrReleasePrinterStatus), 0U);
}

TEST_F(PrinterStatus, IsThereAlsoFromALibraryThatTakesNoBlockBack) {
  machine.libraries().At(kLibrary).RemoveExport(kPrReleasePrinterStatus);
  EXPECT_EQ(IsGetPrinterStatus(kPrinter), 1);
  EXPECT_EQ(face.blocksHeld.size(), 1U);
  EXPECT_EQ(Logged(), Lines{"PrGetPrinterStatus2() OK."});
}

TEST_F(PrinterStatus, IsNotThereFromALibraryWithoutTheExport) {
  machine.libraries().At(kLibrary).RemoveExport(kPrGetPrinterStatus2);
  ExpectFailure("Err GetProcAddress()");
}

TEST_F(PrinterStatus, IsNotThereWhereTheLibraryCantBeLoaded) {
  inside.process().FailNext("LoadLibraryW", ERROR_NOT_ENOUGH_MEMORY);
  ExpectFailure("Err LoadLibrary()");
  machine.files().Remove(kLibrary);
  ExpectFailure("Err LoadLibrary()");
}

TEST_F(PrinterStatus, IsNotThereWhereTheProfileNamesNoLibrary) {
  machine.files().WriteFile(desk::kProfilePath, "[S7200]\r\nVGL_LOG=1\r\n");
  ExpectFailure("Err GetProcPath()");
  machine.files().Remove(desk::kProfilePath);
  ExpectFailure("Err GetProcPath()");
}

// --- The first sight of a printer

TEST_F(NetPilot, AtTheFirstSightOfAPrinterThatAnswersKeepsTheTimeAndStartsNothing) {
  Check();
  EXPECT_EQ(LastKick(), Bytes(kNow));
  EXPECT_EQ(LastKick(), std::string("\x90\x7D\x5B\x69\0\0\0\0", 8));
  EXPECT_EQ(Starts(), 0U);
  EXPECT_EQ(Counted(), std::nullopt);
  EXPECT_EQ(Held(), Texts{});
}

TEST_F(NetPilot, AtTheSightOfAPrinterThatDoesntAnswerKeepsNothing) {
  DontAnswer();
  Check();
  EXPECT_EQ(LastKick(), std::nullopt);
  EXPECT_EQ(face.statusCalls.size(), 1U);
  EXPECT_EQ(Starts(), 0U);
}

TEST_F(NetPilot, TakesATimeOfAnotherSizeForNone) {
  for (const std::size_t size : {0, 4, 7, 9, 16, 4096}) {
    SetLastKick(std::string(size, '\0'));  // of 8 bytes it would be due
    Check();
    EXPECT_EQ(LastKick(), Bytes(kNow)) << size;
    EXPECT_EQ(Starts(), 0U) << size;
  }
}

TEST_F(NetPilot, TakesATimeOfEightBytesWhateverTheirType) {
  SetLastKick(Bytes(kNow - 86400), REG_SZ);
  Check();
  EXPECT_EQ(Starts(), 1U);
  EXPECT_EQ(LastKick(), Bytes(kNow));
}

TEST_F(NetPilot, LeavesATimeOfAnotherSizeToAPrinterThatDoesntAnswer) {
  SetLastKick("1234567");
  DontAnswer();
  Check();
  EXPECT_EQ(LastKick(), "1234567");
}

// --- Later ones

TEST_F(NetPilot, IsStartedWithTheDriversFolderAndThePrintersName) {
  SetLastKick(Bytes(kNow - 86400));
  Check();
  ASSERT_EQ(Starts(), 1U);
  EXPECT_EQ(machine.programs().Starts()[0].commandLine,
            u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\NETPILOT.EXE /RUN /P \"Studio 7200\"");
  EXPECT_EQ(Counted(), 1U);
  EXPECT_EQ(LastKick(), Bytes(kNow));
  EXPECT_TRUE(HasLogged("DiffTime  : 86400"));
  EXPECT_TRUE(HasLogged("Kick NetPilot."));
  EXPECT_EQ(Held(), Texts{});
}

// A start that isn't due doesn't ask the printer either, which may take a while.
TEST_F(NetPilot, IsStartedAndThePrinterAskedOnlyWhenDue) {
  const struct {
    std::int64_t ago;
    bool isStarted;
    const char* line;
  } cases[] = {
      {0, false, "DiffTime  : 0"},
      {86399, false, "DiffTime  : 86399"},
      {86400, true, "DiffTime  : 86400"},
      {-1, false, "DiffTime  : 0"},
      {-86400, false, "DiffTime  : 0"},
      {4294967, true, "DiffTime  : 4294967"},
      {4294968, false, "DiffTime  : 4294968"},
      {4381367, false, "DiffTime  : 4381367"},
      {4381368, true, "DiffTime  : 4381368"},
      {4294967296, true, "DiffTime  : -1"},  // 4294967295, as the log has numbers
      {5000000000, true, "DiffTime  : -1"},
  };
  for (const auto& each : cases) {
    machine.files().Remove(desk::kTrayLogFile);
    face.statusCalls.clear();
    const std::size_t before = Starts();
    SetLastKick(Bytes(kNow - each.ago));
    Check();
    EXPECT_EQ(Starts() - before, each.isStarted ? 1U : 0U) << each.ago;
    EXPECT_EQ(face.statusCalls.size(), each.isStarted ? 1U : 0U) << each.ago;
    EXPECT_EQ(LastKick(), Bytes(each.isStarted ? kNow : kNow - each.ago)) << each.ago;
    EXPECT_TRUE(HasLogged(each.line)) << each.ago;
    EXPECT_EQ(HasLogged("Kick NetPilot."), each.isStarted) << each.ago;
  }
}

TEST_F(NetPilot, IsNotStartedByATimeThatNoCalendarHas) {
  SetLastKick(std::string("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x7F", 8));
  Check();
  EXPECT_EQ(Starts(), 0U);
  SetLastKick(std::string("\0\0\0\0\0\0\0\x80", 8));  // long ago
  Check();
  EXPECT_EQ(Starts(), 1U);
}

TEST_F(NetPilot, LeavesTheTimeOfAPrinterThatDoesntAnswer) {
  SetLastKick(Bytes(kNow - 86400));
  DontAnswer();
  Check();
  Check();
  EXPECT_EQ(face.statusCalls.size(), 2U);
  EXPECT_EQ(Starts(), 0U);
  EXPECT_EQ(Counted(), std::nullopt);
  EXPECT_EQ(LastKick(), Bytes(kNow - 86400));
  EXPECT_FALSE(HasLogged("Kick NetPilot."));
}

TEST_F(NetPilot, ThatCantBeStartedIsCountedAndItsTimeLeft) {
  machine.files().Remove(kNetPilot);
  SetLastKick(Bytes(kNow - 86400));
  Check();
  EXPECT_EQ(Starts(), 0U);
  EXPECT_EQ(Counted(), 1U);
  EXPECT_EQ(LastKick(), Bytes(kNow - 86400));
  machine.files().WriteFile(kNetPilot, "");
  Check();
  EXPECT_EQ(Starts(), 1U);
  EXPECT_EQ(Counted(), 2U);
  EXPECT_EQ(LastKick(), Bytes(kNow));
}

// Both it and the library that tells whether the printer answers.
TEST_F(NetPilot, WithoutADriversFolderIsLeftToTheSystemToFind) {
  SetDriverValue(machine, "InstallPath", "C:\\Gone");
  desk::AddPrinterLibrary(machine, u"C:\\Windows\\system32\\.K_S72PR.DLL");
  machine.files().WriteFile(u"C:\\Windows\\system32\\NETPILOT.EXE", "");
  SetLastKick(Bytes(kNow - 86400));
  Check();
  ASSERT_EQ(Starts(), 1U);
  EXPECT_EQ(machine.programs().Starts()[0].commandLine, u"NETPILOT.EXE /RUN /P \"Studio 7200\"");
}

// --- Where the time is kept

TEST_F(NetPilot, FindsTheRecordWhateverTheCaseOfItsName) {
  machine.registry().SetString(HKEY_CURRENT_USER, desk::kRecordPath, u"Name", u"STUDIO 7200");
  Check();
  EXPECT_EQ(LastKick(), Bytes(kNow));
  EXPECT_EQ(LastKick(kRoot), std::nullopt);
}

TEST_F(NetPilot, OfAPortKeepsTheTimeInThePortsRecord) {
  machine.registry().SetString(HKEY_CURRENT_USER, kPortRecord, u"Name", u"USB001");
  Check(kPort);
  EXPECT_EQ(LastKick(kPortRecord), Bytes(kNow));
  EXPECT_EQ(LastKick(), std::nullopt);
  machine.registry().SetBytes(HKEY_CURRENT_USER, kPortRecord, u"LastKickNetPilot", REG_BINARY,
                              Bytes(kNow - 86400));
  Check(kPort);
  ASSERT_EQ(Starts(), 1U);
  EXPECT_TRUE(machine.programs().Starts()[0].commandLine.ends_with(u"NETPILOT.EXE /RUN /P \"\""));
}

// An empty path stands for the root itself.
TEST_F(NetPilot, WithoutARecordKeepsTheTimeAtTheRootByTheSameRule) {
  machine.registry().RemoveKey(HKEY_CURRENT_USER, desk::kRecordPath);
  Check();
  EXPECT_EQ(LastKick(kRoot), Bytes(kNow));
  EXPECT_EQ(Starts(), 0U);
  machine.system().startSeconds += 86399;
  Check();
  EXPECT_EQ(Starts(), 0U);
  machine.system().startSeconds += 1;
  Check();
  EXPECT_EQ(Starts(), 1U);
  EXPECT_EQ(LastKick(kRoot), Bytes(kNow + 86400));
}

TEST_F(NetPilot, WithoutAnyRecordsKeepsTheTimeAtTheRootToo) {
  machine.registry().RemoveKey(HKEY_CURRENT_USER, u"Software\\KAVRO\\VGL3\\VGLData");
  Check();
  EXPECT_EQ(LastKick(kRoot), Bytes(kNow));
}

TEST_F(NetPilot, KeepsTheTimeOfTheChecksBeginning) {
  face.statusTakes = 90000;
  Check();
  EXPECT_EQ(machine.now(), 90000U);
  EXPECT_EQ(LastKick(), Bytes(kNow));
}

// Each check tries again.
TEST_F(NetPilot, IsStartedAtEachCheckWhereTheTimeCantBeKept) {
  SetLastKick(Bytes(kNow - 86400));
  machine.registry().Deny(HKEY_CURRENT_USER, desk::kRecordPath, false);
  Check();
  Check();
  EXPECT_EQ(Starts(), 2U);
  EXPECT_EQ(LastKick(), Bytes(kNow - 86400));
  EXPECT_EQ(Held(), Texts{});
}

// --- Nothing is done

TEST_F(NetPilot, WithoutAProgramOnlyTheFolderIsLookedFor) {
  SetLastKick(Bytes(kNow - 86400));
  const std::uint64_t before = inside.process().calls();
  CheckNetPilot(kPrinter, u"");
  EXPECT_GT(inside.process().calls() - before, 1U);
  EXPECT_TRUE(face.statusCalls.empty());
  EXPECT_EQ(Starts(), 0U);
  EXPECT_EQ(LastKick(), Bytes(kNow - 86400));
  EXPECT_EQ(Logged(), Lines{});
}

TEST_F(NetPilot, DoesNothingWhereTheRecordDoesntOpen) {
  SetLastKick(Bytes(kNow - 86400));
  // Behind the branch and the record in it, by which its path is found.
  inside.process().FailNext("RegOpenKeyExW", ERROR_ACCESS_DENIED, 2);
  Check();
  EXPECT_TRUE(face.statusCalls.empty());
  EXPECT_EQ(Starts(), 0U);
  EXPECT_EQ(LastKick(), Bytes(kNow - 86400));
}

TEST_F(NetPilot, DoesNothingWhereTheTimeCantBeRead) {
  SetLastKick(Bytes(kNow - 86400));
  // Behind the record's name and the size.
  inside.process().FailNext("RegQueryValueExW", ERROR_ACCESS_DENIED, 2);
  Check();
  EXPECT_TRUE(face.statusCalls.empty());
  EXPECT_EQ(Starts(), 0U);
  EXPECT_EQ(LastKick(), Bytes(kNow - 86400));
}

TEST_F(NetPilot, TakesATimeWhoseSizeCantBeHadForNone) {
  SetLastKick(Bytes(kNow - 86400));
  inside.process().FailNext("RegQueryValueExW", ERROR_ACCESS_DENIED, 1);
  Check();
  EXPECT_EQ(Starts(), 0U);
  EXPECT_EQ(LastKick(), Bytes(kNow));
}

TEST_F(NetPilot, KeepsNoHandleAndForgetsNoStartUnlessJustThatFails) {
  g_bTrayLogEnabled = 0;
  SetLastKick(Bytes(kNow - 86400));
  const std::uint64_t before = inside.process().calls();
  Check();
  const std::uint64_t calls = inside.process().calls() - before;
  ASSERT_GT(calls, 50U);
  Lines forgotten;
  Lines blockKept;
  for (std::uint64_t number = 1; number <= calls; ++number) {
    SetLastKick(Bytes(kNow - 86400));
    g_VglLog.get().Clear();
    const std::size_t started = Starts();
    inside.process().FailCall(number);
    Check();
    EXPECT_EQ(Held(), Texts{}) << number;
    if (!face.blocksHeld.empty()) blockKept.push_back(inside.process().failedOperation());
    face.blocksHeld.clear();
    if (Starts() > started && LastKick() == Bytes(kNow - 86400))
      forgotten.push_back(inside.process().failedOperation());
  }
  // The export that takes a block back, which isn't needed; what keeps the time.
  EXPECT_EQ(blockKept, Lines{"GetProcAddress"});
  EXPECT_EQ(forgotten, (Lines{"RegOpenKeyExW", "RegSetValueExW"}));
}

}  // namespace
}  // namespace vgl
