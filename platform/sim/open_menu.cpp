#include "platform/sim/open_menu.h"

#include <algorithm>

#include "platform/sim/machine.h"
#include "platform/sim/menu_calls.h"

namespace sim {

using namespace platform;

std::vector<OpenMenu*> OpenMenus::List() const {
  std::vector<OpenMenu*> open;
  for (const auto& menu : m_menus)
    if (!menu->closed) open.push_back(menu.get());
  return open;
}

std::vector<MenuItem> OpenMenus::ItemsOf(const OpenMenu& open) const {
  const MenuPlace place = FindMenu(*open.thread->process(), open.menu);
  return place ? place.items() : std::vector<MenuItem>{};
}

bool OpenMenus::Choose(OpenMenu& open, std::uint32_t id) {
  const MenuPlace place = FindMenu(*open.thread->process(), open.menu);
  const MenuItem* item = place ? place.FindItem(id) : nullptr;
  if (item == nullptr || !item->CanBeChosen()) return false;
  open.chosen = id;
  Dismiss(open);
  return true;
}

void OpenMenus::PointAt(OpenMenu& open, std::uint32_t id) {
  open.pointedAt = id;
  m_machine.scheduler().Wake(*open.thread);
}

void OpenMenus::Dismiss(OpenMenu& open) {
  open.closed = true;
  m_machine.scheduler().Wake(*open.thread);
}

std::shared_ptr<OpenMenu> OpenMenus::Add(OpenMenu menu) {
  m_menus.push_back(std::make_shared<OpenMenu>(menu));
  return m_menus.back();
}

void OpenMenus::Remove(const OpenMenu& menu) {
  std::erase_if(m_menus, [&](const auto& open) { return open.get() == &menu; });
}

void OpenMenus::DropThread(const Thread& thread) {
  std::erase_if(m_menus, [&](const auto& open) { return open->thread == &thread; });
}

bool OpenMenus::IsShownBy(const Thread& thread) const {
  return std::ranges::any_of(m_menus, [&](const auto& open) { return open->thread == &thread; });
}

void OpenMenus::Cancel(const Thread& thread) {
  for (OpenMenu* open : List())
    if (open->thread == &thread) Dismiss(*open);
}

}  // namespace sim
