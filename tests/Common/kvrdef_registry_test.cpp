#include "Common/KVRDEFREGISTRY.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <map>
#include <memory>

#include "Common/reg_library.h"
#include "platform/sim/machine.h"
#include "platform/sim/registry_library.h"
#include "tests/Common/recording_registry_library.h"

namespace vgl {
namespace {

using namespace platform;

constexpr HKEY kHive = HKEY_LOCAL_MACHINE;
constexpr char16_t kPath[] = u"Software\\K";
constexpr char16_t kLibrary[] = u"C:\\Drivers\\R.DLL";

constexpr std::array<std::uint16_t, 11> kOrdinals = {2, 4, 6, 7, 9, 11, 13, 15, 17, 19, 20};

using Numbers = std::vector<std::uint64_t>;
using Rooms = std::map<std::size_t, std::uint32_t>;  // by the argument's place

// What both roads give alike is told in registry_keys_test.cpp and registry_values_test.cpp.
class LibraryMode : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};

  LibraryMode() { machine.registry().MakeKey(kHive, kPath); }
  void TearDown() override {
    ReleaseRegLibrary();
    EXPECT_TRUE(inside.process().Ledger().empty());
  }

  void Use(sim::Library& library) {
    EXPECT_EQ(CRegLibrary::LoadByPath(library.path().c_str()), 1);
    g_bRegLibraryMode = 1;
  }
  sim::Library& UseLibrary() {
    sim::Library& library = sim::AddRegistryLibrary(machine, kLibrary);
    Use(library);
    return library;
  }
  void UseRecordingLibrary() { Use(AddRecordingLibrary<char16_t>(machine, kLibrary)); }
  RegRecord<char16_t>& Record() { return RecordOf<char16_t>(machine); }

  // An object that is open as far as it knows itself.
  static std::unique_ptr<CKvRdefRegistry> MakeOpen() {
    auto key = std::make_unique<CKvRdefRegistry>();
    key->m_hKey = HKEY{0x1111};
    key->m_IsOpen = 1;
    key->m_Access = KEY_READ;
    return key;
  }
};

// --- Which road

TEST_F(LibraryMode, WithoutTheModeTheLibraryIsntCalled) {
  sim::Library& library = UseLibrary();
  g_bRegLibraryMode = 0;
  {
    CKvRdefRegistry key(kHive, kPath, true);
    EXPECT_TRUE(key.SetDword(u"n", 1));
    EXPECT_EQ(key.EnumValueName(0), u"n");
  }
  for (const std::uint16_t ordinal : kOrdinals) EXPECT_EQ(library.Calls(ordinal), 0U) << ordinal;
}

TEST_F(LibraryMode, TheBaseClassGoesStraightToTheSystem) {
  sim::Library& library = UseLibrary();
  {
    CRegistry key(kHive, kPath, false);
    EXPECT_EQ(key.m_IsOpen, 1);
  }
  EXPECT_EQ(library.Calls(4), 0U);
  EXPECT_EQ(library.Calls(7), 0U);
}

TEST_F(LibraryMode, ThroughItsBaseClassAnObjectGoesStraightToTheSystem) {
  sim::Library& library = UseLibrary();
  machine.registry().SetDword(kHive, kPath, u"n", 7);
  CKvRdefRegistry key(kHive, kPath, false);
  CRegistry& base = key;
  EXPECT_EQ(base.GetDword(u"n", 0), 7U);
  EXPECT_EQ(library.Calls(11), 0U);
  EXPECT_EQ(key.GetDword(u"n", 0), 7U);
  EXPECT_EQ(library.Calls(11), 1U);
}

TEST_F(LibraryMode, DeletedThroughItsBaseClassAnObjectIsClosedByTheLibraryOnce) {
  sim::Library& library = UseLibrary();
  std::unique_ptr<CRegistry> key = std::make_unique<CKvRdefRegistry>(kHive, kPath, false);
  EXPECT_EQ(key->m_IsOpen, 1);
  const std::uint64_t before = inside.process().calls();
  key.reset();
  EXPECT_EQ(library.Calls(7), 1U);
  EXPECT_EQ(inside.process().calls() - before, 1U);
}

