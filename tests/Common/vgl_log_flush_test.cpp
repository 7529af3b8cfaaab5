// The flush: each code of the log library, and what comes of the counts.
#include <algorithm>

#include "tests/support/vgl_log_fixture.h"

namespace vgl {
namespace {

using namespace platform;
using Texts = std::vector<std::string>;

class VglLogFlush : public VglLogTest {};

TEST_F(VglLogFlush, TheFirstFlushEverMakesTheFile) {
  Count(1);
  Count(2);
  Count(2);
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  EXPECT_EQ(LogFile(), LogOf(u"1.0.0.0", {0, 1, 2}));
  EXPECT_EQ(CalledExports(), (Texts{"GetExtEscapeDeviceID", "GetExtEscapeDeviceID",
                                    "IncrementMultiLog", "CreateLogFile"}));
}

TEST_F(VglLogFlush, ALaterFlushAddsToTheFile) {
  PutLogFile(LogOf(u"1.0.0.0", {4, 10, 20}));
  Count(1);
  EXPECT_EQ(log.WriteVglLogFile(), 0);
  EXPECT_EQ(LogFile(), LogOf(u"1.0.0.0", {4, 11, 20}));
}

TEST_F(VglLogFlush, AgentStartAndExitOfTheFirstQuarterOfAnHour) {
  Count(kCountAgentStart);
  log.WriteVglLogFile();  // at the window's end
  EXPECT_EQ(StoredCounters().at(1), 1U);
}

TEST_F(VglLogFlush, WhatTheLibraryIsGivenForTheCounts) {
  PutLogFile(LogOf(u"1.0.0.0", {}));
  for (std::int32_t index = 0; index < 14; ++index)
    log.SetValue(VGLLOG_TRAYICON, index, 100 + static_cast<std::uint32_t>(index), kPrinter);
  LogCalls().calls.clear();
  log.WriteVglLogFile();
  ASSERT_EQ(CalledExports(), Texts{"IncrementMultiLog"});
  const desk::UsageLogCall& call = LogCalls().calls[0];
  EXPECT_EQ(call.deviceId, u"M1");
  EXPECT_EQ(call.fileName, u"VGL_TrayIcon_K12.xml");
  EXPECT_EQ(call.count, 14);
  EXPECT_EQ(call.values, (std::vector<std::uint32_t>{100, 101, 102, 103, 104, 105, 106, 107, 108,
                                                     109, 110, 111, 112, 113}));
  EXPECT_EQ(call.version, u"1.0.0.0");
  EXPECT_EQ(call.waitLimit, 100);
}

TEST_F(VglLogFlush, WhatTheLibraryIsGivenForANewFile) {
  Count(13);
  LogCalls().calls.clear();
  log.WriteVglLogFile();
  const desk::UsageLogCall& call = LogCalls().calls.at(1);
  EXPECT_EQ(call.name, "CreateLogFile");
  EXPECT_EQ(call.deviceId, u"M1");
  EXPECT_EQ(call.fileName, u"VGL_TrayIcon_K12.xml");
  EXPECT_EQ(call.count, 14);
  EXPECT_EQ(call.values, LogOf(u"", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}).counters);
  EXPECT_EQ(call.version, u"1.0.0.0");
  EXPECT_EQ(call.waitLimit, 100);
  EXPECT_EQ(call.first, 0);  // the last argument
}

// --- The codes

struct LibraryAnswer {
  const char* exported;
  std::int32_t code;
  std::int32_t size = 0;
};
struct CodeRow {
  const char* name;
  std::int32_t code;                   // of IncrementMultiLog
  std::vector<LibraryAnswer> answers;  // of what is called behind it
  std::int32_t result;
  Texts lines;  // between the one that tells the code and the last one
  Texts exports;
};

const CodeRow kCodes[] = {
    {"Success",
     1,
     {},
     0,
     {"  SetMultiVglFile()\r", "    GetLogRuFileName()\r", "  _case AL_SUCCESS:\r"},
     {}},
    {"NotAvailable", 0, {}, 0, {"  _case AL_ERROR_NOT_AVAILABLE;\r"}, {}},
    {"NoFile",
     -1,
     {{"CreateLogFile", 1}},
     1,
     {"  CreateLogVglFile()\r", "    GetLogRuFileName()\r",
      "  _case AL_ERROR_FILE_NOT_EXIST: nRet=1 \r"},
     {"CreateLogFile"}},
    {"NoFileAndNoneIsMade",
     -1,
     {{"CreateLogFile", -3}},
     -3,
     {"  CreateLogVglFile()\r", "    GetLogRuFileName()\r",
      "  _case AL_ERROR_FILE_NOT_EXIST: nRet=-3 \r",
      "  _case AL_ERROR_FILE_NOT_EXIST: CreateLogVglFile() return error \r"},
     {"CreateLogFile"}},
    {"NoFileAndALibraryThatIsntAvailableThen",
     -1,
     {{"CreateLogFile", 0}},
     0,
     {"  CreateLogVglFile()\r", "    GetLogRuFileName()\r",
      "  _case AL_ERROR_FILE_NOT_EXIST: nRet=0 \r",
      "  _case AL_ERROR_FILE_NOT_EXIST: CreateLogVglFile() return error \r"},
     {"CreateLogFile"}},
    {"Timeout", -2, {}, -2, {"  _case AL_ERROR_TIMEOUT;\r"}, {}},
    {"NoFolder", -3, {}, -3, {"  _case AL_ERROR_DIR_NOT_EXIST;\r"}, {}},
    {"LaterVersion",
     -4,
     {{"ReadLog", -7, 14}, {"ReadLog", 1, 14}, {"CreateLogFile", 1}},
     1,
     {"  MergeExistReadDataAndLatestData()\r", "    ReadLogVglFile()\r",
      "      GetLogRuFileName()\r", "      ReadLog()\r", "      AL_SUCCESS success!\r",
      "  CreateLogVglFile()\r", "    GetLogRuFileName()\r",
      "  _case AL_ERROR_WRONG_VERSION_LATE: nRet=1 \r"},
     {"ReadLog", "ReadLog", "CreateLogFile"}},
    {"LaterVersionAndNoFileIsMade",
     -4,
     {{"ReadLog", -7, 14}, {"ReadLog", 1, 14}, {"CreateLogFile", -2}},
     -2,
     {"  MergeExistReadDataAndLatestData()\r", "    ReadLogVglFile()\r",
      "      GetLogRuFileName()\r", "      ReadLog()\r", "      AL_SUCCESS success!\r",
      "  CreateLogVglFile()\r", "    GetLogRuFileName()\r",
      "  _case AL_ERROR_WRONG_VERSION_LATE: nRet=-2 \r"},
     {"ReadLog", "ReadLog", "CreateLogFile"}},
    {"LaterVersionWhoseFileIsGone",
     -4,
     {{"ReadLog", -1}},
     -1,
     {"  MergeExistReadDataAndLatestData()\r", "    ReadLogVglFile()\r",
      "      GetLogRuFileName()\r", "      pfnReadLog() return error\r",
      "    ReadLogVglFile() return error", "  _case AL_ERROR_WRONG_VERSION_LATE: nRet=-1 \r"},
     {"ReadLog"}},
    {"LaterVersionWhoseFolderIsGone",
     -4,
     {{"ReadLog", -3}},
     -3,
     {"  MergeExistReadDataAndLatestData()\r", "    ReadLogVglFile()\r",
      "      GetLogRuFileName()\r", "      pfnReadLog() return error\r",
      "    ReadLogVglFile() return error", "  _case AL_ERROR_WRONG_VERSION_LATE: nRet=-3 \r"},
     {"ReadLog"}},
    {"LaterVersionThatIsInUse",
     -4,
     {{"ReadLog", -2}},
     -2,
     {"  MergeExistReadDataAndLatestData()\r", "    ReadLogVglFile()\r",
      "      GetLogRuFileName()\r", "      AL_ERROR_TIMEOUT error\r",
      "    ReadLogVglFile() return error", "  _case AL_ERROR_WRONG_VERSION_LATE: nRet=-2 \r"},
     {"ReadLog"}},
    {"LaterVersionThatIsReadWithoutItsSize",
     -4,
     {{"ReadLog", 1, 14}},
     -99,
     {"  MergeExistReadDataAndLatestData()\r", "    ReadLogVglFile()\r",
      "      GetLogRuFileName()\r", "      other error\r", "    ReadLogVglFile() return error",
      "  _case AL_ERROR_WRONG_VERSION_LATE: nRet=-99 \r"},
     {"ReadLog"}},
    {"LaterVersionOfASizeThatIsNone",
     -4,
     {{"ReadLog", -7, -1}},
     -7,
     {"  MergeExistReadDataAndLatestData()\r", "    ReadLogVglFile()\r",
      "      GetLogRuFileName()\r", "    ReadLogVglFile() return error",
      "  _case AL_ERROR_WRONG_VERSION_LATE: nRet=-7 \r"},
     {"ReadLog"}},
    // The two lines of the second call stand there though it failed.
    {"LaterVersionThatIsInUseAtTheSecondCall",
     -4,
     {{"ReadLog", -7, 14}, {"ReadLog", -2}},
     -2,
     {"  MergeExistReadDataAndLatestData()\r", "    ReadLogVglFile()\r",
      "      GetLogRuFileName()\r", "      ReadLog()\r", "      AL_SUCCESS success!\r",
      "    ReadLogVglFile() return error", "  _case AL_ERROR_WRONG_VERSION_LATE: nRet=-2 \r"},
     {"ReadLog", "ReadLog"}},
    {"OlderVersion",
     -5,
     {{"CreateLogFile", 1}},
     1,
     {"  InitializeLogBuffer()\r", "  _case AL_ERROR_WRONG_VERSION_OLD:\r",
      "  CreateLogVglFile()\r", "    GetLogRuFileName()\r",
      "  _case AL_ERROR_FILE_NOT_EXIST: nRet=1 \r"},
     {"CreateLogFile"}},
    {"OlderVersionAndNoFileIsMade",
     -5,
     {{"CreateLogFile", -1}},
     -1,
     {"  InitializeLogBuffer()\r", "  _case AL_ERROR_WRONG_VERSION_OLD:\r",
      "  CreateLogVglFile()\r", "    GetLogRuFileName()\r",
      "  _case AL_ERROR_FILE_NOT_EXIST: nRet=-1 \r",
      "  _case AL_ERROR_FILE_NOT_EXIST: CreateLogVglFile() return error \r"},
     {"CreateLogFile"}},
    {"ShortBuffer", -7, {}, -7, {"  _case default; (Must not reach)\r"}, {}},
    {"MinusSix", -6, {}, -6, {"  _case default; (Must not reach)\r"}, {}},
    {"Two", 2, {}, 2, {"  _case default; (Must not reach)\r"}, {}},
    {"MinusEight", -8, {}, -8, {"  _case default; (Must not reach)\r"}, {}},
    {"MinusNinetySeven", -97, {}, -97, {"  _case default; (Must not reach)\r"}, {}},
    {"TheLargest", 2147483647, {}, 2147483647, {"  _case default; (Must not reach)\r"}, {}},
    {"TheSmallest",
     -2147483647 - 1,
     {},
     -2147483647 - 1,
     {"  _case default; (Must not reach)\r"},
     {}},
};

class VglLogCode : public VglLogTest, public testing::WithParamInterface<CodeRow> {};

TEST_P(VglLogCode, HasItsActionItsTextsAndItsResult) {
  const CodeRow& row = GetParam();
  Count(1);
  LogCalls().calls.clear();
  Answer("IncrementMultiLog", row.code);
  for (const LibraryAnswer& answer : row.answers) Answer(answer.exported, answer.code, answer.size);
  SwitchNestLogOn();
  EXPECT_EQ(log.WriteVglLogFile(), row.result);

  Texts lines = NestLines();
  EXPECT_EQ(lines.at(0), "WriteVglLogFile()\r");
  lines.erase(lines.begin(), std::find(lines.begin(), lines.end(), "  IncrementMultiVglFile()\r"));
  Texts expected = {"  IncrementMultiVglFile()\r", "    GetLogRuFileName()\r",
                    "    IncrementMultiVglFile() nRet: =" + std::to_string(row.code) + " \r"};
  expected.insert(expected.end(), row.lines.begin(), row.lines.end());
  expected.push_back("  End WriteVglLogFile >nRet: =" + std::to_string(row.result) + " \r");
  EXPECT_EQ(lines, expected);

  Texts exports = row.exports;
  exports.insert(exports.begin(), "IncrementMultiLog");
  EXPECT_EQ(CalledExports(), exports);
  EXPECT_EQ(Counter(1), 1U);  // stays until a Clear
  EXPECT_TRUE(inside.process().Ledger().empty());
}

INSTANTIATE_TEST_SUITE_P(Codes, VglLogCode, testing::ValuesIn(kCodes),
                         [](const auto& test) { return std::string(test.param.name); });

// --- Before the library is asked

TEST_F(VglLogFlush, AnEmptyLogIsntWrittenAndNothingIsTouched) {
  SwitchNestLogOn();
  EXPECT_EQ(log.WriteVglLogFile(), -99);
  EXPECT_EQ(NestLines(),
            (Texts{"WriteVglLogFile()\r", "  WriteVglLogFile() aussumption check error()\r"}));
  EXPECT_TRUE(LogCalls().calls.empty());
  EXPECT_TRUE(PrinterLibrary().serialCalls.empty());
}

TEST_F(VglLogFlush, TheEndRightAfterAFlushWritesNothing) {
  Count(1);
  log.WriteVglLogFile();
  log.Clear();
  EXPECT_EQ(log.WriteVglLogFile(), -99);
  EXPECT_EQ(StoredCounters().at(1), 1U);
}

TEST_F(VglLogFlush, EachOfTheFourFieldsIsNeeded) {
  Count(1);
  log.m_nLogCount = 0;
  EXPECT_EQ(log.WriteVglLogFile(), -99);
  log.m_nLogCount = 14;
  log.m_nLogKind = 0;
  EXPECT_EQ(log.WriteVglLogFile(), -99);
  log.m_nLogKind = 3;
  log.m_csDeviceID.clear();
  EXPECT_EQ(log.WriteVglLogFile(), -99);
  log.m_csDeviceID = u"M1";
  auto counters = std::move(log.m_pnLogData);
  EXPECT_EQ(log.WriteVglLogFile(), -99);
  log.m_pnLogData = std::move(counters);
  EXPECT_EQ(log.WriteVglLogFile(), 1);
}

TEST_F(VglLogFlush, AModelThatIsntCountedAnyMoreIsntWritten) {
  Count(1);
  WriteProfile("VGL_LOG=0\n");
  SwitchNestLogOn();
  EXPECT_EQ(log.WriteVglLogFile(), -97);
  const Texts lines = NestLines();
  EXPECT_EQ(lines.at(lines.size() - 2), "     CheckEmberDatKey <FATAL_EMBERDAT_NOT_DESCRIBED>\r");
  EXPECT_EQ(lines.back(), "  WriteVglLogFile() CheckEmberDatKey return error()\r");
  EXPECT_EQ(LogLibrary().Calls("IncrementMultiLog"), 0U);
}

TEST_F(VglLogFlush, AProfileThatCantBeFoundWhenTheKeyIsCheckedDoesntStopTheWrite) {
  Count(1);
  // Of the driver's name in the log the set knows nothing; the printer library is found by the
  // printer's own.
  log.m_csDriverName = u"Unknown";
  SwitchNestLogOn();
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  EXPECT_TRUE(HasLogged("GetProfilePath() return Err"));
  EXPECT_EQ(StoredCounters().at(1), 1U);
}

TEST_F(VglLogFlush, WithoutASerialNumberItEndsWithMinus99) {
  Count(1);
  PrinterLibrary().printerAnswers = false;
  SwitchNestLogOn();
  EXPECT_EQ(log.WriteVglLogFile(), -99);
  EXPECT_EQ(NestLines().back(), "  WriteVglLogFile() InitializeLogFile() return error()\r");
  EXPECT_EQ(LogLibrary().Calls("IncrementMultiLog"), 0U);
  EXPECT_EQ(Counter(1), 1U);
}

// --- Counts that stay and counts that go

TEST_F(VglLogFlush, WithoutAClearTheCountsAreAddedAgain) {
  Count(1);
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  EXPECT_EQ(log.WriteVglLogFile(), 0);
  EXPECT_EQ(StoredCounters().at(1), 2U);
}

TEST_F(VglLogFlush, CountsThatCouldntBeWrittenArriveWithTheNextFlush) {
  PutLogFile(LogOf(u"1.0.0.0", {0, 5}));
  for (const std::int32_t code : {0, -2, -3}) {
    Count(1);
    Answer("IncrementMultiLog", code);
    EXPECT_EQ(log.WriteVglLogFile(), code);
  }
  EXPECT_EQ(log.WriteVglLogFile(), 0);
  EXPECT_EQ(StoredCounters().at(1), 8U);
}

TEST_F(VglLogFlush, AfterATimeoutAClearGivesTheCountsUp) {
  PutLogFile(LogOf(u"1.0.0.0", {0, 5}));
  Count(1);
  Answer("IncrementMultiLog", -2);
  EXPECT_EQ(log.WriteVglLogFile(), -2);
  log.Clear();
  Count(2);
  EXPECT_EQ(log.WriteVglLogFile(), 0);
  EXPECT_EQ(StoredCounters(), LogOf(u"", {0, 5, 1}).counters);
}

TEST_F(VglLogFlush, AnotherProgramThatHoldsTheFilesFor100MillisecondsIsATimeout) {
  PutLogFile(LogOf(u"1.0.0.0", {}));
  Count(1);
  machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    const OwnedObject mutex(Os().objects.CreateMutexW(nullptr, true, desk::kUsageLogMutex));
    Os().process.Sleep(150);
    Os().objects.ReleaseMutex(mutex.get());
    return 0U;
  });
  machine.Settle();
  const std::uint64_t before = machine.now();
  EXPECT_EQ(log.WriteVglLogFile(), -2);
  EXPECT_EQ(machine.now() - before, 100U);
  EXPECT_EQ(log.WriteVglLogFile(), 0);  // 50 ms later
  EXPECT_EQ(machine.now() - before, 150U);
  EXPECT_EQ(StoredCounters().at(1), 1U);
}

