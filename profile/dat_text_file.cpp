#include "profile/dat_text_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "Common/text_conversion.h"
#include "platform/owned.h"
#include "profile/blanks.h"

namespace vgl {

using namespace platform;

namespace {

// By sign extension, also where plain char has no sign.
char16_t CharacterOf(char byte) {
  return static_cast<char16_t>(std::int16_t{static_cast<signed char>(byte)});
}

void Append(std::u16string& text, std::string_view bytes) {
  const std::size_t before = text.size();
  text.resize(before + bytes.size());
  std::transform(bytes.begin(), bytes.end(), text.begin() + static_cast<std::ptrdiff_t>(before),
                 CharacterOf);
}

// The first line feed or semicolon; `end` when there is none. Files are walked over hundreds of
// times for one menu, so eight bytes are looked at together while none of them is either.
const char* EndOfText(const char* at, const char* end) {
  constexpr std::uint64_t kEachByte = 0x0101010101010101;
  const auto hasZero = [](std::uint64_t bytes) {
    return ((bytes - kEachByte) & ~bytes & (kEachByte << 7)) != 0;
  };
  for (std::uint64_t bytes = 0; static_cast<std::size_t>(end - at) >= sizeof(bytes);
       at += sizeof(bytes)) {
    std::memcpy(&bytes, at, sizeof(bytes));
    if (hasZero(bytes ^ (kEachByte * '\n')) || hasZero(bytes ^ (kEachByte * ';'))) break;
  }
  return std::find_if(at, end, [](char byte) { return byte == '\n' || byte == ';'; });
}

// False when the line has no equals sign or nothing on one of its sides: it is no key line.
template <class View>
bool Split(View line, View& name, View& value) {
  const std::size_t equals = line.find('=');
  if (equals == View::npos) return false;
  name = Trim(line.substr(0, equals));
  value = Trim(line.substr(equals + 1));
  return !name.empty() && !value.empty();
}

// 0 when the file's size isn't known; empty and unknown come to the same.
std::uint64_t SizeOf(HANDLE file) {
  std::uint32_t high = 0;
  const std::uint32_t low = Os().files.GetFileSize(file, &high);
  if (low == INVALID_FILE_SIZE) return 0;
  return (std::uint64_t{high} << 32) | low;
}

bool ReadAll(HANDLE file, char* buffer, std::size_t length) {
  constexpr std::size_t kMost = std::numeric_limits<std::uint32_t>::max();
  for (std::size_t done = 0; done < length;) {
    const auto wanted = static_cast<std::uint32_t>(std::min(length - done, kMost));
    std::uint32_t read = 0;
    if (!Os().files.ReadFile(file, buffer + done, wanted, &read) || read == 0) return false;
    done += read;
  }
  return true;
}

}  // namespace

void Widen(std::string_view bytes, std::u16string& text) {
  text.clear();
  Append(text, bytes);
}

bool EqualsText(std::string_view bytes, std::u16string_view text) {
  return std::equal(bytes.begin(), bytes.end(), text.begin(), text.end(),
                    [](char byte, char16_t character) {
                      const char16_t widened = CharacterOf(byte);
                      return widened == character || AsciiUpper(widened) == AsciiUpper(character);
                    });
}

int CDatTextFile::Open(const std::u16string& path) {
  m_pBuffer.reset();
  m_nLength = 0;
  m_nPosition = 0;
  return !path.empty() && LoadFrom(path) ? 1 : 0;
}

bool CDatTextFile::LoadFrom(const std::u16string& path) {
  const OwnedFile file(Os().files.CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ,
                                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL));
  if (!file) return false;
  const auto length = static_cast<std::size_t>(SizeOf(file.get()));
  if (length == 0) return false;
  std::unique_ptr<char[]> buffer(new (std::nothrow) char[length]);
  if (buffer == nullptr || !ReadAll(file.get(), buffer.get(), length)) return false;
  m_pBuffer = std::move(buffer);
  m_nLength = length;
  return true;
}

int CDatTextFile::FindSection(std::u16string_view name) {
  m_nPosition = 0;
  if (name.empty()) return 0;
  std::string_view line;
  while (NextLine(line)) {
    if (line.size() == name.size() + 2 && line.front() == '[' && line.back() == ']' &&
        EqualsText(line.substr(1, name.size()), name))
      return 1;
  }
  return 0;
}

int CDatTextFile::FindKey(std::u16string_view name, std::u16string& value) {
  // A line is split at its first equals sign and both sides are trimmed: no key is of another form.
  const bool canBeKey = Trim(name) == name && name.find(u'=') == std::u16string_view::npos;
  std::string_view found;
  int result = 0;
  do {
    result = FindKeyInPlace(name, found);
  } while (result == 1 && !canBeKey);
  Widen(found, value);
  return result;
}

int CDatTextFile::FindKeyInPlace(std::u16string_view name, std::string_view& value) {
  value = {};
  if (name.empty()) return 0;
  std::string_view line;
  while (NextLine(line)) {
    // The one thing that ends a search in front of the file's end is a line with an opening bracket
    // at both of its ends, which no header has. So keys behind a later header are found as if they
    // stood in the section that was looked for. This is known and kept.
    if (line.front() == '[' && line.back() == '[') return 0;
    if (!EqualsText(line.substr(0, name.size()), name)) continue;
    const std::string_view rest = TrimLeft(line.substr(name.size()));
    if (!rest.starts_with('=')) continue;
    value = TrimLeft(rest.substr(1));
    if (!value.empty()) return 1;
  }
  return 0;
}

int CDatTextFile::ReadLine(std::u16string& line) {
  line.clear();
  std::string_view text;
  if (!NextLine(text)) return 0;
  Append(line, text);
  return 1;
}

int CDatTextFile::ReadRawLine(std::u16string& line) {
  line.clear();
  std::string_view text;
  bool endsWithLineFeed = false;
  if (!NextRawLine(text, endsWithLineFeed)) return 0;
  Append(line, text);
  if (endsWithLineFeed) line.push_back(u'\n');
  return 1;
}

int CDatTextFile::SplitKeyValue(std::u16string_view line, std::u16string& name,
                                std::u16string& value) {
  name.clear();
  value.clear();
  std::u16string_view left;
  std::u16string_view right;
  if (!Split(line, left, right)) return 0;
  name = left;
  value = right;
  return 1;
}

// The next line where it lies, in front of its comment or line feed. A comment counts as a line
// feed, also at the end of the file.
bool CDatTextFile::NextRawLine(std::string_view& text, bool& endsWithLineFeed) {
  if (m_nPosition >= m_nLength) return false;
  const char* const end = m_pBuffer.get() + m_nLength;
  const char* const begin = m_pBuffer.get() + m_nPosition;
  const char* at = EndOfText(begin, end);
  text = {begin, static_cast<std::size_t>(at - begin)};
  endsWithLineFeed = at != end;
  // A NUL ends a comment as well; it is the first character of the next line then.
  if (at != end && *at == ';')
    at = std::find_if(at, end, [](char byte) { return byte == '\n' || byte == '\0'; });
  if (at != end && *at == '\n') ++at;
  m_nPosition = static_cast<std::size_t>(at - m_pBuffer.get());
  return true;
}

bool CDatTextFile::NextLine(std::string_view& text) {
  bool endsWithLineFeed = false;
  while (NextRawLine(text, endsWithLineFeed)) {
    text = Trim(text);
    if (!text.empty()) return true;
  }
  return false;
}

}  // namespace vgl
