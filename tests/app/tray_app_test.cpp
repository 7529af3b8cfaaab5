// Whole starts and ends of the agent on the simulated machine.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "app/agent_messages.h"
#include "platform/sim/registry_library.h"
#include "tests/support/map_fixture.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

std::u16string DefaultOptions(std::u16string_view more = u"") {
  return desk::OptionsOfDefaultPrinter() + u" " + std::u16string(more);
}

// Virtual time from the start until the window is made; nothing when none is made within ten
// seconds.
std::optional<std::uint64_t> TimeToWindow(SimDesk& desk, std::u16string commandLine) {
  const std::uint64_t start = desk.machine.now();
  const SimAgent agent = desk.StartAgent(std::move(commandLine));
  desk.RunFor(10000);
  for (const sim::Event& event : desk.machine.trace())
    if (event.processId == agent.process().id() && event.text.starts_with(u"made window"))
      return event.time - start;
  return std::nullopt;
}

bool HasSlept(const SimDesk& desk) {
  for (const sim::Event& event : desk.machine.trace())
    if (event.text.starts_with(u"sleeps")) return true;
  return false;
}

TEST(HandOver, TakesAHundredMillisecondsWhereNoAgentRuns) {
  SimDesk desk;
  EXPECT_EQ(TimeToWindow(desk, DefaultOptions()), 100U);
}

TEST(HandOver, TakesSixteenHundredMillisecondsWhereAnyAgentHasAWindow) {
  SimDesk desk;
  desk.StartedAgent(desk.AddPrinter(u"Another"));
  EXPECT_EQ(TimeToWindow(desk, DefaultOptions()), 1600U);
}

TEST(HandOver, StartByTheUsersRunKeyWaitsAsAnyOther) {
  SimDesk desk;
  EXPECT_EQ(TimeToWindow(desk, DefaultOptions(u"/EF \"HKCU\"")), 100U);
  EXPECT_EQ(TimeToWindow(desk, DefaultOptions(u"/EF \"HKCU\"")), 1600U);
}

TEST(HandOver, StartByTheMachinesRunKeyWaitsTwoSecondsWhetherOrNotAnAgentRuns) {
  SimDesk desk;
  EXPECT_EQ(TimeToWindow(desk, DefaultOptions(u"/EF \"HKLM\"")), 2000U);
  EXPECT_EQ(TimeToWindow(desk, DefaultOptions(u"/EF \"HKLM\"")), 2000U);
}

TEST(HandOver, RemovalDoesntLookForAPredecessor) {
  SimDesk desk;
  desk.StartedAgent();
  EXPECT_EQ(TimeToWindow(desk, DefaultOptions(u"/R")), 100U);
  EXPECT_EQ(TimeToWindow(desk, DefaultOptions(u"/R /EF \"HKLM\"")), 2000U);
}

// It comes to the question for a printer or port, which stands behind the wait.
TEST(Start, WithoutPrinterAndPortEndsWithZeroAndNoWindow) {
  SimDesk desk;
  const SimAgent agent = desk.StartAgent(u"/D \"KAVRO Studio 7200\" /M \"S7200\"");
  EXPECT_FALSE(agent.HasEnded());
  desk.RunFor(99);
  EXPECT_FALSE(agent.HasEnded());
  desk.RunFor(1);
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.ExitCode(), 0U);
  for (const char* line :
       {"cmdInfo.m_szPrinterName : ", "cmdInfo.m_szDriverName : KAVRO Studio 7200",
        "cmdInfo.m_szPortName : ", "cmdInfo.m_szModelID : S7200", "cmdInfo.m_IconFrom : 0",
        "cmdInfo.m_fRemove : 0", "cmdInfo.m_fIconInstall : 0", "***** LOG END ******"})
    EXPECT_TRUE(desk.HasLogged(line)) << line;
  for (const sim::Event& event : desk.machine.trace())
    EXPECT_FALSE(event.text.starts_with(u"made window"));
  EXPECT_FALSE(desk.HasLogged("CMainFrame::StartUp"));
  EXPECT_TRUE(agent.process().Ledger().empty());
}

TEST(Start, WithoutADriverOfTheSuiteDoesntComeToTheWait) {
  SimDesk desk;
  const SimAgent agent = desk.StartAgent(u"/M \"S7200\"");
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.ExitCode(), 0U);
  EXPECT_FALSE(HasSlept(desk));
  EXPECT_TRUE(desk.HasLogged("***** LOG END ******"));
}

