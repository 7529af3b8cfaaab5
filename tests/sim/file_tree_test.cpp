// The simulated machine's files, as far as no other system's are like them: what a test sets up and
// looks at, faults, the trace, the ledger.
#include "platform/sim/file_tree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace sim {
namespace {

using namespace platform;
using namespace std::string_literals;
using Names = std::vector<std::u16string>;

// A program in C:\Work.
class SimFiles : public testing::Test {
 protected:
  SimFiles() { machine.files().MakeFolder(u"C:\\Work"); }

  OwnedFile Open(const char16_t* path, std::uint32_t access, std::uint32_t disposition) {
    return OwnedFile(
        Os().files.CreateFileW(path, access, FILE_SHARE_READ, disposition, FILE_ATTRIBUTE_NORMAL));
  }
  void Write(const OwnedFile& file, std::string_view bytes) {
    std::uint32_t written = 0;
    EXPECT_TRUE(Os().files.WriteFile(file.get(), bytes.data(),
                                     static_cast<std::uint32_t>(bytes.size()), &written));
    EXPECT_EQ(written, bytes.size());
  }
  bool Exists(const std::u16string& path) {
    return Os().files.GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
  }
  std::int32_t LastError() { return Os().process.GetLastError(); }
  // What has happened since the last time.
  Names Events() {
    Names texts;
    for (; m_seen < machine.trace().size(); ++m_seen) texts.push_back(machine.trace()[m_seen].text);
    return texts;
  }

  Machine machine;
  Inside inside{machine, u"C:\\Work\\test.exe"};

