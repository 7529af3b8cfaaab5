// An open menu in words.
#include "desk/menu_lines.h"

#include <gtest/gtest.h>

#include "platform/menus.h"

namespace desk {
namespace {

using namespace platform;
using Lines = std::vector<std::string>;

TEST(MenuInWordsTest, EachEntryIsALineWithItsIdAndLabel) {
  EXPECT_EQ(MenuInWords({{.id = 900, .label = "A b"}, {.id = 65535, .label = "\xD7\xA4"}}),
            (Lines{"900 A b", "65535 \xD7\xA4"}));
  EXPECT_EQ(MenuInWords({}), Lines{});
}

TEST(MenuInWordsTest, ASeparatorIsALineWhateverElseItHas) {
  EXPECT_EQ(MenuInWords({{.id = 7,
                          .type = MFT_SEPARATOR | MFT_OWNERDRAW,
                          .state = MFS_GRAYED | MFS_DEFAULT,
                          .label = "A"}}),
            Lines{"----"});
}

TEST(MenuInWordsTest, WhatAnEntryIsBesidesStandsBehindItsLabel) {
  EXPECT_EQ(MenuInWords(
                {{.id = 1, .state = MFS_DEFAULT, .label = "A"},
                 {.id = 2, .type = MFT_RIGHTORDER | MFT_RIGHTJUSTIFY, .label = "B"},
                 {.id = 3, .state = MFS_GRAYED, .label = "C"},
                 {.id = 4, .type = MFT_RIGHTORDER, .state = MFS_GRAYED | MFS_DEFAULT, .label = "D"},
                 {.id = 5, .type = MFT_OWNERDRAW, .state = MFS_CHECKED, .label = "E"}}),
            (Lines{"1 A (default)", "2 B (right to left)", "3 C (disabled)",
                   "4 D (default) (right to left) (disabled)", "5 E"}));
}

TEST(MenuInWordsTest, SeparatorsAndDisabledEntriesCantBeChosen) {
  EXPECT_TRUE((MenuLine{.id = 1, .type = MFT_OWNERDRAW, .state = MFS_DEFAULT}.CanBeChosen()));
  EXPECT_FALSE((MenuLine{.id = 1, .type = MFT_SEPARATOR}.CanBeChosen()));
  EXPECT_FALSE((MenuLine{.id = 1, .state = MFS_GRAYED}.CanBeChosen()));
}

}  // namespace
}  // namespace desk
