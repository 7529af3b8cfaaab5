#include <gtest/gtest.h>

#include <array>

#include "Common/reg_library.h"
#include "platform/sim/machine.h"
#include "platform/sim/registry_library.h"
#include "tests/Common/recording_registry_library.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char16_t kPath[] = u"C:\\Drivers\\R.DLL";
constexpr HKEY kKey{0x1111};
constexpr std::int32_t kAnswer = 1234;

using Numbers = std::vector<std::uint64_t>;

template <class Char>
class RegLibraryWrappers : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  // Places for the library to answer into.
  HKEY result{};
  std::uint32_t a = 0, b = 0, c = 0, d = 0, e = 0, f = 0, g = 0, h = 0;
  std::uint64_t time = 0;
  Char text[8] = {};
  Char keyClass[8] = {};
  char data[8] = {};

  void Load() {
    AddRecordingLibrary<Char>(machine, kPath);
    EXPECT_EQ(CRegLibrary::LoadByPath(kPath), 1);
    Record().result = kAnswer;
  }
  void TearDown() override {
    ReleaseRegLibrary();
    EXPECT_TRUE(inside.process().Ledger().empty());
  }
  RegRecord<Char>& Record() { return RecordOf<Char>(machine); }

  // That the library was called once, with these arguments, and answered.
  void ExpectCall(std::int32_t answered, std::uint16_t ordinal, const Numbers& arguments) {
    EXPECT_EQ(answered, kAnswer);
    ASSERT_EQ(Record().calls.size(), 1U);
    EXPECT_EQ(Record().calls.front().ordinal, ordinal);
    EXPECT_EQ(Record().calls.front().arguments, arguments);
    Record().calls.clear();
  }
  // The same where the second argument is to be a copy of `name`; `others` leaves it out.
  void ExpectCallWithCopy(std::int32_t answered, std::uint16_t ordinal, const Char* name,
                          Numbers others) {
    ASSERT_EQ(Record().calls.size(), 1U);
    const RecordedCall<Char> call = Record().calls.front();
    EXPECT_EQ(call.name, std::basic_string<Char>(name));
    EXPECT_NE(call.arguments.at(1), AsNumber(name));
    others.insert(others.begin() + 1, call.arguments.at(1));
    ExpectCall(answered, ordinal, others);
  }
};

using WideWrappers = RegLibraryWrappers<char16_t>;
using NarrowWrappers = RegLibraryWrappers<char>;

// --- Wide: the library gets a copy of each name, and 0 and null for what is reserved

TEST_F(WideWrappers, CreateKey) {
  Load();
  ExpectCallWithCopy(CRegLibrary::RegCreateKeyExW(kKey, u"A\\B", 0xF003F, &result, &a), 2, u"A\\B",
                     {0x1111, 0, 0, 0, 0xF003F, 0, AsNumber(&result), AsNumber(&a)});
}

TEST_F(WideWrappers, OpenKey) {
  Load();
  ExpectCallWithCopy(CRegLibrary::RegOpenKeyExW(kKey, u"A\\B", 0x20019, &result), 4, u"A\\B",
                     {0x1111, 0, 0x20019, AsNumber(&result)});
}

TEST_F(WideWrappers, DeleteKey) {
  Load();
  ExpectCallWithCopy(CRegLibrary::RegDeleteKeyW(kKey, u"A"), 6, u"A", {0x1111});
}

TEST_F(WideWrappers, EnumKey) {
  Load();
  ExpectCall(CRegLibrary::RegEnumKeyExW(kKey, 7, text, &a, keyClass, &b, &time), 9,
             {0x1111, 7, AsNumber(text), AsNumber(&a), 0, AsNumber(keyClass), AsNumber(&b),
              AsNumber(&time)});
}

TEST_F(WideWrappers, QueryValue) {
  Load();
  ExpectCallWithCopy(CRegLibrary::RegQueryValueExW(kKey, u"name", &a, data, &b), 11, u"name",
                     {0x1111, 0, AsNumber(&a), AsNumber(data), AsNumber(&b)});
}

TEST_F(WideWrappers, DeleteValue) {
  Load();
  ExpectCallWithCopy(CRegLibrary::RegDeleteValueW(kKey, u"name"), 13, u"name", {0x1111});
}

TEST_F(WideWrappers, SetValue) {
  Load();
  ExpectCallWithCopy(CRegLibrary::RegSetValueExW(kKey, u"name", 3, data, 8), 15, u"name",
                     {0x1111, 0, 3, AsNumber(data), 8});
}

