// The single walk over an option text against the passes that define it.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "app/option_walker.h"
#include "tests/app/naive_option_reader.h"
#include "tests/app/record_fixture.h"

namespace vgl::test {
namespace {

// Texts from pieces that matter to the grammar. The same seed gives the same texts everywhere.
class RandomText {
 public:
  explicit RandomText(std::uint32_t seed) : m_engine(seed) {}

  std::u16string Next() {
    std::u16string text;
    for (std::size_t pieces = Below(24); pieces > 0; --pieces) text += Piece();
    return text;
  }

 private:
  std::size_t Below(std::size_t limit) { return m_engine() % limit; }

  template <std::size_t Count>
  std::u16string OneOf(const std::u16string (&choices)[Count]) {
    return choices[Below(Count)];
  }

  std::u16string Piece() {
    static const std::u16string kSigns[] = {u"/", u"/",  u"/",  u"\"", u"\"", u"\"",
                                            u" ", u"\n", u"\t", u"\r", u"//", u"\"\""};
    static const std::u16string kOptions[] = {
        u"/P",  u"/p",       u"/D ",  u"/O\t",   u"/M\r", u"/J",   u"/JI",     u"/S",
        u"/R ", u"/E",       u"/KVM", u"/hwnd ", u"/EF ", u"/SPL", u"/ZM\n",   u"/T",
        u"/V",  u"/nothing", u"/FU",  u"/KVT",   u"/P-",  u"/PP",  u"/x\u00e4"};
    static const std::u16string kWords[] = {u"a",   u"HKLM",   u"hkcu",       u"x y", u"C:\\t.tmp",
                                            u"-17", u"\u20AC", u"name",       u"a/b", u"\uFEFF",
                                            u"R",   u"=",      u"lorem ipsum"};
    static const std::u16string kLengths[] = {u"0",  u"1",  u"2",   u"3",          u"5",
                                              u"9",  u"00", u"12",  u"259",        u"260",
                                              u"-4", u"99", u"300", u"4294967296", u"99999999999"};
    switch (Below(16)) {
      case 0:
      case 1:
      case 2:
      case 3:
      case 4:
        return OneOf(kSigns);
      case 5:
      case 6:
      case 7:
        return OneOf(kOptions);
      case 8:
      case 9:
        return OneOf(kWords);
      case 10:
        return OneOf(kLengths);
      case 11:
      case 12:
        return OneOf(kOptions) + u"\"" + OneOf(kWords) + u"\"" + OneOf(kSigns);
      case 13:
        return OneOf(kOptions) + OneOf(kLengths) + u" \"" + OneOf(kWords) + u"\"";
      default:
        return Seldom();
    }
  }

  std::u16string Seldom() {
    switch (Below(24)) {
      case 0:
        return u"\"" + std::u16string(255 + Below(10), u'v') + u"\"";
      case 1:
        return std::u16string(255 + Below(10), u'w');
      case 2:
        return u"/" + std::u16string(76 + Below(6), u'N');
      case 3:
        return std::u16string(1, u'\0');
      default:
        return std::u16string(1, static_cast<char16_t>(u' ' + Below(95)));
    }
  }

