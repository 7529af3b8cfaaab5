// The list "Separators" of the driver set, as "5,7,10": above which of the entries that are shown a
// separator stands, counted from 1.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "menu/ex_menu.h"

namespace vgl {

// One number for each slot there could be; 0 where the list has none, which is no entry's.
using SeparatorPlaces = std::array<std::int32_t, kExMenuSlots>;

// The numbers in the list's order, as they stand there: nothing is sorted, and what lies behind the
// 79th comma isn't looked at. What stands between two commas is read as a decimal number: blanks
// and a sign may precede it, other characters end it. Without a digit it is 0, and so is the
// highest and the lowest number of 32 bits, and what lies beyond.
SeparatorPlaces ParseSeparators(std::u16string_view list);

}  // namespace vgl
