#include "Common/tray_log.h"

#include <atomic>
#include <string_view>

#include "Common/log_stream.h"
#include "Common/wide_format.h"
#include "platform/owned.h"

namespace vgl {

using platform::Os;

platform::ProcessWideValue<std::int32_t> g_bTrayLogEnabled;
platform::ProcessWide<PathText> g_szTrayLogPath;
platform::ProcessWideValue<CLogStream*> g_pTrayLogFile;

namespace {

bool SwitchIsOn() {
  platform::OwnedKey key;
  if (Os().registry.RegOpenKeyExW(platform::HKEY_CURRENT_USER, u"SOFTWARE\\KAVRO\\VGL3",
                                  platform::KEY_READ, key.Out()) != platform::ERROR_SUCCESS) {
    return false;
  }
  // Exactly four bytes, of whatever type: who sets the switch by hand may well choose another one.
  std::uint32_t number = 0;
  std::uint32_t bytes = sizeof number;
  return Os().registry.RegQueryValueExW(key.get(), u"K_QTR", nullptr, &number, &bytes) ==
             platform::ERROR_SUCCESS &&
         bytes == sizeof number && number != 0;
}

// A utility's thread writes lines as well, maybe at the same time: then the last one counts.
void KeepOpenStream(CLogStream* stream) { std::atomic_ref(g_pTrayLogFile.get()).store(stream); }

std::int32_t AppendLine(std::u16string_view body) {
  CLogStream stream;
  if (!stream.Open(g_szTrayLogPath.get().c_str(), CLogStream::Sharing::Everybody)) return 0;
  KeepOpenStream(&stream);
  stream.Write(WideFormat(u"%04X;%s%s", Os().process.GetCurrentProcessId(),
                          TickColumn(Os().system.GetTickCount()), body));
  stream.Close();
  KeepOpenStream(nullptr);
  return 1;
}

}  // namespace

std::u16string TrayLogPath() { return VglLogPath(u"K_QD41TR.LOG"); }

std::int32_t TrayLogInit(const char16_t* path) {
  g_bTrayLogEnabled = 0;
  g_szTrayLogPath.get().Clear();
  g_pTrayLogFile = nullptr;
  if (path == nullptr || *path == u'\0' || !g_szTrayLogPath.get().Assign(path)) return 0;
  g_bTrayLogEnabled = SwitchIsOn() ? 1 : 0;
  return g_bTrayLogEnabled;
}

std::int32_t TrayLogText(const char16_t* text) {
  if (g_bTrayLogEnabled == 0 || text == nullptr) return 0;
  return AppendLine(WideFormat(u"%s\n", text));
}

std::int32_t TrayLogPair(const char16_t* name, const char16_t* value) {
  if (g_bTrayLogEnabled == 0 || name == nullptr || value == nullptr) return 0;
  return AppendLine(WideFormat(u"%s : %s\n", name, value));
}

std::int32_t TrayLogInt(const char16_t* name, std::int32_t number) {
  if (g_bTrayLogEnabled == 0 || name == nullptr) return 0;
  return AppendLine(WideFormat(u"%s : %d\n", name, number));
}

void TrayLogCloseStray() {
  CLogStream* const stray = g_pTrayLogFile;
  if (stray == nullptr) return;
  g_pTrayLogFile = nullptr;
  stray->Close();
}

}  // namespace vgl
