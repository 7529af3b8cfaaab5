#include "tests/support/drawn_texts.h"

#include "Common/text_conversion.h"
#include "Common/wide_format.h"

namespace vgl {

namespace {

std::u16string TextOf(const platform::Rect& area) {
  return WideFormat(u"%d,%d-%d,%d", area.left, area.top, area.right, area.bottom);
}

std::u16string TextOf(const sim::DrawnFill& fill) {
  return WideFormat(u"%s filled with %06X", TextOf(fill.area), fill.colour);
}

std::u16string TextOf(const sim::DrawnText& text) {
  std::u16string told = WideFormat(u"%d,%d \"%s\" in %06X on %06X", text.at.x, text.at.y, text.text,
                                   text.colour, text.background);
  if (text.alignment != 0) told += WideFormat(u", aligned %u", text.alignment);
  return told;
}

std::u16string TextOf(const sim::DrawnBitmap& bitmap) {
  std::u16string told = WideFormat(u"%s picture of %ux%u", TextOf(bitmap.area),
                                   bitmap.picture->width, bitmap.picture->height);
  if (bitmap.from != platform::Point{})
    told += WideFormat(u", from %d,%d", bitmap.from.x, bitmap.from.y);
  return told;
}

std::u16string TextOf(const sim::DrawnIcon& icon) {
  return WideFormat(u"%s %s", TextOf(icon.area), icon.name);
}

}  // namespace

std::vector<std::string> TextsOf(const std::vector<sim::Drawn>& drawn) {
  std::vector<std::string> texts;
  for (const sim::Drawn& each : drawn) {
    texts.push_back(
        Utf8FromText(std::visit([](const auto& thing) { return TextOf(thing); }, each)));
  }
  return texts;
}

}  // namespace vgl
