// vgldesk describe: what is found of a sample's driver set.
#include "desk/describe.h"

#include <gtest/gtest.h>

#include <sstream>

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
    sample.Write("libraries",
                 "registry-library Windows\\system32\\spool\\drivers\\x64\\3\\D.LIB\n");
    WriteFile("D.VIF", "[CommonDrvInfo]\nSADat=D.DAT\nKVRDEF01=D.LIB\n");
    WriteFile("D.DAT", kPath + "REGENTER = D, \"ModelID\", \"M\"\n");
  }

  inline static const std::string kPath =
      "[Install]\nREGPATH = D, \"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Driver\\D\"\n";

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
  install description:
    /////path/////
    #1 [<D> "Software\KAVRO\VGL3\Driver\D"]
    //////////////
    1 of 1 REGPATH lines count

    /////enter////
    #1 [<D> "ModelID", (REG_SZ) "M"]
    //////////////
    1 of 1 REGENTER lines count
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
  sample.Write("libraries", "");
  ExpectNotFound("registry library: not found: {D}\\D.LIB isn't there: no agent runs");
  sample.Write("libraries", "stand-in Windows\\system32\\spool\\drivers\\x64\\3\\D.LIB\n");
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
  WriteFile("D.DAT", kPath + "REGENTER = d, \"ModelID\", \"M\"\nREGENTER = E, \"N\", 1\n");
  const Outcome outcome = Run();
  EXPECT_EQ(outcome.code, 0);
  EXPECT_TRUE(outcome.out.ends_with(R"(
    2 of 2 REGENTER lines count
    1 of them have a tag that no REGPATH line gives
)")) << outcome.out;
}

TEST_F(SmallSet, ItsMapIsToldByGeneration) {
  const auto name = [&](const std::string& map) {
    WriteFile("D.DAT", kPath +
                           "REGENTER = D, \"ModelID\", \"M\"\nREGENTER = D, \"MapFileName\", \"" +
                           map + "\"\n");
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
                             "registry-library and stand-in\n");
}

}  // namespace
}  // namespace desk
