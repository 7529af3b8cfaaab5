// An entry of the menu to be drawn into a line of it.
#pragma once

#include <string_view>

#include "menu/owner_draw.h"
#include "tests/support/drawing_fixture.h"

namespace vgl {

// An entry of the menu, without a picture. Text is 6 pixels wide a character and 15 high.
class OwnerDraw : public DrawingTest {
 protected:
  static constexpr std::uint32_t kEntry = 925;
  // A line of 200 by 19 pixels.
  static constexpr platform::Rect kLine{100, 50, 300, 69};
  static constexpr char kFill[] = "100,50-300,69 filled with F0F0F0";
  static constexpr bool kRightToLeft = true;

  OwnerDraw() { Label(u"Order ink"); }

  void Label(std::u16string_view text) { EXPECT_TRUE(slot.szMenuName.Assign(text)); }
  void SetTextHeight(std::int32_t height) {
    machine.drawing().measure = [height](std::u16string_view, const platform::LogFont&) {
      return platform::Size{54, height};
    };
  }

  void Draw(bool rightToLeft = false) { DrawExMenuItem(slot, item, rightToLeft, identity); }
  Lines LinesOf(bool rightToLeft = false) {
    Draw(rightToLeft);
    return TakeDrawn();
  }
  Lines LinesWithPicture(std::uint32_t width, std::uint32_t height, bool rightToLeft = false) {
    slot.hBitmap = AddPicture(width, height);
    return LinesOf(rightToLeft);
  }
  platform::MeasureItem Measured() {
    platform::MeasureItem measured{.controlType = platform::ODT_MENU,
                                   .controlId = 3,
                                   .itemId = kEntry,
                                   .width = 1111,
                                   .height = 2222,
                                   .itemData = 77};
    MeasureExMenuItem(slot, measured);
    return measured;
  }

  PrinterIdentity identity;  // of nothing that has a driver set
  ExMenuItem slot;
  platform::DrawItem item{.controlType = platform::ODT_MENU,
                          .controlId = 0,
                          .itemId = kEntry,
                          .action = platform::ODA_DRAWENTIRE,
                          .state = 0,
                          .owner = platform::HWND{},
                          .deviceContext = context,
                          .area = kLine,
                          .itemData = 0};
};

}  // namespace vgl
