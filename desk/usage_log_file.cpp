#include "desk/usage_log_file.h"

#include <algorithm>
#include <array>

namespace desk {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
constexpr std::size_t kVersionNumbers = 4;
constexpr std::size_t kVersionDigits = 3;

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

bool StandsForItself(char16_t character) {
  return character >= u' ' && character <= u'~' &&
         std::u16string_view(u"&<>\"").find(character) == std::u16string_view::npos;
}

// --- Writing

std::string Escaped(std::u16string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (StandsForItself(text[i])) {
      out += static_cast<char>(text[i]);
      continue;
    }
    char32_t point = text[i];
    if (IsHighSurrogate(point) && i + 1 < text.size() && IsLowSurrogate(text[i + 1]))
      point = 0x10000 + ((point - 0xD800) << 10) + (text[++i] - 0xDC00U);
    out += "&#" + std::to_string(static_cast<std::uint32_t>(point)) + ";";
  }
  return out;
}

// --- Reading

// Decimal digits alone, up to `most`.
std::optional<std::uint32_t> NumberOf(std::string_view digits, std::uint32_t most) {
  if (digits.empty() || digits.size() > 10) return std::nullopt;
  std::uint64_t number = 0;
  for (const char digit : digits) {
    if (digit < '0' || digit > '9') return std::nullopt;
    number = number * 10 + static_cast<std::uint64_t>(digit - '0');
  }
  if (number > most) return std::nullopt;
  return static_cast<std::uint32_t>(number);
}

std::optional<std::u16string> Unescaped(std::string_view text) {
  std::u16string out;
  while (!text.empty()) {
    if (!text.starts_with('&')) {
      const auto character = static_cast<unsigned char>(text.front());
      if (!StandsForItself(character)) return std::nullopt;
      out += static_cast<char16_t>(character);
      text.remove_prefix(1);
      continue;
    }
    const std::size_t end = text.find(';');
    if (!text.starts_with("&#") || end == std::string_view::npos) return std::nullopt;
    const std::optional<std::uint32_t> point = NumberOf(text.substr(2, end - 2), 0x10FFFF);
    if (!point) return std::nullopt;
    if (*point >= 0x10000) {
      out += static_cast<char16_t>(0xD800 + ((*point - 0x10000) >> 10));
      out += static_cast<char16_t>(0xDC00 + ((*point - 0x10000) & 0x3FF));
    } else {
      out += static_cast<char16_t>(*point);
    }
    text.remove_prefix(end + 1);
  }
  return out;
}

// What is left of a text that is read from its beginning.
class Rest {
 public:
  explicit Rest(std::string_view text) : m_text(text) {}

  void SkipBlanks() {
    m_text.remove_prefix(std::min(m_text.find_first_not_of(kBlanks), m_text.size()));
  }
  bool empty() const { return m_text.empty(); }
  // Passes over `expected`, and blanks behind it, if that is what comes next.
  bool Take(std::string_view expected) {
    if (!m_text.starts_with(expected)) return false;
    m_text.remove_prefix(expected.size());
    SkipBlanks();
    return true;
  }
  // name="value"
  std::optional<std::string_view> TakeAttribute(std::string_view name) {
    if (!Take(name) || !Take("=") || !m_text.starts_with('"')) return std::nullopt;
    const std::size_t end = m_text.find('"', 1);
    if (end == std::string_view::npos) return std::nullopt;
    const std::string_view value = m_text.substr(1, end - 1);
    m_text.remove_prefix(end + 1);
    SkipBlanks();
    return value;
  }

 private:
  std::string_view m_text;
};

bool ParseHead(Rest& rest, UsageLog& log) {
  rest.SkipBlanks();
  rest.Take(kDeclaration);
  if (!rest.Take("<UsageLog ")) return false;
  const auto device = rest.TakeAttribute("device");
  const auto version = device ? rest.TakeAttribute("version") : std::nullopt;
  if (!version || !rest.Take(">")) return false;
  const auto deviceId = Unescaped(*device);
  const auto versionText = Unescaped(*version);
  if (!deviceId || !versionText || !IsUsageLogVersion(*versionText)) return false;
  log.deviceId = *deviceId;
  log.version = *versionText;
  return true;
}

// Behind "<Counter ". An index stands in a file once.
bool ParseCounter(Rest& rest, UsageLog& log, std::vector<bool>& seen) {
  const auto indexText = rest.TakeAttribute("index");
  const auto valueText = indexText ? rest.TakeAttribute("value") : std::nullopt;
  if (!valueText || !rest.Take("/>")) return false;
  const auto index = NumberOf(*indexText, kMostUsageCounters - 1);
  const auto value = NumberOf(*valueText, UINT32_MAX);
  if (!index || !value || seen[*index]) return false;
  seen[*index] = true;
  if (log.counters.size() <= *index) log.counters.resize(*index + 1);
  log.counters[*index] = *value;
  return true;
}

using VersionNumbers = std::array<std::uint32_t, kVersionNumbers>;

std::optional<VersionNumbers> NumbersOf(std::u16string_view version) {
  VersionNumbers numbers{};
  for (std::size_t place = 0; place < kVersionNumbers; ++place) {
    const std::size_t end = std::min(version.find(u'.'), version.size());
    if (end == 0 || end > kVersionDigits) return std::nullopt;
    for (const char16_t digit : version.substr(0, end)) {
      if (digit < u'0' || digit > u'9') return std::nullopt;
      numbers[place] = numbers[place] * 10 + (digit - u'0');
    }
    if (end == version.size()) return numbers;
    version.remove_prefix(end + 1);
  }
  return std::nullopt;
}

}  // namespace

std::string FormatUsageLog(const UsageLog& log) {
  std::string text(kDeclaration);
  text += "\n<UsageLog device=\"" + Escaped(log.deviceId) + "\" version=\"" + Escaped(log.version) +
          "\">\n";
  for (std::size_t index = 0; index < log.counters.size(); ++index)
    text += "  <Counter index=\"" + std::to_string(index) + "\" value=\"" +
            std::to_string(log.counters[index]) + "\"/>\n";
  return text + "</UsageLog>\n";
}

std::optional<UsageLog> ParseUsageLog(std::string_view bytes) {
  Rest rest(bytes);
  UsageLog log;
  if (!ParseHead(rest, log)) return std::nullopt;
  std::vector<bool> seen(kMostUsageCounters);
  while (rest.Take("<Counter "))
    if (!ParseCounter(rest, log, seen)) return std::nullopt;
  if (!rest.Take("</UsageLog>") || !rest.empty()) return std::nullopt;
  return log;
}

bool IsUsageLogVersion(std::u16string_view text) { return NumbersOf(text).has_value(); }

int CompareUsageLogVersions(std::u16string_view left, std::u16string_view right) {
  const VersionNumbers first = NumbersOf(left).value_or(VersionNumbers{});
  const VersionNumbers second = NumbersOf(right).value_or(VersionNumbers{});
  if (first == second) return 0;
  return first < second ? -1 : 1;
}

}  // namespace desk
