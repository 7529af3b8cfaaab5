#include "menu/separators.h"

#include <limits>

#include "profile/field_values.h"

namespace vgl {

namespace {

// The suite's reader can't tell the ends of its range from what lies beyond.
std::int32_t PlaceOf(std::u16string_view token) {
  const std::int32_t number = ParseDecimal(token);
  const bool isAtEnd = number == std::numeric_limits<std::int32_t>::max() ||
                       number == std::numeric_limits<std::int32_t>::min();
  return isAtEnd ? 0 : number;
}

}  // namespace

SeparatorPlaces ParseSeparators(std::u16string_view list) {
  SeparatorPlaces places{};
  for (std::int32_t& place : places) {
    const std::size_t comma = list.find(u',');
    place = PlaceOf(list.substr(0, comma));
    if (comma == std::u16string_view::npos) break;
    list.remove_prefix(comma + 1);
  }
  return places;
}

}  // namespace vgl
