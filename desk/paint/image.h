// Pictures as pixels, and their PNG files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace desk {

// Rows from the top, without a gap between them. A pixel is 0xAARRGGBB, its colours multiplied by
// alpha.
struct Image {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;

  std::uint32_t At(int x, int y) const { return pixels[Index(x, y)]; }
  std::uint32_t& At(int x, int y) { return pixels[Index(x, y)]; }

 private:
  std::size_t Index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
           static_cast<std::size_t>(x);
  }
};

// A PNG file's bytes; empty when it can't be made, as of a picture of more than 32,767 pixels a
// side.
std::string EncodePng(const Image& image);
// Nothing for what is no PNG file, not a whole one, or one of more than 2,048 pixels a side.
std::optional<Image> DecodePng(std::string_view bytes);

}  // namespace desk
