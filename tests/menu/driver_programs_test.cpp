#include "menu/driver_programs.h"

#include <algorithm>

#include "platform/sim/registry_library.h"
#include "tests/menu/driver_programs_fixture.h"
#include "tests/support/operations_of.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char16_t kInkOrderKey[] = u"Software\\KAVRO\\KAVRO Studio 7200 IO_URL";

// --- GetDepExeName

class DepExeName : public DriverPrograms {
 protected:
  struct Result {
    int result;
    std::u16string name;
    bool operator==(const Result&) const = default;
  };
  Result Get() {
    PathText name;
    EXPECT_TRUE(name.Assign(u"before"));
    const int result = GetDepExeName(identity, name);
    return {result, std::u16string(name.view())};
  }
};

TEST_F(DepExeName, IsWhatStandsBehindTheLastBackslashInUpperCase) {
  const struct {
    std::string_view value;
    std::u16string name;
  } cases[] = {
      {"C:\\Suite\\InkShop.exe", u"INKSHOP.EXE"},
      {"\\InkShop.exe", u"INKSHOP.EXE"},
      {"\\\\server\\share\\ink shop", u"INK SHOP"},
      {"C:\\Suite/bin/InkShop.exe", u"SUITE/BIN/INKSHOP.EXE"},
      {"C:\\Suite\\InkShop.exe /menu", u"INKSHOP.EXE /MENU"},
      {"C:\\Suite\\", u""},
  };
  for (const auto& each : cases) {
    SetDriverValue(machine, "DepExe", each.value);
    EXPECT_EQ(Get(), (Result{1, each.name})) << each.value;
  }
}

TEST_F(DepExeName, IsEmptyAndKnownWithoutAnyBackslash) {
  for (const char* value : {"InkShop.exe", "C:/Suite/InkShop.exe", "C:InkShop.exe"}) {
    SetDriverValue(machine, "DepExe", value);
    EXPECT_EQ(Get(), (Result{1, u""})) << value;
  }
}

TEST_F(DepExeName, IsUnknownWithoutAValue) {
  EXPECT_EQ(Get(), (Result{0, u""}));
  SetDriverValue(machine, "DepExe", "");
  EXPECT_EQ(Get(), (Result{0, u""}));
}

TEST_F(DepExeName, IsUnknownWhereTheValueHas260Characters) {
  const auto pathOf = [](std::size_t length) { return "C:\\" + std::string(length - 3, 'x'); };
  SetDriverValue(machine, "DepExe", pathOf(259));
  EXPECT_EQ(Get(), (Result{1, std::u16string(256, u'X')}));
  for (const std::size_t length : {260U, 261U, 5000U}) {
    SetDriverValue(machine, "DepExe", pathOf(length));
    EXPECT_EQ(Get(), (Result{0, u""})) << length;
  }
}

TEST_F(DepExeName, InTheRegistryLikewise) {
  MoveToRegistry();
  EXPECT_EQ(Get(), (Result{0, u""}));
  SetInRegistry(kDriverKey, u"DepExe", u"C:\\Suite\\InkShop.exe");
  EXPECT_EQ(Get(), (Result{1, u"INKSHOP.EXE"}));
  const std::u16string longest = u"C:\\" + std::u16string(256, u'x');
  SetInRegistry(kDriverKey, u"DepExe", longest);
  EXPECT_EQ(Get(), (Result{1, std::u16string(256, u'X')}));
  SetInRegistry(kDriverKey, u"DepExe", longest + u"x");
  EXPECT_EQ(Get(), (Result{0, u""}));
  SetBareInRegistry(kDriverKey, u"DepExe", longest + u"x");
  EXPECT_EQ(Get(), (Result{0, u""}));
}

TEST_F(DepExeName, KeepsLettersBesideAToZAsTheyAre) {
  MoveToRegistry();
  SetInRegistry(kDriverKey, u"DepExe", u"C:\\Tinte \u00E4\u00F6\u00FC\u0131\u05D0z.exe");
  EXPECT_EQ(Get(), (Result{1, u"TINTE \u00E4\u00F6\u00FC\u0131\u05D0Z.EXE"}));
}

