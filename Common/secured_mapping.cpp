// A section that every process may open.
#include <memory>
#include <new>

#include "Common/instance_map.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::uint32_t kSectionFullAccess = 0xF003F;
// The list's header, and for each of its two entries what stands in front of the identity.
constexpr std::uint32_t kAclBytesBesideSids = 24;

struct SidFreer {
  void operator()(void* sid) const { Os().security.FreeSid(sid); }
};
using OwnedSid = std::unique_ptr<void, SidFreer>;

OwnedSid MakeSid(const SidIdentifierAuthority& authority, std::uint32_t relativeId) {
  void* sid = nullptr;
  if (!Os().security.AllocateAndInitializeSid(&authority, 1, {relativeId}, &sid)) return nullptr;
  return OwnedSid(sid);
}

bool Allow(void* list, void* sid) {
  return Os().security.AddAccessAllowedAce(list, ACL_REVISION, kSectionFullAccess, sid);
}

}  // namespace

HANDLE CreateSecuredMapping(HANDLE file, const void*, std::uint32_t protection,
                            std::uint32_t sizeHigh, std::uint32_t sizeLow, const char16_t* name) {
  const OwnedSid system = MakeSid(SECURITY_NT_AUTHORITY, SECURITY_LOCAL_SYSTEM_RID);
  const OwnedSid everyone = MakeSid(SECURITY_WORLD_SID_AUTHORITY, SECURITY_WORLD_RID);
  if (system == nullptr || everyone == nullptr) return HANDLE{};

  const std::uint32_t bytes = Os().security.GetLengthSid(system.get()) +
                              Os().security.GetLengthSid(everyone.get()) + kAclBytesBesideSids;
  const std::unique_ptr<unsigned char[]> list(new (std::nothrow) unsigned char[bytes]);
  if (list == nullptr || !Os().security.InitializeAcl(list.get(), bytes, ACL_REVISION) ||
      !Allow(list.get(), system.get()) || !Allow(list.get(), everyone.get()))
    return HANDLE{};

  SecurityDescriptor descriptor;
  if (!Os().security.InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION) ||
      !Os().security.SetSecurityDescriptorDacl(&descriptor, true, list.get(), false))
    return HANDLE{};
  SecurityAttributes attributes;
  attributes.descriptor = &descriptor;
  return Os().sections.CreateFileMappingW(file, &attributes, protection, sizeHigh, sizeLow, name);
}

}  // namespace vgl
