#include "desk/paint/image.h"

#include <cstring>

#include "desk/paint/cairo_owned.h"

namespace desk {

namespace {

constexpr int kMostPixelsASide = 2048;
// In front of a PNG file's first part: its signature, the part's length and its name.
constexpr std::size_t kPngSizePlace = 16;

struct Source {
  std::string_view bytes;
  std::size_t position = 0;
};

cairo_status_t ReadFrom(void* closure, unsigned char* data, unsigned int length) {
  auto& source = *static_cast<Source*>(closure);
  if (length > source.bytes.size() - source.position) return CAIRO_STATUS_READ_ERROR;
  std::memcpy(data, source.bytes.data() + source.position, length);
  source.position += length;
  return CAIRO_STATUS_SUCCESS;
}

cairo_status_t AppendTo(void* closure, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

// A side as the file's first part tells it, before any memory is taken for it.
bool IsSideAllowed(std::string_view bytes, std::size_t place) {
  std::uint32_t side = 0;
  for (std::size_t i = 0; i < 4; ++i)
    side = side << 8 | static_cast<std::uint8_t>(bytes[place + i]);
  return side >= 1 && side <= kMostPixelsASide;
}

}  // namespace

std::string EncodePng(const Image& image) {
  // It is only read.
  auto* pixels = reinterpret_cast<unsigned char*>(const_cast<std::uint32_t*>(image.pixels.data()));
  const OwnedSurface surface(cairo_image_surface_create_for_data(
      pixels, CAIRO_FORMAT_ARGB32, image.width, image.height, 4 * image.width));
  std::string bytes;
  const cairo_status_t status = cairo_surface_write_to_png_stream(surface.get(), AppendTo, &bytes);
  return status == CAIRO_STATUS_SUCCESS ? bytes : std::string{};
}

std::optional<Image> DecodePng(std::string_view bytes) {
  if (bytes.size() < kPngSizePlace + 8) return std::nullopt;
  if (!IsSideAllowed(bytes, kPngSizePlace) || !IsSideAllowed(bytes, kPngSizePlace + 4))
    return std::nullopt;
  Source source{bytes};
  const OwnedSurface surface(cairo_image_surface_create_from_png_stream(ReadFrom, &source));
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return std::nullopt;
  const bool isOpaque = cairo_image_surface_get_format(surface.get()) == CAIRO_FORMAT_RGB24;
  if (!isOpaque && cairo_image_surface_get_format(surface.get()) != CAIRO_FORMAT_ARGB32)
    return std::nullopt;

  Image image{.width = cairo_image_surface_get_width(surface.get()),
              .height = cairo_image_surface_get_height(surface.get())};
  const unsigned char* row = cairo_image_surface_get_data(surface.get());
  const auto width = static_cast<std::size_t>(image.width);
  image.pixels.resize(width * static_cast<std::size_t>(image.height));
  for (int y = 0; y < image.height; ++y, row += cairo_image_surface_get_stride(surface.get()))
    std::memcpy(&image.At(0, y), row, width * 4);
  if (isOpaque)
    for (std::uint32_t& pixel : image.pixels) pixel |= 0xFF000000;
  return image;
}

}  // namespace desk
