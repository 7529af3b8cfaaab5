// samples/sketch-1100: the twenty faults that are marked in its files, and what becomes of each.
#include <gtest/gtest.h>

#include "Common/REGISTRY.h"
#include "desk/default_machine.h"
#include "desk/sample.h"
#include "platform/platform.h"
#include "profile/drv_file_locator.h"
#include "profile/drv_info_reader.h"
#include "profile/profile_keys.h"

namespace desk {
namespace {

using namespace platform;

constexpr char16_t kPrinter[] = u"Sketch 1100";
constexpr char16_t kDriver[] = u"KAVRO Sketch 1100";
constexpr char16_t kKey[] = u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Sketch 1100";
constexpr char16_t kProfileKey[] = u"Software\\KAVRO\\VGL3\\Profile";

class FaultySample : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};

  void SetUp() override {
    std::string error;
    SetUpSuite(machine);
    ASSERT_TRUE(LoadSample(machine, SampleFolder("sketch-1100"), error)) << error;
  }
};

TEST_F(FaultySample, ItsDescriptionAnswersRowByRow) {
  const struct {
    int fault;
    const char16_t* key;
    const char16_t* name;
    std::u16string text;
    std::int64_t number;
  } rows[] = {
      {1, kKey, u"InBlankHeader", u"", -1},
      {2, u"Software\\KAVRO\\VGL3\\Unquoted", u"Answer", u"", -1},
      {3, u"Software\\KAVRO\\VGL3\\User", u"Answer", u"", -1},
      {4, kKey, u"TagWithoutPath", u"", -1},
      {5, kKey, u"Semicolon", u"", -1},
      {6, kKey, u"NoClosingQuote", u"", -1},
      {7, kKey, u"BlankBehindWord", u"", -1},
      {8, kKey, u"SmallLetters", u"", -1},
      {9, kKey, u"UnknownWord", u"", -1},
      {10, kKey, u"Twice", u"first", -1},
      {11, kKey, u"NoNumber", u"", 0},
      {12, kKey, u"InFrontOfNul", u"", 1},
      {12, kKey, u"BehindNul", u"", -1},
      {12, kKey, u"LineBehindNul", u"", 3},
      {13, kKey, u"HighBytes", u"caf\uFFE9", -1},
      {14, kKey, u"InFrontOfCr", u"", -1},
      {14, kKey, u"BehindCr", u"", -1},
      {15, kProfileKey, u"K1100", u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\KS1100.INI", -1},
      {16, kKey, u"LaterSection", u"found", -1},
      {17, kKey, u"BehindBrackets", u"", -1},
      // The registry's faults are none of the description's.
      {19, kKey, u"OddText", u"", -1},
      {20, kKey, u"QBAPI_VERSION", u"", -1},
  };
  HPRINTER handle{};
  ASSERT_TRUE(Os().spooler.OpenPrinterW(kPrinter, &handle, nullptr));
  const vgl::CDrvInfoReader reader;
  for (const auto& [fault, key, name, text, number] : rows) {
    SCOPED_TRACE("fault " + std::to_string(fault));
    EXPECT_EQ(reader.GetString(kPrinter, key, name), text);
    EXPECT_EQ(reader.GetDword(kPrinter, key, name), number);
    EXPECT_EQ(reader.GetStringOfDriver(kDriver, key, name), text);
    EXPECT_EQ(reader.GetDwordOfDriver(kDriver, key, name), number);
    EXPECT_EQ(reader.GetStringByHandle(handle, kPrinter, key, name), text);
    EXPECT_EQ(reader.GetDwordByHandle(handle, kPrinter, key, name), number);
  }
  EXPECT_TRUE(Os().spooler.ClosePrinter(handle));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(FaultySample, WhatStandsBetweenTheFaultsIsReadAsEver) {
  const vgl::CDrvInfoReader reader;
  EXPECT_EQ(reader.GetString(kPrinter, kKey, u"ModelID"), u"K1100");
  EXPECT_EQ(reader.GetString(kPrinter, kKey, u"InstallPath"),
            u"C:\\Windows\\system32\\spool\\drivers\\x64\\3");
  EXPECT_EQ(reader.GetDword(kPrinter, kKey, u"Between"), 1);
}

TEST_F(FaultySample, TheProfileThatIsntThereLeavesTheSettingsInTheDescription) {  // fault 15
  const std::u16string path = vgl::CDrvInfoReader().GetString(kPrinter, kProfileKey, u"K1100");
  EXPECT_FALSE(machine.files().Exists(path));
  EXPECT_FALSE(vgl::SettingsAreInRegistry(u"K1100", path.c_str()));
}

TEST_F(FaultySample, TheNameOfTheSADatIsCutTo63Characters) {  // fault 18
  std::u16string vif, sadat;
  ASSERT_EQ(vgl::CDrvFileLocator().GetVifPath(kPrinter, &vif), 1);
  EXPECT_EQ(vgl::ReadVifKey(vgl::kVifSADat, vif.c_str()),
            u"KS1100_INSTALL_DESCRIPTION_OF_THE_SKETCH_1100_AND_1100_PLUS.DAT");
  ASSERT_EQ(vgl::CDrvFileLocator().GetSADatPath(kPrinter, &sadat), 1);
  EXPECT_TRUE(machine.files().Exists(sadat));
}

TEST_F(FaultySample, TextsAndNumbersOfTheRegistryAreTakenByTheirBytes) {  // faults 19 and 20
  EXPECT_EQ(machine.registry().Bytes(HKEY_LOCAL_MACHINE, kKey, u"OddText")->size(), 9U);
  const vgl::CRegistry key(HKEY_LOCAL_MACHINE, kKey, false);
  EXPECT_EQ(key.GetString(u"OddText"), u"Odd");
  EXPECT_TRUE(key.IsString(u"QBAPI_VERSION"));
  EXPECT_EQ(key.GetDwordOrMinus1(u"QBAPI_VERSION"), 49U);
}

}  // namespace
}  // namespace desk
