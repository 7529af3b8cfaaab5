// Small text helpers of the simulation: numbers in words, case folding as the machine does it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace sim {

std::u16string Decimal(std::uint64_t number);
std::u16string Hex(std::uint64_t number, int digits = 0);

// One character without its case; what file names, registry names and lstrcmpiW compare by.
char16_t FoldCase(char16_t c);
std::u16string FoldCase(std::u16string_view text);

// A text parameter that may be null.
inline std::u16string_view View(const char16_t* text) {
  return text == nullptr ? std::u16string_view{} : std::u16string_view(text);
}

}  // namespace sim
