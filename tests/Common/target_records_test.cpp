#include "Common/target_records.h"

#include <gtest/gtest.h>

#include "platform/sim/machine.h"

namespace vgl {
namespace {

using namespace platform;

constexpr HKEY kUser = HKEY_CURRENT_USER;

class TargetRecords : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  PathText path;

  void AddRecord(std::u16string_view branch, std::u16string_view number, std::u16string_view name) {
    machine.registry().SetString(kUser, std::u16string(branch) + u"\\" + std::u16string(number),
                                 u"Name", name);
  }
};

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
  machine.registry().MakeKey(kUser, std::u16string(kPrinterBranch) + u"\\P0000000000000000");
  AddRecord(kPrinterBranch, u"P0000000000000001", u"a");
  EXPECT_EQ(FindTargetKey(u"a", false, path), 0);
}

TEST_F(TargetRecords, NameOf260CharactersMatchesWithAndWithoutItsTerminator) {
  const std::u16string name(260, u'n');
  AddRecord(kPrinterBranch, u"P0000000000000000", name);
  EXPECT_EQ(FindTargetKey(name.c_str(), false, path), 0);

  const std::string bytes(reinterpret_cast<const char*>(name.data()), 520);
  machine.registry().SetBytes(kUser, std::u16string(kPrinterBranch) + u"\\P0000000000000000",
                              u"Name", REG_SZ, bytes);
  EXPECT_EQ(FindTargetKey(name.c_str(), false, path), 0);
}

TEST_F(TargetRecords, NameOf261CharactersMatchesNothing) {
  const std::u16string name(261, u'n');
  AddRecord(kPrinterBranch, u"P0000000000000000", name);
  EXPECT_EQ(FindTargetKey(name.c_str(), false, path), 1);
}

TEST_F(TargetRecords, PathOf260CharactersDoesntFit) {
  const std::size_t branchLength = std::u16string_view(kPrinterBranch).size();
  const std::u16string fits(259 - branchLength - 1, u'k');
  AddRecord(kPrinterBranch, fits, u"a");
  EXPECT_EQ(FindTargetKey(u"a", false, path), 0);
  EXPECT_EQ(path.length(), 259U);
  machine.registry().RemoveKey(kUser, std::u16string(kPrinterBranch) + u"\\" + fits);
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