 private:
  std::size_t m_seen = 0;
};

// --- What a test sets up and looks at

TEST_F(SimFiles, ANewMachineHasItsFolders) {
  for (const auto folder :
       {u"C:\\", u"C:\\Windows", u"C:\\Windows\\System32", u"C:\\ProgramData", u"C:\\Program Files",
        u"C:\\Users\\User", u"C:\\Users\\User\\AppData\\Local\\Temp\\"})
    EXPECT_EQ(Os().files.GetFileAttributesW(folder), FILE_ATTRIBUTE_DIRECTORY);
  EXPECT_EQ(machine.files().List(), Names{});
}

TEST_F(SimFiles, AFileOfATestIsThereWithTheFoldersAboveIt) {
  machine.files().WriteFile(u"D:\\one\\Two\\file.txt", "content");
  EXPECT_EQ(Os().files.GetFileAttributesW(u"d:\\ONE\\two"), FILE_ATTRIBUTE_DIRECTORY);
  EXPECT_EQ(machine.files().ReadFile(u"D:\\one\\two\\FILE.TXT"), "content");
  EXPECT_EQ(machine.files().List(), (Names{u"D:\\one\\Two\\file.txt"}));
}

TEST_F(SimFiles, AFileOfATestIsReplaced) {
  machine.files().WriteFile(u"C:\\x", "first");
  machine.files().WriteFile(u"C:\\X", "2nd");
  EXPECT_EQ(machine.files().ReadFile(u"C:\\x"), "2nd");
  EXPECT_EQ(machine.files().List(), (Names{u"C:\\x"}));
}

TEST_F(SimFiles, WideTextHasItsLowByteFirstAndNoMark) {
  machine.files().WriteUtf16(u"C:\\x", u"A\u05D0");
  EXPECT_EQ(machine.files().ReadFile(u"C:\\x"), "A\0\xD0\x05"s);
}

TEST_F(SimFiles, AFolderIsRemovedWithAllThatIsInIt) {
  machine.files().WriteFile(u"C:\\a\\b\\x", "");
  machine.files().WriteFile(u"C:\\ab", "");
  machine.files().Remove(u"C:\\a");
  EXPECT_FALSE(machine.files().Exists(u"C:\\a"));
  EXPECT_FALSE(machine.files().Exists(u"C:\\a\\b"));
  EXPECT_EQ(machine.files().List(), (Names{u"C:\\ab"}));
}

TEST_F(SimFiles, WhatATestDoesIsNotInTheTrace) {
  machine.files().WriteFile(u"C:\\a\\x", "content");
  machine.files().Remove(u"C:\\a\\x");
  EXPECT_EQ(Events(), Names{});
}

TEST_F(SimFiles, AnUnreadableFileIsFoundButNotOpened) {
  machine.files().WriteFile(u"C:\\x", "content");
  machine.files().MakeUnreadable(u"C:\\x");
  for (const std::uint32_t access : {GENERIC_READ, GENERIC_WRITE}) {
    EXPECT_FALSE(Open(u"C:\\x", access, OPEN_EXISTING));
    EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
  }
  EXPECT_TRUE(Exists(u"C:\\x"));
  EXPECT_TRUE(Os().files.DeleteFileW(u"C:\\x"));
}

TEST_F(SimFiles, AReadOnlyFileIsReadOnly) {
  machine.files().WriteFile(u"C:\\x", "content");
  machine.files().MakeReadOnly(u"C:\\x");
  EXPECT_TRUE(Open(u"C:\\x", GENERIC_READ, OPEN_EXISTING));
  EXPECT_FALSE(Open(u"C:\\x", GENERIC_WRITE, OPEN_EXISTING));
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
  EXPECT_FALSE(Os().files.DeleteFileW(u"C:\\x"));
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
}

TEST_F(SimFiles, AFileThatIsTakenAwayWhileOpenCanBeReadOn) {
  machine.files().WriteFile(u"C:\\x", "content");
  const OwnedFile file = Open(u"C:\\x", GENERIC_READ, OPEN_EXISTING);
  machine.files().Remove(u"C:\\x");
  EXPECT_EQ(Os().files.GetFileSize(file.get(), nullptr), 7u);
  EXPECT_FALSE(Exists(u"C:\\x"));
}

// --- Paths

TEST_F(SimFiles, RelativePathsAreFromTheFolderOfTheProgram) {
  machine.files().WriteFile(u"C:\\Work\\sub\\x", "content");
  for (const auto path : {u"sub\\x", u".\\sub\\x", u"..\\Work\\sub/x", u"\\Work\\sub\\x",
                          u"C:sub\\x", u"C:\\Work\\\\sub\\x", u"\\\\?\\C:\\Work\\sub\\x"})
    EXPECT_TRUE(Exists(path)) << testing::PrintToString(path);
  EXPECT_FALSE(Exists(u"x"));
}

TEST_F(SimFiles, NothingIsAboveADrive) {
  machine.files().WriteFile(u"C:\\x", "");
  EXPECT_TRUE(Exists(u"C:\\..\\..\\x"));
}

TEST_F(SimFiles, AShareIsARootAsADriveIs) {
  machine.files().WriteFile(u"\\\\server\\share\\folder\\x", "");
  EXPECT_TRUE(Exists(u"\\\\SERVER\\share\\folder\\..\\..\\folder\\x"));
  EXPECT_FALSE(Exists(u"\\\\server\\other\\x"));
  EXPECT_EQ(LastError(), ERROR_PATH_NOT_FOUND);
}

TEST_F(SimFiles, AMissingDriveIsAMissingFolder) {
  EXPECT_FALSE(Exists(u"Q:\\x"));
  EXPECT_EQ(LastError(), ERROR_PATH_NOT_FOUND);
}

TEST_F(SimFiles, APathMayHave259Characters) {
  const std::u16string longest = u"C:\\" + std::u16string(256, u'x');
  EXPECT_TRUE(Open(longest.c_str(), GENERIC_WRITE, CREATE_NEW));
  EXPECT_FALSE(Open((longest + u'x').c_str(), GENERIC_WRITE, CREATE_NEW));
  EXPECT_EQ(LastError(), ERROR_PATH_NOT_FOUND);
  EXPECT_FALSE(Exists(longest + u'x'));
  EXPECT_EQ(LastError(), ERROR_PATH_NOT_FOUND);
}

TEST_F(SimFiles, TheStreamOfAFileIsAFileOfItsOwn) {
  EXPECT_TRUE(Open(u"C:\\Status:.bin", GENERIC_WRITE, CREATE_NEW));
  EXPECT_TRUE(Exists(u"C:\\status:.BIN"));
  EXPECT_FALSE(Exists(u"C:\\Status"));
}

TEST_F(SimFiles, AFileIsNoFolder) {
  machine.files().WriteFile(u"C:\\x", "");
  EXPECT_FALSE(Exists(u"C:\\x\\y"));
  EXPECT_EQ(LastError(), ERROR_PATH_NOT_FOUND);
  EXPECT_FALSE(Exists(u"C:\\x\\"));
  EXPECT_EQ(LastError(), ERROR_INVALID_NAME);
}

TEST_F(SimFiles, SearchesListAFolderInOrderOfNames) {
  for (const auto name : {u"b.dat", u"A.dat", u"c\\inner.dat", u"C.dat"})
    machine.files().WriteFile(std::u16string(u"D:\\") + name, "");
  Names found;
  FindData data;
  const OwnedFind search(Os().files.FindFirstFileW(u"D:\\*.*", &data));
  ASSERT_TRUE(search);
  do {
    found.emplace_back(data.name);
  } while (Os().files.FindNextFileW(search.get(), &data));
  EXPECT_EQ(found, (Names{u"A.dat", u"b.dat", u"c", u"C.dat"}));  // and no "." and ".." in a root
}

// --- Temp files

TEST_F(SimFiles, AnEmptyTempFolderOfTheMachineLetsTheCallFail) {
  machine.system().tempFolder.clear();
  char16_t path[MAX_PATH];
  EXPECT_EQ(Os().files.GetTempPathW(MAX_PATH, path), 0u);
}

TEST_F(SimFiles, TheTempFolderIsTheOneThatTheMachineHasNow) {
  machine.system().tempFolder = u"D:\\T";
  char16_t path[MAX_PATH];
  EXPECT_EQ(Os().files.GetTempPathW(MAX_PATH, path), 5u);
  EXPECT_EQ(std::u16string(path), u"D:\\T\\");
}

TEST_F(SimFiles, TheSameSeedGivesTheSameTempNames) {
  const auto name = [](std::uint64_t seed) {
    Machine other(seed);
    Names names;
    other.StartProcess(u"C:\\a.exe", u"", [&](const char16_t*) {
      char16_t path[MAX_PATH];
      for (int i = 0; i < 3; ++i) {
        EXPECT_NE(Os().files.GetTempFileNameW(u"C:\\", u"K_Q", 0, path), 0u);
        names.emplace_back(path);
      }
      return 0u;
    });
    other.Settle();
    return names;
  };
  EXPECT_EQ(name(7).size(), 3u);
  EXPECT_EQ(name(7), name(7));
  EXPECT_NE(name(7), name(8));
}

TEST_F(SimFiles, ATempNameThatIsTakenIsPassedOver) {
  char16_t path[MAX_PATH];
  const std::uint32_t number = Os().files.GetTempFileNameW(u"C:\\", u"K_Q", 0, path);
  ASSERT_NE(number, 0u);
  Machine same;  // draws the same number
  same.files().WriteFile(path, "taken");
  std::uint32_t next = 0;
  same.StartProcess(u"C:\\a.exe", u"", [&](const char16_t*) {
    next = Os().files.GetTempFileNameW(u"C:\\", u"K_Q", 0, path);
    return 0u;
  });
  same.Settle();
  EXPECT_EQ(next, number % 0xFFFF + 1);
}

TEST_F(SimFiles, ATempFileNeedsAFolderThatLeavesRoomForItsName) {
  char16_t path[MAX_PATH];
  const std::u16string folder = u"C:\\" + std::u16string(244, u'x');
  EXPECT_EQ(Os().files.GetTempFileNameW(folder.c_str(), u"K_Q", 0, path), 0u);
  EXPECT_EQ(LastError(), ERROR_BUFFER_OVERFLOW);
}

// --- The trace

TEST_F(SimFiles, AFileThatWasWrittenIsTracedOnceWhenItIsClosed) {
  OwnedFile file = Open(u"C:\\Work\\x", GENERIC_WRITE, CREATE_ALWAYS);
  Write(file, "12345");
  Write(file, "678");
  EXPECT_EQ(Events(), Names{});
  file.Reset();
  EXPECT_EQ(Events(), (Names{u"wrote 8 bytes to C:\\Work\\x"}));
}

TEST_F(SimFiles, WritingBehindTheOldEndIsAppending) {
  machine.files().WriteFile(u"C:\\x", "old");
  OwnedFile file = Open(u"C:\\X", GENERIC_WRITE, OPEN_ALWAYS);
  Os().files.SetFilePointer(file.get(), 0, FILE_END);
  Write(file, "12345");
  file.Reset();
  EXPECT_EQ(Events(), (Names{u"appended 5 bytes to C:\\x"}));

  file = Open(u"C:\\x", GENERIC_WRITE, OPEN_ALWAYS);
  Os().files.SetFilePointer(file.get(), 0, FILE_END);
  Write(file, "1");
  Os().files.SetFilePointer(file.get(), 0, FILE_BEGIN);
  Write(file, "2");
  file.Reset();
  EXPECT_EQ(Events(), (Names{u"wrote 2 bytes to C:\\x"}));
}

TEST_F(SimFiles, AFileThatWasMadeOrEmptiedIsTracedWithoutAnyWriting) {
  Open(u"C:\\x", GENERIC_WRITE, CREATE_NEW);
  EXPECT_EQ(Events(), (Names{u"made C:\\x"}));
  machine.files().WriteFile(u"C:\\x", "content");
  Open(u"C:\\x", GENERIC_WRITE, CREATE_ALWAYS);
  EXPECT_EQ(Events(), (Names{u"emptied C:\\x"}));
}

TEST_F(SimFiles, ReadingIsNotTraced) {
  machine.files().WriteFile(u"C:\\x", "content");
  OwnedFile file = Open(u"C:\\x", GENERIC_READ, OPEN_EXISTING);
  char data[10];
  std::uint32_t read = 0;
  EXPECT_TRUE(Os().files.ReadFile(file.get(), data, 10, &read));
  file.Reset();
  EXPECT_EQ(Events(), Names{});
}

TEST_F(SimFiles, TempFilesAndDeletionsAreTraced) {
  char16_t path[MAX_PATH];
  ASSERT_NE(Os().files.GetTempFileNameW(u"C:\\Work", u"K_Q", 0, path), 0u);
  EXPECT_EQ(Events(), (Names{u"made "s + path}));
  EXPECT_TRUE(Os().files.DeleteFileW(path));
  EXPECT_EQ(Events(), (Names{u"deleted file "s + path}));
}

TEST_F(SimFiles, WhatWasWrittenIsToldWhenTheFileIsClosed) {
  std::vector<std::string> told;
  machine.files().OnAppend(
      [&](std::uint32_t processId, const std::u16string& path, std::string_view newBytes) {
        EXPECT_EQ(processId, inside.process().id());
        EXPECT_EQ(path, u"C:\\x.log");
        told.emplace_back(newBytes);
      });
  for (const auto line : {"one\r\n", "two\r\n"}) {
    const OwnedFile log = Open(u"C:\\x.log", FILE_APPEND_DATA, OPEN_ALWAYS);
    Write(log, line);
    Write(log, "+");
  }
  Open(u"C:\\x.log", GENERIC_READ, OPEN_EXISTING);
  EXPECT_EQ(told, (std::vector<std::string>{"one\r\n+", "two\r\n+"}));
}

// --- Handles and faults

TEST_F(SimFiles, TheLedgerNamesOpenFilesAndSearches) {
  const OwnedFile file = Open(u"C:\\x", GENERIC_WRITE, CREATE_NEW);
  FindData data;
  const OwnedFind search(Os().files.FindFirstFileW(u"c:\\*", &data));
  EXPECT_EQ(inside.process().Ledger(), (Names{u"file C:\\x", u"search c:\\*"}));
}

TEST_F(SimFiles, ASearchIsNotClosedAsAFileNorAFileAsASearch) {
  const OwnedFile file = Open(u"C:\\x", GENERIC_WRITE, CREATE_NEW);
  FindData data;
  const OwnedFind search(Os().files.FindFirstFileW(u"C:\\*", &data));
  EXPECT_FALSE(Os().objects.CloseHandle(HANDLE{static_cast<std::uint64_t>(search.get())}));
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
  EXPECT_FALSE(Os().files.FindClose(HFIND{static_cast<std::uint64_t>(file.get())}));
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
}

TEST_F(SimFiles, AProcessThatEndsGivesUpItsFiles) {
  Process& other = machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    const OwnedFile file(Os().files.CreateFileW(u"C:\\x", GENERIC_WRITE, 0, CREATE_NEW, 0));
    std::uint32_t written = 0;
    EXPECT_TRUE(Os().files.WriteFile(file.get(), "abc", 3, &written));
    Os().process.Sleep(INFINITE);
    return 0u;
  });
  machine.Settle();
  EXPECT_FALSE(Open(u"C:\\x", GENERIC_READ, OPEN_EXISTING));
  EXPECT_EQ(LastError(), ERROR_SHARING_VIOLATION);

  machine.EndProcess(other);

  EXPECT_EQ(other.Ledger(), (Names{u"file C:\\x"}));
  EXPECT_TRUE(Open(u"C:\\x", GENERIC_READ, OPEN_EXISTING));
  EXPECT_EQ(machine.files().ReadFile(u"C:\\x"), "abc");
}

