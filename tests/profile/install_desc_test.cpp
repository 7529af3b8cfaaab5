// Loading an install description by its four ways, and asking it.
#include "profile/install_desc.h"

#include "tests/profile/driver_set_fixture.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char16_t kKey[] = u"Software\\KAVRO\\VGL3\\Driver\\Sample";

// One value of each kind below kKey.
constexpr char kSample[] = R"(
REGPATH  = DRV, "HKEY_LOCAL_MACHINE\Software\KAVRO\VGL3\Driver\Sample"
REGENTER = DRV, "ModelID", "Sample"
REGENTER = DRV, "InstallPath", DRIVERDIR
REGENTER = DRV, "QBAPI_VERSION", 0x100
)";

class InstallDesc : public DriverSetTest {
 protected:
  CInstallDesc description;

  std::u16string Path() { return description.GetRegString(kKey, u"InstallPath"); }
  std::int64_t Version() { return description.GetRegDword(kKey, u"QBAPI_VERSION"); }
  void ExpectEmpty() {
    EXPECT_EQ(Path(), u"");
    EXPECT_EQ(Version(), -1);
  }
};

using InstallQueries = InstallDesc;
using InstallLoading = InstallDesc;

// --- Queries

TEST_F(InstallQueries, AValueIsFoundByKeyPathAndName) {
  Describe(kSample);
  ASSERT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(description.GetRegString(kKey, u"ModelID"), u"Sample");
  EXPECT_EQ(description.GetRegString(kKey, u"InstallPath"), u"C:\\Set");
  EXPECT_EQ(description.GetRegDword(kKey, u"QBAPI_VERSION"), 256);
}

TEST_F(InstallQueries, PathTagAndNameIgnoreCase) {
  Describe(R"(
REGPATH  = Drv, "HKEY_LOCAL_MACHINE\SOFTWARE\Kavro\Vgl3"
REGENTER = dRV, "modelid", "Sample"
)");
  ASSERT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(description.GetRegString(u"Software\\KAVRO\\VGL3", u"ModelID"), u"Sample");
}

TEST_F(InstallQueries, WhatIsOfTheOtherKindIsAMiss) {
  Describe(kSample);
  ASSERT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(description.GetRegString(kKey, u"QBAPI_VERSION"), u"");
  EXPECT_EQ(description.GetRegDword(kKey, u"ModelID"), -1);
}

TEST_F(InstallQueries, WhatIsntDescribedIsAMiss) {
  Describe(kSample);
  ASSERT_EQ(description.LoadByPrinter(kPrinter), 1);
  const struct {
    std::u16string_view path;
    std::u16string_view name;
  } misses[] = {
      {kKey, u"Other"},
      {kKey, u""},
      {kKey, u"ModelID "},
      {u"Software\\KAVRO\\VGL3\\Driver", u"ModelID"},
      {u"Software\\KAVRO\\VGL3\\Driver\\Sample\\", u"ModelID"},
      {u"\\Software\\KAVRO\\VGL3\\Driver\\Sample", u"ModelID"},
      {u"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Driver\\Sample", u"ModelID"},
      {u"DRV", u"ModelID"},
      {u"", u"ModelID"},
  };
  for (const auto& miss : misses) {
    EXPECT_EQ(description.GetRegString(miss.path, miss.name), u"");
    EXPECT_EQ(description.GetRegDword(miss.path, miss.name), -1);
  }
}

TEST_F(InstallQueries, TheFirstKeyOfAPathCountsEvenWhereItLacksTheValue) {
  Describe(R"(
REGPATH  = A, "HKEY_LOCAL_MACHINE\X"
REGPATH  = B, "HKEY_LOCAL_MACHINE\X"
REGENTER = A, "both", 1
REGENTER = B, "both", 2
REGENTER = B, "second only", 3
)");
  ASSERT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(description.GetRegDword(u"X", u"both"), 1);
  EXPECT_EQ(description.GetRegDword(u"X", u"second only"), -1);
}

TEST_F(InstallQueries, ATagMayBeThatOfSeveralPaths) {
  Describe(R"(
REGPATH  = A, "HKEY_LOCAL_MACHINE\X"
REGPATH  = A, "HKEY_LOCAL_MACHINE\Y"
REGENTER = A, "N", 1
)");
  ASSERT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(description.GetRegDword(u"X", u"N"), 1);
  EXPECT_EQ(description.GetRegDword(u"Y", u"N"), 1);
}

