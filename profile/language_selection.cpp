#include "profile/language_selection.h"

#include <algorithm>
#include <memory>
#include <new>
#include <string>

#include "Common/fixed_text.h"
#include "Common/path_lookup.h"
#include "Common/text_conversion.h"
#include "platform/platform.h"
#include "profile/profile_keys.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::uint16_t kEnglish = 9;
constexpr std::uint16_t kUsEnglish = 1033;
// What a count starts from; where nothing is counted, so many records are made of an empty list.
constexpr std::uint32_t kUncounted = 2;
constexpr std::uint32_t kSectionBytes = PathText::capacity() * sizeof(char16_t);

// Takes the text up to `end`, and `end` itself, from the front of `rest`.
std::u16string_view TakeUpTo(char16_t end, std::u16string_view& rest) {
  const std::u16string_view taken = rest.substr(0, rest.find(end));
  rest.remove_prefix(std::min(taken.size() + 1, rest.size()));
  return taken;
}

LanguageRecord RecordOf(std::u16string_view line) {
  LanguageRecord record;
  record.section = TakeUpTo(u'=', line);
  record.primary = TakeUpTo(u',', line);
  record.sublanguage = TakeUpTo(u',', line);
  return record;
}

std::uint32_t CountLines(std::u16string_view list) {
  const auto terminated = std::count(list.begin(), list.end(), u'\0');
  const bool lastWasCut = !list.empty() && list.back() != u'\0';
  return static_cast<std::uint32_t>(terminated) + (lastWasCut ? 1 : 0);
}

// Room for the list, and its lines.
class LanguageList {
 public:
  LanguageList() : m_list(new (std::nothrow) char16_t[kChars]()) {}

  // False when there is no memory.
  bool Read(const char16_t* profilePath) {
    if (m_list == nullptr) return false;
    std::uint32_t count = kUncounted;
    ReadLanguageList(m_list.get(), kLanguageListBytes, &count, profilePath);
    m_records = ParseLanguageList({m_list.get(), kChars}, count);
    return true;
  }
  const std::vector<LanguageRecord>& records() const { return m_records; }

 private:
  static constexpr std::size_t kChars = kLanguageListBytes / sizeof(char16_t);

  std::unique_ptr<char16_t[]> m_list;
  std::vector<LanguageRecord> m_records;
};

// Empties an output of `bytes` bytes.
void Empty(char16_t* out, std::uint32_t bytes) {
  if (bytes >= sizeof(char16_t)) *out = u'\0';
}

// Hands a text over, by the rule that the header tells.
std::int32_t Give(std::u16string_view text, char16_t* out, std::uint32_t* size) {
  const std::uint32_t bytes = *size;
  const auto chars = static_cast<std::uint32_t>(text.size() + 1);
  Empty(out, bytes);
  if (bytes < chars) {
    *size = chars;
    return kLanguageNoRoom;
  }
  if (bytes / sizeof(char16_t) < chars) return kLanguageFailed;
  out[text.copy(out, text.size())] = u'\0';
  *size = chars;
  return 0;
}

std::u16string ResDllOf(std::u16string_view section, const char16_t* profilePath) {
  return ReadLanguageText(kProfileResourceLibrary, std::u16string(section).c_str(), profilePath);
}

// SelectLanguageSection for the readers of keys.
bool Select(PathText& section, const char16_t* profilePath) {
  std::uint32_t size = kSectionBytes;
  return SelectLanguageSection(section.buffer(), &size, profilePath) >= 0;
}

}  // namespace

std::uint16_t LanguageNumber(std::u16string_view digits) {
  std::uint32_t number = 0;
  for (const char16_t c : digits) {
    if (c >= u'0' && c <= u'9') number = number * 16 + (c - u'0');
    if (c >= u'A' && c <= u'F') number = number * 16 + (c - u'A' + 10u);
    if (c >= u'a' && c <= u'f') number = number * 16 + (c - u'a' + 10u);
  }
  return static_cast<std::uint16_t>(number);
}

std::vector<LanguageRecord> ParseLanguageList(std::u16string_view list, std::uint32_t count) {
  std::vector<LanguageRecord> records;
  while (records.size() < count) records.push_back(RecordOf(TakeUpTo(u'\0', list)));
  return records;
}

