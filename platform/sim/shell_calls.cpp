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

bool ShellCalls::Shell_NotifyIconW(std::uint32_t message, const NotifyIconData& data) {
  Call call("Shell_NotifyIconW", message == NIM_DELETE ? Call::kRelease : Call::kOrdinary);
  if (call.Inert()) return message == NIM_DELETE;
  if (call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return false;
  return m_machine.tray().Notify(call.process(), message, data);
}

}  // namespace sim
