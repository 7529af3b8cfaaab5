// The simulated machine's own promises: threads, time, ends of processes, the ledger, faults.
#include "platform/sim/machine.h"

#include <gtest/gtest.h>

#include "platform/owned.h"
#include "platform/process_wide.h"

namespace sim {
namespace {

using namespace platform;

TEST(Machine, TimeMovesOnlyWhenEverybodyWaits) {
  Machine machine;
  std::vector<std::uint64_t> times;
  machine.StartProcess(u"C:\\a.exe", u"", [&](const char16_t*) {
    for (int i = 0; i < 3; ++i) {
      times.push_back(machine.now());
      Os().process.Sleep(250);
    }
    return 0U;
  });
  machine.RunFor(10000);
  EXPECT_EQ(times, (std::vector<std::uint64_t>{0, 250, 500}));
  EXPECT_EQ(machine.now(), 10000U);
}

TEST(Machine, ProcessesThatSleepTakeTurnsByTheirDeadlines) {
  Machine machine;
  std::string order;
  const auto body = [&order](char name, std::uint32_t pause) {
    return [&order, name, pause](const char16_t*) {
      for (int i = 0; i < 3; ++i) {
        Os().process.Sleep(pause);
        order += name;
      }
      return 0U;
    };
  };
  machine.StartProcess(u"C:\\a.exe", u"", body('a', 20));
  machine.StartProcess(u"C:\\b.exe", u"", body('b', 30));
  machine.RunFor(1000);
  // Due at 60: a's third and b's second; b went to sleep for that first.
  EXPECT_EQ(order, "ababab");
}

TEST(Machine, ExitCodeIsWhatTheBodyGives) {
  Machine machine;
  Process& process = machine.StartProcess(u"C:\\a.exe", u"/X", [](const char16_t* line) {
    return static_cast<std::uint32_t>(std::u16string(line).size());
  });
  machine.Settle();
  ASSERT_TRUE(process.ended());
  EXPECT_EQ(process.exitCode(), 2U);
}

TEST(Machine, ExitProcessEndsAtOnceAndTheSystemTakesBackWhatWasHeld) {
  Machine machine;
  bool wentOn = false;
  Process& process = machine.StartProcess(u"C:\\a.exe", u"", [&](const char16_t*) -> std::uint32_t {
    const OwnedObject mutex(Os().objects.CreateMutexW(nullptr, false, u"Held"));
    Os().process.ExitProcess(7);
    wentOn = true;
    return 0;
  });
  machine.Settle();
  EXPECT_FALSE(wentOn);
  EXPECT_EQ(process.exitCode(), 7U);
  EXPECT_EQ(process.Ledger(), std::vector<std::u16string>{u"mutex Held"});
  EXPECT_FALSE(machine.objects().Exists(u"Held"));
}

TEST(Machine, ProcessThatGaveEverythingBackLeavesAnEmptyLedger) {
  Machine machine;
  Process& process = machine.StartProcess(u"C:\\a.exe", u"", [](const char16_t*) {
    const OwnedObject mutex(Os().objects.CreateMutexW(nullptr, false, u"Held"));
    return 0U;
  });
  machine.Settle();
  EXPECT_TRUE(process.ended());
  EXPECT_TRUE(process.Ledger().empty());
}

TEST(Machine, EndProcessTakesAWaitingProcessDown) {
  Machine machine;
  bool unwound = false;
  struct Mark {
    bool& mark;
    ~Mark() { mark = true; }
  };
  Process& process = machine.StartProcess(u"C:\\a.exe", u"", [&](const char16_t*) {
    const Mark mark{unwound};
    Os().process.Sleep(INFINITE);
    return 0U;
  });
  machine.RunFor(1000);
  EXPECT_FALSE(process.ended());
  machine.EndProcess(process, 5);
  EXPECT_TRUE(process.ended());
  EXPECT_TRUE(unwound);
  EXPECT_EQ(process.exitCode(), 5U);
}

TEST(Machine, EndsWhatStillRunsWhenItGoes) {
  bool unwound = false;
  struct Mark {
    bool& mark;
    ~Mark() { mark = true; }
  };
  {
    Machine machine;
    machine.StartProcess(u"C:\\a.exe", u"", [&](const char16_t*) {
      const Mark mark{unwound};
      Os().process.Sleep(INFINITE);
      return 0U;
    });
    machine.RunFor(1);
  }
  EXPECT_TRUE(unwound);
}

platform::ProcessWideValue<int> g_counter;

TEST(Machine, EachProcessHasItsOwnCopyOfAProcessWideVariable) {
  Machine machine;
  const auto count = [](const char16_t*) {
    for (int i = 0; i < 3; ++i) {
      g_counter = g_counter + 1;
      Os().process.Sleep(10);
    }
    return static_cast<std::uint32_t>(g_counter);
  };
  Process& first = machine.StartProcess(u"C:\\a.exe", u"", count);
  Process& second = machine.StartProcess(u"C:\\a.exe", u"", count);
  machine.RunFor(1000);
  EXPECT_EQ(first.exitCode(), 3U);
  EXPECT_EQ(second.exitCode(), 3U);
}

struct OwnsAHandle {
  OwnedObject mutex;
};
platform::ProcessWide<OwnsAHandle> g_owner;

TEST(Machine, ProcessWideVariablesGoWithTheirProcess) {
  Machine machine;
  Process& process = machine.StartProcess(u"C:\\a.exe", u"", [](const char16_t*) {
    g_owner.get().mutex = OwnedObject(Os().objects.CreateMutexW(nullptr, false, u"Held"));
    return 0U;
  });
  machine.Settle();
  EXPECT_TRUE(process.ended());
  EXPECT_FALSE(machine.objects().Exists(u"Held"));
}

TEST(Machine, EventsNeedNotBeKept) {
  Machine machine;
  machine.KeepTrace(false);
  std::size_t observed = 0;
  machine.Observe([&](const Event&) { ++observed; });
  machine.StartProcess(u"C:\\a.exe", u"", [](const char16_t*) { return 0U; });
  machine.Settle();
  EXPECT_EQ(observed, 2U);
  EXPECT_TRUE(machine.trace().empty());
}

TEST(Machine, RunUntilStopsWhenTheConditionHolds) {
  Machine machine;
  bool done = false;
  machine.StartProcess(u"C:\\a.exe", u"", [&](const char16_t*) {
    Os().process.Sleep(300);
    done = true;
    return 0U;
  });
  EXPECT_TRUE(machine.RunUntil([&] { return done; }, 1000));
  EXPECT_EQ(machine.now(), 300U);
  EXPECT_FALSE(machine.RunUntil([] { return false; }, 1000));
  EXPECT_EQ(machine.now(), 1300U);
}

TEST(Machine, WaitThatOnlyForeignTimersInterruptIsReportedInsteadOfHanging) {
  Machine machine;
  machine.StartProcess(u"C:\\a.exe", u"", [](const char16_t*) {
    for (;;) Os().process.Sleep(60000);
    return 0U;
  });
  const Inside inside(machine);
  const OwnedObject semaphore(Os().objects.CreateSemaphoreW(0, 1, nullptr));
  EXPECT_THROW(Os().objects.WaitForSingleObject(semaphore.get(), INFINITE), std::logic_error);
}

TEST(Machine, WaitThatNothingCanEndIsReportedInsteadOfHanging) {
  Machine machine;
  const Inside inside(machine);
  const OwnedObject semaphore(Os().objects.CreateSemaphoreW(0, 1, nullptr));
  EXPECT_THROW(Os().objects.WaitForSingleObject(semaphore.get(), INFINITE), std::logic_error);
}

// What two processes do when every platform call may hand over to the other.
std::string InterleavingOf(std::uint64_t seed) {
  Machine machine(seed);
  std::string order;
  const auto body = [&order](char name) {
    return [&order, name](const char16_t*) {
      for (int i = 0; i < 8; ++i) {
        Os().system.GetTickCount();
        order += name;
      }
      return 0U;
    };
  };
  machine.StartProcess(u"C:\\a.exe", u"", body('a'));
  machine.StartProcess(u"C:\\b.exe", u"", body('b'));
  machine.Settle();
  return order;
}

TEST(Seed, TheSameSeedGivesTheSameInterleaving) {
  for (std::uint64_t seed = 1; seed <= 20; ++seed)
    EXPECT_EQ(InterleavingOf(seed), InterleavingOf(seed));
}

TEST(Seed, SeedsDifferInTheirInterleavings) {
  std::set<std::string> orders;
  for (std::uint64_t seed = 1; seed <= 20; ++seed) orders.insert(InterleavingOf(seed));
  EXPECT_GT(orders.size(), 10U);
}

TEST(Seed, ZeroLetsEachProcessRunUntilItWaits) { EXPECT_EQ(InterleavingOf(0), "aaaaaaaabbbbbbbb"); }

TEST(Faults, TheCallOfThatNumberFailsAndNoOther) {
  Machine machine;
  Inside inside(machine);
  inside.process().FailCall(2);
  EXPECT_NE(Os().objects.CreateMutexW(nullptr, false, u"1"), HANDLE{});
  EXPECT_EQ(Os().objects.CreateMutexW(nullptr, false, u"2"), HANDLE{});
  EXPECT_EQ(Os().process.GetLastError(), ERROR_NO_SYSTEM_RESOURCES);
  EXPECT_NE(Os().objects.CreateMutexW(nullptr, false, u"3"), HANDLE{});
  EXPECT_EQ(inside.process().failedOperation(), "CreateMutexW");
}

TEST(Faults, ACallThatGivesSomethingBackIsCountedButDoesntFailByNumber) {
  Machine machine;
  Inside inside(machine);
  const HANDLE mutex = Os().objects.CreateMutexW(nullptr, false, nullptr);
  inside.process().FailCall(1);
  EXPECT_TRUE(Os().objects.CloseHandle(mutex));
  EXPECT_EQ(inside.process().failedOperation(), "");
}

TEST(Faults, AnyCallFailsByName) {
  Machine machine;
  Inside inside(machine);
  const HANDLE mutex = Os().objects.CreateMutexW(nullptr, false, nullptr);
  inside.process().FailNext("CloseHandle", ERROR_ACCESS_DENIED);
  EXPECT_FALSE(Os().objects.CloseHandle(mutex));
  EXPECT_EQ(Os().process.GetLastError(), ERROR_ACCESS_DENIED);
  EXPECT_TRUE(Os().objects.CloseHandle(mutex));
}

TEST(Faults, AnEndlessLoopOfCallsIsStoppedAtItsBound) {
  Machine machine;
  Process& process = machine.StartProcess(u"C:\\a.exe", u"", [](const char16_t*) {
    for (;;) Os().system.GetTickCount();
    return 0U;
  });
  process.StopAfterCalls(1000);
  machine.Settle();
  ASSERT_TRUE(process.ended());
  EXPECT_EQ(process.exitCode(), kStoppedExitCode);
}

TEST(Inside, TellsWhetherTheBodyEndedTheProcess) {
  Machine machine;
  Inside inside(machine);
  EXPECT_FALSE(inside.EndsProcess([] { Os().system.GetTickCount(); }));
  EXPECT_TRUE(inside.EndsProcess([] { Os().process.ExitProcess(3); }));
  EXPECT_EQ(inside.process().exitCode(), 3U);
}

TEST(Inside, CanBeEnteredAgainAfterItsProcessEnded) {
  Machine machine;
  for (int i = 0; i < 3; ++i) {
    Inside inside(machine);
    EXPECT_TRUE(inside.EndsProcess([] { Os().process.ExitProcess(1); }));
  }
  EXPECT_EQ(machine.processes().size(), 3U);
}

void MakeWindow(const char16_t* className, WNDPROC procedure) {
  WindowClass windowClass;
  windowClass.className = className;
  windowClass.procedure = procedure;
  Os().windowing.RegisterClassW(windowClass);
  Os().windowing.CreateWindowExW(0, className, u"", 0, HMODULE{});
}

void HandleMessages() {
  Message message;
  while (Os().windowing.GetMessageW(&message) == 1) Os().windowing.DispatchMessageW(message);
}

TEST(SentMessages, TheSenderWaitsForTheOtherProcessAndGetsItsResult) {
  Machine machine;
  machine.StartProcess(u"C:\\a.exe", u"", [](const char16_t*) {
    MakeWindow(u"Answering", [](HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
      if (message != WM_USER) return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
      Os().process.Sleep(400);
      return static_cast<LRESULT>(wParam) + lParam;
    });
    HandleMessages();
    return 0U;
  });
  machine.Settle();
  const Inside inside(machine);
  const HWND window = Os().windowing.FindWindowW(u"Answering", nullptr);
  EXPECT_EQ(Os().windowing.SendMessageW(window, WM_USER, 40, 2), 42);
  EXPECT_EQ(machine.now(), 400U);
}

TEST(SentMessages, SenderGetsZeroWhenTheOtherProcessEndsMeanwhile) {
  Machine machine;
  Process& other = machine.StartProcess(u"C:\\a.exe", u"", [](const char16_t*) {
    MakeWindow(u"Silent", [](HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
      return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
    });
    Os().process.Sleep(500);
    return 0U;
  });
  machine.Settle();
  const Inside inside(machine);
  const HWND window = Os().windowing.FindWindowW(u"Silent", nullptr);
  EXPECT_EQ(Os().windowing.SendMessageW(window, WM_USER, 0, 0), 0);
  EXPECT_TRUE(other.ending());
}

TEST(SentMessages, SenderGoesOnWhenTheOtherProcessEndsWhileItHandlesTheMessage) {
  Machine machine;
  Process& other = machine.StartProcess(u"C:\\a.exe", u"", [](const char16_t*) {
    MakeWindow(u"Ending", [](HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
      if (message == WM_USER) Os().process.ExitProcess(4);
      return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
    });
    HandleMessages();
    return 0U;
  });
  machine.Settle();
  const Inside inside(machine);
  const HWND window = Os().windowing.FindWindowW(u"Ending", nullptr);
  EXPECT_EQ(Os().windowing.SendMessageW(window, WM_USER, 0, 0), 0);
  EXPECT_EQ(other.exitCode(), 4U);
}

TEST(Mutexes, AreHandedToWhoWaitsTheLongest) {
  Machine machine;
  std::string order;
  const auto body = [&order](char name) {
    return [&order, name](const char16_t*) {
      const OwnedObject mutex(Os().objects.CreateMutexW(nullptr, false, u"Shared"));
      for (int i = 0; i < 3; ++i) {
        Os().objects.WaitForSingleObject(mutex.get(), INFINITE);
        order += name;
        Os().process.Sleep(10);
        Os().objects.ReleaseMutex(mutex.get());
      }
      return 0U;
    };
  };
  machine.StartProcess(u"C:\\a.exe", u"", body('a'));
  machine.StartProcess(u"C:\\b.exe", u"", body('b'));
  machine.RunFor(1000);
  EXPECT_EQ(order, "ababab");
}

TEST(Mutexes, AnOwnerThatEndsLeavesItAbandoned) {
  Machine machine;
  const Inside inside(machine);
  const OwnedObject mutex(Os().objects.CreateMutexW(nullptr, false, u"Shared"));
  machine.StartProcess(u"C:\\a.exe", u"", [](const char16_t*) {
    const HANDLE own = Os().objects.CreateMutexW(nullptr, false, u"Shared");
    Os().objects.WaitForSingleObject(own, INFINITE);
    Os().process.Sleep(100);
    return 1U;
  });
  Os().process.Sleep(50);
  EXPECT_EQ(Os().objects.WaitForSingleObject(mutex.get(), 10), WAIT_TIMEOUT);
  EXPECT_EQ(Os().objects.WaitForSingleObject(mutex.get(), INFINITE), WAIT_ABANDONED);
  EXPECT_EQ(machine.now(), 100U);
}

TEST(Trace, EventsBearTheirTimeAndProcess) {
  Machine machine;
  Process& process = machine.StartProcess(u"C:\\a.exe", u"/X", [](const char16_t*) {
    Os().process.Sleep(40);
    return 9U;
  });
  machine.RunFor(100);
  const std::vector<Event> expected = {{0, process.id(), u"started: C:\\a.exe /X"},
                                       {0, process.id(), u"sleeps 40 ms"},
                                       {40, process.id(), u"ended with code 9"}};
  EXPECT_EQ(machine.trace(), expected);
}

}  // namespace
}  // namespace sim
