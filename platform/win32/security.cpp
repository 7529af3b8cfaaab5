// Security descriptors of Windows.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

namespace platform {
namespace {

class SecurityOfWindows final : public Security {
 public:
  bool InitializeSecurityDescriptor(SecurityDescriptor* descriptor,
                                    std::uint32_t revision) override {
    return ::InitializeSecurityDescriptor(descriptor, revision) != FALSE;
  }

  bool SetSecurityDescriptorDacl(SecurityDescriptor* descriptor, bool present, const void* list,
                                 bool defaulted) override {
    return ::SetSecurityDescriptorDacl(
               descriptor, present, static_cast<PACL>(const_cast<void*>(list)), defaulted) != FALSE;
  }
};

}  // namespace

Security& Win32Security() { return *new SecurityOfWindows; }

}  // namespace platform
