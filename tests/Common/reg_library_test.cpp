#include "Common/reg_library.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/Common/reg_library_fixture.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char16_t kLoaded[] = u"loaded library C:\\Drv\\R.DLL";
constexpr char16_t kFreed[] = u"freed library C:\\Drv\\R.DLL";

// A load entry and an input that leads it to the library of the driver set.
template <class Char>
struct Entry {
  const char* name;
  std::int32_t (*load)(const Char* input);
  std::u16string_view input;
  RegLibStart start;
};

// Those that make the object where it is missing.
template <class Char>
constexpr std::array<Entry<Char>, 4> kLoads = {{
    {"LoadByPrinter", CRegLibrary::LoadByPrinter<Char>, u"P", RegLibStart::Printer},
    {"LoadByDriver", CRegLibrary::LoadByDriver<Char>, u"KAVRO D", RegLibStart::Driver},
    {"LoadByVif", CRegLibrary::LoadByVif<Char>, u"C:\\Drv\\D.VIF", RegLibStart::Vif},
    {"LoadByPath", CRegLibrary::LoadByPath<Char>, u"C:\\Drv\\R.DLL", RegLibStart::Library},
}};
template <class Char>
constexpr std::array<Entry<Char>, 4> kLoadsExisting = {{
    {"LoadExistingByPrinter", CRegLibrary::LoadExistingByPrinter<Char>, u"P", RegLibStart::Printer},
    {"LoadExistingByDriver", CRegLibrary::LoadExistingByDriver<Char>, u"KAVRO D",
     RegLibStart::Driver},
    {"LoadExistingByVif", CRegLibrary::LoadExistingByVif<Char>, u"C:\\Drv\\D.VIF",
     RegLibStart::Vif},
    {"LoadExistingByPath", CRegLibrary::LoadExistingByPath<Char>, u"C:\\Drv\\R.DLL",
     RegLibStart::Library},
}};

template <class Char>
class RegLibrary : public RegLibraryFixture<Char> {
 protected:
  static std::int32_t Run(const Entry<Char>& entry) {
    return entry.load(TextOf<Char>(entry.input).c_str());
  }
  // The object without a library.
  void MakeObject() {
    EXPECT_EQ(Run({"", CRegLibrary::LoadByPath<Char>, u"", RegLibStart::Library}), 0);
    EXPECT_NE(g_pRegLibrary.get(), nullptr);
  }
  static bool IsWideBound() { return CRegLibrary::RegDeleteValueW(HKEY{}, u"n") != kRegNotBound; }
  static bool IsNarrowBound() { return CRegLibrary::RegCloseKey(HKEY{}) != kRegNotBound; }

  // That the library is loaded, by the loader of this width, and bound in both.
  void ExpectLoaded(const char* entry) {
    EXPECT_NE(g_hRegLibModule.get(), HMODULE{}) << entry;
    EXPECT_EQ(g_pRegLibrary->loader<char16_t>().didLoad(), this->kIsWide ? 1 : 0) << entry;
    EXPECT_EQ(g_pRegLibrary->loader<char>().didLoad(), this->kIsWide ? 0 : 1) << entry;
    EXPECT_EQ(g_pRegLibrary->loader<char16_t>().path(), this->kIsWide ? u"C:\\Drv\\R.DLL" : u"")
        << entry;
    EXPECT_EQ(g_pRegLibrary->loader<char>().path(), this->kIsWide ? "" : "C:\\Drv\\R.DLL") << entry;
    EXPECT_TRUE(IsWideBound()) << entry;
    EXPECT_TRUE(IsNarrowBound()) << entry;
  }
};
TYPED_TEST_SUITE(RegLibrary, RegLibWidths, RegLibWidthName);
using NarrowRegLibrary = RegLibrary<char>;

// --- The entries

TYPED_TEST(RegLibrary, EachEntryLoadsTheLibraryAndBindsBothTables) {
  this->AddDriverSet();
  int loads = 0;
  for (const auto& entry : kLoads<TypeParam>) {
    EXPECT_EQ(this->Run(entry), 1) << entry.name;
    this->ExpectLoaded(entry.name);
    ReleaseRegLibrary();
    ++loads;
    EXPECT_EQ(this->Traced(kLoaded), loads) << entry.name;
    EXPECT_EQ(this->Traced(kFreed), loads) << entry.name;
  }
}

