// Windows, message queues, timers, message boxes, keyboard and mouse of the simulated machine.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/sim/open_menu.h"
#include "platform/windowing.h"

namespace sim {

class Machine;
class Process;
class Thread;

struct WindowClassRecord {
  std::u16string name;
  platform::WNDPROC procedure = nullptr;
  std::uint32_t style = 0;
};

struct Window {
  platform::HWND handle{};
  platform::HWND owner{};  // of a message box; parent of what a test has made a child
  Thread* thread = nullptr;
  std::u16string className;
  std::u16string title;
  std::u16string text;                                 // of a message box
  std::int32_t controlId = 0;                          // of what a test has made a child
  std::map<std::u16string, std::uint64_t> properties;  // by their folded names
  std::uint32_t style = 0;
  std::uint32_t exStyle = 0;
  bool visible = false;
  bool enabled = true;
  bool destroying = false;
  platform::WNDPROC procedure = nullptr;
  std::optional<std::int32_t> answer;  // of a message box
};

struct Timer {
  platform::HWND window{};
  std::uint64_t id = 0;
  std::uint32_t period = 0;
  std::uint64_t due = 0;
  std::uint64_t turn = 0;  // orders timers that are due at once
};

// A message on its way from SendMessageW to the thread of its window.
struct SentMessage {
  platform::Message message;
  Thread* sender = nullptr;  // null: nobody waits for it
  bool answered = false;
  platform::LRESULT result = 0;
};

struct MessageQueue {
  std::deque<platform::Message> posted;
  std::deque<std::shared_ptr<SentMessage>> sent;
  std::optional<std::int32_t> quit;
  std::vector<Timer> timers;
  platform::HWND focus{};
};

class Desktop {
 public:
  explicit Desktop(Machine& machine) : m_machine(machine), m_menus(machine) {}

  // Null when there is no such window (any more).
  Window* Find(platform::HWND window);
  // The first window, oldest first, of that class and title (null: any); null if none.
  Window* Find(const char16_t* className, const char16_t* title);
  // Of one process's windows the first of that class.
  Window* FindOf(const Process& process, std::u16string_view className);
  std::vector<Window*> WindowsOf(const Process& process);
  // Oldest first.
  std::vector<platform::HWND> TopLevelWindows() const;
  // Null when the process has registered no such class.
  const WindowClassRecord* ClassOf(const Process& process, std::u16string_view name) const;
  // Timers of a window, in the order in which they were set.
  std::vector<Timer> TimersOf(platform::HWND window);

  // Posts a message as another program would. 0, or the error of PostMessageW: 1400 when the window
  // is gone, 1159 for a message whose arguments are pointers.
  std::int32_t Post(platform::HWND window, std::uint32_t message, platform::WPARAM wParam = 0,
                    platform::LPARAM lParam = 0);

  // Sends a message as another program would that doesn't wait for the answer: it comes before what
  // is posted, and GetMessageW doesn't give it. Nothing happens when the window is gone.
  void SendWithoutWaiting(platform::HWND window, std::uint32_t message, platform::WPARAM wParam,
                          platform::LPARAM lParam);

  // The message boxes that are open, oldest first; each is a window with `text`.
  std::vector<Window*> Boxes();
  // Presses the button with that id on an open message box.
  void Answer(Window& box, std::int32_t id = platform::IDOK);
  // The menus that are shown.
  OpenMenus& menus() { return m_menus; }
  // How many messages have got the system's own handling so far.
  std::uint64_t defaultHandlings() const { return m_defaultHandlings; }

  // From now on every message box is answered with `id` as soon as it shows.
  void AnswerBoxesAtOnce(std::int32_t id = platform::IDOK) { m_answerAtOnce = id; }

  // The window that was brought to the front last, if it is still there.
  platform::HWND foreground() const { return m_foreground; }
  // Of the windows of a window's thread, the one that has the keys.
  platform::HWND FocusBeside(platform::HWND window);

  // Keys (VK_...) that a person holds down, and where the mouse is.
  void HoldKey(std::int32_t key) { m_heldKeys.insert(key); }
  void ReleaseKey(std::int32_t key) { m_heldKeys.erase(key); }
  void MoveMouse(platform::Point place) { m_mouse = place; }

  // How a message is called in the trace; numbers without a name stand as numbers.
  void NameMessage(std::uint32_t message, std::u16string name) {
    m_messageNames[message] = std::move(name);
  }
  std::u16string NameOf(std::uint32_t message) const;
  void NameTimer(std::uint64_t id, std::u16string name) { m_timerNames[id] = std::move(name); }
  std::u16string NameOfTimer(std::uint64_t id) const;

  // --- for the simulation ---

  MessageQueue& QueueOf(Thread& thread) { return m_queues[&thread]; }
  // A sent message was handled, or never will be: who waits for it goes on.
  void Settle(SentMessage& sent);
  // Takes back what belongs to a window that goes: keyboard, front, icons.
  void Forget(const Window& window);
  // Removes what a thread or process owns, without any message.
  void DropThread(Thread& thread);
  void DropProcess(Process& process);

 private:
  friend class WindowingCalls;

  Machine& m_machine;
  std::uint64_t m_nextWindow = 0x10010;
  std::uint64_t m_nextThreadTimer = 0x7F00;
  std::uint64_t m_turns = 0;
  std::uint64_t m_defaultHandlings = 0;
  std::map<platform::HWND, std::unique_ptr<Window>> m_windows;  // handles grow: oldest first
  std::map<std::pair<const Process*, std::u16string>, WindowClassRecord> m_classes;
  std::uint16_t m_nextAtom = 0xC001;
  std::unordered_map<Thread*, MessageQueue> m_queues;
  OpenMenus m_menus;
  std::optional<std::int32_t> m_answerAtOnce;
  platform::HWND m_foreground{};
  std::set<std::int32_t> m_heldKeys;
  platform::Point m_mouse;
  std::map<std::uint32_t, std::u16string> m_messageNames;
  std::map<std::uint64_t, std::u16string> m_timerNames;
};

}  // namespace sim
