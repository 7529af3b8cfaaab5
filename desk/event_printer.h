// What happens on a simulated machine as lines for a reader: the virtual time, who did it, what.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/sim/machine.h"

namespace desk {

// The options of the parameter file that /FU names in a command line, as in
//   /P "Studio 7200" /O "USB001" /M "S7200" /E
// Empty when none is named or it isn't there.
std::string ParamFileInWords(const sim::FileTree& files, std::u16string_view commandLine);

class EventPrinter {
 public:
  // Observes the machine while it lives. With the tray log shown, the log's lines stand for the
  // writing of them. Of the libraries that a process loads only the first load is told, and no
  // release: each reading of a value may be one. What a program is started with is told in words.
  EventPrinter(sim::Machine& machine, bool showTrayLog, std::ostream& out);
  ~EventPrinter();
  EventPrinter(const EventPrinter&) = delete;
  EventPrinter& operator=(const EventPrinter&) = delete;

  // From now on it is "agent 1", the next one "agent 2".
  void AddAgent(const sim::Process& agent);

  // A line of what a process did; of the script's own doing with 0. It is one line, whatever line
  // ends the text has.
  void Line(std::uint32_t processId, const std::string& text);

  // "agent 1"; of other programs the file's name without extension; "script" for what is neither.
  std::string NameOf(std::uint32_t processId) const;
  bool IsAgent(std::uint32_t processId) const;

 private:
  void ShowEvent(const sim::Event& event);
  void ShowLogLines(std::uint32_t processId, std::string_view bytes);
  bool IsHidden(const sim::Event& event);
  bool WasStartedByProgram(std::uint32_t processId) const;

  sim::Machine& m_machine;
  bool m_showTrayLog;
  std::ostream& m_out;
  std::vector<std::uint32_t> m_agents;
  std::set<std::pair<std::uint32_t, std::u16string>> m_loadsTold;
};

}  // namespace desk
