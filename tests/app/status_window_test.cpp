// The status window and the preferences window: how the run helper is found, and what the user sees
// when it can't be.
#include <gtest/gtest.h>

#include "Common/tray_log.h"
#include "desk/run_helper.h"
#include "menu/menu_head.h"
#include "tests/support/frame_fixture.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;

constexpr char16_t kStatusText[] =
    u"KAVRO Vigil 3: \r\nUnable to open Printer Status window for this printer.";
constexpr char16_t kPreferencesText[] =
    u"KAVRO Vigil 3: \r\nUnable to open Monitoring Preferences window for this printer.";
constexpr char16_t kBusyText[] =
    u"Printer Status: A printer driver is being installed. Try again later.";

constexpr char16_t kInstallDescription[] =
    u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\KS7200.DAT";
// With two backslashes: the folder comes with one, and another is put between.
constexpr char16_t kDefaultHelper[] =
    u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\\\K_QD21RX.EXE";

// The driver set's install description with these lines for its values.
std::string Description(const std::string& lines, const std::string& driver = "KAVRO Studio 7200") {
  return "[Install]\r\nREGPATH=DRV,\"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Driver\\" + driver +
         "\"\r\nREGENTER=DRV,\"Profile\",DRIVERDIR+\"\\KS7200.INI\"\r\n" + lines;
}
constexpr char kInstallPath[] = "REGENTER=DRV,\"InstallPath\",DRIVERDIR\r\n";

class StatusWindow : public testing::Test {
 protected:
  StatusWindow() { desk.machine.desktop().AnswerBoxesAtOnce(); }

  const std::vector<sim::Programs::Start>& Starts() { return desk.machine.programs().Starts(); }
  void Describe(const std::string& lines) {
    desk.machine.files().WriteFile(kInstallDescription, Description(lines));
  }
  // The program that a command starts; empty when none. No file may be left then.
  std::u16string StartedBy(const SimAgent& agent, std::uint32_t command) {
    const std::size_t before = Starts().size();
    const std::size_t files = desk.TempFiles().size();
    agent.Post(WM_COMMAND, command);
    EXPECT_EQ(desk.TempFiles().size() - files, Starts().size() - before);
    if (Starts().size() == before) return u"";
    const std::u16string& line = Starts().back().commandLine;
    return line.substr(0, line.find(u" /FU"));
  }

  SimDesk desk;
};

// --- Where the run helper is

TEST_F(StatusWindow, IsOpenedByTheProgramThatTheDriverNames) {
  desk.machine.files().WriteFile(u"C:\\Own\\HELPER.EXE", "");
  Describe(std::string(kInstallPath) + "REGENTER=DRV,\"K_QRX\",\"C:\\Own\\HELPER.EXE\"\r\n");
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(StartedBy(agent, IDM_STATUS), u"C:\\Own\\HELPER.EXE");
  EXPECT_EQ(StartedBy(agent, IDM_SET_ENV), u"C:\\Own\\HELPER.EXE");
}

TEST_F(StatusWindow, IsOpenedByTheDefaultProgramWhereTheNamedOneIsntThere) {
  Describe(std::string(kInstallPath) + "REGENTER=DRV,\"K_QRX\",\"C:\\Own\\GONE.EXE\"\r\n");
  EXPECT_EQ(StartedBy(desk.StartedAgent(), IDM_STATUS), kDefaultHelper);
}

TEST_F(StatusWindow, IsOpenedByTheDefaultProgramWhereNoneIsNamed) {
  Describe(kInstallPath);
  EXPECT_EQ(StartedBy(desk.StartedAgent(), IDM_SET_ENV), kDefaultHelper);
}

TEST_F(StatusWindow, CantBeOpenedWhereThereIsNeitherProgram) {
  Describe(std::string(kInstallPath) + "REGENTER=DRV,\"K_QRX\",\"C:\\Own\\GONE.EXE\"\r\n");
  desk.machine.files().Remove(desk::kRunHelperPath);
  EXPECT_EQ(StartedBy(desk.StartedAgent(), IDM_STATUS), u"");
  EXPECT_EQ(desk.BoxesShown(), Texts{kStatusText});
}

