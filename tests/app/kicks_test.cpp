// What the agent starts unasked, invitations and NetPilot, in whole agents: when the two are armed,
// their periods, and what a kick does.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>

#include "Common/text_conversion.h"
#include "app/agent_messages.h"
#include "desk/printer_library.h"
#include "tests/app/invitation_set.h"
#include "tests/support/frame_fixture.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;
using Lines = std::vector<std::string>;
using Timers = std::vector<std::uint64_t>;
using AllowCall = desk::InvitationLibrary::AllowCall;
using TimerCall = desk::InvitationLibrary::TimerCall;

constexpr char16_t kDependent[] = u"C:\\Windows\\System32\\K_DEP.EXE";
constexpr char16_t kNetPilot[] = u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\NETPILOT.EXE";
constexpr char16_t kPortRecord[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVNTarget\\P0000000000000000";
constexpr std::uint32_t kDay = 86400;

void PutPrograms(sim::Machine& machine) {
  OfferKicks(machine);
  SetDriverValue(machine, "DepExe", "C:\\Drv\\k_dep.exe");
  machine.files().WriteFile(kDependent, "");
  machine.files().WriteFile(kNetPilot, "");
}

void SetDisableRecord(SimDesk& desk, const std::string& bytes) {
  desk.machine.spooler().SetData(desk::kPrinterName, u"PrinterDriverData", u"KV_DISABLE_VGLFUNC",
                                 REG_BINARY, bytes);
}

// An agent of a device that is known by its port alone.
SimAgent StartedAgentOfPort(SimDesk& desk) {
  sim::RegistryTree& registry = desk.machine.registry();
  registry.SetString(HKEY_CURRENT_USER, kPortRecord, u"Name", u"LPT2");
  registry.SetDword(HKEY_CURRENT_USER, kPortRecord, u"TrayIconEnable", 1);
  return desk.StartedAgent(u"/D \"KAVRO Studio 7200\" /O \"LPT2\" /M \"S7200\"");
}

// As a person at the clock sets it on.
void SetClockOn(SimDesk& desk, std::uint32_t seconds) {
  desk.machine.system().startSeconds += seconds;
}

// --- When they are armed

TEST(KickTimers, AreArmedWithAMinuteWhereAllIsThere) {
  SimDesk desk;
  OfferKicks(desk.machine);
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(agent.Timers(),
            (Timers{TMID_MASKCHECK, TMID_INVITATION, TMID_NETPILOT, TMID_FLUSHLOG}));
  EXPECT_EQ(agent.PeriodOf(TMID_INVITATION), 60000U);
  EXPECT_EQ(agent.PeriodOf(TMID_NETPILOT), 60000U);
  EXPECT_TRUE(desk.HasLogged("m_uhInvitationMonitor : 10"));
}

TEST(KickTimers, AreArmedByTheSystemTheDriverThePrinterAndTheLibrary) {
  const struct {
    const char* name;
    std::function<void(SimDesk&)> change;
    bool invitations;
    bool netPilot;
  } cases[] = {
      {"domain controller", [](SimDesk& desk) { desk.machine.system().version.productType = 2; },
       false, false},
      {"server", [](SimDesk& desk) { desk.machine.system().version.productType = 3; }, false,
       false},
      {"other system", [](SimDesk& desk) { desk.machine.system().version.productType = 4; }, true,
       true},
      {"no ink-order service",
       [](SimDesk& desk) { desk.machine.registry().RemoveKey(HKEY_LOCAL_MACHINE, kInkOrderKey); },
       false, false},
      {"ink-order service of another driver",
       [](SimDesk& desk) {
         desk.machine.registry().RemoveKey(HKEY_LOCAL_MACHINE, kInkOrderKey);
         desk.machine.registry().MakeKey(HKEY_LOCAL_MACHINE,
                                         u"Software\\KAVRO\\KAVRO Studio 7201 IO_URL");
       },
       false, false},
      {"all on", [](SimDesk& desk) { SetDisableRecord(desk, std::string(10, '\1')); }, true, true},
      {"NetPilot off", [](SimDesk& desk) { SetDisableRecord(desk, std::string("\1\0\1\1", 4)); },
       true, false},
      {"invitations off", [](SimDesk& desk) { SetDisableRecord(desk, std::string("\1\1\0\1", 4)); },
       false, true},
      {"both off", [](SimDesk& desk) { SetDisableRecord(desk, std::string(10, '\0')); }, false,
       false},
      {"short record", [](SimDesk& desk) { SetDisableRecord(desk, std::string("\1\0", 2)); }, true,
       false},
      {"refused record", [](SimDesk& desk) { SetDisableRecord(desk, std::string("\2\0\0\0", 4)); },
       true, true},
      {"network printer",
       [](SimDesk& desk) {
         desk.machine.spooler().At(desk::kPrinterName).attributes = PRINTER_ATTRIBUTE_NETWORK;
       },
       true, false},
      {"period 0", [](SimDesk& desk) { desk::InvitationLibraryOf(desk.machine).period = 0; }, false,
       true},
      {"no library named", [](SimDesk& desk) { desk.SetDriverValue("SMRT_PARLOS", ""); }, false,
       true},
      {"library gone", [](SimDesk& desk) { desk.machine.files().Remove(kInvitations); }, false,
       true},
      {"library without the export",
       [](SimDesk& desk) {
         desk.machine.libraries().At(kInvitations).RemoveExport("FY08ParlosIsInvitationTimerW");
       },
       false, true},
      {"library without the other export",
       [](SimDesk& desk) {
         desk.machine.libraries().At(kInvitations).RemoveExport("FY08ParlosIsAllowInvitationW");
       },
       true, true},
  };
  for (const auto& each : cases) {
    SimDesk desk;
    OfferKicks(desk.machine);
    each.change(desk);
    const SimAgent agent = desk.StartedAgent();
    ASSERT_NE(agent.Icon(), nullptr) << each.name;
    EXPECT_EQ(agent.PeriodOf(TMID_INVITATION), each.invitations ? 60000U : 0U) << each.name;
    EXPECT_EQ(agent.PeriodOf(TMID_NETPILOT), each.netPilot ? 60000U : 0U) << each.name;
  }
}

TEST(KickTimers, OfASetWhoseVifNamesNoNetPilotAreThoseOfInvitationsAlone) {
  SimDesk desk;
  desk.machine.registry().MakeKey(HKEY_LOCAL_MACHINE, kInkOrderKey);
  desk::AddInvitationLibrary(desk.machine, kInvitations);
  desk::InvitationLibraryOf(desk.machine).period = 1;
  NameInvitationLibrary(desk.machine);
  EXPECT_EQ(desk.StartedAgent().Timers(), (Timers{TMID_MASKCHECK, TMID_INVITATION, TMID_FLUSHLOG}));
}

// An agent for which one call fails as soon as something has happened.
SimAgent StartedWithFault(SimDesk& desk, std::u16string when, const char* operation,
                          std::uint64_t after = 0) {
  sim::Process& process = desk::StartAgent(desk.machine, desk::OptionsOfDefaultPrinter());
  bool isArmed = true;
  desk.machine.Observe([&](const sim::Event& event) {
    if (!isArmed || !event.text.starts_with(when)) return;
    isArmed = false;
    process.FailNext(operation, ERROR_NO_SYSTEM_RESOURCES, after);
  });
  desk.RunFor(2000);
  desk.machine.Observe(nullptr);
  EXPECT_FALSE(isArmed);
  return {desk.machine, process};
}

TEST(KickTimers, AreArmedOnASystemThatDoesntTellWhatItIs) {
  SimDesk desk;
  OfferKicks(desk.machine);
  desk.machine.system().version.productType = 3;
  const SimAgent agent = StartedWithFault(desk, u"set timer TMID_MASKCHECK", "GetVersionExW");
  EXPECT_EQ(agent.PeriodOf(TMID_INVITATION), 60000U);
  EXPECT_EQ(agent.PeriodOf(TMID_NETPILOT), 60000U);
  EXPECT_FALSE(desk.HasLogged("Server OS."));
}

// Its members then speak for a record of zeros, which would switch both off.
TEST(KickTimers, AreArmedWhereTheDisableRecordCantBeReadOnceItsSizeIsKnown) {
  SimDesk desk;
  OfferKicks(desk.machine);
  SetDisableRecord(desk, std::string(10, '\1'));
  const SimAgent agent = StartedWithFault(desk, u"set timer TMID_MASKCHECK", "GetPrinterDataW", 1);
  EXPECT_EQ(agent.PeriodOf(TMID_INVITATION), 60000U);
  EXPECT_EQ(agent.PeriodOf(TMID_NETPILOT), 60000U);
}

TEST(KickTimers, ThatCantBeSetLeaveTheOtherOneAlone) {
  SimDesk desk;
  OfferKicks(desk.machine);
  const SimAgent agent = StartedWithFault(desk, u"invitation library: timer", "SetTimer");
  EXPECT_EQ(agent.Timers(), (Timers{TMID_MASKCHECK, TMID_NETPILOT, TMID_FLUSHLOG}));
  EXPECT_TRUE(desk.HasLogged("m_uhInvitationMonitor : 0"));
  SimDesk other;
  OfferKicks(other.machine);
  EXPECT_EQ(StartedWithFault(other, u"set timer TMID_INVITATION", "SetTimer").Timers(),
            (Timers{TMID_MASKCHECK, TMID_INVITATION, TMID_FLUSHLOG}));
}

TEST(KickTimers, AreArmedInOrderWithTheLibraryLoadedForItsOneAnswer) {
  SimDesk desk;
  OfferKicks(desk.machine);
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(desk::InvitationLibraryOf(desk.machine).timerCalls,
            (std::vector<TimerCall>{{u"Studio 7200", u"KAVRO Studio 7200"}}));
  EXPECT_TRUE(desk::InvitationLibraryOf(desk.machine).allowCalls.empty());
  const Texts held = agent.Ledger();
  EXPECT_TRUE(std::none_of(held.begin(), held.end(),
                           [](const auto& each) { return each.ends_with(u"KVPARLOS.DLL"); }));
  Texts steps;
  for (const sim::Event& event : desk.machine.trace())
    if (event.text.starts_with(u"set timer") || event.text.ends_with(u"KVPARLOS.DLL"))
      steps.push_back(event.text.substr(0, event.text.find(u':')));
  EXPECT_EQ(steps, (Texts{u"set timer TMID_MASKCHECK", u"loaded library C", u"freed library C",
                          u"set timer TMID_INVITATION", u"set timer TMID_NETPILOT",
                          u"set timer TMID_FLUSHLOG"}));
}

// --- Invitations

class Invitations : public testing::Test {
 protected:
  Invitations() { PutPrograms(desk.machine); }

  // Its first kick comes a minute after its start, which has taken 100 ms.
  SimAgent KickedAgent() {
    const SimAgent agent = desk.StartedAgent();
    desk.RunFor(60200 - desk.machine.now());
    return agent;
  }
  std::size_t Asks() { return face.allowCalls.size(); }
  const std::vector<sim::Programs::Start>& Starts() { return desk.machine.programs().Starts(); }
  std::ptrdiff_t Loads() {
    const auto& trace = desk.machine.trace();
    return std::count_if(trace.begin(), trace.end(), [](const sim::Event& event) {
      return event.text.starts_with(u"loaded library") && event.text.ends_with(u"KVPARLOS.DLL");
    });
  }

  SimDesk desk;
  desk::InvitationLibrary& face = desk::InvitationLibraryOf(desk.machine);
};

TEST_F(Invitations, AreAskedForAfterAMinuteAndThenByTheLibrarysPeriod) {
  const SimAgent agent = desk.StartedAgent();
  desk.RunFor(60000 - desk.machine.now());
  EXPECT_EQ(Asks(), 0U);
  desk.RunFor(200);
  EXPECT_EQ(Asks(), 1U);
  EXPECT_EQ(agent.PeriodOf(TMID_INVITATION), 300000U);
  desk.RunFor(299800);
  EXPECT_EQ(Asks(), 1U);
  desk.RunFor(200);
  EXPECT_EQ(Asks(), 2U);
  face.period = 5;  // isn't asked again
  desk.RunFor(300000);
  EXPECT_EQ(Asks(), 3U);
  EXPECT_EQ(face.timerCalls.size(), 1U);
  EXPECT_EQ(face.allowCalls[2],
            (AllowCall{u"Studio 7200", u"KAVRO Studio 7200", u"S7200", {0, -1, 1}}));
}

TEST_F(Invitations, AreStartedWithAParameterFileThatStaysForTheProgramAndCounted) {
  face.level = 3;
  const SimAgent agent = KickedAgent();
  const Texts files = desk.TempFiles();
  ASSERT_EQ(files.size(), 1U);
  constexpr char16_t kText[] =
      u" /ASMRT\n /T \"INVITE3\"\n /P \"Studio 7200\"\n /D \"KAVRO Studio 7200\"\n /M \"S7200\"\n"
      u" /O \"USB001\"";
  EXPECT_EQ(desk.machine.files().ReadFile(files[0]),
            Utf16LeFromText(std::u16string_view(kText, std::size(kText))));
  ASSERT_EQ(Starts().size(), 1U);
  EXPECT_EQ(Starts()[0].path, kDependent);
  EXPECT_EQ(Starts()[0].commandLine, u"K_DEP.EXE /FU \"" + files[0] + u"\"");
  EXPECT_EQ(agent.Counts(), (std::vector<std::uint32_t>{0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}));
}

TEST_F(Invitations, OfLevelZeroWaitForTheNextPeriod) {
  face.level = 0;
  const SimAgent agent = KickedAgent();
  EXPECT_EQ(Asks(), 1U);
  EXPECT_TRUE(Starts().empty());
  EXPECT_EQ(desk.TempFiles(), Texts{});
  EXPECT_EQ(agent.Counts().at(13), 0U);
  face.level = 1;
  desk.RunFor(300000);
  EXPECT_EQ(Starts().size(), 1U);
}

TEST_F(Invitations, ThatFailAreSilentAndTheTimerGoesOn) {
  const struct {
    const char* name;
    std::function<void(SimDesk&)> fail;
    std::uint32_t counted;
    std::size_t filesLeft;
  } cases[] = {
      {"no library named", [](SimDesk& each) { each.SetDriverValue("SMRT_PARLOS", ""); }, 0, 0},
      {"library gone", [](SimDesk& each) { each.machine.files().Remove(kInvitations); }, 0, 0},
      {"library without the export",
       [](SimDesk& each) {
         each.machine.libraries().At(kInvitations).RemoveExport("FY08ParlosIsAllowInvitationW");
       },
       0, 0},
      {"no dependent program", [](SimDesk& each) { each.SetDriverValue("DepExe", ""); }, 0, 0},
      {"no temp folder", [](SimDesk& each) { each.machine.system().tempFolder.clear(); }, 0, 0},
      {"program gone", [](SimDesk& each) { each.machine.files().Remove(kDependent); }, 1, 1},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    SimDesk other;
    PutPrograms(other.machine);
    desk::InvitationLibraryOf(other.machine).level = 1;
    const SimAgent agent = other.StartedAgent();
    const std::u16string tempFolder = other.machine.system().tempFolder;
    each.fail(other);
    other.RunFor(60200 - other.machine.now());
    other.machine.system().tempFolder = tempFolder;
    EXPECT_TRUE(other.machine.programs().Starts().empty());
    EXPECT_EQ(other.TempFiles().size(), each.filesLeft);
    EXPECT_EQ(agent.Counts().at(13), each.counted);
    EXPECT_EQ(other.BoxesShown(), Texts{});
    EXPECT_EQ(agent.PeriodOf(TMID_INVITATION), 300000U);
    agent.Close();
    EXPECT_EQ(agent.Ledger(), Texts{});
  }
}

TEST_F(Invitations, LoadTheirLibraryAtTheFirstKickAndKeepItToTheEnd) {
  const SimAgent agent = KickedAgent();
  EXPECT_EQ(Loads(), 2);  // at the start for its period, and now
  desk.RunFor(600000);
  EXPECT_EQ(Asks(), 3U);
  EXPECT_EQ(Loads(), 2);
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_EQ(agent.Ledger(), Texts{});
  const Lines lines = desk.LogTexts();
  const auto deleted = std::find(lines.begin(), lines.end(), "delete m_pcInv");
  ASSERT_NE(deleted, lines.end());
  EXPECT_EQ(*(deleted + 1), "::FreeLibrary(m_hInstAllowInv)");
}

TEST_F(Invitations, NeverAskedForLeaveNothingToFree) {
  desk.StartedAgent().Close();
  EXPECT_FALSE(desk.HasLogged("delete m_pcInv"));
  EXPECT_FALSE(desk.HasLogged("::FreeLibrary(m_hInstAllowInv)"));
}

TEST_F(Invitations, AreKickedByWhoeverPostsTheMessage) {
  desk.machine.registry().RemoveKey(HKEY_LOCAL_MACHINE, kInkOrderKey);
  face.level = 1;
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_VGL3_KICK_INVITATION, 7, -7);
  EXPECT_EQ(Starts().size(), 1U);
  EXPECT_EQ(agent.PeriodOf(TMID_INVITATION), 0U);
}

