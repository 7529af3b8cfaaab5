// The text of a profile file, read line by line where it lies: nothing is copied but what is asked
// for.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/sim/code_page.h"

namespace sim {

// A piece of the file's text.
struct IniSpan {
  std::size_t begin = 0;
  std::size_t end = 0;

  std::size_t size() const { return end - begin; }
  bool empty() const { return begin == end; }
};

// A line that says something, without outer blanks.
struct IniLine {
  IniSpan text;
  std::optional<std::size_t> equals;  // where the first equals sign is
};

class IniFile {
 public:
  // `bytes` are characters of the machine's code page, or UTF-16 little-endian with its mark. They
  // have to outlive the reading.
  explicit IniFile(std::string_view bytes);

  // Goes behind the header of the first section of that name, wherever it was. False if there is
  // none.
  bool FindSection(std::u16string_view name);
  // The next line of the section that is neither blank nor a remark. False at the section's end.
  bool NextLine(IniLine& line);
  // Goes behind the next section's header and gives its name. False at the file's end.
  bool NextSection(IniSpan& name);
  // Finds the first line with that key in the rest of the section.
  bool FindKey(std::u16string_view key, IniLine& line);

  // Of a line with an equals sign: what is on its sides, without outer blanks.
  IniSpan Key(const IniLine& line) const { return Trim({line.text.begin, *line.equals}); }
  IniSpan Value(const IniLine& line) const { return Trim({*line.equals + 1, line.text.end}); }
  // Without one pair of " or ' around it.
  IniSpan Unquote(IniSpan span) const;

  char16_t operator[](std::size_t at) const {
    if (!m_wide) {
      const char byte = m_bytes[at];
      return byte >= 0 ? static_cast<char16_t>(byte) : FromCodePage(byte);
    }
    const auto low = static_cast<unsigned char>(m_bytes[2 * at]);
    const auto high = static_cast<unsigned char>(m_bytes[2 * at + 1]);
    return static_cast<char16_t>(low | high << 8);
  }

 private:
  bool ReadLine(IniSpan& line);
  std::size_t EndOfLine(std::size_t from) const;
  bool IsHeader(const IniSpan& line) const;
  IniSpan HeaderName(const IniSpan& line) const;
  IniSpan Trim(IniSpan span) const;
  bool Is(const IniSpan& span, std::u16string_view folded) const;

  std::string_view m_bytes;  // without the mark
  bool m_wide = false;
  std::size_t m_size = 0;  // in characters
  std::size_t m_at = 0;
};

}  // namespace sim
