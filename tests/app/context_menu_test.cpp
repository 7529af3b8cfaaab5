// The context menu in whole agents: what it shows, that it is made anew at each opening, and what
// goes on while it is open.
#include <gtest/gtest.h>

#include <algorithm>

#include "app/agent_messages.h"
#include "tests/support/frame_fixture.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;

constexpr char16_t kHebrew[] = u"\u05D4\u05D2\u05D3\u05E8\u05D5\u05EA";
constexpr char16_t kRunKey[] = u"Software\\Microsoft\\Windows\\CurrentVersion\\Run";

desk::ResourceLibrary LibraryWithSettings(const std::u16string& text) {
  desk::ResourceLibrary library = desk::PlainResourceLibrary();
  library.menus[801] = {{u"Tray", 0, {{u"Printer", 900, {}}, {text, 901, {}}}}};
  return library;
}

class ContextMenu : public testing::Test {
 protected:
  // The text of the settings entry, as a new opening shows it.
  std::u16string SettingsAtNextOpening(const SimAgent& agent) {
    agent.RightClick();
    if (!agent.MenuIsOpen()) return u"(no menu)";
    const std::u16string text = agent.MenuItems().at(1).text;
    agent.DismissMenu();
    return text;
  }
  const sim::OpenMenu& Shown() { return *desk.machine.desktop().menus().List().at(0); }
  std::size_t Starts() { return desk.machine.programs().Starts().size(); }
  std::ptrdiff_t MaskChecks() {
    const std::vector<std::string> lines = desk.LogTexts();
    return std::count(lines.begin(), lines.end(), "CMainFrame::OnTimer : Mask check");
  }

  SimDesk desk;
};

// --- What it shows

TEST_F(ContextMenu, BeginsWithThePrintersNameAsItsDefaultEntryAndTheSettings) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  const std::vector<sim::MenuItem> items = agent.MenuItems();
  ASSERT_GE(items.size(), 2U);
  EXPECT_EQ(items[0].text, u"Studio 7200");
  EXPECT_EQ(items[0].id, 900U);
  EXPECT_EQ(items[0].state, MFS_DEFAULT);
  EXPECT_EQ(items[0].type, MFT_STRING);
  EXPECT_EQ(items[1].text, u"Monitoring Preferences...");
  EXPECT_EQ(items[1].id, 901U);
  EXPECT_EQ(items[1].type, MFT_STRING);
}

TEST_F(ContextMenu, IsOfTheFirstSubMenuOnly) {
  desk::ResourceLibrary library = desk::PlainResourceLibrary();
  library.menus[801].push_back({u"Second", 0, {{u"Elsewhere", 990, {}}}});
  desk.SetResourceLibrary(library);
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  for (const sim::MenuItem& item : agent.MenuItems()) EXPECT_NE(item.id, 990U);
}

TEST_F(ContextMenu, OfARightToLeftLanguageMarksTheTitleAndTurnsItsHeadRound) {
  desk.SetResourceLibrary(LibraryWithSettings(kHebrew));
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  const std::vector<sim::MenuItem> items = agent.MenuItems();
  EXPECT_EQ(items[0].text, u"Studio 7200\u200E");
  EXPECT_EQ(items[0].type, 0x6000U);
  EXPECT_EQ(items[1].text, kHebrew);
  EXPECT_EQ(items[1].type, 0x6000U);
}

// --- How it is shown

TEST_F(ContextMenu, OpensAtThePointerForTheRightButtonWithItsWindowInFront) {
  const SimAgent agent = desk.StartedAgent();
  desk.machine.desktop().MoveMouse({1910, -7});
  agent.RightClick();
  EXPECT_EQ(Shown().x, 1910);
  EXPECT_EQ(Shown().y, -7);
  EXPECT_EQ(Shown().flags, 2U);
  EXPECT_EQ(Shown().owner, agent.Window()->handle);
  EXPECT_EQ(desk.machine.desktop().foreground(), agent.Window()->handle);
  EXPECT_EQ(desk.machine.desktop().FocusBeside(agent.Window()->handle), agent.Window()->handle);
}

TEST_F(ContextMenu, OpensAlsoWhereItsWindowCantBePutInFrontOrThePointerFound) {
  const SimAgent agent = desk.StartedAgent();
  for (const char* operation :
       {"SetForegroundWindow", "SetFocus", "GetCursorPos", "DrawMenuBar", "GetWindowLongPtrW"}) {
    agent.process().FailNext(operation, ERROR_ACCESS_DENIED);
    agent.RightClick();
    ASSERT_TRUE(agent.MenuIsOpen()) << operation;
    agent.DismissMenu();
  }
}