// The one that asks for levels never knows printer and model, and so no profile.
TEST_F(Invitations, OfASetInTheRegistryAreArmedByItAndAskedForByTheDescription) {
  desk.AddToProfile("RegistryBaseVGL=1");
  desk.machine.registry().SetString(HKEY_LOCAL_MACHINE, kDriverKey, u"SMRT_PARLOS", kInvitations);
  desk.SetDriverValue("SMRT_PARLOS", "");
  const SimAgent agent = KickedAgent();
  EXPECT_EQ(face.timerCalls.size(), 1U);
  EXPECT_EQ(agent.PeriodOf(TMID_INVITATION), 300000U);
  EXPECT_EQ(Asks(), 0U);
  desk.SetDriverValue("SMRT_PARLOS", "C:\\Windows\\system32\\spool\\drivers\\x64\\3\\KVPARLOS.DLL");
  desk.RunFor(300000);
  EXPECT_EQ(Asks(), 1U);
}

TEST_F(Invitations, OfAPortAreArmedButNeverAskedFor) {
  face.level = 1;
  const SimAgent agent = StartedAgentOfPort(desk);
  EXPECT_EQ(agent.PeriodOf(TMID_INVITATION), 60000U);
  EXPECT_EQ(face.timerCalls, (std::vector<TimerCall>{{u"", u"KAVRO Studio 7200"}}));
  desk.RunFor(700000);
  EXPECT_EQ(Asks(), 0U);
  EXPECT_TRUE(Starts().empty());
}

