#include "desk/script.h"

#include <gtest/gtest.h>

namespace desk {
namespace {

using Kind = Command::Kind;

TEST(Script, ReadsEveryCommand) {
  const Script script = ParseScript(
      "# a comment\n"
      "\n"
      "param K_Q1.tmp\n"
      "  /P \"a b\"\n"
      "  /R\n"
      "end\n"
      "start /FU \"K_Q1.tmp\"\n"
      "wait 3000\n"
      "post WM_TIMER TMID_FLUSHLOG -1\n"
      "map\n"
      "kill @1\n"
      "await-end 500\n");
  ASSERT_EQ(script.error, "");
  ASSERT_EQ(script.commands.size(), 7U);
  EXPECT_EQ(script.commands[0].kind, Kind::Param);
  EXPECT_EQ(script.commands[0].text, "K_Q1.tmp");
  EXPECT_EQ(script.commands[0].content, "/P \"a b\"\n/R\n");
  EXPECT_EQ(script.commands[1].kind, Kind::Start);
  EXPECT_EQ(script.commands[1].text, "/FU \"K_Q1.tmp\"");
  EXPECT_EQ(script.commands[1].line, 7);
  EXPECT_EQ(script.commands[2].kind, Kind::Wait);
  EXPECT_EQ(script.commands[2].milliseconds, 3000U);
  EXPECT_EQ(script.commands[3].kind, Kind::Post);
  EXPECT_EQ(script.commands[3].message, 275U);
  EXPECT_EQ(script.commands[3].wParam, 30U);
  EXPECT_EQ(script.commands[3].lParam, -1);
  EXPECT_EQ(script.commands[4].kind, Kind::Map);
  EXPECT_EQ(script.commands[5].kind, Kind::Kill);
  EXPECT_EQ(script.commands[5].agent, 1);
  EXPECT_EQ(script.commands[6].kind, Kind::AwaitEnd);
  EXPECT_EQ(script.commands[6].agent, 0);
  EXPECT_EQ(script.commands[6].milliseconds, 500U);
}

TEST(Script, MayNameItsSampleInFrontOfItsCommands) {
  const Script script = ParseScript("# a comment\n\nsample studio-7200\nstart\n");
  ASSERT_EQ(script.error, "");
  EXPECT_EQ(script.sample, "studio-7200");
  EXPECT_EQ(script.commands.size(), 1U);
  EXPECT_EQ(ParseScript("start\n").sample, "");
}

TEST(Script, TakesLinesOfWindowsEditors) {
  const Script script = ParseScript("sample s\r\nstart /R\r\nwait 5\r\n");
  ASSERT_EQ(script.error, "");
  EXPECT_EQ(script.sample, "s");
  EXPECT_EQ(script.commands[0].text, "/R");
  EXPECT_EQ(script.commands[1].milliseconds, 5U);
}

TEST(Script, StartMayHaveNoCommandLine) {
  const Script script = ParseScript("start\n");
  ASSERT_EQ(script.error, "");
  EXPECT_EQ(script.commands[0].text, "");
  EXPECT_TRUE(HasBareStart(script));
  EXPECT_TRUE(HasBareStart(ParseScript("start /R\nstart  \t\r\n")));
  EXPECT_FALSE(HasBareStart(ParseScript("start /R\nmap\n")));
}

TEST(Script, AFileOfOptionsIsOneLine) {
  const struct {
    const char* text;
    const char* options;
  } cases[] = {
      {"/P \"\xD7\xA4\" /M \"m\"\n", "/P \"\xD7\xA4\" /M \"m\""},
      {"/M \"m\"\r\n\r\n", "/M \"m\""},
      {"/M \"m\"", "/M \"m\""},
      {"", ""},
      {"\n/M \"m\"\n", ""},
      {"/P \"p\"\n/M \"m\"\n", ""},
  };
  for (const auto& [text, options] : cases) EXPECT_EQ(OptionsLine(text), options) << text;
}

// The only command behind a start.
Command Only(const std::string& line) {
  const Script script = ParseScript("start\n" + line + "\n");
  EXPECT_EQ(script.error, "") << line;
  return script.commands.size() == 2 ? script.commands[1] : Command{};
}

TEST(Script, ReadsWhatAPersonDoes) {
  const struct {
    const char* line;
    Kind kind;
    int agent;
    std::uint32_t number;
  } cases[] = {
      {"click", Kind::Click, 0, 0},
      {"click @1", Kind::Click, 1, 0},
      {"double-click @1", Kind::DoubleClick, 1, 0},
      {"right-click @1", Kind::RightClick, 1, 0},
      {"choose 901", Kind::Choose, 0, 901},
      {"choose @1 65535", Kind::Choose, 1, 65535},
      {"dismiss @1", Kind::Dismiss, 1, 0},
      {"answer @1", Kind::Answer, 1, 0},
      {"release", Kind::Release, 0, 0},
      {"await-ready", Kind::AwaitReady, 0, 0},
      {"await-ready @1", Kind::AwaitReady, 1, 0},
      {"menu", Kind::Menu, 0, 0},
      {"menu @1", Kind::Menu, 1, 0},
  };
  for (const auto& [line, kind, agent, number] : cases) {
    SCOPED_TRACE(line);
    const Command command = Only(line);
    EXPECT_EQ(command.kind, kind);
    EXPECT_EQ(command.agent, agent);
    EXPECT_EQ(command.number, number);
  }
}

TEST(Script, KeysAreHeldByTheirNames) {
  EXPECT_EQ(Only("hold ctrl shift space").kind, Kind::Hold);
  EXPECT_EQ(Only("hold ctrl shift space").keys, (std::vector<std::uint32_t>{17, 16, 32}));
  EXPECT_EQ(Only("hold space").keys, (std::vector<std::uint32_t>{32}));
}

TEST(Script, ReadsWhatOtherProgramsDo) {
  const Command added = Only("add-printer \"Studio 7200\" USB001 \"KAVRO Studio 7200\"");
  EXPECT_EQ(added.kind, Kind::AddPrinter);
  EXPECT_EQ(added.text, "Studio 7200");
  EXPECT_EQ(added.port, "USB001");
  EXPECT_EQ(added.driver, "KAVRO Studio 7200");

  const Command masked = Only("mask \"Studio 7200\" 4294967295");
  EXPECT_EQ(masked.kind, Kind::Mask);
  EXPECT_EQ(masked.text, "Studio 7200");
  EXPECT_EQ(masked.number, 4294967295U);

  const Command selected = Only("select-icon @1 LPT2 2");
  EXPECT_EQ(selected.kind, Kind::SelectIcon);
  EXPECT_EQ(selected.agent, 1);
  EXPECT_EQ(selected.text, "LPT2");
  EXPECT_EQ(selected.number, 2U);

  const Command autostart = Only("autostart K_Q1.tmp \"Studio 7200\"");
  EXPECT_EQ(autostart.kind, Kind::Autostart);
  EXPECT_EQ(autostart.text, "K_Q1.tmp");
  EXPECT_EQ(autostart.name, "Studio 7200");
}

TEST(Script, APrinterToDeleteIsTheRestOfTheLine) {
  for (const char* line : {"delete-printer Studio 7200", "delete-printer \"Studio 7200\"",
                           "delete-printer   Studio 7200 \t"}) {
    EXPECT_EQ(Only(line).kind, Kind::DeletePrinter) << line;
    EXPECT_EQ(Only(line).text, "Studio 7200") << line;
  }
}

TEST(Script, AValueIsATextInQuotesOrANumber) {
  const Command text = Only("set-value \"Software\\KAVRO Suite\" Name \"12\"");
  EXPECT_EQ(text.kind, Kind::SetValue);
  EXPECT_EQ(text.text, "Software\\KAVRO Suite");
  EXPECT_EQ(text.name, "Name");
  EXPECT_TRUE(text.isText);
  EXPECT_EQ(text.value, "12");
  const Command number = Only("set-value Software\\KAVRO \"\" 12");
  EXPECT_EQ(number.name, "");
  EXPECT_FALSE(number.isText);
  EXPECT_EQ(number.number, 12U);
  EXPECT_TRUE(Only("set-value Software\\KAVRO Name \"\"").isText);
}

TEST(Script, APrintersDataAndATimeInTheRegistryAreNumbersOfAName) {
  const Command data = Only("set-data \"Studio 7200\" PrinterAnswers 4294967295");
  EXPECT_EQ(data.kind, Kind::SetData);
  EXPECT_EQ(data.text, "Studio 7200");
  EXPECT_EQ(data.name, "PrinterAnswers");
  EXPECT_EQ(data.number, 4294967295U);
  const Command time = Only("set-time Software\\KAVRO \"\" 86400");
  EXPECT_EQ(time.kind, Kind::SetTime);
  EXPECT_EQ(time.text, "Software\\KAVRO");
  EXPECT_EQ(time.name, "");
  EXPECT_EQ(time.number, 86400U);
}

TEST(Script, AnInstallerStartsAndEnds) {
  const Script script = ParseScript("installer starts\ninstaller ends\ninstaller starts\n");
  ASSERT_EQ(script.error, "");
  ASSERT_EQ(script.commands.size(), 3U);
  EXPECT_EQ(script.commands[0].kind, Kind::InstallerStarts);
  EXPECT_EQ(script.commands[1].kind, Kind::InstallerEnds);
  EXPECT_EQ(script.commands[2].kind, Kind::InstallerStarts);
}

TEST(Script, ReadsWhatIsToBeSeen) {
  EXPECT_EQ(Only("show").kind, Kind::Show);
  EXPECT_EQ(Only("picture the-icon_2").kind, Kind::Picture);
  EXPECT_EQ(Only("picture the-icon_2").text, "the-icon_2");
}

TEST(Script, NamesTheMistakeAndWhatWouldBeRight) {
  const struct {
    const char* text;
    const char* error;
  } cases[] = {
      {"begin\n",
       "line 1: there is no command \"begin\"; the commands are sample, param, start, wait, "
       "await-ready, post, kill, await-end, click, double-click, right-click, choose, dismiss, "
       "answer, hold, release, add-printer, delete-printer, mask, set-data, select-icon, "
       "set-value, set-time, autostart, installer, map, menu, show and picture"},
      {"sample\n", "line 1: sample needs a name, as in \"sample studio-7200\""},
      {"sample a b\n", "line 1: \"b\" is one word too many for sample"},
      {"sample a\nsample b\n", "line 2: sample stands in front of all else, and once"},
      {"start\nsample a\n", "line 2: sample stands in front of all else, and once"},
      {"\npost WM_CLOSE\n", "line 2: no agent has been started; put a start line in front"},
      {"start\npost @2 WM_CLOSE\n", "line 2: \"@2\" is no agent; they are @1 to @1"},
      {"start\npost @x WM_CLOSE\n", "line 2: \"@x\" is no agent; they are @1 to @1"},
      {"start\npost\n", "line 2: post needs a message, as in \"post WM_CLOSE\""},
      {"start\npost WM_CLOSED\n",
       "line 2: \"WM_CLOSED\" is no message; use a name as WM_CLOSE or a number"},
      {"start\npost 65536\n",
       "line 2: \"65536\" is no message; use a name as WM_CLOSE or a number"},
      {"start\npost WM_TIMER soon\n", "line 2: \"soon\" is neither a number nor the name of one"},
      {"map V5\n", "line 1: \"V5\" is one word too many for map"},
      {"wait\n", "line 1: \"\" is no number of milliseconds, as in \"wait 3000\""},
      {"wait -5\n", "line 1: \"-5\" is no number of milliseconds, as in \"wait 3000\""},
      {"wait 2147483648\n",
       "line 1: \"2147483648\" is no number of milliseconds, as in \"wait 3000\""},
      {"start\npost TMID_CLICK\n",
       "line 2: \"TMID_CLICK\" is no message; use a name as WM_CLOSE or a number"},
      {"wait 5 s\n", "line 1: \"s\" is one word too many for wait"},
      {"param\n", "line 1: param needs the name of the file"},
      {"param a\n/R\n", "line 2: param a has no line \"end\""},
      {"click\n", "line 1: no agent has been started; put a start line in front"},
      {"start\nclick @2\n", "line 2: \"@2\" is no agent; they are @1 to @1"},
      {"start\nclick twice\n", "line 2: \"twice\" is one word too many for click"},
      {"start\nchoose\n", "line 2: \"\" is no entry's number, as in \"choose 901\""},
      {"start\nchoose 65536\n", "line 2: \"65536\" is no entry's number, as in \"choose 901\""},
      {"start\nchoose 901 @1\n", "line 2: \"@1\" is one word too many for choose"},
      {"hold\n", "line 1: hold needs a key, as in \"hold ctrl shift space\""},
      {"hold alt\n", "line 1: \"alt\" is no key; the keys are ctrl, shift and space"},
      {"delete-printer\n",
       "line 1: delete-printer needs a printer, as in \"delete-printer Studio 7200\""},
      {"delete-printer \"Studio\n",
       "line 1: delete-printer needs a printer, as in \"delete-printer Studio 7200\""},
      {"delete-printer \"Studio\" 7200\n",
       "line 1: \"7200\" is one word too many for delete-printer"},
      {"add-printer Studio USB001\n",
       "line 1: add-printer needs printer, port and driver, as in \"add-printer \"Studio 7200\" "
       "USB001 \"KAVRO Studio 7200\"\""},
      {"add-printer \"\" USB001 Driver\n",
       "line 1: add-printer needs printer, port and driver, as in \"add-printer \"Studio 7200\" "
       "USB001 \"KAVRO Studio 7200\"\""},
      {"mask Studio 7200 1\n", "line 1: \"1\" is one word too many for mask"},
      {"mask Studio\n", "line 1: mask needs a name and a number, as in \"mask \"Studio 7200\" 1\""},
      {"mask Studio -1\n",
       "line 1: mask needs a name and a number, as in \"mask \"Studio 7200\" 1\""},
      {"start\nselect-icon 1\n",
       "line 2: select-icon needs a name and a number, as in \"select-icon \"Studio 7200\" 1\""},
      {"set-value Software\\KAVRO Name\n",
       "line 1: set-value needs a key below HKEY_CURRENT_USER, a name, and a text in quotes or a "
       "number, as in \"set-value Software\\KAVRO\\VGL3 K_QTR 1\""},
      {"set-value Software\\KAVRO Name one\n",
       "line 1: set-value needs a key below HKEY_CURRENT_USER, a name, and a text in quotes or a "
       "number, as in \"set-value Software\\KAVRO\\VGL3 K_QTR 1\""},
      {"set-data Studio PrinterAnswers\n",
       "line 1: set-data needs a printer, the name of the value and a number, as in \"set-data "
       "\"Studio 7200\" PrinterAnswers 0\""},
      {"set-data \"\" PrinterAnswers 0\n",
       "line 1: set-data needs a printer, the name of the value and a number, as in \"set-data "
       "\"Studio 7200\" PrinterAnswers 0\""},
      {"set-data Studio PrinterAnswers 0 1\n", "line 1: \"1\" is one word too many for set-data"},
      {"set-time Software\\KAVRO LastKickNetPilot -1\n",
       "line 1: set-time needs a key below HKEY_CURRENT_USER, a name and how many seconds ago, as "
       "in \"set-time Software\\KAVRO LastKickNetPilot 86400\""},
      {"set-time Software\\KAVRO 86400\n",
       "line 1: set-time needs a key below HKEY_CURRENT_USER, a name and how many seconds ago, as "
       "in \"set-time Software\\KAVRO LastKickNetPilot 86400\""},
      {"menu\n", "line 1: no agent has been started; put a start line in front"},
      {"start\nmenu 901\n", "line 2: \"901\" is one word too many for menu"},
      {"start\nawait-ready 5000\n", "line 2: \"5000\" is one word too many for await-ready"},
      {"autostart K_Q1.tmp\n",
       "line 1: autostart needs a parameter file and the name of the Run value, as in \"autostart "
       "K_Q0001.tmp \"Studio 7200\"\""},
      {"installer\n", "line 1: an installer either starts or ends"},
      {"installer ends\n", "line 1: no installer is at work"},
      {"installer starts\ninstaller starts\n", "line 2: an installer is at work already"},
      {"picture\n",
       "line 1: picture needs a name of small letters, digits, - and _, as in \"picture "
       "the-icon\""},
      {"picture ../x\n",
       "line 1: picture needs a name of small letters, digits, - and _, as in \"picture "
       "the-icon\""},
  };
  for (const auto& [text, error] : cases) EXPECT_EQ(ParseScript(text).error, error) << text;
}

}  // namespace
}  // namespace desk
