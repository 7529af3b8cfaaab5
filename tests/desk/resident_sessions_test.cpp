// The sessions in which a person and other programs meet the agent, as vgldesk shows them.
#include <gtest/gtest.h>

#include "tests/desk/vgldesk_run.h"

namespace desk {
namespace {

using Lines = std::vector<std::string>;

constexpr char kStart[] =
    "start /P \"Studio 7200\" /D \"KAVRO Studio 7200\" /O \"USB001\" /M \"S7200\"\n";

// What the run helper, the invitation library and so on leave to be shown.
const std::string kStatus =
    "run helper: status window: printer \"Studio 7200\", port \"USB001\", model \"S7200\"";
const std::string kPreferences =
    "run helper: preferences window: printer \"Studio 7200\", port \"USB001\", model \"S7200\"";
const std::string kAsked = "invitation library: timer: \"Studio 7200\" \"KAVRO Studio 7200\"";
const std::string kGoodbye = "invitation library: close: \"Studio 7200\"";
const std::string kKeptFile = "temp folder: K_Q0001.tmp";
const std::string kRunValue =
    "Run \"Studio 7200\": \"C:\\Program Files\\KAVRO\\VGL3\\K_QD21TR.EXE\" /FU "
    "\"C:\\Users\\User\\AppData\\Local\\Temp\\K_Q0001.tmp\"";
const std::string kRecord =
    "record KVLTarget\\P0000000000000000: Name \"Studio 7200\", Setting 0, Timer 10, "
    "TrayIconEnable 1, TrayIconSelected ";

std::string Count(int counter, int times) {
  return "usage log VGL_TrayIcon_S72K004711.xml: counter " + std::to_string(counter) + " is " +
         std::to_string(times);
}

// Where the names of temporary files don't count.
const std::string kShownFile = WithoutTempNames(kKeptFile);
const std::string kShownRunValue = WithoutTempNames(kRunValue);

// The lines from the last one that holds `mark` on.
std::string Since(const std::string& mark, const std::string& out) {
  const std::size_t at = out.rfind(mark);
  return at == std::string::npos ? "" : out.substr(at);
}

TEST(ResidentSession, ShowsIconWindowsEndAndCounts) {
  const Outcome outcome = RunSession("resident");
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  const std::string pictures = "C:\\Windows\\System32\\spool\\drivers\\x64\\3\\K_S72BM.DLL";
  for (const std::string& part :
       {"icon added: \"Studio 7200\", icon 700 of " + pictures + "\n",
        std::string("with the parameters /P \"Studio 7200\" /O \"USB001\" /M \"S7200\"\n"),
        "icon modified: \"Studio 7200\", icon 701 of " + pictures + "\n",
        std::string("with the parameters /P \"Studio 7200\" /O \"USB001\" /M \"S7200\" /E\n")})
    EXPECT_TRUE(Holds(outcome.out, part)) << part;
  // 69 characters with the terminator.
  const Lines help = StartWithFile("K_S72MAN.EXE", "/HELP", 138);
  const Lines counts = {Count(1, 1), Count(2, 1), Count(3, 1)};
  EXPECT_EQ(ShownLines(WithoutTempNames(outcome.out)),
            Joined({// before logon
                    {kShownFile, kShownRunValue, kRecord + "0"},
                    // with the icon
                    {kAsked, kShownFile, kShownRunValue, kRecord + "0"},
                    // behind the visits of both windows and the help
                    {kStatus, kPreferences, kAsked},
                    help,
                    {kShownFile, kShownRunValue, kRecord + "1"},
                    counts,
                    // behind the printer's end: the record stays
                    {kStatus, kPreferences, kAsked, kGoodbye, kGoodbye},
                    help,
                    {kRecord + "1"},
                    counts}));
}

TEST(ResidentSession, TheAgentOfADeletedPrinterCleansUpAndEndsWithinThreeSeconds) {
  const Outcome outcome = RunSession("resident");
  ASSERT_TRUE(Holds(outcome.out, "4.600  script    deletes printer \"Studio 7200\"\n"));
  const std::string end = Since("deletes printer", outcome.out);
  EXPECT_TRUE(Holds(end,
                    "6.100  agent 1   deleted value "
                    "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Run\\Studio 7200\n"));
  EXPECT_TRUE(Holds(end,
                    "6.100  agent 1   deleted file "
                    "C:\\Users\\User\\AppData\\Local\\Temp\\K_Q0001.tmp\n"));
  EXPECT_TRUE(Holds(end, "6.100  agent 1   icon deleted\n"));
  EXPECT_TRUE(Holds(end, "6.100  agent 1   ended with code 0\n"));
  EXPECT_TRUE(Holds(end, "in the temp folder: nothing\n"));
}

TEST(ResidentSession, AnInstallerAtWorkMakesBothWindowsWaitAndAClickTakeThePrinterForGone) {
  const Outcome outcome = RunSession("installer");
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  const std::string busy =
      "message box \"Printer Status\": A printer driver is being installed or removed. Wait until "
      "this is done, then try again.";
  EXPECT_EQ(Behind("agent 1   message box \"", outcome.out).size(), 2U);
  EXPECT_EQ(Behind(busy, outcome.out), (Lines{"", ""}));
  EXPECT_TRUE(Holds(outcome.out, "3.100  agent 1   got WM_TIMER TMID_MASKCHECK\n"));
  EXPECT_EQ(
      ShownLines(outcome.out),
      (Lines{// after two busy boxes: nothing was started
             kAsked, kRecord + "0",
             // when the installer was done
             kStatus, kAsked, kRecord + "0",
             // the second agent, before the click
             kStatus, kAsked, kAsked, kKeptFile, kRunValue, kRecord + "0", Count(1, 1), Count(2, 1),
             // behind it; the second agent's count of its start goes with it
             kStatus, kAsked, kAsked, kGoodbye, kGoodbye, kRecord + "0", Count(1, 1),
             Count(2, 1)}));
}

TEST(ResidentSession, AMaskedPrintersAgentEndsAndStaysInTheRunKey) {
  const Outcome outcome = RunSession("mask");
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_TRUE(Holds(outcome.out, "1.500  script    sets VGLSetting of \"Studio 7200\" to 1\n"));
  EXPECT_TRUE(Holds(outcome.out, "3.100  agent 1   ended with code 0\n"));
  EXPECT_TRUE(Holds(outcome.out, "3.200  agent 2   ended with code 0\n"));
  EXPECT_FALSE(Holds(outcome.out, "agent 2   icon added"));
  EXPECT_FALSE(Holds(outcome.out, "deleted value"));
  const Lines left = {kAsked, kKeptFile, kRunValue, kRecord + "0", Count(1, 1)};
  Lines twice = left;
  twice.insert(twice.end(), left.begin(), left.end());
  EXPECT_EQ(ShownLines(outcome.out), twice);
  EXPECT_EQ(MapLines(outcome.out),
            (Lines{"VglV5MapFile_Ink 0: Studio 7200, agent 3", "VglV5MapFile_Ink 1: end"}));
}

TEST(ResidentSession, TheMouseOpensTheMenuAndTheQuitKeysEndTheAgent) {
  const Outcome outcome = RunSession("clicks");
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_TRUE(Holds(outcome.out, "0.700  script    clicks the icon of agent 1\n"));
  // A single click when the time for a second one has run out, a right click at once, and with the
  // keys held down not at all.
  EXPECT_TRUE(Holds(outcome.out, "1.200  agent 1   popup menu: "));
  EXPECT_TRUE(Holds(outcome.out, "1.400  agent 1   popup menu: "));
  EXPECT_EQ(Behind("popup menu: ", outcome.out).size(), 2U);
  EXPECT_EQ(ShownLines(outcome.out), (Lines{kStatus, kAsked, kRecord + "0"}));
  EXPECT_TRUE(Holds(Since("holds keys down", outcome.out), "agent 1   ended with code 0\n"));
}

TEST(ResidentSession, APortsAgentHasItsIconAndRecordAndIsGoneWithAClick) {
  const Outcome outcome = RunSession("port_only");
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_TRUE(Holds(outcome.out, "icon added: \"LPT2\", icon 702 of "));
  EXPECT_TRUE(Holds(outcome.out, "icon modified: \"LPT2\", icon 700 of "));
  const std::string port = "record KVNTarget\\P0000000000000000: Name \"LPT2\", TrayIconEnable 1, ";
  const std::string goodbye = "invitation library: close: \"LPT2\"";
  const std::string asked = "invitation library: timer: \"\" \"KAVRO Studio 7200\"";
  EXPECT_EQ(ShownLines(outcome.out),
            (Lines{asked, kRecord + "0", port + "TrayIconSelected 2", asked, goodbye, goodbye,
                   kRecord + "0", port + "TrayIconSelected 0"}));
}

TEST(ResidentSession, AClickReachesTheAgentWhoseIconItIs) {
  const Outcome outcome = RunSession("two_icons");
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(
      ShownLines(outcome.out),
      (Lines{kStatus,
             "run helper: status window: printer \"Second Studio\", port \"LPT1\", model "
             "\"S7200\"",
             kPreferences, kAsked,
             "invitation library: timer: \"Second Studio\" \"KAVRO Studio 7200\"", kRecord + "0",
             "record KVLTarget\\P0000000000000001: Name \"Second Studio\", TrayIconEnable 1, "
             "TrayIconSelected 1"}));
}

TEST(ResidentSession, WhatCantBeDoneFailsTheSession) {
  const struct {
    const char* commands;  // behind a start in line 1
    const char* error;
  } cases[] = {
      {"click", "line 2: agent 1 has no icon"},
      {"double-click", "line 2: agent 1 has no icon"},
      {"right-click", "line 2: agent 1 has no icon"},
      {"wait 200\nkill\nclick", "line 4: agent 1 has no icon"},
      {"wait 200\nchoose 901", "line 3: agent 1 shows no menu"},
      {"wait 200\ndismiss", "line 3: agent 1 shows no menu"},
      {"wait 200\nright-click\ndismiss\ndismiss", "line 5: agent 1 shows no menu"},
      {"wait 200\nright-click\nchoose 905",
       "line 4: agent 1 shows a menu in which entry 905 can't be chosen"},
      {"wait 200\nmenu", "line 3: agent 1 shows no menu"},
      {"kill\nawait-ready", "line 3: agent 1 has no window"},
      {"wait 200\nkill\nawait-ready", "line 4: agent 1 has no window"},
      {"wait 200\nanswer", "line 3: agent 1 shows no message box"},
      {"add-printer \"studio 7200\" a b", "line 2: there is a printer \"studio 7200\" already"},
      {"delete-printer Studio", "line 2: there is no printer \"Studio\""},
      {"mask Studio 1", "line 2: there is no printer \"Studio\""},
      {"set-data Studio PrinterAnswers 0", "line 2: there is no printer \"Studio\""},
      {"wait 200\nselect-icon Studio 1", "line 3: there is no record of \"Studio\""},
      {"select-icon \"Studio 7200\" 1", "line 2: the agent has no window"},
  };
  for (const auto& [commands, error] : cases) {
    const Outcome outcome = RunScript(kStart + std::string(commands) + "\n");
    EXPECT_EQ(outcome.code, 4) << commands;
    EXPECT_EQ(outcome.err, "vgldesk: " + std::string(error) + "\n");
  }
}

TEST(ResidentSession, KeysAreReleasedTogether) {
  const Outcome outcome =
      RunScript(std::string(kStart) +
                "wait 200\nhold ctrl shift\nhold space\nrelease\nright-click\ndismiss\nkill\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.code, 1);
}

TEST(ResidentSession, AnAgentIsReadyWhenItsStartIsDone) {
  const Outcome outcome =
      RunScript(std::string(kStart) + "await-ready\n" + "post WM_CLOSE\nawait-end 0\n");
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_TRUE(Holds(outcome.out, "0.100  script    posts WM_CLOSE to agent 1\n"));
}

TEST(ResidentSession, APictureIsNothingButALineHere) {
  const Outcome outcome = RunScript("picture the-icon\n");
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.out, "        0.000  script    picture the-icon (taken under Wine only)\n");
}

}  // namespace
}  // namespace desk
