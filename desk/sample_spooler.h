// The spooler's own records in the registry, below
// HKEY_LOCAL_MACHINE\System\CurrentControlSet\Control\Print, from which a real spooler takes its
// printers and drivers.
#pragma once

#include <string>

#include "platform/sim/machine.h"

namespace desk {

// Makes the simulated spooler's drivers (of every environment), printers and printer data from the
// records in the machine's registry, whose names ignore case. File names in a driver's record stand
// in the spooler's driver folder, those with a backslash stay as they are. False and `error` for a
// record that a real spooler couldn't open either, and for a printer that is there already.
bool MakeSpoolerFromRegistry(sim::Machine& machine, std::string& error);

}  // namespace desk
