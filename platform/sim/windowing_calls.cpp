#include "platform/sim/windowing_calls.h"

#include <algorithm>

#include "platform/sim/machine.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

namespace {

constexpr char16_t kBoxClass[] = u"#32770";
// The handle that some calls take for "in front of all"; sending takes it for HWND_BROADCAST.
constexpr HWND kAllOnes{~std::uint64_t{0}};

std::u16string NameOf(HWND window) { return Hex(static_cast<std::uint64_t>(window), 8); }

}  // namespace

Desktop& WindowingCalls::desktop() const { return m_machine.desktop(); }

void WindowingCalls::InitCommonControls() { const Call call("InitCommonControls"); }

std::uint16_t WindowingCalls::RegisterClassW(const WindowClass& windowClass) {
  Call call("RegisterClassW");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return 0;
  const auto key = std::pair<const Process*, std::u16string>(&call.process(),
                                                             FoldCase(View(windowClass.className)));
  if (desktop().m_classes.contains(key)) {
    call.SetLastError(ERROR_CLASS_ALREADY_EXISTS);
    return 0;
  }
  desktop().m_classes[key] = {std::u16string(View(windowClass.className)), windowClass.procedure,
                              windowClass.style};
  return desktop().m_nextAtom++;
}

Window& WindowingCalls::NewWindow(Thread& thread, const char16_t* className, const char16_t* title,
                                  std::uint32_t style) {
  auto window = std::make_unique<Window>();
  window->handle = HWND{desktop().m_nextWindow};
  desktop().m_nextWindow += 2;
  window->thread = &thread;
  window->className = View(className);
  window->title = View(title);
  window->style = style;
  Window& made = *window;
  desktop().m_windows[made.handle] = std::move(window);
  return made;
}

HWND WindowingCalls::CreateWindowExW(std::uint32_t exStyle, const char16_t* className,
                                     const char16_t* title, std::uint32_t style, HMODULE) {
  Call call("CreateWindowExW");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return HWND{};
  const auto found = desktop().m_classes.find({&call.process(), FoldCase(View(className))});
  if (found == desktop().m_classes.end()) {
    call.SetLastError(ERROR_CANNOT_FIND_WND_CLASS);
    return HWND{};
  }
  Window& window = NewWindow(call.thread(), found->second.name.c_str(), title, style);
  window.exStyle = exStyle;
  window.procedure = found->second.procedure;
  const HWND handle = window.handle;
  m_machine.Trace(u"made window " + NameOf(handle) + u" of class " + window.className);
  if (CallProcedure({handle, WM_NCCREATE, 0, 0}) == 0) {
    RemoveWindow(handle);
    return HWND{};
  }
  if (CallProcedure({handle, WM_CREATE, 0, 0}) == -1) {
    if (Window* refused = desktop().Find(handle)) TearDown(*refused);
    return HWND{};
  }
  return desktop().Find(handle) == nullptr ? HWND{} : handle;
}

LRESULT WindowingCalls::CallProcedure(const Message& message) {
  const Window* window = desktop().Find(message.window);
  if (window == nullptr || window->procedure == nullptr) return 0;
  return window->procedure(message.window, message.message, message.wParam, message.lParam);
}

Window* WindowingCalls::FindWindow(const Call& call, HWND handle) const {
  Window* window = desktop().Find(handle);
  if (window == nullptr) call.SetLastError(ERROR_INVALID_WINDOW_HANDLE);
  return window;
}

void WindowingCalls::RemoveWindow(HWND handle) {
  const Window* window = desktop().Find(handle);
  if (window == nullptr) return;
  MessageQueue& queue = desktop().QueueOf(*window->thread);
  desktop().Forget(*window);
  desktop().m_windows.erase(handle);
  std::erase_if(queue.posted, [&](const Message& message) { return message.window == handle; });
  std::erase_if(queue.timers, [&](const Timer& timer) { return timer.window == handle; });
  for (const auto& sent : queue.sent) {
    if (sent->message.window == handle) desktop().Settle(*sent);
  }
  std::erase_if(queue.sent, [&](const auto& sent) { return sent->message.window == handle; });
}

// Oldest first.
std::vector<HWND> WindowingCalls::ChildrenOf(HWND parent) const {
  std::vector<HWND> children;
  for (const auto& [handle, window] : desktop().m_windows)
    if ((window->style & WS_CHILD) != 0 && window->owner == parent) children.push_back(handle);
  return children;
}

