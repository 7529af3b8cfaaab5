#include "Common/path_lookup.h"

#include <string>

#include "platform/owned.h"
#include "tests/Common/path_lookup_fixture.h"

namespace vgl {
namespace {

using namespace platform;

class PathLookup : public PathLookupTest {
 protected:
  int Value(const char16_t* name, std::uint32_t chars = 260) {
    EXPECT_TRUE(path.Assign(u"before"));
    return GetDriverValue(path.buffer(), chars, name, kDriver, kModel, kPrinter);
  }
  int File(const char16_t* valueName, const char16_t* defaultName, std::uint32_t chars = 260) {
    EXPECT_TRUE(path.Assign(u"before"));
    return FindDriverFile(path.buffer(), chars, valueName, defaultName, kDriver, kModel, kPrinter);
  }
};

using DriverValue = PathLookup;
using DriverFile = PathLookup;
using DriverFolder = PathLookup;
using ProfilePath = PathLookup;
using ProfileLibraries = PathLookup;
using PathLookups = PathLookup;

// --- GetDriverValue

TEST_F(DriverValue, AValueOfTheDriversKeyIsGiven) {
  DescribeSet({{"DepExe", "C:\\Set\\tool.exe"}});
  EXPECT_EQ(Value(u"DepExe"), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\tool.exe");
  EXPECT_EQ(GetDriverValue(path.buffer(), 260, u"depexe", kDriver, u"any model", u""), 1);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(DriverValue, WhatIsMissingOrEmptyOrANumberGives0AndAnEmptyOutput) {
  Describe(R"(
REGPATH  = DRV, "HKEY_LOCAL_MACHINE\Software\KAVRO\VGL3\Driver\Sample"
REGENTER = DRV, "Number", 12
REGENTER = DRV, "Empty", ""
)");
  for (const char16_t* name : {u"Missing", u"Number", u"Empty", u""}) {
    EXPECT_EQ(Value(name), 0);
    EXPECT_EQ(path.view(), u"");
  }
  EXPECT_EQ(Value(nullptr), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(DriverValue, AValueLongerThanTheOutputGives0) {
  DescribeSet({{"V", "12345"}});
  EXPECT_EQ(Value(u"V", 6), 1);
  EXPECT_EQ(path.view(), u"12345");
  EXPECT_EQ(Value(u"V", 5), 0);
  EXPECT_EQ(path.view(), u"");
  EXPECT_EQ(Value(u"V", 1), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(DriverValue, AnOutputThatIsNullOrHasNoRoomAsksNobody) {
  DescribeSet({{"V", "12345"}});
  EXPECT_EQ(CallsOf([this] {
              EXPECT_EQ(GetDriverValue(nullptr, 260, u"V", kDriver, kModel, kPrinter), 0);
              EXPECT_EQ(Value(u"V", 0), 0);
            }),
            0U);
  EXPECT_EQ(path.view(), u"before");
}

TEST_F(DriverValue, AnEmptyDriverOrModelAsksNobody) {
  DescribeSet({{"V", "12345"}});
  const struct {
    const char16_t* driver;
    const char16_t* model;
  } cases[] = {{u"", kModel}, {nullptr, kModel}, {kDriver, u""}, {kDriver, nullptr}};
  for (const auto& c : cases) {
    EXPECT_TRUE(path.Assign(u"before"));
    EXPECT_EQ(CallsOf([&] {
                EXPECT_EQ(GetDriverValue(path.buffer(), 260, u"V", c.driver, c.model, kPrinter), 0);
              }),
              0U);
    EXPECT_EQ(path.view(), u"");
  }
}

TEST_F(DriverValue, ADriverWhoseKeyTakes260CharactersAsksNobody) {
  // 27 characters stand in front of the name.
  const std::u16string tooLong(233, u'd');
  const std::u16string longest(232, u'd');
  const auto callsFor = [this](const std::u16string& driver) {
    return CallsOf([&] {
      EXPECT_EQ(GetDriverValue(path.buffer(), 260, u"V", driver.c_str(), kModel, kPrinter), 0);
    });
  };
  EXPECT_EQ(callsFor(tooLong), 0U);
  EXPECT_GT(callsFor(longest), 0U);
}

// --- FindDriverFile

TEST_F(DriverFile, TheFileThatTheValueNamesComesFirst) {
  DescribeUsualSet({{"TOOL", "C:\\Other\\own.exe"}});
  AddFile(u"C:\\Other\\own.exe");
  AddFile(u"C:\\Set\\default.exe");
  EXPECT_EQ(File(u"TOOL", u"default.exe"), 1);
  EXPECT_EQ(path.view(), u"C:\\Other\\own.exe");
}

TEST_F(DriverFile, TheDefaultNameIsInTheFolderBehindTwoBackslashes) {
  DescribeUsualSet();
  AddFile(u"C:\\Set\\default.exe");
  EXPECT_EQ(File(u"TOOL", u"default.exe"), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\\\default.exe");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(DriverFile, AValueThatNamesAMissingFileGivesWayToTheDefault) {
  DescribeUsualSet({{"TOOL", "C:\\Other\\gone.exe"}});
  AddFile(u"C:\\Set\\default.exe");
  EXPECT_EQ(File(u"TOOL", u"default.exe"), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\\\default.exe");
}

TEST_F(DriverFile, WithoutEitherFileTheOutputIsEmpty) {
  DescribeUsualSet({{"TOOL", "C:\\Other\\gone.exe"}});
  EXPECT_EQ(File(u"TOOL", u"default.exe"), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(DriverFile, WithoutAFolderTheDefaultIsntLookedFor) {
  DescribeSet({{"InstallPath", "C:\\Gone"}, {"TOOL", "C:\\Other\\own.exe"}});
  EXPECT_EQ(File(u"TOOL", u"default.exe"), 0);
  EXPECT_EQ(path.view(), u"");
  AddFile(u"C:\\Other\\own.exe");
  EXPECT_EQ(File(u"TOOL", u"default.exe"), 1);
  EXPECT_EQ(path.view(), u"C:\\Other\\own.exe");
}

TEST_F(DriverFile, ADefaultThatDoesntFitIntoTheOutputGives0) {
  DescribeUsualSet();
  AddFile(u"C:\\Set\\a.exe");
  EXPECT_EQ(File(u"TOOL", u"a.exe", 14), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\\\a.exe");  // 13 characters
  EXPECT_EQ(File(u"TOOL", u"a.exe", 13), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(DriverFile, AValueThatDoesntFitIntoTheOutputGivesWayToTheDefault) {
  DescribeUsualSet({{"TOOL", "C:\\A longer folder\\own.exe"}});
  AddFile(u"C:\\A longer folder\\own.exe");
  AddFile(u"C:\\Set\\a.exe");
  EXPECT_EQ(File(u"TOOL", u"a.exe", 14), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\\\a.exe");
}

TEST_F(DriverFile, AnEmptyDefaultNameFindsNothing) {
  DescribeUsualSet();
  for (const char16_t* name : {u"", static_cast<const char16_t*>(nullptr)}) {
    EXPECT_EQ(File(u"TOOL", name), 0);
    EXPECT_EQ(path.view(), u"");
  }
}

TEST_F(DriverFile, ADriverWhoseKeyTakes260CharactersHasNone) {
  const std::u16string driver(233, u'd');
  EXPECT_EQ(CallsOf([&] {
              EXPECT_EQ(FindDriverFile(path.buffer(), 260, u"TOOL", u"a.exe", driver.c_str(),
                                       kModel, kPrinter),
                        0);
            }),
            0U);
  EXPECT_EQ(path.view(), u"");
}

// --- GetProcPath

TEST_F(DriverFolder, EndsInOneBackslashWhetherTheValueDoesOrNot) {
  for (const char* value : {"C:\\Set", "C:\\Set\\"}) {
    DescribeSet({{"InstallPath", value}});
    EXPECT_EQ(Find(GetProcPath), 1);
    EXPECT_EQ(path.view(), u"C:\\Set\\");
  }
}

TEST_F(DriverFolder, OnlyOneBackslashIsTakenOff) {
  DescribeSet({{"InstallPath", "C:\\Set\\\\"}});
  EXPECT_EQ(Find(GetProcPath), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(DriverFolder, AFolderThatIsGoneGives0AndAnEmptyOutput) {
  DescribeSet({{"InstallPath", "C:\\Gone"}});
  EXPECT_EQ(Find(GetProcPath), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(DriverFolder, AValueThatIsABackslashAloneIsNoFolder) {
  DescribeSet({{"InstallPath", "\\"}});
  EXPECT_EQ(Find(GetProcPath), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(DriverFolder, WithoutTheValueThereIsNone) {
  DescribeSet({{"Other", "C:\\Set"}});
  EXPECT_EQ(Find(GetProcPath), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(DriverFolder, ItTakes259CharactersWithItsBackslash) {
  const std::string base = "C:\\" + std::string(127, 'a') + "\\";
  for (const std::size_t chars : {127U, 128U}) {
    const std::string folder = base + std::string(chars, 'b');  // 258 and 259 characters
    machine.files().MakeFolder(std::u16string(folder.begin(), folder.end()));
    DescribeSet({{"InstallPath", folder}});
    EXPECT_EQ(Find(GetProcPath), chars == 127 ? 1 : 0);
    EXPECT_EQ(path.length(), chars == 127 ? 259U : 0U);
  }
}

TEST_F(DriverFolder, AMissingArgumentGives0) {
  DescribeSet({{"InstallPath", "C:\\Set"}});
  EXPECT_EQ(GetProcPath(nullptr, kDriver, kModel, kPrinter), 0);
  EXPECT_EQ(GetProcPath(&path, kDriver, nullptr, kPrinter), 0);
  EXPECT_EQ(path.view(), u"");
  EXPECT_TRUE(path.Assign(u"before"));
  EXPECT_EQ(GetProcPath(&path, nullptr, kModel, kPrinter), 0);
  EXPECT_EQ(path.view(), u"");
}

// --- GetProfilePath

TEST_F(ProfilePath, IsTheFileThatTheDriversKeyNames) {
  DescribeSet({{"Profile", "C:\\Set\\M1.INI"}}, {{"M1", "C:\\Branch\\M1.INI"}});
  WriteProfile("");
  EXPECT_EQ(Find(GetProfilePath), 1);
  EXPECT_EQ(path.view(), kProfile);
}

TEST_F(ProfilePath, OfTheBranchCountsWhereTheKeyNamesAMissingFileOrNone) {
  for (const Values& ofDriver : {Values{{"Profile", "C:\\Gone\\M1.INI"}}, Values{}}) {
    DescribeSet(ofDriver, {{"M1", "C:\\Branch\\M1.INI"}, {"M2", "C:\\Branch\\M2.INI"}});
    AddFile(u"C:\\Branch\\M1.INI");
    EXPECT_EQ(Find(GetProfilePath), 1);
    EXPECT_EQ(path.view(), u"C:\\Branch\\M1.INI");
    EXPECT_EQ(Find(GetProfilePath, u""), 1);
    EXPECT_EQ(path.view(), u"C:\\Branch\\M1.INI");
  }
}

TEST_F(ProfilePath, OfTheBranchNeedntBeThereAndItsKeysAreEmpty) {
  DescribeSet({{"InstallPath", "C:\\Set"}}, {{"M1", "C:\\Gone\\M1.INI"}});
  EXPECT_EQ(Find(GetProfilePath), 1);
  EXPECT_EQ(path.view(), u"C:\\Gone\\M1.INI");
  EXPECT_EQ(Find(GetPrnDllPath), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(ProfilePath, OfTheBranchOf260CharactersDoesntComeThrough) {
  const std::string fits = "C:\\" + std::string(256, 'p');
  DescribeSet({}, {{"M1", fits}});
  EXPECT_EQ(Find(GetProfilePath), 1);
  EXPECT_EQ(path.length(), 259U);
  DescribeSet({}, {{"M1", fits + "p"}});
  EXPECT_EQ(Find(GetProfilePath), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(ProfilePath, TheDriversFolderIsNotTakenForIt) {
  DescribeSet({{"InstallPath", "C:\\Set"}});
  EXPECT_EQ(Find(GetProfilePath), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(ProfilePath, NeedsDriverAndModel) {
  DescribeSet({}, {{"M1", "C:\\Branch\\M1.INI"}});
  EXPECT_EQ(CallsOf([this] {
              EXPECT_EQ(GetProfilePath(&path, u"", kModel, kPrinter), 0);
              EXPECT_EQ(GetProfilePath(&path, nullptr, kModel, kPrinter), 0);
              EXPECT_EQ(GetProfilePath(&path, kDriver, u"", kPrinter), 0);
              EXPECT_EQ(GetProfilePath(&path, kDriver, nullptr, kPrinter), 0);
              EXPECT_EQ(GetProfilePath(nullptr, kDriver, kModel, kPrinter), 0);
            }),
            0U);
  EXPECT_EQ(path.view(), u"");
}

// --- GetPrnDllPath, GetBmpPath

TEST_F(ProfileLibraries, AreInTheDriversFolderWhetherTheyAreThereOrNot) {
  DescribeUsualSet();
  WriteProfile("[M1]\nPrnDll=prn.dll\nBmpDll=bmp.dll\n[M2]\nPrnDll=other.dll\n");
  EXPECT_EQ(Find(GetPrnDllPath), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\prn.dll");
  EXPECT_EQ(Find(GetBmpPath), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\bmp.dll");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(ProfileLibraries, WithoutAFolderADotStandsRightInFrontOfTheName) {
  DescribeSet({{"InstallPath", "C:\\Gone"}, {"Profile", "C:\\Set\\M1.INI"}});
  WriteProfile("[M1]\nPrnDll=prn.dll\nBmpDll=bmp.dll\n");
  EXPECT_EQ(Find(GetPrnDllPath), 1);
  EXPECT_EQ(path.view(), u".prn.dll");
  EXPECT_EQ(Find(GetBmpPath), 1);
  EXPECT_EQ(path.view(), u".bmp.dll");
}

TEST_F(ProfileLibraries, ANameThatIsMissingOrEmptyGives0) {
  DescribeUsualSet();
  for (const char* profile : {"", "[M1]\n", "[M1]\nPrnDll=\n", "[M2]\nPrnDll=prn.dll\n"}) {
    WriteProfile(profile);
    EXPECT_EQ(Find(GetPrnDllPath), 0) << profile;
    EXPECT_EQ(path.view(), u"");
  }
}

TEST_F(ProfileLibraries, APathOf260CharactersGives0) {
  DescribeUsualSet();
  WriteProfile("[M1]\nPrnDll=" + std::string(252, 'n') + "\n");
  EXPECT_EQ(Find(GetPrnDllPath), 1);
  EXPECT_EQ(path.length(), 259U);
  WriteProfile("[M1]\nPrnDll=" + std::string(253, 'n') + "\n");
  EXPECT_EQ(Find(GetPrnDllPath), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(ProfileLibraries, WithoutAFolderANameTakes258Characters) {
  DescribeSet({{"Profile", "C:\\Set\\M1.INI"}});  // no folder, so a dot takes its place
  WriteProfile("[M1]\nPrnDll=" + std::string(258, 'n') + "\n");
  EXPECT_EQ(Find(GetPrnDllPath), 1);
  EXPECT_EQ(path.view(), u"." + std::u16string(258, u'n'));
  WriteProfile("[M1]\nPrnDll=" + std::string(600, 'n') + "\n");
  EXPECT_EQ(Find(GetPrnDllPath), 0);  // the dot and 259 characters
  EXPECT_EQ(path.view(), u"");
}

// --- All of them

// A lookup with a buffer and its size, as one of the others.
template <int (*kLookup)(char16_t*, std::uint32_t, const char16_t*, const char16_t*,
                         const char16_t*)>
int Fixed(PathText* out, const char16_t* driver, const char16_t* modelId, const char16_t* printer) {
  return kLookup(out->buffer(), PathText::capacity(), driver, modelId, printer);
}

TEST_F(PathLookups, WithAnEmptyPrinterNameEveryLookupGoesByTheDriver) {
  DescribeUsualSet({{"VGLSRV_QBNAME", "qb.exe"},
                    {"K_QRX", "C:\\Set\\rx.exe"},
                    {"K_QTRN", "C:\\Set\\tr.exe"},
                    {"K_QEV", "C:\\Set\\ev.exe"}});
  WriteProfile("[M1]\nPrnDll=prn.dll\nBmpDll=bmp.dll\n");
  for (const char16_t* file : {u"C:\\Set\\rx.exe", u"C:\\Set\\tr.exe", u"C:\\Set\\ev.exe"})
    AddFile(file);
  const OwnedObject installer = Installer();  // so nothing is told of a printer by its name
  const struct {
    Lookup lookup;
    std::u16string_view found;
  } cases[] = {{GetProcPath, u"C:\\Set\\"},
               {GetProfilePath, kProfile},
               {GetPrnDllPath, u"C:\\Set\\prn.dll"},
               {GetBmpPath, u"C:\\Set\\bmp.dll"},
               {GetServerPath, u"C:\\Set\\\\K_QD01SV.EXE"},
               {GetQbServerPath, u"C:\\Set\\\\qb.exe"},
               {GetRunHelperPath, u"C:\\Set\\rx.exe"},
               {Fixed<GetTrayAgentPath>, u"C:\\Set\\tr.exe"},
               {Fixed<GetEnvHelperPath>, u"C:\\Set\\ev.exe"}};
  for (const auto& c : cases) {
    EXPECT_EQ(Find(c.lookup, kPrinter), 0);
    EXPECT_EQ(path.view(), u"");
    for (const char16_t* printer : {u"", static_cast<const char16_t*>(nullptr)}) {
      EXPECT_EQ(Find(c.lookup, printer), 1);
      EXPECT_EQ(path.view(), c.found);
    }
  }
}

TEST_F(PathLookups, NothingIsKeptBetweenTwo) {
  DescribeSet({{"InstallPath", "C:\\Set"}});
  EXPECT_EQ(Find(GetProcPath), 1);
  machine.files().MakeFolder(u"C:\\New");
  DescribeSet({{"InstallPath", "C:\\New"}});
  EXPECT_EQ(Find(GetProcPath), 1);
  EXPECT_EQ(path.view(), u"C:\\New\\");
}

TEST_F(PathLookups, AnyCallThatFailsGivesThePathOrOneWithoutItsFolderOrNothing) {
  DescribeUsualSet();
  WriteProfile("[M1]\nPrnDll=prn.dll\n");
  int result = 0;
  int whole = 0;
  int withDot = 0;
  int none = 0;
  int runs = 0;
  WithEachCallFailing([&] { result = Find(GetPrnDllPath); },
                      [&](std::uint64_t) {
                        EXPECT_EQ(result, path.empty() ? 0 : 1);
                        whole += path.view() == u"C:\\Set\\prn.dll" ? 1 : 0;
                        withDot += path.view() == u".prn.dll" ? 1 : 0;
                        none += path.empty() ? 1 : 0;
                        ++runs;
                      });
  EXPECT_EQ(whole + withDot + none, runs);
  EXPECT_GT(whole, 0);
  EXPECT_GT(withDot, 0);
  EXPECT_GT(none, 0);
  EXPECT_EQ(Find(GetPrnDllPath), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\prn.dll");
}

TEST_F(PathLookups, AFileOrFolderExistsAndTheSearchIsClosed) {
  AddFile(u"C:\\Set\\a.exe");
  EXPECT_TRUE(FileExists(u"C:\\Set\\a.exe"));
  EXPECT_TRUE(FileExists(u"c:\\set"));
  EXPECT_TRUE(FileExists(u"C:\\Set\\*.exe"));
  EXPECT_FALSE(FileExists(u"C:\\Set\\b.exe"));
  EXPECT_FALSE(FileExists(u"C:\\Set\\"));
  EXPECT_FALSE(FileExists(u""));
  EXPECT_FALSE(FileExists(nullptr));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

}  // namespace
}  // namespace vgl