// --- NetPilot

class NetPilotKicks : public testing::Test {
 protected:
  NetPilotKicks() {
    PutPrograms(desk.machine);
    desk::InvitationLibraryOf(desk.machine).period = 0;
  }

  SimAgent CheckedAgent() {
    const SimAgent agent = desk.StartedAgent();
    desk.RunFor(60200 - desk.machine.now());
    return agent;
  }
  // To behind the next check.
  void AwaitCheck() { desk.RunFor(900000); }
  std::size_t Starts() { return desk.machine.programs().Starts().size(); }
  std::optional<std::string> LastKick(std::u16string_view record = desk::kRecordPath) {
    return desk.machine.registry().Bytes(HKEY_CURRENT_USER, record, u"LastKickNetPilot");
  }
  void LetPrinterAnswer(bool answers) {
    desk.machine.spooler().SetData(desk::kPrinterName, u"PrinterDriverData", u"PrinterAnswers",
                                   REG_DWORD, std::string(answers ? "\1\0\0\0" : "\0\0\0\0", 4));
  }

  SimDesk desk;
  desk::PrinterLibrary& face = desk::PrinterLibraryOf(desk.machine);
};

TEST_F(NetPilotKicks, KeepTheTimeAtFirstAndStartTheProgramADayLater) {
  const SimAgent agent = CheckedAgent();
  // 60 seconds after 5 January 2026, 9:00.
  EXPECT_EQ(LastKick(), std::string("\xCC\x7D\x5B\x69\0\0\0\0", 8));
  EXPECT_EQ(Starts(), 0U);
  EXPECT_EQ(agent.Counts().at(12), 0U);
  SetClockOn(desk, kDay - 901);
  AwaitCheck();
  EXPECT_EQ(Starts(), 0U);
  EXPECT_EQ(face.statusCalls.size(), 1U);  // asked for only when due
  AwaitCheck();
  ASSERT_EQ(Starts(), 1U);
  EXPECT_EQ(desk.machine.programs().Starts()[0].commandLine,
            std::u16string(kNetPilot) + u" /RUN /P \"Studio 7200\"");
  EXPECT_EQ(agent.Counts().at(12), 1U);
  AwaitCheck();
  EXPECT_EQ(Starts(), 1U);
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_EQ(agent.Ledger(), Texts{});
}

