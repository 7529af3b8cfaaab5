// What a start takes from the driver set's libraries and data: the menu, texts, the bitmap library,
// NetPilot; and libraries that aren't what they should be.
#include <algorithm>
#include <functional>
#include <optional>

#include "tests/app/invitation_set.h"
#include "tests/support/frame_fixture.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;

constexpr char16_t kHebrew[] = u"\u05D4\u05D2\u05D3\u05E8\u05D5\u05EA";
constexpr char16_t kBitmapPath[] = u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\K_S72BM.DLL";

// --- Resource libraries that aren't what they should be, in whole agents

class FaultyResources : public testing::Test {
 protected:
  FaultyResources() { desk.machine.desktop().AnswerBoxesAtOnce(); }

  // The result of a start with these bytes as resource library, as the log tells it.
  std::string ResultWith(const std::string& bytes) {
    desk.machine.files().WriteFile(desk::kResourceLibraryPath, bytes);
    desk.machine.files().Remove(desk::kTrayLogFile);
    desk.machine.registry().SetDword(HKEY_CURRENT_USER, desk::kRecordPath, u"TrayIconEnable", 1);
    const SimAgent agent = desk.StartedAgent();
    if (!agent.HasEnded()) agent.Close();
    for (const std::u16string& held : agent.Ledger()) EXPECT_EQ(held, u"window TrayIconWClass");
    constexpr std::string_view kResult = "MainFrame.StartUp() : Result : ";
    for (const std::string& line : desk.LogTexts())
      if (line.starts_with(kResult)) return line.substr(kResult.size());
    return "none";
  }
  std::string ResultWithMenu(const std::vector<desk::MenuEntry>& menu) {
    desk::ResourceLibrary library = desk::PlainResourceLibrary();
    library.menus[801] = menu;
    return ResultWith(desk::BytesOf(library));
  }

  SimDesk desk;
};

const Texts kFileNotFoundOnce = {u"KAVRO Vigil 3: Could not find specified file."};

TEST_F(FaultyResources, ThatAreNoLibraryCountAsMissing) {
  for (const std::string& bytes :
       {std::string(), std::string("MZ"), std::string("; no library\r\n"), std::string(5000, '\0'),
        std::string("MZ") + std::string(5000, '\xFF')}) {
    const std::size_t before = desk.BoxesShown().size();
    EXPECT_EQ(ResultWith(bytes), "-1") << bytes.size();
    EXPECT_EQ(desk.BoxesShown().size(), before + 1);
  }
}

// The loader takes what is missing of the last sector of 512 bytes for zeros, but no more.
TEST_F(FaultyResources, CutShortCountAsMissing) {
  const std::string whole = desk::BytesOf(desk::PlainResourceLibrary());
  ASSERT_EQ(whole.size() % 512, 0U);
  for (const std::size_t size : {std::size_t{64}, std::size_t{200}, std::size_t{511},
                                 std::size_t{512}, whole.size() / 2, whole.size() - 512}) {
    const std::size_t before = desk.BoxesShown().size();
    EXPECT_EQ(ResultWith(whole.substr(0, size)), "-1") << size;
    EXPECT_EQ(desk.BoxesShown().size(), before + 1);
  }
}

TEST_F(FaultyResources, ThatMayNotBeReadCountAsMissing) {
  desk.machine.files().MakeUnreadable(desk::kResourceLibraryPath);
  desk.StartedAgent();
  EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : -1"));
  EXPECT_EQ(desk.BoxesShown(), kFileNotFoundOnce);
}

TEST_F(FaultyResources, ThatTheProfileDoesntNameCountAsMissing) {
  desk.machine.files().WriteFile(
      desk::kProfilePath,
      "[S7200]\r\nTrayIconEnable=1\r\n[Language]\r\nENU=09,01\r\n[ENU]\r\nOther=K_S72EN.DLL\r\n");
  desk.StartedAgent();
  EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : -1"));
  EXPECT_EQ(desk.BoxesShown(), kFileNotFoundOnce);
}

TEST_F(FaultyResources, WithoutMenu801EndTheStartQuietly) {
  desk::ResourceLibrary library = desk::PlainResourceLibrary();
  library.menus[802] = library.menus[801];
  library.menus.erase(801);
  EXPECT_EQ(ResultWith(desk::BytesOf(library)), "0");
  EXPECT_EQ(desk.BoxesShown(), Texts{});
}

