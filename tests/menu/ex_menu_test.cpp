// The entries of the menu's tail, their order, and the separators between them.
#include "menu/ex_menu.h"

#include <numeric>

#include "tests/menu/ex_menu_fixture.h"

namespace vgl {
namespace {

using namespace platform;

class ExMenu : public ExMenuTest {
 protected:
  // The driver's name in place of the default one, and everything that is known of such a driver.
  void RenameDriver(const std::u16string& name) {
    driverName = name;
    identity.driverName = driverName.c_str();
    const std::string narrow = Utf8FromText(name);
    const std::string key = "HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Driver\\" + narrow;
    machine.files().WriteFile(u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\KS7200.DAT",
                              "[Install]\r\nREGPATH=DRV,\"" + key + "\"\r\nREGPATH=MNU,\"" + key +
                                  "\\Menu\"\r\nREGENTER=DRV,\"Profile\",DRIVERDIR+\"\\KS7200.INI\""
                                  "\r\nREGENTER=MNU,\"920\",\"C:\\tool.exe\"\r\n");
    machine.registry().SetString(HKEY_LOCAL_MACHINE,
                                 u"Software\\KAVRO\\VGL3\\Driver\\" + name + u"\\Menu", u"920",
                                 u"C:\\tool.exe");
  }

  std::u16string driverName;
};

INSTANTIATE_TEST_SUITE_P(, ExMenu, testing::Values(ValuesAre::Described, ValuesAre::InRegistry),
                         NameOfPlace);

// --- Entries

TEST_P(ExMenu, WithoutAnyValueIsTheOneSeparator) {
  EXPECT_EQ(Built(), Ids{kLine});
  for (const ExMenuItem& slot : slots) EXPECT_EQ(slot.nID, 0U);
}

TEST_P(ExMenu, HasItsEntriesInTheOrderOfTheirIds) {
  Describe({998, 920, 950, 949, 921});
  EXPECT_EQ(Built(), (Ids{kLine, 920, 921, 949, 950, 998}));
}

TEST_P(ExMenu, HasNoEntryOfAnIdBeyondTheSlots) {
  library.strings[919] = u"Before";
  library.strings[999] = u"Behind";
  Describe({919, 920, 999});
  EXPECT_EQ(Built(), (Ids{kLine, 920}));
}

TEST_P(ExMenu, AnEntryIsDrawnByItsOwnerAndItsDataIsTheLabelInItsSlot) {
  Describe({925});
  EXPECT_EQ(Built(), (Ids{kLine, 925}));
  const MenuItemInfo item = ItemAt(3);
  EXPECT_EQ(item.type, MFT_OWNERDRAW);
  EXPECT_EQ(item.state, MFS_ENABLED);
  EXPECT_EQ(item.itemData, reinterpret_cast<std::uintptr_t>(slots[5].szMenuName.c_str()));
  EXPECT_EQ(slots[5].szMenuName.view(), u"Entry 925");
  EXPECT_EQ(slots[5].nID, 925U);
  Bitmap picture;
  ASSERT_TRUE(Os().drawing.GetObjectW(slots[5].hBitmap, &picture));
  EXPECT_EQ(picture.width, 16);
}

TEST_P(ExMenu, ASlotWithAnEmptyValueIsLeftOut) {
  Describe({920, 922});
  SetMenu("921", "");
  EXPECT_EQ(Built(), (Ids{kLine, 920, 922}));
}

TEST_P(ExMenu, AValueOfBlanksIsAValue) {
  SetMenu("920", "   ");
  EXPECT_EQ(Built(), (Ids{kLine, 920}));
}

TEST_P(ExMenu, ASlotWithoutALabelIsLeftOutAndNotCounted) {
  library.strings.erase(921);
  library.strings[922] = u"";
  Describe({920, 921, 922, 923, 924});
  SetMenu("Separators", "2,3");
  EXPECT_EQ(Built(), (Ids{kLine, 920, kLine, 923, kLine, 924}));
  EXPECT_EQ(SlotOf(921).nID, 0U);
  EXPECT_EQ(SlotOf(921).hBitmap, HBITMAP{});
}

TEST_P(ExMenu, ALabelHas259CharactersAtMost) {
  library.strings[920] = std::u16string(259, u'a');
  library.strings[921] = std::u16string(260, u'b');
  library.strings[922] = std::u16string(5000, u'c');
  Describe({920, 921, 922});
  EXPECT_EQ(Built(), (Ids{kLine, 920, 921, 922}));
  EXPECT_EQ(SlotOf(920).szMenuName.view(), std::u16string(259, u'a'));
  EXPECT_EQ(SlotOf(921).szMenuName.view(), std::u16string(259, u'b'));
  EXPECT_EQ(SlotOf(922).szMenuName.view(), std::u16string(259, u'c'));
}

TEST_P(ExMenu, AnEntryWithoutAPictureIsThereAllTheSame) {
  library.bitmaps.erase(920);
  Describe({920, 921});
  EXPECT_EQ(Built(), (Ids{kLine, 920, 921}));
  EXPECT_EQ(SlotOf(920).hBitmap, HBITMAP{});
  EXPECT_NE(SlotOf(921).hBitmap, HBITMAP{});
}

TEST_P(ExMenu, LabelsAndPicturesComeFromTwoLibrariesWhereTheSetHasTwo) {
  Describe({920});
  desk::ResourceLibrary texts;
  texts.menus[801] = library.menus[801];
  texts.strings[920] = u"Of the texts";
  desk::ResourceLibrary pictures;
  pictures.strings[920] = u"Of the pictures";
  pictures.bitmaps[920] = 0x123456;
  machine.files().WriteFile(u"C:\\T.DLL", desk::BytesOf(texts));
  machine.files().WriteFile(u"C:\\P.DLL", desk::BytesOf(pictures));
  {
    const OwnedModule first(Os().modules.LoadLibraryW(u"C:\\T.DLL"));
    const OwnedModule second(Os().modules.LoadLibraryW(u"C:\\P.DLL"));
    menu = OwnedMenu(Os().resources.LoadMenuW(first.get(), 801));
    popup = Os().menus.GetSubMenu(menu.get(), 0);
    EXPECT_EQ(
        AddExMenu(popup, {.identity = identity, .texts = first.get(), .pictures = second.get()},
                  slots),
        1);
  }
  EXPECT_EQ(SlotOf(920).szMenuName.view(), u"Of the texts");
  EXPECT_NE(SlotOf(920).hBitmap, HBITMAP{});
}

TEST_P(ExMenu, All79SlotsCanBeShown) {
  Ids ids(79);
  std::iota(ids.begin(), ids.end(), 920);
  Describe(ids);
  Ids expected{kLine};
  expected.insert(expected.end(), ids.begin(), ids.end());
  EXPECT_EQ(Built(), expected);
  for (const std::uint32_t id : ids) {
    EXPECT_EQ(SlotOf(id).nID, id);
    EXPECT_NE(SlotOf(id).hBitmap, HBITMAP{});
  }
}

TEST_P(ExMenu, All79SlotsCanHaveASeparatorAbove) {
  std::string list;
  Ids expected{kLine};
  for (std::uint32_t count = 1; count <= 79; ++count) {
    Describe({919 + count});
    list += std::to_string(count) + ",";
    expected.insert(expected.end(), {kLine, 919 + count});
  }
  SetMenu("Separators", list);
  EXPECT_EQ(Built(), expected);
}

TEST_P(ExMenu, BuiltAnewShowsWhatHasChanged) {
  Describe({920, 921});
  EXPECT_EQ(Built(), (Ids{kLine, 920, 921}));
  SetMenu("920", "");
  Describe({922});
  library.strings[921] = u"Another";
  SetMenu("Separators", "1");
  EXPECT_EQ(Built(), (Ids{kLine, kLine, 921, 922}));
  EXPECT_EQ(SlotOf(921).szMenuName.view(), u"Another");
  EXPECT_EQ(SlotOf(920).hBitmap, HBITMAP{});
}

// --- Separators

TEST_P(ExMenu, ASeparatorStandsAboveTheEntryOfThatCount) {
  Describe({920, 921, 925, 930, 931});
  SetMenu("Separators", "2,5");
  EXPECT_EQ(Built(), (Ids{kLine, 920, kLine, 921, 925, 930, kLine, 931}));
}

TEST_P(ExMenu, AHiddenEntryIsntCountedForSeparators) {
  Describe({920, 925, 930, 931});
  SetMenu("921", "tool /UPPILOT");  // without NetPilot
  SetMenu("Separators", "2");
  EXPECT_EQ(Built(), (Ids{kLine, 920, kLine, 925, 930, 931}));
}

TEST_P(ExMenu, ANumberThatNoEntryComesToHoldsBackTheSeparatorsBehindIt) {
  const struct {
    const char* list;
    Ids tail;
  } cases[] = {
      {"5,2", {kLine, 920, 921, 922, 923, kLine, 924}},
      {"0,2", {kLine, 920, 921, 922, 923, 924}},
      {"2,2,4", {kLine, 920, kLine, 921, 922, 923, 924}},
      {"2,9,4", {kLine, 920, kLine, 921, 922, 923, 924}},
      {"-1,2", {kLine, 920, 921, 922, 923, 924}},
      {"x,2", {kLine, 920, 921, 922, 923, 924}},
      {",2", {kLine, 920, 921, 922, 923, 924}},
      {"2147483647,2", {kLine, 920, 921, 922, 923, 924}},
      {"9999999999,2", {kLine, 920, 921, 922, 923, 924}},
      {"6", {kLine, 920, 921, 922, 923, 924}},
  };
  Describe({920, 921, 922, 923, 924});
  for (const auto& each : cases) {
    SetMenu("Separators", each.list);
    EXPECT_EQ(Built(), each.tail) << each.list;
  }
}

TEST_P(ExMenu, ASeparatorAboveTheFirstEntryStandsBelowTheOneOfTheHead) {
  Describe({920, 921});
  SetMenu("Separators", "1");
  EXPECT_EQ(Built(), (Ids{kLine, kLine, 920, 921}));
}

TEST_P(ExMenu, SignsBlanksAndLettersAroundTheNumbersOfSeparatorsDoNoHarm) {
  Describe({920, 921, 922});
  SetMenu("Separators", " +2, 3rd");
  EXPECT_EQ(Built(), (Ids{kLine, 920, kLine, 921, kLine, 922}));
}

TEST_P(ExMenu, AListOfSeparatorsOf259CharactersCounts) {
  Describe({920, 921});
  SetMenu("Separators", std::string(258, '0') + "2");
  EXPECT_EQ(Built(), (Ids{kLine, 920, kLine, 921}));
}

TEST_P(ExMenu, AListOfMoreSeparatorsThanSlotsDoesNoHarm) {
  std::string list = "2";
  for (int comma = 0; comma < 200; ++comma) list += ",3";
  list.resize(259);
  Describe({920, 921, 922, 923});
  SetMenu("Separators", list);
  EXPECT_EQ(Built(), (Ids{kLine, 920, kLine, 921, kLine, 922, 923}));
}

// --- Early stops

// A description tells 260 characters whole; from the registry as many come only where the value has
// no terminator.
TEST_P(ExMenu, AListOfSeparatorsOf260CharactersLeavesTheOneSeparatorOnly) {
  Describe({920, 921});
  const std::string list = std::string(259, '0') + "2";
  SetMenu("Separators", list);
  if (GetParam() == ValuesAre::InRegistry)
    machine.registry().SetBytes(HKEY_LOCAL_MACHINE, kMenuKey, u"Separators", REG_SZ,
                                Utf16LeFromText(TextFromUtf8(list)));
  EXPECT_EQ(Add(), 0);
  EXPECT_EQ(Tail(), Ids{kLine});
}

class ExMenuOfTheRegistry : public ExMenuTest {};

INSTANTIATE_TEST_SUITE_P(, ExMenuOfTheRegistry, testing::Values(ValuesAre::InRegistry),
                         NameOfPlace);

TEST_P(ExMenuOfTheRegistry, AListOfSeparatorsOf260CharactersWithATerminatorIsNoList) {
  Describe({920, 921});
  SetMenu("Separators", std::string(259, '0') + "2");
  EXPECT_EQ(Built(), (Ids{kLine, 920, 921}));
}

// "Software\KAVRO\VGL3\Driver\" and "\Menu" take 32 characters.
TEST_P(ExMenu, AMenuKeyOf259CharactersIsRead) {
  RenameDriver(std::u16string(227, u'd'));
  EXPECT_EQ(Built(), (Ids{kLine, 920}));
}

TEST_P(ExMenu, AMenuKeyOf260CharactersLeavesTheHeadAlone) {
  RenameDriver(std::u16string(228, u'd'));
  EXPECT_EQ(Add(), 0);
  EXPECT_EQ(Tail(), Ids{});
}

TEST_P(ExMenu, WithoutSlotsIsTheOneSeparator) {
  Describe({920});
  ASSERT_EQ(Add(), 1);
  EXPECT_EQ(AddExMenu(popup, {.identity = identity}, {}), 0);
  EXPECT_EQ(Tail(), (Ids{kLine, 920, kLine}));
}

// --- What fails

TEST_P(ExMenu, WhatCantBeLoadedOrAddedIsLeftOutAlone) {
  const struct {
    const char* operation;
    std::uint64_t after;
    Ids tail;
  } cases[] = {
      {"AppendMenuW", 0, {920, 921, kLine, 922}},
      {"AppendMenuW", 1, {kLine, 921, kLine, 922}},
      {"AppendMenuW", 3, {kLine, 920, 921, 922}},
      // Not counted either, so that no third entry comes.
      {"LoadStringW", 1, {kLine, 920, 922}},
      {"LoadBitmapW", 1, {kLine, 920, 921, kLine, 922}},
  };
  Describe({920, 921, 922});
  SetMenu("Separators", "3");
  for (const auto& each : cases) {
    inside.process().FailNext(each.operation, ERROR_NOT_ENOUGH_MEMORY, each.after);
    EXPECT_EQ(Built(), each.tail) << each.operation << each.after;
    EXPECT_EQ(SlotOf(921).hBitmap == HBITMAP{}, each.operation == std::string("LoadBitmapW") ||
                                                    each.operation == std::string("LoadStringW"));
  }
}

// --- Pictures

TEST_P(ExMenu, PicturesAreDeletedOnceHoweverOftenThatIsAskedFor) {
  Describe({920, 921});
  Built();
  const auto deletions = [this] {
    const std::uint64_t before = inside.process().calls();
    DeletePictures(slots);
    return inside.process().calls() - before;
  };
  EXPECT_EQ(deletions(), 2U);
  EXPECT_EQ(deletions(), 0U);
  EXPECT_EQ(SlotOf(920).hBitmap, HBITMAP{});
  // The rest of a slot is as it was.
  EXPECT_EQ(SlotOf(920).nID, 920U);
  EXPECT_EQ(SlotOf(920).szMenuName.view(), u"Entry 920");
}

TEST_P(ExMenu, PicturesAndLabelsStayGoodWithoutTheirLibrary) {
  Describe({920});
  Built();
  EXPECT_EQ(Os().modules.GetModuleHandleW(kLibrary), HMODULE{});
  machine.files().Remove(kLibrary);
  Bitmap picture;
  EXPECT_TRUE(Os().drawing.GetObjectW(SlotOf(920).hBitmap, &picture));
  EXPECT_EQ(SlotOf(920).szMenuName.view(), u"Entry 920");
}

}  // namespace
}  // namespace vgl