TEST_F(NetPilotKicks, ComeByThePeriodOfTheProfileEachQuarterOfAnHourWhereItHasNone) {
  const struct {
    const char* line;
    std::uint32_t period;
  } cases[] = {
      {"", 900000},
      {"NetPilotCheckTime=0", 900000},
      {"NetPilotCheckTime=often", 900000},
      {"NetPilotCheckTime=120000", 120000},
  };
  for (const auto& each : cases) {
    SimDesk other;
    OfferKicks(other.machine);
    other.AddToProfile(each.line);
    const SimAgent agent = other.StartedAgent();
    other.RunFor(60200 - other.machine.now());
    EXPECT_EQ(agent.PeriodOf(TMID_NETPILOT), each.period) << each.line;
  }
}

TEST_F(NetPilotKicks, TryAgainAtTheNextCheckWhereTheStartFails) {
  const SimAgent agent = CheckedAgent();
  const std::optional<std::string> first = LastKick();
  desk.machine.files().Remove(kNetPilot);
  SetClockOn(desk, kDay);
  AwaitCheck();
  AwaitCheck();
  EXPECT_EQ(LastKick(), first);
  desk.machine.files().WriteFile(kNetPilot, "");
  AwaitCheck();
  EXPECT_EQ(Starts(), 1U);
  EXPECT_NE(LastKick(), first);
  agent.Close();
  EXPECT_EQ(desk.CountsInFile().at(12), 3U);  // those that failed, too
}

