#include "profile/profile_keys.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/sim/machine.h"

namespace vgl {
namespace {

constexpr char16_t kPath[] = u"C:\\Driver\\file.dat";

class ProfileKeys : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};

  void Write(const std::string& text) { machine.files().WriteFile(kPath, text); }
  void WriteKey(const std::string& section, const std::string& key, const std::string& value) {
    Write("[" + section + "]\r\n" + key + "=" + value + "\r\n");
  }
};

// --- VIF

TEST_F(ProfileKeys, EachVifKeyStandsInItsSection) {
  Write(
      "[CommonDrvInfo]\r\nSADat=S.DAT\r\nKVRDEF01=R.DLL\r\nLMWModule=L.DLL\r\n"
      "[VersionInformation]\r\nDriverName=KAVRO S\r\n"
      "[InkChg]\r\nINKCHGEXE=I.EXE\r\n"
      "[Download]\r\nUPPILOTEXE=N.EXE\r\n");
  EXPECT_EQ(ReadVifKey(kVifSADat, kPath), u"S.DAT");
  EXPECT_EQ(ReadVifKey(kVifRegistryLibrary, kPath), u"R.DLL");
  EXPECT_EQ(ReadVifKey(kVifLmwLibrary, kPath), u"L.DLL");
  EXPECT_EQ(ReadVifKey(kVifDriverName, kPath), u"KAVRO S");
  EXPECT_EQ(ReadVifKey(kVifInkChangeProgram, kPath), u"I.EXE");
  EXPECT_EQ(ReadVifKey(kVifNetPilotProgram, kPath), u"N.EXE");
}

TEST_F(ProfileKeys, ShortVifValuesAreCutTo63Characters) {
  WriteKey("CommonDrvInfo", "SADat", std::string(64, 'x'));
  EXPECT_EQ(ReadVifKey(kVifSADat, kPath), std::u16string(63, u'x'));
  WriteKey("CommonDrvInfo", "KVRDEF01", std::string(64, 'x'));
  EXPECT_EQ(ReadVifKey(kVifRegistryLibrary, kPath), std::u16string(63, u'x'));
  WriteKey("VersionInformation", "DriverName", std::string(64, 'x'));
  EXPECT_EQ(ReadVifKey(kVifDriverName, kPath), std::u16string(63, u'x'));
}

TEST_F(ProfileKeys, NamesOfProgramsAreCutTo259Characters) {
  WriteKey("InkChg", "INKCHGEXE", std::string(260, 'x'));
  EXPECT_EQ(ReadVifKey(kVifInkChangeProgram, kPath), std::u16string(259, u'x'));
  WriteKey("Download", "UPPILOTEXE", std::string(260, 'x'));
  EXPECT_EQ(ReadVifKey(kVifNetPilotProgram, kPath), std::u16string(259, u'x'));
  WriteKey("CommonDrvInfo", "LMWModule", std::string(260, 'x'));
  EXPECT_EQ(ReadVifKey(kVifLmwLibrary, kPath), std::u16string(259, u'x'));
}

TEST_F(ProfileKeys, AMissingFileSectionOrKeyGivesAnEmptyText) {
  EXPECT_EQ(ReadVifKey(kVifSADat, kPath), u"");
  WriteKey("Other", "SADat", "x");
  EXPECT_EQ(ReadVifKey(kVifSADat, kPath), u"");
  WriteKey("CommonDrvInfo", "Other", "x");
  EXPECT_EQ(ReadVifKey(kVifSADat, kPath), u"");
}

TEST_F(ProfileKeys, NoPathGivesAnEmptyTextOrZeroWithoutACall) {
  const std::uint64_t before = inside.process().calls();
  for (const char16_t* path : {static_cast<const char16_t*>(nullptr), u""}) {
    EXPECT_EQ(ReadVifKey(kVifSADat, path), u"");
    EXPECT_EQ(ReadNonNtDataFile(u"s", path), u"");
    EXPECT_EQ(ReadModelNumber(kProfileUsageLog, u"M", path), 0U);
    EXPECT_FALSE(SettingsAreInRegistry(u"M", path));
  }
  EXPECT_EQ(inside.process().calls(), before);
}

TEST_F(ProfileKeys, TheNonNtDataFileIsTheFirstFieldOfKey52) {
  WriteKey("KAVRO S", "52", "S.DAT,1,2");
  EXPECT_EQ(ReadNonNtDataFile(u"KAVRO S", kPath), u"S.DAT");
  WriteKey("KAVRO S", "52", "S.DAT");
  EXPECT_EQ(ReadNonNtDataFile(u"KAVRO S", kPath), u"S.DAT");
  WriteKey("KAVRO S", "52", ",S.DAT");
  EXPECT_EQ(ReadNonNtDataFile(u"KAVRO S", kPath), u"");
}

TEST_F(ProfileKeys, TheNonNtDataFileIsCutTo63CharactersBeforeItsCommaIsLookedFor) {
  WriteKey("s", "52", std::string(70, 'x') + ",y");
  EXPECT_EQ(ReadNonNtDataFile(u"s", kPath), std::u16string(63, u'x'));
}

TEST_F(ProfileKeys, ANullSectionIsNoListOfSections) {
  WriteKey("s", "52", "x");
  EXPECT_EQ(ReadNonNtDataFile(nullptr, kPath), u"");
  EXPECT_EQ(ReadSADatKey(nullptr, u"52", kPath), u"");
  EXPECT_EQ(ReadSADatKey(u"s", nullptr, kPath), u"");
  EXPECT_EQ(ReadModelNumber(nullptr, nullptr, kPath), 0U);
}