TEST_F(InstallQueries, OfTwoNeighboursTheSecondIsFound) {
  Describe(R"(
REGPATH  = A, "HKEY_LOCAL_MACHINE\X"
REGENTER = A, "N", 1
REGENTER = A, "N", 2
)");
  ASSERT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(description.GetRegDword(u"X", u"N"), 2);
}

TEST_F(InstallQueries, WithAnotherInBetweenTheFirstIsFound) {
  Describe(R"(
REGPATH  = A, "HKEY_LOCAL_MACHINE\X"
REGENTER = A, "N", 1
REGENTER = A, "M", 2
REGENTER = A, "N", 3
)");
  ASSERT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(description.GetRegDword(u"X", u"N"), 1);
}

TEST_F(InstallQueries, OfNeighboursInAnotherCaseTheFirstIsFound) {
  Describe(R"(
REGPATH  = A, "HKEY_LOCAL_MACHINE\X"
REGENTER = A, "N", 1
REGENTER = a, "n", 2
)");
  ASSERT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(description.GetRegDword(u"X", u"n"), 1);
}

TEST_F(InstallQueries, TheFirstOfANameCountsWhateverItsKind) {
  Describe(R"(
REGPATH  = A, "HKEY_LOCAL_MACHINE\X"
REGENTER = A, "N", 1
REGENTER = A, "M", 2
REGENTER = A, "N", "text"
)");
  ASSERT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(description.GetRegString(u"X", u"N"), u"");
}

TEST_F(InstallQueries, ANumberIsOneOf32BitsWithSign) {
  Describe(R"(
REGPATH  = A, "HKEY_LOCAL_MACHINE\X"
REGENTER = A, "low", -2147483648
REGENTER = A, "high", 0xFFFFFFFF
REGENTER = A, "miss?", -1
)");
  ASSERT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(description.GetRegDword(u"X", u"low"), -2147483648LL);
  EXPECT_EQ(description.GetRegDword(u"X", u"high"), 2147483647);
  EXPECT_EQ(description.GetRegDword(u"X", u"miss?"), -1);
}

TEST_F(InstallQueries, AnObjectThatWasntLoadedHasNothing) { ExpectEmpty(); }

// --- Loading

TEST_F(InstallLoading, EachWayFindsTheSameFileAndFolder) {
  Describe(kSample);
  const HPRINTER handle = Open();
  const std::function<int()> ways[] = {
      [&] { return description.LoadByPrinter(kPrinter); },
      [&] { return description.LoadByHandle(handle, kPrinter); },
      [&] { return description.LoadByVif(kVif); },
      [&] { return description.LoadByDriver(kDriver); },
  };
  for (const auto& load : ways) {
    EXPECT_EQ(load(), 1);
    EXPECT_EQ(Path(), u"C:\\Set");
    EXPECT_EQ(Version(), 256);
  }
  Close(handle);
}

TEST_F(InstallLoading, EachWayNeedsItsInput) {
  const HPRINTER handle = Open();
  Describe(kSample);
  const char16_t* const none = nullptr;
  const std::function<int()> ways[] = {
      [&] { return description.LoadByPrinter(u""); },
      [&] { return description.LoadByPrinter(none); },
      [&] { return description.LoadByPrinter(u"missing"); },
      [&] { return description.LoadByHandle(HPRINTER{}, kPrinter); },
      [&] { return description.LoadByHandle(handle, u""); },
      [&] { return description.LoadByHandle(handle, none); },
      [&] { return description.LoadByVif(u""); },
      [&] { return description.LoadByVif(none); },
      [&] { return description.LoadByVif(u"C:\\Set\\MISSING.VIF"); },
      [&] { return description.LoadByDriver(u""); },
      [&] { return description.LoadByDriver(none); },
      [&] { return description.LoadByDriver(u"sample"); },
  };
  for (const auto& load : ways) {
    ASSERT_EQ(description.LoadByPrinter(kPrinter), 1);
    EXPECT_EQ(load(), 0);
    ExpectEmpty();  // nothing of what was loaded before is left
  }
  Close(handle);
}

