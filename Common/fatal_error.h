// The end of the process on what must not happen.
#pragma once

namespace vgl {

// Ends the process at once with exit code 3, that of an aborted program: no destructor runs,
// nothing is shown or logged, and the system takes back what the process holds.
[[noreturn]] void FatalError();

}  // namespace vgl