TEST_F(StatusWindow, CantBeOpenedWithoutAProgramFolder) {
  const SimAgent agent = desk.StartedAgent();
  for (const char* lines : {"", "REGENTER=DRV,\"InstallPath\",\"C:\\Gone\"\r\n"}) {
    Describe(lines);
    EXPECT_EQ(StartedBy(agent, IDM_STATUS), u"") << lines;
  }
  EXPECT_EQ(desk.BoxesShown(), (Texts{kStatusText, kStatusText}));
}

// Nothing of the driver set is kept from one use to the next.
TEST_F(StatusWindow, IsLookedForAnewEachTime) {
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(StartedBy(agent, IDM_STATUS), desk::kRunHelperPath);
  desk.machine.files().WriteFile(u"C:\\Own\\HELPER.EXE", "");
  Describe("REGENTER=DRV,\"K_QRX\",\"C:\\Own\\HELPER.EXE\"\r\n");
  EXPECT_EQ(StartedBy(agent, IDM_STATUS), u"C:\\Own\\HELPER.EXE");
  Describe("");
  EXPECT_EQ(StartedBy(agent, IDM_STATUS), u"");
}

TEST_F(StatusWindow, CantBeOpenedByAFileThatIsNoProgram) {
  desk.machine.files().WriteFile(u"C:\\Own\\HELPER.TXT", "");
  Describe(std::string(kInstallPath) + "REGENTER=DRV,\"K_QRX\",\"C:\\Own\\HELPER.TXT\"\r\n");
  EXPECT_EQ(StartedBy(desk.StartedAgent(), IDM_STATUS), u"");
  EXPECT_EQ(desk.BoxesShown(), Texts{kStatusText});
}

// "Software\KAVRO\VGL3\Driver\" has 27 characters, the driver's key 259 at most.
class LongDriverName : public FrameTest {
 protected:
  bool Opens(std::size_t length) {
    const std::string name(length, 'd');
    machine.files().WriteFile(
        kInstallDescription,
        Description("REGENTER=DRV,\"K_QRX\",DRIVERDIR+\"\\K_QD21RX.EXE\"\r\n", name));
    EXPECT_TRUE(frame->m_szDriverName.Assign(std::u16string(length, u'd')));
    const std::size_t before = machine.programs().Starts().size();
    Send(WM_COMMAND, IDM_STATUS);
    return machine.programs().Starts().size() > before;
  }
};

TEST_F(LongDriverName, OfMoreThan232CharactersFailsTheAction) {
  machine.desktop().AnswerBoxesAtOnce();
  EXPECT_TRUE(Opens(232));
  EXPECT_FALSE(Opens(233));
  EXPECT_FALSE(Opens(259));
}

// --- What the user sees

class FailedWindow : public StatusWindow,
                     public testing::WithParamInterface<std::pair<std::uint32_t, const char16_t*>> {
};

TEST_P(FailedWindow, IsToldOfWithItsOwnText) {
  const auto& [command, text] = GetParam();
  desk.machine.files().Remove(desk::kRunHelperPath);
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(StartedBy(agent, command), u"");
  EXPECT_EQ(desk.BoxesShown(), Texts{text});
  EXPECT_FALSE(agent.HasEnded());
}

