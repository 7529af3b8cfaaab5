#include "profile/text_table.h"

#include <cstdint>
#include <string_view>

#include "Common/text_conversion.h"
#include "platform/platform.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::uint32_t kStep = 256;
constexpr std::uint32_t kMostRoom = 4096;

// The whole value, or nothing when no room is enough for it. A value that takes all of a room may
// have been cut.
std::optional<std::u16string> ReadWhole(const std::u16string& key, const char16_t* path) {
  std::u16string value;
  for (std::uint32_t room = kStep; room <= kMostRoom; room += kStep) {
    value.resize(room);
    const std::uint32_t length =
        Os().profiles.GetPrivateProfileStringW(u"UT", key.c_str(), u"", value.data(), room, path);
    if (length == room - 1) continue;
    value.resize(length);
    return value;
  }
  return std::nullopt;
}

// From front to back; what a replacement makes isn't looked at again.
std::u16string Replaced(std::u16string_view text, std::u16string_view pair, char16_t by) {
  std::u16string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool isPair = text.substr(at, pair.size()) == pair;
    result.push_back(isPair ? by : text[at]);
    if (isPair) ++at;
  }
  return result;
}

// Pass by pass, so a quote that one pass makes counts in the next one: \"\" comes out as one quote.
std::u16string Unescaped(std::u16string_view text) {
  std::u16string result = Replaced(text, u"\\r", u'\r');
  result = Replaced(result, u"\\n", u'\n');
  result = Replaced(result, u"\\\"", u'"');
  return Replaced(result, u"\"\"", u'"');
}

}  // namespace

std::optional<std::u16string> ReadTableText(const char16_t* text, const char16_t* path) {
  if (IsMissing(text) || IsMissing(path)) return std::nullopt;
  const std::u16string key = u"\"" + std::u16string(text) + u"\"";
  const std::optional<std::u16string> value = ReadWhole(key, path);
  constexpr std::u16string_view kEnd = u"\";";
  if (!value || value->size() < 1 + kEnd.size()) return std::nullopt;
  if (value->front() != u'"' || !value->ends_with(kEnd)) return std::nullopt;
  return Unescaped(std::u16string_view(*value).substr(1, value->size() - 1 - kEnd.size()));
}

}  // namespace vgl
