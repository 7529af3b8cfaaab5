// Files: opening, reading and writing.
#include "tests/platform/platform_test.h"

namespace platform {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

constexpr std::uint32_t kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

class OpeningFiles : public ScratchFolderTest {
 protected:
  // Opens a path with a disposition and closes it again. The last error that the call left: of a
  // success too, for dispositions that tell by it whether the file existed.
  std::int32_t ErrorOf(std::uint32_t access, std::uint32_t disposition,
                       const std::u16string& path) {
    os.process.SetLastError(7777);
    const OwnedFile file(
        os.files.CreateFileW(path.c_str(), access, kShareAll, disposition, FILE_ATTRIBUTE_NORMAL));
    opened = static_cast<bool>(file);
    return LastError();
  }

  bool Exists(std::u16string_view name) {
    return os.files.GetFileAttributesW(Path(name).c_str()) != INVALID_FILE_ATTRIBUTES;
  }

  bool opened = false;
};

// --- Dispositions

TEST_F(OpeningFiles, AMissingFileIsToldFromAMissingFolder) {
  EXPECT_EQ(ErrorOf(GENERIC_READ, OPEN_EXISTING, Path(u"missing")), ERROR_FILE_NOT_FOUND);
  EXPECT_FALSE(opened);
  EXPECT_EQ(ErrorOf(GENERIC_READ, OPEN_EXISTING, Path(u"missing\\file")), ERROR_PATH_NOT_FOUND);
  EXPECT_FALSE(opened);
}

TEST_F(OpeningFiles, NoDispositionMakesAFolder) {
  for (const std::uint32_t disposition : {CREATE_NEW, CREATE_ALWAYS, OPEN_ALWAYS}) {
    EXPECT_EQ(ErrorOf(GENERIC_WRITE, disposition, Path(u"missing\\file")), ERROR_PATH_NOT_FOUND);
    EXPECT_FALSE(opened);
  }
}

TEST_F(OpeningFiles, AFailureGivesTheInvalidHandle) {
  EXPECT_EQ(os.files.CreateFileW(Path(u"missing").c_str(), GENERIC_READ, 0, OPEN_EXISTING, 0),
            INVALID_HANDLE_VALUE);
}

TEST_F(OpeningFiles, AFolderIsNoFile) {
  EXPECT_EQ(ErrorOf(GENERIC_READ, OPEN_EXISTING, folder), ERROR_ACCESS_DENIED);
  EXPECT_FALSE(opened);
}

TEST_F(OpeningFiles, CreateNewRefusesAFileThatExists) {
  ErrorOf(GENERIC_WRITE, CREATE_NEW, Path(u"file"));
  EXPECT_TRUE(opened);
  EXPECT_EQ(ErrorOf(GENERIC_WRITE, CREATE_NEW, Path(u"file")), ERROR_FILE_EXISTS);
  EXPECT_FALSE(opened);
}

TEST_F(OpeningFiles, CreateAlwaysTellsWhetherTheFileExisted) {
  EXPECT_EQ(ErrorOf(GENERIC_WRITE, CREATE_ALWAYS, Path(u"file")), 0);
  EXPECT_TRUE(opened);
  EXPECT_EQ(ErrorOf(GENERIC_WRITE, CREATE_ALWAYS, Path(u"file")), ERROR_ALREADY_EXISTS);
  EXPECT_TRUE(opened);
}

TEST_F(OpeningFiles, CreateAlwaysEmptiesAFileThatExisted) {
  MakeFile(u"file", "content");
  ErrorOf(GENERIC_WRITE, CREATE_ALWAYS, Path(u"file"));
  EXPECT_EQ(ReadFileBytes(u"file"), "");
}

TEST_F(OpeningFiles, OpenAlwaysTellsWhetherTheFileExisted) {
  EXPECT_EQ(ErrorOf(GENERIC_WRITE, OPEN_ALWAYS, Path(u"file")), 0);
  EXPECT_TRUE(opened);
  EXPECT_EQ(ErrorOf(GENERIC_WRITE, OPEN_ALWAYS, Path(u"file")), ERROR_ALREADY_EXISTS);
  EXPECT_TRUE(opened);
}

TEST_F(OpeningFiles, OpenAlwaysKeepsTheContent) {
  MakeFile(u"file", "content");
  ErrorOf(GENERIC_WRITE, OPEN_ALWAYS, Path(u"file"));
  EXPECT_EQ(ReadFileBytes(u"file"), "content");
}

// --- Names

TEST_F(OpeningFiles, NamesIgnoreCase) {
  MakeFile(u"Driver.Ini", "content");
  EXPECT_EQ(ReadFileBytes(u"DRIVER.ini"), "content");
}

TEST_F(OpeningFiles, ASlashSeparatesAsABackslashDoes) {
  machine.MakeFolder(Path(u"sub"));
  MakeFile(u"sub\\file", "content");
  EXPECT_EQ(ReadFileBytes(u"sub/file"), "content");
}

TEST_F(OpeningFiles, TwoDotsMeanTheFolderAbove) {
  machine.MakeFolder(Path(u"sub"));
  MakeFile(u"file", "content");
  EXPECT_EQ(ReadFileBytes(u"sub\\..\\.\\file"), "content");
}

TEST_F(OpeningFiles, NamesMayHoldLettersOfAnyLanguage) {
  MakeFile(u"\u05D0\u0645\u00FC \u65E5", "content");
  EXPECT_EQ(ReadFileBytes(u"\u05D0\u0645\u00FC \u65E5"), "content");
}

TEST_F(OpeningFiles, AWildcardIsNoName) {
  EXPECT_EQ(ErrorOf(GENERIC_WRITE, CREATE_ALWAYS, Path(u"a*b")), ERROR_INVALID_NAME);
  EXPECT_FALSE(opened);
  EXPECT_EQ(ErrorOf(GENERIC_READ, OPEN_EXISTING, Path(u"a?b")), ERROR_INVALID_NAME);
  EXPECT_FALSE(opened);
}

TEST_F(OpeningFiles, AnEmptyPathNamesNothing) {
  EXPECT_EQ(ErrorOf(GENERIC_READ, OPEN_EXISTING, u""), ERROR_PATH_NOT_FOUND);
  EXPECT_FALSE(opened);
}

// --- Read-only files

TEST_F(OpeningFiles, AReadOnlyFileIsNotOpenedForWriting) {
  ASSERT_TRUE(OwnedFile(os.files.CreateFileW(Path(u"file").c_str(), GENERIC_WRITE, 0, CREATE_NEW,
                                             FILE_ATTRIBUTE_READONLY)));
  for (const std::uint32_t disposition : {OPEN_EXISTING, OPEN_ALWAYS, CREATE_ALWAYS}) {
    EXPECT_EQ(ErrorOf(GENERIC_WRITE, disposition, Path(u"file")), ERROR_ACCESS_DENIED)
        << disposition;
    EXPECT_FALSE(opened);
  }
  ErrorOf(GENERIC_READ, OPEN_EXISTING, Path(u"file"));
  EXPECT_TRUE(opened);
}

TEST_F(OpeningFiles, AFileMadeReadOnlyCanBeWrittenThroughItsFirstHandle) {
  const OwnedFile file(os.files.CreateFileW(Path(u"file").c_str(), GENERIC_WRITE, 0, CREATE_NEW,
                                            FILE_ATTRIBUTE_READONLY));
  std::uint32_t written = 0;
  EXPECT_TRUE(os.files.WriteFile(file.get(), "abc", 3, &written));
  EXPECT_EQ(written, 3u);
}

// --- Sharing

struct Sharing {
  std::uint32_t firstAccess, firstShare, secondAccess, secondShare;
  bool allowed;
};

TEST_F(OpeningFiles, ASecondHandleMustAgreeWithTheFirstBothWays) {
  constexpr auto R = GENERIC_READ, W = GENERIC_WRITE;
  constexpr auto SR = FILE_SHARE_READ, SW = FILE_SHARE_WRITE;
  const Sharing cases[] = {
      {R, 0, R, kShareAll, false},   // the first shares nothing
      {R, SR, R, SR, true},          // two readers
      {R, SR, W, kShareAll, false},  // the first bears no writer
      {R, SR | SW, W, SR, true},     //
      {R, SR | SW, W, 0, false},     // the second bears no reader
      {R, SR | SW, W, SW, false},    //
      {W, SR, R, SR, false},         // the second bears no writer, the first is one
      {W, SR, R, SR | SW, true},     //
      {W, SR, W, kShareAll, false},  //
      {W, SW, W, SW, true},          // two writers
      {R | W, SR | SW, R | W, SR | SW, true},
      {R | W, SR, R, SR, false},
  };
  MakeFile(u"file");
  for (const Sharing& c : cases) {
    SCOPED_TRACE(testing::Message() << "case " << (&c - cases));
    const OwnedFile first = Open(u"file", c.firstAccess, c.firstShare);
    const OwnedFile second(os.files.CreateFileW(Path(u"file").c_str(), c.secondAccess,
                                                c.secondShare, OPEN_EXISTING,
                                                FILE_ATTRIBUTE_NORMAL));
    EXPECT_EQ(static_cast<bool>(second), c.allowed);
    if (!second) {
      EXPECT_EQ(LastError(), ERROR_SHARING_VIOLATION);
    }
  }
}

TEST_F(OpeningFiles, SharingIsToldBeforeTheFileIsEmptied) {
  MakeFile(u"file", "content");
  {
    const OwnedFile reading = Open(u"file", GENERIC_READ, FILE_SHARE_READ);
    EXPECT_EQ(ErrorOf(GENERIC_WRITE, CREATE_ALWAYS, Path(u"file")), ERROR_SHARING_VIOLATION);
    EXPECT_FALSE(opened);
  }
  EXPECT_EQ(ReadFileBytes(u"file"), "content");
}

TEST_F(OpeningFiles, SharingEndsWithTheHandle) {
  MakeFile(u"file");
  Open(u"file", GENERIC_WRITE, 0).Reset();
  EXPECT_TRUE(Open(u"file", GENERIC_WRITE, 0));
}

// --- Reading and writing

class FileContents : public ScratchFolderTest {
 protected:
  std::string Read(const OwnedFile& file, std::uint32_t bytes) {
    std::string data(bytes, '?');
    std::uint32_t read = 0;
    EXPECT_TRUE(os.files.ReadFile(file.get(), data.data(), bytes, &read));
    data.resize(read);
    return data;
  }

