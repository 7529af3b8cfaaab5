#include "platform/sim/notification_area.h"

#include <algorithm>
#include <string_view>

#include "platform/sim/machine.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

namespace {

std::u16string InWords(const TrayIcon& icon) {
  const std::u16string picture = icon.picture.empty() ? u"" : u", " + icon.picture;
  return u"\"" + icon.tip + u"\"" + picture;
}

// A tip without terminator loses its last character to one.
std::u16string TipOf(const NotifyIconData& data) {
  const std::u16string_view room(data.tip, std::size(data.tip) - 1);
  return std::u16string(room.substr(0, room.find(u'\0')));
}

}  // namespace

const TrayIcon* NotificationArea::FindOf(const Process& process) const {
  const auto found = std::find_if(m_icons.begin(), m_icons.end(),
                                  [&](const TrayIcon& icon) { return icon.process == &process; });
  return found == m_icons.end() ? nullptr : &*found;
}

void NotificationArea::Tell(const TrayIcon& icon, std::uint32_t mouseMessage) {
  if (icon.callbackMessage == 0) return;
  m_machine.desktop().SendWithoutWaiting(icon.window, icon.callbackMessage, icon.id, mouseMessage);
}

void NotificationArea::Click(const TrayIcon& icon) {
  Tell(icon, WM_LBUTTONDOWN);
  Tell(icon, WM_LBUTTONUP);
}

void NotificationArea::DoubleClick(const TrayIcon& icon) {
  Click(icon);
  Tell(icon, WM_LBUTTONDBLCLK);  // in place of the second press
  Tell(icon, WM_LBUTTONUP);
}

void NotificationArea::RightClick(const TrayIcon& icon) {
  Tell(icon, WM_RBUTTONDOWN);
  Tell(icon, WM_RBUTTONUP);
}

bool NotificationArea::Notify(const Process& process, std::uint32_t message,
                              const NotifyIconData& data) {
  if (m_refuses || message > NIM_DELETE) return false;
  const auto found = Find(data);
  const bool isThere = found != m_icons.end();
  if (message == NIM_ADD) {
    if (isThere || m_machine.desktop().Find(data.window) == nullptr) return false;
    TrayIcon icon{.window = data.window, .id = data.id, .process = &process};
    Update(icon, process, data);
    m_machine.Trace(u"icon added: " + InWords(icon));
    m_icons.push_back(std::move(icon));
    return true;
  }
  if (!isThere) return false;
  if (message == NIM_MODIFY) {
    Update(*found, process, data);
    m_machine.Trace(u"icon modified: " + InWords(*found));
  } else {
    m_machine.Trace(u"icon deleted");
    m_icons.erase(found);
  }
  return true;
}

void NotificationArea::DropWindow(HWND window) {
  std::erase_if(m_icons, [&](const TrayIcon& icon) {
    if (icon.window != window) return false;
    ++m_leftBehind[icon.process];
    m_machine.Trace(u"icon gone with its window");
    return true;
  });
}

std::size_t NotificationArea::HeldBy(const Process& process) const {
  const auto standing = std::count_if(m_icons.begin(), m_icons.end(), [&](const TrayIcon& icon) {
    return icon.process == &process;
  });
  const auto left = m_leftBehind.find(&process);
  return static_cast<std::size_t>(standing) + (left == m_leftBehind.end() ? 0 : left->second);
}

std::vector<TrayIcon>::iterator NotificationArea::Find(const NotifyIconData& data) {
  return std::find_if(m_icons.begin(), m_icons.end(), [&](const TrayIcon& icon) {
    return icon.window == data.window && icon.id == data.id;
  });
}

void NotificationArea::Update(TrayIcon& icon, const Process& process, const NotifyIconData& data) {
  if ((data.flags & NIF_MESSAGE) != 0) icon.callbackMessage = data.callbackMessage;
  if ((data.flags & NIF_TIP) != 0) icon.tip = TipOf(data);
  if ((data.flags & NIF_ICON) == 0) return;
  icon.icon = data.icon;
  const auto body = process.FindHandle<HandleBody>(static_cast<std::uint64_t>(data.icon));
  icon.picture = body == nullptr ? u"" : body->Describe();
}

}  // namespace sim
