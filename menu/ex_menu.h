// The extension slots of the context menu: entries that the printer's driver set describes.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "Common/fixed_text.h"
#include "menu/printer_identity.h"
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

  std::uint32_t nID = 0;        // 0 until the slot is first used
  platform::HBITMAP hBitmap{};  // owned; null: the entry has no picture
  FixedText<260> szMenuName;    // the label; its address is the data of the menu's item
};

// What the entries are made from, besides the driver set's values.
struct ExMenuSource {
  PrinterIdentity identity;
  std::u16string_view netPilot;  // file name of NetPilot; empty: there is none
  // Where labels and pictures are; needed no longer than for the call.
  platform::HMODULE texts{};
  platform::HMODULE pictures{};
};

// Adds the menu's tail to `popup`: a separator, and below it an owner-drawn item for each entry
// that the driver set describes and nothing hides, in the order of their ids, with the separators
// that the set asks for. Everything is read anew. A slot is hidden
//   - where the set has no command text of its id, or the library no label;
//   - as the entry that orders ink, where the driver has no such service or the printer's own data
//     switch it off;
//   - as an entry of NetPilot (" /UPPILOT", and " /DRVUPDATE" in a set without a driver-update
//     program), where there is no NetPilot or the printer's own data lock updates.
//
// `slots` are all 79 of them, have no pictures yet, and are to outlive the menu, which points into
// them; those that are hidden stay as they were. 1 when all were visited; 0 after an early stop
// (the menu key or the list of separators is too long, or there are less slots), and what has been
// added by then stays.
std::int32_t AddExMenu(platform::HMENU popup, const ExMenuSource& source,
                       std::span<ExMenuItem> slots);

// Deletes all pictures. The slots have none afterwards.
void DeletePictures(std::span<ExMenuItem> slots);

}  // namespace vgl
