// Running vgldesk as its user does, and looking at what it prints.
#pragma once

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "desk/command_line.h"

namespace desk {

struct Outcome {
  int code;
  std::string out;
  std::string err;
};

inline Outcome RunWords(const std::vector<std::string>& words, const std::string& input = "") {
  std::istringstream in(input);
  std::ostringstream out;
  std::ostringstream err;
  const int code = RunVgldesk(words, in, out, err);
  return {code, out.str(), err.str()};
}

inline Outcome RunScript(const std::string& script, std::vector<std::string> more = {}) {
  std::vector<std::string> words = {"run", "--script", "-"};
  words.insert(words.end(), more.begin(), more.end());
  return RunWords(words, script);
}

inline Outcome RunSession(const std::string& name) {
  return RunWords({"run", "--script", "desk/sessions/" + name + ".session"});
}

inline bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// Of the lines that hold `mark` what stands behind it, in order.
inline std::vector<std::string> Behind(std::string_view mark, const std::string& out) {
  std::istringstream in(out);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);)
    if (const std::size_t at = line.find(mark); at != std::string::npos)
      lines.push_back(line.substr(at + mark.size()));
  return lines;
}

// What a "map" or a "show" in the script showed.
inline std::vector<std::string> MapLines(const std::string& out) {
  return Behind("script    map| ", out);
}
inline std::vector<std::string> ShownLines(const std::string& out) {
  return Behind("script    show| ", out);
}

}  // namespace desk
