#include "platform/sim/menu_calls.h"

#include "platform/sim/machine.h"
#include "platform/sim/menu_drawing.h"
#include "platform/sim/text.h"
#include "platform/sim/windowing_calls.h"

namespace sim {

using namespace platform;

namespace {

constexpr unsigned kListShift = 32;

HMENU HandleOf(HMENU whole, std::size_t list) {
  const std::uint64_t handle = static_cast<std::uint64_t>(whole) & 0xFFFFFFFF;
  return HMENU{handle | static_cast<std::uint64_t>(list) << kListShift};
}

MenuPlace FindMenuOrFail(const Call& call, HMENU menu) {
  MenuPlace place = FindMenu(call.process(), menu);
  if (!place) call.SetLastError(ERROR_INVALID_MENU_HANDLE);
  return place;
}

// Null, with the error set, when there is none.
MenuItem* FindItemOrFail(const Call& call, const MenuPlace& place, std::uint32_t item,
                         bool byPosition) {
  if (!place) return nullptr;
  MenuItem* found = nullptr;
  if (!byPosition) {
    found = place.FindItem(item);
  } else if (item < place.items().size()) {
    found = &place.items()[item];
  }
  if (found == nullptr) call.SetLastError(ERROR_MENU_ITEM_NOT_FOUND);
  return found;
}

MenuItem NewItem(std::uint32_t flags, std::uint64_t id, const char16_t* text) {
  MenuItem item;
  item.id = static_cast<std::uint32_t>(id);
  item.type = TypeOfFlags(flags);
  item.state = StateOfFlags(flags);
  if ((flags & MF_OWNERDRAW) != 0) {
    item.itemData = reinterpret_cast<std::uintptr_t>(text);
  } else if (text == nullptr || item.IsSeparator()) {
    item.MakeSeparator();
  } else {
    item.text = text;
  }
  return item;
}

// MIIM_TYPE is the older word for the other two together.
bool ContradictsItself(std::uint32_t mask) {
  return (mask & MIIM_TYPE) != 0 && (mask & (MIIM_STRING | MIIM_FTYPE)) != 0;
}

void TellText(const MenuItem& item, MenuItemInfo* info) {
  const bool hasRoom = info->typeData != nullptr && info->cch != 0;
  info->cch = hasRoom ? CopyCut(item.text, info->typeData, info->cch)
                      : static_cast<std::uint32_t>(item.text.size());
}

// How a line of the menu looks, for the trace.
std::u16string Shown(const MenuItem& item) {
  if (item.IsSeparator()) return u"----";
  if ((item.type & MFT_OWNERDRAW) != 0) return u"#" + Decimal(item.id);
  return item.popup == 0 ? item.text : item.text + u" >";
}

std::u16string Shown(const std::vector<MenuItem>& items) {
  std::u16string line;
  for (const MenuItem& item : items) {
    if (!line.empty()) line += u" | ";
    line += Shown(item);
  }
  return line;
}

}  // namespace

void LoadedMenu::Destroy(std::size_t first) {
  std::vector<std::size_t> doomed{first};
  while (!doomed.empty()) {
    const std::size_t list = doomed.back();
    doomed.pop_back();
    if (!m_lists[list]) continue;
    for (const MenuItem& item : *m_lists[list])
      if (item.popup != 0) doomed.push_back(item.popup);
    m_lists[list].reset();
  }
}

MenuPlace FindMenu(const Process& process, HMENU menu) {
  const auto handle = static_cast<std::uint64_t>(menu);
  std::shared_ptr<LoadedMenu> whole = process.FindHandle<LoadedMenu>(handle & 0xFFFFFFFF);
  const auto list = static_cast<std::size_t>(handle >> kListShift);
  if (whole == nullptr || list >= whole->lists().size() || !whole->lists()[list]) return {};
  return {std::move(whole), list};
}

MenuItem* MenuPlace::FindItem(std::uint32_t id) const {
  struct Position {
    std::size_t list;
    std::size_t item;
  };
  MenuItem* opener = nullptr;  // one with that id that opens a menu counts when no other has it
  std::vector<Position> path{{list, 0}};
  while (!path.empty()) {
    auto& [here, next] = path.back();
    std::optional<std::vector<MenuItem>>& searched = menu->lists()[here];
    if (!searched || next == searched->size()) {
      path.pop_back();
      continue;
    }
    MenuItem& item = (*searched)[next++];
    if (item.id == id && item.popup == 0) return &item;
    if (item.popup == 0) continue;
    if (item.id == id && opener == nullptr) opener = &item;
    path.push_back({item.popup, 0});
  }
  return opener;
}

HMENU MenuCalls::GetSubMenu(HMENU menu, std::int32_t position) {
  Call call("GetSubMenu");
  if (call.Failure(ERROR_INVALID_MENU_HANDLE)) return HMENU{};
  const MenuPlace place = FindMenuOrFail(call, menu);
  if (!place || position < 0) return HMENU{};
  const auto index = static_cast<std::size_t>(position);
  if (index >= place.items().size() || place.items()[index].popup == 0) return HMENU{};
  return HandleOf(menu, place.items()[index].popup);
}

bool MenuCalls::ModifyMenuW(HMENU menu, std::uint32_t item, std::uint32_t flags,
                            std::uint64_t newId, const char16_t* text) {
  Call call("ModifyMenuW");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return false;
  const MenuPlace place = FindMenuOrFail(call, menu);
  MenuItem* changed = FindItemOrFail(call, place, item, (flags & MF_BYPOSITION) != 0);
  if (changed == nullptr) return false;
  if (changed->popup != 0) place.menu->Destroy(changed->popup);
  *changed = NewItem(flags, newId, text);
  return true;
}

bool MenuCalls::AppendMenuW(HMENU menu, std::uint32_t flags, std::uint64_t id,
                            const char16_t* text) {
  Call call("AppendMenuW");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return false;
  const MenuPlace place = FindMenuOrFail(call, menu);
  if (!place) return false;
  place.items().push_back(NewItem(flags, id, text));
  return true;
}

bool MenuCalls::GetMenuItemInfoW(HMENU menu, std::uint32_t item, bool byPosition,
                                 MenuItemInfo* info) {
  Call call("GetMenuItemInfoW");
  if (call.Failure(ERROR_INVALID_MENU_HANDLE)) return false;
  const MenuPlace place = FindMenuOrFail(call, menu);
  const MenuItem* found = FindItemOrFail(call, place, item, byPosition);
  if (found == nullptr) return false;
  if (ContradictsItself(info->mask)) {
    call.SetLastError(ERROR_INVALID_PARAMETER);
    return false;
  }
  if ((info->mask & (MIIM_TYPE | MIIM_FTYPE)) != 0) info->type = found->type;
  if ((info->mask & (MIIM_TYPE | MIIM_STRING)) != 0) TellText(*found, info);
  if ((info->mask & MIIM_STATE) != 0) info->state = found->state;
  if ((info->mask & MIIM_ID) != 0) info->id = found->id;
  if ((info->mask & MIIM_DATA) != 0) info->itemData = found->itemData;
  if ((info->mask & MIIM_SUBMENU) != 0) {
    info->subMenu = found->popup == 0 ? HMENU{} : HandleOf(menu, found->popup);
  }
  return true;
}

bool MenuCalls::SetMenuItemInfoW(HMENU menu, std::uint32_t item, bool byPosition,
                                 const MenuItemInfo* info) {
  Call call("SetMenuItemInfoW");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return false;
  const MenuPlace place = FindMenuOrFail(call, menu);
  MenuItem* changed = FindItemOrFail(call, place, item, byPosition);
  if (changed == nullptr) return false;
  if (ContradictsItself(info->mask)) {
    call.SetLastError(ERROR_INVALID_PARAMETER);
    return false;
  }
  if ((info->mask & (MIIM_TYPE | MIIM_FTYPE)) != 0) changed->type = info->type & kMenuItemTypes;
  if ((info->mask & (MIIM_TYPE | MIIM_STRING)) != 0) changed->text = View(info->typeData);
  if ((info->mask & MIIM_STATE) != 0) changed->state = info->state & kMenuItemStates;
  if ((info->mask & MIIM_ID) != 0) changed->id = info->id;
  if ((info->mask & MIIM_DATA) != 0) changed->itemData = info->itemData;
  return true;
}

bool MenuCalls::DestroyMenu(HMENU menu) {
  Call call("DestroyMenu", Call::kRelease);
  if (call.Inert()) return true;
  if (call.Failure(ERROR_INVALID_MENU_HANDLE)) return false;
  const MenuPlace place = FindMenuOrFail(call, menu);
  if (!place) return false;
  if (place.list == 0) return call.process().CloseHandle(static_cast<std::uint64_t>(menu));
  place.menu->Destroy(place.list);
  return true;
}

bool MenuCalls::DrawMenuBar(HWND window) {
  Call call("DrawMenuBar");
  if (call.Failure(ERROR_INVALID_WINDOW_HANDLE)) return false;
  if (m_machine.desktop().Find(window) != nullptr) return true;
  call.SetLastError(ERROR_INVALID_WINDOW_HANDLE);
  return false;
}

bool MenuCalls::TrackPopupMenu(HMENU menu, std::uint32_t flags, std::int32_t x, std::int32_t y,
                               HWND owner) {
  Call call("TrackPopupMenu");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return false;
  Desktop& desktop = m_machine.desktop();
  const MenuPlace place = FindMenuOrFail(call, menu);
  if (!place) return false;
  const Window* window = desktop.Find(owner);
  if (window == nullptr || window->thread != &call.thread()) {
    call.SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return false;
  }
  if (desktop.menus().IsShownBy(call.thread())) {
    call.SetLastError(ERROR_POPUP_ALREADY_ACTIVE);
    return false;
  }
  m_machine.Trace(u"popup menu: " + Shown(place.items()));
  const std::shared_ptr<OpenMenu> open = desktop.menus().Add(
      {.menu = menu, .owner = owner, .flags = flags, .x = x, .y = y, .thread = &call.thread()});
  MenuDrawing drawing(m_machine, m_windowing, *open);
  drawing.Show(place.items());
  m_windowing.RunModalLoop(call.thread(), [&] {
    drawing.FollowPointer();
    return open->closed || desktop.Find(owner) == nullptr || !FindMenu(call.process(), menu);
  });
  desktop.menus().Remove(*open);
  m_machine.Trace(open->chosen ? u"chose " + Decimal(*open->chosen) : u"menu closed");
  if (open->chosen) desktop.Post(owner, WM_COMMAND, *open->chosen);
  return true;
}

}  // namespace sim
