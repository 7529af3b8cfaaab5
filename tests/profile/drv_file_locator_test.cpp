// The files of a driver set by a printer's name and by an open printer.
#include "profile/drv_file_locator.h"

#include <gmock/gmock.h>

#include "tests/profile/driver_set_fixture.h"

namespace vgl {
namespace {

using namespace platform;
using testing::AnyOf;

const CDrvFileLocator kLocator;

class DrvFileLocator : public DriverSetTest {
 protected:
  std::u16string out = u"before";

  // The results of the operations by name, and of those by a handle.
  using ByName = int (CDrvFileLocator::*)(const char16_t*, std::u16string*) const;
  using ByHandle = int (CDrvFileLocator::*)(HPRINTER, const char16_t*, std::u16string*) const;
  static constexpr ByName kByName[] = {
      &CDrvFileLocator::GetDriverDir, &CDrvFileLocator::GetDriverName, &CDrvFileLocator::GetVifPath,
      &CDrvFileLocator::GetSADatPath};
  static constexpr ByHandle kByHandle[] = {&CDrvFileLocator::GetDriverDirByHandle,
                                           &CDrvFileLocator::GetVifPathByHandle,
                                           &CDrvFileLocator::GetSADatPathByHandle};

  // What an operation by name gives; each by a handle is held against it where both exist.
  std::u16string DriverDir() {
    return Agreed(&CDrvFileLocator::GetDriverDir, &CDrvFileLocator::GetDriverDirByHandle);
  }
  std::u16string VifPath() {
    return Agreed(&CDrvFileLocator::GetVifPath, &CDrvFileLocator::GetVifPathByHandle);
  }
  std::u16string SADatPath() {
    return Agreed(&CDrvFileLocator::GetSADatPath, &CDrvFileLocator::GetSADatPathByHandle);
  }

  void ExpectNothingByName(const char16_t* printer) {
    for (const ByName operation : kByName) {
      out = u"before";
      EXPECT_EQ((kLocator.*operation)(printer, &out), 0);
      EXPECT_EQ(out, u"");
    }
  }
  void ExpectNothingByHandle(HPRINTER handle, const char16_t* printer) {
    for (const ByHandle operation : kByHandle) {
      out = u"before";
      EXPECT_EQ((kLocator.*operation)(handle, printer, &out), 0);
      EXPECT_EQ(out, u"");
    }
  }

