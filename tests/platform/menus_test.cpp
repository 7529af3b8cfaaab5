// Menus: what a template gives, changing and asking for items. Showing one is in
// shown_menus_test.cpp.
#include <vector>

#include "tests/platform/menu_fixture.h"

namespace platform {
namespace {

constexpr HMENU kNone{};
constexpr HMENU kGarbage{0x12345678};

class MenuItems : public MenuContract {
 protected:
  OwnedMenu menu = LoadTestMenu(802);
  HMENU outer = menus.GetSubMenu(menu.get(), 1);
  HMENU inner = menus.GetSubMenu(outer, 3);
};

// --- Sub-menus

TEST_F(MenuItems, AnItemOpensItsSubMenu) {
  EXPECT_NE(outer, kNone);
  EXPECT_NE(inner, kNone);
  EXPECT_NE(outer, inner);
  EXPECT_EQ(menus.GetSubMenu(menu.get(), 1), outer);
  EXPECT_EQ(Text(inner, 0, true), u"Deep");
}

TEST_F(MenuItems, AnItemMayOpenNothing) { EXPECT_EQ(menus.GetSubMenu(menu.get(), 0), kNone); }

TEST_F(MenuItems, APlaceWithoutAnItemOpensNothing) {
  for (const std::int32_t place : {4, 100, -1}) {
    EXPECT_EQ(menus.GetSubMenu(menu.get(), place), kNone) << place;
  }
}

TEST_F(MenuItems, WhatIsNoMenuHasNothing) {
  HMENU destroyed{};
  {
    const OwnedMenu other = LoadTestMenu(801);
    destroyed = other.get();
  }
  for (const HMENU none : {kNone, kGarbage, destroyed}) {
    EXPECT_EQ(menus.GetSubMenu(none, 0), kNone);
    EXPECT_FALSE(menus.ModifyMenuW(none, 0, MF_BYPOSITION, 1, u"text"));
    EXPECT_FALSE(menus.AppendMenuW(none, MF_STRING, 1, u"text"));
    EXPECT_FALSE(Info(none, 0, MIIM_STATE, true));
    const MenuItemInfo info{.mask = MIIM_STATE};
    EXPECT_FALSE(menus.SetMenuItemInfoW(none, 0, true, &info));
    os.process.SetLastError(7777);
    EXPECT_FALSE(menus.DestroyMenu(none));
    // Wine leaves the error as it was.
    EXPECT_TRUE(HoldsExcept(OnWine(), LastError() == ERROR_INVALID_MENU_HANDLE));
  }
}

// --- What a template gives

TEST_F(MenuItems, ATemplatesItemsHaveTheirTexts) {
  EXPECT_EQ(Text(menu.get(), 0, true), u"On top");
  EXPECT_EQ(Text(menu.get(), 1, true), u"Outer");
  EXPECT_EQ(Text(outer, 0, true), u"Grayed");
  EXPECT_EQ(Text(outer, 3, true), u"Inner");
  EXPECT_EQ(Text(outer, 4, true), u"Behind");
  EXPECT_EQ(Text(menu.get(), 3, true), u"Last");
}

TEST_F(MenuItems, ATemplatesTextKeepsItsAmpersand) {
  const OwnedMenu other = LoadTestMenu(801);
  EXPECT_EQ(Text(other.get(), 901), u"&Monitoring Preferences");
}

TEST_F(MenuItems, ATemplatesItemsHaveTheirStates) {
  EXPECT_EQ(Info(outer, 910, MIIM_STATE), std::nullopt);
  EXPECT_EQ(Info(menu.get(), 910, MIIM_STATE)->state, MFS_ENABLED);
  EXPECT_NE(Info(outer, 911, MIIM_STATE)->state & MFS_GRAYED, 0u);
  EXPECT_EQ(Info(outer, 912, MIIM_STATE)->state, MFS_CHECKED);
}

TEST_F(MenuItems, ATemplatesSeparatorIsOne) {
  const auto separator = Info(outer, 2, MIIM_FTYPE | MIIM_STATE | MIIM_STRING | MIIM_ID, true);
  ASSERT_TRUE(separator);
  EXPECT_EQ(separator->type, MFT_SEPARATOR);
  EXPECT_EQ(separator->state, MFS_GRAYED);
  EXPECT_EQ(separator->cch, 0u);
  EXPECT_EQ(separator->id, 0u);
}

TEST_F(MenuItems, AnExtendedTemplateGivesNumbersTypesAndStates) {
  const OwnedMenu extended = LoadTestMenu(803);
  const HMENU popup = menus.GetSubMenu(extended.get(), 0);
  EXPECT_EQ(Info(extended.get(), 0, MIIM_ID, true)->id, 70000u);
  const std::uint32_t all = MIIM_ID | MIIM_FTYPE | MIIM_STATE;
  const auto first = Info(popup, 0, all, true);
  ASSERT_TRUE(first);
  EXPECT_EQ(first->id, 71000u);
  EXPECT_EQ(first->type, MFT_STRING);
  EXPECT_EQ(first->state, MFS_DEFAULT);
  EXPECT_EQ(Info(popup, 1, all, true)->type, MFT_SEPARATOR);
  EXPECT_EQ(Info(popup, 2, all, true)->type, MFT_RIGHTORDER | MFT_RIGHTJUSTIFY);
  EXPECT_EQ(Info(popup, 3, all, true)->state, MFS_CHECKED);
  EXPECT_EQ(Text(popup, 3, true), u"Odd");
  EXPECT_EQ(Text(menus.GetSubMenu(popup, 4), 0, true), u"Innermost");
}

// --- Finding an item

TEST_F(MenuItems, ACommandIsFoundInSubMenus) {
  EXPECT_EQ(Text(menu.get(), 920), u"Deep");
  EXPECT_EQ(Text(menu.get(), 913), u"Behind");
  EXPECT_EQ(Text(menu.get(), 940), u"In the last");
}

TEST_F(MenuItems, ACommandIsNotFoundAboveTheMenu) {
  EXPECT_FALSE(Info(outer, 940, MIIM_STATE));
  EXPECT_FALSE(Info(outer, 910, MIIM_STATE));
}

TEST_F(MenuItems, OfTwoItemsOfOneCommandTheFirstCounts) {
  EXPECT_EQ(Text(menu.get(), 930), u"Twice, deep");
}

TEST_F(MenuItems, APositionIsOneOfTheMenuItself) {
  EXPECT_TRUE(Info(menu.get(), 3, MIIM_STATE, true));
  EXPECT_FALSE(Info(menu.get(), 4, MIIM_STATE, true));
}

TEST_F(MenuItems, ACommandThatIsNotThereIsNotFound) {
  MenuItemInfo info{.mask = MIIM_STATE | MIIM_TYPE, .type = 5, .state = 6, .cch = 7};
  EXPECT_FALSE(menus.GetMenuItemInfoW(menu.get(), 999, false, &info));
  EXPECT_EQ(info.type, 5u);
  EXPECT_EQ(info.state, 6u);
  EXPECT_EQ(info.cch, 7u);
  EXPECT_FALSE(menus.SetMenuItemInfoW(menu.get(), 999, false, &info));
}

// --- Changing an item

TEST_F(MenuItems, AnItemIsMadeAnother) {
  EXPECT_TRUE(menus.ModifyMenuW(menu.get(), 0, MF_BYPOSITION, 950, u"Studio 7200"));
  EXPECT_EQ(Text(menu.get(), 950), u"Studio 7200");
  EXPECT_FALSE(Info(menu.get(), 910, MIIM_STATE));
}

TEST_F(MenuItems, AnItemIsMadeAnotherByItsCommand) {
  EXPECT_TRUE(menus.ModifyMenuW(menu.get(), 920, MF_BYCOMMAND, 950, u"New"));
  EXPECT_EQ(Text(inner, 0, true), u"New");
}

TEST_F(MenuItems, ATextMayGetLonger) {
  const std::u16string longText(300, u'x');
  EXPECT_TRUE(menus.ModifyMenuW(menu.get(), 0, MF_BYPOSITION, 910, longText.c_str()));
  EXPECT_EQ(Text(menu.get(), 910), longText);
}

TEST_F(MenuItems, ATextIsCopied) {
  std::u16string text = u"Studio 7200";
  menus.ModifyMenuW(menu.get(), 0, MF_BYPOSITION, 910, text.c_str());
  text[0] = u'?';
  EXPECT_EQ(Text(menu.get(), 910), u"Studio 7200");
}

TEST_F(MenuItems, AnItemThatIsMadeAnotherHasTheStateOfANewOne) {
  EXPECT_TRUE(menus.ModifyMenuW(outer, 1, MF_BYPOSITION, 912, u"No longer checked"));
  EXPECT_EQ(Info(outer, 912, MIIM_STATE)->state, MFS_ENABLED);
  EXPECT_TRUE(menus.ModifyMenuW(outer, 1, MF_BYPOSITION | MF_CHECKED, 912, u"Checked again"));
  EXPECT_EQ(Info(outer, 912, MIIM_STATE)->state, MFS_CHECKED);
}

TEST_F(MenuItems, ASubMenuThatIsMadeAnItemIsGone) {
  EXPECT_TRUE(menus.ModifyMenuW(menu.get(), 1, MF_BYPOSITION, 950, u"Item"));
  EXPECT_EQ(Text(menu.get(), 1, true), u"Item");
  // On Wine the item opens it as before.
  EXPECT_TRUE(HoldsExcept(OnWine(), menus.GetSubMenu(menu.get(), 1) == kNone));
  EXPECT_TRUE(HoldsExcept(OnWine(), !Info(outer, 911, MIIM_STATE)));
  EXPECT_TRUE(HoldsExcept(OnWine(), !Info(inner, 920, MIIM_STATE)));
}

TEST_F(MenuItems, WhatIsNotThereIsNotMadeAnother) {
  EXPECT_FALSE(menus.ModifyMenuW(menu.get(), 4, MF_BYPOSITION, 950, u"New"));
  EXPECT_FALSE(menus.ModifyMenuW(menu.get(), 999, MF_BYCOMMAND, 950, u"New"));
  EXPECT_FALSE(Info(menu.get(), 950, MIIM_STATE));
}

// --- Adding items

TEST_F(MenuItems, AnItemIsAddedAtTheEnd) {
  EXPECT_TRUE(menus.AppendMenuW(inner, MF_STRING, 950, u"New"));
  EXPECT_EQ(Text(inner, 2, true), u"New");
  EXPECT_EQ(Text(menu.get(), 950), u"New");
  EXPECT_EQ(menus.GetSubMenu(inner, 2), kNone);
}

TEST_F(MenuItems, ASeparatorIsAdded) {
  EXPECT_TRUE(menus.AppendMenuW(inner, MF_SEPARATOR, 0, nullptr));
  EXPECT_EQ(Info(inner, 2, MIIM_FTYPE, true)->type, MFT_SEPARATOR);
  EXPECT_EQ(Info(inner, 2, MIIM_STATE, true)->state, MFS_GRAYED);
}

TEST_F(MenuItems, AnItemWithoutTextIsASeparator) {
  EXPECT_TRUE(menus.AppendMenuW(inner, MF_STRING, 950, nullptr));
  EXPECT_EQ(Info(inner, 2, MIIM_FTYPE, true)->type, MFT_SEPARATOR);
}

TEST_F(MenuItems, WhatItsOwnerDrawsKeepsItsData) {
  char16_t name[260] = u"Ink order";
  EXPECT_TRUE(menus.AppendMenuW(inner, MF_OWNERDRAW, 950, name));
  name[0] = u'?';
  const auto info = Info(menu.get(), 950, MIIM_FTYPE | MIIM_DATA | MIIM_STRING);
  ASSERT_TRUE(info);
  EXPECT_EQ(info->type, MFT_OWNERDRAW);
  EXPECT_EQ(info->itemData, reinterpret_cast<std::uintptr_t>(name));
  EXPECT_EQ(info->cch, 0u);
}

// --- Asking

TEST_F(MenuItems, StateAndTypeAreTold) {
  const auto info = Info(outer, 912, MIIM_STATE | MIIM_TYPE);
  ASSERT_TRUE(info);
  EXPECT_EQ(info->state, MFS_CHECKED);
  EXPECT_EQ(info->type, MFT_STRING);
}

TEST_F(MenuItems, WhatTheMaskDoesNotNameIsLeftAlone) {
  // Wine clears the sub-menu whenever something is asked.
  MenuItemInfo info{.mask = MIIM_FTYPE, .type = 1, .state = 2, .id = 3, .itemData = 5, .cch = 6};
  EXPECT_TRUE(menus.GetMenuItemInfoW(menu.get(), 910, false, &info));
  EXPECT_EQ(info.type, MFT_STRING);
  EXPECT_EQ(info.state, 2u);
  EXPECT_EQ(info.id, 3u);
  EXPECT_EQ(info.itemData, 5u);
  EXPECT_EQ(info.cch, 6u);
}

TEST_F(MenuItems, ATextWithoutABufferTellsItsLength) {
  MenuItemInfo info{.mask = MIIM_STRING, .cch = 1};
  EXPECT_TRUE(menus.GetMenuItemInfoW(menu.get(), 910, false, &info));
  EXPECT_EQ(info.cch, 6u);  // On top
  EXPECT_EQ(Info(menu.get(), 910, MIIM_TYPE)->cch, 6u);
}

TEST_F(MenuItems, ATextFillsItsBufferAndIsCutToIt) {
  struct Room {
    std::uint32_t chars;
    const char16_t* text;
  };
  for (const Room& room :
       {Room{8, u"On top"}, Room{7, u"On top"}, Room{6, u"On to"}, Room{1, u""}}) {
    char16_t text[] = u"??????????";
    MenuItemInfo info{.mask = MIIM_STRING, .typeData = text, .cch = room.chars};
    EXPECT_TRUE(menus.GetMenuItemInfoW(menu.get(), 910, false, &info));
    EXPECT_EQ(std::u16string(text), room.text) << room.chars;
    EXPECT_EQ(info.cch, std::u16string(room.text).size()) << room.chars;
    EXPECT_EQ(text[room.chars], u'?') << room.chars;
  }
}

TEST_F(MenuItems, TheOlderAndTheNewerMaskDoNotGoTogether) {
  for (const std::uint32_t mask : {MIIM_TYPE | MIIM_STRING, MIIM_TYPE | MIIM_FTYPE}) {
    os.process.SetLastError(7777);
    EXPECT_FALSE(Info(menu.get(), 910, mask));
    EXPECT_EQ(LastError(), ERROR_INVALID_PARAMETER);
    const MenuItemInfo info{.mask = mask};
    EXPECT_FALSE(menus.SetMenuItemInfoW(menu.get(), 910, false, &info));
  }
  EXPECT_EQ(Text(menu.get(), 910), u"On top");
}

TEST_F(MenuItems, TheSubMenuIsTold) {
  EXPECT_EQ(Info(menu.get(), 1, MIIM_SUBMENU, true)->subMenu, outer);
  EXPECT_EQ(Info(menu.get(), 0, MIIM_SUBMENU, true)->subMenu, kNone);
}

// --- Setting

TEST_F(MenuItems, AnItemIsMadeTheDefaultWithAText) {
  char16_t title[] = u"Studio 7200";
  // Whatever stands in cch.
  MenuItemInfo info{.mask = MIIM_STATE | MIIM_TYPE,
                    .type = MFT_RIGHTORDER | MFT_RIGHTJUSTIFY,
                    .state = MFS_DEFAULT,
                    .typeData = title,
                    .cch = 22};
  EXPECT_TRUE(menus.SetMenuItemInfoW(menu.get(), 920, false, &info));
  const auto set = Info(inner, 920, MIIM_STATE | MIIM_TYPE | MIIM_ID);
  ASSERT_TRUE(set);
  EXPECT_EQ(set->state, MFS_DEFAULT);
  EXPECT_EQ(set->type, MFT_RIGHTORDER | MFT_RIGHTJUSTIFY);
  EXPECT_EQ(Text(inner, 920), u"Studio 7200");
}

TEST_F(MenuItems, TheTypeAloneIsSet) {
  const MenuItemInfo info{.mask = MIIM_FTYPE, .type = MFT_RIGHTORDER | MFT_RIGHTJUSTIFY};
  EXPECT_TRUE(menus.SetMenuItemInfoW(menu.get(), 912, false, &info));
  EXPECT_EQ(Info(menu.get(), 912, MIIM_FTYPE)->type, MFT_RIGHTORDER | MFT_RIGHTJUSTIFY);
  EXPECT_EQ(Text(menu.get(), 912), u"Checked");
  EXPECT_EQ(Info(menu.get(), 912, MIIM_STATE)->state, MFS_CHECKED);
}

TEST_F(MenuItems, TheTextAloneIsSet) {
  char16_t title[] = u"Studio 7200";
  const MenuItemInfo info{.mask = MIIM_STRING, .typeData = title};
  EXPECT_TRUE(menus.SetMenuItemInfoW(menu.get(), 912, false, &info));
  EXPECT_EQ(Text(menu.get(), 912), u"Studio 7200");
  EXPECT_EQ(Info(menu.get(), 912, MIIM_STATE)->state, MFS_CHECKED);
}

TEST_F(MenuItems, IdAndDataAreSet) {
  const MenuItemInfo info{.mask = MIIM_ID | MIIM_DATA, .id = 950, .itemData = 0x123456789A};
  EXPECT_TRUE(menus.SetMenuItemInfoW(menu.get(), 912, false, &info));
  EXPECT_EQ(Info(menu.get(), 950, MIIM_DATA)->itemData, 0x123456789Au);
  EXPECT_EQ(Text(menu.get(), 950), u"Checked");
}

// --- Destroying

TEST_F(MenuItems, SubMenusGoWithTheirMenu) {
  menu.Reset();
  for (const HMENU gone : {outer, inner}) {
    EXPECT_EQ(menus.GetSubMenu(gone, 3), kNone);
    EXPECT_FALSE(Info(gone, 0, MIIM_STATE, true));
    EXPECT_FALSE(menus.DestroyMenu(gone));
  }
}

TEST_F(MenuItems, TwoLoadsAreTwoMenus) {
  OwnedMenu other = LoadTestMenu(802);
  EXPECT_NE(other.get(), menu.get());
  menus.ModifyMenuW(other.get(), 0, MF_BYPOSITION, 910, u"Other");
  EXPECT_EQ(Text(menu.get(), 910), u"On top");
  other.Reset();
  EXPECT_EQ(Text(menu.get(), 910), u"On top");
}

}  // namespace
}  // namespace platform
