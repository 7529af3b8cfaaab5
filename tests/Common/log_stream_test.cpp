#include "Common/log_stream.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/sim/machine.h"

namespace vgl {
namespace {

constexpr char16_t kFile[] = u"C:\\logs\\x.log";

class LogStream : public testing::Test {
 protected:
  LogStream() { machine.files().MakeFolder(u"C:\\logs"); }

  sim::Machine machine;
  sim::Inside inside{machine};
};

TEST_F(LogStream, OpeningMakesAFileThatIsNotThere) {
  CLogStream stream;
  EXPECT_TRUE(stream.Open(kFile, CLogStream::Sharing::Everybody));
  EXPECT_EQ(machine.files().ReadFile(kFile), "");
}

TEST_F(LogStream, OpeningKeepsWhatAFileHolds) {
  machine.files().WriteFile(kFile, "old\r\n");
  CLogStream stream;
  EXPECT_TRUE(stream.Open(kFile, CLogStream::Sharing::Everybody));
  stream.Write(u"new\n");
  EXPECT_EQ(machine.files().ReadFile(kFile), "old\r\nnew\r\n");
}

TEST_F(LogStream, EveryWriteGoesToTheEndThatTheFileHasThen) {
  CLogStream first;
  CLogStream second;
  ASSERT_TRUE(first.Open(kFile, CLogStream::Sharing::Everybody));
  ASSERT_TRUE(second.Open(kFile, CLogStream::Sharing::Everybody));
  first.Write(u"1");
  second.Write(u"2");
  first.Write(u"3");
  EXPECT_EQ(machine.files().ReadFile(kFile), "123");
}

TEST_F(LogStream, EachNewlineBecomesTwoBytesEvenBehindACarriageReturn) {
  CLogStream stream;
  ASSERT_TRUE(stream.Open(kFile, CLogStream::Sharing::Everybody));
  stream.Write(u"\na\n\nb\r\n");
  EXPECT_EQ(machine.files().ReadFile(kFile), "\r\na\r\n\r\nb\r\r\n");
}

TEST_F(LogStream, BytesAreWrittenAsTheyAre) {
  CLogStream stream;
  ASSERT_TRUE(stream.Open(kFile, CLogStream::Sharing::Everybody));
  stream.WriteBytes("a\n\0\xFF", 4);
  EXPECT_EQ(machine.files().ReadFile(kFile), std::string("a\n\0\xFF", 4));
}

TEST_F(LogStream, AStreamThatIsNotOpenWritesNothing) {
  CLogStream stream;
  stream.Write(u"a");
  stream.WriteBytes("a", 1);
  EXPECT_FALSE(stream.IsOpen());
  EXPECT_EQ(inside.process().calls(), 0u);
}

TEST_F(LogStream, WritingNothingMakesNoCall) {
  CLogStream stream;
  ASSERT_TRUE(stream.Open(kFile, CLogStream::Sharing::Everybody));
  const auto calls = inside.process().calls();
  stream.Write(u"");
  stream.WriteBytes("", 0);
  EXPECT_EQ(inside.process().calls(), calls);
}

TEST_F(LogStream, DenyingWritersRefusesTheNextWriter) {
  CLogStream first;
  CLogStream second;
  ASSERT_TRUE(first.Open(kFile, CLogStream::Sharing::DenyWriters));
  EXPECT_FALSE(second.Open(kFile, CLogStream::Sharing::Everybody));
  EXPECT_FALSE(second.IsOpen());
}

TEST_F(LogStream, DenyingWritersLetsAReaderIn) {
  CLogStream stream;
  ASSERT_TRUE(stream.Open(kFile, CLogStream::Sharing::DenyWriters));
  const platform::OwnedFile reader(platform::Os().files.CreateFileW(
      kFile, platform::GENERIC_READ, platform::FILE_SHARE_READ | platform::FILE_SHARE_WRITE,
      platform::OPEN_EXISTING, platform::FILE_ATTRIBUTE_NORMAL));
  EXPECT_TRUE(reader);
}

TEST_F(LogStream, DenyingWritersCantOpenWhatAWriterHasOpen) {
  CLogStream first;
  CLogStream second;
  ASSERT_TRUE(first.Open(kFile, CLogStream::Sharing::Everybody));
  EXPECT_FALSE(second.Open(kFile, CLogStream::Sharing::DenyWriters));
}

TEST_F(LogStream, OpeningAnotherFileClosesTheFirst) {
  CLogStream stream;
  ASSERT_TRUE(stream.Open(kFile, CLogStream::Sharing::Everybody));
  ASSERT_TRUE(stream.Open(u"C:\\logs\\y.log", CLogStream::Sharing::Everybody));
  EXPECT_EQ(inside.process().Ledger().size(), 1u);
  stream.Write(u"b");
  EXPECT_EQ(machine.files().ReadFile(kFile), "");
  EXPECT_EQ(machine.files().ReadFile(u"C:\\logs\\y.log"), "b");
}

TEST_F(LogStream, TheEndOfTheScopeClosesTheFile) {
  {
    CLogStream stream;
    ASSERT_TRUE(stream.Open(kFile, CLogStream::Sharing::Everybody));
    EXPECT_EQ(inside.process().Ledger().size(), 1u);
  }
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(LogStream, AWriteIsOneCallAndTheCodePageAnother) {
  CLogStream stream;
  ASSERT_TRUE(stream.Open(kFile, CLogStream::Sharing::Everybody));
  const auto calls = inside.process().calls();
  stream.WriteBytes("ab", 2);
  EXPECT_EQ(inside.process().calls() - calls, 1u);
  stream.Write(u"c\nd\n");
  EXPECT_EQ(inside.process().calls() - calls, 3u);
  EXPECT_EQ(machine.files().ReadFile(kFile), "abc\r\nd\r\n");
}

TEST_F(LogStream, WhatAnotherWriterAppendsMeanwhileStays) {
  CLogStream stream;
  ASSERT_TRUE(stream.Open(kFile, CLogStream::Sharing::Everybody));
  stream.Write(u"1");
  const platform::OwnedFile writer(platform::Os().files.CreateFileW(
      kFile, platform::FILE_APPEND_DATA, platform::FILE_SHARE_READ | platform::FILE_SHARE_WRITE,
      platform::OPEN_EXISTING, platform::FILE_ATTRIBUTE_NORMAL));
  ASSERT_TRUE(writer);
  std::uint32_t written = 0;
  ASSERT_TRUE(platform::Os().files.WriteFile(writer.get(), "two", 3, &written));
  stream.Write(u"3");
  EXPECT_EQ(machine.files().ReadFile(kFile), "1two3");
}

TEST_F(LogStream, CharactersBecomeBytesOfTheSystemsCodePage) {
  CLogStream stream;
  ASSERT_TRUE(stream.Open(kFile, CLogStream::Sharing::Everybody));
  stream.Write(u"\u00E9\u20AC\u05D0\n");  // the machine's is 1252, which lacks the last one
  EXPECT_EQ(machine.files().ReadFile(kFile), "\xE9\x80?\r\n");
}

TEST_F(LogStream, ATextThatTheCodePageRefusesIsLeftOut) {
  CLogStream stream;
  ASSERT_TRUE(stream.Open(kFile, CLogStream::Sharing::Everybody));
  inside.process().FailNext("WideCharToMultiByte", platform::ERROR_INVALID_PARAMETER);
  stream.Write(u"lost\n");
  stream.Write(u"kept\n");
  EXPECT_EQ(machine.files().ReadFile(kFile), "kept\r\n");
}

TEST(TickColumn, ShowsMinutesSecondsAndMilliseconds) {
  EXPECT_EQ(TickColumn(0), u"    0:00.000; ");
  EXPECT_EQ(TickColumn(7), u"    0:00.007; ");
  EXPECT_EQ(TickColumn(59999), u"    0:59.999; ");
  EXPECT_EQ(TickColumn(60000), u"    1:00.000; ");
  EXPECT_EQ(TickColumn(3723004), u"   62:03.004; ");     // an hour is 60 minutes more, no column
  EXPECT_EQ(TickColumn(0xFFFFFFFF), u"71582:47.295; ");  // the last tick before the count wraps
}

TEST_F(LogStream, TheMutexExistsForTheScopeOnly) {
  {
    const CLogMutex mutex(u"Global\\Some");
    EXPECT_TRUE(mutex);
    EXPECT_TRUE(machine.objects().Exists(u"Global\\Some"));
  }
  EXPECT_FALSE(machine.objects().Exists(u"Global\\Some"));
}

TEST_F(LogStream, AMutexThatCantBeMadeTestsFalse) {
  inside.process().FailNext("CreateMutexW", platform::ERROR_ACCESS_DENIED);
  const CLogMutex mutex(u"Global\\Some");
  EXPECT_FALSE(mutex);
}

TEST_F(LogStream, AnUnknownFolderIsNothingAndSendsLogsToTheRootOfC) {
  machine.system().commonAppData.clear();
  EXPECT_EQ(CommonDataFolder(true), std::nullopt);
  EXPECT_EQ(VglLogPath(u"A.LOG"), u"C:\\A.LOG");
}

TEST_F(LogStream, LogsLieBelowTheCommonDataFolder) {
  machine.system().commonAppData = u"D:\\Common";
  machine.files().MakeFolder(u"D:\\Common");
  EXPECT_EQ(CommonDataFolder(false), u"D:\\Common");
  EXPECT_EQ(VglLogPath(u"A.LOG"), u"D:\\Common\\KAVRO\\VGL3\\A.LOG");
}

TEST_F(LogStream, AMissingFolderIsMadeOnlyWhereThatIsAskedFor) {
  machine.system().commonAppData = u"D:\\Common";
  EXPECT_EQ(CommonDataFolder(false), std::nullopt);
  EXPECT_FALSE(machine.files().Exists(u"D:\\Common"));
  EXPECT_EQ(CommonDataFolder(true), u"D:\\Common");
  EXPECT_TRUE(machine.files().Exists(u"D:\\Common"));
}

}  // namespace
}  // namespace vgl
