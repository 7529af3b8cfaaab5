// Device contexts, what is drawn with, and what the user has chosen for the whole system. What a
// screen shows in the end is nobody's to ask here: sizes are known by how they compare.
#include <string_view>

#include "tests/platform/library_fixture.h"

namespace platform {
namespace {

constexpr HDC kNoContext{};
constexpr std::uint32_t kBlack = 0x00000000;
constexpr std::uint32_t kWhite = 0x00FFFFFF;
constexpr std::uint32_t kBlue = 0x00FF0000;

class DrawingContract : public LibraryContract {
 protected:
  OwnedDC MakeMemory(HDC like = {}) {
    OwnedDC context(drawing.CreateCompatibleDC(like));
    EXPECT_TRUE(context);
    return context;
  }
  OwnedFont MakeFont(std::int32_t height) {
    OwnedFont font(
        drawing.CreateFontIndirectW({.height = height, .weight = 400, .faceName = u"Arial"}));
    EXPECT_TRUE(font);
    return font;
  }
  // Of KVRES.DLL; 920 is 16 by 16, 924 is 20 by 9.
  OwnedBitmap LoadPicture(std::uint16_t id) {
    const OwnedModule library = Load(ResourceLibrary());
    OwnedBitmap bitmap(os.resources.LoadBitmapW(library.get(), id));
    EXPECT_TRUE(bitmap);
    return bitmap;
  }
  HGDIOBJ Select(const OwnedDC& context, HGDIOBJ object) {
    return drawing.SelectObject(context.get(), object);
  }

  Size Extent(HDC context, std::u16string_view text) {
    Size size{-1, -1};
    EXPECT_TRUE(drawing.GetTextExtentPoint32W(context, text.data(),
                                              static_cast<std::int32_t>(text.size()), &size));
    return size;
  }