TEST_F(LibraryMode, EachOperationGoesToItsExports) {
  const sim::Library& library = UseLibrary();
  machine.registry().SetDword(kHive, kPath, u"n", 1);
  // The ordinals that are called, each as often as it is.
  const auto called = [&](const auto& operation) {
    std::array<std::uint64_t, kOrdinals.size()> before{};
    for (std::size_t at = 0; at < kOrdinals.size(); ++at) before[at] = library.Calls(kOrdinals[at]);
    operation();
    std::vector<int> list;
    for (std::size_t at = 0; at < kOrdinals.size(); ++at)
      list.insert(list.end(), library.Calls(kOrdinals[at]) - before[at], kOrdinals[at]);
    return list;
  };
  using List = std::vector<int>;
  CKvRdefRegistry key;
  std::u16string name;
  char data[4] = {};
  EXPECT_EQ(called([&] { key.Open(kHive, kPath); }), List{4});
  EXPECT_EQ(called([&] { key.Close(); }), List{7});
  EXPECT_EQ(called([&] { key.Create(kHive, kPath); }), List{2});
  EXPECT_EQ(called([] { CKvRdefRegistry(kHive, kPath, false); }), (List{4, 7}));
  EXPECT_EQ(called([] { CKvRdefRegistry(kHive, kPath, true); }), (List{2, 7}));
  EXPECT_EQ(called([&] { key.EnumKey(); }), List{9});
  EXPECT_EQ(called([&] { key.EnumValueName(0); }), List{17});
  EXPECT_EQ(called([&] { key.EnumValueData(0); }), (List{11, 17}));
  EXPECT_EQ(called([&] { key.EnumValue(0, name); }), (List{11, 17}));
  EXPECT_EQ(called([&] { key.EnumValue(1, name); }), List{17});
  EXPECT_EQ(called([&] { key.GetType(u"n"); }), List{11});
  EXPECT_EQ(called([&] { key.IsString(u"n"); }), List{11});
  EXPECT_EQ(called([&] { key.IsDword(u"n"); }), List{11});
  EXPECT_EQ(called([&] { key.IsBinary(u"n"); }), List{11});
  EXPECT_EQ(called([&] { key.GetString(u"n"); }), (List{11, 11}));
  EXPECT_EQ(called([&] { key.GetString(u"n", u"", 4); }), List{11});
  EXPECT_EQ(called([&] { key.GetDword(u"n", 0); }), List{11});
  EXPECT_EQ(called([&] { key.GetDwordOrMinus1(u"n"); }), List{11});
  EXPECT_EQ(called([&] { key.GetSize(u"n"); }), List{11});
  EXPECT_EQ(called([&] { key.GetBinaryAlloc(u"n"); }), (List{11, 11}));
  EXPECT_EQ(called([&] { key.GetBinary(u"n", data); }), (List{11, 11}));
  EXPECT_EQ(called([&] { key.SetString(u"s", u"t"); }), List{15});
  EXPECT_EQ(called([&] { key.SetDword(u"d", 1); }), List{15});
  EXPECT_EQ(called([&] { key.SetBinary(u"b", data, 4); }), List{15});
  EXPECT_EQ(called([&] { key.DeleteValue(u"n"); }), List{13});
  machine.registry().MakeKey(kHive, std::u16string(kPath) + u"\\T");
  EXPECT_EQ(called([&] { key.DeleteKeyTree(u"T"); }), (List{4, 6, 7, 9}));
}

