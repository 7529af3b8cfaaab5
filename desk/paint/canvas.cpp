#include "desk/paint/canvas.h"

#include <algorithm>
#include <utility>

#include "desk/paint/text_line.h"

namespace desk {

using platform::Point;
using platform::Rect;
using platform::Size;

namespace {

// Keeps a canvas's transformation and clipping as they are.
class Saved {
 public:
  explicit Saved(cairo_t* cairo) : m_cairo(cairo) { cairo_save(cairo); }
  ~Saved() { cairo_restore(m_cairo); }
  Saved(const Saved&) = delete;
  Saved& operator=(const Saved&) = delete;

 private:
  cairo_t* m_cairo;
};

double Share(std::uint32_t colour, int shift) { return (colour >> shift & 0xFF) / 255.0; }

std::int64_t WidthOf(const Rect& area) { return std::int64_t{area.right} - area.left; }
std::int64_t HeightOf(const Rect& area) { return std::int64_t{area.bottom} - area.top; }

}  // namespace

Canvas::Canvas(Size size, int scale, const Fonts& fonts)
    : m_image{.width = size.width * scale, .height = size.height * scale},
      m_context(fonts.m_parts->context.get()) {
  m_image.pixels.assign(
      static_cast<std::size_t>(m_image.width) * static_cast<std::size_t>(m_image.height),
      0xFF000000);
  m_surface.reset(cairo_image_surface_create_for_data(
      reinterpret_cast<unsigned char*>(m_image.pixels.data()), CAIRO_FORMAT_ARGB32, m_image.width,
      m_image.height, 4 * m_image.width));
  m_cairo.reset(cairo_create(m_surface.get()));
  cairo_scale(m_cairo.get(), scale, scale);
}

void Canvas::SetColour(std::uint32_t colour) {
  cairo_set_source_rgb(m_cairo.get(), Share(colour, 0), Share(colour, 8), Share(colour, 16));
}

void Canvas::Fill(const Rect& area, std::uint32_t colour) {
  // Cairo can't be given any number.
  const int right = std::min(area.right, m_image.width);
  const int bottom = std::min(area.bottom, m_image.height);
  const int left = std::max(area.left, 0);
  const int top = std::max(area.top, 0);
  if (right <= left || bottom <= top) return;
  SetColour(colour);
  cairo_rectangle(m_cairo.get(), left, top, right - left, bottom - top);
  cairo_fill(m_cairo.get());
}

void Canvas::Text(std::u16string_view text, const platform::LogFont& font, const TextPlace& place,
                  std::uint32_t colour) {
  const TextLine line = MakeTextLine(m_context, text, font, place.isRightToLeft);
  const int layoutBaseline = PANGO_PIXELS(pango_layout_get_baseline(line.layout.get()));
  SetColour(colour);
  cairo_move_to(m_cairo.get(), place.at.x - (place.isRightAligned ? line.size.width : 0),
                place.at.y + line.baseline - layoutBaseline);
  pango_cairo_show_layout(m_cairo.get(), line.layout.get());
}

void Canvas::Paint(const Image& image, const Rect& area, cairo_operator_t how,
                   cairo_filter_t filter) {
  // It is only read.
  auto* pixels = reinterpret_cast<unsigned char*>(const_cast<std::uint32_t*>(image.pixels.data()));
  const OwnedSurface surface(cairo_image_surface_create_for_data(
      pixels, CAIRO_FORMAT_ARGB32, image.width, image.height, 4 * image.width));
  const Saved saved(m_cairo.get());
  cairo_translate(m_cairo.get(), area.left, area.top);
  const double width = static_cast<double>(WidthOf(area));
  const double height = static_cast<double>(HeightOf(area));
  cairo_rectangle(m_cairo.get(), 0, 0, width, height);
  cairo_clip(m_cairo.get());
  cairo_scale(m_cairo.get(), width / image.width, height / image.height);
  cairo_set_source_surface(m_cairo.get(), surface.get(), 0, 0);
  cairo_pattern_set_filter(cairo_get_source(m_cairo.get()), filter);
  // Nothing from outside the picture mixes in at its edges.
  cairo_pattern_set_extend(cairo_get_source(m_cairo.get()), CAIRO_EXTEND_PAD);
  cairo_set_operator(m_cairo.get(), how);
  cairo_paint(m_cairo.get());
}

void Canvas::Copy(const Image& image, Point from, const Rect& area) {
  // Only what both the picture and the canvas have, so that the rest of a large one costs nothing.
  const std::int64_t left = std::max<std::int64_t>({0, from.x, from.x - std::int64_t{area.left}});
  const std::int64_t top = std::max<std::int64_t>({0, from.y, from.y - std::int64_t{area.top}});
  const std::int64_t right = std::min<std::int64_t>(
      {image.width, from.x + WidthOf(area), from.x - std::int64_t{area.left} + m_image.width});
  const std::int64_t bottom = std::min<std::int64_t>(
      {image.height, from.y + HeightOf(area), from.y - std::int64_t{area.top} + m_image.height});
  if (right <= left || bottom <= top) return;
  Image part{.width = static_cast<int>(right - left), .height = static_cast<int>(bottom - top)};
  for (std::int64_t y = top; y < bottom; ++y)
    for (std::int64_t x = left; x < right; ++x)
      part.pixels.push_back(image.At(static_cast<int>(x), static_cast<int>(y)));
  const auto placeLeft = static_cast<std::int32_t>(area.left + left - from.x);
  const auto placeTop = static_cast<std::int32_t>(area.top + top - from.y);
  Paint(part, {placeLeft, placeTop, placeLeft + part.width, placeTop + part.height},
        CAIRO_OPERATOR_SOURCE, CAIRO_FILTER_NEAREST);
}

void Canvas::Stretch(const Image& image, const Rect& area) {
  if (WidthOf(area) <= 0 || HeightOf(area) <= 0) return;
  Paint(image, area, CAIRO_OPERATOR_OVER, CAIRO_FILTER_GOOD);
}

void Canvas::Trace(std::initializer_list<Corner> corners, const Rect& area) {
  cairo_new_path(m_cairo.get());  // a text that was painted has left a point
  for (const Corner& corner : corners)
    cairo_line_to(m_cairo.get(), area.left + corner.x * static_cast<double>(WidthOf(area)),
                  area.top + corner.y * static_cast<double>(HeightOf(area)));
}

void Canvas::Shape(std::initializer_list<Corner> corners, const Rect& area, std::uint32_t colour) {
  SetColour(colour);
  Trace(corners, area);
  cairo_fill(m_cairo.get());
}

void Canvas::Line(std::initializer_list<Corner> corners, const Rect& area, std::uint32_t colour) {
  constexpr double kThickness = 1.5;
  SetColour(colour);
  cairo_set_line_width(m_cairo.get(), kThickness);
  Trace(corners, area);
  cairo_stroke(m_cairo.get());
}

void Canvas::Shield(const Rect& area) {
  if (WidthOf(area) <= 0 || HeightOf(area) <= 0) return;
  const Saved saved(m_cairo.get());
  cairo_translate(m_cairo.get(), area.left, area.top);
  cairo_scale(m_cairo.get(), static_cast<double>(WidthOf(area)),
              static_cast<double>(HeightOf(area)));
  const auto outline = [&] {
    cairo_move_to(m_cairo.get(), 0.5, 0);
    cairo_curve_to(m_cairo.get(), 0.65, 0.1, 0.8, 0.14, 0.95, 0.14);
    cairo_curve_to(m_cairo.get(), 0.97, 0.55, 0.85, 0.83, 0.5, 1);
    cairo_curve_to(m_cairo.get(), 0.15, 0.83, 0.03, 0.55, 0.05, 0.14);
    cairo_curve_to(m_cairo.get(), 0.2, 0.14, 0.35, 0.1, 0.5, 0);
    cairo_close_path(m_cairo.get());
  };
  constexpr std::uint32_t kBlue = 0x00B4631E;
  constexpr std::uint32_t kGold = 0x0018B8F5;
  outline();
  cairo_clip(m_cairo.get());
  for (const int quarter : {0, 1, 2, 3}) {
    const int column = quarter % 2;
    const int row = quarter / 2;
    SetColour(column == row ? kBlue : kGold);
    cairo_rectangle(m_cairo.get(), column * 0.5, row * 0.5, 0.5, 0.5);
    cairo_fill(m_cairo.get());
  }
  constexpr std::uint32_t kEdge = 0x00683A12;
  outline();
  SetColour(kEdge);
  // Half of it is clipped away.
  cairo_set_line_width(m_cairo.get(), 0.14);
  cairo_stroke(m_cairo.get());
}

Image Canvas::Take() {
  m_cairo.reset();
  cairo_surface_finish(m_surface.get());
  return std::exchange(m_image, {});
}

}  // namespace desk
