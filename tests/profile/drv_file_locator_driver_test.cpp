// The files of a driver set by a VIF's path and by a driver's name.
#include <gmock/gmock.h>

#include "profile/drv_file_locator.h"
#include "tests/profile/driver_set_fixture.h"

namespace vgl {
namespace {

using testing::AnyOf;

const CDrvFileLocator kLocator;

class VifLocator : public DriverSetTest {
 protected:
  std::u16string out = u"before";
};

class DriverLocator : public VifLocator {
 protected:
  std::u16string vif = u"before";
  std::u16string folder = u"before";

  int Find(const char16_t* driver) { return kLocator.FindDriverFiles(driver, &vif, &folder); }
};

// --- By a VIF

TEST(FolderOfVif, NeedsTheEndingInCapitalsAndABackslash) {
  const struct {
    std::u16string_view path;
    std::u16string_view folder;
  } cases[] = {
      {u"C:\\Set\\SAMPLE.VIF", u"C:\\Set"},
      {u"C:\\Set\\sample.VIF", u"C:\\Set"},
      {u"C:\\Set\\sample.vif", u""},
      {u"C:\\Set\\sample.Vif", u""},
      {u"SAMPLE.VIF", u""},
      {u"C:\\Set.VIF\\sample.dat", u"C:\\Set.VIF"},  // wherever it stands
      {u"C:\\Set\\sample.VIF2", u"C:\\Set"},
      {u"C:\\Set\\VIF", u""},
      {u"\\SAMPLE.VIF", u""},
      {u"", u""},
  };
  for (const auto& c : cases) EXPECT_EQ(FolderOfVif(c.path), c.folder);
}

TEST_F(VifLocator, TheSADatFileIsBesideTheVif) {
  EXPECT_EQ(kLocator.GetSADatPathOfVif(kVif, &out), 1);
  EXPECT_EQ(out, kSADat);
}

TEST_F(VifLocator, AVifInLowerCaseGivesABareName) {
  EXPECT_EQ(kLocator.GetSADatPathOfVif(u"C:\\Set\\sample.vif", &out), 1);
  EXPECT_EQ(out, u"sample.sad");
}

TEST_F(VifLocator, AVifThatNamesNoneHasNone) {
  for (const char* bytes : {"", "[CommonDrvInfo]\nSADat=\n", "[Sample]\n52=x.sad\n"}) {
    WriteVif(bytes);
    out = u"before";
    EXPECT_EQ(kLocator.GetSADatPathOfVif(kVif, &out), 0) << bytes;
    EXPECT_EQ(out, u"");
  }
}

TEST_F(VifLocator, OnTheNtFamilyKey52IsNoFallBack) {
  WriteVif("[VersionInformation]\nDriverName=Sample\n[Sample]\n52=x.sad\n");
  EXPECT_EQ(kLocator.GetSADatPathOfVif(kVif, &out), 0);
  EXPECT_EQ(kLocator.GetSADatPathOfDriver(kDriver, &out), 0);
  EXPECT_EQ(out, u"");
}

TEST_F(VifLocator, ElsewhereSADatIsNoFallBack) {
  BeWindows9x();
  WriteVif("[CommonDrvInfo]\nSADat=x.sad\n[VersionInformation]\nDriverName=Sample\n");
  EXPECT_EQ(kLocator.GetSADatPathOfVif(kVif, &out), 0);
  EXPECT_EQ(kLocator.GetSADatPathOfDriver(kDriver, &out), 0);
  EXPECT_EQ(out, u"");
}

TEST_F(VifLocator, AVifThatIsntThereHasNothing) {
  EXPECT_EQ(kLocator.GetSADatPathOfVif(u"C:\\Set\\MISSING.VIF", &out), 0);
  EXPECT_EQ(out, u"");
  out = u"before";
  EXPECT_EQ(kLocator.GetDriverNameOfVif(u"C:\\Set\\MISSING.VIF", &out), 0);
  EXPECT_EQ(out, u"");
}

TEST_F(VifLocator, AValueOf64CharactersIsCutTo63) {
  WriteVif("[CommonDrvInfo]\nSADat=" + std::string(64, 'a') + "\n");
  EXPECT_EQ(kLocator.GetSADatPathOfVif(kVif, &out), 1);
  EXPECT_EQ(out, u"C:\\Set\\" + std::u16string(63, u'a'));
}

TEST_F(VifLocator, ElsewhereTheVifNamesTheSectionOfKey52) {
  BeWindows9x();
  WriteVif(R"([CommonDrvInfo]
SADat=nt.sad
[VersionInformation]
DriverName=Sample X
[Sample X]
52=x.sad,y.sad
)");
  EXPECT_EQ(kLocator.GetSADatPathOfVif(kVif, &out), 1);
  EXPECT_EQ(out, u"C:\\Set\\x.sad");
}

TEST_F(VifLocator, ElsewhereAVifWithoutADriversNameHasNone) {
  BeWindows9x();
  WriteVif("[CommonDrvInfo]\nSADat=nt.sad\n[]\n52=x.sad\n[Sample]\n52=x.sad\n");
  EXPECT_EQ(kLocator.GetSADatPathOfVif(kVif, &out), 0);
  EXPECT_EQ(out, u"");
}

TEST_F(VifLocator, ElsewhereAnEmptyFirstFieldGivesNone) {
  BeWindows9x();
  WriteVif("[VersionInformation]\nDriverName=S\n[S]\n52=,x.sad\n");
  EXPECT_EQ(kLocator.GetSADatPathOfVif(kVif, &out), 0);
  EXPECT_EQ(out, u"");
}

TEST_F(VifLocator, TheDriversNameIsReadOnEverySystem) {
  WriteVif("[VersionInformation]\nDriverName=Sample X\n");
  EXPECT_EQ(kLocator.GetDriverNameOfVif(kVif, &out), 1);
  EXPECT_EQ(out, u"Sample X");
  BeWindows9x();
  EXPECT_EQ(kLocator.GetDriverNameOfVif(kVif, &out), 1);
  EXPECT_EQ(out, u"Sample X");
}

TEST_F(VifLocator, TheDriversNameIsCutTo63Characters) {
  WriteVif("[VersionInformation]\nDriverName=" + std::string(64, 'd') + "\n");
  EXPECT_EQ(kLocator.GetDriverNameOfVif(kVif, &out), 1);
  EXPECT_EQ(out, std::u16string(63, u'd'));
}

TEST_F(VifLocator, NoPathAndNoOutputAskNobody) {
  EXPECT_EQ(CallsOf([this] {
              for (const char16_t* path : {u"", static_cast<const char16_t*>(nullptr)}) {
                out = u"before";
                EXPECT_EQ(kLocator.GetSADatPathOfVif(path, &out), 0);
                EXPECT_EQ(out, u"");
                out = u"before";
                EXPECT_EQ(kLocator.GetDriverNameOfVif(path, &out), 0);
                EXPECT_EQ(out, u"");
              }
              EXPECT_EQ(kLocator.GetSADatPathOfVif(kVif, nullptr), 0);
              EXPECT_EQ(kLocator.GetDriverNameOfVif(kVif, nullptr), 0);
            }),
            0U);
}

// --- By a driver's name

TEST_F(DriverLocator, GivesVifAndFolder) {
  struct {
    std::optional<std::u16string> driverPath;
    std::optional<std::u16string> dataFile;
    std::u16string vif;
    std::u16string folder;
  } const cases[] = {
      {u"C:\\Set\\s.dll", u"S.VIF", u"C:\\Set\\S.VIF", u"C:\\Set"},
      {u"C:\\Set\\s.dll", u"D:\\S.VIF", u"D:\\S.VIF", u"C:\\Set"},
      {u"s.dll", u"S.VIF", u"s.dll\\S.VIF", u"s.dll"},
      {std::nullopt, u"S.VIF", u"S.VIF", u""},
      {std::nullopt, u"D:\\S.VIF", u"D:\\S.VIF", u""},
      {u"C:\\Set\\s.dll", std::nullopt, u"", u"C:\\Set"},  // one of the two is enough
      {std::nullopt, std::nullopt, u"", u""},
  };
  for (const auto& c : cases) {
    SetDriver(c.driverPath, c.dataFile);
    EXPECT_EQ(Find(kDriver), c.vif.empty() && c.folder.empty() ? 0 : 1);
    EXPECT_EQ(vif, c.vif);
    EXPECT_EQ(folder, c.folder);
  }
}

TEST_F(DriverLocator, FindsOneOfSeveral) {
  machine.spooler().AddDriver({.name = u"A", .driverPath = u"C:\\A\\a.dll", .dataFile = u"a.vif"});
  machine.spooler().AddDriver({.name = u"Z", .driverPath = u"C:\\Z\\z.dll", .dataFile = u"z.vif"});
  EXPECT_EQ(Find(u"Z"), 1);
  EXPECT_EQ(vif, u"C:\\Z\\z.vif");
  EXPECT_EQ(Find(kDriver), 1);
  EXPECT_EQ(vif, kVif);
}

TEST_F(DriverLocator, MissesANameInAnotherCase) {
  for (const char16_t* driver : {u"sample", u"SAMPLE", u"Sample ", u"Sampl", u"Sample2"}) {
    vif = folder = out = u"before";
    EXPECT_EQ(Find(driver), 0);
    EXPECT_EQ(vif + folder, u"");
    EXPECT_EQ(kLocator.GetSADatPathOfDriver(driver, &out), 0);
    EXPECT_EQ(out, u"");
  }
}

TEST_F(DriverLocator, NeedsNoPrinter) {
  machine.spooler().RemovePrinter(kPrinter);
  EXPECT_EQ(OpeningsOf([this] { EXPECT_EQ(kLocator.GetSADatPathOfDriver(kDriver, &out), 1); }), 0U);
  EXPECT_EQ(out, kSADat);
}

TEST_F(DriverLocator, AMachineWithoutDriversHasNone) {
  machine.spooler().RemoveDriver(kDriver);
  EXPECT_EQ(CallsOf([this] { EXPECT_EQ(Find(kDriver), 0); }), 1U);  // none to be asked for
  EXPECT_EQ(vif + folder, u"");
}

TEST_F(DriverLocator, TheSADatFileIsInTheDriversFolder) {
  SetDriver(u"D:\\Other\\s.dll", kVif);
  EXPECT_EQ(kLocator.GetSADatPathOfDriver(kDriver, &out), 1);
  EXPECT_EQ(out, u"D:\\Other\\sample.sad");
}

TEST_F(DriverLocator, WithoutAFolderTheSADatFilesNameStandsBare) {
  SetDriver(std::nullopt, kVif);
  EXPECT_EQ(kLocator.GetSADatPathOfDriver(kDriver, &out), 1);
  EXPECT_EQ(out, u"sample.sad");
}

TEST_F(DriverLocator, WithoutAVifThereIsNoSADatFile) {
  SetDriver(u"C:\\Set\\sample.dll", std::nullopt);
  EXPECT_EQ(kLocator.GetSADatPathOfDriver(kDriver, &out), 0);
  EXPECT_EQ(out, u"");
}

TEST_F(DriverLocator, ElsewhereKey52IsInTheSectionOfTheDriversOwnName) {
  BeWindows9x();
  WriteVif(R"([CommonDrvInfo]
SADat=nt.sad
[VersionInformation]
DriverName=Other
[Other]
52=other.sad
[Sample]
52=x.sad,y.sad
)");
  EXPECT_EQ(kLocator.GetSADatPathOfDriver(kDriver, &out), 1);
  EXPECT_EQ(out, u"C:\\Set\\x.sad");
}

TEST_F(DriverLocator, AnEmptyValueGivesNoSADatFile) {
  WriteVif("[CommonDrvInfo]\nSADat=\n[Sample]\n52=,x.sad\n");
  EXPECT_EQ(kLocator.GetSADatPathOfDriver(kDriver, &out), 0);
  EXPECT_EQ(out, u"");
  BeWindows9x();
  EXPECT_EQ(kLocator.GetSADatPathOfDriver(kDriver, &out), 0);
  EXPECT_EQ(out, u"");
}

TEST_F(DriverLocator, NoNameAndAMissingOutputAskNobody) {
  EXPECT_EQ(CallsOf([this] {
              for (const char16_t* driver : {u"", static_cast<const char16_t*>(nullptr)}) {
                vif = folder = out = u"before";
                EXPECT_EQ(Find(driver), 0);
                EXPECT_EQ(kLocator.GetSADatPathOfDriver(driver, &out), 0);
                EXPECT_EQ(vif + folder + out, u"");
              }
              vif = folder = u"before";
              EXPECT_EQ(kLocator.FindDriverFiles(kDriver, &vif, nullptr), 0);
              EXPECT_EQ(kLocator.FindDriverFiles(kDriver, nullptr, &folder), 0);
              EXPECT_EQ(vif + folder, u"");
              EXPECT_EQ(kLocator.GetSADatPathOfDriver(kDriver, nullptr), 0);
            }),
            0U);
}

TEST_F(DriverLocator, AnyCallThatFailsGivesNothing) {
  int empty = 0;
  WithEachCallFailing([this] { kLocator.GetSADatPathOfDriver(kDriver, &out); },
                      [&](std::uint64_t) {
                        EXPECT_THAT(out, AnyOf(u"", kSADat));
                        empty += out.empty() ? 1 : 0;
                      });
  EXPECT_EQ(empty, 4);  // both askings for drivers, those for the family and the key
}

}  // namespace
}  // namespace vgl
