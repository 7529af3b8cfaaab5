#include <array>
#include <string>
#include <vector>

#include "platform/owned.h"
#include "platform/sim/machine.h"
#include "platform/sim/menu.h"
#include "platform/sim/pe_resources.h"
#include "tests/fuzz/targets.h"

namespace vgl::fuzz {

using namespace platform;

namespace {

constexpr char16_t kPath[] = u"C:\\a.dll";

// Numbers that the agent asks for, and small ones, which a fuzzer finds sooner.
std::vector<std::uint16_t> Numbers() {
  std::vector<std::uint16_t> numbers = {700, 801, 802, 920, 1100, 35277, 65535};
  for (std::uint16_t small = 0; small < 20; ++small) numbers.push_back(small);
  return numbers;
}

// Each list but the first opens from one item, which stands in a list before it.
void CheckLists(const sim::MenuLists& lists, std::size_t bytes) {
  std::vector<int> openers(lists.size(), 0);
  std::size_t chars = 0;
  for (std::size_t list = 0; list < lists.size(); ++list) {
    VGL_FUZZ_REQUIRE(lists[list] && !lists[list]->empty());
    for (const sim::MenuItem& item : *lists[list]) {
      VGL_FUZZ_REQUIRE((item.type & ~sim::kMenuItemTypes) == 0);
      VGL_FUZZ_REQUIRE((item.state & ~sim::kMenuItemStates) == 0);
      chars += item.text.size() + 1;
      if (item.popup == 0) continue;
      VGL_FUZZ_REQUIRE(item.popup > list && item.popup < lists.size());
      ++openers[item.popup];
    }
  }
  for (std::size_t list = 1; list < lists.size(); ++list) VGL_FUZZ_REQUIRE(openers[list] == 1);
  VGL_FUZZ_REQUIRE(2 * chars <= bytes);
}

void CheckMenu(HMODULE library, std::uint16_t id) {
  Menus& menus = Os().menus;
  const OwnedMenu menu(Os().resources.LoadMenuW(library, id));
  if (!menu) return;
  MenuItemInfo first{.mask = MIIM_ID | MIIM_SUBMENU | MIIM_STRING};
  VGL_FUZZ_REQUIRE(menus.GetMenuItemInfoW(menu.get(), 0, true, &first));
  VGL_FUZZ_REQUIRE(menus.GetSubMenu(menu.get(), 0) == first.subMenu);
  MenuItemInfo again{.mask = MIIM_ID};
  VGL_FUZZ_REQUIRE(menus.GetMenuItemInfoW(menu.get(), first.id, false, &again));
  VGL_FUZZ_REQUIRE(again.id == first.id);
}

void CheckPicture(const std::optional<sim::Picture>& picture, std::size_t bytes) {
  if (!picture) return;
  VGL_FUZZ_REQUIRE(picture->width != 0 && picture->height != 0 && picture->bitsPerPixel != 0);
  VGL_FUZZ_REQUIRE(!picture->bytes.empty() && picture->bytes.size() <= bytes);
}

}  // namespace

void PeResources(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  if (const auto lists = sim::ReadMenuTemplate(bytes)) CheckLists(*lists, size);

  sim::Machine machine;
  sim::Inside inside(machine);
  machine.files().WriteFile(kPath, bytes);
  OwnedModule library(Os().modules.LoadLibraryW(kPath));
  const auto file = sim::PeFile::Read(bytes);
  VGL_FUZZ_REQUIRE(static_cast<bool>(library) == (file != nullptr));
  if (!library) return;
  for (const std::uint16_t id : Numbers()) {
    std::array<char16_t, 40> text{};
    const std::int32_t length = Os().resources.LoadStringW(library.get(), id, text.data(), 40);
    const std::size_t whole = sim::FindString(*file, id, 0x0409).size();
    VGL_FUZZ_REQUIRE(2 * whole <= size);
    VGL_FUZZ_REQUIRE(length == static_cast<std::int32_t>(whole < 39 ? whole : 39));
    CheckMenu(library.get(), id);
    CheckPicture(sim::FindBitmap(*file, id, 0x0409), size);
    for (const std::uint32_t asked : {16u, 32u})
      CheckPicture(sim::FindIcon(*file, id, asked, asked, 0x0409), size);
    const OwnedIcon icon(Os().resources.LoadImageW(library.get(), id, IMAGE_ICON, 16, 16, 0));
    const OwnedBitmap bitmap(Os().resources.LoadBitmapW(library.get(), id));
  }
  library.Reset();
  VGL_FUZZ_REQUIRE(inside.process().Ledger().empty());
}

}  // namespace vgl::fuzz