 private:
  std::u16string Agreed(ByName byName, ByHandle byHandle) {
    std::u16string named = u"before";
    std::u16string opened = u"before";
    const int resultByName = (kLocator.*byName)(kPrinter, &named);
    EXPECT_EQ(resultByName, named.empty() ? 0 : 1);
    const HPRINTER handle = Open();
    const int resultByHandle = (kLocator.*byHandle)(handle, kPrinter, &opened);
    EXPECT_EQ(resultByHandle, opened.empty() ? 0 : 1);
    Close(handle);
    EXPECT_EQ(named, opened);
    EXPECT_TRUE(inside.process().Ledger().empty());
    return named;
  }
};

using DrvFileLocatorFailures = DrvFileLocator;

// --- Driver

TEST_F(DrvFileLocator, TheDriversFolderIsThatOfItsMainFile) {
  struct {
    std::optional<std::u16string> driverPath;
    std::u16string folder;
  } const cases[] = {
      {u"C:\\Set\\sample.dll", u"C:\\Set"},
      {u"C:\\a\\b\\c.dll", u"C:\\a\\b"},
      {u"\\\\server\\print$\\x64\\3\\sample.dll", u"\\\\server\\print$\\x64\\3"},
      {u"C:\\Set\\", u"C:\\Set"},
      {u"sample.dll", u"sample.dll"},  // all of it when there is no backslash
      {u"C:/Set/sample.dll", u"C:/Set/sample.dll"},
      {u"\\sample.dll", u""},
      {u"", u""},
      {std::nullopt, u""},
  };
  for (const auto& c : cases) {
    SetDriver(c.driverPath, u"SAMPLE.VIF");
    EXPECT_EQ(DriverDir(), c.folder);
  }
}

TEST_F(DrvFileLocator, TheDriversNameIsThatOfItsRecord) {
  machine.spooler().At(kPrinter).driver = u"SAMPLE";  // the spooler finds it without its case
  EXPECT_EQ(kLocator.GetDriverName(kPrinter, &out), 1);
  EXPECT_EQ(out, u"Sample");
}

TEST_F(DrvFileLocator, PrintersAreFoundWithoutTheirCase) {
  EXPECT_EQ(kLocator.GetDriverName(u"sTUDIO", &out), 1);
  EXPECT_EQ(out, u"Sample");
}

// --- VIF

TEST_F(DrvFileLocator, TheVifIsTheDataFile) {
  struct {
    std::optional<std::u16string> driverPath;
    std::optional<std::u16string> dataFile;
    std::u16string vif;
  } const cases[] = {
      {u"C:\\Set\\sample.dll", u"SAMPLE.VIF", u"C:\\Set\\SAMPLE.VIF"},
      {u"C:\\Set\\sample.dll", u"D:\\Other\\x.dat", u"D:\\Other\\x.dat"},  // with a path: as it is
      {u"C:\\Set\\sample.dll", u"sub\\x.vif", u"sub\\x.vif"},
      {u"C:\\Set\\sample.dll", u"\\x.vif", u"\\x.vif"},
      {u"sample.dll", u"SAMPLE.VIF", u"sample.dll\\SAMPLE.VIF"},
      {u"", u"SAMPLE.VIF", u"SAMPLE.VIF"},
      {std::nullopt, u"SAMPLE.VIF", u"SAMPLE.VIF"},
      {std::nullopt, u"D:\\Other\\x.dat", u"D:\\Other\\x.dat"},
      {u"C:\\Set\\sample.dll", u"", u""},
      {u"C:\\Set\\sample.dll", std::nullopt, u""},
  };
  for (const auto& c : cases) {
    SetDriver(c.driverPath, c.dataFile);
    EXPECT_EQ(VifPath(), c.vif);
  }
}

// --- SADat

TEST_F(DrvFileLocator, TheSADatFileIsInTheDriversFolder) {
  EXPECT_EQ(SADatPath(), u"C:\\Set\\sample.sad");
}

TEST_F(DrvFileLocator, ItIsThereAlsoWhenTheVifIsElsewhere) {
  SetDriver(u"C:\\Set\\sample.dll", u"D:\\Other\\x.dat");
  machine.files().WriteFile(u"D:\\Other\\x.dat", "[CommonDrvInfo]\nSADat=other.sad\n");
  EXPECT_EQ(SADatPath(), u"C:\\Set\\other.sad");
}

TEST_F(DrvFileLocator, WithoutAFolderItsNameStandsBare) {
  SetDriver(std::nullopt, u"C:\\Set\\SAMPLE.VIF");
  EXPECT_EQ(SADatPath(), u"sample.sad");
}

TEST_F(DrvFileLocator, ADriverPathWithoutABackslashIsTheFolder) {
  SetDriver(u"sample.dll", u"C:\\Set\\SAMPLE.VIF");
  EXPECT_EQ(SADatPath(), u"sample.dll\\sample.sad");
}

TEST_F(DrvFileLocator, AValueWithAPathIsTakenLikeAnyOther) {
  WriteVif("[CommonDrvInfo]\nSADat=D:\\Other\\x.sad\n");
  EXPECT_EQ(SADatPath(), u"C:\\Set\\D:\\Other\\x.sad");
}

TEST_F(DrvFileLocator, AVifMayNameItself) {
  WriteVif("[CommonDrvInfo]\nSADat=SAMPLE.VIF\n");
  EXPECT_EQ(SADatPath(), u"C:\\Set\\SAMPLE.VIF");
}

TEST_F(DrvFileLocator, AValueOf64CharactersIsCutTo63) {
  WriteVif("[CommonDrvInfo]\nSADat=" + std::string(63, 'a') + "\n");
  EXPECT_EQ(SADatPath(), u"C:\\Set\\" + std::u16string(63, u'a'));
  WriteVif("[CommonDrvInfo]\nSADat=" + std::string(64, 'b') + "\n");
  EXPECT_EQ(SADatPath(), u"C:\\Set\\" + std::u16string(63, u'b'));
}

TEST_F(DrvFileLocator, WithoutAValueThereIsNone) {
  for (const char* vif : {"", "[CommonDrvInfo]\n", "[CommonDrvInfo]\nSADat=\n",
                          "[CommonDrvInfo]\nSADat=\"\"\n", "[Other]\nSADat=x.sad\n"}) {
    WriteVif(vif);
    EXPECT_EQ(SADatPath(), u"") << vif;
  }
  machine.files().Remove(kVif);
  EXPECT_EQ(SADatPath(), u"");
}

TEST_F(DrvFileLocator, WithoutADataFileThereIsNone) {
  SetDriver(u"C:\\Set\\sample.dll", std::nullopt);
  EXPECT_EQ(SADatPath(), u"");
}

TEST_F(DrvFileLocator, WhetherAFileIsThereIsntLookedAt) {
  ASSERT_FALSE(machine.files().Exists(kSADat));
  EXPECT_EQ(SADatPath(), kSADat);
}

// --- Systems of the NT family and others

constexpr char kVifOfBothFamilies[] = R"([CommonDrvInfo]
SADat=nt.sad
[Sample]
52=other.sad,second,third
)";

TEST_F(DrvFileLocator, OnTheNtFamilyKey52IsNeverRead) {
  WriteVif(kVifOfBothFamilies);
  EXPECT_EQ(SADatPath(), u"C:\\Set\\nt.sad");
  WriteVif("[Sample]\n52=other.sad\n");
  EXPECT_EQ(SADatPath(), u"");
}

TEST_F(DrvFileLocator, ElsewhereSADatIsNeverRead) {
  BeWindows9x();
  WriteVif(kVifOfBothFamilies);
  EXPECT_EQ(SADatPath(), u"C:\\Set\\other.sad");
  WriteVif("[CommonDrvInfo]\nSADat=nt.sad\n");
  EXPECT_EQ(SADatPath(), u"");
}

TEST_F(DrvFileLocator, ASystemThatDoesntTellIsNotOfTheNtFamily) {
  machine.system().versionIsKnown = false;
  WriteVif(kVifOfBothFamilies);
  EXPECT_EQ(SADatPath(), u"C:\\Set\\other.sad");
}

TEST_F(DrvFileLocator, Key52IsCutTo63CharactersAndThenAtItsFirstComma) {
  BeWindows9x();
  const struct {
    std::string value;
    std::u16string path;
  } cases[] = {
      {"a.sad", u"C:\\Set\\a.sad"},
      {"a.sad,b.sad", u"C:\\Set\\a.sad"},
      {"a.sad ,b.sad", u"C:\\Set\\a.sad "},
      {std::string(70, 'a') + ",b", u"C:\\Set\\" + std::u16string(63, u'a')},
      {",b.sad", u""},
      {"", u""},
  };
  for (const auto& c : cases) {
    WriteVif("[Sample]\n52=" + c.value + "\n");
    EXPECT_EQ(SADatPath(), c.path) << c.value;
  }
}

TEST_F(DrvFileLocator, ADriverWithoutANameHasNoSectionForKey52) {
  BeWindows9x();
  machine.spooler().AddDriver({.name = u"", .driverPath = u"C:\\Set\\x.dll", .dataFile = u"x.vif"});
  machine.spooler().At(kPrinter).driver = u"";
  machine.files().WriteFile(u"C:\\Set\\x.vif", "[]\n52=x.sad\n");
  EXPECT_EQ(VifPath(), u"C:\\Set\\x.vif");
  EXPECT_EQ(SADatPath(), u"");
}

// --- Openings

TEST_F(DrvFileLocator, EachFileAndEachFolderIsAskedForInAnOpeningOfItsOwn) {
  const auto openings = [this](ByName operation) {
    return OpeningsOf([&] { (kLocator.*operation)(kPrinter, &out); });
  };
  EXPECT_EQ(openings(&CDrvFileLocator::GetDriverDir), 1U);
  EXPECT_EQ(openings(&CDrvFileLocator::GetDriverName), 1U);
  EXPECT_EQ(openings(&CDrvFileLocator::GetVifPath), 2U);    // file, folder
  EXPECT_EQ(openings(&CDrvFileLocator::GetSADatPath), 3U);  // file, folder, folder
  BeWindows9x();
  WriteVif(kVifOfBothFamilies);
  EXPECT_EQ(openings(&CDrvFileLocator::GetSADatPath), 4U);  // and the driver's name
  SetDriver(u"C:\\Set\\sample.dll", kVif);
  EXPECT_EQ(openings(&CDrvFileLocator::GetVifPath), 1U);
}

TEST_F(DrvFileLocator, ByAHandleNothingIsOpened) {
  const HPRINTER handle = Open();
  for (const ByHandle operation : kByHandle) {
    EXPECT_EQ(OpeningsOf([&] { EXPECT_EQ((kLocator.*operation)(handle, kPrinter, &out), 1); }), 0U);
    EXPECT_EQ(inside.process().Ledger(), std::vector<std::u16string>{u"printer Studio"});
  }
  Close(handle);
}

TEST_F(DrvFileLocator, ARightToUseThePrinterIsAllItAsksFor) {
  machine.spooler().MakeAccessDenied(kPrinter);
  EXPECT_EQ(kLocator.GetSADatPath(kPrinter, &out), 1);
  EXPECT_EQ(machine.spooler().lastDesiredAccess, 8U);
}

TEST_F(DrvFileLocator, ThePrintersNameBesideAHandleDoesntMatter) {
  const HPRINTER handle = Open();
  EXPECT_EQ(kLocator.GetSADatPathByHandle(handle, u"another", &out), 1);
  EXPECT_EQ(out, kSADat);
  BeWindows9x();
  WriteVif(kVifOfBothFamilies);
  EXPECT_EQ(kLocator.GetSADatPathByHandle(handle, u"another", &out), 1);
  EXPECT_EQ(out, u"C:\\Set\\other.sad");
  Close(handle);
}

// --- Nothing to be found

TEST_F(DrvFileLocatorFailures, NoNameAndNoOutputAskNobody) {
  EXPECT_EQ(CallsOf([this] {
              ExpectNothingByName(u"");
              ExpectNothingByName(nullptr);
              for (const ByName operation : kByName)
                EXPECT_EQ((kLocator.*operation)(kPrinter, nullptr), 0);
            }),
            0U);
}

TEST_F(DrvFileLocatorFailures, NoHandleAndNoNameBesideItAskNobody) {
  const HPRINTER handle = Open();
  EXPECT_EQ(CallsOf([this, handle] {
              ExpectNothingByHandle(HPRINTER{}, kPrinter);
              ExpectNothingByHandle(handle, u"");
              ExpectNothingByHandle(handle, nullptr);
              for (const ByHandle operation : kByHandle)
                EXPECT_EQ((kLocator.*operation)(handle, kPrinter, nullptr), 0);
            }),
            0U);
  Close(handle);
}

TEST_F(DrvFileLocatorFailures, APrinterThatIsntThereHasNothing) { ExpectNothingByName(u"missing"); }

TEST_F(DrvFileLocatorFailures, APrinterWhoseDriverIsntThereHasNothing) {
  machine.spooler().RemoveDriver(kDriver);
  ExpectNothingByName(kPrinter);
  const HPRINTER handle = Open();
  ExpectNothingByHandle(handle, kPrinter);
  Close(handle);
}

TEST_F(DrvFileLocatorFailures, APrinterThatWasRemovedWhileOpenHasNothing) {
  const HPRINTER handle = Open();
  machine.spooler().RemovePrinter(kPrinter);
  ExpectNothingByHandle(handle, kPrinter);
  Close(handle);
}

TEST_F(DrvFileLocatorFailures, WhatIsNoHandleHasNothing) {
  ExpectNothingByHandle(HPRINTER{0x7777}, kPrinter);
}

TEST_F(DrvFileLocatorFailures, WhileAnInstallerIsAtWorkNothingIsFoundByName) {
  const OwnedObject installer(
      Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller"));
  ExpectNothingByName(kPrinter);
  const HPRINTER handle = Open();
  EXPECT_EQ(kLocator.GetSADatPathByHandle(handle, kPrinter, &out), 1);
  EXPECT_EQ(out, kSADat);
  Close(handle);
}

// Where only the folder can't be had, the name stands bare.
TEST_F(DrvFileLocatorFailures, AnyCallThatFailsGivesLessAndLeavesNothingOpen) {
  int empty = 0;
  int bare = 0;
  WithEachCallFailing([this] { kLocator.GetSADatPath(kPrinter, &out); },
                      [&](std::uint64_t) {
                        EXPECT_THAT(out, AnyOf(u"", u"sample.sad", kSADat));
                        empty += out.empty() ? 1 : 0;
                        bare += out == u"sample.sad" ? 1 : 0;
                      });
  EXPECT_GT(empty, 0);
  EXPECT_GT(bare, 0);
}

TEST_F(DrvFileLocatorFailures, AnyCallThatFailsByAHandleGivesLess) {
  const HPRINTER handle = Open();
  int empty = 0;
  WithEachCallFailing([&] { kLocator.GetSADatPathByHandle(handle, kPrinter, &out); },
                      [&](std::uint64_t) {
                        EXPECT_THAT(out, AnyOf(u"", u"sample.sad", kSADat));
                        empty += out.empty() ? 1 : 0;
                      });
  EXPECT_GT(empty, 0);
  Close(handle);
}

TEST_F(DrvFileLocatorFailures, ARecordThatHasGrownMeanwhileIsNotAskedForAgain) {
  const HPRINTER handle = Open();
  inside.process().FailCall(2);  // the second asking
  EXPECT_EQ(CallsOf([&] { EXPECT_EQ(kLocator.GetDriverDirByHandle(handle, kPrinter, &out), 0); }),
            2U);
  EXPECT_EQ(inside.process().failedOperation(), "GetPrinterDriverW");
  EXPECT_EQ(out, u"");
  Close(handle);
}

}  // namespace
}  // namespace vgl
