#include "platform/sim/profile_calls.h"

#include <algorithm>
#include <optional>
#include <string>

#include "platform/sim/code_page.h"
#include "platform/sim/ini_file.h"
#include "platform/sim/machine.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

namespace {

// Sets the error when the file can't be read.
std::optional<IniFile> Open(const Call& call, const char16_t* path) {
  std::u16string full(View(path));
  if (full.find_first_of(u"\\/:") == std::u16string::npos)
    full = WithSeparator(call.machine().system().windowsFolder) + full;
  const FilePath resolved = ResolvePath(full.c_str(), call.process());
  const FileTree& tree = call.machine().files();
  const FileTree::Entry* entry = resolved.error == 0 ? tree.Find(resolved) : nullptr;
  std::int32_t error = resolved.error;
  if (error == 0 && entry == nullptr) {
    error = tree.WhyMissing(resolved);
  } else if (entry != nullptr) {
    const FileUse use{.reads = true, .share = FILE_SHARE_READ | FILE_SHARE_WRITE};
    if (entry->IsFolder() || entry->file->unreadable) {
      error = ERROR_ACCESS_DENIED;
    } else if (!entry->file->Admits(use)) {
      error = ERROR_SHARING_VIOLATION;
    }
  }
  if (error == 0) return IniFile(entry->file->bytes);
  call.SetLastError(error);
  return std::nullopt;
}

// Copies as much of a text as fits into `chars` characters (1 at least), and a terminator.
template <class CharacterAt>
std::uint32_t Copy(const CharacterAt& at, std::size_t size, char16_t* out, std::uint32_t chars) {
  const auto length = static_cast<std::uint32_t>(std::min<std::size_t>(size, chars - 1));
  for (std::uint32_t index = 0; index < length; ++index) out[index] = at(index);
  out[length] = u'\0';
  return length;
}

std::uint32_t CopyFallback(const char16_t* fallback, char16_t* out, std::uint32_t chars) {
  std::u16string_view text = View(fallback);
  while (text.ends_with(u' ')) text.remove_suffix(1);
  return Copy([&](std::size_t at) { return text[at]; }, text.size(), out, chars);
}

// Texts, each with its terminator, in the caller's `chars` characters, with one more behind the
// last.
class ListWriter {
 public:
  ListWriter(char16_t* out, std::uint32_t chars) : m_out(out), m_chars(chars) {}

  void Put(char16_t c) {
    if (m_used < m_chars) m_out[m_used] = c;
    ++m_used;
  }
  void Put(const IniFile& file, const IniSpan& span) {
    for (std::size_t at = span.begin; at < span.end; ++at) Put(file[at]);
  }
  // Windows takes a list that needs the whole room for one that doesn't fit.
  bool IsFull() const { return m_used + 1 >= m_chars; }

  // The length without the last terminator; of a list that was cut, which gets both terminators,
  // two less than there is room.
  std::uint32_t Finish() {
    if (!IsFull()) {
      m_out[m_used] = u'\0';
      return m_used;
    }
    const std::uint32_t length = std::max(m_chars, 2u) - 2;
    std::fill(m_out + length, m_out + m_chars, u'\0');
    return length;
  }

