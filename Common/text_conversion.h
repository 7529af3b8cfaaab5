// Text and the bytes that stand for it outside, and comparison of the suite's own keywords.
//
// Nothing here fails and no locale has a say.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace vgl {

// UTF-16 little-endian bytes as text, each pair a character as it is: a byte-order mark and U+0000
// are characters like any other. An odd last byte counts with a zero byte behind it.
std::u16string TextFromUtf16Le(std::span<const std::byte> bytes);

// The text's characters as UTF-16 little-endian bytes, without byte-order mark or terminator.
std::string Utf16LeFromText(std::u16string_view text);

// For what the host itself prints and reads. A lone surrogate becomes one U+FFFD. So does a faulty
// part of the bytes: as many bytes as could still have begun a well-formed sequence, at least one;
// reading goes on with the byte behind them.
std::string Utf8FromText(std::u16string_view text);
std::u16string TextFromUtf8(std::string_view bytes);

// A null text counts as an empty one in most places.
constexpr bool IsMissing(const char16_t* text) { return text == nullptr || *text == u'\0'; }
constexpr const char16_t* OrEmpty(const char16_t* text) { return text == nullptr ? u"" : text; }

// `character`, if it is one of a to z in its upper case.
constexpr char16_t AsciiUpper(char16_t character) {
  const bool isLower = character >= u'a' && character <= u'z';
  return isLower ? static_cast<char16_t>(character - u'a' + u'A') : character;
}

// Whether the texts differ in nothing but the case of A to Z: how option names and keywords of the
// suite are compared. Names that the user sees go through lstrcmpiW.
bool EqualsIgnoringAsciiCase(std::u16string_view left, std::u16string_view right);

}  // namespace vgl
