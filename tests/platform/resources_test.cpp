// What is in a library's resource section: texts, menus, icons, bitmaps; and libraries that hold
// nothing else.
#include <initializer_list>

#include "tests/platform/library_fixture.h"

namespace platform {
namespace {

class ModuleResources : public LibraryContract {
 protected:
  // Empty when there is none.
  std::u16string Text(std::uint32_t id) {
    char16_t text[400] = u"untouched";
    const std::int32_t length = resources.LoadStringW(library.get(), id, text, 400);
    if (length == 0) return u"";
    EXPECT_EQ(std::u16string(text).size(), static_cast<std::size_t>(length)) << id;
    return text;
  }
  OwnedIcon Icon(std::uint16_t id, std::int32_t size) {
    return OwnedIcon(resources.LoadImageW(library.get(), id, IMAGE_ICON, size, size, 0));
  }

  Resources& resources = os.resources;
  OwnedModule library = Load(ResourceLibrary());
};

// --- Texts

TEST_F(ModuleResources, ATextIsFoundByItsNumber) {
  EXPECT_EQ(Text(1100), u"First");
  EXPECT_EQ(Text(1101), u"Monitor Driver Updates");
}

TEST_F(ModuleResources, TextsStandOnBothSidesOfATablesEnd) {
  EXPECT_EQ(Text(1103), u"Last of its table");
  EXPECT_EQ(Text(1104), u"First of its table");
}

TEST_F(ModuleResources, ATextsNumberMayBeHigh) {
  EXPECT_EQ(Text(35277), u"High number");
  EXPECT_EQ(Text(65535), u"Highest number");
}

TEST_F(ModuleResources, OfATextsNumberTheLowHalfCounts) {
  EXPECT_EQ(Text(0x10000 + 1100), u"First");
}

TEST_F(ModuleResources, ATextMayBeHebrew) { EXPECT_EQ(Text(1105), u"\u05E9\u05DC\u05D5\u05DD"); }

TEST_F(ModuleResources, ATextMayBeLongerThanAPath) {
  const std::u16string text = Text(1107);
  EXPECT_EQ(text.size(), 300u);
  EXPECT_EQ(text.substr(290), u"0123456789");
}

TEST_F(ModuleResources, WhatIsNoTextHasNoLength) {
  // Between two of a table, empty, in a table that isn't there, the number of a menu.
  for (const std::uint32_t none : {1102u, 1106u, 0u, 5000u, 801u}) {
    char16_t text[10] = u"untouched";
    EXPECT_EQ(resources.LoadStringW(library.get(), none, text, 10), 0) << none;
  }
}

TEST_F(ModuleResources, ATextIsCutToItsRoom) {
  struct Room {
    std::int32_t chars;
    const char16_t* text;
  };
  for (const Room& room : {Room{7, u"First"}, Room{6, u"First"}, Room{5, u"Firs"}, Room{2, u"F"}}) {
    char16_t text[] = u"????????";
    EXPECT_EQ(resources.LoadStringW(library.get(), 1100, text, room.chars),
              static_cast<std::int32_t>(std::u16string(room.text).size()))
        << room.chars;
    EXPECT_EQ(std::u16string(text), room.text) << room.chars;
    EXPECT_EQ(text[room.chars], u'?') << room.chars;
  }
}

TEST_F(ModuleResources, OfSeveralLanguagesTheNeutralOneIsTaken) {
  EXPECT_EQ(Text(2000), u"neutral");
}

TEST_F(ModuleResources, OfSeveralLanguagesTheUsersIsTaken) {
  EXPECT_EQ(Text(2016), u"English");
  EXPECT_EQ(Text(2048), u"English, wherever");
}

TEST_F(ModuleResources, WithoutTheUsersLanguageTheFirstIsTaken) {
  EXPECT_EQ(Text(2032), u"deutsch");
}

// --- Menus

TEST_F(ModuleResources, AMenuIsLoadedAndDestroyed) {
  const HMENU menu = resources.LoadMenuW(library.get(), 801);
  EXPECT_NE(menu, HMENU{});
  EXPECT_TRUE(os.menus.DestroyMenu(menu));
  EXPECT_FALSE(os.menus.DestroyMenu(menu));
}

TEST_F(ModuleResources, WhatIsNoMenuIsNotLoaded) {
  // No such number, that of an icon, of a bitmap, of a table of texts.
  for (const std::uint16_t none : std::initializer_list<std::uint16_t>{0, 800, 700, 920, 69}) {
    os.process.SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(resources.LoadMenuW(library.get(), none), HMENU{}) << none;
    EXPECT_NE(LastError(), ERROR_SUCCESS) << none;
  }
}

// --- Icons

TEST_F(ModuleResources, AnIconIsLoadedInAnySize) {
  for (const std::int32_t size : {16, 32, 48, 20, 8, 200}) {
    OwnedIcon icon = Icon(700, size);
    EXPECT_TRUE(icon) << size;
    EXPECT_TRUE(resources.DestroyIcon(icon.Release())) << size;
  }
}

TEST_F(ModuleResources, AnIconMayHaveFewOrManyColors) {
  EXPECT_TRUE(Icon(701, 16));
  EXPECT_TRUE(Icon(702, 16));
}

TEST_F(ModuleResources, TwoLoadsAreTwoIcons) {
  OwnedIcon first = Icon(700, 16);
  const OwnedIcon second = Icon(700, 16);
  EXPECT_NE(first.get(), second.get());
  EXPECT_TRUE(resources.DestroyIcon(first.Release()));
}

TEST_F(ModuleResources, WhatIsNoIconIsNotLoaded) {
  // No such number, that of a picture of an icon, of a menu, of a bitmap.
  for (const std::uint16_t none : std::initializer_list<std::uint16_t>{0, 703, 1, 801, 920}) {
    os.process.SetLastError(ERROR_SUCCESS);
    EXPECT_FALSE(Icon(none, 16)) << none;
    EXPECT_NE(LastError(), ERROR_SUCCESS) << none;
  }
}

TEST_F(ModuleResources, WhatIsNoIconIsNotDestroyed) {
  OwnedIcon icon = Icon(700, 16);
  const HICON destroyed = icon.get();
  icon.Reset();
  for (const HICON none : {HICON{}, destroyed}) EXPECT_FALSE(resources.DestroyIcon(none));
}

// --- Bitmaps

TEST_F(ModuleResources, ABitmapIsLoadedWhateverItsColors) {
  for (const std::uint16_t id : std::initializer_list<std::uint16_t>{920, 921, 922, 923, 924}) {
    OwnedBitmap bitmap(resources.LoadBitmapW(library.get(), id));
    EXPECT_TRUE(bitmap) << id;
    EXPECT_TRUE(os.drawing.DeleteObject(AsObject(bitmap.Release()))) << id;
  }
}

TEST_F(ModuleResources, WhatIsNoBitmapIsNotLoaded) {
  for (const std::uint16_t none : std::initializer_list<std::uint16_t>{0, 919, 801, 700}) {
    os.process.SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(resources.LoadBitmapW(library.get(), none), HBITMAP{}) << none;
    EXPECT_NE(LastError(), ERROR_SUCCESS) << none;
  }
}

TEST_F(ModuleResources, WhatIsNoBitmapIsNotDeleted) {
  OwnedBitmap bitmap(resources.LoadBitmapW(library.get(), 920));
  const HBITMAP deleted = bitmap.get();
  bitmap.Reset();
  for (const HBITMAP none : {HBITMAP{}, deleted})
    EXPECT_FALSE(os.drawing.DeleteObject(AsObject(none)));
}

// --- The module

TEST_F(ModuleResources, TheProgramHasNoneOfThem) {
  char16_t text[10] = {};
  for (const HMODULE program : {HMODULE{}, modules.GetModuleHandleW(nullptr)}) {
    EXPECT_EQ(resources.LoadStringW(program, 1100, text, 10), 0);
    EXPECT_EQ(resources.LoadMenuW(program, 801), HMENU{});
    EXPECT_EQ(resources.LoadImageW(program, 700, IMAGE_ICON, 16, 16, 0), HICON{});
    EXPECT_EQ(resources.LoadBitmapW(program, 920), HBITMAP{});
  }
}

TEST_F(ModuleResources, AModuleThatWasFreedHasNone) {
  const HMODULE freed = library.get();
  library.Reset();
  char16_t text[10] = {};
  EXPECT_EQ(resources.LoadStringW(freed, 1100, text, 10), 0);
  EXPECT_EQ(resources.LoadMenuW(freed, 801), HMENU{});
  EXPECT_EQ(resources.LoadImageW(freed, 700, IMAGE_ICON, 16, 16, 0), HICON{});
  EXPECT_EQ(resources.LoadBitmapW(freed, 920), HBITMAP{});
}

TEST_F(ModuleResources, AModuleThatWasLoadedTwiceAndFreedOnceHasThemAll) {
  OwnedModule second = Load(ResourceLibrary());
  second.Reset();
  EXPECT_EQ(Text(1100), u"First");
  EXPECT_TRUE(OwnedMenu(resources.LoadMenuW(library.get(), 801)));
}

TEST_F(ModuleResources, WhatWasLoadedStaysWhenItsModuleGoes) {
  const OwnedMenu menu(resources.LoadMenuW(library.get(), 801));
  OwnedIcon icon = Icon(700, 16);
  OwnedBitmap bitmap(resources.LoadBitmapW(library.get(), 920));
  library.Reset();
  char16_t text[10] = {};
  MenuItemInfo info{.mask = MIIM_STRING, .typeData = text, .cch = 10};
  EXPECT_TRUE(os.menus.GetMenuItemInfoW(menu.get(), 900, false, &info));
  EXPECT_EQ(std::u16string(text), u"Name");
  EXPECT_TRUE(resources.DestroyIcon(icon.Release()));
  EXPECT_TRUE(os.drawing.DeleteObject(AsObject(bitmap.Release())));
}

TEST_F(ModuleResources, AModuleMayHaveNoResources) {
  const OwnedModule other = Load(TestLibrary());
  char16_t text[10] = {};
  EXPECT_EQ(resources.LoadStringW(other.get(), 1100, text, 10), 0);
  EXPECT_EQ(resources.LoadMenuW(other.get(), 801), HMENU{});
  EXPECT_EQ(resources.LoadImageW(other.get(), 700, IMAGE_ICON, 16, 16, 0), HICON{});
  EXPECT_EQ(resources.LoadBitmapW(other.get(), 920), HBITMAP{});
}

TEST_F(ModuleResources, ALibraryOfResourcesGivesNoFunctions) {
  EXPECT_EQ(modules.GetProcAddress(library.get(), "Doubled"), nullptr);
  EXPECT_EQ(LastError(), ERROR_PROC_NOT_FOUND);
  EXPECT_EQ(modules.GetProcAddress(library.get(), std::uint16_t{1}), nullptr);
}

TEST_F(ModuleResources, ALibraryOfResourcesIsAModuleLikeAnother) {
  EXPECT_EQ(Load(ResourceLibrary()).get(), library.get());
  EXPECT_EQ(modules.GetModuleHandleW(u"kvres.dll"), library.get());
  char16_t path[MAX_PATH] = {};
  modules.GetModuleFileNameW(library.get(), path, MAX_PATH);
  EXPECT_EQ(os.nls.lstrcmpiW(path, ResourceLibrary().c_str()), 0);
}

// --- The file

class ResourceFiles : public ScratchFolderTest {
 protected:
  std::string Bytes() {
    OwnedFile file(os.files.CreateFileW(ResourceLibrary().c_str(), GENERIC_READ, FILE_SHARE_READ,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL));
    EXPECT_TRUE(file);
    std::string bytes(os.files.GetFileSize(file.get(), nullptr), '\0');
    std::uint32_t read = 0;
    EXPECT_TRUE(os.files.ReadFile(file.get(), bytes.data(),
                                  static_cast<std::uint32_t>(bytes.size()), &read));
    EXPECT_EQ(read, bytes.size());
    return bytes;
  }
  // 0 when it can be loaded.
  std::int32_t ErrorOfLoading(std::string_view bytes) {
    MakeFile(u"library.dll", bytes);
    const OwnedModule library(os.modules.LoadLibraryW(Path(u"library.dll").c_str()));
    return library ? 0 : LastError();
  }
};

TEST_F(ResourceFiles, ACopyLoads) { EXPECT_EQ(ErrorOfLoading(Bytes()), 0); }

TEST_F(ResourceFiles, AFileThatIsCutShortIsNoLibrary) {
  const std::string bytes = Bytes();
  for (const std::size_t size : std::initializer_list<std::size_t>{2, 63, 64, 100, 132, 200, 400}) {
    EXPECT_EQ(ErrorOfLoading(bytes.substr(0, size)), ERROR_BAD_EXE_FORMAT) << size;
  }
  // A part of the last 512 bytes may be missing.
  for (std::size_t size = 512; size <= bytes.size() - 512; size += 256) {
    EXPECT_EQ(ErrorOfLoading(bytes.substr(0, size)), ERROR_BAD_EXE_FORMAT) << size;
  }
}

TEST_F(ResourceFiles, AFileWithMoreBehindItLoads) {
  EXPECT_EQ(ErrorOfLoading(Bytes() + std::string(1000, 'x')), 0);
}

}  // namespace
}  // namespace platform