TEST_F(InstallLoading, AnotherLoadReplacesTheFirst) {
  Describe(kSample);
  ASSERT_EQ(description.LoadByPrinter(kPrinter), 1);
  Describe(R"(
REGPATH  = A, "HKEY_LOCAL_MACHINE\X"
REGENTER = A, "N", 1
)");
  ASSERT_EQ(description.LoadByPrinter(kPrinter), 1);
  ExpectEmpty();
  EXPECT_EQ(description.GetRegDword(u"X", u"N"), 1);
}

TEST_F(InstallLoading, KeysWithoutValuesAndValuesWithoutKeysAreNoDescription) {
  for (const char* lines : {
           R"(REGPATH = A, "HKEY_LOCAL_MACHINE\X")",
           R"(REGENTER = A, "N", 1)",
           "REGPATH = A, \"HKEY_LOCAL_MACHINE\\X\"\nREGENTER = A, \"N\", 1, WIN9X",
           "REGPATH = A, \"HKEY_CURRENT_USER\\X\"\nREGENTER = A, \"N\", 1",
       }) {
    Describe(lines);
    EXPECT_EQ(description.LoadByPrinter(kPrinter), 0) << lines;
    EXPECT_EQ(description.GetRegDword(u"X", u"N"), -1) << lines;
  }
}

TEST_F(InstallLoading, AMissingFileIsNoDescription) {
  EXPECT_EQ(description.LoadByPrinter(kPrinter), 0);
  ExpectEmpty();
}

TEST_F(InstallLoading, AKeyWithATagOfItsOwnIsADescriptionAllTheSame) {
  Describe(R"(
REGPATH  = A, "HKEY_LOCAL_MACHINE\X"
REGENTER = B, "N", 1
)");
  EXPECT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(description.GetRegDword(u"X", u"N"), -1);
}

// The SADat file is found bare then, and is one.
TEST_F(InstallLoading, WithoutTheDriversFolderNoValueIsRead) {
  SetDriver(std::nullopt, kVif);
  machine.files().WriteFile(kBareSADat, std::string("[Install]\n") + kSample);
  EXPECT_EQ(description.LoadByPrinter(kPrinter), 0);
  ExpectEmpty();
  EXPECT_EQ(description.LoadByDriver(kDriver), 0);
  ExpectEmpty();
  const HPRINTER handle = Open();
  EXPECT_EQ(description.LoadByHandle(handle, kPrinter), 0);
  ExpectEmpty();
  Close(handle);
}

TEST_F(InstallLoading, ByAVifWithoutAFolderNumbersAreReadAndStringsDropped) {
  machine.files().WriteFile(kBareSADat, std::string("[Install]\n") + kSample);
  EXPECT_EQ(description.LoadByVif(u"C:\\Set\\sample.vif"), 1);
  EXPECT_EQ(Version(), 256);
  EXPECT_EQ(Path(), u"");
  EXPECT_EQ(description.GetRegString(kKey, u"ModelID"), u"");
}

TEST_F(InstallLoading, AVifWithoutABackslashHasNoFolder) {
  machine.files().WriteFile(u"C:\\Windows\\S.VIF", "[CommonDrvInfo]\nSADat=sample.sad\n");
  machine.files().WriteFile(kBareSADat,
                            "[Install]\nREGPATH = A, \"HKEY_LOCAL_MACHINE\\X\"\n"
                            "REGENTER = A, \"N\", 5\nREGENTER = A, \"S\", \"text\"\n");
  EXPECT_EQ(description.LoadByVif(u"S.VIF"), 1);
  EXPECT_EQ(description.GetRegDword(u"X", u"N"), 5);
  EXPECT_EQ(description.GetRegString(u"X", u"S"), u"");
}

TEST_F(InstallLoading, TheWordsOfFoldersStandInLinesInAnyCaseWhereTheyStandAlone) {
  Describe(R"(
REGPATH  = A, "HKEY_LOCAL_MACHINE\X"
REGENTER = A, "driver", driverdir
REGENTER = A, "system", SystemDir
REGENTER = A, "file", SYSTEMDIR+"\x.exe"
REGENTER = A, "lower", driverdir+"\x.exe"
REGENTER = A, "comma", DRIVERDIR+"\a,b.exe"
)");
  EXPECT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(description.GetRegString(u"X", u"driver"), u"C:\\Set");
  EXPECT_EQ(description.GetRegString(u"X", u"system"), u"C:\\Windows\\system32");
  EXPECT_EQ(description.GetRegString(u"X", u"file"), u"C:\\Windows\\system32\\x.exe");
  EXPECT_EQ(description.GetRegString(u"X", u"lower"), u"");
  // The field begins with the word and no quote, so its first comma ends it, and the quote is open.
  EXPECT_EQ(description.GetRegString(u"X", u"comma"), u"");
}

