// The driver set's entries in the context menu of whole agents: made anew at each opening, as the
// language, the set and the printer are by then; and what is held for them meanwhile.
#include <gtest/gtest.h>

#include <algorithm>
#include <variant>

#include "Common/text_conversion.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;

constexpr char16_t kHebrew[] = u"\u05D4\u05D2\u05D3\u05E8\u05D5\u05EA";
constexpr char16_t kGerman[] = u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\K_S72DE.DLL";
constexpr char16_t kPictures[] = u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\K_S72BM.DLL";

// With labels "<label> 920" to "<label> 922", and pictures of two of them.
desk::ResourceLibrary LibraryWithLabels(const std::u16string& label) {
  desk::ResourceLibrary library = desk::PlainResourceLibrary();
  for (std::uint16_t id = 920; id <= 922; ++id)
    library.strings[id] = label + u" " + TextFromUtf8(std::to_string(id));
  library.bitmaps = {{920, 0xFF0000}, {922, 0x00FF00}};
  return library;
}

class ContextMenuEntries : public testing::Test {
 protected:
  ContextMenuEntries() {
    desk.SetResourceLibrary(LibraryWithLabels(u"Entry"));
    desk.SetMenuValue("920", "C:\\tool.exe");
    desk.SetMenuValue("922", "C:\\tool.exe");
  }

  // The lines of the menu as a person sees them, a separator as "-".
  Texts Lines() {
    Texts lines;
    for (const sim::ShownItem& shown : desk.machine.desktop().menus().List().at(0)->shown) {
      std::u16string line = shown.item.IsSeparator() ? u"-" : shown.item.text;
      for (const sim::Drawn& drawn : shown.drawn)
        if (const auto* text = std::get_if<sim::DrawnText>(&drawn)) line += text->text;
      lines.push_back(line);
    }
    return lines;
  }
  // The lines behind the head's two, as a new opening shows them.
  Texts TailAtNextOpening(const SimAgent& agent) {
    agent.RightClick();
    if (!agent.MenuIsOpen()) return {u"(no menu)"};
    Texts lines = Lines();
    agent.DismissMenu();
    lines.erase(lines.begin(), lines.begin() + 2);
    return lines;
  }
  // Of what the agent holds, that which begins so, without the folder.
  Texts Held(const SimAgent& agent, std::u16string_view begin) {
    Texts held;
    for (std::u16string& thing : agent.Ledger()) {
      if (!thing.starts_with(begin)) continue;
      const std::size_t folder = thing.find(u"C:\\");
      held.push_back(thing.erase(folder, thing.rfind(u'\\') + 1 - folder));
    }
    return held;
  }
  void SetUpdateLock(char value) {
    desk.machine.spooler().SetData(desk::kPrinterName, u"PrinterDriverData", u"KV_DISABLE_UPDATE",
                                   REG_DWORD, std::string{value, '\0', '\0', '\0'});
  }
  void LoseTheMenu() {
    desk::ResourceLibrary library = LibraryWithLabels(u"Entry");
    library.menus.clear();
    desk.SetResourceLibrary(library);
  }
  // From now on the pictures are in a library of their own.
  void AddPictureLibrary() {
    desk.machine.files().WriteFile(kPictures, desk::BytesOf(LibraryWithLabels(u"")));
    desk.AddToProfile("BmpDll=K_S72BM.DLL");
  }

  SimDesk desk;
};

// --- What is shown

TEST_F(ContextMenuEntries, StandBelowTheHeadAndASeparator) {
  desk.SetMenuValue("Separators", "2");
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  EXPECT_EQ(Lines(), (Texts{u"Studio 7200", u"Monitoring Preferences...", u"-", u"Entry 920", u"-",
                            u"Entry 922"}));
}

TEST_F(ContextMenuEntries, OfADriverThatHasNoneAreASeparatorOnly) {
  desk.SetMenuValue("920", "");
  desk.SetMenuValue("922", "");
  EXPECT_EQ(TailAtNextOpening(desk.StartedAgent()), Texts{u"-"});
}

TEST_F(ContextMenuEntries, FollowAHeadThatReadsFromRightToLeft) {
  desk::ResourceLibrary library = LibraryWithLabels(kHebrew);
  library.menus[801] = {{u"Tray", 0, {{u"Printer", 900, {}}, {kHebrew, 901, {}}}}};
  desk.SetResourceLibrary(library);
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  EXPECT_EQ(Lines(), (Texts{u"Studio 7200\u200E", kHebrew, u"-", std::u16string(kHebrew) + u" 920",
                            std::u16string(kHebrew) + u" 922"}));
  const std::vector<sim::MenuItem> items = agent.MenuItems();
  EXPECT_EQ(items[0].type, 0x6000U);
  EXPECT_EQ(items[1].type, 0x6000U);
  EXPECT_EQ(items[3].type, MFT_OWNERDRAW);
}

