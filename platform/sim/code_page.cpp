#include "platform/sim/code_page.h"

#include <algorithm>

namespace sim {

namespace {
// Where it isn't Latin-1: the characters of the bytes 0x80 to 0x9F.
constexpr std::u16string_view kUpper =
    u"\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D\u017D"
    u"\u008F"
    u"\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u009D\u017E"
    u"\u0178";
static_assert(kUpper.size() == 32);
}  // namespace

char16_t FromCodePage(char byte) {
  const auto number = static_cast<unsigned char>(byte);
  return number >= 0x80 && number < 0xA0 ? kUpper[number - 0x80u] : number;
}

char ToCodePage(char16_t c) {
  if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return static_cast<char>(c);
  const std::size_t found = kUpper.find(c);
  return found == std::u16string_view::npos ? '?' : static_cast<char>(0x80 + found);
}

std::u16string FromCodePage(std::string_view bytes) {
  std::u16string text(bytes.size(), u'\0');
  std::transform(bytes.begin(), bytes.end(), text.begin(),
                 [](char byte) { return FromCodePage(byte); });
  return text;
}

std::string ToCodePage(std::u16string_view text) {
  std::string bytes(text.size(), '\0');
  std::transform(text.begin(), text.end(), bytes.begin(), [](char16_t c) { return ToCodePage(c); });
  return bytes;
}

}  // namespace sim