TEST_F(FaultyResources, WithoutASubMenuAtTheFirstPlaceEndTheStartQuietly) {
  EXPECT_EQ(ResultWithMenu({{u"Printer", 900, {}}, {u"Settings", 901, {}}}), "0");
  EXPECT_EQ(ResultWithMenu({{u"Plain", 900, {}}, {u"Tray", 0, {{u"Printer", 900, {}}}}}), "0");
  EXPECT_EQ(ResultWithMenu({}), "0");
  EXPECT_EQ(desk.BoxesShown(), Texts{});
}

TEST_F(FaultyResources, WithoutTextsAndPicturesRun) {
  desk::ResourceLibrary library = desk::PlainResourceLibrary();
  library.strings.clear();
  library.icons.clear();
  EXPECT_EQ(ResultWith(desk::BytesOf(library)), "1");
}

// --- While a start shows its message box, the window stands already and takes messages

class StartThatShowsABox : public testing::Test {
 protected:
  StartThatShowsABox() {
    desk.machine.files().Remove(desk::kResourceLibraryPath);
    agent.emplace(desk.StartedAgent());
  }
  bool BoxStands() { return desk.machine.desktop().Boxes().size() == 1; }
  void ExpectEndedWithoutHarm() {
    ASSERT_TRUE(agent->HasEnded());
    EXPECT_EQ(agent->ExitCode(), 0U);
    EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : -1"));
    EXPECT_EQ(desk.BoxesShown(), Texts{u"KAVRO Vigil 3: Could not find specified file."});
    EXPECT_TRUE(desk.machine.desktop().Boxes().empty());
    for (const sim::Event& event : desk.machine.trace())
      EXPECT_NE(event.text, u"closed what is no open handle");
  }

  SimDesk desk;
  std::optional<SimAgent> agent;
};

// The frame's orderly end comes twice: with the window, and as what follows from the result.
TEST_F(StartThatShowsABox, EndsInOrderWhereARemovalClosesItsWindowMeanwhile) {
  ASSERT_TRUE(BoxStands());
  const SimAgent second = desk.StartedAgent(desk::OptionsOfDefaultPrinter() + u" /R");
  EXPECT_TRUE(second.HasEnded());
  ExpectEndedWithoutHarm();
  EXPECT_EQ(agent->Ledger(), Texts{});
  const std::vector<std::string> lines = desk.LogTextsOf(*agent);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "CMainFrame::DestroyWindow"), 2);
  // The map's slot is free for the next one.
  const std::vector<std::string> ofNext = desk.LogTextsOf(desk.StartedAgent());
  EXPECT_EQ(std::count(ofNext.begin(), ofNext.end(), "exit : SethWindow : 0"), 1);
}

TEST_F(StartThatShowsABox, PassesOverAChangeOfItsIconMeanwhile) {
  ASSERT_TRUE(BoxStands());
  desk.StartedAgent();  // a second start posts it
  EXPECT_TRUE(BoxStands());
  EXPECT_EQ(agent->Icon(), nullptr);
  desk.machine.desktop().Answer(*desk.machine.desktop().Boxes().front());
  desk.RunFor(10);
  ExpectEndedWithoutHarm();
  EXPECT_EQ(agent->Ledger(), Texts{u"window TrayIconWClass"});
}

// --- What the frame has after its start

class StartedFrame : public FrameTest {
 protected:
  void SetResources(const desk::ResourceLibrary& library) {
    machine.files().WriteFile(desk::kResourceLibraryPath, desk::BytesOf(library));
  }
  void SetMenu(const std::vector<desk::MenuEntry>& popup) {
    desk::ResourceLibrary library = desk::PlainResourceLibrary();
    library.menus[801] = {{u"Tray", 0, popup}};
    SetResources(library);
  }
  // Does something as soon as the tray log has that line.
  void WhenLogged(std::string line, std::function<void()> act) {
    machine.files().OnAppend(
        [line, act](std::uint32_t, const std::u16string&, std::string_view bytes) {
          if (bytes.find("; " + line) != std::string_view::npos) act();
        });
  }