void WindowingCalls::TearDown(Window& window) {
  if (window.destroying) return;
  window.destroying = true;
  const HWND handle = window.handle;
  m_machine.Trace(u"destroying window " + NameOf(handle));
  CallProcedure({handle, WM_DESTROY, 0, 0});
  for (const HWND child : ChildrenOf(handle))
    if (Window* left = desktop().Find(child)) TearDown(*left);
  // The boxes that it owns go with it; MessageBoxW finds out by itself.
  for (Window* box : desktop().Boxes())
    if (box->owner == handle) RemoveWindow(box->handle);
  CallProcedure({handle, WM_NCDESTROY, 0, 0});
  RemoveWindow(handle);
}

bool WindowingCalls::DestroyWindow(HWND handle) {
  Call call("DestroyWindow");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return false;
  Window* window = desktop().Find(handle);
  if (window == nullptr) {
    call.SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return false;
  }
  if (window->thread != &call.thread()) {
    call.SetLastError(ERROR_ACCESS_DENIED);
    return false;
  }
  TearDown(*window);
  return true;
}

bool WindowingCalls::IsWindow(HWND handle) {
  Call call("IsWindow");
  if (call.Failure(ERROR_INVALID_WINDOW_HANDLE)) return false;
  if (desktop().Find(handle) != nullptr) return true;
  call.SetLastError(ERROR_INVALID_WINDOW_HANDLE);
  return false;
}

HWND WindowingCalls::FindWindowW(const char16_t* className, const char16_t* title) {
  Call call("FindWindowW");
  if (call.Failure(ERROR_ACCESS_DENIED)) return HWND{};
  const Window* window = desktop().Find(className, title);
  return window == nullptr ? HWND{} : window->handle;
}

std::int32_t WindowingCalls::GetWindowTextW(HWND handle, char16_t* text, std::int32_t chars) {
  Call call("GetWindowTextW");
  if (call.Failure(ERROR_INVALID_WINDOW_HANDLE)) return 0;
  const Window* window = desktop().Find(handle);
  if (window == nullptr) {
    call.SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return 0;
  }
  const std::uint32_t room = chars > 0 ? static_cast<std::uint32_t>(chars) : 0;
  return static_cast<std::int32_t>(CopyCut(window->title, text, room));
}

bool WindowingCalls::SetWindowTextW(HWND handle, const char16_t* text) {
  Call call("SetWindowTextW");
  if (call.Failure(ERROR_INVALID_WINDOW_HANDLE)) return false;
  Window* window = desktop().Find(handle);
  if (window == nullptr) {
    call.SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return false;
  }
  window->title = View(text);
  m_machine.Trace(u"captioned window " + NameOf(handle) + u" \"" + window->title + u"\"");
  return true;
}

bool WindowingCalls::ShowWindow(HWND handle, std::int32_t command) {
  Call call("ShowWindow");
  if (call.Failure(ERROR_INVALID_WINDOW_HANDLE)) return false;
  Window* window = desktop().Find(handle);
  if (window == nullptr) {
    call.SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return false;
  }
  return std::exchange(window->visible, command != SW_HIDE);
}

bool WindowingCalls::UpdateWindow(HWND handle) {
  Call call("UpdateWindow");
  if (call.Failure(ERROR_INVALID_WINDOW_HANDLE)) return false;
  return desktop().Find(handle) != nullptr;
}

bool WindowingCalls::SetForegroundWindow(HWND handle) {
  Call call("SetForegroundWindow");
  if (call.Failure(ERROR_ACCESS_DENIED)) return false;
  if (FindWindow(call, handle) == nullptr) return false;
  desktop().m_foreground = handle;
  m_machine.Trace(u"window " + NameOf(handle) + u" in front");
  return true;
}

HWND WindowingCalls::SetFocus(HWND handle) {
  Call call("SetFocus");
  if (call.Failure(ERROR_ACCESS_DENIED)) return HWND{};
  if (handle != HWND{}) {
    const Window* window = FindWindow(call, handle);
    if (window == nullptr) return HWND{};
    if (window->thread != &call.thread()) {
      call.SetLastError(ERROR_ACCESS_DENIED);
      return HWND{};
    }
  }
  return std::exchange(desktop().QueueOf(call.thread()).focus, handle);
}

