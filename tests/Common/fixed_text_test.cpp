#include "Common/fixed_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace vgl {
namespace {

TEST(FixedText, IsEmptyWhenNew) {
  const FixedText<5> text;
  EXPECT_TRUE(text.empty());
  EXPECT_EQ(text.length(), 0U);
  EXPECT_EQ(text.view(), u"");
  EXPECT_EQ(text.c_str()[0], u'\0');
}

TEST(FixedText, TakesATextOfOneCharacterLessThanItsCapacity) {
  FixedText<5> text;
  EXPECT_TRUE(text.Assign(u"abcd"));
  EXPECT_EQ(text.view(), u"abcd");
  EXPECT_EQ(text.length(), 4U);
  EXPECT_EQ(text.c_str()[4], u'\0');
}

TEST(FixedText, KeepsWhatItHoldsWhenATextDoesNotFit) {
  FixedText<5> text;
  ASSERT_TRUE(text.Assign(u"old"));
  EXPECT_FALSE(text.Assign(u"abcde"));
  EXPECT_EQ(text.view(), u"old");
}

TEST(FixedText, AFieldOf260TakesA259CharacterPathAndNoLongerOne) {
  PathText path;
  EXPECT_TRUE(path.Assign(std::u16string(259, u'x')));
  EXPECT_EQ(path.length(), 259U);
  EXPECT_FALSE(path.Assign(std::u16string(260, u'y')));
  EXPECT_EQ(path.view(), std::u16string(259, u'x'));
}

TEST(FixedText, TakesATextUpToItsFirstNul) {
  FixedText<5> text;
  // Behind the U+0000 there is more than would fit.
  EXPECT_TRUE(text.Assign(std::u16string_view(u"ab\0cdefgh", 9)));
  EXPECT_EQ(text.view(), u"ab");
}

TEST(FixedText, AShorterTextLeavesNothingOfALongerOne) {
  FixedText<8> text;
  ASSERT_TRUE(text.Assign(u"longer"));
  ASSERT_TRUE(text.Assign(u"ab"));
  EXPECT_EQ(text.view(), u"ab");
}

TEST(FixedText, ClearEmptiesIt) {
  FixedText<5> text;
  ASSERT_TRUE(text.Assign(u"abc"));
  text.Clear();
  EXPECT_TRUE(text.empty());
  EXPECT_EQ(text.view(), u"");
}

TEST(FixedText, TakesAPartOfItself) {
  FixedText<8> text;
  ASSERT_TRUE(text.Assign(u"abcdef"));
  EXPECT_TRUE(text.Assign(text.view().substr(2)));
  EXPECT_EQ(text.view(), u"cdef");
}

TEST(FixedText, FollowsWhatACallWritesIntoItsBuffer) {
  FixedText<8> text;
  const std::u16string_view written(u"temp\0rest", 8);
  std::copy(written.begin(), written.end(), text.buffer());
  EXPECT_EQ(text.view(), u"temp");
  EXPECT_EQ(FixedText<8>::capacity(), 8U);
}

TEST(FixedText, EndsAtItsCapacityWhenACallLeavesNoTerminator) {
  FixedText<4> text;
  std::fill_n(text.buffer(), FixedText<4>::capacity(), u'x');
  EXPECT_EQ(text.view(), u"xxxx");
}

TEST(FixedText, HoldsNothingButTheTerminatorAtCapacityOne) {
  FixedText<1> text;
  EXPECT_TRUE(text.Assign(u""));
  EXPECT_FALSE(text.Assign(u"a"));
  EXPECT_TRUE(text.empty());
}

TEST(FixedText, ComparesByTextNotBySize) {
  FixedText<5> small;
  PathText large;
  ASSERT_TRUE(small.Assign(u"abc"));
  ASSERT_TRUE(large.Assign(u"abc"));
  EXPECT_TRUE(small == large);
  ASSERT_TRUE(large.Assign(u"abd"));
  EXPECT_FALSE(small == large);
}

}  // namespace
}  // namespace vgl
