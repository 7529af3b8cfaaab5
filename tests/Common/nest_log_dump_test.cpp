#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "Common/nest_log.h"
#include "platform/owned.h"
#include "platform/sim/machine.h"
#include "tests/support/file_holder.h"

namespace vgl {
namespace {

constexpr char16_t kLog[] = u"C:\\ProgramData\\KAVRO\\VGL3\\VGL4.LOG";
constexpr char16_t kDump[] = u"C:\\Binary Status Reply:.bin";
constexpr char16_t kTable[] = u"C:\\table.txt";

// What every table begins with, below its title.
constexpr char16_t kHead[] =
    u"Addr     : 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F : 0123456789ABCDEF\n"
    u"---------+-------------------------------------------------+-----------------\n";

// The mark and the text, low byte first.
std::string Marked(const std::u16string& text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t character : text) {
    bytes += static_cast<char>(character & 0xFF);
    bytes += static_cast<char>(character >> 8);
  }
  return bytes;
}

class Dump : public testing::Test {
 protected:
  Dump() {
    machine.files().MakeFolder(u"C:\\ProgramData\\KAVRO\\VGL3");
    SetNestLogEnabled(1);
    scope.emplace(nullptr);
    machine.files().Remove(kLog);  // the scope's own lines
  }

  std::string File(const char16_t* path) {
    return machine.files().ReadFile(path).value_or("(no file)");
  }
  std::string TableOf(const std::string& data) {
    CNestLog::DumpHexTable(kTable, data.data(), static_cast<std::int32_t>(data.size()), nullptr);
    return File(kTable);
  }