TEST(Start, WithoutModelIdEndsSilentlyBeforeTheWait) {
  SimDesk desk;
  const SimAgent agent = desk.StartAgent(u"/P \"a\" /D \"KAVRO Studio 7200\" /O \"o\"");
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.ExitCode(), 0U);
  EXPECT_FALSE(HasSlept(desk));
  EXPECT_FALSE(desk.HasLogged("cmdInfo.m_szPrinterName : a"));
}

TEST(Start, OfAnEmptyCommandLineEndsWithZero) {
  SimDesk desk;
  const SimAgent agent = desk.StartAgent(u"");
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.ExitCode(), 0U);
}

TEST(Start, OfAPrinterWhosePortIsUnknownEndsWithZeroAfterTheWait) {
  SimDesk desk;
  const SimAgent agent = desk.StartAgent(u"/P \"a\" /D \"KAVRO Studio 7200\" /M \"m\"");
  EXPECT_FALSE(agent.HasEnded());
  desk.RunFor(5000);
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.ExitCode(), 0U);
  EXPECT_TRUE(agent.process().Ledger().empty());
  EXPECT_FALSE(desk.HasLogged("CMainFrame::StartUp"));
}

TEST(Start, WithoutTheRegistryLibraryOfTheDriverEndsSilently) {
  const std::u16string library = std::u16string(desk::kDriverFolder) + u"\\K_WRDEF1.DLL";
  SimDesk desk;
  desk.machine.files().Remove(library);
  const SimAgent agent = desk.StartAgent();
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.ExitCode(), 0U);
  EXPECT_TRUE(agent.process().Ledger().empty());
  EXPECT_FALSE(desk.HasLogged("cmdInfo.m_szPrinterName : Studio 7200"));
  EXPECT_TRUE(desk.HasLogged("***** LOG END ******"));
  EXPECT_TRUE(desk.machine.desktop().Boxes().empty());
}

TEST(Start, WithoutADriverNameThereIsNoLibraryAndNoAgent) {
  SimDesk desk;
  EXPECT_TRUE(desk.StartAgent(u"/O \"USB001\" /M \"S7200\"").HasEnded());
}

// The install description has another name in the VIF for systems that aren't of the NT family.
constexpr char kOldNameOfDescription[] = "[KAVRO Studio 7200]\r\n52=KS7200.DAT";

TEST(Start, OnASystemThatTheLibraryIsNotForRunsWithoutIt) {
  constexpr OsVersion kSystems[] = {{4, 0, VER_PLATFORM_WIN32_NT, 1}, {5, 1, 1, 1}};
  for (const OsVersion& version : kSystems) {
    SimDesk desk;
    desk.AddToVif(kOldNameOfDescription);
    desk.machine.files().Remove(std::u16string(desk::kDriverFolder) + u"\\K_WRDEF1.DLL");
    desk.machine.system().version = version;
    EXPECT_NE(desk.StartedAgent().Icon(), nullptr) << version.majorVersion;
  }
}

TEST(Start, OnASystemThatDoesntTellItsVersionRunsWithoutIt) {
  SimDesk desk;
  desk.AddToVif(kOldNameOfDescription);
  desk.machine.system().versionIsKnown = false;
  const SimAgent agent = desk.StartedAgent();
  EXPECT_NE(agent.Icon(), nullptr);
  for (const std::u16string& held : agent.Ledger()) EXPECT_FALSE(held.starts_with(u"library "));
}

// The version is asked for again by the load itself.
TEST(Start, WhereTheLoadFindsTheSystemUnfitItEndsSilently) {
  SimDesk desk;
  sim::Process& process = desk::StartAgent(desk.machine, desk::OptionsOfDefaultPrinter());
  process.FailNext("GetVersionExW", ERROR_INVALID_PARAMETER, 1);
  desk.RunFor(5000);
  ASSERT_TRUE(process.ended());
  EXPECT_EQ(process.exitCode(), 0U);
  EXPECT_FALSE(HasSlept(desk));
  EXPECT_TRUE(process.Ledger().empty());
}

