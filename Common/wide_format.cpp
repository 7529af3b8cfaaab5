#include "Common/wide_format.h"

namespace vgl {

namespace {

struct Directive {
  bool leftAligned = false;
  bool zeroPadded = false;
  std::size_t width = 0;
  std::optional<std::size_t> precision;
  bool is64Bit = false;
  char16_t conversion = 0;
  std::size_t length = 0;  // of its text in the template, with the %
};

// Reads a directive's text from left to right.
class DirectiveReader {
 public:
  explicit DirectiveReader(std::u16string_view text) : m_text(text) {}

  bool Take(std::u16string_view expected) {
    if (m_text.substr(m_position, expected.size()) != expected) return false;
    m_position += expected.size();
    return true;
  }

  // The number that stands here, 0 when there is none; nothing when it is more than anybody means.
  std::optional<std::size_t> TakeWidth() {
    std::size_t width = 0;
    for (; m_position < m_text.size(); ++m_position) {
      const char16_t digit = m_text[m_position];
      if (digit < u'0' || digit > u'9') break;
      width = width * 10 + (digit - u'0');
      if (width > kMaxFormatWidth) return std::nullopt;
    }
    return width;
  }

  char16_t TakeCharacter() { return m_position < m_text.size() ? m_text[m_position++] : u'\0'; }
  std::size_t position() const { return m_position; }

 private:
  std::u16string_view m_text;
  std::size_t m_position = 0;
};

// The directive at the start of `text`, which begins with %; nothing when there is none.
std::optional<Directive> ReadDirective(std::u16string_view text) {
  DirectiveReader reader(text.substr(1));
  Directive directive;
  for (bool isFlag = true; isFlag;) {
    isFlag = false;
    if (reader.Take(u"-")) isFlag = directive.leftAligned = true;
    if (reader.Take(u"0")) isFlag = directive.zeroPadded = true;
  }

  const std::optional<std::size_t> width = reader.TakeWidth();
  if (!width) return std::nullopt;
  directive.width = *width;
  if (reader.Take(u".")) {
    directive.precision = reader.TakeWidth();
    if (!directive.precision) return std::nullopt;
  }

  directive.is64Bit = reader.Take(u"ll") || reader.Take(u"I64");
  if (!directive.is64Bit) reader.Take(u"l");

  directive.conversion = reader.TakeCharacter();
  constexpr std::u16string_view kConversions = u"scduxX";
  if (kConversions.find(directive.conversion) == std::u16string_view::npos) return std::nullopt;
  directive.length = 1 + reader.position();
  return directive;
}

bool IsOfTheKind(const FormatArg& arg, char16_t conversion) {
  if (conversion == u's') return arg.kind() == FormatArg::Kind::Text;
  if (conversion == u'c') return arg.kind() != FormatArg::Kind::Text;
  return arg.kind() == FormatArg::Kind::Number;
}

void AppendText(std::u16string& out, const Directive& directive, std::u16string_view text) {
  const std::size_t fill = directive.width > text.size() ? directive.width - text.size() : 0;
  if (!directive.leftAligned) out.append(fill, u' ');
  out.append(text);
  if (directive.leftAligned) out.append(fill, u' ');
}

// The digits without sign; no digit at all for 0.
std::u16string Digits(std::uint64_t value, unsigned base, bool upperCase) {
  const std::u16string_view symbols = upperCase ? u"0123456789ABCDEF" : u"0123456789abcdef";
  std::u16string digits;
  for (; value != 0; value /= base) digits.insert(digits.begin(), symbols[value % base]);
  return digits;
}

void AppendNumber(std::u16string& out, const Directive& directive, std::uint64_t bits) {
  const bool isSigned = directive.conversion == u'd';
  std::uint64_t value = directive.is64Bit ? bits : static_cast<std::uint32_t>(bits);
  const std::uint64_t signBit = directive.is64Bit ? std::uint64_t{1} << 63 : std::uint64_t{1} << 31;
  const bool isNegative = isSigned && (value & signBit) != 0;
  if (isNegative) value = directive.is64Bit ? 0 - value : static_cast<std::uint32_t>(0 - value);

  const bool isHex = directive.conversion == u'x' || directive.conversion == u'X';
  std::u16string text = Digits(value, isHex ? 16 : 10, directive.conversion == u'X');
  std::size_t fewest = directive.precision.value_or(1);
  if (directive.zeroPadded && !directive.leftAligned && !directive.precision)
    fewest = std::max(fewest, directive.width - std::min<std::size_t>(directive.width, isNegative));
  if (text.size() < fewest) text.insert(0, fewest - text.size(), u'0');
  if (isNegative) text.insert(text.begin(), u'-');
  AppendText(out, directive, text);
}

void AppendArgument(std::u16string& out, const Directive& directive, const FormatArg& arg) {
  if (directive.conversion == u's') {
    AppendText(out, directive, arg.text().substr(0, directive.precision.value_or(SIZE_MAX)));
  } else if (directive.conversion == u'c') {
    const char16_t character = static_cast<char16_t>(arg.number());
    AppendText(out, directive, {&character, 1});
  } else {
    AppendNumber(out, directive, arg.number());
  }
}

}  // namespace

std::u16string WideFormatArgs(std::u16string_view format, std::span<const FormatArg> args) {
  std::u16string out;
  while (!format.empty()) {
    const std::size_t percent = std::min(format.find(u'%'), format.size());
    out.append(format.substr(0, percent));
    format.remove_prefix(percent);
    if (format.empty()) break;

    if (format.starts_with(u"%%")) {
      out.push_back(u'%');
      format.remove_prefix(2);
      continue;
    }
    const std::optional<Directive> directive = ReadDirective(format);
    if (!directive) {  // whatever follows the % is plain text again
      out.push_back(u'%');
      format.remove_prefix(1);
      continue;
    }
    const std::u16string_view written = format.substr(0, directive->length);
    format.remove_prefix(directive->length);
    if (args.empty() || !IsOfTheKind(args.front(), directive->conversion))
      out.append(written);
    else
      AppendArgument(out, *directive, args.front());
    if (!args.empty()) args = args.subspan(1);
  }
  return out;
}

}  // namespace vgl
