// Windows whose procedures keep what they are given.
#pragma once

#include <map>
#include <mutex>
#include <optional>

#include "tests/platform/platform_test.h"

namespace platform {

class WindowingContract : public PlatformTest {
 protected:
  struct Received {
    std::uint32_t message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    friend bool operator==(const Received&, const Received&) = default;
  };
  // What a window does with a message; nothing: the system's own handling.
  using Handler =
      std::function<std::optional<LRESULT>(HWND window, std::uint32_t message, WPARAM, LPARAM)>;

  WindowingContract();
  ~WindowingContract() override;

  // A hidden top-level window of the calling thread.
  HWND MakeWindow(Handler handler = {}, const char16_t* title = u"PlatformTest window");
  // All that the window's procedure has got so far.
  std::vector<std::uint32_t> Messages(HWND window);
  // Of these, the ones of that number.
  std::vector<Received> ReceivedOf(HWND window, std::uint32_t message);

  // Handles messages until one of a test's own comes (WM_QUIT, WM_TIMER, WM_COMMAND, WM_USER and
  // above); that one is handled too and given back. The system's own are no concern of a test.
  Message HandleNext();
  // Likewise, but what is given back is left to the test to dispatch.
  Message TakeNext();

  static constexpr const char16_t* kClass = u"PlatformTestWindow";
  Windowing& windowing = os.windowing;

 private:
  static LRESULT Procedure(HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam);
  Handler Note(HWND window, const Received& received);

  static WindowingContract* s_current;
  std::mutex m_mutex;  // never held while a platform call is made
  Handler m_handlerOfNextWindow;
  std::map<HWND, Handler> m_handlers;
  std::map<HWND, std::vector<Received>> m_received;
};

}  // namespace platform