// --- Files of other versions

TEST_F(VglLogFlush, AnOlderFileIsReplacedAndItsLossCounted) {
  PutLogFile(LogOf(u"0.9.0.0", {7, 50, 60}));
  Count(1);
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  EXPECT_EQ(LogFile(), LogOf(u"1.0.0.0", {1, 1}));
}

TEST_F(VglLogFlush, ALaterFilesCountsAreCarriedOver) {
  PutLogFile(LogOf(u"1.0.1.0", {7, 50, 60, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9}));
  Count(1);
  Count(13);
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  EXPECT_EQ(LogFile(), LogOf(u"1.0.0.0", {7, 51, 60, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 10}));
  EXPECT_EQ(log.m_nMergeCount, 1);
}

TEST_F(VglLogFlush, TheFlushAfterALaterFileFindsACurrentOne) {
  PutLogFile(LogOf(u"2.0.0.0", {0, 50}));
  Count(1);
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  log.Clear();
  Count(1);
  EXPECT_EQ(log.WriteVglLogFile(), 0);
  EXPECT_EQ(LogLibrary().Calls("ReadLog"), 2U);
  EXPECT_EQ(StoredCounters().at(1), 52U);
}

TEST_F(VglLogFlush, ASecondMergeWithoutAClearEndsTheProcess) {
  PutLogFile(LogOf(u"2.0.0.0", {0, 50}));
  Count(1);
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  PutLogFile(LogOf(u"2.0.0.0", {0, 50}));
  EXPECT_TRUE(inside.EndsProcess([&] { log.WriteVglLogFile(); }));
  EXPECT_EQ(inside.process().exitCode(), 3U);
}

