// A driver set with everything that one can have, for the default machine (default_machine.h): a
// menu with an entry of each form, NetPilot, invitations, a utility library. For what runs many
// agents for a long time, and for tests that look at all of it at once.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/sim/machine.h"

namespace desk {

// An entry of its menu: the command text, where {} stands for the driver's folder.
struct WholeSetEntry {
  std::uint16_t id;
  const char* command;
  const char16_t* label;
};
const std::vector<WholeSetEntry>& EntriesOfWholeSet();

// Makes the default machine's driver set such a one. All its programs read the parameter file that
// they are given and end.
void MakeDriverSetWhole(sim::Machine& machine);

// What the printer's own data say to the libraries of that set: milliseconds that a utility takes,
// period and level of invitations.
void SetUpPrinterOfWholeSet(sim::Machine& machine, const std::u16string& printer,
                            std::uint32_t utilityMilliseconds, std::uint32_t invitationPeriod,
                            std::uint32_t invitationLevel);

}  // namespace desk
