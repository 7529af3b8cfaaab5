#include <gtest/gtest.h>

#include <type_traits>

#include "tests/Common/registry_fixture.h"

namespace vgl {
namespace {

using namespace platform;

template <class Road>
class RegistryKeys : public RegistryObject<Road> {};
TYPED_TEST_SUITE(RegistryKeys, RegistryRoads, RegistryRoadName);

// --- The layout, which the suite fixes

static_assert(sizeof(CRegistry) == 24);
static_assert(sizeof(CKvRdefRegistry) == sizeof(CRegistry));
static_assert(std::is_base_of_v<CRegistry, CKvRdefRegistry>);

TEST(RegistryLayout, HandleFlagAndAccessStandBehindThePointerToTheDestructor) {
  const auto offset = [](const CRegistry& key, const void* field) {
    return static_cast<const char*>(field) - reinterpret_cast<const char*>(&key);
  };
  const CRegistry key;
  EXPECT_EQ(offset(key, &key.m_hKey), 8);
  EXPECT_EQ(offset(key, &key.m_IsOpen), 16);
  EXPECT_EQ(offset(key, &key.m_Access), 20);
}

// --- What doesn't compile

template <class Key>
constexpr bool kTakesAFlagAlone =
    std::is_constructible_v<Key, HKEY, const char16_t*, bool>&&
        std::is_constructible_v<Key, HKEY, const char16_t*, bool, std::uint32_t> &&
    !std::is_constructible_v<Key, HKEY, const char16_t*, std::uint32_t> &&
    !std::is_constructible_v<Key, HKEY, const char16_t*, std::uint32_t, std::uint32_t> &&
    !std::is_constructible_v<Key, HKEY, const char16_t*, int>;
static_assert(kTakesAFlagAlone<CRegistry>);
static_assert(kTakesAFlagAlone<CKvRdefRegistry>);

template <class Key>
void ExpectClosed(const Key& key) {
  EXPECT_EQ(key.m_IsOpen, 0);
  EXPECT_EQ(key.m_hKey, HKEY{});
}

// --- Opening and creating

TYPED_TEST(RegistryKeys, AnObjectIsClosedAtFirst) {
  const typename TestFixture::Key key;
  ExpectClosed(key);
  EXPECT_EQ(key.m_Access, 0U);
}

TYPED_TEST(RegistryKeys, TheConstructorOpensToReadByDefault) {
  const typename TestFixture::Key key(this->kHive, this->kPath, false);
  EXPECT_EQ(key.m_IsOpen, 1);
  EXPECT_NE(key.m_hKey, HKEY{});
  EXPECT_EQ(key.m_Access, 0x20019U);
}

TYPED_TEST(RegistryKeys, TheConstructorCreatesWithAllRightsByDefault) {
  const typename TestFixture::Key key(this->kHive, u"Software\\New", true);
  EXPECT_EQ(key.m_IsOpen, 1);
  EXPECT_EQ(key.m_Access, 0xF003FU);
  EXPECT_TRUE(this->tree().HasKey(this->kHive, u"Software\\New"));
}

TYPED_TEST(RegistryKeys, TheConstructorTakesTheAccessThatItIsGiven) {
  this->tree().MakeKey(this->kHive, this->Below(u"Menu"));
  this->Set(u"n", REG_DWORD, std::string("\7\0\0\0", 4));
  const typename TestFixture::Key opened(this->kHive, this->kPath, false, KEY_QUERY_VALUE);
  EXPECT_EQ(opened.m_Access, KEY_QUERY_VALUE);
  EXPECT_EQ(opened.GetDword(u"n", 0), 7U);
  EXPECT_EQ(opened.EnumKey(), u"");  // a right of its own
  typename TestFixture::Key created(this->kHive, this->kPath, true, KEY_READ);
  EXPECT_EQ(created.m_Access, KEY_READ);
  EXPECT_FALSE(created.SetDword(u"n", 1));
}

TYPED_TEST(RegistryKeys, TheConstructorOpensWhatIsThereWhenItCreates) {
  const typename TestFixture::Key key(this->kHive, this->kPath, true);
  EXPECT_EQ(key.m_IsOpen, 1);
}

TYPED_TEST(RegistryKeys, AMissingKeyLeavesTheObjectClosed) {
  const typename TestFixture::Key key(this->kHive, u"Software\\Missing", false);
  ExpectClosed(key);
  EXPECT_EQ(key.m_Access, 0x20019U);
}

TYPED_TEST(RegistryKeys, AKeyThatIsDeniedLeavesTheObjectClosed) {
  this->tree().Deny(this->kHive, this->kPath, true);
  ExpectClosed(typename TestFixture::Key(this->kHive, this->kPath, false));
  ExpectClosed(typename TestFixture::Key(this->kHive, this->kPath, true));
}

TYPED_TEST(RegistryKeys, ANullOrEmptySubKeyOpensTheKeyItself) {
  this->Set(u"n", REG_DWORD, std::string("\7\0\0\0", 4));
  const typename TestFixture::OpenKey key;
  for (const char16_t* subKey : {static_cast<const char16_t*>(nullptr), u""}) {
    const typename TestFixture::Key same(key.m_hKey, subKey, false);
    EXPECT_EQ(same.GetDword(u"n", 0), 7U);
  }
}

TYPED_TEST(RegistryKeys, OpenGivesTrueForAKeyThatIsThere) {
  typename TestFixture::Key key;
  EXPECT_TRUE(key.Open(this->kHive, this->kPath));
  EXPECT_EQ(key.m_IsOpen, 1);
  EXPECT_EQ(key.m_Access, 0x20019U);
}

TYPED_TEST(RegistryKeys, OpenGivesFalseForAKeyThatIsMissingAndCanBeTriedAgain) {
  typename TestFixture::Key key;
  EXPECT_FALSE(key.Open(this->kHive, u"Software\\Missing", KEY_ALL_ACCESS));
  ExpectClosed(key);
  EXPECT_EQ(key.m_Access, 0xF003FU);
  EXPECT_TRUE(key.Open(this->kHive, this->kPath, KEY_ALL_ACCESS));
}

TYPED_TEST(RegistryKeys, CreateGivesTrueForANewKey) {
  typename TestFixture::Key key;
  EXPECT_TRUE(key.Create(this->kHive, u"Software\\New\\Deep"));
  EXPECT_EQ(key.m_IsOpen, 1);
  EXPECT_EQ(key.m_Access, 0xF003FU);
  EXPECT_TRUE(this->tree().HasKey(this->kHive, u"Software\\New\\Deep"));
}

TYPED_TEST(RegistryKeys, CreateOfAKeyThatIsThereGivesFalseAndTheKeyIsUsable) {
  typename TestFixture::Key key;
  EXPECT_FALSE(key.Create(this->kHive, this->kPath));
  EXPECT_EQ(key.m_IsOpen, 1);
  EXPECT_TRUE(key.SetDword(u"n", 3));
  EXPECT_EQ(key.GetDword(u"n", 0), 3U);
}

TYPED_TEST(RegistryKeys, CreateThatFailsLeavesTheObjectClosed) {
  typename TestFixture::Key key;
  this->FailNext("RegCreateKeyExW");
  EXPECT_FALSE(key.Create(this->kHive, u"Software\\New"));
  ExpectClosed(key);
}

TYPED_TEST(RegistryKeys, CloseClosesTheHandleAndTheObjectCanBeOpenedAgain) {
  typename TestFixture::OpenKey key;
  key.Close();
  ExpectClosed(key);
  EXPECT_EQ(key.m_Access, 0xF003FU);
  EXPECT_TRUE(key.Open(this->kHive, this->kPath));
}

TYPED_TEST(RegistryKeys, CloseOfAClosedObjectAsksNobody) {
  typename TestFixture::Key key;
  const std::uint64_t before = this->calls();
  key.Close();
  EXPECT_EQ(this->calls(), before);
}

TYPED_TEST(RegistryKeys, TheEndOfAnObjectClosesItsHandle) {
  const std::vector<std::u16string> before = this->inside.process().Ledger();
  {
    const typename TestFixture::OpenKey key;
    EXPECT_EQ(this->inside.process().Ledger().size(), before.size() + 1);
  }
  EXPECT_EQ(this->inside.process().Ledger(), before);
}

TYPED_TEST(RegistryKeys, ASecondOpenEndsTheProcess) {
  EXPECT_TRUE(this->inside.EndsProcess([&] {
    typename TestFixture::OpenKey key;
    key.Open(this->kHive, this->kPath);
  }));
  EXPECT_EQ(this->inside.process().exitCode(), 3U);
}

TYPED_TEST(RegistryKeys, AnOpenAfterACreateThatGaveFalseEndsTheProcess) {
  EXPECT_TRUE(this->inside.EndsProcess([&] {
    typename TestFixture::Key key;
    EXPECT_FALSE(key.Create(this->kHive, this->kPath));
    key.Open(this->kHive, this->kPath);
  }));
  EXPECT_EQ(this->inside.process().exitCode(), 3U);
}

TYPED_TEST(RegistryKeys, ACreateOnAnOpenObjectEndsTheProcess) {
  EXPECT_TRUE(this->inside.EndsProcess([&] {
    typename TestFixture::OpenKey key;
    key.Create(this->kHive, u"Software\\New");
  }));
  EXPECT_EQ(this->inside.process().exitCode(), 3U);
  EXPECT_FALSE(this->tree().HasKey(this->kHive, u"Software\\New"));
}

TYPED_TEST(RegistryKeys, AClosedObjectGivesDefaultsAndAsksNobody) {
  typename TestFixture::Key key;
  std::u16string name = u"before";
  std::uint32_t buffer = 5;
  const std::uint64_t before = this->calls();
  EXPECT_EQ(key.EnumKey(), u"");
  EXPECT_EQ(key.EnumValueName(0), u"");
  EXPECT_EQ(key.EnumValueData(0), u"");
  EXPECT_EQ(key.EnumValue(0, name), u"");
  EXPECT_EQ(name, u"");
  EXPECT_FALSE(key.DeleteKeyTree(u"k"));
  EXPECT_FALSE(key.DeleteValue(u"n"));
  EXPECT_EQ(key.GetType(u"n"), 0U);
  EXPECT_FALSE(key.IsString(u"n"));
  EXPECT_FALSE(key.IsDword(u"n"));
  EXPECT_FALSE(key.IsBinary(u"n"));
  EXPECT_EQ(key.GetString(u"n", u"fallback"), u"fallback");
  EXPECT_EQ(key.GetString(u"n", u"fallback", 8), u"fallback");
  EXPECT_FALSE(key.SetString(u"n", u"t"));
  EXPECT_EQ(key.GetDword(u"n", 9), 9U);
  EXPECT_EQ(key.GetDwordOrMinus1(u"n"), 0xFFFFFFFFU);
  EXPECT_FALSE(key.SetDword(u"n", 1));
  EXPECT_EQ(key.GetSize(u"n"), 0U);
  EXPECT_EQ(key.GetBinaryAlloc(u"n"), nullptr);
  EXPECT_FALSE(key.GetBinary(u"n", &buffer));
  EXPECT_EQ(buffer, 5U);
  EXPECT_FALSE(key.SetBinary(u"n", &buffer, 4));
  EXPECT_EQ(this->calls(), before);
}

// --- Sub-keys

TYPED_TEST(RegistryKeys, EnumKeyGivesTheFirstSubKey) {
  this->tree().MakeKey(this->kHive, this->Below(u"Menu"));
  this->tree().MakeKey(this->kHive, this->Below(u"Aux"));
  EXPECT_EQ(typename TestFixture::OpenKey().EnumKey(), u"Aux");
}

TYPED_TEST(RegistryKeys, EnumKeyGivesNothingWithoutSubKeysAndOnFailure) {
  const typename TestFixture::OpenKey key;
  EXPECT_EQ(key.EnumKey(), u"");
  this->tree().MakeKey(this->kHive, this->Below(u"Menu"));
  this->FailNext("RegEnumKeyExW");
  EXPECT_EQ(key.EnumKey(), u"");
  EXPECT_EQ(key.EnumKey(), u"Menu");
}

TYPED_TEST(RegistryKeys, EnumKeyGivesTheLongestNameThatAKeyCanHave) {
  const std::u16string longest(255, u'k');
  this->tree().MakeKey(this->kHive, this->Below(longest));
  EXPECT_EQ(typename TestFixture::OpenKey().EnumKey(), longest);
}

TYPED_TEST(RegistryKeys, DeleteKeyTreeTakesAllThatIsBelow) {
  for (const char16_t* subKey : {u"T\\A\\1\\x", u"T\\A\\2", u"T\\B", u"U"})
    this->tree().MakeKey(this->kHive, this->Below(subKey));
  this->tree().SetDword(this->kHive, this->Below(u"T\\A"), u"n", 1);
  EXPECT_TRUE(typename TestFixture::OpenKey().DeleteKeyTree(u"T"));
  EXPECT_EQ(this->tree().SubKeys(this->kHive, this->kPath), std::vector<std::u16string>{u"U"});
}

TYPED_TEST(RegistryKeys, DeleteKeyTreeTakesAKeySeveralLevelsDown) {
  this->tree().MakeKey(this->kHive, this->Below(u"T\\A\\1"));
  EXPECT_TRUE(typename TestFixture::OpenKey().DeleteKeyTree(u"T\\A"));
  EXPECT_TRUE(this->tree().HasKey(this->kHive, this->Below(u"T")));
  EXPECT_FALSE(this->tree().HasKey(this->kHive, this->Below(u"T\\A")));
}

TYPED_TEST(RegistryKeys, DeleteKeyTreeOfAMissingKeyGivesFalse) {
  EXPECT_FALSE(typename TestFixture::OpenKey().DeleteKeyTree(u"T"));
}

TYPED_TEST(RegistryKeys, DeleteKeyTreeEndsAtAKeyThatCantBeDeleted) {
  for (const char16_t* subKey : {u"T\\A", u"T\\B\\Kept", u"T\\C"})
    this->tree().MakeKey(this->kHive, this->Below(subKey));
  this->tree().Deny(this->kHive, this->Below(u"T\\B\\Kept"), false);
  EXPECT_FALSE(typename TestFixture::OpenKey().DeleteKeyTree(u"T"));
  EXPECT_EQ(this->tree().SubKeys(this->kHive, this->Below(u"T")),
            (std::vector<std::u16string>{u"B", u"C"}));
  EXPECT_TRUE(this->tree().HasKey(this->kHive, this->Below(u"T\\B\\Kept")));
}

TYPED_TEST(RegistryKeys, DeleteKeyTreeDoesntTryADeletionThatFailedAgain) {
  for (const char16_t* subKey : {u"T\\A", u"T\\B"})
    this->tree().MakeKey(this->kHive, this->Below(subKey));
  typename TestFixture::OpenKey key;
  this->FailNext("RegDeleteKeyW");
  EXPECT_FALSE(key.DeleteKeyTree(u"T"));
  EXPECT_EQ(this->tree().SubKeys(this->kHive, this->Below(u"T")),
            (std::vector<std::u16string>{u"A", u"B"}));
}

// T is opened and its first sub-key asked for; so is A, which has none, is closed and can't be
// deleted; T is closed and tried.
TYPED_TEST(RegistryKeys, DeleteKeyTreeTriesTheKeyItselfAfterADeletionBelowHasFailed) {
  this->tree().MakeKey(this->kHive, this->Below(u"T\\A"));
  typename TestFixture::OpenKey key;
  const std::uint64_t before = this->calls();
  this->FailNext("RegDeleteKeyW");
  EXPECT_FALSE(key.DeleteKeyTree(u"T"));
  EXPECT_EQ(this->calls() - before, 8U);
}

// An enumeration that fails looks like the end of one.
TYPED_TEST(RegistryKeys, DeleteKeyTreeTriesTheKeyItselfAfterAnEnumerationHasFailed) {
  this->tree().MakeKey(this->kHive, this->Below(u"T\\A"));
  typename TestFixture::OpenKey key;
  this->FailNext("RegEnumKeyExW");
  EXPECT_FALSE(key.DeleteKeyTree(u"T"));
  EXPECT_TRUE(this->tree().HasKey(this->kHive, this->Below(u"T\\A")));
  this->tree().RemoveKey(this->kHive, this->Below(u"T\\A"));
  this->FailNext("RegEnumKeyExW");
  EXPECT_TRUE(key.DeleteKeyTree(u"T"));
}

TYPED_TEST(RegistryKeys, DeleteKeyTreeWithoutANameDeletesAllBelowTheObjectsOwnKeyAndGivesFalse) {
  for (const char16_t* subKey : {u"T\\A", u"U"})
    this->tree().MakeKey(this->kHive, this->Below(subKey));
  this->tree().SetDword(this->kHive, this->kPath, u"n", 1);
  EXPECT_FALSE(typename TestFixture::OpenKey().DeleteKeyTree(nullptr));
  EXPECT_EQ(this->tree().SubKeys(this->kHive, this->kPath), std::vector<std::u16string>{});
  EXPECT_EQ(this->tree().Dword(this->kHive, this->kPath, u"n"), 1U);
}

// The library gets null for an empty name, which it refuses as the system does.
TYPED_TEST(RegistryKeys,
           DeleteKeyTreeWithAnEmptyNameDeletesTheObjectsOwnKeyUnlessTheLibraryIsAsked) {
  for (const char16_t* subKey : {u"T\\A", u"U"})
    this->tree().MakeKey(this->kHive, this->Below(subKey));
  EXPECT_EQ(typename TestFixture::OpenKey().DeleteKeyTree(u""), !TypeParam::kThroughLibrary);
  EXPECT_EQ(this->tree().SubKeys(this->kHive, this->kPath), std::vector<std::u16string>{});
  EXPECT_EQ(this->tree().HasKey(this->kHive, this->kPath), TypeParam::kThroughLibrary);
}

TYPED_TEST(RegistryKeys, DeleteKeyTreeDeletesAnEmptyKeyThatDoesntOpen) {
  this->tree().MakeKey(this->kHive, this->Below(u"T"));
  typename TestFixture::OpenKey key;
  this->FailNext("RegOpenKeyExW");
  EXPECT_TRUE(key.DeleteKeyTree(u"T"));
}

TYPED_TEST(RegistryKeys, DeleteKeyTreeLeavesAKeyWithSubKeysThatDoesntOpen) {
  this->tree().MakeKey(this->kHive, this->Below(u"T\\A"));
  typename TestFixture::OpenKey key;
  this->FailNext("RegOpenKeyExW");
  EXPECT_FALSE(key.DeleteKeyTree(u"T"));
  EXPECT_TRUE(this->tree().HasKey(this->kHive, this->Below(u"T\\A")));
}

// What lies below is opened with the object's own access, and enumerating is a right of its own.
TYPED_TEST(RegistryKeys, DeleteKeyTreeSeesNothingBelowWithoutTheRightToEnumerate) {
  this->tree().MakeKey(this->kHive, this->Below(u"T\\A"));
  typename TestFixture::Key key(this->kHive, this->kPath, false, KEY_QUERY_VALUE);
  EXPECT_FALSE(key.DeleteKeyTree(u"T"));
  EXPECT_TRUE(this->tree().HasKey(this->kHive, this->Below(u"T\\A")));
}

TYPED_TEST(RegistryKeys, DeleteKeyTreeGoesAsDeepAsTheRegistryDoes) {
  constexpr int kDeepest = 512;
  std::u16string path = u"T";
  for (int level = 1; level < kDeepest; ++level) path += u"\\k";
  this->tree().MakeKey(this->kHive, this->Below(path));
  EXPECT_TRUE(typename TestFixture::OpenKey().DeleteKeyTree(u"T"));
  EXPECT_FALSE(this->tree().HasKey(this->kHive, this->Below(u"T")));
}

// --- Failures

TYPED_TEST(RegistryKeys, NoFailureOfACallLeavesAnythingOpen) {
  const std::vector<std::u16string> before = this->inside.process().Ledger();
  std::string lastFailed;
  for (std::uint64_t number = 1;; ++number) {
    this->tree().MakeKey(this->kHive, this->Below(u"T\\A"));
    const std::uint64_t start = this->calls();
    this->inside.process().FailCall(number);
    {
      typename TestFixture::Key key;
      key.Create(this->kHive, this->kPath);
      key.SetString(u"s", u"text");
      key.GetString(u"s");
      key.SetDword(u"d", 1);
      key.GetDword(u"d", 0);
      key.SetBinary(u"b", "\1\2", 2);
      key.GetBinaryAlloc(u"b");
      key.EnumValueData(0);
      key.DeleteKeyTree(u"T");
      key.DeleteValue(u"s");
    }
    EXPECT_EQ(this->inside.process().Ledger(), before) << "call " << number;
    if (number > this->calls() - start) break;
    if (!this->inside.process().failedOperation().empty())
      lastFailed = this->inside.process().failedOperation();
  }
  EXPECT_EQ(lastFailed, "RegDeleteValueW");
}

}  // namespace
}  // namespace vgl