TEST_F(DepExeName, IsReadFromThePlaceThatTheProfileSays) {
  SetDriverValue(machine, "DepExe", "C:\\File.exe");
  SetInRegistry(kDriverKey, u"DepExe", u"C:\\Registry.exe");
  EXPECT_EQ(Get(), (Result{1, u"FILE.EXE"}));
  MoveToRegistry();
  EXPECT_EQ(Get(), (Result{1, u"REGISTRY.EXE"}));
}

// --- IsInkOrderMenu

class InkOrderMenu : public DriverPrograms {
 protected:
  bool Is() { return IsInkOrderMenu(identity, kEntry, u"INKSHOP.EXE"); }
};

TEST_F(InkOrderMenu, HoldsTheProgramsNameAndMenuInAnyCase) {
  const struct {
    std::string_view command;
    bool expected;
  } cases[] = {
      {"%sInkShop.exe /MENU", true},
      {"inkshop.exe /menu:1", true},
      {"MeNuINKSHOP.EXE", true},
      {"%sInkShop.exe", false},
      {"%sInkShop.exe /MEN U", false},
      {"%sInkShop /MENU", false},
      {"/MENU", false},
      {"", false},
  };
  for (const auto& each : cases) {
    SetMenuValue(machine, "930", each.command);
    EXPECT_EQ(Is(), each.expected) << each.command;
  }
}

TEST_F(InkOrderMenu, MenuMayBePartOfTheProgramsName) {
  SetMenuValue(machine, "930", "%sInkMenu.exe");
  EXPECT_TRUE(IsInkOrderMenu(identity, kEntry, u"INKMENU.EXE"));
}

TEST_F(InkOrderMenu, IsNoEntryWithoutACommandText) { EXPECT_FALSE(Is()); }

TEST_F(InkOrderMenu, IsOfTheEntrysOwnText) {
  SetMenuValue(machine, "931", "%sInkShop.exe /MENU");
  EXPECT_FALSE(Is());
  EXPECT_TRUE(IsInkOrderMenu(identity, 931, u"INKSHOP.EXE"));
}

TEST_F(InkOrderMenu, IsNoEntryWhereTheProgramHasNoName) {
  SetMenuValue(machine, "930", "%sInkShop.exe /MENU");
  EXPECT_FALSE(IsInkOrderMenu(identity, kEntry, u""));
}

TEST_F(InkOrderMenu, IsNoEntryWhoseTextHas260Characters) {
  const auto commandOf = [](std::size_t length) {
    return "inkshop.exe menu" + std::string(length - 16, 'x');
  };
  for (const std::size_t length : {259U, 260U, 261U}) {
    SetMenuValue(machine, "930", commandOf(length));
    EXPECT_EQ(Is(), length == 259) << length;
  }
  for (const std::size_t length : {259U, 260U, 261U}) {
    const std::u16string text = TextFromUtf8(commandOf(length));
    SetInRegistry(kMenuKey, u"930", text);
    EXPECT_EQ(Is(), length == 259) << length;
    SetBareInRegistry(kMenuKey, u"930", text);
    EXPECT_EQ(Is(), length == 259) << length;
  }
}

// The registry's key decides also where the profile sends everybody else to the file.
TEST_F(InkOrderMenu, TheRegistrysMenuKeyCountsBeforeTheProfile) {
  SetInRegistry(kMenuKey, u"930", u"%sInkShop.exe /MENU");
  EXPECT_TRUE(Is());
  SetMenuValue(machine, "930", "%sOther.exe");
  EXPECT_TRUE(Is());
  SetMenuValue(machine, "930", "%sInkShop.exe /MENU");
  SetInRegistry(kMenuKey, u"930", u"%sOther.exe");
  EXPECT_FALSE(Is());
}

TEST_F(InkOrderMenu, AMenuKeyInTheRegistryWithoutTheEntryHidesTheFile) {
  SetMenuValue(machine, "930", "%sInkShop.exe /MENU");
  machine.registry().MakeKey(HKEY_LOCAL_MACHINE, kMenuKey);
  EXPECT_FALSE(Is());
  machine.registry().SetDword(HKEY_LOCAL_MACHINE, kMenuKey, u"930", 1);
  EXPECT_FALSE(Is());
}

