// Threads that a program starts, and what they share: locks and semaphores.
#include <algorithm>
#include <array>
#include <atomic>

#include "tests/platform/platform_test.h"

namespace platform {
namespace {

// An end that takes longer than that never comes.
constexpr std::uint32_t kLongEnough = 60000;

class ThreadContract : public PlatformTest {
 protected:
  using Body = std::function<void()>;

  // Runs `body`, which must outlive it, in a new thread.
  OwnedObject Start(Body& body) {
    OwnedObject thread(os.process.CreateThread(
        [](void* parameter) -> std::uint32_t {
          (*static_cast<Body*>(parameter))();
          return 0;
        },
        &body));
    EXPECT_TRUE(thread) << "error " << LastError();
    return thread;
  }
  void WaitForEnd(const OwnedObject& thread) {
    EXPECT_EQ(objects.WaitForSingleObject(thread.get(), kLongEnough), WAIT_OBJECT_0);
  }
  bool HasEnded(const OwnedObject& thread) {
    return objects.WaitForSingleObject(thread.get(), 0) == WAIT_OBJECT_0;
  }

  KernelObjects& objects = os.objects;
};

using Threads = ThreadContract;
using SemaphoresOfThreads = ThreadContract;

// --- Threads

TEST_F(Threads, OneRunsItsProcedureWithItsParameter) {
  std::atomic<int> seen = 0;
  const OwnedObject thread(os.process.CreateThread(
      [](void* parameter) -> std::uint32_t {
        *static_cast<std::atomic<int>*>(parameter) = 7;
        return 0;
      },
      &seen));
  ASSERT_TRUE(thread);
  WaitForEnd(thread);
  EXPECT_EQ(seen, 7);
}

TEST_F(Threads, TheParameterMayBeNull) {
  static std::atomic<bool> wasNull;
  wasNull = false;
  const OwnedObject thread(os.process.CreateThread(
      [](void* parameter) -> std::uint32_t {
        wasNull = parameter == nullptr;
        return 1;
      },
      nullptr));
  ASSERT_TRUE(thread);
  WaitForEnd(thread);
  EXPECT_TRUE(wasNull);
}

TEST_F(Threads, OneIsWaitedForUntilItsEnd) {
  std::atomic<bool> isAtItsEnd = false;
  Body body = [&] {
    os.process.Sleep(100);
    isAtItsEnd = true;
  };
  const OwnedObject thread = Start(body);
  EXPECT_EQ(objects.WaitForSingleObject(thread.get(), 0), WAIT_TIMEOUT);
  EXPECT_EQ(objects.WaitForSingleObject(thread.get(), INFINITE), WAIT_OBJECT_0);
  EXPECT_TRUE(isAtItsEnd);
}

TEST_F(Threads, OneThatHasEndedStaysEnded) {
  Body body = [] {};
  const OwnedObject thread = Start(body);
  WaitForEnd(thread);
  EXPECT_TRUE(HasEnded(thread));
  EXPECT_TRUE(HasEnded(thread));
}

TEST_F(Threads, SeveralMayWaitForOneEnd) {
  Body body = [&] { os.process.Sleep(50); };
  const OwnedObject thread = Start(body);
  std::atomic<std::uint32_t> result = WAIT_FAILED;
  Body waiting = [&] { result = objects.WaitForSingleObject(thread.get(), kLongEnough); };
  const OwnedObject waiter = Start(waiting);
  WaitForEnd(thread);
  WaitForEnd(waiter);
  EXPECT_EQ(result, WAIT_OBJECT_0);
}

TEST_F(Threads, OneGoesOnWithoutItsHandle) {
  std::atomic<bool> ran = false;
  Body body = [&] {
    os.process.Sleep(50);
    ran = true;
  };
  Start(body).Reset();
  EXPECT_TRUE(WaitUntil([&] { return ran.load(); }));
}

TEST_F(Threads, ItsHandleIsClosedOnce) {
  Body body = [] {};
  OwnedObject thread = Start(body);
  WaitForEnd(thread);
  const HANDLE handle = thread.Release();
  EXPECT_TRUE(objects.CloseHandle(handle));
  EXPECT_FALSE(objects.CloseHandle(handle));
}

TEST_F(Threads, EachHasItsOwnNumberAndLastError) {
  std::array<std::atomic<std::uint32_t>, 2> numbers{};
  std::atomic<int> errors = 0;
  std::array<Body, 2> bodies;
  for (std::size_t i = 0; i < 2; ++i) {
    bodies[i] = [&, i] {
      numbers[i] = os.process.GetCurrentThreadId();
      os.process.SetLastError(static_cast<std::int32_t>(100 + i));
      os.process.Sleep(20);
      errors += os.process.GetLastError();
    };
  }
  os.process.SetLastError(7777);
  const OwnedObject first = Start(bodies[0]);
  const OwnedObject second = Start(bodies[1]);
  WaitForEnd(first);
  WaitForEnd(second);
  const std::uint32_t here = os.process.GetCurrentThreadId();
  EXPECT_NE(numbers[0], numbers[1]);
  EXPECT_NE(numbers[0], here);
  EXPECT_NE(numbers[1], here);
  EXPECT_EQ(errors, 201);
}

TEST_F(Threads, OneMayStartAnother) {
  std::atomic<bool> ran = false;
  Body inner = [&] { ran = true; };
  Body outer = [&] { WaitForEnd(Start(inner)); };
  WaitForEnd(Start(outer));
  EXPECT_TRUE(ran);
}

// --- Semaphores

TEST_F(SemaphoresOfThreads, OneIsGivenBackByAnotherThreadThanTookIt) {
  const OwnedObject semaphore(objects.CreateSemaphoreW(1, 1, nullptr));
  EXPECT_EQ(objects.WaitForSingleObject(semaphore.get(), 0), WAIT_OBJECT_0);
  std::atomic<bool> given = false;
  Body body = [&] {
    os.process.Sleep(50);
    given = objects.ReleaseSemaphore(semaphore.get(), 1, nullptr);
  };
  const OwnedObject thread = Start(body);
  EXPECT_EQ(objects.WaitForSingleObject(semaphore.get(), INFINITE), WAIT_OBJECT_0);
  WaitForEnd(thread);
  EXPECT_TRUE(given);
}

TEST_F(SemaphoresOfThreads, OneThatAThreadHadAtItsEndStaysTaken) {
  const OwnedObject semaphore(objects.CreateSemaphoreW(1, 1, nullptr));
  Body body = [&] { objects.WaitForSingleObject(semaphore.get(), 0); };
  WaitForEnd(Start(body));
  EXPECT_EQ(objects.WaitForSingleObject(semaphore.get(), 50), WAIT_TIMEOUT);
}

}  // namespace
}  // namespace platform