  Drawing& drawing = os.drawing;
};

using Contexts = DrawingContract;
using DrawnWith = DrawingContract;
using DrawnTexts = DrawingContract;
using DrawingOnto = DrawingContract;
using SystemLooks = DrawingContract;

// --- Contexts

TEST_F(Contexts, TheScreenCanBeAsked) {
  const OwnedDC screen(drawing.CreateICW(u"DISPLAY"));
  ASSERT_TRUE(screen);
  EXPECT_GT(Extent(screen.get(), u"Ink").width, 0);
}

TEST_F(Contexts, ADriverThatIsNotThereHasNone) {
  EXPECT_EQ(drawing.CreateICW(u"PlatformTestMissing"), kNoContext);
}

TEST_F(Contexts, OneInMemoryIsLikeTheScreenOrLikeAnother) {
  const OwnedDC screen(drawing.CreateICW(u"DISPLAY"));
  const OwnedDC first = MakeMemory();
  EXPECT_TRUE(MakeMemory(screen.get()));
  EXPECT_TRUE(MakeMemory(first.get()));
}

TEST_F(Contexts, OneIsDeletedOnce) {
  OwnedDC context = MakeMemory();
  const HDC deleted = context.Release();
  EXPECT_TRUE(drawing.DeleteDC(deleted));
  EXPECT_FALSE(drawing.DeleteDC(deleted));
  EXPECT_FALSE(drawing.DeleteDC(kNoContext));
}

TEST_F(Contexts, WhatIsNoneDoesNothing) {
  const OwnedBrush brush(drawing.CreateSolidBrush(kBlue));
  const OwnedFont font = MakeFont(-12);
  const OwnedDC context = MakeMemory();
  OwnedDC gone = MakeMemory();
  const HDC deleted = gone.get();
  gone.Reset();
  for (const HDC none : {kNoContext, deleted}) {
    Size size;
    EXPECT_EQ(drawing.SelectObject(none, AsObject(font.get())), HGDIOBJ{});
    EXPECT_FALSE(drawing.GetTextExtentPoint32W(none, u"Ink", 3, &size));
    EXPECT_EQ(drawing.SetTextColor(none, kBlue), CLR_INVALID);
    EXPECT_EQ(drawing.SetBkColor(none, kBlue), CLR_INVALID);
    EXPECT_TRUE(HoldsExcept(OnWine(), drawing.GetTextAlign(none) == GDI_ERROR));  // 0
    EXPECT_EQ(drawing.SetTextAlign(none, TA_RIGHT), GDI_ERROR);
    EXPECT_TRUE(HoldsExcept(OnWine(), !drawing.FillRect(none, {0, 0, 4, 4}, brush.get())));
    EXPECT_FALSE(drawing.TextOutW(none, 0, 0, u"Ink", 3));
    EXPECT_FALSE(drawing.BitBlt(none, 0, 0, 4, 4, context.get(), 0, 0, SRCCOPY));
    EXPECT_FALSE(drawing.BitBlt(context.get(), 0, 0, 4, 4, none, 0, 0, SRCCOPY));
    EXPECT_FALSE(drawing.DrawIconEx(none, 0, 0, HICON{}, 16, 16, DI_NORMAL));
  }
  EXPECT_EQ(drawing.CreateCompatibleDC(deleted), kNoContext);
}

// --- Fonts, brushes, bitmaps

TEST_F(DrawnWith, SelectingGivesWhatWasUsedBefore) {
  const OwnedDC context = MakeMemory();
  const OwnedFont first = MakeFont(-12);
  const OwnedFont second = MakeFont(-20);
  const HGDIOBJ initial = Select(context, AsObject(first.get()));
  EXPECT_NE(initial, HGDIOBJ{});
  EXPECT_EQ(Select(context, AsObject(second.get())), AsObject(first.get()));
  EXPECT_EQ(Select(context, AsObject(second.get())), AsObject(second.get()));
  EXPECT_EQ(Select(context, initial), AsObject(second.get()));
  EXPECT_EQ(Select(context, AsObject(first.get())), initial);
  EXPECT_EQ(Select(context, initial), AsObject(first.get()));
}

TEST_F(DrawnWith, FontBrushAndBitmapAreSelectedSideBySide) {
  const OwnedDC context = MakeMemory();
  const OwnedFont font = MakeFont(-12);
  const OwnedBrush brush(drawing.CreateSolidBrush(kBlue));
  const OwnedBitmap bitmap = LoadPicture(920);
  const HGDIOBJ initialFont = Select(context, AsObject(font.get()));
  const HGDIOBJ initialBrush = Select(context, AsObject(brush.get()));
  const HGDIOBJ initialBitmap = Select(context, AsObject(bitmap.get()));
  EXPECT_NE(initialFont, initialBrush);
  EXPECT_NE(initialBrush, initialBitmap);
  EXPECT_EQ(Select(context, initialFont), AsObject(font.get()));
  EXPECT_EQ(Select(context, initialBrush), AsObject(brush.get()));
  EXPECT_EQ(Select(context, initialBitmap), AsObject(bitmap.get()));
}

TEST_F(DrawnWith, WhatIsNoneOfTheThreeIsNotSelected) {
  const OwnedDC context = MakeMemory();
  OwnedFont font = MakeFont(-12);
  const HGDIOBJ deleted = AsObject(font.get());
  font.Reset();
  for (const HGDIOBJ none : {HGDIOBJ{}, deleted, HGDIOBJ{0x12345678}})
    EXPECT_EQ(Select(context, none), HGDIOBJ{});
}

TEST_F(DrawnWith, AFontMayBeInTwoContexts) {
  const OwnedDC first = MakeMemory();
  const OwnedDC second = MakeMemory();
  const OwnedFont font = MakeFont(-12);
  const HGDIOBJ initial = Select(first, AsObject(font.get()));
  const HGDIOBJ secondInitial = Select(second, AsObject(font.get()));
  EXPECT_NE(secondInitial, HGDIOBJ{});
  EXPECT_EQ(Select(first, initial), AsObject(font.get()));
  EXPECT_EQ(Select(second, secondInitial), AsObject(font.get()));
}

TEST_F(DrawnWith, ABitmapIsInOneContextAtATime) {
  const OwnedDC first = MakeMemory();
  const OwnedDC second = MakeMemory();
  const OwnedBitmap bitmap = LoadPicture(920);
  const HGDIOBJ initial = Select(first, AsObject(bitmap.get()));
  EXPECT_NE(initial, HGDIOBJ{});
  EXPECT_EQ(Select(second, AsObject(bitmap.get())), HGDIOBJ{});
  EXPECT_EQ(Select(first, AsObject(bitmap.get())), AsObject(bitmap.get()));  // it has it already
  EXPECT_EQ(Select(first, initial), AsObject(bitmap.get()));
  const HGDIOBJ secondInitial = Select(second, AsObject(bitmap.get()));
  EXPECT_NE(secondInitial, HGDIOBJ{});
  EXPECT_EQ(Select(second, secondInitial), AsObject(bitmap.get()));
}

TEST_F(DrawnWith, ABitmapIsFreeAgainWhenItsContextGoes) {
  OwnedDC first = MakeMemory();
  const OwnedBitmap bitmap = LoadPicture(920);
  Select(first, AsObject(bitmap.get()));
  first.Reset();
  const OwnedDC second = MakeMemory();
  const HGDIOBJ initial = Select(second, AsObject(bitmap.get()));
  EXPECT_NE(initial, HGDIOBJ{});
  Select(second, initial);
}

TEST_F(DrawnWith, ABitmapIsInAContextInMemoryOnly) {
  const OwnedDC screen(drawing.CreateICW(u"DISPLAY"));
  const OwnedBitmap bitmap = LoadPicture(920);
  EXPECT_EQ(Select(screen, AsObject(bitmap.get())), HGDIOBJ{});
}

TEST_F(DrawnWith, EachIsDeletedOnce) {
  const HGDIOBJ font = AsObject(MakeFont(-12).Release());
  const HGDIOBJ brush = AsObject(drawing.CreateSolidBrush(kBlue));
  const HGDIOBJ bitmap = AsObject(LoadPicture(920).Release());
  for (const HGDIOBJ object : {font, brush, bitmap}) {
    EXPECT_TRUE(drawing.DeleteObject(object));
    EXPECT_FALSE(drawing.DeleteObject(object));
  }
}

TEST_F(DrawnWith, WhatAContextUsesIsNotDeleted) {
  const OwnedDC context = MakeMemory();
  const HGDIOBJ font = AsObject(MakeFont(-12).Release());
  const HGDIOBJ brush = AsObject(drawing.CreateSolidBrush(kBlue));
  const HGDIOBJ bitmap = AsObject(LoadPicture(920).Release());
  for (const HGDIOBJ object : {font, brush, bitmap}) {
    const HGDIOBJ initial = Select(context, object);
    // Wine deletes it later, when no context uses it any more.
    const bool isDeleted = drawing.DeleteObject(object);
    EXPECT_TRUE(HoldsExcept(OnWine(), !isDeleted));
    EXPECT_EQ(Select(context, initial), object);
    EXPECT_EQ(drawing.DeleteObject(object), !isDeleted);
  }
}

TEST_F(DrawnWith, AFontNeedsNoNameAndNoSize) {
  const OwnedFont font(drawing.CreateFontIndirectW(LogFont{}));
  ASSERT_TRUE(font);
  const OwnedDC context = MakeMemory();
  const HGDIOBJ initial = Select(context, AsObject(font.get()));
  EXPECT_GT(Extent(context.get(), u"Ink").width, 0);
  Select(context, initial);
}

TEST_F(DrawnWith, ABitmapsSizeIsTold) {
  const OwnedBitmap square = LoadPicture(920);
  const OwnedBitmap wide = LoadPicture(924);
  Bitmap told;
  ASSERT_TRUE(drawing.GetObjectW(square.get(), &told));
  EXPECT_EQ(told.width, 16);
  EXPECT_EQ(told.height, 16);
  ASSERT_TRUE(drawing.GetObjectW(wide.get(), &told));
  EXPECT_EQ(told.type, 0);
  EXPECT_EQ(told.width, 20);
  EXPECT_EQ(told.height, 9);
  EXPECT_EQ(told.planes, 1);
  EXPECT_GE(told.bitsPerPixel, 1);
  EXPECT_GE(told.bytesOfLine * 8, told.width * told.bitsPerPixel);
  EXPECT_EQ(told.bytesOfLine % 2, 0);
  EXPECT_EQ(told.bits, nullptr);
}

TEST_F(DrawnWith, WhatIsNoBitmapHasNoSize) {
  OwnedBitmap bitmap = LoadPicture(920);
  const HBITMAP deleted = bitmap.get();
  bitmap.Reset();
  Bitmap told;
  EXPECT_FALSE(drawing.GetObjectW(HBITMAP{}, &told));
  EXPECT_FALSE(drawing.GetObjectW(deleted, &told));
}

// --- Texts

TEST_F(DrawnTexts, ALongerOneIsWiderAndNotHigher) {
  const OwnedDC context = MakeMemory();
  const Size one = Extent(context.get(), u"Ink");
  const Size two = Extent(context.get(), u"InkInk");
  EXPECT_GT(one.width, 0);
  EXPECT_GT(one.height, 0);
  EXPECT_GT(two.width, one.width);
  EXPECT_EQ(two.height, one.height);
}

TEST_F(DrawnTexts, OnlyThatManyCharactersAreMeasured) {
  const OwnedDC context = MakeMemory();
  Size part;
  ASSERT_TRUE(drawing.GetTextExtentPoint32W(context.get(), u"Ink order", 3, &part));
  EXPECT_EQ(part, Extent(context.get(), u"Ink"));
}

TEST_F(DrawnTexts, AnEmptyOneHasNoWidth) {
  const OwnedDC context = MakeMemory();
  EXPECT_EQ(Extent(context.get(), u"").width, 0);
}

TEST_F(DrawnTexts, ALineFeedIsACharacterLikeAnother) {
  const OwnedDC context = MakeMemory();
  EXPECT_EQ(Extent(context.get(), u"Ink\nInk").height, Extent(context.get(), u"Ink").height);
}

TEST_F(DrawnTexts, ANegativeLengthIsNoText) {
  const OwnedDC context = MakeMemory();
  Size size;
  EXPECT_FALSE(drawing.GetTextExtentPoint32W(context.get(), u"Ink", -1, &size));
  EXPECT_FALSE(drawing.TextOutW(context.get(), 0, 0, u"Ink", -1));
}

TEST_F(DrawnTexts, TheSelectedFontCounts) {
  const OwnedDC context = MakeMemory();
  const OwnedFont low = MakeFont(-10);
  const OwnedFont high = MakeFont(-40);
  const HGDIOBJ initial = Select(context, AsObject(low.get()));
  const Size small = Extent(context.get(), u"Ink");
  Select(context, AsObject(high.get()));
  const Size large = Extent(context.get(), u"Ink");
  EXPECT_GT(large.width, small.width);
  EXPECT_GT(large.height, small.height);
  Select(context, initial);
}

TEST_F(DrawnTexts, TheyBeginBlackOnWhite) {
  const OwnedDC context = MakeMemory();
  EXPECT_EQ(drawing.SetTextColor(context.get(), kBlue), kBlack);
  EXPECT_EQ(drawing.SetBkColor(context.get(), kBlue), kWhite);
}

TEST_F(DrawnTexts, AColourIsGivenBackWhenTheNextOneIsSet) {
  const OwnedDC context = MakeMemory();
  drawing.SetTextColor(context.get(), 0x00112233);
  drawing.SetBkColor(context.get(), 0x00445566);
  EXPECT_EQ(drawing.SetTextColor(context.get(), kBlue), 0x00112233u);
  EXPECT_EQ(drawing.SetBkColor(context.get(), kBlue), 0x00445566u);
}

TEST_F(DrawnTexts, TheyBeginLeftAligned) {
  const OwnedDC context = MakeMemory();
  EXPECT_EQ(drawing.GetTextAlign(context.get()), TA_LEFT);
}

TEST_F(DrawnTexts, AnAlignmentIsToldAndGivenBack) {
  const OwnedDC context = MakeMemory();
  EXPECT_EQ(drawing.SetTextAlign(context.get(), TA_RIGHT | TA_RTLREADING), TA_LEFT);
  EXPECT_EQ(drawing.GetTextAlign(context.get()), 258u);
  EXPECT_EQ(drawing.SetTextAlign(context.get(), TA_LEFT), 258u);
  EXPECT_EQ(drawing.GetTextAlign(context.get()), TA_LEFT);
}

TEST_F(DrawnTexts, EachContextHasItsOwnColoursAndAlignment) {
  const OwnedDC first = MakeMemory();
  const OwnedDC second = MakeMemory();
  drawing.SetTextColor(first.get(), kBlue);
  drawing.SetTextAlign(first.get(), TA_RIGHT);
  EXPECT_EQ(drawing.SetTextColor(second.get(), kBlue), kBlack);
  EXPECT_EQ(drawing.GetTextAlign(second.get()), TA_LEFT);
}

// --- Drawing

TEST_F(DrawingOnto, ABitmapIsFilledWrittenOnAndCopiedTo) {
  const OwnedDC target = MakeMemory();
  const OwnedDC source = MakeMemory(target.get());
  const OwnedBitmap paper = LoadPicture(921);
  const OwnedBitmap picture = LoadPicture(924);
  const OwnedBrush brush(drawing.CreateSolidBrush(kBlue));
  const HGDIOBJ initial = Select(target, AsObject(paper.get()));
  const HGDIOBJ sourceInitial = Select(source, AsObject(picture.get()));
  EXPECT_TRUE(drawing.FillRect(target.get(), {0, 0, 16, 16}, brush.get()));
  EXPECT_TRUE(drawing.TextOutW(target.get(), 1, 2, u"Ink", 3));
  EXPECT_TRUE(drawing.BitBlt(target.get(), 0, 0, 20, 9, source.get(), 0, 0, SRCCOPY));
  Select(source, sourceInitial);
  Select(target, initial);
}

TEST_F(DrawingOnto, OutsideOfWhatThereIsNothingFails) {
  const OwnedDC target = MakeMemory();
  const OwnedBrush brush(drawing.CreateSolidBrush(kBlue));
  EXPECT_TRUE(drawing.FillRect(target.get(), {-1000, -1000, 5000, 5000}, brush.get()));
  EXPECT_TRUE(drawing.FillRect(target.get(), {10, 10, 5, 5}, brush.get()));
  EXPECT_TRUE(drawing.TextOutW(target.get(), -4000, 4000, u"Ink", 3));
  EXPECT_TRUE(drawing.TextOutW(target.get(), 0, 0, u"", 0));
}

TEST_F(DrawingOnto, AFillNeedsABrush) {
  const OwnedDC target = MakeMemory();
  // Wine tells a success.
  EXPECT_TRUE(HoldsExcept(OnWine(), !drawing.FillRect(target.get(), {0, 0, 4, 4}, HBRUSH{})));
}

TEST_F(DrawingOnto, AnIconIsDrawnInAnySize) {
  const OwnedDC target = MakeMemory();
  const OwnedModule library = Load(ResourceLibrary());
  const OwnedIcon icon(os.resources.LoadImageW(library.get(), 701, IMAGE_ICON, 16, 16, 0));
  ASSERT_TRUE(icon);
  EXPECT_TRUE(drawing.DrawIconEx(target.get(), 0, 0, icon.get(), 16, 16, DI_NORMAL));
  EXPECT_TRUE(drawing.DrawIconEx(target.get(), 5, 5, icon.get(), 40, 7, DI_NORMAL));
}

TEST_F(DrawingOnto, WhatIsNoIconIsNotDrawn) {
  const OwnedDC target = MakeMemory();
  EXPECT_FALSE(drawing.DrawIconEx(target.get(), 0, 0, HICON{}, 16, 16, DI_NORMAL));
}

// --- The system's looks

TEST_F(SystemLooks, TheMenuFontIsTold) {
  NonClientMetrics metrics{.size = 504};
  ASSERT_TRUE(drawing.SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, 504, &metrics));
  EXPECT_NE(metrics.menuFont.height, 0);
  EXPECT_NE(metrics.menuFont.faceName[0], u'\0');
  EXPECT_GT(metrics.menuHeight, 0);
  const OwnedFont font(drawing.CreateFontIndirectW(metrics.menuFont));
  EXPECT_TRUE(font);
}

TEST_F(SystemLooks, TheSizeOfTheMetricsMustBeTheirOwn) {
  NonClientMetrics metrics{.size = 12};
  // Wine doesn't look at it.
  EXPECT_TRUE(HoldsExcept(OnWine(),
                          !drawing.SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, 504, &metrics)));
}

