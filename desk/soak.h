// The soak: many agents on one simulated machine for a long virtual time, with printers that come
// and go, installers at work, clicks and faults, all at random from a seed. What has to hold all
// the time is looked at all the time.
#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>

#include "platform/sim/machine.h"

namespace desk {

struct SoakOptions {
  std::uint64_t seed = 1;
  std::uint64_t hours = 24;         // of virtual time
  int printers = 200;               // each with its agent while it is there
  std::uint64_t meanPause = 30000;  // between two things that happen, in virtual milliseconds
  bool withFaults = true;           // now and then a platform call of some agent fails
  // For tests of the soak itself: what happens to the machine besides, each time.
  std::function<void(sim::Machine&)> disturb = [](sim::Machine&) {};
};

// Exit code of a soak in which something didn't hold.
inline constexpr int kSoakFailed = 1;

// Runs it. 0 when all held, with what happened in `out`; else kSoakFailed, with what didn't hold,
// its time and the seed in `err`: the same options lead there again.
int Soak(const SoakOptions& options, std::ostream& out, std::ostream& err);

}  // namespace desk
