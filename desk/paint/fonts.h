// The font of painted texts: how large they are. Whatever face is asked for, it is one of this host
// that has Latin, Hebrew and Arabic letters, with another for Japanese: DejaVu Sans and Motoya
// Cedar, which Debian has; without them what the host has in their place.
#pragma once

#include <memory>
#include <string_view>

#include "platform/drawing.h"

namespace desk {

class Fonts {
 public:
  Fonts();
  ~Fonts();
  Fonts(const Fonts&) = delete;
  Fonts& operator=(const Fonts&) = delete;

  // What a text takes, in pixels: one line, as high as the font is, whatever the text. Of `font`
  // height, weight and slant count. As for sim::DrawingState::measure.
  platform::Size Measure(std::u16string_view text, const platform::LogFont& font) const;

 private:
  friend class Canvas;
  struct Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace desk