TEST_F(ContextMenu, ThatTheSystemDoesntShowOpensAtTheNextPress) {
  const SimAgent agent = desk.StartedAgent();
  agent.process().FailNext("TrackPopupMenu", ERROR_NOT_ENOUGH_MEMORY);
  agent.RightClick();
  EXPECT_FALSE(agent.MenuIsOpen());
  agent.RightClick();
  EXPECT_TRUE(agent.MenuIsOpen());
}

class ContextMenuOfAChild : public FrameTest {};

TEST_F(ContextMenuOfAChild, BelongsToItsTopLevelWindow) {
  const auto makeWindow = [] {
    return Os().windowing.CreateWindowExW(0, kTrayWindowClass, u"", 0, HMODULE{});
  };
  ASSERT_EQ(frame->StartUp(), 1);
  const HWND top = makeWindow();
  const HWND middle = makeWindow();
  sim::Desktop& desktop = machine.desktop();
  desktop.Find(middle)->style |= WS_CHILD;
  desktop.Find(middle)->owner = top;
  desktop.Find(frame->m_hWnd)->style |= WS_CHILD;
  desktop.Find(frame->m_hWnd)->owner = middle;
  HWND owner{};
  machine.StartProcess(u"C:\\person.exe", u"", [&](const char16_t*) {
    Os().process.Sleep(100);
    for (sim::OpenMenu* open : desktop.menus().List()) {
      owner = open->owner;
      desktop.menus().Dismiss(*open);
    }
    return 0U;
  });
  Send(WM_VGL3_TRAYICON, 0, WM_RBUTTONDOWN);
  EXPECT_EQ(owner, top);
}

// --- Made anew at each opening

TEST_F(ContextMenu, ShowsAChangeOfTheUsersLanguageWithoutARestart) {
  desk.machine.files().WriteFile(
      desk::kProfilePath,
      "[S7200]\r\nTrayIconEnable=1\r\n[Language]\r\nENU=09,01\r\nDEU=07,01\r\nHEB=0D,01\r\n"
      "[ENU]\r\nResDll=K_S72EN.DLL\r\n[DEU]\r\nResDll=K_S72DE.DLL\r\n"
      "[HEB]\r\nResDll=K_S72HE.DLL\r\n");
  const auto write = [this](const char16_t* name, const std::u16string& text) {
    desk.machine.files().WriteFile(std::u16string(desk::kDriverFolder) + u"\\" + name,
                                   desk::BytesOf(LibraryWithSettings(text)));
  };
  write(u"K_S72DE.DLL", u"Einstellungen");
  write(u"K_S72HE.DLL", kHebrew);

  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(SettingsAtNextOpening(agent), u"Monitoring Preferences...");
  desk.machine.system().userLanguage = 0x0407;
  EXPECT_EQ(SettingsAtNextOpening(agent), u"Einstellungen");

  // The reading order goes with the language, there and back.
  desk.machine.system().userLanguage = 0x040D;
  agent.RightClick();
  EXPECT_EQ(agent.MenuItems()[0].text, u"Studio 7200\u200E");
  agent.DismissMenu();
  desk.machine.system().userLanguage = 0x0409;
  agent.RightClick();
  EXPECT_EQ(agent.MenuItems()[0].text, u"Studio 7200");
  EXPECT_EQ(agent.MenuItems()[0].type, MFT_STRING);
}

