// The lock of updates in a printer's data.
#include <gtest/gtest.h>

#include <string>

#include "platform/owned.h"
#include "tests/Common/disable_func_data_fixture.h"

namespace vgl {
namespace {

using namespace platform;

using UpdateLock = DisableFuncData;

TEST_F(UpdateLock, ANumberThatIsntZeroLocksUpdates) {
  for (const std::string& locked : {Bytes({1, 0, 0, 0}), Bytes({0, 0, 0, 0x80}), Bytes({4})}) {
    CGetDisableVglFuncData fresh;
    SetUpdateLock(locked);
    EXPECT_EQ(fresh.LoadUpdateLock(u"P"), 0);
    EXPECT_EQ(fresh.bDisableUpdate, 1);
    EXPECT_EQ(fresh.bUpdateRead, 1);
  }
}

TEST_F(UpdateLock, ZeroLeavesUpdatesFree) {
  SetUpdateLock(Bytes({0, 0, 0, 0}));
  EXPECT_EQ(data.LoadUpdateLock(u"P"), 0);
  EXPECT_EQ(data.bDisableUpdate, 0);
  EXPECT_EQ(data.bUpdateRead, 1);
}

TEST_F(UpdateLock, TheLockIsReadOnce) {
  SetUpdateLock(Bytes({1, 0, 0, 0}));
  EXPECT_EQ(data.LoadUpdateLock(u"P"), 0);
  SetUpdateLock(Bytes({0, 0, 0, 0}));
  const std::uint64_t calls = inside.process().calls();
  EXPECT_EQ(data.LoadUpdateLock(u"P"), 0);
  EXPECT_EQ(inside.process().calls(), calls);
  EXPECT_EQ(data.bDisableUpdate, 1);
}

TEST_F(UpdateLock, WithoutTheLockItIsMinus99AndCanBeAskedAgain) {
  EXPECT_EQ(data.LoadUpdateLock(u"P"), -99);
  EXPECT_TRUE(IsAsNew());
  SetUpdateLock(Bytes({1, 0, 0, 0}));
  EXPECT_EQ(data.LoadUpdateLock(u"P"), 0);
  EXPECT_EQ(data.bDisableUpdate, 1);
}

TEST_F(UpdateLock, ALockOfMoreThanFourBytesIsntRead) {
  SetUpdateLock(Bytes({1, 0, 0, 0, 0}));
  EXPECT_EQ(data.LoadUpdateLock(u"P"), -99);
  EXPECT_TRUE(IsAsNew());
}

TEST_F(UpdateLock, NullAndEmptyNamesHaveNoLockAndAskNobody) {
  const std::uint64_t calls = inside.process().calls();
  EXPECT_EQ(data.LoadUpdateLock(nullptr), -99);
  EXPECT_EQ(data.LoadUpdateLock(u""), -99);
  EXPECT_EQ(inside.process().calls(), calls);
}

TEST_F(UpdateLock, ALockOfAPrinterThatCantBeOpenedIsZeroAndOff) {
  EXPECT_EQ(data.LoadUpdateLock(u"missing"), 0);
  EXPECT_EQ(data.bDisableUpdate, 0);
}

TEST_F(UpdateLock, AnInstallerAtWorkKeepsTheLockFromBeingRead) {
  SetUpdateLock(Bytes({1, 0, 0, 0}));
  const OwnedObject installer(Os().objects.CreateMutexW(nullptr, false, kInstaller));
  EXPECT_EQ(data.LoadUpdateLock(u"P"), -99);
  EXPECT_EQ(data.bUpdateRead, 0);
}

TEST_F(UpdateLock, RecordAndLockDontTouchEachOther) {
  SetRecord(std::string(10, '\0'));
  SetUpdateLock(Bytes({1, 0, 0, 0}));
  EXPECT_EQ(data.LoadUpdateLock(u"P"), 0);
  EXPECT_EQ(Switches(), Switched({0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(data.LoadDisableRecord(u"P"), 0);
  EXPECT_EQ(data.bDisableUpdate, 1);
}

}  // namespace
}  // namespace vgl
