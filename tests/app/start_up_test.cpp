// CMainFrame::StartUp in whole agents: its results with what is shown, its steps in their order,
// the timers that it arms, and what an agent holds while it waits.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "app/agent_messages.h"
#include "tests/app/invitation_set.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;
using Lines = std::vector<std::string>;

class StartUp : public testing::Test {
 protected:
  StartUp() {
    desk.SetRunValue(desk::kPrinterName, u"\"K_QD21TR.EXE\" /P \"Studio 7200\"");
    desk.machine.desktop().AnswerBoxesAtOnce();
  }

  // An agent whose first call of that operation fails.
  SimAgent StartWithFault(const char* operation, std::int32_t error) {
    sim::Process& process = desk::StartAgent(desk.machine, desk::OptionsOfDefaultPrinter());
    process.FailNext(operation, error);
    desk.RunFor(2000);
    return {desk.machine, process};
  }

  // The second start comes 2000 ms behind the first and waits 1600 ms; the mask check of the first
  // is due at 3100 and at 6100.
  void WaitUntilTheSecondIsAboutToLook() { desk.RunFor(1300); }

  std::optional<std::uint32_t> EnabledInRecord() {
    return desk.machine.registry().Dword(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconEnable");
  }

  // The agent has ended in order: this was its result, nothing of it is left but the window, which
  // goes with its process. Only -1 drops what would start it again.
  void ExpectEndedWith(int result, const SimAgent& agent, const Texts& boxes = {}) {
    EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : " + std::to_string(result)));
    ASSERT_TRUE(agent.HasEnded());
    EXPECT_EQ(agent.ExitCode(), 0U);
    EXPECT_EQ(desk.BoxesShown(), boxes);
    EXPECT_TRUE(desk.HasLogged("CMainFrame::DestroyWindow"));
    EXPECT_TRUE(desk.HasLogged("CMainFrame::ChkDelPrn : start"));
    EXPECT_EQ(agent.Ledger(), Texts{u"window TrayIconWClass"});
    EXPECT_EQ(desk.RunValues(), result == -1 ? Texts{} : Texts{desk::kPrinterName});
  }

  SimDesk desk;
};

// --- The results

TEST_F(StartUp, GivesOneAndShowsTheIconWhereAllIsThere) {
  const SimAgent agent = desk.StartedAgent();
  EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : 1"));
  ASSERT_NE(agent.Icon(), nullptr);
  EXPECT_EQ(agent.Icon()->tip, u"Studio 7200");
  EXPECT_EQ(desk.BoxesShown(), Texts{});
  EXPECT_EQ(desk.RunValues(), Texts{desk::kPrinterName});
}

TEST_F(StartUp, GivesZeroAndTellsOfMemoryWhereTheInstanceMapFails) {
  const SimAgent agent = StartWithFault("CreateFileMappingW", ERROR_NOT_ENOUGH_MEMORY);
  ExpectEndedWith(0, agent, {u"KAVRO Vigil 3: Insufficient memory."});
}

TEST_F(StartUp, GivesMinusOneAndShowsNothingWithoutAProfile) {
  desk.machine.files().Remove(desk::kProfilePath);
  const SimAgent agent = desk.StartedAgent();
  ExpectEndedWith(-1, agent);
  EXPECT_TRUE(desk.HasLogged("m_szDatPath : "));
  EXPECT_FALSE(desk.HasLogged("CMainFrame::LoadRegSet"));
}

TEST_F(StartUp, GivesMinusOneAndShowsNothingWhereTheRecordSwitchesTheIconOff) {
  desk.machine.registry().SetDword(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconEnable", 0);
  const SimAgent agent = desk.StartedAgent();
  ExpectEndedWith(-1, agent);
  EXPECT_FALSE(desk.HasLogged("CMainFrame::LoadResDll"));
}

TEST_F(StartUp, GivesMinusOneAndShowsNothingWhereTheRecordDoesntSpeakOfTheIcon) {
  desk.machine.registry().RemoveValue(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconEnable");
  const SimAgent agent = desk.StartedAgent();
  ExpectEndedWith(-1, agent);
  EXPECT_EQ(EnabledInRecord(), 0U);
}

TEST_F(StartUp, GivesMinusOneAndTellsOfTheFileWithoutTheResourceLibrary) {
  desk.machine.files().Remove(desk::kResourceLibraryPath);
  const SimAgent agent = desk.StartedAgent();
  ExpectEndedWith(-1, agent, {u"KAVRO Vigil 3: Could not find specified file."});
  EXPECT_EQ(EnabledInRecord(), 0U);
}

TEST_F(StartUp, GivesZeroAndShowsNothingWhereTheShellRefusesTheIcon) {
  desk.machine.tray().Refuse(true);
  const SimAgent agent = desk.StartedAgent();
  ExpectEndedWith(0, agent);
  EXPECT_EQ(EnabledInRecord(), 1U);
}

TEST_F(StartUp, GivesZeroAndShowsNothingWithoutTheMenu) {
  desk::ResourceLibrary library = desk::PlainResourceLibrary();
  library.menus.clear();
  desk.SetResourceLibrary(library);
  const SimAgent agent = desk.StartedAgent();
  ExpectEndedWith(0, agent);
}

TEST_F(StartUp, GivesMinusTwoAndLeavesTheAutoStartAloneWhereThePrinterIsMasked) {
  desk.SetMask(1);
  const SimAgent agent = desk.StartedAgent();
  ExpectEndedWith(-2, agent);
  EXPECT_TRUE(desk.HasLogged("Vgl is invalid."));
  EXPECT_EQ(EnabledInRecord(), 1U);
}

TEST_F(StartUp, GivesMinusTwoAndDropsTheAutoStartWhereThePrinterIsGone) {
  desk.DeletePrinter();
  const SimAgent agent = desk.StartedAgent();
  EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : -2"));
  ASSERT_TRUE(agent.HasEnded());
  // By the liveness check at its end, not by the result.
  EXPECT_EQ(desk.RunValues(), Texts{});
  EXPECT_EQ(EnabledInRecord(), 1U);
}

TEST_F(StartUp, OfARemovalGivesZeroAndLooksForNothing) {
  const SimAgent agent = desk.StartedAgent(desk::OptionsOfDefaultPrinter() + u" /R");
  ExpectEndedWith(0, agent);
  EXPECT_FALSE(desk.HasLogged("CMainFrame::LoadRegSet"));
  EXPECT_FALSE(desk.machine.objects().Exists(u"VglV5MapFile_Ink"));
}

// Whether the printer is masked is asked by the one that is its agent.
TEST_F(StartUp, OfASecondAgentGivesZeroAlsoWhereThePrinterIsMasked) {
  const SimAgent first = desk.StartedAgent();
  const SimAgent second = desk.StartAgent();
  WaitUntilTheSecondIsAboutToLook();
  desk.SetMask(1);
  desk.RunFor(300);
  ExpectEndedWith(0, second);
  EXPECT_FALSE(first.HasEnded());
  EXPECT_FALSE(desk.HasLogged("Vgl is invalid."));
}

// --- Message boxes of a start

TEST(StartUpBox, OfTheResourceLibraryBelongsToTheHiddenWindowAndHoldsTheStart) {
  SimDesk desk;
  desk.machine.files().Remove(desk::kResourceLibraryPath);
  const SimAgent agent = desk.StartedAgent();
  ASSERT_EQ(desk.machine.desktop().Boxes().size(), 1U);
  sim::Window& box = *desk.machine.desktop().Boxes()[0];
  EXPECT_EQ(box.owner, agent.Window()->handle);
  EXPECT_EQ(box.title, u"KAVRO Vigil 3");
  EXPECT_EQ(box.text, u"Could not find specified file.");
  EXPECT_FALSE(agent.HasEnded());
  desk.machine.desktop().Answer(box);
  desk.RunFor(1);
  EXPECT_TRUE(agent.HasEnded());
}

TEST(StartUpBox, OfTheInstanceMapBelongsToNobody) {
  SimDesk desk;
  const SimAgent agent = desk.StartAgent();
  agent.process().FailNext("CreateFileMappingW", ERROR_NOT_ENOUGH_MEMORY);
  desk.RunFor(2000);
  ASSERT_EQ(desk.machine.desktop().Boxes().size(), 1U);
  EXPECT_EQ(desk.machine.desktop().Boxes()[0]->owner, HWND{});
}

// --- The steps

// The lines of the frame's start-up and end; those of the language manager are its own affair.
Lines WithoutLanguageManager(Lines lines) {
  std::erase_if(lines, [](const std::string& line) {
    return line.starts_with("CLmw::") || line.starts_with("CMultiLangCtrl::");
  });
  return lines;
}

TEST_F(StartUp, LogsItsStepsInOrder) {
  const SimAgent agent = desk.StartedAgent();
  const std::string window = std::to_string(static_cast<std::uint64_t>(agent.Window()->handle));
  agent.Close();
  const std::string folder = R"(C:\Windows\system32\spool\drivers\x64\3\)";
  Lines expected = {
      "***** LOG START ******",
      "CTrayIconApp::InitInstance",
      "CmdLine : /P \"Studio 7200\" /D \"KAVRO Studio 7200\" /O \"USB001\" /M \"S7200\"",
      "cmdInfo.m_szPrinterName : Studio 7200",
      "cmdInfo.m_szDriverName : KAVRO Studio 7200",
      "cmdInfo.m_szPortName : USB001",
      "cmdInfo.m_szModelID : S7200",
      "cmdInfo.m_IconFrom : 0",
      "cmdInfo.m_fRemove : 0",
      "cmdInfo.m_fIconInstall : 0",
      "CMainFrame::StartUp",
      "CMainFrame::DuplicationChk : start",
      "enter : MultiExecuteCheck",
      "enter : MultiExecuteCheck",
      "enter : CheckMapPrinter",
      "exit : CheckMapPrinter(0)[3]",
      "exit  : MultiExecuteCheck",
      "exit : MultiExecuteCheck",
      "enter : SethWindow",
      "enter : SethWindowSub",
      "MapName : VglV5MapFile_Ink",
      "PrnName : Studio 7200",
      "PortName : USB001",
      "hWnd : " + window,
      "AppSel : 3",
      "exit : SethWindow : 0",
      "CMainFrame::DuplicationChk : end",
      "m_szDatPath : " + folder + "KS7200.INI",
      "CMainFrame::LoadRegSet",
      "CMainFrame::LoadResDll",
      "StartUP csVifName : " + folder + "KS7200.VIF",
      "StartUP csNetPilotString : ",
      "GetDepExeName() Dat reading Ember",
      "GetDriverUpdateExeName() Dat reading Ember",
      "MainFrame.StartUp() : Result : 1",
      "WM_CLOSE",
      "WM_DESTROY",
      "CMainFrame::DestroyWindow",
      "CMainFrame::ChkDelPrn : start",
      "PrinterName : Studio 7200",
      "enter : KvOpenPrinter",
      "exit : KvOpenPrinter",
      "result : 1",
      "***** LOG END ******"};
  // The menu's values: its separators and 79 entries.
  expected.insert(std::find(expected.begin(), expected.end(), "MainFrame.StartUp() : Result : 1"),
                  80, "AddExMenu() Dat reading Ember");
  EXPECT_EQ(WithoutLanguageManager(desk.LogTexts()), expected);
}

TEST_F(StartUp, LogsTheServerAndTheNetworkPrinterBetweenVifAndResult) {
  desk.machine.system().version.productType = 3;
  desk.machine.spooler().At(desk::kPrinterName).attributes = PRINTER_ATTRIBUTE_NETWORK;
  desk.StartedAgent();
  Lines lines = desk.LogTexts();
  std::erase_if(lines,
                [](const std::string& line) { return line.ends_with("() Dat reading Ember"); });
  const auto vif = std::find(lines.begin(), lines.end(), "StartUP csNetPilotString : ");
  ASSERT_GE(lines.end() - vif, 4);
  EXPECT_EQ(Lines(vif + 1, vif + 4),
            (Lines{"PRINTER_ATTRIBUTE_NETWORK", "Server OS.", "MainFrame.StartUp() : Result : 1"}));
}

// The timers come last: nothing fires into a start that isn't whole.
TEST_F(StartUp, TakesTheStepsThatShowInTheirOrder) {
  const SimAgent agent = desk.StartedAgent();
  Texts steps;
  const Texts wanted = {u"made window",   u"loaded library",           u"icon added",
                        u"freed library", u"set timer TMID_MASKCHECK", u"set timer TMID_FLUSHLOG"};
  for (const sim::Event& event : desk.machine.trace())
    for (const std::u16string& step : wanted)
      if (event.processId == agent.process().id() && event.text.starts_with(step) &&
          (!step.ends_with(u"library") || event.text.ends_with(u"K_S72EN.DLL")))
        steps.push_back(step);
  EXPECT_EQ(steps, wanted);
}

// --- Timers

TEST_F(StartUp, ArmsTheMaskCheckAndTheFlushAndNothingElse) {
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(agent.Timers(), (std::vector<std::uint64_t>{TMID_MASKCHECK, TMID_FLUSHLOG}));
  EXPECT_EQ(agent.PeriodOf(TMID_MASKCHECK), 3000U);
  EXPECT_EQ(agent.PeriodOf(TMID_FLUSHLOG), 900000U);
}

TEST_F(StartUp, ArmsThePrinterCheckWithThePeriodOfTheProfile) {
  const struct {
    const char* line;
    std::uint32_t period;  // 0: not armed
  } cases[] = {
      {"", 0},
      {"TrayIconEndTime=0", 0},
      {"TrayIconEndTime=45000", 45000},
      {"TrayIconEndTime= 45000 ", 45000},
      {"TrayIconEndTime=45000ms", 45000},
      {"TrayIconEndTime=soon", 0},
      {"TrayIconEndTime=", 0},
  };
  for (const auto& each : cases) {
    SimDesk other;
    other.AddToProfile(each.line);
    EXPECT_EQ(other.StartedAgent().PeriodOf(TMID_PRINTERCHECK), each.period) << each.line;
  }
}

TEST_F(StartUp, ReadsThePeriodOfThePrinterCheckInTheModelsSection) {
  const std::string profile = desk.machine.files().ReadFile(desk::kProfilePath).value();
  desk.machine.files().WriteFile(desk::kProfilePath,
                                 "[S7100]\r\nTrayIconEndTime=45000\r\n" + profile);
  EXPECT_EQ(desk.StartedAgent().PeriodOf(TMID_PRINTERCHECK), 0U);
}

TEST_F(StartUp, OnAServerArmsTheMaskCheckAndTheFlushWhereAWorkstationHasTheKicksToo) {
  const auto timersOn = [](std::uint8_t productType) {
    SimDesk other;
    OfferKicks(other.machine);
    other.machine.system().version.productType = productType;
    const SimAgent agent = other.StartedAgent();
    EXPECT_EQ(other.HasLogged("Server OS."), productType != 1);
    return agent.Timers();
  };
  EXPECT_EQ(timersOn(1), (std::vector<std::uint64_t>{TMID_MASKCHECK, TMID_INVITATION, TMID_NETPILOT,
                                                     TMID_FLUSHLOG}));
  for (const std::uint8_t server : {std::uint8_t{2}, std::uint8_t{3}})
    EXPECT_EQ(timersOn(server), (std::vector<std::uint64_t>{TMID_MASKCHECK, TMID_FLUSHLOG}));
}

TEST_F(StartUp, OnAWorkstationOrASystemOfUnknownTypeLogsNoServer) {
  for (const std::uint8_t productType : {std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{4}}) {
    SimDesk other;
    other.machine.system().version.productType = productType;
    EXPECT_NE(other.StartedAgent().Icon(), nullptr);
    EXPECT_FALSE(other.HasLogged("Server OS.")) << productType;
  }
}

TEST_F(StartUp, RunsOnWithoutATimerThatCantBeArmed) {
  const SimAgent agent = StartWithFault("SetTimer", ERROR_NO_SYSTEM_RESOURCES);
  EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : 1"));
  EXPECT_EQ(agent.Timers(), std::vector<std::uint64_t>{TMID_FLUSHLOG});
}

// --- What it counts and what it holds

TEST_F(StartUp, CountsItselfOnce) {
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(agent.Counts(), (std::vector<std::uint32_t>{0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(desk.CountsInFile(), std::vector<std::uint32_t>{});
  agent.Close();
  EXPECT_EQ(desk.CountsInFile(),
            (std::vector<std::uint32_t>{0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  desk.StartedAgent().Close();
  EXPECT_EQ(desk.CountsInFile()[1], 2U);
}

TEST_F(StartUp, OfAModelThatIsntCountedRunsAllTheSame) {
  desk.AddToProfile("VGL_LOG=0");
  const SimAgent agent = desk.StartedAgent();
  EXPECT_NE(agent.Icon(), nullptr);
  EXPECT_EQ(agent.Counts(), std::vector<std::uint32_t>{});
  agent.Close();
  EXPECT_EQ(desk.CountsInFile(), std::vector<std::uint32_t>{});
}

TEST_F(StartUp, ThatDoesntRunIsntCounted) {
  desk.machine.tray().Refuse(true);
  desk.StartedAgent();
  EXPECT_EQ(desk.CountsInFile(), std::vector<std::uint32_t>{});
}

// As the file system has it; the case is Windows' own.
const std::u16string kTexts = u"C:\\Windows\\System32\\spool\\drivers\\x64\\3\\K_S72EN.DLL";

TEST_F(StartUp, LeavesTheAgentWithTheseThingsInHandAndNoMore) {
  const SimAgent agent = desk.StartedAgent();
  const Texts held = {u"icon 700 of " + kTexts,
                      u"icon 701 of " + kTexts,
                      u"icon 702 of " + kTexts,
                      u"icon in the notification area",
                      u"library " + std::u16string(desk::kDriverFolder) + u"\\K_WRDEF1.DLL",
                      u"menu 801 of " + kTexts,
                      u"section VglV5MapFile_Ink",
                      u"window TrayIconWClass"};
  EXPECT_EQ(agent.Ledger(), held);
  desk.RunFor(3600 * 1000);
  EXPECT_EQ(agent.Ledger(), held);
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_EQ(agent.Ledger(), Texts{});
  EXPECT_TRUE(desk.machine.tray().Icons().empty());
}

// --- A second start for the printer

TEST_F(StartUp, OfASecondAgentHasTheFirstShowTheIconThatIsSelectedNow) {
  const SimAgent first = desk.StartedAgent();
  EXPECT_EQ(first.Icon()->picture, u"icon 700 of " + kTexts);
  desk.machine.registry().SetDword(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconSelected", 2);
  const SimAgent second = desk.StartAgent();
  desk.RunFor(1600);
  EXPECT_EQ(first.Icon()->picture, u"icon 702 of " + kTexts);
  EXPECT_EQ(desk.machine.tray().Icons().size(), 1U);
  ExpectEndedWith(0, second);
  const Lines lines = desk.LogTextsOf(second);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "CMainFrame::ChkDelPrn : start"), 1);
}

TEST_F(StartUp, OfASecondAgentWhosePrinterIsGoneDropsTheAutoStart) {
  const SimAgent first = desk.StartedAgent();
  const SimAgent second = desk.StartAgent();
  WaitUntilTheSecondIsAboutToLook();
  desk.DeletePrinter();
  desk.RunFor(300);
  EXPECT_TRUE(second.HasEnded());
  EXPECT_FALSE(first.HasEnded());
  EXPECT_EQ(desk.RunValues(), Texts{});
}

}  // namespace
}  // namespace vgl