// A library that carries nothing out shows what reaches the system beside it.
TEST_F(LibraryMode, NothingGoesToTheSystemBesideTheLibrary) {
  UseRecordingLibrary();
  const std::uint64_t before = inside.process().calls();
  {
    CKvRdefRegistry created(kHive, kPath, true);
    const auto key = MakeOpen();
    std::u16string name;
    char data[4] = {};
    key->EnumKey();
    key->EnumValueName(0);
    key->EnumValue(0, name);
    key->GetType(u"n");
    key->GetString(u"n");
    key->SetString(u"n", u"t");
    key->GetDword(u"n", 0);
    key->SetDword(u"n", 0);
    key->GetBinaryAlloc(u"n");
    key->GetBinary(u"n", data);
    key->SetBinary(u"n", data, 4);
    key->DeleteValue(u"n");
    key->DeleteKeyTree(u"k");
    key->Close();
    key->Open(kHive, kPath);
  }
  EXPECT_EQ(inside.process().calls(), before);
  EXPECT_EQ(Record().calls.size(), 20U);
}

TEST_F(LibraryMode, EachCallLooksAnewWhereToGo) {
  sim::Library& library = UseLibrary();
  g_bRegLibraryMode = 0;
  CKvRdefRegistry key(kHive, kPath, false, KEY_ALL_ACCESS);
  EXPECT_TRUE(key.SetDword(u"n", 1));
  EXPECT_EQ(library.Calls(15), 0U);
  g_bRegLibraryMode = 1;
  EXPECT_TRUE(key.SetDword(u"n", 2));
  EXPECT_EQ(library.Calls(15), 1U);
  key.Close();
  EXPECT_EQ(library.Calls(7), 1U);
}

// --- Nothing to go to

TEST_F(LibraryMode, WithoutTheObjectEachCallFailsWith12AndTheSystemIsntAsked) {
  g_bRegLibraryMode = 1;
  const std::uint64_t before = inside.process().calls();
  Registry& road = RegistryInUse();
  HKEY opened{};
  char16_t text[8] = {};
  std::uint32_t number = 8;
  EXPECT_EQ(road.RegOpenKeyExW(kHive, kPath, KEY_READ, &opened), 12);
  EXPECT_EQ(road.RegCreateKeyExW(kHive, kPath, KEY_READ, &opened, nullptr), 12);
  EXPECT_EQ(road.RegQueryValueExW(kHive, u"n", nullptr, text, &number), 12);
  EXPECT_EQ(road.RegSetValueExW(kHive, u"n", REG_SZ, text, 2), 12);
  EXPECT_EQ(road.RegDeleteValueW(kHive, u"n"), 12);
  EXPECT_EQ(road.RegDeleteKeyW(kHive, kPath), 12);
  EXPECT_EQ(road.RegEnumKeyExW(kHive, 0, text, &number, nullptr, nullptr), 12);
  EXPECT_EQ(road.RegEnumValueW(kHive, 0, text, &number, nullptr, nullptr, nullptr), 12);
  EXPECT_EQ(road.RegCloseKey(kHive), 12);
  EXPECT_EQ(inside.process().calls(), before);
  EXPECT_EQ(opened, HKEY{});
}

TEST_F(LibraryMode, WithoutTheObjectReadsGiveTheirDefaultsAndWritesFalse) {
  g_bRegLibraryMode = 1;
  EXPECT_EQ(CKvRdefRegistry(kHive, kPath, false).m_IsOpen, 0);
  EXPECT_EQ(CKvRdefRegistry(kHive, kPath, true).m_IsOpen, 0);
  const auto key = MakeOpen();
  std::u16string name = u"before";
  char data[4] = {};
  EXPECT_EQ(key->EnumKey(), u"");
  EXPECT_EQ(key->EnumValueName(0), u"");
  EXPECT_EQ(key->EnumValueData(0), u"");
  EXPECT_EQ(key->EnumValue(0, name), u"");
  EXPECT_EQ(name, u"");
  EXPECT_EQ(key->GetType(u"n"), 0U);
  EXPECT_FALSE(key->IsString(u"n"));
  EXPECT_FALSE(key->IsDword(u"n"));
  EXPECT_FALSE(key->IsBinary(u"n"));
  EXPECT_EQ(key->GetString(u"n", u"fallback"), u"fallback");
  EXPECT_EQ(key->GetString(u"n", u"fallback", 8), u"fallback");
  EXPECT_EQ(key->GetDword(u"n", 9), 9U);
  EXPECT_EQ(key->GetDwordOrMinus1(u"n"), 0xFFFFFFFFU);
  EXPECT_EQ(key->GetSize(u"n"), 0U);
  EXPECT_EQ(key->GetBinaryAlloc(u"n"), nullptr);
  EXPECT_FALSE(key->GetBinary(u"n", data));
  EXPECT_FALSE(key->SetString(u"n", u"t"));
  EXPECT_FALSE(key->SetDword(u"n", 1));
  EXPECT_FALSE(key->SetBinary(u"n", data, 4));
  EXPECT_FALSE(key->DeleteValue(u"n"));
  EXPECT_FALSE(key->DeleteKeyTree(u"k"));
  key->Close();
  EXPECT_EQ(key->m_IsOpen, 0);
}

