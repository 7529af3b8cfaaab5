// vgldesk as its user meets it: words in, lines and exit code out.
#include <gtest/gtest.h>

#include <sstream>

#include "desk/command_line.h"

namespace desk {
namespace {

struct Outcome {
  int code;
  std::string out;
  std::string err;
};

Outcome RunWords(const std::vector<std::string>& words, const std::string& input = "") {
  std::istringstream in(input);
  std::ostringstream out;
  std::ostringstream err;
  const int code = RunVgldesk(words, in, out, err);
  return {code, out.str(), err.str()};
}

Outcome RunScript(const std::string& script, std::vector<std::string> more = {}) {
  std::vector<std::string> words = {"run", "--script", "-"};
  words.insert(words.end(), more.begin(), more.end());
  return RunWords(words, script);
}

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// Two agents that know nothing of each other, each known by its port.
constexpr char kStart[] = "start /D \"KAVRO Studio 7200\" /O \"a\" /M \"m\"\n";
constexpr char kStartOther[] = "start /D \"KAVRO Studio 7200\" /O \"b\" /M \"m\"\n";

TEST(Vgldesk, PlaysTheMainSessionToItsEnd) {
  const Outcome outcome = RunWords({"run", "--log", "--script", "desk/sessions/main.session"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_TRUE(Holds(outcome.out, "3.100  agent 1   got WM_TIMER TMID_MASKCHECK\n"));
  EXPECT_TRUE(Holds(outcome.out, "6.100  agent 1   got WM_TIMER TMID_MASKCHECK\n"));
  EXPECT_TRUE(Holds(outcome.out, "log| 1000;   10:08.000; ***** LOG END ******\n"));
  EXPECT_TRUE(Holds(outcome.out, "8.000  agent 1   ended with code 0\n"));
  EXPECT_TRUE(Holds(outcome.out, "in the temp folder: nothing\n"));
}

TEST(Vgldesk, ShowsWhoIsInTheInstanceMap) {
  const Outcome outcome = RunWords({"run", "--script", "desk/sessions/instance_map.session"});
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.code, 1);  // the first agent was ended by force
  EXPECT_TRUE(Holds(outcome.out, "map| VglV5MapFile_Ink 0: Studio 7200, agent 1\n"));
  EXPECT_TRUE(Holds(outcome.out, "map| VglV5MapFile_Ink 0: Studio 7200, dead\n"));
  EXPECT_TRUE(Holds(outcome.out, "map| VglV5MapFile_Ink 0: Studio 7200, agent 5\n"));
  EXPECT_TRUE(Holds(outcome.out, "map| VglV5MapFile_Ink 1: Third Studio, agent 7\n"));
  EXPECT_TRUE(Holds(outcome.out, "map| VglV5MapFile_Ink 2: LPT2, agent 3\n"));
}

TEST(Vgldesk, KeepsTheParameterFileOfTheMachinesRunKey) {
  const Outcome outcome = RunWords({"run", "--script", "desk/sessions/kept_file.session"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_TRUE(Holds(outcome.out, "in the temp folder: K_Q0002.tmp\n"));
}

TEST(Vgldesk, RunsAnAgentOfTheCommandLineForTenSeconds) {
  const Outcome outcome =
      RunWords({"run", "--", "/P", "Studio 7200", "/D", "KAVRO Studio 7200", "/M", "S7200"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_TRUE(Holds(outcome.out,
                    "started: C:\\Program Files\\KAVRO\\VGL3\\K_QD21TR.EXE /P \"Studio "
                    "7200\" /D \"KAVRO Studio 7200\" /M \"S7200\"\n"));
  EXPECT_TRUE(Holds(outcome.out, "10.000  script    posts WM_CLOSE to agent 1\n"));
}

TEST(Vgldesk, RunsAnAgentOfTheCommandLineForTheTimeThatIsNamed) {
  const Outcome outcome = RunWords({"run", "--for", "2500", "--", "/P", "Studio 7200", "/M", "m"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_TRUE(Holds(outcome.out, "2.500  script    posts WM_CLOSE to agent 1\n"));
}

TEST(Vgldesk, AnEventWithLineEndsStandsOnOneLine) {
  const Outcome outcome = RunScript(std::string(kStart) + "wait 200\npost WM_COMMAND 900\nkill\n");
  EXPECT_TRUE(Holds(outcome.out,
                    "message box \"KAVRO Vigil 3\": \\r\\nUnable to open Printer "
                    "Status window for this printer.\n"));
}

TEST(Vgldesk, AMessageThatCantBePostedFailsTheSession) {
  const Outcome outcome = RunScript(std::string(kStart) + "wait 200\npost 44\n");
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.err, "vgldesk: line 3: this message can't be posted\n");
}

TEST(Vgldesk, ShowsTheTrayLogOnlyWhenAsked) {
  EXPECT_FALSE(Holds(RunScript(std::string(kStart) + "kill\n").out, "log| "));
  EXPECT_TRUE(Holds(RunScript(std::string(kStart) + "kill\n", {"--log"}).out, "log| "));
}

TEST(Vgldesk, GivesTheExitCodeOfTheFirstAgent) {
  const std::string script = std::string(kStart) + kStartOther +
                             "wait 2000\npost @1 18 7\nawait-end @1 10\n"
                             "post @2 18 9\nawait-end @2 10\n";
  EXPECT_EQ(RunScript(script).code, 7);
}

TEST(Vgldesk, TheSameSeedPrintsTheSameLines) {
  const std::string script = std::string(kStart) + kStartOther + "wait 5000\nkill @1\nkill @2\n";
  EXPECT_EQ(RunScript(script, {"--seed", "5"}).out, RunScript(script, {"--seed", "5"}).out);
}

TEST(Vgldesk, AnAgentThatStillRunsFailsTheSession) {
  const Outcome outcome = RunScript(kStart);
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.err, "vgldesk: agent 1 still runs at the end of the script\n");
}

TEST(Vgldesk, AnAgentThatDoesntEndInTimeFailsTheSession) {
  const Outcome outcome = RunScript(std::string(kStart) + "await-end 100\n");
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.err, "vgldesk: line 2: agent 1 still runs\n");
}

TEST(Vgldesk, PostingToAnAgentWithoutAWindowFailsTheSession) {
  const Outcome outcome = RunScript(std::string(kStart) + "post WM_CLOSE\n");
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.err, "vgldesk: line 2: agent 1 has no window\n");
}

TEST(Vgldesk, MistakesOfTheCommandLineAreNamedAndGiveTwo) {
  const struct {
    std::vector<std::string> words;
    std::string part;
  } cases[] = {
      {{}, "vgldesk: \"\" is no command; the command is run"},
      {{"walk"}, "vgldesk: \"walk\" is no command; the command is run"},
      {{"run"}, "give a sample, --script FILE, or an agent's command line behind --"},
      {{"run", "no-such"}, "vgldesk run: samples/no-such/options: can't be read"},
      {{"run", "no-such", "--", "/R"}, "vgldesk: there is no sample samples/no-such"},
      {{"run", "./no-such", "--", "/R"}, "vgldesk: there is no sample ./no-such"},
      {{"run", "studio-7200", "sketch-1100"}, "sketch-1100"},
      {{"run", "--seed", "many", "--", "/R"}, "--seed"},
      {{"run", "--loud", "--", "/R"}, "--loud"},
      {{"run", "--for", "2147483648", "--", "/R"}, "--for"},
      {{"run", "--script", "x", "--", "/R"}, "give either --script or a command line behind --"},
      {{"run", "--script", "no/such.session"}, "the script no/such.session can't be read"},
  };
  for (const auto& [words, part] : cases) {
    const Outcome outcome = RunWords(words);
    EXPECT_EQ(outcome.code, 2) << part;
    EXPECT_TRUE(Holds(outcome.err, part)) << outcome.err;
    EXPECT_EQ(outcome.out, "");
  }
}

TEST(Vgldesk, MistakesOfTheScriptAreNamedAndGiveTwo) {
  const Outcome outcome = RunScript("start\nwait soon\n");
  EXPECT_EQ(outcome.code, 2);
  EXPECT_EQ(outcome.err,
            "vgldesk run: -: line 2: \"soon\" is no number of milliseconds, as in \"wait 3000\"\n");
}

TEST(Vgldesk, ASampleAloneRunsTheAgentOfItsPrinter) {
  const Outcome outcome = RunWords({"run", "atelier-4400", "--for", "2500"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_TRUE(Holds(outcome.out, "/P \"Atelier 4400\" /D \"KAVRO Atelier 4400\""));
  EXPECT_TRUE(Holds(outcome.out, "2.500  script    posts WM_CLOSE to agent 1\n"));
}

TEST(Vgldesk, AFolderWithASlashIsASample) {
  EXPECT_EQ(RunWords({"run", "samples/atelier-4400"}).out, RunWords({"run", "atelier-4400"}).out);
}

TEST(Vgldesk, AScriptIsPlayedOnTheSampleThatItNames) {
  const std::string start = "start /P \"Atelier 4400\" /D \"KAVRO Atelier 4400\" /M \"A4400\"\n";
  const std::string library =
      "loaded library C:\\Windows\\system32\\spool\\drivers\\x64\\3\\K_WRDEF1.DLL\n";
  EXPECT_TRUE(Holds(RunScript("sample atelier-4400\n" + start + "kill\n").out, library));
  EXPECT_FALSE(Holds(RunScript("sample studio-7200\n" + start + "kill\n").out, library));
}

TEST(Vgldesk, TheSampleOfTheCommandLineStandsInForTheScripts) {
  const std::string script =
      "sample no-such\nstart /P \"Sketch 1100\" /D \"KAVRO Sketch 1100\" /M \"K1100\"\nkill\n";
  EXPECT_TRUE(Holds(RunScript(script, {"sketch-1100"}).out, "K_WRDEF1.DLL"));
  EXPECT_EQ(RunScript(script).err, "vgldesk: there is no sample samples/no-such\n");
}

TEST(Vgldesk, HelpTellsTheOptionsAndGivesZero) {
  const Outcome outcome = RunWords({"run", "--help"});
  EXPECT_EQ(outcome.code, 0);
  for (const char* option : {"SAMPLE", "--log", "--seed", "--script", "--for"})
    EXPECT_TRUE(Holds(outcome.out, option)) << option;
}

TEST(Vgldesk, GivesWordsTheirQuotesBack) {
  EXPECT_EQ(AgentCommandLine({"/P", "Studio 7200", "/R"}), "/P \"Studio 7200\" /R");
  EXPECT_EQ(AgentCommandLine({"/P \"a b\" /R"}), "/P \"a b\" /R");
  EXPECT_EQ(AgentCommandLine({"/P", "\"a b\""}), "/P \"a b\"");
  EXPECT_EQ(AgentCommandLine({"/P", ""}), "/P \"\"");
  EXPECT_EQ(AgentCommandLine({}), "");
}

}  // namespace
}  // namespace desk
