// The registry library: exports known by their ordinals alone, each of which does what the system's
// registry function of the same shape does.
#include <set>

#include "Common/reg_lib_table.h"
#include "tests/platform/library_fixture.h"
#include "tests/platform/registry_fixture.h"

namespace platform {
namespace {

using namespace std::string_view_literals;

class RegistryLibraryContract : public RegistryContract {
 protected:
  // An export, called as the agent calls it.
  template <std::uint16_t Ordinal>
  auto Get() {
    using Shape = vgl::RegExportShape<char16_t, vgl::RegExport{Ordinal}>;
    return reinterpret_cast<typename Shape::Function>(
        os.modules.GetProcAddress(library.get(), Ordinal));
  }

  OwnedModule library{os.modules.LoadLibraryW(RegistryLibrary().c_str())};
};

TEST_F(RegistryLibraryContract, ItsExportsAreTheseOrdinals) {
  ASSERT_TRUE(library) << "error " << LastError();
  std::set<std::uint16_t> found;
  for (std::uint16_t ordinal = 1; ordinal < 100; ++ordinal) {
    if (os.modules.GetProcAddress(library.get(), ordinal) != nullptr) found.insert(ordinal);
  }
  EXPECT_EQ(found, (std::set<std::uint16_t>{2, 4, 6, 7, 9, 11, 13, 15, 17, 19, 20}));
}

TEST_F(RegistryLibraryContract, ItsExportsHaveNoNames) {
  ASSERT_TRUE(library);
  for (const char* name : {"CreateKey", "OpenKey", "DeleteKey", "CloseKey", "EnumKey", "QueryValue",
                           "DeleteValue", "SetValue", "EnumValue", "QueryInfo", "Unknown"}) {
    EXPECT_EQ(os.modules.GetProcAddress(library.get(), name), nullptr) << name;
  }
}

TEST_F(RegistryLibraryContract, Ordinal2MakesAKeyOrOpensIt) {
  const auto create = Get<2>();
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
  const auto open = Get<4>();
  ASSERT_NE(open, nullptr);
  Make(u"Sub");
  OwnedKey opened;
  EXPECT_EQ(open(key, u"Sub", 0, KEY_READ, opened.Out()), ERROR_SUCCESS);
  EXPECT_EQ(open(key, u"Missing", 0, KEY_READ, opened.Out()), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryLibraryContract, Ordinal6RemovesAKeyWithoutSubKeys) {
  const auto remove = Get<6>();
  ASSERT_NE(remove, nullptr);
  Make(u"Sub\\Below");
  EXPECT_EQ(remove(key, u"Sub"), ERROR_ACCESS_DENIED);
  EXPECT_EQ(remove(key, u"Sub\\Below"), ERROR_SUCCESS);
  EXPECT_EQ(remove(key, u"Sub\\Below"), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryLibraryContract, Ordinal7ClosesAKey) {
  const auto close = Get<7>();
  ASSERT_NE(close, nullptr);
  const HKEY opened = Make(u"Sub").Release();
  EXPECT_EQ(close(opened), ERROR_SUCCESS);
  EXPECT_EQ(close(opened), ERROR_INVALID_HANDLE);
}

TEST_F(RegistryLibraryContract, Ordinal9ListsSubKeys) {
  const auto list = Get<9>();
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
  const auto query = Get<11>();
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
  const auto remove = Get<13>();
  ASSERT_NE(remove, nullptr);
  SetNumber(u"Number", 42);
  EXPECT_EQ(remove(key, u"Number"), ERROR_SUCCESS);
  EXPECT_EQ(Number(key, u"Number"), std::nullopt);
  EXPECT_EQ(remove(key, u"Number"), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryLibraryContract, Ordinal15WritesAValue) {
  const auto set = Get<15>();
  ASSERT_NE(set, nullptr);
  const std::uint32_t number = 0x12345678;
  EXPECT_EQ(set(key, u"Number", 0, REG_DWORD, &number, 4), ERROR_SUCCESS);
  EXPECT_EQ(Number(key, u"Number"), 0x12345678u);
  EXPECT_EQ(set(key, u"Binary", 0, REG_BINARY, "\x01\x02", 2), ERROR_SUCCESS);
  EXPECT_EQ(Bytes(u"Binary"), "\x01\x02"sv);
}

TEST_F(RegistryLibraryContract, Ordinal17ListsValues) {
  const auto list = Get<17>();
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
  const auto tell = Get<19>();
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
  const auto unknown = Get<20>();
  ASSERT_NE(unknown, nullptr);
  EXPECT_EQ(unknown(1), 0);
}

}  // namespace
}  // namespace platform