  void Write(const OwnedFile& file, std::string_view data) {
    std::uint32_t written = 0;
    EXPECT_TRUE(os.files.WriteFile(file.get(), data.data(), static_cast<std::uint32_t>(data.size()),
                                   &written));
    EXPECT_EQ(written, data.size());
  }
};

TEST_F(FileContents, EachReadGoesOnWhereTheLastEnded) {
  MakeFile(u"file", "one two");
  const OwnedFile file = Open(u"file", GENERIC_READ);
  EXPECT_EQ(Read(file, 4), "one ");
  EXPECT_EQ(Read(file, 100), "two");
}

TEST_F(FileContents, AReadAtTheEndSucceedsAndGivesNothing) {
  MakeFile(u"file", "x");
  const OwnedFile file = Open(u"file", GENERIC_READ);
  EXPECT_EQ(Read(file, 1), "x");
  EXPECT_EQ(Read(file, 10), "");
  EXPECT_EQ(Read(file, 10), "");
}

TEST_F(FileContents, BytesOfAnyKindComeBack) {
  const std::string bytes = "\0\r\n\x1A\xFF\xFE"s;
  MakeFile(u"file", bytes);
  EXPECT_EQ(ReadFileBytes(u"file"), bytes);
}

TEST_F(FileContents, WritingNothingSucceeds) {
  MakeFile(u"file", "content");
  Write(Open(u"file", GENERIC_WRITE), "");
  EXPECT_EQ(ReadFileBytes(u"file"), "content");
}

TEST_F(FileContents, WritingInTheMiddleReplacesOnlyThatMuch) {
  MakeFile(u"file", "0123456789");
  {
    const OwnedFile file = Open(u"file", GENERIC_WRITE);
    EXPECT_EQ(os.files.SetFilePointer(file.get(), 3, FILE_BEGIN), 3u);
    Write(file, "abc");
  }
  EXPECT_EQ(ReadFileBytes(u"file"), "012abc6789");
}

TEST_F(FileContents, WritingAtTheEndAppends) {
  MakeFile(u"file", "one");
  {
    const OwnedFile file = Open(u"file", GENERIC_WRITE);
    EXPECT_EQ(os.files.SetFilePointer(file.get(), 0, FILE_END), 3u);
    Write(file, " two");
  }
  EXPECT_EQ(ReadFileBytes(u"file"), "one two");
}

TEST_F(FileContents, AHandleThatMayOnlyAppendWritesAtTheEndWhereverItStands) {
  MakeFile(u"file", "one");
  {
    const OwnedFile file = Open(u"file", FILE_APPEND_DATA);
    Write(file, " two");
    os.files.SetFilePointer(file.get(), 0, FILE_BEGIN);
    Write(file, " three");
  }
  EXPECT_EQ(ReadFileBytes(u"file"), "one two three");
}

TEST_F(FileContents, AnAppendingHandleWritesAtTheEndWhereverOthersWrote) {
  // The right to read changes nothing in that: it is the right to write anywhere that would.
  for (const std::uint32_t access : {FILE_APPEND_DATA, GENERIC_READ | FILE_APPEND_DATA}) {
    SCOPED_TRACE(access);
    MakeFile(u"file", "one");
    {
      const OwnedFile first = Open(u"file", access, kShareAll);
      const OwnedFile second = Open(u"file", access, kShareAll);
      const OwnedFile anywhere = Open(u"file", GENERIC_WRITE, kShareAll);
      Write(first, " two");
      Write(second, " three");
      Write(first, " four");
      EXPECT_EQ(os.files.SetFilePointer(anywhere.get(), 0, FILE_END), 18u);
      Write(anywhere, " five");
      Write(second, " six");
    }
    EXPECT_EQ(ReadFileBytes(u"file"), "one two three four five six");
  }
}

TEST_F(FileContents, ASeekIsFromTheBeginningThePositionOrTheEnd) {
  MakeFile(u"file", "0123456789");
  const OwnedFile file = Open(u"file", GENERIC_READ);
  EXPECT_EQ(os.files.SetFilePointer(file.get(), 4, FILE_BEGIN), 4u);
  EXPECT_EQ(os.files.SetFilePointer(file.get(), -1, FILE_CURRENT), 3u);
  EXPECT_EQ(Read(file, 2), "34");
  EXPECT_EQ(os.files.SetFilePointer(file.get(), 2, FILE_CURRENT), 7u);
  EXPECT_EQ(os.files.SetFilePointer(file.get(), -1, FILE_END), 9u);
  EXPECT_EQ(Read(file, 2), "9");
}

TEST_F(FileContents, ASeekBeforeTheBeginningFailsAndLeavesThePosition) {
  MakeFile(u"file", "0123456789");
  const OwnedFile file = Open(u"file", GENERIC_READ);
  os.files.SetFilePointer(file.get(), 4, FILE_BEGIN);
  EXPECT_EQ(os.files.SetFilePointer(file.get(), -5, FILE_CURRENT), INVALID_SET_FILE_POINTER);
  EXPECT_EQ(LastError(), ERROR_NEGATIVE_SEEK);
  EXPECT_EQ(Read(file, 1), "4");
}

TEST_F(FileContents, ASeekBehindTheEndMakesTheFileLongerOnlyWhenSomethingIsWritten) {
  MakeFile(u"file", "ab");
  {
    const OwnedFile file = Open(u"file", GENERIC_WRITE);
    EXPECT_EQ(os.files.SetFilePointer(file.get(), 4, FILE_BEGIN), 4u);
    EXPECT_EQ(os.files.GetFileSize(file.get(), nullptr), 2u);
    Write(file, "cd");
    EXPECT_EQ(os.files.GetFileSize(file.get(), nullptr), 6u);
  }
  EXPECT_EQ(ReadFileBytes(u"file"), "ab\0\0cd"s);  // new bytes that were never written are zero
}

TEST_F(FileContents, SizeIsInBytesAndDoesNotMoveThePosition) {
  MakeFile(u"file", "content");
  const OwnedFile file = Open(u"file", GENERIC_READ);
  std::uint32_t high = 99;
  EXPECT_EQ(os.files.GetFileSize(file.get(), &high), 7u);
  EXPECT_EQ(high, 0u);
  EXPECT_EQ(Read(file, 3), "con");
}

TEST_F(FileContents, TwoHandlesHaveTwoPositionsAndOneContent) {
  MakeFile(u"file", "0123");
  const OwnedFile writing = Open(u"file", GENERIC_WRITE, kShareAll);
  const OwnedFile reading = Open(u"file", GENERIC_READ, kShareAll);
  Write(writing, "ab");
  EXPECT_EQ(Read(reading, 4), "ab23");
}

TEST_F(FileContents, AHandleForReadingDoesNotWriteAndTheOtherWayRound) {
  MakeFile(u"file", "0123");
  std::uint32_t count = 0;
  char data[4] = {};
  {
    const OwnedFile reading = Open(u"file", GENERIC_READ);
    EXPECT_FALSE(os.files.WriteFile(reading.get(), "x", 1, &count));
    EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
  }
  const OwnedFile writing = Open(u"file", GENERIC_WRITE);
  EXPECT_FALSE(os.files.ReadFile(writing.get(), data, 4, &count));
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
}

TEST_F(FileContents, AClosedHandleIsNoFile) {
  MakeFile(u"file", "0123");
  const HANDLE closed = Open(u"file", GENERIC_READ).Release();
  ASSERT_TRUE(os.objects.CloseHandle(closed));

  std::uint32_t read = 0;
  char data[4] = {};
  EXPECT_FALSE(os.files.ReadFile(closed, data, 4, &read));
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
  EXPECT_EQ(os.files.GetFileSize(closed, nullptr), INVALID_FILE_SIZE);
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
  EXPECT_EQ(os.files.SetFilePointer(closed, 0, FILE_BEGIN), INVALID_SET_FILE_POINTER);
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
}

}  // namespace
}  // namespace platform
