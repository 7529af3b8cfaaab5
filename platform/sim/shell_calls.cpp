#include "platform/sim/shell_calls.h"

#include "platform/sim/machine.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

std::int32_t ShellCalls::SHGetSpecialFolderPathW(char16_t* path, std::int32_t folder, bool create) {
  Call call("SHGetSpecialFolderPathW");
  const std::u16string& known = m_machine.system().commonAppData;
  if (call.Failure(ERROR_FILE_NOT_FOUND)) return 0;
  if (folder != CSIDL_COMMON_APPDATA || known.empty()) return 0;
  if (create) m_machine.files().MakeFolder(known);
  if (!m_machine.files().Exists(known)) return 0;
  CopyCut(known, path, MAX_PATH);
  return 1;
}

std::int64_t ShellCalls::ShellExecuteW(HWND, const char16_t* verb, const char16_t* file,
                                       const char16_t* parameters, const char16_t* directory,
                                       std::int32_t show) {
  Call call("ShellExecuteW");
  if (const std::int32_t error = call.Failure(ERROR_NOT_ENOUGH_MEMORY)) return error;
  m_machine.Trace(u"shell: " + std::u16string(View(verb)) + u" " + std::u16string(View(file)) +
                  u" " + std::u16string(View(parameters)));
  return m_machine.programs().Execute(call.process(),
                                      {.verb = std::u16string(View(verb)),
                                       .file = std::u16string(View(file)),
                                       .parameters = std::u16string(View(parameters)),
                                       .directory = std::u16string(View(directory)),
                                       .show = show});
}

bool ShellCalls::Shell_NotifyIconW(std::uint32_t message, const NotifyIconData& data) {
  Call call("Shell_NotifyIconW", message == NIM_DELETE ? Call::kRelease : Call::kOrdinary);
  if (call.Inert()) return message == NIM_DELETE;
  if (call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return false;
  return m_machine.tray().Notify(call.process(), message, data);
}

}  // namespace sim