TEST(Start, AModelIdOf260CharactersEndsTheProcessAfterTheWindowWasMade) {
  SimDesk desk;
  AddPrintersOfBothMaps(desk.machine);
  desk.machine.files().WriteFile(
      u"C:\\Drivers\\V7 Studio\\A.DAT",
      "[Install]\n"
      "REGPATH=D,\"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Driver\\KAVRO V7 Studio\"\n"
      "REGENTER=D,\"ModelID\",\"" +
          std::string(260, 'm') + "\"\n");
  sim::AddRegistryLibrary(desk.machine, u"C:\\Drivers\\V7 Studio\\K_WRDEF1.DLL");
  const SimAgent agent = desk.StartAgent(u"/P \"V7 Studio\"");
  desk.RunFor(5000);
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.ExitCode(), 0U);
  EXPECT_FALSE(desk.HasLogged("CMainFrame::StartUp"));
  EXPECT_EQ(agent.process().Ledger(), std::vector<std::u16string>{u"window TrayIconWClass"});
}

TEST(Start, OfAPrinterAloneFindsItsDriverPortAndModel) {
  SimDesk desk;
  const SimAgent agent = desk.StartedAgent(u"/P \"Studio 7200\"");
  ASSERT_NE(agent.Window(), nullptr);
  EXPECT_TRUE(desk.HasLogged("cmdInfo.m_szDriverName : KAVRO Studio 7200"));
  EXPECT_TRUE(desk.HasLogged("cmdInfo.m_szPortName : USB001"));
  EXPECT_TRUE(desk.HasLogged("cmdInfo.m_szModelID : S7200"));
}

TEST(Start, PublishesItsWindowInTheMapThatTheDriverNames) {
  SimDesk desk;
  AddPrintersOfBothMaps(desk.machine);
  sim::AddRegistryLibrary(desk.machine, u"C:\\Drivers\\V7 Studio\\K_WRDEF1.DLL");
  desk.StartedAgent(u"/P \"V7 Studio\"");
  EXPECT_TRUE(desk.HasLogged("MapName : VglV7MapFile_Ink"));
  EXPECT_FALSE(desk.HasLogged("MapName : VglV5MapFile_Ink"));
}

TEST(Start, TheLibraryStaysLoadedUntilTheAgentsEnd) {
  SimDesk desk;
  const SimAgent agent = desk.StartedAgent();
  const std::u16string held = u"library " + std::u16string(desk::kDriverFolder) + u"\\K_WRDEF1.DLL";
  const std::vector<std::u16string> ledger = agent.process().Ledger();
  EXPECT_EQ(std::count(ledger.begin(), ledger.end(), held), 1);
  agent.Close();
  EXPECT_TRUE(agent.process().Ledger().empty());
}

TEST(Start, WindowIsHiddenAndBearsTheSuitesClassAndTitle) {
  SimDesk desk;
  const SimAgent agent = desk.StartedAgent();
  ASSERT_NE(agent.Window(), nullptr);
  EXPECT_EQ(agent.Window()->className, u"TrayIconWClass");
  EXPECT_EQ(agent.Window()->title, u"VGL3 TrayIcon");
  EXPECT_EQ(agent.Window()->style, 0x20CF0000U);
  EXPECT_EQ(agent.Window()->exStyle, 0U);
  EXPECT_FALSE(agent.Window()->visible);
}

// Parsing takes no value of 260 characters, so a name that long comes out of a record.
TEST(Start, PrinterNameOf260CharactersEndsTheProcessAfterTheWindowWasMade) {
  SimDesk desk;
  const std::u16string record = u"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget\\P0000000000000001";
  desk.machine.registry().SetString(HKEY_CURRENT_USER, record, u"Name", std::u16string(260, u'n'));
  const SimAgent agent = desk.StartAgent(
      u"/KVT \"KVLTarget\\P0000000000000001\" /D \"KAVRO Studio 7200\" /O \"o\" /M \"m\"");
  desk.RunFor(5000);
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.ExitCode(), 0U);
  EXPECT_EQ(agent.process().Ledger(), std::vector<std::u16string>{u"window TrayIconWClass"});
  EXPECT_FALSE(desk.HasLogged("CMainFrame::StartUp"));
  EXPECT_FALSE(desk.HasLogged("CMainFrame::DestroyWindow"));
  EXPECT_TRUE(desk.HasLogged("***** LOG END ******"));
}

TEST(Start, PrinterNameOf259CharactersRuns) {
  SimDesk desk;
  const SimAgent agent = desk.StartedAgent(desk.AddPrinter(std::u16string(259, u'n')));
  EXPECT_NE(agent.Window(), nullptr);
}

TEST(Start, FlagsReachTheLog) {
  SimDesk desk;
  desk.StartedAgent(DefaultOptions(u"/I /EF \"HKCU\""));
  EXPECT_TRUE(desk.HasLogged("cmdInfo.m_IconFrom : 1"));
  EXPECT_TRUE(desk.HasLogged("cmdInfo.m_fIconInstall : 1"));
}