// --- Data file and SADat file

TEST_F(ProfileKeys, TheUtilityModuleHasTheCallersRoom) {
  WriteKey("CommonDrvInfo", "UtilModuleI", "UTIL.DLL");
  EXPECT_EQ(ReadUtilityModule(kPath, 260), u"UTIL.DLL");
  EXPECT_EQ(ReadUtilityModule(kPath, 5), u"UTIL");
  EXPECT_EQ(ReadUtilityModule(kPath, 1), u"");
  EXPECT_EQ(ReadUtilityModule(kPath, 0), u"");
}

TEST_F(ProfileKeys, TheOldUtilityModuleIsKey40OfTheDriversSectionUncut) {
  WriteKey("KAVRO S", "40", "UTIL.DLL,,1");
  EXPECT_EQ(ReadOldUtilityModule(u"KAVRO S", kPath, 260), u"UTIL.DLL,,1");
}

TEST_F(ProfileKeys, TheUtilityNameStandsInTheModelsSection) {
  Write("[Other]\r\nUTILITY=no\r\n[S7200]\r\nUTILITY=" + std::string(260, 'u') + "\r\n");
  EXPECT_EQ(ReadUtilityName(u"S7200", kPath), std::u16string(259, u'u'));
}

TEST_F(ProfileKeys, AnySADatKeyIsCutTo127Characters) {
  WriteKey("Any", "Key", std::string(128, 'x'));
  EXPECT_EQ(ReadSADatKey(u"Any", u"Key", kPath), std::u16string(127, u'x'));
}

TEST_F(ProfileKeys, QuotesAroundAValueGo) {
  WriteKey("Any", "Key", "\"a b\"");
  EXPECT_EQ(ReadSADatKey(u"Any", u"Key", kPath), u"a b");
}

// --- Profile

TEST_F(ProfileKeys, AModelsValuesStandInItsOwnSection) {
  Write(
      "[S7100]\r\nTrayIconEnable=9\r\n"
      "[S7200]\r\nTrayIconEnable=1\r\nTrayIconSelected=2\r\nTrayIconEndTime=600000\r\n"
      "NetPilotCheckTime=5000\r\nVGL_LOG=4\r\nBmpDll=B.DLL\r\nPrnDll=P.DLL\r\n");
  EXPECT_EQ(ReadModelNumber(kProfileTrayIconEnable, u"S7200", kPath), 1U);
  EXPECT_EQ(ReadModelNumber(kProfileTrayIconSelected, u"S7200", kPath), 2U);
  EXPECT_EQ(ReadModelNumber(kProfileTrayIconEndTime, u"S7200", kPath), 600000U);
  EXPECT_EQ(ReadModelNumber(kProfileNetPilotCheckTime, u"S7200", kPath), 5000U);
  EXPECT_EQ(ReadModelNumber(kProfileUsageLog, u"S7200", kPath), 4U);
  EXPECT_EQ(ReadModelText(kProfileBitmapLibrary, u"S7200", kPath), u"B.DLL");
  EXPECT_EQ(ReadModelText(kProfilePrinterLibrary, u"S7200", kPath), u"P.DLL");
}

TEST_F(ProfileKeys, WhatAModelDoesntSayIsZeroOrEmpty) {
  WriteKey("S7200", "Other", "1");
  EXPECT_EQ(ReadModelNumber(kProfileTrayIconEnable, u"S7200", kPath), 0U);
  EXPECT_EQ(ReadModelNumber(kProfileTrayIconEnable, u"S7100", kPath), 0U);
  EXPECT_EQ(ReadModelText(kProfileBitmapLibrary, u"S7200", kPath), u"");
}

TEST_F(ProfileKeys, AModelsFileNamesAreCutTo259Characters) {
  WriteKey("M", "BmpDll", std::string(260, 'x'));
  EXPECT_EQ(ReadModelText(kProfileBitmapLibrary, u"M", kPath), std::u16string(259, u'x'));
}

TEST_F(ProfileKeys, AFileIsReadAnewEachTime) {
  WriteKey("M", "BmpDll", "a");
  EXPECT_EQ(ReadModelText(kProfileBitmapLibrary, u"M", kPath), u"a");
  WriteKey("M", "BmpDll", "b");
  EXPECT_EQ(ReadModelText(kProfileBitmapLibrary, u"M", kPath), u"b");
}

// --- Registry or install description

TEST_F(ProfileKeys, ExactlyOneMeansTheRegistry) {
  for (const char* value : {"1", " 1 ", "0x1", "\"1\""}) {
    WriteKey("S7200", "RegistryBaseVGL", value);
    EXPECT_TRUE(SettingsAreInRegistry(u"S7200", kPath)) << value;
  }
}

TEST_F(ProfileKeys, AnyOtherNumberMeansTheInstallDescription) {
  for (const char* value : {"0", "2", "-1", "11", "", "yes"}) {
    WriteKey("S7200", "RegistryBaseVGL", value);
    EXPECT_FALSE(SettingsAreInRegistry(u"S7200", kPath)) << value;
  }
}

TEST_F(ProfileKeys, NoNumberMeansTheInstallDescription) {
  EXPECT_FALSE(SettingsAreInRegistry(u"S7200", kPath));
  WriteKey("S7100", "RegistryBaseVGL", "1");
  EXPECT_FALSE(SettingsAreInRegistry(u"S7200", kPath));
}

}  // namespace
}  // namespace vgl
