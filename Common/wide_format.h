// The formatter for the suite's templates ("%s /FU \"%s\"", "%04X;", "%016d").
//
// A directive is % [-] [0] [width] [.precision] [l, ll or I64] and one of s c d u x X; "%%" gives
// "%".
//   %s      text; a precision is the most characters taken of it. A null pointer gives "(null)".
//   %c      a character, or a number's low 16 bits
//   %d %u %x %X
//           a number's low 32 bits, with l too (a "long" of the suite's compilers has 32 bits); all
//           64 with ll or I64. A precision is the fewest digits, and turns the flag 0 off.
// Widths and precisions are in characters and at most kMaxFormatWidth.
//
// A template may be data of a driver set, so none can do harm: what is no such directive stands as
// it is written and takes no argument, and so does a % at the end. A directive without an argument
// left, or whose argument is of another kind, stands as it is written too; the latter uses its
// argument up. Arguments that no directive asks for are ignored. No locale has a say.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Common/fixed_text.h"

namespace vgl {

inline constexpr std::size_t kMaxFormatWidth = 512;

template <class T>
concept FormatNumber = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> &&
                       !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> &&
                       !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

// One argument. Made on the fly at the call; texts are looked at, not copied, and taken whole.
class FormatArg {
 public:
  enum class Kind { Text, Character, Number };

  FormatArg(std::u16string_view text) : m_kind(Kind::Text), m_text(text) {}
  FormatArg(const std::u16string& text) : FormatArg(std::u16string_view(text)) {}
  FormatArg(const char16_t* text) : FormatArg(std::u16string_view(text ? text : u"(null)")) {}
  template <std::size_t Capacity>
  FormatArg(const FixedText<Capacity>& text) : FormatArg(text.view()) {}
  FormatArg(char16_t character) : m_kind(Kind::Character), m_number(character) {}
  // Sign-extended to 64 bits when it is of a signed type.
  template <FormatNumber T>
  FormatArg(T number) : m_kind(Kind::Number), m_number(static_cast<std::uint64_t>(number)) {}

  Kind kind() const { return m_kind; }
  std::u16string_view text() const { return m_text; }
  std::uint64_t number() const { return m_number; }

 private:
  Kind m_kind;
  std::u16string_view m_text;
  std::uint64_t m_number = 0;
};

// What the templates below come down to.
std::u16string WideFormatArgs(std::u16string_view format, std::span<const FormatArg> args);

// The whole text.
template <class... Args>
std::u16string WideFormat(std::u16string_view format, const Args&... args) {
  const std::array<FormatArg, sizeof...(Args)> list{FormatArg(args)...};
  return WideFormatArgs(format, list);
}

// The whole text when it fits into `capacity` characters with its terminator, else nothing.
template <class... Args>
std::optional<std::u16string> WideFormatWithin(std::size_t capacity, std::u16string_view format,
                                               const Args&... args) {
  std::u16string text = WideFormat(format, args...);
  if (text.size() >= capacity) return std::nullopt;
  return text;
}

// Puts the text into `out`. False when it doesn't fit: `out` holds what it held. `out` may be an
// argument too.
template <std::size_t Capacity, class... Args>
[[nodiscard]] bool FormatTo(FixedText<Capacity>& out, std::u16string_view format,
                            const Args&... args) {
  return out.Assign(WideFormat(format, args...));
}

}  // namespace vgl