TEST_F(NetPilotKicks, WaitForThePrinterToAnswer) {
  LetPrinterAnswer(false);
  CheckedAgent();
  EXPECT_EQ(LastKick(), std::nullopt);
  LetPrinterAnswer(true);
  AwaitCheck();
  ASSERT_NE(LastKick(), std::nullopt);
  const std::optional<std::string> first = LastKick();
  SetClockOn(desk, kDay);
  LetPrinterAnswer(false);
  AwaitCheck();
  EXPECT_EQ(Starts(), 0U);
  EXPECT_EQ(LastKick(), first);
  LetPrinterAnswer(true);
  AwaitCheck();
  EXPECT_EQ(Starts(), 1U);
}

// A gap of 4294968 seconds is one of 704 milliseconds.
TEST_F(NetPilotKicks, OfAPrinterThatComesBackAfter50DaysCanBeLateByADay) {
  CheckedAgent();
  SetClockOn(desk, 4294968 - 900);
  AwaitCheck();
  EXPECT_EQ(Starts(), 0U);
  SetClockOn(desk, kDay);
  AwaitCheck();
  EXPECT_EQ(Starts(), 1U);
}

TEST_F(NetPilotKicks, AreRememberedByTheNextAgent) {
  CheckedAgent().Close();
  SetClockOn(desk, kDay);
  const SimAgent second = desk.StartedAgent();
  desk.RunFor(62000);
  EXPECT_EQ(Starts(), 1U);
  second.Close();
  desk.StartedAgent();
  desk.RunFor(62000);
  EXPECT_EQ(Starts(), 1U);
}

