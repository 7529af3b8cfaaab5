// Identifiers, access lists and descriptors: what lies in memory, and what can be made with them.
#include <algorithm>
#include <cstring>
#include <vector>

#include "tests/platform/platform_test.h"

namespace platform {
namespace {

using Bytes = std::vector<std::uint8_t>;

class SecurityContract : public PlatformTest {
 protected:
  struct Free {
    void operator()(void* sid) const { Os().security.FreeSid(sid); }
  };
  using Sid = std::unique_ptr<void, Free>;

  Sid Make(const SidIdentifierAuthority& authority, std::uint8_t count,
           const std::uint32_t (&subAuthorities)[8]) {
    void* sid = nullptr;
    EXPECT_TRUE(security.AllocateAndInitializeSid(&authority, count, subAuthorities, &sid))
        << "error " << LastError();
    return Sid(sid);
  }
  Sid MakeSystem() { return Make(SECURITY_NT_AUTHORITY, 1, {SECURITY_LOCAL_SYSTEM_RID}); }
  Sid MakeEveryone() { return Make(SECURITY_WORLD_SID_AUTHORITY, 1, {SECURITY_WORLD_RID}); }

  Bytes BytesOf(const Sid& sid) {
    const auto* bytes = static_cast<const std::uint8_t*>(sid.get());
    return {bytes, bytes + security.GetLengthSid(sid.get())};
  }

  Security& security = os.security;
};

using SecurityIdentifiers = SecurityContract;

class AccessLists : public SecurityContract {
 protected:
  static constexpr std::size_t kSize = 48;  // room for two entries of 20 bytes, with the head

  Bytes Memory() const { return {memory, memory + sizeof(memory)}; }
  // `begin`, and 0xCC behind it up to the end of the memory.
  static Bytes Padded(Bytes begin) {
    begin.resize(sizeof(memory), 0xCC);
    return begin;
  }

  alignas(4) std::uint8_t memory[56];

