// Entries of the menu that can't be run, and command texts that nobody would write.
#include <set>
#include <tuple>
#include <utility>

#include "Common/text_conversion.h"
#include "tests/menu/menu_command_fixture.h"

namespace vgl {
namespace {

using namespace platform;
using testing::IsEmpty;

using OddMenuCommand = MenuCommand;

// --- What can't be done

TEST_F(OddMenuCommand, WhoseProgramDoesntStartIsCountedAndNotTold) {
  const std::pair<const char*, Counts> texts[] = {
      {"C:\\Gone\\x.exe /LM", {{11, 1}}},
      {"C:\\Gone\\ /CISSVALID", {{11, 1}}},
      {"C:\\Gone\\ /DP /ASMRT /DRVUPDATE", {{7, 1}, {8, 1}, {9, 1}}},
      {"C:\\Gone\\ /UPPILOT", {{10, 1}}},
      {"C:\\Gone\\x.exe", {}},
  };
  for (const auto& [text, counts] : texts) {
    Run(text);
    EXPECT_EQ(TakeCounts(), counts) << text;
  }
  Run("C:\\Gone\\x.exe|/a", 950);
  EXPECT_THAT(CommandLines(), IsEmpty());
  EXPECT_THAT(desk.BoxesShown(), IsEmpty());
  EXPECT_THAT(desk.TempFiles(), IsEmpty());
}

// It is the program's from the moment on that it is written.
TEST_F(OddMenuCommand, LeavesTheParameterFileOfAProgramThatDoesntStart) {
  Run("C:\\Gone\\x.exe /DP");
  EXPECT_THAT(CommandLines(), IsEmpty());
  EXPECT_THAT(desk.BoxesShown(), IsEmpty());
  EXPECT_EQ(ParameterFile(), Wide(std::string("/DP") + kParameters));
  EXPECT_EQ(TakeCounts(), (Counts{{7, 1}}));
}

TEST_F(OddMenuCommand, WithoutATempFolderStartsNothingThatTakesAFile) {
  desk.machine.system().tempFolder = u"C:\\Gone\\";
  Run("C:\\Tools\\x.exe /A");
  EXPECT_THAT(CommandLines(), IsEmpty());
  EXPECT_THAT(desk.BoxesShown(), IsEmpty());
  Run("C:\\Tools\\x.exe");
  EXPECT_EQ(Starts().size(), 1U);
}

// Whatever fails: the program has its whole file, or there is neither.
TEST_F(OddMenuCommand, StartsWithItsWholeParameterFileOrLeavesNoneWhateverFails) {
  g_bTrayLogEnabled = 0;
  desk.SetMenuValue("920", "C:\\Tools\\x.exe /A");
  const std::uint64_t before = inside.process().calls();
  RunMenuCommand(context, 920);
  const std::uint64_t calls = inside.process().calls() - before;
  std::set<std::string> withoutStart;
  for (std::uint64_t number = 1; number <= calls; ++number) {
    RemoveParameterFiles();
    const std::size_t starts = Starts().size();
    inside.process().FailCall(number);
    RunMenuCommand(context, 920);
    const std::string& failed = inside.process().failedOperation();
    SCOPED_TRACE(std::to_string(number) + " " + failed);
    const bool hasStarted = Starts().size() == starts + 1;
    const bool wasAskedFor = hasStarted || failed == "CreateProcessW";
    EXPECT_EQ(desk.TempFiles().size(), wasAskedFor ? 1U : 0U);
    if (wasAskedFor) {
      EXPECT_TRUE(ParameterFile().starts_with(Utf16LeFromText(u"/A\n/P \"P1\"\n/M \"S7200\"")));
    }
    if (!hasStarted) withoutStart.insert(failed);
    EXPECT_THAT(inside.process().Ledger(), IsEmpty());
  }
  EXPECT_THAT(desk.BoxesShown(), IsEmpty());
  for (const char* step :
       {"GetTempPathW", "GetTempFileNameW", "CreateFileW", "WriteFile", "CreateProcessW"})
    EXPECT_TRUE(withoutStart.contains(step)) << step;
}

TEST_F(OddMenuCommand, LeavesNothingOpenWhateverFails) {
  g_bTrayLogEnabled = 0;
  desk.SetDriverValue("DriverUpdateName", "C:\\Up\\UPD.EXE");
  const std::pair<std::uint32_t, const char*> texts[] = {
      {921, "C:\\Tools\\ /CISSVALID"},
      {922, "C:\\Tools\\ /UPPILOT"},
      {923, "%sUPD.EXE /a"},
      {950, "C:\\Tools\\x.exe|/x /y"},
  };
  for (const auto& [id, text] : texts) {
    desk.SetMenuValue(std::to_string(id), text);
    const std::uint64_t before = inside.process().calls();
    RunMenuCommand(context, id);
    const std::uint64_t calls = inside.process().calls() - before;
    for (std::uint64_t number = 1; number <= calls; ++number) {
      g_VglLog.get().Clear();
      const std::size_t starts = Starts().size();
      inside.process().FailCall(number);
      RunMenuCommand(context, id);
      EXPECT_THAT(inside.process().Ledger(), IsEmpty()) << text << number;
      EXPECT_LE(Starts().size(), starts + 1) << text << number;
    }
  }
  EXPECT_THAT(desk.BoxesShown(), IsEmpty());
}

TEST_F(OddMenuCommand, WaitsForNothingThatItStarts) {
  const auto runLong = [](const char16_t*) {
    Os().process.Sleep(60000);
    return 0U;
  };
  desk.machine.programs().Add(u"C:\\Tools\\x.exe", runLong);
  const std::uint64_t now = desk.machine.now();
  Run("C:\\Tools\\x.exe");
  Run("C:\\Tools\\x.exe /LM");
  Run("C:\\Tools\\x.exe /A");
  Run("C:\\Tools\\x.exe|/x", 950);
  EXPECT_EQ(Starts().size(), 4U);
  EXPECT_EQ(desk.machine.now(), now);
}

// --- Texts that nobody would write

TEST_F(OddMenuCommand, AsksForNoMoreThanAnOddTextSays) {
  const std::pair<const char*, std::string> texts[] = {
      {"%s", "%s"},
      {"%n", "%n"},
      {"%1000000d", "%1000000d"},
      {"%s%s%s", "%s%s%s"},
      {" /LM", " \"P1\""},
      {" /CISSVALID", "ic.exe /P \"P1\""},
      {" /DRVUPDATE", "np.exe /RUN /MANUAL /P \"P1\""},
      {" /UPPILOT", "np.exe /SETUP /P \"P1\""},
      {" /LM /CISSVALID /DP /ASMRT /DRVUPDATE /UPPILOT", " \"P1\""},
      {"%s%n /LM", "%s%n \"P1\""},
  };
  for (const auto& [text, asked] : texts) {
    Run(text);
    EXPECT_EQ(LastAskedFor(), asked) << text;
  }
  EXPECT_THAT(CommandLines(), IsEmpty());
  EXPECT_THAT(ShellCommands(), IsEmpty());
  EXPECT_THAT(desk.BoxesShown(), IsEmpty());
}

TEST_F(OddMenuCommand, OfBlanksOrCountedMarkersAloneHasAParameterFileAndNoProgram) {
  const std::tuple<const char*, std::string, Counts> texts[] = {
      {" ", "", {}},
      {"    ", "   ", {}},
      {" /DP", "/DP", {{7, 1}}},
      {" /DP /ASMRT", "/DP /ASMRT", {{7, 1}, {8, 1}}},
  };
  for (const auto& [text, firstLine, counts] : texts) {
    RemoveParameterFiles();
    Run(text);
    EXPECT_EQ(ParameterFile(), Wide(firstLine + kParameters)) << text;
    EXPECT_EQ(LastAskedFor(), " /FU \"" + Utf8FromText(FileName()) + "\"") << text;
    EXPECT_EQ(TakeCounts(), counts) << text;
  }
  EXPECT_THAT(CommandLines(), IsEmpty());
}

TEST_F(OddMenuCommand, FromId950OnAsksTheShellForWhatAnOddTextSays) {
  const std::pair<const char*, std::u16string> texts[] = {
      {"   ", u"|"},          {"|", u"|"},         {"/", u"|/"},
      {"%s%s%s", u"%s%s%s|"}, {"%n|%s", u"%n|%s"}, {"%1000000d", u"%1000000d|"},
      {"a|b|c", u"a|b|c"},    {"|/LM", u"|/LM"},
  };
  for (const auto& [text, asked] : texts) {
    Run(text, 950);
    EXPECT_EQ(LastShellCommand(), asked) << text;
  }
  EXPECT_THAT(CommandLines(), IsEmpty());
  EXPECT_THAT(desk.BoxesShown(), IsEmpty());
}

// A description's texts have no bound; in the registry they have at most 259 characters.
TEST_F(OddMenuCommand, OfALongTextIsRunWhole) {
  const std::string program = "C:\\Tools\\x.exe ";  // 15 characters
  for (const std::size_t length : {244U, 245U, 1000U}) {
    const std::string arguments(length, 'a');
    RemoveParameterFiles();
    Run(program + arguments);
    EXPECT_EQ(ParameterFile(), Wide(arguments + kParameters)) << length;
  }
  EXPECT_EQ(Starts().size(), 3U);
  Run(std::string(260, 'x'));
  EXPECT_EQ(LastAskedFor(), std::string(260, 'x'));
}

TEST_F(OddMenuCommand, InTheRegistryHas259CharactersAtMost) {
  const std::u16string program = u"C:\\Tools\\x.exe ";
  RunFromRegistry(program + std::u16string(244, u'a'));
  EXPECT_EQ(ParameterFile(), Wide(std::string(244, 'a') + kParameters));
  RunFromRegistry(program + std::u16string(245, u'a'));
  EXPECT_EQ(Starts().size(), 1U);
}

}  // namespace
}  // namespace vgl
