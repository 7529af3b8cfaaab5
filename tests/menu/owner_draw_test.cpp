#include "menu/owner_draw.h"

#include <gmock/gmock.h>

#include "Common/tray_log.h"
#include "tests/menu/owner_draw_fixture.h"
#include "tests/support/log_texts.h"
#include "tests/support/operations_of.h"

namespace vgl {
namespace {

using namespace platform;

// --- Measuring

class OwnerDrawMeasure : public OwnerDraw {};

TEST_F(OwnerDrawMeasure, IsAsWideAsACheckMarkAndTheTextAndAsHighAsAMenuLine) {
  const MeasureItem measured = Measured();
  EXPECT_EQ(measured.width, 69U);  // 15 + 9 characters
  EXPECT_EQ(measured.height, 19U);
}

TEST_F(OwnerDrawMeasure, FollowsTheSizesThatTheUserHasChosen) {
  machine.drawing().metrics = {{SM_CYMENU, 31}, {SM_CXMENUCHECK, 22}};
  SetTextHeight(40);
  EXPECT_EQ(Measured().width, 76U);  // 22 + 54
  EXPECT_EQ(Measured().height, 31U);
}

TEST_F(OwnerDrawMeasure, FillsInNothingButTheSize) {
  const MeasureItem measured = Measured();
  EXPECT_EQ(measured.controlType, ODT_MENU);
  EXPECT_EQ(measured.controlId, 3U);
  EXPECT_EQ(measured.itemId, kEntry);
  EXPECT_EQ(measured.itemData, 77U);
}

TEST_F(OwnerDrawMeasure, ThePictureIsntCounted) {
  slot.hBitmap = AddPicture(4096, 4096);
  EXPECT_EQ(Measured().width, 69U);
  EXPECT_EQ(Measured().height, 19U);
}

TEST_F(OwnerDrawMeasure, TakesLabelsOfAnyLength) {
  Label(u"");
  EXPECT_EQ(Measured().width, 15U);
  Label(std::u16string(259, u'x'));
  EXPECT_EQ(Measured().width, 1569U);  // 15 + 259 * 6
}

TEST_F(OwnerDrawMeasure, IsByTheFontOfMenusOnAContextOfTheScreen) {
  machine.drawing().menuFont = {.height = -20, .weight = 700, .faceName = u"Menu Font"};
  int measurings = 0;
  machine.drawing().measure = [&](std::u16string_view, const LogFont& font) {
    ++measurings;
    EXPECT_EQ(std::u16string_view(font.faceName), u"Menu Font");
    EXPECT_EQ(font.height, -20);
    inside.process().ForEachHandle<sim::DeviceContext>(
        [&](std::uint64_t handle, const sim::DeviceContext& each) {
          if (HDC{handle} == context) return;
          EXPECT_EQ(each.kind, sim::DeviceContext::Kind::Information);
          EXPECT_NE(each.fontHandle, HGDIOBJ{});  // one that was made, and selected
        });
    return Size{1, 1};
  };
  EXPECT_EQ(Measured().width, 16U);
  EXPECT_EQ(measurings, 1);
}

TEST_F(OwnerDrawMeasure, TakesTheStepsInThisOrder) {
  const Lines steps = OperationsOf(inside.process(), [this] { Measured(); });
  EXPECT_EQ(steps,
            (Lines{"CreateICW", "SystemParametersInfoW", "CreateFontIndirectW", "SelectObject",
                   "GetTextExtentPoint32W", "-", "-", "SelectObject", "-", "-"}));
}

TEST_F(OwnerDrawMeasure, WhatFailsLeavesTheEntryNarrowerOrInAnotherFont) {
  const struct {
    const char* operation;
    std::uint32_t width;
  } cases[] = {
      {"CreateICW", 15},           {"GetTextExtentPoint32W", 15}, {"SystemParametersInfoW", 69},
      {"CreateFontIndirectW", 87}, {"SelectObject", 87},  // the system's, of 8 pixels a character
  };
  const std::vector<std::u16string> held = Ledger();
  for (const auto& each : cases) {
    FailNext(each.operation);
    const MeasureItem measured = Measured();
    EXPECT_EQ(measured.width, each.width) << each.operation;
    EXPECT_EQ(measured.height, 19U) << each.operation;
    EXPECT_EQ(Ledger(), held) << each.operation;
  }
}

// --- Places, from left to right

TEST_F(OwnerDraw, WithoutAPictureTheTextBeginsThirtyPixelsFromTheEdge) {
  EXPECT_EQ(LinesOf(), (Lines{kFill, "130,52 \"Order ink\" in 000000 on F0F0F0"}));
}

TEST_F(OwnerDraw, BesideAPictureOfSixteenItBeginsThereToo) {
  EXPECT_EQ(LinesWithPicture(16, 16), (Lines{kFill, "104,51-120,67 picture of 16x16",
                                             "130,52 \"Order ink\" in 000000 on F0F0F0"}));
}

TEST_F(OwnerDraw, BesideAPictureOfTwentyFourItBeginsAtThirtyEight) {
  EXPECT_EQ(LinesWithPicture(24, 16), (Lines{kFill, "104,51-128,67 picture of 24x16",
                                             "138,52 \"Order ink\" in 000000 on F0F0F0"}));
}

TEST_F(OwnerDraw, ALineMayStandAnywhere) {
  item.area = {-300, -69, -100, -50};
  EXPECT_EQ(LinesWithPicture(16, 16),
            (Lines{"-300,-69--100,-50 filled with F0F0F0", "-296,-68--280,-52 picture of 16x16",
                   "-270,-67 \"Order ink\" in 000000 on F0F0F0"}));
}

// --- Places, from right to left

TEST_F(OwnerDraw, MirroredTheTextEndsThirtyPixelsFromTheOtherEdge) {
  EXPECT_EQ(LinesOf(kRightToLeft),
            (Lines{kFill, "270,52 \"Order ink\" in 000000 on F0F0F0, aligned 258"}));
}

TEST_F(OwnerDraw, MirroredThePictureStandsAtTheOtherEdge) {
  EXPECT_EQ(LinesWithPicture(16, 16, kRightToLeft),
            (Lines{kFill, "280,51-296,67 picture of 16x16",
                   "270,52 \"Order ink\" in 000000 on F0F0F0, aligned 258"}));
  EXPECT_EQ(LinesWithPicture(24, 16, kRightToLeft),
            (Lines{kFill, "272,51-296,67 picture of 24x16",
                   "262,52 \"Order ink\" in 000000 on F0F0F0, aligned 258"}));
}

TEST_F(OwnerDraw, ALabelOfArabicLettersInALineFromLeftToRightIsntMirrored) {
  Label(u"\u0637\u0644\u0628");
  EXPECT_EQ(LinesOf(), (Lines{kFill, "130,52 \"\u0637\u0644\u0628\" in 000000 on F0F0F0"}));
}

// --- The middle of a line

// Halves are cut toward zero, so what is higher than its line stands out more below than above.
TEST_F(OwnerDraw, PictureStandsInTheMiddleOfItsLine) {
  const struct {
    std::uint32_t height;
    std::string area;
  } cases[] = {
      {1, "104,59-120,60"},  {17, "104,51-120,68"}, {18, "104,50-120,68"},
      {19, "104,50-120,69"}, {20, "104,50-120,70"}, {21, "104,49-120,70"},
      {22, "104,49-120,71"}, {24, "104,48-120,72"}, {4096, "104,-1988-120,2108"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(LinesWithPicture(16, each.height).at(1),
              each.area + " picture of 16x" + std::to_string(each.height));
  }
}

TEST_F(OwnerDraw, TextStandsInTheMiddleOfItsLine) {
  const struct {
    std::int32_t height;
    std::int32_t upper;
  } cases[] = {{19, 50}, {18, 50}, {17, 51}, {0, 59}, {20, 50}, {21, 49}, {22, 49}, {30, 45}};
  for (const auto& each : cases) {
    SetTextHeight(each.height);
    const std::string expected = "," + std::to_string(each.upper) + " \"Order ink\"";
    EXPECT_THAT(LinesOf().at(1), testing::StartsWith("130" + expected));
    EXPECT_THAT(LinesOf(kRightToLeft).at(1), testing::StartsWith("270" + expected));
  }
}

// --- Pictures and labels of any size

TEST_F(OwnerDraw, PictureOfOnePixel) {
  EXPECT_EQ(LinesWithPicture(1, 1), (Lines{kFill, "104,59-105,60 picture of 1x1",
                                           "115,52 \"Order ink\" in 000000 on F0F0F0"}));
}

TEST_F(OwnerDraw, PictureThatIsLargerThanTheMenu) {
  EXPECT_EQ(LinesWithPicture(4096, 4096), (Lines{kFill, "104,-1988-4200,2108 picture of 4096x4096",
                                                 "4210,52 \"Order ink\" in 000000 on F0F0F0"}));
  EXPECT_EQ(LinesWithPicture(4096, 4096, kRightToLeft),
            (Lines{kFill, "-3800,-1988-296,2108 picture of 4096x4096",
                   "-3810,52 \"Order ink\" in 000000 on F0F0F0, aligned 258"}));
}

TEST_F(OwnerDraw, LabelOf259Characters) {
  Label(std::u16string(259, u'x'));
  EXPECT_EQ(LinesOf().at(1), "130,52 \"" + std::string(259, 'x') + "\" in 000000 on F0F0F0");
}

TEST_F(OwnerDraw, EmptyLabel) {
  Label(u"");
  EXPECT_EQ(LinesOf().at(1), "130,52 \"\" in 000000 on F0F0F0");
}

TEST_F(OwnerDraw, AnAmpersandIsDrawnAsItIs) {
  Label(u"Ink && &Paper");
  EXPECT_EQ(LinesOf().at(1), "130,52 \"Ink && &Paper\" in 000000 on F0F0F0");
}

// --- Colours

TEST_F(OwnerDraw, SelectedItHasTheColoursOfASelection) {
  item.state = ODS_SELECTED;
  EXPECT_EQ(LinesOf(), (Lines{"100,50-300,69 filled with D77800",
                              "130,52 \"Order ink\" in FFFFFF on D77800"}));
  EXPECT_EQ(LinesWithPicture(16, 16, kRightToLeft),
            (Lines{"100,50-300,69 filled with D77800", "280,51-296,67 picture of 16x16",
                   "270,52 \"Order ink\" in FFFFFF on D77800, aligned 258"}));
}

// Grey, checked, disabled and the like look as any other.
TEST_F(OwnerDraw, OfItsStateNothingElseIsSeen) {
  const Lines plain = LinesOf();
  item.state = 0xFFFFFFFE;
  EXPECT_EQ(LinesOf(), plain);
  item.state = 0xFFFFFFFF;
  EXPECT_EQ(LinesOf().at(0), "100,50-300,69 filled with D77800");
}

TEST_F(OwnerDraw, ColoursAreThoseThatTheUserHasChosen) {
  machine.drawing().colours = {{COLOR_MENU, 0x111111},
                               {COLOR_MENUTEXT, 0x222222},
                               {COLOR_HIGHLIGHT, 0x333333},
                               {COLOR_HIGHLIGHTTEXT, 0x444444}};
  EXPECT_EQ(LinesOf(), (Lines{"100,50-300,69 filled with 111111",
                              "130,52 \"Order ink\" in 222222 on 111111"}));
  item.state = ODS_SELECTED;
  EXPECT_EQ(LinesOf(), (Lines{"100,50-300,69 filled with 333333",
                              "130,52 \"Order ink\" in 444444 on 333333"}));
}

// --- What is given back

class OwnerDrawContext : public OwnerDraw {
 protected:
  // As the menu left it.
  OwnerDrawContext() {
    surface->textColour = 0x123456;
    surface->background = 0x654321;
    surface->alignment = 24;
    surface->font = {.height = 33, .faceName = u"Menu's own"};
    slot.hBitmap = AddPicture(16, 16);
  }
  void ExpectAsItWas() {
    EXPECT_EQ(surface->textColour, 0x123456U);
    EXPECT_EQ(surface->background, 0x654321U);
    EXPECT_EQ(surface->alignment, 24U);
    EXPECT_EQ(surface->fontHandle, HGDIOBJ{});
    EXPECT_EQ(surface->brushHandle, HGDIOBJ{});
  }
};

TEST_F(OwnerDrawContext, IsAsItWasAfterwards) {
  const std::vector<std::u16string> held = Ledger();
  for (const bool rightToLeft : {false, true}) {
    Draw(rightToLeft);
    ExpectAsItWas();
    EXPECT_EQ(Ledger(), held);
  }
}

TEST_F(OwnerDrawContext, ItsOwnFontDrawsTheText) {
  machine.drawing().measure = [](std::u16string_view, const LogFont& font) {
    return Size{54, font.height};
  };
  Draw();
  const auto& text = std::get<sim::DrawnText>(surface->drawn.at(2));
  EXPECT_EQ(text.at, (Point{130, 43}));  // 50 + (19 - 33) / 2
  EXPECT_EQ(std::u16string_view(text.font.faceName), u"Menu's own");
}

// From left to right the text stands as the menu has it aligned.
TEST_F(OwnerDrawContext, ItsOwnAlignmentHoldsFromLeftToRight) {
  // The menu's own font is 41 pixels high: 50 + (19 - 41) / 2.
  EXPECT_EQ(LinesOf().at(2), "130,39 \"Order ink\" in 000000 on F0F0F0, aligned 24");
  EXPECT_EQ(LinesOf(kRightToLeft).at(2), "270,39 \"Order ink\" in 000000 on F0F0F0, aligned 258");
}

TEST_F(OwnerDrawContext, IsAsItWasWhateverOfItCantBeTakenOrSet) {
  for (const char* operation :
       {"SetTextColor", "SetBkColor", "GetTextAlign", "SetTextAlign", "GetTextExtentPoint32W",
        "TextOutW", "SelectObject", "GetObjectW", "CreateCompatibleDC", "CreateSolidBrush"}) {
    FailNext(operation);
    Draw(kRightToLeft);
    SCOPED_TRACE(operation);
    ExpectAsItWas();
  }
}

TEST_F(OwnerDrawContext, ThePictureIsFreeAgainAfterwards) {
  Draw();
  EXPECT_TRUE(Os().drawing.DeleteObject(AsObject(slot.hBitmap)));
}

// --- What fails

class OwnerDrawFailure : public OwnerDraw {
 protected:
  OwnerDrawFailure() { slot.hBitmap = AddPicture(24, 16); }

  static constexpr char kPicture[] = "104,51-128,67 picture of 24x16";
  static constexpr char kText[] = "138,52 \"Order ink\" in 000000 on F0F0F0";
};

TEST_F(OwnerDrawFailure, LeavesOutNothingButWhatNeedsIt) {
  const struct {
    const char* operation;
    Lines drawn;
  } cases[] = {
      {"CreateSolidBrush", {kPicture, kText}},
      {"FillRect", {kPicture, kText}},
      {"CreateCompatibleDC", {kFill, kText}},
      {"SelectObject", {kFill, kText}},
      {"BitBlt", {kFill, kText}},
      {"SetTextColor", {kFill, kPicture, "138,52 \"Order ink\" in 000000 on F0F0F0"}},
      {"SetBkColor", {kFill, kPicture, "138,52 \"Order ink\" in 000000 on FFFFFF"}},
      {"GetTextExtentPoint32W", {kFill, kPicture, "138,59 \"Order ink\" in 000000 on F0F0F0"}},
      {"TextOutW", {kFill, kPicture}},
  };
  for (const auto& each : cases) {
    FailNext(each.operation);
    EXPECT_EQ(LinesOf(), each.drawn) << each.operation;
  }
}

// It has no size then, but its room beside the text.
TEST_F(OwnerDrawFailure, APictureThatTellsNoSizeIsBlank) {
  FailNext("GetObjectW");
  EXPECT_EQ(LinesOf(), (Lines{kFill, "104,59-104,59 picture of 24x16",
                              "114,52 \"Order ink\" in 000000 on F0F0F0"}));
  FailNext("GetObjectW");
  EXPECT_EQ(LinesOf(kRightToLeft),
            (Lines{kFill, "296,59-296,59 picture of 24x16",
                   "286,52 \"Order ink\" in 000000 on F0F0F0, aligned 258"}));
}

// A handle that stands for nothing, whatever made it so.
TEST_F(OwnerDrawFailure, APictureThatIsGoneIsBlank) {
  Os().drawing.DeleteObject(AsObject(slot.hBitmap));
  EXPECT_EQ(LinesOf(), (Lines{kFill, "114,52 \"Order ink\" in 000000 on F0F0F0"}));
}

TEST_F(OwnerDrawFailure, WithoutAContextNothingIsDrawnAndNothingHeld) {
  const std::vector<std::u16string> held = Ledger();
  for (const HDC none : {HDC{}, HDC{0xDEAD}}) {
    item.deviceContext = none;
    Draw();
    Draw(kRightToLeft);
    EXPECT_EQ(Ledger(), held);
  }
  EXPECT_EQ(TakeDrawn(), Lines{});
}

class OwnerDrawLog : public OwnerDraw {
 protected:
  OwnerDrawLog() {
    EXPECT_TRUE(g_szTrayLogPath.get().Assign(kLog));
    g_bTrayLogEnabled = 1;
  }
  Lines Logged() { return TextsOfLog(machine.files().ReadFile(kLog).value_or("")); }

  static constexpr char16_t kLog[] = u"C:\\tray.log";
};

TEST_F(OwnerDrawLog, AnAlignmentThatCantBeSetIsLoggedAndTheTextDrawnAllTheSame) {
  FailNext("SetTextAlign");
  EXPECT_EQ(LinesOf(kRightToLeft), (Lines{kFill, "270,52 \"Order ink\" in 000000 on F0F0F0"}));
  EXPECT_EQ(Logged(), Lines{"GDI Error"});
}

TEST_F(OwnerDrawLog, NothingElseIsLogged) {
  Draw();
  Draw(kRightToLeft);
  for (const char* operation : {"GetTextAlign", "SetTextColor", "SetBkColor", "TextOutW"}) {
    FailNext(operation);
    Draw(kRightToLeft);
  }
  FailNext("SetTextAlign", 1);  // the one that puts it back
  Draw(kRightToLeft);
  EXPECT_EQ(Logged(), Lines{});
}

}  // namespace
}  // namespace vgl
