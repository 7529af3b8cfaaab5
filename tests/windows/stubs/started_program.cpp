// The stand-in for the programs that entries of the menu start, as a program of its own.
#include "desk/started_program.h"

#include "platform/program_main.h"

std::int32_t platform::ProgramMain(const char16_t* commandLine) {
  return static_cast<std::int32_t>(desk::StartedProgramMain(commandLine));
}
