#include "platform/sim/security_calls.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "platform/sim/machine.h"

namespace sim {

using namespace platform;

namespace {

// The structures as Windows lays them out. Memory that a program hands over is read and written
// through copies of them: nothing says how it is aligned.
struct DescriptorLayout {
  std::uint8_t revision;
  std::uint8_t padding;
  std::uint16_t control;
  const void* owner;
  const void* group;
  const void* sacl;
  const void* dacl;
};
static_assert(sizeof(DescriptorLayout) == sizeof(SecurityDescriptor));
constexpr std::uint16_t kDaclPresent = 0x0004;
constexpr std::uint16_t kDaclDefaulted = 0x0008;

struct SidHead {
  std::uint8_t revision;
  std::uint8_t count;  // of the 32-bit numbers behind
  SidIdentifierAuthority authority;
};
static_assert(sizeof(SidHead) == 8);
constexpr std::uint8_t kMostSubAuthorities = 8;

struct AclHead {
  std::uint8_t revision;
  std::uint8_t padding;
  std::uint16_t size;   // that it may grow to, in bytes
  std::uint16_t count;  // of its entries
  std::uint16_t padding2;
};
static_assert(sizeof(AclHead) == 8);
constexpr std::uint32_t kNewestAclRevision = 4;

struct AceHead {
  std::uint8_t type;  // 0: allows
  std::uint8_t flags;
  std::uint16_t size;  // with the identifier behind
  std::uint32_t mask;
};
static_assert(sizeof(AceHead) == 8);

template <class T>
T Load(const void* from) {
  T value;
  std::memcpy(&value, from, sizeof(value));
  return value;
}

std::uint32_t LengthOfSid(const void* sid) {
  return static_cast<std::uint32_t>(sizeof(SidHead) +
                                    Load<SidHead>(sid).count * sizeof(std::uint32_t));
}

// Where the next entry of a list goes, from its beginning.
std::size_t EndOfEntries(const std::uint8_t* acl) {
  std::size_t end = sizeof(AclHead);
  for (int left = Load<AclHead>(acl).count; left > 0; --left) end += Load<AceHead>(acl + end).size;
  return end;
}

bool Fail(const Call& call, std::int32_t error) {
  call.SetLastError(error);
  return false;
}

}  // namespace

class SecurityCalls::Sid final : public HandleBody {
 public:
  Sid(SecurityCalls& calls, std::unique_ptr<std::uint8_t[]> bytes)
      : m_calls(calls), m_bytes(std::move(bytes)) {}
  ~Sid() override {
    m_calls.m_sids.erase(m_bytes.get());
    if (!m_isGivenBack) m_calls.m_leftBehind.push_back(std::move(m_bytes));
  }

  std::u16string Describe() const override { return u"SID"; }
  bool IsKernelObject() const override { return false; }
  void GiveBack() { m_isGivenBack = true; }

