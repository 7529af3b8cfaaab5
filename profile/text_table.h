// The text table: a profile file whose section UT has a shown text for each text of a program, as
//   "Order ink"="Order ink\r\nonline";
#pragma once

#include <optional>
#include <string>

namespace vgl {

// What the table at `path` has for `text`. In it \r, \n and \" stand for carriage return, line feed
// and quote, and two quotes for one. Nothing when `text` or `path` is null or empty, when the
// table hasn't the text, when its value isn't of the form "...";, and when that value has more than
// 4094 characters.
std::optional<std::u16string> ReadTableText(const char16_t* text, const char16_t* path);

}  // namespace vgl
