#include "Common/record_defaults.h"

#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Common/wide_format.h"
#include "platform/owned.h"
#include "profile/field_values.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::uint32_t kReadAndWrite = 0x2001F;
constexpr std::uint32_t kSectionChars = 32767;
// What the system gives for a list of lines that was cut.
constexpr std::uint32_t kSectionWasCut = kSectionChars - 2;

// The status codes that flags switch off, in the order in which they are written.
struct NotifyCode {
  std::int32_t code;
  std::size_t flag;  // its place among the flags
};
constexpr NotifyCode kNotifyCodes[] = {{9, 2},  {11, 1},  {12, 0}, {13, 6},  {15, 4},
                                       {16, 5}, {501, 3}, {17, 7}, {502, 8}, {503, 9}};

void WriteNumber(HKEY key, const char16_t* name, std::uint32_t number) {
  Os().registry.RegSetValueExW(key, name, REG_DWORD, &number, sizeof number);
}

// A key that was made or opened, and whether it was there before.
struct MadeKey {
  OwnedKey key;
  bool existed = false;
};

std::optional<MadeKey> MakeKey(const char16_t* path, std::uint32_t access) {
  MadeKey made;
  std::uint32_t disposition = 0;
  if (Os().registry.RegCreateKeyExW(HKEY_CURRENT_USER, path, access, made.key.Out(),
                                    &disposition) != ERROR_SUCCESS)
    return std::nullopt;
  made.existed = disposition == REG_OPENED_EXISTING_KEY;
  return made;
}

std::optional<MadeKey> MakeNotifyKey(const char16_t* keyPath) {
  PathText path;
  if (!FormatTo(path, u"%s\\Notify", keyPath)) return std::nullopt;
  return MakeKey(path.c_str(), kReadAndWrite);
}

// A line that sets a switch: "ITEM" (anywhere, the first one counts), three digits, "=", a number.
struct NotifyLine {
  std::u16string name;
  std::uint32_t value;
};

bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

std::optional<NotifyLine> ParseNotifyLine(std::u16string_view line) {
  constexpr std::u16string_view kItem = u"ITEM";
  constexpr std::size_t kDigits = 3;
  const std::size_t item = line.find(kItem);
  if (item == std::u16string_view::npos) return std::nullopt;
  line.remove_prefix(item + kItem.size());
  if (line.size() <= kDigits || line[kDigits] != u'=') return std::nullopt;
  for (std::size_t at = 0; at < kDigits; ++at)
    if (!IsDigit(line[at])) return std::nullopt;
  return NotifyLine{std::u16string(line.substr(0, kDigits)),
                    static_cast<std::uint32_t>(ParseDecimal(line.substr(kDigits + 1)))};
}

// The lines of a section; empty when it has none, nothing when it has more than can be read.
std::optional<std::vector<std::u16string>> LinesOf(const char16_t* section, const char16_t* path) {
  std::vector<char16_t> room(kSectionChars);
  const std::uint32_t length =
      Os().profiles.GetPrivateProfileSectionW(section, room.data(), kSectionChars, path);
  if (length == kSectionWasCut) return std::nullopt;
  std::vector<std::u16string> lines;
  for (const char16_t* line = room.data(); *line != u'\0'; line += lines.back().size() + 1)
    lines.emplace_back(line);
  return lines;
}

// Writes the switch unless it may stay; whether it tried to.
bool SetSwitch(const MadeKey& notify, const NotifyLine& line) {
  if (notify.existed && Os().registry.RegQueryValueExW(notify.key.get(), line.name.c_str(), nullptr,
                                                       nullptr, nullptr) == ERROR_SUCCESS)
    return false;
  WriteNumber(notify.key.get(), line.name.c_str(), line.value);
  return true;
}

bool CanSet(const CGetDisableVglFuncData& flags, const char16_t* keyPath) {
  return flags.bLoaded != 0 && keyPath != nullptr && *keyPath != u'\0';
}

// Makes the record and writes one 0 into it, if it was there before and `wanted`.
std::int32_t SetZero(const CGetDisableVglFuncData& flags, const char16_t* keyPath,
                     std::uint32_t access, bool wanted, const char16_t* name) {
  if (!CanSet(flags, keyPath)) return kDefaultsFailed;
  const std::optional<MadeKey> record = MakeKey(keyPath, access);
  if (!record) return kDefaultsFailed;
  if (record->existed && wanted) WriteNumber(record->key.get(), name, 0);
  return 0;
}

}  // namespace

int SetNotifyDefaults(const char16_t* keyPath, const char16_t* section, const char16_t* profilePath,
                      bool& outChanged) {
  outChanged = false;
  const std::optional<MadeKey> notify = MakeNotifyKey(keyPath);
  if (!notify) return 0;
  std::uint32_t left = Os().profiles.GetPrivateProfileIntW(section, u"ITEMNUM", 0, profilePath);
  if (left == 0) return 0;
  const auto lines = LinesOf(section, profilePath);
  if (!lines) return 0;
  for (const std::u16string& line : *lines) {
    if (left == 0) break;
    const std::optional<NotifyLine> wanted = ParseNotifyLine(line);
    if (!wanted) continue;
    --left;
    if (SetSwitch(*notify, *wanted)) outChanged = true;
  }
  return 1;
}

std::int32_t SetNotifyDisabled(const CGetDisableVglFuncData& flags, const char16_t* keyPath) {
  if (!CanSet(flags, keyPath)) return kDefaultsFailed;
  const std::optional<MadeKey> notify = MakeNotifyKey(keyPath);
  if (!notify) return kDefaultsFailed;
  if (!notify->existed) return 0;
  for (const NotifyCode& notification : kNotifyCodes)
    if (flags.bNotify[notification.flag] == 0)
      WriteNumber(notify->key.get(), WideFormat(u"%03d", notification.code).c_str(), 0);
  return 0;
}

std::int32_t SetIoPopupDefault(const CGetDisableVglFuncData& flags, const char16_t* keyPath) {
  return SetZero(flags, keyPath, kReadAndWrite, flags.bNoIoPopup == 1, u"IoEnablePopup");
}

std::int32_t SetTrayIconDefault(const CGetDisableVglFuncData& flags, const char16_t* keyPath) {
  return SetZero(flags, keyPath, KEY_ALL_ACCESS, true, u"TrayIconEnable");
}

}  // namespace vgl
