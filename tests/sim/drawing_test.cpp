// Drawing on the simulated machine: what was drawn, what a text measures, the user's looks, faults,
// the ledger. What Windows does as well is in tests/platform/drawing_test.cpp.
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "platform/owned.h"
#include "platform/sim/drawing_calls.h"
#include "platform/sim/machine.h"
#include "platform/stock_icon.h"
#include "tests/sim/resource_file.h"
#include "tests/support/drawn_texts.h"

namespace sim {
namespace {

using namespace platform;

using Lines = std::vector<std::string>;
using Ledger = std::vector<std::u16string>;

constexpr char16_t kPath[] = u"C:\\K_X.DLL";
constexpr LogFont kLargeFont{.height = -24, .weight = 700, .faceName = u"Large"};

class SimulatedDrawing : public testing::Test {
 protected:
  SimulatedDrawing() { machine.files().WriteFile(kPath, ResourceFile()); }

  OwnedDC MakeContext() { return OwnedDC(drawing.CreateCompatibleDC(HDC{})); }
  DeviceContext& At(const OwnedDC& context) {
    return *inside.process().FindHandle<DeviceContext>(static_cast<std::uint64_t>(context.get()));
  }
  Lines DrawnOn(const OwnedDC& context) { return vgl::TextsOf(At(context).drawn); }
  // The font of the only thing that was drawn, a text.
  std::u16string FontDrawnOn(const OwnedDC& context) {
    return std::get<DrawnText>(At(context).drawn.at(0)).font.faceName;
  }

  OwnedBitmap LoadPicture(std::uint16_t id) {
    const OwnedModule library(Os().modules.LoadLibraryW(kPath));
    return OwnedBitmap(Os().resources.LoadBitmapW(library.get(), id));
  }
  OwnedIcon LoadIcon(std::uint16_t id) {
    const OwnedModule library(Os().modules.LoadLibraryW(kPath));
    return OwnedIcon(Os().resources.LoadImageW(library.get(), id, IMAGE_ICON, 16, 16, 0));
  }
  Size Extent(const OwnedDC& context, std::u16string_view text) {
    Size size;
    EXPECT_TRUE(drawing.GetTextExtentPoint32W(context.get(), text.data(),
                                              static_cast<std::int32_t>(text.size()), &size));
    return size;
  }
  Ledger Held() { return inside.process().Ledger(); }
  std::int32_t LastError() { return Os().process.GetLastError(); }

