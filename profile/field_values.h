// The values of an install description's lines: comma lists with quotes, strings and numbers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vgl {

// Walks over the fields of a comma list, each once. A field is bare text up to the next comma, or a
// text in double quotes, in which two quotes stand for one. The list must outlive the walker.
class CFieldWalker {
 public:
  explicit CFieldWalker(std::u16string_view list) : m_rest(list) {}

  // The next field as it stands: blanks and the quotes around it are kept, two quotes in a row are
  // one. Empty behind the last field.
  std::u16string Next();
  // Likewise without a copy where there needn't be one: a part of the list, or of `room`.
  std::u16string_view Next(std::u16string& room);
  // Passes over a field.
  void Skip();

 private:
  std::u16string_view m_rest;  // from the next field on
};

// The field at `index`, counted from 0; empty when there are less. Who wants one field after the
// other takes a CFieldWalker.
std::u16string GetField(std::u16string_view list, std::size_t index);

// The text between the quotes at both ends of `field`, a part of it. Empty for a field that isn't
// enclosed in quotes: its line is to be dropped, as one that names nothing.
std::u16string_view Unquote(std::u16string_view field);

// Whether a field is meant as a string (REG_SZ: it begins and ends with a quote, or speaks of one
// of the folders DRIVERDIR and SYSTEMDIR in any case) or as a number (REG_DWORD: everything else,
// also nothing). Outer blanks don't count.
std::uint32_t ClassifyValue(std::u16string_view field);

// The number at the beginning of `field`: hexadecimal when it begins with 0x or 0X, else decimal.
// Blanks and a sign may stand in front of the digits; the first other character ends it, and
// without a digit it is 0. Always a number of 32 bits with sign: what lies beyond is the nearest
// one.
std::int64_t ParseNumber(std::u16string_view field);
// The same, but always decimal: an x ends it.
std::int32_t ParseDecimal(std::u16string_view text);

}  // namespace vgl
