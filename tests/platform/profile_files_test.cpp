// Profile files: one value, one number.
#include "tests/platform/profile_fixture.h"

namespace platform {
namespace {

using ProfileValues = ProfileContract;
using ProfileNumbers = ProfileContract;

// --- Finding a value

TEST_F(ProfileValues, AValueIsFoundBySectionAndKey) {
  Write("[One]\r\nkey=first\r\n[Two]\r\nkey=second\r\n");
  EXPECT_EQ(Value(u"One", u"key"), u"first");
  EXPECT_EQ(Value(u"Two", u"key"), u"second");
}

TEST_F(ProfileValues, SectionAndKeyIgnoreCase) {
  Write("[Section]\r\nKey=value\r\n");
  EXPECT_EQ(Value(u"SECTION", u"kEY"), u"value");
}

TEST_F(ProfileValues, OfSeveralEqualKeysTheFirstCounts) {
  Write("[s]\r\nkey=first\r\nKEY=second\r\n");
  EXPECT_EQ(Value(u"s", u"key"), u"first");
}

TEST_F(ProfileValues, OfSeveralEqualSectionsTheFirstCounts) {
  Write("[s]\r\nkey=first\r\n[other]\r\nx=1\r\n[S]\r\nkey=second\r\nmore=third\r\n");
  EXPECT_EQ(Value(u"s", u"key"), u"first");
}

TEST_F(ProfileValues, AKeyOfAnotherSectionIsMissing) {
  Write("[One]\r\na=1\r\n[Two]\r\nb=2\r\n");
  EXPECT_EQ(Value(u"One", u"b", u"fallback"), u"fallback");
}

TEST_F(ProfileValues, AKeyInFrontOfEverySectionIsNotFound) {
  Write("key=value\r\n[s]\r\nother=1\r\n");
  EXPECT_EQ(Value(u"s", u"key", u"fallback"), u"fallback");
}

TEST_F(ProfileValues, TheFallbackStandsForWhatIsMissing) {
  Write("[s]\r\nkey=value\r\n");
  EXPECT_EQ(Value(u"s", u"missing", u"fallback"), u"fallback");
  EXPECT_EQ(Value(u"missing", u"key", u"fallback"), u"fallback");
  EXPECT_EQ(ValueIn(u"missing.ini", u"s", u"key", u"fallback"), u"fallback");
  EXPECT_EQ(ValueIn(u"missing\\file.ini", u"s", u"key", u"fallback"), u"fallback");
}

TEST_F(ProfileValues, ANullFallbackIsEmpty) {
  Write("[s]\r\nkey=value\r\n");
  EXPECT_EQ(Value(u"s", u"missing", nullptr), u"");
}

TEST_F(ProfileValues, TheFallbackLosesItsTrailingBlanksOnly) {
  Write("[s]\r\n");
  EXPECT_EQ(Value(u"s", u"missing", u"  fall back  "), u"  fall back");
  EXPECT_EQ(Value(u"s", u"missing", u"fall back\t"), u"fall back\t");
}

TEST_F(ProfileValues, AnEmptyValueIsNotMissing) {
  Write("[s]\r\nempty=\r\nblanks=   \r\n");
  EXPECT_EQ(Value(u"s", u"empty", u"fallback"), u"");
  EXPECT_EQ(Value(u"s", u"blanks", u"fallback"), u"");
}

TEST_F(ProfileValues, AChangeIsSeenByTheNextRead) {
  Write("[s]\r\nkey=before\r\n");
  EXPECT_EQ(Value(u"s", u"key"), u"before");
  Write("[s]\r\nkey=behind\r\n");
  EXPECT_EQ(Value(u"s", u"key"), u"behind");
}

TEST_F(ProfileValues, AnEmptyFileHasNoValue) {
  Write("");
  EXPECT_EQ(Value(u"s", u"key", u"fallback"), u"fallback");
}

// --- A file that is in use

TEST_F(ProfileValues, AFileThatIsBeingWrittenIsReadWhenItsWriterSharesReading) {
  Write("[s]\r\nkey=value\r\n");
  const OwnedFile writer = Open(u"profile.ini", GENERIC_WRITE, FILE_SHARE_READ);
  EXPECT_EQ(Value(u"s", u"key"), u"value");
}

TEST_F(ProfileValues, AFileWhoseHandleDoesNotShareReadingCountsAsMissing) {
  Write("[s]\r\nkey=value\r\n");
  const OwnedFile other = Open(u"profile.ini", GENERIC_READ, FILE_SHARE_WRITE);
  EXPECT_EQ(Value(u"s", u"key", u"fallback"), u"fallback");
}

// --- Where a value begins and ends

TEST_F(ProfileValues, OuterBlanksGo) {
  Write("[s]\r\n  key  =  a value  \r\n\tother\t=\tvalue\t\r\n");
  EXPECT_EQ(Value(u"s", u"key"), u"a value");
  EXPECT_EQ(Value(u"s", u"other"), u"value");
}

TEST_F(ProfileValues, BlanksAroundASectionLineGo) {
  Write("  [s]  \r\nkey=value\r\n");
  EXPECT_EQ(Value(u"s", u"key"), u"value");
}

TEST_F(ProfileValues, BlanksInsideTheBracketsAndAroundTheNameAskedForGo) {
  Write("[ one ]\r\nkey=value\r\n");
  EXPECT_EQ(Value(u"one", u"key"), u"value");
  EXPECT_EQ(Value(u"  one  ", u"key"), u"value");
}

TEST_F(ProfileValues, BlanksAroundTheKeyAskedForGo) {
  Write("[s]\r\nkey=value\r\n");
  EXPECT_EQ(Value(u"s", u"  key  "), u"value");
}

TEST_F(ProfileValues, WhatFollowsTheBracketOfASectionIsIgnored) {
  Write("[s] ; remark\r\nkey=value\r\n[t]key=value\r\n");
  EXPECT_EQ(Value(u"s", u"key"), u"value");
  EXPECT_EQ(Value(u"t", u"key", u"fallback"), u"fallback");
}

TEST_F(ProfileValues, ASectionNameEndsAtItsFirstBracket) {
  Write("[s]t]\r\nkey=value\r\n");
  // Wine looks for the last bracket of the line.
  EXPECT_TRUE(HoldsExcept(OnWine(), Value(u"s", u"key") == u"value"));
}

TEST_F(ProfileValues, ASectionNameWithoutItsClosingBracketEndsWithTheLine) {
  Write("[s\r\nkey=value\r\n");
  // Wine takes such a line for no section.
  EXPECT_TRUE(HoldsExcept(OnWine(), Value(u"s", u"key") == u"value"));
}

TEST_F(ProfileValues, ASecondEqualsSignBelongsToTheValue) {
  Write("[s]\r\nkey=a=b==c\r\n");
  EXPECT_EQ(Value(u"s", u"key"), u"a=b==c");
}

TEST_F(ProfileValues, OnePairOfQuotesGoes) {
  Write(
      "[s]\r\n"
      "double=\"quoted\"\r\n"
      "single='quoted'\r\n"
      "both=\"'quoted'\"\r\n"
      "twice=\"\"quoted\"\"\r\n"
      "blanks=\"  quoted  \"\r\n"
      "empty=\"\"\r\n");
  EXPECT_EQ(Value(u"s", u"double"), u"quoted");
  EXPECT_EQ(Value(u"s", u"single"), u"quoted");
  EXPECT_EQ(Value(u"s", u"both"), u"'quoted'");
  EXPECT_EQ(Value(u"s", u"twice"), u"\"quoted\"");
  EXPECT_EQ(Value(u"s", u"blanks"), u"  quoted  ");
  EXPECT_EQ(Value(u"s", u"empty", u"fallback"), u"");
}

TEST_F(ProfileValues, QuotesThatAreNoPairStay) {
  Write(
      "[s]\r\n"
      "front=\"quoted\r\n"
      "behind=quoted\"\r\n"
      "mixed=\"quoted'\r\n"
      "inside=a \"quoted\" b\r\n"
      "command=\"C:\\tool.exe\" /x\r\n"
      "alone=\"\r\n");
  EXPECT_EQ(Value(u"s", u"front"), u"\"quoted");
  EXPECT_EQ(Value(u"s", u"behind"), u"quoted\"");
  EXPECT_EQ(Value(u"s", u"mixed"), u"\"quoted'");
  EXPECT_EQ(Value(u"s", u"inside"), u"a \"quoted\" b");
  EXPECT_EQ(Value(u"s", u"command"), u"\"C:\\tool.exe\" /x");
  EXPECT_EQ(Value(u"s", u"alone"), u"\"");
}

TEST_F(ProfileValues, ASemicolonWithinALineBelongsToIt) {
  Write("[s]\r\nkey=value ; remark\r\nfirst=;value\r\nke;y=third\r\n");
  EXPECT_EQ(Value(u"s", u"key"), u"value ; remark");
  EXPECT_EQ(Value(u"s", u"first"), u";value");
  EXPECT_EQ(Value(u"s", u"ke;y"), u"third");
}

TEST_F(ProfileValues, ALineThatBeginsWithASemicolonIsARemark) {
  Write("[s]\r\n;key=remark\r\n \t;key=remark\r\nkey=value\r\n");
  EXPECT_EQ(Value(u"s", u"key"), u"value");
  // Wine finds a remark by a name that begins with the semicolon.
  EXPECT_TRUE(HoldsExcept(OnWine(), Value(u"s", u";key", u"fallback") == u"fallback"));
}

TEST_F(ProfileValues, ALineWithoutAnEqualsSignHoldsNoValueAndHidesNone) {
  Write("[s]\r\njust a line\r\nkey=value\r\n");
  EXPECT_EQ(Value(u"s", u"key"), u"value");
  EXPECT_EQ(Value(u"s", u"just a line", u""), u"");
}

// --- Line ends and encodings

TEST_F(ProfileValues, TheLastLineNeedsNoEnd) {
  Write("[s]\r\nkey=value");
  EXPECT_EQ(Value(u"s", u"key"), u"value");
}

TEST_F(ProfileValues, ALineFeedEndsALineToo) {
  Write("[s]\nkey=value\nother=1\n");
  EXPECT_EQ(Value(u"s", u"key"), u"value");
}

std::string BytesOf(std::u16string_view text, bool highByteFirst) {
  std::string bytes;
  for (const char16_t c : text) {
    const char low = static_cast<char>(c & 0xFF);
    const char high = static_cast<char>(c >> 8);
    bytes += highByteFirst ? high : low;
    bytes += highByteFirst ? low : high;
  }
  return bytes;
}

TEST_F(ProfileValues, AFileOfWideCharactersIsKnownByItsMark) {
  Write(BytesOf(u"\uFEFF[s]\r\nkey=\u05D0\u05D1 value\r\n", false));
  EXPECT_EQ(Value(u"s", u"key"), u"\u05D0\u05D1 value");
}

TEST_F(ProfileValues, WideCharactersWithTheHighByteFirstAreNotUnderstood) {
  Write(BytesOf(u"\uFEFF[s]\r\nkey=value\r\n", true));
  // Wine understands them.
  EXPECT_TRUE(HoldsExcept(OnWine(), Value(u"s", u"key", u"fallback") == u"fallback"));
}

TEST_F(ProfileValues, TheMarkOfAnotherEncodingSpoilsTheFirstLineOnly) {
  Write("\xEF\xBB\xBF[s]\r\nkey=value\r\n[t]\r\nkey=caf\xC3\xA9\r\n");
  // Wine understands this encoding too.
  EXPECT_TRUE(HoldsExcept(OnWine(), Value(u"s", u"key", u"fallback") == u"fallback"));
  EXPECT_TRUE(HoldsExcept(OnWine(), Value(u"t", u"key") == u"caf\u00C3\u00A9"));
}

TEST_F(ProfileValues, AFileOfBytesIsInTheSystemsCodePage) {
  // 0xE9 is e with an acute accent in the Western code page, which the test machine uses.
  Write("[s]\r\nkey=caf\xE9\r\n");
  EXPECT_EQ(Value(u"s", u"key"), u"caf\u00E9");
}

// --- Room

TEST_F(ProfileValues, TheResultIsTheLengthWithoutTheTerminator) {
  Write("[s]\r\nkey=12345\r\n");
  char16_t value[20] = {};
  EXPECT_EQ(os.profiles.GetPrivateProfileStringW(u"s", u"key", u"", value, 20, path.c_str()), 5u);
}

TEST_F(ProfileValues, AValueThatJustFitsIsWhole) {
  Write("[s]\r\nkey=12345\r\n");
  char16_t value[6] = {};
  EXPECT_EQ(os.profiles.GetPrivateProfileStringW(u"s", u"key", u"", value, 6, path.c_str()), 5u);
  EXPECT_EQ(std::u16string(value), u"12345");
}

TEST_F(ProfileValues, AValueThatDoesNotFitIsCut) {
  Write("[s]\r\nkey=12345\r\n");
  char16_t value[6] = u"xxxxx";
  EXPECT_EQ(os.profiles.GetPrivateProfileStringW(u"s", u"key", u"", value, 5, path.c_str()), 4u);
  EXPECT_EQ(std::u16string(value), u"1234");
  EXPECT_EQ(os.profiles.GetPrivateProfileStringW(u"s", u"key", u"", value, 1, path.c_str()), 0u);
  EXPECT_EQ(std::u16string(value), u"");
}

TEST_F(ProfileValues, AFallbackThatDoesNotFitIsCut) {
  Write("[s]\r\n");
  char16_t value[6] = u"xxxxx";
  EXPECT_EQ(os.profiles.GetPrivateProfileStringW(u"s", u"key", u"12345", value, 5, path.c_str()),
            4u);
  EXPECT_EQ(std::u16string(value), u"1234");
}

TEST_F(ProfileValues, QuotesGoBeforeAValueIsCut) {
  Write("[s]\r\nkey=\"12345\"\r\n");
  char16_t value[6] = {};
  os.profiles.GetPrivateProfileStringW(u"s", u"key", u"", value, 6, path.c_str());
  // Wine takes the closing quote away once more when the value without it just fits.
  EXPECT_TRUE(HoldsExcept(OnWine(), std::u16string(value) == u"12345"));

  os.profiles.GetPrivateProfileStringW(u"s", u"key", u"", value, 5, path.c_str());
  EXPECT_EQ(std::u16string(value), u"1234");
}

TEST_F(ProfileValues, WithoutRoomNothingIsWritten) {
  Write("[s]\r\nkey=12345\r\n");
  char16_t value = u'x';
  EXPECT_EQ(os.profiles.GetPrivateProfileStringW(u"s", u"key", u"", &value, 0, path.c_str()), 0u);
  EXPECT_EQ(value, u'x');
}

TEST_F(ProfileValues, ALongValueComesBackWhole) {
  Write("[s]\r\nkey=" + std::string(3000, 'x') + "\r\n");
  EXPECT_EQ(Value(u"s", u"key"), std::u16string(3000, u'x'));
}

// --- Numbers

TEST_F(ProfileNumbers, TheNumberOfAKeyIsRead) {
  Write("[s]\r\nzero=0\r\nsmall=12\r\nleading=007\r\n");
  EXPECT_EQ(Number(u"zero", 99), 0u);
  EXPECT_EQ(Number(u"small", 99), 12u);
  EXPECT_EQ(Number(u"leading", 99), 7u);
}

TEST_F(ProfileNumbers, TheFallbackStandsForAMissingKey) {
  Write("[s]\r\nkey=1\r\n");
  EXPECT_EQ(Number(u"missing", 99), 99u);
  EXPECT_EQ(Number(u"missing", -1), 0xFFFFFFFFu);
  EXPECT_EQ(os.profiles.GetPrivateProfileIntW(u"missing", u"key", 99, path.c_str()), 99u);
  EXPECT_EQ(os.profiles.GetPrivateProfileIntW(u"s", u"key", 99, Path(u"missing.ini").c_str()), 99u);
}

TEST_F(ProfileNumbers, ASignCounts) {
  Write("[s]\r\nminus=-5\r\nplus=+5\r\n");
  EXPECT_EQ(Number(u"minus", 99), 0xFFFFFFFBu);
  EXPECT_EQ(Number(u"plus", 99), 5u);
}

TEST_F(ProfileNumbers, ANumberEndsAtTheFirstOtherCharacter) {
  Write("[s]\r\nletters=12abc\r\nblank=12 34\r\npoint=3.7\r\n");
  EXPECT_EQ(Number(u"letters", 99), 12u);
  EXPECT_EQ(Number(u"blank", 99), 12u);
  EXPECT_EQ(Number(u"point", 99), 3u);
}

TEST_F(ProfileNumbers, HexadecimalDigitsFollowAPrefix) {
  Write("[s]\r\nhex=0x1F\r\nlower=0xabcdef12\r\nwithout=1F\r\n");
  EXPECT_EQ(Number(u"hex", 99), 31u);
  EXPECT_EQ(Number(u"lower", 99), 0xABCDEF12u);
  EXPECT_EQ(Number(u"without", 99), 1u);
}

TEST_F(ProfileNumbers, BlanksAndQuotesAroundANumberGo) {
  Write("[s]\r\nblanks=  12  \r\nquoted=\"12\"\r\nboth=\" 12 \"\r\n");
  EXPECT_EQ(Number(u"blanks", 99), 12u);
  EXPECT_EQ(Number(u"quoted", 99), 12u);
  EXPECT_EQ(Number(u"both", 99), 12u);
}

TEST_F(ProfileNumbers, AValueWithoutDigitsIsZero) {
  Write("[s]\r\nword=abc\r\nsign=-\r\n");
  EXPECT_EQ(Number(u"word", 99), 0u);
  EXPECT_EQ(Number(u"sign", 99), 0u);
}

TEST_F(ProfileNumbers, AnEmptyValueIsZero) {
  Write("[s]\r\nempty=\r\n");
  // Wine doesn't tell an empty value from a missing one.
  EXPECT_TRUE(HoldsExcept(OnWine(), Number(u"empty", 99) == 0));
}

TEST_F(ProfileNumbers, ANumberOf32BitsIsWhole) {
  Write("[s]\r\nlargest=4294967295\r\nlowest=-2147483648\r\n");
  EXPECT_EQ(Number(u"largest", 99), 4294967295u);
  EXPECT_EQ(Number(u"lowest", 99), 0x80000000u);
}

TEST_F(ProfileNumbers, OfALargerNumberTheLow32BitsStay) {
  Write("[s]\r\nlarge=4294967298\r\nlow=-4294967297\r\n");
  EXPECT_EQ(Number(u"large", 99), 2u);
  EXPECT_EQ(Number(u"low", 99), 0xFFFFFFFFu);
}

}  // namespace
}  // namespace platform