TEST_F(WideWrappers, EnumValue) {
  Load();
  ExpectCall(CRegLibrary::RegEnumValueW(kKey, 7, text, &a), 17,
             {0x1111, 7, AsNumber(text), AsNumber(&a), 0, 0, 0, 0});
}

TEST_F(WideWrappers, QueryInfoKey) {
  Load();
  std::uint32_t reserved = 0;
  ExpectCall(
      CRegLibrary::RegQueryInfoKeyW(kKey, keyClass, &a, &reserved, &b, &c, &d, &e, &f, &g, &h,
                                    &time),
      19,
      {0x1111, AsNumber(keyClass), AsNumber(&a), AsNumber(&reserved), AsNumber(&b), AsNumber(&c),
       AsNumber(&d), AsNumber(&e), AsNumber(&f), AsNumber(&g), AsNumber(&h), AsNumber(&time)});
}

TEST_F(WideWrappers, ANullOrEmptyNameGoesAsNull) {
  Load();
  for (const char16_t* name : {static_cast<const char16_t*>(nullptr), u""}) {
    ExpectCall(CRegLibrary::RegCreateKeyExW(kKey, name, 1, &result, &a), 2,
               {0x1111, 0, 0, 0, 0, 1, 0, AsNumber(&result), AsNumber(&a)});
    ExpectCall(CRegLibrary::RegOpenKeyExW(kKey, name, 1, &result), 4,
               {0x1111, 0, 0, 1, AsNumber(&result)});
    ExpectCall(CRegLibrary::RegDeleteKeyW(kKey, name), 6, {0x1111, 0});
    ExpectCall(CRegLibrary::RegQueryValueExW(kKey, name, &a, data, &b), 11,
               {0x1111, 0, 0, AsNumber(&a), AsNumber(data), AsNumber(&b)});
    ExpectCall(CRegLibrary::RegDeleteValueW(kKey, name), 13, {0x1111, 0});
    ExpectCall(CRegLibrary::RegSetValueExW(kKey, name, 3, data, 8), 15,
               {0x1111, 0, 0, 3, AsNumber(data), 8});
  }
}

TEST_F(WideWrappers, ALongNameGoesWhole) {
  Load();
  const std::u16string name(20000, u'\u20AC');
  ExpectCallWithCopy(CRegLibrary::RegDeleteValueW(kKey, name.c_str()), 13, name.c_str(), {0x1111});
}

// --- Narrow: what is reserved goes as it comes

TEST_F(NarrowWrappers, CreateKey) {
  Load();
  ExpectCallWithCopy(
      CRegLibrary::RegCreateKeyExA(kKey, "A\\B", 1, keyClass, 2, 3, &time, &result, &a), 2, "A\\B",
      {0x1111, 1, AsNumber(keyClass), 2, 3, AsNumber(&time), AsNumber(&result), AsNumber(&a)});
}

TEST_F(NarrowWrappers, OpenKey) {
  Load();
  ExpectCallWithCopy(CRegLibrary::RegOpenKeyExA(kKey, "A\\B", 1, 0x20019, &result), 4, "A\\B",
                     {0x1111, 1, 0x20019, AsNumber(&result)});
}

TEST_F(NarrowWrappers, DeleteKey) {
  Load();
  ExpectCallWithCopy(CRegLibrary::RegDeleteKeyA(kKey, "A"), 6, "A", {0x1111});
}

TEST_F(NarrowWrappers, EnumKey) {
  Load();
  ExpectCall(CRegLibrary::RegEnumKeyExA(kKey, 7, text, &a, &b, keyClass, &c, &time), 9,
             {0x1111, 7, AsNumber(text), AsNumber(&a), AsNumber(&b), AsNumber(keyClass),
              AsNumber(&c), AsNumber(&time)});
}

TEST_F(NarrowWrappers, QueryValue) {
  Load();
  ExpectCallWithCopy(CRegLibrary::RegQueryValueExA(kKey, "name", &a, &b, data, &c), 11, "name",
                     {0x1111, AsNumber(&a), AsNumber(&b), AsNumber(data), AsNumber(&c)});
}

TEST_F(NarrowWrappers, DeleteValue) {
  Load();
  ExpectCallWithCopy(CRegLibrary::RegDeleteValueA(kKey, "name"), 13, "name", {0x1111});
}

TEST_F(NarrowWrappers, SetValue) {
  Load();
  ExpectCallWithCopy(CRegLibrary::RegSetValueExA(kKey, "name", 1, 3, data, 8), 15, "name",
                     {0x1111, 1, 3, AsNumber(data), 8});
}

