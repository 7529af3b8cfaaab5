// The look of the menu's extension entries: in whole agents, as the person before the menu sees it,
// and by messages of the system's that say something else.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "Common/text_conversion.h"
#include "platform/sim/drawing_calls.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/frame_fixture.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Lines = std::vector<std::string>;

constexpr char16_t kHebrew[] = u"\u05D4\u05D2\u05D3\u05E8\u05D5\u05EA";

// The menu: the head's two entries of 19 pixels each, a separator of 9, and below them at 50 the
// entry 920, which has a picture, and at 69 the entry 925, which has none. It is 196 wide, by the
// text of its second entry, within a border of 3.
class MenuDrawing : public testing::Test {
 protected:
  MenuDrawing() {
    library.strings[920] = u"Driver update";
    library.strings[925] = u"Order ink";
    library.bitmaps[920] = 0x2060C0;
    desk.SetResourceLibrary(library);
    desk.SetMenuValue("920", "C:\\tool.exe");
    desk.SetMenuValue("925", "C:\\ink.exe");
  }

  static constexpr std::size_t kFirstEntry = 3;
  static constexpr std::size_t kSecondEntry = 4;

  sim::OpenMenu& Menu() { return *desk.machine.desktop().menus().List().at(0); }
  const sim::ShownItem& Shown(std::size_t place) { return Menu().shown.at(place); }
  Lines Drawn(std::size_t place) { return TextsOf(Shown(place).drawn); }
  void PointAt(std::uint32_t id) {
    desk.machine.desktop().menus().PointAt(Menu(), id);
    desk.machine.Settle();
  }

  SimDesk desk;
  desk::ResourceLibrary library = desk::PlainResourceLibrary();
};

const Lines kFirstPlain{"3,50-199,69 filled with F0F0F0", "7,51-23,67 picture of 16x16",
                        "33,52 \"Driver update\" in 000000 on F0F0F0"};
const Lines kFirstSelected{"3,50-199,69 filled with D77800", "7,51-23,67 picture of 16x16",
                           "33,52 \"Driver update\" in FFFFFF on D77800"};
const Lines kSecondPlain{"3,69-199,88 filled with F0F0F0",
                         "33,71 \"Order ink\" in 000000 on F0F0F0"};
const Lines kSecondSelected{"3,69-199,88 filled with D77800",
                            "33,71 \"Order ink\" in FFFFFF on D77800"};

TEST_F(MenuDrawing, EntriesAreDrawnWhenTheMenuOpens) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  ASSERT_EQ(Menu().shown.size(), 5U);
  EXPECT_EQ(Drawn(kFirstEntry), kFirstPlain);
  EXPECT_EQ(Drawn(kSecondEntry), kSecondPlain);
}

TEST_F(MenuDrawing, HeadAndSeparatorAreTheSystemsToDraw) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  PointAt(900);
  PointAt(901);
  for (std::size_t place = 0; place < kFirstEntry; ++place)
    EXPECT_EQ(Drawn(place), Lines{}) << place;
}

TEST_F(MenuDrawing, EntryIsAsWideAsACheckMarkAndItsLabel) {
  library.strings[925] = std::u16string(259, u'x');
  desk.SetResourceLibrary(library);
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  // 15 + 259 * 6, and 12 that the system adds.
  EXPECT_EQ(Shown(kSecondEntry).area, (Rect{3, 69, 1584, 88}));
}

TEST_F(MenuDrawing, EntryUnderThePointerIsSelectedAndTheOneBeforeIsntAnyMore) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  PointAt(925);
  EXPECT_EQ(Drawn(kFirstEntry), kFirstPlain);
  EXPECT_EQ(Drawn(kSecondEntry), kSecondSelected);
  PointAt(920);
  EXPECT_EQ(Drawn(kFirstEntry), kFirstSelected);
  EXPECT_EQ(Drawn(kSecondEntry), kSecondPlain);
  PointAt(901);
  EXPECT_EQ(Drawn(kFirstEntry), kFirstPlain);
  EXPECT_EQ(Drawn(kSecondEntry), kSecondPlain);
}

