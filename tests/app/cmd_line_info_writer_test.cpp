// The record written back as a parameter file, and the removal of such files.
#include <gtest/gtest.h>

#include <string>

#include "platform/owned.h"
#include "tests/app/record_fixture.h"

namespace vgl::test {
namespace {

class RecordWriter : public RecordTest {
 protected:
  void SetUp() override { machine.files().MakeFolder(tempFolder); }

  std::u16string OutPath(const CCmdLineInfo& info) {
    return info.m_szTempPath + info.m_szOutFileName;
  }

  // The file that a record was written to, as text; what isn't UTF-16 without more shows.
  std::u16string Written(const CCmdLineInfo& info) {
    const auto bytes = machine.files().ReadFile(OutPath(info));
    if (!bytes) return u"(no file)";
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes->size(); i += 2)
      text += static_cast<char16_t>(static_cast<unsigned char>((*bytes)[i]) |
                                    static_cast<unsigned char>((*bytes)[i + 1]) << 8);
    if (bytes->size() % 2 != 0) text += u"(odd byte)";
    return text;
  }

  std::u16string WrittenAfter(const char16_t* options) {
    CCmdLineInfo info(options);
    EXPECT_EQ(info.WriteParamFile(), 1);
    return Written(info);
  }
};

TEST_F(RecordWriter, WritesEveryOptionInItsOrder) {
  CCmdLineInfo info;
  for (const TextOption& option : kTextOptions)
    info.*option.field = u"of " + std::u16string(option.name);
  for (const FlagOption& option : kFlagOptions) info.*option.field = 1;
  info.m_nHwnd = 66052;
  info.m_IconFrom = 2;

  EXPECT_EQ(info.WriteParamFile(), 1);

  EXPECT_EQ(Written(info),
            u"/P \"of P\"\n"
            u"/D \"of D\"\n"
            u"/O \"of O\"\n"
            u"/M \"of M\"\n"
            u"/J \"of JI\"\n"
            u"/JI \"of J\"\n"
            u"/S\n"
            u"/R\n"
            u"/E\n"
            u"/U\n"
            u"/C\n"
            u"/KVM \"of KVM\"\n"
            u"/I\n"
            u"/HWND \"66052\"\n"
            u"/SPL\n"
            u"/DP\n"
            u"/A\n"
            u"/T \"of T\"\n"
            u"/L \"of L\"\n"
            u"/N \"of N\"\n"
            u"/IC \"of IC\"\n"
            u"/CN \"of CN\"\n"
            u"/WPB \"of WPB\"\n"
            u"/ASMRT\n"
            u"/MA\n"
            u"/WA\n"
            u"/TC \"of TC\"\n"
            u"/PPOP\n"
            u"/X \"of X\"\n"
            u"/PS \"of PS\"\n"
            u"/BSR\n"
            u"/RP \"of RP\"\n"
            u"/TD\n"
            u"/PN\n"
            u"/PR\n"
            u"/MON\n");
}

TEST_F(RecordWriter, WritesNothingForTheDefaults) {
  CCmdLineInfo info;
  EXPECT_EQ(info.WriteParamFile(), 1);
  EXPECT_EQ(machine.files().ReadFile(OutPath(info)), "");
}

TEST_F(RecordWriter, WritesPlainUtf16WithoutMarkOrTerminator) {
  CCmdLineInfo info(u"/P \"\u20AC\"");
  EXPECT_EQ(info.WriteParamFile(), 1);
  EXPECT_EQ(machine.files().ReadFile(OutPath(info)),
            std::string("/\0P\0 \0\"\0\xAC\x20\"\0\n\0", 14));
}

TEST_F(RecordWriter, JAndJiChangePlacesOnTheirWayThrough) {
  EXPECT_EQ(WrittenAfter(u"/J \"of J\" /JI \"of JI\""), u"/J \"of JI\"\n/JI \"of J\"\n");
  EXPECT_EQ(WrittenAfter(u"/J \"of J\""), u"/JI \"of J\"\n");
}

TEST_F(RecordWriter, LeavesOutWhatOnlyTheReaderKnows) {
  EXPECT_EQ(WrittenAfter(u"/ZM /V \"x\" /EF \"HKLM\" /KVT \"x\" /R"), u"/R\n");
}

TEST_F(RecordWriter, SomeFlagsAreWrittenWhenTheyAreOtherThan0AndSomeWhenTheyAre1) {
  CCmdLineInfo info;
  for (const FlagOption& option : kFlagOptions) info.*option.field = 2;
  EXPECT_EQ(info.WriteParamFile(), 1);
  EXPECT_EQ(Written(info), u"/S\n/R\n/E\n/U\n/C\n/I\n/SPL\n");
}

TEST_F(RecordWriter, AWindowHandleIsWrittenAsSignedDecimalNumber) {
  CCmdLineInfo info;
  info.m_nHwnd = -17;
  EXPECT_EQ(info.WriteParamFile(), 1);
  EXPECT_EQ(Written(info), u"/HWND \"-17\"\n");
}

TEST_F(RecordWriter, AWindowHandleIsWrittenByIts32BitsAndTheyAreReadBack) {
  struct Case {
    std::intptr_t handle;
    const char16_t* line;
    std::intptr_t readBack;
  };
  const Case cases[] = {
      {0xF0010002, u"/HWND \"-268369918\"\n", -268369918},
      {-268369918, u"/HWND \"-268369918\"\n", -268369918},
      {0x80000000, u"/HWND \"-2147483648\"\n", -2147483648LL},
      {0x7FFFFFFF, u"/HWND \"2147483647\"\n", 2147483647},
      {0xFFFFFFFF, u"/HWND \"-1\"\n", -1},
      {0x100000005, u"/HWND \"5\"\n", 5},
      {0x5F0010002, u"/HWND \"-268369918\"\n", -268369918},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.handle);
    CCmdLineInfo info;
    info.m_nHwnd = c.handle;
    EXPECT_EQ(info.WriteParamFile(), 1);
    EXPECT_EQ(Written(info), c.line);
    EXPECT_EQ(CCmdLineInfo((u"/FU \"" + info.m_szOutFileName + u"\"").c_str()).m_nHwnd, c.readBack);
  }
}

