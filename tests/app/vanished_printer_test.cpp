// ChkDelPrn by itself: what goes with a printer that is gone, what each failure skips, and the
// goodbye to the invitation library.
#include <gtest/gtest.h>

#include "Common/tray_log.h"
#include "app/agent_messages.h"
#include "desk/invitation_library.h"
#include "platform/owned.h"
#include "tests/app/invitation_set.h"
#include "tests/support/frame_fixture.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;

constexpr char16_t kRecordName[] = u"KVLTarget\\P0000000000000000";

class ChkDelPrn : public FrameTest {
 protected:
  ChkDelPrn() {
    desk::AddInvitationLibrary(machine, kInvitations);
    PutAutoStart();
  }

  void PutAutoStart() {
    constexpr char16_t kRun[] = u"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
    machine.files().WriteFile(u"C:\\kept.tmp", "x");
    machine.registry().SetString(HKEY_CURRENT_USER, kRun, desk::kPrinterName,
                                 u"agent /FU \"C:\\kept.tmp\"");
    machine.registry().SetString(HKEY_CURRENT_USER, kRun, kRecordName, u"agent");
  }
  Texts RunValues() {
    return machine.registry().ValueNames(HKEY_CURRENT_USER,
                                         u"Software\\Microsoft\\Windows\\CurrentVersion\\Run");
  }
  bool KeptFileStands() { return machine.files().Exists(u"C:\\kept.tmp"); }
  Texts& Closed() { return desk::InvitationLibraryOf(machine).closedPrinters; }
  void DeletePrinter() { machine.spooler().RemovePrinter(desk::kPrinterName); }
  std::uint64_t Arm(std::uint64_t id) { return Os().windowing.SetTimer(frame->m_hWnd, id, 5000); }
  const Texts held = {u"window TrayIconWClass"};
};

TEST_F(ChkDelPrn, GivesOneAndTouchesNothingWhileThePrinterIsThere) {
  NameInvitationLibrary(machine);
  frame->m_uInvitationPeriod = 7000;
  frame->m_uhPrinterCheck = Arm(TMID_PRINTERCHECK);
  EXPECT_EQ(frame->ChkDelPrn(), 1);
  EXPECT_EQ(RunValues().size(), 2U);
  EXPECT_TRUE(KeptFileStands());
  EXPECT_TRUE(Closed().empty());
  EXPECT_EQ(frame->m_uInvitationPeriod, 7000U);
  EXPECT_EQ(PeriodOf(TMID_PRINTERCHECK), 5000U);
  EXPECT_EQ(inside.process().Ledger(), held);
}