TEST_F(MenuDrawing, OfARightToLeftLanguageIsMirrored) {
  library.menus[801] = {{u"Tray", 0, {{u"Printer", 900, {}}, {kHebrew, 901, {}}}}};
  desk.SetResourceLibrary(library);
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  // The widest is the title: twelve characters with the mark behind it, and 46 around them.
  EXPECT_EQ(Drawn(kFirstEntry),
            (Lines{"3,50-121,69 filled with F0F0F0", "101,51-117,67 picture of 16x16",
                   "91,52 \"Driver update\" in 000000 on F0F0F0, aligned 258"}));
  EXPECT_EQ(Drawn(kSecondEntry), (Lines{"3,69-121,88 filled with F0F0F0",
                                        "91,71 \"Order ink\" in 000000 on F0F0F0, aligned 258"}));

  // At the next opening the language may be another one.
  agent.DismissMenu();
  library.menus = desk::PlainResourceLibrary().menus;
  desk.SetResourceLibrary(library);
  agent.RightClick();
  EXPECT_EQ(Drawn(kFirstEntry), kFirstPlain);
}

TEST_F(MenuDrawing, ALabelInHebrewAloneMirrorsNothing) {
  library.strings[925] = kHebrew;
  desk.SetResourceLibrary(library);
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  EXPECT_EQ(Drawn(kSecondEntry),
            (Lines{"3,69-199,88 filled with F0F0F0",
                   "33,71 \"" + Utf8FromText(kHebrew) + "\" in 000000 on F0F0F0"}));
}

TEST_F(MenuDrawing, EntryThatNamesTheUpdateProgramInSmallLettersHasTheShield) {
  desk.SetDriverValue("DriverUpdateName", "C:\\Suite\\Update.exe");
  desk.SetMenuValue("920", "%supdate.exe");
  desk.SetMenuValue("925", "%supdate.exe");  // has no picture
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  EXPECT_EQ(Drawn(kFirstEntry),
            (Lines{"3,50-199,69 filled with F0F0F0", "7,51-23,67 picture of 16x16",
                   "12,56-24,68 stock icon 77", "33,52 \"Driver update\" in 000000 on F0F0F0"}));
  EXPECT_EQ(Drawn(kSecondEntry), kSecondPlain);
}

TEST_F(MenuDrawing, EachDrawingOfTheShieldLeavesAnIconOfTheSystems) {
  desk.SetDriverValue("DriverUpdateName", "C:\\Suite\\Update.exe");
  desk.SetMenuValue("920", "%sUPDATE.EXE");
  const SimAgent agent = desk.StartedAgent();
  const auto icons = [&] { return std::ranges::count(agent.Ledger(), u"stock icon 77"); };
  agent.RightClick();
  EXPECT_EQ(icons(), 1);
  PointAt(920);
  EXPECT_EQ(icons(), 2);
  PointAt(925);
  EXPECT_EQ(icons(), 3);
  agent.DismissMenu();
  agent.RightClick();
  EXPECT_EQ(icons(), 4);
}

TEST_F(MenuDrawing, APointerOnItsWayLeavesNothingElseBehind) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  const std::vector<std::u16string> held = agent.Ledger();
  for (int round = 0; round < 50; ++round) {
    PointAt(920);
    PointAt(925);
  }
  EXPECT_EQ(agent.Ledger(), held);
}

TEST_F(MenuDrawing, AMenuThatCantBeMeasuredOrDrawnStillWorks) {
  const SimAgent agent = desk.StartedAgent();
  for (int call = 0; call < 2; ++call) {
    for (const char* operation : {"CreateICW", "CreateSolidBrush", "GetObjectW", "TextOutW"})
      agent.process().FailNext(operation, ERROR_NOT_ENOUGH_MEMORY);
  }
  agent.RightClick();
  ASSERT_TRUE(agent.MenuIsOpen());
  EXPECT_EQ(Drawn(kSecondEntry), Lines{});
  agent.Choose(901);
  EXPECT_EQ(desk.machine.programs().Starts().size(), 1U);
}

// --- Messages

// An agent whose menu was never built, and messages as the system doesn't send them.
class OwnerDrawMessages : public FrameTest {
 protected:
  OwnerDrawMessages() {
    surface = std::make_shared<sim::DeviceContext>(sim::DeviceContext::Kind::Surface, LogFont{});
    context = HDC{inside.process().AddHandle(surface)};
    EXPECT_TRUE(frame->m_pExMenu[0].szMenuName.Assign(u"First"));
    EXPECT_TRUE(frame->m_pExMenu[78].szMenuName.Assign(u"Last one"));
  }