TEST_P(FailedWindow, LeavesNoParameterFileWhereTheProgramCantBeStarted) {
  const auto& [command, text] = GetParam();
  const SimAgent agent = desk.StartedAgent();
  agent.process().FailNext("CreateProcessW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(StartedBy(agent, command), u"");
  EXPECT_EQ(desk.BoxesShown(), Texts{text});
  EXPECT_EQ(desk.TempFiles(), Texts{});
  // The next one is as if nothing had been.
  EXPECT_EQ(StartedBy(agent, command), desk::kRunHelperPath);
}

TEST_P(FailedWindow, IsntCounted) {
  const SimAgent agent = desk.StartedAgent();
  const std::vector<std::uint32_t> before = agent.Counts();
  agent.process().FailNext("CreateProcessW", ERROR_ACCESS_DENIED);
  agent.Post(WM_COMMAND, GetParam().first);
  EXPECT_EQ(agent.Counts(), before);
}

TEST_P(FailedWindow, IsBusyWhileAnInstallerIsAtWork) {
  const SimAgent agent = desk.StartedAgent();
  const std::vector<std::uint32_t> before = agent.Counts();
  sim::Process& installer = desk.StartInstaller();
  EXPECT_EQ(StartedBy(agent, GetParam().first), u"");
  EXPECT_EQ(desk.BoxesShown(), Texts{kBusyText});
  EXPECT_EQ(agent.Counts(), before);
  desk.machine.EndProcess(installer);
  EXPECT_EQ(StartedBy(agent, GetParam().first), desk::kRunHelperPath);
}

// An installer at work has the first word: nothing else is looked for.
TEST_P(FailedWindow, IsBusyAlsoWhereThereIsNoProgram) {
  desk.machine.files().Remove(desk::kRunHelperPath);
  const SimAgent agent = desk.StartedAgent();
  desk.StartInstaller();
  agent.Post(WM_COMMAND, GetParam().first);
  EXPECT_EQ(desk.BoxesShown(), Texts{kBusyText});
}

TEST_P(FailedWindow, HoldsTheAgentsWindowUntilItsBoxIsClosed) {
  SimDesk other;
  other.machine.files().Remove(desk::kRunHelperPath);
  const SimAgent agent = other.StartedAgent();
  agent.Post(WM_COMMAND, GetParam().first);
  ASSERT_EQ(other.machine.desktop().Boxes().size(), 1U);
  EXPECT_EQ(other.machine.desktop().Boxes()[0]->owner, agent.Window()->handle);
  EXPECT_FALSE(agent.Window()->enabled);
  other.machine.desktop().Answer(*other.machine.desktop().Boxes()[0]);
  other.machine.Settle();
  EXPECT_TRUE(agent.Window()->enabled);
}

TEST_P(FailedWindow, GoesWithItsAgentWhenThePrinterIsDeletedWhileItsBoxIsOpen) {
  SimDesk other;
  other.machine.files().Remove(desk::kRunHelperPath);
  const SimAgent agent = other.StartedAgent();
  agent.Post(WM_COMMAND, GetParam().first);
  ASSERT_EQ(other.machine.desktop().Boxes().size(), 1U);
  other.DeletePrinter();
  EXPECT_TRUE(other.machine.RunUntilEnded(agent.process(), 3000));
  EXPECT_TRUE(other.machine.desktop().Boxes().empty());
  EXPECT_EQ(agent.Ledger(), Texts{});
}

INSTANTIATE_TEST_SUITE_P(BothWindows, FailedWindow,
                         testing::Values(std::pair{IDM_STATUS, kStatusText},
                                         std::pair{IDM_SET_ENV, kPreferencesText}),
                         [](const auto& each) {
                           return each.param.first == IDM_STATUS ? "Status" : "Preferences";
                         });

TEST_F(StatusWindow, IsBusyWhereTheInstallerBeganWhileTheMenuWasOpen) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  desk.StartInstaller();
  agent.Choose(IDM_STATUS);
  EXPECT_EQ(desk.BoxesShown(), Texts{kBusyText});
}

// The text was read at the start: no library is loaded by now, and none need be there.
TEST_F(StatusWindow, IsBusyInTheLanguageOfTheStart) {
  const SimAgent agent = desk.StartedAgent();
  desk.machine.files().Remove(desk::kResourceLibraryPath);
  desk.StartInstaller();
  agent.Post(WM_COMMAND, IDM_STATUS);
  EXPECT_EQ(desk.BoxesShown(), Texts{kBusyText});
}

TEST_F(StatusWindow, IsBusyWithEmptyTextsWhereTheLibraryHasNone) {
  desk::ResourceLibrary library = desk::PlainResourceLibrary();
  library.strings.clear();
  desk.SetResourceLibrary(library);
  const SimAgent agent = desk.StartedAgent();
  desk.StartInstaller();
  agent.Post(WM_COMMAND, IDM_STATUS);
  EXPECT_EQ(desk.BoxesShown(), Texts{u": "});
}