TEST_F(ChkDelPrn, TakesEveryOtherAnswerOfTheGuardedOpenForGone) {
  const auto gives = [this](const std::string& answer) {
    machine.files().Remove(desk::kTrayLogFile);
    const std::int32_t result = frame->ChkDelPrn();
    EXPECT_TRUE(HasLogged("result : " + answer));
    return result;
  };
  inside.process().FailNext("OpenPrinterW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(gives("0"), 0);
  inside.process().FailNext("CreateMutexW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(gives("-2"), 0);
  const OwnedObject installer(
      Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller"));
  EXPECT_EQ(gives("-1"), 0);
}

TEST_F(ChkDelPrn, StopsThePrinterCheckAndTheInvitationsAndNoOtherTimer) {
  frame->m_uInvitationPeriod = 7000;
  frame->m_uhPrinterCheck = Arm(TMID_PRINTERCHECK);
  frame->m_uhInvitationMonitor = Arm(TMID_INVITATION);
  frame->m_uhMaskCheck = Arm(TMID_MASKCHECK);
  frame->m_uhFlushLog = Arm(TMID_FLUSHLOG);
  DeletePrinter();
  EXPECT_EQ(frame->ChkDelPrn(), 0);
  EXPECT_EQ(frame->m_uInvitationPeriod, 0U);
  EXPECT_EQ(frame->m_uhPrinterCheck, 0U);
  EXPECT_EQ(frame->m_uhInvitationMonitor, 0U);
  EXPECT_EQ(PeriodOf(TMID_PRINTERCHECK), 0U);
  EXPECT_EQ(PeriodOf(TMID_INVITATION), 0U);
  EXPECT_EQ(PeriodOf(TMID_MASKCHECK), 5000U);
  EXPECT_EQ(PeriodOf(TMID_FLUSHLOG), 5000U);
}

TEST_F(ChkDelPrn, SaysNothingOfAPrinterThatAUtilityHas) {
  DeletePrinter();
  StartUtility();
  EXPECT_EQ(frame->ChkDelPrn(), 1);
  EXPECT_TRUE(HasLogged("Utility executing"));
  EXPECT_FALSE(HasLogged("enter : KvOpenPrinter"));
  EXPECT_EQ(RunValues().size(), 2U);
}

// The wait at the end takes the semaphore and doesn't give it back, so that the look for a utility
// that follows takes the agent's own hold for one.
TEST_F(ChkDelPrn, CleansNothingUpAtAnEndAfterAUtilityWasCalled) {
  frame->m_cUtyCall.hSemaphore =
      Os().objects.CreateSemaphoreW(1, 1, u"VGL_UtyCall_OBJ_Studio 7200");
  DeletePrinter();
  Send(WM_CLOSE);
  EXPECT_FALSE(WindowStands());
  EXPECT_TRUE(HasLogged("CMainFrame::ChkDelPrn : start"));
  EXPECT_TRUE(HasLogged("Utility executing"));
  EXPECT_FALSE(HasLogged("enter : KvOpenPrinter"));
  EXPECT_EQ(RunValues().size(), 2U);
  EXPECT_TRUE(KeptFileStands());
}

TEST_F(ChkDelPrn, LetsARightPressGoOnToTheMenuWhileAUtilityRuns) {
  ASSERT_EQ(frame->StartUp(), 1);
  StartUtility();
  DeletePrinter();
  bool menuWasOpen = false;
  machine.StartProcess(u"C:\\person.exe", u"", [&](const char16_t*) {
    Os().process.Sleep(100);
    for (sim::OpenMenu* open : machine.desktop().menus().List()) {
      menuWasOpen = true;
      machine.desktop().menus().Dismiss(*open);
    }
    return 0U;
  });
  Send(WM_VGL3_TRAYICON, 0, WM_RBUTTONDOWN);
  EXPECT_TRUE(menuWasOpen);
  EXPECT_FALSE(HasLogged("Post WM_CLOSE(2)"));
}

TEST_F(ChkDelPrn, ASecondRunHasNoEffectButTheGoodbye) {
  NameInvitationLibrary(machine);
  DeletePrinter();
  EXPECT_EQ(frame->ChkDelPrn(), 0);
  const Texts files = machine.files().List();
  EXPECT_EQ(frame->ChkDelPrn(), 0);
  EXPECT_EQ(machine.files().List(), files);
  EXPECT_EQ(RunValues(), Texts{});
  EXPECT_EQ(Closed(), (Texts{desk::kPrinterName, desk::kPrinterName}));
}

// The path is that from the root, taken below the branch.
TEST_F(ChkDelPrn, WouldDeleteARecordThatStoodBelowItsBranchUnderItsWholePath) {
  const std::u16string below =
      u"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget\\" + std::u16string(desk::kRecordPath);
  machine.registry().MakeKey(HKEY_CURRENT_USER, below);
  DeletePrinter();
  frame->ChkDelPrn();
  EXPECT_FALSE(machine.registry().HasKey(HKEY_CURRENT_USER, below));
  EXPECT_TRUE(machine.registry().HasKey(HKEY_CURRENT_USER, desk::kRecordPath));
}

TEST_F(ChkDelPrn, WithoutARecordLeavesTheBranchAlone) {
  machine.registry().RemoveKey(HKEY_CURRENT_USER, desk::kRecordPath);
  DeletePrinter();
  EXPECT_EQ(frame->ChkDelPrn(), 0);
  EXPECT_TRUE(
      machine.registry().HasKey(HKEY_CURRENT_USER, u"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget"));
  EXPECT_EQ(RunValues(), Texts{kRecordName});  // whose record is gone; its name tells nobody
}

// Every failure skips its own step; the rest is done.
TEST_F(ChkDelPrn, SkipsTheStepThatFails) {
  NameInvitationLibrary(machine);
  DeletePrinter();
  g_bTrayLogEnabled = 0;
  const Texts named = {desk::kPrinterName};
  const Texts ofRecord = {kRecordName};
  const Texts both = {desk::kPrinterName, kRecordName};
  const struct {
    const char* operation;
    std::uint64_t after;
    bool fileStands;
    Texts runValues;
    bool saysGoodbye;
  } cases[] = {
      {"RegCreateKeyExW", 0, true, {}, true},   // the Run key, for its value's file
      {"RegQueryValueExW", 0, true, {}, true},  // that value
      {"FindFirstFileW", 0, true, {}, true},    // the file
      {"DeleteFileW", 0, true, {}, true},
      {"RegOpenKeyExW", 0, false, both, true},      // the Run key, for its values
      {"RegOpenKeyExW", 1, false, ofRecord, true},  // the branch, for the record's name
      {"RegOpenKeyExW", 2, false, ofRecord, true},  // the record
      {"RegOpenKeyExW", 3, false, {}, true},        // the branch, for the record
      {"RegOpenKeyExW", 4, false, {}, true},        // the record
      {"RegOpenKeyExW", 5, false, {}, true},        // the branch, to delete below it
      {"RegDeleteValueW", 0, false, named, true},
      {"RegDeleteValueW", 1, false, ofRecord, true},
      {"RegDeleteKeyW", 0, false, {}, true},
      {"LoadLibraryW", 0, false, {}, false},
      {"GetProcAddress", 0, false, {}, false},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.operation + std::to_string(each.after));
    PutAutoStart();
    Closed().clear();
    inside.process().FailNext(each.operation, ERROR_ACCESS_DENIED, each.after);
    EXPECT_EQ(frame->ChkDelPrn(), 0);
    EXPECT_EQ(KeptFileStands(), each.fileStands);
    EXPECT_EQ(RunValues(), each.runValues);
    EXPECT_EQ(Closed(), each.saysGoodbye ? Texts{desk::kPrinterName} : Texts{});
    EXPECT_EQ(inside.process().Ledger(), held);
  }
}

TEST_F(ChkDelPrn, ARunKeyThatMayNotBeWrittenLeavesItsValuesAndTheRestIsDone) {
  NameInvitationLibrary(machine);
  machine.registry().Deny(HKEY_CURRENT_USER, u"Software\\Microsoft\\Windows\\CurrentVersion\\Run",
                          false);
  DeletePrinter();
  EXPECT_EQ(frame->ChkDelPrn(), 0);
  EXPECT_EQ(RunValues().size(), 2U);
  EXPECT_TRUE(KeptFileStands());
  EXPECT_EQ(Closed(), Texts{desk::kPrinterName});
}

TEST_F(ChkDelPrn, GivesZeroAndKeepsNoHandleWhateverFails) {
  NameInvitationLibrary(machine);
  DeletePrinter();
  g_bTrayLogEnabled = 0;
  const std::uint64_t before = inside.process().calls();
  EXPECT_EQ(frame->ChkDelPrn(), 0);
  const std::uint64_t calls = inside.process().calls() - before;
  ASSERT_GT(calls, 50U);
  for (std::uint64_t number = 1; number <= calls; ++number) {
    PutAutoStart();
    inside.process().FailCall(number);
    EXPECT_EQ(frame->ChkDelPrn(), 0) << number << " " << inside.process().failedOperation();
    EXPECT_EQ(inside.process().Ledger(), held) << number;
  }
}

// --- The goodbye to the invitation library

TEST_F(ChkDelPrn, TellsTheLibraryOfTheInstallDescriptionThePrintersName) {
  NameInvitationLibrary(machine);
  DeletePrinter();
  frame->ChkDelPrn();
  EXPECT_EQ(Closed(), Texts{desk::kPrinterName});
  EXPECT_EQ(inside.process().Ledger(), held);  // and frees it
}

TEST_F(ChkDelPrn, LogsWhatTheLibraryAnswers) {
  NameInvitationLibrary(machine);
  desk::InvitationLibraryOf(machine).closeResult = -77;
  DeletePrinter();
  EXPECT_EQ(frame->ChkDelPrn(), 0);
  EXPECT_TRUE(HasLogged("result : -77"));
}

TEST_F(ChkDelPrn, LoadsNothingWhereNoLibraryIsNamed) {
  DeletePrinter();
  EXPECT_EQ(frame->ChkDelPrn(), 0);
  EXPECT_TRUE(HasLogged("ChkDelPrn() csVal = \r\n"));
  EXPECT_FALSE(HasLogged("load smart parlos dll"));
}

TEST_F(ChkDelPrn, PassesOverALibraryThatIsntThere) {
  NameInvitationLibrary(machine);
  machine.files().Remove(kInvitations);
  DeletePrinter();
  EXPECT_EQ(frame->ChkDelPrn(), 0);
  EXPECT_TRUE(HasLogged("load smart parlos dll"));
  EXPECT_FALSE(HasLogged("call smart parlos api"));
}

TEST_F(ChkDelPrn, LoadsAndFreesALibraryWithoutTheExport) {
  NameInvitationLibrary(machine);
  machine.libraries().At(kInvitations).RemoveExport("FY07ParlosCloseExW");
  DeletePrinter();
  EXPECT_EQ(frame->ChkDelPrn(), 0);
  EXPECT_TRUE(HasLogged("load smart parlos dll"));
  EXPECT_FALSE(HasLogged("call smart parlos api"));
  EXPECT_EQ(inside.process().Ledger(), held);
}

// For a printer that can still be asked about, as during an installation of a moment.
class RegistryBased : public ChkDelPrn {
 protected:
  RegistryBased() {
    NameInvitationLibrary(machine, "\"C:\\Gone\\FROM_DESCRIPTION.DLL\"");
    Name(kInvitations);
    SetBase("1");
    inside.process().FailNext("OpenPrinterW", ERROR_ACCESS_DENIED);
  }
  void Name(std::u16string_view value) {
    machine.registry().SetString(HKEY_LOCAL_MACHINE, kDriverKey, u"SMRT_PARLOS", value);
  }
  void SetBase(const std::string& value) {
    machine.files().WriteFile(desk::kProfilePath, "[S7200]\r\nRegistryBaseVGL=" + value + "\r\n");
  }
};

TEST_F(RegistryBased, SetNamesItsLibraryInTheRegistry) {
  EXPECT_EQ(frame->ChkDelPrn(), 0);
  EXPECT_EQ(Closed(), Texts{desk::kPrinterName});
  EXPECT_TRUE(HasLogged("ChkDelPrn() Registry Ember\r\n"));
  EXPECT_FALSE(HasLogged("ChkDelPrn() Dat reading base Ember\r\n"));
}

TEST_F(RegistryBased, MeansExactlyOne) {
  for (const char* base : {"0", "2", "-1", "11", "", "yes"}) {
    SetBase(base);
    EXPECT_EQ(frame->ChkDelPrn(), 0) << base;
    inside.process().FailNext("OpenPrinterW", ERROR_ACCESS_DENIED);
  }
  EXPECT_TRUE(Closed().empty());
  EXPECT_FALSE(HasLogged("ChkDelPrn() Registry Ember\r\n"));
  EXPECT_TRUE(HasLogged("ChkDelPrn() csVal = C:\\Gone\\FROM_DESCRIPTION.DLL\r\n"));
}

// Its profile is found by the printer, so that of one that is gone says nothing.
TEST_F(RegistryBased, SetOfAPrinterThatIsGoneIsAskedByItsDescription) {
  DeletePrinter();
  EXPECT_EQ(frame->ChkDelPrn(), 0);
  EXPECT_TRUE(HasLogged("ChkDelPrn() Dat reading base Ember\r\n"));
}

TEST_F(RegistryBased, PathHas260CharactersAtMost) {
  std::u16string path = u"C:\\" + std::u16string(256, u'p');  // with its terminator 260
  Name(path);
  frame->ChkDelPrn();
  EXPECT_TRUE(HasLogged("load smart parlos dll"));

  machine.files().Remove(desk::kTrayLogFile);
  Name(path + u"p");
  inside.process().FailNext("OpenPrinterW", ERROR_ACCESS_DENIED);
  frame->ChkDelPrn();
  EXPECT_TRUE(HasLogged("ChkDelPrn() csVal = \r\n"));
  EXPECT_FALSE(HasLogged("load smart parlos dll"));
}

TEST_F(RegistryBased, KeyThatCantBeReadNamesNone) {
  machine.registry().Deny(HKEY_LOCAL_MACHINE, kDriverKey, true);
  EXPECT_EQ(frame->ChkDelPrn(), 0);
  machine.registry().RemoveKey(HKEY_LOCAL_MACHINE, kDriverKey);
  inside.process().FailNext("OpenPrinterW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(frame->ChkDelPrn(), 0);
  EXPECT_TRUE(HasLogged("ChkDelPrn() Registry Ember\r\n"));
  EXPECT_TRUE(Closed().empty());
}

}  // namespace
}  // namespace vgl
