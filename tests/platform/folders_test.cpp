// Files: deleting, searching, attributes, temporary files.
#include <algorithm>
#include <cctype>

#include "tests/platform/platform_test.h"

namespace platform {
namespace {

constexpr std::uint32_t kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

class Folders : public ScratchFolderTest {
 protected:
  std::uint32_t AttributesOf(std::u16string_view name) {
    return os.files.GetFileAttributesW(Path(name).c_str());
  }
  bool Exists(std::u16string_view name) { return AttributesOf(name) != INVALID_FILE_ATTRIBUTES; }

  void MakeReadOnlyFile(std::u16string_view name) {
    ASSERT_TRUE(OwnedFile(os.files.CreateFileW(Path(name).c_str(), GENERIC_WRITE, 0, CREATE_NEW,
                                               FILE_ATTRIBUTE_READONLY)));
  }

  // What a search finds, sorted: Windows promises no order.
  std::vector<std::u16string> Find(std::u16string_view pattern) {
    std::vector<std::u16string> names;
    FindData data;
    const OwnedFind search(os.files.FindFirstFileW(Path(pattern).c_str(), &data));
    if (!search) return names;
    do {
      names.emplace_back(data.name);
    } while (os.files.FindNextFileW(search.get(), &data));
    EXPECT_EQ(LastError(), ERROR_NO_MORE_FILES);
    std::sort(names.begin(), names.end());
    return names;
  }
};

using DeletingFiles = Folders;
using FindingFiles = Folders;
using FileAttributes = Folders;
using TempFiles = Folders;
using Names = std::vector<std::u16string>;

// --- Deleting

TEST_F(DeletingFiles, TheFileIsGone) {
  MakeFile(u"File");
  EXPECT_TRUE(os.files.DeleteFileW(Path(u"FILE").c_str()));
  EXPECT_FALSE(Exists(u"File"));
}

TEST_F(DeletingFiles, AMissingFileIsToldFromAMissingFolder) {
  EXPECT_FALSE(os.files.DeleteFileW(Path(u"missing").c_str()));
  EXPECT_EQ(LastError(), ERROR_FILE_NOT_FOUND);
  EXPECT_FALSE(os.files.DeleteFileW(Path(u"missing\\file").c_str()));
  EXPECT_EQ(LastError(), ERROR_PATH_NOT_FOUND);
}

TEST_F(DeletingFiles, AFolderIsNotDeleted) {
  machine.MakeFolder(Path(u"sub"));
  EXPECT_FALSE(os.files.DeleteFileW(Path(u"sub").c_str()));
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
  EXPECT_TRUE(Exists(u"sub"));
}

TEST_F(DeletingFiles, AReadOnlyFileIsNotDeleted) {
  MakeReadOnlyFile(u"file");
  EXPECT_FALSE(os.files.DeleteFileW(Path(u"file").c_str()));
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
  EXPECT_TRUE(Exists(u"file"));
}

TEST_F(DeletingFiles, AFileThatIsOpenIsNotDeleted) {
  MakeFile(u"file");
  const OwnedFile open = Open(u"file", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
  EXPECT_FALSE(os.files.DeleteFileW(Path(u"file").c_str()));
  EXPECT_EQ(LastError(), ERROR_SHARING_VIOLATION);
  EXPECT_TRUE(Exists(u"file"));
}

TEST_F(DeletingFiles, AFileThatIsOpenForDeletingIsGoneWhenItsHandleIs) {
  MakeFile(u"file");
  OwnedFile open = Open(u"file", GENERIC_READ, kShareAll);
  EXPECT_TRUE(os.files.DeleteFileW(Path(u"file").c_str()));
  open.Reset();
  EXPECT_FALSE(Exists(u"file"));
}

// --- Finding

TEST_F(FindingFiles, AFileIsFoundByItsName) {
  MakeFile(u"Driver.ini", "12345");
  FindData data;
  const OwnedFind search(os.files.FindFirstFileW(Path(u"DRIVER.INI").c_str(), &data));
  ASSERT_TRUE(search);
  EXPECT_EQ(std::u16string(data.name), u"Driver.ini");  // as it was made, without its folder
  EXPECT_EQ(data.size, 5u);
  EXPECT_EQ(data.attributes & FILE_ATTRIBUTE_DIRECTORY, 0u);

  EXPECT_FALSE(os.files.FindNextFileW(search.get(), &data));
  EXPECT_EQ(LastError(), ERROR_NO_MORE_FILES);
}

TEST_F(FindingFiles, AFolderIsFoundByItsName) {
  machine.MakeFolder(Path(u"sub"));
  FindData data;
  const OwnedFind search(os.files.FindFirstFileW(Path(u"sub").c_str(), &data));
  ASSERT_TRUE(search);
  EXPECT_EQ(std::u16string(data.name), u"sub");
  EXPECT_NE(data.attributes & FILE_ATTRIBUTE_DIRECTORY, 0u);
}

TEST_F(FindingFiles, NothingThatMatchesIsToldFromAMissingFolder) {
  FindData data;
  EXPECT_EQ(os.files.FindFirstFileW(Path(u"missing").c_str(), &data), INVALID_FIND_HANDLE);
  EXPECT_EQ(LastError(), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(os.files.FindFirstFileW(Path(u"*.ini").c_str(), &data), INVALID_FIND_HANDLE);
  EXPECT_EQ(LastError(), ERROR_FILE_NOT_FOUND);
  for (const auto pattern : {u"missing\\*.ini", u"missing\\*"}) {
    EXPECT_EQ(os.files.FindFirstFileW(Path(pattern).c_str(), &data), INVALID_FIND_HANDLE);
    EXPECT_EQ(LastError(), ERROR_PATH_NOT_FOUND);
  }
}

TEST_F(FindingFiles, APathThatEndsInABackslashMatchesNothing) {
  machine.MakeFolder(Path(u"sub"));
  FindData data;
  EXPECT_EQ(os.files.FindFirstFileW(Path(u"sub\\").c_str(), &data), INVALID_FIND_HANDLE);
  EXPECT_EQ(LastError(), ERROR_FILE_NOT_FOUND);
}

TEST_F(FindingFiles, AStarStandsForAnyTextAndAQuestionMarkForOneCharacter) {
  for (const auto name : {u"menu1.dat", u"Menu12.dat", u"menu.dat", u"other.dat", u"menu1.txt"}) {
    MakeFile(name);
  }
  EXPECT_EQ(Find(u"menu*.dat"), (Names{u"Menu12.dat", u"menu.dat", u"menu1.dat"}));
  EXPECT_EQ(Find(u"m?nu12.dat"), (Names{u"Menu12.dat"}));
  EXPECT_EQ(Find(u"menu12.d??"), (Names{u"Menu12.dat"}));
  EXPECT_EQ(Find(u"*r.dat"), (Names{u"other.dat"}));
  EXPECT_EQ(Find(u"m*1.*"), (Names{u"menu1.dat", u"menu1.txt"}));
}

TEST_F(FindingFiles, AQuestionMarkInFrontOfADotMayStandForNothing) {
  for (const auto name : {u"menu1.dat", u"menu12.dat", u"menu123.dat", u"menu2.dat"}) {
    MakeFile(name);
  }
  // Wine 8 takes it for one character.
  const Names found = Find(u"menu1?.dat");
  EXPECT_TRUE(HoldsExcept(OnWine(8), found == Names{u"menu1.dat", u"menu12.dat"}))
      << testing::PrintToString(found);
}

TEST_F(FindingFiles, AStarBehindADotFindsNamesWithoutADotToo) {
  MakeFile(u"plain");
  MakeFile(u"plain.txt");
  MakeFile(u"other.txt");
  EXPECT_EQ(Find(u"*.*"), (Names{u".", u"..", u"other.txt", u"plain", u"plain.txt"}));
  EXPECT_EQ(Find(u"pla*.*"), (Names{u"plain", u"plain.txt"}));
}

TEST_F(FindingFiles, AStarFindsFoldersAndTheTwoDotEntriesToo) {
  MakeFile(u"file");
  machine.MakeFolder(Path(u"sub"));
  EXPECT_EQ(Find(u"*"), (Names{u".", u"..", u"file", u"sub"}));
}

TEST_F(FindingFiles, ASearchDoesNotGoIntoFolders) {
  machine.MakeFolder(Path(u"sub"));
  MakeFile(u"sub\\inner.dat");
  EXPECT_EQ(Find(u"*.dat"), Names{});
  EXPECT_EQ(Find(u"sub\\*.dat"), (Names{u"inner.dat"}));
}

TEST_F(FindingFiles, ClosingWhatIsNoSearchFails) {
  EXPECT_FALSE(os.files.FindClose(INVALID_FIND_HANDLE));
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
}

// --- Attributes

TEST_F(FileAttributes, AFileIsToldFromAFolder) {
  MakeFile(u"file");
  machine.MakeFolder(Path(u"sub"));
  EXPECT_EQ(AttributesOf(u"file") & FILE_ATTRIBUTE_DIRECTORY, 0u);
  EXPECT_NE(AttributesOf(u"sub") & FILE_ATTRIBUTE_DIRECTORY, 0u);
}

TEST_F(FileAttributes, AFolderIsNamedWithOrWithoutItsBackslash) {
  EXPECT_NE(os.files.GetFileAttributesW(folder.c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_NE(os.files.GetFileAttributesW((folder + u"\\").c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(FileAttributes, ANewFileIsMarkedForArchiving) {
  MakeFile(u"file");
  EXPECT_EQ(AttributesOf(u"file"), FILE_ATTRIBUTE_ARCHIVE);
}

TEST_F(FileAttributes, AReadOnlyFileSaysSo) {
  MakeReadOnlyFile(u"file");
  EXPECT_NE(AttributesOf(u"file") & FILE_ATTRIBUTE_READONLY, 0u);
}

TEST_F(FileAttributes, AMissingFileIsToldFromAMissingFolder) {
  EXPECT_EQ(AttributesOf(u"missing"), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(LastError(), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(AttributesOf(u"missing\\file"), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(LastError(), ERROR_PATH_NOT_FOUND);
}

// --- The temp folder

TEST_F(TempFiles, TheTempFolderExistsAndEndsInABackslash) {
  char16_t temp[MAX_PATH] = {};
  const std::uint32_t length = os.files.GetTempPathW(MAX_PATH, temp);
  const std::u16string path(temp);
  EXPECT_EQ(length, path.size());
  ASSERT_FALSE(path.empty());
  EXPECT_EQ(path.back(), u'\\');
  EXPECT_NE(os.files.GetFileAttributesW(temp) & FILE_ATTRIBUTE_DIRECTORY, 0u);
}

TEST_F(TempFiles, ATempPathThatDoesNotFitTellsTheRoomItNeeds) {
  char16_t temp[MAX_PATH] = {};
  const std::uint32_t length = os.files.GetTempPathW(MAX_PATH, temp);
  EXPECT_EQ(os.files.GetTempPathW(0, nullptr), length + 1);
  EXPECT_EQ(os.files.GetTempPathW(length, temp), length + 1);
  EXPECT_EQ(os.files.GetTempPathW(length + 1, temp), length);
}

// --- Temp files

TEST_F(TempFiles, ATempFileIsMadeEmptyUnderANameOfItsOwn) {
  char16_t name[MAX_PATH] = {};
  const std::uint32_t number = os.files.GetTempFileNameW(folder.c_str(), u"K_Q", 0, name);
  ASSERT_NE(number, 0u);

  const std::u16string path(name);
  const std::u16string start = folder + u"\\K_Q";
  ASSERT_EQ(path.substr(0, start.size()), start);
  EXPECT_EQ(path.substr(path.size() - 4), u".tmp");
  const std::u16string digits = path.substr(start.size(), path.size() - start.size() - 4);
  const std::string narrow(digits.begin(), digits.end());
  EXPECT_TRUE(
      !narrow.empty() && narrow.size() <= 4 &&
      std::all_of(narrow.begin(), narrow.end(), [](unsigned char c) { return isxdigit(c); }))
      << narrow;
  EXPECT_EQ(std::stoul(narrow, nullptr, 16), number);

  const OwnedFile file(os.files.CreateFileW(name, GENERIC_READ, 0, OPEN_EXISTING, 0));
  ASSERT_TRUE(file);
  EXPECT_EQ(os.files.GetFileSize(file.get(), nullptr), 0u);
}

TEST_F(TempFiles, AFolderWithItsBackslashGetsNoSecondOne) {
  char16_t name[MAX_PATH] = {};
  ASSERT_NE(os.files.GetTempFileNameW((folder + u"\\").c_str(), u"K_Q", 0, name), 0u);
  EXPECT_EQ(std::u16string(name).substr(0, folder.size() + 4), folder + u"\\K_Q");
}

TEST_F(TempFiles, OfALongerPrefixThreeCharactersCount) {
  char16_t name[MAX_PATH] = {};
  ASSERT_NE(os.files.GetTempFileNameW(folder.c_str(), u"ABCDEF", 0xBEEF, name), 0u);
  std::u16string path(name);
  std::transform(path.begin(), path.end(), path.begin(),
                 [](char16_t c) { return c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c; });
  EXPECT_EQ(path.substr(path.rfind(u'\\')), u"\\abcbeef.tmp");
}

TEST_F(TempFiles, TwoTempFilesHaveTwoNames) {
  char16_t first[MAX_PATH] = {};
  char16_t second[MAX_PATH] = {};
  ASSERT_NE(os.files.GetTempFileNameW(folder.c_str(), u"K_Q", 0, first), 0u);
  ASSERT_NE(os.files.GetTempFileNameW(folder.c_str(), u"K_Q", 0, second), 0u);
  EXPECT_NE(std::u16string(first), std::u16string(second));
}

TEST_F(TempFiles, AGivenNumberIsUsedAndNothingIsMade) {
  char16_t name[MAX_PATH] = {};
  EXPECT_EQ(os.files.GetTempFileNameW(folder.c_str(), u"K_Q", 0x12, name), 0x12u);
  EXPECT_EQ(std::u16string(name), Path(u"K_Q12.tmp"));
  EXPECT_FALSE(Exists(u"K_Q12.tmp"));
}

TEST_F(TempFiles, AMissingFolderGetsNone) {
  char16_t name[MAX_PATH] = {};
  EXPECT_EQ(os.files.GetTempFileNameW(Path(u"missing").c_str(), u"K_Q", 0, name), 0u);
  EXPECT_EQ(LastError(), ERROR_DIRECTORY);
}

TEST_F(TempFiles, AFolderWhosePathLeavesNoRoomForANameGetsNone) {
  char16_t name[MAX_PATH] = {};
  const std::u16string longFolder = u"C:\\" + std::u16string(MAX_PATH - 14 - 3 + 1, u'x');
  EXPECT_EQ(os.files.GetTempFileNameW(longFolder.c_str(), u"K_Q", 0, name), 0u);
}

}  // namespace
}  // namespace platform
