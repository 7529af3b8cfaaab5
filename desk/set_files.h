// What a driver set has for an agent that stays: profile, language, libraries, run helper.
#pragma once

#include <string>
#include <vector>

namespace desk {

struct SetFile {
  std::string what;
  std::u16string told;  // where it is, or why it isn't of use
  bool isFound = true;
};

// What the agent's lookups find for a printer, in the order in which the agent comes to it. A
// library counts as found when it loads and has what the agent asks of it. Called inside a process.
std::vector<SetFile> FindSetFiles(const std::u16string& printer, const std::u16string& driver,
                                  const std::u16string& model);

}  // namespace desk