TEST_F(VglLogFlush, AReadThatFailedIsNoMergeAndMayBeTriedAgain) {
  PutLogFile(LogOf(u"2.0.0.0", {0, 50}));
  Count(1);
  Answer("ReadLog", -7, 3);  // and then there is too little room
  EXPECT_EQ(log.WriteVglLogFile(), -7);
  EXPECT_EQ(log.m_nMergeCount, 0);
  EXPECT_EQ(log.m_nReadCount, 3);
  EXPECT_EQ(log.WriteVglLogFile(), 1);  // with the room that is needed
  EXPECT_EQ(StoredCounters().at(1), 51U);
}

TEST_F(VglLogFlush, CountsThatAreAddedWrapAround) {
  PutLogFile(LogOf(u"2.0.0.0", {0, 0xFFFFFFFF}));
  Count(1);
  Count(1);
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  EXPECT_EQ(StoredCounters().at(1), 1U);
}

TEST_F(VglLogFlush, ALaterFileWithMoreEntriesKeepsThoseThatTheKindHas) {
  PutLogFile(LogOf(u"2.0.0.0", std::vector<std::uint32_t>(40, 6), 40));
  Count(0);
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  EXPECT_EQ(StoredCounters(),
            (std::vector<std::uint32_t>{7, 6, 6, 6, 6, 6, 6, 6, 6, 6, 6, 6, 6, 6}));
}

