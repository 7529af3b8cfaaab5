// Libraries: loading by path and name, counting the loads, what a library gives.
#include <initializer_list>

#include "tests/platform/library_fixture.h"

namespace platform {
namespace {

constexpr HMODULE kGarbage{0x12345678};

class LoadedLibraries : public LibraryContract {
 protected:
  HMODULE TryLoad(const std::u16string& path) { return modules.LoadLibraryW(path.c_str()); }

  // Empty when there is none.
  std::u16string FileName(HMODULE module) {
    char16_t path[MAX_PATH] = {};
    const std::uint32_t length = modules.GetModuleFileNameW(module, path, MAX_PATH);
    EXPECT_EQ(std::u16string(path).size(), length);
    return path;
  }
  bool AreSamePath(const std::u16string& one, const std::u16string& other) {
    return os.nls.lstrcmpiW(one.c_str(), other.c_str()) == 0;
  }
};

// Files that are put there to be taken for libraries.
class LibraryFiles : public ScratchFolderTest {};

class LibraryExports : public LibraryContract {
 protected:
  using Calculation = std::int32_t (*)(std::int32_t number);

  OwnedModule library = Load(TestLibrary());
};

// --- Loading

TEST_F(LoadedLibraries, OneThatIsThereIsLoadedAndFreed) {
  const HMODULE library = TryLoad(TestLibrary());
  ASSERT_NE(library, HMODULE{});
  EXPECT_NE(library, modules.GetModuleHandleW(nullptr));
  EXPECT_TRUE(modules.FreeLibrary(library));
}

TEST_F(LoadedLibraries, OneThatIsNotThereCannotBeLoaded) {
  const std::u16string folder = TestLibrary().substr(0, TestLibrary().rfind(u'\\'));
  for (const std::u16string& missing :
       {folder + u"\\PlatformTestMissing.dll", folder + u"\\missing\\KVTEST.DLL",
        std::u16string(u"PlatformTestMissing.dll"), std::u16string(u"PlatformTestMissing")}) {
    os.process.SetLastError(7777);
    EXPECT_EQ(TryLoad(missing), HMODULE{}) << testing::PrintToString(missing);
    EXPECT_EQ(LastError(), ERROR_MOD_NOT_FOUND) << testing::PrintToString(missing);
  }
}

TEST_F(LoadedLibraries, OneThatIsNotThereCannotBeLoadedByANarrowPath) {
  EXPECT_EQ(modules.LoadLibraryA("C:\\PlatformTestMissing.dll"), HMODULE{});
  EXPECT_EQ(LastError(), ERROR_MOD_NOT_FOUND);
}

TEST_F(LibraryFiles, AnotherFileIsNoLibrary) {
  MakeFile(u"text.dll", "no library, but a text that is long enough to be taken for a header.");
  EXPECT_EQ(os.modules.LoadLibraryW(Path(u"text.dll").c_str()), HMODULE{});
  EXPECT_EQ(LastError(), ERROR_BAD_EXE_FORMAT);
}

// Which error stands for these is told nowhere, and nothing relies on it.
TEST_F(LibraryFiles, AnEmptyFileAFolderAndAnEmptyPathAreNoLibraries) {
  MakeFile(u"empty.dll");
  machine.MakeFolder(Path(u"folder.dll"));
  for (const std::u16string& none : {Path(u"empty.dll"), Path(u"folder.dll"), std::u16string()}) {
    os.process.SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(os.modules.LoadLibraryW(none.c_str()), HMODULE{}) << testing::PrintToString(none);
    EXPECT_NE(LastError(), ERROR_SUCCESS);
  }
  EXPECT_EQ(os.modules.LoadLibraryW(nullptr), HMODULE{});
  EXPECT_EQ(os.modules.LoadLibraryA(""), HMODULE{});
  EXPECT_EQ(os.modules.LoadLibraryA(nullptr), HMODULE{});
}

TEST_F(LibraryFiles, ANarrowPathIsInTheSystemsCodePage) {
  const std::u16string wide = Path(u"caf\u00E9.dll");
  MakeFile(u"caf\u00E9.dll",
           "no library, but a text that is long enough to be taken for a header.");
  std::string narrow(wide.begin(),
                     wide.end());  // the folder is ASCII, and the code page Latin-1 here
  EXPECT_EQ(os.modules.LoadLibraryA(narrow.c_str()), HMODULE{});
  EXPECT_EQ(LastError(), ERROR_BAD_EXE_FORMAT);  // it was found
  narrow.replace(narrow.find("caf\xE9"), 4, "caf\xE8");
  EXPECT_EQ(os.modules.LoadLibraryA(narrow.c_str()), HMODULE{});
  EXPECT_EQ(LastError(), ERROR_MOD_NOT_FOUND);
}

TEST_F(LoadedLibraries, ANameWithoutFolderIsFoundInTheProgramsFolder) {
  const std::u16string path = TestLibrary();
  const OwnedModule library = Load(u"KVTEST.DLL");
  EXPECT_TRUE(AreSamePath(FileName(library.get()), path));
}

TEST_F(LoadedLibraries, ANameWithoutExtensionIsADll) {
  const std::u16string path = TestLibrary();
  const OwnedModule library = Load(u"KVTEST");
  EXPECT_TRUE(AreSamePath(FileName(library.get()), path));
}

TEST_F(LoadedLibraries, APathWithoutExtensionIsADll) {
  const std::u16string path = TestLibrary();
  const OwnedModule library = Load(path.substr(0, path.size() - 4));
  EXPECT_TRUE(AreSamePath(FileName(library.get()), path));
}

TEST_F(LoadedLibraries, APointAtTheEndSaysThatThereIsNoExtension) {
  TestLibrary();
  EXPECT_EQ(TryLoad(u"KVTEST."), HMODULE{});
  EXPECT_EQ(LastError(), ERROR_MOD_NOT_FOUND);
}

TEST_F(LoadedLibraries, ANarrowPathLoadsTheSameLibrary) {
  const std::u16string path = TestLibrary();
  const OwnedModule wide = Load(path);
  const OwnedModule narrow(modules.LoadLibraryA(std::string(path.begin(), path.end()).c_str()));
  EXPECT_EQ(narrow.get(), wide.get());
}

// --- Counting the loads

TEST_F(LoadedLibraries, ASecondLoadGivesTheSameHandle) {
  const std::u16string path = TestLibrary();
  const OwnedModule first = Load(path);
  std::u16string inOtherCase = path;
  inOtherCase.replace(path.rfind(u'\\') + 1, std::u16string::npos, u"kvTest.dll");
  EXPECT_EQ(Load(path).get(), first.get());
  EXPECT_EQ(Load(inOtherCase).get(), first.get());
  EXPECT_EQ(Load(u"kvtest.dll").get(), first.get());
}

TEST_F(LoadedLibraries, ALibraryGoesWhenItWasFreedAsOftenAsLoaded) {
  const HMODULE library = TryLoad(TestLibrary());
  ASSERT_EQ(TryLoad(TestLibrary()), library);
  EXPECT_TRUE(modules.FreeLibrary(library));
  EXPECT_EQ(modules.GetModuleHandleW(u"KVTEST.DLL"), library);
  EXPECT_NE(modules.GetProcAddress(library, "Doubled"), nullptr);

  EXPECT_TRUE(modules.FreeLibrary(library));
  EXPECT_EQ(modules.GetModuleHandleW(u"KVTEST.DLL"), HMODULE{});
  EXPECT_EQ(LastError(), ERROR_MOD_NOT_FOUND);
  EXPECT_EQ(FileName(library), u"");
  EXPECT_EQ(modules.GetProcAddress(library, "Doubled"), nullptr);
}

TEST_F(LoadedLibraries, WhatIsNotLoadedCannotBeFreed) {
  HMODULE freed{};
  {
    const OwnedModule library = Load(TestLibrary());
    freed = library.get();
  }
  for (const HMODULE none : {kGarbage, freed}) {
    os.process.SetLastError(7777);
    EXPECT_FALSE(modules.FreeLibrary(none));
    EXPECT_EQ(LastError(), ERROR_MOD_NOT_FOUND);
  }
  EXPECT_FALSE(modules.FreeLibrary(HMODULE{}));
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
}

TEST_F(LoadedLibraries, ALoadThatFailedCountsNothing) {
  EXPECT_EQ(TryLoad(u"PlatformTestMissing.dll"), HMODULE{});
  const OwnedModule library = Load(TestLibrary());
  EXPECT_EQ(modules.GetModuleHandleW(u"PlatformTestMissing.dll"), HMODULE{});
}

// --- What is known of one that is loaded

TEST_F(LoadedLibraries, ItsPathIsTold) {
  const std::u16string path = TestLibrary();
  const OwnedModule library = Load(path);
  EXPECT_TRUE(AreSamePath(FileName(library.get()), path));
}

TEST_F(LoadedLibraries, APathThatDoesNotFitIsCut) {
  const OwnedModule library = Load(TestLibrary());
  const std::u16string whole = FileName(library.get());
  char16_t path[6] = u"xxxxx";
  EXPECT_EQ(modules.GetModuleFileNameW(library.get(), path, 5), 5u);
  EXPECT_EQ(LastError(), ERROR_INSUFFICIENT_BUFFER);
  // Wine leaves a cut path without its terminator.
  EXPECT_TRUE(HoldsExcept(OnWine(), std::u16string(path) == whole.substr(0, 4)));
}

TEST_F(LoadedLibraries, ItIsFoundByNameAndByPath) {
  const std::u16string path = TestLibrary();
  EXPECT_EQ(modules.GetModuleHandleW(path.c_str()), HMODULE{});
  const OwnedModule library = Load(path);
  for (const std::u16string& name : {path, std::u16string(u"KVTEST.DLL"),
                                     std::u16string(u"kvtest.dll"), std::u16string(u"KVTEST")}) {
    EXPECT_EQ(modules.GetModuleHandleW(name.c_str()), library.get())
        << testing::PrintToString(name);
  }
}

TEST_F(LoadedLibraries, LookingItUpIsNoLoad) {
  OwnedModule library = Load(TestLibrary());
  ASSERT_EQ(modules.GetModuleHandleW(u"KVTEST.DLL"), library.get());
  library.Reset();
  EXPECT_EQ(modules.GetModuleHandleW(u"KVTEST.DLL"), HMODULE{});
}

// --- What it gives

TEST_F(LibraryExports, OneIsFoundByItsName) {
  const auto doubled =
      reinterpret_cast<Calculation>(modules.GetProcAddress(library.get(), "Doubled"));
  ASSERT_NE(doubled, nullptr);
  EXPECT_EQ(doubled(21), 42);
  EXPECT_EQ(doubled(-4), -8);
}

TEST_F(LibraryExports, OneIsFoundByItsOrdinal) {
  const auto tripled =
      reinterpret_cast<Calculation>(modules.GetProcAddress(library.get(), std::uint16_t{7}));
  ASSERT_NE(tripled, nullptr);
  EXPECT_EQ(tripled(14), 42);
}

TEST_F(LibraryExports, NameAndOrdinalGiveTheSameFunction) {
  EXPECT_EQ(modules.GetProcAddress(library.get(), std::uint16_t{3}),
            modules.GetProcAddress(library.get(), "Doubled"));
}

TEST_F(LibraryExports, OneWithoutANameHasNone) {
  EXPECT_EQ(modules.GetProcAddress(library.get(), "Tripled"), nullptr);
  EXPECT_EQ(LastError(), ERROR_PROC_NOT_FOUND);
}

TEST_F(LibraryExports, ANameThatIsNotThereGivesNothing) {
  for (const char* missing : {"Missing", "doubled", "DOUBLED", "Double", "Doubled2"}) {
    os.process.SetLastError(7777);
    EXPECT_EQ(modules.GetProcAddress(library.get(), missing), nullptr) << missing;
    EXPECT_EQ(LastError(), ERROR_PROC_NOT_FOUND) << missing;
  }
}

TEST_F(LibraryExports, AnOrdinalThatIsNotThereGivesNothing) {
  // In front of the first, between the two, behind the last.
  for (const std::uint16_t missing : std::initializer_list<std::uint16_t>{1, 5, 8, 0xFFFF}) {
    os.process.SetLastError(7777);
    EXPECT_EQ(modules.GetProcAddress(library.get(), missing), nullptr) << missing;
    // Windows has a number of its own for this, 182, which nothing relies on.
    if (machine.backend() != Backend::kWindows) {
      EXPECT_EQ(LastError(), ERROR_PROC_NOT_FOUND);
    }
  }
}

TEST_F(LibraryExports, TheProgramGivesNothing) {
  EXPECT_EQ(modules.GetProcAddress(modules.GetModuleHandleW(nullptr), "Doubled"), nullptr);
  EXPECT_EQ(LastError(), ERROR_PROC_NOT_FOUND);
}

TEST_F(LibraryExports, WhatIsNotLoadedGivesNothing) {
  EXPECT_EQ(modules.GetProcAddress(kGarbage, "Doubled"), nullptr);
  EXPECT_EQ(LastError(), ERROR_MOD_NOT_FOUND);
  EXPECT_EQ(modules.GetProcAddress(kGarbage, std::uint16_t{3}), nullptr);
  EXPECT_EQ(LastError(), ERROR_MOD_NOT_FOUND);
}

TEST_F(LibraryExports, AFunctionStaysWhileALoadDoes) {
  const auto doubled =
      reinterpret_cast<Calculation>(modules.GetProcAddress(library.get(), "Doubled"));
  const OwnedModule second = Load(TestLibrary());
  library.Reset();
  EXPECT_EQ(doubled(4), 8);
}

}  // namespace
}  // namespace platform