  Machine machine;
  Inside inside{machine};
  Drawing& drawing = Os().drawing;
};

// --- What was drawn

TEST_F(SimulatedDrawing, WhatIsDrawnIsKeptInOrder) {
  const OwnedDC target = MakeContext();
  const OwnedDC source = MakeContext();
  const OwnedBrush brush(drawing.CreateSolidBrush(0x00F0F0F0));
  const OwnedBitmap picture = LoadPicture(924);
  const OwnedIcon icon = LoadIcon(701);
  const HGDIOBJ initial = drawing.SelectObject(source.get(), AsObject(picture.get()));
  drawing.FillRect(target.get(), {10, 20, 110, 40}, brush.get());
  drawing.BitBlt(target.get(), 12, 21, 20, 9, source.get(), 0, 0, SRCCOPY);
  drawing.DrawIconEx(target.get(), 17, 26, icon.get(), 16, 5, DI_NORMAL);
  drawing.SetTextColor(target.get(), 0x00112233);
  drawing.SetBkColor(target.get(), 0x00F0F0F0);
  drawing.TextOutW(target.get(), 40, 22, u"Order ink now", 9);
  drawing.SetTextAlign(target.get(), TA_RIGHT | TA_RTLREADING);
  drawing.TextOutW(target.get(), 100, 22, u"x", 1);
  EXPECT_EQ(DrawnOn(target),
            (Lines{"10,20-110,40 filled with F0F0F0", "12,21-32,30 picture of 20x9",
                   "17,26-33,31 icon 701 of C:\\K_X.DLL", "40,22 \"Order ink\" in 112233 on F0F0F0",
                   "100,22 \"x\" in 112233 on F0F0F0, aligned 258"}));
  drawing.SelectObject(source.get(), initial);
}

TEST_F(SimulatedDrawing, APartOfAPictureTellsWhereItBegins) {
  const OwnedDC target = MakeContext();
  const OwnedDC source = MakeContext();
  const OwnedBitmap picture = LoadPicture(924);
  const HGDIOBJ initial = drawing.SelectObject(source.get(), AsObject(picture.get()));
  drawing.BitBlt(target.get(), 0, 0, 4, 3, source.get(), 7, 2, SRCCOPY);
  drawing.SelectObject(source.get(), initial);
  const auto& drawn = std::get<DrawnBitmap>(At(target).drawn.at(0));
  EXPECT_EQ(drawn.area, (Rect{0, 0, 4, 3}));
  EXPECT_EQ(drawn.from, (Point{7, 2}));
}

TEST_F(SimulatedDrawing, APictureCanBeLookedAtWhenItsBitmapIsGone) {
  const OwnedDC target = MakeContext();
  const OwnedDC source = MakeContext();
  OwnedBitmap picture = LoadPicture(924);
  const HGDIOBJ initial = drawing.SelectObject(source.get(), AsObject(picture.get()));
  drawing.BitBlt(target.get(), 0, 0, 20, 9, source.get(), 0, 0, SRCCOPY);
  drawing.SelectObject(source.get(), initial);
  picture.Reset();
  const auto& drawn = std::get<DrawnBitmap>(At(target).drawn.at(0));
  EXPECT_EQ(drawn.picture->width, 20u);
  EXPECT_EQ(drawn.picture->height, 9u);
  EXPECT_FALSE(drawn.picture->bytes.empty());
}

TEST_F(SimulatedDrawing, ACopyFromAContextWithoutAPictureLeavesNothing) {
  const OwnedDC target = MakeContext();
  const OwnedDC source = MakeContext();
  EXPECT_TRUE(drawing.BitBlt(target.get(), 0, 0, 20, 9, source.get(), 0, 0, SRCCOPY));
  EXPECT_EQ(DrawnOn(target), Lines{});
}

TEST_F(SimulatedDrawing, WhatFailedWasNotDrawn) {
  const OwnedDC target = MakeContext();
  EXPECT_FALSE(drawing.FillRect(target.get(), {0, 0, 9, 9}, HBRUSH{}));
  EXPECT_FALSE(drawing.TextOutW(target.get(), 0, 0, u"x", -1));
  EXPECT_FALSE(drawing.BitBlt(target.get(), 0, 0, 9, 9, HDC{}, 0, 0, SRCCOPY));
  EXPECT_FALSE(drawing.DrawIconEx(target.get(), 0, 0, HICON{}, 9, 9, DI_NORMAL));
  EXPECT_EQ(LastError(), ERROR_INVALID_ICON_HANDLE);
  EXPECT_EQ(DrawnOn(target), Lines{});
}

TEST_F(SimulatedDrawing, AStockIconIsKnownByItsNumber) {
  const OwnedDC target = MakeContext();
  const auto tell = reinterpret_cast<SHGetStockIconInfoProc>(Os().modules.GetProcAddress(
      Os().modules.GetModuleHandleW(u"Shell32.dll"), "SHGetStockIconInfo"));
  StockIconInfo info{.size = 544};
  ASSERT_EQ(tell(SIID_SHIELD, SHGSI_ICON | SHGSI_SMALLICON, &info), 0);
  const OwnedIcon icon(info.icon);
  drawing.DrawIconEx(target.get(), 3, 4, icon.get(), 12, 10, DI_NORMAL);
  EXPECT_EQ(DrawnOn(target), (Lines{"3,4-15,14 stock icon 77"}));
}

// --- Texts and fonts

TEST_F(SimulatedDrawing, ACharacterOfTheMenusFontIs6PixelsWideAnd15High) {
  const OwnedDC context = MakeContext();
  const OwnedFont font(drawing.CreateFontIndirectW(machine.drawing().menuFont));
  const HGDIOBJ initial = drawing.SelectObject(context.get(), AsObject(font.get()));
  EXPECT_EQ(Extent(context, u"Order ink"), (Size{54, 15}));
  EXPECT_EQ(Extent(context, u""), (Size{0, 15}));
  drawing.SelectObject(context.get(), initial);
}

TEST_F(SimulatedDrawing, AContextBeginsWithTheSystemsFontWhichIsLarger) {
  const OwnedDC screen(drawing.CreateICW(u"DISPLAY"));
  const OwnedDC memory = MakeContext();
  EXPECT_EQ(Extent(screen, u"Ink"), (Size{24, 20}));
  EXPECT_EQ(Extent(memory, u"Ink"), (Size{24, 20}));
}

TEST_F(SimulatedDrawing, AFontOfNoHeightIsOfTheUsualOne) {
  const OwnedDC context = MakeContext();
  const OwnedFont font(drawing.CreateFontIndirectW(LogFont{}));
  const HGDIOBJ initial = drawing.SelectObject(context.get(), AsObject(font.get()));
  EXPECT_EQ(Extent(context, u"Ink"), (Size{18, 15}));
  drawing.SelectObject(context.get(), initial);
}

TEST_F(SimulatedDrawing, ATextIsDrawnInTheSelectedFontUntilTheFirstOneIsBack) {
  const OwnedFont font(drawing.CreateFontIndirectW(kLargeFont));
  const OwnedDC before = MakeContext();
  drawing.TextOutW(before.get(), 0, 0, u"x", 1);
  EXPECT_EQ(FontDrawnOn(before), u"System");

  const OwnedDC with = MakeContext();
  const HGDIOBJ initial = drawing.SelectObject(with.get(), AsObject(font.get()));
  drawing.TextOutW(with.get(), 0, 0, u"x", 1);
  EXPECT_EQ(FontDrawnOn(with), u"Large");

  drawing.SelectObject(with.get(), initial);
  At(with).drawn.clear();
  drawing.TextOutW(with.get(), 0, 0, u"x", 1);
  EXPECT_EQ(FontDrawnOn(with), u"System");
}

TEST_F(SimulatedDrawing, ATestMaySayWhatATextMeasures) {
  const OwnedDC context = MakeContext();
  const OwnedFont font(drawing.CreateFontIndirectW(kLargeFont));
  std::u16string asked;
  machine.drawing().measure = [&](std::u16string_view text, const LogFont& askedFont) {
    asked = std::u16string(text) + u" in " + askedFont.faceName;
    return Size{123, 45};
  };
  const HGDIOBJ initial = drawing.SelectObject(context.get(), AsObject(font.get()));
  EXPECT_EQ(Extent(context, u"Ink"), (Size{123, 45}));
  EXPECT_EQ(asked, u"Ink in Large");
  drawing.SelectObject(context.get(), initial);
}

// --- The user's looks

TEST_F(SimulatedDrawing, SizesAndColoursAreWhatTheMachineHas) {
  EXPECT_EQ(drawing.GetSystemMetrics(SM_CYMENU), 19);
  EXPECT_EQ(drawing.GetSystemMetrics(SM_CXMENUCHECK), 15);
  EXPECT_EQ(drawing.GetSysColor(COLOR_MENU), 0x00F0F0F0u);
  EXPECT_EQ(drawing.GetSysColor(COLOR_HIGHLIGHT), 0x00D77800u);
  machine.drawing().metrics[SM_CYMENU] = 33;
  machine.drawing().colours[COLOR_MENU] = 0x00010203;
  EXPECT_EQ(drawing.GetSystemMetrics(SM_CYMENU), 33);
  EXPECT_EQ(drawing.GetSysColor(COLOR_MENU), 0x00010203u);
}

TEST_F(SimulatedDrawing, TheMenusFontIsWhatTheMachineHas) {
  machine.drawing().menuFont = kLargeFont;
  NonClientMetrics metrics{.size = 504};
  ASSERT_TRUE(drawing.SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, 504, &metrics));
  EXPECT_EQ(std::u16string(metrics.menuFont.faceName), u"Large");
  EXPECT_EQ(metrics.menuFont.height, -24);
  EXPECT_EQ(metrics.menuHeight, 19);
}

TEST_F(SimulatedDrawing, NothingElseIsToldOfTheSystem) {
  NonClientMetrics metrics{.size = 504};
  EXPECT_FALSE(drawing.SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, 500, &metrics));
  EXPECT_EQ(LastError(), ERROR_INVALID_PARAMETER);
  EXPECT_FALSE(drawing.SystemParametersInfoW(SPI_GETNONCLIENTMETRICS + 1, 504, &metrics));
  EXPECT_EQ(LastError(), ERROR_INVALID_PARAMETER);
  metrics.size = 500;
  EXPECT_FALSE(drawing.SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, 504, &metrics));
  EXPECT_EQ(LastError(), ERROR_INVALID_PARAMETER);
}

