// The option grammar read as it is defined: in passes, each from the front of the text. Slow and
// literal on purpose; what the agent's single walk is measured against. Shares no code with it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vgl::test {

struct NaiveOption {
  std::u16string name;
  std::u16string value;

  friend bool operator==(const NaiveOption&, const NaiveOption&) = default;
};

enum class NaiveEnd { TextEnds, NoQuoteFollows, ValueTooLong, NameTooLong };

struct NaiveReading {
  std::vector<NaiveOption> applied;  // in order
  NaiveEnd end = NaiveEnd::TextEnds;
};

class NaiveOptionReader {
 public:
  // The text ends at its first U+0000.
  explicit NaiveOptionReader(const std::u16string& text)
      : m_text(text.substr(0, text.find(u'\0'))) {}

  NaiveReading ReadAll() {
    NaiveReading reading;
    for (std::size_t number = 0;; ++number) {
      m_name.clear();
      m_value.clear();
      if (m_text.empty() || !FindOption(number)) return reading;
      if (m_name.size() >= 80) {
        reading.end = NaiveEnd::NameTooLong;
        return reading;
      }
      if (!(m_length != 0 ? TakeValueByLength() : TakeValueByQuotes())) {
        reading.end = NaiveEnd::NoQuoteFollows;
        return reading;
      }
      if (m_value.size() >= 260) {
        reading.end = NaiveEnd::ValueTooLong;
        return reading;
      }
      reading.applied.push_back({m_name, m_value});
    }
  }

 private:
  // U+0000 behind the end.
  char16_t At(std::size_t position) const {
    return position < m_text.size() ? m_text[position] : u'\0';
  }
  static bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

  // One pass. Leaves name, length and position of option `number`.
  bool FindOption(std::size_t number) {
    bool outsideQuotes = true;
    std::size_t seen = 0;
    m_length = 0;
    for (m_position = 0; m_position < m_text.size(); ++m_position) {
      if (outsideQuotes && At(m_position) == u'/') {
        ReadNameAndLength();
        if (seen == number) return true;
        ++seen;
        if (m_length != 0)
          m_position += m_length + 1;
        else if (At(m_position) == u'"')
          outsideQuotes = !outsideQuotes;
      } else if (m_length == 0 && At(m_position) == u'"') {
        outsideQuotes = !outsideQuotes;
      }
    }
    return false;
  }

  void ReadNameAndLength() {
    const std::u16string endsName(u"\0\t\n\r \"/0123456789", 17);
    const std::u16string endsDigits(u"\0\"/\n", 4);
    m_name.clear();
    m_length = 0;
    std::size_t next = m_position + 1;
    while (endsName.find(At(next)) == std::u16string::npos) m_name += At(next++);
    while (endsDigits.find(At(next)) == std::u16string::npos) {
      if (IsDigit(At(next))) m_length = m_length * 10 + (At(next) - u'0');
      if (m_length > 0xFFFFFFFF) m_length = 0xFFFFFFFF;
      ++next;
    }
    m_position = next - 1;
  }

  bool TakeValueByLength() {
    if (!(m_length + m_position + 1 < m_text.size())) return true;
    std::size_t quote = m_position;
    while (quote < m_text.size() && At(quote) != u'"') ++quote;
    if (quote == m_text.size()) return false;
    for (std::size_t i = 0; i < m_length; ++i)
      if (quote + 1 + i < m_text.size()) m_value += At(quote + 1 + i);
    return true;
  }

  bool TakeValueByQuotes() {
    bool insideQuote = false;
    std::size_t firstQuote = 0;
    std::size_t count = 0;
    for (std::size_t i = m_position; i < m_text.size(); ++i) {
      const char16_t c = At(i);
      if ((c == u'/' && !insideQuote) || c == u'\n') break;
      if (c == u'"' && insideQuote) break;
      if (c == u'"') {
        insideQuote = true;
        firstQuote = i;
      } else if (insideQuote) {
        ++count;
      }
    }
    if (count != 0 && count + m_position + 1 < m_text.size())
      m_value = m_text.substr(firstQuote + 1, count);
    return true;
  }

  std::u16string m_text;
  std::u16string m_name;
  std::u16string m_value;
  std::uint64_t m_length = 0;
  std::size_t m_position = 0;
};

}  // namespace vgl::test