TEST_F(NarrowWrappers, EnumValue) {
  Load();
  ExpectCall(CRegLibrary::RegEnumValueA(kKey, 7, text, &a, &b, &c, data, &d), 17,
             {0x1111, 7, AsNumber(text), AsNumber(&a), AsNumber(&b), AsNumber(&c), AsNumber(data),
              AsNumber(&d)});
}

TEST_F(NarrowWrappers, QueryInfoKey) {
  Load();
  std::uint32_t reserved = 0;
  ExpectCall(
      CRegLibrary::RegQueryInfoKeyA(kKey, keyClass, &a, &reserved, &b, &c, &d, &e, &f, &g, &h,
                                    &time),
      19,
      {0x1111, AsNumber(keyClass), AsNumber(&a), AsNumber(&reserved), AsNumber(&b), AsNumber(&c),
       AsNumber(&d), AsNumber(&e), AsNumber(&f), AsNumber(&g), AsNumber(&h), AsNumber(&time)});
}

TEST_F(NarrowWrappers, CloseKey) {
  Load();
  ExpectCall(CRegLibrary::RegCloseKey(kKey), 7, {0x1111});
}

TEST_F(NarrowWrappers, TheUnknownExportTakesANumberOf32Bits) {
  Load();
  ExpectCall(CRegLibrary::Unknown20(-2), 20, {0xFFFFFFFFFFFFFFFE});
}

TEST_F(NarrowWrappers, ANullOrEmptyNameGoesAsNull) {
  Load();
  for (const char* name : {static_cast<const char*>(nullptr), ""}) {
    ExpectCall(CRegLibrary::RegCreateKeyExA(kKey, name, 0, nullptr, 0, 1, nullptr, &result, &a), 2,
               {0x1111, 0, 0, 0, 0, 1, 0, AsNumber(&result), AsNumber(&a)});
    ExpectCall(CRegLibrary::RegOpenKeyExA(kKey, name, 0, 1, &result), 4,
               {0x1111, 0, 0, 1, AsNumber(&result)});
    ExpectCall(CRegLibrary::RegDeleteKeyA(kKey, name), 6, {0x1111, 0});
    ExpectCall(CRegLibrary::RegQueryValueExA(kKey, name, nullptr, &a, data, &b), 11,
               {0x1111, 0, 0, AsNumber(&a), AsNumber(data), AsNumber(&b)});
    ExpectCall(CRegLibrary::RegDeleteValueA(kKey, name), 13, {0x1111, 0});
    ExpectCall(CRegLibrary::RegSetValueExA(kKey, name, 0, 3, data, 8), 15,
               {0x1111, 0, 0, 3, AsNumber(data), 8});
  }
}

// --- Nothing to call

// What each wrapper gives, by table.
struct Answers {
  std::vector<std::int32_t> wide, narrow;
  std::int32_t unknown20;
};

