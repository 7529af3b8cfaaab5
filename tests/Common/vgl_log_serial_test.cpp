// The serial number, and with it the name of the log's file.
#include <algorithm>

#include "Common/printer_library_exports.h"
#include "tests/support/vgl_log_fixture.h"

namespace vgl {
namespace {

using namespace platform;
using Texts = std::vector<std::string>;
using Calls = std::vector<desk::PrinterLibrary::SerialCall>;

class VglLogSerial : public VglLogTest {
 protected:
  VglLogSerial() { Count(1); }

  // The lines of InitializeLogFile in a write, its scope's own line first.
  Texts LinesOfWrite() {
    SwitchNestLogOn();
    log.WriteVglLogFile();
    Texts lines;
    for (const std::string& line : NestLines())
      if (line.starts_with("    InitializeLogFile()") || line == "  InitializeLogFile()\r")
        lines.push_back(line);
    return lines;
  }
};

TEST_F(VglLogSerial, ANumberThatIsKnownIsAskedForInTwoCalls) {
  PrinterLibrary().serialIsCached = true;
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  EXPECT_EQ(PrinterLibrary().serialCalls,
            (Calls{{u"Studio", false, 0, 1}, {u"Studio", true, 4, 1}}));
  EXPECT_EQ(log.m_csSerialID, u"K12");
  EXPECT_EQ(log.m_csLogFileName, u"VGL_TrayIcon_K12.xml");
}

TEST_F(VglLogSerial, OneThatIsntKnownIsAskedForInThree) {
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  EXPECT_EQ(PrinterLibrary().serialCalls,
            (Calls{{u"Studio", false, 0, 1}, {u"Studio", false, 0, 0}, {u"Studio", true, 4, 0}}));
}

TEST_F(VglLogSerial, ItIsAskedForAtEachWrite) {
  log.WriteVglLogFile();
  PrinterLibrary().serial = "K13";
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  EXPECT_EQ(log.m_csLogFileName, u"VGL_TrayIcon_K13.xml");
}

TEST_F(VglLogSerial, TheTextsOfAGoodNumber) {
  SwitchNestLogOn();
  log.WriteVglLogFile();
  const Texts lines = NestLines();
  const Texts expected = {
      "WriteVglLogFile()\r",
      "  InitializeLogFile()\r",
      "    PrGetSerialID2Private()\r",
      "      Catch()End <m_nLogKind> 3\r",
      "      Catch()End <bEx> -65\r",
      "      PrGetSerialID2Private()Exit In <nRet> -65\r",
      "    InitializeLogFile() PrGetSerialID2Private Cash End<nRet> -65\r",
      "    PrGetSerialID2Private()\r",
      "      Catch()End <m_nLogKind> 3\r",
      "      Catch()End <bEx> -59\r",
      "      PrGetSerialID2Private()Exit In <nRet> -59\r",
      "    InitializeLogFile() PrGetSerialID2Private Cash End<nRet> -59\r",
      "    PrGetSerialID2Private()\r",
      "      PrGetSerialID2Private()Exit In <nRet> 0\r",
      "    InitializeLogFile() PrGetSerialID2Private NonCash End<m_nLogKind> 3\r",
      "    InitializeLogFile() PrGetSerialID2Private NonCash TadashikuToreta End<nRet> 0\r",
      "    InitializeLogFile() m_csLogFileName Sakusei start<m_nLogKind> 3\r",
      "    InitializeLogFile() m_csLogFileName Sakusei End<m_csLogFileName> "
      "VGL_TrayIcon_K12.xml\r",
      "    InitializeLogFile() End 0\r",
      "  CheckEmberDatKey()\r",
  };
  ASSERT_GE(lines.size(), expected.size());
  EXPECT_EQ(Texts(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(expected.size())),
            expected);
}

TEST_F(VglLogSerial, AFailureBehindTheSizeEndsTheWrite) {
  PrinterLibrary().serialIsCached = true;
  PrinterLibrary().serialResults = {kPrSerialNeedsRoom, -7};
  EXPECT_EQ(LinesOfWrite(),
            (Texts{"  InitializeLogFile()\r",
                   "    InitializeLogFile() PrGetSerialID2Private Cash End<nRet> -59\r",
                   "    InitializeLogFile() PrGetSerialID2Private NonCash End<m_nLogKind> 3\r",
                   "    InitializeLogFile() PrGetSerialID2Private NonCash Modorichi End<nRet> "
                   "-7\r"}));
  EXPECT_EQ(LogLibrary().Calls("IncrementMultiLog"), 0U);
}

// --- The audit

struct SerialRow {
  const char* name;
  std::string serial;
  bool isGood;
};

class VglLogAudit : public VglLogTest, public testing::WithParamInterface<SerialRow> {};

TEST_P(VglLogAudit, TakesDigitsAndCapitalLettersAlone) {
  PrinterLibrary().serial = GetParam().serial;
  Count(1);
  SwitchNestLogOn();
  const std::int32_t result = log.WriteVglLogFile();
  const Texts lines = NestLines();
  const bool refused =
      std::find(lines.begin(), lines.end(),
                "    InitializeLogFile() <FATAL_SERIALID_UNAVAILABLE:SerialID Audit check "
                "error>\r") != lines.end();
  EXPECT_EQ(refused, !GetParam().isGood);
  if (GetParam().isGood) {
    EXPECT_EQ(result, 1);
    EXPECT_EQ(log.m_csSerialID, std::u16string(GetParam().serial.begin(), GetParam().serial.end()));
  } else {
    EXPECT_EQ(result, -99);  // of the -98 that ended the step
    EXPECT_EQ(lines.back(), "  WriteVglLogFile() InitializeLogFile() return error()\r");
    EXPECT_EQ(log.m_csSerialID, u"");
    EXPECT_EQ(log.m_csLogFileName, u"");
  }
  EXPECT_EQ(Counter(1), 1U);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, VglLogAudit,
    testing::Values(SerialRow{"Zero", "0", true}, SerialRow{"Nine", "9", true},
                    SerialRow{"A", "A", true}, SerialRow{"Z", "Z", true},
                    SerialRow{"Mixed", "0A9Z5K", true}, SerialRow{"LowerCase", "K1a2", false},
                    SerialRow{"LowerCaseAtTheEnd", "K12z", false},
                    SerialRow{"BeforeZero", "K/", false}, SerialRow{"BehindNine", "K:", false},
                    SerialRow{"BeforeA", "@1", false}, SerialRow{"BehindZ", "[1", false},
                    SerialRow{"Blank", "K 1", false}, SerialRow{"Minus", "K-1", false},
                    SerialRow{"Umlaut", "K\xC4", false},
                    SerialRow{"Zeroed",
                              std::string("K\0"
                                          "1",
                                          3),
                              false},
                    SerialRow{"Percent", "%s", false}, SerialRow{"Backslash", "..\\X", false}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(VglLogSerial, AnEmptyNumberIsNone) {
  PrinterLibrary().serial = "";
  EXPECT_EQ(LinesOfWrite().back(), "    InitializeLogFile() <FATAL_SERIALID_UNAVAILABLE>\r");
  EXPECT_EQ(LogLibrary().Calls("IncrementMultiLog"), 0U);
}

TEST_F(VglLogSerial, ANumberOfAThousandCharactersIsNoNameForAFile) {
  PrinterLibrary().serial = std::string(1000, 'K');
  EXPECT_EQ(log.WriteVglLogFile(), 0);  // the library isn't available for it
  EXPECT_EQ(log.m_csLogFileName, u"VGL_TrayIcon_" + std::u16string(1000, u'K') + u".xml");
  EXPECT_EQ(Counter(1), 1U);
}

TEST_F(VglLogSerial, ALowerCaseLetterCostsTheCountsOfThatTime) {
  PrinterLibrary().serial = "k12";
  EXPECT_EQ(log.WriteVglLogFile(), -99);
  log.Clear();
  PrinterLibrary().serial = "K12";
  Count(2);
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  EXPECT_EQ(StoredCounters(), LogOf(u"", {0, 0, 1}).counters);
}

// --- What is left of an earlier number

TEST_F(VglLogSerial, ANumberOfAnEarlierWriteSurvivesAFailedFetch) {
  log.WriteVglLogFile();
  PrinterLibrary().printerAnswers = false;
  EXPECT_EQ(log.WriteVglLogFile(), 0);
  EXPECT_EQ(StoredCounters().at(1), 2U);
  machine.files().Remove(kPrinterLibrary);
  EXPECT_EQ(log.WriteVglLogFile(), 0);
  EXPECT_EQ(StoredCounters().at(1), 3U);
}

TEST_F(VglLogSerial, ItIsOfNoUseWhereTheNewOneIsBad) {
  log.WriteVglLogFile();
  PrinterLibrary().serial = "k12";
  EXPECT_EQ(log.WriteVglLogFile(), -99);
  EXPECT_EQ(log.m_csSerialID, u"K12");
  EXPECT_EQ(StoredCounters().at(1), 1U);
}

TEST_F(VglLogSerial, AnEmptyNewNumberTakesItsPlace) {
  log.WriteVglLogFile();
  PrinterLibrary().serial = "";
  EXPECT_EQ(log.WriteVglLogFile(), -99);
  EXPECT_EQ(log.m_csSerialID, u"");
}

TEST_F(VglLogSerial, ClearForgetsIt) {
  log.WriteVglLogFile();
  log.Clear();
  Count(1);
  PrinterLibrary().printerAnswers = false;
  EXPECT_EQ(log.WriteVglLogFile(), -99);
}

// --- Answers of the library outside its contract

TEST_F(VglLogSerial, AnAnswerToTheFirstQuestionThatTellsNoSizeGivesNoNumber) {
  for (const std::int32_t answer : {0, 1, -1, -58, -60, -99}) {
    PrinterLibrary().serialResults = {answer};
    EXPECT_EQ(LinesOfWrite(),
              (Texts{"  InitializeLogFile()\r",
                     "    InitializeLogFile() PrGetSerialID2Private Cash End<nRet> " +
                         std::to_string(answer) + "\r",
                     "    InitializeLogFile() <FATAL_SERIALID_UNAVAILABLE>\r"}));
  }
}

TEST_F(VglLogSerial, AThirdMinus65EndsIt) {
  PrinterLibrary().serialResults = {kPrSerialNotCached, kPrSerialNotCached};
  EXPECT_EQ(log.WriteVglLogFile(), -99);
  EXPECT_EQ(PrinterLibrary().serialCalls.size(), 2U);
}

// A library whose answers a test sets.
struct OddSerial {
  std::int32_t size = 0;          // told with -59
  std::string text;               // written as it is, without a terminator
  std::int32_t sizeBehind = 0;    // told with the text
  std::int32_t result = 0;        // given with the text
  std::int32_t sizeThatCame = 0;  // with the buffer
};

std::int32_t GiveOddSerial(const char16_t*, char* buffer, std::int32_t* size, std::int32_t*,
                           std::int32_t) {
  auto& odd = sim::RunningProcess().machine().libraries().State<OddSerial>();
  if (buffer == nullptr) {
    *size = odd.size;
    return kPrSerialNeedsRoom;
  }
  odd.sizeThatCame = *size;
  odd.text.copy(buffer, odd.text.size());
  *size = odd.sizeBehind;
  return odd.result;
}

struct OddRow {
  const char* name;
  OddSerial odd;
  std::u16string serial;  // empty: it is refused
};

class VglLogOddSerial : public VglLogTest, public testing::WithParamInterface<OddRow> {};

TEST_P(VglLogOddSerial, DoesNoHarm) {
  machine.libraries().At(kPrinterLibrary).RemoveExport(kPrGetSerialID2);
  machine.libraries().At(kPrinterLibrary).Export<&GiveOddSerial>(99, kPrGetSerialID2);
  machine.libraries().State<OddSerial>() = GetParam().odd;
  Count(1);
  EXPECT_EQ(log.WriteVglLogFile(), GetParam().serial.empty() ? -99 : 1);
  EXPECT_EQ(log.m_csSerialID, GetParam().serial);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Answers, VglLogOddSerial,
    testing::Values(
        OddRow{"NoRoom", {.size = 0}, u""}, OddRow{"NegativeRoom", {.size = -1}, u""},
        OddRow{"WithoutATerminator", {.size = 3, .text = "K12", .sizeBehind = 3}, u"K12"},
        // The last byte of the room isn't looked at: the terminator belongs there.
        OddRow{
            "LowerCaseInPlaceOfTheTerminator", {.size = 3, .text = "K1a", .sizeBehind = 3}, u"K1a"},
        OddRow{"MoreRoomThanIsUsed", {.size = 8, .text = "K12", .sizeBehind = 8}, u""},
        OddRow{
            "MoreRoomAndTheSizeOfWhatIsUsed", {.size = 8, .text = "K12", .sizeBehind = 4}, u"K12"},
        OddRow{"ASizeBeyondTheRoom", {.size = 4, .text = "K12", .sizeBehind = 4000}, u""},
        OddRow{"ASizeBeyondFullRoom", {.size = 4, .text = "K123", .sizeBehind = 4000}, u""},
        OddRow{"ANegativeSize", {.size = 4, .text = "k12", .sizeBehind = -5}, u"k12"},
        OddRow{
            "APositiveResult", {.size = 4, .text = "K12", .sizeBehind = 4, .result = 9}, u"K12"}),
    [](const auto& test) { return std::string(test.param.name); });

// --- What is missing on the way

TEST_F(VglLogSerial, WithoutAPrinterLibraryThereIsNoNumber) {
  machine.files().Remove(kPrinterLibrary);
  EXPECT_EQ(LinesOfWrite().at(1),
            "    InitializeLogFile() PrGetSerialID2Private Cash End<nRet> -99\r");
}

TEST_F(VglLogSerial, NorWithoutItsExport) {
  machine.libraries().At(kPrinterLibrary).RemoveExport(kPrGetSerialID2);
  EXPECT_EQ(LinesOfWrite().at(1),
            "    InitializeLogFile() PrGetSerialID2Private Cash End<nRet> -99\r");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(VglLogSerial, AProfileWithoutAPrinterLibraryHasItsText) {
  machine.files().WriteFile(u"C:\\Set\\MODEL.INI", "[M1]\nVGL_LOG=1\n");
  SwitchNestLogOn();
  log.WriteVglLogFile();
  const Texts lines = NestLines();
  EXPECT_EQ(Texts(lines.begin() + 2, lines.begin() + 7),
            (Texts{"    PrGetSerialID2Private()\r", "      Err GetProcPath() -99",
                   "      Catch()End <m_nLogKind> 3\r", "      Catch()End <bEx> -99\r",
                   "      PrGetSerialID2Private()Exit In <nRet> -99\r"}));
}

TEST_F(VglLogSerial, APrinterThatIsGoneHasItsText) {
  machine.spooler().RemovePrinter(kPrinter);
  SwitchNestLogOn();
  log.WriteVglLogFile();
  EXPECT_EQ(NestLines().at(3), "      Err GetDriverName() -99");
}

TEST_F(VglLogSerial, ANumberThatCantBeConvertedIsNone) {
  for (const std::uint64_t after : {0U, 1U}) {
    inside.process().FailNext("MultiByteToWideChar", ERROR_NOT_ENOUGH_MEMORY, after);
    EXPECT_EQ(log.WriteVglLogFile(), -99);
    EXPECT_EQ(log.m_csSerialID, u"");
  }
}

TEST_F(VglLogSerial, WithoutAPrinterNameTheProcessEnds) {
  log.m_csPrinterName.clear();
  EXPECT_TRUE(inside.EndsProcess([&] { log.WriteVglLogFile(); }));
  EXPECT_EQ(inside.process().exitCode(), 3U);
}

TEST_F(VglLogSerial, WithAKindThatIsNoneTheProcessEnds) {
  log.m_nLogKind = 9;
  EXPECT_TRUE(inside.EndsProcess([&] { log.WriteVglLogFile(); }));
}

}  // namespace
}  // namespace vgl
