// The flush of the two kinds that the agent doesn't have.
#include "tests/support/vgl_log_fixture.h"

namespace vgl {
namespace {

using Texts = std::vector<std::string>;

class VglLogKinds : public VglLogTest {
 protected:
  // 24 counters of which each has its index, and 100, as its value.
  void FillPreferences() {
    for (std::int32_t index = 0; index < 24; ++index)
      log.SetValue(VGLLOG_MONITORINGPREFERENCE, index, 100 + static_cast<std::uint32_t>(index),
                   kPrinter);
  }
  static constexpr char16_t kPreferences[] =
      u"C:\\ProgramData\\KAVRO\\VGL3\\LOG\\VGL_Preferences_K12.xml";
  void PutPreferences(const desk::UsageLog& stored) {
    machine.files().WriteFile(kPreferences, desk::FormatUsageLog(stored));
  }
};

TEST_F(VglLogKinds, PreferencesAreSentByIncrementAndByValue) {
  PutPreferences(LogOf(u"1.0.0.0", std::vector<std::uint32_t>(24, 1000), 24));
  FillPreferences();
  LogCalls().calls.clear();
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  ASSERT_EQ(CalledExports(), (Texts{"IncrementMultiLog", "SetMultiLogValue"}));
  EXPECT_EQ(LogCalls().calls[0].count, 24);
  EXPECT_EQ(LogCalls().calls[0].values,
            (std::vector<std::uint32_t>{100, 0, 0, 0, 0, 0,   0,   0,   0,   0,   0,   0,
                                        0,   0, 0, 0, 0, 117, 118, 119, 120, 121, 122, 123}));
  const desk::UsageLogCall& set = LogCalls().calls[1];
  EXPECT_EQ(set.deviceId, u"M1");
  EXPECT_EQ(set.fileName, u"VGL_Preferences_K12.xml");
  EXPECT_EQ(set.first, 1);
  EXPECT_EQ(set.count, 16);
  EXPECT_EQ(set.version, u"1.0.0.0");
  EXPECT_EQ(set.waitLimit, 100);
  EXPECT_EQ(LogFile(kPreferences)->counters,
            (std::vector<std::uint32_t>{1100, 101,  102,  103,  104,  105,  106,  107,
                                        108,  109,  110,  111,  112,  113,  114,  115,
                                        116,  1117, 1118, 1119, 1120, 1121, 1122, 1123}));
}

TEST_F(VglLogKinds, TheFinalCodeOfPreferencesIsThatOfTheValues) {
  for (const std::int32_t code : {1, 0, -2, -5, 9}) {
    FillPreferences();
    Answer("IncrementMultiLog", 1);
    Answer("SetMultiLogValue", code);
    EXPECT_EQ(log.WriteVglLogFile(), code);
  }
}

TEST_F(VglLogKinds, PreferencesOfALaterFileKeepTheValuesOfTheMemory) {
  PutPreferences(LogOf(u"2.0.0.0", std::vector<std::uint32_t>(24, 1000), 24));
  FillPreferences();
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  EXPECT_EQ(LogFile(kPreferences)->counters,
            (std::vector<std::uint32_t>{1100, 101,  102,  103,  104,  105,  106,  107,
                                        108,  109,  110,  111,  112,  113,  114,  115,
                                        116,  1117, 1118, 1119, 1120, 1121, 1122, 1123}));
  EXPECT_EQ(LogLibrary().Calls("SetMultiLogValue"), 0U);
}

TEST_F(VglLogKinds, DetailsOfALaterFileAreAllAdded) {
  constexpr char16_t kDetails[] = u"C:\\ProgramData\\KAVRO\\VGL3\\LOG\\VGL_Detail_K12.xml";
  machine.files().WriteFile(
      kDetails, desk::FormatUsageLog(LogOf(u"2.0.0.0", std::vector<std::uint32_t>(57, 5), 57)));
  log.Increment(VGLLOG_DETAIL, 56, kPrinter);
  EXPECT_EQ(log.WriteVglLogFile(), 1);
  std::vector<std::uint32_t> expected(57, 5);
  expected[56] = 6;
  EXPECT_EQ(LogFile(kDetails)->counters, expected);
}

TEST_F(VglLogKinds, DetailsAreAllSentByIncrement) {
  log.Increment(VGLLOG_DETAIL, 0, kPrinter);
  log.Increment(VGLLOG_DETAIL, 16, kPrinter);
  log.Increment(VGLLOG_DETAIL, 56, kPrinter);
  Answer("IncrementMultiLog", 1);
  EXPECT_EQ(log.WriteVglLogFile(), 0);
  std::vector<std::uint32_t> expected(57, 0);
  expected[0] = expected[16] = expected[56] = 1;
  EXPECT_EQ(LogCalls().calls.back().values, expected);
  EXPECT_EQ(LogLibrary().Calls("SetMultiLogValue"), 0U);
}

}  // namespace
}  // namespace vgl
