// What was drawn, one text for each thing, in order: so that a test can write it down.
//
//   100,50-300,69 filled with F0F0F0
//   104,51-120,67 picture of 16x16
//   109,56-121,68 stock icon 77
//   130,52 "Order ink" in 000000 on F0F0F0
//
// Areas are left, upper, right and lower edge, colours as in platform/drawing.h. Behind a text
// stands how it is aligned where that isn't 0, behind a picture where its part begins where that
// isn't its corner.
#pragma once

#include <string>
#include <vector>

#include "platform/sim/drawing_state.h"

namespace vgl {

std::vector<std::string> TextsOf(const std::vector<sim::Drawn>& drawn);

}  // namespace vgl