std::int64_t WindowingCalls::GetWindowLongPtrW(HWND handle, std::int32_t index) {
  Call call("GetWindowLongPtrW");
  if (call.Failure(ERROR_INVALID_WINDOW_HANDLE)) return 0;
  const Window* window = FindWindow(call, handle);
  if (window == nullptr || index != GWL_STYLE) return 0;
  const std::uint32_t style = window->style & ~WS_VISIBLE;
  return style | (window->visible ? WS_VISIBLE : 0);
}

HWND WindowingCalls::GetParent(HWND handle) {
  Call call("GetParent");
  if (call.Failure(ERROR_INVALID_WINDOW_HANDLE)) return HWND{};
  const Window* window = FindWindow(call, handle);
  return window == nullptr ? HWND{} : window->owner;
}

std::int16_t WindowingCalls::GetAsyncKeyState(std::int32_t key) {
  const Call call("GetAsyncKeyState");
  return desktop().m_heldKeys.contains(key) ? INT16_MIN : 0;
}

bool WindowingCalls::GetCursorPos(Point* point) {
  Call call("GetCursorPos");
  if (call.Failure(ERROR_ACCESS_DENIED)) return false;
  *point = desktop().m_mouse;
  return true;
}

bool WindowingCalls::EnumWindows(WNDENUMPROC callback, LPARAM argument) {
  Call call("EnumWindows");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return false;
  for (const HWND window : desktop().TopLevelWindows()) {
    if (desktop().Find(window) != nullptr && callback(window, argument) == 0) return false;
  }
  return true;
}

HANDLE WindowingCalls::GetPropW(HWND handle, const char16_t* name) {
  Call call("GetPropW");
  if (call.Failure(ERROR_INVALID_WINDOW_HANDLE)) return HANDLE{};
  const Window* window = FindWindow(call, handle);
  if (window == nullptr) return HANDLE{};
  const auto found = window->properties.find(FoldCase(View(name)));
  return found == window->properties.end() ? HANDLE{} : HANDLE{found->second};
}

bool WindowingCalls::SetWindowPos(HWND handle, HWND insertAfter, std::int32_t, std::int32_t,
                                  std::int32_t, std::int32_t, std::uint32_t flags) {
  constexpr std::uint32_t kTopmost = 8;  // WS_EX_TOPMOST
  Call call("SetWindowPos");
  if (call.Failure(ERROR_ACCESS_DENIED)) return false;
  Window* window = FindWindow(call, handle);
  if (window == nullptr) return false;
  if (insertAfter == HWND_TOPMOST) window->exStyle |= kTopmost;
  if (insertAfter == HWND_NOTOPMOST) window->exStyle &= ~kTopmost;
  if ((flags & SWP_SHOWWINDOW) != 0) window->visible = true;
  m_machine.Trace(u"placed window " + NameOf(handle) +
                  (insertAfter == HWND_TOPMOST ? u" in front for good" : u" among the others") +
                  u", flags " + Decimal(flags));
  return true;
}

HWND WindowingCalls::GetDlgItem(HWND dialog, std::int32_t id) {
  Call call("GetDlgItem");
  if (call.Failure(ERROR_INVALID_WINDOW_HANDLE)) return HWND{};
  if (FindWindow(call, dialog) == nullptr) return HWND{};
  for (const HWND child : ChildrenOf(dialog))
    if (desktop().Find(child)->controlId == id) return child;
  return HWND{};
}

LRESULT WindowingCalls::DefWindowProcW(HWND handle, std::uint32_t message, WPARAM, LPARAM) {
  const Call call("DefWindowProcW");
  ++desktop().m_defaultHandlings;
  Window* window = desktop().Find(handle);
  if (window == nullptr) return 0;
  if (message == WM_CANCELMODE) desktop().menus().Cancel(*window->thread);
  if (message == WM_CLOSE && window->thread == &call.thread()) TearDown(*window);
  return message == WM_NCCREATE ? 1 : 0;
}

bool WindowingCalls::PostMessageW(HWND handle, std::uint32_t message, WPARAM wParam,
                                  LPARAM lParam) {
  Call call("PostMessageW");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return false;
  if (handle == HWND{}) {
    desktop().QueueOf(call.thread()).posted.push_back({handle, message, wParam, lParam});
    return true;
  }
  if (const std::int32_t error = desktop().Post(handle, message, wParam, lParam)) {
    call.SetLastError(error);
    return false;
  }
  m_machine.Trace(u"posted " + desktop().NameOf(message) + u" to window " + NameOf(handle));
  return true;
}

