// Owners of what Cairo and Pango make.
#pragma once

#include <cairo.h>
#include <pango/pangocairo.h>

#include <memory>

namespace desk {

template <auto Free>
struct FreedBy {
  template <class T>
  void operator()(T* thing) const {
    Free(thing);
  }
};

using OwnedSurface = std::unique_ptr<cairo_surface_t, FreedBy<cairo_surface_destroy>>;
using OwnedCairo = std::unique_ptr<cairo_t, FreedBy<cairo_destroy>>;
using OwnedFontOptions = std::unique_ptr<cairo_font_options_t, FreedBy<cairo_font_options_destroy>>;
using OwnedFontMap = std::unique_ptr<PangoFontMap, FreedBy<g_object_unref>>;
using OwnedContext = std::unique_ptr<PangoContext, FreedBy<g_object_unref>>;
using OwnedLayout = std::unique_ptr<PangoLayout, FreedBy<g_object_unref>>;
using OwnedDescription =
    std::unique_ptr<PangoFontDescription, FreedBy<pango_font_description_free>>;
using OwnedMetrics = std::unique_ptr<PangoFontMetrics, FreedBy<pango_font_metrics_unref>>;

}  // namespace desk
