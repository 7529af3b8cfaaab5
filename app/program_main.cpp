// The agent as a program of its own.
#include "platform/program_main.h"

#include "app/tray_app.h"

std::int32_t platform::ProgramMain(const char16_t* commandLine) {
  return vgl::TrayAgentMain(commandLine);
}
