// The lines of a tray log without process and time.
#pragma once

#include <sstream>
#include <string>
#include <vector>

namespace vgl {

// Of a log's bytes, those lines that begin with `begin` as they stand there. A line of a text that
// has line ends of its own stands as it is.
inline std::vector<std::string> TextsOfLog(const std::string& log, const std::string& begin = "") {
  std::istringstream lines(log);
  std::vector<std::string> texts;
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with(begin)) continue;
    if (line.ends_with('\r')) line.pop_back();
    // "1000;   10:00.100; text"
    const bool isHeaded = line.find(';') == 4;
    texts.push_back(isHeaded ? line.substr(line.find("; ", 5) + 2) : line);
  }
  return texts;
}

}  // namespace vgl
