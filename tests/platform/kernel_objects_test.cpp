// Kernel objects: mutexes, semaphores, waiting, handles.
#include <atomic>

#include "tests/platform/platform_test.h"

namespace platform {
namespace {

class KernelObjectsContract : public PlatformTest {
 protected:
  OwnedObject MakeMutex(const char16_t* name, bool initialOwner = false) {
    OwnedObject mutex(objects.CreateMutexW(nullptr, initialOwner, name));
    EXPECT_TRUE(mutex) << "error " << LastError();
    return mutex;
  }

  bool MutexExists(const char16_t* name) {
    return static_cast<bool>(OwnedObject(objects.OpenMutexW(SYNCHRONIZE, name)));
  }

  KernelObjects& objects = os.objects;
};

using Mutexes = KernelObjectsContract;
using Semaphores = KernelObjectsContract;
using Handles = KernelObjectsContract;

// --- Mutexes and their names

TEST_F(Mutexes, MakingOneTellsWhetherItExisted) {
  os.process.SetLastError(7777);
  const OwnedObject first(objects.CreateMutexW(nullptr, false, u"PlatformTest"));
  EXPECT_TRUE(first);
  EXPECT_EQ(LastError(), 0);

  const OwnedObject second(objects.CreateMutexW(nullptr, false, u"PlatformTest"));
  EXPECT_TRUE(second);
  EXPECT_EQ(LastError(), ERROR_ALREADY_EXISTS);
}

TEST_F(Mutexes, OneThatIsThereCanBeOpened) {
  const OwnedObject mutex = MakeMutex(u"PlatformTest");
  EXPECT_TRUE(OwnedObject(objects.OpenMutexW(SYNCHRONIZE, u"PlatformTest")));
}

TEST_F(Mutexes, OneThatIsNotThereCannotBeOpened) {
  EXPECT_EQ(objects.OpenMutexW(SYNCHRONIZE, u"PlatformTestMissing"), HANDLE{});
  EXPECT_EQ(LastError(), ERROR_FILE_NOT_FOUND);
}

TEST_F(Mutexes, TheNameGoesWithTheLastHandle) {
  OwnedObject first = MakeMutex(u"PlatformTest");
  OwnedObject second = MakeMutex(u"PlatformTest");
  first.Reset();
  EXPECT_TRUE(MutexExists(u"PlatformTest"));
  second.Reset();
  EXPECT_FALSE(MutexExists(u"PlatformTest"));
}

TEST_F(Mutexes, AnOpenedHandleKeepsTheObjectToo) {
  OwnedObject made = MakeMutex(u"PlatformTest");
  OwnedObject opened(objects.OpenMutexW(SYNCHRONIZE, u"PlatformTest"));
  made.Reset();
  EXPECT_TRUE(MutexExists(u"PlatformTest"));
}

TEST_F(Mutexes, NamesAreToldApartByCase) {
  const OwnedObject mutex = MakeMutex(u"PlatformTest");
  EXPECT_FALSE(MutexExists(u"PLATFORMTEST"));
}

TEST_F(Mutexes, AGlobalNameIsAnotherNameThanTheSessionsOwn) {
  const OwnedObject mutex = MakeMutex(u"Global\\PlatformTest");
  EXPECT_FALSE(MutexExists(u"PlatformTest"));
  EXPECT_TRUE(MutexExists(u"Global\\PlatformTest"));
}

TEST_F(Mutexes, ALocalNameIsTheSessionsOwn) {
  const OwnedObject mutex = MakeMutex(u"PlatformTest");
  EXPECT_TRUE(MutexExists(u"Local\\PlatformTest"));
}

TEST_F(Mutexes, OnesWithoutANameAreNeverTheSame) {
  const OwnedObject first = MakeMutex(nullptr, true);
  const OwnedObject second(objects.CreateMutexW(nullptr, true, nullptr));
  EXPECT_EQ(LastError(), 0);
  RunInAnotherThread([&] { EXPECT_EQ(objects.WaitForSingleObject(first.get(), 0), WAIT_TIMEOUT); });
}

TEST_F(Mutexes, ANameOfAnotherKindOfObjectIsRefused) {
  const OwnedObject semaphore(objects.CreateSemaphoreW(1, 1, u"PlatformTest"));
  EXPECT_EQ(objects.CreateMutexW(nullptr, false, u"PlatformTest"), HANDLE{});
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
  EXPECT_EQ(objects.OpenMutexW(SYNCHRONIZE, u"PlatformTest"), HANDLE{});
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
}

// --- Owning a mutex

TEST_F(Mutexes, AFreeOneIsTakenByWaiting) {
  const OwnedObject mutex = MakeMutex(nullptr);
  EXPECT_EQ(objects.WaitForSingleObject(mutex.get(), 0), WAIT_OBJECT_0);
  RunInAnotherThread([&] { EXPECT_EQ(objects.WaitForSingleObject(mutex.get(), 0), WAIT_TIMEOUT); });
}

TEST_F(Mutexes, ANewOneBelongsToItsMakerWhenAskedFor) {
  const OwnedObject mutex = MakeMutex(nullptr, true);
  RunInAnotherThread([&] { EXPECT_EQ(objects.WaitForSingleObject(mutex.get(), 0), WAIT_TIMEOUT); });
}

TEST_F(Mutexes, OneThatExistedDoesNotBelongToWhoAsksForIt) {
  const OwnedObject first = MakeMutex(u"PlatformTest");
  const OwnedObject second = MakeMutex(u"PlatformTest", true);
  RunInAnotherThread([&] {
    EXPECT_EQ(objects.WaitForSingleObject(first.get(), 0), WAIT_OBJECT_0);
    EXPECT_TRUE(objects.ReleaseMutex(first.get()));
  });
}

TEST_F(Mutexes, ItsOwnerTakesItAgainAndGivesItBackAsOften) {
  const OwnedObject mutex = MakeMutex(nullptr, true);
  EXPECT_EQ(objects.WaitForSingleObject(mutex.get(), INFINITE), WAIT_OBJECT_0);
  EXPECT_TRUE(objects.ReleaseMutex(mutex.get()));
  RunInAnotherThread([&] { EXPECT_EQ(objects.WaitForSingleObject(mutex.get(), 0), WAIT_TIMEOUT); });
  EXPECT_TRUE(objects.ReleaseMutex(mutex.get()));
  RunInAnotherThread([&] {
    EXPECT_EQ(objects.WaitForSingleObject(mutex.get(), 0), WAIT_OBJECT_0);
    EXPECT_TRUE(objects.ReleaseMutex(mutex.get()));
  });
}

TEST_F(Mutexes, OnlyItsOwnerGivesItBack) {
  const OwnedObject mutex = MakeMutex(nullptr);
  EXPECT_FALSE(objects.ReleaseMutex(mutex.get()));
  EXPECT_EQ(LastError(), ERROR_NOT_OWNER);

  const OwnedObject owned = MakeMutex(nullptr, true);
  RunInAnotherThread([&] {
    EXPECT_FALSE(objects.ReleaseMutex(owned.get()));
    EXPECT_EQ(LastError(), ERROR_NOT_OWNER);
  });
}

TEST_F(Mutexes, ClosingAHandleGivesNothingBack) {
  OwnedObject first = MakeMutex(u"PlatformTest", true);
  const OwnedObject second = MakeMutex(u"PlatformTest");
  first.Reset();
  RunInAnotherThread(
      [&] { EXPECT_EQ(objects.WaitForSingleObject(second.get(), 0), WAIT_TIMEOUT); });
}

TEST_F(Mutexes, AThreadThatEndsAbandonsWhatItOwns) {
  const OwnedObject mutex = MakeMutex(nullptr);
  RunInAnotherThread([&] { objects.WaitForSingleObject(mutex.get(), 0); });
  EXPECT_EQ(objects.WaitForSingleObject(mutex.get(), 5000), WAIT_ABANDONED);
  EXPECT_TRUE(objects.ReleaseMutex(mutex.get()));  // it was taken all the same
  EXPECT_EQ(objects.WaitForSingleObject(mutex.get(), 0), WAIT_OBJECT_0);
}

// --- Waiting

TEST_F(Mutexes, AWaitEndsWhenTheMutexBecomesFree) {
  const OwnedObject mutex = MakeMutex(nullptr, true);
  std::atomic<std::uint32_t> result = WAIT_FAILED;
  const auto join = machine.StartThread([&] {
    result = objects.WaitForSingleObject(mutex.get(), INFINITE);
    objects.ReleaseMutex(mutex.get());
  });
  os.process.Sleep(50);
  EXPECT_EQ(result, WAIT_FAILED);  // still waiting
  EXPECT_TRUE(objects.ReleaseMutex(mutex.get()));
  join();
  EXPECT_EQ(result, WAIT_OBJECT_0);
}

TEST_F(Mutexes, AWaitLastsAsLongAsItsLimit) {
  const OwnedObject mutex = MakeMutex(nullptr, true);
  RunInAnotherThread([&] {
    const std::uint32_t before = os.system.GetTickCount();
    EXPECT_EQ(objects.WaitForSingleObject(mutex.get(), 200), WAIT_TIMEOUT);
    const std::uint32_t passed = os.system.GetTickCount() - before;
    EXPECT_GE(passed, 180u);  // the clock moves in steps of up to 16 ms
    EXPECT_LT(passed, 5000u);
  });
}

// --- Semaphores

TEST_F(Semaphores, OneIsTakenAsOftenAsItsCount) {
  const OwnedObject semaphore(objects.CreateSemaphoreW(2, 5, nullptr));
  ASSERT_TRUE(semaphore);
  EXPECT_EQ(objects.WaitForSingleObject(semaphore.get(), 0), WAIT_OBJECT_0);
  EXPECT_EQ(objects.WaitForSingleObject(semaphore.get(), 0), WAIT_OBJECT_0);
  EXPECT_EQ(objects.WaitForSingleObject(semaphore.get(), 0), WAIT_TIMEOUT);  // no thread owns it
}

TEST_F(Semaphores, GivingBackTellsTheCountBefore) {
  const OwnedObject semaphore(objects.CreateSemaphoreW(1, 5, nullptr));
  std::int32_t previous = 99;
  EXPECT_TRUE(objects.ReleaseSemaphore(semaphore.get(), 3, &previous));
  EXPECT_EQ(previous, 1);
  EXPECT_TRUE(objects.ReleaseSemaphore(semaphore.get(), 1, nullptr));
}

TEST_F(Semaphores, GivingBackMoreThanTheMaximumIsRefusedAsAWhole) {
  const OwnedObject semaphore(objects.CreateSemaphoreW(1, 2, nullptr));
  EXPECT_FALSE(objects.ReleaseSemaphore(semaphore.get(), 2, nullptr));
  EXPECT_EQ(LastError(), ERROR_TOO_MANY_POSTS);
  std::int32_t previous = 99;
  EXPECT_TRUE(objects.ReleaseSemaphore(semaphore.get(), 1, &previous));
  EXPECT_EQ(previous, 1);
}

TEST_F(Semaphores, OneThatExistedKeepsItsCount) {
  const OwnedObject first(objects.CreateSemaphoreW(0, 5, u"PlatformTest"));
  EXPECT_EQ(LastError(), 0);
  const OwnedObject second(objects.CreateSemaphoreW(5, 5, u"PlatformTest"));
  EXPECT_TRUE(second);
  EXPECT_EQ(LastError(), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(objects.WaitForSingleObject(second.get(), 0), WAIT_TIMEOUT);
}

TEST_F(Semaphores, ACountMustLieWithinTheMaximum) {
  EXPECT_EQ(objects.CreateSemaphoreW(2, 1, nullptr), HANDLE{});
  EXPECT_EQ(LastError(), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(objects.CreateSemaphoreW(0, 0, nullptr), HANDLE{});
  EXPECT_EQ(LastError(), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(objects.CreateSemaphoreW(-1, 1, nullptr), HANDLE{});
  EXPECT_EQ(LastError(), ERROR_INVALID_PARAMETER);
}

TEST_F(Semaphores, ANameOfAnotherKindOfObjectIsRefused) {
  const OwnedObject mutex = MakeMutex(u"PlatformTest");
  EXPECT_EQ(objects.CreateSemaphoreW(1, 1, u"PlatformTest"), HANDLE{});
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
}

TEST_F(Semaphores, AWaiterGoesOnWhenOneIsGivenBack) {
  const OwnedObject semaphore(objects.CreateSemaphoreW(0, 1, nullptr));
  std::atomic<std::uint32_t> result = WAIT_FAILED;
  const auto join =
      machine.StartThread([&] { result = objects.WaitForSingleObject(semaphore.get(), 10000); });
  os.process.Sleep(50);
  EXPECT_TRUE(objects.ReleaseSemaphore(semaphore.get(), 1, nullptr));
  join();
  EXPECT_EQ(result, WAIT_OBJECT_0);
}

// --- Handles

TEST_F(Handles, WhatIsNoHandleCannotBeClosed) {
  for (const HANDLE none : {HANDLE{}, HANDLE{0x12345678}}) {
    EXPECT_FALSE(objects.CloseHandle(none));
    EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
  }
}

TEST_F(Handles, AHandleIsClosedOnce) {
  const HANDLE mutex = MakeMutex(nullptr).Release();
  EXPECT_TRUE(objects.CloseHandle(mutex));
  EXPECT_FALSE(objects.CloseHandle(mutex));
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
}

TEST_F(Handles, WhatIsNoHandleCannotBeWaitedFor) {
  EXPECT_EQ(objects.WaitForSingleObject(HANDLE{0x12345678}, 0), WAIT_FAILED);
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
}

TEST_F(Handles, AHandleOfAnotherKindIsRefused) {
  const OwnedObject semaphore(objects.CreateSemaphoreW(0, 1, nullptr));
  EXPECT_FALSE(objects.ReleaseMutex(semaphore.get()));
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);

  const OwnedObject mutex = MakeMutex(nullptr, true);
  EXPECT_FALSE(objects.ReleaseSemaphore(mutex.get(), 1, nullptr));
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
}

}  // namespace
}  // namespace platform
