// vgldesk describe: what is found of a sample's driver set.
#include "desk/describe.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <utility>

#include "desk/resource_library.h"
#include "tests/desk/scratch_folder.h"

namespace desk {
namespace {

namespace fs = std::filesystem;

constexpr char kSpool[] = "Windows/system32/spool/drivers/x64/3/";

struct Outcome {
  int code;
  std::string out;
  std::string err;
};

Outcome DescribeSample(const std::string& sample) {
  std::ostringstream out, err;
  const int code = Describe(sample, out, err);
  return {code, out.str(), err.str()};
}

// A text in which "{D}" stands for the spooler's folder of drivers.
std::string WithFolder(std::string text) {
  for (std::size_t at = text.find("{D}"); at != std::string::npos; at = text.find("{D}", at))
    text.replace(at, 3, "C:\\Windows\\system32\\spool\\drivers\\x64\\3");
  return text;
}

TEST(Describe, TellsAllOfTheStudiosSet) {
  const Outcome outcome = DescribeSample("studio-7200");
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out, WithFolder(R"(printer Studio 7200
  driver: KAVRO Studio 7200
  driver folder: {D}
  VIF: {D}\KS7200.VIF
  SADat: {D}\KS7200.DAT
  registry library: {D}\K_WRDEF1.DLL
  model: S7200
  instance map: VglV5MapFile_Ink (V5), as none is named
  profile: {D}\KS7200.INI
  language: ENU
  resource library: {D}\K_S72EN.DLL
  bitmap library: {D}\K_S72BM.DLL
  printer library: {D}\K_S72PR.DLL
  usage log library: {D}\K_APLOG.DLL
  run helper: {D}\K_QD21RX.EXE
  install description:
    /////path/////
    #1 [<DRV> "Software\KAVRO\VGL3\Driver\KAVRO Studio 7200"]
    #2 [<MNU> "Software\KAVRO\VGL3\Driver\KAVRO Studio 7200\Menu"]
    #3 [<PRF> "Software\KAVRO\VGL3\Profile"]
    //////////////
    3 of 3 REGPATH lines count

    /////enter////
    #1 [<DRV> "ModelID", (REG_SZ) "S7200"]
    #2 [<DRV> "InstallPath", (REG_SZ) "{D}"]
    #3 [<DRV> "Profile", (REG_SZ) "{D}\KS7200.INI"]
    #4 [<PRF> "S7200", (REG_SZ) "{D}\KS7200.INI"]
    #5 [<DRV> "K_QTRN", (REG_SZ) "C:\Program Files\KAVRO\VGL3\K_QD21TR.EXE"]
    #6 [<DRV> "K_QRX", (REG_SZ) "{D}\K_QD21RX.EXE"]
    #7 [<DRV> "K_QEV", (REG_SZ) "{D}\K_QD21RX.EXE"]
    #8 [<DRV> "VGLSRV_NAME", (REG_SZ) "K_QD01SV.EXE"]
    #9 [<DRV> "VGLSRV_QBNAME", (REG_SZ) "K_QD02QB.EXE"]
    #10 [<DRV> "QBAPI_VERSION", (REG_DWORD) 256]
    #11 [<DRV> "DepExe", (REG_SZ) "{D}\K_S72DEP.EXE"]
    #12 [<DRV> "DriverUpdateName", (REG_SZ) "{D}\K_DRVUP.EXE"]
    #13 [<DRV> "SMRT_PARLOS", (REG_SZ) "{D}\K_PARLOS.DLL"]
    #14 [<DRV> "SpoolSystem", (REG_SZ) "C:\Windows\system32\spoolsv.exe"]
    #15 [<DRV> "AgentBits", (REG_DWORD) 64]
    #16 [<MNU> "920", (REG_SZ) "{D}\K_S72UT.DLL /U1"]
    #17 [<MNU> "921", (REG_SZ) "{D}\K_S72UT.DLL /U2"]
    #18 [<MNU> "922", (REG_SZ) "{D}\K_S72UT.DLL /U3"]
    #19 [<MNU> "923", (REG_SZ) "{D}\K_S72UT.DLL /U11"]
    #20 [<MNU> "925", (REG_SZ) "{D}\K_S72DEP.EXE /MENU"]
    #21 [<MNU> "926", (REG_SZ) "{D}\ /CISSVALID"]
    #22 [<MNU> "930", (REG_SZ) "%sK_DRVUP.EXE /CHECK"]
    #23 [<MNU> "931", (REG_SZ) "{D}\ /DRVUPDATE"]
    #24 [<MNU> "932", (REG_SZ) "{D}\ /UPPILOT"]
    #25 [<MNU> "935", (REG_SZ) "{D}\K_S72LM.EXE /LM"]
    #26 [<MNU> "936", (REG_SZ) "{D}\K_S72DEP.EXE /DP /Q"]
    #27 [<MNU> "937", (REG_SZ) "{D}\K_S72DEP.EXE /ASMRT"]
    #28 [<MNU> "938", (REG_SZ) "{D}\K_S72MAN.EXE /HELP"]
    #29 [<MNU> "939", (REG_SZ) "{D}\K_S72MAN.EXE"]
    #30 [<MNU> "950", (REG_SZ) "https://studio7200.kavro.example/support|"]
    #31 [<MNU> "951", (REG_SZ) "{D}\K_S72MAN.EXE|/INDEX /TOP"]
    #32 [<MNU> "952", (REG_SZ) "{D}\K_S72MAN.EXE /ABOUT"]
    #33 [<MNU> "953", (REG_SZ) "{D}\K_S72MAN.EXE"]
    #34 [<MNU> "Separators", (REG_SZ) "5,7,10"]
    //////////////
    34 of 36 REGENTER lines count
)"));
}

// A copy of the studio's sample without one of its files.
std::string DescribeStudioWithout(const std::string& file) {
  const ScratchFolder copy;
  fs::copy("samples/studio-7200", copy.path(), fs::copy_options::recursive);
  EXPECT_TRUE(fs::remove(copy.path() / "files" / kSpool / file));
  const Outcome outcome = DescribeSample(copy.path().string());
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.err, "");
  return outcome.out;
}

TEST(Describe, OfASetWithoutItsVifOnlyTheDriverAndALibraryOfTheDefaultNameAreFound) {
  EXPECT_EQ(DescribeStudioWithout("KS7200.VIF"), WithFolder(R"(printer Studio 7200
  driver: KAVRO Studio 7200
  driver folder: {D}
  VIF: not found: {D}\KS7200.VIF isn't there
  SADat: not found: there is no VIF to name it
  registry library: {D}\K_WRDEF1.DLL
  model: not found: no text ModelID in Software\KAVRO\VGL3\Driver\KAVRO Studio 7200
  instance map: VglV5MapFile_Ink (V5), as none is named
  install description: not found: there is no SADat file
)"));
}

TEST(Describe, OfASetWithoutItsSADatFileTheDescriptionIsntFound) {
  EXPECT_EQ(DescribeStudioWithout("KS7200.DAT"), WithFolder(R"(printer Studio 7200
  driver: KAVRO Studio 7200
  driver folder: {D}
  VIF: {D}\KS7200.VIF
  SADat: not found: {D}\KS7200.DAT isn't there
  registry library: {D}\K_WRDEF1.DLL
  model: not found: no text ModelID in Software\KAVRO\VGL3\Driver\KAVRO Studio 7200
  instance map: VglV5MapFile_Ink (V5), as none is named
  install description: not found: there is no SADat file
)"));
}

// A sample of one printer, all of whose set is found until a test changes it.
class SmallSet : public testing::Test {
 protected:
  const ScratchFolder sample;

  SmallSet() {
    WriteRegistry("\"Driver\"=\"D.DLL\"\n\"Data File\"=\"D.VIF\"\n");
    WriteLibraries("");
    WriteFile("D.VIF", kVif);
    WriteFile("D.DAT", kPath + kValues);
    WriteFile("D.INI", kModel + kLanguages);
    WriteFile("DEN.DLL", BytesOf(PlainResourceLibrary()));
  }

  inline static const std::string kVif =
      "[CommonDrvInfo]\nSADat=D.DAT\nKVRDEF01=D.LIB\nAppLogModule=DLG.DLL\n";
  inline static const std::string kPath =
      "[Install]\nREGPATH = D, \"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Driver\\D\"\n";
  inline static const std::string kValues =
      "REGENTER = D, \"ModelID\", \"M\"\nREGENTER = D, \"InstallPath\", DRIVERDIR\n"
      "REGENTER = D, \"Profile\", DRIVERDIR+\"\\D.INI\"\n";
  inline static const std::string kModel = "[M]\nPrnDll=DPR.DLL\nVGL_LOG=1\n";
  inline static const std::string kLanguages = "[Language]\nENU=09,01\n[ENU]\nResDll=DEN.DLL\n";
  inline static const std::string kFolder = "Windows\\system32\\spool\\drivers\\x64\\3\\";

  // The set's closed libraries and its run helper, but for the file `without`, and `others` lines.
  void WriteLibraries(const std::string& without, const std::string& others = "") const {
    std::string lines = others;
    for (const auto& [kind, file] : {std::pair{"registry-library", "D.LIB"},
                                     {"printer-library", "DPR.DLL"},
                                     {"usage-log-library", "DLG.DLL"},
                                     {"run-helper", "K_QD21RX.EXE"}})
      if (file != without) lines += kind + (" " + kFolder) + file + "\n";
    sample.Write("libraries", lines);
  }

  void WriteFile(const std::string& name, const std::string& bytes) const {
    sample.Write("files/" + std::string(kSpool) + name, bytes);
  }
  // With these values in the driver's record.
  void WriteRegistry(const std::string& driver, const std::string& driversName = "D") const {
    const std::string print = "HKEY_LOCAL_MACHINE\\System\\CurrentControlSet\\Control\\Print\\";
    sample.Write("machine.reg", "REGEDIT4\n[" + print +
                                    "Environments\\Windows x64\\Drivers\\Version-3\\" +
                                    driversName + "]\n" + driver + "[" + print +
                                    "Printers\\P]\n\"Name\"=\"P\"\n\"Port\"=\"LPT1:\"\n"
                                    "\"Printer Driver\"=\"D\"\n\"Datatype\"=\"RAW\"\n");
  }
  Outcome Run() const { return DescribeSample(sample.path().string()); }
  // That something isn't found, and this line tells of it.
  void ExpectNotFound(const std::string& line) const {
    const Outcome outcome = Run();
    EXPECT_EQ(outcome.code, 1);
    EXPECT_NE(outcome.out.find(WithFolder("\n  " + line + "\n")), std::string::npos) << outcome.out;
  }
};

TEST_F(SmallSet, IsFoundWhole) {
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.out, WithFolder(R"(printer P
  driver: D
  driver folder: {D}
  VIF: {D}\D.VIF
  SADat: {D}\D.DAT
  registry library: {D}\D.LIB
  model: M
  instance map: VglV5MapFile_Ink (V5), as none is named
  profile: {D}\D.INI
  language: ENU
  resource library: {D}\DEN.DLL
  bitmap library: {D}\DEN.DLL, as none is named
  printer library: {D}\DPR.DLL
  usage log library: {D}\DLG.DLL
  run helper: {D}\\K_QD21RX.EXE
  install description:
    /////path/////
    #1 [<D> "Software\KAVRO\VGL3\Driver\D"]
    //////////////
    1 of 1 REGPATH lines count

    /////enter////
    #1 [<D> "ModelID", (REG_SZ) "M"]
    #2 [<D> "InstallPath", (REG_SZ) "{D}"]
    #3 [<D> "Profile", (REG_SZ) "{D}\D.INI"]
    //////////////
    3 of 3 REGENTER lines count
)"));
}

TEST_F(SmallSet, WhatTheDriversRecordLacksIsTold) {
  WriteRegistry("\"Driver\"=\"D.DLL\"\n");
  ExpectNotFound("VIF: not found: the driver's record has no text \"Data File\"");
  ExpectNotFound("SADat: not found: there is no VIF to name it");
  WriteRegistry("\"Data File\"=\"D.VIF\"\n");
  ExpectNotFound("driver folder: not found: the driver's record has no text \"Driver\"");
}

TEST_F(SmallSet, ADriverThatIsntInstalledEndsTheSearch) {
  WriteRegistry("\"Driver\"=\"D.DLL\"\n", "E");
  EXPECT_EQ(Run().code, 1);
  EXPECT_EQ(Run().out, "printer P\n  driver: not found: D isn't installed for this system\n");
}

TEST_F(SmallSet, AVifThatNamesNoSADatFileIsTold) {
  WriteFile("D.VIF", "[CommonDrvInfo]\nKVRDEF01=D.LIB\n[Other]\nSADat=D.DAT\n");
  ExpectNotFound("SADat: not found: the VIF has no key SADat in [CommonDrvInfo]");
}

TEST_F(SmallSet, ARegistryLibraryThatIsntThereOrDoesntLoadIsTold) {
  WriteLibraries("D.LIB");
  ExpectNotFound("registry library: not found: {D}\\D.LIB isn't there: no agent runs");
  WriteLibraries("D.LIB", "stand-in " + kFolder + "D.LIB\n");
  ExpectNotFound("registry library: not found: {D}\\D.LIB is no library: no agent runs");
}

TEST_F(SmallSet, AFileThatDescribesNothingIsToldWithTheReason) {
  WriteFile("D.DAT", "");
  ExpectNotFound("install description: not found: the SADat file is empty or can't be read");
  WriteFile("D.DAT", "[ Install ]\n");
  ExpectNotFound("install description: not found: the SADat file has no line [Install]");
}

TEST_F(SmallSet, OfAFileWithoutKeysOnlyTheKeysAreReported) {
  WriteFile("D.DAT", "[Install]\nREGPATH = D, Unquoted\nREGENTER = D, \"ModelID\", \"M\"\n");
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.code, 1);
  EXPECT_TRUE(outcome.out.ends_with(R"(
  install description:
    /////path/////
    None path data.
    //////////////
    0 of 1 REGPATH lines count
)")) << outcome.out;
}

TEST_F(SmallSet, OfAFileWithoutValuesThatIsReported) {
  WriteFile("D.DAT", kPath + "REGENTER = D, \"ModelID\", \"M\", WIN9X\n");
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.code, 1);
  EXPECT_TRUE(outcome.out.ends_with(R"(
    1 of 1 REGPATH lines count

    /////enter////
    None enter data.
    //////////////
    0 of 1 REGENTER lines count
)")) << outcome.out;
}

TEST_F(SmallSet, ValuesWhoseTagNoPathGivesAreCounted) {
  WriteFile("D.DAT", kPath + kValues + "REGENTER = d, \"N\", 1\nREGENTER = E, \"N\", 1\n");
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.code, 0);
  EXPECT_TRUE(outcome.out.ends_with(R"(
    5 of 5 REGENTER lines count
    1 of them have a tag that no REGPATH line gives
)")) << outcome.out;
}

TEST_F(SmallSet, ItsMapIsToldByGeneration) {
  const auto name = [&](const std::string& map) {
    WriteFile("D.DAT", kPath + kValues + "REGENTER = D, \"MapFileName\", \"" + map + "\"\n");
  };
  for (const std::string map : {"VglV5MapFile_Ink (V5)", "VglV7MapFile_Ink (V7)"}) {
    name(map.substr(0, map.find(' ')));
    EXPECT_EQ(Run().code, 0);
    EXPECT_NE(Run().out.find("\n  instance map: " + map + "\n"), std::string::npos) << map;
  }
  name("vglv7mapfile_ink");
  ExpectNotFound(
      "instance map: not found: vglv7mapfile_ink isn't VglV7MapFile_Ink to the letter: no other "
      "program finds the agent");
  name("VglV6MapFile_Ink");
  ExpectNotFound("instance map: not found: there is no map VglV6MapFile_Ink: no agent runs");
}

TEST_F(SmallSet, AProfileThatIsntNamedOrIsntThereIsTold) {
  WriteFile("D.DAT", kPath + "REGENTER = D, \"ModelID\", \"M\"\n");
  ExpectNotFound(
      "profile: not found: no value Profile of the driver and no value M of the profile branch "
      "names "
      "one: no agent runs");
  WriteFile("D.DAT", kPath + kValues +
                         "REGPATH = P, \"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Profile\"\n"
                         "REGENTER = P, \"M\", \"C:\\E.INI\"\n");
  ASSERT_TRUE(fs::remove(sample.path() / "files" / kSpool / "D.INI"));
  ExpectNotFound("profile: not found: C:\\E.INI isn't there");
}

TEST_F(SmallSet, WithoutALanguageWhoseLibraryIsThereNoAgentRuns) {
  const std::string noLanguage =
      "language: not found: the profile lists none whose resource library lies beside it";
  WriteFile("D.INI", kModel);
  ExpectNotFound(noLanguage);
  ExpectNotFound("resource library: not found: nothing names one: no agent runs");
  ExpectNotFound("bitmap library: not found: nothing names one");
  WriteFile("D.INI", kModel + kLanguages);
  ASSERT_TRUE(fs::remove(sample.path() / "files" / kSpool / "DEN.DLL"));
  ExpectNotFound(noLanguage);
}

// Only the file beside the profile is looked at, and only the one in the set's folder is loaded.
TEST_F(SmallSet, AResourceLibraryBesideTheProfileAloneIsntThere) {
  sample.Write("files/E/x", "");
  WriteFile("D.DAT", kPath + "REGENTER = D, \"ModelID\", \"M\"\n" +
                         "REGENTER = D, \"InstallPath\", \"C:\\E\"\n" +
                         "REGENTER = D, \"Profile\", DRIVERDIR+\"\\D.INI\"\n");
  ExpectNotFound("resource library: not found: C:\\E\\DEN.DLL isn't there: no agent runs");
  ExpectNotFound(
      "run helper: not found: neither K_QRX names one nor is K_QD21RX.EXE in InstallPath: no "
      "window "
      "opens");
}

TEST_F(SmallSet, WhatAResourceLibraryLacksIsTold) {
  const auto without = [&](const std::function<void(ResourceLibrary&)>& change) {
    ResourceLibrary library = PlainResourceLibrary();
    change(library);
    WriteFile("DEN.DLL", BytesOf(library));
  };
  const std::string beginning = "resource library: not found: {D}\\DEN.DLL ";
  WriteFile("DEN.DLL", "no program file");
  ExpectNotFound(beginning + "is no library: no agent runs");
  without([](ResourceLibrary& library) { library.menus.erase(801); });
  ExpectNotFound(beginning + "has no menu 801 with a sub-menu: no agent runs");
  without([](ResourceLibrary& library) { library.menus[801] = {{.text = u"A", .id = 900}}; });
  ExpectNotFound(beginning + "has no menu 801 with a sub-menu: no agent runs");
  without([](ResourceLibrary& library) {
    library.menus[801] = {{.text = u"A", .popup = {{.text = u"B", .id = 902}}}};
  });
  ExpectNotFound(beginning + "has no entry 901 in menu 801");
  without([](ResourceLibrary& library) { library.strings.erase(1100); });
  ExpectNotFound(beginning + "has no text 1100");
  without([](ResourceLibrary& library) { library.strings[35277] = u""; });
  ExpectNotFound(beginning + "has no text 35277");
  without([](ResourceLibrary& library) { library.icons.erase(702); });
  ExpectNotFound("bitmap library: not found: {D}\\DEN.DLL has no icon 702");
}

TEST_F(SmallSet, ABitmapLibraryOfItsOwnIsTold) {
  WriteFile("D.INI", kModel + "BmpDll=DBM.DLL\n" + kLanguages);
  ExpectNotFound(
      "bitmap library: not found: {D}\\DBM.DLL isn't there: the pictures are the resource "
      "library's");
  WriteFile("DBM.DLL", BytesOf({.icons = {{700, 1}, {701, 2}}}));
  ExpectNotFound("bitmap library: not found: {D}\\DBM.DLL has no icon 702");
  WriteFile("DBM.DLL", BytesOf({.icons = {{700, 1}, {701, 2}, {702, 3}}}));
  EXPECT_EQ(Run().code, 0);
  EXPECT_NE(Run().out.find(WithFolder("\n  bitmap library: {D}\\DBM.DLL\n")), std::string::npos);
}

TEST_F(SmallSet, APrinterLibraryThatIsOfNoUseIsTold) {
  const std::string without = ": new records stay without settings, uses aren't counted";
  WriteLibraries("DPR.DLL");
  ExpectNotFound("printer library: not found: {D}\\DPR.DLL isn't there" + without);
  WriteLibraries("DPR.DLL", "invitation-library " + kFolder + "DPR.DLL\n");
  ExpectNotFound("printer library: not found: {D}\\DPR.DLL has no export PrSetRegDefaultValue");
  WriteFile("D.INI", "[M]\nVGL_LOG=1\n");
  ExpectNotFound("printer library: not found: the profile has no PrnDll in [M]" + without);
}

TEST_F(SmallSet, AUsageLogLibraryThatIsOfNoUseIsTold) {
  WriteLibraries("DLG.DLL");
  const std::string none =
      "usage log library: not found: the VIF names none that lies beside it: uses aren't counted";
  ExpectNotFound(none);
  WriteLibraries("DLG.DLL", "stand-in " + kFolder + "DLG.DLL\n");
  ExpectNotFound("usage log library: not found: {D}\\DLG.DLL is no library: uses aren't counted");
  WriteLibraries("DLG.DLL", "invitation-library " + kFolder + "DLG.DLL\n");
  ExpectNotFound("usage log library: not found: {D}\\DLG.DLL has no export GetExtEscapeDeviceID");
  WriteFile("D.VIF", "[CommonDrvInfo]\nSADat=D.DAT\nKVRDEF01=D.LIB\n");
  ExpectNotFound(none);
}

TEST_F(SmallSet, OfAModelThatIsntCountedTheUsageLogLibraryIsntLookedFor) {
  WriteLibraries("DLG.DLL");
  for (const char* key : {"", "VGL_LOG=0\n", "VGL_LOG=2\n"}) {
    WriteFile("D.INI", "[M]\nPrnDll=DPR.DLL\n" + std::string(key) + kLanguages);
    EXPECT_EQ(Run().code, 0);
    EXPECT_NE(Run().out.find("\n  usage log library: isn't asked, as VGL_LOG isn't 1 in [M]\n"),
              std::string::npos);
  }
}

TEST_F(SmallSet, ALanguageManagerIsToldWithTheResourceLibraryThatItGives) {
  WriteFile("D.VIF", kVif + "LMWModule=DLM.DLL\nVGLUIRESModule=DHE.DLL\n");
  ExpectNotFound("language manager: not found: {D}\\DLM.DLL isn't there");
  WriteLibraries("", "stand-in " + kFolder + "DLM.DLL\n");
  ExpectNotFound("language manager: not found: {D}\\DLM.DLL is of no use");
  WriteLibraries("", "language-manager " + kFolder + "DLM.DLL\n");
  WriteFile("DHE.DLL", BytesOf(PlainResourceLibrary()));
  EXPECT_EQ(Run().code, 0);
  EXPECT_NE(Run().out.find(WithFolder(R"(
  language manager: {D}\DLM.DLL
  language: ENU
  resource library: {D}\DHE.DLL, from the language manager
)")),
            std::string::npos)
      << Run().out;
  // What it names isn't there: the profile's.
  ASSERT_TRUE(fs::remove(sample.path() / "files" / kSpool / "DHE.DLL"));
  EXPECT_EQ(Run().code, 0);
  EXPECT_NE(Run().out.find(WithFolder("\n  resource library: {D}\\DEN.DLL\n")), std::string::npos);
}

TEST_F(SmallSet, ASampleWithoutAPrinterIsTold) {
  sample.Write("machine.reg", "REGEDIT4\n");
  EXPECT_EQ(Run().code, 1);
  EXPECT_EQ(Run().out, "the sample has no printer\n");
}

TEST_F(SmallSet, ASampleWithAMistakeIsNotDescribed) {
  sample.Write("libraries", "library X\n");
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.code, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "vgldesk describe: " + sample.path().string() +
                             "/libraries: line 1: there is no kind \"library\"; the kinds are "
                             "registry-library, printer-library, usage-log-library, "
                             "language-manager, invitation-library, utility-library, run-helper, "
                             "program and stand-in\n");
}

}  // namespace
}  // namespace desk
