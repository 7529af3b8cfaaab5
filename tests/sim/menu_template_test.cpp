// Menus out of the bytes of their templates, good and bad.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/sim/menu.h"

namespace sim {
namespace {

using namespace std::string_literals;
using namespace platform;

// The bytes of a text with its terminator.
std::string Wide(std::u16string_view text) {
  std::string bytes;
  for (const char16_t c : std::u16string(text) + u'\0') {
    bytes += static_cast<char>(c & 0xFF);
    bytes += static_cast<char>(c >> 8);
  }
  return bytes;
}

const std::string kStandard = "\0\0\0\0"s;
const std::string kExtended = "\1\0\4\0\0\0\0\0"s;

// A popup with two items, and an item behind it.
std::string StandardTemplate() {
  return kStandard + "\x10\0"s + Wide(u"File") +  //
         "\x00\0\x84\3"s + Wide(u"Open") +        // 900
         "\x88\0\x85\3"s + Wide(u"Shut") +        // 901, checked, the last here
         "\x81\0\x86\3"s + Wide(u"Help");         // 902, grayed, the last
}

// The same as an extended template; a text that ends off a multiple of four is filled up.
std::string ExtendedTemplate() {
  return kExtended +                                                         //
         "\0\0\0\0\0\0\0\0\x07\0\0\0\1\0"s + Wide(u"File") + "\7\0\0\0"s +   // popup 7, help 7
         "\0\0\0\0\0\0\0\0\x84\3\0\0\0\0"s + Wide(u"Open") +                 // 900
         "\0\0\0\0\x08\0\0\0\x85\3\0\0\x80\0"s + Wide(u"Quit2") + "\0\0"s +  // 901, checked
         "\0\x60\0\0\3\0\0\0\x86\3\0\0\x80\0"s + Wide(u"Help");              // 902, grayed
}

void ExpectMenu(const std::optional<MenuLists>& lists, const char16_t* second) {
  ASSERT_TRUE(lists);
  ASSERT_EQ(lists->size(), 2u);
  const std::vector<MenuItem>& top = *lists->at(0);
  ASSERT_EQ(top.size(), 2u);
  EXPECT_EQ(top[0].text, u"File");
  EXPECT_EQ(top[0].popup, 1u);
  EXPECT_EQ(top[1].text, u"Help");
  EXPECT_EQ(top[1].id, 902u);
  EXPECT_NE(top[1].state & MFS_GRAYED, 0u);
  EXPECT_EQ(top[1].popup, 0u);
  const std::vector<MenuItem>& file = *lists->at(1);
  ASSERT_EQ(file.size(), 2u);
  EXPECT_EQ(file[0].text, u"Open");
  EXPECT_EQ(file[0].id, 900u);
  EXPECT_EQ(file[1].text, second);
  EXPECT_EQ(file[1].id, 901u);
  EXPECT_EQ(file[1].state, MFS_CHECKED);
}

TEST(MenuTemplates, AStandardOneIsRead) {
  ExpectMenu(ReadMenuTemplate(StandardTemplate()), u"Shut");
}

TEST(MenuTemplates, AnExtendedOneIsRead) {
  const auto lists = ReadMenuTemplate(ExtendedTemplate());
  ExpectMenu(lists, u"Quit2");
  EXPECT_EQ(lists->at(0)->at(0).id, 7u);
  EXPECT_EQ(lists->at(0)->at(1).type, MFT_RIGHTORDER | MFT_RIGHTJUSTIFY);
}

TEST(MenuTemplates, OneThatIsCutAnywhereIsNone) {
  for (const std::string& whole : {StandardTemplate(), ExtendedTemplate()}) {
    ASSERT_TRUE(ReadMenuTemplate(whole));
    for (std::size_t size = 0; size < whole.size(); ++size) {
      EXPECT_FALSE(ReadMenuTemplate(std::string_view(whole).substr(0, size))) << size;
    }
  }
}

TEST(MenuTemplates, WhatStandsBehindItIsLeftAlone) {
  EXPECT_EQ(ReadMenuTemplate(StandardTemplate() + "rest")->at(0)->size(), 2u);
}

TEST(MenuTemplates, AHeaderMayBeLonger) {
  EXPECT_TRUE(ReadMenuTemplate("\0\0\4\0more"s + StandardTemplate().substr(4)));
}

TEST(MenuTemplates, AHeaderThatIsLongerThanTheBytesMakesNone) {
  EXPECT_FALSE(ReadMenuTemplate("\0\0\xFF\xFF"s + StandardTemplate().substr(4)));
}

TEST(MenuTemplates, AnotherVersionIsNone) {
  EXPECT_FALSE(ReadMenuTemplate("\2\0\0\0"s + StandardTemplate().substr(4)));
}

TEST(MenuTemplates, AnItemWithoutATextIsASeparator) {
  const auto lists = ReadMenuTemplate(kStandard + "\x80\0\0\0"s + Wide(u""));
  ASSERT_TRUE(lists);
  EXPECT_TRUE(lists->at(0)->at(0).IsSeparator());
}

TEST(MenuTemplates, APopupThatIsTheLastEndsItsListBehindItsOwn) {
  const auto lists = ReadMenuTemplate(kStandard + "\x90\0"s + Wide(u"Outer") +  //
                                      "\x90\0"s + Wide(u"Inner") +              //
                                      "\x80\0\1\0"s + Wide(u"Item"));
  ASSERT_TRUE(lists);
  ASSERT_EQ(lists->size(), 3u);
  for (const auto& list : *lists) EXPECT_EQ(list->size(), 1u);
}

TEST(MenuTemplates, PopupsMayBeNestedAsDeepAsTheyAre) {
  std::string bytes = kStandard;
  for (int depth = 0; depth < 100000; ++depth) bytes += "\x90\0"s + Wide(u"");
  bytes += "\x80\0\1\0"s + Wide(u"Item");
  const auto lists = ReadMenuTemplate(bytes);
  ASSERT_TRUE(lists);
  EXPECT_EQ(lists->size(), 100001u);
}

}  // namespace
}  // namespace sim
