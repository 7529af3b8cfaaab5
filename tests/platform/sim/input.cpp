// Keyboard and mouse of the simulated machine.
#include "platform/sim/machine.h"
#include "tests/platform/input_fixture.h"

namespace platform {

namespace {

sim::Machine& RunningMachine() { return sim::RunningProcess().machine(); }

}  // namespace

bool UseMouseOnIcon(MouseUse use) {
  sim::NotificationArea& tray = RunningMachine().tray();
  if (tray.Icons().size() != 1) return false;
  const sim::TrayIcon& icon = tray.Icons()[0];
  switch (use) {
    case MouseUse::kClick:
      tray.Click(icon);
      break;
    case MouseUse::kDoubleClick:
      tray.DoubleClick(icon);
      break;
    case MouseUse::kRightClick:
      tray.RightClick(icon);
      break;
  }
  return true;
}

void MoveMouse(Point place) { RunningMachine().desktop().MoveMouse(place); }
void PressKey(std::int32_t key) { RunningMachine().desktop().HoldKey(key); }
void ReleaseKey(std::int32_t key) { RunningMachine().desktop().ReleaseKey(key); }

HICON TestPicture() { return HICON{}; }

}  // namespace platform