TEST_F(RecordWriter, ALineOf275CharactersFits) {
  CCmdLineInfo info;
  info.m_szPrinterName = std::u16string(269, u'p');  // with /P, blank, quotes and line feed: 275
  EXPECT_EQ(info.WriteParamFile(), 1);
  EXPECT_EQ(Written(info), u"/P \"" + std::u16string(269, u'p') + u"\"\n");
}

TEST_F(RecordWriter, ALineOf276CharactersEndsTheWritingAndLeavesTheLinesInFront) {
  CCmdLineInfo info(u"/P \"x\" /R");
  info.m_szDriverName = std::u16string(270, u'd');
  EXPECT_EQ(info.WriteParamFile(), 0);
  EXPECT_EQ(Written(info), u"/P \"x\"\n");
}

TEST_F(RecordWriter, ALongerNameLeavesLessRoomForItsValue) {
  CCmdLineInfo info;
  info.m_szKVM = std::u16string(267, u'k');
  EXPECT_EQ(info.WriteParamFile(), 1);
  info.m_szKVM += u'k';
  EXPECT_EQ(info.WriteParamFile(), 0);
}

TEST_F(RecordWriter, TheThreeNamesAreStoredAndWritten) {
  CCmdLineInfo info(u"/P \"old\" /D \"driver\"");
  EXPECT_EQ(info.WriteParamFile(u"printer", u"port", u"KX1"), 1);
  EXPECT_EQ(Describe(info), u"P=[printer] D=[driver] O=[port] M=[KX1] 0 EF0");
  EXPECT_EQ(Written(info), u"/P \"printer\"\n/D \"driver\"\n/O \"port\"\n/M \"KX1\"\n");
}

