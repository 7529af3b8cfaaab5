// The extension slots of the context menu: entries that the printer's driver set describes.
#pragma once

#include <cstdint>

#include "Common/fixed_text.h"
#include "platform/types.h"

namespace vgl {

// Slot i has the id kFirstExMenuId + i, which is at once its command, its label's string resource,
// its picture's bitmap resource and, in decimal, the name of its value in the driver set.
inline constexpr std::uint32_t kFirstExMenuId = 920;
inline constexpr std::int32_t kExMenuSlots = 79;

// One slot, as it was when the menu was last built.
class ExMenuItem {
 public:
  virtual ~ExMenuItem() = default;

  std::uint32_t nID = 0;  // 0 until the slot is first used
  platform::HBITMAP hBitmap{};
  FixedText<260> szMenuName;
};

}  // namespace vgl
