#include "menu/menu_head.h"

#include <gtest/gtest.h>

#include <string>

#include "desk/resource_library.h"
#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char16_t kHebrew[] = u"\u05D4\u05D2\u05D3\u05E8\u05D5\u05EA";
constexpr char16_t kMark[] = u"\u200E";

// A popup out of a resource library, with an entry at the head and the settings entry.
class MenuHead : public testing::Test {
 protected:
  MenuHead() { Load({{u"Printer", 900, {}}, {u"Settings", 901, {}}}); }

  void Load(const std::vector<desk::MenuEntry>& popup) {
    desk::ResourceLibrary resources;
    resources.menus[801] = {{u"Tray", 0, popup}};
    machine.files().WriteFile(u"C:\\K_EN.DLL", desk::BytesOf(resources));
    menu.Reset();
    library = OwnedModule(Os().modules.LoadLibraryW(u"C:\\K_EN.DLL"));
    menu = OwnedMenu(Os().resources.LoadMenuW(library.get(), kMenuResource));
    library = OwnedModule();
    handle = Os().menus.GetSubMenu(menu.get(), 0);
  }
  void LoadWithSettings(const std::u16string& text) {
    Load({{u"Printer", 900, {}}, {text, 901, {}}});
  }

  struct Item {
    std::u16string text;
    std::uint32_t id = 0;
    std::uint32_t type = 0;
    std::uint32_t state = 0;
    bool operator==(const Item&) const = default;
  };
  Item At(std::uint32_t position) {
    char16_t text[1000] = {};
    MenuItemInfo info;
    info.mask = MIIM_STATE | MIIM_TYPE | MIIM_ID;
    info.typeData = text;
    info.cch = 1000;
    EXPECT_TRUE(Os().menus.GetMenuItemInfoW(handle, position, true, &info));
    return {text, info.id, info.type, info.state};
  }

  sim::Machine machine;
  sim::Inside inside{machine};
  OwnedModule library;
  OwnedMenu menu;
  HMENU handle{};
};

// --- IsRtlOS

TEST_F(MenuHead, ReadsFromRightToLeftWhereTheTextOfTheSettingsEntryHasSuchALetter) {
  const struct {
    std::u16string text;
    std::int32_t expected;
  } cases[] = {
      {u"Monitoring Preferences...", 0},
      {kHebrew, 1},
      {u"\u0625\u0639\u062F\u0627\u062F\u0627\u062A", 1},
      {std::u16string(u"Vigil 3 ") + kHebrew, 1},
      {std::u16string(1000, u'x') + u"\u05D0", 1},
      {u"\u200F", 1},  // the right-to-left mark
      {u"\u200E", 0},
      {u"123 ...", 0},
      {u"\u8A2D\u5B9A", 0},
  };
  for (const auto& each : cases) {
    LoadWithSettings(each.text);
    EXPECT_EQ(IsRtlOS(handle), each.expected);
  }
}

TEST_F(MenuHead, ReadsFromLeftToRightWithoutASettingsEntry) {
  Load({{kHebrew, 900, {}}, {kHebrew, 902, {}}});
  EXPECT_EQ(IsRtlOS(handle), 0);
}

TEST_F(MenuHead, ReadsFromLeftToRightWhereTheSettingsEntryHasNoText) {
  MenuItemInfo info;
  char16_t none[] = u"";
  info.mask = MIIM_STRING;
  info.typeData = none;
  ASSERT_TRUE(Os().menus.SetMenuItemInfoW(handle, IDM_SET_ENV, false, &info));
  EXPECT_EQ(IsRtlOS(handle), 0);
}

TEST_F(MenuHead, WhatIsNoMenuReadsFromLeftToRight) { EXPECT_EQ(IsRtlOS(HMENU{}), 0); }

TEST_F(MenuHead, ReadsFromLeftToRightWhereTheTextCantBeHad) {
  LoadWithSettings(kHebrew);
  for (const std::uint64_t after : {0U, 1U}) {
    inside.process().FailNext("GetMenuItemInfoW", ERROR_INVALID_MENU_HANDLE, after);
    EXPECT_EQ(IsRtlOS(handle), 0);
  }
  inside.process().FailNext("GetStringTypeExW", 87);
  EXPECT_EQ(IsRtlOS(handle), 0);
  EXPECT_EQ(IsRtlOS(handle), 1);
}

// --- SetMenuTitle

TEST_F(MenuHead, TheFirstEntryBecomesTheDefaultOneUnderTheTitle) {
  SetMenuTitle(handle, u"Studio 7200", false);
  EXPECT_EQ(At(0), (Item{u"Studio 7200", 900, 0, MFS_DEFAULT}));
  EXPECT_EQ(At(1), (Item{u"Settings", 901, 0, 0}));
}

