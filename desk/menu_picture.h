// The context menu of a sample's printer, as a picture.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

namespace desk {

struct MenuPictureOptions {
  std::string sample;                     // a name as of SampleFolder
  std::string file;                       // the PNG file to write
  std::optional<std::uint32_t> selected;  // the entry that the mouse is on, by its id
  std::string language;                   // the user's, "PRIMARY,SUB"; empty: US English
  int scale = 1;                          // each pixel as so many, both ways
};

// Exit code when the agent opens no menu.
inline constexpr int kNoMenu = 1;

// Puts a sample on a machine, starts its agent, opens the menu by a right click on the agent's icon
// and writes its picture to a file, which is replaced if it is there. 0; kNoMenu; kBadSample
// (desk/player.h) for a mistake in the sample or in `options`, or a file that can't be written:
// nothing is written then, and `err` tells why.
int DrawMenu(const MenuPictureOptions& options, std::ostream& err);

}  // namespace desk