// An agent that knows no printer's name opens its menu only while an installation is under way.
TEST_F(ContextMenu, OfAnAgentThatKnowsOnlyAPortHasThePortsNameInItsHead) {
  constexpr char16_t kRecord[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVNTarget\\P0000000000000000";
  desk.machine.registry().SetString(HKEY_CURRENT_USER, kRecord, u"Name", u"LPT2");
  desk.machine.registry().SetDword(HKEY_CURRENT_USER, kRecord, u"TrayIconEnable", 1);
  const SimAgent agent = desk.StartedAgent(u"/I /D \"KAVRO Studio 7200\" /O \"LPT2\" /M \"S7200\"");
  agent.RightClick();
  ASSERT_TRUE(agent.MenuIsOpen());
  EXPECT_EQ(agent.MenuItems()[0].text, u"LPT2");
}

TEST_F(ContextMenu, ReadsAsItsOwnTextsDoWhateverTheSystemsLanguage) {
  const auto titleOn = [](std::uint16_t language, const std::u16string& settings) {
    SimDesk other;
    other.machine.system().systemLocale = language;
    other.machine.system().userLanguage = language;
    other.SetResourceLibrary(LibraryWithSettings(settings));
    const SimAgent agent = other.StartedAgent();
    agent.RightClick();
    return agent.MenuItems().at(0).text;
  };
  EXPECT_EQ(titleOn(0x040D, u"Settings"), u"Studio 7200");
  EXPECT_EQ(titleOn(0x0409, kHebrew), u"Studio 7200\u200E");
}

TEST_F(ContextMenu, ShowsAnUpdatedResourceLibraryWithoutARestart) {
  const SimAgent agent = desk.StartedAgent();
  desk.SetResourceLibrary(LibraryWithSettings(u"Options"));
  EXPECT_EQ(SettingsAtNextOpening(agent), u"Options");
}

TEST_F(ContextMenu, OfBeforeOpensWhileTheResourceLibraryIsGone) {
  const SimAgent agent = desk.StartedAgent();
  const std::string library = *desk.machine.files().ReadFile(desk::kResourceLibraryPath);
  desk.machine.files().Remove(desk::kResourceLibraryPath);
  EXPECT_EQ(SettingsAtNextOpening(agent), u"Monitoring Preferences...");
  EXPECT_EQ(SettingsAtNextOpening(agent), u"Monitoring Preferences...");

  // Damaged is as good as gone.
  desk.machine.files().WriteFile(desk::kResourceLibraryPath, library.substr(0, 100));
  EXPECT_EQ(SettingsAtNextOpening(agent), u"Monitoring Preferences...");

  desk.SetResourceLibrary(LibraryWithSettings(u"Options"));
  EXPECT_EQ(SettingsAtNextOpening(agent), u"Options");
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_EQ(agent.Ledger(), Texts{});
}

// What names the library is read anew, too; where nothing does any more, the last one counts.
TEST_F(ContextMenu, ComesFromTheLastLibraryWhereTheProfileNamesNoneAnyMore) {
  const SimAgent agent = desk.StartedAgent();
  desk.machine.files().Remove(desk::kProfilePath);
  desk.SetResourceLibrary(LibraryWithSettings(u"Options"));
  EXPECT_EQ(SettingsAtNextOpening(agent), u"Options");
}

TEST_F(ContextMenu, OfALibraryThatHasLostItsMenuDoesntOpen) {
  const SimAgent agent = desk.StartedAgent();
  desk::ResourceLibrary without = desk::PlainResourceLibrary();
  without.menus.clear();
  desk::ResourceLibrary flat = desk::PlainResourceLibrary();
  flat.menus[801] = {{u"Printer", 900, {}}, {u"Preferences", 901, {}}};  // without a sub-menu
  for (const desk::ResourceLibrary& library : {without, flat}) {
    desk.SetResourceLibrary(library);
    EXPECT_EQ(SettingsAtNextOpening(agent), u"(no menu)");
  }
  EXPECT_FALSE(agent.HasEnded());

  desk.SetResourceLibrary(LibraryWithSettings(u"Options"));
  EXPECT_EQ(SettingsAtNextOpening(agent), u"Options");
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_EQ(agent.Ledger(), Texts{});
}

TEST_F(ContextMenu, LeavesNoLibraryLoadedAndGrowsNoHandle) {
  desk::ResourceLibrary pictures;
  pictures.icons = {{700, 1}, {701, 2}, {702, 3}};
  desk.machine.files().WriteFile(std::u16string(desk::kDriverFolder) + u"\\K_S72BM.DLL",
                                 desk::BytesOf(pictures));
  desk.AddToProfile("BmpDll=K_S72BM.DLL");
  const SimAgent agent = desk.StartedAgent();
  const Texts held = agent.Ledger();
  for (int opening = 0; opening < 20; ++opening) {
    agent.RightClick();
    ASSERT_EQ(agent.Ledger(), held) << opening;
    agent.DismissMenu();
  }
}

// --- A choice

TEST_F(ContextMenu, ChoiceOfTheFirstEntryStartsTheStatusWindow) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  agent.Choose(900);
  EXPECT_FALSE(agent.MenuIsOpen());
  EXPECT_EQ(Starts(), 1U);
  EXPECT_EQ(agent.Counts()[2], 1U);
  EXPECT_EQ(agent.Counts()[3], 0U);
}

