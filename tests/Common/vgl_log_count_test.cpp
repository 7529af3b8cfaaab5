// Counting: what the first count finds, what later ones do, what isn't counted.
#include <limits>

#include "tests/support/vgl_log_fixture.h"

namespace vgl {
namespace {

using namespace platform;

class VglLogCount : public VglLogTest {};

struct KindRow {
  std::int32_t kind;
  std::int32_t counters;
  const char16_t* fileName;
};
constexpr KindRow kKinds[] = {{1, 57, u"VGL_Detail_K12.xml"},
                              {2, 24, u"VGL_Preferences_K12.xml"},
                              {3, 14, u"VGL_TrayIcon_K12.xml"}};

TEST_F(VglLogCount, EachKindHasItsCountersAndItsFile) {
  for (const KindRow& row : kKinds) {
    SCOPED_TRACE(row.kind);
    EXPECT_EQ(log.Increment(row.kind, row.counters - 1, kPrinter), 0);
    EXPECT_EQ(log.m_nLogKind, row.kind);
    EXPECT_EQ(log.m_nLogCount, row.counters);
    for (std::int32_t index = 0; index < row.counters; ++index)
      EXPECT_EQ(Counter(static_cast<std::size_t>(index)), index == row.counters - 1 ? 1U : 0U);
    EXPECT_EQ(log.WriteVglLogFile(), 1);
    EXPECT_EQ(log.m_csLogFileName, row.fileName);
    log.Clear();
  }
}

TEST_F(VglLogCount, ANewLogIsEmpty) {
  EXPECT_EQ(log.m_nLogKind, 0);
  EXPECT_EQ(log.m_nLogCount, 0);
  EXPECT_EQ(log.m_nMergeCount, 0);
  EXPECT_EQ(log.m_bKeyChecked, 0);
  EXPECT_EQ(log.m_pnLogData, nullptr);
  EXPECT_EQ(log.m_pnReadData, nullptr);
  EXPECT_EQ(log.m_pszVersion, nullptr);
}

TEST_F(VglLogCount, TheFirstCountFindsAllThatIsNeeded) {
  EXPECT_EQ(Count(1), 0);
  EXPECT_EQ(log.m_nLogKind, 3);
  EXPECT_EQ(log.m_nLogCount, 14);
  EXPECT_EQ(log.m_csPrinterName, u"Studio");
  EXPECT_EQ(log.m_csDriverName, u"Sample");
  EXPECT_EQ(log.m_csDeviceID, u"M1");
  EXPECT_EQ(log.m_csLogRuFullPath, kLogLibrary);
  EXPECT_EQ(log.m_bKeyChecked, 1);
  EXPECT_EQ(std::u16string(log.m_pszVersion.get()), u"1.0.0.0");
  EXPECT_EQ(log.m_csSerialID, u"");
  EXPECT_EQ(log.m_csLogFileName, u"");
  EXPECT_EQ(Counter(1), 1U);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(VglLogCount, LaterCountsAskNobody) {
  Count(1);
  EXPECT_EQ(CallsOf([&] {
              Count(1);
              Count(13);
              log.SetValue(VGLLOG_TRAYICON, 2, 7, kPrinter);
            }),
            0U);
  EXPECT_EQ(Counter(1), 2U);
  EXPECT_EQ(Counter(13), 1U);
  EXPECT_EQ(Counter(2), 7U);
}

TEST_F(VglLogCount, TheDeviceIdIsAskedForInTwoCallsAtTheFirstCountAndAgainAfterAClear) {
  Count(1);
  Count(1);
  ASSERT_EQ(LogCalls().calls.size(), 2U);
  EXPECT_EQ(LogCalls().calls[0].name, "GetExtEscapeDeviceID");
  EXPECT_EQ(LogCalls().calls[0].deviceId, u"Studio");  // the printer's name
  EXPECT_FALSE(LogCalls().calls[0].hasBuffer);
  EXPECT_EQ(LogCalls().calls[0].count, 0);
  EXPECT_TRUE(LogCalls().calls[1].hasBuffer);
  EXPECT_EQ(LogCalls().calls[1].count, 3);
  log.Clear();
  Count(1);
  EXPECT_EQ(LogCalls().calls.size(), 4U);
}

TEST_F(VglLogCount, ACounterWrapsAround) {
  log.SetValue(VGLLOG_TRAYICON, 5, 0xFFFFFFFF, kPrinter);
  EXPECT_EQ(Count(5), 0);
  EXPECT_EQ(Counter(5), 0U);
}

TEST_F(VglLogCount, AnIndexThatTheKindHasntIsPassedOver) {
  for (const std::int32_t index : {14, -1, 56, std::numeric_limits<std::int32_t>::max(),
                                   std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(Count(index), 0) << index;
    EXPECT_EQ(log.SetValue(VGLLOG_TRAYICON, index, 9, kPrinter), 0) << index;
  }
  for (std::size_t index = 0; index < 14; ++index) EXPECT_EQ(Counter(index), 0U);
}

TEST_F(VglLogCount, TheKindOfTheFirstCountStays) {
  Count(1);
  EXPECT_EQ(log.Increment(VGLLOG_DETAIL, 40, kPrinter), 0);
  EXPECT_EQ(log.Increment(VGLLOG_DETAIL, 2, kPrinter), 0);
  EXPECT_EQ(log.m_nLogKind, 3);
  EXPECT_EQ(log.m_nLogCount, 14);
  EXPECT_EQ(Counter(2), 1U);
}

TEST_F(VglLogCount, TheNameOfTheLastPrinterIsKeptWithTheFirstOnesDriver) {
  Count(1);
  EXPECT_EQ(log.Increment(VGLLOG_TRAYICON, 1, u"another"), 0);
  EXPECT_EQ(log.m_csPrinterName, u"another");
  EXPECT_EQ(log.m_csDriverName, u"Sample");
  EXPECT_EQ(Counter(1), 2U);
}

// --- What isn't counted

TEST_F(VglLogCount, AModelThatIsntEnabledGivesMinus97EachTimeAndNothingIsWritten) {
  WriteProfile("");
  SwitchNestLogOn();
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(Count(1), -97);
    EXPECT_EQ(log.m_pnLogData, nullptr);
    const std::vector<std::string> lines = NestLines();
    EXPECT_EQ(lines.at(lines.size() - 2), "     CheckEmberDatKey <FATAL_EMBERDAT_NOT_DESCRIBED>\r");
    EXPECT_EQ(lines.back(), "  CheckEmberDatKey() Err \r");
  }
  EXPECT_EQ(log.WriteVglLogFile(), -99);
  EXPECT_FALSE(machine.files().Exists(kLogFile));
  EXPECT_EQ(LogLibrary().Calls("IncrementMultiLog"), 0U);
}

TEST_F(VglLogCount, OnlyTheNumberOneEnablesAModel) {
  for (const char* line : {"VGL_LOG=0\n", "VGL_LOG=2\n", "VGL_LOG=-1\n", "VGL_LOG=\n",
                           "VGL_LOG=yes\n", "VGL_LOGS=1\n", "[M2]\nVGL_LOG=1\n"}) {
    WriteProfile(line);
    EXPECT_EQ(Count(1), -97) << line;
  }
  WriteProfile("vgl_log = 1 ; yes\n");
  EXPECT_EQ(Count(1), 0);
}

TEST_F(VglLogCount, AModelThatIsEnabledLaterIsCountedFromThenOn) {
  WriteProfile("VGL_LOG=0\n");
  Count(1);
  WriteProfile("VGL_LOG=1\n");
  EXPECT_EQ(Count(1), 0);
  EXPECT_EQ(Counter(1), 1U);
}

TEST_F(VglLogCount, TheKeyIsReadOnce) {
  Count(1);
  WriteProfile("VGL_LOG=0\n");
  EXPECT_EQ(Count(1), 0);
  EXPECT_EQ(Counter(1), 2U);
}

TEST_F(VglLogCount, AProfileThatIsntFoundGivesMinus99) {
  Describe("");
  SwitchNestLogOn();
  EXPECT_EQ(Count(1), -99);
  EXPECT_TRUE(HasLogged("GetProfilePath() return Err"));  // the one text here without a "\r"
  Count(1);
  EXPECT_TRUE(HasLogged("CheckEmberDatKey() Err \r"));
  EXPECT_EQ(log.m_bKeyChecked, 0);
  EXPECT_EQ(log.m_csDeviceID, u"M1");  // what was found stays
}

TEST_F(VglLogCount, APrinterWithoutADriverGivesMinus99AndLeavesItsNameAlone) {
  SwitchNestLogOn();
  EXPECT_EQ(log.Increment(VGLLOG_TRAYICON, 1, u"missing"), -99);
  EXPECT_EQ(NestLines(),
            (std::vector<std::string>{"InitializeLogBuffer()\r", "  GetDriverName() Err \r"}));
  EXPECT_EQ(log.m_csPrinterName, u"missing");
  EXPECT_EQ(log.m_nLogKind, 0);
  EXPECT_EQ(log.Increment(VGLLOG_TRAYICON, 1, u""), -99);
  EXPECT_EQ(Count(1), 0);
}

TEST_F(VglLogCount, ADriverWithAnEmptyNameIsNone) {
  machine.spooler().At(kPrinter).driver = u"";
  EXPECT_EQ(Count(1), -99);
  EXPECT_EQ(log.m_nLogKind, 0);
}

TEST_F(VglLogCount, AnInstallerAtWorkKeepsItFromCounting) {
  const OwnedObject installer(
      Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller"));
  EXPECT_EQ(Count(1), -99);
}

TEST_F(VglLogCount, WithoutALogLibraryEachCountGivesMinus99) {
  machine.files().Remove(kLogLibrary);
  SwitchNestLogOn();
  EXPECT_EQ(Count(1), -99);
  const std::vector<std::string> lines = NestLines();
  EXPECT_EQ(lines.back(), "  GetEscapeDeviceID() Err \r");
  EXPECT_EQ(log.m_nLogKind, 3);
  EXPECT_EQ(log.m_nLogCount, 14);
  EXPECT_EQ(log.m_pnLogData, nullptr);
}

TEST_F(VglLogCount, ALibraryThatIsNoneAndOneWithoutTheExportGiveMinus99) {
  LogLibrary().RemoveExport("GetExtEscapeDeviceID");
  EXPECT_EQ(Count(1), -99);
  machine.files().WriteFile(u"C:\\Set\\OTHER.DLL", "no library");
  WriteVif("[CommonDrvInfo]\nSADat=sample.sad\nAppLogModule=OTHER.DLL\n");
  log.Clear();
  EXPECT_EQ(Count(1), -99);
  EXPECT_EQ(log.m_csLogRuFullPath, u"C:\\Set\\OTHER.DLL");
}

TEST_F(VglLogCount, ALibraryThatIsntAvailableEndsThePreparationWithoutAnErrorOrACount) {
  Answer("GetExtEscapeDeviceID", 0);
  SwitchNestLogOn();
  EXPECT_EQ(Count(1), 0);
  EXPECT_TRUE(HasLogged("GetEscapeDeviceID() Err \r"));
  EXPECT_EQ(log.m_pnLogData, nullptr);
  Answer("GetExtEscapeDeviceID", 0);
  EXPECT_EQ(log.SetValue(VGLLOG_TRAYICON, 1, 5, kPrinter), 0);
  EXPECT_EQ(log.m_pnLogData, nullptr);
  EXPECT_EQ(Count(1), 0);
  EXPECT_EQ(Counter(1), 1U);
}

TEST_F(VglLogCount, OtherAnswersToTheDeviceIdGoOnAndFailAtTheProfile) {
  for (const std::int32_t code : {1, -1, -2, -3, -4, -5, -6, -10, -97, 77}) {
    Answer("GetExtEscapeDeviceID", code);
    SwitchNestLogOn();
    EXPECT_EQ(Count(1), -99) << code;
    const std::vector<std::string> lines = NestLines();
    EXPECT_EQ(lines.at(lines.size() - 2), "    GetProfilePath() return Err") << code;
    EXPECT_EQ(lines.back(), "  CheckEmberDatKey() Err \r") << code;
  }
}

TEST_F(VglLogCount, APrinterThatDoesntAnswerIsntCounted) {
  machine.spooler().RemoveData(kPrinter, u"PrinterDriverData", u"DeviceID");
  EXPECT_EQ(Count(1), -99);
  EXPECT_EQ(LogLibrary().Calls("GetExtEscapeDeviceID"), 1U);
}

TEST_F(VglLogCount, OddSizesOfTheDeviceIdDoNoHarm) {
  // Told in the first call; the second one then finds too little room, and gives no text.
  for (const std::int32_t size : {0, 1, 2}) {
    Answer("GetExtEscapeDeviceID", -7, size);
    EXPECT_EQ(Count(1), -99) << size;
    EXPECT_EQ(LogCalls().calls.back().count, size);
    EXPECT_EQ(log.m_csDeviceID, u"");
  }
  Answer("GetExtEscapeDeviceID", -7, -1);
  EXPECT_EQ(Count(1), -99);
  EXPECT_FALSE(LogCalls().calls.back().hasBuffer);
  Answer("GetExtEscapeDeviceID", -7, 400);
  EXPECT_EQ(Count(1), 0);
  EXPECT_EQ(log.m_csDeviceID, u"M1");
}

TEST_F(VglLogCount, ADeviceIdThatTakes0AsItsSecondAnswerEndsWith0) {
  Answer("GetExtEscapeDeviceID", -7, 3);
  Answer("GetExtEscapeDeviceID", 0);
  EXPECT_EQ(Count(1), 0);
  EXPECT_EQ(log.m_pnLogData, nullptr);
}

TEST_F(VglLogCount, TheTextsOfTheFirstCountAndOfALaterOne) {
  SwitchNestLogOn();
  Count(1);
  EXPECT_EQ(NestLines(),
            (std::vector<std::string>{"InitializeLogBuffer()\r", "  GetEscapeDeviceID()\r",
                                      "    GetLogRuFileName()\r", "      GetVifName()\r",
                                      "      GetInstallPath()\r", "      GetAppLogModule()\r",
                                      "  CheckEmberDatKey()\r"}));
  Count(1);
  EXPECT_EQ(NestLines(), std::vector<std::string>{"InitializeLogBuffer()\r"});
}

TEST_F(VglLogCount, WithTheNestLogOffNothingIsLogged) {
  Count(1);
  log.WriteVglLogFile();
  EXPECT_FALSE(machine.files().Exists(u"C:\\ProgramData\\KAVRO\\VGL3\\VGL4.LOG"));
}

// --- Clear

TEST_F(VglLogCount, ClearForgetsEverything) {
  Answer("IncrementMultiLog", -4);  // a merge, so that every field has something
  PutLogFile(LogOf(u"2.0.0.0", {3}));
  Count(1);
  log.WriteVglLogFile();
  ASSERT_NE(log.m_pnReadData, nullptr);
  ASSERT_EQ(log.m_nMergeCount, 1);
  log.Clear();
  EXPECT_EQ(log.m_pnLogData, nullptr);
  EXPECT_EQ(log.m_pnReadData, nullptr);
  EXPECT_EQ(log.m_pszVersion, nullptr);
  EXPECT_EQ(log.m_csLogFileName + log.m_csSerialID + log.m_csPrinterName + log.m_csDriverName +
                log.m_csDeviceID + log.m_csLogRuFullPath,
            u"");
  EXPECT_EQ(log.m_nLogKind, 0);
  EXPECT_EQ(log.m_nLogCount, 0);
  EXPECT_EQ(log.m_nMergeCount, 0);
  EXPECT_EQ(log.m_bKeyChecked, 0);
}

TEST_F(VglLogCount, ClearOfAnEmptyLogDoesNothing) {
  EXPECT_EQ(CallsOf([&] {
              log.Clear();
              log.Clear();
            }),
            0U);
}

TEST_F(VglLogCount, AfterAClearTheKeyIsReadAnew) {
  Count(1);
  WriteProfile("VGL_LOG=0\n");
  log.Clear();
  EXPECT_EQ(Count(1), -97);
}

TEST_F(VglLogCount, AfterAClearALogMayBeOfAnotherKind) {
  Count(1);
  log.Clear();
  EXPECT_EQ(log.Increment(VGLLOG_DETAIL, 56, kPrinter), 0);
  EXPECT_EQ(log.m_nLogKind, 1);
}

// --- What ends the process

class VglLogAssertion : public VglLogTest {};

TEST_F(VglLogAssertion, AKindThatIsNoneEndsTheProcess) {
  EXPECT_TRUE(inside.EndsProcess([&] { log.Increment(0, 1, kPrinter); }));
  EXPECT_EQ(inside.process().exitCode(), 3U);
}

TEST_F(VglLogAssertion, SoDoesTheOneBehindTheLast) {
  EXPECT_TRUE(inside.EndsProcess([&] { log.Increment(4, 1, kPrinter); }));
}

TEST_F(VglLogAssertion, SoDoesANegativeOneForAValue) {
  EXPECT_TRUE(inside.EndsProcess([&] { log.SetValue(-1, 1, 1, kPrinter); }));
}

TEST_F(VglLogAssertion, APrinterThatIsNullEndsTheProcess) {
  EXPECT_TRUE(inside.EndsProcess([&] { log.Increment(VGLLOG_TRAYICON, 1, nullptr); }));
}

TEST_F(VglLogAssertion, ThatIsTestedAtLaterCountsToo) {
  Count(1);
  EXPECT_TRUE(inside.EndsProcess([&] { log.Increment(VGLLOG_TRAYICON, 1, nullptr); }));
}

TEST_F(VglLogAssertion, ALogThatHasBecomeOfNoKindEndsTheProcessAtItsNextCount) {
  Count(1);
  log.m_nLogKind = 4;
  EXPECT_TRUE(inside.EndsProcess([&] { Count(1); }));
}

TEST_F(VglLogAssertion, AndAtItsNextValue) {
  Count(1);
  log.m_nLogKind = -3;
  EXPECT_TRUE(inside.EndsProcess([&] { log.SetValue(VGLLOG_TRAYICON, 1, 1, kPrinter); }));
}

// --- The program's own

TEST(VglLogOfTheProgram, EachProcessHasItsOwn) {
  sim::Machine machine;
  sim::Inside inside(machine);
  g_VglLog.get().m_csSerialID = u"mine";
  std::u16string other = u"not run";
  machine.StartProcess(u"C:\\other.exe", u"", [&](const char16_t*) {
    other = g_VglLog.get().m_csSerialID;
    return 0U;
  });
  machine.Settle();
  EXPECT_EQ(other, u"");
  EXPECT_EQ(g_VglLog.get().m_csSerialID, u"mine");
}

}  // namespace
}  // namespace vgl
