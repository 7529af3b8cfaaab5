// Starting programs by a command line.
#include <algorithm>
#include <optional>

#include "tests/platform/process_fixture.h"

namespace platform {
namespace {

// An end that takes longer than that never comes.
constexpr std::uint32_t kLongEnough = 60000;

class ProcessStarts : public ScratchFolderTest {
 protected:
  bool Start(std::u16string commandLine, ProcessInformation* started) {
    os.process.SetLastError(0);
    return os.process.CreateProcessW(commandLine.data(), started);
  }

  void WaitForEndOf(const ProcessInformation& started) {
    EXPECT_EQ(os.objects.WaitForSingleObject(started.process, kLongEnough), WAIT_OBJECT_0);
    EXPECT_TRUE(os.objects.CloseHandle(started.thread));
    EXPECT_TRUE(os.objects.CloseHandle(started.process));
  }

  // Whether that starts something; it has ended then.
  bool Runs(const std::u16string& commandLine) {
    ProcessInformation started;
    if (!Start(commandLine, &started)) return false;
    WaitForEndOf(started);
    return true;
  }

  // Why that starts nothing.
  std::int32_t ErrorOf(const std::u16string& commandLine) {
    return Runs(commandLine) ? ERROR_SUCCESS : LastError();
  }

  // What a program of MakeProgram was told, nothing when it hasn't run.
  std::optional<std::u16string> Told(std::u16string_view name) {
    const std::u16string file = std::u16string(name) + u".txt";
    if (os.files.GetFileAttributesW(Path(file).c_str()) == INVALID_FILE_ATTRIBUTES) return {};
    const std::string bytes = ReadFileBytes(file);
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
      text += static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                    static_cast<unsigned char>(bytes[i + 1]) << 8);
    }
    return text;
  }

  std::u16string Quoted(std::u16string_view name) { return u"\"" + Path(name) + u"\""; }
};

// --- What is started

TEST_F(ProcessStarts, AProgramIsToldWhatStandsBehindIt) {
  MakeProgram(Path(u"a b.exe"));
  EXPECT_TRUE(Runs(Quoted(u"a b.exe") + u" /child 0 \"x y\"  \u05D0z "));
  EXPECT_EQ(Told(u"a b.exe"), u"/child 0 \"x y\"  \u05D0z ");
}

TEST_F(ProcessStarts, APathWithoutBlanksNeedsNoQuotes) {
  MakeProgram(Path(u"a.exe"));
  EXPECT_TRUE(Runs(Path(u"a.exe") + u"\t/child 0 /FU"));
  EXPECT_EQ(Told(u"a.exe"), u"/child 0 /FU");
}

TEST_F(ProcessStarts, APathWithBlanksNeedsNoneEitherWhereNothingElseFits) {
  MakeProgram(Path(u"a b c.exe"));
  EXPECT_TRUE(Runs(Path(u"a b c.exe") + u" /child 0 /FU"));
  EXPECT_EQ(Told(u"a b c.exe"), u"/child 0 /FU");
}

TEST_F(ProcessStarts, WithoutQuotesTheShortestPathThatFitsIsStarted) {
  MakeProgram(Path(u"a.exe"));
  MakeProgram(Path(u"a b.exe"));
  EXPECT_TRUE(Runs(Path(u"a b.exe") + u" /child 0"));
  EXPECT_EQ(Told(u"a.exe"), u"/child 0");
  EXPECT_EQ(Told(u"a b.exe"), std::nullopt);
}

TEST_F(ProcessStarts, QuotesSayWhichPathIsMeant) {
  MakeProgram(Path(u"a.exe"));
  MakeProgram(Path(u"a b.exe"));
  EXPECT_TRUE(Runs(Quoted(u"a b.exe") + u" /child 0"));
  EXPECT_EQ(Told(u"a.exe"), std::nullopt);
  EXPECT_EQ(Told(u"a b.exe"), u"/child 0");
}

TEST_F(ProcessStarts, TheExtensionExeMayBeLeftOut) {
  MakeProgram(Path(u"a.exe"));
  MakeProgram(Path(u"b c.exe"));
  EXPECT_TRUE(Runs(Path(u"a") + u" /child 0"));
  EXPECT_TRUE(Runs(Quoted(u"b c") + u" /child 0"));
  EXPECT_EQ(Told(u"a.exe"), u"/child 0");
  EXPECT_EQ(Told(u"b c.exe"), u"/child 0");
}

TEST_F(ProcessStarts, AFolderOfThatNameIsPassedOver) {
  machine.MakeFolder(Path(u"a"));
  MakeProgram(Path(u"a b.exe"));
  EXPECT_TRUE(Runs(Path(u"a b.exe") + u" /child 0"));
  EXPECT_EQ(Told(u"a b.exe"), u"/child 0");
}

TEST_F(ProcessStarts, AFolderHidesTheProgramWhoseExtensionIsLeftOut) {
  machine.MakeFolder(Path(u"a"));
  MakeProgram(Path(u"a.exe"));
  EXPECT_FALSE(Runs(Path(u"a") + u" /child 0"));
  EXPECT_EQ(Told(u"a.exe"), std::nullopt);
}

TEST_F(ProcessStarts, AProgramOfTheSystemNeedsNoFolder) { EXPECT_TRUE(Runs(SystemCommand())); }

TEST_F(ProcessStarts, ALongCommandLineArrivesWhole) {
  MakeProgram(Path(u"a.exe"));
  std::u16string commandLine = Path(u"a.exe") + u" /child 0 ";
  commandLine.append(32766 - commandLine.size(), u'x');
  EXPECT_TRUE(Runs(commandLine));
  EXPECT_EQ(Told(u"a.exe")->size(), 32766 - Path(u"a.exe").size() - 1);
}

