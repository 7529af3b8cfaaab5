// A program beside the agents: prints what it sees of them, for a session's output.
//
//   session_reader map PROCESS-ID...   the instance maps, a line "map| ..." for each slot; windows
//                                      of the processes are those of agent 1, agent 2, ...
//   session_reader show                what agents have left on the machine, in lines "show| ..."
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "desk/map_reader.h"
#include "desk/suite_reader.h"

// Behind the headers whose constants its macros rename.
#include <windows.h>

namespace {

std::string OwnerOf(std::uint64_t window, const std::vector<DWORD>& agents) {
  DWORD process = 0;
  if (GetWindowThreadProcessId(reinterpret_cast<HWND>(window), &process) == 0) return "dead";
  for (std::size_t i = 0; i < agents.size(); ++i)
    if (agents[i] == process) return "agent " + std::to_string(i + 1);
  return "other";
}

void Print(const char* mark, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) std::printf("%s| %s\n", mark, line.c_str());
}

}  // namespace

int main(int count, char** words) {
  const std::string_view what = count > 1 ? words[1] : "";
  std::vector<DWORD> agents;
  for (int i = 2; i < count; ++i)
    agents.push_back(static_cast<DWORD>(std::strtoul(words[i], nullptr, 10)));
  if (what == "map")
    Print("map", desk::ReadMaps([&](std::uint64_t window) { return OwnerOf(window, agents); }));
  else if (what == "show")
    Print("show", desk::ReadSuite());
  else
    return 2;
  return 0;
}
