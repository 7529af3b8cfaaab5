// The painter of menus, on menus made by hand.
#include "desk/paint/menu_painter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

namespace desk {
namespace {

using namespace platform;
using sim::OpenMenu;
using sim::ShownItem;

constexpr std::uint32_t kMenu = 0xFFF0F0F0;
constexpr std::uint32_t kHighlight = 0xFF0078D7;
constexpr std::uint32_t kBlack = 0xFF000000;
constexpr std::uint32_t kWhite = 0xFFFFFFFF;
constexpr std::uint32_t kRed = 0xFFFF0000;
constexpr std::uint32_t kBlue = 0xFF0000FF;
constexpr std::uint32_t kWindowsRed = 0x000000FF;

// A letter that fills its place.
const std::u16string kBlocks = u"\u2588\u2588";
const std::u16string kHebrew = u"\u05D4\u05E2\u05D3\u05E4\u05D5\u05EA";

class MenuPainter : public testing::Test {
 protected:
  Fonts fonts;
  sim::DrawingState drawing;
  OpenMenu menu{.size = {120, 40}};

  // Takes the menu from border to border, from `top` to `bottom`.
  ShownItem& Add(std::uint32_t type, std::u16string text = u"", std::int32_t top = 3,
                 std::int32_t bottom = 22) {
    menu.shown.push_back({.item = {.id = 920, .type = type, .text = std::move(text)},
                          .area = {3, top, 117, bottom}});
    return menu.shown.back();
  }
  ShownItem& AddDrawn(std::vector<sim::Drawn> drawn) {
    ShownItem& shown = Add(MFT_OWNERDRAW);
    shown.drawn = std::move(drawn);
    return shown;
  }
  Image Paint(int scale = 1) { return PaintMenu(menu, drawing, fonts, scale); }
  Image PaintText(const std::u16string& text, std::uint32_t type = MFT_STRING,
                  std::uint32_t state = 0) {
    menu.shown.clear();
    Add(type, text).item.state = state;
    return Paint();
  }
  Image PaintDrawnText(const std::u16string& text, std::uint32_t alignment, std::int32_t x) {
    menu.shown.clear();
    AddDrawn({sim::DrawnText{.at = {x, 5},
                             .text = text,
                             .background = 0x00F0F0F0,
                             .alignment = alignment,
                             .font = drawing.menuFont}});
    return Paint();
  }
};

// The part of the item in which something stands in front of `background`.
struct Ink {
  int left = 1000, top = 1000, right = 0, bottom = 0, pixels = 0;
};
Ink InkOf(const Image& image, std::uint32_t background = kMenu, Rect within = {3, 3, 117, 22}) {
  Ink ink;
  for (int y = within.top; y < within.bottom; ++y)
    for (int x = within.left; x < within.right; ++x) {
      if (image.At(x, y) == background) continue;
      ink.left = std::min(ink.left, x);
      ink.top = std::min(ink.top, y);
      ink.right = std::max(ink.right, x + 1);
      ink.bottom = std::max(ink.bottom, y + 1);
      ++ink.pixels;
    }
  return ink;
}

bool HasColour(const Image& image, std::uint32_t colour) {
  return std::find(image.pixels.begin(), image.pixels.end(), colour) != image.pixels.end();
}

// --- The popup

TEST_F(MenuPainter, ThePictureHasThePopupsSize) {
  const Image image = Paint();
  EXPECT_EQ(image.width, 120);
  EXPECT_EQ(image.height, 40);
}

TEST_F(MenuPainter, TheBorderIsALineAroundTheMenusColour) {
  const Image image = Paint();
  const std::uint32_t line = image.At(0, 0);
  EXPECT_NE(line, kMenu);
  EXPECT_EQ(image.At(119, 39), line);
  EXPECT_EQ(image.At(0, 20), line);
  EXPECT_EQ(image.At(119, 20), line);
  EXPECT_EQ(image.At(60, 0), line);
  EXPECT_EQ(image.At(60, 39), line);
  EXPECT_EQ(image.At(1, 1), kMenu);
  EXPECT_EQ(image.At(118, 38), kMenu);
}

TEST_F(MenuPainter, TheColoursAreTheUsers) {
  drawing.colours[COLOR_MENU] = 0x00112233;
  EXPECT_EQ(Paint().At(60, 20), 0xFF332211);
}

TEST_F(MenuPainter, ScalePaintsEachPixelAsSoManyBothWays) {
  AddDrawn({sim::DrawnFill{{10, 5, 11, 6}, kWindowsRed}});
  const Image image = Paint(3);
  EXPECT_EQ(image.width, 360);
  EXPECT_EQ(image.height, 120);
  EXPECT_EQ(InkOf(image, kMenu, {9, 9, 351, 66}).pixels, 9);
  EXPECT_EQ(image.At(30, 15), kRed);
  EXPECT_EQ(image.At(32, 17), kRed);
}

// --- What the system draws

TEST_F(MenuPainter, ASeparatorIsALineInTheMiddle) {
  Add(MFT_SEPARATOR, u"", 3, 12);
  const Image image = Paint();
  EXPECT_NE(image.At(3, 7), kMenu);
  EXPECT_NE(image.At(116, 7), kMenu);
  EXPECT_EQ(InkOf(image).pixels, 114);
}

TEST_F(MenuPainter, ATextStandsBehindTwoColumnsOfACheckMark) {
  const Ink ink = InkOf(PaintText(u"Help"));
  EXPECT_GE(ink.left, 33);
  EXPECT_LT(ink.left, 36);
  EXPECT_LE(ink.right, 33 + fonts.Measure(u"Help", drawing.menuFont).width);
  EXPECT_GT(ink.top, 3);
  EXPECT_LT(ink.bottom, 22);
}

TEST_F(MenuPainter, ATextThatReadsFromTheRightEndsInFrontOfThem) {
  const Ink ink = InkOf(PaintText(kHebrew, MFT_RIGHTORDER | MFT_RIGHTJUSTIFY));
  EXPECT_LE(ink.right, 87);
  EXPECT_GT(ink.right, 84);
  EXPECT_GE(ink.left, 87 - fonts.Measure(kHebrew, drawing.menuFont).width);
}

TEST_F(MenuPainter, TheMarkOfDirectionIsNotSeen) {
  constexpr std::uint32_t kFromTheRight = MFT_RIGHTORDER | MFT_RIGHTJUSTIFY;
  EXPECT_EQ(PaintText(kHebrew + u" 9900\u200E", kFromTheRight).pixels,
            PaintText(kHebrew + u" 9900", kFromTheRight).pixels);
  EXPECT_EQ(PaintText(u"Studio\u200E").pixels, PaintText(u"Studio").pixels);
}

TEST_F(MenuPainter, TheDefaultEntryIsBold) {
  const Ink bold = InkOf(PaintText(u"Studio", MFT_STRING, MFS_DEFAULT));
  const Ink plain = InkOf(PaintText(u"Studio"));
  EXPECT_GT(bold.right, plain.right);
  EXPECT_GT(bold.pixels, plain.pixels);
}

TEST_F(MenuPainter, ASelectedTextHasTheColoursOfTheSelection) {
  Add(MFT_STRING, kBlocks).isSelected = true;
  const Image image = Paint();
  EXPECT_EQ(image.At(3, 3), kHighlight);
  EXPECT_EQ(image.At(116, 21), kHighlight);
  EXPECT_EQ(image.At(3, 22), kMenu);
  EXPECT_TRUE(HasColour(image, kWhite));
  EXPECT_FALSE(HasColour(image, kBlack));
}

TEST_F(MenuPainter, AKeyMarkIsNotShown) {
  EXPECT_EQ(PaintText(u"S&ave").pixels, PaintText(u"Save").pixels);
  EXPECT_EQ(PaintText(u"Save&").pixels, PaintText(u"Save").pixels);
  EXPECT_NE(PaintText(u"S&&ave").pixels, PaintText(u"Save").pixels);
}

TEST_F(MenuPainter, AGreyedTextIsGrey) {
  EXPECT_TRUE(HasColour(PaintText(kBlocks), kBlack));
  EXPECT_FALSE(HasColour(PaintText(kBlocks, MFT_STRING, MFS_GRAYED), kBlack));
}

TEST_F(MenuPainter, ACheckMarkStandsInTheFirstColumn) {
  const Ink fromTheLeft = InkOf(PaintText(u"", MFT_STRING, MFS_CHECKED));
  EXPECT_GT(fromTheLeft.pixels, 0);
  EXPECT_LE(fromTheLeft.right, 18);
  EXPECT_GE(InkOf(PaintText(u"", MFT_RIGHTORDER, MFS_CHECKED)).left, 102);
}

TEST_F(MenuPainter, WhatOpensAMenuHasAnArrowAtItsEnd) {
  Add(MFT_STRING).item.popup = 1;
  EXPECT_GE(InkOf(Paint()).left, 102);
  menu.shown.front().item.type = MFT_RIGHTORDER;
  const Ink fromTheRight = InkOf(Paint());
  EXPECT_GT(fromTheRight.pixels, 0);
  EXPECT_LE(fromTheRight.right, 18);
}

// --- What the owner drew

TEST_F(MenuPainter, WhatTheOwnerDrewIsPaintedInOrder) {
  AddDrawn(
      {sim::DrawnFill{{3, 3, 117, 22}, 0x00D77800}, sim::DrawnFill{{10, 5, 20, 10}, 0x00FF0000}});
  const Image image = Paint();
  EXPECT_EQ(image.At(3, 3), kHighlight);
  EXPECT_EQ(image.At(10, 5), kBlue);
  EXPECT_EQ(image.At(19, 9), kBlue);
  EXPECT_EQ(image.At(20, 9), kHighlight);
  EXPECT_EQ(image.At(19, 10), kHighlight);
}

TEST_F(MenuPainter, NothingKeepsAnOwnerInsideItsItem) {
  AddDrawn({sim::DrawnFill{{10, 3, 20, 40}, kWindowsRed}});
  EXPECT_EQ(Paint().At(10, 39), kRed);
}

TEST_F(MenuPainter, WhatIsSelectedIsPaintedLast) {
  AddDrawn({sim::DrawnFill{{10, 3, 20, 30}, kWindowsRed}}).isSelected = true;
  AddDrawn({sim::DrawnFill{{10, 22, 20, 30}, 0x00FF0000}});
  EXPECT_EQ(Paint().At(15, 25), kRed);
}

TEST_F(MenuPainter, WhatLiesOutsideThePopupIsLeftOut) {
  constexpr std::int32_t kMost = 0x7FFFFFFF;
  constexpr std::int32_t kLeast = -kMost - 1;
  AddDrawn({sim::DrawnFill{{kLeast, 10, kMost, 11}, kWindowsRed},
            sim::DrawnFill{{kMost, kMost, kMost, kMost}, kWindowsRed},
            sim::DrawnFill{{50, 20, 40, 12}, kWindowsRed},
            sim::DrawnText{.at = {kMost, kMost}, .text = u"x"},
            sim::DrawnText{.at = {kLeast, kLeast}, .text = u"x"}});
  const Image image = Paint();
  EXPECT_EQ(image.At(0, 10), kRed);
  EXPECT_EQ(image.At(119, 10), kRed);
  EXPECT_EQ(InkOf(image).pixels, 114);
}

TEST_F(MenuPainter, ATextBeginsAtItsPlace) {
  const Ink ink = InkOf(PaintDrawnText(u"Head", TA_LEFT, 33));
  EXPECT_GE(ink.left, 33);
  EXPECT_LT(ink.left, 36);
  EXPECT_GE(ink.top, 5);
}

TEST_F(MenuPainter, ATextOnTheRightEndsAtItsPlace) {
  const Ink ink = InkOf(PaintDrawnText(kHebrew, TA_RIGHT | TA_RTLREADING, 87));
  EXPECT_LE(ink.right, 87);
  EXPECT_GT(ink.right, 84);
}

// A full stop is low, and stands where the words end.
TEST_F(MenuPainter, WordsStandFromTheRightWhereTheTextSaysSo) {
  const Ink plain = InkOf(PaintDrawnText(u"M.", TA_RIGHT, 87));
  const Image fromTheRight = PaintDrawnText(u"M.", TA_RIGHT | TA_RTLREADING, 87);
  const Ink turned = InkOf(fromTheRight);
  const Rect leftPart{turned.left, 3, turned.left + 2, 22};
  const Rect rightPart{turned.right - 2, 3, turned.right, 22};
  EXPECT_GT(InkOf(fromTheRight, kMenu, leftPart).top, plain.top + 4);
  EXPECT_EQ(InkOf(fromTheRight, kMenu, rightPart).top, plain.top);
}

TEST_F(MenuPainter, BehindATextIsItsBackground) {
  const Size size = fonts.Measure(u"Head", drawing.menuFont);
  AddDrawn({sim::DrawnText{.at = {33, 5},
                           .text = u"Head",
                           .colour = 0,
                           .background = kWindowsRed,
                           .font = drawing.menuFont}});
  const Ink ink = InkOf(Paint());
  EXPECT_EQ(ink.left, 33);
  EXPECT_EQ(ink.top, 5);
  EXPECT_EQ(ink.right, 33 + size.width);
  EXPECT_EQ(ink.bottom, 5 + size.height);
  EXPECT_TRUE(HasColour(Paint(), kRed));
}

// A bitmap without file header.
std::shared_ptr<const sim::Picture> PictureOf(char width, char height, char bits,
                                              const std::string& rows) {
  std::string header(40, '\0');
  header[0] = 40;
  header[4] = width;
  header[8] = height;
  header[12] = 1;
  header[14] = bits;
  return std::make_shared<const sim::Picture>(sim::Picture{.bytes = header + rows});
}

// Two by two: red, green, blue, white, from the upper left.
std::shared_ptr<const sim::Picture> SmallPicture() {
  constexpr char kRows[] =
      "\xFF\0\0\xFF\xFF\xFF\0\0"
      "\0\0\xFF\0\xFF\0\0";  // and its own end
  return PictureOf(2, 2, 24, {kRows, sizeof(kRows)});
}

TEST_F(MenuPainter, ABitmapIsPaintedPixelByPixel) {
  AddDrawn({sim::DrawnBitmap{{7, 5, 9, 7}, SmallPicture(), {0, 0}}});
  const Image image = Paint();
  EXPECT_EQ(image.At(7, 5), kRed);
  EXPECT_EQ(image.At(8, 5), 0xFF00FF00);
  EXPECT_EQ(image.At(7, 6), kBlue);
  EXPECT_EQ(image.At(8, 6), kWhite);
  EXPECT_EQ(InkOf(image).pixels, 4);
}

TEST_F(MenuPainter, OfABitmapOnlyThePartThatIsAskedForIsPainted) {
  AddDrawn({sim::DrawnBitmap{{7, 5, 8, 6}, SmallPicture(), {0, 1}},
            // Larger than what is there.
            sim::DrawnBitmap{{20, 5, 40, 15}, SmallPicture(), {1, 0}},
            sim::DrawnBitmap{{50, 5, 60, 15}, SmallPicture(), {2, 0}},
            sim::DrawnBitmap{{70, 5, 80, 15}, SmallPicture(), {-1, -1}}});
  const Image image = Paint();
  EXPECT_EQ(image.At(7, 5), kBlue);
  EXPECT_EQ(image.At(20, 5), 0xFF00FF00);
  EXPECT_EQ(image.At(20, 6), kWhite);
  EXPECT_EQ(image.At(71, 6), kRed);
  EXPECT_EQ(image.At(72, 7), kWhite);
  EXPECT_EQ(InkOf(image).pixels, 1 + 2 + 0 + 4);
}

TEST_F(MenuPainter, ABitmapThatReachesOverTheEdgeIsCut) {
  AddDrawn({sim::DrawnBitmap{{-1, -1, 1, 1}, SmallPicture(), {0, 0}},
            sim::DrawnBitmap{{119, 39, 121, 41}, SmallPicture(), {0, 0}}});
  const Image image = Paint();
  EXPECT_EQ(image.At(0, 0), kWhite);
  EXPECT_EQ(image.At(119, 39), kRed);
}

// --- Icons

// One pixel, blue and half to be seen through; its mask.
std::shared_ptr<const sim::Picture> SmallIcon() {
  constexpr char kRows[] = "\xFF\0\0\x80\0\0\0";
  return PictureOf(1, 2, 32, {kRows, sizeof(kRows)});
}

TEST_F(MenuPainter, AMalformedPictureIsNotPainted) {
  const auto cut = [](sim::Picture picture) {
    picture.bytes.pop_back();
    return std::make_shared<const sim::Picture>(picture);
  };
  AddDrawn({sim::DrawnBitmap{{7, 5, 9, 7}, cut(*SmallPicture()), {0, 0}},
            sim::DrawnIcon{{7, 5, 9, 7}, u"icon 1", cut(*SmallIcon())}});
  EXPECT_EQ(InkOf(Paint()).pixels, 0);
}

TEST_F(MenuPainter, AnIconIsBroughtToItsSizeAndLetsThroughWhatIsBehindIt) {
  AddDrawn({sim::DrawnFill{{3, 3, 117, 22}, kWindowsRed},
            sim::DrawnIcon{{20, 5, 28, 9}, u"icon 1", SmallIcon()}});
  const Image image = Paint();
  EXPECT_EQ(image.At(20, 5), 0xFF7F0080);
  EXPECT_EQ(image.At(27, 8), 0xFF7F0080);
  EXPECT_EQ(InkOf(image, kRed).pixels, 32);
}

TEST_F(MenuPainter, AnIconOfNoSizeHasItsOwnAndOneOfLessIsNotPainted) {
  AddDrawn({sim::DrawnIcon{{20, 5, 20, 5}, u"icon 1", SmallIcon()},
            sim::DrawnIcon{{40, 5, 37, 9}, u"icon 1", SmallIcon()}});
  EXPECT_EQ(InkOf(Paint()).pixels, 1);
}

sim::DrawnIcon Shield(const Rect& area) {
  return {area, u"stock icon 77", std::make_shared<const sim::Picture>()};
}

TEST_F(MenuPainter, TheShieldHasFourQuartersInTwoColours) {
  AddDrawn({Shield({20, 4, 36, 20})});
  const Image image = Paint();
  const std::uint32_t one = image.At(25, 9);
  const std::uint32_t other = image.At(31, 9);
  EXPECT_NE(one, kMenu);
  EXPECT_NE(other, kMenu);
  EXPECT_NE(one, other);
  EXPECT_EQ(image.At(25, 14), other);
  EXPECT_EQ(image.At(31, 14), one);
  const Ink ink = InkOf(image);
  EXPECT_GE(ink.left, 20);
  EXPECT_GE(ink.top, 4);
  EXPECT_LE(ink.right, 36);
  EXPECT_LE(ink.bottom, 20);
}

// A picture of 4 pixels asks for a shield of 0, one of 1 for one of -3.
TEST_F(MenuPainter, AShieldOfNoSizeHasItsOwnAndOneOfLessIsNotPainted) {
  AddDrawn({Shield({20, 4, 20, 4}), Shield({60, 4, 57, 1})});
  const Ink ink = InkOf(Paint());
  EXPECT_GE(ink.left, 20);
  EXPECT_LE(ink.right, 36);
  EXPECT_GT(ink.right, 30);
}

TEST_F(MenuPainter, AnotherIconOfTheSystemIsNotPainted) {
  AddDrawn(
      {sim::DrawnIcon{{20, 4, 36, 20}, u"stock icon 78", std::make_shared<const sim::Picture>()}});
  EXPECT_EQ(InkOf(Paint()).pixels, 0);
}

// --- The fonts

TEST_F(MenuPainter, ATextIsAsHighAsItsFontWhateverItsLetters) {
  const std::int32_t height = fonts.Measure(u"Head", drawing.menuFont).height;
  EXPECT_GE(height, 12);
  EXPECT_LE(height, 19);
  for (const char16_t* text :
       {u"", u"\u30CE\u30BA\u30EB", u"\u05D3\u05D9\u05D5", u"\u062D\u0628\u0631"})
    EXPECT_EQ(fonts.Measure(text, drawing.menuFont).height, height);
}

TEST_F(MenuPainter, ATextIsAsWideAsItsLetters) {
  EXPECT_EQ(fonts.Measure(u"", drawing.menuFont).width, 0);
  const std::int32_t one = fonts.Measure(u"m", drawing.menuFont).width;
  EXPECT_EQ(fonts.Measure(u"mmm", drawing.menuFont).width, 3 * one);
  EXPECT_LT(fonts.Measure(u"i", drawing.menuFont).width, one);
  LogFont large = drawing.menuFont;
  large.height = -24;
  EXPECT_GT(fonts.Measure(u"m", large).width, one + one / 2);
}

TEST_F(MenuPainter, ArabicLettersJoin) {
  const std::int32_t alone = fonts.Measure(u"\u0628", drawing.menuFont).width;
  EXPECT_LT(fonts.Measure(u"\u0628\u0628\u0628", drawing.menuFont).width, 3 * alone - 4);
}

TEST_F(MenuPainter, CharactersThatNobodyCanShowTakeRoomAndDoNoHarm) {
  for (const std::u16string text : {u"\n", u"\t", u"\xD800", u"\xDC00", u"\x7F"})
    EXPECT_GT(fonts.Measure(text, drawing.menuFont).width, 0);
  const std::u16string nul(1, u'\0');
  EXPECT_GT(fonts.Measure(nul, drawing.menuFont).width, 0);
  EXPECT_EQ(fonts.Measure(u"a\nb", drawing.menuFont).height,
            fonts.Measure(u"ab", drawing.menuFont).height);
}

}  // namespace
}  // namespace desk
