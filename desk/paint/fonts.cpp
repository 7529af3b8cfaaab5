#include "desk/paint/fonts.h"

#include <fontconfig/fontconfig.h>

#include <cstdlib>
#include <string>

#include "Common/text_conversion.h"
#include "desk/paint/text_line.h"

namespace desk {

namespace {

constexpr char kFamilies[] = "DejaVu Sans,MotoyaLCedar";
constexpr char16_t kReplacement = u'\uFFFD';

OwnedDescription DescriptionOf(const platform::LogFont& font) {
  OwnedDescription description(pango_font_description_new());
  pango_font_description_set_family_static(description.get(), kFamilies);
  pango_font_description_set_absolute_size(description.get(),
                                           std::abs(double{PANGO_SCALE} * font.height));
  pango_font_description_set_weight(description.get(), static_cast<PangoWeight>(font.weight));
  if (font.italic != 0) pango_font_description_set_style(description.get(), PANGO_STYLE_ITALIC);
  return description;
}

std::string ShownText(std::u16string_view text) {
  std::u16string shown(text);
  for (char16_t& character : shown)
    if (character < u' ' || character == u'\u007F') character = kReplacement;
  return vgl::Utf8FromText(shown);
}

int Pixels(int units) { return PANGO_PIXELS(units); }

// Has this process know the fonts that Debian installs and none of the rules that the host's user
// and administrator have made for them: a text looks the same for everybody.
void UseFontsAlone() {
  constexpr char kConfiguration[] =
      R"(<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd"><fontconfig>
<dir>/usr/share/fonts</dir>
<cachedir>/var/cache/fontconfig</cachedir><cachedir prefix="xdg">fontconfig</cachedir>
</fontconfig>)";
  FcConfig* configuration = FcConfigCreate();
  FcConfigParseAndLoadFromMemory(configuration, reinterpret_cast<const FcChar8*>(kConfiguration),
                                 FcTrue);
  FcConfigSetCurrent(configuration);
  FcConfigDestroy(configuration);  // the process has it now
}

}  // namespace

TextLine MakeTextLine(PangoContext* context, std::u16string_view text,
                      const platform::LogFont& font, bool isRightToLeft) {
  const OwnedDescription description = DescriptionOf(font);
  const std::string shown = ShownText(text);
  pango_context_set_base_dir(context, isRightToLeft ? PANGO_DIRECTION_RTL : PANGO_DIRECTION_LTR);
  TextLine line{.layout = OwnedLayout(pango_layout_new(context))};
  pango_layout_set_auto_dir(line.layout.get(), FALSE);
  pango_layout_set_single_paragraph_mode(line.layout.get(), TRUE);
  pango_layout_set_font_description(line.layout.get(), description.get());
  pango_layout_set_text(line.layout.get(), shown.data(), static_cast<int>(shown.size()));

  // The layout is higher where letters come out of another font; a line isn't.
  const OwnedMetrics metrics(pango_context_get_metrics(context, description.get(), nullptr));
  line.baseline = Pixels(pango_font_metrics_get_ascent(metrics.get()));
  line.size.height = line.baseline + Pixels(pango_font_metrics_get_descent(metrics.get()));
  pango_layout_get_pixel_size(line.layout.get(), &line.size.width, nullptr);
  return line;
}

Fonts::Fonts() : m_parts(std::make_unique<Parts>()) {
  [[maybe_unused]] static const bool kOnce = (UseFontsAlone(), true);
  m_parts->map.reset(pango_cairo_font_map_new());
  constexpr double kPixelsAnInch = 96;
  pango_cairo_font_map_set_resolution(PANGO_CAIRO_FONT_MAP(m_parts->map.get()), kPixelsAnInch);
  m_parts->context.reset(pango_font_map_create_context(m_parts->map.get()));
  pango_context_set_language(m_parts->context.get(), pango_language_from_string("en"));
  const OwnedFontOptions options(cairo_font_options_create());
  cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_SLIGHT);
  cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_ON);
  pango_cairo_context_set_font_options(m_parts->context.get(), options.get());
}

Fonts::~Fonts() = default;

platform::Size Fonts::Measure(std::u16string_view text, const platform::LogFont& font) const {
  return MakeTextLine(m_parts->context.get(), text, font, false).size;
}

}  // namespace desk
