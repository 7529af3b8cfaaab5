// The usage log with two threads at it: a utility's counts, while the main thread counts, flushes
// and ends.
#include <functional>

#include "tests/support/sim_desk.h"
#include "tests/support/vgl_log_fixture.h"

namespace vgl {
namespace {

using namespace platform;

// A log, and how often a thread has counted in it.
struct Tally {
  CVglLog& log;
  std::uint32_t counted = 0;
};
std::uint32_t Count100Times(void* given) {
  Tally& tally = *static_cast<Tally*>(given);
  for (int i = 0; i < 100; ++i) {
    if (tally.log.Increment(VGLLOG_TRAYICON, kCountCleanHead, desk::kPrinterName) == 0)
      ++tally.counted;
    Os().process.Sleep(1);
  }
  return 0;
}

std::uint32_t CountOnceAfter10Milliseconds(void* log) {
  Os().process.Sleep(10);
  static_cast<CVglLog*>(log)->Increment(VGLLOG_TRAYICON, kCountCleanHead, u"Studio");
  return 0;
}

HANDLE StartCounting(THREADPROC counting, CVglLog& log) {
  return Os().process.CreateThread(counting, &log);
}

void Await(HANDLE thread) {
  EXPECT_EQ(Os().objects.WaitForSingleObject(thread, 600000), WAIT_OBJECT_0);
  Os().objects.CloseHandle(thread);
}

// A log that takes 50 ms to be written.
std::int32_t WriteSlowly(const char16_t*, const char16_t*, std::int32_t, const std::uint32_t*,
                         const char16_t*, std::int32_t) {
  Os().process.Sleep(50);
  return AL_ERROR_FILE_NOT_EXIST;
}

class VglLogThreads : public VglLogTest {
 protected:
  void MakeWritingSlow() {
    LogLibrary().RemoveExport("IncrementMultiLog");
    LogLibrary().Export<&WriteSlowly>(99, "IncrementMultiLog");
  }
};

// A library that has the agent's messages handled while it writes: a menu command that is counted,
// and a flush.
struct ComesBack {
  CVglLog* log = nullptr;
  std::int32_t counted = 0;
  std::int32_t flushed = 0;
};
std::int32_t WriteAndComeBack(const char16_t*, const char16_t*, std::int32_t, const std::uint32_t*,
                              const char16_t*, std::int32_t) {
  auto& state = sim::RunningProcess().machine().libraries().State<ComesBack>();
  state.counted = state.log->Increment(VGLLOG_TRAYICON, kCountMenuDp, u"Studio");
  state.flushed = state.log->FlushVglLog();
  state.log->Clear();
  return AL_ERROR_NOT_AVAILABLE;
}

TEST_F(VglLogThreads, AnOperationOfTheSameThreadWithinAnotherDoesNothing) {
  LogLibrary().RemoveExport("IncrementMultiLog");
  LogLibrary().Export<&WriteAndComeBack>(99, "IncrementMultiLog");
  auto& state = machine.libraries().State<ComesBack>();
  state.log = &log;
  EXPECT_EQ(Count(kCountAgentStart), 0);
  EXPECT_EQ(log.WriteVglLogFile(), 0);
  EXPECT_EQ(state.counted, kVglLogFailed);
  EXPECT_EQ(state.flushed, kVglLogFailed);
  ASSERT_NE(log.m_pnLogData, nullptr);
  EXPECT_EQ(log.m_pnLogData[kCountAgentStart], 1U);
  EXPECT_EQ(log.m_pnLogData[kCountMenuDp], 0U);
  EXPECT_EQ(Count(kCountMenuDp), 0);  // its turn is over
}

TEST_F(VglLogThreads, ACountDuringAFlushIsLostAndWaitsForNobody) {
  MakeWritingSlow();
  EXPECT_EQ(Count(kCountAgentStart), 0);
  const HANDLE thread = StartCounting(CountOnceAfter10Milliseconds, log);
  EXPECT_EQ(log.FlushVglLog(), 1);
  Await(thread);
  EXPECT_EQ(machine.now(), 50U);
  EXPECT_EQ(StoredCounters(), LogOf(u"", {0, 1}).counters);
  EXPECT_EQ(log.m_pnLogData, nullptr);
}

TEST_F(VglLogThreads, AnOperationThatMeetsAnotherOneDoesNothingAtOnce) {
  MakeWritingSlow();
  std::u16string path;
  const std::function<std::int32_t()> operations[] = {
      [&] { return log.Increment(VGLLOG_TRAYICON, kCountMenuDp, kPrinter); },
      [&] { return log.SetValue(VGLLOG_TRAYICON, kCountMenuDp, 5, kPrinter); },
      [&] { return log.GetLogRuFileName(&path); },
      [&] { return log.WriteVglLogFile(); },
      [&] { return log.FlushVglLog(); },
      [&] {
        log.Clear();
        return kVglLogFailed;
      },
  };
  for (const std::function<std::int32_t()>& operation : operations) {
    Count(kCountAgentStart);
    const HANDLE writing = Os().process.CreateThread(
        [](void* given) {
          static_cast<CVglLog*>(given)->WriteVglLogFile();
          return 0U;
        },
        &log);
    Os().process.Sleep(10);
    const std::uint64_t begin = machine.now();
    EXPECT_EQ(operation(), kVglLogFailed);
    EXPECT_EQ(machine.now(), begin);
    EXPECT_EQ(path, u"");
    Await(writing);
    EXPECT_GT(Counter(kCountAgentStart), 0U);
    EXPECT_EQ(Counter(kCountMenuDp), 0U);
  }
}

TEST_F(VglLogThreads, AFlushGivesWhatItsWriteGaveAndForgetsEverything) {
  EXPECT_EQ(log.FlushVglLog(), -99);
  EXPECT_EQ(Count(kCountAgentStart), 0);
  EXPECT_EQ(log.FlushVglLog(), 1);
  EXPECT_EQ(log.m_pnLogData, nullptr);
  EXPECT_EQ(log.m_nLogKind, 0);
  EXPECT_TRUE(log.m_csDeviceID.empty());
  EXPECT_EQ(Count(kCountAgentStart), 0);
  Answer("IncrementMultiLog", -2);
  EXPECT_EQ(log.FlushVglLog(), -2);
  EXPECT_EQ(log.m_pnLogData, nullptr);
}

TEST_F(VglLogThreads, AnOperationThatEndsEarlyLeavesTheLogFree) {
  std::u16string path;
  EXPECT_EQ(log.WriteVglLogFile(), -99);
  WriteProfile("VGL_LOG=0\n");
  EXPECT_EQ(Count(1), -97);
  EXPECT_EQ(log.SetValue(VGLLOG_TRAYICON, 1, 5, kPrinter), -97);
  EXPECT_EQ(log.GetLogRuFileName(&path), 0);
  log.Clear();
  WriteProfile("VGL_LOG=1\n");
  Await(StartCounting(CountOnceAfter10Milliseconds, log));
  EXPECT_EQ(Counter(kCountCleanHead), 1U);
}

// Each millisecond the thread counts once, and the main thread counts or flushes.
TEST(VglLogSeeds, ACountThatSucceedsReachesTheFileHoweverTwoThreadsInterleave) {
  for (std::uint64_t seed = 0; seed <= 12; ++seed) {
    SCOPED_TRACE(seed);
    SimDesk desk(seed);
    sim::Inside inside(desk.machine);
    CVglLog log;
    Tally tally{log};
    const HANDLE thread = Os().process.CreateThread(Count100Times, &tally);
    std::uint32_t counted = 0;
    for (int i = 0; i < 20; ++i) {
      if (log.Increment(VGLLOG_TRAYICON, kCountPreferences, desk::kPrinterName) == 0) ++counted;
      if (i % 3 == 0) log.FlushVglLog();
      Os().process.Sleep(1);
    }
    Await(thread);
    log.FlushVglLog();
    EXPECT_GE(tally.counted, 80U);  // it is alone for that many
    EXPECT_GT(counted, 0U);
    EXPECT_EQ(desk.CountsInFile(), (std::vector<std::uint32_t>{0, 0, 0, counted, 0, tally.counted,
                                                               0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(inside.process().Ledger().empty());
  }
}

}  // namespace
}  // namespace vgl
