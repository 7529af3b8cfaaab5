// The tail of the context menu, built from a driver set that a test describes, in both of the
// places where a set may keep its values.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Common/text_conversion.h"
#include "desk/default_machine.h"
#include "desk/resource_library.h"
#include "menu/ex_menu.h"
#include "platform/owned.h"
#include "platform/sim/machine.h"
#include "tests/support/sim_desk.h"

namespace vgl {

enum class ValuesAre { Described, InRegistry };

// At first the set has no value of its own; its library has the head, and for each slot the label
// "Entry <id>" and a picture of 16 by 16 pixels.
class ExMenuTest : public testing::TestWithParam<ValuesAre> {
 protected:
  // Ids of entries in their order; this stands for a separator.
  using Ids = std::vector<std::uint32_t>;
  static constexpr std::uint32_t kLine = 0;
  static constexpr char16_t kLibrary[] = u"C:\\K_EN.DLL";
  static constexpr char16_t kDriverKey[] = u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200";
  static constexpr char16_t kMenuKey[] = u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200\\Menu";

  ExMenuTest() : library(desk::PlainResourceLibrary()) {
    desk::SetUpDefaultMachine(machine);
    if (GetParam() == ValuesAre::InRegistry) AddToProfile(machine, "RegistryBaseVGL=1");
    for (std::uint16_t id = 920; id <= 998; ++id) {
      library.strings[id] = u"Entry " + TextFromUtf8(std::to_string(id));
      library.bitmaps[id] = id;
    }
  }
  void TearDown() override {
    DeletePictures(slots);
    menu.Reset();
    EXPECT_EQ(inside.process().Ledger(), std::vector<std::u16string>{});
  }

  // A value of the driver's menu key, and one of its own key.
  void SetMenu(std::string_view name, std::string_view value) {
    if (GetParam() == ValuesAre::Described) return SetMenuValue(machine, name, value);
    SetInRegistry(kMenuKey, name, value);
  }
  void SetDriver(std::string_view name, std::string_view value) {
    if (GetParam() == ValuesAre::Described) return SetDriverValue(machine, name, value);
    SetInRegistry(kDriverKey, name, value);
  }
  void SetInRegistry(const char16_t* key, std::string_view name, std::string_view value) {
    machine.registry().SetString(platform::HKEY_LOCAL_MACHINE, key, TextFromUtf8(name),
                                 TextFromUtf8(value));
  }
  // Plain entries.
  void Describe(const Ids& ids) {
    for (const std::uint32_t id : ids) SetMenu(std::to_string(id), "C:\\tool.exe");
  }

  // Loads the library, puts the tail behind the head of a new menu, and frees the library. The
  // result of AddExMenu.
  std::int32_t Add() {
    using platform::Os;
    DeletePictures(slots);
    machine.files().WriteFile(kLibrary, desk::BytesOf(library));
    const platform::OwnedModule module(Os().modules.LoadLibraryW(kLibrary));
    menu = platform::OwnedMenu(Os().resources.LoadMenuW(module.get(), 801));
    popup = Os().menus.GetSubMenu(menu.get(), 0);
    return AddExMenu(popup,
                     {.identity = identity,
                      .netPilot = netPilot,
                      .texts = module.get(),
                      .pictures = module.get()},
                     slots);
  }
  // The tail of a new menu.
  Ids Built() {
    EXPECT_EQ(Add(), 1);
    return Tail();
  }
  // What follows the two entries of the head.
  Ids Tail() const {
    Ids ids;
    for (std::uint32_t position = 2;; ++position) {
      const platform::MenuItemInfo item = ItemAt(position);
      if (item.mask == 0) return ids;
      ids.push_back((item.type & platform::MFT_SEPARATOR) != 0 ? kLine : item.id);
    }
  }
  // With an empty mask where there is none.
  platform::MenuItemInfo ItemAt(std::uint32_t position) const {
    using namespace platform;
    MenuItemInfo info;
    info.mask = MIIM_FTYPE | MIIM_STATE | MIIM_ID | MIIM_DATA;
    if (!Os().menus.GetMenuItemInfoW(popup, position, true, &info)) info.mask = 0;
    return info;
  }
  ExMenuItem& SlotOf(std::uint32_t id) { return slots[id - kFirstExMenuId]; }

  void OfferInkOrder() {
    machine.registry().MakeKey(platform::HKEY_LOCAL_MACHINE,
                               u"Software\\KAVRO\\KAVRO Studio 7200 IO_URL");
  }
  // Values of the printer's own data.
  void SetUpdateLock(std::uint8_t value) {
    SetPrinterData(u"KV_DISABLE_UPDATE", platform::REG_DWORD,
                   {static_cast<char>(value), '\0', '\0', '\0'});
  }
  void SetDisableRecord(std::string_view bytes) {
    SetPrinterData(u"KV_DISABLE_VGLFUNC", platform::REG_BINARY, std::string(bytes));
  }
  void SetPrinterData(std::u16string_view name, std::uint32_t type, const std::string& bytes) {
    machine.spooler().SetData(desk::kPrinterName, u"PrinterDriverData", name, type, bytes);
  }

  sim::Machine machine;
  sim::Inside inside{machine};
  desk::ResourceLibrary library;
  PrinterIdentity identity{.printerName = desk::kPrinterName,
                           .driverName = desk::kDriverName,
                           .modelId = desk::kModelId,
                           .portName = desk::kPortName};
  std::u16string netPilot;
  ExMenuItem slots[kExMenuSlots];
  platform::OwnedMenu menu;
  platform::HMENU popup{};
};

inline std::string NameOfPlace(const testing::TestParamInfo<ValuesAre>& place) {
  return place.param == ValuesAre::Described ? "Described" : "InRegistry";
}

}  // namespace vgl
