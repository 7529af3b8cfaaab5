#include "Common/wide_format.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

namespace vgl {
namespace {

TEST(WideFormat, PutsTextsIntoTheSuitesTemplates) {
  const std::u16string driver = u"KAVRO X1";
  PathText folder;
  ASSERT_TRUE(folder.Assign(u"C:\\T\\"));
  EXPECT_EQ(WideFormat(u"%s /FU \"%s\"", u"C:\\a.exe", u"C:\\T\\K_Q1.tmp"),
            u"C:\\a.exe /FU \"C:\\T\\K_Q1.tmp\"");
  EXPECT_EQ(WideFormat(u"%s%s", folder, u"K_Q1.tmp"), u"C:\\T\\K_Q1.tmp");
  EXPECT_EQ(WideFormat(u"Software\\%s\\Menu", driver), u"Software\\KAVRO X1\\Menu");
  EXPECT_EQ(WideFormat(u"/P%d \"%s\"\n", 4, std::u16string_view(u"a\"/b")), u"/P4 \"a\"/b\"\n");
}

TEST(WideFormat, GivesATemplateWithoutDirectivesAsItIs) {
  EXPECT_EQ(WideFormat(u"plain"), u"plain");
  EXPECT_EQ(WideFormat(u""), u"");
}

struct NumberCase {
  const char16_t* format;
  std::int64_t number;
  const char16_t* expected;
};

TEST(WideFormat, WritesNumbersAsTheSuitesTemplatesAsk) {
  constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
  const NumberCase cases[] = {
      {u"%d", 0, u"0"},
      {u"%d", -17, u"-17"},
      {u"%d", kLeast, u"-2147483648"},
      {u"%u", 4000000000, u"4000000000"},
      {u"%u", -1, u"4294967295"},
      {u"%ld", -5, u"-5"},
      {u"%lu", 4294967295, u"4294967295"},
      {u"%X", 0xBEEF, u"BEEF"},
      {u"%x", 0xBEEF, u"beef"},
      {u"%X", -1, u"FFFFFFFF"},
      {u"%X", 0, u"0"},
      {u"%04X;", 0x1A, u"001A;"},
      {u"%04X;", 0x12345, u"12345;"},
      {u"%08X", 0xABC, u"00000ABC"},
      {u"%02X ", 7, u"07 "},
      {u"%5u:", 42, u"   42:"},
      {u"%5u:", 1234567, u"1234567:"},
      {u"%02u", 3, u"03"},
      {u"%03u", 1000, u"1000"},
      {u"P%016d", 12, u"P0000000000000012"},
      {u"P%016d", -12, u"P-000000000000012"},
      {u"%03d", 7, u"007"},
      {u"%03d", -7, u"-07"},
      {u"%04d", 2026, u"2026"},
      {u"%02d", 0, u"00"},
      {u"%08ld", 4096, u"00004096"},
      {u"%1d", 5, u"5"},
      {u"%-4d|", 5, u"5   |"},
      {u"%-04d|", 5, u"5   |"},
      {u"%4d|", -5, u"  -5|"},
      {u"%.3d", 5, u"005"},
      {u"%5.3d", -5, u" -005"},
      {u"%05.3d", 5, u"  005"},
      {u"%.0d", 0, u""},
  };
  for (const NumberCase& c : cases) {
    SCOPED_TRACE(testing::PrintToString(std::u16string(c.format)));
    EXPECT_EQ(WideFormat(c.format, c.number), c.expected);
  }
}

TEST(WideFormat, TakesTheLow32BitsOfALongerNumberUnlessAskedForAll) {
  constexpr std::int64_t number = 0x1'0000'0005;
  EXPECT_EQ(WideFormat(u"%d %ld %u %lu %X", number, number, number, number, number), u"5 5 5 5 5");
  EXPECT_EQ(WideFormat(u"%lld %llu %llX %I64d", number, number, number, number),
            u"4294967301 4294967301 100000005 4294967301");
}

TEST(WideFormat, WritesTheLimitsOf64Bits) {
  EXPECT_EQ(WideFormat(u"%lld", std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808");
  EXPECT_EQ(WideFormat(u"%llu", std::numeric_limits<std::uint64_t>::max()),
            u"18446744073709551615");
  EXPECT_EQ(WideFormat(u"%llx", std::numeric_limits<std::uint64_t>::max()), u"ffffffffffffffff");
}

TEST(WideFormat, TakesNumbersOfEveryWidth) {
  EXPECT_EQ(WideFormat(u"%d %d %u %u", std::int8_t{-1}, std::int16_t{-2}, std::uint8_t{255},
                       std::uint16_t{65535}),
            u"-1 -2 255 65535");
}

TEST(WideFormat, WritesCharacters) {
  EXPECT_EQ(WideFormat(u"%s%c", u"title", char16_t{0x200E}), u"title\u200E");
  EXPECT_EQ(WideFormat(u"%c", 0x41), u"A");
  EXPECT_EQ(WideFormat(u"[%3c][%-3c]", u'a', u'b'), u"[  a][b  ]");
}

TEST(WideFormat, PadsAndCutsTextsByWidthAndPrecision) {
  EXPECT_EQ(WideFormat(u"[%5s][%-5s][%.2s][%4.1s]", u"abc", u"abc", u"abc", u"abc"),
            u"[  abc][abc  ][ab][   a]");
  EXPECT_EQ(WideFormat(u"%2s", u"longer"), u"longer");
}

TEST(WideFormat, AWrittenTextIsNoTemplateAgain) {
  EXPECT_EQ(WideFormat(u"%s %s", u"%s%d%n", u"b"), u"%s%d%n b");
}

TEST(WideFormat, ANullPointerIsWrittenInWords) {
  const char16_t* nothing = nullptr;
  EXPECT_EQ(WideFormat(u"[%s]", nothing), u"[(null)]");
  EXPECT_EQ(WideFormat(u"[%s]", std::u16string_view()), u"[]");
}

TEST(WideFormat, TwoPercentSignsGiveOne) {
  EXPECT_EQ(WideFormat(u"100%%"), u"100%");
  EXPECT_EQ(WideFormat(u"%%s%%%d", 5), u"%s%5");
  EXPECT_EQ(WideFormat(u"%%%%"), u"%%");
}

TEST(WideFormat, APercentSignAtTheEndStands) {
  EXPECT_EQ(WideFormat(u"50%"), u"50%");
  EXPECT_EQ(WideFormat(u"%"), u"%");
  EXPECT_EQ(WideFormat(u"%%%"), u"%%");
}

TEST(WideFormat, ADirectiveWithoutArgumentStands) {
  EXPECT_EQ(WideFormat(u"%s and %s", u"a"), u"a and %s");
  EXPECT_EQ(WideFormat(u"%08X%c%-5.2lu"), u"%08X%c%-5.2lu");
}

TEST(WideFormat, ADirectiveOfAnotherKindStandsAndUsesItsArgumentUp) {
  EXPECT_EQ(WideFormat(u"%d|%s", u"text", u"next"), u"%d|next");
  EXPECT_EQ(WideFormat(u"%s|%d", 5, 6), u"%s|6");
  EXPECT_EQ(WideFormat(u"%c|%u", u"text", u'x'), u"%c|%u");
}

TEST(WideFormat, IgnoresArgumentsThatNothingAsksFor) {
  EXPECT_EQ(WideFormat(u"%d", 1, u"two", 3), u"1");
}

TEST(WideFormat, WhatIsNoDirectiveStandsAndTakesNoArgument) {
  const char16_t* const texts[] = {
      u"%n",
      u"%p",
      u"%f",
      u"%S",
      u"%*d",
      u"%.*s",
      u"%+d",
      u"% d",
      u"%#x",
      u"%hd",
      u"%zu",
      u"%1$s",
      u"%I32d",
      u"%lll",
      u"%5",
      u"%.",
      u"%-",
      u"%0",
      u"%l",
      u"%1000000d",
      u"%.1000000s",
      u"%513d",
      u"%.513d",
      u"%99999999999999999999999s",
      u"%-099999999999d",
      u"%\u00e4",
  };
  for (const char16_t* text : texts) {
    SCOPED_TRACE(testing::PrintToString(std::u16string(text)));
    EXPECT_EQ(WideFormat(std::u16string(text) + u"|%s", u"arg"), std::u16string(text) + u"|arg");
  }
}

TEST(WideFormat, ADirectiveCanStandBehindWhatIsNone) {
  EXPECT_EQ(WideFormat(u"%5%d", 1), u"%51");
  EXPECT_EQ(WideFormat(u"%*%s", u"a"), u"%*a");
}

TEST(WideFormat, TheWidestDirectiveIsCarriedOut) {
  EXPECT_EQ(WideFormat(u"%512d", 1), std::u16string(511, u' ') + u"1");
  EXPECT_EQ(WideFormat(u"%.512d", 1), std::u16string(511, u'0') + u"1");
}

TEST(WideFormat, KeepsNulCharactersOfTemplateAndTexts) {
  const std::u16string_view text(u"a\0b", 3);
  const std::u16string_view format(u"%s\0%d", 5);
  EXPECT_EQ(WideFormat(format, text, 1), std::u16string(u"a\0b\0"
                                                        u"1",
                                                        5));
}

TEST(FormatTo, FitsWithItsTerminator) {
  FixedText<6> text;
  EXPECT_TRUE(FormatTo(text, u"%s-%d", u"abc", 1));
  EXPECT_EQ(text.view(), u"abc-1");
}

TEST(FormatTo, LeavesTheFieldWhenTheTextDoesNotFit) {
  FixedText<6> text;
  ASSERT_TRUE(text.Assign(u"old"));
  EXPECT_FALSE(FormatTo(text, u"%s-%d", u"abc", 10));
  EXPECT_EQ(text.view(), u"old");
}

TEST(FormatTo, TheFieldMayBeItsOwnArgument) {
  FixedText<10> text;
  ASSERT_TRUE(text.Assign(u"ab"));
  EXPECT_TRUE(FormatTo(text, u"[%s%s]", text, text));
  EXPECT_EQ(text.view(), u"[abab]");
}

TEST(WideFormatWithin, CountsTheTerminator) {
  EXPECT_EQ(WideFormatWithin(4, u"%d", 123), u"123");
  EXPECT_EQ(WideFormatWithin(3, u"%d", 123), std::nullopt);
  EXPECT_EQ(WideFormatWithin(1, u""), u"");
  EXPECT_EQ(WideFormatWithin(0, u""), std::nullopt);
}

}  // namespace
}  // namespace vgl
