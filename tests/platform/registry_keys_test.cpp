// The registry: keys, and listing what they hold.
#include <algorithm>

#include "tests/platform/registry_fixture.h"

namespace platform {
namespace {

using namespace std::string_view_literals;

class RegistryKeys : public RegistryContract {
 protected:
  bool Exists(const char16_t* subKey) {
    OwnedKey opened;
    return registry.RegOpenKeyExW(key, subKey, KEY_READ, opened.Out()) == ERROR_SUCCESS;
  }
};

class RegistryLists : public RegistryContract {
 protected:
  std::vector<std::u16string> SubKeys() {
    return Listed([this](std::uint32_t index, char16_t* name, std::uint32_t* chars) {
      return registry.RegEnumKeyExW(key, index, name, chars, nullptr, nullptr);
    });
  }
  std::vector<std::u16string> Values() {
    return Listed([this](std::uint32_t index, char16_t* name, std::uint32_t* chars) {
      return registry.RegEnumValueW(key, index, name, chars, nullptr, nullptr, nullptr);
    });
  }

 private:
  // Windows promises no order, so lists are compared sorted.
  template <class Enumerate>
  static std::vector<std::u16string> Listed(const Enumerate& enumerate) {
    std::vector<std::u16string> names;
    for (std::uint32_t index = 0;; ++index) {
      char16_t name[MAX_PATH] = {};
      std::uint32_t chars = MAX_PATH;
      const std::int32_t error = enumerate(index, name, &chars);
      if (error != ERROR_SUCCESS) {
        EXPECT_EQ(error, ERROR_NO_MORE_ITEMS);
        break;
      }
      EXPECT_EQ(std::u16string(name).size(), chars);
      names.emplace_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
  }
};

using Names = std::vector<std::u16string>;

// --- Opening

TEST_F(RegistryKeys, OpenOfAMissingKeyFailsAndGivesNoHandle) {
  HKEY opened{0x1234};
  EXPECT_EQ(registry.RegOpenKeyExW(key, u"Missing", KEY_READ, &opened), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(opened, HKEY{});
}

TEST_F(RegistryKeys, OpenBelowAMissingKeyFails) {
  HKEY opened{0x1234};
  EXPECT_EQ(registry.RegOpenKeyExW(key, u"Missing\\Below", KEY_READ, &opened),
            ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(opened, HKEY{});
}

TEST_F(RegistryKeys, ANameDoesNotBeginWithABackslash) {
  Make(u"One");
  HKEY opened{0x1234};
  EXPECT_EQ(registry.RegOpenKeyExW(key, u"\\One", KEY_READ, &opened), ERROR_BAD_PATHNAME);
  EXPECT_EQ(opened, HKEY{});
}

TEST_F(RegistryKeys, OpenReachesSeveralLevelsDown) {
  Make(u"One\\Two\\Three");
  EXPECT_TRUE(Exists(u"One\\Two\\Three"));
  EXPECT_TRUE(Exists(u"One\\Two"));
  EXPECT_TRUE(Exists(u"One"));
}

TEST_F(RegistryKeys, NamesIgnoreCase) {
  Make(u"Printers\\Office");
  EXPECT_TRUE(Exists(u"PRINTERS\\office"));
}

TEST_F(RegistryKeys, ANullAndAnEmptyNameOpenTheKeyItself) {
  SetNumber(u"Number", 7);
  EXPECT_EQ(Number(Open(nullptr, KEY_READ).get(), u"Number"), 7u);
  EXPECT_EQ(Number(Open(u"", KEY_READ).get(), u"Number"), 7u);
}

TEST_F(RegistryKeys, ThePredefinedKeysAreAlwaysOpen) {
  for (const HKEY predefined : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    OwnedKey opened;
    EXPECT_EQ(registry.RegOpenKeyExW(predefined, u"Software", KEY_READ, opened.Out()),
              ERROR_SUCCESS);
  }
}

TEST_F(RegistryKeys, OpenBelowWhatIsNoKeyFails) {
  HKEY opened{0x1234};
  EXPECT_EQ(registry.RegOpenKeyExW(HKEY{}, u"Software", KEY_READ, &opened), ERROR_INVALID_HANDLE);
  EXPECT_EQ(opened, HKEY{});
}

// --- Creating

TEST_F(RegistryKeys, CreateTellsWhetherTheKeyIsNew) {
  OwnedKey first;
  std::uint32_t disposition = 0;
  EXPECT_EQ(registry.RegCreateKeyExW(key, u"New", KEY_ALL_ACCESS, first.Out(), &disposition),
            ERROR_SUCCESS);
  EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);

  OwnedKey second;
  EXPECT_EQ(registry.RegCreateKeyExW(key, u"NEW", KEY_ALL_ACCESS, second.Out(), &disposition),
            ERROR_SUCCESS);
  EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);
}

TEST_F(RegistryKeys, CreateMakesEveryMissingLevel) {
  Make(u"One");
  OwnedKey three;
  std::uint32_t disposition = 0;
  EXPECT_EQ(
      registry.RegCreateKeyExW(key, u"One\\Two\\Three", KEY_ALL_ACCESS, three.Out(), &disposition),
      ERROR_SUCCESS);
  EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
  EXPECT_TRUE(Exists(u"One\\Two"));
}

TEST_F(RegistryKeys, CreateLeavesTheValuesOfAnExistingKey) {
  SetNumber(u"Number", 7);
  OwnedKey again;
  ASSERT_EQ(
      registry.RegCreateKeyExW(HKEY_CURRENT_USER, kScratchKey, KEY_READ, again.Out(), nullptr),
      ERROR_SUCCESS);
  EXPECT_EQ(Number(again.get(), u"Number"), 7u);
}

TEST_F(RegistryKeys, CreateGivesAHandleWithTheRightsAskedFor) {
  OwnedKey reading;
  ASSERT_EQ(registry.RegCreateKeyExW(key, u"New", KEY_READ, reading.Out(), nullptr), ERROR_SUCCESS);
  EXPECT_EQ(registry.RegSetValueExW(reading.get(), u"Value", REG_BINARY, "x", 1),
            ERROR_ACCESS_DENIED);
}

TEST_F(RegistryKeys, WhetherAKeyMayBeMadeDoesNotDependOnTheParentHandlesRights) {
  const OwnedKey reading = Open(nullptr, KEY_READ);
  OwnedKey made;
  EXPECT_EQ(registry.RegCreateKeyExW(reading.get(), u"New", KEY_READ, made.Out(), nullptr),
            ERROR_SUCCESS);
}

// --- Closing

TEST_F(RegistryKeys, CloseOfAPredefinedKeyLeavesItOpen) {
  EXPECT_EQ(registry.RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);
  OwnedKey opened;
  EXPECT_EQ(registry.RegOpenKeyExW(HKEY_CURRENT_USER, u"Software", KEY_READ, opened.Out()),
            ERROR_SUCCESS);
}

TEST_F(RegistryKeys, CloseOfWhatIsNoKeyFails) {
  EXPECT_EQ(registry.RegCloseKey(HKEY{}), ERROR_INVALID_HANDLE);
}

TEST_F(RegistryKeys, AClosedKeyIsNoKey) {
  const HKEY opened = Open(nullptr, KEY_READ).Release();
  EXPECT_EQ(registry.RegCloseKey(opened), ERROR_SUCCESS);
  EXPECT_EQ(registry.RegCloseKey(opened), ERROR_INVALID_HANDLE);
  char16_t name[MAX_PATH];
  std::uint32_t chars = MAX_PATH;
  EXPECT_EQ(registry.RegEnumKeyExW(opened, 0, name, &chars, nullptr, nullptr),
            ERROR_INVALID_HANDLE);
}

// --- Deleting

TEST_F(RegistryKeys, DeleteRemovesAKeyWithItsValues) {
  const std::uint32_t number = 7;
  registry.RegSetValueExW(Make(u"Sub").get(), u"Number", REG_DWORD, &number, sizeof(number));

  EXPECT_EQ(registry.RegDeleteKeyW(key, u"SUB"), ERROR_SUCCESS);

  EXPECT_FALSE(Exists(u"Sub"));
  EXPECT_EQ(Number(Make(u"Sub").get(), u"Number"), std::nullopt);  // a new key knows nothing of it
}

TEST_F(RegistryKeys, DeleteReachesDownAndTakesTheLastLevelOnly) {
  Make(u"One\\Two");
  EXPECT_EQ(registry.RegDeleteKeyW(key, u"One\\Two"), ERROR_SUCCESS);
  EXPECT_FALSE(Exists(u"One\\Two"));
  EXPECT_TRUE(Exists(u"One"));
}

TEST_F(RegistryKeys, DeleteOfAKeyWithSubKeysFails) {
  Make(u"One\\Two");
  EXPECT_EQ(registry.RegDeleteKeyW(key, u"One"), ERROR_ACCESS_DENIED);
  EXPECT_TRUE(Exists(u"One\\Two"));
}

TEST_F(RegistryKeys, DeleteOfAMissingKeyFails) {
  EXPECT_EQ(registry.RegDeleteKeyW(key, u"Missing"), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryKeys, DeleteWithAnEmptyNameTakesTheKeyItself) {
  Make(u"Sub");
  const OwnedKey reading = Open(u"Sub", KEY_READ);
  EXPECT_EQ(registry.RegDeleteKeyW(reading.get(), u""), ERROR_SUCCESS);
  EXPECT_FALSE(Exists(u"Sub"));
}

TEST_F(RegistryKeys, DeleteWithAnEmptyNameFailsWhileThereAreSubKeys) {
  const OwnedKey sub = Make(u"Sub");
  Make(u"Sub\\Below");
  EXPECT_EQ(registry.RegDeleteKeyW(sub.get(), u""), ERROR_ACCESS_DENIED);
  EXPECT_TRUE(Exists(u"Sub\\Below"));
}

TEST_F(RegistryKeys, DeleteWithoutANameIsRefused) {
  const OwnedKey sub = Make(u"Sub");
  EXPECT_EQ(registry.RegDeleteKeyW(sub.get(), nullptr), ERROR_INVALID_PARAMETER);
  EXPECT_TRUE(Exists(u"Sub"));
}

TEST_F(RegistryKeys, AKeyThatIsOpenElsewhereCanBeDeleted) {
  const OwnedKey open = Make(u"Sub");
  EXPECT_EQ(registry.RegDeleteKeyW(key, u"Sub"), ERROR_SUCCESS);
  EXPECT_FALSE(Exists(u"Sub"));
}

TEST_F(RegistryKeys, AHandleOfADeletedKeyIsOnlyGoodForClosing) {
  OwnedKey open = Make(u"Sub");
  ASSERT_EQ(registry.RegDeleteKeyW(key, u"Sub"), ERROR_SUCCESS);

  std::uint32_t bytes = 0;
  EXPECT_EQ(registry.RegQueryValueExW(open.get(), u"Value", nullptr, nullptr, &bytes),
            ERROR_KEY_DELETED);
  EXPECT_EQ(registry.RegSetValueExW(open.get(), u"Value", REG_BINARY, "x", 1), ERROR_KEY_DELETED);
  EXPECT_EQ(registry.RegCloseKey(open.Release()), ERROR_SUCCESS);
}

TEST_F(RegistryKeys, AKeyThatIsMadeAgainIsAnotherOne) {
  const OwnedKey before = Make(u"Sub");
  ASSERT_EQ(registry.RegDeleteKeyW(key, u"Sub"), ERROR_SUCCESS);
  const OwnedKey after = Make(u"Sub");
  EXPECT_EQ(registry.RegSetValueExW(after.get(), u"Value", REG_BINARY, "x", 1), ERROR_SUCCESS);
  EXPECT_EQ(registry.RegSetValueExW(before.get(), u"Value", REG_BINARY, "x", 1), ERROR_KEY_DELETED);
}

// --- Listing keys

TEST_F(RegistryLists, SubKeysAreNamedAsTheyWereMade) {
  Make(u"Beta");
  Make(u"alpha");
  Make(u"Gamma\\Deeper");
  EXPECT_EQ(SubKeys(), (Names{u"Beta", u"Gamma", u"alpha"}));
}

TEST_F(RegistryLists, AKeyWithoutSubKeysListsNone) { EXPECT_EQ(SubKeys(), Names{}); }

TEST_F(RegistryLists, ANameOfASubKeyNeedsRoomForItsTerminator) {
  Make(u"Alpha");
  char16_t name[6] = {};
  std::uint32_t chars = 5;
  EXPECT_EQ(registry.RegEnumKeyExW(key, 0, name, &chars, nullptr, nullptr), ERROR_MORE_DATA);
  chars = 6;
  EXPECT_EQ(registry.RegEnumKeyExW(key, 0, name, &chars, nullptr, nullptr), ERROR_SUCCESS);
  EXPECT_EQ(chars, 5u);
  EXPECT_EQ(std::u16string(name), u"Alpha");
}

TEST_F(RegistryLists, ASubKeyHasAnEmptyClass) {
  Make(u"Alpha");
  char16_t name[6] = {};
  char16_t keyClass[6] = u"class";
  std::uint32_t chars = 6;
  std::uint32_t classChars = 6;
  EXPECT_EQ(registry.RegEnumKeyExW(key, 0, name, &chars, keyClass, &classChars), ERROR_SUCCESS);
  EXPECT_EQ(std::u16string(name), u"Alpha");
  EXPECT_EQ(std::u16string(keyClass), u"");
  EXPECT_EQ(classChars, 0u);
}

TEST_F(RegistryLists, AnEmptyClassNeedsRoomForItsTerminator) {
  Make(u"Alpha");
  char16_t name[6] = {};
  char16_t keyClass[1] = {u'x'};
  std::uint32_t chars = 6;
  std::uint32_t classChars = 0;
  EXPECT_EQ(registry.RegEnumKeyExW(key, 0, name, &chars, keyClass, &classChars), ERROR_MORE_DATA);
  chars = 6;
  classChars = 1;
  EXPECT_EQ(registry.RegEnumKeyExW(key, 0, name, &chars, keyClass, &classChars), ERROR_SUCCESS);
  EXPECT_EQ(keyClass[0], u'\0');
}

TEST_F(RegistryLists, WithoutAPlaceForTheClassItsLengthIsTold) {
  Make(u"Alpha");
  char16_t name[6] = {};
  std::uint32_t chars = 6;
  std::uint32_t classChars = 77;
  EXPECT_EQ(registry.RegEnumKeyExW(key, 0, name, &chars, nullptr, &classChars), ERROR_SUCCESS);
  EXPECT_EQ(classChars, 0u);
}

TEST_F(RegistryLists, SubKeysNeedTheRightToListThem) {
  const OwnedKey querying = Open(nullptr, KEY_QUERY_VALUE);
  char16_t name[MAX_PATH];
  std::uint32_t chars = MAX_PATH;
  EXPECT_EQ(registry.RegEnumKeyExW(querying.get(), 0, name, &chars, nullptr, nullptr),
            ERROR_ACCESS_DENIED);
}

TEST_F(RegistryLists, DeletingTheFirstSubKeyUntilNoneIsLeftEmptiesTheKey) {
  Make(u"Alpha");
  Make(u"Beta");
  Make(u"Gamma");
  int deleted = 0;
  char16_t name[MAX_PATH] = {};
  std::uint32_t chars = MAX_PATH;
  while (registry.RegEnumKeyExW(key, 0, name, &chars, nullptr, nullptr) == ERROR_SUCCESS) {
    ASSERT_EQ(registry.RegDeleteKeyW(key, name), ERROR_SUCCESS);
    ++deleted;
    chars = MAX_PATH;
  }
  EXPECT_EQ(deleted, 3);
}

// --- Listing values

TEST_F(RegistryLists, ValuesAreNamedAsTheyWereMade) {
  SetNumber(u"Beta", 1);
  SetNumber(u"alpha", 2);
  SetText(u"Gamma", u"x");
  EXPECT_EQ(Values(), (Names{u"Beta", u"Gamma", u"alpha"}));
}

TEST_F(RegistryLists, AKeyWithoutValuesListsNone) {
  Make(u"Sub");
  EXPECT_EQ(Values(), Names{});
}

TEST_F(RegistryLists, TheDefaultValueHasAnEmptyName) {
  SetNumber(nullptr, 1);
  EXPECT_EQ(Values(), (Names{u""}));
}

TEST_F(RegistryLists, AValueIsListedWithItsTypeAndData) {
  SetBytes(u"Value", REG_BINARY, "12345"sv);

  char16_t name[20] = {};
  std::uint32_t chars = 20;
  std::uint32_t type = REG_NONE;
  char data[20] = {};
  std::uint32_t bytes = sizeof(data);
  ASSERT_EQ(registry.RegEnumValueW(key, 0, name, &chars, &type, data, &bytes), ERROR_SUCCESS);

  EXPECT_EQ(std::u16string(name), u"Value");
  EXPECT_EQ(chars, 5u);
  EXPECT_EQ(type, REG_BINARY);
  EXPECT_EQ(bytes, 5u);
  EXPECT_EQ(std::string(data, 5), "12345");
}

TEST_F(RegistryLists, ANameOfAValueNeedsRoomForItsTerminator) {
  SetNumber(u"Alpha", 1);
  char16_t name[6] = {};
  std::uint32_t chars = 5;
  EXPECT_EQ(registry.RegEnumValueW(key, 0, name, &chars, nullptr, nullptr, nullptr),
            ERROR_MORE_DATA);
  chars = 6;
  EXPECT_EQ(registry.RegEnumValueW(key, 0, name, &chars, nullptr, nullptr, nullptr), ERROR_SUCCESS);
  EXPECT_EQ(chars, 5u);
}

TEST_F(RegistryLists, DataOfAValueThatNeedsMoreRoomTellsHowMuch) {
  SetBytes(u"Value", REG_BINARY, "12345"sv);
  char16_t name[20] = {};
  std::uint32_t chars = 20;
  char data[4] = {};
  std::uint32_t bytes = sizeof(data);
  EXPECT_EQ(registry.RegEnumValueW(key, 0, name, &chars, nullptr, data, &bytes), ERROR_MORE_DATA);
  EXPECT_EQ(bytes, 5u);
}

TEST_F(RegistryLists, WithoutDataTheSizeIsTold) {
  SetBytes(u"Value", REG_BINARY, "12345"sv);
  char16_t name[20] = {};
  std::uint32_t chars = 20;
  std::uint32_t bytes = 0;
  EXPECT_EQ(registry.RegEnumValueW(key, 0, name, &chars, nullptr, nullptr, &bytes), ERROR_SUCCESS);
  EXPECT_EQ(bytes, 5u);
}

TEST_F(RegistryLists, DataWithoutItsRoomIsRefused) {
  SetNumber(u"Value", 1);
  char16_t name[20] = {};
  std::uint32_t chars = 20;
  char data[4] = {};
  EXPECT_EQ(registry.RegEnumValueW(key, 0, name, &chars, nullptr, data, nullptr),
            ERROR_INVALID_PARAMETER);
}

TEST_F(RegistryLists, ValuesNeedTheRightToReadThem) {
  SetNumber(u"Value", 1);
  const OwnedKey writing = Open(nullptr, KEY_SET_VALUE);
  char16_t name[20] = {};
  std::uint32_t chars = 20;
  EXPECT_EQ(registry.RegEnumValueW(writing.get(), 0, name, &chars, nullptr, nullptr, nullptr),
            ERROR_ACCESS_DENIED);
}

}  // namespace
}  // namespace platform
