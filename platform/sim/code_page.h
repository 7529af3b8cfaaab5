// The machine's code page, 1252: Western European.
#pragma once

namespace sim {

char16_t FromCodePage(char byte);
// '?' for a character that the code page lacks.
char ToCodePage(char16_t c);

}  // namespace sim