TEST(Start, WithTheLogOffLeavesNoLogFile) {
  SimDesk desk;
  desk.machine.registry().SetDword(HKEY_CURRENT_USER, u"SOFTWARE\\KAVRO\\VGL3", u"K_QTR", 0);
  desk.StartedAgent().Close();
  EXPECT_FALSE(desk.machine.files().Exists(desk::kTrayLogFile));
}

TEST(Start, FromAParameterFileRemovesTheFile) {
  SimDesk desk;
  const std::u16string path = desk.WriteParamFile(u"K_Q0001.tmp", DefaultOptions());
  const SimAgent agent = desk.StartedAgent(u"/FU \"K_Q0001.tmp\"");
  EXPECT_NE(agent.Window(), nullptr);
  EXPECT_FALSE(desk.machine.files().Exists(path));
}

TEST(Start, FromTheMachinesRunKeyKeepsTheParameterFile) {
  SimDesk desk;
  const std::u16string path = desk.WriteParamFile(u"K_Q0001.tmp", DefaultOptions(u"/EF \"HKLM\""));
  const SimAgent agent = desk.StartedAgent(u"/FU \"K_Q0001.tmp\"");
  EXPECT_NE(agent.Window(), nullptr);
  agent.Close();
  EXPECT_TRUE(desk.machine.files().Exists(path));
}

TEST(Start, WithAParameterFileThatIsMissingEndsWithZero) {
  SimDesk desk;
  const SimAgent agent = desk.StartAgent(u"/FU \"K_Q0001.tmp\"");
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.ExitCode(), 0U);
}

TEST(Start, ForRemovalEndsWithZeroAndAsksForThePrinter) {
  SimDesk desk;
  const SimAgent agent = desk.StartAgent(DefaultOptions(u"/R"));
  desk.RunFor(5000);
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.ExitCode(), 0U);
  EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : 0"));
  EXPECT_TRUE(desk.HasLogged("CMainFrame::ChkDelPrn : start"));
}

TEST(Run, CloseTakesTheAgentThroughItsShutDownToAnEmptyLedger) {
  SimDesk desk;
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(agent.Timers(), (std::vector<std::uint64_t>{TMID_MASKCHECK, TMID_FLUSHLOG}));
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_TRUE(agent.process().Ledger().empty());
}

TEST(Run, ExitCodeIsTheLowHalfOfTheQuitMessage) {
  SimDesk desk;
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_QUIT, 0x700000003);
  desk.RunFor(1);
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.ExitCode(), 3U);
}

TEST(Run, MaskCheckGoesOnEveryThreeSeconds) {
  SimDesk desk;
  desk.StartAgent();
  desk.RunFor(100 + 10 * 3000);
  const std::vector<std::string> texts = desk.LogTexts();
  EXPECT_EQ(std::count(texts.begin(), texts.end(), "CMainFrame::OnTimer : Mask check"), 10);
}

TEST(Run, LoopEndsWhenMessagesCantBeHadAnyMore) {
  SimDesk desk;
  const SimAgent agent = desk.StartedAgent();
  agent.process().FailNext("GetMessageW", ERROR_INVALID_WINDOW_HANDLE);
  agent.Post(WM_NULL, 9);
  desk.RunFor(1);
  ASSERT_TRUE(agent.HasEnded());
  // The code is the last message's argument, whatever message it was.
  EXPECT_EQ(agent.ExitCode(), 9U);
  EXPECT_TRUE(desk.HasLogged("***** LOG END ******"));
}

TEST(Run, AnAgentWithoutAWindowGetsNoIconAndEnds) {
  SimDesk desk;
  const SimAgent agent = desk.StartAgent();
  agent.process().FailNext("CreateWindowExW", ERROR_NOT_ENOUGH_MEMORY);
  desk.RunFor(5000);
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.ExitCode(), 0U);
  EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : 0"));
  EXPECT_TRUE(agent.Ledger().empty());
}

TEST(Run, AgentsOfTwoPrintersLiveSideBySide) {
  SimDesk desk;
  const SimAgent first = desk.StartedAgent();
  const SimAgent second = desk.StartedAgent(desk.AddPrinter(u"Other"));
  first.Close();
  EXPECT_TRUE(first.HasEnded());
  EXPECT_NE(second.Window(), nullptr);
  EXPECT_EQ(second.Close(), 0U);
}

}  // namespace
}  // namespace vgl
