#include "platform/sim/ini_file.h"

#include <algorithm>

#include "platform/sim/text.h"

namespace sim {

namespace {

constexpr std::string_view kWideMark = "\xFF\xFE";

bool IsBlank(char16_t c) {
  return c == u' ' || c == u'\t' || c == u'\v' || c == u'\f' || c == 0x1A;
}

bool EndsLine(char16_t c) { return c == u'\r' || c == u'\n'; }

// A name to look for, as it is compared: without outer blanks and without case.
std::u16string Wanted(std::u16string_view name) {
  while (!name.empty() && IsBlank(name.front())) name.remove_prefix(1);
  while (!name.empty() && IsBlank(name.back())) name.remove_suffix(1);
  return FoldCase(name);
}

}  // namespace

IniFile::IniFile(std::string_view bytes) : m_bytes(bytes) {
  if (m_bytes.starts_with(kWideMark)) {
    m_bytes.remove_prefix(kWideMark.size());
    m_wide = true;
  }
  m_size = m_wide ? m_bytes.size() / 2 : m_bytes.size();
}

bool IniFile::FindSection(std::u16string_view name) {
  const std::u16string wanted = Wanted(name);
  m_at = 0;
  IniSpan found;
  while (NextSection(found))
    if (Is(found, wanted)) return true;
  return false;
}

bool IniFile::NextLine(IniLine& line) {
  const std::size_t start = m_at;
  if (!ReadLine(line.text)) return false;
  if (IsHeader(line.text)) {
    m_at = start;  // for NextSection
    return false;
  }
  line.equals.reset();
  for (std::size_t at = line.text.begin; at < line.text.end && !line.equals; ++at)
    if ((*this)[at] == u'=') line.equals = at;
  return true;
}

bool IniFile::NextSection(IniSpan& name) {
  IniSpan line;
  while (ReadLine(line)) {
    if (!IsHeader(line)) continue;
    name = HeaderName(line);
    return true;
  }
  return false;
}

bool IniFile::FindKey(std::u16string_view key, IniLine& line) {
  const std::u16string wanted = Wanted(key);
  while (NextLine(line))
    if (line.equals && Is(Key(line), wanted)) return true;
  return false;
}

IniSpan IniFile::Unquote(IniSpan span) const {
  if (span.size() < 2) return span;
  const char16_t first = (*this)[span.begin];
  const bool quoted = (first == u'"' || first == u'\'') && (*this)[span.end - 1] == first;
  return quoted ? IniSpan{span.begin + 1, span.end - 1} : span;
}

// The next line that is neither blank nor a remark, without outer blanks.
bool IniFile::ReadLine(IniSpan& line) {
  while (m_at < m_size) {
    const std::size_t begin = m_at;
    m_at = EndOfLine(begin);
    line = Trim({begin, m_at});
    if (m_at < m_size) ++m_at;
    if (!line.empty() && (*this)[line.begin] != u';') return true;
  }
  return false;
}

std::size_t IniFile::EndOfLine(std::size_t from) const {
  if (!m_wide) {  // most of the time of a read goes by here
    const auto end = std::find_if(m_bytes.begin() + static_cast<std::ptrdiff_t>(from),
                                  m_bytes.end(), [](char c) { return c == '\r' || c == '\n'; });
    return static_cast<std::size_t>(end - m_bytes.begin());
  }
  while (from < m_size && !EndsLine((*this)[from])) ++from;
  return from;
}

bool IniFile::IsHeader(const IniSpan& line) const { return (*this)[line.begin] == u'['; }

// Up to the first closing bracket; to the line's end when there is none.
IniSpan IniFile::HeaderName(const IniSpan& line) const {
  IniSpan name{line.begin + 1, line.begin + 1};
  while (name.end < line.end && (*this)[name.end] != u']') ++name.end;
  return Trim(name);
}

IniSpan IniFile::Trim(IniSpan span) const {
  while (!span.empty() && IsBlank((*this)[span.begin])) ++span.begin;
  while (!span.empty() && IsBlank((*this)[span.end - 1])) --span.end;
  return span;
}

bool IniFile::Is(const IniSpan& span, std::u16string_view folded) const {
  if (span.size() != folded.size()) return false;
  for (std::size_t at = 0; at < folded.size(); ++at)
    if (FoldCase((*this)[span.begin + at]) != folded[at]) return false;
  return true;
}

}  // namespace sim
