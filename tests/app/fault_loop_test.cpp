// Sessions in which each platform call of the agent fails once: whatever fails, the agent ends or
// goes on as a healthy one, and leaves nothing behind but what is named here.
//
// One agent's calls are the same up to the one that fails, so a call is known by its number in the
// run without a failure.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "app/agent_messages.h"
#include "desk/run_helper.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;
using Counts = std::vector<std::uint32_t>;

constexpr std::uint64_t kNever = 0;
constexpr char16_t kParamFile[] = u"K_Q0001.tmp";

// Something that the agent did, and how many calls it had made by then.
struct Mark {
  std::u16string event;
  std::uint64_t calls;
};

// What came of one session.
struct FaultRun {
  std::uint64_t number = kNever;
  std::string failed;             // the operation
  bool ran = false;               // it stood there after its start
  bool lastClickStarted = false;  // the last double click on its icon had the run helper started
  bool endedByItself = false;
  std::vector<std::uint64_t> timers;  // of one that didn't
  bool ended = false;                 // by then, or by WM_CLOSE
  bool madeWindow = false;
  bool destroyedWindow = false;
  Texts ledger;
  bool ownParamFileStands = false;
  Texts otherParamFiles;
  Texts runValues;
  bool recordStands = false;
  std::size_t programsStarted = 0;
  Counts counts;  // in the usage log's file
  std::uint64_t calls = 0;
  std::vector<Mark> marks;  // kept of the run without a failure

  // The number of the call in which the agent did that for the `nth` time.
  std::uint64_t CallOf(std::u16string_view event, int nth = 1) const {
    for (const Mark& mark : marks)
      if (mark.event.starts_with(event) && --nth == 0) return mark.calls;
    ADD_FAILURE() << "never did " << testing::PrintToString(std::u16string(event));
    return kNever;
  }
};

// A machine on which the agent of the default printer starts for the first time, from a parameter
// file, with a run helper that reads its file.
class FaultSession {
 public:
  FaultSession() : m_process(SetUp()), m_agent(m_desk.machine, m_process) {
    m_desk.machine.KeepTrace(false);
    m_desk.machine.Observe([this](const sim::Event& event) {
      if (event.processId == m_process.id()) Note(event.text);
    });
  }

  ~FaultSession() { m_desk.machine.Observe(nullptr); }
  FaultSession(const FaultSession&) = delete;
  FaultSession& operator=(const FaultSession&) = delete;

  // From now on there is a tray log to be written, and it can't be.
  void LogInVain() {
    desk::EnableTrayLog(m_desk.machine);
    m_desk.machine.files().WriteFile(desk::kTrayLogFile, "");
    m_desk.machine.files().MakeUnreadable(desk::kTrayLogFile);
  }

  // The `number`th call from now on fails.
  void Fail(std::uint64_t number) {
    m_run.number = number;
    if (number != kNever) m_process.FailCall(number);
    m_callsBefore = m_process.calls();
  }
  void Start() {
    m_desk.RunFor(200);
    m_run.ran = !m_agent.HasEnded();
  }
  void DoubleClick() {
    m_run.lastClickStarted = false;
    if (IsOver() || m_agent.Icon() == nullptr) return;
    const std::size_t before = m_desk.machine.programs().Starts().size();
    m_agent.DoubleClick();
    m_desk.RunFor(10);
    m_run.lastClickStarted = m_desk.machine.programs().Starts().size() > before;
  }
  void Flush() {
    if (IsOver() || m_agent.Window() == nullptr) return;
    m_agent.Post(WM_VGL3_FLUSH_VGLLOG);
  }
  void DeletePrinter() { m_desk.DeletePrinter(); }
  void MaskCheck() {
    if (!IsOver()) m_desk.RunFor(3000);
  }
  // Ends what hasn't ended by itself, and looks around.
  FaultRun End() {
    m_run.endedByItself = m_agent.HasEnded();
    m_run.timers = m_agent.Timers();
    if (m_agent.Window() != nullptr) m_agent.Close();
    m_run.ended = m_agent.HasEnded();
    m_run.calls = m_process.calls() - m_callsBefore;
    m_run.failed = m_process.failedOperation();
    m_run.ledger = m_agent.Ledger();
    m_run.runValues = m_desk.RunValues();
    m_run.recordStands = m_desk.machine.registry().HasKey(HKEY_CURRENT_USER, desk::kRecordPath);
    m_run.programsStarted = m_desk.machine.programs().Starts().size();
    m_run.counts = m_desk.CountsInFile();
    for (const std::u16string& file : m_desk.TempFiles()) {
      if (file.ends_with(kParamFile))
        m_run.ownParamFileStands = true;
      else
        m_run.otherParamFiles.push_back(file);
    }
    return std::move(m_run);
  }