TEST_F(LibraryMode, ALibraryThatLacksAnExportOpensNothing) {
  sim::Library& library = sim::AddRegistryLibrary(machine, kLibrary);
  library.RemoveExport(13);
  Use(library);
  EXPECT_EQ(CKvRdefRegistry(kHive, kPath, false).m_IsOpen, 0);
  EXPECT_EQ(library.Calls(4), 0U);
}

TEST_F(LibraryMode, ALibraryThatCantCloseLeavesTheKeyOpen) {
  sim::Library& library = sim::AddRegistryLibrary(machine, kLibrary);
  library.RemoveExport(7);
  Use(library);
  CKvRdefRegistry key(kHive, kPath, false);
  const HKEY handle = key.m_hKey;
  EXPECT_EQ(key.m_IsOpen, 1);
  key.Close();
  EXPECT_EQ(key.m_hKey, HKEY{});
  EXPECT_EQ(Os().registry.RegCloseKey(handle), ERROR_SUCCESS);
}

// --- What the library is handed

TEST_F(LibraryMode, OpeningHandsOverTheAccessAndAPlaceForTheKey) {
  UseRecordingLibrary();
  const char16_t* const subKey = u"A\\B";
  {
    const CKvRdefRegistry opened(HKEY{0x22}, subKey, false);
    const CKvRdefRegistry created(HKEY{0x22}, subKey, true);
  }
  ASSERT_EQ(Record().calls.size(), 2U);  // the library gave no handle: there is nothing to close
  const RecordedCall<char16_t>& open = Record().calls[0];
  EXPECT_EQ(open.name, u"A\\B");
  EXPECT_NE(open.arguments[1], AsNumber(subKey));
  EXPECT_EQ(open.arguments[2], 0U);
  EXPECT_EQ(open.arguments[3], 0x20019U);
  EXPECT_NE(open.arguments[4], 0U);
  const RecordedCall<char16_t>& create = Record().calls[1];
  EXPECT_EQ(create.name, u"A\\B");
  EXPECT_NE(create.arguments[1], AsNumber(subKey));
  EXPECT_EQ(Numbers(create.arguments.begin() + 2, create.arguments.begin() + 7),
            (Numbers{0, 0, 0, 0xF003F, 0}));
  EXPECT_NE(create.arguments[7], 0U);
  EXPECT_NE(create.arguments[8], 0U);
}

TEST_F(LibraryMode, EnumeratingKeysHandsOverRoomForNameAndClass) {
  UseRecordingLibrary();
  const auto key = MakeOpen();
  key->EnumKey();
  const RecordedCall<char16_t>& call = Record().calls.at(0);
  EXPECT_EQ(call.arguments[0], 0x1111U);
  EXPECT_EQ(call.arguments[1], 0U);
  EXPECT_EQ(call.arguments[4], 0U);
  for (const std::size_t place : {2U, 5U, 7U}) EXPECT_NE(call.arguments[place], 0U) << place;
  EXPECT_EQ(call.numbers, (Rooms{{3, 256}, {6, 256}}));
}

