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

TEST(Script, NamesTheMistakeAndWhatWouldBeRight) {
  const struct {
    const char* text;
    const char* error;
  } cases[] = {
      {"begin\n",
       "line 1: there is no command \"begin\"; the commands are sample, param, start, wait, post, "
       "kill, await-end and map"},
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
  };
  for (const auto& [text, error] : cases) EXPECT_EQ(ParseScript(text).error, error) << text;
}

}  // namespace
}  // namespace desk
