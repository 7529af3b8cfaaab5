// What a backend's entry function runs: the program itself, which defines this.
#pragma once

#include <cstdint>

namespace platform {

// `commandLine` is the text behind the program's name, never null. The result is the exit code.
std::int32_t ProgramMain(const char16_t* commandLine);

}  // namespace platform
