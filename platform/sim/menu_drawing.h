// How a menu that is shown gets its sizes and its look: its owner is asked for those of the items
// that it draws itself, by WM_MEASUREITEM and WM_DRAWITEM.
#pragma once

#include <vector>

#include "platform/sim/open_menu.h"

namespace sim {

class WindowingCalls;

class MenuDrawing {
 public:
  MenuDrawing(Machine& machine, WindowingCalls& windowing, OpenMenu& open)
      : m_machine(machine), m_windowing(windowing), m_open(open) {}

  // Measures the items, places them one below the other, and has them drawn.
  void Show(const std::vector<MenuItem>& items);
  // Has the items drawn anew that the mouse has left and come to since the last time.
  void FollowPointer();

 private:
  platform::Size Measure(const MenuItem& item);
  void Draw(ShownItem& shown, std::uint32_t action);

  Machine& m_machine;
  WindowingCalls& m_windowing;
  OpenMenu& m_open;
};

}  // namespace sim
