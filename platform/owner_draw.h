// What WM_MEASUREITEM and WM_DRAWITEM point to in lParam. The layouts are Windows' own, for 64-bit
// programs; the pointer is good while the message is handled.
//
// When a menu is shown its owner gets the first for each item with MFT_OWNERDRAW, from top to
// bottom, and then the second for each; and the second again for an item that becomes selected or
// is left. Separators and items with a text are the system's.
#pragma once

#include "platform/geometry.h"
#include "platform/types.h"

namespace platform {

inline constexpr std::uint32_t ODT_MENU = 1;  // controlType
// DrawItem::action
inline constexpr std::uint32_t ODA_DRAWENTIRE = 1;
inline constexpr std::uint32_t ODA_SELECT = 2;
// DrawItem::state
inline constexpr std::uint32_t ODS_SELECTED = 1;

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
  HWND owner;         // of a menu item: the menu
  HDC deviceContext;  // to be given back as it was, but for what is drawn on it
  Rect area;
  std::uint64_t itemData;
};

}  // namespace platform
