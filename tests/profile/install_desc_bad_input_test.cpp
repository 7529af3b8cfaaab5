// Install descriptions that no author meant to write.
#include "profile/install_desc.h"
#include "tests/profile/driver_set_fixture.h"

namespace vgl {
namespace {

using namespace std::string_view_literals;

class InstallBadInput : public DriverSetTest {
 protected:
  CInstallDesc description;

  int Load(std::string_view bytes) {
    WriteSADat(bytes);
    return description.LoadByPrinter(kPrinter);
  }
  // Out of the whole description, and out of one for this question alone.
  std::int64_t NumberOf(std::u16string_view name) {
    const std::int64_t number = description.GetRegDword(u"X", name);
    CInstallDesc forThis(u"X", name);
    EXPECT_EQ(forThis.LoadByPrinter(kPrinter), number == -1 ? 0 : 1);
    EXPECT_EQ(forThis.GetRegDword(u"X", name), number);
    return number;
  }
};

// What the tests below put bad input around.
constexpr std::string_view kGood = R"([Install]
REGPATH = A, "HKEY_LOCAL_MACHINE\X"
REGENTER = A, "N", 12
)";

std::string operator+(std::string_view left, std::string_view right) {
  return std::string(left).append(right);
}

TEST_F(InstallBadInput, FilesWithoutLinesDescribeNothing) {
  for (const std::string_view bytes : {""sv, "\0"sv, "\n"sv, "\r"sv, ";"sv, "["sv, "[Install]"sv,
                                       "[Install"sv, "=\n=\n"sv, "\xFF\xFE"sv, "\xEF\xBB\xBF"sv})
    EXPECT_EQ(Load(bytes), 0) << testing::PrintToString(bytes);
}

TEST_F(InstallBadInput, AFinalLineEndIsNotNeeded) {
  EXPECT_EQ(Load(kGood.substr(0, kGood.size() - 1)), 1);
  EXPECT_EQ(NumberOf(u"N"), 12);
}

TEST_F(InstallBadInput, CrLfLinesAreLinesAndCrAloneEndsNone) {
  EXPECT_EQ(Load("[Install]\r\nREGPATH = A, \"HKEY_LOCAL_MACHINE\\X\"\r\nREGENTER = A, \"N\", 12"
                 "\r\n"),
            1);
  EXPECT_EQ(NumberOf(u"N"), 12);
  EXPECT_EQ(Load("[Install]\rREGPATH = A, \"HKEY_LOCAL_MACHINE\\X\"\rREGENTER = A, \"N\", 12\r"),
            0);
  // Behind a header of its own, the rest is one line: a path whose field goes on behind its quote.
  EXPECT_EQ(Load("[Install]\nREGPATH = A, \"HKEY_LOCAL_MACHINE\\X\"\rREGENTER = A, \"N\", 12\r"),
            0);
}

TEST_F(InstallBadInput, AByteOrderMarkHidesTheHeaderInTheFirstLine) {
  EXPECT_EQ(Load("\xEF\xBB\xBF"sv + kGood), 0);
  EXPECT_EQ(Load("\xEF\xBB\xBF\n"sv + kGood), 1);
  EXPECT_EQ(NumberOf(u"N"), 12);
}

TEST_F(InstallBadInput, AFileInUtf16DescribesNothing) {
  std::string bytes = "\xFF\xFE";
  for (const char byte : kGood) bytes.append({byte, '\0'});
  EXPECT_EQ(Load(bytes), 0);
}

TEST_F(InstallBadInput, NulsArePartOfWhatTheyStandIn) {
  EXPECT_EQ(Load(kGood + "REGENTER = A, \"M\0\", 13\nREGENTER = A, \"O\", 14\0 15\n"sv), 1);
  EXPECT_EQ(NumberOf(u"N"), 12);
  EXPECT_EQ(NumberOf(u"M"), -1);
  EXPECT_EQ(NumberOf(u"M\0"sv), 13);
  EXPECT_EQ(NumberOf(u"O"), 14);
}

TEST_F(InstallBadInput, ANulInACommentEndsIt) {
  EXPECT_EQ(Load(kGood + "; remark\0\nREGENTER = A, \"M\", 13\n"sv), 1);
  EXPECT_EQ(NumberOf(u"M"), 13);
  // What stands behind it in its line is a line, whose name begins with the NUL.
  EXPECT_EQ(Load(kGood + "; remark\0REGENTER = A, \"M\", 13\n"sv), 1);
  EXPECT_EQ(NumberOf(u"M"), -1);
}

TEST_F(InstallBadInput, BytesFrom80AreOtherCharactersThanThoseMeant) {
  EXPECT_EQ(Load(kGood + "REGENTER = A, \"T\xC4\", \"\xE4 x\"\n"sv), 1);
  EXPECT_EQ(description.GetRegString(u"X", u"T\u00C4"), u"");
  EXPECT_EQ(description.GetRegString(u"X", u"T\uFFC4"), u"\uFFE4 x");
  EXPECT_EQ(description.GetRegString(u"X", u"T\uFFE4"), u"");  // no other case of it
}

TEST_F(InstallBadInput, AQuoteThatIsntClosedCostsItsLineAlone) {
  for (const char* line :
       {"REGENTER = A, \"M, 13\n", "REGENTER = \"A, \"M\", 13\n", "REGENTER = A, \"M\", \"13\n",
        "REGPATH = A, \"HKEY_LOCAL_MACHINE\\Y\n", "\"\n", "REGENTER = \"\n"}) {
    EXPECT_EQ(Load(kGood + line + "REGENTER = A, \"L\", 14\n"), 1) << line;
    EXPECT_EQ(NumberOf(u"M"), -1) << line;
    EXPECT_EQ(NumberOf(u"L"), 14) << line;
  }
}

TEST_F(InstallBadInput, ALineOfOneMebibyteIsALine) {
  const std::string text(1 << 20, 't');
  EXPECT_EQ(Load(kGood + "REGENTER = A, \"T\", \"" + text + "\"\nREGENTER = A, \"M\", 13\n"), 1);
  EXPECT_EQ(description.GetRegString(u"X", u"T"), std::u16string(1 << 20, u't'));
  EXPECT_EQ(NumberOf(u"M"), 13);
}

TEST_F(InstallBadInput, AMebibyteOfFieldsIsWalkedThrough) {
  std::string conditions;
  for (int field = 0; field < (1 << 17); ++field) conditions += ",NoWord ";
  EXPECT_EQ(Load(kGood + "REGENTER = A, \"L\", 13" + conditions + "\nREGENTER = A, \"M\", 14" +
                 conditions + ",WINNT\n"),
            1);
  EXPECT_EQ(NumberOf(u"L"), -1);
  EXPECT_EQ(NumberOf(u"M"), 14);
}

TEST_F(InstallBadInput, AFileOf64MebibytesIsRead) {
  EXPECT_EQ(Load(kGood + ";" + std::string(64 << 20, 'x') + "\nREGENTER = A, \"M\", 13\n"), 1);
  EXPECT_EQ(NumberOf(u"N"), 12);
  EXPECT_EQ(NumberOf(u"M"), 13);
}

TEST_F(InstallBadInput, TenThousandValuesAreKept) {
  std::string lines;
  for (int number = 1; number <= 10000; ++number)
    lines += "REGENTER = A, \"V" + std::to_string(number) + "\", " + std::to_string(number) + "\n";
  EXPECT_EQ(Load(kGood + lines), 1);
  EXPECT_EQ(NumberOf(u"V1"), 1);
  EXPECT_EQ(NumberOf(u"V5000"), 5000);
  EXPECT_EQ(NumberOf(u"V10000"), 10000);
  EXPECT_EQ(NumberOf(u"V10001"), -1);
}

TEST_F(InstallBadInput, TenThousandNeighboursOfOneNameAreOne) {
  std::string lines;
  for (int number = 1; number <= 10000; ++number)
    lines += "REGENTER = A, \"N\", " + std::to_string(number) + "\n";
  EXPECT_EQ(Load(kGood + lines), 1);
  EXPECT_EQ(NumberOf(u"N"), 10000);
}

TEST_F(InstallBadInput, AFileThatCantBeReadDescribesNothing) {
  WriteSADat(kGood);
  machine.files().MakeUnreadable(kSADat);
  EXPECT_EQ(description.LoadByPrinter(kPrinter), 0);
  machine.files().Remove(kSADat);
  machine.files().MakeFolder(kSADat);
  EXPECT_EQ(description.LoadByPrinter(kPrinter), 0);
}

}  // namespace
}  // namespace vgl