TEST_F(ContextMenuEntries, OfNetPilotArentThereForANetworkPrinter) {
  desk.AddToVif("[Download]\r\nUPPILOTEXE=NETPILOT.EXE");
  desk.SetMenuValue("921", "C:\\KAVRO\\ /UPPILOT");
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"Entry 920", u"Entry 921", u"Entry 922"}));
  agent.Close();
  desk.machine.spooler().At(desk::kPrinterName).attributes = PRINTER_ATTRIBUTE_NETWORK;
  EXPECT_EQ(TailAtNextOpening(desk.StartedAgent()), (Texts{u"-", u"Entry 920", u"Entry 922"}));
}

// --- Made at the start, and anew at each opening

TEST_F(ContextMenuEntries, AreThereFromTheStartOn) {
  desk.AddToVif("[Download]\r\nUPPILOTEXE=NETPILOT.EXE");
  desk.SetMenuValue("921", "C:\\KAVRO\\ /UPPILOT");
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(Held(agent, u"bitmap "), (Texts{u"bitmap 920 of K_S72EN.DLL",  //
                                            u"bitmap 922 of K_S72EN.DLL"}));
  // Without a library the menu of the start is the one that opens.
  desk.machine.files().Remove(desk::kResourceLibraryPath);
  desk.SetMenuValue("920", "");
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"Entry 920", u"Entry 921", u"Entry 922"}));
}

TEST_F(ContextMenuEntries, ShowAChangeOfTheUsersLanguageAtTheNextOpening) {
  desk.machine.files().WriteFile(
      desk::kProfilePath,
      "[S7200]\r\nTrayIconEnable=1\r\n[Language]\r\nENU=09,01\r\nDEU=07,01\r\n"
      "[ENU]\r\nResDll=K_S72EN.DLL\r\n[DEU]\r\nResDll=K_S72DE.DLL\r\n");
  desk.machine.files().WriteFile(kGerman, desk::BytesOf(LibraryWithLabels(u"Eintrag")));
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"Entry 920", u"Entry 922"}));
  desk.machine.system().userLanguage = 0x0407;
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"Eintrag 920", u"Eintrag 922"}));
  EXPECT_EQ(Held(agent, u"bitmap "), (Texts{u"bitmap 920 of K_S72DE.DLL",  //
                                            u"bitmap 922 of K_S72DE.DLL"}));
}

TEST_F(ContextMenuEntries, ShowAChangeOfTheDriverSetAtTheNextOpening) {
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"Entry 920", u"Entry 922"}));
  desk.SetMenuValue("921", "C:\\tool.exe");
  desk.SetMenuValue("Separators", "3");
  EXPECT_EQ(TailAtNextOpening(agent),
            (Texts{u"-", u"Entry 920", u"Entry 921", u"-", u"Entry 922"}));
  // Another place for all of it, which has one entry.
  desk.machine.registry().SetString(
      HKEY_LOCAL_MACHINE, u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200\\Menu", u"922", u"x");
  desk.AddToProfile("RegistryBaseVGL=1");
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"Entry 922"}));
  EXPECT_EQ(Held(agent, u"bitmap "), Texts{u"bitmap 922 of K_S72EN.DLL"});
}

TEST_F(ContextMenuEntries, ShowAChangeOfThePrintersOwnDataAtTheNextOpening) {
  desk.AddToVif("[Download]\r\nUPPILOTEXE=NETPILOT.EXE");
  desk.SetMenuValue("921", "C:\\KAVRO\\ /UPPILOT");
  desk.SetDriverValue("DepExe", "C:\\KAVRO\\DEP.EXE");
  desk.SetMenuValue("922", "C:\\KAVRO\\DEP.EXE /MENU");
  desk.machine.registry().MakeKey(HKEY_LOCAL_MACHINE, u"Software\\KAVRO\\KAVRO Studio 7200 IO_URL");
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"Entry 920", u"Entry 921", u"Entry 922"}));
  SetUpdateLock(1);
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"Entry 920", u"Entry 922"}));
  desk.machine.spooler().SetData(desk::kPrinterName, u"PrinterDriverData", u"KV_DISABLE_VGLFUNC",
                                 REG_BINARY, std::string("\1\1\1\1\1\1\xFF\xFF\1\0", 10));
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"Entry 920"}));
  SetUpdateLock(0);
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"Entry 920", u"Entry 921"}));
}

TEST_F(ContextMenuEntries, OfBeforeAreShownWholeWhileTheResourceLibraryIsGone) {
  const SimAgent agent = desk.StartedAgent();
  TailAtNextOpening(agent);
  desk.machine.files().Remove(desk::kResourceLibraryPath);
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"Entry 920", u"Entry 922"}));
  EXPECT_EQ(Held(agent, u"bitmap ").size(), 2U);
  desk.SetResourceLibrary(LibraryWithLabels(u"New"));
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"New 920", u"New 922"}));
}

