// Paints a menu of the simulated machine as the person before it sees it.
#pragma once

#include "desk/paint/fonts.h"
#include "desk/paint/image.h"
#include "platform/sim/open_menu.h"

namespace desk {

// The whole popup, with its border. What the owner drew is painted as it drew it, in order; the
// rest (texts, separators, border) as the system shows it, by the colours of `drawing`. The sizes
// that the machine gave to the items fit when it measured by `fonts` (DrawingState::measure). Each
// pixel is painted `scale` times as wide and as high.
Image PaintMenu(const sim::OpenMenu& menu, const sim::DrawingState& drawing, const Fonts& fonts,
                int scale = 1);

}  // namespace desk
