// Languages as plain values: the text of a list, its numbers, the choice.
#include "profile/language_selection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace vgl {
namespace {

using namespace std::string_view_literals;

// The choice from a list whose lines end in terminators.
std::u16string Pick(std::u16string_view list, std::uint16_t language) {
  const auto count = static_cast<std::uint32_t>(std::count(list.begin(), list.end(), u'\0'));
  return std::u16string(PickLanguage(ParseLanguageList(list, count), language));
}

// --- Numbers

TEST(LanguageNumbers, AreHexadecimalOfEitherCase) {
  const struct {
    std::u16string_view text;
    std::uint16_t number;
  } cases[] = {
      {u"0A", 10},     {u"0a", 10},  {u"9", 9},        {u"11", 17},        {u"fF", 255},
      {u"3FF", 0x3FF}, {u"zz", 0},   {u"", 0},         {u"0x0A", 10},      {u"1 1", 17},
      {u" 0-9;", 9},   {u"gAh", 10}, {u"FFFF", 65535}, {u"12345", 0x2345}, {u"FFFFFFFF0009", 9},
      {u"\uFF11", 0},  // a digit of another width
  };
  for (const auto& c : cases) EXPECT_EQ(LanguageNumber(c.text), c.number) << c.number;
}

// --- Records

TEST(LanguageRecords, HaveSectionPrimaryAndSublanguageAsTheyStand) {
  const std::vector<LanguageRecord> records =
      ParseLanguageList(u"DEU=07,01\0ENU = 09 , 1,x,y\0"sv, 2);
  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(records[0].section, u"DEU");
  EXPECT_EQ(records[0].primary, u"07");
  EXPECT_EQ(records[0].sublanguage, u"01");
  EXPECT_EQ(records[1].section, u"ENU ");
  EXPECT_EQ(records[1].primary, u" 09 ");
  EXPECT_EQ(records[1].sublanguage, u" 1");
}

TEST(LanguageRecords, FieldsThatAreMissingAreEmpty) {
  const std::vector<LanguageRecord> records =
      ParseLanguageList(u"alone\0a,b\0A=\0B=07\0=09,01\0C=,02\0"sv, 6);
  ASSERT_EQ(records.size(), 6U);
  const std::u16string_view expected[][3] = {{u"alone", u"", u""}, {u"a,b", u"", u""},
                                             {u"A", u"", u""},     {u"B", u"07", u""},
                                             {u"", u"09", u"01"},  {u"C", u"", u"02"}};
  for (std::size_t at = 0; at < 6; ++at) {
    EXPECT_EQ(records[at].section, expected[at][0]);
    EXPECT_EQ(records[at].primary, expected[at][1]);
    EXPECT_EQ(records[at].sublanguage, expected[at][2]);
  }
}

TEST(LanguageRecords, OnlyTheFirstEqualsSignDivides) {
  const std::vector<LanguageRecord> records = ParseLanguageList(u"A=B=09,01\0"sv, 1);
  EXPECT_EQ(records[0].section, u"A");
  EXPECT_EQ(records[0].primary, u"B=09");
}

TEST(LanguageRecords, AreAsManyAsAreAskedFor) {
  EXPECT_EQ(ParseLanguageList(u"A=1\0B=2\0"sv, 1).size(), 1U);
  const std::vector<LanguageRecord> records = ParseLanguageList(u"A=1\0"sv, 3);
  ASSERT_EQ(records.size(), 3U);
  EXPECT_EQ(records[1].section, u"");
  EXPECT_EQ(records[2].section, u"");
  EXPECT_TRUE(ParseLanguageList(u"A=1\0"sv, 0).empty());
}

// --- The choice

TEST(PickingALanguage, TheSameInBothIsChosenWhateverComesFirst) {
  const std::u16string_view list = u"ENU=09,01\0OTHER=11,02\0JPN=11,01\0LAST=11,01\0"sv;
  EXPECT_EQ(Pick(list, 0x0411), u"JPN");
}

TEST(PickingALanguage, TheSamePrimaryIsChosenAlsoBehindAnEnglishLine) {
  EXPECT_EQ(Pick(u"ESP=0A,01\0"sv, 0x0C0A), u"ESP");
  EXPECT_EQ(Pick(u"ENU=09,01\0ESP=0A,01\0"sv, 0x0C0A), u"ESP");
  EXPECT_EQ(Pick(u"ESP=0A,01\0ENU=09,01\0"sv, 0x0C0A), u"ESP");
}

TEST(PickingALanguage, OfSeveralOfThePrimaryTheFirstIsChosen) {
  EXPECT_EQ(Pick(u"ENU=09,01\0ES1=0A,01\0ES2=0A,02\0"sv, 0x0C0A), u"ES1");
  EXPECT_EQ(Pick(u"ENG=09,02\0AUS=09,03\0"sv, 0x0409), u"ENG");
}

TEST(PickingALanguage, WithoutThePrimaryTheFirstEnglishLineIsChosen) {
  EXPECT_EQ(Pick(u"A=07,01\0B=09,01\0"sv, 0x0411), u"B");
  EXPECT_EQ(Pick(u"B=09,02\0C=09,01\0"sv, 0x0411), u"B");
}

TEST(PickingALanguage, WithoutAnEnglishLineTheFirstIsChosen) {
  EXPECT_EQ(Pick(u"A=07,01\0B=0C,01\0"sv, 0x0411), u"A");
  EXPECT_EQ(Pick(u"A=zz\0B=0C,01\0"sv, 0x0411), u"A");
}

TEST(PickingALanguage, PrimaryIsTheLow10BitsAndSublanguageTheHigh6) {
  EXPECT_EQ(Pick(u"A=3FE,3F\0B=3FF,3F\0"sv, 0xFFFF), u"B");
  EXPECT_EQ(Pick(u"A=200,01\0B=200,00\0"sv, 0x0200), u"B");
}

TEST(PickingALanguage, MoreThan16BitsOfANumberDontCount) {
  EXPECT_EQ(Pick(u"A=07,01\0B=10011,10001\0"sv, 0x0411), u"B");
}

TEST(PickingALanguage, WithoutRecordsThereIsNone) {
  EXPECT_EQ(PickLanguage({}, 0x0409), u"");
  EXPECT_EQ(Pick(u"\0\0"sv, 0x0409), u"");
}

}  // namespace
}  // namespace vgl