// --- Handles

TEST_F(SimulatedDrawing, TheLedgerNamesWhatIsHeld) {
  OwnedDC context = MakeContext();
  OwnedFont font(drawing.CreateFontIndirectW(kLargeFont));
  OwnedBrush brush(drawing.CreateSolidBrush(0));
  EXPECT_EQ(Held(), (Ledger{u"device context", u"font Large", u"brush"}));
  context.Reset();
  font.Reset();
  brush.Reset();
  EXPECT_EQ(Held(), Ledger{});
}

TEST_F(SimulatedDrawing, WhatAContextUsesIsHeldUntilItIsSelectedBack) {
  const OwnedDC context = MakeContext();
  OwnedFont font(drawing.CreateFontIndirectW(kLargeFont));
  const HGDIOBJ initial = drawing.SelectObject(context.get(), AsObject(font.get()));
  EXPECT_FALSE(drawing.DeleteObject(AsObject(font.get())));
  EXPECT_EQ(Held(), (Ledger{u"device context", u"font Large"}));
  drawing.SelectObject(context.get(), initial);
  font.Reset();
  EXPECT_EQ(Held(), (Ledger{u"device context"}));
}

TEST_F(SimulatedDrawing, KindsAreToldApart) {
  const OwnedDC context = MakeContext();
  const OwnedFont font(drawing.CreateFontIndirectW(kLargeFont));
  const OwnedIcon icon = LoadIcon(701);
  const auto number = [](auto handle) { return static_cast<std::uint64_t>(handle); };
  EXPECT_FALSE(Os().objects.CloseHandle(HANDLE{number(font.get())}));
  EXPECT_FALSE(Os().objects.CloseHandle(HANDLE{number(context.get())}));
  EXPECT_FALSE(drawing.DeleteDC(HDC{number(font.get())}));
  EXPECT_FALSE(drawing.DeleteObject(HGDIOBJ{number(icon.get())}));
  EXPECT_EQ(drawing.SelectObject(context.get(), HGDIOBJ{number(icon.get())}), HGDIOBJ{});
  EXPECT_FALSE(drawing.FillRect(context.get(), {0, 0, 1, 1}, HBRUSH{number(font.get())}));
  Bitmap told;
  EXPECT_FALSE(drawing.GetObjectW(HBITMAP{number(font.get())}, &told));
  EXPECT_EQ(Held().size(), 3u);
}

