#include "profile/os_identification.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/sim/machine.h"

namespace vgl {
namespace {

using namespace platform;

class OsIdentification : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};

  void Be(std::uint32_t platformId, std::uint32_t major, std::uint32_t minor) {
    machine.system().version = {major, minor, platformId, 1};
  }
  // Those of the five words for systems that hold.
  std::vector<std::u16string> Holding() {
    std::vector<std::u16string> words;
    for (const char16_t* word : {u"WIN9X", u"WINNT", u"WINNT40", u"WIN2000", u"WIN2KLATER"})
      if (TestCondition(word) == 1) words.emplace_back(word);
    return words;
  }
};

using Words = std::vector<std::u16string>;

// --- Condition words

TEST_F(OsIdentification, OnVersion10TheNtWordsHoldButThatOfNt40) {
  Be(2, 10, 0);
  EXPECT_EQ(Holding(), (Words{u"WINNT", u"WIN2000", u"WIN2KLATER"}));
}

TEST_F(OsIdentification, OnVersion60TheNtWordsHoldButThatOfNt40) {
  Be(2, 6, 0);
  EXPECT_EQ(Holding(), (Words{u"WINNT", u"WIN2000", u"WIN2KLATER"}));
}

TEST_F(OsIdentification, OnVersion51BothWordsOf2000Hold) {
  Be(2, 5, 1);
  EXPECT_EQ(Holding(), (Words{u"WINNT", u"WIN2000", u"WIN2KLATER"}));
}

TEST_F(OsIdentification, OnVersion50ThatOfLaterSystemsDoesntHold) {
  Be(2, 5, 0);
  EXPECT_EQ(Holding(), (Words{u"WINNT", u"WIN2000"}));
}

TEST_F(OsIdentification, OnNt40ItsOwnWordHolds) {
  Be(2, 4, 0);
  EXPECT_EQ(Holding(), (Words{u"WINNT", u"WINNT40"}));
}

TEST_F(OsIdentification, OnNt351OnlyTheFamilysWordHolds) {
  Be(2, 3, 51);
  EXPECT_EQ(Holding(), (Words{u"WINNT"}));
}

TEST_F(OsIdentification, OnTheOtherFamilyOnlyItsWordHoldsWhateverTheVersion) {
  for (const std::uint32_t major : {4U, 5U, 10U}) {
    Be(1, major, 90);
    EXPECT_EQ(Holding(), (Words{u"WIN9X"})) << major;
  }
}

TEST_F(OsIdentification, OnAnUnknownFamilyNoneHolds) {
  Be(3, 10, 0);
  EXPECT_EQ(Holding(), Words{});
}

TEST_F(OsIdentification, WordsIgnoreCase) {
  for (const char16_t* word : {u"win2000", u"WIN2000", u"Win2kLater", u"all", u"Build64"})
    EXPECT_EQ(TestCondition(word), 1);
}

TEST_F(OsIdentification, NoWordAndAllHoldWithoutACall) {
  const std::uint64_t before = inside.process().calls();
  EXPECT_EQ(TestCondition(u""), 1);
  EXPECT_EQ(TestCondition(u"ALL"), 1);
  EXPECT_EQ(inside.process().calls(), before);
}

TEST_F(OsIdentification, ThisBuildIsOneOf64Bits) {
  static_assert(sizeof(void*) == 8, "the tests are built for 64 bits");
  EXPECT_EQ(TestCondition(u"BUILD64"), 1);
  EXPECT_EQ(TestCondition(u"BUILD32"), 0);
}

TEST_F(OsIdentification, AnyOtherWordNeverHolds) {
  for (const char16_t* word : {u"BUILD", u"WIN", u"WINNT4", u"WIN20000", u" ALL", u"ALL ", u" ",
                               u"\"ALL\"", u"!WIN9X", u"1"})
    EXPECT_EQ(TestCondition(word), 0) << testing::PrintToString(std::u16string(word));
}

TEST_F(OsIdentification, OnASystemThatDoesntTellOnlyWordsForAllSystemsHold) {
  machine.system().versionIsKnown = false;
  EXPECT_EQ(Holding(), Words{});
  EXPECT_EQ(TestCondition(u"ALL"), 1);
  EXPECT_EQ(TestCondition(u"BUILD64"), 1);
}

TEST_F(OsIdentification, EachTestAsksAnew) {
  Be(2, 4, 0);
  EXPECT_EQ(TestCondition(u"WIN2000"), 0);
  Be(2, 5, 0);
  EXPECT_EQ(TestCondition(u"WIN2000"), 1);
  inside.process().FailNext("GetVersionExW", ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(TestCondition(u"WIN2000"), 0);
  EXPECT_EQ(TestCondition(u"WIN2000"), 1);
}

// --- The other tests

TEST_F(OsIdentification, TheNtFamilyIsPlatform2) {
  Be(2, 3, 0);
  EXPECT_TRUE(IsNtFamily());
  Be(1, 10, 0);
  EXPECT_FALSE(IsNtFamily());
  Be(3, 10, 0);
  EXPECT_FALSE(IsNtFamily());
}

TEST_F(OsIdentification, Win2000OrLaterIsTheNtFamilyFromVersion5On) {
  Be(2, 5, 0);
  EXPECT_TRUE(IsWin2000OrLater());
  Be(2, 10, 0);
  EXPECT_TRUE(IsWin2000OrLater());
  Be(2, 4, 9);
  EXPECT_FALSE(IsWin2000OrLater());
  Be(1, 5, 0);
  EXPECT_FALSE(IsWin2000OrLater());
}

TEST_F(OsIdentification, BeforeVersion5LooksAtTheVersionAlone) {
  Be(2, 4, 0);
  EXPECT_TRUE(IsBeforeVersion5());
  Be(2, 5, 0);
  EXPECT_FALSE(IsBeforeVersion5());
  Be(1, 5, 0);
  EXPECT_FALSE(IsBeforeVersion5());
}

TEST_F(OsIdentification, ASystemThatDoesntTellIsAnOldOneOfNoFamily) {
  machine.system().versionIsKnown = false;
  EXPECT_FALSE(IsNtFamily());
  EXPECT_FALSE(IsWin2000OrLater());
  EXPECT_TRUE(IsBeforeVersion5());
}

}  // namespace
}  // namespace vgl
