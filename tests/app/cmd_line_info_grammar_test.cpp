// Where options begin and end in a text, and which value each has.
#include <gtest/gtest.h>

#include <string>

#include "tests/app/record_fixture.h"

namespace vgl::test {
namespace {

using CmdLineGrammar = RecordTest;

std::u16string Read(const std::u16string& text) { return Describe(CCmdLineInfo(text.c_str())); }

std::u16string Repeated(std::size_t count, char16_t character) {
  return std::u16string(count, character);
}

TEST_F(CmdLineGrammar, AValueWithALengthMayHoldSlashesAndQuotes) {
  EXPECT_EQ(Read(u"/P5 \"a/b\"c\" /R"), u"P=[a/b\"c] R 0 EF0");
}

TEST_F(CmdLineGrammar, ASlashInsideQuotesIsNoOption) {
  EXPECT_EQ(Read(u"/P \"a /R b\""), u"P=[a /R b] 0 EF0");
}

TEST_F(CmdLineGrammar, AnOptionBehindAQuotedValueIsFound) {
  EXPECT_EQ(Read(u"/P \"a /S b\" /R"), u"P=[a /S b] R 0 EF0");
}

TEST_F(CmdLineGrammar, OptionsMayStandOnOneLineOrOnSeveral) {
  EXPECT_EQ(Read(u"/P \"x\"\n/R\n/S"), u"P=[x] S R 0 EF0");
  EXPECT_EQ(Read(u"/P \"x\" /R /S"), u"P=[x] S R 0 EF0");
  EXPECT_EQ(Read(u"/P\"x\"/R/S"), u"P=[x] S R 0 EF0");
}

TEST_F(CmdLineGrammar, ANameEndsAtEachOfItsEnds) {
  struct Case {
    const char16_t* text;
    const char16_t* expected;
  };
  const Case cases[] = {
      {u"/R", u"R 0 EF0"},     {u"/R\tx", u"R 0 EF0"},      {u"/R\nx", u"R 0 EF0"},
      {u"/R\rx", u"R 0 EF0"},  {u"/R x", u"R 0 EF0"},       {u"/R\"x\"", u"R 0 EF0"},
      {u"/R/S", u"S R 0 EF0"}, {u"/R0x", u"R 0 EF0"},       {u"/R9", u"R 0 EF0"},
      {u"/R\vx", u"0 EF0"},    {u"/R=1", u"0 EF0"},         {u"/R,/S", u"S 0 EF0"},
      {u"/R\u00A0", u"0 EF0"}, {u"/R\u3000/S", u"S 0 EF0"}, {u"/R\\n", u"0 EF0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(std::u16string(c.text)));
    EXPECT_EQ(Read(c.text), c.expected);
  }
}

TEST_F(CmdLineGrammar, TextOutsideOfOptionsIsSkipped) {
  EXPECT_EQ(Read(u"\"C:\\Program Files\\a/R.exe\" x /S y"), u"S 0 EF0");
  EXPECT_EQ(Read(u"no option at all"), u"0 EF0");
  EXPECT_EQ(Read(u"\n\r\t \"\""), u"0 EF0");
}

TEST_F(CmdLineGrammar, ASlashAloneIsAnUnknownOption) {
  EXPECT_EQ(Read(u"/"), u"0 EF0");
  EXPECT_EQ(Read(u"//R"), u"R 0 EF0");
  EXPECT_EQ(Read(u"/ /R"), u"R 0 EF0");
  EXPECT_EQ(Read(u"/\"R\"/S"), u"S 0 EF0");
  EXPECT_EQ(Read(u"/3 \"/S/\" /R"), u"R 0 EF0");
}

TEST_F(CmdLineGrammar, OtherCharactersMayStandBetweenANameAndItsValue) {
  EXPECT_EQ(Read(u"/P=\"x\""), u"0 EF0");  // they end no name
  EXPECT_EQ(Read(u"/P = : \"x\" /R"), u"P=[x] R 0 EF0");
  EXPECT_EQ(Read(u"/P\r\t \"x\""), u"P=[x] 0 EF0");
}

TEST_F(CmdLineGrammar, ALineFeedInFrontOfTheQuoteLeavesTheValueEmpty) {
  EXPECT_EQ(Read(u"/P\n\"x\" /R"), u"R 0 EF0");
}

TEST_F(CmdLineGrammar, WithALengthTheQuoteMayStandOnALaterLine) {
  EXPECT_EQ(Read(u"/P3\n\"abc\" /R"), u"P=[abc] R 0 EF0");
}

TEST_F(CmdLineGrammar, AnUnclosedQuoteTakesTheRestOfTheLine) {
  EXPECT_EQ(Read(u"/P \"x y"), u"P=[x y] 0 EF0");
  EXPECT_EQ(Read(u"/P \"x /S y\nz"), u"P=[x /S y] 0 EF0");
}

TEST_F(CmdLineGrammar, AnUnclosedQuoteHidesOptionsUpToTheNextQuote) {
  // The value ends with the line; that it was opened goes on counting for what follows.
  EXPECT_EQ(Read(u"/P \"x\n/R\n/D \"y\" /S"), u"P=[x] 0 EF0");
  EXPECT_EQ(Read(u"/P \"x\n/R \" /S"), u"P=[x] S 0 EF0");
}

TEST_F(CmdLineGrammar, AnEmptyUnclosedQuoteGivesTheEmptyValue) {
  EXPECT_EQ(Read(u"/P \"x\" /P \""), u"0 EF0");
}

TEST_F(CmdLineGrammar, AQuoteInFrontOfTheFirstOptionHidesWhatFollows) {
  EXPECT_EQ(Read(u"\"/R"), u"0 EF0");
  EXPECT_EQ(Read(u"\"x\"/R"), u"R 0 EF0");
}

TEST_F(CmdLineGrammar, ALengthStandsInDigitsUpToTheQuoteWhateverIsBetween) {
  EXPECT_EQ(Read(u"/P 3 \"abcdef\""), u"P=[abc] 0 EF0");
  EXPECT_EQ(Read(u"/P0x1 0 \"abcdefghijkl\""), u"P=[abcdefghij] 0 EF0");
  EXPECT_EQ(Read(u"/P003 \"abcdef\""), u"P=[abc] 0 EF0");
}

TEST_F(CmdLineGrammar, ALengthOf0IsNoLength) {
  EXPECT_EQ(Read(u"/P0 \"abc\" /R"), u"P=[abc] R 0 EF0");
  EXPECT_EQ(Read(u"/P000 \"abc\" /R"), u"P=[abc] R 0 EF0");
}

TEST_F(CmdLineGrammar, AMinusBelongsToTheNameOrIsSkipped) {
  EXPECT_EQ(Read(u"/P-3 \"abc\" /R"), u"R 0 EF0");
  EXPECT_EQ(Read(u"/P -3 \"abc\" /R"), u"P=[abc] R 0 EF0");
}

TEST_F(CmdLineGrammar, ALengthThatRunsPastTheEndAppliesTheEmptyValue) {
  EXPECT_EQ(Read(u"/S /P \"old\""), u"P=[old] S 0 EF0");
  EXPECT_EQ(Read(u"/S /P \"old\" /P5 \"Hell"), u"S 0 EF0");
  EXPECT_EQ(Read(u"/S /P5 \"Hell"), u"S 0 EF0");
}

TEST_F(CmdLineGrammar, ALengthThatEndsWithTheTextNeedsNoClosingQuote) {
  EXPECT_EQ(Read(u"/P5 \"Hello"), u"P=[Hello] 0 EF0");
}

TEST_F(CmdLineGrammar, AHugeLengthAppliesTheEmptyValueAndEndsTheText) {
  const char16_t* const lengths[] = {u"1000",
                                     u"2147483648",
                                     u"4294967295",
                                     u"4294967296",
                                     u"4294967299",
                                     u"18446744073709551617",
                                     u"99999999999999999999999999999999999999999"};
  for (const char16_t* length : lengths) {
    SCOPED_TRACE(testing::PrintToString(std::u16string(length)));
    EXPECT_EQ(Read(u"/S /P \"old\" /P" + std::u16string(length) + u" \"abc\" /R"), u"S 0 EF0");
  }
}

TEST_F(CmdLineGrammar, ALengthWithoutAnyQuoteBehindItEndsTheReading) {
  EXPECT_EQ(Read(u"/P \"old\" /P3 abc /R /S /E"), u"P=[old] 0 EF0");
}

TEST_F(CmdLineGrammar, ALengthThatIsTooShortLeavesTheRestOfTheValueOut) {
  EXPECT_EQ(Read(u"/P2 \"abcd\" /R"), u"P=[ab] R 0 EF0");
}

TEST_F(CmdLineGrammar, BehindAValueWithALengthQuotesHideNothingUntilTheNextOption) {
  EXPECT_EQ(Read(u"/P1 \"a\" \"/R\""), u"P=[a] R 0 EF0");
  EXPECT_EQ(Read(u"/P1 \"a\" \"/R \"/S\""), u"P=[a] R 0 EF0");
}

TEST_F(CmdLineGrammar, ALengthLooksForItsQuoteBehindOtherOptions) {
  // The quote of /D is the first there is. /D itself lies among the characters that are passed
  // over.
  EXPECT_EQ(Read(u"/P3 /D \"abc\" /R"), u"P=[abc] R 0 EF0");
}

TEST_F(CmdLineGrammar, AValueWhoseQuoteStandsLateIsCutAtTheEndOfTheText) {
  EXPECT_EQ(Read(u"/P5/O \"abc\""), u"P=[abc\"] 0 EF0");
}

TEST_F(CmdLineGrammar, ATextEndsAtItsFirstNul) {
  CCmdLineInfo info;
  info.m_szCmdText = std::u16string(u"/R /P \"x\0y\" /S", 14);
  EXPECT_EQ(info.ParseCommandLine(), 1);
  EXPECT_EQ(Describe(info), u"P=[x] R 0 EF0");
}

TEST_F(CmdLineGrammar, AValueOf259CharactersIsAccepted) {
  const std::u16string value = Repeated(259, u'v');
  EXPECT_EQ(Read(u"/P \"" + value + u"\" /R"), u"P=[" + value + u"] R 0 EF0");
  EXPECT_EQ(Read(u"/P259 \"" + value + u"\" /R"), u"P=[" + value + u"] R 0 EF0");
}

TEST_F(CmdLineGrammar, AValueOf260CharactersEndsTheReadingButUndoesNothing) {
  const std::u16string value = Repeated(260, u'v');
  EXPECT_EQ(Read(u"/S /P \"early\" /P \"" + value + u"\" /R"), u"P=[early] S 0 EF0");
  EXPECT_EQ(Read(u"/S /P \"early\" /P260 \"" + value + u"\" /R"), u"P=[early] S 0 EF0");
}

TEST_F(CmdLineGrammar, AValueTooLongEndsTheReadingBehindAnyOption) {
  const std::u16string value = u" \"" + Repeated(260, u'v') + u"\" ";
  EXPECT_EQ(Read(u"/S /E" + value + u"/R"), u"S 0 EF0");
  EXPECT_EQ(Read(u"/S /unknown" + value + u"/R"), u"S 0 EF0");
  EXPECT_EQ(Read(u"/S /EF" + value + u"/R"), u"S 0 EF0");
  EXPECT_EQ(Read(u"/S /KVT" + value + u"/R"), u"S 0 EF0");
  EXPECT_EQ(Read(u"/S /HWND" + value + u"/R"), u"S 0 EF0");
}

TEST_F(CmdLineGrammar, ALongTextThatIsNoValueEndsNothing) {
  // An option without a name has no value by quotes, and what a line feed cuts off isn't of the
  // value.
  EXPECT_EQ(Read(u"/\"" + Repeated(400, u'v') + u"\" /R"), u"R 0 EF0");
  EXPECT_EQ(Read(u"/P \"a\n" + Repeated(400, u'v') + u"\" /R"), u"P=[a] R 0 EF0");
  EXPECT_EQ(Read(Repeated(400, u'v') + u" /R " + Repeated(400, u'v')), u"R 0 EF0");
}

TEST_F(CmdLineGrammar, ALateValueIsMeasuredAfterItWasCut) {
  // The length asks for 400 characters; between the late quote and the end there are 259, then 260.
  const std::u16string late = u"/P400 " + Repeated(5, u'/') + Repeated(200, u' ') + u"\"";
  EXPECT_EQ(Read(late + Repeated(259, u'v')), u"P=[" + Repeated(259, u'v') + u"] 0 EF0");
  EXPECT_EQ(Read(u"/S " + late + Repeated(260, u'v')), u"S 0 EF0");
}

TEST_F(CmdLineGrammar, AnOptionNameOf79CharactersIsMerelyUnknown) {
  EXPECT_EQ(Read(u"/" + Repeated(79, u'N') + u" /R"), u"R 0 EF0");
}

TEST_F(CmdLineGrammar, AnOptionNameOf80CharactersEndsTheProcessAtOnce) {
  EXPECT_TRUE(inside.EndsProcess([] { Read(u"/R /" + Repeated(80, u'N') + u" /S"); }));
  EXPECT_EQ(inside.process().exitCode(), 3U);
}

TEST_F(CmdLineGrammar, AnOptionNameOf80CharactersCountsBeforeAValueTooLong) {
  const std::u16string text = u"/" + Repeated(80, u'N') + u" \"" + Repeated(260, u'v') + u"\"";
  EXPECT_TRUE(inside.EndsProcess([&] { Read(text); }));
  EXPECT_EQ(inside.process().exitCode(), 3U);
}

TEST_F(CmdLineGrammar, AnOptionNameOf80CharactersCountsBeforeALengthWithoutAnyQuote) {
  const std::u16string text = u"/" + Repeated(80, u'N') + u"3 abcdef";
  EXPECT_TRUE(inside.EndsProcess([&] { Read(text); }));
  EXPECT_EQ(inside.process().exitCode(), 3U);
}

TEST_F(CmdLineGrammar, AMegabyteOfNameEndsTheProcessAtOnce) {
  EXPECT_TRUE(inside.EndsProcess([] { Read(u"/" + Repeated(524288, u'N')); }));
  EXPECT_EQ(inside.process().exitCode(), 3U);
}

TEST_F(CmdLineGrammar, AnOptionNameOf80CharactersInsideQuotesIsText) {
  const std::u16string value = u"/" + Repeated(80, u'N');
  EXPECT_EQ(Read(u"/P \"" + value + u"\" /R"), u"P=[" + value + u"] R 0 EF0");
}

TEST_F(CmdLineGrammar, AnOptionNameOf80CharactersIsNotMetWhereTheReadingHasEnded) {
  const std::u16string name = u" /" + Repeated(80, u'N');
  EXPECT_EQ(Read(u"/S /P \"" + Repeated(260, u'v') + u"\"" + name), u"S 0 EF0");
  EXPECT_EQ(Read(u"/S /P3 abc" + name), u"S 0 EF0");
}

}  // namespace
}  // namespace vgl::test