LRESULT WindowingCalls::SendMessageW(HWND handle, std::uint32_t message, WPARAM wParam,
                                     LPARAM lParam) {
  Call call("SendMessageW");
  if (call.Failure(ERROR_ACCESS_DENIED)) return 0;
  Message sending{handle, message, wParam, lParam};
  if (handle == HWND_BROADCAST || handle == kAllOnes) {
    for (const HWND window : desktop().TopLevelWindows()) {
      sending.window = window;
      if (desktop().Find(window) != nullptr) SendTo(call.thread(), sending);
    }
    return 1;
  }
  if (desktop().Find(handle) == nullptr) {
    call.SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return 0;
  }
  return SendTo(call.thread(), sending);
}

// Waits for the window's thread, and handles what is sent to the sender meanwhile.
LRESULT WindowingCalls::SendTo(Thread& sender, const Message& message) {
  const Window& window = *desktop().Find(message.window);
  if (window.thread == &sender) return CallProcedure(message);
  auto sent = std::make_shared<SentMessage>();
  sent->message = message;
  sent->sender = &sender;
  desktop().QueueOf(*window.thread).sent.push_back(sent);
  m_machine.scheduler().Wake(*window.thread);
  while (!sent->answered) {
    HandleSent(sender);
    if (!sent->answered) m_machine.scheduler().Block(kNever);
  }
  return sent->result;
}

void WindowingCalls::HandleSent(Thread& thread) {
  MessageQueue& queue = desktop().QueueOf(thread);
  while (!queue.sent.empty()) {
    const std::shared_ptr<SentMessage> sent = queue.sent.front();
    queue.sent.pop_front();
    m_machine.Trace(u"got " + desktop().NameOf(sent->message.message));
    // The sender goes on also when this process ends while it handles the message.
    struct Answering {
      SentMessage& message;
      Desktop& desktop;
      ~Answering() { desktop.Settle(message); }
    };
    const Answering answering{*sent, desktop()};
    sent->result = CallProcedure(sent->message);
  }
}

void WindowingCalls::PostQuitMessage(std::int32_t exitCode) {
  const Call call("PostQuitMessage");
  if (!call.Inert()) desktop().QueueOf(call.thread()).quit = exitCode;
}

bool WindowingCalls::TakeDueTimer(MessageQueue& queue, Message* message) {
  const auto first = std::min_element(
      queue.timers.begin(), queue.timers.end(), [](const Timer& left, const Timer& right) {
        return std::pair(left.due, left.turn) < std::pair(right.due, right.turn);
      });
  if (first == queue.timers.end() || first->due > m_machine.now()) return false;
  *message = {first->window, WM_TIMER, first->id, 0};
  // Ticks that were missed are not made up for.
  while (first->due <= m_machine.now()) first->due += first->period;
  return true;
}

bool WindowingCalls::TakeMessage(Thread& thread, Message* message) {
  MessageQueue& queue = desktop().QueueOf(thread);
  if (!queue.posted.empty()) {
    *message = queue.posted.front();
    queue.posted.pop_front();
    return true;
  }
  if (queue.quit) {
    *message = {HWND{}, WM_QUIT, static_cast<WPARAM>(*queue.quit), 0};
    queue.quit.reset();
    return true;
  }
  return TakeDueTimer(queue, message);
}

std::optional<Message> WindowingCalls::WaitForMessage(Thread& thread,
                                                      const std::function<bool()>& interrupted) {
  Message message;
  for (;;) {
    HandleSent(thread);
    if (interrupted()) return std::nullopt;
    if (TakeMessage(thread, &message)) return message;
    std::uint64_t due = kNever;
    for (const Timer& timer : desktop().QueueOf(thread).timers) due = std::min(due, timer.due);
    m_machine.scheduler().Block(due);
  }
}

std::int32_t WindowingCalls::GetMessageW(Message* message) {
  Call call("GetMessageW");
  if (call.Failure(ERROR_INVALID_WINDOW_HANDLE)) return -1;
  *message = *WaitForMessage(call.thread(), [] { return false; });
  return message->message == WM_QUIT ? 0 : 1;
}

void WindowingCalls::RunModalLoop(Thread& thread, const std::function<bool()>& ended) {
  while (const std::optional<Message> message = WaitForMessage(thread, ended)) {
    if (message->message == WM_QUIT) {
      // The loop outside is to end, too.
      desktop().QueueOf(thread).quit = static_cast<std::int32_t>(message->wParam);
      return;
    }
    Deliver(*message);
  }
}

bool WindowingCalls::TranslateMessage(const Message&) {
  const Call call("TranslateMessage");
  return false;
}