  AccessLists() { std::fill(std::begin(memory), std::end(memory), std::uint8_t{0xCC}); }
};

using SecurityDescriptors = SecurityContract;

// --- Identifiers

TEST_F(SecurityIdentifiers, TheSystemsIsTwelveBytes) {
  EXPECT_EQ(BytesOf(MakeSystem()), (Bytes{1, 1, 0, 0, 0, 0, 0, 5, 18, 0, 0, 0}));
}

TEST_F(SecurityIdentifiers, EveryonesIsTwelveBytes) {
  EXPECT_EQ(BytesOf(MakeEveryone()), (Bytes{1, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0}));
}

TEST_F(SecurityIdentifiers, AsManyNumbersAsAreCountedAreInIt) {
  constexpr std::uint32_t kNumbers[8] = {32, 0x01020304, 3, 4, 5, 6, 7, 0xFFFFFFFF};
  EXPECT_EQ(BytesOf(Make(SECURITY_NT_AUTHORITY, 0, kNumbers)), (Bytes{1, 0, 0, 0, 0, 0, 0, 5}));
  EXPECT_EQ(BytesOf(Make(SECURITY_NT_AUTHORITY, 2, kNumbers)),
            (Bytes{1, 2, 0, 0, 0, 0, 0, 5, 32, 0, 0, 0, 4, 3, 2, 1}));
  const Sid all = Make(SECURITY_NT_AUTHORITY, 8, kNumbers);
  EXPECT_EQ(security.GetLengthSid(all.get()), 40u);
  const Bytes bytes = BytesOf(all);
  EXPECT_EQ(Bytes(bytes.begin() + 36, bytes.end()), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST_F(SecurityIdentifiers, TheAuthoritysBytesKeepTheirOrder) {
  const SidIdentifierAuthority authority{{1, 2, 3, 4, 5, 6}};
  EXPECT_EQ(BytesOf(Make(authority, 1, {7})), (Bytes{1, 1, 1, 2, 3, 4, 5, 6, 7, 0, 0, 0}));
}

TEST_F(SecurityIdentifiers, MoreThanEightNumbersAreRefused) {
  const SidIdentifierAuthority authority = SECURITY_NT_AUTHORITY;
  constexpr std::uint32_t kNumbers[8] = {};
  void* sid = nullptr;
  EXPECT_FALSE(security.AllocateAndInitializeSid(&authority, 9, kNumbers, &sid));
  EXPECT_EQ(LastError(), ERROR_INVALID_SID);
}

TEST_F(SecurityIdentifiers, FreeingOneGivesNull) {
  EXPECT_EQ(security.FreeSid(MakeSystem().release()), nullptr);
}

// --- Access lists

TEST_F(AccessLists, AnEmptyOneIsItsHead) {
  ASSERT_TRUE(security.InitializeAcl(memory, kSize, ACL_REVISION));
  EXPECT_EQ(Memory(), Padded({2, 0, 48, 0, 0, 0, 0, 0}));
}

TEST_F(AccessLists, EntriesStandInTheOrderInWhichTheyWereAdded) {
  const Sid system = MakeSystem();
  const Sid everyone = MakeEveryone();
  ASSERT_TRUE(security.InitializeAcl(memory, kSize, ACL_REVISION));
  ASSERT_TRUE(security.AddAccessAllowedAce(memory, ACL_REVISION, 0xF003F, system.get()));
  EXPECT_EQ(Memory(), Padded({2, 0, 48, 0, 1,    0,    0,    0,     //
                              0, 0, 20, 0, 0x3F, 0x00, 0x0F, 0x00,  //
                              1, 1, 0,  0, 0,    0,    0,    5,    18, 0, 0, 0}));
  ASSERT_TRUE(security.AddAccessAllowedAce(memory, ACL_REVISION, 0x12345678, everyone.get()));
  EXPECT_EQ(Memory(), Padded({2, 0, 48, 0, 2,    0,    0,    0,                  //
                              0, 0, 20, 0, 0x3F, 0x00, 0x0F, 0x00,               //
                              1, 1, 0,  0, 0,    0,    0,    5,    18, 0, 0, 0,  //
                              0, 0, 20, 0, 0x78, 0x56, 0x34, 0x12,               //
                              1, 1, 0,  0, 0,    0,    0,    1,    0,  0, 0, 0}));
}

TEST_F(AccessLists, AnEntryThatDoesNotFitChangesNothing) {
  const Sid system = MakeSystem();
  ASSERT_TRUE(security.InitializeAcl(memory, kSize - 4, ACL_REVISION));
  ASSERT_TRUE(security.AddAccessAllowedAce(memory, ACL_REVISION, 1, system.get()));
  const Bytes before = Memory();
  EXPECT_FALSE(security.AddAccessAllowedAce(memory, ACL_REVISION, 1, system.get()));
  EXPECT_EQ(LastError(), ERROR_ALLOTTED_SPACE_EXCEEDED);
  EXPECT_EQ(Memory(), before);
}

TEST_F(AccessLists, ARevisionThatThereIsNotIsRefused) {
  const Sid system = MakeSystem();
  ASSERT_TRUE(security.InitializeAcl(memory, kSize, ACL_REVISION));
  EXPECT_FALSE(security.AddAccessAllowedAce(memory, 5, 1, system.get()));
  EXPECT_EQ(LastError(), ERROR_REVISION_MISMATCH);
  for (const std::uint32_t revision : {0u, 1u, 5u}) {
    EXPECT_FALSE(security.InitializeAcl(memory, kSize, revision));
    EXPECT_EQ(LastError(), ERROR_INVALID_PARAMETER);
  }
}

TEST_F(AccessLists, OneNeedsRoomForItsHead) {
  EXPECT_FALSE(security.InitializeAcl(memory, 7, ACL_REVISION));
  EXPECT_EQ(LastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(Memory(), Padded({}));
  EXPECT_TRUE(security.InitializeAcl(memory, 8, ACL_REVISION));
}

TEST_F(AccessLists, OneIsSmallerThan64KiB) {
  EXPECT_FALSE(security.InitializeAcl(memory, 0x10000, ACL_REVISION));
  EXPECT_EQ(LastError(), ERROR_INVALID_PARAMETER);
}

// --- Descriptors

TEST_F(SecurityDescriptors, OneOfRevisionOneCanBeMade) {
  SecurityDescriptor descriptor;
  EXPECT_TRUE(security.InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION));
  EXPECT_TRUE(security.SetSecurityDescriptorDacl(&descriptor, true, nullptr, false));
}

TEST_F(SecurityDescriptors, AnotherRevisionIsUnknown) {
  SecurityDescriptor descriptor;
  EXPECT_FALSE(security.InitializeSecurityDescriptor(&descriptor, 2));
  EXPECT_EQ(LastError(), ERROR_UNKNOWN_REVISION);
}

TEST_F(SecurityDescriptors, TheListLiesWhereItIsPointedTo) {
  SecurityDescriptor descriptor;
  std::fill(std::begin(descriptor.bytes), std::end(descriptor.bytes), std::uint8_t{0xCC});
  ASSERT_TRUE(security.InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION));
  alignas(4) std::uint8_t list[8];
  ASSERT_TRUE(security.InitializeAcl(list, sizeof(list), ACL_REVISION));
  ASSERT_TRUE(security.SetSecurityDescriptorDacl(&descriptor, true, list, false));
  EXPECT_EQ(descriptor.bytes[0], 1);  // the revision
  EXPECT_EQ(descriptor.bytes[2], 4);  // there is a list
  const void* pointed = nullptr;
  std::memcpy(&pointed, descriptor.bytes + 32, sizeof(pointed));
  EXPECT_EQ(pointed, list);
}

TEST_F(SecurityDescriptors, AMutexCanBeMadeForEverybody) {
  SecurityDescriptor descriptor;
  ASSERT_TRUE(security.InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION));
  ASSERT_TRUE(security.SetSecurityDescriptorDacl(&descriptor, true, nullptr, false));
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

TEST_F(AccessLists, ASectionCanBeMadeWithOne) {
  const Sid system = MakeSystem();
  const Sid everyone = MakeEveryone();
  ASSERT_TRUE(security.InitializeAcl(memory, kSize, ACL_REVISION));
  ASSERT_TRUE(security.AddAccessAllowedAce(memory, ACL_REVISION, 0xF003F, system.get()));
  ASSERT_TRUE(security.AddAccessAllowedAce(memory, ACL_REVISION, 0xF003F, everyone.get()));
  SecurityDescriptor descriptor;
  ASSERT_TRUE(security.InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION));
  ASSERT_TRUE(security.SetSecurityDescriptorDacl(&descriptor, true, memory, false));
  SecurityAttributes attributes;
  attributes.descriptor = &descriptor;
  const OwnedObject section(os.sections.CreateFileMappingW(
      INVALID_HANDLE_VALUE, &attributes, PAGE_READWRITE, 0, 100, u"PlatformTest listed"));
  ASSERT_TRUE(section) << "error " << LastError();
  EXPECT_TRUE(
      OwnedObject(os.sections.OpenFileMappingW(FILE_MAP_ALL_ACCESS, u"PlatformTest listed")));
}

}  // namespace
}  // namespace platform