// Every other failure to open the printer is passed over here.
TEST_F(StatusWindow, IsOpenedWhereThePrinterCouldntBeOpenedForAMoment) {
  const SimAgent agent = desk.StartedAgent();
  for (const char* operation : {"CreateMutexW", "OpenPrinterW"}) {
    agent.process().FailNext(operation, ERROR_ACCESS_DENIED);
    EXPECT_EQ(StartedBy(agent, IDM_STATUS), desk::kRunHelperPath) << operation;
  }
}

TEST_F(StatusWindow, OfADeviceWithoutAPrintersNameIsOpenedAndBusyAlike) {
  constexpr char16_t kRecord[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVNTarget\\P0000000000000000";
  desk.machine.registry().SetString(HKEY_CURRENT_USER, kRecord, u"Name", u"LPT2");
  desk.machine.registry().SetDword(HKEY_CURRENT_USER, kRecord, u"TrayIconEnable", 1);
  const SimAgent agent = desk.StartedAgent(u"/D \"KAVRO Studio 7200\" /O \"LPT2\" /M \"S7200\"");
  EXPECT_EQ(StartedBy(agent, IDM_STATUS), desk::kRunHelperPath);
  desk.StartInstaller();
  EXPECT_EQ(StartedBy(agent, IDM_SET_ENV), u"");
  EXPECT_EQ(desk.BoxesShown(), Texts{kBusyText});
}

// --- Counts

TEST_F(StatusWindow, IsCountedAsItemTwo) {
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, IDM_STATUS);
  agent.DoubleClick();
  EXPECT_EQ(agent.Counts(), (std::vector<std::uint32_t>{0, 1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(StatusWindow, PreferencesAreCountedAsItemThree) {
  const SimAgent agent = desk.StartedAgent();
  for (int time = 0; time < 3; ++time) agent.Post(WM_COMMAND, IDM_SET_ENV);
  EXPECT_EQ(agent.Counts(), (std::vector<std::uint32_t>{0, 1, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(StatusWindow, OfAModelThatIsntCountedOpensAllTheSame) {
  desk.AddToProfile("VGL_LOG=0");
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(StartedBy(agent, IDM_STATUS), desk::kRunHelperPath);
  EXPECT_EQ(StartedBy(agent, IDM_SET_ENV), desk::kRunHelperPath);
  EXPECT_EQ(agent.Counts(), std::vector<std::uint32_t>{});
}

// --- With the run helper

TEST_F(StatusWindow, TellsTheRunHelperWhichPrinterAndWhichWindow) {
  desk.machine.programs().Add(desk::kRunHelperPath, desk::RunHelperMain);
  const SimAgent agent = desk.StartedAgent();
  agent.DoubleClick();
  agent.Post(WM_COMMAND, IDM_SET_ENV);
  EXPECT_EQ(desk.machine.files().ReadFile(desk::kRunHelperLog),
            "status window: printer \"Studio 7200\", port \"USB001\", model \"S7200\"\n"
            "preferences window: printer \"Studio 7200\", port \"USB001\", model \"S7200\"\n");
  EXPECT_EQ(desk.TempFiles(), Texts{});
}

TEST_F(StatusWindow, TwoActionsInARowStartTwoProcessesWithAFileEach) {
  const SimAgent agent = desk.StartedAgent();
  agent.DoubleClick();
  agent.DoubleClick();
  ASSERT_EQ(Starts().size(), 2U);
  EXPECT_NE(Starts()[0].arguments, Starts()[1].arguments);
  EXPECT_EQ(desk.TempFiles().size(), 2U);
}

// It blocks for the lookups, not for the program.
TEST_F(StatusWindow, DoesntKeepTheAgentWaitingForTheProgram) {
  desk.machine.programs().Add(desk::kRunHelperPath, [](const char16_t*) {
    Os().process.Sleep(3600 * 1000);
    return 9U;
  });
  const SimAgent agent = desk.StartedAgent();
  agent.DoubleClick();
  agent.RightClick();
  EXPECT_TRUE(agent.MenuIsOpen());
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_EQ(agent.Ledger(), Texts{});
}

}  // namespace
}  // namespace vgl
