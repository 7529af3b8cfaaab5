#include "Common/text_conversion.h"

#include <algorithm>
#include <cstdint>

namespace vgl {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void AppendUtf8(std::string& out, char32_t point) {
  const auto add = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (point < 0x80) {
    add(point);
  } else if (point < 0x800) {
    add(0xC0 | (point >> 6));
    add(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    add(0xE0 | (point >> 12));
    add(0x80 | ((point >> 6) & 0x3F));
    add(0x80 | (point & 0x3F));
  } else {
    add(0xF0 | (point >> 18));
    add(0x80 | ((point >> 12) & 0x3F));
    add(0x80 | ((point >> 6) & 0x3F));
    add(0x80 | (point & 0x3F));
  }
}

void AppendUtf16(std::u16string& out, char32_t point) {
  if (point < 0x10000) {
    out.push_back(static_cast<char16_t>(point));
  } else {
    out.push_back(static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
  }
}

// What a first byte of UTF-8 announces. The range of the second byte is narrower behind some first
// bytes, which keeps out overlong forms, surrogates and what lies behind U+10FFFF.
struct Utf8Lead {
  std::size_t followers = 0;  // 0 for a byte that begins no longer sequence
  char32_t bits = 0;
  std::uint8_t lowest = 0x80, highest = 0xBF;
};

Utf8Lead ReadLead(std::uint8_t byte) {
  Utf8Lead lead;
  if (byte >= 0xC2 && byte <= 0xDF) {
    lead = {1, byte & 0x1FU};
  } else if (byte >= 0xE0 && byte <= 0xEF) {
    lead = {2, byte & 0x0FU};
  } else if (byte >= 0xF0 && byte <= 0xF4) {
    lead = {3, byte & 0x07U};
  }
  if (byte == 0xE0) lead.lowest = 0xA0;
  if (byte == 0xED) lead.highest = 0x9F;
  if (byte == 0xF0) lead.lowest = 0x90;
  if (byte == 0xF4) lead.highest = 0x8F;
  return lead;
}

// Takes one character, or one part that is none, off the front of `bytes`, which isn't empty.
char32_t TakeUtf8(std::string_view& bytes) {
  const auto first = static_cast<std::uint8_t>(bytes.front());
  bytes.remove_prefix(1);
  if (first < 0x80) return first;
  Utf8Lead lead = ReadLead(first);
  if (lead.followers == 0) return kReplacement;
  for (; lead.followers > 0; --lead.followers) {
    if (bytes.empty()) return kReplacement;
    const auto byte = static_cast<std::uint8_t>(bytes.front());
    if (byte < lead.lowest || byte > lead.highest) return kReplacement;
    bytes.remove_prefix(1);
    lead.bits = (lead.bits << 6) | (byte & 0x3FU);
    lead.lowest = 0x80;
    lead.highest = 0xBF;
  }
  return lead.bits;
}

}  // namespace

std::u16string TextFromUtf16Le(std::span<const std::byte> bytes) {
  std::u16string text;
  text.reserve((bytes.size() + 1) / 2);
  for (std::size_t at = 0; at < bytes.size(); at += 2) {
    const auto low = std::to_integer<unsigned>(bytes[at]);
    const auto high = at + 1 < bytes.size() ? std::to_integer<unsigned>(bytes[at + 1]) : 0U;
    text.push_back(static_cast<char16_t>(low | (high << 8)));
  }
  return text;
}

std::string Utf16LeFromText(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size() * 2);
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  return bytes;
}

std::string Utf8FromText(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char32_t unit = text[at];
    const char32_t next = at + 1 < text.size() ? text[at + 1] : 0;
    if (IsHighSurrogate(unit) && IsLowSurrogate(next)) {
      AppendUtf8(bytes, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
      ++at;
    } else {
      AppendUtf8(bytes, IsHighSurrogate(unit) || IsLowSurrogate(unit) ? kReplacement : unit);
    }
  }
  return bytes;
}

std::u16string TextFromUtf8(std::string_view bytes) {
  std::u16string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) AppendUtf16(text, TakeUtf8(bytes));
  return text;
}

bool EqualsIgnoringAsciiCase(std::u16string_view left, std::u16string_view right) {
  return left.size() == right.size() &&
         std::equal(left.begin(), left.end(), right.begin(), [](char16_t a, char16_t b) {
           return a == b || AsciiUpper(a) == AsciiUpper(b);
         });
}

}  // namespace vgl