// --- What is given

TEST_F(ProcessStarts, TheNumbersOfProcessAndThreadAreNew) {
  MakeProgram(Path(u"a.exe"));
  ProcessInformation started;
  ASSERT_TRUE(Start(Path(u"a.exe") + u" /child 0", &started));
  EXPECT_NE(started.processId, 0u);
  EXPECT_NE(started.processId, os.process.GetCurrentProcessId());
  EXPECT_NE(started.threadId, 0u);
  EXPECT_NE(started.threadId, os.process.GetCurrentThreadId());
  WaitForEndOf(started);
}

TEST_F(ProcessStarts, TheHandlesAreFreeOnceTheProcessHasEnded) {
  MakeProgram(Path(u"a.exe"));
  ProcessInformation started;
  ASSERT_TRUE(Start(Path(u"a.exe") + u" /child 1000", &started));
  EXPECT_EQ(os.objects.WaitForSingleObject(started.process, 0), WAIT_TIMEOUT);
  EXPECT_EQ(os.objects.WaitForSingleObject(started.thread, 0), WAIT_TIMEOUT);
  EXPECT_EQ(os.objects.WaitForSingleObject(started.thread, kLongEnough), WAIT_OBJECT_0);
  EXPECT_EQ(os.objects.WaitForSingleObject(started.process, kLongEnough), WAIT_OBJECT_0);
  EXPECT_EQ(os.objects.WaitForSingleObject(started.process, 0), WAIT_OBJECT_0);
  WaitForEndOf(started);
}

TEST_F(ProcessStarts, AProcessGoesOnWithoutItsHandles) {
  MakeProgram(Path(u"a.exe"));
  ProcessInformation started;
  ASSERT_TRUE(Start(Path(u"a.exe") + u" /child 0", &started));
  EXPECT_TRUE(os.objects.CloseHandle(started.thread));
  EXPECT_TRUE(os.objects.CloseHandle(started.process));
  EXPECT_FALSE(os.objects.CloseHandle(started.process));
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
  EXPECT_TRUE(WaitUntil([&] { return Told(u"a.exe") == u"/child 0"; }));
  // Its file can be removed once it has ended.
  EXPECT_TRUE(WaitUntil([&] { return os.files.DeleteFileW(Path(u"a.exe").c_str()); }));
}

// --- What can't be started

TEST_F(ProcessStarts, AFileThatIsMissingIsNotStarted) {
  EXPECT_EQ(ErrorOf(Path(u"none.exe")), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(ErrorOf(Quoted(u"none.exe")), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(ErrorOf(Path(u"none none.exe")), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(ErrorOf(u"PlatformTestNone.exe"), ERROR_FILE_NOT_FOUND);
}

TEST_F(ProcessStarts, AFolderThatIsMissingIsTold) {
  // Wine says that the file is missing.
  EXPECT_TRUE(HoldsExcept(OnWine(), ErrorOf(Path(u"none\\x.exe")) == ERROR_PATH_NOT_FOUND));
}

TEST_F(ProcessStarts, OfSeveralThatAreTriedTheFirstSaysWhatIsWrong) {
  // "none" is no file of a folder that is there; that "none none" is no folder comes later.
  EXPECT_EQ(ErrorOf(Path(u"none none\\x.exe")), ERROR_FILE_NOT_FOUND);
}

TEST_F(ProcessStarts, AFolderIsNotStarted) {
  machine.MakeFolder(Path(u"a"));
  EXPECT_EQ(ErrorOf(Quoted(u"a")), ERROR_ACCESS_DENIED);
  // Wine doesn't find it without quotes.
  EXPECT_TRUE(HoldsExcept(OnWine(), ErrorOf(Path(u"a")) == ERROR_ACCESS_DENIED));
}

TEST_F(ProcessStarts, AFileThatIsNoProgramIsNotStarted) {
  MakeFile(u"note.txt", "text");
  MakeFile(u"empty.txt");
  EXPECT_EQ(ErrorOf(Path(u"note.txt")), ERROR_BAD_EXE_FORMAT);
  EXPECT_EQ(ErrorOf(Path(u"empty.txt")), ERROR_BAD_EXE_FORMAT);
}

TEST_F(ProcessStarts, AFileThatIsNoProgramIsTakenForTheOneThatIsMeant) {
  MakeFile(u"a", "text");
  MakeProgram(Path(u"a.exe"));
  MakeProgram(Path(u"a b.exe"));
  EXPECT_EQ(ErrorOf(Path(u"a b.exe") + u" /child 0"), ERROR_BAD_EXE_FORMAT);
  EXPECT_EQ(Told(u"a.exe"), std::nullopt);
  EXPECT_EQ(Told(u"a b.exe"), std::nullopt);
}

TEST_F(ProcessStarts, NothingStartsNothing) {
  EXPECT_EQ(ErrorOf(u"\"\""), ERROR_INVALID_PARAMETER);
  // Wine says that the file is missing.
  EXPECT_TRUE(HoldsExcept(OnWine(), ErrorOf(u"") == ERROR_INVALID_PARAMETER));
}

TEST_F(ProcessStarts, ACommandLineThatIsTooLongStartsNothing) {
  MakeProgram(Path(u"a.exe"));
  std::u16string commandLine = Path(u"a.exe") + u" /child 0 ";
  commandLine.append(32767 - commandLine.size(), u'x');
  EXPECT_TRUE(HoldsExcept(OnWine(), ErrorOf(commandLine) == ERROR_FILENAME_EXCED_RANGE))
      << LastError();
}

}  // namespace
}  // namespace platform