  struct Entry {
    std::u16string text;
    std::uint32_t type = ~0U;
    std::uint32_t state = ~0U;
    std::uint32_t id = 0;

    bool operator==(const Entry&) const = default;
    friend void PrintTo(const Entry& entry, std::ostream* out) {
      *out << testing::PrintToString(entry.text) << " type " << entry.type << " state "
           << entry.state << " id " << entry.id;
    }
  };
  // An entry of the popup of the frame's menu.
  Entry EntryAt(std::uint32_t position) {
    char16_t text[300] = {};
    MenuItemInfo info;
    info.mask = MIIM_TYPE | MIIM_STATE | MIIM_ID;
    info.typeData = text;
    info.cch = static_cast<std::uint32_t>(std::size(text));
    const HMENU popup = Os().menus.GetSubMenu(frame->m_hMenu, 0);
    EXPECT_TRUE(Os().menus.GetMenuItemInfoW(popup, position, true, &info)) << position;
    return {text, info.type, info.state, info.id};
  }
};

// Type 0x6000: MFT_RIGHTORDER | MFT_RIGHTJUSTIFY; state 0x1000: MFS_DEFAULT.
TEST_F(StartedFrame, HasAMenuThatBeginsWithThePrintersName) {
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_EQ(frame->m_bRtlReading, 0);
  EXPECT_EQ(EntryAt(0), (Entry{u"Studio 7200", 0, 0x1000, 900}));
  EXPECT_EQ(EntryAt(1), (Entry{u"Monitoring Preferences...", 0, 0, 901}));
}

TEST_F(StartedFrame, OfARightToLeftLibraryMarksTheNameAndTurnsBothEntriesRound) {
  SetMenu({{u"Printer", 900, {}}, {kHebrew, 901, {}}});
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_EQ(frame->m_bRtlReading, 1);
  EXPECT_EQ(EntryAt(0), (Entry{u"Studio 7200\u200E", 0x6000, 0x1000, 900}));
  EXPECT_EQ(EntryAt(1), (Entry{kHebrew, 0x6000, 0, 901}));
}

TEST_F(StartedFrame, TakesTheDirectionFromEntry901Alone) {
  SetMenu({{kHebrew, 900, {}}, {u"Settings", 901, {}}, {kHebrew, 902, {}}});
  ASSERT_TRUE(frame->m_szPrinterName.Assign(kHebrew));
  machine.spooler().AddPrinter(
      {.name = kHebrew, .port = u"USB001", .driver = std::u16string(desk::kDriverName)});
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_EQ(frame->m_bRtlReading, 0);
  EXPECT_EQ(EntryAt(0), (Entry{kHebrew, 0, 0x1000, 900}));
}

TEST_F(StartedFrame, MakesTheFirstEntryWhateverItsNumberIsTheNames) {
  SetMenu({{u"Something else", 950, {}}, {u"Settings", 901, {}}});
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_EQ(EntryAt(0), (Entry{u"Studio 7200", 0, 0x1000, 900}));
}

TEST_F(StartedFrame, OfAMenuWithoutEntry901ReadsFromLeftToRight) {
  SetMenu({{kHebrew, 900, {}}});
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_EQ(frame->m_bRtlReading, 0);
  EXPECT_EQ(EntryAt(0), (Entry{u"Studio 7200", 0, 0x1000, 900}));
}

// 259 characters have no room for the mark.
TEST_F(StartedFrame, OfTheLongestNameGoesWithoutItsMark) {
  SetMenu({{u"Printer", 900, {}}, {kHebrew, 901, {}}});
  for (const std::size_t length : {std::size_t{258}, std::size_t{259}}) {
    const std::u16string name(length, u'n');
    desk::AddPrinterOfDefaultDriver(machine, name, u"USB001");
    ASSERT_TRUE(frame->m_szPrinterName.Assign(name));
    ASSERT_EQ(frame->StartUp(), 1);
    EXPECT_EQ(EntryAt(0).text, length == 258 ? name + u"\u200E" : name);
    frame->DestroyWindow();
  }
}

TEST_F(StartedFrame, HasTheTwoTextsOfTheLibrary) {
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_EQ(frame->m_csMsgCaption, u"Printer Status");
  EXPECT_EQ(frame->m_csMsgBusy, u"A printer driver is being installed. Try again later.");
}

