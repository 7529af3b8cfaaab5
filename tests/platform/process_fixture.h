// Programs to start, for the tests of process starts.
#pragma once

#include <string>

#include "tests/platform/platform_test.h"

namespace platform {

// What only a backend can do; sim/process_setup.cpp and win32/process_setup.cpp give it.

// Puts a program at that path. It writes its command line from "/child" on into the file of its own
// path with ".txt" behind it (UTF-16, little-endian), makes a hidden window whose title is its own
// path, sleeps for the number of milliseconds that stands behind "/child ", and ends.
void MakeProgram(const std::u16string& path);

// A command line that starts a program of the system, by its name without a folder, which ends at
// once.
std::u16string SystemCommand();

}  // namespace platform
