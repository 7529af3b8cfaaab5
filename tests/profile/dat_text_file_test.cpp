// What CDatTextFile takes for lines, sections and keys.
#include "profile/dat_text_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/sim/machine.h"

namespace vgl {
namespace {

using namespace std::string_view_literals;

constexpr char16_t kPath[] = u"C:\\Driver\\model.sad";

class DatText : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  CDatTextFile file;

  void Load(std::string_view bytes) {
    machine.files().WriteFile(kPath, bytes);
    ASSERT_EQ(file.Open(kPath), 1);
  }

  std::vector<std::u16string> Lines() {
    std::vector<std::u16string> lines;
    for (std::u16string line; file.ReadLine(line) == 1;) lines.push_back(line);
    return lines;
  }
  std::vector<std::u16string> RawLines() {
    std::vector<std::u16string> lines;
    for (std::u16string line; file.ReadRawLine(line) == 1;) lines.push_back(line);
    return lines;
  }
  // Every value that FindKey gives from the position on.
  std::vector<std::u16string> Values(std::u16string_view key) {
    std::vector<std::u16string> values;
    for (std::u16string value; file.FindKey(key, value) == 1;) values.push_back(value);
    return values;
  }
};

using Texts = std::vector<std::u16string>;
using DatLines = DatText;
using DatSections = DatText;
using DatKeys = DatText;

// --- Raw lines

TEST_F(DatLines, ARawLineKeepsItsBlanksAndItsLineFeed) {
  Load("  a = 1 \t\r\n\n b");
  EXPECT_EQ(RawLines(), (Texts{u"  a = 1 \t\r\n", u"\n", u" b"}));
}

TEST_F(DatLines, ACommentBecomesTheRawLinesLineFeed) {
  Load("a ; remark\r\n;whole line\nb;at the end");
  EXPECT_EQ(RawLines(), (Texts{u"a \n", u"\n", u"b\n"}));
}

TEST_F(DatLines, ANulEndsACommentAndBeginsTheNextLine) {
  Load("a;one\0two\nb"sv);
  EXPECT_EQ(RawLines(), (Texts{u"a\n", std::u16string(u"\0two\n"sv), u"b"}));
}

TEST_F(DatLines, ANulOutsideACommentIsACharacterOfItsLine) {
  Load("a\0b\nc"sv);
  EXPECT_EQ(RawLines(), (Texts{std::u16string(u"a\0b\n"sv), u"c"}));
}

TEST_F(DatLines, BehindTheLastLineTheOutputIsEmpty) {
  Load("a");
  std::u16string line;
  EXPECT_EQ(file.ReadRawLine(line), 1);
  line = u"before";
  EXPECT_EQ(file.ReadRawLine(line), 0);
  EXPECT_EQ(line, u"");
  line = u"before";
  EXPECT_EQ(file.ReadLine(line), 0);
  EXPECT_EQ(line, u"");
}

// --- Useful lines

TEST_F(DatLines, CrLfLinesReadTheSameAsLfLines) {
  Load("[Install]\r\nREGPATH = A, \"x\"\r\n\r\n; remark\r\nb=2\r\n");
  const Texts withCr = Lines();
  Load("[Install]\nREGPATH = A, \"x\"\n\n; remark\nb=2\n");
  EXPECT_EQ(withCr, (Texts{u"[Install]", u"REGPATH = A, \"x\"", u"b=2"}));
  EXPECT_EQ(Lines(), withCr);
}

TEST_F(DatLines, EveryBlankAroundALineGoes) {
  Load(" \t\v\f\ra b\r\f\v\t \n");
  EXPECT_EQ(Lines(), (Texts{u"a b"}));
}

TEST_F(DatLines, EmptyLinesAndMereCommentsAreNotDelivered) {
  Load("\n   \n;c\n  ;c\n\r\na\n\n");
  EXPECT_EQ(Lines(), (Texts{u"a"}));
}

TEST_F(DatLines, ASemicolonCutsALineInsideQuotesToo) {
  Load("REGPATH = A, \"x;y\"\n");
  EXPECT_EQ(Lines(), (Texts{u"REGPATH = A, \"x"}));
}

TEST_F(DatLines, ALastLineNeedsNoLineFeed) {
  Load("a\nb");
  EXPECT_EQ(Lines(), (Texts{u"a", u"b"}));
}

TEST_F(DatLines, ACarriageReturnAloneEndsNoLine) {
  Load("a\rb\rc\r");
  EXPECT_EQ(Lines(), (Texts{u"a\rb\rc"}));
}

TEST_F(DatLines, ANulLeftOverByACommentIsALine) {
  Load(";x\0\na=1"sv);
  EXPECT_EQ(Lines(), (Texts{std::u16string(u"\0"sv), u"a=1"}));
}

TEST_F(DatLines, BytesFrom80BecomeCharactersBySignExtension) {
  Load("a\x7F\x80\xA0\xFF");
  EXPECT_EQ(Lines(), (Texts{u"a\u007F\uFF80\uFFA0\uFFFF"}));
}

// --- Sections

TEST_F(DatSections, ThePositionIsBehindTheHeader) {
  Load("a=0\n[One]\na=1\n[Two]\na=2\n");
  EXPECT_EQ(file.FindSection(u"Two"), 1);
  EXPECT_EQ(Lines(), (Texts{u"a=2"}));
}

TEST_F(DatSections, ASearchStartsAtTheTopOfTheFile) {
  Load("[One]\na=1\n[Two]\na=2\n");
  EXPECT_EQ(file.FindSection(u"Two"), 1);
  EXPECT_EQ(file.FindSection(u"One"), 1);
  EXPECT_EQ(Lines(), (Texts{u"a=1", u"[Two]", u"a=2"}));
}

TEST_F(DatSections, TheFirstOfTwoEqualOnesCounts) {
  Load("[S]\na=1\n[s]\na=2\n");
  EXPECT_EQ(file.FindSection(u"s"), 1);
  EXPECT_EQ(Values(u"a"), (Texts{u"1", u"2"}));
}

TEST_F(DatSections, NamesCompareWithoutRegardToCase) {
  Load("[iNSTALL]\n");
  EXPECT_EQ(file.FindSection(u"Install"), 1);
}

TEST_F(DatSections, BlanksInsideTheBracketsBelongToTheName) {
  Load("[ Install ]\n");
  EXPECT_EQ(file.FindSection(u"Install"), 0);
  EXPECT_EQ(file.FindSection(u" Install "), 1);
}

TEST_F(DatSections, BlanksAndACommentAroundTheHeaderDontCount) {
  Load("x\n \t[Install] ; here\r\na=1\n");
  EXPECT_EQ(file.FindSection(u"Install"), 1);
  EXPECT_EQ(Values(u"a"), (Texts{u"1"}));
}

TEST_F(DatSections, TheWholeLineHasToBeTheHeader) {
  Load("[Install] x\n[Install\nInstall]\n[Install]]\n[Instal]\n");
  EXPECT_EQ(file.FindSection(u"Install"), 0);
}

TEST_F(DatSections, AfterAMissThePositionIsTheEnd) {
  Load("[One]\na=1\n");
  EXPECT_EQ(file.FindSection(u"Two"), 0);
  EXPECT_EQ(Lines(), Texts{});
}

TEST_F(DatSections, AnEmptyNameIsNotFoundAndGoesBackToTheTop) {
  Load("[]\na=1\n");
  Lines();
  EXPECT_EQ(file.FindSection(u""), 0);
  EXPECT_EQ(Lines(), (Texts{u"[]", u"a=1"}));
}

TEST_F(DatSections, AByteOrderMarkHidesAHeaderInTheFirstLine) {
  Load("\xEF\xBB\xBF[One]\n[Two]\n");
  EXPECT_EQ(file.FindSection(u"One"), 0);
  EXPECT_EQ(file.FindSection(u"Two"), 1);
}

TEST_F(DatSections, AFileInUtf16HasNone) {
  Load("\xFF\xFE[\0I\0]\0\n\0"sv);
  EXPECT_EQ(file.FindSection(u"I"), 0);
}

// --- Keys

TEST_F(DatKeys, ARepeatedKeyGivesItsValuesInTheOrderOfTheFile) {
  Load("[Install]\nREGPATH=one\nREGENTER=x\nregpath = two\nREGPATH=one\n");
  ASSERT_EQ(file.FindSection(u"Install"), 1);
  EXPECT_EQ(Values(u"RegPath"), (Texts{u"one", u"two", u"one"}));
}

TEST_F(DatKeys, AKeyOfAFollowingSectionIsFoundAsWell) {
  Load("[Install]\nREGPATH=one\n[Other]\nREGPATH=two\n");
  ASSERT_EQ(file.FindSection(u"Install"), 1);
  EXPECT_EQ(Values(u"REGPATH"), (Texts{u"one", u"two"}));
}

TEST_F(DatKeys, ALineWithAnOpeningBracketAtBothEndsStopsTheSearch) {
  for (const char* line : {"[", "[[", "[abc[", " [abc[ ;x", "[a=[", "[[[\r"}) {
    Load("k=1\n" + std::string(line) + "\nk=2\n");
    EXPECT_EQ(Values(u"k"), (Texts{u"1"})) << line;
  }
}

TEST_F(DatKeys, NoOtherLineStopsTheSearch) {
  for (const char* line : {"[Other]", "[]", "]", "[a", "a[", "]x[", "[a=b]", "[ [ ]", "=[", ";["}) {
    Load("k=1\n" + std::string(line) + "\nk=2\n");
    EXPECT_EQ(Values(u"k"), (Texts{u"1", u"2"})) << line;
  }
}

TEST_F(DatKeys, ASearchThatWasStoppedGoesOnBehindTheLine) {
  Load("[\nk=2\n");
  std::u16string value;
  EXPECT_EQ(file.FindKey(u"k", value), 0);
  EXPECT_EQ(file.FindKey(u"k", value), 1);
  EXPECT_EQ(value, u"2");
}

TEST_F(DatKeys, AMissEmptiesTheValue) {
  Load("a=1\n");
  std::u16string value = u"before";
  EXPECT_EQ(file.FindKey(u"b", value), 0);
  EXPECT_EQ(value, u"");
  value = u"before";
  EXPECT_EQ(file.FindKey(u"a", value), 0);  // the position is at the end now
  EXPECT_EQ(value, u"");
}

TEST_F(DatKeys, AnEmptyNameIsNotFoundAndLeavesThePosition) {
  Load("=1\na=2\n");
  std::u16string value = u"before";
  EXPECT_EQ(file.FindKey(u"", value), 0);
  EXPECT_EQ(value, u"");
  EXPECT_EQ(Lines(), (Texts{u"=1", u"a=2"}));
}

TEST_F(DatKeys, ALineWithAnEmptySideIsNoKeyLine) {
  Load("a=\na=  \n=1\na=;1\na\na=2\n");
  EXPECT_EQ(Values(u"a"), (Texts{u"2"}));
}

TEST_F(DatKeys, NameAndValueAreTrimmed) {
  Load(" \ta\t =\t  a value \t\r\n");
  EXPECT_EQ(Values(u"a"), (Texts{u"a value"}));
}

TEST_F(DatKeys, FurtherEqualsSignsBelongToTheValue) {
  Load("a=b=c\na==d\n");
  EXPECT_EQ(Values(u"a"), (Texts{u"b=c", u"=d"}));
}

TEST_F(DatKeys, QuotesAreKept) {
  Load("a=\"x\"\n");
  EXPECT_EQ(Values(u"a"), (Texts{u"\"x\""}));
}

TEST_F(DatKeys, ANameIsNotFoundAsAPartOfAnother) {
  Load("ab=1\nxa=2\na b=3\na=4\n");
  EXPECT_EQ(Values(u"a"), (Texts{u"4"}));
}

TEST_F(DatKeys, ANameThatNoKeyCanHaveIsLookedForToTheEnd) {
  for (const char16_t* name : {u"k ", u" k", u"k=", u"="}) {
    Load("k =1\n k=2\nk==3\n=4\n");
    EXPECT_EQ(Values(name), Texts{});
    EXPECT_EQ(Values(u"k"), Texts{});
  }
}

TEST_F(DatKeys, AValueInPlaceIsTheFilesBytes) {
  Load("; no\nk = \x80x ; comment\n");
  std::string_view bytes;
  std::u16string value;
  EXPECT_EQ(file.FindKeyInPlace(u"K", bytes), 1);
  EXPECT_EQ(bytes, "\x80x");
  EXPECT_TRUE(EqualsText(bytes, u"\uFF80X"));
  EXPECT_FALSE(EqualsText(bytes, u"\uFF80XY"));
  Widen(bytes, value);
  EXPECT_EQ(value, u"\uFF80x");
  EXPECT_EQ(file.FindKeyInPlace(u"K", bytes), 0);
  EXPECT_EQ(bytes, "");
}

TEST_F(DatKeys, CaseIsThatOfTheEnglishLettersAlone) {
  Load("k=1\n[=2\n{=3\n\xE4=4\n");
  EXPECT_EQ(Values(u"\u212A"), Texts{});  // the Kelvin sign, a k to other comparisons
  file.FindSection(u"");
  EXPECT_EQ(Values(u"{"), (Texts{u"3"}));
  file.FindSection(u"");
  EXPECT_EQ(Values(u"\u00E4"), Texts{});  // no code page: the byte is another character
  file.FindSection(u"");
  EXPECT_EQ(Values(u"\uFFE4"), (Texts{u"4"}));
}

// --- Splitting a line

TEST(DatSplit, GivesBothSidesTrimmed) {
  std::u16string name, value;
  EXPECT_EQ(CDatTextFile::SplitKeyValue(u"  key \t=\r\n value = x  ", name, value), 1);
  EXPECT_EQ(name, u"key");
  EXPECT_EQ(value, u"value = x");
}

TEST(DatSplit, GivesNothingWhenASideIsMissing) {
  for (const char16_t* line : {u"", u"=", u"key", u"key=", u"key= \t", u"=value", u"  =value"}) {
    std::u16string name = u"before", value = u"before";
    EXPECT_EQ(CDatTextFile::SplitKeyValue(line, name, value), 0);
    EXPECT_EQ(name, u"");
    EXPECT_EQ(value, u"");
  }
}

}  // namespace
}  // namespace vgl
