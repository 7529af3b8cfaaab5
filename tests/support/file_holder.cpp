#include "tests/support/file_holder.h"

#include <gtest/gtest.h>

#include "platform/owned.h"

namespace vgl {

using namespace platform;

sim::Process& HoldOpenForSharedWriting(sim::Machine& machine, const char16_t* path) {
  bool isOpen = false;
  sim::Process& holder =
      machine.StartProcess(u"C:\\other.exe", u"", [path, &isOpen](const char16_t*) {
        const OwnedFile file(Os().files.CreateFileW(path, GENERIC_WRITE,
                                                    FILE_SHARE_READ | FILE_SHARE_WRITE,
                                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL));
        isOpen = static_cast<bool>(file);
        Os().process.Sleep(1000);
        return 0U;
      });
  machine.Settle();
  EXPECT_TRUE(isOpen);
  return holder;
}

}  // namespace vgl
