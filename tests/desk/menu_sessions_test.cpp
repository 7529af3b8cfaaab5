// The sessions that go from the menu to what its entries start, and those of what comes without
// being called for.
#include <gtest/gtest.h>

#include "tests/desk/vgldesk_run.h"

namespace desk {
namespace {

using Lines = std::vector<std::string>;

const std::string kAsked = "invitation library: timer: \"Studio 7200\" \"KAVRO Studio 7200\"";
const std::string kAllowed =
    "invitation library: allow: \"Studio 7200\" \"KAVRO Studio 7200\" \"S7200\" 0 -1 1";
const std::string kRecord =
    "record KVLTarget\\P0000000000000000: Name \"Studio 7200\", Setting 0, Timer 10, "
    "TrayIconEnable 1, TrayIconSelected 0";
const std::string kKickedRecord =
    "record KVLTarget\\P0000000000000000: LastKickNetPilot (8 bytes), Name \"Studio 7200\", "
    "Setting 0, Timer 10, TrayIconEnable 1, TrayIconSelected 0";
const Lines kStudioInMap = {"VglV5MapFile_Ink 0: Studio 7200, agent 1", "VglV5MapFile_Ink 1: end"};

std::string Utility(const std::string& what) { return "utility library: " + what; }

Lines Counts(const std::vector<std::pair<int, int>>& counts) {
  Lines lines;
  for (const auto& [counter, times] : counts)
    lines.push_back("usage log VGL_TrayIcon_S72K004711.xml: counter " + std::to_string(counter) +
                    " is " + std::to_string(times));
  return lines;
}

TEST(MenuSession, TheMenuHasTheSetsEntriesInTheirGroups) {
  const Outcome outcome = RunSession("menu");
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  const Lines menu = {"900 Studio 7200 (default)",
                      "901 Monitoring Preferences...",
                      "----",
                      "920 Nozzle Check",
                      "921 Head Cleaning",
                      "922 Print Head Alignment",
                      "923 Automatic Cleaning",
                      "----",
                      "925 Order Ink",
                      "926 Change Ink",
                      "----",
                      "930 Driver Update",
                      "931 Software Update",
                      "932 Web Guide",
                      "----",
                      "935 Language",
                      "936 News",
                      "937 Offers",
                      "938 Help",
                      "939 All Settings",
                      "950 Support on the Web",
                      "951 Index of the Manual",
                      "952 About the Manual",
                      "953 Manual"};
  EXPECT_EQ(MenuLines(outcome.out), Joined({menu, menu}));
}

TEST(MenuSession, EachFormOfCommandStartsItsProgramWithWhatItIsToGet) {
  const Outcome outcome = RunSession("menu");
  const Lines first = {"program: K_S72LM.EXE \"Studio 7200\"",
                       "program: K_S72IC.EXE /P \"Studio 7200\"", "program: K_DRVUP.EXE /CHECK"};
  // A parameter file has 64 characters beside the entry's own options, with the terminator.
  EXPECT_EQ(ShownLines(WithoutTempNames(outcome.out)),
            Joined({{kAsked},
                    first,
                    {kRecord},
                    // at the end
                    {kAsked},
                    first,
                    {"program: K_NPILOT.EXE /RUN /MANUAL /P \"Studio 7200\"",
                     "program: K_NPILOT.EXE /SETUP /P \"Studio 7200\""},
                    StartWithFile("K_S72DEP.EXE", "/DP /Q", 140),
                    {"program: K_S72MAN.EXE"},
                    StartWithFile("K_S72DEP.EXE", "/MENU", 138),
                    StartWithFile("K_S72MAN.EXE", "/HELP", 138),
                    {"program: K_S72MAN.EXE /INDEX /TOP", "program: K_S72MAN.EXE /ABOUT",
                     "program: K_S72MAN.EXE"},
                    // once; the installer was at work before
                    StartWithFile("K_S72DEP.EXE", "/ASMRT", 140),
                    {kRecord},
                    Counts({{1, 1}, {7, 1}, {8, 1}, {9, 1}, {10, 1}, {11, 2}})}));
  EXPECT_TRUE(Holds(outcome.out, "in the temp folder: nothing\n"));
}

TEST(MenuSession, ARunningUtilityKeepsAMaskedPrintersAgentAndASecondOneAway) {
  const Outcome outcome = RunWords({"run", "--log", "--script", "desk/sessions/utility.session"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_TRUE(Holds(outcome.out, "0.800  script    chooses 920 in the menu of agent 1\n"));
  EXPECT_TRUE(Holds(outcome.out, "1.400  script    chooses 921 in the menu of agent 1\n"));
  EXPECT_TRUE(Holds(outcome.out, "1.800  script    sets VGLSetting of \"Studio 7200\" to 1\n"));
  EXPECT_TRUE(Holds(
      outcome.out,
      "0.800  agent 1   utility library: begin UtPrintNozzleTestPatternW: \"Studio 7200\" \"\" "
      "\"\" \"\"\n"));
  EXPECT_TRUE(
      Holds(outcome.out, "9.300  agent 1   utility library: end UtPrintNozzleTestPatternW\n"));
  EXPECT_FALSE(Holds(outcome.out, "UtCleanHeadW"));
  // Three mask checks in that time, and the one behind it.
  Lines standAside;
  for (const std::string& line : Behind("agent 1   log| ", outcome.out))
    if (Holds(line, "return utility executing"))
      standAside.push_back(line.substr(line.find(';') + 1));
  EXPECT_EQ(standAside, (Lines{"   10:03.100; return utility executing",
                               "   10:06.100; return utility executing",
                               "   10:09.100; return utility executing"}));
  EXPECT_TRUE(Holds(outcome.out, "12.100  agent 1   ended with code 0\n"));
}

TEST(MenuSession, AnAgentThatIsClosedWaitsForItsUtility) {
  const Outcome outcome = RunSession("utility");
  EXPECT_TRUE(Holds(outcome.out, "12.900  script    chooses 923 in the menu of agent 2\n"));
  EXPECT_TRUE(Holds(outcome.out, "13.300  agent 2   got WM_CLOSE\n"));
  EXPECT_TRUE(Holds(outcome.out, "15.400  agent 2   utility library: end UtAutoCleanHeadW\n"));
  EXPECT_TRUE(Holds(outcome.out, "15.400  agent 2   ended with code 0\n"));
  EXPECT_EQ(MapLines(outcome.out), Joined({kStudioInMap,
                                           {"no map", "VglV5MapFile_Ink 0: Studio 7200, agent 2",
                                            "VglV5MapFile_Ink 1: end", "no map"}}));
  const std::string begun =
      Utility("begin UtPrintNozzleTestPatternW: \"Studio 7200\" \"\" \"\" \"\"");
  const std::string ended = Utility("end UtPrintNozzleTestPatternW");
  const std::string cleaning = Utility("begin UtAutoCleanHeadW: \"Studio 7200\" \"\" \"\" \"\"");
  EXPECT_EQ(
      ShownLines(outcome.out),
      Joined({// while the first one runs, and behind the agent's end
              {kAsked, begun, kRecord},
              {kAsked, begun, ended, kRecord},
              Counts({{1, 1}, {4, 1}}),
              // while the second one runs, and behind its end; automatic cleaning isn't counted
              {kAsked, kAsked, begun, ended, cleaning, kRecord},
              Counts({{1, 1}, {4, 1}}),
              {kAsked, kAsked, begun, ended, cleaning, Utility("end UtAutoCleanHeadW"), kRecord},
              Counts({{1, 2}, {4, 1}})}));
}

TEST(MenuSession, InvitationsAndNetPilotComeWhenTheyAreDue) {
  const Outcome outcome = RunSession("kicks");
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  // 89 characters with the terminator.
  const Lines invitation = {
      "program: K_S72DEP.EXE /FU \"C:\\Users\\User\\AppData\\Local\\Temp\\K_Q....tmp\"",
      "program:   parameter file of 178 bytes:",
      "program:    /ASMRT",
      "program:    /T \"INVITE3\"",
      "program:    /P \"Studio 7200\"",
      "program:    /D \"KAVRO Studio 7200\"",
      "program:    /M \"S7200\"",
      "program:    /O \"USB001\""};
  EXPECT_EQ(ShownLines(WithoutTempNames(outcome.out)),
            Joined({// the first ask and the first sight of the printer
                    {kAsked, kAllowed},
                    invitation,
                    {kKickedRecord},
                    // two more asks, and NetPilot once
                    {kAsked, kAllowed, kAllowed, kAllowed},
                    invitation,
                    {"program: K_NPILOT.EXE /RUN /P \"Studio 7200\"", kKickedRecord},
                    Counts({{1, 1}, {12, 1}, {13, 1}})}));
  for (const char* time : {"0.600", "2.100", "3.600"})
    EXPECT_TRUE(Holds(outcome.out, std::string(time) + "  agent 1   " + kAllowed + "\n")) << time;
}

TEST(MenuSession, TheirTimersFireAMinuteBehindTheStartAndThenByTheirPeriods) {
  const Outcome outcome = RunScript(
      "sample studio-7200\n"
      "set-data \"Studio 7200\" InvitationPeriod 100000\n"
      "start\nwait 1000000\npost WM_CLOSE\nawait-end 1000\n");
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  Lines invitations;
  Lines netPilots;
  std::istringstream lines(outcome.out);
  for (std::string line; std::getline(lines, line);) {
    if (Holds(line, "got WM_TIMER TMID_INVITATION")) invitations.push_back(line.substr(0, 13));
    if (Holds(line, "got WM_TIMER TMID_NETPILOT")) netPilots.push_back(line.substr(0, 13));
  }
  ASSERT_EQ(invitations.size(), 10U);
  EXPECT_EQ(invitations[0], "       60.100");
  EXPECT_EQ(invitations[1], "      160.100");
  EXPECT_EQ(invitations[9], "      960.100");
  EXPECT_EQ(netPilots, (Lines{"       60.100", "      960.100"}));
}

TEST(MenuSession, AHebrewSetHasItsMenuFromRightToLeftAndItsPrograms) {
  const Outcome outcome = RunSession("hebrew");
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(MenuLines(outcome.out),
            (Lines{"900 פנורמה 9900\u200E (default) (right to left)",
                   "901 העדפות ניטור... (right to left)", "----", "920 בדיקת נחירים",
                   "921 ניקוי ראשי ההדפסה", "----", "930 עדכון תוכנה", "----", "931 מדריך באינטרנט",
                   "950 תמיכה באינטרנט"}));
  const Lines shown = ShownLines(outcome.out);
  ASSERT_GE(shown.size(), 5U);
  EXPECT_EQ(Lines(shown.begin(), shown.begin() + 5),
            (Lines{"invitation library: timer: \"פנורמה 9900\" \"KAVRO Panorama 9900\"",
                   "utility library: begin UtPrintNozzleTestPatternW: \"פנורמה 9900\" \"\" \"\" "
                   "\"\"",
                   "utility library: end UtPrintNozzleTestPatternW",
                   "program: K_NPILOT.EXE /RUN /MANUAL /P \"פנורמה 9900\"",
                   "program: K_NPILOT.EXE /SETUP /P \"פנורמה 9900\""}));
}

}  // namespace
}  // namespace desk
