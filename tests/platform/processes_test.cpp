// The running process and its threads.
#include <atomic>

#include "tests/platform/platform_test.h"

namespace platform {
namespace {

class Process : public PlatformTest {
 protected:
  Processes& process = os.process;
};

TEST_F(Process, ItsNumberIsTheSameInAllItsThreads) {
  const std::uint32_t here = process.GetCurrentProcessId();
  EXPECT_NE(here, 0u);
  std::uint32_t there = 0;
  RunInAnotherThread([&] { there = process.GetCurrentProcessId(); });
  EXPECT_EQ(there, here);
}

TEST_F(Process, EachThreadHasANumberOfItsOwn) {
  const std::uint32_t here = process.GetCurrentThreadId();
  EXPECT_NE(here, 0u);
  EXPECT_EQ(process.GetCurrentThreadId(), here);
  std::uint32_t there = 0;
  RunInAnotherThread([&] { there = process.GetCurrentThreadId(); });
  EXPECT_NE(there, 0u);
  EXPECT_NE(there, here);
}

TEST_F(Process, TheLastErrorStaysUntilItIsReplaced) {
  process.SetLastError(1234);
  EXPECT_EQ(process.GetLastError(), 1234);
  EXPECT_EQ(process.GetLastError(), 1234);
  process.SetLastError(0);
  EXPECT_EQ(process.GetLastError(), 0);
}

TEST_F(Process, TheLastErrorMayBeAnyNumber) {
  process.SetLastError(-1);
  EXPECT_EQ(process.GetLastError(), -1);
}

TEST_F(Process, EachThreadHasALastErrorOfItsOwn) {
  std::atomic<bool> go = false;
  std::atomic<bool> done = false;
  const auto join = machine.StartThread([&] {
    WaitUntil([&] { return go.load(); });
    process.SetLastError(5678);
    done = true;
  });
  process.SetLastError(1234);
  go = true;
  EXPECT_TRUE(WaitUntil([&] { return done.load(); }));
  EXPECT_EQ(process.GetLastError(), 1234);
  join();
}

TEST_F(Process, SleepLetsThatMuchTimePass) {
  const std::uint32_t before = os.system.GetTickCount();
  process.Sleep(100);
  const std::uint32_t passed = os.system.GetTickCount() - before;
  EXPECT_GE(passed, 84u);  // the clock moves in steps of up to 16 ms
  EXPECT_LT(passed, 5000u);
}

TEST_F(Process, SleepLetsOtherThreadsRun) {
  std::atomic<bool> ran = false;
  const auto join = machine.StartThread([&] { ran = true; });
  EXPECT_TRUE(WaitUntil([&] { return ran.load(); }));
  join();
}

TEST_F(Process, ThreadsSleepSideBySide) {
  const std::uint32_t before = os.system.GetTickCount();
  const auto join = machine.StartThread([&] { process.Sleep(300); });
  process.Sleep(300);
  join();
  EXPECT_LT(os.system.GetTickCount() - before, 500u);
}

TEST_F(Process, ASleepOfNoTimeReturns) {
  const std::uint32_t before = os.system.GetTickCount();
  process.Sleep(0);
  EXPECT_LT(os.system.GetTickCount() - before, 1000u);
}

}  // namespace
}  // namespace platform
