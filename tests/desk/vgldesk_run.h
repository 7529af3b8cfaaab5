// Running vgldesk as its user does, and looking at what it prints.
#pragma once

#include <regex>
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

// What a "map", a "menu" or a "show" in the script showed.
inline std::vector<std::string> MapLines(const std::string& out) {
  return Behind("script    map| ", out);
}
inline std::vector<std::string> MenuLines(const std::string& out) {
  return Behind("script    menu| ", out);
}
inline std::vector<std::string> ShownLines(const std::string& out) {
  return Behind("script    show| ", out);
}

inline std::vector<std::string> Joined(const std::vector<std::vector<std::string>>& parts) {
  std::vector<std::string> lines;
  for (const auto& part : parts) lines.insert(lines.end(), part.begin(), part.end());
  return lines;
}

// A text with "K_Q....tmp" in place of the names that the system makes for temporary files.
inline std::string WithoutTempNames(const std::string& text) {
  static const std::regex kMadeNames("K_Q[0-9A-F]+\\.tmp");
  return std::regex_replace(text, kMadeNames, "K_Q....tmp");
}
// How the log of programs that were started tells of one that got a parameter file with these
// options, of so many bytes, for the printer of studio-7200.
inline std::vector<std::string> StartWithFile(const std::string& program,
                                              const std::string& options, int bytes) {
  return {"program: " + program + " /FU \"C:\\Users\\User\\AppData\\Local\\Temp\\K_Q....tmp\"",
          "program:   parameter file of " + std::to_string(bytes) + " bytes:",
          "program:   " + options,
          "program:   /P \"Studio 7200\"",
          "program:   /M \"S7200\"",
          "program:   /D \"KAVRO Studio 7200\"",
          "program:   /O \"USB001\""};
}

}  // namespace desk
