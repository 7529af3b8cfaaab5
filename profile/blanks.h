// The blanks that stand around lines, names, values and fields of the driver set's data files.
#pragma once

#include <string_view>

namespace vgl {

// Blank, tab, line feed, vertical tab, form feed, carriage return. No other character is one, in
// whatever language.
template <class Character>
constexpr bool IsBlank(Character character) {
  return character == Character{' '} ||
         (character >= Character{'\t'} && character <= Character{'\r'});
}

// The part of `text` without the blanks in front of it.
template <class Character>
constexpr std::basic_string_view<Character> TrimLeft(std::basic_string_view<Character> text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  return text;
}

// The part of `text` without the blanks on both sides of it.
template <class Character>
constexpr std::basic_string_view<Character> Trim(std::basic_string_view<Character> text) {
  text = TrimLeft(text);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace vgl
