// Plays a session script on a simulated machine and tells what happened, a line an event.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

#include "desk/script.h"

namespace desk {

struct PlayOptions {
  std::string sample;        // a name as of SampleFolder, in place of the one that the script names
  std::uint64_t seed = 0;    // as of sim::Machine
  bool showTrayLog = false;  // switches the tray log on and shows its lines as they are written
};

// Exit code of a session whose sample can't be put on a machine.
inline constexpr int kBadSample = 2;

// Plays `script` and writes events to `out`, mistakes to `err`; the last line tells what stands in
// the temp folder then. The machine is that of the sample that `options` or the script names, else
// the default one. The exit code of agent 1; kSessionFailed (desk/script.h) when a command couldn't
// be carried out, or an agent still ran at the end; kBadSample.
int Play(const Script& script, const PlayOptions& options, std::ostream& out, std::ostream& err);

}  // namespace desk
