// The icon in the notification area: picture, tip, and what the pointer does to it.
#include <gtest/gtest.h>

#include <utility>

#include "Common/tray_log.h"
#include "app/agent_messages.h"
#include "platform/sim/text.h"
#include "tests/support/frame_fixture.h"
#include "tests/support/operations_of.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;

constexpr char16_t kPortRecord[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVNTarget\\P0000000000000000";

// As the file tree spells it.
constexpr char16_t kLibrary[] = u"C:\\Windows\\System32\\spool\\drivers\\x64\\3\\K_S72EN.DLL";

std::u16string PictureOf(std::uint64_t resource) {
  return u"icon " + sim::Decimal(resource) + u" of " + kLibrary;
}

class TrayIcon : public testing::Test {
 protected:
  void Select(std::uint32_t icon) {
    desk.machine.registry().SetDword(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconSelected",
                                     icon);
  }
  // An agent of a device that is known by its port alone.
  SimAgent StartedForPort(const std::u16string& port) {
    desk.machine.registry().SetString(HKEY_CURRENT_USER, kPortRecord, u"Name", port);
    desk.machine.registry().SetDword(HKEY_CURRENT_USER, kPortRecord, u"TrayIconEnable", 1);
    return desk.StartedAgent(u"/D \"KAVRO Studio 7200\" /O \"" + port + u"\" /M \"S7200\"");
  }
  void Tell(const SimAgent& agent, std::uint32_t mouseMessage) {
    desk.machine.tray().Tell(*agent.Icon(), mouseMessage);
    desk.machine.Settle();
  }
  void HoldKeys(std::initializer_list<std::int32_t> keys) {
    for (const std::int32_t key : keys) desk.machine.desktop().HoldKey(key);
  }
  std::size_t Starts() { return desk.machine.programs().Starts().size(); }
  // How often that has happened, counted by how it begins.
  std::ptrdiff_t Traced(std::u16string_view begin) {
    std::ptrdiff_t count = 0;
    for (const sim::Event& event : desk.machine.trace())
      if (event.text.starts_with(begin)) ++count;
    return count;
  }

  SimDesk desk;
};

// --- Tip

TEST_F(TrayIcon, APrintersNameOf128CharactersOrMoreShowsCutTo127) {
  for (const std::size_t length : {1U, 126U, 127U, 128U, 129U, 259U}) {
    const std::u16string name = std::u16string(length - 1, u'n') + u"E";
    const SimAgent agent = desk.StartedAgent(desk.AddPrinter(name));
    ASSERT_NE(agent.Icon(), nullptr) << length;
    EXPECT_EQ(agent.Icon()->tip, name.substr(0, 127)) << length;
  }
}

TEST_F(TrayIcon, APortShowsWhereThereIsNoPrintersName) {
  const SimAgent agent = StartedForPort(u"LPT2");
  ASSERT_NE(agent.Icon(), nullptr);
  EXPECT_EQ(agent.Icon()->tip, u"LPT2");
}

TEST_F(TrayIcon, APortOf127CharactersShowsWhole) {
  const std::u16string port = std::u16string(126, u'o') + u"E";
  EXPECT_EQ(StartedForPort(port).Icon()->tip, port);
}

TEST_F(TrayIcon, APortOf128CharactersFailsTheIconAndEndsTheStartWithZero) {
  const SimAgent agent = StartedForPort(std::u16string(128, u'o'));
  EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : 0"));
  EXPECT_TRUE(agent.HasEnded());
  EXPECT_EQ(Traced(u"icon added"), 0);
  EXPECT_EQ(agent.Ledger(), Texts{u"window TrayIconWClass"});
}

// --- Picture

TEST_F(TrayIcon, ShowsTheSelectedOneOfThreePictures) {
  const std::pair<std::uint32_t, std::uint64_t> pictures[] = {{0, 700}, {1, 701}, {2, 702}};
  for (const auto& [selected, resource] : pictures) {
    Select(selected);
    const SimAgent agent = desk.StartedAgent();
    EXPECT_EQ(agent.Icon()->picture, PictureOf(resource));
    agent.Close();
  }
}

TEST_F(TrayIcon, ANumberBeyondThePicturesStandsWithoutOne) {
  for (const std::uint32_t selected : {3U, 77U, 0x80000000U, 0xFFFFFFFFU}) {
    Select(selected);
    const SimAgent agent = desk.StartedAgent();
    ASSERT_NE(agent.Icon(), nullptr) << selected;
    EXPECT_EQ(agent.Icon()->icon, HICON{});
    EXPECT_EQ(agent.Icon()->tip, u"Studio 7200");
    agent.Close();
  }
}

TEST_F(TrayIcon, TellsItsClicksToTheHiddenWindow) {
  const SimAgent agent = desk.StartedAgent();
  EXPECT_EQ(agent.Icon()->window, agent.Window()->handle);
  EXPECT_EQ(agent.Icon()->id, 0U);
  EXPECT_EQ(agent.Icon()->callbackMessage, 1124U);
  EXPECT_EQ(desk.machine.tray().Icons().size(), 1U);
}

TEST_F(TrayIcon, PicturesComeFromTheBitmapLibraryOfASetThatHasOne) {
  const std::u16string path = std::u16string(desk::kDriverFolder) + u"\\K_S72BM.DLL";
  desk::ResourceLibrary pictures;
  pictures.icons = {{700, 0xFF}, {701, 0xFF00}, {702, 0xFF0000}};
  desk.machine.files().WriteFile(path, desk::BytesOf(pictures));
  desk.AddToProfile("BmpDll=K_S72BM.DLL");
  EXPECT_EQ(desk.StartedAgent().Icon()->picture,
            u"icon 700 of C:\\Windows\\System32\\spool\\drivers\\x64\\3\\K_S72BM.DLL");
}

TEST_F(TrayIcon, PicturesComeFromTheResourceLibraryWhereTheBitmapLibraryCantBeLoaded) {
  desk.AddToProfile("BmpDll=K_S72BM.DLL");
  EXPECT_EQ(desk.StartedAgent().Icon()->picture, PictureOf(700));
}

TEST_F(TrayIcon, ALibraryWithoutPicturesLeavesAnIconWithoutOne) {
  desk::ResourceLibrary library = desk::PlainResourceLibrary();
  library.icons.clear();
  desk.SetResourceLibrary(library);
  const SimAgent agent = desk.StartedAgent();
  ASSERT_NE(agent.Icon(), nullptr);
  EXPECT_EQ(agent.Icon()->picture, u"");
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_EQ(agent.Ledger(), Texts{});
}

// --- A change of "TrayIconSelected"

TEST_F(TrayIcon, AChangeShowsWhenTheAgentIsToldOfIt) {
  const SimAgent agent = desk.StartedAgent();
  Select(2);
  desk.RunFor(60000);
  EXPECT_EQ(agent.Icon()->picture, PictureOf(700));
  agent.Post(WM_VGL3_UPDATE_ICON, 0, 1);  // the arguments are ignored
  EXPECT_EQ(agent.Icon()->picture, PictureOf(702));
  EXPECT_EQ(agent.Icon()->tip, u"Studio 7200");
  Select(1);
  agent.Post(WM_VGL3_UPDATE_ICON, 77, -5);
  EXPECT_EQ(agent.Icon()->picture, PictureOf(701));
}

TEST_F(TrayIcon, AChangeShowsOutOfARecordThatMayOnlyBeRead) {
  const SimAgent agent = desk.StartedAgent();
  Select(2);
  desk.machine.registry().Deny(HKEY_CURRENT_USER, desk::kRecordPath, false);
  agent.Post(WM_VGL3_UPDATE_ICON);
  EXPECT_EQ(agent.Icon()->picture, PictureOf(702));
}

TEST_F(TrayIcon, ANumberBeyondThePicturesTakesThePictureAwayAndALaterOneBringsItBack) {
  const SimAgent agent = desk.StartedAgent();
  Select(3);
  agent.Post(WM_VGL3_UPDATE_ICON);
  EXPECT_EQ(agent.Icon()->icon, HICON{});
  Select(1);
  agent.Post(WM_VGL3_UPDATE_ICON);
  EXPECT_EQ(agent.Icon()->picture, PictureOf(701));
}

TEST_F(TrayIcon, ARecordOrValueThatCantBeReadChangesNothing) {
  const SimAgent agent = desk.StartedAgent();
  sim::RegistryTree& registry = desk.machine.registry();
  registry.SetBytes(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconSelected", REG_BINARY,
                    std::string(8, '\2'));
  agent.Post(WM_VGL3_UPDATE_ICON);
  registry.RemoveValue(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconSelected");
  agent.Post(WM_VGL3_UPDATE_ICON);
  registry.RemoveKey(HKEY_CURRENT_USER, desk::kRecordPath);
  agent.Post(WM_VGL3_UPDATE_ICON);
  EXPECT_EQ(Traced(u"icon modified"), 0);
  EXPECT_EQ(agent.Icon()->picture, PictureOf(700));
}

TEST_F(TrayIcon, ARecordThatMayNotBeReadChangesNothing) {
  const SimAgent agent = desk.StartedAgent();
  Select(2);
  desk.machine.registry().Deny(HKEY_CURRENT_USER, desk::kRecordPath, true);
  agent.Post(WM_VGL3_UPDATE_ICON);
  EXPECT_EQ(Traced(u"icon modified"), 0);
}

TEST_F(TrayIcon, AShorterValueSetsTheLowerBytes) {
  const SimAgent agent = desk.StartedAgent();
  desk.machine.registry().SetBytes(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconSelected",
                                   REG_BINARY, "\2");
  agent.Post(WM_VGL3_UPDATE_ICON);
  EXPECT_EQ(agent.Icon()->picture, PictureOf(702));
}

TEST_F(TrayIcon, AChangeThatTheShellRefusesLeavesIconAndAgentAsTheyWere) {
  const SimAgent agent = desk.StartedAgent();
  desk.machine.tray().Refuse(true);
  Select(1);
  agent.Post(WM_VGL3_UPDATE_ICON);
  EXPECT_EQ(agent.Icon()->picture, PictureOf(700));
  desk.machine.tray().Refuse(false);
  agent.Post(WM_VGL3_UPDATE_ICON);
  EXPECT_EQ(agent.Icon()->picture, PictureOf(701));
}

TEST_F(TrayIcon, AnIconThatTheShellHasLostStaysLost) {
  const SimAgent agent = desk.StartedAgent();
  NotifyIconData lost;
  lost.window = agent.Window()->handle;
  desk.machine.StartProcess(u"C:\\shell.exe", u"", [&](const char16_t*) {
    Os().shell.Shell_NotifyIconW(NIM_DELETE, lost);
    return 0U;
  });
  desk.machine.Settle();
  ASSERT_EQ(agent.Icon(), nullptr);
  Select(1);
  agent.Post(WM_VGL3_UPDATE_ICON);
  desk.RunFor(3600 * 1000);
  EXPECT_EQ(agent.Icon(), nullptr);
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_EQ(agent.Ledger(), Texts{});
}

class TrayIconCost : public FrameTest {};

// The window is brought up to date also where the value can't be read.
TEST_F(TrayIconCost, AChangeReadsTheRecordAndTellsTheShell) {
  g_bTrayLogEnabled = 0;
  const auto change = [&] { TrayWindowProc(frame->m_hWnd, WM_VGL3_UPDATE_ICON, 0, 0); };
  EXPECT_EQ(OperationsOf(inside.process(), change),
            (std::vector<std::string>{"RegOpenKeyExW", "RegQueryValueExW", "Shell_NotifyIconW",
                                      "UpdateWindow", "-", "-"}));
  machine.registry().RemoveValue(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconSelected");
  EXPECT_EQ(
      OperationsOf(inside.process(), change),
      (std::vector<std::string>{"RegOpenKeyExW", "RegQueryValueExW", "UpdateWindow", "-", "-"}));
  machine.registry().RemoveKey(HKEY_CURRENT_USER, desk::kRecordPath);
  EXPECT_EQ(OperationsOf(inside.process(), change),
            (std::vector<std::string>{"RegOpenKeyExW", "-"}));
}

// --- The pointer

TEST_F(TrayIcon, ASingleClickOpensTheMenuWhenTheDoubleClickTimeHasRunOut) {
  desk.machine.system().doubleClickTime = 350;
  const SimAgent agent = desk.StartedAgent();
  agent.Click();
  EXPECT_EQ(agent.PeriodOf(TMID_CLICK), 350U);
  desk.RunFor(349);
  EXPECT_FALSE(agent.MenuIsOpen());
  desk.RunFor(1);
  EXPECT_TRUE(agent.MenuIsOpen());
  EXPECT_EQ(agent.PeriodOf(TMID_CLICK), 0U);
  EXPECT_EQ(Starts(), 0U);
}

TEST_F(TrayIcon, ADoubleClickOpensTheStatusWindowAndNoMenu) {
  const SimAgent agent = desk.StartedAgent();
  agent.DoubleClick();
  EXPECT_EQ(Starts(), 1U);
  EXPECT_EQ(agent.PeriodOf(TMID_CLICK), 0U);
  desk.RunFor(60000);
  EXPECT_EQ(Traced(u"popup menu"), 0);
  EXPECT_EQ(Starts(), 1U);
}

TEST_F(TrayIcon, ADoubleClickWithoutAPressBeforeOpensTheStatusWindow) {
  const SimAgent agent = desk.StartedAgent();
  Tell(agent, WM_LBUTTONDBLCLK);
  EXPECT_EQ(Starts(), 1U);
}

TEST_F(TrayIcon, ARightPressOpensTheMenuAtOnce) {
  const SimAgent agent = desk.StartedAgent();
  Tell(agent, WM_RBUTTONDOWN);
  EXPECT_TRUE(agent.MenuIsOpen());
  EXPECT_TRUE(desk.HasLogged("CMainFrame::ChkDelPrn : start"));
}

TEST_F(TrayIcon, AllOtherMouseMessagesAreIgnored) {
  const SimAgent agent = desk.StartedAgent();
  const std::vector<std::uint64_t> timers = agent.Timers();
  const std::vector<std::string> log = desk.LogTexts();
  // Moves, releases, the middle button and further ones, the second right press, the wheel, the
  // keyboard's ways to an icon, and none at all.
  for (const std::uint32_t message : {0U, 123U, 512U, 514U, 517U, 518U, 519U, 520U, 521U, 522U,
                                      523U, 524U, 525U, 1024U, 1025U, 1026U, 0x10201U})
    Tell(agent, message);
  EXPECT_EQ(agent.Timers(), timers);
  EXPECT_EQ(desk.LogTexts(), log);
  EXPECT_FALSE(agent.MenuIsOpen());
  EXPECT_EQ(Starts(), 0U);
}

TEST_F(TrayIcon, APressWhoseTimerCantBeArmedOpensNothing) {
  const SimAgent agent = desk.StartedAgent();
  agent.process().FailNext("SetTimer", ERROR_NO_SYSTEM_RESOURCES);
  agent.Click();
  desk.RunFor(60000);
  EXPECT_EQ(Traced(u"popup menu"), 0);
  agent.RightClick();
  EXPECT_TRUE(agent.MenuIsOpen());
}

// --- The gate in front of what a click asks for

class VanishedPrinter : public TrayIcon {
 protected:
  VanishedPrinter() {
    desk.SetRunValue(desk::kPrinterName, u"agent");
    desk.SetRunValue(u"Other", u"other");
  }
  // The mask check of an agent is due after 3000 ms; the clicks here come earlier.
  void ExpectEndedBy(const SimAgent& agent, const std::string& line) {
    desk.RunFor(1);
    ASSERT_TRUE(agent.HasEnded());
    EXPECT_TRUE(desk.HasLogged(line));
    EXPECT_FALSE(desk.HasLogged("CMainFrame::OnTimer : Mask check"));
    EXPECT_EQ(desk.RunValues(), Texts{u"Other"});
    EXPECT_EQ(Traced(u"popup menu"), 0);
    EXPECT_EQ(Starts(), 0U);
    EXPECT_EQ(desk.BoxesShown(), Texts{});
    EXPECT_EQ(agent.Ledger(), Texts{});
  }
};

TEST_F(VanishedPrinter, EndsTheAgentWhenASingleClickHasBecomeARightOne) {
  const SimAgent agent = desk.StartedAgent();
  desk.DeletePrinter();
  agent.Click();
  desk.RunFor(499);
  EXPECT_FALSE(agent.HasEnded());
  ExpectEndedBy(agent, "Post WM_CLOSE(2)");
}

TEST_F(VanishedPrinter, IsWhatAClickDuringAnInstallationFinds) {
  const SimAgent agent = desk.StartedAgent();
  desk.StartInstaller();
  agent.RightClick();
  ExpectEndedBy(agent, "Post WM_CLOSE(2)");
}

TEST_F(VanishedPrinter, HasTheQuitKeysNoLongerAsked) {
  const SimAgent agent = desk.StartedAgent();
  desk.DeletePrinter();
  HoldKeys({VK_CONTROL, VK_SHIFT, VK_SPACE});
  agent.RightClick();
  ExpectEndedBy(agent, "Post WM_CLOSE(2)");
  EXPECT_FALSE(desk.HasLogged("Post WM_CLOSE(3)"));
}

class InstalledPrinter : public TrayIcon {
 protected:
  SimAgent agent = desk.StartedAgent(desk::OptionsOfDefaultPrinter() + u" /I");
};

TEST_F(InstalledPrinter, IsNotTestedByAnyClick) {
  agent.DoubleClick();
  EXPECT_EQ(Starts(), 1U);
  agent.RightClick();
  EXPECT_TRUE(agent.MenuIsOpen());
  agent.DismissMenu();
  agent.Click();
  desk.RunFor(500);
  EXPECT_TRUE(agent.MenuIsOpen());
  EXPECT_FALSE(desk.HasLogged("CMainFrame::ChkDelPrn : start"));
}

TEST_F(InstalledPrinter, HasItsMenuWhileTheInstallerIsAtWork) {
  desk.StartInstaller();
  agent.RightClick();
  ASSERT_TRUE(agent.MenuIsOpen());
  EXPECT_EQ(agent.MenuItems()[0].text, u"Studio 7200");
}

TEST_F(InstalledPrinter, HasItsMenuAlsoBeforeTheSpoolerKnowsThePrinter) {
  desk.DeletePrinter();
  agent.RightClick();
  EXPECT_TRUE(agent.MenuIsOpen());
  EXPECT_FALSE(agent.HasEnded());
}

// --- The hidden way to quit

TEST_F(TrayIcon, ThreeHeldKeysAtARightPressEndTheAgentWithTheMenuRebuiltBefore) {
  desk.SetRunValue(desk::kPrinterName, u"agent");
  const SimAgent agent = desk.StartedAgent();
  const std::ptrdiff_t loaded = Traced(u"loaded library " + std::u16string(kLibrary));
  HoldKeys({VK_CONTROL, VK_SHIFT, VK_SPACE});
  agent.RightClick();
  desk.RunFor(1);
  EXPECT_TRUE(desk.HasLogged("Post WM_CLOSE(3)"));
  EXPECT_TRUE(agent.HasEnded());
  EXPECT_EQ(Traced(u"loaded library " + std::u16string(kLibrary)), loaded + 1);
  EXPECT_EQ(Traced(u"popup menu"), 0);
  EXPECT_EQ(desk.RunValues(), Texts{desk::kPrinterName});
  EXPECT_EQ(agent.Ledger(), Texts{});
}

TEST_F(TrayIcon, ThreeHeldKeysEndTheAgentWhenASingleClickHasBecomeARightOne) {
  const SimAgent agent = desk.StartedAgent();
  agent.Click();
  HoldKeys({VK_CONTROL, VK_SHIFT, VK_SPACE});
  desk.RunFor(501);
  EXPECT_TRUE(agent.HasEnded());
  EXPECT_TRUE(desk.HasLogged("Post WM_CLOSE(3)"));
}

TEST_F(TrayIcon, TwoOfTheThreeKeysOpenTheMenu) {
  const SimAgent agent = desk.StartedAgent();
  const std::int32_t pairs[][2] = {
      {VK_CONTROL, VK_SHIFT}, {VK_CONTROL, VK_SPACE}, {VK_SHIFT, VK_SPACE}};
  for (const auto& [first, second] : pairs) {
    HoldKeys({first, second});
    agent.RightClick();
    EXPECT_TRUE(agent.MenuIsOpen()) << first << " " << second;
    agent.DismissMenu();
    desk.machine.desktop().ReleaseKey(first);
    desk.machine.desktop().ReleaseKey(second);
  }
  EXPECT_FALSE(desk.HasLogged("Post WM_CLOSE(3)"));
}

TEST_F(TrayIcon, TheKeysMeanNothingToADoubleClick) {
  const SimAgent agent = desk.StartedAgent();
  HoldKeys({VK_CONTROL, VK_SHIFT, VK_SPACE});
  agent.DoubleClick();
  EXPECT_EQ(Starts(), 1U);
  EXPECT_FALSE(agent.HasEnded());
}

}  // namespace
}  // namespace vgl
