// What the programs that stand in for those of the suite and of a driver set have in common: they
// read what they were given and write it down.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace desk {

// The value of an option's last appearance in an option text; nothing when it hasn't that option.
std::optional<std::u16string> OptionValue(std::u16string_view text, std::u16string_view name);

// Adds a text, as UTF-8, at the end of a file that is made when it is missing. In one piece, so
// that what several programs write at once stands one behind the other. False when it can't be
// written.
bool AppendToLog(const char16_t* path, std::u16string_view text);

}  // namespace desk