TEST_F(MenuHead, TheFirstEntryGetsTheCommandWhateverItWas) {
  Load({{u"Something", 77, {}}, {u"Settings", 901, {}}});
  SetMenuTitle(handle, u"P", false);
  EXPECT_EQ(At(0), (Item{u"P", 900, 0, MFS_DEFAULT}));

  Load({{u"", 0, {}}, {u"Settings", 901, {}}});  // a separator
  SetMenuTitle(handle, u"P", false);
  EXPECT_EQ(At(0), (Item{u"P", 900, 0, MFS_DEFAULT}));
}

TEST_F(MenuHead, AGreyOrCheckedFirstEntryIsNeitherAfterwards) {
  MenuItemInfo info;
  info.mask = MIIM_STATE;
  info.state = MFS_GRAYED | MFS_CHECKED;
  ASSERT_TRUE(Os().menus.SetMenuItemInfoW(handle, 0, true, &info));
  SetMenuTitle(handle, u"P", false);
  EXPECT_EQ(At(0).state, MFS_DEFAULT);
}

TEST_F(MenuHead, FromRightToLeftTheTitleEndsInAMarkAndBothEntriesAreTurnedRound) {
  LoadWithSettings(kHebrew);
  SetMenuTitle(handle, u"Studio 7200", true);
  EXPECT_EQ(At(0), (Item{u"Studio 7200\u200E", 900, 0x6000, MFS_DEFAULT}));
  EXPECT_EQ(At(1), (Item{kHebrew, 901, 0x6000, 0}));
}

TEST_F(MenuHead, TheSettingsEntryKeepsItsOwnTypeAndState) {
  MenuItemInfo info;
  info.mask = MIIM_FTYPE | MIIM_STATE;
  info.type = 0x20;  // begins a column
  info.state = MFS_CHECKED;
  ASSERT_TRUE(Os().menus.SetMenuItemInfoW(handle, IDM_SET_ENV, false, &info));
  SetMenuTitle(handle, u"P", true);
  EXPECT_EQ(At(1), (Item{u"Settings", 901, 0x6020, MFS_CHECKED}));
}

TEST_F(MenuHead, ATitleHas259CharactersTheMarkIncluded) {
  const std::u16string fits(259, u'n');
  SetMenuTitle(handle, fits, false);
  EXPECT_EQ(At(0).text, fits);

  SetMenuTitle(handle, fits.substr(1), true);
  EXPECT_EQ(At(0).text, fits.substr(1) + kMark);
}

TEST_F(MenuHead, ANameThatLeavesNoRoomForTheMarkGoesWithoutIt) {
  SetMenuTitle(handle, std::u16string(259, u'n'), true);
  EXPECT_EQ(At(0), (Item{std::u16string(259, u'n'), 900, 0x6000, MFS_DEFAULT}));
}

TEST_F(MenuHead, WithoutASettingsEntryTheTitleStandsAllTheSame) {
  Load({{u"Printer", 900, {}}});
  SetMenuTitle(handle, u"P", true);
  EXPECT_EQ(At(0), (Item{u"P\u200E", 900, 0x6000, MFS_DEFAULT}));
}

TEST_F(MenuHead, WhatIsNoMenuGetsNoTitle) {
  SetMenuTitle(HMENU{}, u"P", true);
  EXPECT_EQ(At(0).text, u"Printer");
}

TEST_F(MenuHead, WhatCantBeReadOrChangedIsLeftAsItIs) {
  const struct {
    const char* operation;
    std::uint64_t after;
    Item title;
    std::uint32_t typeOfSettings;
  } cases[] = {
      // The second step sets the text as well.
      {"ModifyMenuW", 0, {u"P\u200E", 900, 0x6000, MFS_DEFAULT}, 0x6000},
      {"GetMenuItemInfoW", 0, {u"P\u200E", 900, 0, 0}, 0x6000},
      {"SetMenuItemInfoW", 0, {u"P\u200E", 900, 0, 0}, 0x6000},
      {"GetMenuItemInfoW", 1, {u"P\u200E", 900, 0x6000, MFS_DEFAULT}, 0},
      {"SetMenuItemInfoW", 1, {u"P\u200E", 900, 0x6000, MFS_DEFAULT}, 0},
  };
  for (const auto& each : cases) {
    LoadWithSettings(kHebrew);
    inside.process().FailNext(each.operation, ERROR_NOT_ENOUGH_MEMORY, each.after);
    SetMenuTitle(handle, u"P", true);
    EXPECT_EQ(At(0), each.title) << each.operation << each.after;
    EXPECT_EQ(At(1).type, each.typeOfSettings) << each.operation << each.after;
  }
}

}  // namespace
}  // namespace vgl