  sim::Machine machine;
  sim::Inside inside{machine};
  std::optional<CNestLog> scope;
};

using StatusDump = Dump;
using HexTable = Dump;

TEST_F(StatusDump, Mode1IsOneLineOfTheLog) {
  const std::array<std::uint8_t, 3> data{0x00, 0x4B, 0xFF};
  scope->PrintBinaryStatus(data.data(), 3, 1);
  EXPECT_EQ(File(kLog), Marked(u"1000;2000;   10:00.000;   Binary Status Reply:00 4B FF\n"));
}

TEST_F(StatusDump, OneByteHasNoBlankAroundIt) {
  scope->PrintBinaryStatus("\x25", 1, 1);
  EXPECT_EQ(File(kLog), Marked(u"1000;2000;   10:00.000;   Binary Status Reply:25\n"));
}

TEST_F(StatusDump, ALongReplyStaysOneLine) {
  const std::string data(300, '\xAB');
  std::u16string expected = u"1000;2000;   10:00.000;   Binary Status Reply:";
  for (int i = 0; i < 299; ++i) expected += u"AB ";
  scope->PrintBinaryStatus(data.data(), 300, 1);
  EXPECT_EQ(File(kLog), Marked(expected + u"AB\n"));
}

TEST_F(StatusDump, OtherModesAppendTheBytesToAFileWithAColonInItsName) {
  const std::string data("\x00\x0A\x1A\xFF", 4);
  scope->PrintBinaryStatus(data.data(), 4, 2);
  scope->PrintBinaryStatus(data.data(), 4, 0);
  EXPECT_EQ(File(kDump), data + data);
  EXPECT_EQ(File(kLog), "(no file)");
}

TEST_F(StatusDump, ALengthOf0WritesToNeitherFile) {
  scope->PrintBinaryStatus("a", 0, 1);
  scope->PrintBinaryStatus("a", 0, 2);
  EXPECT_EQ(File(kLog), "(no file)");
  EXPECT_EQ(File(kDump), "(no file)");
  scope->PrintBinaryStatus("a", 1, 1);
  scope->PrintBinaryStatus("a", 1, 2);
  EXPECT_EQ(File(kLog), Marked(u"1000;2000;   10:00.000;   Binary Status Reply:61\n"));
  EXPECT_EQ(File(kDump), "a");
}

TEST_F(StatusDump, TheBytesAreAppendedWhileAnotherProcessHasTheFileOpenForSharedWriting) {
  machine.files().WriteFile(kDump, "x");
  const sim::Process& other = HoldOpenForSharedWriting(machine, kDump);
  scope->PrintBinaryStatus("ab", 2, 2);
  EXPECT_FALSE(other.ended());
  EXPECT_EQ(File(kDump), "xab");
}

TEST(StatusDumpTurns, TwoProcessesThatDumpAtOnceLoseNoByte) {
  // Every seed lets the processes take turns differently, between any two calls.
  for (std::uint64_t seed = 1; seed <= 50; ++seed) {
    sim::Machine machine(seed);
    const auto dumping = [](const char* data) {
      return [data](const char16_t*) {
        SetNestLogEnabled(1);
        const CNestLog scope(nullptr);
        for (int i = 0; i < 3; ++i) scope.PrintBinaryStatus(data, 2, 2);
        return 0u;
      };
    };
    machine.StartProcess(u"C:\\a.exe", u"", dumping("aA"));
    machine.StartProcess(u"C:\\b.exe", u"", dumping("bB"));
    machine.Settle();
    const std::string dump = machine.files().ReadFile(kDump).value_or("(no file)");
    int first = 0;
    int second = 0;
    for (std::size_t at = 0; at < dump.size(); at += 2) {
      first += dump.substr(at, 2) == "aA" ? 1 : 0;
      second += dump.substr(at, 2) == "bB" ? 1 : 0;
    }
    EXPECT_EQ(first, 3) << "seed " << seed << ": " << dump;
    EXPECT_EQ(second, 3) << "seed " << seed << ": " << dump;
    EXPECT_EQ(dump.size(), 12u) << "seed " << seed;
  }
}

TEST_F(StatusDump, NothingIsDoneWithoutBytesOrWithTheLogOff) {
  const auto calls = inside.process().calls();
  for (const std::int32_t mode : {1, 2}) {
    scope->PrintBinaryStatus("a", 0, mode);
    scope->PrintBinaryStatus("a", -1, mode);
    scope->PrintBinaryStatus(nullptr, 4, mode);
    SetNestLogEnabled(0);
    scope->PrintBinaryStatus("a", 1, mode);
    SetNestLogEnabled(1);
  }
  EXPECT_EQ(inside.process().calls(), calls);
}

TEST_F(HexTable, WithoutBytesIsItsHeadAndTheClosingNewline) {
  EXPECT_EQ(TableOf(""), Marked(std::u16string(u"\n") + kHead + u"\n"));
}

TEST_F(HexTable, TheTitleStandsBehindTheFirstNewlineAsItIs) {
  CNestLog::DumpHexTable(kTable, "", 0, u"100%% status\n");
  EXPECT_EQ(File(kTable), Marked(std::u16string(u"\n100%% status\n") + kHead + u"\n"));
}

TEST_F(HexTable, AFullRowShowsSixteenBytes) {
  EXPECT_EQ(TableOf("0123456789ABCDEF"),
            Marked(std::u16string(u"\n") + kHead +
                   u"00000000 : 30 31 32 33 34 35 36 37 38 39 41 42 43 44 45 46 : "
                   u"0123456789ABCDEF\n\n"));
}

TEST_F(HexTable, TheSeventeenthByteHasARowWithFifteenBlankFields) {
  EXPECT_EQ(TableOf("0123456789ABCDEFG"),
            Marked(std::u16string(u"\n") + kHead +
                   u"00000000 : 30 31 32 33 34 35 36 37 38 39 41 42 43 44 45 46 : "
                   u"0123456789ABCDEF\n"
                   u"00000010 : 47                                              : G\n\n"));
}

TEST_F(HexTable, CharactersThatDontPrintAreDots) {
  EXPECT_EQ(TableOf(std::string("\x00\x0A\x1F\x20\x7E\x7F\x80\xFF", 8)),
            Marked(std::u16string(u"\n") + kHead +
                   u"00000000 : 00 0A 1F 20 7E 7F 80 FF                         : ... ~...\n\n"));
}

TEST_F(HexTable, TwoPercentSignsOfTheDataComeOutAsOne) {
  EXPECT_EQ(TableOf("50%% off"),
            Marked(std::u16string(u"\n") + kHead +
                   u"00000000 : 35 30 25 25 20 6F 66 66                         : 50% off\n\n"));
}

TEST_F(HexTable, ADirectiveInTheDataStandsAsItIsForWantOfAnArgument) {
  EXPECT_EQ(TableOf("%s%d%n%08X%"),
            Marked(std::u16string(u"\n") + kHead +
                   u"00000000 : 25 73 25 64 25 6E 25 30 38 58 25                : "
                   u"%s%d%n%08X%\n\n"));
}

TEST_F(HexTable, PercentSignsOfTwoRowsDontMeet) {
  EXPECT_EQ(TableOf("...............%%"),
            Marked(std::u16string(u"\n") + kHead +
                   u"00000000 : 2E 2E 2E 2E 2E 2E 2E 2E 2E 2E 2E 2E 2E 2E 2E 25 : "
                   u"...............%\n"
                   u"00000010 : 25                                              : %\n\n"));
}

TEST_F(HexTable, ASecondTableGoesBehindTheFirstWithoutASecondMark) {
  TableOf("");
  EXPECT_EQ(TableOf(""), Marked(std::u16string(u"\n") + kHead + u"\n" + u"\n" + kHead + u"\n"));
}

TEST_F(HexTable, TheOffsetHasEightDigits) {
  const std::string data(0x1001, 'x');
  const std::string table = TableOf(data);
  const std::string last =
      Marked(u"00001000 : 78                                              : x\n\n").substr(2);
  ASSERT_GT(table.size(), last.size());
  EXPECT_EQ(table.substr(table.size() - last.size()), last);
}

TEST_F(HexTable, NothingIsWrittenWithoutDataOrWithTheLogOff) {
  const auto calls = inside.process().calls();
  CNestLog::DumpHexTable(kTable, nullptr, 0, u"t");
  CNestLog::DumpHexTable(kTable, nullptr, 4, u"t");
  CNestLog::DumpHexTable(kTable, "a", -1, u"t");
  SetNestLogEnabled(0);
  CNestLog::DumpHexTable(kTable, "a", 1, u"t");
  EXPECT_EQ(inside.process().calls(), calls);
  EXPECT_EQ(File(kTable), "(no file)");
}

TEST_F(HexTable, TheLogItselfGetsNoLine) {
  TableOf("a");
  EXPECT_EQ(File(kLog), "(no file)");
}

}  // namespace
}  // namespace vgl
