// The first count and the flush with every platform call failing once.
#include "tests/support/vgl_log_fixture.h"

namespace vgl {
namespace {

class VglLogFaults : public VglLogTest {
 protected:
  std::int32_t counted = 0;
  std::int32_t written = 0;

  void PutFile(const desk::UsageLog* stored) {
    if (stored == nullptr)
      machine.files().Remove(kLogFile);
    else
      PutLogFile(*stored);
  }

  // A first count and a flush.
  void CountAndWrite() {
    counted = Count(1);
    written = log.WriteVglLogFile();
  }

  std::uint32_t Stored() {
    const std::vector<std::uint32_t> counters = StoredCounters();
    return counters.size() > 1 ? counters[1] : 0;
  }

  // Has each call of CountAndWrite fail once, with that file, or none, there at first, and `check`
  // look at the outcome. The libraries aren't loaded any more then: that is in the ledger.
  void ForEachFault(const desk::UsageLog* stored, const std::function<void()>& check) {
    WithEachCallFailing(
        [&] {
          log.Clear();
          PutFile(stored);
          CountAndWrite();
        },
        [&](std::uint64_t) {
          EXPECT_EQ(platform::Os().modules.GetModuleHandleW(kLogLibrary), platform::HMODULE{});
          EXPECT_EQ(platform::Os().modules.GetModuleHandleW(kPrinterLibrary), platform::HMODULE{});
          check();
        });
  }
};

// A count that isn't in the file is still in memory, and arrives with the next flush.
TEST_F(VglLogFaults, NoFailureLosesACountOfACurrentFile) {
  const desk::UsageLog before = LogOf(u"1.0.0.0", {0, 10});
  std::uint32_t failures = 0;
  ForEachFault(&before, [&] {
    if (counted < 0) {
      EXPECT_EQ(Stored(), 10U);
      EXPECT_EQ(log.m_pnLogData, nullptr);
      return;
    }
    if (Stored() == 10U) {
      ++failures;
      EXPECT_EQ(LogFile(), before);
      EXPECT_EQ(log.WriteVglLogFile(), 0);
    }
    EXPECT_EQ(Stored(), 11U);
  });
  EXPECT_GT(failures, 20U);
}

TEST_F(VglLogFaults, NoFailureLosesACountOfANewFile) {
  std::uint32_t failures = 0;
  ForEachFault(nullptr, [&] {
    if (counted < 0) {
      EXPECT_FALSE(machine.files().Exists(kLogFile));
      return;
    }
    EXPECT_EQ(written == 1, Stored() == 1U);
    if (written != 1) {
      ++failures;
      EXPECT_EQ(log.WriteVglLogFile(), 1);
    }
    EXPECT_EQ(Stored(), 1U);
  });
  EXPECT_GT(failures, 20U);
}

// Of a file of a later version nothing is lost; the agent's own counts of that time may be, as it
// clears its log behind a flush.
TEST_F(VglLogFaults, NoFailureLosesTheCountsOfALaterFile) {
  const desk::UsageLog before = LogOf(u"2.0.0.0", {0, 10});
  ForEachFault(&before, [&] {
    EXPECT_EQ(Stored(), written == 1 ? 11U : 10U);
    const std::uint32_t arrived = Stored();
    log.Clear();
    EXPECT_EQ(Count(1), 0);
    EXPECT_EQ(log.WriteVglLogFile(), written == 1 ? 0 : 1);
    EXPECT_EQ(Stored(), arrived + 1);
  });
}

TEST_F(VglLogFaults, AnOldFileIsThereUntilANewOneTakesItsPlace) {
  const desk::UsageLog before = LogOf(u"0.9.0.0", {5, 10});
  ForEachFault(&before, [&] {
    if (written == 1)
      EXPECT_EQ(LogFile(), LogOf(u"1.0.0.0", {1, 1}));
    else
      EXPECT_EQ(LogFile(), before);
  });
}

}  // namespace
}  // namespace vgl
