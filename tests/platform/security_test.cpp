// Security descriptors, as the agent makes them for a mutex that everybody may open.
#include "tests/platform/platform_test.h"

namespace platform {
namespace {

class SecurityContract : public PlatformTest {};

TEST_F(SecurityContract, ADescriptorOfRevisionOneCanBeMade) {
  SecurityDescriptor descriptor;
  EXPECT_TRUE(
      Os().security.InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION));
  EXPECT_TRUE(Os().security.SetSecurityDescriptorDacl(&descriptor, true, nullptr, false));
}

TEST_F(SecurityContract, AnotherRevisionIsUnknown) {
  SecurityDescriptor descriptor;
  EXPECT_FALSE(Os().security.InitializeSecurityDescriptor(&descriptor, 2));
  EXPECT_EQ(Os().process.GetLastError(), ERROR_UNKNOWN_REVISION);
}

TEST_F(SecurityContract, AMutexCanBeMadeForEverybody) {
  SecurityDescriptor descriptor;
  ASSERT_TRUE(
      Os().security.InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION));
  ASSERT_TRUE(Os().security.SetSecurityDescriptorDacl(&descriptor, true, nullptr, false));
  SecurityAttributes attributes;
  attributes.descriptor = &descriptor;
  attributes.inheritHandle = 1;
  const HANDLE mutex = Os().objects.CreateMutexW(&attributes, false, u"PlatformTest everybody");
  ASSERT_NE(mutex, HANDLE{});
  const HANDLE again = Os().objects.OpenMutexW(SYNCHRONIZE, u"PlatformTest everybody");
  EXPECT_NE(again, HANDLE{});
  EXPECT_TRUE(Os().objects.CloseHandle(again));
  EXPECT_TRUE(Os().objects.CloseHandle(mutex));
}

}  // namespace
}  // namespace platform
