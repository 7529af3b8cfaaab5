// Numbers and texts out of bytes that come from a file and may hold anything.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sim {

// Little-endian numbers one after the other. Behind the end there is nothing: the reader fails then
// and gives zeros from there on.
class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes, std::size_t position = 0)
      : m_bytes(bytes), m_position(position), m_failed(position > bytes.size()) {}

  bool failed() const { return m_failed; }
  std::size_t position() const { return m_position; }
  bool AtEnd() const { return m_failed || m_position == m_bytes.size(); }

  std::uint8_t Byte() { return static_cast<std::uint8_t>(Number(1)); }
  std::uint16_t Word() { return static_cast<std::uint16_t>(Number(2)); }
  std::uint32_t Dword() { return static_cast<std::uint32_t>(Number(4)); }

  void Skip(std::size_t count) {
    if (Has(count)) m_position += count;
  }
  // Goes on to the next multiple of 4; at the end of the bytes there may be less.
  void Align() {
    const std::size_t aligned = (m_position + 3) / 4 * 4;
    if (!m_failed) m_position = aligned < m_bytes.size() ? aligned : m_bytes.size();
  }

  // That many UTF-16 units.
  std::u16string Text(std::size_t units) {
    std::u16string text;
    if (units > m_bytes.size() / 2 || !Has(2 * units)) {
      m_failed = true;
      return text;
    }
    text.reserve(units);
    while (text.size() < units) text += static_cast<char16_t>(Word());
    return text;
  }
  // Up to a terminator, which must be there.
  std::u16string TextToTerminator() {
    std::u16string text;
    for (;;) {
      const auto unit = static_cast<char16_t>(Word());
      if (m_failed || unit == u'\0') return text;
      text += unit;
    }
  }

 private:
  bool Has(std::size_t count) {
    if (m_failed || count > m_bytes.size() - m_position) m_failed = true;
    return !m_failed;
  }
  std::uint64_t Number(std::size_t count) {
    if (!Has(count)) return 0;
    std::uint64_t number = 0;
    for (std::size_t i = count; i-- > 0;)
      number = number << 8 | static_cast<std::uint8_t>(m_bytes[m_position + i]);
    m_position += count;
    return number;
  }

  std::string_view m_bytes;
  std::size_t m_position;
  bool m_failed;
};

}  // namespace sim
