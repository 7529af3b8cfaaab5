#include "desk/registry_text.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <span>

#include "Common/text_conversion.h"

namespace desk {

using namespace platform;

namespace {

constexpr std::string_view kWideMark = "\xFF\xFE";

struct Hive {
  std::u16string_view name;
  HKEY key;
};
// Those that the simulated machine has.
constexpr Hive kHives[] = {{u"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
                           {u"HKEY_CURRENT_USER", HKEY_CURRENT_USER}};

bool IsText(std::uint32_t type) {
  return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

bool IsBlank(char16_t c) { return c == u' ' || c == u'\t'; }

std::u16string_view Trim(std::u16string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

// Whether `text` begins with `prefix`, which is taken off then.
bool Take(std::u16string_view& text, std::u16string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

std::optional<std::uint32_t> HexNumber(std::u16string_view digits, std::size_t mostDigits) {
  if (digits.empty() || digits.size() > mostDigits) return std::nullopt;
  const std::string narrow = vgl::Utf8FromText(digits);
  std::uint32_t number = 0;
  const char* const end = narrow.data() + narrow.size();
  const auto [stop, error] = std::from_chars(narrow.data(), end, number, 16);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

std::string LittleEndian(std::uint32_t number) {
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(number >> shift & 0xFF);
  return bytes;
}

// The mistake that a line is; it goes up to the loop over the lines.
struct Mistake {
  std::string what;
};

class Reader {
 public:
  explicit Reader(std::string_view bytes) : m_wide(bytes.starts_with(kWideMark)) {
    if (m_wide) bytes.remove_prefix(kWideMark.size());
    m_text = m_wide ? vgl::TextFromUtf16Le(std::as_bytes(std::span(bytes)))
                    : std::u16string(bytes.begin(), bytes.end());
    if (m_wide && bytes.size() % 2 != 0) m_oddEnd = true;
  }

  RegistryText Read() {
    RegistryText result;
    try {
      ReadHeader();
      std::u16string_view line;
      while (NextLine(line)) ReadLine(Trim(line));
    } catch (const Mistake& mistake) {
      result.error = "line " + std::to_string(m_line) + ": " + mistake.what;
    }
    result.changes = std::move(m_changes);
    return result;
  }

 private:
  bool NextLine(std::u16string_view& line) {
    if (m_at >= m_text.size()) return false;
    ++m_line;
    const std::size_t end = std::min(m_text.find(u'\n', m_at), m_text.size());
    line = std::u16string_view(m_text).substr(m_at, end - m_at);
    m_at = end + 1;
    if (line.ends_with(u'\r')) line.remove_suffix(1);
    if (m_oddEnd && m_at >= m_text.size()) throw Mistake{"the file ends within a character"};
    if (!m_wide && std::any_of(line.begin(), line.end(), [](char16_t c) { return c > 0x7F; }))
      throw Mistake{"a character that isn't ASCII; write the file in UTF-16 with its mark"};
    return true;
  }

  void ReadHeader() {
    std::u16string_view line;
    if (!NextLine(line)) m_line = 1;
    line = Trim(line);
    if (line != u"Windows Registry Editor Version 5.00" && line != u"REGEDIT4")
      throw Mistake{
          "the first line has to be \"Windows Registry Editor Version 5.00\" or \"REGEDIT4\""};
  }

  void ReadLine(std::u16string_view line) {
    if (line.empty() || line.front() == u';') return;
    if (line.front() == u'[') return ReadKey(line);
    ReadValue(line);
  }

  void ReadKey(std::u16string_view line) {
    if (!line.ends_with(u']')) throw Mistake{"the key has no \"]\" at the line's end"};
    line = line.substr(1, line.size() - 2);
    const bool removes = Take(line, u"-");
    const std::u16string_view hiveName = line.substr(0, line.find(u'\\'));
    const auto hive = std::find_if(std::begin(kHives), std::end(kHives), [&](const Hive& known) {
      return vgl::EqualsIgnoringAsciiCase(known.name, hiveName);
    });
    if (hive == std::end(kHives))
      throw Mistake{"there is no hive \"" + vgl::Utf8FromText(hiveName) +
                    "\"; the hives are HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER"};
    line.remove_prefix(std::min(hiveName.size() + 1, line.size()));
    if (removes && line.empty()) throw Mistake{"a hive can't be removed"};
    m_hive = hive->key;
    m_path = line;
    m_hasKey = !removes;
    Add(removes ? RegistryChange::Kind::RemoveKey : RegistryChange::Kind::MakeKey);
  }

  RegistryChange& Add(RegistryChange::Kind kind) {
    return m_changes.emplace_back(RegistryChange{kind, m_hive, m_path, {}, 0, {}});
  }

  void ReadValue(std::u16string_view line) {
    std::u16string name;
    if (!Take(line, u"@")) {
      if (!Take(line, u"\""))
        throw Mistake{"neither a [key] nor a value, as in \"name\"=\"text\" or @=dword:1"};
      name = TakeQuoted(line);
    }
    line = Trim(line);
    if (!Take(line, u"=")) throw Mistake{"there is no \"=\" behind the value's name"};
    if (!m_hasKey) throw Mistake{"a value without a key; put a [key] line in front"};
    RegistryChange value{RegistryChange::Kind::SetValue, m_hive, m_path, std::move(name), 0, {}};
    ReadData(Trim(line), value);
    m_changes.push_back(std::move(value));
  }

  // The text up to the closing quote, which is taken off as well.
  static std::u16string TakeQuoted(std::u16string_view& rest) {
    std::u16string text;
    while (!rest.empty() && rest.front() != u'"') {
      if (Take(rest, u"\\") && !rest.starts_with(u'\\') && !rest.starts_with(u'"'))
        throw Mistake{"behind a backslash stands a second one or a quote"};
      text += rest.front();
      rest.remove_prefix(1);
    }
    if (!Take(rest, u"\"")) throw Mistake{"a text without its closing quote"};
    return text;
  }

  void ReadData(std::u16string_view data, RegistryChange& value) {
    if (Take(data, u"-")) {
      value.kind = RegistryChange::Kind::RemoveValue;
      ExpectEnd(data);
    } else if (Take(data, u"\"")) {
      value.type = REG_SZ;
      value.bytes = vgl::Utf16LeFromText(TakeQuoted(data) + u'\0');
      ExpectEnd(data);
    } else if (Take(data, u"dword:")) {
      value.type = REG_DWORD;
      const auto number = HexNumber(Trim(data.substr(0, data.find(u';'))), 8);
      if (!number) throw Mistake{"behind dword: stand one to eight hexadecimal digits"};
      value.bytes = LittleEndian(*number);
    } else if (Take(data, u"hex")) {
      value.type = TakeType(data);
      value.bytes = ReadBytes(data);
      ExpectWholeText(value);
    } else {
      throw Mistake{"data is \"text\", dword:, hex: or hex(N):, or - to remove the value"};
    }
  }

  static void ExpectEnd(std::u16string_view rest) {
    rest = Trim(rest);
    if (!rest.empty() && rest.front() != u';')
      throw Mistake{"\"" + vgl::Utf8FromText(rest) + "\" behind the value's end"};
  }

  static std::uint32_t TakeType(std::u16string_view& data) {
    if (Take(data, u":")) return REG_BINARY;
    const std::size_t end = data.find(u"):");
    if (!data.starts_with(u'(') || end == std::u16string_view::npos)
      throw Mistake{"behind hex stand \":\" or the type, as in hex(7):"};
    const auto type = HexNumber(data.substr(1, end - 1), 8);
    if (!type) throw Mistake{"the type in hex(N): is a hexadecimal number"};
    data.remove_prefix(end + 2);
    return *type;
  }

  std::string ReadBytes(std::u16string_view data) {
    std::string bytes;
    data = Trim(data);
    if (data.empty()) return bytes;
    while (true) {
      if (data == u"\\") {
        if (!NextLine(data)) throw Mistake{"the data breaks off behind a backslash"};
        data = Trim(data);
      }
      const std::size_t end = std::min(data.find(u','), data.size());
      const auto byte = HexNumber(Trim(data.substr(0, end)), 2);
      if (!byte) throw Mistake{"bytes are two hexadecimal digits each, with commas between them"};
      bytes += static_cast<char>(*byte);
      if (end == data.size()) return bytes;
      data = Trim(data.substr(end + 1));
    }
  }

  void ExpectWholeText(const RegistryChange& value) const {
    if (!IsText(value.type)) return;
    if (!m_wide) throw Mistake{"a text in hexadecimal; that takes a file in UTF-16 with its mark"};
    const std::size_t whole = value.bytes.size() / 2 * 2;
    if (whole == 0 || value.bytes[whole - 1] != 0 || value.bytes[whole - 2] != 0)
      throw Mistake{"a text in hexadecimal ends in 00,00"};
  }

  const bool m_wide;
  bool m_oddEnd = false;
  std::u16string m_text;
  std::size_t m_at = 0;
  int m_line = 0;
  bool m_hasKey = false;
  HKEY m_hive{};
  std::u16string m_path;
  std::vector<RegistryChange> m_changes;
};

}  // namespace

RegistryText ParseRegistryText(std::string_view bytes) { return Reader(bytes).Read(); }

void ApplyChanges(const std::vector<RegistryChange>& changes, sim::RegistryTree& registry) {
  for (const RegistryChange& change : changes) {
    switch (change.kind) {
      case RegistryChange::Kind::MakeKey:
        registry.MakeKey(change.hive, change.path);
        break;
      case RegistryChange::Kind::RemoveKey:
        registry.RemoveKey(change.hive, change.path);
        break;
      case RegistryChange::Kind::SetValue:
        registry.SetBytes(change.hive, change.path, change.name, change.type, change.bytes);
        break;
      case RegistryChange::Kind::RemoveValue:
        registry.RemoveValue(change.hive, change.path, change.name);
        break;
    }
  }
}

}  // namespace desk