TEST_F(SystemLooks, TheSizesOfMenusAreKnown) {
  EXPECT_GT(drawing.GetSystemMetrics(SM_CYMENU), 0);
  EXPECT_GT(drawing.GetSystemMetrics(SM_CXMENUCHECK), 0);
}

TEST_F(SystemLooks, TheColoursOfMenusAreKnownAndCanBeRead) {
  // A selected item can be told from another, and its text from what is behind it.
  const std::uint32_t menu = drawing.GetSysColor(COLOR_MENU);
  const std::uint32_t text = drawing.GetSysColor(COLOR_MENUTEXT);
  const std::uint32_t selected = drawing.GetSysColor(COLOR_HIGHLIGHT);
  const std::uint32_t selectedText = drawing.GetSysColor(COLOR_HIGHLIGHTTEXT);
  for (const std::uint32_t colour : {menu, text, selected, selectedText}) EXPECT_LE(colour, kWhite);
  EXPECT_NE(menu, text);
  EXPECT_NE(menu, selected);
  EXPECT_NE(selected, selectedText);
}

TEST_F(SystemLooks, ANumberThatIsNotKnownHasNothing) {
  EXPECT_EQ(drawing.GetSystemMetrics(9999), 0);
  EXPECT_EQ(drawing.GetSysColor(9999), 0u);
  EXPECT_EQ(drawing.GetSysColor(-1), 0u);
}

}  // namespace
}  // namespace platform
