// Security: who may open a named object.
//
// Identifiers (SIDs), access lists (ACLs) and descriptors lie in memory as Windows fixes them. A
// failure's reason is in GetLastError.
#pragma once

#include "platform/types.h"

namespace platform {

inline constexpr std::uint32_t SECURITY_DESCRIPTOR_REVISION = 1;
inline constexpr std::uint32_t ACL_REVISION = 2;

// Who stands behind an identifier: its authority, and a number in that.
struct SidIdentifierAuthority {
  std::uint8_t value[6];  // the highest byte first
};
inline constexpr SidIdentifierAuthority SECURITY_WORLD_SID_AUTHORITY{{0, 0, 0, 0, 0, 1}};
inline constexpr SidIdentifierAuthority SECURITY_NT_AUTHORITY{{0, 0, 0, 0, 0, 5}};
inline constexpr std::uint32_t SECURITY_WORLD_RID = 0;          // everyone, of the world
inline constexpr std::uint32_t SECURITY_LOCAL_SYSTEM_RID = 18;  // the system itself, of NT

inline constexpr std::int32_t ERROR_REVISION_MISMATCH = 1306;
inline constexpr std::int32_t ERROR_INVALID_SID = 1337;
inline constexpr std::int32_t ERROR_ALLOTTED_SPACE_EXCEEDED = 1344;

// Windows' own descriptor, for 64-bit programs; its inside is Windows' alone.
struct SecurityDescriptor {
  alignas(8) std::uint8_t bytes[40] = {};
};

// What a creating call takes. The layout is Windows' own; the descriptor is the caller's and need
// live only during the call.
struct SecurityAttributes {
  std::uint32_t length = 24;  // of this structure, in bytes
  SecurityDescriptor* descriptor = nullptr;
  std::int32_t inheritHandle = 0;
};

class Security {
 public:
  virtual ~Security() = default;

  // Makes `*descriptor` an empty descriptor of that revision, which must be 1 (else false with
  // 1305).
  virtual bool InitializeSecurityDescriptor(SecurityDescriptor* descriptor,
                                            std::uint32_t revision) = 0;

  // Sets the list of who may do what. A list that is present and null lets everybody do everything.
  // The list stays the caller's; it has to live as long as the descriptor is used.
  virtual bool SetSecurityDescriptorDacl(SecurityDescriptor* descriptor, bool present,
                                         const void* list, bool defaulted) = 0;

  // Makes an identifier of the first `count` (at most 8, else false with 1337) of those numbers in
  // that authority. It is the caller's, given back by FreeSid.
  virtual bool AllocateAndInitializeSid(const SidIdentifierAuthority* authority, std::uint8_t count,
                                        const std::uint32_t (&subAuthorities)[8], void** sid) = 0;

  // Null on success, `sid` on failure.
  virtual void* FreeSid(void* sid) = 0;

  // The size of an identifier in bytes.
  virtual std::uint32_t GetLengthSid(void* sid) = 0;

  // Makes the memory at `acl` (aligned to 4) an empty list that may grow to `bytes` bytes, a
  // multiple of 4. False with 122 when that isn't room for an empty list, with 87 for more than
  // 65535 bytes and for a revision that there isn't.
  virtual bool InitializeAcl(void* acl, std::uint32_t bytes, std::uint32_t revision) = 0;

  // Adds at the list's end that who `sid` names (it is copied) may do what `mask` says. False with
  // 1344 when there is no room, with 1306 for a revision that there isn't; the list is then as it
  // was.
  virtual bool AddAccessAllowedAce(void* acl, std::uint32_t revision, std::uint32_t mask,
                                   void* sid) = 0;
};

}  // namespace platform
