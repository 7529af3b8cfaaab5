// A description for one question answers it as the whole description does.
#include <random>

#include "profile/install_desc.h"
#include "tests/profile/driver_set_fixture.h"

namespace vgl {
namespace {

class InstallQuestion : public DriverSetTest {
 protected:
  struct Answer {
    std::u16string text;
    std::int64_t number = -1;
    friend bool operator==(const Answer&, const Answer&) = default;
  };

  static Answer Ask(const CInstallDesc& description, std::u16string_view path,
                    std::u16string_view name) {
    return {description.GetRegString(path, name), description.GetRegDword(path, name)};
  }
  Answer AskForThis(std::u16string_view path, std::u16string_view name) {
    CInstallDesc description(path, name);
    const int result = description.LoadByVif(kVif);
    Answer answer = Ask(description, path, name);
    EXPECT_EQ(result == 1, answer != Answer{});  // no test here describes a number of -1
    return answer;
  }
};

constexpr char kSample[] = R"(
REGPATH  = A, "HKEY_LOCAL_MACHINE\X"
REGPATH  = B, "HKEY_LOCAL_MACHINE\Y"
REGENTER = A, "N", 1
REGENTER = B, "N", "two"
REGENTER = B, "N", "three"
)";

TEST_F(InstallQuestion, IsAnswered) {
  Describe(kSample);
  EXPECT_EQ(AskForThis(u"X", u"N"), (Answer{u"", 1}));
  EXPECT_EQ(AskForThis(u"y", u"n"), (Answer{u"three", -1}));
}

TEST_F(InstallQuestion, ALoadTellsWhetherItIs) {
  Describe(kSample);
  EXPECT_EQ(CInstallDesc(u"X", u"N").LoadByPrinter(kPrinter), 1);
  EXPECT_EQ(CInstallDesc(u"X", u"M").LoadByPrinter(kPrinter), 0);
  EXPECT_EQ(CInstallDesc(u"Z", u"N").LoadByPrinter(kPrinter), 0);
  EXPECT_EQ(CInstallDesc(u"", u"").LoadByPrinter(kPrinter), 0);
}

TEST_F(InstallQuestion, WithoutTheDriversFolderNotEvenANumberAnswersIt) {
  SetDriver(std::nullopt, kVif);
  machine.files().WriteFile(kBareSADat, "[Install]\n" + std::string(kSample));
  Describe(kSample);
  CInstallDesc byPrinter(u"X", u"N");
  EXPECT_EQ(byPrinter.LoadByPrinter(kPrinter), 0);
  EXPECT_EQ(byPrinter.GetRegDword(u"X", u"N"), -1);
  CInstallDesc byDriver(u"X", u"N");
  EXPECT_EQ(byDriver.LoadByDriver(kDriver), 0);
  // A VIF without a folder leaves the numbers.
  machine.files().WriteFile(u"C:\\Set\\sample.vif", "[CommonDrvInfo]\nSADat=sample.sad\n");
  CInstallDesc byVif(u"X", u"N");
  EXPECT_EQ(byVif.LoadByVif(u"C:\\Set\\sample.vif"), 1);
  EXPECT_EQ(byVif.GetRegDword(u"X", u"N"), 1);
}

// Who reads the open-printer log sees no difference.
TEST_F(InstallQuestion, ThePrinterIsOpenedAsOftenAsForTheWhole) {
  const auto openings = [this](std::u16string_view path) {
    return OpeningsOf([path] { CInstallDesc(path, u"N").LoadByPrinter(kPrinter); });
  };
  Describe(kSample);
  EXPECT_EQ(openings(u"X"), 4U);
  EXPECT_EQ(openings(u"not described"), 4U);
  Describe("REGENTER = A, \"N\", 1\n");
  EXPECT_EQ(openings(u"X"), 3U);
}

// A file of random lines out of a few parts, most of them in order.
std::string RandomLines(std::mt19937& random) {
  const auto one = [&random](std::initializer_list<const char*> parts) {
    return std::string(*(parts.begin() + random() % parts.size()));
  };
  std::string lines;
  for (std::uint32_t count = random() % 16; count > 0; --count) {
    const std::string tag =
        one({"A", "A", "A", "a", "B", "\"A\"", "", "\"A,B\"", "A\"\"", "\"A\"\"\""});
    switch (random() % 8) {
      case 0:
      case 1:
        lines += "REGPATH=" + tag + ", \"HKEY_LOCAL_MACHINE\\" + one({"X", "x", "Y", ""}) + "\"";
        break;
      case 2:
        lines += one({"[Other]", "; REGENTER=A, \"N\", 9", "REGENTER", "[", "REGPATH=A, \"X\""});
        break;
      default:
        lines += "REGENTER=" + tag + ", " +
                 one({"\"N\"", "\"N\"", "\"n\"", "\"M\"", "\"N\"\"M\"", "N", "\"N", "\"\"N\"\"",
                      "\"N\"\"", "\t\"N\" ", "\"N\"x", "\"N \"", "\"N,M\"", "\" N\"", "\"\xE4\""}) +
                 "," +
                 one({"1", "2", "\"s\"", "\"t\"", "DRIVERDIR", "DRIVERDIR+\"\\d\"", "\"\"", "",
                      "SYSTEMDIR", "driverdir", "systemdir+\"x\"", "\"", "DRIVERDIR+\"\\a,b\""}) +
                 one({"", "", ", WINNT", ", WIN9X", ", WIN9X, ALL", ",,WIN9X", ", \"WIN9X"});
    }
    lines += '\n';
  }
  return lines;
}

TEST_F(InstallQuestion, IsAnsweredAsTheWholeDescriptionAnswersIt) {
  int answered = 0;
  for (std::uint32_t seed = 1; seed <= 3000; ++seed) {
    std::mt19937 random(seed);
    const std::string lines = RandomLines(random);
    Describe(lines);
    CInstallDesc whole;
    whole.LoadByVif(kVif);
    for (const char16_t* path : {u"X", u"Y"}) {
      for (const char16_t* name :
           {u"N", u"n", u"M", u"N\"M", u"N,M", u"N ", u" N", u"\uFFE4", u""}) {
        const Answer answer = Ask(whole, path, name);
        ASSERT_EQ(AskForThis(path, name), answer) << "seed " << seed << "\n" << lines;
        if (answer != Answer{}) ++answered;
      }
    }
  }
  EXPECT_GT(answered, 1000);
}

}  // namespace
}  // namespace vgl
