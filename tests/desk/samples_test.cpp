// The samples that come with the tree: each describes one whole machine, and the suite's readers
// find in it what its README tells.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "Common/instance_map.h"
#include "Common/printer_lookup.h"
#include "Common/reg_library.h"
#include "Common/target_records.h"
#include "Common/text_conversion.h"
#include "desk/command_line.h"
#include "desk/default_machine.h"
#include "desk/sample.h"
#include "platform/platform.h"
#include "profile/drv_file_locator.h"
#include "profile/drv_info_reader.h"
#include "profile/profile_keys.h"

namespace desk {
namespace {

using namespace platform;
namespace fs = std::filesystem;

constexpr char16_t kSpool[] = u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\";

struct Told {
  std::string sample;
  std::u16string printer, driver, port, model;
  std::u16string vif, sadat;
  std::u16string profile;  // empty: it isn't there
  bool inRegistry;
  std::string section;  // of the instance map
};

std::u16string InSpool(const std::u16string& name) { return kSpool + name; }

const std::vector<Told>& AllTold() {
  static const std::vector<Told> kTold = {
      {"studio-7200", u"Studio 7200", u"KAVRO Studio 7200", u"USB001", u"S7200",
       InSpool(u"KS7200.VIF"), InSpool(u"KS7200.DAT"), InSpool(u"KS7200.INI"), false,
       "VglV5MapFile_Ink: 533000 bytes"},
      {"atelier-4400", u"Atelier 4400", u"KAVRO Atelier 4400", u"USB002", u"A4400",
       u"C:\\ProgramData\\KAVRO\\A4400\\KA4400.VIF", InSpool(u"KA4400.DAT"),
       u"C:\\ProgramData\\KAVRO\\A4400\\KA4400.INI", true, "VglV5MapFile_Ink: 533000 bytes"},
      {"panorama-9900", u"\u05E4\u05E0\u05D5\u05E8\u05DE\u05D4 9900", u"KAVRO Panorama 9900",
       u"USB003", u"P9900", InSpool(u"KP9900.VIF"), InSpool(u"KP9900.DAT"),
       u"C:\\ProgramData\\KAVRO\\P9900\\KP9900.INI", false, "VglV7MapFile_Ink: 547000 bytes"},
      {"sketch-1100", u"Sketch 1100", u"KAVRO Sketch 1100", u"USB004", u"K1100",
       InSpool(u"KS1100.VIF"),
       InSpool(u"KS1100_INSTALL_DESCRIPTION_OF_THE_SKETCH_1100_AND_1100_PLUS.DAT"), u"", false,
       "VglV5MapFile_Ink: 533000 bytes"},
  };
  return kTold;
}

void Put(sim::Machine& machine, const std::string& sample) {
  std::string error;
  SetUpSuite(machine);
  ASSERT_TRUE(LoadSample(machine, SampleFolder(sample), error)) << error;
}

// A test of every sample.
class EachSample : public testing::TestWithParam<Told> {
 protected:
  const Told& told = GetParam();
  sim::Machine machine;
  sim::Inside inside{machine};

  void SetUp() override { Put(machine, told.sample); }