 private:
  // The call that was to fail is none that can: what follows is known from the run without failure.
  bool IsOver() const {
    return m_run.number != kNever && m_process.calls() - m_callsBefore >= m_run.number &&
           m_process.failedOperation().empty();
  }
  void Note(const std::u16string& event) {
    m_run.madeWindow |= event.starts_with(u"made window");
    m_run.destroyedWindow |= event.starts_with(u"destroying window");
    if (m_run.number == kNever) m_run.marks.push_back({event, m_process.calls()});
  }
  sim::Process& SetUp() {
    m_desk.machine.registry().SetDword(HKEY_CURRENT_USER, u"SOFTWARE\\KAVRO\\VGL3", u"K_QTR", 0);
    m_desk.machine.registry().RemoveKey(HKEY_CURRENT_USER, desk::kRecordPath);
    m_desk.SetRunValue(desk::kPrinterName, u"K_QD21TR.EXE");
    m_desk.WriteParamFile(kParamFile, desk::OptionsOfDefaultPrinter());
    m_desk.machine.programs().Add(desk::kRunHelperPath, desk::RunHelperMain);
    m_desk.machine.desktop().AnswerBoxesAtOnce();
    // With so long a list the menu's tail comes to an early stop: the thousands of calls that it
    // takes are the matter of menu_fault_test.cpp.
    m_desk.SetMenuValue("Separators", std::string(260, '1'));
    return desk::StartAgent(m_desk.machine, u"/FU \"K_Q0001.tmp\"");
  }

  SimDesk m_desk;
  sim::Process& m_process;
  SimAgent m_agent;
  FaultRun m_run;
  std::uint64_t m_callsBefore = 0;
};

// What the system takes back at such an end; nothing, at an orderly one.
Texts LeftBehind(const FaultRun& run) {
  // Where no message can be had, the loop ends, and with it the process.
  if (run.failed == "GetMessageW" && !run.destroyedWindow) {
    return {u"icon in the notification area",
            u"menu 801 of C:\\Windows\\System32\\spool\\drivers\\x64\\3\\K_S72EN.DLL",
            u"section VglV5MapFile_Ink", u"window TrayIconWClass"};
  }
  // A start that doesn't come to its loop.
  if (run.madeWindow && !run.destroyedWindow) return {u"window TrayIconWClass"};
  return {};
}

// All runs of a session in which a call fails; the one without a failure comes first.
std::vector<FaultRun> RunsOf(const std::function<FaultRun(std::uint64_t)>& session) {
  std::vector<FaultRun> runs;
  runs.push_back(session(kNever));
  for (std::uint64_t number = 1; number <= runs[0].calls; ++number) {
    FaultRun run = session(number);
    if (!run.failed.empty()) runs.push_back(std::move(run));
  }
  return runs;
}

std::string NameOf(const FaultRun& run) {
  return "call " + std::to_string(run.number) + ", " + run.failed;
}

// --- The operations of parts that come again and again, without those that can't fail or whose
// --- failure changes nothing

using Lines = std::vector<std::string>;

Lines Joined(const std::vector<Lines>& parts) {
  Lines joined;
  for (const Lines& part : parts) joined.insert(joined.end(), part.begin(), part.end());
  return joined;
}
Lines Each(Lines lines, const std::string& end) {
  for (std::string& line : lines) line += end;
  return lines;
}
// Of an open printer: its driver's name; where its driver's files are.
Lines AsksForDriverOfPrinter() {
  return {"CreateMutexW", "OpenPrinterW", "GetPrinterW", "GetPrinterW"};
}
Lines AsksForDriver() {
  return {"CreateMutexW", "OpenPrinterW", "GetPrinterDriverW", "GetPrinterDriverW"};
}
// A value of the driver set: the VIF names the install description for this system, which is read;
// the file that it names must be there.
Lines FindsInDriverSet() {
  return Joined({AsksForDriver(),
                 {"GetVersionExW", "GetPrivateProfileStringW"},
                 AsksForDriver(),
                 {"CreateFileW", "GetFileSize", "ReadFile"},
                 AsksForDriver(),
                 {"FindFirstFileW"}});
}

