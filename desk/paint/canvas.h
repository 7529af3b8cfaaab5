// What a picture is painted on. Places are in pixels from the upper left corner, and nothing
// outside the picture is painted; colours are 0x00BBGGRR, as Windows has them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "desk/paint/cairo_owned.h"
#include "desk/paint/fonts.h"
#include "desk/paint/image.h"

namespace desk {

// How a text stands at its place.
struct TextPlace {
  platform::Point at;  // its upper left corner, or its upper right one
  bool isRightAligned = false;
  bool isRightToLeft = false;  // its words
};

class Canvas {
 public:
  // A black picture of that size, each of whose pixels is painted by `scale` times as many both
  // ways. `fonts` must outlive it.
  Canvas(platform::Size size, int scale, const Fonts& fonts);

  void Fill(const platform::Rect& area, std::uint32_t colour);
  // A line of text, without anything behind it.
  void Text(std::u16string_view text, const platform::LogFont& font, const TextPlace& place,
            std::uint32_t colour);
  // The part of a picture from `from` on, pixel by pixel. Where the picture has none, none is
  // painted.
  void Copy(const Image& image, platform::Point from, const platform::Rect& area);
  // The whole picture, brought to that size; what is behind it shows through.
  void Stretch(const Image& image, const platform::Rect& area);
  // Corners in parts of the area's width and height: a filled shape, or an open line.
  struct Corner {
    double x, y;
  };
  void Shape(std::initializer_list<Corner> corners, const platform::Rect& area,
             std::uint32_t colour);
  void Line(std::initializer_list<Corner> corners, const platform::Rect& area,
            std::uint32_t colour);
  // The sign of what asks for an administrator.
  void Shield(const platform::Rect& area);

  // What was painted; the canvas is of no use afterwards.
  Image Take();

 private:
  void SetColour(std::uint32_t colour);
  void Trace(std::initializer_list<Corner> corners, const platform::Rect& area);
  // The whole of `image`, stretched over that area.
  void Paint(const Image& image, const platform::Rect& area, cairo_operator_t how,
             cairo_filter_t filter);

  Image m_image;
  PangoContext* m_context;
  OwnedSurface m_surface;
  OwnedCairo m_cairo;
};

}  // namespace desk