TYPED_TEST(RegLibrary, EachEntryOfTheSecondSetLoadsWhereTheObjectExists) {
  this->AddDriverSet();
  for (const auto& entry : kLoadsExisting<TypeParam>) {
    this->MakeObject();
    const CRegLibrary* const object = g_pRegLibrary;
    EXPECT_EQ(this->Run(entry), 1) << entry.name;
    EXPECT_EQ(g_pRegLibrary.get(), object) << entry.name;
    this->ExpectLoaded(entry.name);
    ReleaseRegLibrary();
  }
}

TYPED_TEST(RegLibrary, NoEntryOfTheSecondSetMakesTheObject) {
  this->AddDriverSet();
  const std::uint64_t before = this->calls();
  for (const auto& entry : kLoadsExisting<TypeParam>) EXPECT_EQ(this->Run(entry), 0) << entry.name;
  EXPECT_EQ(g_pRegLibrary.get(), nullptr);
  EXPECT_EQ(this->calls(), before);
}

TYPED_TEST(RegLibrary, OnASystemThatItIsntForNothingIsLookedUp) {
  this->AddDriverSet();
  for (const OsVersion& version :
       {OsVersion{4, 10, 1, 1}, OsVersion{5, 0, 1, 1}, OsVersion{4, 0, 2, 1},
        OsVersion{3, 51, 2, 1}, OsVersion{10, 0, 3, 1}}) {
    this->machine.system().version = version;
    for (const auto& entries : {kLoads<TypeParam>, kLoadsExisting<TypeParam>}) {
      for (const auto& entry : entries) {
        const std::uint64_t before = this->calls();
        EXPECT_EQ(this->Run(entry), 0) << entry.name;
        EXPECT_EQ(this->calls() - before, 1U) << entry.name;  // the version
      }
    }
  }
  EXPECT_EQ(g_hRegLibModule.get(), HMODULE{});
}

TYPED_TEST(RegLibrary, TheObjectIsMadeOnASystemThatItIsntForAsWell) {
  this->AddDriverSet();
  this->machine.system().version = {4, 0, 2, 1};
  for (const auto& entry : kLoads<TypeParam>) {
    EXPECT_EQ(g_pRegLibrary.get(), nullptr) << entry.name;
    EXPECT_EQ(this->Run(entry), 0) << entry.name;
    EXPECT_NE(g_pRegLibrary.get(), nullptr) << entry.name;
    ReleaseRegLibrary();
  }
}

TYPED_TEST(RegLibrary, OnASystemThatDoesntTellItsVersionNothingIsLookedUp) {
  this->AddDriverSet();
  this->machine.system().versionIsKnown = false;
  for (const auto& entry : kLoads<TypeParam>) EXPECT_EQ(this->Run(entry), 0) << entry.name;
  this->machine.system().versionIsKnown = true;
  this->inside.process().FailNext("GetVersionExW", ERROR_INVALID_PARAMETER);
  EXPECT_EQ(this->Run(kLoads<TypeParam>[1]), 0);
  EXPECT_EQ(this->Run(kLoads<TypeParam>[1]), 1);
}

TYPED_TEST(RegLibrary, OnNt50ItIsLoaded) {
  this->AddDriverSet();
  this->machine.system().version = {5, 0, 2, 1};
  EXPECT_EQ(this->Run(kLoads<TypeParam>[1]), 1);
}

TYPED_TEST(RegLibrary, ANullOrEmptyInputFindsNoLibrary) {
  this->AddDriverSet();
  sim::AddRegistryLibrary(this->machine, u"C:\\Program Files\\KAVRO\\K_WRDEF1.DLL");
  const std::basic_string<TypeParam> empty;
  for (const auto& entry : kLoads<TypeParam>) {
    const std::uint64_t before = this->calls();
    EXPECT_EQ(entry.load(nullptr), 0) << entry.name;
    EXPECT_EQ(entry.load(empty.c_str()), 0) << entry.name;
    EXPECT_EQ(this->calls() - before, 2U) << entry.name;  // the version, twice
  }
}

