// What choosing an entry of the menu starts: the forms of command texts row by row, what is
// counted, and the parameter file to the byte.
#include "menu/menu_command.h"

#include <tuple>
#include <utility>

#include "Common/text_conversion.h"
#include "tests/menu/menu_command_fixture.h"

namespace vgl {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;

// --- Texts with markers

struct MarkerRow {
  const char* text;
  const char16_t* commandLine;
  std::map<int, std::uint32_t> counts;  // by their numbers
};

class MarkerForm : public MenuCommand, public testing::WithParamInterface<MarkerRow> {};

TEST_P(MarkerForm, StartsItsCommandLineAndIsCounted) {
  Run(GetParam().text);
  EXPECT_THAT(CommandLines(), ElementsAre(std::u16string(GetParam().commandLine)));
  EXPECT_EQ(TakeCounts(), GetParam().counts);
  EXPECT_THAT(desk.TempFiles(), IsEmpty());
  EXPECT_THAT(ShellCommands(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Each, MarkerForm,
    testing::Values(
        MarkerRow{"C:\\Tools\\x.exe /LM", u"C:\\Tools\\x.exe \"P1\"", {{11, 1}}},
        MarkerRow{"C:\\Tools\\ /CISSVALID", u"C:\\Tools\\ic.exe /P \"P1\"", {{11, 1}}},
        MarkerRow{"C:\\Tools\\ /DRVUPDATE", u"C:\\Tools\\np.exe /RUN /MANUAL /P \"P1\"", {{9, 1}}},
        MarkerRow{"C:\\Tools\\ /UPPILOT", u"C:\\Tools\\np.exe /SETUP /P \"P1\"", {{10, 1}}},
        MarkerRow{"C:\\Tools\\x.exe", u"C:\\Tools\\x.exe", {}},
        // With the markers that are only counted.
        MarkerRow{"C:\\Tools\\ /DP /DRVUPDATE",
                  u"C:\\Tools\\np.exe /RUN /MANUAL /P \"P1\"",
                  {{7, 1}, {9, 1}}},
        MarkerRow{"C:\\Tools\\ /UPPILOT /ASMRT",
                  u"C:\\Tools\\np.exe /SETUP /P \"P1\"",
                  {{8, 1}, {10, 1}}},
        MarkerRow{"C:\\Tools\\ /UPPILOT /DRVUPDATE /ASMRT /DP",
                  u"C:\\Tools\\np.exe /RUN /MANUAL /P \"P1\"",
                  {{7, 1}, {8, 1}, {9, 1}}},
        // The first two forms come before those markers.
        MarkerRow{"C:\\Tools\\x.exe /DP /ASMRT /LM", u"C:\\Tools\\x.exe \"P1\"", {{11, 1}}},
        MarkerRow{"C:\\Tools\\ /DP /ASMRT /CISSVALID", u"C:\\Tools\\ic.exe /P \"P1\"", {{11, 1}}},
        MarkerRow{"C:\\Tools\\x.exe /UPPILOT /DRVUPDATE /CISSVALID /LM",
                  u"C:\\Tools\\x.exe \"P1\"",
                  {{11, 1}}},
        MarkerRow{"C:\\Tools\\ /UPPILOT /DRVUPDATE /CISSVALID",
                  u"C:\\Tools\\ic.exe /P \"P1\"",
                  {{11, 1}}}));

// What stands in the parameter file's first line, and what is counted.
TEST_F(MenuCommand, WithArgumentsPutsThemIntoAParameterFile) {
  const std::tuple<const char*, std::string, Counts> texts[] = {
      {"C:\\Tools\\x.exe /DP /Q", "/DP /Q", {{7, 1}}},
      {"C:\\Tools\\x.exe /ASMRT", "/ASMRT", {{8, 1}}},
      {"C:\\Tools\\x.exe /ASMRT:1 /DPI", "/ASMRT:1 /DPI", {{7, 1}, {8, 1}}},
      {"C:\\Tools\\x.exe /Q", "/Q", {}},
      {"C:\\Tools\\x.exe  a  b ", " a  b ", {}},
      {"C:\\Tools\\x.exe ", "", {}},
      {"C:\\Tools\\x.exe a|b", "a|b", {}},
      {"C:\\Tools\\x.exe %s%n%1000000d", "%s%n%1000000d", {}},
  };
  for (const auto& [text, firstLine, counts] : texts) {
    RemoveParameterFiles();
    Run(text);
    EXPECT_EQ(ParameterFile(), Wide(firstLine + kParameters)) << text;
    EXPECT_EQ(LastCommandLine(), u"C:\\Tools\\x.exe /FU \"" + FileName() + u"\"");
    EXPECT_EQ(TakeCounts(), counts) << text;
  }
  EXPECT_EQ(Starts().size(), std::size(texts));
}

TEST_F(MenuCommand, WritesItsParameterFileInUtf16WithoutAMarkAndWithItsTerminator) {
  Run("C:\\Tools\\x.exe /A");
  const std::string bytes = ParameterFile();
  EXPECT_EQ(bytes.substr(0, 6), std::string("/\0A\0\n\0", 6));
  EXPECT_EQ(bytes.substr(bytes.size() - 4), std::string("\"\0\0\0", 4));
}

TEST_F(MenuCommand, NamesItsParameterFileAsTheSuiteDoes) {
  Run("C:\\Tools\\x.exe /A");
  const std::u16string file = FileName();
  const std::u16string folder = desk.machine.system().tempFolder;
  EXPECT_TRUE(file.starts_with(folder + u"K_Q")) << Utf8FromText(file);
  EXPECT_TRUE(file.ends_with(u".tmp")) << Utf8FromText(file);
}

TEST_F(MenuCommand, HandsOverItsParameterFileClosed) {
  bool isFree = false;
  desk.machine.programs().Add(u"C:\\Tools\\x.exe", [&](const char16_t* arguments) {
    const std::u16string text(arguments);
    const OwnedFile file(Os().files.CreateFileW(text.substr(5, text.size() - 6).c_str(),
                                                GENERIC_READ | GENERIC_WRITE, 0, OPEN_EXISTING, 0));
    isFree = static_cast<bool>(file);
    return 0U;
  });
  Run("C:\\Tools\\x.exe /A");
  Os().process.Sleep(10);
  EXPECT_TRUE(isFree);
}

TEST_F(MenuCommand, TellsThePortAsItIsAtTheMomentOfTheClick) {
  desk.machine.spooler().At(u"P1").port = u"USB009:";
  Run("C:\\Tools\\x.exe /A");
  EXPECT_TRUE(ParameterFile().ends_with(Wide("/O \"USB009:\"")));
}

TEST_F(MenuCommand, TellsAnEmptyPortWhereNoneCanBeHad) {
  inside.process().FailNext("GetPrinterW", ERROR_ACCESS_DENIED);
  Run("C:\\Tools\\x.exe /A");
  EXPECT_TRUE(ParameterFile().ends_with(Wide("/O \"\"")));

  RemoveParameterFiles();
  desk.machine.spooler().At(u"P1").port = std::u16string(260, u'o');
  Run("C:\\Tools\\x.exe /A");
  EXPECT_TRUE(ParameterFile().ends_with(Wide("/O \"\"")));

  RemoveParameterFiles();
  desk.machine.spooler().At(u"P1").port = std::u16string(259, u'o');
  Run("C:\\Tools\\x.exe /A");
  EXPECT_TRUE(ParameterFile().ends_with(Wide("/O \"" + std::string(259, 'o') + "\"")));
}

TEST_F(MenuCommand, OfAnAgentWithoutAPrintersNameTellsNoneAndNoPort) {
  context.identity.printerName = u"";
  RunFromRegistry(u"C:\\Tools\\x.exe /A");
  EXPECT_EQ(ParameterFile(), Wide("/A\n/P \"\"\n/M \"S7200\"\n/D \"KAVRO Studio 7200\"\n/O \"\""));
  RunFromRegistry(u"C:\\Tools\\x.exe /LM");
  EXPECT_EQ(LastCommandLine(), u"C:\\Tools\\x.exe \"\"");
}

TEST_F(MenuCommand, WithoutAnInkChangeProgramStartsNothingAndIsCounted) {
  for (const char16_t* vif : {u"", u"C:\\Gone\\GONE.VIF"}) {
    context.vifName = vif;
    Run("C:\\Tools\\ /CISSVALID");
    EXPECT_EQ(TakeCounts(), (Counts{{11, 1}}));
  }
  desk.machine.files().WriteFile(u"C:\\OTHER.VIF", "[InkChg]\r\nINKCHGEXE=\r\n");
  context.vifName = u"C:\\OTHER.VIF";
  Run("C:\\Tools\\ /CISSVALID");
  EXPECT_EQ(TakeCounts(), (Counts{{11, 1}}));
  ExpectNothingDone();
}

TEST_F(MenuCommand, WithoutNetPilotStartsWhatTheTextAloneGives) {
  context.netPilotName = u"";
  Run("C:\\Tools\\x.exe /UPPILOT");
  EXPECT_THAT(CommandLines(), ElementsAre(u"C:\\Tools\\x.exe /SETUP /P \"P1\""));
}

TEST_F(MenuCommand, BelowId950IsNeverSplitAtABar) {
  Run("C:\\Tools\\x.exe|/x", 949);
  EXPECT_EQ(LastAskedFor(), "C:\\Tools\\x.exe|/x");
  Run("C:\\Tools\\x.exe /x|/y", 949);
  EXPECT_EQ(ParameterFile(), Wide(std::string("/x|/y") + kParameters));
  EXPECT_THAT(ShellCommands(), IsEmpty());
}

// --- Plain texts

TEST_F(MenuCommand, FromId950OnIsCarriedOutByTheShell) {
  const std::tuple<std::uint32_t, const char*, std::u16string> texts[] = {
      {950, "C:\\a.exe|/x /y", u"C:\\a.exe|/x /y"},
      {950, "C:\\a.exe /x", u"C:\\a.exe|/x"},
      {951, "x:/y/z", u"x:|/y/z"},
      {998, "C:\\a.exe", u"C:\\a.exe|"},
      {998, " C:\\My Tools\\a.exe | b ", u"C:\\My Tools\\a.exe|b"},
      {960, "https://a.example/b|", u"https://a.example/b|"},
      // Whatever the id stands for, and whatever markers the text holds.
      {999, "C:\\a.exe", u"C:\\a.exe|"},
      {65535, "C:\\Tools\\ /UPPILOT", u"C:\\Tools\\|/UPPILOT"},
      {970, "C:\\Tools\\x.exe /LM", u"C:\\Tools\\x.exe|/LM"},
  };
  for (const auto& [id, text, asked] : texts) {
    Run(text, id);
    EXPECT_EQ(LastShellCommand(), asked) << text;
  }
  EXPECT_EQ(ShellCommands().size(), std::size(texts));
  EXPECT_EQ(TakeCounts(), Counts{});
  EXPECT_THAT(desk.TempFiles(), IsEmpty());
}

TEST_F(MenuCommand, FromId950OnIsNeitherAUtilityNorADriverUpdate) {
  desk.AddToProfile("UTILITY=K_UTIL.DLL");
  desk.SetDriverValue("DriverUpdateName", "C:\\Up\\UPD.EXE");
  Run("%sUPD.EXE K_UTIL.DLL /U2", 950);
  EXPECT_THAT(ShellCommands(), ElementsAre(u"%sUPD.EXE K_UTIL.DLL|/U2"));
  EXPECT_EQ(utyCall.hSemaphore, HANDLE{});
}

// --- Utilities

class UtilityCommand : public MenuCommand {
 protected:
  UtilityCommand() { desk.AddToProfile("UTILITY=K_UTIL.DLL"); }
  // Runs it and waits for its thread, whose handle stays.
  void RunUtility(const std::string& text) {
    Run(text);
    utyCall.CheckUtyCall(1);
    held = inside.process().Ledger();
    EXPECT_EQ(held.size(), 2U);
  }
};

TEST_F(UtilityCommand, CallsIntoTheLibrary) {
  RunUtility("C:\\D\\K_UTIL.DLL /U2");
  EXPECT_EQ(utyCall.szModulePath.view(), u"C:\\D\\K_UTIL.DLL");
  EXPECT_EQ(utyCall.nFunction, 2);
  EXPECT_EQ(utyCall.szPrinterName.view(), u"P1");
  EXPECT_THAT(CommandLines(), IsEmpty());
}

TEST_F(UtilityCommand, ThatNamesTheUpdateProgramTooIsAUtility) {
  desk.SetDriverValue("DriverUpdateName", "C:\\Up\\UPD.EXE");
  RunUtility("C:\\D\\K_UTIL.DLL /U3 UPD.EXE /UPPILOT /LM");
  EXPECT_EQ(utyCall.nFunction, 3);
  EXPECT_THAT(ShellCommands(), IsEmpty());
  EXPECT_THAT(CommandLines(), IsEmpty());
  EXPECT_EQ(TakeCounts(), Counts{});
}

// It stays one, and isn't run as anything else.
TEST_F(UtilityCommand, WithoutANumberDoesNothing) {
  Run("C:\\Tools\\x.exe K_UTIL.DLL /LM");
  EXPECT_THAT(CommandLines(), IsEmpty());
  EXPECT_EQ(TakeCounts(), Counts{});
  EXPECT_EQ(utyCall.hThread, HANDLE{});
  held = inside.process().Ledger();
  EXPECT_EQ(held.size(), 1U);  // the semaphore
}

TEST_F(UtilityCommand, InOtherLettersIsNone) {
  Run("C:\\Tools\\x.exe k_util.dll /U2");
  EXPECT_EQ(ParameterFile(), Wide(std::string("k_util.dll /U2") + kParameters));
  EXPECT_EQ(utyCall.hSemaphore, HANDLE{});
}

// --- Driver updates

class DriverUpdateCommand : public MenuCommand {
 protected:
  DriverUpdateCommand() {
    desk.SetDriverValue("DriverUpdateName", "C:\\Up\\Upd.exe");
    desk.machine.files().WriteFile(u"C:\\Up\\UPD.EXE", "");
  }
};

TEST_F(DriverUpdateCommand, RunsByTheShellFromTheFolderOfTheProgram) {
  Run("%sUPD.EXE  /auto /q");
  EXPECT_THAT(ShellCommands(), ElementsAre(u"C:\\Up\\UPD.EXE|/auto /q"));
  EXPECT_THAT(CommandLines(), ElementsAre(u"\"C:\\Up\\UPD.EXE\" /auto /q"));
  EXPECT_EQ(TakeCounts(), Counts{});
  EXPECT_THAT(desk.TempFiles(), IsEmpty());
}

TEST_F(DriverUpdateCommand, ComesBeforeEveryMarker) {
  Run("%sUPD.EXE /LM /CISSVALID /DP /ASMRT /DRVUPDATE /UPPILOT");
  EXPECT_THAT(ShellCommands(),
              ElementsAre(u"C:\\Up\\UPD.EXE|/LM /CISSVALID /DP /ASMRT /DRVUPDATE /UPPILOT"));
  EXPECT_EQ(TakeCounts(), Counts{});
}

// The shield is drawn beside it all the same.
TEST_F(DriverUpdateCommand, WithTheNameInOtherLettersIsNone) {
  Run("C:\\Tools\\x.exe upd.exe");
  EXPECT_EQ(ParameterFile(), Wide(std::string("upd.exe") + kParameters));
  Run("%sUpd.exe");
  EXPECT_EQ(LastAskedFor(), "%sUpd.exe");
  EXPECT_THAT(ShellCommands(), IsEmpty());
}

TEST_F(DriverUpdateCommand, TextServesAsAFormatWithoutHarm) {
  const std::pair<const char*, std::u16string> texts[] = {
      {"%s%s%sUPD.EXE", u"C:\\Up\\%s%sUPD.EXE|"},
      {"%nUPD.EXE", u"%nUPD.EXE|"},
      {"%1000000dUPD.EXE /%s", u"%1000000dUPD.EXE|/C:\\Up\\"},
      {"%%UPD.EXE %d", u"%UPD.EXE %d|"},
      {"UPD.EXE%", u"UPD.EXE%|"},
  };
  for (const auto& [text, asked] : texts) {
    Run(text);
    EXPECT_EQ(LastShellCommand(), asked) << text;
  }
}

TEST_F(DriverUpdateCommand, OfAProgramWithoutAFolderHasNone) {
  desk.SetDriverValue("DriverUpdateName", "UPD.EXE");
  Run("%sUPD.EXE /a");
  EXPECT_THAT(ShellCommands(), ElementsAre(u"UPD.EXE|/a"));
}

TEST_F(DriverUpdateCommand, IsNoneWhereTheSetHasNoNameOfIt) {
  for (const char* path : {"", "C:\\Up\\"}) {
    desk.SetDriverValue("DriverUpdateName", path);
    Run("C:\\Tools\\x.exe UPD.EXE");
    EXPECT_EQ(ParameterFile(), Wide(std::string("UPD.EXE") + kParameters)) << path;
    RemoveParameterFiles();
  }
  EXPECT_THAT(ShellCommands(), IsEmpty());
}

TEST_F(DriverUpdateCommand, ThatTheShellRefusesIsNotTold) {
  inside.process().FailNext("ShellExecuteW", 31);
  Run("%sUPD.EXE");
  EXPECT_THAT(CommandLines(), IsEmpty());
  EXPECT_THAT(desk.BoxesShown(), IsEmpty());
}

// --- The text of the moment

TEST_F(MenuCommand, IsWhatTheSetSaysAtTheMomentOfTheClick) {
  Run("C:\\Tools\\x.exe");
  Run("C:\\Tools\\ic.exe");
  EXPECT_THAT(CommandLines(), ElementsAre(u"C:\\Tools\\x.exe", u"C:\\Tools\\ic.exe"));
  Run("");
  EXPECT_EQ(Starts().size(), 2U);
}

TEST_F(MenuCommand, WithoutATextDoesNothingWhateverItsId) {
  for (const std::uint32_t id : {0U, 900U, 901U, 919U, 920U, 949U, 950U, 998U, 999U, 65535U})
    RunMenuCommand(context, id);
  ExpectNothingDone();
  EXPECT_EQ(TakeCounts(), Counts{});
}

TEST_F(MenuCommand, OfTheMenusHeadRunsLikeAnyOtherWhereThereIsOne) {
  Run("C:\\Tools\\x.exe", 900);
  Run("C:\\Tools\\x.exe /LM", 901);
  EXPECT_THAT(CommandLines(), ElementsAre(u"C:\\Tools\\x.exe", u"C:\\Tools\\x.exe \"P1\""));
  EXPECT_EQ(TakeCounts(), (Counts{{11, 1}}));
}

TEST_F(MenuCommand, ComesFromTheRegistryWhereTheProfileSaysSo) {
  desk.SetMenuValue("920", "C:\\Tools\\x.exe");
  RunFromRegistry(u"C:\\Tools\\ic.exe");
  EXPECT_THAT(CommandLines(), ElementsAre(u"C:\\Tools\\ic.exe"));
}

TEST_F(MenuCommand, OfADriverWithALongNameIsNone) {
  const std::u16string driver(259, u'd');
  context.identity.driverName = driver.c_str();
  Run("C:\\Tools\\x.exe");
  ExpectNothingDone();
}

// --- The tray log

// Where each value was looked for is logged with a line end of its own.
TEST_F(MenuCommand, IsLoggedByItsKind) {
  Run("C:\\Tools\\x.exe");
  Run("C:\\a.exe|/x /y", 950);
  EXPECT_THAT(
      desk.LogTexts(),
      ElementsAre("OnAux() Dat reading Ember", "GetDriverUpdateExeName() Dat reading Ember",
                  "CMainFrame::OnUniAux", "CMainFrame::StartExe : lpszCmdLine : C:\\Tools\\x.exe",
                  "OnAux() Dat reading Ember", "over ID:950 param : C:\\a.exe|/x /y"));
}

}  // namespace
}  // namespace vgl
