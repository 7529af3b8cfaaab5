// Icons that the system's shell has in stock.
#pragma once

#include <cstdint>

#include "platform/types.h"

namespace vgl {

// Draws the shield, which says that something asks for elevation, over a picture whose place and
// size are given, in pixels: a little inside it and a little smaller. 0 when the system gave the
// icon; its own error, below 0, when it didn't, and -1 on a system that has no such icons: nothing
// is drawn then.
std::int32_t Kv_SHGetStockSmallIconInfo(platform::HDC context, std::int32_t x, std::int32_t y,
                                        std::int32_t width, std::int32_t height);

}  // namespace vgl