 private:
  char16_t* m_out;
  std::uint32_t m_chars;
  std::uint32_t m_used = 0;
};

std::uint32_t ListSections(IniFile& file, char16_t* out, std::uint32_t chars) {
  ListWriter list(out, chars);
  IniSpan name;
  while (!list.IsFull() && file.NextSection(name)) {
    if (name.empty()) continue;
    list.Put(file, name);
    list.Put(u'\0');
  }
  return list.Finish();
}

// Of the section that the file stands in.
std::uint32_t ListKeys(IniFile& file, char16_t* out, std::uint32_t chars) {
  ListWriter list(out, chars);
  IniLine line;
  while (!list.IsFull() && file.NextLine(line)) {
    if (!line.equals) continue;
    list.Put(file, file.Key(line));
    list.Put(u'\0');
  }
  return list.Finish();
}

std::uint32_t ListLines(IniFile& file, char16_t* out, std::uint32_t chars) {
  ListWriter list(out, chars);
  IniLine line;
  while (!list.IsFull() && file.NextLine(line)) {
    if (line.equals) {
      list.Put(file, file.Key(line));
      list.Put(u'=');
      list.Put(file, file.Value(line));
    } else {
      list.Put(file, line.text);
    }
    list.Put(u'\0');
  }
  return list.Finish();
}

// 36 for what is no digit.
std::uint32_t DigitValue(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  const char16_t folded = FoldCase(c);
  return folded >= u'a' && folded <= u'z' ? folded - u'a' + 10u : 36u;
}

std::uint32_t NumberIn(const IniFile& file, IniSpan span) {
  const auto starts = [&](char16_t c) { return !span.empty() && file[span.begin] == c; };
  while (!span.empty() && file[span.begin] <= u' ') ++span.begin;
  const bool negative = starts(u'-');
  if (negative || starts(u'+')) ++span.begin;
  const bool hexadecimal = starts(u'0') && span.size() > 1 && file[span.begin + 1] == u'x';
  if (hexadecimal) span.begin += 2;

  const std::uint32_t base = hexadecimal ? 16 : 10;
  std::uint32_t number = 0;
  for (; !span.empty() && DigitValue(file[span.begin]) < base; ++span.begin)
    number = number * base + DigitValue(file[span.begin]);
  return negative ? 0 - number : number;
}

std::uint32_t ReadString(Call& call, const char16_t* section, const char16_t* key,
                         const char16_t* fallback, char16_t* value, std::uint32_t chars,
                         const char16_t* path) {
  if (chars == 0) return 0;
  if (call.Failure(ERROR_ACCESS_DENIED)) return CopyFallback(fallback, value, chars);
  std::optional<IniFile> file = Open(call, path);
  if (!file) return CopyFallback(fallback, value, chars);
  if (section == nullptr) return ListSections(*file, value, chars);

  IniLine line;
  if (file->FindSection(section)) {
    if (key == nullptr) return ListKeys(*file, value, chars);
    if (file->FindKey(key, line)) {
      const IniSpan text = file->Unquote(file->Value(line));
      return Copy([&](std::size_t at) { return (*file)[text.begin + at]; }, text.size(), value,
                  chars);
    }
  }
  call.SetLastError(ERROR_FILE_NOT_FOUND);
  return CopyFallback(fallback, value, chars);
}

}  // namespace

std::uint32_t ProfileCalls::GetPrivateProfileStringW(const char16_t* section, const char16_t* key,
                                                     const char16_t* fallback, char16_t* value,
                                                     std::uint32_t chars, const char16_t* path) {
  Call call("GetPrivateProfileStringW");
  return ReadString(call, section, key, fallback, value, chars, path);
}

std::uint32_t ProfileCalls::GetPrivateProfileStringA(const char* section, const char* key,
                                                     const char* fallback, char* value,
                                                     std::uint32_t chars, const char* path) {
  Call call("GetPrivateProfileStringA");
  if (chars == 0) return 0;
  const auto wide = [](const char* text) { return FromCodePage(ViewNarrow(text)); };
  std::u16string room(chars, u'\0');
  const std::uint32_t length =
      ReadString(call, wide(section).c_str(), wide(key).c_str(), wide(fallback).c_str(),
                 room.data(), chars, wide(path).c_str());
  value[ToCodePage(room.substr(0, length)).copy(value, length)] = '\0';
  return length;
}

std::uint32_t ProfileCalls::GetPrivateProfileIntW(const char16_t* section, const char16_t* key,
                                                  std::int32_t fallback, const char16_t* path) {
  Call call("GetPrivateProfileIntW");
  const auto missing = static_cast<std::uint32_t>(fallback);
  if (call.Failure(ERROR_ACCESS_DENIED)) return missing;
  std::optional<IniFile> file = Open(call, path);
  if (!file) return missing;

  IniLine line;
  if (file->FindSection(View(section)) && file->FindKey(View(key), line))
    return NumberIn(*file, file->Unquote(file->Value(line)));
  call.SetLastError(ERROR_FILE_NOT_FOUND);
  return missing;
}

std::uint32_t ProfileCalls::GetPrivateProfileSectionW(const char16_t* section, char16_t* lines,
                                                      std::uint32_t chars, const char16_t* path) {
  Call call("GetPrivateProfileSectionW");
  if (chars == 0) return 0;
  lines[0] = u'\0';
  if (call.Failure(ERROR_ACCESS_DENIED)) return 0;
  if (section == nullptr) {
    call.SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  std::optional<IniFile> file = Open(call, path);
  if (!file) return 0;
  if (file->FindSection(section)) return ListLines(*file, lines, chars);
  call.SetLastError(ERROR_FILE_NOT_FOUND);
  return 0;
}

}  // namespace sim