LRESULT WindowingCalls::DispatchMessageW(const Message& message) {
  const Call call("DispatchMessageW");
  return call.Inert() ? 0 : Deliver(message);
}

LRESULT WindowingCalls::Deliver(const Message& message) {
  if (desktop().Find(message.window) == nullptr) return 0;
  const std::u16string timer =
      message.message == WM_TIMER ? u" " + desktop().NameOfTimer(message.wParam) : std::u16string();
  m_machine.Trace(u"got " + desktop().NameOf(message.message) + timer);
  return CallProcedure(message);
}

std::uint64_t WindowingCalls::SetTimer(HWND handle, std::uint64_t id, std::uint32_t milliseconds) {
  Call call("SetTimer");
  if (call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return 0;
  const Window* window = desktop().Find(handle);
  if (handle != HWND{} && (window == nullptr || window->thread != &call.thread())) {
    call.SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return 0;
  }
  std::vector<Timer>& timers = desktop().QueueOf(call.thread()).timers;
  const auto same = [&](const Timer& timer) { return timer.window == handle && timer.id == id; };
  const bool rearmed = std::any_of(timers.begin(), timers.end(), same);
  if (handle == HWND{} && !rearmed) id = desktop().m_nextThreadTimer--;
  std::erase_if(timers, same);
  const std::uint32_t period = std::max(milliseconds, USER_TIMER_MINIMUM);
  timers.push_back({handle, id, period, m_machine.now() + period, ++desktop().m_turns});
  m_machine.Trace(u"set timer " + desktop().NameOfTimer(id) + u": " + Decimal(milliseconds) +
                  u" ms");
  return id;
}

bool WindowingCalls::KillTimer(HWND handle, std::uint64_t id) {
  Call call("KillTimer");
  if (call.Failure(ERROR_INVALID_PARAMETER)) return false;
  std::vector<Timer>& timers = desktop().QueueOf(call.thread()).timers;
  const std::size_t killed = std::erase_if(
      timers, [&](const Timer& timer) { return timer.window == handle && timer.id == id; });
  if (killed == 0) return false;
  m_machine.Trace(u"killed timer " + desktop().NameOfTimer(id));
  return true;
}

std::uint32_t WindowingCalls::GetDoubleClickTime() {
  const Call call("GetDoubleClickTime");
  return m_machine.system().doubleClickTime;
}

namespace {

// Other programs answer a message box by WM_COMMAND with a button's id, or by closing it.
LRESULT BoxProcedure(HWND handle, std::uint32_t message, WPARAM wParam, LPARAM) {
  Desktop& desktop = RunningProcess().machine().desktop();
  Window& box = *desktop.Find(handle);
  if (message == WM_COMMAND) desktop.Answer(box, static_cast<std::int32_t>(wParam & 0xFFFF));
  if (message == WM_CLOSE) desktop.Answer(box, IDOK);
  return 0;
}

}  // namespace

HWND WindowingCalls::OpenBox(Thread& thread, const char16_t* text, const char16_t* caption,
                             std::uint32_t style) {
  Window& box = NewWindow(thread, kBoxClass, caption, style);
  box.text = View(text);
  box.visible = true;
  box.procedure = BoxProcedure;
  box.answer = desktop().m_answerAtOnce;
  m_machine.Trace(u"message box \"" + box.title + u"\": " + box.text);
  return box.handle;
}

std::int32_t WindowingCalls::MessageBoxW(HWND owner, const char16_t* text, const char16_t* caption,
                                         std::uint32_t style) {
  Call call("MessageBoxW");
  if (call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return 0;
  if (owner != HWND{} && desktop().Find(owner) == nullptr) {
    call.SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return 0;
  }
  const HWND handle = OpenBox(call.thread(), text, caption, style);
  desktop().Find(handle)->owner = owner;
  if (Window* window = desktop().Find(owner)) window->enabled = false;

  const auto closed = [&] {
    const Window* box = desktop().Find(handle);
    return box == nullptr || box->answer;
  };
  RunModalLoop(call.thread(), closed);
  const Window* box = desktop().Find(handle);
  const std::int32_t answer = box == nullptr ? 0 : box->answer.value_or(0);
  RemoveWindow(handle);
  if (Window* window = desktop().Find(owner)) window->enabled = true;
  m_machine.Trace(u"message box answered with " + Decimal(static_cast<std::uint64_t>(answer)));
  return answer;
}

}  // namespace sim
