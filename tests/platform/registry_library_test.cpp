// The registry library: exports known by their ordinals alone, each of which does what the system's
// registry function of the same shape does.
#include <set>

#include "tests/platform/library_fixture.h"
#include "tests/platform/registry_fixture.h"

namespace platform {
namespace {

using namespace std::string_view_literals;

class RegistryLibraryContract : public RegistryContract {
 protected:
  using CreateKey = std::int32_t (*)(HKEY parent, const char16_t* subKey, std::uint32_t reserved,
                                     char16_t* keyClass, std::uint32_t options,
                                     std::uint32_t access, const void* security, HKEY* key,
                                     std::uint32_t* disposition);
  using OpenKey = std::int32_t (*)(HKEY parent, const char16_t* subKey, std::uint32_t options,
                                   std::uint32_t access, HKEY* key);
  using DeleteKey = std::int32_t (*)(HKEY parent, const char16_t* subKey);
  using CloseKey = std::int32_t (*)(HKEY key);
  using EnumKey = std::int32_t (*)(HKEY key, std::uint32_t index, char16_t* name,
                                   std::uint32_t* chars, std::uint32_t* reserved,
                                   char16_t* keyClass, std::uint32_t* classChars, void* time);
  using QueryValue = std::int32_t (*)(HKEY key, const char16_t* name, std::uint32_t* reserved,
                                      std::uint32_t* type, void* data, std::uint32_t* bytes);
  using DeleteValue = std::int32_t (*)(HKEY key, const char16_t* name);
  using SetValue = std::int32_t (*)(HKEY key, const char16_t* name, std::uint32_t reserved,
                                    std::uint32_t type, const void* data, std::uint32_t bytes);
  using EnumValue = std::int32_t (*)(HKEY key, std::uint32_t index, char16_t* name,
                                     std::uint32_t* chars, std::uint32_t* reserved,
                                     std::uint32_t* type, void* data, std::uint32_t* bytes);
  using QueryInfo = std::int32_t (*)(HKEY key, char16_t* keyClass, std::uint32_t* classChars,
                                     std::uint32_t* reserved, std::uint32_t* subKeys,
                                     std::uint32_t* longestSubKey, std::uint32_t* longestClass,
                                     std::uint32_t* values, std::uint32_t* longestValueName,
                                     std::uint32_t* mostValueBytes, std::uint32_t* securityBytes,
                                     void* time);
  using Unknown = std::int32_t (*)(std::uint32_t number);

  template <class Function>
  Function Get(std::uint16_t ordinal) {
    return reinterpret_cast<Function>(os.modules.GetProcAddress(library.get(), ordinal));
  }

