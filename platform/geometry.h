// Places and sizes on a screen or a drawing surface, in pixels from its upper left corner. The
// layouts are Windows' own.
#pragma once

#include <cstdint>

namespace platform {

struct Point {
  std::int32_t x = 0;
  std::int32_t y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
  std::int32_t width = 0;
  std::int32_t height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

// `right` and `bottom` are just outside.
struct Rect {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t right = 0;
  std::int32_t bottom = 0;
  friend bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace platform