  // A value of the driver's own key, from the install description.
  std::u16string Described(const char16_t* name) {
    return vgl::CDrvInfoReader().GetString(told.printer.c_str(),
                                           vgl::DriverKeyPath(told.driver).c_str(), name);
  }
  std::u16string Profile() {
    const std::u16string profile = Described(u"Profile");
    if (!profile.empty()) return profile;
    return vgl::CDrvInfoReader().GetString(told.printer.c_str(), u"Software\\KAVRO\\VGL3\\Profile",
                                           told.model.c_str());
  }
};

INSTANTIATE_TEST_SUITE_P(Samples, EachSample, testing::ValuesIn(AllTold()),
                         [](const testing::TestParamInfo<Told>& sample) {
                           std::string name = sample.param.sample;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

TEST(Samples, AreTheOnesThatAreTestedHere) {
  std::vector<std::string> folders;
  for (const fs::directory_entry& entry : fs::directory_iterator("samples"))
    folders.push_back(entry.path().filename().string());
  std::vector<std::string> tested;
  for (const Told& told : AllTold()) tested.push_back(told.sample);
  std::sort(folders.begin(), folders.end());
  std::sort(tested.begin(), tested.end());
  EXPECT_EQ(folders, tested);
}

TEST_P(EachSample, HasOnePrinterWithItsDriverPortAndModel) {
  EXPECT_EQ(machine.registry().SubKeys(HKEY_LOCAL_MACHINE,
                                       u"System\\CurrentControlSet\\Control\\Print\\Printers"),
            std::vector<std::u16string>{told.printer});
  std::u16string driver, port, model;
  EXPECT_EQ(vgl::GetDriverAndPort(told.printer.c_str(), driver, port), 1);
  EXPECT_EQ(driver, told.driver);
  EXPECT_EQ(port, told.port);
  EXPECT_EQ(vgl::GetModelId(told.printer.c_str(), told.driver.c_str(), model), 1);
  EXPECT_EQ(model, told.model);
}

TEST_P(EachSample, HasItsVifAndSADatWhereTheyAreLookedFor) {
  std::u16string vif, sadat;
  EXPECT_EQ(vgl::CDrvFileLocator().GetVifPath(told.printer.c_str(), &vif), 1);
  EXPECT_EQ(vif, told.vif);
  EXPECT_TRUE(machine.files().Exists(vif));
  EXPECT_EQ(vgl::CDrvFileLocator().GetSADatPath(told.printer.c_str(), &sadat), 1);
  EXPECT_EQ(sadat, told.sadat);
  EXPECT_TRUE(machine.files().Exists(sadat));
  EXPECT_EQ(vgl::CDrvInfoReader().IsDescribed(told.printer.c_str()), 1);
}

TEST_P(EachSample, ItsProfileTellsWhereTheSettingsAre) {
  EXPECT_EQ(machine.files().Exists(Profile()) ? Profile() : u"", told.profile);
  EXPECT_EQ(vgl::SettingsAreInRegistry(told.model.c_str(), Profile().c_str()), told.inRegistry);
}

// The agent takes no more of the language list than that.
TEST_P(EachSample, ItsLanguagesFitInto128Characters) {
  char16_t lines[260] = {};
  const std::uint32_t length =
      Os().profiles.GetPrivateProfileSectionW(u"Language", lines, 260, Profile().c_str());
  EXPECT_EQ(length != 0, !told.profile.empty());
  EXPECT_LT(length, 128U);
}

TEST_P(EachSample, FilesThatItNamesWithTheirPathAreThere) {
  for (const char16_t* name : {u"InstallPath", u"K_QTRN", u"K_QRX", u"K_QEV", u"DepExe",
                               u"DriverUpdateName", u"SMRT_PARLOS"}) {
    const std::u16string path = Described(name);
    EXPECT_TRUE(path.empty() || machine.files().Exists(path)) << vgl::Utf8FromText(path);
  }
}

TEST_P(EachSample, ItsRegistryLibraryLoads) {
  EXPECT_EQ(vgl::LoadMonitorEnv(told.driver.c_str()), 1);
  vgl::ReleaseRegLibrary();
}

TEST_P(EachSample, HasTheUsersRecordOfItsPrinter) {
  EXPECT_EQ(machine.registry().String(HKEY_CURRENT_USER, kRecordPath, u"Name"), told.printer);
  EXPECT_EQ(machine.registry().Dword(HKEY_CURRENT_USER, kRecordPath, u"TrayIconEnable"), 1U);
}

TEST_P(EachSample, ItsOptionsStartItsAgentInItsMap) {
  std::istringstream in;
  std::ostringstream out, err;
  EXPECT_EQ(RunVgldesk({"run", told.sample, "--for", "1000"}, in, out, err), 0);
  EXPECT_EQ(err.str(), "");
  EXPECT_NE(
      out.str().find("started: C:\\Program Files\\KAVRO\\VGL3\\K_QD21TR.EXE /P \"" +
                     vgl::Utf8FromText(told.printer) + "\" /D \"" + vgl::Utf8FromText(told.driver) +
                     "\" /O \"" + vgl::Utf8FromText(told.port) + "\" /M \"" +
                     vgl::Utf8FromText(told.model) + "\"\n"),
      std::string::npos)
      << out.str();
  EXPECT_NE(out.str().find("made section " + told.section + "\n"), std::string::npos) << out.str();
}

class OneSample : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};

  static std::u16string Value(const char16_t* printer, const char16_t* key, const char16_t* name) {
    return vgl::CDrvInfoReader().GetString(printer, key, name);
  }
};

TEST_F(OneSample, StudioIsTheDefaultMachinesPrinter) {
  Put(machine, "studio-7200");
  ASSERT_TRUE(machine.spooler().HasPrinter(kPrinterName));
  EXPECT_EQ(machine.spooler().At(kPrinterName).driver, kDriverName);
  EXPECT_EQ(machine.spooler().At(kPrinterName).port, kPortName);
  EXPECT_EQ(AllTold()[0].model, kModelId);
  EXPECT_TRUE(std::u16string_view(kSpool).starts_with(kDriverFolder));
}

TEST_F(OneSample, StudioDescribesWhatAnotherSetWouldWriteIntoTheRegistry) {
  Put(machine, "studio-7200");
  constexpr char16_t kKey[] = u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200";
  EXPECT_FALSE(machine.registry().HasKey(HKEY_LOCAL_MACHINE, kKey));
  EXPECT_EQ(vgl::CDrvInfoReader().GetDword(kPrinterName, kKey, u"QBAPI_VERSION"), 0x100);
  EXPECT_EQ(vgl::CDrvInfoReader().GetDword(kPrinterName, kKey, u"AgentBits"), 64);
  EXPECT_EQ(Value(kPrinterName, kKey, u"SpoolSystem"), u"C:\\Windows\\system32\\spoolsv.exe");
  EXPECT_EQ(Value(kPrinterName, kKey, u"SpoolSystem9x"), u"");
}

TEST_F(OneSample, StudioHasAMenuCommandOfEveryForm) {
  Put(machine, "studio-7200");
  constexpr char16_t kMenu[] = u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200\\Menu";
  const struct {
    const char16_t* slot;
    std::u16string command;
  } rows[] = {
      {u"921", InSpool(u"K_S72UT.DLL /U2")},      // into the utility library
      {u"930", u"%sK_DRVUP.EXE /CHECK"},          // the program of DriverUpdateName
      {u"935", InSpool(u"K_S72LM.EXE /LM")},      // the markers
      {u"926", InSpool(u" /CISSVALID")},          // of a folder
      {u"936", InSpool(u"K_S72DEP.EXE /DP /Q")},  // of a program with arguments
      {u"937", InSpool(u"K_S72DEP.EXE /ASMRT")},
      {u"931", InSpool(u" /DRVUPDATE")},
      {u"932", InSpool(u" /UPPILOT")},
      {u"938", InSpool(u"K_S72MAN.EXE /HELP")},  // no marker
      {u"939", InSpool(u"K_S72MAN.EXE")},        // no arguments
      // from 950 on: divided by a bar (also with nothing behind it), by a slash, not at all
      {u"950", u"https://studio7200.kavro.example/support|"},
      {u"951", InSpool(u"K_S72MAN.EXE|/INDEX /TOP")},
      {u"952", InSpool(u"K_S72MAN.EXE /ABOUT")},
      {u"953", InSpool(u"K_S72MAN.EXE")},
      {u"Separators", u"5,7,10"},
  };
  for (const auto& [slot, command] : rows)
    EXPECT_EQ(Value(kPrinterName, kMenu, slot), command) << vgl::Utf8FromText(slot);
}

TEST_F(OneSample, AtelierTellsItsSettingsInTheRegistry) {
  Put(machine, "atelier-4400");
  constexpr char16_t kKey[] = u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Atelier 4400";
  EXPECT_EQ(machine.registry().String(HKEY_LOCAL_MACHINE, kKey, u"SettingsFrom"), u"registry");
  EXPECT_EQ(Value(u"Atelier 4400", kKey, u"SettingsFrom"), u"description");
  EXPECT_EQ(Value(u"Atelier 4400", kKey, u"DepExe"), u"");
  EXPECT_EQ(Value(u"Atelier 4400", kKey, u"Profile"), u"");
  // What both tell, they tell alike.
  for (const char16_t* name : {u"ModelID", u"MapFileName", u"InstallPath", u"K_QRX"})
    EXPECT_EQ(machine.registry().String(HKEY_LOCAL_MACHINE, kKey, name),
              Value(u"Atelier 4400", kKey, name))
        << vgl::Utf8FromText(name);
  EXPECT_EQ(
      machine.registry().String(HKEY_LOCAL_MACHINE, u"Software\\KAVRO\\VGL3\\Profile", u"A4400"),
      AllTold()[1].profile);
  EXPECT_EQ(machine.registry().String(HKEY_LOCAL_MACHINE, std::u16string(kKey) + u"\\Menu", u"922"),
            u"C:\\ProgramData\\KAVRO\\A4400\\ /UPPILOT");
}

// Asked by its VIF, its SADat file is looked for beside that; it stands with the driver.
TEST_F(OneSample, AtelierIsDescribedByItsPrinterAndItsDriverButNotByItsVif) {
  Put(machine, "atelier-4400");
  constexpr char16_t kKey[] = u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Atelier 4400";
  const vgl::CDrvInfoReader reader;
  EXPECT_EQ(reader.GetString(u"Atelier 4400", kKey, u"ModelID"), u"A4400");
  EXPECT_EQ(reader.GetStringOfDriver(u"KAVRO Atelier 4400", kKey, u"ModelID"), u"A4400");
  EXPECT_EQ(reader.GetStringOfVif(AllTold()[1].vif.c_str(), kKey, u"ModelID"), u"");
  EXPECT_EQ(reader.GetDwordOfVif(AllTold()[1].vif.c_str(), kKey, u"QBAPI_VERSION"), -1);
}

TEST_F(OneSample, PanoramaHasHebrewTextsInItsProfile) {
  Put(machine, "panorama-9900");
  char16_t name[20] = {};
  Os().profiles.GetPrivateProfileStringW(u"ENU", u"Name", u"", name, 20,
                                         AllTold()[2].profile.c_str());
  EXPECT_EQ(std::u16string(name), u"\u05D0\u05E0\u05D2\u05DC\u05D9\u05EA");
}

}  // namespace
}  // namespace desk
