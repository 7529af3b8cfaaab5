// Security descriptors: who may open a named object.
#pragma once

#include "platform/types.h"

namespace platform {

inline constexpr std::uint32_t SECURITY_DESCRIPTOR_REVISION = 1;

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
  virtual bool SetSecurityDescriptorDacl(SecurityDescriptor* descriptor, bool present,
                                         const void* list, bool defaulted) = 0;
};

}  // namespace platform