TEST_F(LibraryMode, ATypeIsAskedForWithoutAPlaceForData) {
  UseRecordingLibrary();
  const auto key = MakeOpen();
  key->GetType(u"n");
  key->IsString(u"n");
  key->IsDword(u"n");
  key->IsBinary(u"n");
  ASSERT_EQ(Record().calls.size(), 4U);
  for (const RecordedCall<char16_t>& call : Record().calls) {
    EXPECT_EQ(call.name, u"n");
    EXPECT_EQ(call.arguments[2], 0U);
    EXPECT_NE(call.arguments[3], 0U);
    EXPECT_EQ(call.arguments[4], 0U);
  }
}

TEST_F(LibraryMode, ValuesAreEnumeratedByTheirNameAlone) {
  UseRecordingLibrary();
  const auto key = MakeOpen();
  key->EnumValueData(5);
  ASSERT_EQ(Record().calls.size(), 2U);
  const RecordedCall<char16_t>& call = Record().calls[0];
  EXPECT_EQ(call.ordinal, 17);
  EXPECT_EQ(call.arguments[1], 5U);
  EXPECT_EQ(Numbers(call.arguments.begin() + 4, call.arguments.end()), (Numbers{0, 0, 0, 0}));
  EXPECT_EQ(call.numbers, (Rooms{{3, 256}}));
  EXPECT_EQ(Record().calls[1].ordinal, 11);
  EXPECT_EQ(Record().calls[1].numbers, (Rooms{{5, 512}}));  // bytes
}

TEST_F(LibraryMode, ReadsHandOverTheRoomInBytes) {
  UseRecordingLibrary();
  const auto key = MakeOpen();
  key->GetDword(u"n", 0);
  key->GetString(u"n", u"", 8);
  key->GetSize(u"n");
  ASSERT_EQ(Record().calls.size(), 3U);
  EXPECT_EQ(Record().calls[0].numbers, (Rooms{{5, 4}}));
  EXPECT_EQ(Record().calls[1].numbers, (Rooms{{5, 8}}));
  EXPECT_EQ(Record().calls[2].numbers, (Rooms{{5, 0}}));
}

// --- A value that isn't the same from one call to the next, and a library that breaks its word

std::int32_t RefuseToOpen(HKEY, const char16_t*, std::uint32_t, std::uint32_t, HKEY* key) {
  *key = HKEY{0x77};
  return ERROR_ACCESS_DENIED;
}
std::int32_t RefuseToCreate(HKEY, const char16_t*, std::uint32_t, char16_t*, std::uint32_t,
                            std::uint32_t, void*, HKEY* key, std::uint32_t* disposition) {
  *key = HKEY{0x77};
  *disposition = REG_CREATED_NEW_KEY;
  return ERROR_ACCESS_DENIED;
}

TEST_F(LibraryMode, AHandleThatComesWithAnErrorIsNeitherKeptNorClosed) {
  sim::Library& library = sim::AddRegistryLibrary(machine, kLibrary);
  library.RemoveExport(2);
  library.RemoveExport(4);
  library.Export<&RefuseToCreate>(2, nullptr);
  library.Export<&RefuseToOpen>(4, nullptr);
  Use(library);
  {
    CKvRdefRegistry key(kHive, kPath, false);
    EXPECT_EQ(key.m_IsOpen, 0);
    EXPECT_EQ(key.m_hKey, HKEY{});
    EXPECT_FALSE(key.Open(kHive, kPath));
    EXPECT_EQ(key.m_hKey, HKEY{});
    EXPECT_FALSE(key.Create(kHive, kPath));
    EXPECT_EQ(key.m_IsOpen, 0);
    EXPECT_EQ(key.m_hKey, HKEY{});
  }
  EXPECT_EQ(library.Calls(4), 2U);
  EXPECT_EQ(library.Calls(2), 1U);
  EXPECT_EQ(library.Calls(7), 0U);
}

// The key is gone though its deletion is said to have failed: as if another program was quicker.
std::int32_t DeleteAndSayItWasGone(HKEY parent, const char16_t* subKey) {
  Os().registry.RegDeleteKeyW(parent, subKey);
  return ERROR_FILE_NOT_FOUND;
}

