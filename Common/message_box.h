// The one way to a message box.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/types.h"

namespace vgl {

// Whether any character of the text is written from right to left, by the system's default
// language.
bool HasRtlCharacter(std::u16string_view text);

// Shows a box with an OK button and waits for the answer, whose id is the result (0: not shown).
// Text and caption stand to the right, in right-to-left reading order, when either holds a
// right-to-left character. `owner` may be HWND{}; null texts count as empty.
std::int32_t MessageBoxRtl(platform::HWND owner, const char16_t* text, const char16_t* caption);

}  // namespace vgl
