// The agent as a program of its own.
#include "platform/program_main.h"

#include <exception>

#include "Common/fatal_error.h"
#include "app/tray_app.h"

std::int32_t platform::ProgramMain(const char16_t* commandLine) {
  // What is thrown where nobody expects it, as without memory, ends the process at once, also from
  // within a message.
  std::set_terminate(vgl::FatalError);
  return vgl::TrayAgentMain(commandLine);
}
