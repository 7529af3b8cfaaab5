// Resource libraries made on the spot: the bytes of a .DLL that holds menus, texts and pictures and
// no code, for machines that come without a driver set's own.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace desk {

struct MenuEntry {
  std::u16string text;  // empty, without sub-menu: a separator
  std::uint16_t id = 0;
  std::vector<MenuEntry> popup;  // what opens from the entry
};

// What goes into a library, by its numbers. A picture is one colour, 0x00RRGGBB.
struct ResourceLibrary {
  std::map<std::uint16_t, std::vector<MenuEntry>> menus;
  std::map<std::uint16_t, std::u16string> strings;  // of at most 65,535 characters
  std::map<std::uint16_t, std::uint32_t> icons;     // 16 by 16 pixels
  std::map<std::uint16_t, std::uint32_t> bitmaps;   // likewise
  std::uint16_t language = 0;                       // of all of them; 0: neutral
};

// The file's bytes, in the form of Windows' 64-bit libraries.
std::string BytesOf(const ResourceLibrary& library);

// What the suite asks of every resource library: menu 801 with the entries 900 and 901, the texts
// 1100 and 35277, the icons 700 to 702.
ResourceLibrary PlainResourceLibrary();

}  // namespace desk
