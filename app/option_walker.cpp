#include "app/option_walker.h"

#include <algorithm>
#include <limits>

namespace vgl {

namespace {

bool IsDigit(char16_t character) { return character >= u'0' && character <= u'9'; }

bool EndsName(char16_t character) {
  switch (character) {
    case u'\t':
    case u'\n':
    case u'\r':
    case u' ':
    case u'"':
    case u'/':
      return true;
    default:
      return IsDigit(character);
  }
}

// A length that doesn't fit stays at the highest number: more than any text has, like the length
// meant.
std::uint32_t WithDigit(std::uint32_t number, char16_t digit) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
  const std::uint64_t longer = std::uint64_t{number} * 10 + (digit - u'0');
  return static_cast<std::uint32_t>(std::min(longer, kMost));
}

}  // namespace

COptionWalker::COptionWalker(std::u16string_view text) : m_text(text.substr(0, text.find(u'\0'))) {}

std::optional<SeenOption> COptionWalker::Next() {
  for (; m_nPosition < m_text.size(); ++m_nPosition) {
    const char16_t character = m_text[m_nPosition];
    if (m_bOutsideQuotes && character == u'/') {
      m_option = ReadOption();
      // On behind the name. The characters of a value with a length are passed over unseen, up to
      // the quote that closes it. A value without one is walked through, its quotes telling what it
      // hides.
      m_nPosition = m_option.lastSkipped + 1;
      if (m_option.length != 0) m_nPosition += std::size_t{m_option.length} + 1;
      return m_option;
    }
    // Behind a value with a length, quotes mean nothing until the next option.
    if (m_option.length == 0 && character == u'"') m_bOutsideQuotes = !m_bOutsideQuotes;
  }
  return std::nullopt;
}

// The option whose slash stands at the position.
SeenOption COptionWalker::ReadOption() {
  const std::size_t nameAt = m_nPosition + 1;
  std::size_t at = nameAt;
  while (at < m_text.size() && !EndsName(m_text[at])) ++at;

  SeenOption option;
  option.name = m_text.substr(nameAt, at - nameAt);
  for (; at < m_text.size(); ++at) {
    const char16_t character = m_text[at];
    if (character == u'"' || character == u'/' || character == u'\n') break;
    if (IsDigit(character)) option.length = WithDigit(option.length, character);
  }
  option.lastSkipped = at - 1;
  return option;
}

std::optional<std::u16string_view> COptionWalker::Value() {
  if (m_option.length == 0) return QuotedValue();
  const std::uint64_t lastOfValue = std::uint64_t{m_option.length} + m_option.lastSkipped + 1;
  if (lastOfValue >= m_text.size()) return std::u16string_view();
  const std::size_t quote = QuoteFrom(m_option.lastSkipped);
  if (quote == std::u16string_view::npos) return std::nullopt;
  // The test above takes it that the quote follows at once. Where it stands later, the text may end
  // before the value does.
  return m_text.substr(quote + 1, m_option.length);
}

// The value of an option without a length: what stands between the next two quotes, unless a slash,
// a line feed or the end comes before the first. The line feed or the end stands for a missing
// second.
std::u16string_view COptionWalker::QuotedValue() const {
  std::size_t at = m_option.lastSkipped;
  while (at < m_text.size() && m_text[at] != u'"') {
    if (m_text[at] == u'/' || m_text[at] == u'\n') return {};
    ++at;
  }
  if (at >= m_text.size()) return {};
  const std::size_t valueAt = ++at;
  while (at < m_text.size() && m_text[at] != u'"' && m_text[at] != u'\n') ++at;
  return m_text.substr(valueAt, at - valueAt);
}

// Where the first quote at or behind `position` stands. Positions only ever grow, so the last
// answer is kept: many options in front of a single quote must not search the same stretch again
// and again.
std::size_t COptionWalker::QuoteFrom(std::size_t position) {
  if (m_nNextQuote < position) m_nNextQuote = m_text.find(u'"', position);
  return m_nNextQuote;
}

}  // namespace vgl
