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

inline std::string_view ViewNarrow(const char* text) {
  return text == nullptr ? std::string_view{} : std::string_view(text);
}

// Copies with its terminator what fits into `chars` characters; the number copied without it.
std::uint32_t CopyCut(std::u16string_view text, char16_t* out, std::uint32_t chars);

}  // namespace sim