TEST_F(ContextMenu, ChoiceOfTheSettingsStartsThePreferencesWindow) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  agent.Choose(901);
  EXPECT_EQ(Starts(), 1U);
  EXPECT_EQ(agent.Counts()[2], 0U);
  EXPECT_EQ(agent.Counts()[3], 1U);
}

TEST_F(ContextMenu, ClosedWithoutAChoiceStartsNothing) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  agent.DismissMenu();
  desk.RunFor(60000);
  EXPECT_EQ(Starts(), 0U);
  EXPECT_FALSE(agent.HasEnded());
}

// Only the click is gated.
TEST_F(ContextMenu, ChoiceMadeWhenThePrinterIsGoneSaysThatTheWindowCantBeOpened) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  desk.DeletePrinter();
  agent.Choose(900);
  EXPECT_EQ(desk.BoxesShown(), Texts{u"KAVRO Vigil 3: \r\nUnable to open Printer Status window for "
                                     u"this printer."});
}

// --- While it is open

TEST_F(ContextMenu, TimersFireWhileItIsOpen) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  const std::ptrdiff_t before = MaskChecks();
  desk.RunFor(30000);
  EXPECT_EQ(MaskChecks(), before + 10);
  EXPECT_TRUE(agent.MenuIsOpen());
}

TEST_F(ContextMenu, TheUsageLogIsFlushedWhileItIsOpen) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  desk.RunFor(900000);
  EXPECT_TRUE(agent.MenuIsOpen());
  ASSERT_FALSE(desk.CountsInFile().empty());
  EXPECT_EQ(desk.CountsInFile()[1], 1U);
}

TEST_F(ContextMenu, GoesWithItsAgentWhenThePrinterIsDeletedMeanwhile) {
  desk.SetRunValue(desk::kPrinterName, u"agent");
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  desk.DeletePrinter();
  EXPECT_TRUE(desk.machine.RunUntilEnded(agent.process(), 3000));
  EXPECT_EQ(agent.ExitCode(), 0U);
  EXPECT_TRUE(desk.machine.desktop().menus().List().empty());
  EXPECT_EQ(desk.machine.registry().ValueNames(HKEY_CURRENT_USER, kRunKey), Texts{});
  EXPECT_EQ(agent.Ledger(), Texts{});
}

TEST_F(ContextMenu, GoesWithItsAgentWhenThatIsClosed) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_TRUE(desk.machine.desktop().menus().List().empty());
  EXPECT_TRUE(desk.machine.tray().Icons().empty());
  EXPECT_EQ(agent.Ledger(), Texts{});
}

TEST_F(ContextMenu, AChangedPictureShowsWhileItIsOpen) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  desk.machine.registry().SetDword(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconSelected", 1);
  agent.Post(WM_VGL3_UPDATE_ICON);
  EXPECT_EQ(agent.Icon()->picture,
            u"icon 701 of C:\\Windows\\System32\\spool\\drivers\\x64\\3\\K_S72EN.DLL");
  EXPECT_TRUE(agent.MenuIsOpen());
}

// The menu that is shown is the one that is made anew.
TEST_F(ContextMenu, AnotherRightPressMeanwhileLeavesTheAgentWhole) {
  const SimAgent agent = desk.StartedAgent();
  const Texts held = agent.Ledger();
  agent.RightClick();
  agent.RightClick();
  desk.RunFor(10000);
  EXPECT_FALSE(agent.HasEnded());
  EXPECT_EQ(agent.Ledger(), held);
  if (agent.MenuIsOpen()) agent.DismissMenu();
  EXPECT_EQ(SettingsAtNextOpening(agent), u"Monitoring Preferences...");
}

// A message box stops neither the icon nor the timers.
TEST_F(ContextMenu, OpensAlsoWhileAMessageBoxIsShown) {
  desk.machine.files().Remove(desk::kRunHelperPath);
  const SimAgent agent = desk.StartedAgent();
  agent.DoubleClick();
  ASSERT_EQ(desk.machine.desktop().Boxes().size(), 1U);
  agent.RightClick();
  EXPECT_TRUE(agent.MenuIsOpen());
  agent.DismissMenu();
  EXPECT_EQ(desk.machine.desktop().Boxes().size(), 1U);
}

TEST_F(ContextMenu, ADoubleClickMeanwhileStartsTheStatusWindow) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  agent.DoubleClick();
  EXPECT_EQ(Starts(), 1U);
}

}  // namespace
}  // namespace vgl