TEST_F(StartedFrame, HasEmptyTextsWhereTheLibraryHasNone) {
  desk::ResourceLibrary library = desk::PlainResourceLibrary();
  library.strings.erase(1100);
  SetResources(library);
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_EQ(frame->m_csMsgCaption, u"");
  EXPECT_EQ(frame->m_csMsgBusy, u"A printer driver is being installed. Try again later.");
  frame->DestroyWindow();
  library.strings.clear();
  SetResources(library);
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_EQ(frame->m_csMsgBusy, u"");
}

TEST_F(StartedFrame, HasATextOf4096CharactersWhole) {
  desk::ResourceLibrary library = desk::PlainResourceLibrary();
  library.strings[35277] = std::u16string(4096, u'w');
  SetResources(library);
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_EQ(frame->m_csMsgBusy, std::u16string(4096, u'w'));
}

TEST_F(StartedFrame, HasNoLibraryInHandAnyMore) {
  AddToProfile(machine, "BmpDll=K_S72BM.DLL");
  machine.files().WriteFile(kBitmapPath, desk::BytesOf(desk::PlainResourceLibrary()));
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_EQ(frame->hResDll, HMODULE{});
  EXPECT_EQ(frame->hBmpDll, HMODULE{});
  EXPECT_EQ(frame->m_fBmpDllOwn, 0);
  for (const std::u16string& held : inside.process().Ledger())
    EXPECT_FALSE(held.starts_with(u"library ")) << testing::PrintToString(held);
}

TEST_F(StartedFrame, ThatWasRefusedItsIconHasNoLibraryInHandEither) {
  machine.tray().Refuse(true);
  ASSERT_EQ(frame->StartUp(), 0);
  for (const std::u16string& held : inside.process().Ledger())
    EXPECT_FALSE(held.starts_with(u"library ")) << testing::PrintToString(held);
}

// --- LoadResDll

TEST_F(StartedFrame, WithoutABitmapLibraryTakesThePicturesFromTheTexts) {
  ASSERT_EQ(frame->LoadResDll(desk::kResourceLibraryPath), 1);
  EXPECT_NE(frame->hResDll, HMODULE{});
  EXPECT_EQ(frame->hBmpDll, frame->hResDll);
  EXPECT_EQ(frame->m_fBmpDllOwn, 0);
  EXPECT_TRUE(frame->m_szBmpDll.empty());
  EXPECT_TRUE(g_hResDll == frame->hResDll);
  EXPECT_TRUE(HasLogged("CMainFrame::LoadResDll"));
}

TEST_F(StartedFrame, WithABitmapLibraryHasItBesides) {
  AddToProfile(machine, "BmpDll=K_S72BM.DLL");
  machine.files().WriteFile(kBitmapPath, desk::BytesOf(desk::PlainResourceLibrary()));
  ASSERT_EQ(frame->LoadResDll(desk::kResourceLibraryPath), 1);
  EXPECT_NE(frame->hBmpDll, HMODULE{});
  EXPECT_NE(frame->hBmpDll, frame->hResDll);
  EXPECT_EQ(frame->m_fBmpDllOwn, 1);
  EXPECT_EQ(frame->m_szBmpDll.view(), kBitmapPath);
}

TEST_F(StartedFrame, WithABitmapLibraryThatCantBeLoadedTakesThePicturesFromTheTexts) {
  AddToProfile(machine, "BmpDll=K_S72BM.DLL");
  for (const bool isThere : {false, true}) {
    if (isThere) machine.files().WriteFile(kBitmapPath, "no library");
    ASSERT_EQ(frame->LoadResDll(desk::kResourceLibraryPath), 1);
    EXPECT_EQ(frame->hBmpDll, frame->hResDll);
    EXPECT_EQ(frame->m_fBmpDllOwn, 0);
    Os().modules.FreeLibrary(frame->hResDll);
  }
}

TEST_F(StartedFrame, ThatFindsNoResourceLibraryHasNoneToStringsEither) {
  machine.desktop().AnswerBoxesAtOnce();
  EXPECT_EQ(frame->LoadResDll(u"C:\\none.dll"), 0);
  EXPECT_EQ(frame->hResDll, HMODULE{});
  EXPECT_TRUE(g_hResDll == HMODULE{});
}

