// An open menu in words: for a session's output, the same on the simulated machine and under Wine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace desk {

// An entry as the system has it.
struct MenuLine {
  std::uint32_t id = 0;
  std::uint32_t type = 0;   // MFT_...
  std::uint32_t state = 0;  // MFS_...
  std::string label;        // UTF-8; of one that its owner draws what the owner writes there

  bool IsSeparator() const;
  bool CanBeChosen() const;
};

// A line for each entry, a separator is "----". What an entry is besides stands behind its label:
//   900 Studio 7200 (default)
//   901 Monitoring Preferences...
//   ----
//   920 Nozzle Check
// "(right to left)" and "(disabled)" are the other two.
std::vector<std::string> MenuInWords(const std::vector<MenuLine>& entries);

}  // namespace desk
