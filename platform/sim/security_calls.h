// The platform's calls on identifiers, access lists and descriptors. They lie in memory byte for
// byte as on Windows; nobody is refused anything by them.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/security.h"

namespace sim {

class SecurityCalls final : public platform::Security {
 public:
  bool InitializeSecurityDescriptor(platform::SecurityDescriptor* descriptor,
                                    std::uint32_t revision) override;
  bool SetSecurityDescriptorDacl(platform::SecurityDescriptor* descriptor, bool present,
                                 const void* list, bool defaulted) override;
  bool AllocateAndInitializeSid(const platform::SidIdentifierAuthority* authority,
                                std::uint8_t count, const std::uint32_t (&subAuthorities)[8],
                                void** sid) override;
  void* FreeSid(void* sid) override;
  std::uint32_t GetLengthSid(void* sid) override;
  bool InitializeAcl(void* acl, std::uint32_t bytes, std::uint32_t revision) override;
  bool AddAccessAllowedAce(void* acl, std::uint32_t revision, std::uint32_t mask,
                           void* sid) override;

 private:
  class Sid;

  std::map<const void*, std::uint64_t> m_sids;  // each one's handle in the ledger of its process
  // Of processes that ended with them in their hands: their threads may still look there while
  // their stacks are unwound.
  std::vector<std::unique_ptr<std::uint8_t[]>> m_leftBehind;
};

// The bytes of the access list that `attributes` bring along: none without a list, no bytes for the
// null list, which lets everybody do everything.
std::optional<std::string> DaclFrom(const platform::SecurityAttributes* attributes);

}  // namespace sim