std::u16string_view PickLanguage(std::span<const LanguageRecord> records, std::uint16_t language) {
  if (records.empty()) return {};
  const std::uint16_t primary = language & 0x3FF;
  const std::uint16_t sublanguage = language >> 10;
  int rank = 0;
  const LanguageRecord* chosen = &records.front();
  for (const LanguageRecord& record : records) {
    const std::uint16_t itsPrimary = LanguageNumber(record.primary);
    if (itsPrimary == primary && LanguageNumber(record.sublanguage) == sublanguage)
      return record.section;
    if (itsPrimary == primary && rank < 2) {
      rank = 2;
      chosen = &record;
    } else if (itsPrimary == kEnglish && rank < 1) {
      rank = 1;
      chosen = &record;
    }
  }
  return chosen->section;
}

std::int32_t ReadLanguageList(char16_t* list, std::uint32_t bytes, std::uint32_t* count,
                              const char16_t* profilePath) {
  if (count != nullptr) *count = kUncounted;
  if (list == nullptr || count == nullptr || IsMissing(profilePath)) return kLanguageFailed;
  const auto chars = static_cast<std::uint32_t>(bytes / sizeof(char16_t));
  if (chars == 0) return kLanguageNoRoom;
  const std::uint32_t length =
      Os().profiles.GetPrivateProfileSectionW(u"Language", list, chars, profilePath);
  if (length == 0) return 0;
  if (length == bytes - 2) return kLanguageNoRoom;
  *count = CountLines({list, length});
  return static_cast<std::int32_t>(length);
}

std::int32_t MatchLanguageSection(char16_t* section, std::uint32_t* size,
                                  const char16_t* profilePath, std::uint16_t language) {
  if (section == nullptr || size == nullptr) return kLanguageFailed;
  LanguageList list;
  if (!list.Read(profilePath)) return kLanguageNoMemory;
  return Give(PickLanguage(list.records(), language), section, size);
}

std::int32_t FirstInstalledLanguage(char16_t* section, std::uint32_t* size,
                                    const char16_t* profilePath) {
  if (section == nullptr || size == nullptr) return kLanguageFailed;
  LanguageList list;
  if (!list.Read(profilePath)) return kLanguageNoMemory;
  const auto found =
      std::find_if(list.records().begin(), list.records().end(), [=](const LanguageRecord& record) {
        return ResFileExists(ResDllOf(record.section, profilePath).c_str(), profilePath) == 1;
      });
  return Give(found == list.records().end() ? u"" : found->section, section, size);
}

std::int32_t SelectLanguageSection(char16_t* section, std::uint32_t* size,
                                   const char16_t* profilePath) {
  if (section == nullptr || size == nullptr || IsMissing(profilePath)) return kLanguageFailed;
  const std::uint32_t bytes = *size;
  for (const std::uint16_t language : {Os().nls.GetUserDefaultLangID(), kUsEnglish}) {
    *size = bytes;
    const std::int32_t result = MatchLanguageSection(section, size, profilePath, language);
    if (result < 0) return result;
    const std::u16string library = ResDllOf(section, profilePath);
    if (ResFileExists(library.c_str(), profilePath) == 1)
      return static_cast<std::int32_t>(library.size());
  }
  *size = bytes;
  return FirstInstalledLanguage(section, size, profilePath);
}

int ResFileExists(const char16_t* fileName, const char16_t* profilePath) {
  if (fileName == nullptr || profilePath == nullptr) return 0;
  const std::u16string_view profile = profilePath;
  const std::size_t folderChars = profile.rfind(u'\\') + 1;  // 0 without a backslash
  PathText path;
  if (folderChars == 0 || profile.size() >= PathText::capacity()) return 0;
  if (!path.Assign(std::u16string(profile.substr(0, folderChars)) + fileName)) return 0;
  return FileExists(path.c_str()) ? 1 : 0;
}

std::int32_t GetLanguageString(const char16_t* key, char16_t* out, std::uint32_t* size,
                               const char16_t* profilePath) {
  if (IsMissing(key) || out == nullptr || size == nullptr) return kLanguageFailed;
  Empty(out, *size);
  PathText section;
  if (!Select(section, profilePath)) return kLanguageFailed;
  const std::u16string text = ReadLanguageText(key, section.c_str(), profilePath);
  return text.empty() ? kLanguageNoValue : Give(text, out, size);
}

std::int32_t GetLanguageResDll(char16_t* out, std::uint32_t* size, const char16_t* profilePath) {
  return GetLanguageString(kProfileResourceLibrary, out, size, profilePath);
}

std::int32_t GetLanguageInt(const char16_t* key, std::int32_t fallback,
                            const char16_t* profilePath) {
  PathText section;
  if (IsMissing(key) || !Select(section, profilePath)) return -1;
  return static_cast<std::int32_t>(
      Os().profiles.GetPrivateProfileIntW(section.c_str(), key, fallback, profilePath));
}

}  // namespace vgl