TEST_F(RecordWriter, ANullNameCountsAsEmpty) {
  CCmdLineInfo info(u"/P \"old\" /O \"old\" /M \"old\" /R");
  EXPECT_EQ(info.WriteParamFile(nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(Written(info), u"/R\n");
}

TEST_F(RecordWriter, WithTheThreeNamesNoFileIsLeftOfAFailure) {
  CCmdLineInfo info;
  EXPECT_EQ(info.WriteParamFile(u"printer", std::u16string(270, u'o').c_str(), u"KX1"), 0);
  EXPECT_TRUE(machine.files().List().empty());
  EXPECT_EQ(info.m_szPrinterName, u"printer");
  EXPECT_EQ(info.m_szModelID, u"KX1");
}

TEST_F(RecordWriter, AFailedWriteIsAFailure) {
  CCmdLineInfo info(u"/R");
  inside.process().FailNext("WriteFile", platform::ERROR_ACCESS_DENIED);
  EXPECT_EQ(info.WriteParamFile(), 0);
  inside.process().FailNext("WriteFile", platform::ERROR_ACCESS_DENIED);
  EXPECT_EQ(info.WriteParamFile(u"printer", u"", u""), 0);
  EXPECT_FALSE(machine.files().Exists(OutPath(info)));
}

TEST_F(RecordWriter, AFileThatCanNotBeOpenedIsAFailure) {
  CCmdLineInfo info(u"/R");
  inside.process().FailNext("CreateFileW", platform::ERROR_ACCESS_DENIED);
  EXPECT_EQ(info.WriteParamFile(), 0);
}

TEST_F(RecordWriter, AWrittenRecordIsReadBack) {
  const char16_t options[] =
      u"/P \"printer\" /O \"port\" /M \"KX1\" /D \"driver\" /HWND \"-5\" /S /R /E /MON /T \"t\"";
  CCmdLineInfo info(options);
  ASSERT_EQ(info.WriteParamFile(), 1);
  CCmdLineInfo again((u"/FU \"" + info.m_szOutFileName + u"\"").c_str());
  again.m_szFileName.clear();
  EXPECT_EQ(Describe(again), u"P=[printer] D=[driver] O=[port] M=[KX1] T=[t] S R E MON -5 EF0");
  EXPECT_FALSE(machine.files().Exists(OutPath(info)));
}

TEST_F(RecordWriter, ANewNameIsOfTheTempFolderAndTheSuitesLetters) {
  CCmdLineInfo info;
  EXPECT_EQ(info.CreateParamFileName(), 1);
  EXPECT_EQ(info.m_szTempPath, tempFolder);
  const std::u16string name = info.m_szOutFileName;
  ASSERT_GE(name.size(), 8U);
  ASSERT_LE(name.size(), 11U);
  EXPECT_EQ(name.substr(0, 3), u"K_Q");
  EXPECT_EQ(name.substr(name.size() - 4), u".tmp");
  EXPECT_EQ(name.substr(3, name.size() - 7).find_first_not_of(u"0123456789ABCDEFabcdef"),
            std::u16string::npos);
  EXPECT_EQ(machine.files().ReadFile(tempFolder + name), "");
}

TEST_F(RecordWriter, ANewNameAsksTheSystemForTheTempFolderAnew) {
  CCmdLineInfo info;
  info.m_szTempPath = u"C:\\old\\";
  EXPECT_EQ(info.CreateParamFileName(), 1);
  EXPECT_EQ(info.m_szTempPath, tempFolder);
}

TEST_F(RecordWriter, EachNewNameIsAnother) {
  CCmdLineInfo info;
  ASSERT_EQ(info.CreateParamFileName(), 1);
  const std::u16string first = info.m_szOutFileName;
  ASSERT_EQ(info.CreateParamFileName(), 1);
  EXPECT_NE(info.m_szOutFileName, first);
}

TEST_F(RecordWriter, WithoutANewNameThereIsNoFileAndNoOldName) {
  CCmdLineInfo info;
  info.m_szOutFileName = u"old";
  inside.process().FailNext("GetTempFileNameW", platform::ERROR_ACCESS_DENIED);
  EXPECT_EQ(info.CreateParamFileName(), 0);
  EXPECT_EQ(info.m_szOutFileName, u"");
  inside.process().FailNext("GetTempFileNameW", platform::ERROR_ACCESS_DENIED);
  EXPECT_EQ(info.WriteParamFile(), 0);
  inside.process().FailNext("GetTempFileNameW", platform::ERROR_ACCESS_DENIED);
  EXPECT_EQ(info.WriteParamFile(u"p", u"o", u"m"), 0);
  EXPECT_TRUE(machine.files().List().empty());
}

TEST_F(RecordWriter, ATempFolderThatTheSystemDoesNotTellIsTheCurrentOne) {
  CCmdLineInfo info;
  inside.process().FailNext("GetTempPathW", platform::ERROR_NOT_ENOUGH_MEMORY);
  info.CreateParamFileName();
  EXPECT_EQ(info.m_szTempPath, u".\\");
}

using ParamFileRemoval = RecordTest;

TEST_F(ParamFileRemoval, RemovesAFileByItsPath) {
  machine.files().WriteFile(u"C:\\x\\a.tmp", "a");
  CCmdLineInfo info;
  EXPECT_EQ(info.DeleteParamFile(u"C:\\x\\a.tmp"), 1);
  EXPECT_FALSE(machine.files().Exists(u"C:\\x\\a.tmp"));
  EXPECT_EQ(info.m_szTempPath, tempFolder);
}

TEST_F(ParamFileRemoval, RemovesAFileOfTheTempFolderByItsName) {
  machine.files().WriteFile(tempFolder + u"a.tmp", "a");
  CCmdLineInfo info;
  EXPECT_EQ(info.DeleteParamFile(u"a.tmp"), 1);
  EXPECT_FALSE(machine.files().Exists(tempFolder + u"a.tmp"));
}

TEST_F(ParamFileRemoval, TheFilledTempFolderIsUsedAsItIs) {
  machine.files().WriteFile(u"C:\\other\\a.tmp", "a");
  machine.files().WriteFile(tempFolder + u"a.tmp", "a");
  CCmdLineInfo info;
  info.m_szTempPath = u"C:\\other\\";
  EXPECT_EQ(info.DeleteParamFile(u"a.tmp"), 1);
  EXPECT_FALSE(machine.files().Exists(u"C:\\other\\a.tmp"));
  EXPECT_TRUE(machine.files().Exists(tempFolder + u"a.tmp"));
}

TEST_F(ParamFileRemoval, Gives0ForAFileThatIsNotThere) {
  CCmdLineInfo info;
  EXPECT_EQ(info.DeleteParamFile(u"C:\\none.tmp"), 0);
  EXPECT_EQ(info.DeleteParamFile(u""), 0);
  EXPECT_EQ(info.DeleteParamFile(nullptr), 0);
  EXPECT_EQ(info.DeleteParamFile(std::u16string(300, u'n').c_str()), 0);
}

TEST_F(ParamFileRemoval, Gives0ForAFileThatMayNotGo) {
  machine.files().WriteFile(u"C:\\a.tmp", "a");
  machine.files().MakeReadOnly(u"C:\\a.tmp");
  CCmdLineInfo info;
  EXPECT_EQ(info.DeleteParamFile(u"C:\\a.tmp"), 0);
  EXPECT_TRUE(machine.files().Exists(u"C:\\a.tmp"));
}

TEST_F(ParamFileRemoval, AFileThatMayNotBeReadStays) {
  machine.files().WriteFile(u"C:\\a.tmp", "a");
  machine.files().MakeUnreadable(u"C:\\a.tmp");
  CCmdLineInfo info;
  EXPECT_EQ(info.DeleteParamFile(u"C:\\a.tmp"), 0);
  EXPECT_TRUE(machine.files().Exists(u"C:\\a.tmp"));
}

}  // namespace
}  // namespace vgl::test