// --- Faults

TEST_F(SimulatedDrawing, EachOperationCanFail) {
  const OwnedDC context = MakeContext();
  const OwnedBrush brush(drawing.CreateSolidBrush(0));
  const OwnedBitmap bitmap = LoadPicture(920);
  const OwnedIcon icon = LoadIcon(701);
  const HDC dc = context.get();
  Size size;
  Bitmap told;
  NonClientMetrics metrics{.size = 504};
  struct Case {
    const char* operation;
    std::function<bool()> succeeds;
  };
  const std::vector<Case> cases = {
      {"CreateICW", [&] { return static_cast<bool>(OwnedDC(drawing.CreateICW(u"DISPLAY"))); }},
      {"CreateCompatibleDC",
       [&] { return static_cast<bool>(OwnedDC(drawing.CreateCompatibleDC(dc))); }},
      {"CreateFontIndirectW",
       [&] { return static_cast<bool>(OwnedFont(drawing.CreateFontIndirectW(kLargeFont))); }},
      {"CreateSolidBrush",
       [&] { return static_cast<bool>(OwnedBrush(drawing.CreateSolidBrush(0))); }},
      {"SelectObject",
       [&] {
         const HGDIOBJ initial = drawing.SelectObject(dc, AsObject(brush.get()));
         return initial != HGDIOBJ{} && drawing.SelectObject(dc, initial) == AsObject(brush.get());
       }},
      {"GetObjectW", [&] { return drawing.GetObjectW(bitmap.get(), &told); }},
      {"GetTextExtentPoint32W", [&] { return drawing.GetTextExtentPoint32W(dc, u"x", 1, &size); }},
      {"SetTextColor", [&] { return drawing.SetTextColor(dc, 0) != CLR_INVALID; }},
      {"SetBkColor", [&] { return drawing.SetBkColor(dc, 0) != CLR_INVALID; }},
      {"GetTextAlign", [&] { return drawing.GetTextAlign(dc) != GDI_ERROR; }},
      {"SetTextAlign", [&] { return drawing.SetTextAlign(dc, TA_LEFT) != GDI_ERROR; }},
      {"FillRect",
       [&] {
         return drawing.FillRect(dc, {0, 0, 1, 1}, brush.get());
       }},
      {"TextOutW", [&] { return drawing.TextOutW(dc, 0, 0, u"x", 1); }},
      {"BitBlt", [&] { return drawing.BitBlt(dc, 0, 0, 1, 1, dc, 0, 0, SRCCOPY); }},
      {"DrawIconEx", [&] { return drawing.DrawIconEx(dc, 0, 0, icon.get(), 1, 1, DI_NORMAL); }},
      {"SystemParametersInfoW",
       [&] { return drawing.SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, 504, &metrics); }},
  };
  for (const Case& one : cases) {
    EXPECT_TRUE(one.succeeds()) << one.operation;
    inside.process().FailNext(one.operation, 4321);
    EXPECT_FALSE(one.succeeds()) << one.operation;
    EXPECT_EQ(LastError(), 4321) << one.operation;
    EXPECT_TRUE(one.succeeds()) << one.operation;
  }
}

TEST_F(SimulatedDrawing, WhatGivesSomethingBackDoesNotFailByNumber) {
  const HGDIOBJ brush = AsObject(drawing.CreateSolidBrush(0));
  const HDC context = MakeContext().Release();
  inside.process().FailCall(1);
  EXPECT_TRUE(drawing.DeleteObject(brush));
  inside.process().FailCall(1);
  EXPECT_TRUE(drawing.DeleteDC(context));
  EXPECT_EQ(inside.process().failedOperation(), "");
}

}  // namespace
}  // namespace sim