TEST_F(NetPilotKicks, OfAPrinterWhoseRecordWentKeepTheTimeAtTheRoot) {
  desk.StartedAgent();
  desk.machine.registry().RemoveKey(HKEY_CURRENT_USER, desk::kRecordPath);
  desk.RunFor(60200 - desk.machine.now());
  EXPECT_NE(LastKick(u""), std::nullopt);
  SetClockOn(desk, kDay);
  AwaitCheck();
  EXPECT_EQ(Starts(), 1U);
}

// Its name is in a VIF, which is found by the printer.
TEST_F(NetPilotKicks, OfAPortThereAreNone) {
  const SimAgent agent = StartedAgentOfPort(desk);
  EXPECT_EQ(agent.Timers(), (Timers{TMID_MASKCHECK, TMID_FLUSHLOG}));
  agent.Post(WM_VGL3_CHECK_NETPILOT);
  EXPECT_EQ(LastKick(kPortRecord), std::nullopt);
}

TEST_F(NetPilotKicks, AreCheckedForWhoeverPostsTheMessageAlsoOnAServer) {
  desk.machine.system().version.productType = 3;
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(agent.PeriodOf(TMID_NETPILOT), 0U);
  agent.Post(WM_VGL3_CHECK_NETPILOT, 5, -5);
  EXPECT_NE(LastKick(), std::nullopt);
  SetClockOn(desk, kDay);
  agent.Post(WM_VGL3_CHECK_NETPILOT);
  EXPECT_EQ(Starts(), 1U);
}

