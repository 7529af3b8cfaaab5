#include "platform/sim/text.h"

#include <locale.h>
#include <algorithm>
#include <clocale>
#include <cwctype>

namespace sim {

std::u16string Hex(std::uint64_t number, int digits) {
  std::u16string text;
  do {
    text.insert(text.begin(), u"0123456789ABCDEF"[number % 16]);
    number /= 16;
  } while (number != 0 || text.size() < static_cast<std::size_t>(digits));
  return text;
}

std::u16string Decimal(std::uint64_t number) {
  std::u16string text;
  do {
    text.insert(text.begin(), static_cast<char16_t>(u'0' + number % 10));
    number /= 10;
  } while (number != 0);
  return text;
}

char16_t FoldCase(char16_t c) {
  if (c < 0x80) return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
  static const locale_t kUnicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return static_cast<char16_t>(towlower_l(static_cast<wint_t>(c), kUnicode));
}

std::u16string FoldCase(std::u16string_view text) {
  std::u16string folded(text);
  for (char16_t& c : folded) c = FoldCase(c);
  return folded;
}

std::uint32_t CopyCut(std::u16string_view text, char16_t* out, std::uint32_t chars) {
  if (chars == 0) return 0;
  const std::size_t count = std::min<std::size_t>(text.size(), chars - 1);
  std::copy_n(text.data(), count, out);
  out[count] = 0;
  return static_cast<std::uint32_t>(count);
}

}  // namespace sim
