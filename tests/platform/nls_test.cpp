// National language support.
#include "tests/platform/platform_test.h"

namespace platform {
namespace {

class NationalLanguageContract : public PlatformTest {
 protected:
  std::vector<std::uint16_t> Directions(std::u16string_view text) {
    std::vector<std::uint16_t> types(text.size(), 0xFFFF);
    EXPECT_TRUE(nls.GetStringTypeExW(nls.GetSystemDefaultLCID(), CT_CTYPE2, text.data(),
                                     static_cast<std::int32_t>(text.size()), types.data()));
    return types;
  }

  std::string Bytes(std::u16string_view text) {
    std::string bytes(3 * text.size() + 1, '?');
    const std::int32_t length =
        nls.WideCharToMultiByte(CP_ACP, text.data(), static_cast<std::int32_t>(text.size()),
                                bytes.data(), static_cast<std::int32_t>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(length));
    return bytes;
  }

  NationalLanguage& nls = os.nls;
};

using CharacterTypes = NationalLanguageContract;
using Comparison = NationalLanguageContract;
using CodePage = NationalLanguageContract;
using Types = std::vector<std::uint16_t>;

TEST_F(CharacterTypes, TheSystemHasALanguage) { EXPECT_NE(nls.GetSystemDefaultLCID(), 0u); }

TEST_F(CharacterTypes, TheUsersLanguageHasAPrimaryIdentifierAndASublanguage) {
  const std::uint16_t language = nls.GetUserDefaultLangID();
  EXPECT_NE(language & 0x3FF, 0);
  EXPECT_NE(language >> 10, 0);
}

TEST_F(CharacterTypes, HebrewAndArabicLettersRunFromRightToLeft) {
  EXPECT_EQ(Directions(u"\u05D0\u05EA\u0627\u0645"), (Types{2, 2, 2, 2}));
}

TEST_F(CharacterTypes, LatinLettersRunFromLeftToRight) {
  EXPECT_EQ(Directions(u"aZ\u00E9"), (Types{1, 1, 1}));
}

TEST_F(CharacterTypes, DigitsAndBlanksHaveTypesOfTheirOwn) {
  EXPECT_EQ(Directions(u"07"), (Types{3, 3}));  // European numbers
  EXPECT_EQ(Directions(u" "), (Types{10}));     // white space
}

TEST_F(CharacterTypes, EachCharacterGetsItsOwnType) {
  EXPECT_EQ(Directions(u"a\u05D0b"), (Types{1, 2, 1}));
}

TEST_F(CharacterTypes, NoCharacterBehindTheCountIsLookedAt) {
  const char16_t text[] = u"ab";
  std::uint16_t types[2] = {0xFFFF, 0xFFFF};
  EXPECT_TRUE(nls.GetStringTypeExW(nls.GetSystemDefaultLCID(), CT_CTYPE2, text, 1, types));
  EXPECT_EQ(types[0], 1);
  EXPECT_EQ(types[1], 0xFFFF);
}

TEST_F(Comparison, CaseDoesNotMatter) {
  EXPECT_EQ(nls.lstrcmpiW(u"Printer", u"pRINTER"), 0);
  EXPECT_EQ(nls.lstrcmpiW(u"\u00C9t\u00E9", u"\u00E9T\u00C9"), 0);
  EXPECT_EQ(nls.lstrcmpiW(u"", u""), 0);
}

TEST_F(Comparison, TextsStandInTheOrderOfTheAlphabet) {
  EXPECT_LT(nls.lstrcmpiW(u"alpha", u"BETA"), 0);
  EXPECT_GT(nls.lstrcmpiW(u"BETA", u"alpha"), 0);
  EXPECT_LT(nls.lstrcmpiW(u"a", u"ab"), 0);
  EXPECT_LT(nls.lstrcmpiW(u"", u"a"), 0);
}

TEST_F(Comparison, ANullTextStandsInFrontOfEveryOther) {
  EXPECT_EQ(nls.lstrcmpiW(nullptr, nullptr), 0);
  EXPECT_LT(nls.lstrcmpiW(nullptr, u""), 0);
  EXPECT_GT(nls.lstrcmpiW(u"", nullptr), 0);
}

TEST_F(CodePage, AsciiKeepsItsNumbers) { EXPECT_EQ(Bytes(u"Az09 ~!\x7F"), "Az09 ~!\x7F"); }

TEST_F(CodePage, TheResultIsTheNumberOfBytesAndNoTerminatorIsAdded) {
  char bytes[4] = {'x', 'x', 'x', 'x'};
  EXPECT_EQ(nls.WideCharToMultiByte(CP_ACP, u"abc", 2, bytes, 4), 2);
  EXPECT_EQ(std::string(bytes, 4), "abxx");
}

TEST_F(CodePage, ATerminatorWithinTheCountIsACharacterLikeOthers) {
  char bytes[4] = {'x', 'x', 'x', 'x'};
  EXPECT_EQ(nls.WideCharToMultiByte(CP_ACP, u"ab", 3, bytes, 4), 3);
  EXPECT_EQ(std::string(bytes, 4), std::string("ab\0x", 4));
}

TEST_F(CodePage, WithoutRoomOnlyTheSizeIsTold) {
  EXPECT_EQ(nls.WideCharToMultiByte(CP_ACP, u"abc", 3, nullptr, 0), 3);
}

TEST_F(CodePage, TooLittleRoomFails) {
  char bytes[2] = {};
  EXPECT_EQ(nls.WideCharToMultiByte(CP_ACP, u"abc", 3, bytes, 2), 0);
  EXPECT_EQ(LastError(), ERROR_INSUFFICIENT_BUFFER);
}

TEST_F(CodePage, ACharacterThatItLacksBecomesItsDefaultCharacter) {
  // No code page of a single language holds both of these.
  const std::string bytes = Bytes(u"\u05D0\u0E01");
  EXPECT_NE(bytes.find('?'), std::string::npos) << bytes;
}

TEST_F(CharacterTypes, BytesOfTheCodePageBecomeCharacters) {
  char16_t out[8] = {};
  EXPECT_EQ(Os().nls.MultiByteToWideChar(CP_ACP, "Abc", -1, nullptr, 0), 4);
  EXPECT_EQ(Os().nls.MultiByteToWideChar(CP_ACP, "Abc", -1, out, 4), 4);
  EXPECT_EQ(std::u16string(out), u"Abc");
  EXPECT_EQ(Os().nls.MultiByteToWideChar(CP_ACP, "Abc", 2, out, 8), 2);
}

TEST_F(CharacterTypes, TooLittleRoomForCharactersGives122) {
  char16_t out[2] = {};
  EXPECT_EQ(Os().nls.MultiByteToWideChar(CP_ACP, "Abc", -1, out, 2), 0);
  EXPECT_EQ(Os().process.GetLastError(), ERROR_INSUFFICIENT_BUFFER);
}

TEST_F(CharacterTypes, NoBytesCantBeConverted) {
  char16_t out[2] = {};
  EXPECT_EQ(Os().nls.MultiByteToWideChar(CP_ACP, "Abc", 0, out, 2), 0);
  EXPECT_EQ(Os().process.GetLastError(), ERROR_INVALID_PARAMETER);
}

}  // namespace
}  // namespace platform
