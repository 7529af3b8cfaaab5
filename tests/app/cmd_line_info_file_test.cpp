// Parameter files: which is read, what it adds, and when it goes.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "platform/owned.h"
#include "tests/app/record_fixture.h"

namespace vgl::test {
namespace {

class ParamFiles : public RecordTest {
 protected:
  void Write(const std::u16string& file, std::u16string_view text) {
    machine.files().WriteUtf16(file, text);
  }
  bool Exists(const std::u16string& file) { return machine.files().Exists(file); }

  const std::u16string path = u"C:\\params\\K_Q1A2B.tmp";
  const std::u16string start = u"/FU \"" + path + u"\"";
};

TEST_F(ParamFiles, AFilesOptionsAreAddedToThoseOfTheCommandLine) {
  Write(path, u"/D \"driver\"\n/S\n");
  const CCmdLineInfo info((u"/P \"printer\" /R " + start).c_str());
  EXPECT_EQ(Describe(info), u"P=[printer] D=[driver] FU=[" + path + u"] S R 0 EF0");
}

TEST_F(ParamFiles, AFilesOptionsComeAfterThoseOfTheCommandLineWhereverTheFileIsNamed) {
  Write(path, u"/P \"of the file\"");
  const CCmdLineInfo info((start + u" /P \"of the command line\"").c_str());
  EXPECT_EQ(info.m_szPrinterName, u"of the file");
}

TEST_F(ParamFiles, TheOptionThatNamesAFileIgnoresCaseToo) {
  Write(path, u"/P \"x\"");
  EXPECT_EQ(CCmdLineInfo((u"/fu \"" + path + u"\"").c_str()).m_szPrinterName, u"x");
  EXPECT_FALSE(Exists(path));
}

TEST_F(ParamFiles, TheFilesTextBecomesTheRawText) {
  Write(path, u"/P \"x\"\n");
  const CCmdLineInfo info(start.c_str());
  EXPECT_EQ(info.m_szCmdText, u"/P \"x\"\n");
}

TEST_F(ParamFiles, ParsingGives1WhenTheFileWasRead) {
  Write(path, u"/P \"x\"");
  CCmdLineInfo info;
  info.m_szCmdText = start;
  EXPECT_EQ(info.ParseCommandLine(), 1);
  EXPECT_EQ(info.m_szPrinterName, u"x");
}

TEST_F(ParamFiles, ValuesWithALengthSurviveAFile) {
  Write(path, u"/P12 \"a/b\" \\\\c \"d\"\"\n/O4 \"\"/R/\"\n/M2 \"KX\"\n/E");
  const CCmdLineInfo info(start.c_str());
  EXPECT_EQ(info.m_szPrinterName, u"a/b\" \\\\c \"d\"");
  EXPECT_EQ(info.m_szPortName, u"\"/R/");
  EXPECT_EQ(info.m_szModelID, u"KX");
  EXPECT_EQ(info.m_fE, 1);
  EXPECT_EQ(info.m_fRemove, 0);
}

TEST_F(ParamFiles, AFileIsGoneAfterUse) {
  Write(path, u"/P \"x\"");
  const CCmdLineInfo info(start.c_str());
  EXPECT_FALSE(Exists(path));
}

TEST_F(ParamFiles, AFileStaysWhenTheFileTellsOfARunEntry) {
  Write(path, u"/P \"x\"\n/EF \"HKLM\"\n");
  const CCmdLineInfo info(start.c_str());
  EXPECT_EQ(info.m_IconFrom, 2);
  EXPECT_TRUE(Exists(path));
}

TEST_F(ParamFiles, AFileStaysWhenTheCommandLineTellsOfARunEntry) {
  Write(path, u"/P \"x\"");
  const CCmdLineInfo info((start + u" /EF \"HKCU\"").c_str());
  EXPECT_EQ(info.m_IconFrom, 1);
  EXPECT_TRUE(Exists(path));
}

TEST_F(ParamFiles, AFileGoesWhenTheRunEntryIsOfAnotherSpelling) {
  Write(path, u"/EF \"HKCR\"");
  const CCmdLineInfo info(start.c_str());
  EXPECT_FALSE(Exists(path));
}

TEST_F(ParamFiles, OfSeveralFilesOnTheCommandLineTheLastCounts) {
  Write(u"C:\\a.tmp", u"/P \"a\"");
  Write(u"C:\\b.tmp", u"/P \"b\"");
  const CCmdLineInfo info(u"/FU \"C:\\a.tmp\" /FU \"C:\\b.tmp\"");
  EXPECT_EQ(info.m_szPrinterName, u"b");
  EXPECT_TRUE(Exists(u"C:\\a.tmp"));
  EXPECT_FALSE(Exists(u"C:\\b.tmp"));
}

TEST_F(ParamFiles, ANameWithoutAFolderIsFoundInTheTempFolder) {
  Write(tempFolder + u"K_Q7.tmp", u"/P \"x\"");
  const CCmdLineInfo info(u"/FU \"K_Q7.tmp\"");
  EXPECT_EQ(info.m_szPrinterName, u"x");
  EXPECT_EQ(info.m_szFileName, u"K_Q7.tmp");
  EXPECT_EQ(info.m_szTempPath, tempFolder);
  EXPECT_FALSE(Exists(tempFolder + u"K_Q7.tmp"));
}

TEST_F(ParamFiles, AFileFoundInTheTempFolderStaysForARunEntry) {
  Write(tempFolder + u"K_Q7.tmp", u"/EF \"HKCU\"");
  const CCmdLineInfo info(u"/FU \"K_Q7.tmp\"");
  EXPECT_EQ(info.m_IconFrom, 1);
  EXPECT_TRUE(Exists(tempFolder + u"K_Q7.tmp"));
}

TEST_F(ParamFiles, TheFileAsItIsNamedGoesBeforeOneInTheTempFolder) {
  Write(path, u"/P \"as named\"");
  Write(tempFolder + u"K_Q1A2B.tmp", u"/P \"temp\"");
  const CCmdLineInfo info(start.c_str());
  EXPECT_EQ(info.m_szPrinterName, u"as named");
  EXPECT_EQ(info.m_szTempPath, u"");
  EXPECT_TRUE(Exists(tempFolder + u"K_Q1A2B.tmp"));
}

TEST_F(ParamFiles, AMissingFileLeavesTheRecordAsTheCommandLineMadeIt) {
  CCmdLineInfo info;
  info.m_szCmdText = u"/P \"x\" /FU \"none.tmp\" /R";
  EXPECT_EQ(info.ParseCommandLine(), 0);
  EXPECT_EQ(Describe(info), u"P=[x] FU=[none.tmp] R 0 EF0");
  EXPECT_EQ(info.m_szTempPath, tempFolder);
  EXPECT_EQ(info.m_szCmdText, u"/P \"x\" /FU \"none.tmp\" /R");
}

TEST_F(ParamFiles, ATempFolderThatTheSystemDoesNotTellIsTheCurrentOne) {
  machine.system().tempFolder.clear();
  const CCmdLineInfo info(u"/FU \"none.tmp\"");
  EXPECT_EQ(info.m_szTempPath, u".\\");
}

TEST_F(ParamFiles, ATempFolderOf260CharactersCountsAsNone) {
  machine.system().tempFolder = u"C:\\" + std::u16string(256, u't') + u"\\";
  const CCmdLineInfo info(u"/FU \"none.tmp\"");
  EXPECT_EQ(info.m_szTempPath, u".\\");
}

TEST_F(ParamFiles, ALookIntoTheTempFolderAsksTheSystemForItAnew) {
  CCmdLineInfo info;
  info.m_szTempPath = u"C:\\old\\";
  info.m_szCmdText = u"/FU \"none.tmp\"";
  info.ParseCommandLine();
  EXPECT_EQ(info.m_szTempPath, tempFolder);
}

TEST_F(ParamFiles, AnEmptyFileNameCanNotBeRead) {
  CCmdLineInfo info;
  info.m_szCmdText = u"/R /FU";
  EXPECT_EQ(info.ParseCommandLine(), 0);
  EXPECT_EQ(Describe(info), u"R 0 EF0");
}

TEST_F(ParamFiles, AFolderCanNotBeReadAndStays) {
  machine.files().MakeFolder(u"C:\\params");
  CCmdLineInfo info;
  info.m_szCmdText = u"/FU \"C:\\params\"";
  EXPECT_EQ(info.ParseCommandLine(), 0);
  EXPECT_NE(platform::Os().files.GetFileAttributesW(u"C:\\params"),
            platform::INVALID_FILE_ATTRIBUTES);
}

TEST_F(ParamFiles, ANameThatDoesNotFitBehindTheTempFolderCanNotBeRead) {
  const std::u16string name(259 - tempFolder.size() + 1, u'n');
  CCmdLineInfo info;
  info.m_szCmdText = u"/R /FU \"" + name + u"\"";
  EXPECT_EQ(info.ParseCommandLine(), 0);
  EXPECT_EQ(Describe(info), u"FU=[" + name + u"] R 0 EF0");
}

TEST_F(ParamFiles, ANameThatJustFitsBehindTheTempFolderIsRead) {
  const std::u16string name(259 - tempFolder.size(), u'n');
  Write(tempFolder + name, u"/P \"x\"");
  EXPECT_EQ(CCmdLineInfo((u"/FU \"" + name + u"\"").c_str()).m_szPrinterName, u"x");
}

TEST_F(ParamFiles, AFileThatMayNotBeOpenedCanNotBeRead) {
  Write(path, u"/P \"x\"");
  machine.files().MakeUnreadable(path);
  CCmdLineInfo info;
  info.m_szCmdText = start + u" /R";
  EXPECT_EQ(info.ParseCommandLine(), 0);
  EXPECT_EQ(Describe(info), u"FU=[" + path + u"] R 0 EF0");
  EXPECT_TRUE(Exists(path));
}

TEST_F(ParamFiles, AFileOfTheTempFolderWhoseReadingFailsIsRemoved) {
  Write(tempFolder + u"K_Q7.tmp", u"/P \"x\"");
  inside.process().FailNext("ReadFile", platform::ERROR_ACCESS_DENIED);
  CCmdLineInfo info;
  info.m_szCmdText = u"/FU \"K_Q7.tmp\"";
  EXPECT_EQ(info.ParseCommandLine(), 0);
  EXPECT_EQ(info.m_szPrinterName, u"");
  EXPECT_FALSE(Exists(tempFolder + u"K_Q7.tmp"));
}

TEST_F(ParamFiles, AFileOfTheTempFolderWhoseReadingFailsIsRemovedEvenForARunEntry) {
  Write(tempFolder + u"K_Q7.tmp", u"/P \"x\"");
  inside.process().FailNext("ReadFile", platform::ERROR_ACCESS_DENIED);
  const CCmdLineInfo info(u"/EF \"HKLM\" /FU \"K_Q7.tmp\"");
  EXPECT_FALSE(Exists(tempFolder + u"K_Q7.tmp"));
}

TEST_F(ParamFiles, AFileOfTheTempFolderThatMayNotBeOpenedStays) {
  Write(tempFolder + u"K_Q7.tmp", u"/P \"x\"");
  machine.files().MakeUnreadable(tempFolder + u"K_Q7.tmp");
  CCmdLineInfo info;
  info.m_szCmdText = u"/R /FU \"K_Q7.tmp\"";
  EXPECT_EQ(info.ParseCommandLine(), 0);
  EXPECT_EQ(Describe(info), u"FU=[K_Q7.tmp] R 0 EF0");
  EXPECT_TRUE(Exists(tempFolder + u"K_Q7.tmp"));
}

TEST_F(ParamFiles, AFileElsewhereWhoseReadingFailsStays) {
  Write(path, u"/P \"x\"");
  inside.process().FailNext("ReadFile", platform::ERROR_ACCESS_DENIED);
  CCmdLineInfo info;
  info.m_szCmdText = start;
  EXPECT_EQ(info.ParseCommandLine(), 0);
  EXPECT_TRUE(Exists(path));
}

TEST_F(ParamFiles, AFileThatAnotherProgramWritesCanNotBeRead) {
  Write(path, u"/P \"x\"");
  const platform::OwnedFile writer(platform::Os().files.CreateFileW(
      path.c_str(), platform::GENERIC_WRITE, platform::FILE_SHARE_READ, platform::OPEN_EXISTING,
      platform::FILE_ATTRIBUTE_NORMAL));
  ASSERT_TRUE(static_cast<bool>(writer));
  CCmdLineInfo info;
  info.m_szCmdText = start;
  EXPECT_EQ(info.ParseCommandLine(), 0);
  EXPECT_EQ(info.m_szPrinterName, u"");
}

TEST_F(ParamFiles, AFileNamedInAFileIsReadInTurn) {
  Write(u"C:\\a.tmp", u"/P \"a\"\n/D \"a\"\n/FU \"C:\\b.tmp\"\n");
  Write(u"C:\\b.tmp", u"/D \"b\"\n/S\n");
  const CCmdLineInfo info(u"/P \"start\" /FU \"C:\\a.tmp\"");
  EXPECT_EQ(Describe(info), u"P=[a] D=[b] FU=[C:\\b.tmp] S 0 EF0");
  EXPECT_EQ(info.m_szCmdText, u"/D \"b\"\n/S\n");
  EXPECT_FALSE(Exists(u"C:\\a.tmp"));
  EXPECT_FALSE(Exists(u"C:\\b.tmp"));
}

TEST_F(ParamFiles, ARunEntryToldInAnInnerFileKeepsTheOuterOneToo) {
  Write(u"C:\\a.tmp", u"/FU \"C:\\b.tmp\"");
  Write(u"C:\\b.tmp", u"/EF \"HKCU\"");
  const CCmdLineInfo info(u"/FU \"C:\\a.tmp\"");
  EXPECT_EQ(Describe(info), u"FU=[C:\\b.tmp] 0 EF1");
  EXPECT_TRUE(Exists(u"C:\\a.tmp"));
  EXPECT_TRUE(Exists(u"C:\\b.tmp"));
}

TEST_F(ParamFiles, AnInnerFileThatIsMissingIsNoFailureOfTheOuterOne) {
  Write(path, u"/P \"x\"\n/FU \"none.tmp\"");
  CCmdLineInfo info;
  info.m_szCmdText = start;
  EXPECT_EQ(info.ParseCommandLine(), 1);
  EXPECT_EQ(Describe(info), u"P=[x] FU=[none.tmp] 0 EF0");
  EXPECT_FALSE(Exists(path));
}

TEST_F(ParamFiles, AFileThatNamesItselfIsReadOnce) {
  Write(path, u"/P \"x\"\n" + start + u"\n/S");
  inside.process().StopAfterCalls(1000);
  CCmdLineInfo info;
  info.m_szCmdText = start;
  EXPECT_EQ(info.ParseCommandLine(), 1);
  EXPECT_EQ(Describe(info), u"P=[x] FU=[" + path + u"] S 0 EF0");
  EXPECT_FALSE(Exists(path));
}

TEST_F(ParamFiles, AFileThatNamesItselfInOtherCaseIsReadOnce) {
  Write(u"C:\\a.tmp", u"/P \"x\"\n/FU \"c:\\A.TMP\"");
  inside.process().StopAfterCalls(1000);
  const CCmdLineInfo info(u"/FU \"C:\\a.tmp\"");
  EXPECT_EQ(info.m_szPrinterName, u"x");
  EXPECT_FALSE(Exists(u"C:\\a.tmp"));
}

TEST_F(ParamFiles, ItTakesNoMoreCallsWhenAFileNamesItselfInOtherCase) {
  const auto callsFor = [this](std::u16string_view text) {
    Write(u"C:\\a.tmp", text);
    const std::uint64_t before = inside.process().calls();
    const CCmdLineInfo info(u"/FU \"C:\\a.tmp\"");
    EXPECT_EQ(info.m_szPrinterName, u"x");
    EXPECT_FALSE(Exists(u"C:\\a.tmp"));
    return inside.process().calls() - before;
  };
  EXPECT_EQ(callsFor(u"/P \"x\"\n/FU \"c:\\A.TMP\""), callsFor(u"/P \"x\"\n/FU \"C:\\a.tmp\""));
}

TEST_F(ParamFiles, AFileThatNamesItselfByWayOfTheTempFolderIsReadOnce) {
  Write(tempFolder + u"K_Q7.tmp", u"/P \"x\"\n/FU \"K_Q7.tmp\"");
  inside.process().StopAfterCalls(1000);
  const CCmdLineInfo info((u"/FU \"" + tempFolder + u"K_Q7.tmp\"").c_str());
  EXPECT_EQ(info.m_szPrinterName, u"x");
  EXPECT_FALSE(Exists(tempFolder + u"K_Q7.tmp"));
}

TEST_F(ParamFiles, FilesThatNameEachOtherAreReadOnceEach) {
  Write(u"C:\\a.tmp", u"/P \"a\"\n/FU \"C:\\b.tmp\"");
  Write(u"C:\\b.tmp", u"/D \"b\"\n/FU \"C:\\c.tmp\"");
  Write(u"C:\\c.tmp", u"/O \"c\"\n/FU \"C:\\a.tmp\"\n/S");
  inside.process().StopAfterCalls(1000);
  CCmdLineInfo info;
  info.m_szCmdText = u"/R /FU \"C:\\a.tmp\"";
  EXPECT_EQ(info.ParseCommandLine(), 1);
  EXPECT_EQ(Describe(info), u"P=[a] D=[b] O=[c] FU=[C:\\a.tmp] S R 0 EF0");
  EXPECT_TRUE(machine.files().List().empty());
}

TEST_F(ParamFiles, ALongChainOfFilesIsFollowedToItsEnd) {
  const auto name = [](int number) {
    std::u16string file = u"C:\\chain\\";
    for (const char c : std::to_string(number)) file += static_cast<char16_t>(c);
    return file;
  };
  for (int i = 0; i < 1999; ++i) Write(name(i), u"/FU \"" + name(i + 1) + u"\"");
  Write(name(1999), u"/P \"the end\"");
  const CCmdLineInfo info((u"/FU \"" + name(0) + u"\"").c_str());
  EXPECT_EQ(info.m_szPrinterName, u"the end");
  EXPECT_TRUE(machine.files().List().empty());
}

TEST_F(ParamFiles, AFileNamedInOneParsingIsNotReadInTheNext) {
  Write(path, u"/EF \"HKLM\"");
  CCmdLineInfo info(start.c_str());
  Write(path, u"/P \"x\"");
  info.m_szCmdText = u"/R";
  EXPECT_EQ(info.ParseCommandLine(), 1);
  EXPECT_EQ(info.m_szFileName, path);
  EXPECT_EQ(info.m_szPrinterName, u"");
}

TEST_F(ParamFiles, AFileNamedInFrontOfAValueTooLongIsStillRead) {
  Write(path, u"/P \"x\"");
  const std::u16string tooLong(260, u'v');
  const CCmdLineInfo info((start + u" /D \"" + tooLong + u"\" /R").c_str());
  EXPECT_EQ(Describe(info), u"P=[x] FU=[" + path + u"] 0 EF0");
}

TEST_F(ParamFiles, AFileNameOf260CharactersNamesNoFile) {
  CCmdLineInfo info;
  info.m_szCmdText = u"/S /FU \"" + std::u16string(260, u'n') + u"\" /R";
  EXPECT_EQ(info.ParseCommandLine(), 1);
  EXPECT_EQ(Describe(info), u"S 0 EF0");
}

TEST_F(ParamFiles, AnEmptyFileAddsNothingAndGoes) {
  machine.files().WriteFile(path, "");
  CCmdLineInfo info;
  info.m_szCmdText = start + u" /R";
  EXPECT_EQ(info.ParseCommandLine(), 1);
  EXPECT_EQ(Describe(info), u"FU=[" + path + u"] R 0 EF0");
  EXPECT_EQ(info.m_szCmdText, u"");
  EXPECT_FALSE(Exists(path));
}

TEST_F(ParamFiles, AnOddLastByteCountsWithAZeroByteBehindIt) {
  machine.files().WriteFile(path, std::string("/\0S\0 \0/\0R", 9));
  EXPECT_EQ(Describe(CCmdLineInfo(start.c_str())), u"FU=[" + path + u"] S R 0 EF0");
}

TEST_F(ParamFiles, AFileOfOneByteIsOneCharacter) {
  machine.files().WriteFile(path, "/");
  EXPECT_EQ(CCmdLineInfo(start.c_str()).m_szCmdText, u"/");
}

TEST_F(ParamFiles, AByteOrderMarkIsACharacterLikeAnyOther) {
  Write(path, u"\uFEFF/P \"x\"");
  const CCmdLineInfo info(start.c_str());
  EXPECT_EQ(info.m_szPrinterName, u"x");
  EXPECT_EQ(info.m_szCmdText, u"\uFEFF/P \"x\"");
}

TEST_F(ParamFiles, AFileEndsAtItsFirstNul) {
  Write(path, std::u16string(u"/P \"x\"\0/R\0", 10));
  const CCmdLineInfo info(start.c_str());
  EXPECT_EQ(Describe(info), u"P=[x] FU=[" + path + u"] 0 EF0");
  EXPECT_EQ(info.m_szCmdText, u"/P \"x\"");
}

TEST_F(ParamFiles, AnEightBitFileNamesNoOptions) {
  machine.files().WriteFile(path, "/P \"x\" /R");
  EXPECT_EQ(Describe(CCmdLineInfo(start.c_str())), u"FU=[" + path + u"] 0 EF0");
}

TEST_F(ParamFiles, AFileOfAMegabyteIsReadToItsEnd) {
  const std::u16string line = u"/D \"driver\" /unknown \"value\"\n";
  std::u16string text;
  while (text.size() + line.size() < 524288) text += line;
  Write(path, text + u"/P \"x\"\n");
  EXPECT_EQ(Describe(CCmdLineInfo(start.c_str())), u"P=[x] D=[driver] FU=[" + path + u"] 0 EF0");
}

TEST_F(ParamFiles, AMegabyteWithoutAnyOptionIsNoTrouble) {
  Write(path, std::u16string(524288, u'"'));
  EXPECT_EQ(Describe(CCmdLineInfo(start.c_str())), u"FU=[" + path + u"] 0 EF0");
}

TEST_F(ParamFiles, AReadOnlyFileIsReadAndStays) {
  Write(path, u"/P \"x\"");
  machine.files().MakeReadOnly(path);
  CCmdLineInfo info;
  info.m_szCmdText = start;
  EXPECT_EQ(info.ParseCommandLine(), 1);
  EXPECT_EQ(info.m_szPrinterName, u"x");
  EXPECT_TRUE(Exists(path));
}

TEST(ParamFileRace, AFileThatShrinksWhileItIsReadCanNotBeRead) {
  // Another program makes the file shorter. When it comes to that is settled by the seed; in some
  // of the runs it happens between the asking for the size and the reading.
  const std::u16string path = u"C:\\a.tmp";
  int failures = 0;
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    sim::Machine machine(seed);
    machine.files().WriteUtf16(path, u"/P \"whole\"");
    machine.StartProcess(u"C:\\other.exe", u"", [&](const char16_t*) {
      for (int i = 0; i < 3; ++i) platform::Os().process.GetCurrentProcessId();
      if (machine.files().Exists(path)) machine.files().WriteUtf16(path, u"/P \"sho");
      return 0U;
    });
    sim::Inside inside(machine);
    CCmdLineInfo info;
    info.m_szCmdText = u"/FU \"" + path + u"\"";
    const int result = info.ParseCommandLine();
    if (result == 0) {
      EXPECT_EQ(info.m_szPrinterName, u"");
    } else {
      EXPECT_TRUE(info.m_szPrinterName == u"whole" || info.m_szPrinterName == u"sho");
    }
    failures += result == 0 ? 1 : 0;
  }
  EXPECT_GT(failures, 0);
}

TEST(ParamFileRace, TheOuterFileStaysOpenWhileAnInnerOneIsRead) {
  // Another program tries to write and to delete the outer file. Only a try that began and ended
  // while the inner one was open counts: the seeds see to it that there are such.
  int writes = 0;
  int deletions = 0;
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    sim::Machine machine(seed);
    machine.files().WriteUtf16(u"C:\\a.tmp", u"/EF \"HKCU\"\n/FU \"C:\\b.tmp\"");
    machine.files().WriteUtf16(u"C:\\b.tmp", u"/P \"x\"");
    sim::Inside inside(machine);
    const auto innerIsOpen = [&inside] {
      const auto open = inside.process().Ledger();
      return std::find(open.begin(), open.end(), u"file C:\\b.tmp") != open.end();
    };
    machine.StartProcess(u"C:\\other.exe", u"", [&](const char16_t*) {
      const platform::Platform& os = platform::Os();
      for (int turn = 0; turn < 40; ++turn) {
        os.process.GetCurrentProcessId();
        if (!innerIsOpen()) continue;
        const platform::OwnedFile writer(os.files.CreateFileW(
            u"C:\\a.tmp", platform::GENERIC_WRITE,
            platform::FILE_SHARE_READ | platform::FILE_SHARE_WRITE | platform::FILE_SHARE_DELETE,
            platform::OPEN_EXISTING, platform::FILE_ATTRIBUTE_NORMAL));
        if (!innerIsOpen()) break;
        EXPECT_FALSE(writer);
        EXPECT_EQ(os.process.GetLastError(), 32);
        ++writes;
        const bool deleted = os.files.DeleteFileW(u"C:\\a.tmp");
        if (!innerIsOpen()) break;
        EXPECT_FALSE(deleted);
        EXPECT_EQ(os.process.GetLastError(), 32);
        ++deletions;
      }
      return 0U;
    });
    const CCmdLineInfo info(u"/FU \"C:\\a.tmp\"");
    EXPECT_EQ(info.m_szPrinterName, u"x");
  }
  EXPECT_GT(writes, 10);
  EXPECT_GT(deletions, 5);
}

TEST_F(ParamFiles, NoFileIsLeftOpen) {
  Write(u"C:\\a.tmp", u"/FU \"C:\\b.tmp\"");
  Write(u"C:\\b.tmp", u"/EF \"HKLM\"\n/FU \"none.tmp\"");
  const CCmdLineInfo info(u"/FU \"C:\\a.tmp\"");
  EXPECT_EQ(Describe(info), u"FU=[none.tmp] 0 EF2");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

}  // namespace
}  // namespace vgl::test
