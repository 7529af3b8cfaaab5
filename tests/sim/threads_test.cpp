// Threads of the simulated machine: every interleaving, the end of their process, faults,
// the ledger. What Windows does as well is in tests/platform/threads_test.cpp.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace sim {
namespace {

using namespace platform;

using Ledger = std::vector<std::u16string>;
using Body = std::function<void()>;

// Runs `body`, which must outlive it, in a new thread of the running process.
HANDLE StartThread(Body& body) {
  return Os().process.CreateThread(
      [](void* parameter) -> std::uint32_t {
        (*static_cast<Body*>(parameter))();
        return 0;
      },
      &body);
}

TEST(SimulatedThreads, AThreadAndItsHandleEndWhateverTheInterleaving) {
  for (std::uint64_t seed = 0; seed < 50; ++seed) {
    Machine machine(seed);
    Inside inside(machine);
    bool ran = false;
    Body body = [&] {
      Os().process.Sleep(static_cast<std::uint32_t>(seed % 3));
      ran = true;
    };
    {
      const OwnedObject thread(StartThread(body));
      EXPECT_EQ(Os().objects.WaitForSingleObject(thread.get(), 1000), WAIT_OBJECT_0) << seed;
    }
    EXPECT_TRUE(ran) << seed;
    EXPECT_EQ(inside.process().Ledger(), Ledger{}) << seed;
  }
}

TEST(SimulatedThreads, AHandleIsHeldUntilItIsClosed) {
  Machine machine;
  Inside inside(machine);
  Body body = [] {};
  OwnedObject thread(StartThread(body));
  Os().process.Sleep(10);
  EXPECT_EQ(inside.process().Ledger(), (Ledger{u"thread of " + inside.process().imagePath()}));
  thread.Reset();
  EXPECT_EQ(inside.process().Ledger(), Ledger{});
}

TEST(SimulatedThreads, StartingOneIsTracedAndCanFail) {
  Machine machine;
  Inside inside(machine);
  Body body = [] {};
  const OwnedObject thread(StartThread(body));
  EXPECT_EQ(machine.trace().back().text, u"started a thread");
  inside.process().FailNext("CreateThread", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_EQ(StartThread(body), HANDLE{});
  EXPECT_EQ(Os().process.GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
}

TEST(SimulatedThreads, AProcessEndsWithItsFirstThreadWhateverTheOthersDo) {
  Machine machine;
  bool ran = false;
  Body body = [&] {
    Os().process.Sleep(1000);
    ran = true;
  };
  Process& process = machine.StartProcess(u"C:\\agent.exe", u"", [&](const char16_t*) {
    const OwnedObject thread(StartThread(body));
    Os().process.Sleep(10);
    return 4u;
  });
  machine.RunFor(5000);
  EXPECT_TRUE(process.ended());
  EXPECT_EQ(process.exitCode(), 4u);
  EXPECT_FALSE(ran);
}

}  // namespace
}  // namespace sim
