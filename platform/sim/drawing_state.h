// Drawing on the simulated machine: the colours and sizes that its user has chosen, and what was
// drawn. Nothing is painted: a context keeps what was drawn on it in order, for a test to read and
// for a tool to paint.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "platform/drawing.h"
#include "platform/sim/pe_resources.h"

namespace sim {

struct DrawnFill {
  platform::Rect area;
  std::uint32_t colour = 0;
};

struct DrawnText {
  platform::Point at;
  std::u16string text;
  std::uint32_t colour = 0;
  std::uint32_t background = 0;
  std::uint32_t alignment = platform::TA_LEFT;
  platform::LogFont font;
};

// Part of a bitmap.
struct DrawnBitmap {
  platform::Rect area;
  std::shared_ptr<const Picture> picture;
  platform::Point from;
};

struct DrawnIcon {
  platform::Rect area;
  std::u16string name;                     // "icon 700 of C:\...", "stock icon 77"
  std::shared_ptr<const Picture> picture;  // of no size for an icon of the system
};

using Drawn = std::variant<DrawnFill, DrawnText, DrawnBitmap, DrawnIcon>;

struct DrawingState {
  std::map<std::int32_t, std::int32_t> metrics{{platform::SM_CYMENU, 19},
                                               {platform::SM_CXMENUCHECK, 15}};
  std::map<std::int32_t, std::uint32_t> colours{{platform::COLOR_MENU, 0x00F0F0F0},
                                                {platform::COLOR_MENUTEXT, 0x00000000},
                                                {platform::COLOR_HIGHLIGHT, 0x00D77800},
                                                {platform::COLOR_HIGHLIGHTTEXT, 0x00FFFFFF}};
  platform::LogFont menuFont{.height = -12, .weight = 400, .faceName = u"Segoe UI"};
  // What a context begins with that isn't a menu's.
  platform::LogFont systemFont{.height = 16, .weight = 700, .faceName = u"System"};

  // The size of a text. At first every character is half as wide as the font's height and 5/4 of it
  // high: 6 by 15 pixels in the menu's font.
  std::function<platform::Size(std::u16string_view, const platform::LogFont&)> measure =
      [](std::u16string_view text, const platform::LogFont& font) {
        constexpr std::int32_t kUsual = 12;
        const std::int32_t height = font.height == 0 ? kUsual : std::abs(font.height);
        return platform::Size{height / 2 * static_cast<std::int32_t>(text.size()), height * 5 / 4};
      };
};

}  // namespace sim
