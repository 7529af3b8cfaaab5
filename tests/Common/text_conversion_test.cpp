#include "Common/text_conversion.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace vgl {
namespace {

using namespace std::string_view_literals;

std::u16string FromUtf16Le(std::string_view bytes) {
  return TextFromUtf16Le(std::as_bytes(std::span(bytes)));
}

TEST(Utf16Le, PutsTheLowByteFirst) {
  EXPECT_EQ(Utf16LeFromText(u"A\u20AC\n"), "A\0\xAC\x20\n\0"sv);
  EXPECT_EQ(FromUtf16Le("A\0\xAC\x20\n\0"sv), u"A\u20AC\n");
}

TEST(Utf16Le, EmptyStaysEmpty) {
  EXPECT_EQ(Utf16LeFromText(u""), "");
  EXPECT_EQ(FromUtf16Le(""), u"");
}

TEST(Utf16Le, AnOddLastByteCountsWithAZeroByteBehindIt) {
  EXPECT_EQ(FromUtf16Le("A\0B"sv), u"AB");
  EXPECT_EQ(FromUtf16Le("\xFF"sv), u"\u00FF");
}

TEST(Utf16Le, KeepsEveryCharacterAsItIs) {
  // A byte-order mark, a U+0000, and a high surrogate alone.
  const std::u16string text{0xFEFF, 0, 0xD800};
  EXPECT_EQ(Utf16LeFromText(text), "\xFF\xFE\0\0\0\xD8"sv);
  EXPECT_EQ(FromUtf16Le("\xFF\xFE\0\0\0\xD8"sv), text);
}

struct Utf8Case {
  std::u16string text;
  std::string bytes;
};

TEST(Utf8, ConvertsWellFormedTextBothWays) {
  const Utf8Case cases[] = {
      {u"", ""},
      {u"plain\n", "plain\n"},
      {{0x7F, 0x80}, "\x7F\xC2\x80"},
      {{0x7FF, 0x800}, "\xDF\xBF\xE0\xA0\x80"},
      {{0xD7FF, 0xE000}, "\xED\x9F\xBF\xEE\x80\x80"},
      {{0xFFFF}, "\xEF\xBF\xBF"},
      {{0xD800, 0xDC00}, "\xF0\x90\x80\x80"},
      {{0xDBFF, 0xDFFF}, "\xF4\x8F\xBF\xBF"},
      {{0xD83D, 0xDE00, u'!'}, "\xF0\x9F\x98\x80!"},
      {std::u16string(1, u'\0'), std::string(1, '\0')},
  };
  for (const Utf8Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.bytes));
    EXPECT_EQ(Utf8FromText(c.text), c.bytes);
    EXPECT_EQ(TextFromUtf8(c.bytes), c.text);
  }
}

TEST(Utf8, ALoneSurrogateBecomesAReplacementCharacter) {
  const Utf8Case cases[] = {
      {{0xD800}, "\xEF\xBF\xBD"},
      {{0xDC00}, "\xEF\xBF\xBD"},
      {{u'a', 0xD800, u'b'},
       "a\xEF\xBF\xBD"
       "b"},
      {{0xDC00, 0xD800}, "\xEF\xBF\xBD\xEF\xBF\xBD"},
      {{0xD800, 0xD83D, 0xDE00}, "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
  };
  for (const Utf8Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.bytes));
    EXPECT_EQ(Utf8FromText(c.text), c.bytes);
  }
}

TEST(Utf8, EachIllFormedPartBecomesOneReplacementCharacter) {
  const Utf8Case cases[] = {
      {u"\uFFFD", "\x80"},                                // a follower without a first byte
      {u"\uFFFD\uFFFD", "\xC0\x80"},                      // overlong
      {u"\uFFFD\uFFFD", "\xC1\xBF"},                      // overlong
      {u"\uFFFD\uFFFD\uFFFD", "\xE0\x9F\xBF"},            // overlong
      {u"\uFFFD\uFFFD\uFFFD\uFFFD", "\xF0\x8F\xBF\xBF"},  // overlong
      {u"\uFFFD\uFFFD\uFFFD", "\xED\xA0\x80"},            // a surrogate
      {u"\uFFFD\uFFFD\uFFFD\uFFFD", "\xF4\x90\x80\x80"},  // behind U+10FFFF
      {u"\uFFFD", "\xF5"},                                // begins nothing
      {u"\uFFFD", "\xFF"},                                // begins nothing
      {u"\uFFFD", "\xE2\x82"},                            // cut off at the end
      {u"\uFFFDa",
       "\xE2\x82"
       "a"},  // cut off by a letter
      {u"\uFFFDa",
       "\xF0\x9F\x98"
       "a"},                                      // cut off by a letter
      {u"\uFFFD\u20AC", "\xE2\x82\xE2\x82\xAC"},  // cut off by a good one
  };
  for (const Utf8Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.bytes));
    EXPECT_EQ(TextFromUtf8(c.bytes), c.text);
  }
}

TEST(EqualsIgnoringAsciiCase, FoldsAToZOnly) {
  EXPECT_TRUE(EqualsIgnoringAsciiCase(u"hkLm", u"HKlM"));
  EXPECT_TRUE(EqualsIgnoringAsciiCase(u"azAZ09", u"AZaz09"));
  EXPECT_TRUE(EqualsIgnoringAsciiCase(u"", u""));
  EXPECT_FALSE(EqualsIgnoringAsciiCase(u"\u00E4", u"\u00C4"));
  // The dotless and the dotted i, and the sign of the kelvin, are no ASCII letters.
  EXPECT_FALSE(EqualsIgnoringAsciiCase(u"I", u"\u0131"));
  EXPECT_FALSE(EqualsIgnoringAsciiCase(u"i", u"\u0130"));
  EXPECT_FALSE(EqualsIgnoringAsciiCase(u"k", u"\u212A"));
}

TEST(EqualsIgnoringAsciiCase, TellsApartTheNeighboursOfTheLetters) {
  // Each pair is as far apart as a small letter from its capital.
  EXPECT_FALSE(EqualsIgnoringAsciiCase(u"@", u"`"));
  EXPECT_FALSE(EqualsIgnoringAsciiCase(u"[", u"{"));
}

TEST(EqualsIgnoringAsciiCase, LengthsCount) {
  EXPECT_FALSE(EqualsIgnoringAsciiCase(u"P", u"PP"));
  EXPECT_FALSE(EqualsIgnoringAsciiCase(u"", u"P"));
}

}  // namespace
}  // namespace vgl