TEST_F(LibraryMode, DeleteKeyTreeTriesTheKeyItselfAfterOneBelowHasVanished) {
  sim::Library& library = sim::AddRegistryLibrary(machine, kLibrary);
  library.RemoveExport(6);
  library.Export<&DeleteAndSayItWasGone>(6, nullptr);
  Use(library);
  machine.registry().MakeKey(kHive, std::u16string(kPath) + u"\\T\\A");
  CKvRdefRegistry key(kHive, kPath, false);
  EXPECT_FALSE(key.DeleteKeyTree(u"T"));
  EXPECT_EQ(library.Calls(6), 2U);
  EXPECT_FALSE(machine.registry().HasKey(kHive, std::u16string(kPath) + u"\\T"));
}

// What the library gives as a value, one after the other.
struct Query {
  std::int32_t result;
  std::uint32_t bytes;    // told as the size
  std::string_view data;  // written, if there is a place
};
struct Queries {
  std::vector<Query> list;
  std::size_t next = 0;
};

std::int32_t AnswerQuery(HKEY, const char16_t*, std::uint32_t*, std::uint32_t* type, void* data,
                         std::uint32_t* bytes) {
  auto& queries = sim::RunningProcess().machine().libraries().State<Queries>();
  const Query& query = queries.list.at(queries.next++);
  if (type != nullptr) *type = REG_BINARY;
  if (bytes != nullptr) *bytes = query.bytes;
  if (data != nullptr) std::memcpy(data, query.data.data(), query.data.size());
  return query.result;
}

class ChangingValue : public LibraryMode {
 protected:
  ChangingValue() {
    sim::Library& library = sim::AddRegistryLibrary(machine, kLibrary);
    library.RemoveExport(11);
    library.Export<&AnswerQuery>(11, nullptr);
    Use(library);
    EXPECT_TRUE(key.Open(kHive, kPath));
  }
  void TearDown() override {
    key.Close();
    LibraryMode::TearDown();
  }
  void Answer(std::vector<Query> list) {
    machine.libraries().State<Queries>() = {std::move(list), 0};
  }

  CKvRdefRegistry key;
};

TEST_F(ChangingValue, AShorterOneThanToldIsGivenAsItIs) {
  Answer({{0, 12, ""}, {0, 4, {"a\0b\0", 4}}});
  EXPECT_EQ(key.GetString(u"n", u"fallback"), u"ab");
  Answer({{0, 4, ""}, {0, 2, "xy"}});
  const auto data = key.GetBinaryAlloc(u"n");
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(std::string(data.get(), data.get() + 4), std::string("xy\0\0", 4));
}

TEST_F(ChangingValue, ALongerOneThanToldGivesTheDefault) {
  Answer({{0, 4, ""}, {ERROR_MORE_DATA, 8, {"a\0b\0", 4}}});
  EXPECT_EQ(key.GetString(u"n", u"fallback"), u"fallback");
  Answer({{0, 4, ""}, {ERROR_MORE_DATA, 8, "abcd"}});
  EXPECT_EQ(key.GetBinaryAlloc(u"n"), nullptr);
}

TEST_F(ChangingValue, AFailedReadThatHasWrittenLeavesTheDefault) {
  Answer({{ERROR_MORE_DATA, 8, "abcd"}});
  EXPECT_EQ(key.GetDword(u"n", 0x11223344), 0x11223344U);
  Answer({{ERROR_MORE_DATA, 8, {"a\0b\0", 4}}});
  EXPECT_EQ(key.GetString(u"n", u"fallback", 4), u"fallback");
}

TEST_F(ChangingValue, ASizeThatIsToldTooLargeAfterTheReadIsntBelieved) {
  Answer({{0, 4, ""}, {0, 0xFFFFFFFF, {"a\0b\0", 4}}});
  EXPECT_EQ(key.GetString(u"n"), u"ab");
  Answer({{0, 0xFFFFFFFF, "abcd"}});
  EXPECT_EQ(key.GetDword(u"n", 0), 0x64636261U);
}

}  // namespace
}  // namespace vgl
