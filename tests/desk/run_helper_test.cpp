// The stand-in for the run helper: what it makes of the command lines that it is started with.
#include "desk/run_helper.h"

#include <gtest/gtest.h>

#include "platform/sim/machine.h"

namespace desk {
namespace {

class RunHelperStandIn : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};

  RunHelperStandIn() { machine.files().MakeFolder(u"C:\\ProgramData\\KAVRO\\VGL3"); }

  // Runs it on a parameter file with that text.
  std::uint32_t Run(std::u16string_view text) {
    machine.files().WriteUtf16(u"C:\\Temp\\K_Q1.tmp", std::u16string(text) + u'\0');
    return RunHelperMain(u"/FU \"C:\\Temp\\K_Q1.tmp\"");
  }
  std::string Log() { return machine.files().ReadFile(kRunHelperLog).value_or("none"); }
};

TEST_F(RunHelperStandIn, WritesDownPrinterPortAndModelAndRemovesTheFile) {
  EXPECT_EQ(Run(u"/P11 \"Studio 7200\"\n/O6 \"USB001\"\n/M5 \"S7200\"\n"), 0U);
  EXPECT_EQ(Log(), "status window: printer \"Studio 7200\", port \"USB001\", model \"S7200\"\n");
  EXPECT_FALSE(machine.files().Exists(u"C:\\Temp\\K_Q1.tmp"));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(RunHelperStandIn, TheOptionEAsksForThePreferencesWindow) {
  EXPECT_EQ(Run(u"/P1 \"A\"\n/O1 \"B\"\n/M1 \"C\"\n/E"), 0U);
  EXPECT_EQ(Log(), "preferences window: printer \"A\", port \"B\", model \"C\"\n");
}

TEST_F(RunHelperStandIn, EachStartAddsALine) {
  Run(u"/P1 \"A\"\n/O1 \"B\"\n/M1 \"C\"\n");
  Run(u"/P1 \"D\"\n/O1 \"E\"\n/M1 \"F\"\n/E");
  EXPECT_EQ(Log(),
            "status window: printer \"A\", port \"B\", model \"C\"\n"
            "preferences window: printer \"D\", port \"E\", model \"F\"\n");
}

TEST_F(RunHelperStandIn, NamesComeWholeByTheirLengths) {
  EXPECT_EQ(Run(u"/P8 \"A \"/E\" B\"\n/O0 \"\"\n/M2 \"\u05D0\u05D1\"\n"), 0U);
  EXPECT_EQ(Log(),
            "status window: printer \"A \"/E\" B\", port \"\", model \"\xD7\x90\xD7\x91\"\n");
}

// Else a start without a port would look like a good one.
TEST_F(RunHelperStandIn, WhatIsntGivenIsntLookedUp) {
  machine.spooler().AddPrinter({.name = u"A", .port = u"USB001", .driver = u"D"});
  EXPECT_EQ(Run(u"/P1 \"A\"\n/O0 \"\"\n/M0 \"\"\n"), 0U);
  EXPECT_EQ(Log(), "status window: printer \"A\", port \"\", model \"\"\n");
}

TEST_F(RunHelperStandIn, AStartWithoutAFileThatCanBeReadIsToldAsItCame) {
  EXPECT_EQ(RunHelperMain(u"/FU \"C:\\Temp\\gone.tmp\""), 1U);
  EXPECT_EQ(RunHelperMain(u"/P \"A\""), 1U);
  EXPECT_EQ(RunHelperMain(u""), 1U);
  EXPECT_EQ(Log(),
            "no parameter file: /FU \"C:\\Temp\\gone.tmp\"\n"
            "no parameter file: /P \"A\"\n"
            "no parameter file: \n");
}

TEST_F(RunHelperStandIn, WithoutTheSuitesFolderNothingIsWrittenAndTheFileStillGoes) {
  machine.files().Remove(u"C:\\ProgramData\\KAVRO");
  EXPECT_EQ(Run(u"/P1 \"A\"\n"), 2U);
  EXPECT_EQ(Log(), "none");
  EXPECT_FALSE(machine.files().Exists(u"C:\\Temp\\K_Q1.tmp"));
}

}  // namespace
}  // namespace desk
