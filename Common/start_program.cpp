#include "Common/start_program.h"

#include <string>

#include "Common/tray_log.h"
#include "platform/platform.h"

namespace vgl {

using namespace platform;

int StartExe(const char16_t* commandLine) {
  // The system may write into it.
  std::u16string text(commandLine == nullptr ? u"" : commandLine);
  TrayLogPair(u"CMainFrame::StartExe : lpszCmdLine", text.c_str());
  ProcessInformation started;
  if (!Os().process.CreateProcessW(text.data(), &started)) return 0;
  Os().objects.CloseHandle(started.thread);
  Os().objects.CloseHandle(started.process);
  return 1;
}

}  // namespace vgl