Answers AskAll() {
  return {
      {CRegLibrary::RegCreateKeyExW(kKey, u"k", 0, nullptr, nullptr),
       CRegLibrary::RegOpenKeyExW(kKey, u"k", 0, nullptr), CRegLibrary::RegDeleteKeyW(kKey, u"k"),
       CRegLibrary::RegEnumKeyExW(kKey, 0, nullptr, nullptr, nullptr, nullptr, nullptr),
       CRegLibrary::RegQueryValueExW(kKey, u"n", nullptr, nullptr, nullptr),
       CRegLibrary::RegDeleteValueW(kKey, u"n"),
       CRegLibrary::RegSetValueExW(kKey, u"n", 0, nullptr, 0),
       CRegLibrary::RegEnumValueW(kKey, 0, nullptr, nullptr),
       CRegLibrary::RegQueryInfoKeyW(kKey, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                     nullptr, nullptr, nullptr, nullptr, nullptr)},
      {CRegLibrary::RegCreateKeyExA(kKey, "k", 0, nullptr, 0, 0, nullptr, nullptr, nullptr),
       CRegLibrary::RegOpenKeyExA(kKey, "k", 0, 0, nullptr), CRegLibrary::RegDeleteKeyA(kKey, "k"),
       CRegLibrary::RegEnumKeyExA(kKey, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
       CRegLibrary::RegQueryValueExA(kKey, "n", nullptr, nullptr, nullptr, nullptr),
       CRegLibrary::RegDeleteValueA(kKey, "n"),
       CRegLibrary::RegSetValueExA(kKey, "n", 0, 0, nullptr, 0),
       CRegLibrary::RegEnumValueA(kKey, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
       CRegLibrary::RegQueryInfoKeyA(kKey, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                     nullptr, nullptr, nullptr, nullptr, nullptr),
       CRegLibrary::RegCloseKey(kKey)},
      CRegLibrary::Unknown20(0)};
}

const std::vector<std::int32_t> kNineTimes12(9, 12);
const std::vector<std::int32_t> kTenTimes12(10, 12);

TEST_F(WideWrappers, WithoutTheObjectAllGive12AndTheUnknownOneMinus1) {
  const Answers answers = AskAll();
  EXPECT_EQ(answers.wide, kNineTimes12);
  EXPECT_EQ(answers.narrow, kTenTimes12);
  EXPECT_EQ(answers.unknown20, -1);
  EXPECT_EQ(g_pRegLibrary.get(), nullptr);
}

TEST_F(WideWrappers, WithoutALibraryAllGive12AndTheUnknownOneMinus1) {
  EXPECT_EQ(CRegLibrary::LoadByPath(u"C:\\missing.dll"), 0);
  EXPECT_NE(g_pRegLibrary.get(), nullptr);
  const Answers answers = AskAll();
  EXPECT_EQ(answers.wide, kNineTimes12);
  EXPECT_EQ(answers.narrow, kTenTimes12);
  EXPECT_EQ(answers.unknown20, -1);
}

TEST_F(WideWrappers, ALibraryWithoutAnExportOfBothTablesBindsNeither) {
  constexpr std::array<std::uint16_t, 9> kShared = {2, 4, 6, 9, 11, 13, 15, 17, 19};
  for (const std::uint16_t ordinal : kShared) {
    const std::u16string path = u"C:\\Drivers\\" + std::u16string(ordinal, u'x') + u".DLL";
    AddRecordingLibrary<char16_t>(machine, path).RemoveExport(ordinal);
    EXPECT_EQ(CRegLibrary::LoadByPath(path.c_str()), 1);
    const Answers answers = AskAll();
    EXPECT_EQ(answers.wide, kNineTimes12) << ordinal;
    EXPECT_EQ(answers.narrow, kTenTimes12) << ordinal;
    EXPECT_EQ(answers.unknown20, -1) << ordinal;
    ReleaseRegLibrary();
  }
  EXPECT_TRUE(Record().calls.empty());
}

// The load counts as one all the same, and then no key that it opens can be closed.
TEST_F(WideWrappers, ALibraryWithoutAnExportOfTableAAloneBindsTableW) {
  for (const std::uint16_t ordinal : std::array<std::uint16_t, 2>{7, 20}) {
    const std::u16string path = u"C:\\Drivers\\" + std::u16string(ordinal, u'x') + u".DLL";
    AddRecordingLibrary<char16_t>(machine, path).RemoveExport(ordinal);
    Record().result = kAnswer;
    EXPECT_EQ(CRegLibrary::LoadByPath(path.c_str()), 1);
    const Answers answers = AskAll();
    EXPECT_EQ(answers.wide, std::vector<std::int32_t>(9, kAnswer)) << ordinal;
    EXPECT_EQ(answers.narrow, kTenTimes12) << ordinal;
    EXPECT_EQ(answers.unknown20, -1) << ordinal;
    ReleaseRegLibrary();
  }
}

TEST_F(WideWrappers, AfterTheReleaseAllGive12Again) {
  Load();
  ReleaseRegLibrary();
  const Answers answers = AskAll();
  EXPECT_EQ(answers.wide, kNineTimes12);
  EXPECT_EQ(answers.narrow, kTenTimes12);
  EXPECT_EQ(answers.unknown20, -1);
}

// --- The library's own answer

TEST_F(WideWrappers, InfoOfAKeyComesThrough) {
  sim::AddRegistryLibrary(machine, kPath);
  EXPECT_EQ(CRegLibrary::LoadByPath(kPath), 1);
  machine.registry().SetDword(HKEY_CURRENT_USER, u"K", u"name", 1);
  machine.registry().MakeKey(HKEY_CURRENT_USER, u"K\\sub");
  EXPECT_EQ(CRegLibrary::RegOpenKeyExW(HKEY_CURRENT_USER, u"K", KEY_READ, &result), 0);
  EXPECT_EQ(CRegLibrary::RegQueryInfoKeyW(result, nullptr, nullptr, nullptr, &a, &b, nullptr, &c,
                                          &d, &e, nullptr, nullptr),
            0);
  EXPECT_EQ((Numbers{a, b, c, d, e}), (Numbers{1, 3, 1, 4, 4}));
  EXPECT_EQ(CRegLibrary::RegCloseKey(result), 0);
  EXPECT_EQ(CRegLibrary::RegCloseKey(result), ERROR_INVALID_HANDLE);
}

}  // namespace
}  // namespace vgl
