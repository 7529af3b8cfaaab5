#include <gtest/gtest.h>

#include <array>

#include "tests/Common/registry_fixture.h"

namespace vgl {
namespace {

using namespace platform;

template <class Road>
class RegistryValues : public RegistryObject<Road> {};
TYPED_TEST_SUITE(RegistryValues, RegistryRoads, RegistryRoadName);

// --- Enumerating

TYPED_TEST(RegistryValues, EachValueIsToldByItsIndex) {
  this->Set(u"first", REG_SZ, Utf16({u"one\0", 4}));
  this->Set(u"second", REG_SZ, Utf16({u"two\0", 4}));
  const typename TestFixture::OpenKey key;
  EXPECT_EQ(key.EnumValueName(0), u"first");
  EXPECT_EQ(key.EnumValueData(0), u"one");
  std::u16string name;
  EXPECT_EQ(key.EnumValue(1, name), u"two");
  EXPECT_EQ(name, u"second");
}

TYPED_TEST(RegistryValues, BehindTheLastValueAllIsEmpty) {
  this->Set(u"n", REG_SZ, Utf16(u"text"));
  const typename TestFixture::OpenKey key;
  std::u16string name = u"before";
  EXPECT_EQ(key.EnumValueName(1), u"");
  EXPECT_EQ(key.EnumValueData(1), u"");
  EXPECT_EQ(key.EnumValue(1, name), u"");
  EXPECT_EQ(name, u"");
}

TYPED_TEST(RegistryValues, AnEnumerationThatFailsGivesNothing) {
  this->Set(u"n", REG_SZ, Utf16(u"text"));
  const typename TestFixture::OpenKey key;
  std::u16string name = u"before";
  this->FailNext("RegEnumValueW");
  EXPECT_EQ(key.EnumValueName(0), u"");
  this->FailNext("RegEnumValueW");
  EXPECT_EQ(key.EnumValue(0, name), u"");
  EXPECT_EQ(name, u"");
}

TYPED_TEST(RegistryValues, TheDefaultValueIsEnumeratedWithoutAName) {
  this->Set(u"", REG_SZ, Utf16(u"text"));
  const typename TestFixture::OpenKey key;
  std::u16string name = u"before";
  EXPECT_EQ(key.EnumValue(0, name), u"text");
  EXPECT_EQ(name, u"");
}

TYPED_TEST(RegistryValues, ANameOf255CharactersIsToldAndALongerOneIsNot) {
  const std::u16string longest(255, u'n');
  this->Set(longest, REG_SZ, Utf16(u"a"));
  this->Set(longest + u"n", REG_SZ, Utf16(u"b"));
  const typename TestFixture::OpenKey key;
  std::u16string name;
  EXPECT_EQ(key.EnumValueName(0), longest);
  EXPECT_EQ(key.EnumValue(0, name), u"a");
  EXPECT_EQ(name, longest);
  EXPECT_EQ(key.EnumValueName(1), u"");
  EXPECT_EQ(key.EnumValue(1, name), u"");
  EXPECT_EQ(name, u"");
}

TYPED_TEST(RegistryValues, DataOf256CharactersIsToldAndLongerDataIsNot) {
  this->Set(u"terminated", REG_SZ, Utf16(std::u16string(255, u'x') + u'\0'));
  this->Set(u"full", REG_SZ, Utf16(std::u16string(256, u'x')));
  this->Set(u"longer", REG_SZ, Utf16(std::u16string(256, u'x') + u'\0'));
  const typename TestFixture::OpenKey key;
  std::u16string name = u"before";
  EXPECT_EQ(key.EnumValueData(0), std::u16string(255, u'x'));
  EXPECT_EQ(key.EnumValueData(1), std::u16string(256, u'x'));
  EXPECT_EQ(key.EnumValue(2, name), u"");
  EXPECT_EQ(name, u"");
  EXPECT_EQ(key.EnumValueName(2), u"longer");
}

TYPED_TEST(RegistryValues, EnumeratedDataIsTextOfWhateverTypeItIs) {
  this->Set(u"dword", REG_DWORD, std::string("A\0B\0", 4));
  this->Set(u"odd", REG_BINARY, std::string("A\0B", 3));
  this->Set(u"nul", REG_SZ, Utf16({u"a\0b\0", 4}));
  this->Set(u"none", REG_NONE, "");
  const typename TestFixture::OpenKey key;
  EXPECT_EQ(key.EnumValueData(0), u"AB");
  EXPECT_EQ(key.EnumValueData(1), u"AB");
  EXPECT_EQ(key.EnumValueData(2), u"a");
  EXPECT_EQ(key.EnumValueData(3), u"");
}

// --- Types and sizes

TYPED_TEST(RegistryValues, EachTypeIsOfItsKind) {
  struct Row {
    std::uint32_t type;
    bool isString, isDword, isBinary;
  };
  const std::array<Row, 10> rows = {{
      {0, false, false, false},
      {1, true, false, false},
      {2, true, false, false},
      {3, false, false, true},
      {4, false, true, false},
      {5, false, true, false},
      {6, false, false, false},
      {7, true, false, false},
      {11, false, false, false},
      {0x12345678, false, false, false},
  }};
  const typename TestFixture::OpenKey key;
  for (const Row& row : rows) {
    this->Set(u"n", row.type, "abcd");
    EXPECT_EQ(key.GetType(u"n"), row.type);
    EXPECT_EQ(key.IsString(u"n"), row.isString) << row.type;
    EXPECT_EQ(key.IsDword(u"n"), row.isDword) << row.type;
    EXPECT_EQ(key.IsBinary(u"n"), row.isBinary) << row.type;
  }
}

TYPED_TEST(RegistryValues, AValueThatCantBeReadIsOfTypeZeroAndNoKind) {
  const typename TestFixture::OpenKey key;
  EXPECT_EQ(key.GetType(u"missing"), 0U);
  EXPECT_FALSE(key.IsString(u"missing"));
  EXPECT_FALSE(key.IsDword(u"missing"));
  EXPECT_FALSE(key.IsBinary(u"missing"));
  this->Set(u"n", REG_DWORD, "abcd");
  this->FailNext("RegQueryValueExW");
  EXPECT_EQ(key.GetType(u"n"), 0U);
}

TYPED_TEST(RegistryValues, GetSizeTellsBytes) {
  this->Set(u"n", REG_SZ, Utf16({u"ab\0", 3}));
  this->Set(u"odd", REG_BINARY, "abc");
  this->Set(u"empty", REG_BINARY, "");
  const typename TestFixture::OpenKey key;
  EXPECT_EQ(key.GetSize(u"n"), 6U);
  EXPECT_EQ(key.GetSize(u"odd"), 3U);
  EXPECT_EQ(key.GetSize(u"empty"), 0U);
  EXPECT_EQ(key.GetSize(u"missing"), 0U);
  this->FailNext("RegQueryValueExW");
  EXPECT_EQ(key.GetSize(u"n"), 0U);
}

TYPED_TEST(RegistryValues, ANullOrEmptyNameIsTheDefaultValue) {
  this->Set(u"", REG_DWORD, std::string("\7\0\0\0", 4));
  typename TestFixture::OpenKey key;
  for (const char16_t* name : {static_cast<const char16_t*>(nullptr), u""}) {
    EXPECT_EQ(key.GetDword(name, 0), 7U);
    EXPECT_TRUE(key.IsDword(name));
    EXPECT_TRUE(key.SetDword(name, 7));
    EXPECT_TRUE(key.DeleteValue(name));
    this->Set(u"", REG_DWORD, std::string("\7\0\0\0", 4));
  }
}

// --- Texts

TYPED_TEST(RegistryValues, GetStringGivesTheTextUpToTheFirstNul) {
  struct Row {
    std::uint32_t type;
    std::string bytes;
    std::u16string text;
  };
  const std::array<Row, 9> rows = {{
      {REG_SZ, Utf16({u"text\0", 5}), u"text"},
      {REG_SZ, Utf16({u"before\0behind\0", 14}), u"before"},
      {REG_SZ, Utf16(u"unterminated"), u"unterminated"},
      {REG_EXPAND_SZ, Utf16({u"%a%\0", 4}), u"%a%"},
      {REG_MULTI_SZ, Utf16({u"first\0second\0\0", 14}), u"first"},
      {REG_BINARY, std::string("a\0b\0c", 5), u"abc"},
      {REG_BINARY, "a", u"a"},
      {REG_DWORD, std::string("a\0b\0", 4), u"ab"},
      {REG_SZ, "", u""},
  }};
  const typename TestFixture::OpenKey key;
  for (const Row& row : rows) {
    this->Set(u"n", row.type, row.bytes);
    EXPECT_EQ(key.GetString(u"n", u"fallback"), row.text);
  }
}

TYPED_TEST(RegistryValues, GetStringGivesALongTextWhole) {
  const std::u16string text(70000, u'\u20AC');
  this->Set(u"n", REG_SZ, Utf16(text + u'\0'));
  EXPECT_EQ(typename TestFixture::OpenKey().GetString(u"n"), text);
}

TYPED_TEST(RegistryValues, GetStringOfAMissingValueGivesTheFallback) {
  const typename TestFixture::OpenKey key;
  EXPECT_EQ(key.GetString(u"missing"), u"");
  EXPECT_EQ(key.GetString(u"missing", u"fallback"), u"fallback");
  EXPECT_EQ(key.GetString(u"missing", u"fallback", 100), u"fallback");
}

TYPED_TEST(RegistryValues, GetStringTakesNoMoreBytesThanItIsGiven) {
  this->Set(u"n", REG_SZ, Utf16(u"text"));
  this->Set(u"odd", REG_BINARY, std::string("a\0b", 3));
  const typename TestFixture::OpenKey key;
  EXPECT_EQ(key.GetString(u"n", u"fallback", 8), u"text");
  EXPECT_EQ(key.GetString(u"n", u"fallback", 1000), u"text");
  EXPECT_EQ(key.GetString(u"n", u"fallback", 7), u"fallback");
  EXPECT_EQ(key.GetString(u"n", u"fallback", 1), u"fallback");
  EXPECT_EQ(key.GetString(u"odd", u"fallback", 3), u"ab");
}

TYPED_TEST(RegistryValues, GetStringAsksForTheSizeOnlyWhenItIsntGiven) {
  this->Set(u"n", REG_SZ, Utf16(u"text"));
  const typename TestFixture::OpenKey key;
  const std::uint64_t start = this->calls();
  key.GetString(u"n", u"", 8);
  EXPECT_EQ(this->calls() - start, 1U);
  key.GetString(u"n");
  EXPECT_EQ(this->calls() - start, 3U);
}

TYPED_TEST(RegistryValues, GetStringGivesTheFallbackWhicheverOfItsReadsFails) {
  this->Set(u"n", REG_SZ, Utf16(u"text"));
  const typename TestFixture::OpenKey key;
  for (const std::uint64_t number : {1U, 2U}) {
    this->inside.process().FailCall(number);
    EXPECT_EQ(key.GetString(u"n", u"fallback"), u"fallback");
    EXPECT_EQ(this->inside.process().failedOperation(), "RegQueryValueExW");
  }
}

TYPED_TEST(RegistryValues, SetStringStoresTheTextWithItsTerminator) {
  typename TestFixture::OpenKey key;
  EXPECT_TRUE(key.SetString(u"n", u"h\u20AC"));
  EXPECT_EQ(key.GetType(u"n"), REG_SZ);
  EXPECT_EQ(this->Stored(u"n"), std::string("h\0\xAC\x20\0\0", 6));
}

TYPED_TEST(RegistryValues, SetStringStoresTheTerminatorAloneOfNoText) {
  typename TestFixture::OpenKey key;
  for (const char16_t* text : {static_cast<const char16_t*>(nullptr), u""}) {
    EXPECT_TRUE(key.SetString(u"n", text));
    EXPECT_EQ(this->Stored(u"n"), std::string("\0\0", 2));
  }
}

// --- Numbers

TYPED_TEST(RegistryValues, GetDwordGivesTheNumber) {
  this->Set(u"n", REG_DWORD, "\x78\x56\x34\x12");
  const typename TestFixture::OpenKey key;
  EXPECT_EQ(key.GetDword(u"n", 1), 0x12345678U);
  EXPECT_EQ(key.GetDwordOrMinus1(u"n"), 0x12345678U);
}

TYPED_TEST(RegistryValues, GetDwordOfATextGivesItsFourBytes) {
  this->Set(u"n", REG_SZ, std::string("A\0\0\0", 4));
  EXPECT_EQ(typename TestFixture::OpenKey().GetDword(u"n", 1), 0x41U);
}

TYPED_TEST(RegistryValues, GetDwordOfFewerBytesLeavesTheRestOfTheFallback) {
  this->Set(u"two", REG_BINARY, "\xAB\xCD");
  this->Set(u"none", REG_BINARY, "");
  const typename TestFixture::OpenKey key;
  EXPECT_EQ(key.GetDword(u"two", 0x11223344), 0x1122CDABU);
  EXPECT_EQ(key.GetDwordOrMinus1(u"two"), 0xFFFFCDABU);
  EXPECT_EQ(key.GetDword(u"none", 0x11223344), 0x11223344U);
}

TYPED_TEST(RegistryValues, GetDwordOfMoreThanFourBytesGivesTheFallback) {
  this->Set(u"n", REG_SZ, Utf16(u"abc"));
  const typename TestFixture::OpenKey key;
  EXPECT_EQ(key.GetDword(u"n", 9), 9U);
  EXPECT_EQ(key.GetDwordOrMinus1(u"n"), 0xFFFFFFFFU);
}

TYPED_TEST(RegistryValues, GetDwordThatFailsGivesTheFallback) {
  this->Set(u"n", REG_DWORD, "\x78\x56\x34\x12");
  const typename TestFixture::OpenKey key;
  EXPECT_EQ(key.GetDword(u"missing", 9), 9U);
  EXPECT_EQ(key.GetDwordOrMinus1(u"missing"), 0xFFFFFFFFU);
  this->FailNext("RegQueryValueExW");
  EXPECT_EQ(key.GetDword(u"n", 9), 9U);
}

TYPED_TEST(RegistryValues, SetDwordStoresFourBytes) {
  typename TestFixture::OpenKey key;
  EXPECT_TRUE(key.SetDword(u"n", 0xFFFFFFFE));
  EXPECT_EQ(key.GetType(u"n"), REG_DWORD);
  EXPECT_EQ(this->Stored(u"n"), "\xFE\xFF\xFF\xFF");
}

// --- Bytes

TYPED_TEST(RegistryValues, GetBinaryAllocGivesABufferOfTheValuesSize) {
  this->Set(u"n", REG_BINARY, std::string("\1\0\3", 3));
  const typename TestFixture::OpenKey key;
  const auto data = key.GetBinaryAlloc(u"n");
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(std::string(data.get(), data.get() + 3), std::string("\1\0\3", 3));
}

TYPED_TEST(RegistryValues, GetBinaryAllocGivesNullForNothingAndOnFailure) {
  this->Set(u"empty", REG_BINARY, "");
  this->Set(u"n", REG_BINARY, "abc");
  const typename TestFixture::OpenKey key;
  EXPECT_EQ(key.GetBinaryAlloc(u"empty"), nullptr);
  EXPECT_EQ(key.GetBinaryAlloc(u"missing"), nullptr);
  for (const std::uint64_t number : {1U, 2U}) {
    this->inside.process().FailCall(number);
    EXPECT_EQ(key.GetBinaryAlloc(u"n"), nullptr);
  }
}

TYPED_TEST(RegistryValues, GetBinaryReadsIntoTheCallersBuffer) {
  this->Set(u"n", REG_SZ, "abc");
  std::array<char, 4> buffer = {'-', '-', '-', '-'};
  EXPECT_TRUE(typename TestFixture::OpenKey().GetBinary(u"n", buffer.data()));
  EXPECT_EQ(std::string(buffer.begin(), buffer.end()), "abc-");
}

TYPED_TEST(RegistryValues, GetBinaryGivesFalseForNothingANullBufferAndOnFailure) {
  this->Set(u"empty", REG_BINARY, "");
  this->Set(u"n", REG_BINARY, "abc");
  const typename TestFixture::OpenKey key;
  std::array<char, 4> buffer{};
  EXPECT_FALSE(key.GetBinary(u"empty", buffer.data()));
  EXPECT_FALSE(key.GetBinary(u"missing", buffer.data()));
  EXPECT_FALSE(key.GetBinary(u"n", nullptr));
  for (const std::uint64_t number : {1U, 2U}) {
    this->inside.process().FailCall(number);
    EXPECT_FALSE(key.GetBinary(u"n", buffer.data()));
  }
}

TYPED_TEST(RegistryValues, SetBinaryStoresTheBytesAsTheyAre) {
  typename TestFixture::OpenKey key;
  EXPECT_TRUE(key.SetBinary(u"n", "\1\0\3", 3));
  EXPECT_EQ(key.GetType(u"n"), REG_BINARY);
  EXPECT_EQ(this->Stored(u"n"), std::string("\1\0\3", 3));
  EXPECT_TRUE(key.SetBinary(u"n", nullptr, 0));
  EXPECT_EQ(this->Stored(u"n"), "");
}

// --- Writing and deleting

TYPED_TEST(RegistryValues, EachWriteThatFailsGivesFalse) {
  typename TestFixture::OpenKey key;
  this->FailNext("RegSetValueExW");
  EXPECT_FALSE(key.SetString(u"n", u"t"));
  this->FailNext("RegSetValueExW");
  EXPECT_FALSE(key.SetDword(u"n", 1));
  this->FailNext("RegSetValueExW");
  EXPECT_FALSE(key.SetBinary(u"n", "x", 1));
  EXPECT_EQ(this->Stored(u"n"), "(missing)");
}

TYPED_TEST(RegistryValues, AKeyThatIsOpenToReadCantBeWritten) {
  this->Set(u"n", REG_DWORD, "abcd");
  typename TestFixture::Key key(this->kHive, this->kPath, false);
  EXPECT_FALSE(key.SetDword(u"n", 1));
  EXPECT_FALSE(key.DeleteValue(u"n"));
  EXPECT_EQ(this->Stored(u"n"), "abcd");
}

TYPED_TEST(RegistryValues, DeleteValueTakesAValueThatIsThere) {
  this->Set(u"n", REG_DWORD, "abcd");
  typename TestFixture::OpenKey key;
  EXPECT_TRUE(key.DeleteValue(u"N"));
  EXPECT_EQ(this->Stored(u"n"), "(missing)");
  EXPECT_FALSE(key.DeleteValue(u"n"));
}

}  // namespace
}  // namespace vgl
