#include "tests/platform/windowing_fixture.h"

#include <utility>

namespace platform {

WindowingContract* WindowingContract::s_current = nullptr;

WindowingContract::WindowingContract() {
  s_current = this;
  WindowClass windowClass;
  windowClass.procedure = Procedure;
  windowClass.instance = os.modules.GetModuleHandleW(nullptr);
  windowClass.className = kClass;
  // Where all tests run in one process, it is there from the second test on.
  if (windowing.RegisterClassW(windowClass) == 0) {
    EXPECT_EQ(LastError(), ERROR_CLASS_ALREADY_EXISTS);
  }
}

WindowingContract::~WindowingContract() {
  std::vector<HWND> windows;
  for (const auto& [window, handler] : m_handlers) windows.push_back(window);
  for (const HWND window : windows) windowing.DestroyWindow(window);
  s_current = nullptr;
}

HWND WindowingContract::MakeWindow(Handler handler, const char16_t* title) {
  {
    const std::lock_guard lock(m_mutex);
    m_handlerOfNextWindow = std::move(handler);
  }
  return windowing.CreateWindowExW(0, kClass, title, WS_OVERLAPPEDWINDOW,
                                   os.modules.GetModuleHandleW(nullptr));
}

std::vector<std::uint32_t> WindowingContract::Messages(HWND window) {
  const std::lock_guard lock(m_mutex);
  std::vector<std::uint32_t> messages;
  for (const Received& received : m_received[window]) messages.push_back(received.message);
  return messages;
}

std::vector<WindowingContract::Received> WindowingContract::ReceivedOf(HWND window,
                                                                       std::uint32_t message) {
  const std::lock_guard lock(m_mutex);
  std::vector<Received> matching;
  for (const Received& received : m_received[window]) {
    if (received.message == message) matching.push_back(received);
  }
  return matching;
}

Message WindowingContract::HandleNext() {
  const Message message = TakeNext();
  if (message.message != WM_QUIT) windowing.DispatchMessageW(message);
  return message;
}

Message WindowingContract::TakeNext() {
  for (;;) {
    Message message;
    const std::int32_t result = windowing.GetMessageW(&message);
    EXPECT_EQ(result, message.message == WM_QUIT ? 0 : 1);
    if (result < 0) return message;
    if (message.message == WM_QUIT || message.message == WM_TIMER ||
        message.message == WM_COMMAND || message.message >= WM_USER) {
      return message;
    }
    windowing.DispatchMessageW(message);
  }
}

LRESULT WindowingContract::Procedure(HWND window, std::uint32_t message, WPARAM wParam,
                                     LPARAM lParam) {
  if (s_current != nullptr) {
    const Handler handler = s_current->Note(window, {message, wParam, lParam});
    if (handler) {
      if (const auto result = handler(window, message, wParam, lParam)) return *result;
    }
  }
  return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
}

WindowingContract::Handler WindowingContract::Note(HWND window, const Received& received) {
  const std::lock_guard lock(m_mutex);
  m_received[window].push_back(received);
  const auto [found, isNew] = m_handlers.try_emplace(window);
  if (isNew) found->second = std::exchange(m_handlerOfNextWindow, {});
  return found->second;
}

}  // namespace platform