TEST_F(InkOrderMenu, TheFileCountsWhereTheMenuKeyCantBeOpened) {
  SetMenuValue(machine, "930", "%sInkShop.exe /MENU");
  SetInRegistry(kMenuKey, u"930", u"%sOther.exe");
  inside.process().FailNext("RegOpenKeyExW", ERROR_ACCESS_DENIED);
  EXPECT_TRUE(Is());
  EXPECT_FALSE(Is());
}

TEST_F(InkOrderMenu, IsNoEntryWhereTheRegistryIsToHaveTheMenuAndHasNot) {
  SetMenuValue(machine, "930", "%sInkShop.exe /MENU");
  MoveToRegistry();
  EXPECT_FALSE(Is());
  SetInRegistry(kMenuKey, u"930", u"%sInkShop.exe /MENU");
  EXPECT_TRUE(Is());
}

TEST_F(InkOrderMenu, IsNoEntryOfADriverWhoseMenuKeyHasNoRoom) {
  const std::u16string driver(259, u'D');
  identity.driverName = driver.c_str();
  EXPECT_FALSE(Is());
}

// --- IsEnableInkOrder

class InkOrderService : public DriverPrograms {
 protected:
  // From now on the process goes through the driver package's library.
  sim::Library& UseLibrary() {
    sim::Library& library =
        machine.libraries().At(u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\K_WRDEF1.DLL");
    EXPECT_EQ(CRegLibrary::LoadByPath(library.path().c_str()), 1);
    g_bRegLibraryMode = 1;
    return library;
  }
  int IsEnabled() { return IsEnableInkOrder(identity); }

  static constexpr std::uint16_t kOpenKey = 4;
};

TEST_F(InkOrderService, IsOfferedWhereTheDriversKeyIsThere) {
  EXPECT_EQ(IsEnabled(), 0);
  machine.registry().MakeKey(HKEY_LOCAL_MACHINE, kInkOrderKey);
  EXPECT_EQ(IsEnabled(), 1);
}

TEST_F(InkOrderService, IsOfTheDriverAndTheWholeMachine) {
  machine.registry().MakeKey(HKEY_LOCAL_MACHINE, u"Software\\KAVRO\\KAVRO Studio 7300 IO_URL");
  machine.registry().MakeKey(HKEY_LOCAL_MACHINE, u"Software\\KAVRO\\KAVRO Studio 7200");
  machine.registry().MakeKey(HKEY_CURRENT_USER, kInkOrderKey);
  EXPECT_EQ(IsEnabled(), 0);
}

TEST_F(InkOrderService, TheLibraryIsntAskedWhereTheSystemHasTheKey) {
  machine.registry().MakeKey(HKEY_LOCAL_MACHINE, kInkOrderKey);
  sim::Library& library = UseLibrary();
  EXPECT_EQ(IsEnabled(), 1);
  EXPECT_EQ(library.Calls(kOpenKey), 0U);
}

TEST_F(InkOrderService, IsOfferedWhereTheLibraryAloneHasTheKey) {
  machine.registry().MakeKey(HKEY_LOCAL_MACHINE, kInkOrderKey);
  sim::Library& library = UseLibrary();
  inside.process().FailNext("RegOpenKeyExW", ERROR_FILE_NOT_FOUND);  // the system's own
  EXPECT_EQ(IsEnabled(), 1);
  EXPECT_EQ(library.Calls(kOpenKey), 1U);
}

TEST_F(InkOrderService, IsntOfferedWhereTheLibraryHasNoKeyEither) {
  sim::Library& library = UseLibrary();
  EXPECT_EQ(IsEnabled(), 0);
  EXPECT_EQ(library.Calls(kOpenKey), 1U);
}

TEST_F(InkOrderService, IsntOfferedByALibraryThatCantOpenKeys) {
  machine.registry().MakeKey(HKEY_LOCAL_MACHINE, kInkOrderKey);
  machine.libraries()
      .At(u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\K_WRDEF1.DLL")
      .RemoveExport(kOpenKey);
  UseLibrary();
  inside.process().FailNext("RegOpenKeyExW", ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(IsEnabled(), 0);
}

TEST_F(InkOrderService, WithoutALibraryTheSystemIsAskedTwice) {
  machine.registry().MakeKey(HKEY_LOCAL_MACHINE, kInkOrderKey);
  inside.process().FailNext("RegOpenKeyExW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(IsEnabled(), 1);
  inside.process().FailNext("RegOpenKeyExW", ERROR_ACCESS_DENIED);
  inside.process().FailNext("RegOpenKeyExW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(IsEnabled(), 0);
}

TEST_F(InkOrderService, IsForDriversWhoseKeyPathHas259Characters) {
  // "Software\KAVRO\" and " IO_URL" are 22.
  for (const std::size_t length : {237U, 238U}) {
    const std::u16string driver(length, u'D');
    machine.registry().MakeKey(HKEY_LOCAL_MACHINE, u"Software\\KAVRO\\" + driver + u" IO_URL");
    identity.driverName = driver.c_str();
    EXPECT_EQ(IsEnabled(), length == 237 ? 1 : 0) << length;
  }
}

// --- A printer without a name; failures

// What describes the set by file is found through the printer; a port alone has none.
TEST_F(DriverPrograms, OfAPrinterWithoutANameAreInTheRegistryAlone) {
  identity.printerName = u"";
  const std::string path = "C:\\Suite\\Update.exe";
  SetDriverValue(machine, "DepExe", path);
  SetDriverValue(machine, "DriverUpdateName", path);
  SetMenuValue(machine, "930", "%sUpdate.exe /MENU");
  PathText name;
  EXPECT_EQ(GetDepExeName(identity, name), 0);
  EXPECT_EQ(GetDriverUpdateExeName(identity, name, nullptr), 0);
  EXPECT_FALSE(IsInkOrderMenu(identity, kEntry, u"UPDATE.EXE"));
  EXPECT_FALSE(IsDriverUpdateMenu(identity, kEntry, u"UPDATE.EXE"));

  MoveToRegistry();
  SetInRegistry(kDriverKey, u"DepExe", TextFromUtf8(path));
  SetInRegistry(kDriverKey, u"DriverUpdateName", TextFromUtf8(path));
  SetInRegistry(kMenuKey, u"930", u"%sUpdate.exe /MENU");
  EXPECT_EQ(GetDepExeName(identity, name), 1);
  EXPECT_EQ(GetDriverUpdateExeName(identity, name, nullptr), 1);
  EXPECT_TRUE(IsInkOrderMenu(identity, kEntry, u"UPDATE.EXE"));
  EXPECT_TRUE(IsDriverUpdateMenu(identity, kEntry, u"UPDATE.EXE"));
}

TEST_F(DriverPrograms, OfNoDriverAtAllAreNone) {
  identity = {};
  PathText name;
  EXPECT_EQ(GetDepExeName(identity, name), 0);
  EXPECT_EQ(GetDriverUpdateExeName(identity, name, nullptr), 0);
  EXPECT_FALSE(IsInkOrderMenu(identity, kEntry, u"UPDATE.EXE"));
  EXPECT_FALSE(IsDriverUpdateMenu(identity, kEntry, u"UPDATE.EXE"));
  EXPECT_EQ(IsEnableInkOrder(identity), 0);
}

TEST_F(DriverPrograms, HoldNothingWhicheverCallFails) {
  SetDriverValue(machine, "DepExe", "C:\\Suite\\Ink.exe");
  SetDriverValue(machine, "DriverUpdateName", "C:\\Suite\\Update.exe");
  SetMenuValue(machine, "930", "%sUpdate.exe");
  SetInRegistry(kMenuKey, u"931", u"%sInk.exe /MENU");
  machine.registry().MakeKey(HKEY_LOCAL_MACHINE, kInkOrderKey);
  for (const bool inRegistry : {false, true}) {
    if (inRegistry) MoveToRegistry();
    const std::vector<std::string> operations = OperationsOf(inside.process(), [this] {
      PathText name, folder;
      GetDepExeName(identity, name);
      GetDriverUpdateExeName(identity, name, &folder);
      IsInkOrderMenu(identity, 931, u"INK.EXE");
      IsDriverUpdateMenu(identity, kEntry, u"UPDATE.EXE");
      IsEnableInkOrder(identity);
      EXPECT_TRUE(inside.process().Ledger().empty());
    });
    EXPECT_NE(std::ranges::find(operations, "RegOpenKeyExW"), operations.end());
  }
}

}  // namespace
}  // namespace vgl
