#include "profile/install_desc_parser.h"

#include <memory>
#include <utility>

#include "Common/text_conversion.h"
#include "platform/platform.h"
#include "profile/blanks.h"
#include "profile/field_values.h"
#include "profile/install_desc_report.h"
#include "profile/os_identification.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::u16string_view kSection = u"Install";
constexpr std::u16string_view kHive = u"HKEY_LOCAL_MACHINE\\";
constexpr std::u16string_view kDriverDir = u"DRIVERDIR";
constexpr std::u16string_view kSystemDir = u"SYSTEMDIR";

// Empty when the system doesn't tell.
std::u16string SystemDirectory() {
  constexpr std::uint32_t kChars = 64;
  std::u16string folder(kChars + 1, u'\0');
  std::uint32_t length = Os().system.GetSystemDirectoryW(folder.data(), kChars);
  if (length >= kChars) {
    const std::uint32_t chars = length + 1;
    folder.assign(chars, u'\0');
    length = Os().system.GetSystemDirectoryW(folder.data(), chars);
    if (length >= chars) length = 0;
  }
  folder.resize(length);
  return folder;
}

// The text of +"text" without its outer blanks; empty when it is of another form.
std::u16string_view Appended(std::u16string_view text) {
  return text.starts_with(u'+') ? Trim(Unquote(text.substr(1))) : std::u16string_view();
}

// Null for a line that is to be dropped.
std::unique_ptr<CRegPathEntry> PathEntryOf(std::u16string_view line) {
  CFieldWalker fields(line);
  std::u16string rooms[2];
  const std::u16string_view tag = Trim(fields.Next(rooms[0]));
  const std::u16string_view path = Unquote(Trim(fields.Next(rooms[1])));
  const std::size_t hive = path.find(kHive);
  if (tag.empty() || hive == std::u16string_view::npos || hive + kHive.size() == path.size())
    return nullptr;
  auto entry = std::make_unique<CRegPathEntry>();
  entry->m_csTag = tag;
  entry->m_csPath = path.substr(hive + kHive.size());
  return entry;
}

// One condition that holds is enough, and so is none at all. An empty field ends them.
bool Applies(CFieldWalker& conditions) {
  bool isFirst = true;
  std::u16string room;
  for (;; isFirst = false) {
    const std::u16string_view condition = Trim(conditions.Next(room));
    if (condition.empty()) return isFirst;
    if (TestCondition(condition) == 1) return true;
  }
}

// Null for a line that is to be dropped.
std::unique_ptr<CRegEnterEntry> EnterEntryOf(std::u16string_view line,
                                             std::u16string_view driverDir) {
  CFieldWalker fields(line);
  std::u16string rooms[3];
  const std::u16string_view tag = Trim(fields.Next(rooms[0]));
  const std::u16string_view name = Unquote(Trim(fields.Next(rooms[1])));
  const std::u16string_view value = Trim(fields.Next(rooms[2]));
  if (tag.empty() || name.empty() || value.empty()) return nullptr;

  auto entry = std::make_unique<CRegEnterEntry>();
  entry->m_uType = ClassifyValue(value);
  if (entry->m_uType == REG_DWORD)
    entry->m_nNumber = ParseNumber(value);
  else
    entry->m_csText = ExpandValue(value, driverDir);
  if (entry->m_uType == REG_SZ && entry->m_csText.empty()) return nullptr;
  if (!Applies(fields)) return nullptr;
  entry->m_csTag = tag;
  entry->m_csName = name;
  return entry;
}

// Whether a line may be for a value of that name; false only where it surely isn't. Most lines of a
// description are passed over by this, hundreds of times for one menu: where a quote stands
// anywhere but around the name, the line is left to be read in earnest.
bool MayBeFor(std::u16string_view valueName, std::string_view line) {
  if (line.front() == '"' || valueName.find(u'"') != std::u16string_view::npos) return true;
  const std::size_t comma = line.find(',');
  if (comma == std::string_view::npos) return false;
  std::string_view name = TrimLeft(line.substr(comma + 1));
  if (!name.starts_with('"')) return false;
  name.remove_prefix(1);
  if (name.starts_with('"')) return true;
  return name.size() > valueName.size() && name[valueName.size()] == '"' &&
         EqualsText(name.substr(0, valueName.size()), valueName);
}