TEST_F(NetPilotKicks, OfANetworkPrinterDoNothing) {
  desk.machine.spooler().At(desk::kPrinterName).attributes = PRINTER_ATTRIBUTE_NETWORK;
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_VGL3_CHECK_NETPILOT);
  EXPECT_EQ(LastKick(), std::nullopt);
  EXPECT_TRUE(face.statusCalls.empty());
}

// --- While a utility has the printer

class KicksBesideAUtility : public FrameTest {
 protected:
  KicksBesideAUtility() { PutPrograms(machine); }
};

TEST_F(KicksBesideAUtility, AreServedWhileTheChecksStandAside) {
  desk::InvitationLibraryOf(machine).level = 1;
  ASSERT_EQ(frame->StartUp(), 1);
  StartUtility();
  Pump(60010);
  EXPECT_TRUE(HasLogged("return utility executing"));
  EXPECT_EQ(desk::InvitationLibraryOf(machine).allowCalls.size(), 1U);
  EXPECT_EQ(machine.programs().Starts().size(), 1U);
  EXPECT_EQ(desk::PrinterLibraryOf(machine).statusCalls.size(), 1U);
  EXPECT_NE(machine.registry().Bytes(HKEY_CURRENT_USER, desk::kRecordPath, u"LastKickNetPilot"),
            std::nullopt);
}

// A timer that couldn't be set has no period either: the next kick isn't followed by another.
TEST_F(KicksBesideAUtility, HaveNoPeriodWithoutATimer) {
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_EQ(frame->m_uInvitationPeriod, 300000U);
  frame->DestroyWindow();
  bool isArmed = true;
  machine.Observe([&](const sim::Event& event) {
    if (!isArmed || !event.text.starts_with(u"invitation library: timer")) return;
    isArmed = false;
    inside.process().FailNext("SetTimer", ERROR_NO_SYSTEM_RESOURCES);
  });
  ASSERT_EQ(frame->StartUp(), 1);
  machine.Observe(nullptr);
  EXPECT_FALSE(isArmed);
  EXPECT_EQ(frame->m_uInvitationPeriod, 0U);
  EXPECT_EQ(frame->m_uhInvitationMonitor, 0U);
}

}  // namespace
}  // namespace vgl
