// The samples' language resource libraries, their pictures and their closed libraries: what a
// resident agent finds in each set, in each user's language.
#include <gtest/gtest.h>

#include <set>

#include "Common/CVglLog.h"
#include "Common/path_lookup.h"
#include "Common/printer_lookup.h"
#include "Common/text_conversion.h"
#include "desk/default_machine.h"
#include "desk/sample.h"
#include "desk/usage_log_file.h"
#include "menu/menu_head.h"
#include "platform/owned.h"
#include "platform/sim/pe_resources.h"
#include "profile/drv_info_reader.h"
#include "profile/profile_keys.h"

namespace desk {
namespace {

using namespace platform;

struct Set {
  const char* sample;
  const char16_t* printer;
  const char16_t* driver;
  const char16_t* model;
  const char16_t* folder;
};

constexpr Set kStudio = {"studio-7200", u"Studio 7200", u"KAVRO Studio 7200", u"S7200",
                         u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\"};
constexpr Set kAtelier = {"atelier-4400", u"Atelier 4400", u"KAVRO Atelier 4400", u"A4400",
                          u"C:\\ProgramData\\KAVRO\\A4400\\"};
constexpr Set kPanorama = {"panorama-9900", u"\u05E4\u05E0\u05D5\u05E8\u05DE\u05D4 9900",
                           u"KAVRO Panorama 9900", u"P9900", u"C:\\ProgramData\\KAVRO\\P9900\\"};

// A machine with one sample, and a process on it.
struct SetOnMachine {
  const Set& set;
  sim::Machine machine;
  sim::Inside inside{machine};

  explicit SetOnMachine(const Set& sample) : set(sample) {
    std::string error;
    SetUpSuite(machine);
    EXPECT_TRUE(LoadSample(machine, SampleFolder(sample.sample), error)) << error;
  }

  std::u16string InFolder(std::u16string_view name) const {
    return set.folder + std::u16string(name);
  }

  using Lookup = int (*)(vgl::PathText*, const char16_t*, const char16_t*, const char16_t*);
  std::u16string Find(Lookup lookup) const {
    vgl::PathText path;
    lookup(&path, set.driver, set.model, set.printer);
    return std::u16string(path.view());
  }

  static std::u16string Text(HMODULE module, std::uint32_t id) {
    char16_t text[260] = {};
    const std::int32_t length = Os().resources.LoadStringW(module, id, text, 260);
    return {text, static_cast<std::size_t>(length)};
  }
  static std::u16string EntryText(HMENU popup, std::uint32_t item, bool byPosition) {
    char16_t text[260] = {};
    MenuItemInfo info{.mask = MIIM_STRING, .typeData = text, .cch = 260};
    EXPECT_TRUE(Os().menus.GetMenuItemInfoW(popup, item, byPosition, &info));
    return text;
  }

  // The ids of the menu's entries, from wherever the set has them.
  std::set<std::uint32_t> IdsWithCommand() const {
    const std::u16string key = vgl::DriverKeyPath(set.driver) + u"\\Menu";
    std::set<std::uint32_t> ids;
    for (std::uint32_t id = 920; id <= 998; ++id) {
      const std::u16string name = vgl::TextFromUtf8(std::to_string(id));
      OwnedKey opened;
      std::uint32_t bytes = 0;
      const bool isInRegistry =
          Os().registry.RegOpenKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), KEY_READ, opened.Out()) ==
              ERROR_SUCCESS &&
          Os().registry.RegQueryValueExW(opened.get(), name.c_str(), nullptr, nullptr, &bytes) ==
              ERROR_SUCCESS;
      if (isInRegistry ||
          !vgl::CDrvInfoReader().GetString(set.printer, key.c_str(), name.c_str()).empty())
        ids.insert(id);
    }
    return ids;
  }
};

struct Words {
  const Set& set;
  std::u16string library;
  std::u16string printer;      // the entry whose place the printer's name takes
  std::u16string preferences;  // entry 901
  std::u16string caption;      // text 1100
  std::u16string busy;         // text 35277
  std::u16string nozzleOrInk;  // text 920
  std::int32_t rightToLeft = 0;
};

std::u16string Utf8(const char* text) { return vgl::TextFromUtf8(text); }

const std::vector<Words>& AllWords() {
  static const std::vector<Words> kWords = {
      {kStudio, u"K_S72EN.DLL", u"Printer", u"Monitoring Preferences...", u"Printer Status",
       u"A printer driver is being installed or removed. Wait until this is done, then try again.",
       u"Nozzle Check"},
      {kStudio, u"K_S72DE.DLL", u"Drucker", Utf8("Einstellungen für die Überwachung..."),
       u"Druckerstatus",
       Utf8("Gerade wird ein Druckertreiber installiert oder entfernt. Warten Sie, bis das "
            "abgeschlossen ist, und versuchen Sie es dann noch einmal."),
       Utf8("Düsentest")},
      {kStudio, u"K_S72ES.DLL", u"Impresora", Utf8("Preferencias de supervisión..."),
       u"Estado de la impresora",
       Utf8(
           "Se está instalando o desinstalando un controlador de impresora. Espere a que termine y "
           "vuelva a intentarlo."),
       u"Test de inyectores"},
      {kStudio, u"K_S72JA.DLL", Utf8("プリンター"), Utf8("モニタリング設定..."),
       Utf8("プリンターの状態"),
       Utf8("プリンタードライバーをインストールまたは削除しています。完了してから、もう一度実行し"
            "てください。"),
       Utf8("ノズルチェック")},
      {kAtelier, u"K_A44EN.DLL", u"Printer", u"Monitoring Preferences...", u"Printer Status",
       u"A printer driver is being installed or removed. Wait until this is done, then try again.",
       u"Order Ink"},
      {kAtelier, u"K_A44FR.DLL", u"Imprimante", Utf8("Préférences de surveillance..."),
       Utf8("État de l'imprimante"),
       Utf8("Un pilote d'imprimante est en cours d'installation ou de suppression. Attendez la fin "
            "de l'opération, puis réessayez."),
       u"Commander de l'encre"},
      {kPanorama, u"K_P99EN.DLL", u"Printer", u"Monitoring Preferences...", u"Printer Status",
       u"A printer driver is being installed or removed. Wait until this is done, then try again.",
       u"Nozzle Check"},
      {kPanorama, u"K_P99HE.DLL", Utf8("מדפסת"), Utf8("העדפות ניטור..."), Utf8("מצב המדפסת"),
       Utf8("מנהל התקן של מדפסת מותקן או מוסר כעת. יש להמתין לסיום ולנסות שוב."),
       Utf8("בדיקת נחירים"), 1},
  };
  return kWords;
}

class EachResourceLibrary : public testing::TestWithParam<Words> {
 protected:
  const Words& told = GetParam();
  SetOnMachine world{told.set};

