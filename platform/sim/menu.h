// A menu of the simulated machine: its items, and those of the menus that open from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/menus.h"

namespace sim {

struct MenuItem {
  std::uint32_t id = 0;
  std::uint32_t type = platform::MFT_STRING;
  std::uint32_t state = platform::MFS_ENABLED;
  std::u16string text;
  std::uint64_t itemData = 0;
  // The list in MenuLists that opens from it; 0: none.
  std::size_t popup = 0;

  // One that is added, or is in a standard template, is disabled.
  void MakeSeparator() {
    type |= platform::MFT_SEPARATOR;
    state |= platform::MFS_GRAYED;
  }
  bool IsSeparator() const { return (type & platform::MFT_SEPARATOR) != 0; }
  bool CanBeChosen() const {
    return !IsSeparator() && (state & platform::MFS_GRAYED) == 0 && popup == 0;
  }
};

// What MenuItem::type and MenuItem::state may hold; the bits are Windows'.
inline constexpr std::uint32_t kMenuItemTypes = 0x6B64;
inline constexpr std::uint32_t kMenuItemStates = 0x108B;

// The two out of the flags of AppendMenuW, ModifyMenuW and a standard template.
inline std::uint32_t TypeOfFlags(std::uint32_t flags) {
  // The bit of MFT_RADIOCHECK means something else there.
  return flags & kMenuItemTypes & ~std::uint32_t{0x200};
}
inline std::uint32_t StateOfFlags(std::uint32_t flags) {
  return flags & (platform::MF_GRAYED | platform::MF_DISABLED | platform::MF_CHECKED);
}

// The menu itself at 0, and behind it each that opens from one of them. One that was destroyed is
// nothing.
using MenuLists = std::vector<std::optional<std::vector<MenuItem>>>;

// The menu of a template, in the standard or the extended form. Nothing when it is malformed.
std::optional<MenuLists> ReadMenuTemplate(std::string_view bytes);

}  // namespace sim