TYPED_TEST(RegLibrary, APathMayHaveCharactersOfTheSystemsCodePage) {
  sim::AddRegistryLibrary(this->machine, u"C:\\Caf\u00E9\\\u00DC.DLL");
  const auto path = TextOf<TypeParam>(u"C:\\Caf\u00E9\\\u00DC.DLL");
  EXPECT_EQ(CRegLibrary::LoadByPath(path.c_str()), 1);
  EXPECT_EQ(g_pRegLibrary->loader<TypeParam>().path(), path);
  EXPECT_EQ(this->Traced(u"loaded library C:\\Caf\u00E9\\\u00DC.DLL"), 1);
}

TYPED_TEST(RegLibrary, AMissingFileIsntLoaded) {
  this->AddDriverSet();
  this->machine.files().Remove(u"C:\\Drv\\R.DLL");
  for (const auto& entry : kLoads<TypeParam>) EXPECT_EQ(this->Run(entry), 0) << entry.name;
  EXPECT_TRUE(g_pRegLibrary->loader<char16_t>().path().empty());
  EXPECT_TRUE(g_pRegLibrary->loader<char>().path().empty());
  EXPECT_FALSE(this->IsWideBound());
  EXPECT_FALSE(this->IsNarrowBound());
}

TYPED_TEST(RegLibrary, AFileThatIsNoLibraryAndAFolderArentLoaded) {
  this->machine.files().WriteFile(u"C:\\Drv\\R.DLL", "no library");
  this->machine.files().MakeFolder(u"C:\\Folder.DLL");
  const auto load = CRegLibrary::LoadByPath<TypeParam>;
  EXPECT_EQ(load(TextOf<TypeParam>(u"C:\\Drv\\R.DLL").c_str()), 0);
  EXPECT_EQ(load(TextOf<TypeParam>(u"C:\\Folder.DLL").c_str()), 0);
  EXPECT_EQ(g_pRegLibrary->loader<char16_t>().didLoad(), 0);
  EXPECT_EQ(g_pRegLibrary->loader<char>().didLoad(), 0);
  EXPECT_EQ(g_hRegLibModule.get(), HMODULE{});
}

TYPED_TEST(RegLibrary, AFailedLoadCanBeFollowedByOneThatWorks) {
  this->AddDriverSet();
  const char* operation = this->kIsWide ? "LoadLibraryW" : "LoadLibraryA";
  this->inside.process().FailNext(operation, ERROR_MOD_NOT_FOUND);
  EXPECT_EQ(this->Run(kLoads<TypeParam>[1]), 0);
  EXPECT_EQ(this->Run(kLoads<TypeParam>[1]), 1);
  this->ExpectLoaded("LoadByDriver");
}

TYPED_TEST(RegLibrary, TheDefaultNameIsTriedWithoutAFolderForAnUnknownDriver) {
  sim::AddRegistryLibrary(this->machine, u"C:\\Program Files\\KAVRO\\K_WRDEF1.DLL");
  EXPECT_EQ(CRegLibrary::LoadByDriver(TextOf<TypeParam>(u"unknown").c_str()), 1);
}

// --- A library that is loaded already

// The version and twenty exports are asked for, and nothing else.
TYPED_TEST(RegLibrary, ASecondEntryOnlyBinds) {
  this->AddDriverSet();
  sim::AddRegistryLibrary(this->machine, u"C:\\Other\\X.DLL");
  EXPECT_EQ(this->Run(kLoads<TypeParam>[1]), 1);
  const HMODULE module = g_hRegLibModule;
  for (const std::u16string_view input : {u"C:\\Other\\X.DLL", u"missing", u""}) {
    const std::uint64_t before = this->calls();
    EXPECT_EQ(CRegLibrary::LoadByPath(TextOf<TypeParam>(input).c_str()), 1);
    EXPECT_EQ(this->calls() - before, 21U);
    EXPECT_EQ(g_hRegLibModule.get(), module);
    this->ExpectLoaded("a second load");
  }
  EXPECT_EQ(CRegLibrary::LoadExistingByDriver(static_cast<const TypeParam*>(nullptr)), 1);
  EXPECT_EQ(this->Traced(kLoaded), 1);
}