// --- From the first start to WM_CLOSE

class FaultLoop : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_runs = RunsOf([](std::uint64_t number) {
      FaultSession session;
      session.Fail(number);
      return Play(session);
    });
  }
  static FaultRun Play(FaultSession& session) {
    session.Start();
    session.DoubleClick();
    session.MaskCheck();
    session.Flush();
    session.DoubleClick();
    return session.End();
  }
  static void TearDownTestSuite() { s_runs.clear(); }
  static const FaultRun& WithoutFailure() { return s_runs[0]; }
  // What failed in the runs for which that holds, in their order.
  static Lines FailuresWhere(const std::function<bool(const FaultRun&)>& holds) {
    Lines failures;
    for (const FaultRun& run : s_runs)
      if (holds(run)) failures.push_back(run.failed);
    return failures;
  }

  static std::vector<FaultRun> s_runs;
};
std::vector<FaultRun> FaultLoop::s_runs;

TEST_F(FaultLoop, WithoutAFailureTheSessionIsWhole) {
  const FaultRun& run = WithoutFailure();
  EXPECT_TRUE(run.ran);
  EXPECT_FALSE(run.endedByItself);
  EXPECT_TRUE(run.ended);
  EXPECT_EQ(run.programsStarted, 2U);
  EXPECT_EQ(run.counts, (Counts{0, 1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_TRUE(run.recordStands);
  EXPECT_EQ(run.runValues, Texts{desk::kPrinterName});
  EXPECT_GT(s_runs.size(), 1000U);
}

TEST_F(FaultLoop, EveryAgentEndsByItselfOrOnClose) {
  for (const FaultRun& run : s_runs) EXPECT_TRUE(run.ended) << NameOf(run);
}

TEST_F(FaultLoop, AnAgentThatGoesOnServesTheNextClick) {
  const std::uint64_t clickedAgain = WithoutFailure().CallOf(u"got WM_VGL3_TRAYICON", 5);
  std::size_t wentOn = 0;
  for (const FaultRun& run : s_runs) {
    if (run.endedByItself || run.number >= clickedAgain) continue;
    EXPECT_TRUE(run.lastClickStarted) << NameOf(run);
    ++wentOn;
  }
  EXPECT_GT(wentOn, 500U);
}

// A start can't do without these; each stands for what the printer's agent can't be had without.
TEST_F(FaultLoop, AStartEndsWhereOneOfTheseFails) {
  const Lines loadsDriverSet = Joined(
      {FindsInDriverSet(), {"GetPrivateProfileStringW"}, FindsInDriverSet(), {"LoadLibraryW"}});
  EXPECT_EQ(
      FailuresWhere([](const FaultRun& run) { return !run.ran; }),
      Joined({// the parameter file, without which nothing is known of the printer
              {"GetTempPathW", "CreateFileW", "GetFileSize", "ReadFile"},
              // the driver's registry library
              {"GetVersionExW", "GetVersionExW", "EnumPrinterDriversW", "EnumPrinterDriversW",
               "FindFirstFileW", "LoadLibraryW"},
              // the window, without which there is no icon
              {"RegisterClassW", "CreateWindowExW"},
              // the map: it is made, and claimed
              {"CreateFileMappingW", "MapViewOfFile", "MapViewOfFile", "MapViewOfFile"},
              // the profile
              FindsInDriverSet(),
              // the record, which is made
              {"RegCreateKeyExW", "RegCreateKeyExW", "RegSetValueExW", "RegSetValueExW",
               "RegQueryValueExW"},
              // the printer library, which fills the record: it finds it and switches the icon on
              AsksForDriverOfPrinter(),
              loadsDriverSet,
              {"GetProcAddress", "RegOpenKeyExW", "RegEnumKeyExW", "RegOpenKeyExW",
               "RegQueryValueExW", "RegOpenKeyExW", "RegSetValueExW"},
              // the switch is read
              {"RegQueryValueExW"},
              // the resource library
              loadsDriverSet,
              // the icon and the menu
              {"Shell_NotifyIconW", "LoadMenuW", "GetSubMenu"},
              // the first message
              {"GetMessageW"}}));
}

// The gate of a click that can't open the printer takes it for gone; a check of the mask tries
// twice.
TEST_F(FaultLoop, AnAgentThatRunsEndsWhereThePrinterCantBeLookedForOrNoMessageBeHad) {
  EXPECT_EQ(FailuresWhere([](const FaultRun& run) { return run.ran && run.endedByItself; }),
            (Lines{"CreateMutexW", "OpenPrinterW",     // the gate of the first double click
                   "GetMessageW",                      // behind the mask check
                   "GetMessageW",                      // behind the flush
                   "CreateMutexW", "OpenPrinterW"}));  // the gate of the second one
}

TEST_F(FaultLoop, AnAgentThatGoesOnHasItsTimersUnlessOneCouldntBeSet) {
  const std::vector<std::uint64_t> both = {TMID_MASKCHECK, TMID_FLUSHLOG};
  std::vector<std::vector<std::uint64_t>> left;
  for (const FaultRun& run : s_runs) {
    if (run.endedByItself) continue;
    if (run.failed == "SetTimer" && run.timers != both)
      left.push_back(run.timers);
    else if (run.failed == "KillTimer" && run.timers.size() == 3)
      // The second click's, which its double click couldn't stop.
      EXPECT_EQ(run.timers, (std::vector<std::uint64_t>{TMID_MASKCHECK, TMID_FLUSHLOG, TMID_CLICK}))
          << NameOf(run);
    else
      EXPECT_EQ(run.timers, both) << NameOf(run);
  }
  // At the start the one and the other; the first again at its check.
  EXPECT_EQ(left, (std::vector<std::vector<std::uint64_t>>{
                      {TMID_FLUSHLOG}, {TMID_MASKCHECK}, {TMID_FLUSHLOG}}));
}

TEST_F(FaultLoop, NothingIsLeftInHandButWhatIsNamed) {
  for (const FaultRun& run : s_runs) EXPECT_EQ(run.ledger, LeftBehind(run)) << NameOf(run);
}

TEST_F(FaultLoop, NoParameterFileOfTheRunHelperIsLeft) {
  for (const FaultRun& run : s_runs) EXPECT_EQ(run.otherParamFiles, Texts{}) << NameOf(run);
}

// One that can't be read is removed all the same, as far as it can be found.
TEST_F(FaultLoop, TheAgentsOwnParameterFileIsLeftOnlyWhereItsRemovalFailed) {
  std::vector<std::string> failures;
  for (const FaultRun& run : s_runs)
    if (run.ownParamFileStands) failures.push_back(run.failed);
  EXPECT_EQ(failures, (std::vector<std::string>{"GetTempPathW", "FindFirstFileW", "DeleteFileW"}));
}

// The counts that may be lost, by the rules of the usage log: one whose own preparation fails; all
// since the last flush where a flush, or the loop, fails.
TEST_F(FaultLoop, NoCountIsLostThatIsntGivenUp) {
  Lines lost;
  for (const FaultRun& run : s_runs) {
    const Counts counts = run.counts.empty() ? Counts(14, 0) : run.counts;
    const std::uint32_t starts = run.ran ? 1 : 0;
    const auto windows = static_cast<std::uint32_t>(run.programsStarted);
    EXPECT_LE(counts[1], starts) << NameOf(run);
    EXPECT_LE(counts[2], windows) << NameOf(run);
    EXPECT_GE(counts[2] + 1, windows) << NameOf(run);
    if (counts[1] < starts || counts[2] < windows)
      lost.push_back(run.failed + (counts[1] < starts ? " start" : "") +
                     (counts[2] < windows ? " window" : ""));
  }
  const Lines finds = FindsInDriverSet();
  // The printer's driver, the log library by way of the VIF, by it the printer's device id in two
  // calls, and the model's key in the profile.
  const Lines prepares =
      Joined({AsksForDriverOfPrinter(),
              AsksForDriver(),
              AsksForDriver(),
              {"GetPrivateProfileStringW", "FindFirstFileW", "LoadLibraryW", "GetProcAddress",
               "OpenPrinterW", "GetPrinterDataW", "OpenPrinterW", "GetPrinterDataW"},
              finds,
              {"GetPrivateProfileIntW"}});
  const Lines asksPrinterLibrary = Joined({AsksForDriverOfPrinter(),
                                           finds,
                                           {"GetPrivateProfileStringW"},
                                           finds,
                                           {"LoadLibraryW", "GetProcAddress"}});
  // The printer library is called three times for the serial number; the number as text; the
  // model's key again; then the log library looks under its mutex for the printer's file.
  const Lines flushes =
      Joined({asksPrinterLibrary,
              asksPrinterLibrary,
              asksPrinterLibrary,
              {"MultiByteToWideChar", "MultiByteToWideChar", "GetPrivateProfileIntW",
               "LoadLibraryW", "GetProcAddress", "CreateMutexW", "WaitForSingleObject",
               "GetFileAttributesW", "CreateFileW"}});
  const Lines makesFile = {"LoadLibraryW",        "GetProcAddress",     "CreateMutexW",
                           "WaitForSingleObject", "GetFileAttributesW", "CreateFileW",
                           "CreateFileW",         "WriteFile"};
  const Lines addsToFile = {"GetFileSize", "ReadFile", "CreateFileW", "WriteFile"};
  EXPECT_EQ(lost, Joined({Each(prepares, " start"),
                          {"GetMessageW start window"},  // behind the mask check
                          Each(Joined({flushes, makesFile}), " start window"),
                          Each(Joined({prepares, flushes, addsToFile}), " window")}));
}

TEST_F(FaultLoop, TheAutoStartIsKeptUnlessTheStartOrTheLookForThePrinterFailed) {
  for (const FaultRun& run : s_runs) {
    if (run.runValues == Texts{desk::kPrinterName}) continue;
    // -1, or a printer that didn't open and so counts as gone.
    const bool didntOpen = run.failed == "CreateMutexW" || run.failed == "OpenPrinterW";
    EXPECT_TRUE(!run.ran || didntOpen) << NameOf(run);
  }
}

// What the agent does, in order, when no line of its log can be written.
TEST_F(FaultLoop, ALogThatCantBeWrittenChangesNothing) {
  FaultSession session;
  session.LogInVain();
  const FaultRun run = Play(session);
  const auto events = [](const FaultRun& of) {
    Texts texts;
    for (const Mark& mark : of.marks) texts.push_back(mark.event);
    return texts;
  };
  EXPECT_EQ(events(run), events(WithoutFailure()));
  EXPECT_GT(run.calls, WithoutFailure().calls + 40);
  EXPECT_EQ(run.ledger, Texts{});
}

// --- The printer is deleted

class FaultLoopOfDeletion : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_runs = RunsOf([](std::uint64_t number) {
      FaultSession session;
      session.Start();
      session.DoubleClick();
      session.Flush();
      session.DeletePrinter();
      session.Fail(number);
      session.MaskCheck();
      return session.End();
    });
  }
  static void TearDownTestSuite() { s_runs.clear(); }

  static std::vector<FaultRun> s_runs;
};
std::vector<FaultRun> FaultLoopOfDeletion::s_runs;

TEST_F(FaultLoopOfDeletion, EveryAgentEndsWithinThreeSecondsUnlessItsMessageGetsLost) {
  EXPECT_GT(s_runs.size(), 100U);
  std::vector<std::string> wentOn;
  for (const FaultRun& run : s_runs) {
    EXPECT_TRUE(run.ended) << NameOf(run);
    if (!run.endedByItself) wentOn.push_back(run.failed);
  }
  // The mask check isn't armed again, so that one ends by whoever closes it.
  EXPECT_EQ(wentOn, std::vector<std::string>{"PostMessageW"});
}

TEST_F(FaultLoopOfDeletion, NothingIsLeftInHandButWhatIsNamed) {
  for (const FaultRun& run : s_runs) EXPECT_EQ(run.ledger, LeftBehind(run)) << NameOf(run);
}

// What fails at the mask check is done again at the end.
TEST_F(FaultLoopOfDeletion, TheAutoStartIsGoneWhateverFailed) {
  for (const FaultRun& run : s_runs) {
    if (run.failed == "GetMessageW" && !run.destroyedWindow) continue;
    EXPECT_EQ(run.runValues, Texts{}) << NameOf(run);
  }
}

TEST_F(FaultLoopOfDeletion, TheRecordStays) {
  for (const FaultRun& run : s_runs) EXPECT_TRUE(run.recordStands) << NameOf(run);
}

TEST_F(FaultLoopOfDeletion, TheCountsOfTheFlushStay) {
  for (const FaultRun& run : s_runs)
    EXPECT_EQ(run.counts, (Counts{0, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0})) << NameOf(run);
}

TEST_F(FaultLoopOfDeletion, NoParameterFileIsLeft) {
  for (const FaultRun& run : s_runs) {
    EXPECT_FALSE(run.ownParamFileStands) << NameOf(run);
    EXPECT_EQ(run.otherParamFiles, Texts{}) << NameOf(run);
  }
}

}  // namespace
}  // namespace vgl
