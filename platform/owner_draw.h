// What WM_MEASUREITEM and WM_DRAWITEM point to in lParam. The layouts are Windows' own, for 64-bit
// programs; the pointer is good while the message is handled.
#pragma once

#include "platform/types.h"

namespace platform {

struct MeasureItem {
  std::uint32_t controlType;
  std::uint32_t controlId;
  std::uint32_t itemId;
  std::uint32_t width;   // to be filled in, in pixels
  std::uint32_t height;  // likewise
  std::uint64_t itemData;
};

struct DrawItem {
  std::uint32_t controlType;
  std::uint32_t controlId;
  std::uint32_t itemId;
  std::uint32_t action;
  std::uint32_t state;
  HWND owner;  // of a menu item: the menu
  std::uint64_t deviceContext;
  std::int32_t left, top, right, bottom;
  std::uint64_t itemData;
};

}  // namespace platform