  OwnedModule Load() {
    return OwnedModule(Os().modules.LoadLibraryW(world.InFolder(told.library).c_str()));
  }
};

INSTANTIATE_TEST_SUITE_P(Samples, EachResourceLibrary, testing::ValuesIn(AllWords()),
                         [](const testing::TestParamInfo<Words>& library) {
                           return vgl::Utf8FromText(
                               library.param.library.substr(0, library.param.library.find(u'.')));
                         });

TEST_P(EachResourceLibrary, HasItsTextsInItsLanguage) {
  const OwnedModule module = Load();
  ASSERT_TRUE(module);
  EXPECT_EQ(world.Text(module.get(), 1100), told.caption);
  EXPECT_EQ(world.Text(module.get(), 35277), told.busy);
  EXPECT_EQ(world.Text(module.get(), 920), told.nozzleOrInk);
}

TEST_P(EachResourceLibrary, HasTheMenuWithTheEntriesOfTheHead) {
  const OwnedModule module = Load();
  const OwnedMenu menu(Os().resources.LoadMenuW(module.get(), 801));
  ASSERT_TRUE(menu);
  const HMENU popup = Os().menus.GetSubMenu(menu.get(), 0);
  ASSERT_NE(popup, HMENU{});
  EXPECT_EQ(world.EntryText(popup, 0, true), told.printer);
  EXPECT_EQ(world.EntryText(popup, 900, false), told.printer);
  EXPECT_EQ(world.EntryText(popup, 901, false), told.preferences);
  MenuItemInfo info{.mask = MIIM_STATE};
  EXPECT_FALSE(Os().menus.GetMenuItemInfoW(popup, 2, true, &info)) << "there is a third entry";
  EXPECT_EQ(vgl::IsRtlOS(popup), told.rightToLeft);
}

// An entry without a text wouldn't be shown, a text without an entry is of no use.
TEST_P(EachResourceLibrary, HasATextForEachEntryOfTheSetsMenuAndForNoOther) {
  const OwnedModule module = Load();
  std::set<std::uint32_t> ids;
  for (std::uint32_t id = 902; id <= 1099; ++id)
    if (!world.Text(module.get(), id).empty()) ids.insert(id);
  EXPECT_EQ(ids, world.IdsWithCommand());
  EXPECT_FALSE(ids.empty());
}

TEST_P(EachResourceLibrary, GivesAllBackWithItsHandles) {
  {
    const OwnedModule module = Load();
    const OwnedMenu menu(Os().resources.LoadMenuW(module.get(), 801));
    ASSERT_TRUE(menu);
  }
  EXPECT_TRUE(world.inside.process().Ledger().empty());
}

TEST(SampleLibraries, TheUsersLanguageChoosesTheResourceLibrary) {
  const struct {
    const Set& sample;
    std::uint16_t language;
    const char16_t* library;
  } cases[] = {
      // As they stand in the list.
      {kStudio, 0x0409, u"K_S72EN.DLL"},
      {kStudio, 0x0407, u"K_S72DE.DLL"},
      {kStudio, 0x0C0A, u"K_S72ES.DLL"},
      {kStudio, 0x0411, u"K_S72JA.DLL"},
      {kAtelier, 0x040C, u"K_A44FR.DLL"},
      // In other countries.
      {kStudio, 0x0C07, u"K_S72DE.DLL"},
      {kStudio, 0x080A, u"K_S72ES.DLL"},
      {kStudio, 0x0809, u"K_S72EN.DLL"},
      {kAtelier, 0x0C0C, u"K_A44FR.DLL"},
      // Not listed: English, though French may come first.
      {kStudio, 0x0419, u"K_S72EN.DLL"},
      {kAtelier, 0x0407, u"K_A44EN.DLL"},
      // The language manager's, for everybody.
      {kPanorama, 0x040D, u"K_P99HE.DLL"},
      {kPanorama, 0x0409, u"K_P99HE.DLL"},
  };
  for (const auto& [sample, language, library] : cases) {
    SCOPED_TRACE(vgl::Utf8FromText(library) + " for " + std::to_string(language));
    SetOnMachine world(sample);
    world.machine.system().userLanguage = language;
    EXPECT_EQ(world.Find(vgl::GetResPath), world.InFolder(library));
  }
}

TEST(SampleLibraries, PanoramaFallsBackOnItsProfile) {
  // Without the language manager, and without the library that it gives.
  for (const char16_t* gone : {u"K_LMW1.DLL", u"K_P99HE.DLL"})
    for (const std::uint16_t language : {std::uint16_t{0x0409}, std::uint16_t{0x040D}}) {
      SetOnMachine world(kPanorama);
      world.machine.files().Remove(world.InFolder(gone));
      world.machine.system().userLanguage = language;
      EXPECT_EQ(world.Find(vgl::GetResPath), world.InFolder(u"K_P99EN.DLL"));
    }
}

constexpr std::uint16_t kIcons[] = {700, 701, 702};

struct Pictures {
  const Set& set;
  std::u16string bitmapLibrary;  // empty: the resource library
  std::vector<std::u16string> libraries;
  std::set<std::uint16_t> bitmaps;
};

class EachSetsPictures : public testing::TestWithParam<Pictures> {
 protected:
  const Pictures& told = GetParam();
  SetOnMachine world{told.set};
};

INSTANTIATE_TEST_SUITE_P(
    Samples, EachSetsPictures,
    testing::Values(
        Pictures{
            kStudio, u"K_S72BM.DLL", {u"K_S72BM.DLL"}, {920, 921, 922, 925, 930, 931, 932, 938}},
        Pictures{kAtelier, u"", {u"K_A44EN.DLL", u"K_A44FR.DLL"}, {920, 921, 922, 925}},
        Pictures{kPanorama, u"K_P99BM.DLL", {u"K_P99BM.DLL"}, {920, 921, 925, 930, 931}}),
    [](const testing::TestParamInfo<Pictures>& pictures) {
      std::string name = pictures.param.set.sample;
      std::replace(name.begin(), name.end(), '-', '_');
      return name;
    });

TEST_P(EachSetsPictures, AreWhereTheProfileSays) {
  EXPECT_EQ(world.Find(vgl::GetBmpPath),
            told.bitmapLibrary.empty() ? u"" : world.InFolder(told.bitmapLibrary));
}

TEST_P(EachSetsPictures, HaveThreeIconsInTwoSizes) {
  for (const std::u16string& name : told.libraries) {
    SCOPED_TRACE(vgl::Utf8FromText(name));
    const auto file =
        sim::PeFile::Read(world.machine.files().ReadFile(world.InFolder(name)).value_or(""));
    ASSERT_NE(file, nullptr);
    std::set<std::string> different;
    for (const std::uint16_t id : kIcons)
      for (const std::uint32_t size : {16U, 32U}) {
        const auto picture = sim::FindIcon(*file, id, size, size, 0x0409);
        ASSERT_TRUE(picture) << id << ' ' << size;
        EXPECT_EQ(picture->width, size);
        EXPECT_EQ(picture->height, size);
        EXPECT_EQ(picture->bitsPerPixel, 4);
        different.insert(picture->bytes);
      }
    EXPECT_EQ(different.size(), 6U);
  }
}

TEST_P(EachSetsPictures, HaveBitmapsForSomeEntries) {
  for (const std::u16string& name : told.libraries) {
    SCOPED_TRACE(vgl::Utf8FromText(name));
    const OwnedModule module(Os().modules.LoadLibraryW(world.InFolder(name).c_str()));
    std::set<std::uint16_t> ids;
    for (std::uint16_t id = 900; id <= 999; ++id)
      if (OwnedBitmap(Os().resources.LoadBitmapW(module.get(), id))) ids.insert(id);
    EXPECT_EQ(ids, told.bitmaps);
    for (const std::uint16_t id : kIcons)
      EXPECT_TRUE(OwnedIcon(
          Os().resources.LoadImageW(module.get(), id, IMAGE_ICON, 16, 16, LR_DEFAULTCOLOR)))
          << id;
  }
}

// What the log of a program gives for a start that is counted and flushed.
std::int32_t CountAndFlush(const Set& set) {
  vgl::CVglLog log;
  const std::int32_t counted =
      log.Increment(vgl::VGLLOG_TRAYICON, vgl::kCountAgentStart, set.printer);
  return counted < 0 ? counted : log.WriteVglLogFile();
}

std::u16string LogPath(const std::u16string& serial) {
  return u"C:\\ProgramData\\KAVRO\\VGL3\\LOG\\VGL_TrayIcon_" + serial + u".xml";
}

TEST(UsageOfSample, ArrivesInAFileOfTheSerialNumberUnderTheDeviceId) {
  const struct {
    const Set& sample;
    const char16_t* serial;
  } cases[] = {{kStudio, u"S72K004711"}, {kPanorama, u"P99K123456"}};
  for (const auto& [sample, serial] : cases) {
    SCOPED_TRACE(sample.sample);
    SetOnMachine world(sample);
    EXPECT_EQ(CountAndFlush(sample), 1);
    const std::optional<UsageLog> log =
        ParseUsageLog(world.machine.files().ReadFile(LogPath(serial)).value_or(""));
    ASSERT_TRUE(log);
    EXPECT_EQ(log->deviceId, sample.model);
    EXPECT_EQ(log->counters,
              (std::vector<std::uint32_t>{0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(world.inside.process().Ledger().empty());
  }
}

TEST(UsageOfSample, AtelierIsntCounted) {
  SetOnMachine world(kAtelier);
  EXPECT_EQ(CountAndFlush(kAtelier), vgl::FATAL_EMBERDAT_NOT_DESCRIBED);
  EXPECT_FALSE(world.machine.files().Exists(LogPath(u"A44K000815")));
}

}  // namespace
}  // namespace desk
