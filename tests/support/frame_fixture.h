// A frame with its hidden window inside the test's own simulated process, for tests that look at
// the frame's fields or call its window procedure straight away.
#pragma once

#include <gtest/gtest.h>

#include "app/main_frame.h"
#include "desk/default_machine.h"
#include "platform/sim/machine.h"

namespace vgl {

class FrameTest : public testing::Test {
 protected:
  FrameTest();
  ~FrameTest() override;

  // Handles this thread's messages, as the agent's loop does, for that much virtual time (at least
  // 10 ms), or until WM_QUIT. The messages that came to the frame's window, in order.
  std::vector<platform::Message> Pump(std::uint32_t milliseconds = 10);
  // Has the window procedure handle a message at once.
  void Send(std::uint32_t message, platform::WPARAM wParam = 0, platform::LPARAM lParam = 0);
  // The period of one of the window's timers in ms, 0 when it isn't running.
  std::uint32_t PeriodOf(std::uint64_t timer);
  bool WindowStands() { return machine.desktop().Find(frame->m_hWnd) != nullptr; }
  // Whether the tray log holds a line that ends in this text.
  bool HasLogged(const std::string& text);
  // Takes the printer's semaphore as a running utility does.
  void StartUtility();
  // Has another process give it back after that time.
  void StopUtility(std::uint64_t afterMilliseconds);

  sim::Machine machine;
  sim::Inside inside;
  std::unique_ptr<CMainFrame> frame;
};

}  // namespace vgl
