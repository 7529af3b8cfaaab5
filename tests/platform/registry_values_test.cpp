// The registry: values.
#include <array>

#include "tests/platform/registry_fixture.h"

namespace platform {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

using RegistryValues = RegistryContract;

// --- Reading

TEST_F(RegistryValues, QueryGivesTypeDataAndSize) {
  SetText(u"Name", u"abc");

  std::uint32_t type = REG_NONE;
  char16_t text[10] = {};
  std::uint32_t bytes = sizeof(text);
  ASSERT_EQ(registry.RegQueryValueExW(key, u"Name", &type, text, &bytes), ERROR_SUCCESS);

  EXPECT_EQ(type, REG_SZ);
  EXPECT_EQ(bytes, 8u);  // the terminator counts
  EXPECT_EQ(std::u16string(text), u"abc");
}

TEST_F(RegistryValues, QueryWithExactlyTheRoomNeededSucceeds) {
  SetText(u"Name", u"abc");

  char16_t text[4] = {};
  std::uint32_t bytes = sizeof(text);
  EXPECT_EQ(registry.RegQueryValueExW(key, u"Name", nullptr, text, &bytes), ERROR_SUCCESS);
  EXPECT_EQ(bytes, 8u);
  EXPECT_EQ(std::u16string(text), u"abc");
}

TEST_F(RegistryValues, QueryWithTooSmallABufferTellsTheNeededSize) {
  SetText(u"Name", u"abc");

  char16_t text[4] = {};
  std::uint32_t bytes = 7;
  EXPECT_EQ(registry.RegQueryValueExW(key, u"Name", nullptr, text, &bytes), ERROR_MORE_DATA);
  EXPECT_EQ(bytes, 8u);
}

TEST_F(RegistryValues, QueryIntoNoRoomAtAllTellsTheNeededSize) {
  SetNumber(u"Number", 5);

  std::uint32_t number = 0;
  std::uint32_t bytes = 0;
  EXPECT_EQ(registry.RegQueryValueExW(key, u"Number", nullptr, &number, &bytes), ERROR_MORE_DATA);
  EXPECT_EQ(bytes, 4u);
}

TEST_F(RegistryValues, QueryWithTooSmallABufferWritesNothingBehindIt) {
  SetBytes(u"Value", REG_BINARY, "0123456789"sv);

  std::array<char, 8> room;
  room.fill('x');
  std::uint32_t bytes = 4;
  EXPECT_EQ(registry.RegQueryValueExW(key, u"Value", nullptr, room.data(), &bytes),
            ERROR_MORE_DATA);
  EXPECT_EQ(std::string(room.begin() + 4, room.end()), "xxxx");
}

TEST_F(RegistryValues, QueryWithoutDataTellsTheSize) {
  SetText(u"Name", u"abc");

  std::uint32_t type = REG_NONE;
  std::uint32_t bytes = 0;
  EXPECT_EQ(registry.RegQueryValueExW(key, u"Name", &type, nullptr, &bytes), ERROR_SUCCESS);
  EXPECT_EQ(type, REG_SZ);
  EXPECT_EQ(bytes, 8u);
}

TEST_F(RegistryValues, QueryWithoutDataAndSizeTellsWhetherTheValueIsThere) {
  SetNumber(u"Number", 5);

  std::uint32_t type = REG_NONE;
  EXPECT_EQ(registry.RegQueryValueExW(key, u"Number", &type, nullptr, nullptr), ERROR_SUCCESS);
  EXPECT_EQ(type, REG_DWORD);
  EXPECT_EQ(registry.RegQueryValueExW(key, u"Other", nullptr, nullptr, nullptr),
            ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryValues, QueryWithDataButWithoutItsRoomIsRefused) {
  SetNumber(u"Number", 5);

  std::uint32_t number = 0;
  EXPECT_EQ(registry.RegQueryValueExW(key, u"Number", nullptr, &number, nullptr),
            ERROR_INVALID_PARAMETER);
}

TEST_F(RegistryValues, QueryOfAMissingValueFails) {
  std::uint32_t number = 0;
  std::uint32_t bytes = sizeof(number);
  EXPECT_EQ(registry.RegQueryValueExW(key, u"Missing", nullptr, &number, &bytes),
            ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryValues, QueryOnWhatIsNoKeyFails) {
  std::uint32_t number = 0;
  std::uint32_t bytes = sizeof(number);
  EXPECT_EQ(registry.RegQueryValueExW(HKEY{}, u"Number", nullptr, &number, &bytes),
            ERROR_INVALID_HANDLE);
}

TEST_F(RegistryValues, NamesIgnoreCase) {
  SetNumber(u"UseMenu", 7);
  EXPECT_EQ(Number(key, u"uSEmENU"), 7u);
  SetNumber(u"USEMENU", 8);
  EXPECT_EQ(Number(key, u"UseMenu"), 8u);
}

TEST_F(RegistryValues, NamesMayHoldAnything) {
  SetNumber(u"A\\B = {c} \u05D0", 7);
  EXPECT_EQ(Number(key, u"A\\B = {c} \u05D0"), 7u);
}

TEST_F(RegistryValues, AnEmptyAndANullNameMeanTheDefaultValue) {
  EXPECT_EQ(Bytes(nullptr), std::nullopt);
  SetNumber(nullptr, 7);
  EXPECT_EQ(Number(key, u""), 7u);
  SetNumber(u"", 8);
  EXPECT_EQ(Number(key, nullptr), 8u);
}

TEST_F(RegistryValues, AnotherHandleOfTheSameKeySeesAChangeAtOnce) {
  const OwnedKey other = Open(nullptr, KEY_READ);
  SetNumber(u"Number", 7);
  EXPECT_EQ(Number(other.get(), u"Number"), 7u);
}

// --- Writing

TEST_F(RegistryValues, SetReplacesAValueOfAnyType) {
  SetText(u"Value", u"a longer text than a number");
  SetNumber(u"Value", 7);
  EXPECT_EQ(Number(key, u"Value"), 7u);
}

TEST_F(RegistryValues, EveryTypeComesBackAsItWasWritten) {
  for (const std::uint32_t type : {REG_NONE, REG_SZ, REG_EXPAND_SZ, REG_BINARY, REG_DWORD,
                                   REG_DWORD_BIG_ENDIAN, REG_MULTI_SZ, 0x80001234u}) {
    SetBytes(u"Value", type, "a\0b\0"sv);
    std::uint32_t stored = ~type;
    EXPECT_EQ(registry.RegQueryValueExW(key, u"Value", &stored, nullptr, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(stored, type);
  }
}

TEST_F(RegistryValues, VariablesInTextAreNotExpanded) {
  const std::u16string text = u"%TEMP%\\x";
  const auto bytes = static_cast<std::uint32_t>(2 * text.size() + 2);
  ASSERT_EQ(registry.RegSetValueExW(key, u"Value", REG_EXPAND_SZ, text.c_str(), bytes),
            ERROR_SUCCESS);
  char16_t stored[20] = {};
  std::uint32_t size = sizeof(stored);
  ASSERT_EQ(registry.RegQueryValueExW(key, u"Value", nullptr, stored, &size), ERROR_SUCCESS);
  EXPECT_EQ(std::u16string(stored), text);
}

TEST_F(RegistryValues, TextWithoutTerminatorComesBackWithoutIt) {
  // What follows the text in memory must not be a zero: Windows would take it for the terminator
  // that the caller forgot to count.
  SetBytes(u"Text", REG_SZ, "a\0b\0c\0x\0"sv.substr(0, 6));
  EXPECT_EQ(Bytes(u"Text"), "a\0b\0c\0"s);
}

TEST_F(RegistryValues, TextOfAnOddLengthKeepsIt) {
  SetBytes(u"Text", REG_SZ, "a\0b\0cxyz"sv.substr(0, 5));
  EXPECT_EQ(Bytes(u"Text"), "a\0b\0c"s);
}

TEST_F(RegistryValues, TextWithMoreBehindItsTerminatorKeepsIt) {
  SetBytes(u"Text", REG_SZ, "a\0\0\0b\0\0\0"sv);
  EXPECT_EQ(Bytes(u"Text"), "a\0\0\0b\0\0\0"s);
}

TEST_F(RegistryValues, ANumberOfAnyLengthKeepsIt) {
  SetBytes(u"Number", REG_DWORD, "\x01\x02\x03"sv);
  EXPECT_EQ(Bytes(u"Number"), "\x01\x02\x03");
  SetBytes(u"Number", REG_DWORD, "\x01\x02\x03\x04\x05\x06\x07\x08"sv);
  EXPECT_EQ(Bytes(u"Number"), "\x01\x02\x03\x04\x05\x06\x07\x08");
}

TEST_F(RegistryValues, AValueMayBeEmpty) {
  for (const std::uint32_t type : {REG_NONE, REG_SZ, REG_BINARY, REG_DWORD, REG_MULTI_SZ}) {
    ASSERT_EQ(registry.RegSetValueExW(key, u"Value", type, nullptr, 0), ERROR_SUCCESS);
    std::uint32_t stored = ~type;
    char data = 'x';
    std::uint32_t bytes = 1;
    EXPECT_EQ(registry.RegQueryValueExW(key, u"Value", &stored, &data, &bytes), ERROR_SUCCESS);
    EXPECT_EQ(stored, type);
    EXPECT_EQ(bytes, 0u);
  }
}

TEST_F(RegistryValues, ALargeValueComesBackWhole) {
  std::string large(100000, 'x');
  large.front() = 'a';
  large.back() = 'z';
  SetBytes(u"Value", REG_BINARY, large);

  std::string stored(large.size(), '\0');
  auto bytes = static_cast<std::uint32_t>(stored.size());
  ASSERT_EQ(registry.RegQueryValueExW(key, u"Value", nullptr, stored.data(), &bytes),
            ERROR_SUCCESS);
  EXPECT_EQ(bytes, large.size());
  EXPECT_TRUE(stored == large);
}

// --- Deleting

TEST_F(RegistryValues, DeleteRemovesTheValue) {
  SetNumber(u"Number", 7);
  EXPECT_EQ(registry.RegDeleteValueW(key, u"NUMBER"), ERROR_SUCCESS);
  EXPECT_EQ(Bytes(u"Number"), std::nullopt);
}

TEST_F(RegistryValues, DeleteOfAMissingValueFails) {
  EXPECT_EQ(registry.RegDeleteValueW(key, u"Missing"), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(registry.RegDeleteValueW(key, nullptr), ERROR_FILE_NOT_FOUND);
}

// --- Rights of the handle

TEST_F(RegistryValues, AHandleForReadingDoesNotWrite) {
  SetNumber(u"Number", 7);
  const OwnedKey reading = Open(nullptr, KEY_READ);

  const std::uint32_t other = 8;
  EXPECT_EQ(registry.RegSetValueExW(reading.get(), u"Number", REG_DWORD, &other, sizeof(other)),
            ERROR_ACCESS_DENIED);
  EXPECT_EQ(registry.RegDeleteValueW(reading.get(), u"Number"), ERROR_ACCESS_DENIED);
  EXPECT_EQ(Number(key, u"Number"), 7u);
}

TEST_F(RegistryValues, AHandleForWritingDoesNotRead) {
  SetNumber(u"Number", 7);
  const OwnedKey writing = Open(nullptr, KEY_SET_VALUE);

  std::uint32_t number = 0;
  std::uint32_t bytes = sizeof(number);
  EXPECT_EQ(registry.RegQueryValueExW(writing.get(), u"Number", nullptr, &number, &bytes),
            ERROR_ACCESS_DENIED);
  const std::uint32_t other = 8;
  EXPECT_EQ(registry.RegSetValueExW(writing.get(), u"Number", REG_DWORD, &other, sizeof(other)),
            ERROR_SUCCESS);
}

}  // namespace
}  // namespace platform
