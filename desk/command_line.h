// The command line of vgldesk.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace desk {

// Exit code for a command line that makes no sense, or a script that can't be read.
inline constexpr int kUsageError = 2;

// Runs vgldesk with these words (without the program's name). Events and help go to `out`, mistakes
// to `err`; "-" as script file reads `in`. The exit code.
int RunVgldesk(const std::vector<std::string>& words, std::istream& in, std::ostream& out,
               std::ostream& err);

// The agent's command line from shell words: one word stands as it is; of several, those that are
// no option (no leading slash) get the quotes back that the shell took.
std::string AgentCommandLine(const std::vector<std::string>& words);

}  // namespace desk
