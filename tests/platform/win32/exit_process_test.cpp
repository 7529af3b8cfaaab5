// The end of a process, which needs a process of its own.
#include <gtest/gtest.h>

#include "platform/platform.h"

namespace platform {
namespace {

class Noisy {
 public:
  ~Noisy() { Os().process.ExitProcess(99); }
};

TEST(ExitProcessDeathTest, ItEndsTheProcessWhereItStandsWithThatCode) {
  EXPECT_EXIT(
      {
        const Noisy noisy;
        Os().process.ExitProcess(7);
      },
      testing::ExitedWithCode(7), "");
}

}  // namespace
}  // namespace platform
