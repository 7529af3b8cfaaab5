#include "platform/sim/desktop.h"

#include <algorithm>

#include "platform/sim/machine.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

namespace {

// What these point to would be gone when a posted one is handled; they can only be sent.
bool CarriesPointers(std::uint32_t message) {
  return message == WM_CREATE || message == WM_NCCREATE || message == WM_DRAWITEM ||
         message == WM_MEASUREITEM;
}

}  // namespace

Window* Desktop::Find(HWND handle) {
  const auto found = m_windows.find(handle);
  return found == m_windows.end() ? nullptr : found->second.get();
}

Window* Desktop::Find(const char16_t* className, const char16_t* title) {
  const std::u16string wantedClass = FoldCase(View(className));
  const std::u16string wantedTitle = FoldCase(View(title));
  for (const auto& [handle, window] : m_windows) {
    if ((window->style & WS_CHILD) != 0) continue;
    if (className != nullptr && FoldCase(window->className) != wantedClass) continue;
    if (title != nullptr && FoldCase(window->title) != wantedTitle) continue;
    return window.get();
  }
  return nullptr;
}

Window* Desktop::FindOf(const Process& process, std::u16string_view className) {
  for (Window* window : WindowsOf(process))
    if (window->className == className) return window;
  return nullptr;
}

std::vector<Window*> Desktop::WindowsOf(const Process& process) {
  std::vector<Window*> found;
  for (const auto& [handle, window] : m_windows)
    if (window->thread->process() == &process) found.push_back(window.get());
  return found;
}

std::vector<HWND> Desktop::TopLevelWindows() const {
  std::vector<HWND> handles;
  for (const auto& [handle, window] : m_windows)
    if ((window->style & WS_CHILD) == 0) handles.push_back(handle);
  return handles;
}

const WindowClassRecord* Desktop::ClassOf(const Process& process, std::u16string_view name) const {
  const auto found = m_classes.find({&process, FoldCase(name)});
  return found == m_classes.end() ? nullptr : &found->second;
}

std::vector<Timer> Desktop::TimersOf(HWND handle) {
  std::vector<Timer> found;
  const Window* window = Find(handle);
  if (window == nullptr) return found;
  for (const Timer& timer : QueueOf(*window->thread).timers)
    if (timer.window == handle) found.push_back(timer);
  return found;
}

std::int32_t Desktop::Post(HWND handle, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
  Window* window = Find(handle);
  if (window == nullptr) return ERROR_INVALID_WINDOW_HANDLE;
  if (CarriesPointers(message)) return ERROR_MESSAGE_SYNC_ONLY;
  QueueOf(*window->thread).posted.push_back({handle, message, wParam, lParam});
  m_machine.scheduler().Wake(*window->thread);
  return ERROR_SUCCESS;
}

void Desktop::SendWithoutWaiting(HWND handle, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
  const Window* window = Find(handle);
  if (window == nullptr) return;
  auto sent = std::make_shared<SentMessage>();
  sent->message = {handle, message, wParam, lParam};
  QueueOf(*window->thread).sent.push_back(std::move(sent));
  m_machine.scheduler().Wake(*window->thread);
}

void Desktop::Settle(SentMessage& sent) {
  sent.answered = true;
  if (sent.sender != nullptr) m_machine.scheduler().Wake(*sent.sender);
}

std::vector<Window*> Desktop::Boxes() {
  std::vector<Window*> boxes;
  for (const auto& [handle, window] : m_windows)
    if (window->className == u"#32770" && !window->answer) boxes.push_back(window.get());
  return boxes;
}

void Desktop::Answer(Window& box, std::int32_t id) {
  box.answer = id;
  m_machine.scheduler().Wake(*box.thread);
}

HWND Desktop::FocusBeside(HWND handle) {
  const Window* window = Find(handle);
  return window == nullptr ? HWND{} : QueueOf(*window->thread).focus;
}

void Desktop::Forget(const Window& window) {
  MessageQueue& queue = QueueOf(*window.thread);
  if (queue.focus == window.handle) queue.focus = HWND{};
  if (m_foreground == window.handle) m_foreground = HWND{};
  m_machine.tray().DropWindow(window.handle);
}

std::u16string Desktop::NameOf(std::uint32_t message) const {
  const auto found = m_messageNames.find(message);
  return found == m_messageNames.end() ? u"message " + Decimal(message) : found->second;
}

std::u16string Desktop::NameOfTimer(std::uint64_t id) const {
  const auto found = m_timerNames.find(id);
  return found == m_timerNames.end() ? Decimal(id) : found->second;
}

void Desktop::DropThread(Thread& thread) {
  // What waited for an answer of this thread gets 0, as from a window that is gone.
  for (const auto& sent : m_queues[&thread].sent) Settle(*sent);
  std::erase_if(m_windows, [&](const auto& entry) {
    if (entry.second->thread != &thread) return false;
    Forget(*entry.second);
    return true;
  });
  m_menus.DropThread(thread);
  m_queues.erase(&thread);
}

void Desktop::DropProcess(Process& process) {
  for (Thread* thread : process.threads()) DropThread(*thread);
  std::erase_if(m_classes, [&](const auto& entry) { return entry.first.first == &process; });
}

}  // namespace sim
