// samples/sketch-1100: the twenty faults that are marked in its files, and what becomes of each.
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <span>

#include "Common/KVRDEFREGISTRY.h"
#include "Common/reg_library.h"
#include "Common/text_conversion.h"
#include "desk/default_machine.h"
#include "desk/sample.h"
#include "desk/whole_file.h"
#include "platform/platform.h"
#include "profile/drv_file_locator.h"
#include "profile/drv_info_reader.h"
#include "profile/profile_keys.h"

namespace desk {
namespace {

using namespace platform;

constexpr char16_t kPrinter[] = u"Sketch 1100";
constexpr char16_t kDriver[] = u"KAVRO Sketch 1100";
constexpr char16_t kVif[] = u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\KS1100.VIF";
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

TEST_F(FaultySample, EachFaultIsMarkedOnce) {
  const std::regex mark("fault ([0-9]+):");
  std::map<int, int> marks;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(SampleFolder("sketch-1100"))) {
    if (entry.is_directory() || entry.path().filename() == "README.md") continue;
    std::string text = ReadWholeFile(entry.path()).value();
    if (text.starts_with("\xFF\xFE"))
      text = vgl::Utf8FromText(vgl::TextFromUtf16Le(std::as_bytes(std::span(text))));
    for (std::sregex_iterator at(text.begin(), text.end(), mark), end; at != end; ++at)
      ++marks[std::stoi((*at)[1])];
  }
  std::map<int, int> once;
  for (int fault = 1; fault <= 20; ++fault) once[fault] = 1;
  EXPECT_EQ(marks, once);
}

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
    EXPECT_EQ(reader.GetStringOfVif(kVif, key, name), text);
    EXPECT_EQ(reader.GetDwordOfVif(kVif, key, name), number);
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

// A VIF's path in small letters counts as having no folder: the SADat file is looked for by its
// name alone, and no text comes through.
TEST_F(FaultySample, AskedByAVifInSmallLettersItAnswersNumbersAlone) {
  constexpr char16_t kSmall[] = u"c:\\windows\\system32\\spool\\drivers\\x64\\3\\ks1100.vif";
  const vgl::CDrvInfoReader reader;
  EXPECT_EQ(reader.GetDwordOfVif(kSmall, kKey, u"Between"), -1);
  std::u16string sadat;
  ASSERT_EQ(vgl::CDrvFileLocator().GetSADatPath(kPrinter, &sadat), 1);
  machine.files().WriteFile(
      u"C:\\Program Files\\KAVRO\\KS1100_INSTALL_DESCRIPTION_OF_THE_SKETCH_1100_AND_1100_PLUS.DAT",
      machine.files().ReadFile(sadat).value());
  EXPECT_EQ(reader.GetDwordOfVif(kSmall, kKey, u"Between"), 1);
  EXPECT_EQ(reader.GetStringOfVif(kSmall, kKey, u"LaterSection"), u"");
}

template <class Registry>
void ExpectFaultsOfTheRegistry() {
  const Registry key(HKEY_LOCAL_MACHINE, kKey, false);
  EXPECT_TRUE(key.IsBinary(u"OddText"));
  EXPECT_EQ(key.GetSize(u"OddText"), 5U);
  EXPECT_EQ(key.GetString(u"OddText"), u"Odd");
  EXPECT_TRUE(key.IsString(u"QBAPI_VERSION"));
  EXPECT_EQ(key.GetDwordOrMinus1(u"QBAPI_VERSION"), 49U);
}

TEST_F(FaultySample, TextsAndNumbersOfTheRegistryAreTakenByTheirBytes) {  // faults 19 and 20
  ExpectFaultsOfTheRegistry<vgl::CRegistry>();
  ASSERT_EQ(vgl::LoadMonitorEnv(kDriver), 1);
  ExpectFaultsOfTheRegistry<vgl::CKvRdefRegistry>();
  vgl::ReleaseRegLibrary();
  EXPECT_TRUE(inside.process().Ledger().empty());
}

}  // namespace
}  // namespace desk
