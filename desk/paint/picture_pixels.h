// The pixels of the pictures in resource libraries.
#pragma once

#include <optional>

#include "desk/paint/image.h"
#include "platform/sim/pe_resources.h"

namespace desk {

// An icon's picture has rows of its own for what is behind it to show through.
enum class PictureUse { kBitmap, kIcon };

// Any picture whose resource can be read: with 1, 4 or 8 bits a pixel by its palette, where a
// number that the palette doesn't have is black; with 16, 24 or 32 bits; uncompressed. A bitmap is
// opaque throughout, as Windows draws it. Nothing for any other, and for one whose bytes aren't all
// there; only the bytes are believed, not what `picture` says of them.
std::optional<Image> PixelsOf(const sim::Picture& picture, PictureUse use);

}  // namespace desk
