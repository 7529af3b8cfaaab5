// Security identifiers, lists and descriptors of Windows.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

#include <algorithm>
#include <iterator>

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

  bool AllocateAndInitializeSid(const SidIdentifierAuthority* authority, std::uint8_t count,
                                const std::uint32_t (&sub)[8], void** sid) override {
    SID_IDENTIFIER_AUTHORITY native{};
    std::copy(std::begin(authority->value), std::end(authority->value), native.Value);
    return ::AllocateAndInitializeSid(&native, count, sub[0], sub[1], sub[2], sub[3], sub[4],
                                      sub[5], sub[6], sub[7], sid) != FALSE;
  }

  void* FreeSid(void* sid) override { return ::FreeSid(sid); }

  std::uint32_t GetLengthSid(void* sid) override { return ::GetLengthSid(sid); }

  bool InitializeAcl(void* acl, std::uint32_t bytes, std::uint32_t revision) override {
    return ::InitializeAcl(static_cast<PACL>(acl), bytes, revision) != FALSE;
  }

  bool AddAccessAllowedAce(void* acl, std::uint32_t revision, std::uint32_t mask,
                           void* sid) override {
    return ::AddAccessAllowedAce(static_cast<PACL>(acl), revision, mask, sid) != FALSE;
  }
};

}  // namespace

Security& Win32Security() { return *new SecurityOfWindows; }

}  // namespace platform