// Each look into a slot stands in the log, so it is the same whether or not the outcome matters.
TEST_F(ContextMenuEntries, TheOneThatOrdersInkIsLookedForFromTheFirstSlotOnAlsoWhereItIsOffered) {
  desk.SetDriverValue("DepExe", "C:\\KAVRO\\DEP.EXE");
  desk.machine.registry().MakeKey(HKEY_LOCAL_MACHINE, u"Software\\KAVRO\\KAVRO Studio 7200 IO_URL");
  const SimAgent agent = desk.StartedAgent();
  const auto looksOfOpening = [&] {
    const auto looks = [this] {
      const std::vector<std::string> lines = desk.LogTexts();
      return std::count(lines.begin(), lines.end(), "IsInkOrderMenu() Dat reading Ember");
    };
    const std::ptrdiff_t before = looks();
    TailAtNextOpening(agent);
    return looks() - before;
  };
  EXPECT_EQ(looksOfOpening(), 79);
  desk.SetMenuValue("922", "C:\\KAVRO\\DEP.EXE /MENU");
  EXPECT_EQ(looksOfOpening(), 3);
  desk.SetDriverValue("DepExe", "DEP.EXE");  // which has no name without a backslash
  EXPECT_EQ(looksOfOpening(), 0);
}

// --- What is held for them

TEST_F(ContextMenuEntries, HoldOnePictureEachHoweverOftenTheMenuOpens) {
  const SimAgent agent = desk.StartedAgent();
  const Texts held = agent.Ledger();
  for (int opening = 0; opening < 20; ++opening) {
    agent.RightClick();
    ASSERT_EQ(Held(agent, u"bitmap ").size(), 2U);
    agent.DismissMenu();
    ASSERT_EQ(agent.Ledger(), held) << opening;
  }
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_EQ(agent.Ledger(), Texts{});
}

TEST_F(ContextMenuEntries, TakeTheirPicturesFromTheBitmapLibrary) {
  AddPictureLibrary();
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"Entry 920", u"Entry 922"}));
  EXPECT_EQ(Held(agent, u"bitmap "), (Texts{u"bitmap 920 of K_S72BM.DLL",  //
                                            u"bitmap 922 of K_S72BM.DLL"}));
  EXPECT_EQ(Held(agent, u"library K"), Texts{});
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_EQ(agent.Ledger(), Texts{});
}

// --- A library that has lost its menu

TEST_F(ContextMenuEntries, OfALibraryThatHasLostItsMenuHoldNoPictures) {
  const SimAgent agent = desk.StartedAgent();
  LoseTheMenu();
  EXPECT_EQ(TailAtNextOpening(agent), Texts{u"(no menu)"});
  EXPECT_EQ(Held(agent, u"bitmap "), Texts{});
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_EQ(agent.Ledger(), Texts{});
}

TEST_F(ContextMenuEntries, LibrariesWithoutAMenuStayLoadedUntilTheNextOpening) {
  const auto libraries = [this](const SimAgent& agent) {
    Texts loaded = Held(agent, u"library ");
    std::erase_if(loaded,
                  [](const std::u16string& name) { return name.find(u"K_S72") == name.npos; });
    return loaded;
  };
  AddPictureLibrary();
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(libraries(agent), Texts{});
  LoseTheMenu();
  for (int opening = 0; opening < 3; ++opening) {
    TailAtNextOpening(agent);
    EXPECT_EQ(libraries(agent), (Texts{u"library K_S72BM.DLL", u"library K_S72EN.DLL"}));
  }
  // Loaded anew, it is the file of now.
  desk.SetResourceLibrary(LibraryWithLabels(u"New"));
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"New 920", u"New 922"}));
  EXPECT_EQ(libraries(agent), Texts{});
}

TEST_F(ContextMenuEntries, ALibraryWithoutAMenuThatIsGoneAtTheNextOpeningIsLoadedNoMore) {
  const SimAgent agent = desk.StartedAgent();
  LoseTheMenu();
  TailAtNextOpening(agent);
  desk.machine.files().Remove(desk::kResourceLibraryPath);
  EXPECT_EQ(TailAtNextOpening(agent), Texts{u"(no menu)"});
  EXPECT_EQ(Held(agent, u"library C:\\Windows\\System32\\spool"), Texts{});
  desk.SetResourceLibrary(LibraryWithLabels(u"New"));
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"New 920", u"New 922"}));
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_EQ(agent.Ledger(), Texts{});
}

// --- Early stops

TEST_F(ContextMenuEntries, AMenuWhoseSeparatorsAreTooManyCharactersOpensAllTheSame) {
  desk.SetMenuValue("Separators", std::string(260, '1'));
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(TailAtNextOpening(agent), Texts{u"-"});
  desk.SetMenuValue("Separators", "");
  EXPECT_EQ(TailAtNextOpening(agent), (Texts{u"-", u"Entry 920", u"Entry 922"}));
}

}  // namespace
}  // namespace vgl
