// How CDatTextFile comes by a file, and what it makes of files that are no data files.
#include <gtest/gtest.h>

#include <string>

#include "platform/owned.h"
#include "platform/sim/machine.h"
#include "profile/dat_text_file.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char16_t kPath[] = u"C:\\Driver\\model.sad";

class DatOpen : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  CDatTextFile file;

  void Write(std::string_view bytes) { machine.files().WriteFile(kPath, bytes); }
  OwnedFile OpenAsAnother(std::uint32_t access) {
    return OwnedFile(Os().files.CreateFileW(
        kPath, access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING, 0));
  }
  // The object's first line; empty when it has none.
  std::u16string FirstLine() {
    file.FindSection(u"");
    return FirstLineFromHere();
  }
  std::u16string FirstLineFromHere() {
    std::u16string line;
    file.ReadLine(line);
    return line;
  }
};

using DatBadInput = DatOpen;

TEST_F(DatOpen, AFileWithSomethingInItOpens) {
  Write("a");
  EXPECT_EQ(file.Open(kPath), 1);
  EXPECT_EQ(FirstLine(), u"a");
}

TEST_F(DatOpen, TheFileIsClosedAgain) {
  Write("a");
  ASSERT_EQ(file.Open(kPath), 1);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(DatOpen, AnEmptyPathFailsWithoutACall) {
  const std::uint64_t before = inside.process().calls();
  EXPECT_EQ(file.Open(u""), 0);
  EXPECT_EQ(inside.process().calls(), before);
}

TEST_F(DatOpen, AMissingFileFails) { EXPECT_EQ(file.Open(u"C:\\Driver\\missing.sad"), 0); }

TEST_F(DatOpen, AFolderFails) {
  machine.files().MakeFolder(u"C:\\Driver");
  EXPECT_EQ(file.Open(u"C:\\Driver"), 0);
}

TEST_F(DatOpen, AFileThatIsBeingWrittenFails) {
  Write("a");
  const OwnedFile writer = OpenAsAnother(GENERIC_WRITE);
  ASSERT_TRUE(writer);
  EXPECT_EQ(file.Open(kPath), 0);
}

TEST_F(DatOpen, AFileThatIsBeingReadOpens) {
  Write("a");
  const OwnedFile reader = OpenAsAnother(GENERIC_READ);
  ASSERT_TRUE(reader);
  EXPECT_EQ(file.Open(kPath), 1);
}

TEST_F(DatOpen, AReadThatFailsLeavesTheObjectEmpty) {
  Write("a");
  inside.process().FailNext("ReadFile", ERROR_ACCESS_DENIED);
  EXPECT_EQ(file.Open(kPath), 0);
  EXPECT_EQ(FirstLine(), u"");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(DatOpen, ReadsThatGiveAFewBytesAreRepeatedUntilAllHaveCome) {
  machine.files().WriteFile(u"C:\\Driver\\slow.sad", "[a]\nk=value\n");
  machine.files().LimitReads(3);
  ASSERT_EQ(file.Open(u"C:\\Driver\\slow.sad"), 1);
  std::u16string value;
  EXPECT_EQ(file.FindKey(u"k", value), 1);
  EXPECT_EQ(value, u"value");
}

TEST_F(DatOpen, AReadThatGivesNothingLeavesTheObjectEmpty) {
  machine.files().WriteFile(u"C:\\Driver\\slow.sad", "[a]\nk=value\n");
  machine.files().LimitReads(0);
  EXPECT_EQ(file.Open(u"C:\\Driver\\slow.sad"), 0);
  std::u16string line;
  EXPECT_EQ(file.ReadLine(line), 0);
}

TEST_F(DatOpen, AnUnknownSizeLeavesTheObjectEmpty) {
  Write("a");
  inside.process().FailNext("GetFileSize", ERROR_ACCESS_DENIED);
  EXPECT_EQ(file.Open(kPath), 0);
  EXPECT_EQ(FirstLine(), u"");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(DatOpen, AFailureForgetsTheFileHeldBefore) {
  Write("a");
  ASSERT_EQ(file.Open(kPath), 1);
  EXPECT_EQ(file.Open(u"C:\\Driver\\missing.sad"), 0);
  EXPECT_EQ(FirstLine(), u"");
  ASSERT_EQ(file.Open(kPath), 1);
  EXPECT_EQ(file.Open(u""), 0);
  EXPECT_EQ(FirstLine(), u"");
}

TEST_F(DatOpen, AnotherFileIsReadFromItsTop) {
  Write("a\nb\nc\n");
  ASSERT_EQ(file.Open(kPath), 1);
  std::u16string line;
  ASSERT_EQ(file.ReadLine(line), 1);
  Write("x\ny\n");
  ASSERT_EQ(file.Open(kPath), 1);
  ASSERT_EQ(file.ReadLine(line), 1);
  EXPECT_EQ(line, u"x");
}

TEST_F(DatOpen, WhatWasReadStaysWhenTheFileChanges) {
  Write("a");
  ASSERT_EQ(file.Open(kPath), 1);
  Write("b");
  EXPECT_EQ(FirstLine(), u"a");
}

TEST_F(DatOpen, AnObjectWithoutAFileHasNothing) {
  std::u16string text = u"before";
  EXPECT_EQ(file.FindSection(u"s"), 0);
  EXPECT_EQ(file.FindKey(u"k", text), 0);
  EXPECT_EQ(file.ReadLine(text), 0);
  EXPECT_EQ(file.ReadRawLine(text), 0);
  EXPECT_EQ(text, u"");
}

// --- Bad input

TEST_F(DatBadInput, AFileOfNoBytesDoesNotOpen) {
  Write("");
  EXPECT_EQ(file.Open(kPath), 0);
}

TEST_F(DatBadInput, AFileOfBlanksAndCommentsOpensAndHasNoLine) {
  Write(" \r\n;x\n\t;");
  EXPECT_EQ(file.Open(kPath), 1);
  std::u16string line;
  EXPECT_EQ(file.ReadLine(line), 0);
}

TEST_F(DatBadInput, ALineOfOneMebibyteIsALine) {
  Write("key=" + std::string(1 << 20, 'v'));
  ASSERT_EQ(file.Open(kPath), 1);
  std::u16string value;
  EXPECT_EQ(file.FindKey(u"key", value), 1);
  EXPECT_EQ(value, std::u16string(1 << 20, u'v'));
}

TEST_F(DatBadInput, AMebibyteOfShortLinesIsWalkedThrough) {
  for (const char* unit : {"\n", ";\n", "=\n", "[\r\n", "k=\n", "[x]\n"}) {
    std::string bytes;
    while (bytes.size() < (1 << 20)) bytes += unit;
    Write(bytes + "[s]\nlast=1\n");
    ASSERT_EQ(file.Open(kPath), 1);
    EXPECT_EQ(file.FindSection(u"s"), 1) << unit;
    EXPECT_EQ(FirstLineFromHere(), u"last=1") << unit;
  }
}

TEST_F(DatBadInput, AMebibyteOfNulsInCommentsEndsAtItsLastLine) {
  std::string bytes;
  while (bytes.size() < (1 << 20)) bytes += std::string(";\0", 2);
  Write(bytes + "\nlast=1\n");
  ASSERT_EQ(file.Open(kPath), 1);
  std::u16string value;
  EXPECT_EQ(file.FindKey(u"last", value), 1);
  EXPECT_EQ(value, u"1");
}

TEST_F(DatBadInput, AFileOfNulsIsOneLine) {
  Write(std::string(5, '\0'));
  ASSERT_EQ(file.Open(kPath), 1);
  EXPECT_EQ(FirstLine(), std::u16string(5, u'\0'));
}

TEST_F(DatBadInput, AByteOrderMarkIsPartOfTheFirstLine) {
  Write("\xEF\xBB\xBFkey=1\nkey=2\n");
  ASSERT_EQ(file.Open(kPath), 1);
  std::u16string value;
  EXPECT_EQ(file.FindKey(u"key", value), 1);
  EXPECT_EQ(value, u"2");
}

}  // namespace
}  // namespace vgl
