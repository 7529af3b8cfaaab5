// The stand-in for the programs that entries of the menu start: what it makes of its command line.
#include "desk/started_program.h"

#include <gtest/gtest.h>

#include "platform/sim/machine.h"

namespace desk {
namespace {

constexpr char16_t kFile[] = u"C:\\Temp\\K_Q1.tmp";
constexpr char16_t kByFile[] = u"/FU \"C:\\Temp\\K_Q1.tmp\"";

class ProgramStandIn : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine, u"C:\\Drv\\K_X.EXE"};

  ProgramStandIn() { machine.files().MakeFolder(u"C:\\ProgramData\\KAVRO\\VGL3"); }
  ~ProgramStandIn() override { EXPECT_TRUE(inside.process().Ledger().empty()); }

  std::string Log() { return machine.files().ReadFile(kProgramsLog).value_or("none"); }
};

TEST_F(ProgramStandIn, WritesDownItsNameAndWhatStandsBehindItInTheCommandLine) {
  EXPECT_EQ(StartedProgramMain(u"\"Studio 7200\""), 0U);
  EXPECT_EQ(StartedProgramMain(u""), 0U);
  EXPECT_EQ(StartedProgramMain(u"/P \"\u05D0\" /X"), 0U);
  EXPECT_EQ(Log(), "K_X.EXE \"Studio 7200\"\nK_X.EXE\nK_X.EXE /P \"\xD7\x90\" /X\n");
}

TEST_F(ProgramStandIn, AParameterFileIsToldByItsSizeAndLinesAndRemoved) {
  // 13 characters and the terminator.
  machine.files().WriteUtf16(kFile, std::u16string(u"/A /B\n/P \"\u05D0\"\n") + u'\0');
  EXPECT_EQ(StartedProgramMain(kByFile), 0U);
  EXPECT_EQ(Log(),
            "K_X.EXE /FU \"C:\\Temp\\K_Q1.tmp\"\n"
            "  parameter file of 28 bytes:\n"
            "  /A /B\n"
            "  /P \"\xD7\x90\"\n");
  EXPECT_FALSE(machine.files().Exists(kFile));
}

TEST_F(ProgramStandIn, ALastLineWithoutItsEndCountsAndBlanksAndEmptyLinesStay) {
  machine.files().WriteUtf16(kFile, std::u16string(u" /A\n\n/B"));
  EXPECT_EQ(StartedProgramMain(kByFile), 0U);
  EXPECT_EQ(Log(),
            "K_X.EXE /FU \"C:\\Temp\\K_Q1.tmp\"\n"
            "  parameter file of 14 bytes:\n"
            "   /A\n"
            "  \n"
            "  /B\n");
}

TEST_F(ProgramStandIn, TheTextEndsAtItsTerminatorAndTheSizeTellsWhatIsBehind) {
  machine.files().WriteUtf16(kFile, std::u16string(u"/A\0/B\n", 6));
  EXPECT_EQ(StartedProgramMain(kByFile), 0U);
  EXPECT_EQ(Log(),
            "K_X.EXE /FU \"C:\\Temp\\K_Q1.tmp\"\n"
            "  parameter file of 12 bytes:\n"
            "  /A\n");
}

TEST_F(ProgramStandIn, AnEmptyFileHasNoLines) {
  machine.files().WriteFile(kFile, "");
  EXPECT_EQ(StartedProgramMain(kByFile), 0U);
  EXPECT_EQ(Log(), "K_X.EXE /FU \"C:\\Temp\\K_Q1.tmp\"\n  parameter file of 0 bytes:\n");
  EXPECT_FALSE(machine.files().Exists(kFile));
}

TEST_F(ProgramStandIn, AFileThatCantBeReadIsTold) {
  EXPECT_EQ(StartedProgramMain(kByFile), 1U);
  EXPECT_EQ(Log(), "K_X.EXE /FU \"C:\\Temp\\K_Q1.tmp\"\n  no parameter file\n");
}

TEST_F(ProgramStandIn, WithoutTheSuitesFolderNothingIsWrittenAndTheFileStillGoes) {
  machine.files().Remove(u"C:\\ProgramData\\KAVRO");
  machine.files().WriteFile(kFile, "");
  EXPECT_EQ(StartedProgramMain(kByFile), 2U);
  EXPECT_EQ(Log(), "none");
  EXPECT_FALSE(machine.files().Exists(kFile));
}

}  // namespace
}  // namespace desk