 private:
  SecurityCalls& m_calls;
  std::unique_ptr<std::uint8_t[]> m_bytes;
  bool m_isGivenBack = false;
};

std::optional<std::string> DaclFrom(const SecurityAttributes* attributes) {
  if (attributes == nullptr || attributes->descriptor == nullptr) return std::nullopt;
  const auto descriptor = Load<DescriptorLayout>(attributes->descriptor->bytes);
  if ((descriptor.control & kDaclPresent) == 0) return std::nullopt;
  if (descriptor.dacl == nullptr) return std::string();
  return std::string(static_cast<const char*>(descriptor.dacl),
                     Load<AclHead>(descriptor.dacl).size);
}

bool SecurityCalls::InitializeSecurityDescriptor(SecurityDescriptor* descriptor,
                                                 std::uint32_t revision) {
  Call call("InitializeSecurityDescriptor");
  if (call.Failure(ERROR_UNKNOWN_REVISION)) return false;
  if (revision != SECURITY_DESCRIPTOR_REVISION) return Fail(call, ERROR_UNKNOWN_REVISION);
  *descriptor = SecurityDescriptor{};
  descriptor->bytes[0] = static_cast<std::uint8_t>(revision);
  return true;
}

bool SecurityCalls::SetSecurityDescriptorDacl(SecurityDescriptor* descriptor, bool present,
                                              const void* list, bool defaulted) {
  Call call("SetSecurityDescriptorDacl");
  if (call.Failure(ERROR_INVALID_PARAMETER)) return false;
  auto layout = Load<DescriptorLayout>(descriptor->bytes);
  layout.control &= static_cast<std::uint16_t>(~(kDaclPresent | kDaclDefaulted));
  if (present) {
    layout.control |= kDaclPresent;
    if (defaulted) layout.control |= kDaclDefaulted;
    layout.dacl = list;
  }
  std::memcpy(descriptor->bytes, &layout, sizeof(layout));
  return true;
}

bool SecurityCalls::AllocateAndInitializeSid(const SidIdentifierAuthority* authority,
                                             std::uint8_t count,
                                             const std::uint32_t (&subAuthorities)[8], void** sid) {
  Call call("AllocateAndInitializeSid");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return false;
  if (count > kMostSubAuthorities) return Fail(call, ERROR_INVALID_SID);
  const SidHead head{1, count, *authority};
  auto bytes = std::make_unique<std::uint8_t[]>(LengthOfSid(&head));
  std::memcpy(bytes.get(), &head, sizeof(head));
  std::memcpy(bytes.get() + sizeof(head), subAuthorities, count * sizeof(std::uint32_t));
  *sid = bytes.get();
  m_sids[*sid] = call.process().AddHandle(std::make_shared<Sid>(*this, std::move(bytes)));
  return true;
}

void* SecurityCalls::FreeSid(void* sid) {
  Call call("FreeSid", Call::kRelease);
  if (call.Inert()) return nullptr;
  if (call.Failure(ERROR_INVALID_SID)) return sid;
  const auto found = m_sids.find(sid);
  const std::uint64_t handle = found == m_sids.end() ? 0 : found->second;
  const std::shared_ptr<Sid> body = call.process().FindHandle<Sid>(handle);
  if (body == nullptr) return sid;
  body->GiveBack();
  call.process().CloseHandle(handle);
  return nullptr;
}

std::uint32_t SecurityCalls::GetLengthSid(void* sid) {
  const Call call("GetLengthSid");
  return LengthOfSid(sid);
}

bool SecurityCalls::InitializeAcl(void* acl, std::uint32_t bytes, std::uint32_t revision) {
  Call call("InitializeAcl");
  if (call.Failure(ERROR_INVALID_PARAMETER)) return false;
  if (bytes < sizeof(AclHead)) return Fail(call, ERROR_INSUFFICIENT_BUFFER);
  if (bytes > 0xFFFF || revision < ACL_REVISION || revision > kNewestAclRevision)
    return Fail(call, ERROR_INVALID_PARAMETER);
  const AclHead head{static_cast<std::uint8_t>(revision), 0, static_cast<std::uint16_t>(bytes), 0,
                     0};
  std::memcpy(acl, &head, sizeof(head));
  return true;
}

bool SecurityCalls::AddAccessAllowedAce(void* acl, std::uint32_t revision, std::uint32_t mask,
                                        void* sid) {
  Call call("AddAccessAllowedAce");
  if (call.Failure(ERROR_ALLOTTED_SPACE_EXCEEDED)) return false;
  if (revision > kNewestAclRevision) return Fail(call, ERROR_REVISION_MISMATCH);
  auto* list = static_cast<std::uint8_t*>(acl);
  auto head = Load<AclHead>(list);
  const std::size_t at = EndOfEntries(list);
  const std::size_t size = sizeof(AceHead) + LengthOfSid(sid);
  if (at + size > head.size) return Fail(call, ERROR_ALLOTTED_SPACE_EXCEEDED);

  const AceHead entry{0, 0, static_cast<std::uint16_t>(size), mask};
  std::memcpy(list + at, &entry, sizeof(entry));
  std::memcpy(list + at + sizeof(entry), sid, LengthOfSid(sid));
  head.revision = std::max(head.revision, static_cast<std::uint8_t>(revision));
  ++head.count;
  std::memcpy(list, &head, sizeof(head));
  return true;
}

}  // namespace sim
