// Another process that has a file in its hands.
#pragma once

#include "platform/sim/machine.h"

namespace vgl {

// Starts a process that opens the file for writing, lets others read and write it, and ends after a
// second. The file is open when this returns.
sim::Process& HoldOpenForSharedWriting(sim::Machine& machine, const char16_t* path);

}  // namespace vgl
