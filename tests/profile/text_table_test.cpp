#include "profile/text_table.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/sim/machine.h"

namespace vgl {
namespace {

constexpr char16_t kPath[] = u"C:\\Driver\\texts.dat";

class TextTable : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};

  void Write(const std::string& lines) { machine.files().WriteFile(kPath, lines); }
  // What a table with `value` behind the key "k" has for k.
  std::optional<std::u16string> Shown(const std::string& value) {
    Write("[UT]\r\n\"k\"=" + value + "\r\n");
    return ReadTableText(u"k", kPath);
  }
};

TEST_F(TextTable, ATextIsFoundByItsKeyInQuotes) {
  Write("[UT]\r\nOrder ink=\"no\";\r\n\"Order ink\" = \"Ink online\";\r\n");
  EXPECT_EQ(ReadTableText(u"Order ink", kPath), u"Ink online");
}

TEST_F(TextTable, OnlySectionUtCounts) {
  Write("[Other]\r\n\"k\"=\"a\";\r\n[ut]\r\n\"k\"=\"b\";\r\n");
  EXPECT_EQ(ReadTableText(u"k", kPath), u"b");
}

TEST_F(TextTable, ATextThatIsMissingGivesNothing) {
  Write("[UT]\r\n\"k\"=\"a\";\r\n");
  EXPECT_EQ(ReadTableText(u"x", kPath), std::nullopt);
  EXPECT_EQ(ReadTableText(u"k", u"C:\\Driver\\missing.dat"), std::nullopt);
}

TEST_F(TextTable, ANullOrEmptyTextOrPathGivesNothingWithoutACall) {
  const std::uint64_t before = inside.process().calls();
  EXPECT_EQ(ReadTableText(nullptr, kPath), std::nullopt);
  EXPECT_EQ(ReadTableText(u"", kPath), std::nullopt);
  EXPECT_EQ(ReadTableText(u"k", nullptr), std::nullopt);
  EXPECT_EQ(ReadTableText(u"k", u""), std::nullopt);
  EXPECT_EQ(inside.process().calls(), before);
}

TEST_F(TextTable, AValueInQuotesWithASemicolonIsAccepted) {
  EXPECT_EQ(Shown("\"text\";"), u"text");
}

TEST_F(TextTable, AValueWithoutItsSemicolonIsRefused) {
  EXPECT_EQ(Shown("\"text\""), std::nullopt);
}

TEST_F(TextTable, AValueWithoutQuotesIsRefused) { EXPECT_EQ(Shown("text;"), std::nullopt); }

TEST_F(TextTable, ValuesOfOtherShapesAreRefused) {
  for (const char* value :
       {"", ";", "\"", "\";", "text\";", "\"text;", "\"text\" ;", "\"text\";x", "'text';"})
    EXPECT_EQ(Shown(value), std::nullopt) << value;
}

TEST_F(TextTable, ATextMayBeEmpty) { EXPECT_EQ(Shown("\"\";"), u""); }

TEST_F(TextTable, SemicolonsAndQuotesInsideTheTextAreKept) {
  EXPECT_EQ(Shown("\"a;b\";c \"d\";"), u"a;b\";c \"d");
}

TEST_F(TextTable, EscapesBecomeTheirCharacters) {
  EXPECT_EQ(Shown(R"("one\r\ntwo \"three\"";)"), u"one\r\ntwo \"three\"");
}

TEST_F(TextTable, TwoQuotesBecomeOne) { EXPECT_EQ(Shown(R"("a ""b"" c";)"), u"a \"b\" c"); }

TEST_F(TextTable, QuotesThatEscapesMadeCountInTheLastPass) {
  EXPECT_EQ(Shown(R"("a\"\"b";)"), u"a\"b");
  EXPECT_EQ(Shown(R"("a\""b";)"), u"a\"b");
}

TEST_F(TextTable, ABackslashDoesntProtectAnother) { EXPECT_EQ(Shown(R"("a\\nb";)"), u"a\\\nb"); }

TEST_F(TextTable, OtherBackslashesAreKept) { EXPECT_EQ(Shown(R"("\t\R\N\";)"), u"\\t\\R\\N\\"); }

TEST_F(TextTable, ThreeQuotesBecomeTwo) { EXPECT_EQ(Shown(R"("a"""b";)"), u"a\"\"b"); }

TEST_F(TextTable, ValuesAroundTheFirstRoomComeWhole) {
  for (const std::size_t length : {251U, 252U, 253U, 508U, 509U})  // 3 less than the value has
    EXPECT_EQ(Shown('"' + std::string(length, 'x') + "\";"), std::u16string(length, u'x'));
}

TEST_F(TextTable, AValueOf4094CharactersIsTheLongest) {
  EXPECT_EQ(Shown('"' + std::string(4091, 'x') + "\";"), std::u16string(4091, u'x'));
  EXPECT_EQ(Shown('"' + std::string(4092, 'x') + "\";"), std::nullopt);
}

TEST_F(TextTable, AValueOfMoreThan4096CharactersGivesNothingInsteadOfACutText) {
  EXPECT_EQ(Shown('"' + std::string(4091, 'x') + "\";" + std::string(100, 'y') + "\";"),
            std::nullopt);
  EXPECT_EQ(Shown('"' + std::string(1 << 20, 'x') + "\";"), std::nullopt);
}

}  // namespace
}  // namespace vgl
