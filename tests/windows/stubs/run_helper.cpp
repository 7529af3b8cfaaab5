// The stand-in for the suite's run helper as a program of its own.
#include "desk/run_helper.h"

#include "platform/program_main.h"

std::int32_t platform::ProgramMain(const char16_t* commandLine) {
  return static_cast<std::int32_t>(desk::RunHelperMain(commandLine));
}
