// Whole sessions: the same seed twice, and a session with every platform call failing once.
#include <gtest/gtest.h>

#include "app/agent_messages.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

// Two agents for one printer, of which one may give way, and a third for another come and go;
// everything that happened.
std::vector<sim::Event> TraceOf(std::uint64_t seed) {
  SimDesk desk(seed);
  desk.WriteParamFile(u"K_Q0001.tmp", desk::OptionsOfDefaultPrinter());
  const SimAgent first = desk.StartAgent(u"/FU \"K_Q0001.tmp\"");
  const SimAgent second = desk.StartAgent();
  const SimAgent third =
      desk.StartAgent(u"/P \"Other\" /D \"KAVRO Studio 7200\" /O \"o\" /M \"m\"");
  desk.RunFor(7000);
  for (const SimAgent& agent : {first, second, third})
    if (!agent.HasEnded()) agent.Close();
  return desk.machine.trace();
}

TEST(Session, TheSameSeedGivesTheSameTrace) {
  for (const std::uint64_t seed : {0U, 1U, 2U, 77U}) EXPECT_EQ(TraceOf(seed), TraceOf(seed));
}

TEST(Session, AnotherSeedGivesAnotherTrace) { EXPECT_NE(TraceOf(1), TraceOf(2)); }

struct FaultRun {
  bool endedByLogOff = false;
  std::uint64_t calls = 0;
  std::string failed;  // the operation that failed; empty when the call of that number can't fail
  std::vector<std::u16string> ledger;
  bool windowDestroyed = false;
  bool mapFailed = false;  // and that was told to the user
  bool paramFileStands = false;
};

// A start from a parameter file, a mask check, WM_CLOSE; the `number`th platform call fails.
FaultRun SessionWithFault(std::uint64_t number) {
  SimDesk desk;
  const std::u16string file = desk.WriteParamFile(u"K_Q0001.tmp", desk::OptionsOfDefaultPrinter());
  desk.machine.desktop().AnswerBoxesAtOnce();
  sim::Process& process = desk::StartAgent(desk.machine, u"/FU \"K_Q0001.tmp\"");
  process.FailCall(number);
  const SimAgent agent(desk.machine, process);
  desk.RunFor(4000);
  FaultRun run;
  if (agent.Window() != nullptr) agent.Close();
  // Without a window nobody can close the agent; it stays until the user logs off.
  run.endedByLogOff = !agent.HasEnded();
  if (run.endedByLogOff) desk.machine.EndProcess(process, 0);
  run.calls = process.calls();
  run.failed = process.failedOperation();
  run.ledger = process.Ledger();
  for (const sim::Event& event : desk.machine.trace()) {
    if (event.text.starts_with(u"destroying window")) run.windowDestroyed = true;
    if (event.text == u"message box \"KAVRO Vigil 3\": Insufficient memory.") run.mapFailed = true;
  }
  run.paramFileStands = desk.machine.files().Exists(file);
  return run;
}

// What the system takes back at such an end; nothing, at an orderly one.
std::vector<std::u16string> LeftBehind(const FaultRun& run) {
  const std::u16string window = u"window TrayIconWClass";
  const std::u16string section = u"section VglV5MapFile_Ink";
  if (run.endedByLogOff)
    return {u"library C:\\Windows\\system32\\spool\\drivers\\x64\\3\\K_WRDEF1.DLL", section};
  // Where no message can be had, the loop ends, and with it the process.
  if (run.failed == "GetMessageW" && !run.windowDestroyed) return {section, window};
  // A start that failed at the instance map ends before there was a message loop.
  if (run.mapFailed) return {window};
  return {};
}

TEST(FaultLoop, StartUpAndShutDownSurviveTheFailureOfEveryCall) {
  const std::uint64_t calls = SessionWithFault(0).calls;
  ASSERT_GT(calls, 50U);
  std::uint64_t failures = 0;
  std::uint64_t mapFailures = 0;
  std::vector<std::string> endedByLogOff;
  for (std::uint64_t number = 1; number <= calls; ++number) {
    const FaultRun run = SessionWithFault(number);
    SCOPED_TRACE("call " + std::to_string(number) + ", " + run.failed);
    if (run.endedByLogOff) endedByLogOff.push_back(run.failed);
    failures += run.failed.empty() ? 0 : 1;
    mapFailures += run.mapFailed ? 1 : 0;
    EXPECT_EQ(run.ledger, LeftBehind(run));
  }
  EXPECT_GT(failures, 30U);
  // Nobody can close an agent without a window; every other one ends by itself.
  EXPECT_EQ(endedByLogOff, (std::vector<std::string>{"RegisterClassW", "CreateWindowExW"}));
  // The section, its first view, the view of the check, that of the new slot.
  EXPECT_EQ(mapFailures, 4U);
}

TEST(FaultLoop, AParameterFileThatCouldBeReadIsGoneUnlessItsRemovalFailed) {
  const std::uint64_t calls = SessionWithFault(0).calls;
  for (std::uint64_t number = 1; number <= calls; ++number) {
    const FaultRun run = SessionWithFault(number);
    const bool removalFailed = run.failed == "DeleteFileW" || run.failed == "FindFirstFileW";
    const bool neverOpened = run.failed == "CreateFileW" || run.failed == "GetTempPathW";
    if (!removalFailed && !neverOpened) {
      EXPECT_FALSE(run.paramFileStands) << "call " << number << ", " << run.failed;
    }
  }
}

}  // namespace
}  // namespace vgl
