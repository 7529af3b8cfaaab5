// One line of text in one of the painter's fonts.
#pragma once

#include <string_view>

#include "desk/paint/cairo_owned.h"
#include "desk/paint/fonts.h"

namespace desk {

struct Fonts::Parts {
  OwnedFontMap map;
  OwnedContext context;
};

struct TextLine {
  OwnedLayout layout;
  platform::Size size;
  int baseline = 0;  // from the top of `size`, on which the layout's own stands
};

// Control characters are shown as a box or the like, not obeyed. With `isRightToLeft` the words
// stand from right to left, whatever they are.
TextLine MakeTextLine(PangoContext* context, std::u16string_view text,
                      const platform::LogFont& font, bool isRightToLeft);

}  // namespace desk
