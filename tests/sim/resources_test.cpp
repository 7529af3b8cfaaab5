// Resources of the libraries of the simulated machine: the file that is loaded, the ledger.
#include <string>
#include <vector>

#include "platform/owned.h"
#include "platform/sim/machine.h"
#include "platform/sim/resource_calls.h"
#include "tests/sim/resource_file.h"

namespace sim {
namespace {

using namespace platform;

using Ledger = std::vector<std::u16string>;

constexpr char16_t kPath[] = u"C:\\Drivers\\K_X.DLL";

class SimulatedResources : public testing::Test {
 protected:
  SimulatedResources() { machine.files().WriteFile(kPath, ResourceFile()); }

  OwnedModule Load() { return OwnedModule(Os().modules.LoadLibraryW(kPath)); }
  static std::u16string Text(HMODULE module, std::uint32_t id) {
    char16_t text[100] = {};
    Os().resources.LoadStringW(module, id, text, 100);
    return text;
  }
  Ledger Held() { return inside.process().Ledger(); }
  std::int32_t LastError() { return Os().process.GetLastError(); }

  Machine machine;
  Inside inside{machine};
  Resources& resources = Os().resources;
};

// --- Loading the library

TEST_F(SimulatedResources, AFileThatHoldsResourcesLoadsWithoutBeingScripted) {
  const OwnedModule library = Load();
  ASSERT_TRUE(library);
  EXPECT_EQ(Held(), (Ledger{u"library C:\\Drivers\\K_X.DLL"}));
  EXPECT_EQ(machine.trace().back().text, u"loaded library C:\\Drivers\\K_X.DLL");
  EXPECT_EQ(Text(library.get(), 1100), u"First");
}

TEST_F(SimulatedResources, AScriptedLibraryHasTheResourcesOfItsFile) {
  machine.libraries().Add(kPath);
  const OwnedModule library = Load();
  EXPECT_EQ(Text(library.get(), 1100), u"First");
}

TEST_F(SimulatedResources, AScriptedLibraryMayHaveNone) {
  machine.libraries().Add(u"C:\\Drivers\\PLAIN.DLL");
  const OwnedModule library(Os().modules.LoadLibraryW(u"C:\\Drivers\\PLAIN.DLL"));
  ASSERT_TRUE(library);
  EXPECT_EQ(Text(library.get(), 1100), u"");
  EXPECT_EQ(resources.LoadMenuW(library.get(), 801), HMENU{});
  EXPECT_EQ(LastError(), ERROR_RESOURCE_NAME_NOT_FOUND);
}

TEST_F(SimulatedResources, AnEmptyFileIsNoLibrary) {
  machine.files().WriteFile(kPath, "");
  EXPECT_FALSE(Load());
  EXPECT_EQ(LastError(), ERROR_BAD_EXE_FORMAT);
}

TEST_F(SimulatedResources, WhatCountsIsTheFileAsItWasLoaded) {
  OwnedModule library = Load();
  machine.files().WriteFile(kPath, "something else");
  EXPECT_EQ(Text(library.get(), 1100), u"First");
  library.Reset();
  EXPECT_FALSE(Load());
}

TEST_F(SimulatedResources, TheUsersLanguageCounts) {
  machine.system().userLanguage = 0x0407;
  const OwnedModule library = Load();
  EXPECT_EQ(Text(library.get(), 2016), u"deutsch");
  machine.system().userLanguage = 0x0409;
  EXPECT_EQ(Text(library.get(), 2016), u"English");
}

// --- The ledger

TEST_F(SimulatedResources, WhatIsLoadedStandsInTheLedgerUntilItIsGivenBack) {
  OwnedModule library = Load();
  OwnedMenu menu(resources.LoadMenuW(library.get(), 801));
  OwnedIcon icon(resources.LoadImageW(library.get(), 700, IMAGE_ICON, 16, 16, 0));
  OwnedBitmap bitmap(resources.LoadBitmapW(library.get(), 924));
  library.Reset();
  EXPECT_EQ(Held(),
            (Ledger{u"menu 801 of C:\\Drivers\\K_X.DLL", u"icon 700 of C:\\Drivers\\K_X.DLL",
                    u"bitmap 924 of C:\\Drivers\\K_X.DLL"}));
  menu.Reset();
  icon.Reset();
  bitmap.Reset();
  EXPECT_EQ(Held(), Ledger{});
}

TEST_F(SimulatedResources, AnIconIsNeitherABitmapNorAKernelObject) {
  const OwnedModule library = Load();
  const OwnedIcon icon(resources.LoadImageW(library.get(), 700, IMAGE_ICON, 16, 16, 0));
  const auto number = static_cast<std::uint64_t>(icon.get());
  EXPECT_FALSE(Os().drawing.DeleteObject(HGDIOBJ{number}));
  EXPECT_FALSE(Os().menus.DestroyMenu(HMENU{number}));
  EXPECT_FALSE(Os().objects.CloseHandle(HANDLE{number}));
  EXPECT_EQ(Held().size(), 2u);
}

TEST_F(SimulatedResources, AnIconKnowsItsPictureAndTheSizeAskedFor) {
  const OwnedModule library = Load();
  const OwnedIcon icon(resources.LoadImageW(library.get(), 700, IMAGE_ICON, 20, 24, 0));
  const auto body = inside.process().FindHandle<LoadedIcon>(static_cast<std::uint64_t>(icon.get()));
  ASSERT_NE(body, nullptr);
  EXPECT_EQ(body->width(), 20u);
  EXPECT_EQ(body->height(), 24u);
  EXPECT_EQ(body->picture().width, 16u);
}

TEST_F(SimulatedResources, ACopyOfAPictureIsNotAskedFor) {
  const OwnedModule library = Load();
  const std::uint32_t bitmap = 0;
  const std::uint32_t shared = 0x8000;
  EXPECT_EQ(resources.LoadImageW(library.get(), 924, bitmap, 16, 16, 0), HICON{});
  EXPECT_EQ(resources.LoadImageW(library.get(), 700, IMAGE_ICON, 16, 16, shared), HICON{});
  EXPECT_EQ(resources.LoadImageW(library.get(), 700, IMAGE_ICON, 0, 0, 0), HICON{});
  EXPECT_EQ(LastError(), ERROR_INVALID_PARAMETER);
}

// --- Faults

TEST_F(SimulatedResources, EachCallCanFail) {
  const OwnedModule library = Load();
  for (const char* operation : {"LoadStringW", "LoadMenuW", "LoadImageW", "LoadBitmapW"}) {
    inside.process().FailNext(operation, ERROR_NOT_ENOUGH_MEMORY);
  }
  EXPECT_EQ(Text(library.get(), 1100), u"");
  EXPECT_EQ(resources.LoadMenuW(library.get(), 801), HMENU{});
  EXPECT_EQ(resources.LoadImageW(library.get(), 700, IMAGE_ICON, 16, 16, 0), HICON{});
  EXPECT_EQ(resources.LoadBitmapW(library.get(), 924), HBITMAP{});
  EXPECT_EQ(LastError(), ERROR_NOT_ENOUGH_MEMORY);
}

}  // namespace
}  // namespace sim
