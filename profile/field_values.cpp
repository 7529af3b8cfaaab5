#include "profile/field_values.h"

#include <algorithm>
#include <limits>

#include "Common/text_conversion.h"
#include "platform/registry.h"
#include "profile/blanks.h"

namespace vgl {

namespace {

constexpr std::size_t kNone = std::u16string_view::npos;

// How far a field goes.
struct FieldEnd {
  std::size_t length = 0;     // of the field; kNone: it is the last one
  std::size_t separator = 0;  // the character behind which the next field begins
};

// Blanks in front of a quote don't hide it: lists are written with a blank behind each comma.
//
// The comma is looked for from the first quote behind the opening one, which may be the first of
// two that stand for one: "a"",b" is the two fields "a"" and b". That is kept. A
// quoted field that isn't closed (a comment has cut it) is empty, and the field behind it begins
// behind the quote.
FieldEnd EndOfField(std::u16string_view rest) {
  const std::size_t first = rest.size() - TrimLeft(rest).size();
  std::size_t from = 0;
  if (first < rest.size() && rest[first] == u'"') {
    from = rest.find(u'"', first + 1);
    if (from == kNone) return {0, first};
  }
  const std::size_t comma = rest.find(u',', from);
  return {comma, comma};
}

std::u16string_view BehindField(std::u16string_view rest, const FieldEnd& end) {
  return end.length == kNone ? std::u16string_view() : rest.substr(end.separator + 1);
}

// In `text`, unless the field can stay as it is.
std::u16string_view WithSingleQuotes(std::u16string_view field, std::u16string& text) {
  constexpr std::u16string_view kPair = u"\"\"";
  std::size_t pair = field.find(kPair);
  if (pair == kNone) return field;
  text.clear();
  for (; pair != kNone; pair = field.find(kPair)) {
    text.append(field.substr(0, pair + 1));
    field.remove_prefix(pair + kPair.size());
  }
  return text.append(field);
}

bool ContainsInAnyCase(std::u16string_view text, std::u16string_view upperWord) {
  return std::search(text.begin(), text.end(), upperWord.begin(), upperWord.end(),
                     [](char16_t a, char16_t b) { return AsciiUpper(a) == b; }) != text.end();
}

// 16 for what is no digit of any base here.
std::uint32_t DigitValue(char16_t character) {
  if (character >= u'0' && character <= u'9') return character - u'0';
  const char16_t upper = AsciiUpper(character);
  return upper >= u'A' && upper <= u'F' ? upper - u'A' + 10U : 16U;
}

}  // namespace

std::u16string_view CFieldWalker::Next(std::u16string& room) {
  const FieldEnd end = EndOfField(m_rest);
  const std::u16string_view field = m_rest.substr(0, end.length);
  m_rest = BehindField(m_rest, end);
  return WithSingleQuotes(field, room);
}

std::u16string CFieldWalker::Next() {
  std::u16string room;
  return std::u16string(Next(room));
}

void CFieldWalker::Skip() { m_rest = BehindField(m_rest, EndOfField(m_rest)); }

std::u16string GetField(std::u16string_view list, std::size_t index) {
  for (; index > 0 && !list.empty(); --index) list = BehindField(list, EndOfField(list));
  return CFieldWalker(list).Next();
}

std::u16string_view Unquote(std::u16string_view field) {
  if (field.size() < 2 || field.front() != u'"' || field.back() != u'"') return {};
  return field.substr(1, field.size() - 2);
}

std::uint32_t ClassifyValue(std::u16string_view field) {
  const std::u16string_view text = Trim(field);
  if (text.empty()) return platform::REG_DWORD;
  if (ContainsInAnyCase(text, u"DRIVERDIR") || ContainsInAnyCase(text, u"SYSTEMDIR"))
    return platform::REG_SZ;
  // A single quote is enclosed by itself: it is what GetField gives for "", a string without text.
  return text.front() == u'"' && text.back() == u'"' ? platform::REG_SZ : platform::REG_DWORD;
}

std::int64_t ParseNumber(std::u16string_view field) {
  const bool isHexadecimal = field.starts_with(u"0x") || field.starts_with(u"0X");
  const std::uint32_t base = isHexadecimal ? 16 : 10;
  std::u16string_view text = TrimLeft(isHexadecimal ? field.substr(2) : field);
  const bool isNegative = text.starts_with(u'-');
  if (isNegative || text.starts_with(u'+')) text.remove_prefix(1);

  constexpr std::int64_t kHighest = std::numeric_limits<std::int32_t>::max();
  const std::int64_t limit = isNegative ? kHighest + 1 : kHighest;
  std::int64_t number = 0;
  for (; !text.empty() && DigitValue(text.front()) < base; text.remove_prefix(1))
    number = std::min(limit, number * base + DigitValue(text.front()));
  return isNegative ? -number : number;
}

std::int32_t ParseDecimal(std::u16string_view text) {
  return static_cast<std::int32_t>(ParseNumber(text.substr(0, text.find_first_of(u"xX"))));
}

}  // namespace vgl
