// Whether the printer is still there: the two checks and what they cost. What ends an agent is in
// what_ends_an_agent_test.cpp; what goes with a printer that is gone, step by step, is in
// vanished_printer_test.cpp.
#include <gtest/gtest.h>

#include <algorithm>

#include "Common/tray_log.h"
#include "app/agent_messages.h"
#include "desk/invitation_library.h"
#include "tests/app/invitation_set.h"
#include "tests/support/frame_fixture.h"
#include "tests/support/operations_of.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;
using Lines = std::vector<std::string>;

constexpr char16_t kRecordName[] = u"KVLTarget\\P0000000000000000";
constexpr char16_t kPortRecord[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVNTarget\\P0000000000000000";

class Liveness : public testing::Test {
 protected:
  Liveness() {
    keptFile = desk.WriteParamFile(u"K_Q0001.tmp", desk::OptionsOfDefaultPrinter());
    desk.SetRunValue(desk::kPrinterName, u"agent /FU \"" + keptFile + u"\"");
    desk.SetRunValue(kRecordName, u"agent");
    desk.SetRunValue(u"KVLTarget\\P0000000000000001", u"another agent");
    desk.SetRunValue(u"Other", u"other");
  }

  void ExpectCleanedUp() {
    EXPECT_EQ(desk.RunValues(), (Texts{u"KVLTarget\\P0000000000000001", u"Other"}));
    EXPECT_FALSE(desk.machine.files().Exists(keptFile));
    ExpectRecordStands();
  }
  void ExpectNothingCleanedUp() {
    EXPECT_EQ(desk.RunValues().size(), 4U);
    EXPECT_TRUE(desk.machine.files().Exists(keptFile));
    ExpectRecordStands();
  }
  void ExpectRecordStands() {
    const sim::RegistryTree& registry = desk.machine.registry();
    EXPECT_EQ(registry.ValueNames(HKEY_CURRENT_USER, desk::kRecordPath),
              (Texts{u"Name", u"TrayIconEnable", u"TrayIconSelected"}));
    EXPECT_EQ(registry.String(HKEY_CURRENT_USER, desk::kRecordPath, u"Name"), u"Studio 7200");
  }
  void ExpectEndsWithinThreeSeconds(const SimAgent& agent) {
    EXPECT_TRUE(desk.machine.RunUntilEnded(agent.process(), 3000));
    EXPECT_EQ(agent.ExitCode(), 0U);
    EXPECT_EQ(agent.Ledger(), Texts{});
    EXPECT_TRUE(desk.machine.tray().Icons().empty());
  }
  std::ptrdiff_t Logged(const std::string& text) {
    const Lines lines = desk.LogTexts();
    return std::count(lines.begin(), lines.end(), text);
  }

  SimDesk desk;
  std::u16string keptFile;
};

// --- The mask check

TEST_F(Liveness, OfADeletedPrinterEndsWithinThreeSecondsAndOnlyTheRecordStays) {
  const SimAgent agent = desk.StartedAgent();
  desk.RunFor(10000);
  desk.DeletePrinter();
  ExpectEndsWithinThreeSeconds(agent);
  ExpectCleanedUp();
}

TEST_F(Liveness, OfAMaskedPrinterThatExistsEndsWithinThreeSecondsWithoutAnyCleanUp) {
  for (const std::uint32_t mask : {1U, 255U, 0x80000000U}) {
    desk.SetMask(0);
    const SimAgent agent = desk.StartedAgent();
    desk.RunFor(10000);
    EXPECT_FALSE(agent.HasEnded());
    desk.SetMask(mask);
    ExpectEndsWithinThreeSeconds(agent);
    ExpectNothingCleanedUp();
  }
  EXPECT_TRUE(desk.HasLogged("Post WM_CLOSE(1)"));
}

TEST_F(Liveness, OfAMaskedPrinterGivesMinusTwoAtTheNextStart) {
  desk.SetMask(1);
  EXPECT_TRUE(desk.StartedAgent().HasEnded());
  EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : -2"));
  ExpectNothingCleanedUp();
}

TEST_F(Liveness, OfADeletedPrinterThatIsBackFindsItsSettingsAgain) {
  desk.machine.registry().SetDword(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconSelected", 2);
  const SimAgent first = desk.StartedAgent();
  desk.DeletePrinter();
  ExpectEndsWithinThreeSeconds(first);
  const SimAgent second = desk.StartedAgent(desk.AddPrinter(desk::kPrinterName));
  EXPECT_EQ(second.Icon()->picture,
            u"icon 702 of C:\\Windows\\System32\\spool\\drivers\\x64\\3\\K_S72EN.DLL");
}

TEST_F(Liveness, GoesOnDuringAnInstallationWhateverTheMaskSays) {
  const SimAgent agent = desk.StartedAgent();
  sim::Process& installer = desk.StartInstaller();
  desk.SetMask(1);
  desk.RunFor(60000);
  EXPECT_FALSE(agent.HasEnded());
  EXPECT_EQ(agent.PeriodOf(TMID_MASKCHECK), 3000U);
  EXPECT_FALSE(desk.HasLogged("CMainFrame::ChkDelPrn : start"));
  desk.machine.EndProcess(installer);
  ExpectEndsWithinThreeSeconds(agent);
  ExpectNothingCleanedUp();
}

// Both tries fail, and the liveness check that follows doesn't.
TEST_F(Liveness, OfAPrinterThatCouldntBeOpenedForAMomentEndsWithoutCleanUp) {
  const SimAgent agent = desk.StartedAgent();
  for (int attempt = 0; attempt < 2; ++attempt)
    agent.process().FailNext("OpenPrinterW", ERROR_ACCESS_DENIED);
  ExpectEndsWithinThreeSeconds(agent);
  ExpectNothingCleanedUp();
}

TEST_F(Liveness, OfAUserWithoutAllRightsGoesOn) {
  desk.machine.spooler().MakeAccessDenied(desk::kPrinterName);
  const SimAgent agent = desk.StartedAgent();
  desk.RunFor(60000);
  EXPECT_FALSE(agent.HasEnded());
}

TEST_F(Liveness, WhoseReadFailsOnceGoesOnAndEndsAtTheNextCheck) {
  const SimAgent agent = desk.StartedAgent();
  desk.SetMask(1);
  agent.process().FailNext("GetPrinterDataW", ERROR_ACCESS_DENIED);
  desk.RunFor(3000);
  EXPECT_FALSE(agent.HasEnded());
  ExpectEndsWithinThreeSeconds(agent);
}

TEST_F(Liveness, WithADeletedPrinterAtItsEndCleansUpToo) {
  const SimAgent agent = desk.StartedAgent();
  desk.DeletePrinter();
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_FALSE(desk.HasLogged("CMainFrame::OnTimer : Mask check"));
  ExpectCleanedUp();
}

TEST_F(Liveness, WithItsPrinterThereAtItsEndCleansNothingUp) {
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_TRUE(desk.HasLogged("CMainFrame::ChkDelPrn : start"));
  ExpectNothingCleanedUp();
}

// --- The printer check

TEST_F(Liveness, PrinterCheckEndsTheAgentOfADeletedPrinter) {
  desk.AddToProfile("TrayIconEndTime=1000");
  const SimAgent agent = desk.StartedAgent();
  desk.DeletePrinter();
  EXPECT_TRUE(desk.machine.RunUntilEnded(agent.process(), 1000));
  EXPECT_TRUE(desk.HasLogged("Post WM_CLOSE(2)"));
  EXPECT_FALSE(desk.HasLogged("CMainFrame::OnTimer : Mask check"));
  ExpectCleanedUp();
}

TEST_F(Liveness, PrinterCheckTakesAnInstallationForADeletedPrinter) {
  desk.AddToProfile("TrayIconEndTime=1000");
  const SimAgent agent = desk.StartedAgent();
  desk.StartInstaller();
  EXPECT_TRUE(desk.machine.RunUntilEnded(agent.process(), 1000));
  ExpectCleanedUp();
}

TEST_F(Liveness, PrinterCheckPassesAMaskedPrinter) {
  desk.AddToProfile("TrayIconEndTime=1000");
  const SimAgent agent = desk.StartedAgent();
  desk.SetMask(1);
  desk.RunFor(1000);
  EXPECT_GE(Logged("CMainFrame::OnTimer : Printer check"), 1);
  EXPECT_FALSE(agent.HasEnded());
}

TEST_F(Liveness, PrinterCheckOfAnInstallationIsReArmedWithoutATestAndTheMaskCheckStillRuns) {
  desk.AddToProfile("TrayIconEndTime=500");
  const SimAgent agent = desk.StartedAgent(desk::OptionsOfDefaultPrinter() + u" /I");
  desk.RunFor(10000);
  EXPECT_GE(Logged("CMainFrame::OnTimer : Printer check"), 20);
  EXPECT_EQ(Logged("CMainFrame::ChkDelPrn : start"), 0);
  EXPECT_EQ(agent.PeriodOf(TMID_PRINTERCHECK), 500U);
  desk.SetMask(1);
  ExpectEndsWithinThreeSeconds(agent);
  EXPECT_TRUE(desk.HasLogged("Post WM_CLOSE(1)"));
}

// --- A device that is known by its port alone

class PortLiveness : public Liveness {
 protected:
  PortLiveness() {
    desk.machine.registry().SetString(HKEY_CURRENT_USER, kPortRecord, u"Name", u"LPT2");
    desk.machine.registry().SetDword(HKEY_CURRENT_USER, kPortRecord, u"TrayIconEnable", 1);
    desk.SetRunValue(u"LPT2", u"agent /FU \"" + keptFile + u"\"");
    desk.SetRunValue(u"KVNTarget\\P0000000000000000", u"agent");
  }
  SimAgent Started() {
    return desk.StartedAgent(u"/D \"KAVRO Studio 7200\" /O \"LPT2\" /M \"S7200\"");
  }
};

TEST_F(PortLiveness, IsNeverMasked) {
  const SimAgent agent = Started();
  desk.RunFor(3600 * 1000);
  EXPECT_FALSE(agent.HasEnded());
  EXPECT_EQ(agent.PeriodOf(TMID_MASKCHECK), 3000U);
}

TEST_F(PortLiveness, CantBeFoundByAClickAndEndsWithTheCleanUpOfItsPort) {
  const SimAgent agent = Started();
  agent.RightClick();
  ExpectEndsWithinThreeSeconds(agent);
  EXPECT_EQ(desk.RunValues(),
            (Texts{desk::kPrinterName, kRecordName, u"KVLTarget\\P0000000000000001", u"Other"}));
  EXPECT_FALSE(desk.machine.files().Exists(keptFile));
  EXPECT_EQ(desk.machine.registry().String(HKEY_CURRENT_USER, kPortRecord, u"Name"), u"LPT2");
  EXPECT_TRUE(desk.HasLogged("Entry : LPT2"));
  EXPECT_TRUE(desk.HasLogged("PrinterName : "));
}

TEST_F(PortLiveness, TellsTheInvitationLibraryItsPort) {
  desk::AddInvitationLibrary(desk.machine, kInvitations);
  NameInvitationLibrary(desk.machine);
  Started().RightClick();
  EXPECT_EQ(desk::InvitationLibraryOf(desk.machine).closedPrinters.at(0), u"LPT2");
}

TEST_F(PortLiveness, FindsTheInvitationLibraryInTheRegistryWhereTheProfileSaysSo) {
  desk::AddInvitationLibrary(desk.machine, kInvitations);
  desk.machine.registry().SetString(HKEY_LOCAL_MACHINE, kDriverKey, u"SMRT_PARLOS", kInvitations);
  desk.AddToProfile("RegistryBaseVGL=1");
  Started().RightClick();
  EXPECT_TRUE(desk.HasLogged("ChkDelPrn() Registry Ember"));
  EXPECT_EQ(desk::InvitationLibraryOf(desk.machine).closedPrinters.at(0), u"LPT2");
}

// --- The log

TEST_F(Liveness, LogsTheEndOfAnAgentWhosePrinterIsGoneInOrder) {
  desk::AddInvitationLibrary(desk.machine, kInvitations);
  NameInvitationLibrary(desk.machine);
  const SimAgent agent = desk.StartedAgent();
  const std::size_t before = desk.LogTexts().size();
  desk.DeletePrinter();
  ExpectEndsWithinThreeSeconds(agent);

  const std::string file = R"(C:\Users\User\AppData\Local\Temp\K_Q0001.tmp)";
  const Lines open = {"enter : KvOpenPrinter", "exit : KvOpenPrinter", "result : 0"};
  const Lines begin = {"CMainFrame::ChkDelPrn : start", "PrinterName : Studio 7200"};
  const Lines dropped = {"Delete Reg HKCU\\run", "CTrayIconApp::DelOldIconRegFile",
                         R"(SubKey : software\Microsoft\Windows\CurrentVersion\Run)",
                         "Entry : Studio 7200"};
  // Two of the texts have a line end of their own.
  const Lines goodbye = {
      "get smart parlos dll name",
      "ChkDelPrn() Dat reading base Ember",
      "",
      R"(ChkDelPrn() csVal = C:\Windows\system32\spool\drivers\x64\3\KVPARLOS.DLL)",
      "",
      "load smart parlos dll",
      "call smart parlos api",
      "result : 1"};
  Lines expected;
  const auto add = [&](const Lines& lines) {
    expected.insert(expected.end(), lines.begin(), lines.end());
  };
  add({"CMainFrame::OnTimer ID : 4", "CMainFrame::OnTimer : Mask check"});
  add(open);
  add(begin);
  add(open);
  add(dropped);
  add({"csParam : agent /FU \"" + file + "\"", "Path : " + file});
  add(goodbye);
  add({"Post WM_CLOSE(1)", "WM_CLOSE", "WM_DESTROY", "CMainFrame::DestroyWindow"});
  // Once more at the end, to no effect.
  add(begin);
  add(open);
  add(dropped);
  add({"csParam : "});
  add(goodbye);
  add({"***** LOG END ******"});
  const Lines all = desk.LogTexts();
  EXPECT_EQ(Lines(all.begin() + static_cast<std::ptrdiff_t>(before), all.end()), expected);
}

TEST_F(Liveness, LogsAMaskedPrinterThatExistsAsFound) {
  const SimAgent agent = desk.StartedAgent();
  const std::size_t before = desk.LogTexts().size();
  desk.SetMask(1);
  ExpectEndsWithinThreeSeconds(agent);
  const Lines all = desk.LogTexts();
  EXPECT_EQ(Lines(all.begin() + static_cast<std::ptrdiff_t>(before), all.end()),
            (Lines{"CMainFrame::OnTimer ID : 4",
                   "CMainFrame::OnTimer : Mask check",
                   "enter : KvOpenPrinter",
                   "exit : KvOpenPrinter",
                   "result : 1",
                   "CMainFrame::ChkDelPrn : start",
                   "PrinterName : Studio 7200",
                   "enter : KvOpenPrinter",
                   "exit : KvOpenPrinter",
                   "result : 1",
                   "Post WM_CLOSE(1)",
                   "WM_CLOSE",
                   "WM_DESTROY",
                   "CMainFrame::DestroyWindow",
                   "CMainFrame::ChkDelPrn : start",
                   "PrinterName : Studio 7200",
                   "enter : KvOpenPrinter",
                   "exit : KvOpenPrinter",
                   "result : 1",
                   "***** LOG END ******"}));
}

// --- What a mask check costs

class MaskCheckCost : public FrameTest {
 protected:
  MaskCheckCost() { g_bTrayLogEnabled = 0; }

  // The operations of one timer message, from its arrival at the window procedure on.
  Lines Operations() {
    return OperationsOf(inside.process(), [this] {
      frame->m_uhMaskCheck = TMID_MASKCHECK;
      TrayWindowProc(frame->m_hWnd, WM_TIMER, TMID_MASKCHECK, 0);
    });
  }
  const Lines check = {"KillTimer",
                       // the look for the open-printer log
                       "SHGetSpecialFolderPathW", "GetFileAttributesW",
                       // the guarded open: no installer, the mutex for everybody, the printer
                       "OpenMutexW", "InitializeSecurityDescriptor", "SetSecurityDescriptorDacl",
                       "CreateMutexW", "OpenPrinterW",
                       // "VGLSetting"; the printer and the mutex are closed
                       "GetPrinterDataW", "-", "-",
                       // the timer again; the default's handling
                       "SetTimer", "-"};
};

TEST_F(MaskCheckCost, IsTheseCallsAndNoneMore) {
  EXPECT_EQ(Operations(), check);
  EXPECT_EQ(inside.process().Ledger(), Texts{u"window TrayIconWClass"});
}

TEST_F(MaskCheckCost, GrowsByTheLookAtTheSemaphoreOnceAUtilityWasCalled) {
  frame->m_cUtyCall.hSemaphore =
      Os().objects.CreateSemaphoreW(1, 1, u"VGL_UtyCall_OBJ_Studio 7200");
  Lines expected = {"WaitForSingleObject", "-"};
  expected.insert(expected.end(), check.begin(), check.end());
  EXPECT_EQ(Operations(), expected);
}

TEST_F(MaskCheckCost, IsTheWaitAloneWhileAUtilityRuns) {
  StartUtility();
  EXPECT_EQ(Operations(), (Lines{"WaitForSingleObject", "-"}));
}

TEST_F(MaskCheckCost, OfADeviceWithoutAPrintersNameIsTheTimerAlone) {
  frame->m_szPrinterName.Clear();
  EXPECT_EQ(Operations(), (Lines{"KillTimer", "SetTimer", "-"}));
}

// The message loop adds three: it gets the message, translates it and dispatches it.
TEST(AgentCost, IsSixteenCallsEveryThreeSecondsAndStaysSo) {
  SimDesk desk;
  desk.machine.registry().SetDword(HKEY_CURRENT_USER, u"SOFTWARE\\KAVRO\\VGL3", u"K_QTR", 0);
  const SimAgent agent = desk.StartedAgent();
  for (int check = 0; check < 250; ++check) {
    const std::uint64_t before = agent.process().calls();
    desk.RunFor(3000);
    ASSERT_EQ(agent.process().calls() - before, 16U) << check;
  }
}

}  // namespace
}  // namespace vgl
