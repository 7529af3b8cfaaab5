// Measuring and drawing of the menu's extension entries: a picture, where the entry has one, with a
// shield over it where choosing the entry asks for elevation, and the label beside it; all of it
// mirrored in a language that reads from right to left.
//
// Each call gives back all that it makes; what fails leaves an entry narrower or blank. There is no
// grey and no checked look: the menu has no such entries.
#pragma once

#include "menu/ex_menu.h"
#include "menu/printer_identity.h"
#include "platform/owner_draw.h"

namespace vgl {

// Fills in the size of an entry, in pixels: as wide as a check mark and its label, as high as a
// menu line. Its picture isn't counted.
void MeasureExMenuItem(const ExMenuItem& slot, platform::MeasureItem& item);

// Draws an entry into `item.area` of the context, which keeps its own font, colours and alignment.
// The driver set of `identity` is asked at each drawing whether the entry is the driver update's:
// the shield is for that one, and lies on a picture only.
void DrawExMenuItem(const ExMenuItem& slot, const platform::DrawItem& item, bool rightToLeft,
                    const PrinterIdentity& identity);

}  // namespace vgl
