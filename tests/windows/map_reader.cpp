// Prints the instance maps of the machine that it runs on, a line "map| ..." for each slot.
//
//   map_reader PROCESS-ID...     of agent 1, agent 2, ...: whose windows are called so
#include "desk/map_reader.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

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

}  // namespace

int main(int count, char** words) {
  std::vector<DWORD> agents;
  for (int i = 1; i < count; ++i)
    agents.push_back(static_cast<DWORD>(std::strtoul(words[i], nullptr, 10)));
  for (const std::string& line :
       desk::ReadMaps([&](std::uint64_t window) { return OwnerOf(window, agents); }))
    std::printf("map| %s\n", line.c_str());
}
