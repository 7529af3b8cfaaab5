#include "menu/separators.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace vgl {
namespace {

using Numbers = std::vector<std::int32_t>;

// The numbers up to the last one that isn't 0.
Numbers Parsed(std::u16string_view list) {
  const SeparatorPlaces places = ParseSeparators(list);
  Numbers numbers(places.begin(), places.end());
  while (!numbers.empty() && numbers.back() == 0) numbers.pop_back();
  return numbers;
}

std::u16string Repeated(std::u16string_view token, int times) {
  std::u16string list;
  for (int i = 0; i < times; ++i) list += token;
  return list;
}

TEST(Separators, AreNumbersDividedByCommas) {
  EXPECT_EQ(Parsed(u"5,7,10"), (Numbers{5, 7, 10}));
  EXPECT_EQ(Parsed(u"5"), Numbers{5});
  EXPECT_EQ(Parsed(u"998,0,1"), (Numbers{998, 0, 1}));
}

TEST(Separators, OfAnEmptyListAreNone) { EXPECT_EQ(Parsed(u""), Numbers{}); }

TEST(Separators, KeepTheOrderOfTheList) {
  EXPECT_EQ(Parsed(u"5,2"), (Numbers{5, 2}));
  EXPECT_EQ(Parsed(u"2,2,1"), (Numbers{2, 2, 1}));
}

TEST(Separators, AnEmptyPlaceIsZero) {
  EXPECT_EQ(Parsed(u"2,,5"), (Numbers{2, 0, 5}));
  EXPECT_EQ(Parsed(u",5"), (Numbers{0, 5}));
  EXPECT_EQ(Parsed(u"5,"), Numbers{5});
  EXPECT_EQ(Parsed(u",,,"), Numbers{});
}

TEST(Separators, ATokenIsReadAsADecimalNumber) {
  const struct {
    const char16_t* token;
    std::int32_t number;
  } cases[] = {
      {u"abc", 0},  {u"7up", 7},   {u"x7", 0},           {u"7 8", 7},  {u"5.9", 5},
      {u"5;6", 5},  {u"  7  ", 7}, {u"\t\r\n\v\f 7", 7}, {u" ", 0},    {u"+7", 7},
      {u"-7", -7},  {u" -7", -7},  {u"- 7", 0},          {u"+-7", 0},  {u"--7", 0},
      {u"+", 0},    {u"-", 0},     {u"007", 7},          {u"010", 10},  // no octal one
      {u"0x10", 0}, {u" 0x10", 0}, {u"\"7\"", 0},        {u"%d", 0},
  };
  for (const auto& each : cases) {
    const std::u16string list = std::u16string(each.token) + u",3";
    EXPECT_EQ(ParseSeparators(list)[0], each.number) << testing::PrintToString(each.token);
    EXPECT_EQ(ParseSeparators(list)[1], 3) << testing::PrintToString(each.token);
  }
}

TEST(Separators, TheEndsOfTheRangeAndWhatLiesBeyondAreZero) {
  const struct {
    const char16_t* token;
    std::int32_t number;
  } cases[] = {
      {u"2147483646", 2147483646},
      {u"2147483647", 0},
      {u"2147483648", 0},
      {u"4294967301", 0},  // 5 in its low 32 bits
      {u"9999999999", 0},
      {u"99999999999999999999999999", 0},
      {u"-2147483647", -2147483647},
      {u"-2147483648", 0},
      {u"-2147483649", 0},
      {u"-9999999999", 0},
      {u"0000000000000000000000000000005", 5},
  };
  for (const auto& each : cases) {
    const std::u16string list = std::u16string(each.token) + u",3";
    EXPECT_EQ(ParseSeparators(list)[0], each.number) << testing::PrintToString(each.token);
    EXPECT_EQ(ParseSeparators(list)[1], 3) << testing::PrintToString(each.token);
  }
}

TEST(Separators, BehindThe79thNothingIsRead) {
  EXPECT_EQ(Parsed(Repeated(u"1,", 78) + u"2"), [] {
    Numbers numbers(79, 1);
    numbers.back() = 2;
    return numbers;
  }());
  EXPECT_EQ(Parsed(Repeated(u"1,", 79) + u"2"), Numbers(79, 1));
  EXPECT_EQ(Parsed(Repeated(u"3,", 200)), Numbers(79, 3));
}

TEST(Separators, AListOf259CharactersIsReadToItsEnd) {
  // 64 of four characters, and one of three.
  const std::u16string list = Repeated(u"100,", 64) + u"101";
  ASSERT_EQ(list.size(), 259U);
  Numbers expected(64, 100);
  expected.push_back(101);
  EXPECT_EQ(Parsed(list), expected);
}

TEST(Separators, OneNumberMayFillTheWholeList) {
  EXPECT_EQ(Parsed(std::u16string(258, u'0') + u"7"), Numbers{7});
  EXPECT_EQ(Parsed(std::u16string(259, u'9')), Numbers{});
}

}  // namespace
}  // namespace vgl