bool NamesTheSame(const CRegEnterEntry& left, const CRegEnterEntry& right) {
  return left.m_csTag == right.m_csTag && left.m_csName == right.m_csName;
}

}  // namespace

int ParsePaths(CDatTextFile& file, CRegPathList& list) {
  CRegPathList::Entries& entries = list.Access();
  std::u16string line;
  if (file.FindSection(kSection) == 1) {
    while (file.FindKey(u"REGPATH", line) == 1)
      if (auto entry = PathEntryOf(line)) entries.Append(std::move(entry));
  }
  ReportPaths(entries);
  return entries.Count() > 0 ? 1 : 0;
}

int ParseEntries(CDatTextFile& file, std::u16string_view driverDir, CRegEnterList& list) {
  CRegEnterList::Entries& entries = list.Access();
  std::u16string line;
  if (file.FindSection(kSection) == 1) {
    while (file.FindKey(u"REGENTER", line) == 1) {
      auto entry = EnterEntryOf(line, driverDir);
      if (entry == nullptr) continue;
      if (entries.Last() != nullptr && NamesTheSame(*entries.Last(), *entry)) entries.RemoveLast();
      entries.Append(std::move(entry));
    }
  }
  ReportEntries(entries);
  return entries.Count() > 0 ? 1 : 0;
}

int ParsePathFor(std::u16string_view keyPath, CDatTextFile& file, CRegPathList& list) {
  CRegPathList::Entries& entries = list.Access();
  if (file.FindSection(kSection) != 1) return 0;
  std::u16string line;
  int result = 0;
  while (entries.Count() == 0 && file.FindKey(u"REGPATH", line) == 1) {
    auto entry = PathEntryOf(line);
    if (entry == nullptr) continue;
    result = 1;
    if (EqualsIgnoringAsciiCase(entry->m_csPath, keyPath)) entries.Append(std::move(entry));
  }
  return result;
}

int ParseEntryFor(std::u16string_view tag, std::u16string_view valueName, CDatTextFile& file,
                  std::u16string_view driverDir, CRegEnterList& list) {
  CRegEnterList::Entries& entries = list.Access();
  if (file.FindSection(kSection) != 1) return 0;
  std::string_view bytes;
  std::u16string line;
  while (file.FindKeyInPlace(u"REGENTER", bytes) == 1) {
    const bool isFound = entries.Count() > 0;
    if (!isFound && !MayBeFor(valueName, bytes)) continue;
    Widen(bytes, line);
    auto entry = EnterEntryOf(line, driverDir);
    if (entry == nullptr) continue;
    if (isFound) {
      // What was found stays what it is as soon as another value follows.
      if (!NamesTheSame(*entries.Last(), *entry)) break;
      entries.RemoveLast();
    } else if (!EqualsIgnoringAsciiCase(entry->m_csName, valueName) ||
               !EqualsIgnoringAsciiCase(entry->m_csTag, tag)) {
      continue;
    }
    entries.Append(std::move(entry));
  }
  return entries.Count() > 0 ? 1 : 0;
}

std::u16string ExpandValue(std::u16string_view value, std::u16string_view driverDir) {
  if (value.empty() || driverDir.empty()) return {};
  if (EqualsIgnoringAsciiCase(value, kDriverDir)) return std::u16string(driverDir);
  if (EqualsIgnoringAsciiCase(value, kSystemDir)) return SystemDirectory();

  // With a text behind them the words count in capitals alone, wherever they stand and even inside
  // quotes, and nothing may stand between word, plus sign and quote. That is kept.
  std::size_t word = value.find(kDriverDir);
  const bool isDriverDir = word != std::u16string_view::npos;
  if (!isDriverDir) word = value.find(kSystemDir);
  if (word == std::u16string_view::npos) return std::u16string(Unquote(value));
  static_assert(kDriverDir.size() == kSystemDir.size());
  const std::u16string_view text = Appended(value.substr(word + kDriverDir.size()));
  if (text.empty()) return {};
  std::u16string folder = isDriverDir ? std::u16string(driverDir) : SystemDirectory();
  return folder.append(text);
}

}  // namespace vgl
