#include "desk/paint/picture_pixels.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>

#include "platform/sim/byte_reader.h"

namespace desk {

namespace {

// --- What stands in front of the rows

constexpr std::uint32_t kCoreHeaderSize = 12;
constexpr std::uint32_t kInfoHeaderSize = 40;
constexpr std::uint32_t kUncompressed = 0;
constexpr std::uint32_t kBitFields = 3;
constexpr std::uint32_t kOpaque = 0xFF000000;

// Where red, green and blue are in a pixel.
using Masks = std::array<std::uint32_t, 3>;

struct Layout {
  std::uint64_t width = 0;
  std::uint64_t rows = 0;  // of an icon with those of its mask
  bool isTopDown = false;
  std::uint16_t bits = 0;
  Masks masks{};
  std::vector<std::uint32_t> palette;  // 0xFFRRGGBB
  std::uint64_t rowsPlace = 0;
};

bool HasPalette(std::uint16_t bits) { return bits == 1 || bits == 4 || bits == 8; }

Masks UsualMasks(std::uint16_t bits) {
  return bits == 16 ? Masks{0x7C00, 0x03E0, 0x001F} : Masks{0xFF0000, 0xFF00, 0xFF};
}

void ReadPalette(std::string_view bytes, Layout& layout, std::uint32_t size, std::uint32_t used) {
  const bool isCore = size == kCoreHeaderSize;
  const std::uint64_t most = HasPalette(layout.bits) ? std::uint64_t{1} << layout.bits : 0;
  const std::uint64_t told = used != 0 ? used : most;
  sim::ByteReader reader(bytes, layout.rowsPlace);
  layout.rowsPlace += told * (isCore ? 3 : 4);
  for (std::uint64_t i = 0; i < std::min(told, most); ++i) {
    const std::uint32_t blue = reader.Byte();
    const std::uint32_t green = reader.Byte();
    const std::uint32_t red = reader.Byte();
    if (!isCore) reader.Byte();
    layout.palette.push_back(kOpaque | red << 16 | green << 8 | blue);
  }
}

std::optional<Layout> ReadLayout(std::string_view bytes) {
  sim::ByteReader reader(bytes);
  const std::uint32_t size = reader.Dword();
  const bool isCore = size == kCoreHeaderSize;
  if (!isCore && size < kInfoHeaderSize) return std::nullopt;
  const std::int64_t width = isCore ? reader.Word() : static_cast<std::int32_t>(reader.Dword());
  const std::int64_t height = isCore ? reader.Word() : static_cast<std::int32_t>(reader.Dword());
  reader.Word();  // planes
  Layout layout{.width = static_cast<std::uint64_t>(width),
                .rows = static_cast<std::uint64_t>(std::abs(height)),
                .isTopDown = height < 0,
                .bits = reader.Word()};
  const std::uint32_t compression = isCore ? kUncompressed : reader.Dword();
  if (!isCore) reader.Skip(12);  // bytes of the rows, pixels a metre
  const std::uint32_t used = isCore ? 0 : reader.Dword();
  if (!isCore) reader.Skip(4);  // colours that matter
  if (reader.failed() || width <= 0) return std::nullopt;

  const bool hasMasks = layout.bits == 16 || layout.bits == 32;
  if (!HasPalette(layout.bits) && !hasMasks && layout.bits != 24) return std::nullopt;
  if (compression != kUncompressed && (compression != kBitFields || !hasMasks)) return std::nullopt;
  layout.masks = UsualMasks(layout.bits);
  layout.rowsPlace = size;
  if (compression == kBitFields) {
    // Behind the header that has no place for them, else at the same place in it.
    for (std::uint32_t& mask : layout.masks) mask = reader.Dword();
    if (size == kInfoHeaderSize) layout.rowsPlace += 12;
  }
  ReadPalette(bytes, layout, size, used);
  return layout;
}

// --- Rows

std::uint64_t RowBytes(std::uint64_t width, std::uint16_t bits) {
  return (width * bits + 31) / 32 * 4;
}

// The bytes from `place` on, when they hold that many rows.
std::string_view RowsAt(std::string_view bytes, std::uint64_t place, std::uint64_t rowBytes,
                        std::uint64_t rows) {
  if (place > bytes.size() || rows == 0 || rows > (bytes.size() - place) / rowBytes) return {};
  return bytes.substr(place, rows * rowBytes);
}

std::uint32_t ByteAt(std::string_view row, std::size_t place) {
  return static_cast<std::uint8_t>(row[place]);
}

// Of a row with at most 8 bits a pixel.
std::uint32_t NumberAt(std::string_view row, std::size_t x, std::uint16_t bits) {
  const std::size_t perByte = 8 / bits;
  const std::size_t shift = (perByte - 1 - x % perByte) * bits;
  return ByteAt(row, x / perByte) >> shift & ((1U << bits) - 1);
}

// The value behind a mask, brought to 0 to 255.
std::uint32_t Masked(std::uint32_t pixel, std::uint32_t mask) {
  if (mask == 0) return 0;
  const int shift = std::countr_zero(mask);
  return static_cast<std::uint32_t>(std::uint64_t{(pixel & mask) >> shift} * 255 / (mask >> shift));
}

// The pixel as it stands in the row.
std::uint32_t RawAt(std::string_view row, std::size_t x, std::uint16_t bits) {
  const std::size_t bytes = bits / 8;
  std::uint32_t raw = 0;
  for (std::size_t i = bytes; i-- > 0;) raw = raw << 8 | ByteAt(row, x * bytes + i);
  return raw;
}

std::uint32_t ColourAt(std::string_view row, std::size_t x, const Layout& layout) {
  if (HasPalette(layout.bits)) {
    const std::uint32_t number = NumberAt(row, x, layout.bits);
    return number < layout.palette.size() ? layout.palette[number] : kOpaque;
  }
  const std::uint32_t raw = RawAt(row, x, layout.bits);
  const auto& [red, green, blue] = layout.masks;
  return kOpaque | Masked(raw, red) << 16 | Masked(raw, green) << 8 | Masked(raw, blue);
}

// Row `y` from the top.
std::string_view RowAt(std::string_view rows, const Layout& layout, std::uint16_t bits, int y) {
  const std::uint64_t rowBytes = RowBytes(layout.width, bits);
  const std::uint64_t count = rows.size() / rowBytes;
  const auto fromTop = static_cast<std::uint64_t>(y);
  return rows.substr((layout.isTopDown ? fromTop : count - 1 - fromTop) * rowBytes, rowBytes);
}

// Opaque throughout; nothing of no rows.
std::optional<Image> ReadRows(std::string_view rows, const Layout& layout) {
  if (rows.empty()) return std::nullopt;
  Image image{.width = static_cast<int>(layout.width),
              .height = static_cast<int>(rows.size() / RowBytes(layout.width, layout.bits))};
  image.pixels.reserve(layout.width * static_cast<std::size_t>(image.height));
  for (int y = 0; y < image.height; ++y) {
    const std::string_view row = RowAt(rows, layout, layout.bits, y);
    for (std::size_t x = 0; x < layout.width; ++x) image.pixels.push_back(ColourAt(row, x, layout));
  }
  return image;
}

// --- Icons

std::uint32_t WithAlpha(std::uint32_t opaque, std::uint32_t alpha) {
  std::uint32_t pixel = alpha << 24;
  for (int shift = 0; shift < 24; shift += 8)
    pixel |= ((opaque >> shift & 0xFF) * alpha + 127) / 255 << shift;
  return pixel;
}

// Whether the icon's pixels tell themselves how much is to be seen of them.
bool HasAlpha(std::string_view rows, const Layout& layout) {
  if (layout.bits != 32) return false;
  for (std::size_t place = 3; place < rows.size(); place += 4)
    if (rows[place] != 0) return true;
  return false;
}

std::optional<Image> ReadIcon(std::string_view bytes, const Layout& layout) {
  const std::uint64_t height = layout.rows / 2;
  const std::uint64_t rowBytes = RowBytes(layout.width, layout.bits);
  const std::string_view rows = RowsAt(bytes, layout.rowsPlace, rowBytes, height);
  const std::string_view mask =
      RowsAt(bytes, layout.rowsPlace + rows.size(), RowBytes(layout.width, 1), height);
  if (rows.empty() || mask.empty()) return std::nullopt;
  std::optional<Image> image = ReadRows(rows, layout);
  const bool hasAlpha = HasAlpha(rows, layout);
  for (int y = 0; y < image->height; ++y) {
    const std::string_view colours = RowAt(rows, layout, layout.bits, y);
    const std::string_view masked = RowAt(mask, layout, 1, y);
    for (int x = 0; x < image->width; ++x) {
      const auto column = static_cast<std::size_t>(x);
      const std::uint32_t unmasked = NumberAt(masked, column, 1) == 0 ? 0xFF : 0;
      const std::uint32_t alpha = hasAlpha ? ByteAt(colours, 4 * column + 3) : unmasked;
      image->At(x, y) = WithAlpha(image->At(x, y), alpha);
    }
  }
  return image;
}

}  // namespace

std::optional<Image> PixelsOf(const sim::Picture& picture, PictureUse use) {
  if (picture.isPng) return DecodePng(picture.bytes);
  const std::string_view bytes = picture.bytes;
  const std::optional<Layout> layout = ReadLayout(bytes);
  if (!layout) return std::nullopt;
  if (use == PictureUse::kIcon) return ReadIcon(bytes, *layout);
  const std::uint64_t rowBytes = RowBytes(layout->width, layout->bits);
  return ReadRows(RowsAt(bytes, layout->rowsPlace, rowBytes, layout->rows), *layout);
}

}  // namespace desk