// What a library gives that tells of two entries.
std::int32_t ReadTwo(const char16_t*, const char16_t*, std::int32_t* count, std::uint32_t* buffer,
                     char16_t*, std::int32_t) {
  *count = 2;
  if (buffer == nullptr) return AL_ERROR_BUFFER_SHORT;
  buffer[0] = 30;
  buffer[1] = 40;
  return AL_SUCCESS;
}

TEST_F(VglLogFlush, ALibraryThatTellsOfFewerEntriesThanTheKindHasGivesZerosForTheRest) {
  PutLogFile(LogOf(u"2.0.0.0", {}));
  LogLibrary().RemoveExport("ReadLog");
  LogLibrary().Export<&ReadTwo>(99, "ReadLog");
  Count(1);
  Count(13);
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  EXPECT_EQ(StoredCounters(), LogOf(u"", {30, 41, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}).counters);
}

// Takes the model out of those that are counted, while the log is told of an old file.
std::int32_t DisableAndTellOld(const char16_t*, const char16_t*, std::int32_t, const std::uint32_t*,
                               const char16_t*, std::int32_t) {
  sim::RunningProcess().machine().files().WriteFile(u"C:\\Set\\MODEL.INI", "[M1]\n");
  g_VglLog.get().m_bKeyChecked = 0;
  return AL_ERROR_WRONG_VERSION_OLD;
}

TEST_F(VglLogFlush, AnOldFileWhoseLossCantBeCountedStays) {
  CVglLog& own = g_VglLog.get();
  PutLogFile(LogOf(u"0.9.0.0", {7, 50}));
  own.Increment(VGLLOG_TRAYICON, 1, kPrinter);
  LogLibrary().RemoveExport("IncrementMultiLog");
  LogLibrary().Export<&DisableAndTellOld>(99, "IncrementMultiLog");
  SwitchNestLogOn();
  EXPECT_EQ(own.WriteVglLogFile(), -97);
  const Texts lines = NestLines();
  EXPECT_EQ(lines.at(lines.size() - 2),
            "  _case AL_ERROR_WRONG_VERSION_OLD Increment() return error:\r");
  EXPECT_EQ(lines.back(), "  End WriteVglLogFile >nRet: =-97 \r");
  EXPECT_EQ(LogFile(), LogOf(u"0.9.0.0", {7, 50}));
}

}  // namespace
}  // namespace vgl
