// What each option does to the record.
#include "app/cmd_line_info.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "tests/app/record_fixture.h"

namespace vgl::test {
namespace {

using CmdLineInfo = RecordTest;

TEST_F(CmdLineInfo, IsAllDefaultsWhenMadeFromNothing) {
  const CCmdLineInfo info;
  EXPECT_EQ(Describe(info), u"0 EF0");
  EXPECT_EQ(info.m_szCmdText, u"");
  EXPECT_EQ(info.m_szTempPath, u"");
  EXPECT_EQ(info.m_szOutFileName, u"");
}

TEST_F(CmdLineInfo, IsAllDefaultsWhenMadeFromANullText) {
  const CCmdLineInfo info(nullptr);
  EXPECT_EQ(Describe(info), u"0 EF0");
  EXPECT_EQ(info.m_szCmdText, u"");
}

TEST_F(CmdLineInfo, IsAllDefaultsWhenMadeFromAnEmptyText) {
  EXPECT_EQ(Describe(CCmdLineInfo(u"")), u"0 EF0");
}

TEST_F(CmdLineInfo, KeepsTheTextThatItWasMadeFrom) {
  EXPECT_EQ(CCmdLineInfo(u"/P \"x\" /R").m_szCmdText, u"/P \"x\" /R");
}

TEST_F(CmdLineInfo, DestroysItselfThroughItsBase) {
  EXPECT_TRUE(std::has_virtual_destructor_v<CCmdLineBase>);
  EXPECT_TRUE((std::is_base_of_v<CCmdLineBase, CCmdLineInfo>));
}

TEST_F(CmdLineInfo, EachTextOptionSetsItsFieldAndNoOther) {
  for (const TextOption& option : kTextOptions) {
    const std::u16string name = option.name;
    if (name == u"FU") continue;  // reads a file
    SCOPED_TRACE(testing::PrintToString(name));
    const CCmdLineInfo info((u"/" + name + u" \"some value\"").c_str());
    EXPECT_EQ(info.*option.field, u"some value");
    EXPECT_EQ(Describe(info), name + u"=[some value] 0 EF0");
  }
}

TEST_F(CmdLineInfo, EachFlagOptionSetsItsFieldAndNoOther) {
  for (const FlagOption& option : kFlagOptions) {
    const std::u16string name = option.name;
    SCOPED_TRACE(testing::PrintToString(name));
    const CCmdLineInfo info((u"/" + name).c_str());
    EXPECT_EQ(info.*option.field, 1);
    EXPECT_EQ(Describe(info), name + u" 0 EF0");
  }
}

TEST_F(CmdLineInfo, TheOptionsThatTheAgentActsOnReachTheirFields) {
  const CCmdLineInfo info(
      u"/P \"Office\" /D \"KAVRO X1\" /O \"USB001\" /M \"KX1\" /R /I /EF \"HKLM\"");
  EXPECT_EQ(info.m_szPrinterName, u"Office");
  EXPECT_EQ(info.m_szDriverName, u"KAVRO X1");
  EXPECT_EQ(info.m_szPortName, u"USB001");
  EXPECT_EQ(info.m_szModelID, u"KX1");
  EXPECT_EQ(info.m_fRemove, 1);
  EXPECT_EQ(info.m_fIconInstall, 1);
  EXPECT_EQ(info.m_IconFrom, 2);
}

TEST_F(CmdLineInfo, AFlagIgnoresAValueBehindIt) {
  const CCmdLineInfo info(u"/R \"no\" /S \"0\" /E0 \"\"");
  EXPECT_EQ(Describe(info), u"S R E 0 EF0");
}

TEST_F(CmdLineInfo, NamesIgnoreTheCaseOfAToZ) {
  EXPECT_EQ(Describe(CCmdLineInfo(u"/p \"x\"")), Describe(CCmdLineInfo(u"/P \"x\"")));
  EXPECT_EQ(CCmdLineInfo(u"/p \"x\"").m_szPrinterName, u"x");
  EXPECT_EQ(CCmdLineInfo(u"/aSmRt").m_fASMRT, 1);
  EXPECT_EQ(CCmdLineInfo(u"/kVm \"x\"").m_szKVM, u"x");
}

TEST_F(CmdLineInfo, LettersThatOnlyLookAlikeMakeAnotherName) {
  // The dotless i, and the full-width P.
  EXPECT_EQ(Describe(CCmdLineInfo(u"/\u0131 /\uFF30 \"x\" /S")), u"S 0 EF0");
  EXPECT_EQ(Describe(CCmdLineInfo(u"/i /p \"x\" /S")), u"P=[x] S I 0 EF0");
}

TEST_F(CmdLineInfo, AnUnknownOptionIsIgnored) {
  EXPECT_EQ(Describe(CCmdLineInfo(u"/Q \"x\" /PP \"y\" /JII \"z\" /R")), u"R 0 EF0");
}

TEST_F(CmdLineInfo, AnOptionGivenTwiceKeepsTheLastValue) {
  EXPECT_EQ(CCmdLineInfo(u"/P \"first\" /P \"second\"").m_szPrinterName, u"second");
}

TEST_F(CmdLineInfo, AnOptionWithoutItsValueAppliesTheEmptyValue) {
  EXPECT_EQ(Describe(CCmdLineInfo(u"/S /P \"a\"")), u"P=[a] S 0 EF0");
  EXPECT_EQ(Describe(CCmdLineInfo(u"/S /P \"a\" /P")), u"S 0 EF0");
  EXPECT_EQ(Describe(CCmdLineInfo(u"/S /P \"a\" /P \"\"")), u"S 0 EF0");
  EXPECT_EQ(Describe(CCmdLineInfo(u"/S /P \"a\" /P /D \"b\"")), u"D=[b] S 0 EF0");
}

TEST_F(CmdLineInfo, ASetFlagStaysSet) { EXPECT_EQ(CCmdLineInfo(u"/R /R").m_fRemove, 1); }

TEST_F(CmdLineInfo, JAndJiAreCrossed) {
  const CCmdLineInfo info(u"/J \"of J\" /JI \"of JI\"");
  EXPECT_EQ(info.m_szJI, u"of J");
  EXPECT_EQ(info.m_szJ, u"of JI");
}

TEST_F(CmdLineInfo, EfTellsWhichRunKeyStartedTheAgent) {
  struct Case {
    const char16_t* text;
    std::int32_t expected;
  };
  const Case cases[] = {
      {u"/EF \"HKCU\"", 1},
      {u"/EF \"HKLM\"", 2},
      {u"/ef \"hkcu\"", 1},
      {u"/Ef \"hKlM\"", 2},
      {u"/EF4 \"HKLM...\"", 2},
      {u"/EF \"HKCR\"", 0},
      {u"/EF \"HKCU \"", 0},
      {u"/EF \"HKC\"", 0},
      {u"/EF \"\"", 0},
      {u"/EF", 0},
      {u"/EF HKLM", 0},
      {u"/EF \"HKLM\" /EF \"HKCU\"", 1},
      {u"/EF \"HKLM\" /EF \"other\"", 2},
      {u"/EF \"HKCU\" /EF", 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(std::u16string(c.text)));
    EXPECT_EQ(CCmdLineInfo(c.text).m_IconFrom, c.expected);
  }
}

TEST_F(CmdLineInfo, HwndIsASignedDecimalNumberOf32Bits) {
  struct Case {
    const char16_t* value;
    std::intptr_t expected;
  };
  const Case cases[] = {
      {u"123456", 123456},
      {u"-17", -17},
      {u"+17", 17},
      {u"007", 7},
      {u"", 0},
      {u"none", 0},
      {u"-", 0},
      {u"--5", 0},
      {u"+-5", 0},
      {u"12ab34", 12},
      {u"0x10", 0},
      {u" \t 42 43", 42},
      {u"2147483647", 2147483647},
      {u"2147483648", 2147483647},
      {u"-2147483648", -2147483648LL},
      {u"-2147483649", -2147483648LL},
      {u"99999999999999999999999999999999999999", 2147483647},
      {u"-99999999999999999999999999999999999999", -2147483648LL},
      {u"\u0661\u0662", 0},  // digits, but not these ten
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(std::u16string(c.value)));
    const CCmdLineInfo info((u"/HWND \"" + std::u16string(c.value) + u"\"").c_str());
    EXPECT_EQ(info.m_nHwnd, c.expected);
  }
}

TEST_F(CmdLineInfo, HwndWithoutAValueIs0Again) {
  EXPECT_EQ(Describe(CCmdLineInfo(u"/S /HWND \"5\"")), u"S 5 EF0");
  EXPECT_EQ(Describe(CCmdLineInfo(u"/S /HWND \"5\" /HWND")), u"S 0 EF0");
}

TEST_F(CmdLineInfo, TheDigitsBehindHwndAreALengthLikeAnyOther) {
  EXPECT_EQ(CCmdLineInfo(u"/HWND2 \"12345\"").m_nHwnd, 12);
}

TEST_F(CmdLineInfo, ParsingAgainAppliesOnTopOfWhatTheRecordHolds) {
  CCmdLineInfo info(u"/P \"printer\" /R");
  info.m_szCmdText = u"/D \"driver\" /S";
  EXPECT_EQ(info.ParseCommandLine(), 1);
  EXPECT_EQ(Describe(info), u"P=[printer] D=[driver] S R 0 EF0");
}

TEST_F(CmdLineInfo, InitDefaultsEmptiesEveryField) {
  std::u16string text = u"/HWND \"5\" /EF \"HKLM\" ";
  for (const TextOption& option : kTextOptions)
    text += u"/" + std::u16string(option.name) + u" \"x\"";
  for (const FlagOption& option : kFlagOptions) text += u"/" + std::u16string(option.name);
  CCmdLineInfo info(text.c_str());
  info.m_szTempPath = u"C:\\";
  info.m_szOutFileName = u"x";
  for (const TextOption& option : kTextOptions) ASSERT_EQ(info.*option.field, u"x");
  for (const FlagOption& option : kFlagOptions) ASSERT_EQ(info.*option.field, 1);

  info.InitDefaults();

  EXPECT_EQ(Describe(info), u"0 EF0");
  EXPECT_EQ(info.m_szTempPath, u"");
  EXPECT_EQ(info.m_szOutFileName, u"");
}

TEST_F(CmdLineInfo, ACopyIsARecordOfItsOwn) {
  const CCmdLineInfo info(u"/P \"x\" /R");
  CCmdLineInfo copy = info;
  copy.m_szPrinterName = u"y";
  EXPECT_EQ(Describe(info), u"P=[x] R 0 EF0");
  EXPECT_EQ(Describe(copy), u"P=[y] R 0 EF0");
}

TEST_F(CmdLineInfo, DriverAndPortThatAreKnownAreEnoughEvenForAPrinterThatIsNotThere) {
  CCmdLineInfo info(u"/P \"printer that is not there\" /D \"driver\" /O \"port\"");
  const auto calls = inside.process().calls();
  EXPECT_EQ(info.ResolvePrinterInfo(), 1);
  EXPECT_EQ(inside.process().calls(), calls);
  EXPECT_EQ(info.m_szDriverName, u"driver");
  EXPECT_EQ(info.m_szPortName, u"port");
}

TEST_F(CmdLineInfo, DriverAndPortCanNotBeFoundWithoutAPrinterName) {
  CCmdLineInfo info(u"/D \"driver\"");
  EXPECT_EQ(info.ResolvePrinterInfo(), 0);
  EXPECT_EQ(info.m_szDriverName, u"driver");
  EXPECT_EQ(info.m_szPortName, u"");
}

TEST_F(CmdLineInfo, DriverAndPortStayWhenThePrinterIsUnknown) {
  CCmdLineInfo info(u"/P \"printer that is not there\" /O \"port\"");
  EXPECT_EQ(info.ResolvePrinterInfo(), 0);
  EXPECT_EQ(info.m_szDriverName, u"");
  EXPECT_EQ(info.m_szPortName, u"port");
}

TEST_F(CmdLineInfo, AModelIdThatIsKnownIsEnoughEvenForADriverThatIsNotThere) {
  CCmdLineInfo info(u"/D \"driver that is not there\" /M \"KX1\"");
  const auto calls = inside.process().calls();
  EXPECT_EQ(info.ResolveModelID(), 1);
  EXPECT_EQ(inside.process().calls(), calls);
  EXPECT_EQ(info.m_szModelID, u"KX1");
}

TEST_F(CmdLineInfo, TheModelIdCanNotBeFoundWithoutADriverName) {
  CCmdLineInfo info(u"/P \"printer\"");
  EXPECT_EQ(info.ResolveModelID(), 0);
}

TEST_F(CmdLineInfo, TheModelIdStaysEmptyForADriverThatIsUnknown) {
  CCmdLineInfo info(u"/D \"driver that is not there\"");
  EXPECT_EQ(info.ResolveModelID(), 0);
  EXPECT_EQ(info.m_szModelID, u"");
}

}  // namespace
}  // namespace vgl::test