  // Width and height afterwards, which were 1111 and 2222.
  Size MeasuredSize(std::uint32_t id) {
    MeasureItem item{.controlType = ODT_MENU,
                     .controlId = 0,
                     .itemId = id,
                     .width = 1111,
                     .height = 2222,
                     .itemData = 0};
    Send(WM_MEASUREITEM, 0, reinterpret_cast<std::intptr_t>(&item));
    return {static_cast<std::int32_t>(item.width), static_cast<std::int32_t>(item.height)};
  }
  Lines Drawn(std::uint32_t id) {
    const DrawItem item{.controlType = ODT_MENU,
                        .controlId = 0,
                        .itemId = id,
                        .action = ODA_DRAWENTIRE,
                        .state = 0,
                        .owner = HWND{},
                        .deviceContext = context,
                        .area = {0, 0, 100, 19},
                        .itemData = 0};
    Send(WM_DRAWITEM, 0, reinterpret_cast<std::intptr_t>(&item));
    return TextsOf(std::exchange(surface->drawn, {}));
  }

  std::shared_ptr<sim::DeviceContext> surface;
  HDC context{};
};

constexpr std::uint32_t kNoSlots[] = {
    0, 801, 900, 901, 919, 999, 920 + 0x10000, 0x80000000 + 920, 0xFFFFFFFF};

TEST_F(OwnerDrawMessages, OfTheFirstAndTheLastSlotAreCarriedOut) {
  EXPECT_EQ(MeasuredSize(920), (Size{45, 19}));  // 15 + 5 characters of 6
  EXPECT_EQ(MeasuredSize(998), (Size{63, 19}));
  EXPECT_EQ(Drawn(920),
            (Lines{"0,0-100,19 filled with F0F0F0", "30,2 \"First\" in 000000 on F0F0F0"}));
  EXPECT_EQ(Drawn(998),
            (Lines{"0,0-100,19 filled with F0F0F0", "30,2 \"Last one\" in 000000 on F0F0F0"}));
}

TEST_F(OwnerDrawMessages, OfASlotThatIsntInUseDrawAnEmptyLine) {
  EXPECT_EQ(MeasuredSize(921), (Size{15, 19}));
  EXPECT_EQ(Drawn(921), (Lines{"0,0-100,19 filled with F0F0F0", "30,2 \"\" in 000000 on F0F0F0"}));
}

TEST_F(OwnerDrawMessages, OfWhatIsNoSlotAreLeftAlone) {
  for (const std::uint32_t id : kNoSlots) {
    EXPECT_EQ(MeasuredSize(id), (Size{1111, 2222})) << id;
    EXPECT_EQ(Drawn(id), Lines{}) << id;
  }
}

TEST_F(OwnerDrawMessages, AreLeftAloneWhereThereAreNoSlots) {
  frame->m_nExMenuMax = 0;
  EXPECT_EQ(MeasuredSize(920), (Size{1111, 2222}));
  EXPECT_EQ(Drawn(920), Lines{});
}

TEST_F(OwnerDrawMessages, WithoutAStructureAreLeftAlone) {
  for (const std::uint32_t message : {WM_MEASUREITEM, WM_DRAWITEM}) {
    const std::uint64_t calls = inside.process().calls();
    TrayWindowProc(frame->m_hWnd, message, 0, 0);
    EXPECT_EQ(inside.process().calls() - calls, 1U) << message;  // the default's handling
  }
}

// The frame's field says 1 for right to left and nothing else does.
TEST_F(OwnerDrawMessages, AreMirroredWhileTheFrameReadsFromRightToLeft) {
  frame->m_bRtlReading = 1;
  EXPECT_EQ(Drawn(920).at(1), "70,2 \"First\" in 000000 on F0F0F0, aligned 258");
  frame->m_bRtlReading = 0;
  EXPECT_EQ(Drawn(920).at(1), "30,2 \"First\" in 000000 on F0F0F0");
}

}  // namespace
}  // namespace vgl