TEST_F(SimFiles, EveryCallThatIsToFailFailsAndChangesNothing) {
  machine.files().WriteFile(u"C:\\x", "content");
  const OwnedFile file = Open(u"C:\\x", GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING);
  char16_t path[MAX_PATH] = {};
  std::uint32_t count = 99;
  FindData data;
  Files& files = Os().files;
  const std::pair<const char*, std::function<bool()>> calls[] = {
      {"CreateFileW", [&] { return static_cast<bool>(Open(u"C:\\n", GENERIC_WRITE, CREATE_NEW)); }},
      {"ReadFile", [&] { return files.ReadFile(file.get(), path, 1, &count); }},
      {"WriteFile", [&] { return files.WriteFile(file.get(), "x", 1, &count); }},
      {"GetFileSize", [&] { return files.GetFileSize(file.get(), nullptr) != INVALID_FILE_SIZE; }},
      {"SetFilePointer",
       [&] { return files.SetFilePointer(file.get(), 1, FILE_BEGIN) != INVALID_SET_FILE_POINTER; }},
      {"DeleteFileW", [&] { return files.DeleteFileW(u"C:\\x"); }},
      {"FindFirstFileW",
       [&] { return static_cast<bool>(OwnedFind(files.FindFirstFileW(u"C:\\*", &data))); }},
      {"GetFileAttributesW", [&] { return Exists(u"C:\\x"); }},
      {"GetTempPathW", [&] { return files.GetTempPathW(MAX_PATH, path) != 0; }},
      {"GetTempFileNameW", [&] { return files.GetTempFileNameW(u"C:\\", u"K_Q", 0, path) != 0; }},
  };
  for (const auto& [name, succeeds] : calls) {
    inside.process().FailCall(1);
    EXPECT_FALSE(succeeds()) << name;
    EXPECT_EQ(inside.process().failedOperation(), name);
    EXPECT_NE(LastError(), ERROR_SUCCESS) << name;
  }
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(machine.files().List(), (Names{u"C:\\x"}));
  EXPECT_EQ(machine.files().ReadFile(u"C:\\x"), "content");
  EXPECT_EQ(Events(), Names{});
}

TEST_F(SimFiles, ACallFailsWithTheErrorThatTheTestNames) {
  inside.process().FailNext("CreateFileW", ERROR_DISK_FULL);
  EXPECT_FALSE(Open(u"C:\\x", GENERIC_WRITE, CREATE_NEW));
  EXPECT_EQ(LastError(), ERROR_DISK_FULL);
}

TEST_F(SimFiles, AFileDoesNotOutgrowTheDisk) {
  const OwnedFile file = Open(u"C:\\x", GENERIC_WRITE, CREATE_NEW);
  EXPECT_EQ(Os().files.SetFilePointer(file.get(), INT32_MAX, FILE_BEGIN), 0x7FFFFFFFu);
  std::uint32_t written = 99;
  EXPECT_FALSE(Os().files.WriteFile(file.get(), "x", 1, &written));
  EXPECT_EQ(LastError(), ERROR_DISK_FULL);
  EXPECT_EQ(written, 0u);
}

}  // namespace
}  // namespace sim
