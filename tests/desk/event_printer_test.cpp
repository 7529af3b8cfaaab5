// Events as lines.
#include "desk/event_printer.h"

#include <gtest/gtest.h>

#include <sstream>

namespace desk {
namespace {

TEST(ParamFileInWords, TellsTheOptionsOfTheFileThatACommandLineNames) {
  sim::Machine machine;
  sim::FileTree& files = machine.files();
  files.WriteUtf16(u"C:\\T\\a.tmp",
                   std::u16string(u"/P3 \"a\"b\"\n/O0 \"\"\n/M2 \"mm\"\n/E") + u'\0');
  files.WriteUtf16(u"C:\\T\\none.tmp", u"no option");
  files.WriteUtf16(u"C:\\T\\torn.tmp", u"/M9 nothing in quotes");
  // A length without a quote behind it ends the reading of options.
  files.WriteUtf16(u"C:\\T\\cut.tmp", u"/P1 \"a\" /E /M2/O no quote");
  const struct {
    const char16_t* commandLine;
    const char* words;
  } cases[] = {
      {u"C:\\x.exe /FU \"C:\\T\\a.tmp\"", "/P \"a\"b\" /O /M \"mm\" /E"},
      {u"C:\\x.exe /fu \"c:\\t\\A.TMP\" /DP", "/P \"a\"b\" /O /M \"mm\" /E"},
      {u"C:\\x.exe /FU \"C:\\T\\gone.tmp\"", ""},
      {u"C:\\x.exe", ""},
      {u"C:\\x.exe /FU \"C:\\T\\none.tmp\"", ""},
      {u"C:\\x.exe /FU \"C:\\T\\torn.tmp\"", "/M"},
      {u"C:\\x.exe /FU \"C:\\T\\cut.tmp\"", "/P \"a\" /E"},
  };
  for (const auto& [commandLine, words] : cases)
    EXPECT_EQ(ParamFileInWords(files, commandLine), words);
}

class EventLines : public testing::Test {
 protected:
  // The lines since the last call, without the time.
  std::string Lines() {
    std::string all = out.str();
    out.str("");
    std::istringstream in(all);
    std::string lines;
    for (std::string line; std::getline(in, line);) lines += line.substr(15) + "\n";
    return lines;
  }
  sim::Process& Run(const char16_t* path, std::function<void()> body) {
    sim::Process& process = machine.StartProcess(path, u"", [body](const char16_t*) {
      body();
      return 0U;
    });
    machine.Settle();
    return process;
  }

  sim::Machine machine;
  std::ostringstream out;
};

TEST_F(EventLines, AProgramGoesByItsFilesNameAndAnAgentByItsNumber) {
  EventPrinter printer(machine, false, out);
  Run(u"C:\\KAVRO\\SETUP.EXE", [] {});
  EXPECT_EQ(Lines(), "SETUP     started: C:\\KAVRO\\SETUP.EXE \nSETUP     ended with code 0\n");
  sim::Process& agent =
      machine.StartProcess(u"C:\\a.exe", u"/R", [](const char16_t*) { return 3U; });
  printer.AddAgent(agent);
  machine.Settle();
  EXPECT_EQ(Lines(), "agent 1   started: C:\\a.exe /R\nagent 1   ended with code 3\n");
  EXPECT_TRUE(printer.IsAgent(agent.id()));
  EXPECT_FALSE(printer.IsAgent(0));
  EXPECT_EQ(printer.NameOf(0), "script");
}

TEST_F(EventLines, ALibraryIsToldWhenAProcessFirstLoadsIt) {
  EventPrinter printer(machine, false, out);
  machine.libraries().Add(u"C:\\X.DLL");
  const auto load = [] {
    for (int i = 0; i < 2; ++i)
      platform::Os().modules.FreeLibrary(platform::Os().modules.LoadLibraryW(u"C:\\X.DLL"));
  };
  Run(u"C:\\a.exe", load);
  EXPECT_EQ(Lines(),
            "a         started: C:\\a.exe \n"
            "a         loaded library C:\\X.DLL\n"
            "a         ended with code 0\n");
  Run(u"C:\\b.exe", load);
  EXPECT_EQ(Lines(),
            "b         started: C:\\b.exe \n"
            "b         loaded library C:\\X.DLL\n"
            "b         ended with code 0\n");
}

TEST_F(EventLines, AStartIsToldOnceWithTheParametersThatItBrings) {
  EventPrinter printer(machine, false, out);
  machine.files().WriteUtf16(u"C:\\K.tmp", u"/P1 \"a\"");
  machine.programs().Add(u"C:\\b.exe", [](const char16_t*) { return 0U; });
  Run(u"C:\\a.exe", [] {
    platform::ProcessInformation started;
    char16_t commandLine[] = u"C:\\b.exe /FU \"C:\\K.tmp\"";
    platform::Os().process.CreateProcessW(commandLine, &started);
    platform::Os().objects.CloseHandle(started.process);
    platform::Os().objects.CloseHandle(started.thread);
  });
  EXPECT_EQ(Lines(),
            "a         started: C:\\a.exe \n"
            "a         started C:\\b.exe: C:\\b.exe /FU \"C:\\K.tmp\"\n"
            "a         with the parameters /P \"a\"\n"
            "a         ended with code 0\n"
            "b         ended with code 0\n");
}

TEST_F(EventLines, NothingIsToldWhenNobodyPrints) {
  { EventPrinter printer(machine, true, out); }
  Run(u"C:\\a.exe", [] {});
  EXPECT_EQ(out.str(), "");
}

}  // namespace
}  // namespace desk
