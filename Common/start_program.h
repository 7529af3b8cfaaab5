// Starting other programs.
#pragma once

namespace vgl {

// Starts a program by a command line, whose program path is as the system takes it: in quotes, or
// up to the first end at which there is such a program. Nobody waits for it or keeps track of it.
// 1 when it was started. A null text counts as empty.
int StartExe(const char16_t* commandLine);

}  // namespace vgl
