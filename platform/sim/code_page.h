// The machine's code page, 1252: Western European.
#pragma once

#include <string>
#include <string_view>

namespace sim {

char16_t FromCodePage(char byte);
// '?' for a character that the code page lacks.
char ToCodePage(char16_t c);

std::u16string FromCodePage(std::string_view bytes);
std::string ToCodePage(std::u16string_view text);

}  // namespace sim
