#include "desk/usage_log_file.h"

#include <gtest/gtest.h>

#include <string>

namespace desk {
namespace {

using Counters = std::vector<std::uint32_t>;

UsageLog SmallLog() {
  return {.deviceId = u"S7200", .version = u"1.0.0.0", .counters = {0, 12, 4294967295}};
}

TEST(UsageLogFile, IsWrittenInThisForm) {
  EXPECT_EQ(FormatUsageLog(SmallLog()),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<UsageLog device=\"S7200\" version=\"1.0.0.0\">\n"
            "  <Counter index=\"0\" value=\"0\"/>\n"
            "  <Counter index=\"1\" value=\"12\"/>\n"
            "  <Counter index=\"2\" value=\"4294967295\"/>\n"
            "</UsageLog>\n");
}

TEST(UsageLogFile, ALogWithoutCountersHasItsHeadAlone) {
  EXPECT_EQ(FormatUsageLog({.deviceId = u"", .version = u"2"}),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<UsageLog device=\"\" version=\"2\">\n"
            "</UsageLog>\n");
}

TEST(UsageLogFile, CharactersThatXmlReadsOtherwiseAreWrittenAsReferences) {
  EXPECT_EQ(FormatUsageLog({.deviceId = u"a<b>&\"'\u00E4\u6771\U0001F5A8;", .version = u"1"}),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<UsageLog device=\"a&#60;b&#62;&#38;&#34;'&#228;&#26481;&#128424;;\" "
            "version=\"1\">\n"
            "</UsageLog>\n");
}

TEST(UsageLogFile, WhatIsWrittenIsReadBack) {
  std::u16string everything;
  for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit)
    everything += static_cast<char16_t>(unit);  // lone surrogates and U+0000 with them
  for (const std::u16string& id :
       {std::u16string(), std::u16string(u"M1"), std::u16string(u" MFG:KAVRO;MDL:7200; "),
        std::u16string(u"\U0001F5A8\xDC00\xD800"), everything}) {
    const UsageLog log{.deviceId = id, .version = u"1.0.0.0", .counters = Counters(57, 3)};
    EXPECT_EQ(ParseUsageLog(FormatUsageLog(log)), log);
  }
}

TEST(UsageLogFile, BlanksAndTheDeclarationMayBeOtherwise) {
  EXPECT_EQ(ParseUsageLog("\r\n<UsageLog  device = \"S7200\"\tversion=\"1.0.0.0\" >\r\n"
                          "<Counter\tindex=\"0\" value=\"0\"/>"),
            std::nullopt);  // a tab behind a name isn't written by anybody here
  EXPECT_EQ(ParseUsageLog("  <UsageLog  device = \"S7200\"\tversion=\"1.0.0.0\" >\r\n"
                          "<Counter  index=\"0\"  value = \"0\" />"
                          "<Counter index=\"1\" value=\"12\"/>\n\n"
                          "<Counter index=\"2\" value=\"4294967295\"/></UsageLog>\n\n\n\n"),
            SmallLog());
}

TEST(UsageLogFile, CountersMayBeInAnyOrderAndAreZeroWhereTheyAreLeftOut) {
  const auto log = ParseUsageLog(
      "<UsageLog device=\"d\" version=\"1\"><Counter index=\"3\" value=\"30\"/>"
      "<Counter index=\"1\" value=\"10\"/></UsageLog>");
  ASSERT_TRUE(log);
  EXPECT_EQ(log->counters, (Counters{0, 10, 0, 30}));
}

TEST(UsageLogFile, TheLargestIndexIs4095) {
  const auto with = [](const std::string& index) {
    return ParseUsageLog("<UsageLog device=\"d\" version=\"1\"><Counter index=\"" + index +
                         "\" value=\"1\"/></UsageLog>");
  };
  ASSERT_TRUE(with("4095"));
  EXPECT_EQ(with("4095")->counters.size(), 4096U);
  EXPECT_EQ(with("4096"), std::nullopt);
}

TEST(UsageLogFile, WhateverEndsTooEarlyIsNoLog) {
  const std::string whole = FormatUsageLog(SmallLog());
  for (std::size_t bytes = 0; bytes + 1 < whole.size(); ++bytes)  // the last one is a newline
    EXPECT_EQ(ParseUsageLog(whole.substr(0, bytes)), std::nullopt) << bytes;
  EXPECT_TRUE(ParseUsageLog(whole.substr(0, whole.size() - 1)));
}

TEST(UsageLogFile, AnyOtherTextIsNoLog) {
  const std::string head = "<UsageLog device=\"d\" version=\"1\">";
  const std::string end = "</UsageLog>";
  ASSERT_TRUE(ParseUsageLog(head + end));
  for (const std::string& text : {
           std::string(),
           std::string("no log"),
           std::string(2000, '\0'),
           std::string("\xEF\xBB\xBF") + head + end,
           head + "x" + end,
           head + end + "x",
           head + end + head + end,
           head + "<Counter index=\"0\" value=\"1\"/><Counter index=\"0\" value=\"1\"/>" + end,
           head + "<Counter index=\"0\" value=\"4294967296\"/>" + end,
           head + "<Counter index=\"0\" value=\"99999999999999999999\"/>" + end,
           head + "<Counter index=\"0\" value=\"-1\"/>" + end,
           head + "<Counter index=\"0\" value=\"\"/>" + end,
           head + "<Counter index=\"0\" value=\" 1\"/>" + end,
           head + "<Counter index=\"0x1\" value=\"1\"/>" + end,
           head + "<Counter value=\"1\" index=\"0\"/>" + end,
           head + "<Counter index=\"0\" value=\"1\">" + end,
           head + "<Counter index=\"0\" value=1/>" + end,
           std::string("<UsageLog version=\"1\" device=\"d\">") + end,
           std::string("<UsageLog device=\"d\">") + end,
           std::string("<UsageLog device=\"d\" version=\"x\">") + end,
           std::string("<UsageLog device=\"&lt;\" version=\"1\">") + end,
           std::string("<UsageLog device=\"&#x41;\" version=\"1\">") + end,
           std::string("<UsageLog device=\"&#1114112;\" version=\"1\">") + end,
           std::string("<UsageLog device=\"&#65\" version=\"1\">") + end,
           std::string("<UsageLog device=\"a<b\" version=\"1\">") + end,
           std::string("<UsageLog device=\"\xC3\xA4\" version=\"1\">") + end,
       })
    EXPECT_EQ(ParseUsageLog(text), std::nullopt) << text;
}

TEST(UsageLogVersion, IsOneToFourNumbers) {
  for (const char16_t* text : {u"0", u"1", u"1.0", u"1.0.0", u"1.0.0.0", u"999.999.999.999"})
    EXPECT_TRUE(IsUsageLogVersion(text));
  for (const char16_t* text : {u"", u".", u"1.", u".1", u"1..0", u"1.0.0.0.0", u"1000", u"a", u"1a",
                               u" 1", u"1 ", u"-1", u"1,0", u"\u0661"})
    EXPECT_FALSE(IsUsageLogVersion(text));
}

struct VersionRow {
  const char16_t* left;
  const char16_t* right;
  int order;
};

TEST(UsageLogVersion, IsComparedNumberByNumber) {
  for (const VersionRow& row :
       {VersionRow{u"1.0.0.0", u"1.0.0.0", 0}, VersionRow{u"1", u"1.0.0.0", 0},
        VersionRow{u"01.0", u"1.00", 0}, VersionRow{u"0.9.9.9", u"1.0.0.0", -1},
        VersionRow{u"1.0.0.1", u"1.0.0.0", 1}, VersionRow{u"1.0.10.0", u"1.0.9.0", 1},
        VersionRow{u"2.0.0.0", u"10.0.0.0", -1}, VersionRow{u"1.0.0.0", u"0.99.99.99", 1}}) {
    EXPECT_EQ(CompareUsageLogVersions(row.left, row.right), row.order);
    EXPECT_EQ(CompareUsageLogVersions(row.right, row.left), -row.order);
  }
}

}  // namespace
}  // namespace desk
