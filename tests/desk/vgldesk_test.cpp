// vgldesk as its user meets it: words in, lines and exit code out.
#include <gtest/gtest.h>

#include "tests/desk/scratch_folder.h"
#include "tests/desk/vgldesk_run.h"

namespace desk {
namespace {

// The agent of the default machine's printer, and one of another printer.
constexpr char kStart[] =
    "start /P \"Studio 7200\" /D \"KAVRO Studio 7200\" /O \"USB001\" /M \"S7200\"\n";
constexpr char kStartOther[] =
    "add-printer Other LPT1 \"KAVRO Studio 7200\"\n"
    "set-value Software\\KAVRO\\VGL3\\VGLData\\KVLTarget\\P0000000000000001 Name \"Other\"\n"
    "set-value Software\\KAVRO\\VGL3\\VGLData\\KVLTarget\\P0000000000000001 TrayIconEnable 1\n"
    "start /P \"Other\" /D \"KAVRO Studio 7200\" /O \"LPT1\" /M \"S7200\"\n";

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
  const std::vector<std::string> expected = {
      // before all
      "no map",
      // the first printer's agent
      "VglV5MapFile_Ink 0: Studio 7200, agent 1",
      "VglV5MapFile_Ink 1: end",
      // a second printer's, and one for a port
      "VglV5MapFile_Ink 0: Studio 7200, agent 1",
      "VglV5MapFile_Ink 1: Second Studio, agent 2",
      "VglV5MapFile_Ink 2: LPT2, agent 3",
      "VglV5MapFile_Ink 3: end",
      // agent 4 gave way
      "VglV5MapFile_Ink 0: Studio 7200, agent 1",
      "VglV5MapFile_Ink 1: Second Studio, agent 2",
      "VglV5MapFile_Ink 2: LPT2, agent 3",
      "VglV5MapFile_Ink 3: end",
      // agent 1 crashed
      "VglV5MapFile_Ink 0: Studio 7200, dead",
      "VglV5MapFile_Ink 1: Second Studio, agent 2",
      "VglV5MapFile_Ink 2: LPT2, agent 3",
      "VglV5MapFile_Ink 3: end",
      // agent 5 took its slot
      "VglV5MapFile_Ink 0: Studio 7200, agent 5",
      "VglV5MapFile_Ink 1: Second Studio, agent 2",
      "VglV5MapFile_Ink 2: LPT2, agent 3",
      "VglV5MapFile_Ink 3: end",
      // agent 6 has ended agent 2
      "VglV5MapFile_Ink 0: Studio 7200, agent 5",
      "VglV5MapFile_Ink 1: free",
      "VglV5MapFile_Ink 2: LPT2, agent 3",
      "VglV5MapFile_Ink 3: end",
      // a third printer's took the free slot
      "VglV5MapFile_Ink 0: Studio 7200, agent 5",
      "VglV5MapFile_Ink 1: Third Studio, agent 7",
      "VglV5MapFile_Ink 2: LPT2, agent 3",
      "VglV5MapFile_Ink 3: end",
      // only agent 5 is left
      "VglV5MapFile_Ink 0: Studio 7200, agent 5",
      "VglV5MapFile_Ink 1: free",
      "VglV5MapFile_Ink 2: free",
      "VglV5MapFile_Ink 3: end",
      // nobody
      "no map",
  };
  EXPECT_EQ(MapLines(outcome.out), expected);
}

TEST(Vgldesk, PlaysTheSessionsOfTheSamples) {
  using Lines = std::vector<std::string>;
  const struct {
    const char* session;
    const char* model;  // which the first two don't name: it comes from the install description
    Lines maps;
  } cases[] = {
      {"faults", "K1100", {"VglV5MapFile_Ink 0: Sketch 1100, agent 1", "VglV5MapFile_Ink 1: end"}},
      {"registry",
       "A4400",
       {"VglV5MapFile_Ink 0: Atelier 4400, agent 1", "VglV5MapFile_Ink 1: end"}},
      {"v7_map",
       "P9900",
       {"no map",
        "VglV7MapFile_Ink 0: \xD7\xA4\xD7\xA0\xD7\x95\xD7\xA8\xD7\x9E\xD7\x94 9900, agent 1",
        "VglV7MapFile_Ink 1: end", "no map"}},
  };
  for (const auto& [session, model, maps] : cases) {
    SCOPED_TRACE(session);
    const Outcome outcome = RunWords(
        {"run", "--log", "--script", std::string("desk/sessions/") + session + ".session"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(Holds(outcome.out, std::string("; cmdInfo.m_szModelID : ") + model + "\n"));
    EXPECT_EQ(MapLines(outcome.out), maps);
  }
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
  // Nobody knows the run helper of a printer that is gone.
  const Outcome outcome = RunScript(
      std::string(kStart) + "wait 200\ndelete-printer Studio 7200\npost WM_COMMAND 900\nkill\n");
  EXPECT_TRUE(Holds(outcome.out,
                    "message box \"KAVRO Vigil 3\": \\r\\nUnable to open Printer "
                    "Status window for this printer.\n"));
}

TEST(Vgldesk, AMessageThatCantBePostedFailsTheSession) {
  const Outcome outcome = RunScript(std::string(kStart) + "wait 200\npost 44\n");
  EXPECT_EQ(outcome.code, 4);
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
  EXPECT_EQ(outcome.code, 4);
  EXPECT_EQ(outcome.err, "vgldesk: agent 1 still runs at the end of the script\n");
}

TEST(Vgldesk, AnAgentThatDoesntEndInTimeFailsTheSession) {
  const Outcome outcome = RunScript(std::string(kStart) + "await-end 100\n");
  EXPECT_EQ(outcome.code, 4);
  EXPECT_EQ(outcome.err, "vgldesk: line 2: agent 1 still runs\n");
}

TEST(Vgldesk, PostingToAnAgentWithoutAWindowFailsTheSession) {
  const Outcome outcome = RunScript(std::string(kStart) + "post WM_CLOSE\n");
  EXPECT_EQ(outcome.code, 4);
  EXPECT_EQ(outcome.err, "vgldesk: line 2: agent 1 has no window\n");
}

TEST(Vgldesk, PostingToAnAgentThatHasEndedTellsItsCode) {
  const Outcome outcome =
      RunScript(std::string(kStart) + "wait 200\npost 18 7\nwait 10\npost WM_CLOSE\n");
  EXPECT_EQ(outcome.code, 4);
  EXPECT_EQ(outcome.err, "vgldesk: line 5: agent 1 has ended already, with code 7\n");
}

TEST(Vgldesk, MistakesOfTheCommandLineAreNamedAndGiveTwo) {
  const struct {
    std::vector<std::string> words;
    std::string part;
  } cases[] = {
      {{}, "vgldesk: \"\" is no command; the commands are run, describe, menu and soak"},
      {{"walk"}, "vgldesk: \"walk\" is no command; the commands are run, describe, menu and soak"},
      {{"run"}, "give a sample, --script FILE, or an agent's command line behind --"},
      {{"run", "no-such"},
       "vgldesk: there is no sample samples/no-such; names without a slash are looked for below "
       "samples/ in the current folder\n"},
      {{"run", "no-such", "--", "/R"}, "vgldesk: there is no sample samples/no-such;"},
      {{"run", "./no-such", "--", "/R"}, "vgldesk: there is no sample ./no-such;"},
      {{"run", "studio-7200", "sketch-1100"}, "sketch-1100"},
      {{"run", "--seed", "many", "--", "/R"}, "--seed"},
      {{"run", "--loud", "--", "/R"}, "--loud"},
      {{"run", "--for", "2147483648", "--", "/R"}, "--for"},
      {{"run", "--script", "x", "--", "/R"}, "give either --script or a command line behind --"},
      {{"run", "--script", "no/such.session"}, "the script no/such.session can't be read"},
      {{"run", "--script", "desk/sessions"}, "the script desk/sessions can't be read"},
      {{"describe"}, "sample"},
      {{"describe", "studio-7200", "sketch-1100"}, "sketch-1100"},
      {{"describe", "studio-7200", "--", "/R"}, "no agent's command line to give behind --"},
      {{"soak", "--hours", "0"}, "--hours"},
      {{"soak", "--printers", "401"}, "--printers"},
      {{"soak", "studio-7200"}, "studio-7200"},
      {{"soak", "--", "/R"}, "no agent's command line to give behind --"},
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
  EXPECT_TRUE(Holds(RunScript(script).err, "vgldesk: there is no sample samples/no-such;"));
}

TEST(Vgldesk, AStartWithoutACommandLineTakesTheSamplesOwn) {
  const std::string started = "/P \"Atelier 4400\" /D \"KAVRO Atelier 4400\" /O \"USB002\"";
  const std::string script = "sample studio-7200\nstart\nkill\n";
  EXPECT_TRUE(Holds(RunScript(script).out, "/P \"Studio 7200\" /D \"KAVRO Studio 7200\""));
  EXPECT_TRUE(Holds(RunScript(script, {"atelier-4400"}).out, started));
  EXPECT_FALSE(Holds(RunScript("start\nkill\n").out, "/P"));
}

TEST(Vgldesk, ASampleWithoutOptionsIsAMistakeOnlyWhereTheyAreWanted) {
  const ScratchFolder sample;
  sample.Write("machine.reg", "REGEDIT4\n");
  sample.Write("libraries", "");
  std::filesystem::create_directory(sample.path() / "files");
  const std::string folder = sample.path().string();
  EXPECT_EQ(RunWords({"run", folder}).code, 2);
  EXPECT_EQ(RunWords({"run", folder}).err, "vgldesk: " + folder + "/options: can't be read\n");
  EXPECT_EQ(RunScript("start /O \"a\"\nkill\n", {folder}).err, "");
}

TEST(Vgldesk, HelpTellsTheOptionsAndGivesZero) {
  const Outcome outcome = RunWords({"run", "--help"});
  EXPECT_EQ(outcome.code, 0);
  for (const char* option : {"SAMPLE", "--log", "--seed", "--script", "--for"})
    EXPECT_TRUE(Holds(outcome.out, option)) << option;
  EXPECT_EQ(RunWords({"describe", "--help"}).code, 0);
  EXPECT_TRUE(Holds(RunWords({"--help"}).out, "describe"));
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
