#include "menu/uty_call.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/sim/machine.h"

namespace vgl {
namespace {

using namespace platform;

class UtyCall : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  std::unique_ptr<CUtyCall> call = std::make_unique<CUtyCall>();

  void MakeSemaphore(std::int32_t count) {
    call->hSemaphore = Os().objects.CreateSemaphoreW(count, 1, u"VGL_UtyCall_OBJ_P");
  }
};

TEST_F(UtyCall, WithoutASemaphoreNoUtilityRuns) {
  EXPECT_EQ(call->CheckUtyCall(0), 1);
  EXPECT_EQ(call->CheckUtyCall(1), 1);
}

TEST_F(UtyCall, APollLeavesTheSemaphoreAsItWas) {
  MakeSemaphore(1);
  EXPECT_EQ(call->CheckUtyCall(0), 1);
  EXPECT_EQ(call->CheckUtyCall(0), 1);
}

TEST_F(UtyCall, APollFindsARunningUtilityAtOnce) {
  MakeSemaphore(0);
  EXPECT_EQ(call->CheckUtyCall(0), 0);
  EXPECT_EQ(machine.now(), 0U);
}

TEST_F(UtyCall, TheWaitAtTheEndKeepsTheSemaphore) {
  MakeSemaphore(1);
  EXPECT_EQ(call->CheckUtyCall(1), 1);
  EXPECT_EQ(call->CheckUtyCall(0), 0);
}

TEST_F(UtyCall, TheSemaphoreIsClosedWithTheObject) {
  MakeSemaphore(1);
  EXPECT_EQ(inside.process().Ledger().size(), 1U);
  call.reset();
  EXPECT_TRUE(inside.process().Ledger().empty());
}

}  // namespace
}  // namespace vgl