TYPED_TEST(RegLibrary, ASecondEntryOfTheOtherWidthOnlyBindsAndOneReleaseFreesTheLibrary) {
  this->AddDriverSet();
  EXPECT_EQ(this->Run(kLoads<TypeParam>[1]), 1);
  EXPECT_EQ(CRegLibrary::LoadByDriver("KAVRO D"), 1);
  EXPECT_EQ(CRegLibrary::LoadByDriver(u"KAVRO D"), 1);
  this->ExpectLoaded("both widths");
  const std::uint64_t before = this->calls();
  ReleaseRegLibrary();
  EXPECT_EQ(this->calls() - before, 1U);
  EXPECT_EQ(this->Traced(kFreed), 1);
}

TYPED_TEST(RegLibrary, ASecondEntryEmptiesTheTablesOfALibraryThatHasLostAnExport) {
  sim::Library& library = this->AddDriverSet();
  EXPECT_EQ(this->Run(kLoads<TypeParam>[1]), 1);
  library.RemoveExport(11);
  EXPECT_EQ(this->Run(kLoads<TypeParam>[1]), 1);
  EXPECT_FALSE(this->IsWideBound());
  EXPECT_FALSE(this->IsNarrowBound());
}

// --- Binding

// The version is asked for, then exports up to the missing one: by one table, then by the other.
TYPED_TEST(RegLibrary, ALibraryThatLacksAnExportIsLoadedAllTheSame) {
  struct Row {
    std::uint16_t missing;
    std::uint64_t asked;
    bool wide, narrow;
  };
  constexpr std::array<Row, 11> kRows = {{
      {2, 1 + 1, false, false},
      {4, 2 + 2, false, false},
      {6, 3 + 3, false, false},
      {9, 4 + 4, false, false},
      {11, 5 + 5, false, false},
      {13, 6 + 6, false, false},
      {15, 7 + 7, false, false},
      {17, 8 + 8, false, false},
      {19, 9 + 9, false, false},
      {7, 9 + 10, true, false},
      {20, 9 + 11, true, false},
  }};
  for (const Row& row : kRows) {
    const std::u16string path = u"C:\\" + std::u16string(row.missing, u'x') + u".DLL";
    sim::AddRegistryLibrary(this->machine, path).RemoveExport(row.missing);
    EXPECT_EQ(CRegLibrary::LoadByPath(TextOf<TypeParam>(path).c_str()), 1) << row.missing;
    EXPECT_EQ(this->IsWideBound(), row.wide) << row.missing;
    EXPECT_EQ(this->IsNarrowBound(), row.narrow) << row.missing;
    const std::uint64_t before = this->calls();
    EXPECT_EQ(CRegLibrary::LoadByPath(TextOf<TypeParam>(path).c_str()), 1) << row.missing;
    EXPECT_EQ(this->calls() - before, 1 + row.asked) << row.missing;
    ReleaseRegLibrary();
  }
}

// --- The end

TYPED_TEST(RegLibrary, TheLibraryIsFreedOnceWhicheverLoaderHasLoadedIt) {
  this->AddDriverSet();
  EXPECT_EQ(this->Run(kLoads<TypeParam>[1]), 1);
  g_bRegLibraryMode = 1;
  const std::uint64_t before = this->calls();
  ReleaseRegLibrary();
  EXPECT_EQ(this->calls() - before, 1U);
  EXPECT_EQ(this->Traced(kFreed), 1);
  EXPECT_EQ(g_pRegLibrary.get(), nullptr);
  EXPECT_EQ(g_hRegLibModule.get(), HMODULE{});
  EXPECT_EQ(g_bRegLibraryMode.get(), 0);
  ReleaseRegLibrary();
  EXPECT_EQ(this->calls() - before, 1U);
}

TYPED_TEST(RegLibrary, AfterAReleaseItCanBeLoadedAnew) {
  this->AddDriverSet();
  for (int round = 1; round <= 3; ++round) {
    EXPECT_EQ(this->Run(kLoads<TypeParam>[1]), 1);
    ReleaseRegLibrary();
    EXPECT_EQ(this->Traced(kFreed), round);
  }
}

TYPED_TEST(RegLibrary, AReleaseWithoutALibraryAsksNobody) {
  this->MakeObject();
  const std::uint64_t before = this->calls();
  ReleaseRegLibrary();
  EXPECT_EQ(this->calls(), before);
  EXPECT_EQ(g_pRegLibrary.get(), nullptr);
}

