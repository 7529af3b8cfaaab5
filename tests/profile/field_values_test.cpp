#include "profile/field_values.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vgl {
namespace {

using Texts = std::vector<std::u16string>;

Texts FirstFields(std::u16string_view list, std::size_t count) {
  Texts fields;
  for (std::size_t index = 0; index < count; ++index) fields.push_back(GetField(list, index));
  return fields;
}

// --- Fields

TEST(Fields, CommasDivideBareFields) {
  EXPECT_EQ(FirstFields(u"a,b,c", 3), (Texts{u"a", u"b", u"c"}));
}

TEST(Fields, BehindTheLastFieldThereAreOnlyEmptyOnes) {
  EXPECT_EQ(FirstFields(u"a", 4), (Texts{u"a", u"", u"", u""}));
  EXPECT_EQ(GetField(u"a,\"b\"", 1000000000), u"");
}

TEST(Fields, AnEmptyListHasOneEmptyField) { EXPECT_EQ(FirstFields(u"", 2), (Texts{u"", u""})); }

TEST(Fields, FieldsMayBeEmpty) {
  EXPECT_EQ(FirstFields(u",a,,b,", 6), (Texts{u"", u"a", u"", u"b", u"", u""}));
}

TEST(Fields, BlanksAreKept) {
  EXPECT_EQ(FirstFields(u" a , b ,\tc", 3), (Texts{u" a ", u" b ", u"\tc"}));
}

TEST(Fields, QuotesAroundAFieldAreKeptAndHideCommas) {
  EXPECT_EQ(FirstFields(u"\"a,b\",c", 2), (Texts{u"\"a,b\"", u"c"}));
}

TEST(Fields, ABlankInFrontOfAQuoteDoesntHideIt) {
  EXPECT_EQ(FirstFields(u"A, \"x,y\", 12", 3), (Texts{u"A", u" \"x,y\"", u" 12"}));
}

TEST(Fields, ADoubledQuoteBecomesOne) {
  EXPECT_EQ(FirstFields(u"\"a\"\"b\",c", 2), (Texts{u"\"a\"b\"", u"c"}));
  EXPECT_EQ(GetField(u"a\"\"b", 0), u"a\"b");
}

TEST(Fields, OfThreeQuotesInARowTwoAreLeft) { EXPECT_EQ(GetField(u"x\"\"\"y", 0), u"x\"\"y"); }

TEST(Fields, AQuoteInsideABareFieldIsCopiedAndHidesNothing) {
  EXPECT_EQ(FirstFields(u"a\"b,c\"d", 2), (Texts{u"a\"b", u"c\"d"}));
}

TEST(Fields, ACommaBehindADoubledQuoteEndsTheField) {
  EXPECT_EQ(FirstFields(u"\"a\"\",b\"", 3), (Texts{u"\"a\"", u"b\"", u""}));
}

TEST(Fields, TextBehindTheClosingQuoteBelongsToTheField) {
  EXPECT_EQ(FirstFields(u"\"a\"+b,c", 2), (Texts{u"\"a\"+b", u"c"}));
}

TEST(Fields, AFieldOfTwoQuotesIsOneQuote) {
  EXPECT_EQ(FirstFields(u"A,\"\",c", 3), (Texts{u"A", u"\"", u"c"}));
}

TEST(Fields, AValueCutInsideItsQuotesHasAnEmptySecondField) {
  // What a line REGPATH = A, "x;y" leaves, as a semicolon begins a comment.
  EXPECT_EQ(GetField(u"A, \"x", 1), u"");
  EXPECT_EQ(GetField(u"A,\"x", 1), u"");
}

TEST(Fields, BehindAFieldWithoutItsClosingQuoteTheNextBeginsBehindTheOpeningOne) {
  EXPECT_EQ(FirstFields(u"\"a,b", 4), (Texts{u"", u"a", u"b", u""}));
  EXPECT_EQ(FirstFields(u"A, \"a,b", 5), (Texts{u"A", u"", u"a", u"b", u""}));
}

TEST(Fields, ALoneQuoteIsAnEmptyField) { EXPECT_EQ(FirstFields(u"\"", 2), (Texts{u"", u""})); }

TEST(Fields, AWalkerGivesTheFieldsInTheirOrder) {
  CFieldWalker walker(u"A, \"x,y\",,\"a\"\"b\",d");
  EXPECT_EQ(walker.Next(), u"A");
  EXPECT_EQ(walker.Next(), u" \"x,y\"");
  EXPECT_EQ(walker.Next(), u"");
  EXPECT_EQ(walker.Next(), u"\"a\"b\"");
  EXPECT_EQ(walker.Next(), u"d");
  EXPECT_EQ(walker.Next(), u"");
  EXPECT_EQ(walker.Next(), u"");
}

TEST(Fields, AWalkerPassesOverFields) {
  CFieldWalker walker(u"\"a,b\",c");
  walker.Skip();
  EXPECT_EQ(walker.Next(), u"c");
  walker.Skip();
  EXPECT_EQ(walker.Next(), u"");
}

TEST(Fields, AMebibyteOfFieldsIsWalkedOnce) {
  std::u16string list;
  for (int count = 0; count < 349526; ++count) list += u"\"\",";
  list += u"last";
  CFieldWalker walker(list);
  for (int count = 0; count < 349526; ++count) walker.Skip();
  EXPECT_EQ(walker.Next(), u"last");
}

// --- Quotes

TEST(UnquotedText, StandsBetweenTheQuotesAtBothEnds) {
  EXPECT_EQ(Unquote(u"\"abc\""), u"abc");
  EXPECT_EQ(Unquote(u"\" a \""), u" a ");
  EXPECT_EQ(Unquote(u"\"a\"b\""), u"a\"b");
}

TEST(UnquotedText, IsEmptyForABareWord) { EXPECT_EQ(Unquote(u"abc"), u""); }

TEST(UnquotedText, IsEmptyForTwoQuotes) { EXPECT_EQ(Unquote(u"\"\""), u""); }

TEST(UnquotedText, IsEmptyForALoneQuote) { EXPECT_EQ(Unquote(u"\""), u""); }

TEST(UnquotedText, IsEmptyWhenAQuoteIsMissingOrABlankStandsOutside) {
  for (const char16_t* field : {u"", u"\"abc", u"abc\"", u" \"abc\"", u"\"abc\" ", u"'abc'"})
    EXPECT_EQ(Unquote(field), u"");
}

// --- Strings and numbers

constexpr std::uint32_t kString = 1;
constexpr std::uint32_t kNumber = 4;

TEST(ValueClass, ANumberIsANumber) { EXPECT_EQ(ClassifyValue(u"12"), kNumber); }

TEST(ValueClass, NothingIsANumber) {
  EXPECT_EQ(ClassifyValue(u""), kNumber);
  EXPECT_EQ(ClassifyValue(u" \t\r\n\v\f"), kNumber);
}

TEST(ValueClass, AFolderWordInAnyCaseMakesAString) {
  for (const char16_t* field : {u"systemdir", u"SYSTEMDIR", u"DriverDir", u"DRIVERDIR+\"\\x\"",
                                u"12 xdriverdirx", u"\tSystemDir "})
    EXPECT_EQ(ClassifyValue(field), kString);
}

TEST(ValueClass, AFolderWordInOtherLettersMakesNone) {
  EXPECT_EQ(ClassifyValue(u"DRIVER DIR"), kNumber);
  EXPECT_EQ(ClassifyValue(u"\u017FYSTEMDIR"), kNumber);  // a long s
  EXPECT_EQ(ClassifyValue(u"DRIVERDI"), kNumber);
}

TEST(ValueClass, QuotesAtBothEndsMakeAString) {
  EXPECT_EQ(ClassifyValue(u"\"12\""), kString);
  EXPECT_EQ(ClassifyValue(u"  \"abc\"\t"), kString);
  EXPECT_EQ(ClassifyValue(u"\"\""), kString);
}

TEST(ValueClass, ALoneQuoteIsAString) { EXPECT_EQ(ClassifyValue(u"\""), kString); }

TEST(ValueClass, AnythingElseIsANumber) {
  for (const char16_t* field : {u"abc", u"\"abc", u"abc\"", u"0x12", u"a\"b\"c"})
    EXPECT_EQ(ClassifyValue(field), kNumber);
}

// --- Numbers

struct NumberCase {
  const char16_t* text;
  std::int64_t number;
};

void ExpectNumbers(const std::vector<NumberCase>& cases) {
  for (const NumberCase& each : cases)
    EXPECT_EQ(ParseNumber(each.text), each.number)
        << testing::PrintToString(std::u16string(each.text));
}

TEST(NumberText, EmptyIsZero) { EXPECT_EQ(ParseNumber(u""), 0); }

TEST(NumberText, APrefixWithoutDigitsIsZero) { ExpectNumbers({{u"0x", 0}, {u"0X", 0}}); }

TEST(NumberText, TheFirstStrangeCharacterEndsIt) {
  ExpectNumbers({{u"12abc", 12}, {u"12 3", 12}, {u"1,2", 1}, {u"0x1Fg2", 31}, {u"12.9", 12}});
}

TEST(NumberText, MinusOneIsMinusOne) { EXPECT_EQ(ParseNumber(u"-1"), -1); }

TEST(NumberText, APrefixInEitherCaseMakesItHexadecimal) {
  ExpectNumbers({{u"0x10", 16}, {u"0X10", 16}, {u"0xaBcD", 43981}, {u"0x7FFFFFFF", 2147483647}});
}

TEST(NumberText, LeadingZerosAreNoPrefix) { ExpectNumbers({{u"010", 10}, {u"0008", 8}}); }

TEST(NumberText, BlanksAndASignMayStandInFront) {
  ExpectNumbers({{u"  12", 12}, {u"\t-12", -12}, {u"+7", 7}, {u"0x -F", -15}, {u"0x+f", 15}});
}

TEST(NumberText, BehindTheSignDigitsMustFollowAtOnce) {
  ExpectNumbers({{u"- 1", 0}, {u"+-1", 0}, {u"--1", 0}, {u"-", 0}, {u"+", 0}});
}

TEST(NumberText, APrefixHasToComeFirst) {
  ExpectNumbers({{u" 0x10", 0}, {u"-0x10", 0}, {u"0x0x10", 0}});
}

TEST(NumberText, AWordIsZero) { ExpectNumbers({{u"abc", 0}, {u"ALL", 0}, {u"\uFF11", 0}}); }

TEST(NumberText, WhatDoesntFit32BitsIsTheNearestNumberThatDoes) {
  ExpectNumbers({{u"2147483647", 2147483647},
                 {u"2147483648", 2147483647},
                 {u"-2147483648", -2147483648LL},
                 {u"-2147483649", -2147483648LL},
                 {u"99999999999999999999999999", 2147483647},
                 {u"0xFFFFFFFF", 2147483647}});
}

// --- Decimal numbers

TEST(DecimalNumberText, IsANumberTextWithoutThePrefix) {
  const struct {
    const char16_t* text;
    std::int32_t number;
  } cases[] = {{u"", 0},
               {u"12", 12},
               {u" -12abc", -12},
               {u"+7x", 7},
               {u"0x10", 0},
               {u"0X10", 0},
               {u"x10", 0},
               {u"12x10", 12},
               {u"-0x10", 0},
               {u"010", 10},
               {u"2147483647", 2147483647},
               {u"2147483648", 2147483647},
               {u"99999999999", 2147483647},
               {u"-2147483648", -2147483647 - 1},
               {u"-99999999999", -2147483647 - 1}};
  for (const auto& each : cases)
    EXPECT_EQ(ParseDecimal(each.text), each.number)
        << testing::PrintToString(std::u16string(each.text));
}

}  // namespace
}  // namespace vgl
