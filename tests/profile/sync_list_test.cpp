#include "profile/sync_list.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/sim/machine.h"

namespace vgl {
namespace {

using namespace platform;

int g_alive = 0;  // entries that there are

struct Entry {
  explicit Entry(int itsNumber) : number(itsNumber) { ++g_alive; }
  Entry(const Entry&) = delete;
  Entry& operator=(const Entry&) = delete;
  ~Entry() { --g_alive; }
  int number;
};

using List = CSyncList<Entry>;
using Numbers = std::vector<int>;

class SyncList : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};

  SyncList() { g_alive = 0; }

  static void Append(List& list, int first, int last) {
    for (int number = first; number <= last; ++number)
      list.Access().Append(std::make_unique<Entry>(number));
  }
  static Numbers NumbersOf(const List& list) {
    Numbers numbers;
    for (const Entry& entry : list.Access()) numbers.push_back(entry.number);
    return numbers;
  }
};

TEST_F(SyncList, ANewOneIsEmpty) {
  const List list;
  EXPECT_EQ(list.Access().Count(), 0U);
  EXPECT_EQ(list.Access().Last(), nullptr);
  EXPECT_EQ(list.Access().Blocks(), 0U);
  EXPECT_EQ(NumbersOf(list), Numbers{});
}

TEST_F(SyncList, EntriesStandInTheOrderInWhichTheyWereAppended) {
  List list;
  Append(list, 1, 25);
  Numbers expected;
  for (int number = 1; number <= 25; ++number) expected.push_back(number);
  EXPECT_EQ(NumbersOf(list), expected);
  EXPECT_EQ(list.Access().Count(), 25U);
  EXPECT_EQ(list.Access().Last()->number, 25);
}

TEST_F(SyncList, TheLastEntryCanBeTakenAway) {
  List list;
  Append(list, 1, 3);
  list.Access().RemoveLast();
  EXPECT_EQ(NumbersOf(list), (Numbers{1, 2}));
  EXPECT_EQ(g_alive, 2);
  Append(list, 4, 4);
  EXPECT_EQ(NumbersOf(list), (Numbers{1, 2, 4}));
}

TEST_F(SyncList, WithItsOnlyEntryTakenAwayItIsAsNew) {
  List list;
  Append(list, 1, 1);
  list.Access().RemoveLast();
  EXPECT_EQ(g_alive, 0);
  EXPECT_EQ(list.Access().Last(), nullptr);
  EXPECT_EQ(NumbersOf(list), Numbers{});
  Append(list, 2, 3);
  EXPECT_EQ(NumbersOf(list), (Numbers{2, 3}));
}

TEST_F(SyncList, TenEntriesShareABlock) {
  List list;
  Append(list, 1, 10);
  EXPECT_EQ(list.Access().Blocks(), 1U);
  Append(list, 11, 11);
  EXPECT_EQ(list.Access().Blocks(), 2U);
}

TEST_F(SyncList, ANodeThatWasGivenBackIsUsedAgain) {
  List list;
  Append(list, 1, 10);
  list.Access().RemoveLast();
  Append(list, 11, 11);
  EXPECT_EQ(list.Access().Blocks(), 1U);
  EXPECT_EQ(NumbersOf(list), (Numbers{1, 2, 3, 4, 5, 6, 7, 8, 9, 11}));
}

TEST_F(SyncList, BlocksStayUntilTheLastEntryGoes) {
  List list;
  Append(list, 1, 11);
  for (int entry = 0; entry < 10; ++entry) list.Access().RemoveLast();
  EXPECT_EQ(list.Access().Blocks(), 2U);
  list.Access().RemoveLast();
  EXPECT_EQ(list.Access().Blocks(), 0U);
}

TEST_F(SyncList, RemovingAllDeletesTheEntriesAndTheBlocks) {
  List list;
  Append(list, 1, 23);
  list.RemoveAll();
  EXPECT_EQ(g_alive, 0);
  EXPECT_EQ(list.Access().Count(), 0U);
  EXPECT_EQ(list.Access().Blocks(), 0U);
  EXPECT_EQ(NumbersOf(list), Numbers{});
  list.RemoveAll();
  Append(list, 5, 6);
  EXPECT_EQ(NumbersOf(list), (Numbers{5, 6}));
}

TEST_F(SyncList, ItsEndDeletesTheEntriesAndClosesTheMutex) {
  {
    List list;
    Append(list, 1, 11);
    EXPECT_EQ(inside.process().Ledger().size(), 1U);
  }
  EXPECT_EQ(g_alive, 0);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

// --- The barrier

TEST_F(SyncList, AnAccessWaitsForTheMutexAndGivesItBack) {
  List list;
  const std::uint64_t before = inside.process().calls();
  list.Access();
  EXPECT_EQ(inside.process().calls() - before, 2U);
  list.RemoveAll();
  EXPECT_EQ(inside.process().calls() - before, 4U);
}

// The only handle that this process has.
HANDLE OnlyHandleOf(const sim::Process& process) {
  std::uint64_t handle = 0;
  while (process.FindHandle<sim::HandleBody>(handle) == nullptr) ++handle;
  return HANDLE{handle};
}

TEST_F(SyncList, AnAccessWaitsWhileAnotherThreadHoldsTheMutex) {
  List list;
  ASSERT_EQ(inside.process().Ledger().size(), 1U);
  const HANDLE mutex = OnlyHandleOf(inside.process());
  machine.StartThread(inside.process(), [mutex] {
    Os().objects.WaitForSingleObject(mutex, 0);
    Os().process.Sleep(500);
    Os().objects.ReleaseMutex(mutex);
  });
  Os().process.Sleep(100);
  EXPECT_EQ(machine.now(), 100U);
  list.Access();
  EXPECT_EQ(machine.now(), 500U);
}

TEST_F(SyncList, AnAccessThatHasBegunKeepsNobodyAway) {
  List list;
  const HANDLE mutex = OnlyHandleOf(inside.process());
  List::Entries& entries = list.Access();
  std::uint32_t result = WAIT_FAILED;
  machine.StartThread(inside.process(), [mutex, &result] {
    result = Os().objects.WaitForSingleObject(mutex, 0);
    Os().objects.ReleaseMutex(mutex);
  });
  Os().process.Sleep(10);
  EXPECT_EQ(result, WAIT_OBJECT_0);
  entries.Append(std::make_unique<Entry>(1));
  EXPECT_EQ(NumbersOf(list), (Numbers{1}));
}

TEST_F(SyncList, TwoListsHaveAMutexEach) {
  const List first;
  const List second;
  EXPECT_EQ(inside.process().Ledger().size(), 2U);
}

TEST_F(SyncList, WithoutAMutexItWorksAllTheSame) {
  inside.process().FailNext("CreateMutexW", ERROR_NO_SYSTEM_RESOURCES);
  List list;
  EXPECT_TRUE(inside.process().Ledger().empty());
  Append(list, 1, 2);
  EXPECT_EQ(NumbersOf(list), (Numbers{1, 2}));
}

TEST_F(SyncList, AWaitThatFailsKeepsNobodyAway) {
  List list;
  inside.process().FailNext("WaitForSingleObject", ERROR_INVALID_HANDLE);
  list.Access().Append(std::make_unique<Entry>(1));
  EXPECT_EQ(NumbersOf(list), (Numbers{1}));
}

}  // namespace
}  // namespace vgl