TEST_F(InstallLoading, ByAVifTheFolderIsThatOfTheVif) {
  machine.files().WriteFile(u"D:\\Other\\X.VIF", "[CommonDrvInfo]\nSADat=x.sad\n");
  machine.files().WriteFile(u"D:\\Other\\x.sad", std::string("[Install]\n") + kSample);
  EXPECT_EQ(description.LoadByVif(u"D:\\Other\\X.VIF"), 1);
  EXPECT_EQ(Path(), u"D:\\Other");
}

TEST_F(InstallLoading, AVifThatNamesItselfIsReadAsTheSADatFile) {
  WriteVif(std::string("[CommonDrvInfo]\nSADat=SAMPLE.VIF\n[Install]\n") + kSample);
  EXPECT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(Path(), u"C:\\Set");
  EXPECT_EQ(description.LoadByVif(kVif), 1);
  EXPECT_EQ(Version(), 256);
}

TEST_F(InstallLoading, AVifThatNamesItselfAndDescribesNothingIsNoDescription) {
  WriteVif("[CommonDrvInfo]\nSADat=SAMPLE.VIF\n");
  EXPECT_EQ(description.LoadByPrinter(kPrinter), 0);
  ExpectEmpty();
}

TEST_F(InstallLoading, ElsewhereTheFileIsThatOfKey52) {
  BeWindows9x();
  WriteVif("[CommonDrvInfo]\nSADat=nt.sad\n[Sample]\n52=sample.sad,x\n");
  Describe(kSample);
  EXPECT_EQ(description.LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(Path(), u"C:\\Set");
}

TEST_F(InstallLoading, ByNameThePrinterIsOpenedFourTimesByAHandleNever) {
  Describe(kSample);
  EXPECT_EQ(OpeningsOf([this] { description.LoadByPrinter(kPrinter); }), 4U);
  const HPRINTER handle = Open();
  EXPECT_EQ(OpeningsOf([&] { description.LoadByHandle(handle, kPrinter); }), 0U);
  Close(handle);
}

TEST_F(InstallLoading, WithoutAKeyTheFolderIsNotAskedFor) {
  Describe("REGENTER = A, \"N\", 1\n");
  EXPECT_EQ(OpeningsOf([this] { description.LoadByPrinter(kPrinter); }), 3U);
}

TEST_F(InstallLoading, WhileAnInstallerIsAtWorkNothingIsDescribedByAPrintersName) {
  Describe(kSample);
  const OwnedObject installer(
      Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller"));
  EXPECT_EQ(description.LoadByPrinter(kPrinter), 0);
  ExpectEmpty();
  EXPECT_EQ(description.LoadByVif(kVif), 1);
  EXPECT_EQ(description.LoadByDriver(kDriver), 1);
}

TEST_F(InstallLoading, TheFileIsClosedAgainAndTheEndGivesEverythingBack) {
  Describe(kSample);
  {
    CInstallDesc other;
    ASSERT_EQ(other.LoadByPrinter(kPrinter), 1);
    EXPECT_EQ(inside.process().Ledger().size(), 4U);  // the mutexes of two descriptions
  }
  EXPECT_EQ(inside.process().Ledger().size(), 2U);
}

TEST_F(InstallLoading, AnyCallThatFailsGivesTheValueOrNothing) {
  Describe(kSample);
  std::u16string path;
  std::int64_t version = 0;
  int misses = 0;
  WithEachCallFailing(
      [&] {
        CInstallDesc other;
        other.LoadByPrinter(kPrinter);
        path = other.GetRegString(kKey, u"InstallPath");
        version = other.GetRegDword(kKey, u"QBAPI_VERSION");
      },
      [&](std::uint64_t) {
        EXPECT_TRUE(path.empty() || path == u"C:\\Set");
        EXPECT_EQ(version, path.empty() ? -1 : 256);
        misses += path.empty() ? 1 : 0;
      });
  EXPECT_GT(misses, 0);
}

}  // namespace
}  // namespace vgl
