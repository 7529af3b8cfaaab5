// Text in the system's code page.
#pragma once

#include <string>

namespace vgl {

// A text up to its terminator in UTF-16. Empty for an empty one, and for one that can't be
// converted.
std::u16string FromCodePage(const char* text);

}  // namespace vgl
