// The simulated machine's registry, as far as no other system's is like it: what a test sets up and
// looks at, denied keys, faults, the trace, the ledger.
#include "platform/sim/registry_tree.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace sim {
namespace {

using namespace platform;
using namespace std::string_literals;
using Names = std::vector<std::u16string>;

class SimRegistry : public testing::Test {
 protected:
  OwnedKey Open(const char16_t* path, std::uint32_t access) {
    OwnedKey key;
    error = calls.RegOpenKeyExW(HKEY_CURRENT_USER, path, access, key.Out());
    return key;
  }
  OwnedKey Create(const char16_t* path, std::uint32_t access) {
    OwnedKey key;
    error = calls.RegCreateKeyExW(HKEY_CURRENT_USER, path, access, key.Out(), nullptr);
    return key;
  }
  Names Events() {
    Names texts;
    for (; m_seen < machine.trace().size(); ++m_seen) texts.push_back(machine.trace()[m_seen].text);
    return texts;
  }

  Machine machine;
  Inside inside{machine};
  RegistryTree& tree = machine.registry();
  Registry& calls = Os().registry;
  std::int32_t error = ERROR_SUCCESS;  // of the last opening

 private:
  std::size_t m_seen = 0;
};

// --- What a test sets up and looks at

TEST_F(SimRegistry, ANewMachineHasItsBranches) {
  EXPECT_TRUE(tree.HasKey(HKEY_CURRENT_USER, u"Software"));
  EXPECT_TRUE(tree.HasKey(HKEY_CURRENT_USER, u"Software\\Microsoft\\Windows\\CurrentVersion\\Run"));
  EXPECT_TRUE(tree.HasKey(HKEY_LOCAL_MACHINE, u"Software"));
  EXPECT_FALSE(tree.HasKey(HKEY_LOCAL_MACHINE, u"Software\\Microsoft"));
}

TEST_F(SimRegistry, AProgramReadsWhatATestHasSet) {
  tree.SetDword(HKEY_CURRENT_USER, u"Software\\A", u"Number", 0x01020304);
  tree.SetString(HKEY_CURRENT_USER, u"Software\\A", u"Text", u"ab");

  const OwnedKey key = Open(u"software\\a", KEY_READ);
  std::uint32_t type = REG_NONE, number = 0, bytes = sizeof(number);
  EXPECT_EQ(calls.RegQueryValueExW(key.get(), u"number", &type, &number, &bytes), ERROR_SUCCESS);
  EXPECT_EQ(type, REG_DWORD);
  EXPECT_EQ(number, 0x01020304u);
  char16_t text[3] = {};
  bytes = sizeof(text);
  EXPECT_EQ(calls.RegQueryValueExW(key.get(), u"TEXT", &type, text, &bytes), ERROR_SUCCESS);
  EXPECT_EQ(type, REG_SZ);
  EXPECT_EQ(bytes, 6u);
  EXPECT_EQ(std::u16string(text), u"ab");
}

TEST_F(SimRegistry, ATestReadsWhatAProgramHasSet) {
  const OwnedKey key = Create(u"Software\\A", KEY_ALL_ACCESS);
  const std::uint32_t number = 7;
  calls.RegSetValueExW(key.get(), u"Number", REG_DWORD, &number, sizeof(number));
  calls.RegSetValueExW(key.get(), u"Text", REG_SZ, u"ab", 6);
  calls.RegSetValueExW(key.get(), u"Bytes", REG_BINARY, "a\0b", 3);

  EXPECT_EQ(tree.Dword(HKEY_CURRENT_USER, u"Software\\A", u"NUMBER"), 7u);
  EXPECT_EQ(tree.String(HKEY_CURRENT_USER, u"Software\\A", u"Text"), u"ab");
  EXPECT_EQ(tree.Bytes(HKEY_CURRENT_USER, u"Software\\A", u"Bytes"), "a\0b"s);
  EXPECT_EQ(tree.Bytes(HKEY_CURRENT_USER, u"Software\\A", u"Text"), "a\0b\0\0\0"s);
  EXPECT_EQ(tree.Dword(HKEY_CURRENT_USER, u"Software\\A", u"Text"), std::nullopt);
  EXPECT_EQ(tree.String(HKEY_CURRENT_USER, u"Software\\A", u"Number"), std::nullopt);
  EXPECT_EQ(tree.Bytes(HKEY_CURRENT_USER, u"Software\\B", u"Text"), std::nullopt);
}

TEST_F(SimRegistry, SubKeysStandInOrderOfTheirNamesAndValuesInOrderOfTheirMaking) {
  for (const auto name : {u"_z", u"aZ", u"Ab", u"z1", u"Z_"})
    tree.MakeKey(HKEY_CURRENT_USER, u"Software\\A\\"s + name);
  for (const auto name : {u"b", u"A", u"c"})
    tree.SetDword(HKEY_CURRENT_USER, u"Software\\A", name, 0);

  // By capitals: the underscore stands behind the letters.
  EXPECT_EQ(tree.SubKeys(HKEY_CURRENT_USER, u"Software\\A"),
            (Names{u"Ab", u"aZ", u"z1", u"Z_", u"_z"}));
  EXPECT_EQ(tree.ValueNames(HKEY_CURRENT_USER, u"Software\\A"), (Names{u"b", u"A", u"c"}));

  const OwnedKey key = Open(u"Software\\A", KEY_READ);
  char16_t name[10] = {};
  std::uint32_t chars = 10;
  EXPECT_EQ(calls.RegEnumKeyExW(key.get(), 4, name, &chars, nullptr, nullptr), ERROR_SUCCESS);
  EXPECT_EQ(std::u16string(name), u"_z");
  chars = 10;
  EXPECT_EQ(calls.RegEnumValueW(key.get(), 0, name, &chars, nullptr, nullptr, nullptr),
            ERROR_SUCCESS);
  EXPECT_EQ(std::u16string(name), u"b");
}

TEST_F(SimRegistry, ATestRemovesAValueOrAKeyWithAllBelowIt) {
  tree.SetDword(HKEY_CURRENT_USER, u"Software\\A\\B", u"x", 1);
  tree.RemoveValue(HKEY_CURRENT_USER, u"Software\\A\\B", u"X");
  EXPECT_EQ(tree.ValueNames(HKEY_CURRENT_USER, u"Software\\A\\B"), Names{});
  tree.RemoveKey(HKEY_CURRENT_USER, u"Software\\a");
  EXPECT_FALSE(tree.HasKey(HKEY_CURRENT_USER, u"Software\\A\\B"));
  EXPECT_FALSE(tree.HasKey(HKEY_CURRENT_USER, u"Software\\A"));
  EXPECT_TRUE(tree.HasKey(HKEY_CURRENT_USER, u"Software"));
}

TEST_F(SimRegistry, WhatATestDoesIsNotInTheTrace) {
  tree.SetDword(HKEY_CURRENT_USER, u"Software\\A", u"x", 1);
  tree.RemoveKey(HKEY_CURRENT_USER, u"Software\\A");
  EXPECT_EQ(Events(), Names{});
}

// --- Names

TEST_F(SimRegistry, ANameMayEndInABackslashButNotBeginWithOne) {
  tree.MakeKey(HKEY_CURRENT_USER, u"Software\\A");
  EXPECT_TRUE(Open(u"Software\\A\\", KEY_READ));
  EXPECT_TRUE(Open(u"Software\\\\A", KEY_READ));
  EXPECT_FALSE(Open(u"\\Software", KEY_READ));
  EXPECT_EQ(error, ERROR_BAD_PATHNAME);
  EXPECT_FALSE(Create(u"\\New", KEY_READ));
  EXPECT_EQ(error, ERROR_BAD_PATHNAME);
}

TEST_F(SimRegistry, ANameMayHave255Characters) {
  const std::u16string longest(255, u'x');
  EXPECT_TRUE(Create(longest.c_str(), KEY_READ));
  EXPECT_FALSE(Create((longest + u"x").c_str(), KEY_READ));
  EXPECT_EQ(error, ERROR_INVALID_PARAMETER);
}

// --- Denied and deleted keys

TEST_F(SimRegistry, AKeyThatDeniesWritingIsOnlyRead) {
  tree.SetDword(HKEY_CURRENT_USER, u"Software\\A", u"x", 1);
  tree.MakeKey(HKEY_CURRENT_USER, u"Software\\A\\B");
  tree.Deny(HKEY_CURRENT_USER, u"Software\\A", false);

  EXPECT_TRUE(Open(u"Software\\A", KEY_READ));
  for (const std::uint32_t access : {KEY_SET_VALUE, KEY_CREATE_SUB_KEY, KEY_ALL_ACCESS}) {
    EXPECT_FALSE(Open(u"Software\\A", access));
    EXPECT_EQ(error, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(Create(u"Software\\A", access));
    EXPECT_EQ(error, ERROR_ACCESS_DENIED);
  }
  EXPECT_FALSE(Create(u"Software\\A\\New", KEY_READ));
  EXPECT_EQ(error, ERROR_ACCESS_DENIED);
  EXPECT_FALSE(tree.HasKey(HKEY_CURRENT_USER, u"Software\\A\\New"));
  EXPECT_TRUE(Open(u"Software\\A\\B", KEY_ALL_ACCESS));
}

TEST_F(SimRegistry, AKeyThatDeniesReadingIsNotOpenedAtAll) {
  tree.Deny(HKEY_CURRENT_USER, u"Software\\A", true);
  EXPECT_FALSE(Open(u"Software\\A", KEY_QUERY_VALUE));
  EXPECT_EQ(error, ERROR_ACCESS_DENIED);
}

TEST_F(SimRegistry, AKeyThatDeniesWritingIsNotDeleted) {
  tree.Deny(HKEY_CURRENT_USER, u"Software\\A", false);
  EXPECT_EQ(calls.RegDeleteKeyW(HKEY_CURRENT_USER, u"Software\\A"), ERROR_ACCESS_DENIED);
  EXPECT_TRUE(tree.HasKey(HKEY_CURRENT_USER, u"Software\\A"));
}

TEST_F(SimRegistry, AHandleOfADeletedKeyCanOnlyBeClosed) {
  OwnedKey key = Create(u"Software\\A", KEY_ALL_ACCESS);
  ASSERT_EQ(calls.RegDeleteKeyW(HKEY_CURRENT_USER, u"Software\\A"), ERROR_SUCCESS);
  Create(u"Software\\A", KEY_READ);  // another key of that name

  char16_t name[10];
  std::uint32_t chars = 10;
  OwnedKey below;
  EXPECT_EQ(calls.RegQueryValueExW(key.get(), u"x", nullptr, nullptr, nullptr), ERROR_KEY_DELETED);
  EXPECT_EQ(calls.RegSetValueExW(key.get(), u"x", REG_BINARY, "a", 1), ERROR_KEY_DELETED);
  EXPECT_EQ(calls.RegDeleteValueW(key.get(), u"x"), ERROR_KEY_DELETED);
  EXPECT_EQ(calls.RegEnumKeyExW(key.get(), 0, name, &chars, nullptr, nullptr), ERROR_KEY_DELETED);
  EXPECT_EQ(calls.RegEnumValueW(key.get(), 0, name, &chars, nullptr, nullptr, nullptr),
            ERROR_KEY_DELETED);
  EXPECT_EQ(calls.RegOpenKeyExW(key.get(), nullptr, KEY_READ, below.Out()), ERROR_KEY_DELETED);
  EXPECT_EQ(calls.RegCreateKeyExW(key.get(), u"New", KEY_READ, below.Out(), nullptr),
            ERROR_KEY_DELETED);
  EXPECT_EQ(calls.RegCloseKey(key.Release()), ERROR_SUCCESS);
}

TEST_F(SimRegistry, ABranchIsntDeletedThroughItsOwnHandle) {
  EXPECT_EQ(calls.RegDeleteKeyW(HKEY_CURRENT_USER, u""), ERROR_ACCESS_DENIED);
  tree.RemoveKey(HKEY_LOCAL_MACHINE, u"Software");
  EXPECT_EQ(calls.RegDeleteKeyW(HKEY_LOCAL_MACHINE, u""), ERROR_ACCESS_DENIED);
}

// --- Trace, ledger, faults

TEST_F(SimRegistry, EveryChangeIsTraced) {
  const OwnedKey key = Create(u"Software\\A\\B", KEY_ALL_ACCESS);
  EXPECT_EQ(Events(), (Names{u"made key HKCU\\Software\\A", u"made key HKCU\\Software\\A\\B"}));
  Create(u"SOFTWARE\\a\\b", KEY_READ);
  EXPECT_EQ(Events(), Names{});
  calls.RegSetValueExW(key.get(), u"Name", REG_BINARY, "x", 1);
  calls.RegSetValueExW(key.get(), nullptr, REG_BINARY, "x", 1);
  EXPECT_EQ(Events(), (Names{u"set HKCU\\Software\\A\\B\\Name = hex:78",
                             u"set HKCU\\Software\\A\\B\\(default) = hex:78"}));
  const std::uint32_t number = 0x80000001;
  calls.RegSetValueExW(key.get(), u"Number", REG_DWORD, &number, sizeof number);
  calls.RegSetValueExW(key.get(), u"Text", REG_SZ, u"two words", 20);
  calls.RegSetValueExW(key.get(), u"Long", REG_BINARY, "0123456789abcdefg", 17);
  EXPECT_EQ(Events(), (Names{u"set HKCU\\Software\\A\\B\\Number = 2147483649",
                             u"set HKCU\\Software\\A\\B\\Text = \"two words\"",
                             u"set HKCU\\Software\\A\\B\\Long = "
                             u"hex:30,31,32,33,34,35,36,37,38,39,61,62,63,64,65,66,..."}));
  calls.RegDeleteValueW(key.get(), u"Name");
  calls.RegDeleteValueW(key.get(), u"Name");
  EXPECT_EQ(Events(), (Names{u"deleted value HKCU\\Software\\A\\B\\Name"}));
  calls.RegDeleteKeyW(HKEY_CURRENT_USER, u"Software\\A");
  calls.RegDeleteKeyW(HKEY_CURRENT_USER, u"software\\a\\b");
  EXPECT_EQ(Events(), (Names{u"deleted key HKCU\\Software\\A\\B"}));
}

TEST_F(SimRegistry, TheLedgerNamesOpenKeys) {
  const OwnedKey key = Create(u"Software\\A", KEY_READ);
  EXPECT_EQ(inside.process().Ledger(), (Names{u"key HKCU\\Software\\A"}));
}

TEST_F(SimRegistry, AKeyIsNotClosedAsAKernelObject) {
  const OwnedKey key = Create(u"Software\\A", KEY_READ);
  EXPECT_FALSE(Os().objects.CloseHandle(HANDLE{static_cast<std::uint64_t>(key.get())}));
  EXPECT_EQ(Os().process.GetLastError(), ERROR_INVALID_HANDLE);
}

TEST_F(SimRegistry, EveryCallThatIsToFailFailsAndChangesNothing) {
  tree.SetDword(HKEY_CURRENT_USER, u"Software\\A", u"x", 1);
  tree.MakeKey(HKEY_CURRENT_USER, u"Software\\A\\B");
  const OwnedKey key = Open(u"Software\\A", KEY_ALL_ACCESS);
  char16_t name[10];
  std::uint32_t chars = 10;
  HKEY made{};
  const std::pair<const char*, std::function<std::int32_t()>> failing[] = {
      {"RegOpenKeyExW", [&] { return calls.RegOpenKeyExW(key.get(), u"B", KEY_READ, &made); }},
      {"RegCreateKeyExW",
       [&] { return calls.RegCreateKeyExW(key.get(), u"New", KEY_READ, &made, nullptr); }},
      {"RegQueryValueExW",
       [&] { return calls.RegQueryValueExW(key.get(), u"x", nullptr, nullptr, nullptr); }},
      {"RegSetValueExW", [&] { return calls.RegSetValueExW(key.get(), u"y", REG_BINARY, "x", 1); }},
      {"RegDeleteValueW", [&] { return calls.RegDeleteValueW(key.get(), u"x"); }},
      {"RegDeleteKeyW", [&] { return calls.RegDeleteKeyW(key.get(), u"B"); }},
      {"RegEnumKeyExW",
       [&] { return calls.RegEnumKeyExW(key.get(), 0, name, &chars, nullptr, nullptr); }},
      {"RegEnumValueW",
       [&] { return calls.RegEnumValueW(key.get(), 0, name, &chars, nullptr, nullptr, nullptr); }},
  };
  for (const auto& [operation, call] : failing) {
    inside.process().FailCall(1);
    EXPECT_EQ(call(), ERROR_NO_SYSTEM_RESOURCES) << operation;
    EXPECT_EQ(inside.process().failedOperation(), operation);
  }
  EXPECT_EQ(tree.SubKeys(HKEY_CURRENT_USER, u"Software\\A"), (Names{u"B"}));
  EXPECT_EQ(tree.ValueNames(HKEY_CURRENT_USER, u"Software\\A"), (Names{u"x"}));
  EXPECT_EQ(Events(), Names{});
}

TEST_F(SimRegistry, AnOpeningThatIsToFailGivesNoHandle) {
  HKEY key{99};
  inside.process().FailNext("RegOpenKeyExW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(calls.RegOpenKeyExW(HKEY_CURRENT_USER, u"Software", KEY_READ, &key),
            ERROR_ACCESS_DENIED);
  EXPECT_EQ(key, HKEY{});
  key = HKEY{99};
  inside.process().FailNext("RegCreateKeyExW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(calls.RegCreateKeyExW(HKEY_CURRENT_USER, u"Software", KEY_READ, &key, nullptr),
            ERROR_ACCESS_DENIED);
  EXPECT_EQ(key, HKEY{});
}

TEST_F(SimRegistry, ClosingFailsOnlyWhenATestNamesIt) {
  OwnedKey key = Create(u"Software\\A", KEY_READ);
  inside.process().FailCall(1);
  EXPECT_EQ(calls.RegCloseKey(key.Release()), ERROR_SUCCESS);
  EXPECT_EQ(inside.process().failedOperation(), "");
  key = Open(u"Software\\A", KEY_READ);
  inside.process().FailNext("RegCloseKey", ERROR_NO_SYSTEM_RESOURCES);
  EXPECT_EQ(calls.RegCloseKey(key.get()), ERROR_NO_SYSTEM_RESOURCES);
}

}  // namespace
}  // namespace sim
