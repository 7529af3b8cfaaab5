// Finding a monitored-printer record by its name.
#include <gtest/gtest.h>

#include <string>

#include "tests/Common/target_records_fixture.h"

namespace vgl {
namespace {

using namespace platform;

using TargetRecords = TargetRecordTest;

TEST_F(TargetRecords, RecordIsFoundByItsNameWithoutRegardToCase) {
  AddRecord(kPrinterBranch, u"P0000000000000000", u"Other");
  AddRecord(kPrinterBranch, u"P0000000000000001", u"STUDIO 7200");
  EXPECT_EQ(FindTargetKey(u"Studio 7200", false, path), 0);
  EXPECT_EQ(path.view(), u"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget\\P0000000000000001");
}

TEST_F(TargetRecords, FirstOfTwoRecordsOfOneNameCounts) {
  AddRecord(kPrinterBranch, u"P0000000000000003", u"a");
  AddRecord(kPrinterBranch, u"P0000000000000002", u"a");
  EXPECT_EQ(FindTargetKey(u"a", false, path), 0);
  EXPECT_TRUE(path.view().ends_with(u"P0000000000000002"));
}

TEST_F(TargetRecords, PortRecordsAreABranchOfTheirOwn) {
  AddRecord(kPrinterBranch, u"P0000000000000000", u"USB001");
  AddRecord(kPortBranch, u"P0000000000000007", u"USB001");
  EXPECT_EQ(FindTargetKey(u"USB001", true, path), 0);
  EXPECT_EQ(path.view(), u"Software\\KAVRO\\VGL3\\VGLData\\KVNTarget\\P0000000000000007");
}

TEST_F(TargetRecords, MissingNameGivesOneAndAnEmptyPath) {
  AddRecord(kPrinterBranch, u"P0000000000000000", u"a");
  ASSERT_TRUE(path.Assign(u"before"));
  EXPECT_EQ(FindTargetKey(u"b", false, path), 1);
  EXPECT_TRUE(path.empty());
}

TEST_F(TargetRecords, BranchThatDoesntOpenGivesFour) {
  EXPECT_EQ(FindTargetKey(u"a", false, path), 4);
}

TEST_F(TargetRecords, RecordWithoutANameIsPassedOver) {
  registry().MakeKey(kUser, std::u16string(kPrinterBranch) + u"\\P0000000000000000");
  AddRecord(kPrinterBranch, u"P0000000000000001", u"a");
  EXPECT_EQ(FindTargetKey(u"a", false, path), 0);
}

TEST_F(TargetRecords, NamesOf259And260CharactersMatchWithAndWithoutTheirTerminator) {
  for (const std::size_t length : {1U, 259U, 260U}) {
    const std::u16string name(length, u'n');
    AddRecord(kPrinterBranch, kFirst, name);
    EXPECT_EQ(FindTargetKey(name.c_str(), false, path), 0) << length;
    AddUnterminatedRecord(kPrinterBranch, kFirst, name);
    EXPECT_EQ(FindTargetKey(name.c_str(), false, path), 0) << length << " unterminated";
  }
}

TEST_F(TargetRecords, NameOf261CharactersMatchesNothing) {
  const std::u16string name(261, u'n');
  AddRecord(kPrinterBranch, kFirst, name);
  EXPECT_EQ(FindTargetKey(name.c_str(), false, path), 1);
  AddUnterminatedRecord(kPrinterBranch, kFirst, name);
  EXPECT_EQ(FindTargetKey(name.c_str(), false, path), 1);
  EXPECT_EQ(FindTargetKey(name.substr(0, 260).c_str(), false, path), 1);
}

TEST_F(TargetRecords, NameEndsAtItsFirstTerminator) {
  AddRecord(kPrinterBranch, kFirst, std::u16string_view(u"a\0b", 3));
  EXPECT_EQ(FindTargetKey(u"a", false, path), 0);
}

TEST_F(TargetRecords, NameOfAnOddNumberOfBytesEndsInAZeroByte) {
  registry().SetBytes(kUser, RecordPath(kPrinterBranch, kFirst), u"Name", REG_SZ,
                      std::string("a\0b", 3));
  EXPECT_EQ(FindTargetKey(u"ab", false, path), 0);
}

TEST_F(TargetRecords, NullNameIsAnEmptyOne) {
  AddRecord(kPrinterBranch, kFirst, u"a");
  EXPECT_EQ(FindTargetKey(nullptr, false, path), 1);
  AddRecord(kPrinterBranch, kSecond, u"");
  EXPECT_EQ(FindTargetKey(nullptr, false, path), 0);
}

TEST_F(TargetRecords, RecordThatDoesntOpenIsPassedOver) {
  AddRecord(kPrinterBranch, kFirst, u"a");
  registry().Deny(kUser, RecordPath(kPrinterBranch, kFirst), true);
  AddRecord(kPrinterBranch, kSecond, u"a");
  EXPECT_EQ(FindTargetKey(u"a", false, path), 0);
  EXPECT_EQ(path.view(), RecordPath(kPrinterBranch, kSecond));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(TargetRecords, EnumerationThatFailsEndsTheSearch) {
  AddRecord(kPrinterBranch, kFirst, u"a");
  inside.process().FailNext("RegEnumKeyExW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(FindTargetKey(u"a", false, path), 1);
}

TEST_F(TargetRecords, PathOf260CharactersDoesntFit) {
  const std::size_t branchLength = std::u16string_view(kPrinterBranch).size();
  const std::u16string fits(259 - branchLength - 1, u'k');
  AddRecord(kPrinterBranch, fits, u"a");
  EXPECT_EQ(FindTargetKey(u"a", false, path), 0);
  EXPECT_EQ(path.length(), 259U);
  registry().RemoveKey(kUser, std::u16string(kPrinterBranch) + u"\\" + fits);
  AddRecord(kPrinterBranch, fits + u"k", u"a");
  EXPECT_EQ(FindTargetKey(u"a", false, path), 1);
  EXPECT_TRUE(path.empty());
}

TEST(RunValueName, IsTheRecordsPathBelowTheDataBranch) {
  EXPECT_EQ(RunValueNameOfRecord(u"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget\\P0000000000000000"),
            u"KVLTarget\\P0000000000000000");
}

TEST(RunValueName, EveryOccurrenceOfTheBranchGoes) {
  EXPECT_EQ(
      RunValueNameOfRecord(u"Software\\KAVRO\\VGL3\\VGLData\\a\\Software\\KAVRO\\VGL3\\VGLData\\b"),
      u"a\\\\b");
}

TEST(RunValueName, IsEmptyWithoutARecord) { EXPECT_EQ(RunValueNameOfRecord(u""), u""); }

}  // namespace
}  // namespace vgl
