// The instance map in words, for a session's output: how a program of the suite reads it that knows
// nothing but docs/instance-map.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace desk {

struct MapForm {
  const char16_t* sectionName;
  std::size_t slotBytes;
  bool hasSel5;
};
inline constexpr MapForm kMapForms[] = {{u"VglV5MapFile_Ink", 1066, false},
                                        {u"VglV7MapFile_Ink", 1094, true}};
inline constexpr std::size_t kSlotsOfMap = 500;

// A line for each slot up to the end marker, and one for that:
//   "VglV5MapFile_Ink 0: Studio 7200, agent 1"
//   "VglV5MapFile_Ink 1: end"
// The windows that are set follow the name, those of other programs as "Sel0 other". `nameWindow`
// names a window's owner ("agent 1", "dead", ...); a claim is "starting". Names are in UTF-8. A map
// without an end marker ends with its last slot. `bytes` may end anywhere; what lies behind counts
// as zeros.
std::vector<std::string> MapLines(const MapForm& form, std::span<const unsigned char> bytes,
                                  const std::function<std::string(std::uint64_t)>& nameWindow);

// The lines of the section of that form; none when there is no such section now, and one that tells
// the system's error where the section can't be opened or seen. Called inside a process, which is
// left as it was.
std::vector<std::string> ReadMap(const MapForm& form,
                                 const std::function<std::string(std::uint64_t)>& nameWindow);

// The lines of both maps; "no map" when there is none.
std::vector<std::string> ReadMaps(const std::function<std::string(std::uint64_t)>& nameWindow);

}  // namespace desk