// --- NetPilot

constexpr char kNetPilot[] = "[Download]\r\nUPPILOTEXE=NETPILOT.EXE\r\n";

TEST_F(StartedFrame, KnowsNetPilotFromTheVif) {
  AddToVif(machine, kNetPilot);
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_EQ(frame->m_csVifName, std::u16string(desk::kDriverFolder) + u"\\KS7200.VIF");
  EXPECT_EQ(frame->m_csNetPilotString, u"NETPILOT.EXE");
  EXPECT_TRUE(HasLogged("StartUP csNetPilotString : NETPILOT.EXE"));
  EXPECT_FALSE(HasLogged("PRINTER_ATTRIBUTE_NETWORK"));
}

TEST_F(StartedFrame, OfANetworkPrinterHasNoNetPilot) {
  OfferKicks(machine);
  machine.spooler().At(desk::kPrinterName).attributes =
      PRINTER_ATTRIBUTE_NETWORK | 0x40 /* PRINTER_ATTRIBUTE_LOCAL, as a shared one has it */;
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_TRUE(HasLogged("StartUP csNetPilotString : NETPILOT.EXE"));
  EXPECT_TRUE(HasLogged("PRINTER_ATTRIBUTE_NETWORK"));
  EXPECT_EQ(frame->m_csNetPilotString, u"");
  EXPECT_EQ(frame->m_uhNetPilot, 0U);
  EXPECT_EQ(PeriodOf(TMID_NETPILOT), 0U);
  EXPECT_EQ(PeriodOf(TMID_INVITATION), 60000U);
}

TEST_F(StartedFrame, OfAPrinterThatIsNoneChecksForNetPilotAfterAMinute) {
  OfferKicks(machine);
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_EQ(frame->m_uhNetPilot, TMID_NETPILOT);
  EXPECT_EQ(PeriodOf(TMID_NETPILOT), 60000U);
}

TEST_F(StartedFrame, OfAPrinterWithOtherAttributesHasNetPilot) {
  AddToVif(machine, kNetPilot);
  machine.spooler().At(desk::kPrinterName).attributes = ~PRINTER_ATTRIBUTE_NETWORK;
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_EQ(frame->m_csNetPilotString, u"NETPILOT.EXE");
}

// Only a printer that says so is a network printer.
TEST_F(StartedFrame, OfAPrinterThatDoesntTellItsAttributesHasNetPilot) {
  AddToVif(machine, kNetPilot);
  for (const char* operation : {"OpenPrinterW", "GetPrinterW"}) {
    machine.spooler().At(desk::kPrinterName).attributes = PRINTER_ATTRIBUTE_NETWORK;
    bool isArmed = true;
    WhenLogged("StartUP csNetPilotString", [&] {
      if (isArmed) inside.process().FailNext(operation, ERROR_ACCESS_DENIED);
      isArmed = false;
    });
    ASSERT_EQ(frame->StartUp(), 1);
    EXPECT_EQ(frame->m_csNetPilotString, u"NETPILOT.EXE") << operation;
    EXPECT_FALSE(HasLogged("PRINTER_ATTRIBUTE_NETWORK"));
    frame->DestroyWindow();
  }
}

TEST_F(StartedFrame, WhoseVifIsGoneMeanwhileAsksForNoNetPilot) {
  AddToVif(machine, kNetPilot);
  WhenLogged("CMainFrame::LoadResDll",
             [&] { machine.spooler().AddDriver({.name = desk::kDriverName}); });
  ASSERT_EQ(frame->StartUp(), 1);
  EXPECT_TRUE(HasLogged("StartUP csVifName : "));
  EXPECT_FALSE(HasLogged("StartUP csNetPilotString : "));
  EXPECT_EQ(frame->m_csNetPilotString, u"");
}

TEST_F(StartedFrame, HasNothingInHandAfterItsEnd) {
  AddToVif(machine, kNetPilot);
  ASSERT_EQ(frame->StartUp(), 1);
  Send(WM_CLOSE);
  frame.reset();
  g_pMainFrame = nullptr;
  EXPECT_EQ(inside.process().Ledger(), Texts{});
}

}  // namespace
}  // namespace vgl