  std::mt19937 m_engine;
};

// What the walk delivers, with the ends that the record puts to it.
NaiveReading WalkOver(const std::u16string& text) {
  NaiveReading reading;
  COptionWalker walker(text);
  while (const auto option = walker.Next()) {
    const auto value = walker.Value();
    if (option->name.size() >= 80) {
      reading.end = NaiveEnd::NameTooLong;
      break;
    }
    if (!value || value->size() >= 260) {
      reading.end = value ? NaiveEnd::ValueTooLong : NaiveEnd::NoQuoteFollows;
      break;
    }
    reading.applied.push_back({std::u16string(option->name), std::u16string(*value)});
  }
  return reading;
}

TEST(OptionWalk, GivesTheOptionsOfThePassesForRandomTexts) {
  RandomText random(20260105);
  std::map<NaiveEnd, int> ends;
  std::size_t options = 0;
  for (int round = 0; round < 30000; ++round) {
    const std::u16string text = random.Next();
    const NaiveReading expected = NaiveOptionReader(text).ReadAll();
    const NaiveReading walked = WalkOver(text);
    ASSERT_EQ(walked.applied, expected.applied) << testing::PrintToString(text);
    ASSERT_EQ(walked.end, expected.end) << testing::PrintToString(text);
    ++ends[expected.end];
    options += expected.applied.size();
  }
  // The texts were worth the while: each way to end came up often, and there was something to read.
  EXPECT_GT(ends[NaiveEnd::TextEnds], 1000);
  EXPECT_GT(ends[NaiveEnd::NoQuoteFollows], 100);
  EXPECT_GT(ends[NaiveEnd::ValueTooLong], 100);
  EXPECT_GT(ends[NaiveEnd::NameTooLong], 100);
  EXPECT_GT(options, 50000U);
}

TEST(OptionWalk, GivesTheOptionsOfThePassesForEveryShortText) {
  // All texts of up to 7 characters of an alphabet that has one of each kind.
  const std::u16string alphabet = u"/\"P2 \n";
  std::u16string text;
  const auto check = [&text] {
    const NaiveReading expected = NaiveOptionReader(text).ReadAll();
    const NaiveReading walked = WalkOver(text);
    ASSERT_EQ(walked.applied, expected.applied) << testing::PrintToString(text);
    ASSERT_EQ(walked.end, expected.end) << testing::PrintToString(text);
  };
  for (std::size_t length = 0; length <= 7; ++length) {
    std::size_t count = 1;
    for (std::size_t i = 0; i < length; ++i) count *= alphabet.size();
    for (std::size_t number = 0; number < count; ++number) {
      text.clear();
      for (std::size_t rest = number; text.size() < length; rest /= alphabet.size())
        text += alphabet[rest % alphabet.size()];
      check();
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

bool IsSame(std::u16string_view left, std::u16string_view right) {
  return std::equal(
      left.begin(), left.end(), right.begin(), right.end(), [](char16_t a, char16_t b) {
        const auto upper = [](char16_t c) { return c >= u'a' && c <= u'z' ? char16_t(c - 32) : c; };
        return upper(a) == upper(b);
      });
}

// Applies an option to a record by the words of its definition. Files and records of printers are
// taken to be missing.
void ApplyNaively(CCmdLineInfo& info, const NaiveOption& option) {
  for (const TextOption& text : kTextOptions)
    if (IsSame(option.name, text.name)) info.*text.field = option.value;
  for (const FlagOption& flag : kFlagOptions)
    if (IsSame(option.name, flag.name)) info.*flag.field = 1;
  if (IsSame(option.name, u"EF") && IsSame(option.value, u"HKCU")) info.m_IconFrom = 1;
  if (IsSame(option.name, u"EF") && IsSame(option.value, u"HKLM")) info.m_IconFrom = 2;
  if (IsSame(option.name, u"HWND")) {
    const std::string digits(option.value.begin(), option.value.end());
    info.m_nHwnd =
        std::clamp(std::strtoll(digits.c_str(), nullptr, 10), -2147483648LL, 2147483647LL);
  }
}

using RecordWalk = RecordTest;

TEST_F(RecordWalk, FillsTheRecordAsThePassesDoForRandomTexts) {
  RandomText random(77);
  int compared = 0;
  int withFile = 0;
  for (int round = 0; round < 10000; ++round) {
    const std::u16string text = random.Next();
    const NaiveReading reading = NaiveOptionReader(text).ReadAll();
    if (reading.end == NaiveEnd::NameTooLong) continue;  // would end this process
    CCmdLineInfo expected;
    bool isFileNamed = false;
    for (const NaiveOption& option : reading.applied) {
      ApplyNaively(expected, option);
      isFileNamed = isFileNamed || IsSame(option.name, u"FU");
    }
    CCmdLineInfo info;
    info.m_szCmdText = text;
    const int result = info.ParseCommandLine();
    ASSERT_EQ(Describe(info), Describe(expected)) << testing::PrintToString(text);
    ASSERT_EQ(result, isFileNamed ? 0 : 1) << testing::PrintToString(text);
    ++compared;
    withFile += isFileNamed ? 1 : 0;
  }
  EXPECT_GT(compared, 9000);
  EXPECT_GT(withFile, 500);
}

}  // namespace
}  // namespace vgl::test
