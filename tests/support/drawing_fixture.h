// Drawing inside the test's own simulated process, on a surface such as a menu hands out.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "platform/sim/drawing_calls.h"
#include "platform/sim/machine.h"
#include "platform/sim/resource_calls.h"
#include "tests/support/drawn_texts.h"

namespace vgl {

class DrawingTest : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;

  DrawingTest() {
    surface = std::make_shared<sim::DeviceContext>(sim::DeviceContext::Kind::Surface,
                                                   machine.drawing().menuFont);
    context = platform::HDC{inside.process().AddHandle(surface)};
  }

  platform::HBITMAP AddPicture(std::uint32_t width, std::uint32_t height) {
    return platform::HBITMAP{inside.process().AddHandle(std::make_shared<sim::LoadedBitmap>(
        sim::Picture{.width = width, .height = height}, u"picture"))};
  }
  // What was drawn since the last time.
  Lines TakeDrawn() { return TextsOf(std::exchange(surface->drawn, {})); }
  void FailNext(const char* operation, std::uint64_t after = 0) {
    inside.process().FailNext(operation, platform::ERROR_NO_SYSTEM_RESOURCES, after);
  }
  // What the process holds; the surface and the pictures are always there.
  std::vector<std::u16string> Ledger() { return inside.process().Ledger(); }
  std::ptrdiff_t IconsHeld() { return std::ranges::count(Ledger(), u"stock icon 77"); }

  sim::Machine machine;
  sim::Inside inside{machine};
  std::shared_ptr<sim::DeviceContext> surface;
  platform::HDC context{};
};

}  // namespace vgl