TYPED_TEST(RegLibrary, AProcessThatEndsWithoutAReleaseLeavesTheLibraryToTheSystem) {
  this->AddDriverSet();
  EXPECT_EQ(this->Run(kLoads<TypeParam>[1]), 1);
  EXPECT_TRUE(this->inside.EndsProcess([] { Os().process.ExitProcess(0); }));
  EXPECT_EQ(this->inside.process().Ledger(),
            std::vector<std::u16string>{u"library C:\\Drv\\R.DLL"});
}

// --- Failures

// What an entry gives when a call fails on its way. '*' stands for the W or A of the entry's width.
struct FailedCall {
  std::size_t entry;  // in kLoads
  std::string_view operation;
  std::int32_t result;
};
constexpr std::array<FailedCall, 23> kFailedCalls = {{
    // From a printer, by the guarded open. An installer that can't be looked for is taken for none,
    // and a mutex without the right security is one all the same.
    {0, "GetVersionExW", 0},
    {0, "OpenMutexW", 1},
    {0, "InitializeSecurityDescriptor", 1},
    {0, "SetSecurityDescriptorDacl", 1},
    {0, "CreateMutexW", 0},
    {0, "OpenPrinterW", 0},
    {0, "GetPrinterDriver*", 0},
    {0, "GetPrivateProfileString*", 0},
    {0, "FindFirstFile*", 0},
    {0, "LoadLibrary*", 0},
    {0, "GetProcAddress", 1},
    {1, "GetVersionExW", 0},
    {1, "EnumPrinterDrivers*", 0},
    {1, "GetPrivateProfileString*", 0},
    {1, "FindFirstFile*", 0},
    {1, "LoadLibrary*", 0},
    {1, "GetProcAddress", 1},
    {2, "GetVersionExW", 0},
    {2, "GetPrivateProfileString*", 0},
    {2, "FindFirstFile*", 0},
    {2, "LoadLibrary*", 0},
    {3, "FindFirstFile*", 0},
    {3, "LoadLibrary*", 0},
}};

TYPED_TEST(RegLibrary, ACallThatFailsOnTheWayToTheLibraryLeavesItUnloaded) {
  this->AddDriverSet();
  for (const FailedCall& failed : kFailedCalls) {
    const auto& entry = kLoads<TypeParam>[failed.entry];
    std::string operation(failed.operation);
    if (operation.back() == '*') operation.back() = this->kIsWide ? 'W' : 'A';
    this->FailNext(operation);
    EXPECT_EQ(this->Run(entry), failed.result) << entry.name << " " << operation;
    EXPECT_EQ(g_hRegLibModule.get() != HMODULE{}, failed.result == 1) << operation;
    ReleaseRegLibrary();
    EXPECT_TRUE(this->inside.process().Ledger().empty()) << entry.name << " " << operation;
  }
}

// A narrow name is turned into UTF-16 to be opened, and two of them to be compared; each is asked
// for its length first.
TEST_F(NarrowRegLibrary, ANameThatCantBeConvertedFindsNoLibrary) {
  AddDriverSet();
  struct Row {
    std::size_t entry;  // in kLoads
    std::uint64_t conversions;
  };
  constexpr std::array<Row, 2> kRows = {{{0, 2}, {1, 4}}};
  for (const Row& row : kRows) {
    for (std::uint64_t after = 0; after < row.conversions; ++after) {
      FailNext("MultiByteToWideChar", after);
      EXPECT_EQ(Run(kLoads<char>[row.entry]), 0) << kLoads<char>[row.entry].name << " " << after;
      ReleaseRegLibrary();
    }
  }
}

TYPED_TEST(RegLibrary, NoFailureOfACallLeavesAnythingOpen) {
  this->AddDriverSet();
  for (const auto& entry : kLoads<TypeParam>) {
    std::string lastFailed;
    for (std::uint64_t number = 1;; ++number) {
      const std::uint64_t start = this->calls();
      this->inside.process().FailCall(number);
      this->Run(entry);
      ReleaseRegLibrary();
      EXPECT_TRUE(this->inside.process().Ledger().empty()) << entry.name << " " << number;
      if (number > this->calls() - start) break;
      if (!this->inside.process().failedOperation().empty())
        lastFailed = this->inside.process().failedOperation();
    }
    EXPECT_EQ(lastFailed, "GetProcAddress");
  }
}

}  // namespace
}  // namespace vgl