  OwnedModule library{os.modules.LoadLibraryW(RegistryLibrary().c_str())};
};

TEST_F(RegistryLibraryContract, ItsExportsAreTheseOrdinals) {
  ASSERT_TRUE(library) << "error " << LastError();
  std::set<std::uint16_t> found;
  for (std::uint16_t ordinal = 1; ordinal < 100; ++ordinal) {
    if (Get<ExportedFunction>(ordinal) != nullptr) found.insert(ordinal);
  }
  EXPECT_EQ(found, (std::set<std::uint16_t>{2, 4, 6, 7, 9, 11, 13, 15, 17, 19, 20}));
}

TEST_F(RegistryLibraryContract, ItsExportsHaveNoNames) {
  ASSERT_TRUE(library);
  for (const char* name : {"RegCreateKeyExW", "RegOpenKeyExW", "RegCloseKey", "CreateKey"}) {
    EXPECT_EQ(os.modules.GetProcAddress(library.get(), name), nullptr) << name;
  }
}

TEST_F(RegistryLibraryContract, Ordinal2MakesAKeyOrOpensIt) {
  const auto create = Get<CreateKey>(2);
  ASSERT_NE(create, nullptr);
  OwnedKey made;
  std::uint32_t disposition = 77;
  EXPECT_EQ(
      create(key, u"One\\Two", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, made.Out(), &disposition),
      ERROR_SUCCESS);
  EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
  EXPECT_EQ(create(key, u"One\\Two", 0, nullptr, 0, KEY_READ, nullptr, made.Out(), &disposition),
            ERROR_SUCCESS);
  EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);
  EXPECT_TRUE(Open(u"One\\Two", KEY_READ));
}

TEST_F(RegistryLibraryContract, Ordinal4OpensAKeyThatIsThere) {
  const auto open = Get<OpenKey>(4);
  ASSERT_NE(open, nullptr);
  Make(u"Sub");
  OwnedKey opened;
  EXPECT_EQ(open(key, u"Sub", 0, KEY_READ, opened.Out()), ERROR_SUCCESS);
  EXPECT_EQ(open(key, u"Missing", 0, KEY_READ, opened.Out()), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryLibraryContract, Ordinal6RemovesAKeyWithoutSubKeys) {
  const auto remove = Get<DeleteKey>(6);
  ASSERT_NE(remove, nullptr);
  Make(u"Sub\\Below");
  EXPECT_EQ(remove(key, u"Sub"), ERROR_ACCESS_DENIED);
  EXPECT_EQ(remove(key, u"Sub\\Below"), ERROR_SUCCESS);
  EXPECT_EQ(remove(key, u"Sub\\Below"), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryLibraryContract, Ordinal7ClosesAKey) {
  const auto close = Get<CloseKey>(7);
  ASSERT_NE(close, nullptr);
  const HKEY opened = Make(u"Sub").Release();
  EXPECT_EQ(close(opened), ERROR_SUCCESS);
  EXPECT_EQ(close(opened), ERROR_INVALID_HANDLE);
}

TEST_F(RegistryLibraryContract, Ordinal9ListsSubKeys) {
  const auto list = Get<EnumKey>(9);
  ASSERT_NE(list, nullptr);
  Make(u"Sub");
  char16_t name[10] = {};
  std::uint32_t chars = 10;
  char16_t keyClass[10] = u"untouched";
  std::uint32_t classChars = 10;
  std::uint64_t time = 0;
  EXPECT_EQ(list(key, 0, name, &chars, nullptr, keyClass, &classChars, &time), ERROR_SUCCESS);
  EXPECT_EQ(std::u16string(name), u"Sub");
  EXPECT_EQ(chars, 3u);
  EXPECT_EQ(keyClass[0], u'\0');
  EXPECT_EQ(classChars, 0u);

  chars = 10;
  EXPECT_EQ(list(key, 1, name, &chars, nullptr, nullptr, nullptr, nullptr), ERROR_NO_MORE_ITEMS);
  chars = 3;
  EXPECT_EQ(list(key, 0, name, &chars, nullptr, nullptr, nullptr, nullptr), ERROR_MORE_DATA);
}

TEST_F(RegistryLibraryContract, Ordinal11ReadsAValue) {
  const auto query = Get<QueryValue>(11);
  ASSERT_NE(query, nullptr);
  SetNumber(u"Number", 42);
  std::uint32_t type = 77;
  std::uint32_t data = 77;
  std::uint32_t bytes = 4;
  EXPECT_EQ(query(key, u"Number", nullptr, &type, &data, &bytes), ERROR_SUCCESS);
  EXPECT_EQ(type, REG_DWORD);
  EXPECT_EQ(data, 42u);
  EXPECT_EQ(bytes, 4u);
  bytes = 3;
  EXPECT_EQ(query(key, u"Number", nullptr, nullptr, &data, &bytes), ERROR_MORE_DATA);
  EXPECT_EQ(query(key, u"Missing", nullptr, nullptr, nullptr, nullptr), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryLibraryContract, Ordinal13RemovesAValue) {
  const auto remove = Get<DeleteValue>(13);
  ASSERT_NE(remove, nullptr);
  SetNumber(u"Number", 42);
  EXPECT_EQ(remove(key, u"Number"), ERROR_SUCCESS);
  EXPECT_EQ(Number(key, u"Number"), std::nullopt);
  EXPECT_EQ(remove(key, u"Number"), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryLibraryContract, Ordinal15WritesAValue) {
  const auto set = Get<SetValue>(15);
  ASSERT_NE(set, nullptr);
  const std::uint32_t number = 0x12345678;
  EXPECT_EQ(set(key, u"Number", 0, REG_DWORD, &number, 4), ERROR_SUCCESS);
  EXPECT_EQ(Number(key, u"Number"), 0x12345678u);
  EXPECT_EQ(set(key, u"Binary", 0, REG_BINARY, "\x01\x02", 2), ERROR_SUCCESS);
  EXPECT_EQ(Bytes(u"Binary"), "\x01\x02"sv);
}

TEST_F(RegistryLibraryContract, Ordinal17ListsValues) {
  const auto list = Get<EnumValue>(17);
  ASSERT_NE(list, nullptr);
  SetNumber(u"Number", 42);
  char16_t name[10] = {};
  std::uint32_t chars = 10;
  std::uint32_t type = 77;
  std::uint32_t data = 77;
  std::uint32_t bytes = 4;
  EXPECT_EQ(list(key, 0, name, &chars, nullptr, &type, &data, &bytes), ERROR_SUCCESS);
  EXPECT_EQ(std::u16string(name), u"Number");
  EXPECT_EQ(chars, 6u);
  EXPECT_EQ(type, REG_DWORD);
  EXPECT_EQ(data, 42u);
  EXPECT_EQ(bytes, 4u);

  chars = 10;
  EXPECT_EQ(list(key, 1, name, &chars, nullptr, nullptr, nullptr, nullptr), ERROR_NO_MORE_ITEMS);
}

TEST_F(RegistryLibraryContract, Ordinal19CountsSubKeysAndValues) {
  const auto tell = Get<QueryInfo>(19);
  ASSERT_NE(tell, nullptr);
  Make(u"One");
  Make(u"Three");
  SetNumber(u"Number", 42);
  SetBytes(u"Bin", REG_BINARY, "12345");
  SetText(u"A longer name", u"x");
  std::uint32_t subKeys = 77, longestSubKey = 77, longestClass = 77;
  std::uint32_t values = 77, longestValueName = 77, mostValueBytes = 77;
  EXPECT_EQ(tell(key, nullptr, nullptr, nullptr, &subKeys, &longestSubKey, &longestClass, &values,
                 &longestValueName, &mostValueBytes, nullptr, nullptr),
            ERROR_SUCCESS);
  EXPECT_EQ(subKeys, 2u);
  EXPECT_EQ(longestSubKey, 5u);
  EXPECT_EQ(longestClass, 0u);
  EXPECT_EQ(values, 3u);
  EXPECT_EQ(longestValueName, 13u);
  EXPECT_EQ(mostValueBytes, 5u);

  EXPECT_EQ(tell(HKEY{0x12345678}, nullptr, nullptr, nullptr, &subKeys, nullptr, nullptr, nullptr,
                 nullptr, nullptr, nullptr, nullptr),
            ERROR_INVALID_HANDLE);
}

TEST_F(RegistryLibraryContract, Ordinal20Answers0) {
  const auto unknown = Get<Unknown>(20);
  ASSERT_NE(unknown, nullptr);
  EXPECT_EQ(unknown(1), 0);
}

}  // namespace
}  // namespace platform
