// IsUtyCallMenu: which command texts are calls into the utility library, in both forms.
#include "platform/owned.h"
#include "tests/menu/uty_call_fixture.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;

std::string Bytes(std::size_t count) { return std::string(count, 'u'); }

// --- By the model's section of the profile

class UtilityEntry : public UtyCallTest {
 protected:
  UtilityEntry() { AddToProfile(machine, "UTILITY=K_UTIL.DLL"); }

  void WriteProfile(std::string_view text) {
    machine.files().WriteFile(desk::kProfilePath, std::string(text));
  }
  static std::int32_t Ask(const char16_t* param, const char16_t* driver = desk::kDriverName,
                          const char16_t* model = desk::kModelId,
                          const char16_t* printer = desk::kPrinterName) {
    return CUtyCall::IsUtyCallMenu(driver, printer, model, param);
  }
};

TEST_F(UtilityEntry, IsOneWhoseTextHoldsTheModulesName) {
  EXPECT_EQ(Ask(u"C:\\Driver\\K_UTIL.DLL /U2"), 1);
  EXPECT_EQ(Ask(u"K_UTIL.DLL"), 1);
  EXPECT_EQ(Ask(u"C:\\X.EXE /K_UTIL.DLLX"), 1);
  EXPECT_EQ(Ask(u"C:\\Driver\\K_OTHER.DLL /U2"), 0);
  EXPECT_EQ(Ask(u"C:\\Driver\\K_UTIL /U2"), 0);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(UtilityEntry, IsToldByTheModulesNameExactInCase) {
  EXPECT_EQ(Ask(u"C:\\Driver\\k_util.dll /U2"), 0);
  EXPECT_EQ(Ask(u"C:\\Driver\\K_Util.DLL /U2"), 0);
}

TEST_F(UtilityEntry, NeedsDriverModelAndText) {
  const std::uint64_t before = inside.process().calls();
  for (const char16_t* missing : {u"", static_cast<const char16_t*>(nullptr)}) {
    EXPECT_EQ(Ask(missing), 0);
    EXPECT_EQ(Ask(u"K_UTIL.DLL /U2", missing), 0);
    EXPECT_EQ(Ask(u"K_UTIL.DLL /U2", desk::kDriverName, missing), 0);
  }
  EXPECT_EQ(inside.process().calls(), before);
}

TEST_F(UtilityEntry, NeedsThePrinterWhoseDriverSetItIs) {
  EXPECT_EQ(Ask(u"K_UTIL.DLL", desk::kDriverName, desk::kModelId, u""), 0);
  EXPECT_EQ(Ask(u"K_UTIL.DLL", desk::kDriverName, desk::kModelId, nullptr), 0);
  EXPECT_EQ(Ask(u"K_UTIL.DLL", desk::kDriverName, desk::kModelId, u"No such"), 0);
}

TEST_F(UtilityEntry, IsntToldWithoutAName) {
  for (const char* line :
       {"", "UTILITY=\r\n", "UTILITY= \r\n", "UTILITY=\"\"\r\n", "UTILITYX=A\r\n"}) {
    SCOPED_TRACE(line);
    WriteProfile("[S7200]\r\n" + std::string(line) + "[Other]\r\nUTILITY=K_UTIL.DLL\r\n");
    EXPECT_EQ(Ask(u"C:\\K_UTIL.DLL /U2"), 0);
  }
}

TEST_F(UtilityEntry, IsToldByTheModelsSectionAlone) {
  WriteProfile("[S7200]\r\nUTILITY=A.DLL\r\n[S7300]\r\nUTILITY=B.DLL\r\n");
  EXPECT_EQ(Ask(u"A.DLL /U1", desk::kDriverName, u"S7200"), 1);
  EXPECT_EQ(Ask(u"A.DLL /U1", desk::kDriverName, u"S7300"), 0);
  EXPECT_EQ(Ask(u"B.DLL /U1", desk::kDriverName, u"S7300"), 1);
  EXPECT_EQ(Ask(u"B.DLL /U1", desk::kDriverName, u"S7400"), 0);
}

TEST_F(UtilityEntry, IsToldByTheInstallDescriptionAlsoWhereTheSettingsAreInTheRegistry) {
  AddToProfile(machine, "RegistryBaseVGL=1");
  machine.files().WriteFile(u"C:\\other.ini", "[S7200]\r\nUTILITY=OTHER.DLL\r\n");
  machine.registry().SetString(HKEY_LOCAL_MACHINE,
                               u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200", u"Profile",
                               u"C:\\other.ini");
  EXPECT_EQ(Ask(u"C:\\K_UTIL.DLL /U2"), 1);
  EXPECT_EQ(Ask(u"C:\\OTHER.DLL /U2"), 0);
}

TEST_F(UtilityEntry, IsntToldWhereTheProfileIsMissing) {
  machine.files().Remove(desk::kProfilePath);
  EXPECT_EQ(Ask(u"K_UTIL.DLL /U2"), 0);
  SetDriverValue(machine, "Profile", "");
  EXPECT_EQ(Ask(u"K_UTIL.DLL /U2"), 0);
}

// No file has a path that is longer; so what tells is that none is looked for.
TEST_F(UtilityEntry, AProfilesPathOf260CharactersIsNoneAtAll) {
  const auto callsWith = [this](std::size_t length, std::int32_t result) {
    const std::string path = "C:\\" + std::string(length - 3, 'p');
    SetDriverValue(machine, "Profile", path);
    if (length < MAX_PATH)
      machine.files().WriteFile(std::u16string(path.begin(), path.end()),
                                "[S7200]\r\nUTILITY=K_UTIL.DLL\r\n");
    const std::uint64_t before = inside.process().calls();
    EXPECT_EQ(Ask(u"K_UTIL.DLL /U2"), result);
    return inside.process().calls() - before;
  };
  const std::uint64_t longest = callsWith(259, 1);
  EXPECT_EQ(callsWith(260, 0), longest - 1);
  EXPECT_EQ(callsWith(300, 0), longest - 1);
}

TEST_F(UtilityEntry, TheModulesNameIsCutTo259Characters) {
  WriteProfile("[S7200]\r\nUTILITY=" + Bytes(300) + "\r\n");
  EXPECT_EQ(Ask(std::u16string(258, u'u').c_str()), 0);
  EXPECT_EQ(Ask(std::u16string(259, u'u').c_str()), 1);
}

TEST_F(UtilityEntry, IsntToldWhileAnInstallerIsAtWork) {
  const OwnedObject installer(
      Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller"));
  EXPECT_EQ(Ask(u"K_UTIL.DLL /U2"), 0);
}

TEST_F(UtilityEntry, IsNoneOfADriverThatNobodyKnowsWhateverItsNamesLength) {
  EXPECT_EQ(Ask(u"K_UTIL.DLL /U2", std::u16string(259, u'd').c_str()), 0);
}

// --- By the data file of the printer's driver

class UtilityEntryOfDataFile : public UtyCallTest {
 protected:
  static constexpr char16_t kDataFile[] = u"C:\\Drv\\SET.VIF";

  UtilityEntryOfDataFile() {
    Register(u"C:\\Drv\\SET.DLL", kDataFile);
    machine.files().WriteFile(kDataFile,
                              "[CommonDrvInfo]\r\nUtilModuleI=K_UTIL.DLL\r\n"
                              "[KAVRO Studio 7200]\r\n40=K_OLD.DLL,,5,6\r\n");
  }

  void Register(std::optional<std::u16string> driverPath, std::optional<std::u16string> dataFile) {
    machine.spooler().AddDriver({.name = desk::kDriverName,
                                 .driverPath = std::move(driverPath),
                                 .dataFile = std::move(dataFile)});
  }
  static std::int32_t Ask(const char16_t* param, const char16_t* printer = desk::kPrinterName) {
    return CUtyCall::IsUtyCallMenu(printer, param);
  }
};

TEST_F(UtilityEntryOfDataFile, IsOneWhoseTextHoldsTheModulesName) {
  EXPECT_EQ(Ask(u"C:\\Drv\\K_UTIL.DLL /U2"), 1);
  EXPECT_EQ(Ask(u"C:\\Drv\\k_util.dll /U2"), 0);
  EXPECT_EQ(Ask(u"C:\\Drv\\K_OLD.DLL /U2"), 0);
  EXPECT_EQ(Ask(u""), 0);
  EXPECT_EQ(Ask(nullptr), 0);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(UtilityEntryOfDataFile, ADataFileWithoutAFolderLiesBesideTheDriver) {
  Register(u"C:\\Drv\\SET.DLL", u"SET.VIF");
  EXPECT_EQ(Ask(u"K_UTIL.DLL /U2"), 1);
  Register(u"C:\\Other\\SET.DLL", u"SET.VIF");
  EXPECT_EQ(Ask(u"K_UTIL.DLL /U2"), 0);
}

TEST_F(UtilityEntryOfDataFile, ADataFileWithAFolderIsTakenAsItStands) {
  Register(std::nullopt, kDataFile);
  EXPECT_EQ(Ask(u"K_UTIL.DLL /U2"), 1);
}

TEST_F(UtilityEntryOfDataFile, WithoutAPathThereIsNone) {
  // Where a bare name would be found, if it were looked for.
  machine.files().WriteFile(u"C:\\Windows\\SET.VIF",
                            "[CommonDrvInfo]\r\nUtilModuleI=K_UTIL.DLL\r\n");
  const struct {
    std::optional<std::u16string> driverPath, dataFile;
  } cases[] = {
      {u"C:\\Drv\\SET.DLL", std::nullopt}, {u"C:\\Drv\\SET.DLL", u""},
      {std::nullopt, u"SET.VIF"},          {u"SET.DLL", u"SET.VIF"},
      {std::nullopt, std::nullopt},
  };
  for (const auto& [driverPath, dataFile] : cases) {
    Register(driverPath, dataFile);
    EXPECT_EQ(Ask(u"K_UTIL.DLL /U2"), 0);
  }
}

TEST_F(UtilityEntryOfDataFile, NeedsAPrinterThatOpensAndADriverThatIsTold) {
  EXPECT_EQ(Ask(u"K_UTIL.DLL", u"No such"), 0);
  EXPECT_EQ(Ask(u"K_UTIL.DLL", u""), 0);
  EXPECT_EQ(Ask(u"K_UTIL.DLL", nullptr), 0);
  for (const char* operation : {"CreateMutexW", "OpenPrinterW", "GetPrinterDriverW"}) {
    SCOPED_TRACE(operation);
    inside.process().FailNext(operation, ERROR_ACCESS_DENIED);
    EXPECT_EQ(Ask(u"K_UTIL.DLL"), 0);
    EXPECT_EQ(Ask(u"K_UTIL.DLL"), 1);
  }
  inside.process().FailNext("GetPrinterDriverW", ERROR_ACCESS_DENIED,
                            1);  // not the ask for the size
  EXPECT_EQ(Ask(u"K_UTIL.DLL"), 0);
  machine.spooler().RemoveDriver(desk::kDriverName);
  EXPECT_EQ(Ask(u"K_UTIL.DLL"), 0);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(UtilityEntryOfDataFile, IsntToldWhileAnInstallerIsAtWork) {
  const OwnedObject installer(
      Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller"));
  EXPECT_EQ(Ask(u"K_UTIL.DLL /U2"), 0);
}

TEST_F(UtilityEntryOfDataFile, SystemsBeforeVersion5HaveAKeyInTheDriversSection) {
  machine.system().version.majorVersion = 4;
  EXPECT_EQ(Ask(u"C:\\Drv\\K_OLD.DLL /U2"), 1);
  EXPECT_EQ(Ask(u"C:\\Drv\\K_UTIL.DLL /U2"), 0);
  machine.system().version.majorVersion = 5;
  EXPECT_EQ(Ask(u"C:\\Drv\\K_OLD.DLL /U2"), 0);
  EXPECT_EQ(Ask(u"C:\\Drv\\K_UTIL.DLL /U2"), 1);
}

// A version that isn't told is 0.
TEST_F(UtilityEntryOfDataFile, ASystemThatDoesntTellItsVersionIsOneBeforeVersion5) {
  machine.system().versionIsKnown = false;
  EXPECT_EQ(Ask(u"C:\\Drv\\K_OLD.DLL /U2"), 1);
}

TEST_F(UtilityEntryOfDataFile, TheOlderKeyIsCutAtItsFirstTwoCommas) {
  machine.system().version.majorVersion = 4;
  const struct {
    const char* value;
    const char16_t* param;
    std::int32_t result;
  } cases[] = {
      {"A.DLL,,B", u"A.DLL /U1", 1},  {"A.DLL,,B", u"A.DLL,,B /U1", 1},
      {"A.DLL,,B,,C", u"A.DLL", 1},   {"A.DLL", u"A.DLL /U1", 1},
      {"A.DLL,B", u"A.DLL /U1", 0},   {"A.DLL,B", u"A.DLL,B /U1", 1},
      {"A.DLL,B,,C", u"A.DLL,B", 1},  {"A.DLL,,,B", u"A.DLL", 1},
      {",,A.DLL", u"A.DLL,, /U1", 0}, {"", u"A.DLL /U1", 0},
  };
  for (const auto& [value, param, result] : cases) {
    SCOPED_TRACE(value);
    machine.files().WriteFile(kDataFile,
                              "[KAVRO Studio 7200]\r\n40=" + std::string(value) + "\r\n");
    EXPECT_EQ(Ask(param), result);
  }
}

TEST_F(UtilityEntryOfDataFile, TheNewerKeyIsTakenWhole) {
  machine.files().WriteFile(kDataFile, "[CommonDrvInfo]\r\nUtilModuleI=A.DLL,,B\r\n");
  EXPECT_EQ(Ask(u"A.DLL /U1"), 0);
  EXPECT_EQ(Ask(u"A.DLL,,B /U1"), 1);
}

TEST_F(UtilityEntryOfDataFile, ANameThatIsMissingOrEmptyIsNoEntrys) {
  for (const char* text : {"", "[CommonDrvInfo]\r\n", "[CommonDrvInfo]\r\nUtilModuleI=\r\n"}) {
    machine.files().WriteFile(kDataFile, text);
    EXPECT_EQ(Ask(u"K_UTIL.DLL /U2"), 0);
  }
  machine.files().Remove(kDataFile);
  EXPECT_EQ(Ask(u"K_UTIL.DLL /U2"), 0);
}

}  // namespace
}  // namespace vgl
