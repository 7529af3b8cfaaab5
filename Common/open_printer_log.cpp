#include "Common/open_printer_log.h"

#include "Common/fixed_text.h"
#include "Common/log_stream.h"
#include "platform/platform.h"

namespace vgl {

using platform::Os;

namespace {

std::u16string LogPath() {
  std::u16string path = CommonDataFolder(true).value_or(u"");
  if (path.empty()) return path;
  path += u"\\KAVRO\\KVOPENPRINTER.log";
  return path;
}

// The program's file name, empty when its path tells none.
std::u16string ModuleName() {
  PathText path;
  if (Os().modules.GetModuleFileNameW(platform::HMODULE{}, path.buffer(), PathText::capacity()) ==
      0) {
    return {};
  }
  const std::size_t backslash = path.view().rfind(u'\\');
  if (backslash == std::u16string_view::npos) return {};
  return std::u16string(path.view().substr(backslash + 1));
}

// "%08ld" shows a number with its sign, as the suite's other programs do.
std::u16string LineHeader() {
  platform::LocalTime now;
  Os().system.GetLocalTime(&now);
  const auto processId = Os().process.GetCurrentProcessId();
  const auto threadId = Os().process.GetCurrentThreadId();
  return WideFormat(u"%04d/%02d/%02d %02d:%02d:%02d PrcID=%08ld ThrID=%08ld MName=%s: ", now.year,
                    now.month, now.day, now.hour, now.minute, now.second, processId, threadId,
                    ModuleName());
}

}  // namespace

CKvOpenPrinterLog::CKvOpenPrinterLog() : m_csPath(LogPath()) {
  if (m_csPath.empty()) return;
  const std::uint32_t attributes = Os().files.GetFileAttributesW(m_csPath.c_str());
  m_bEnabled = attributes != platform::INVALID_FILE_ATTRIBUTES ? 1 : 0;
}

void CKvOpenPrinterLog::PrintText(std::u16string_view text) const {
  // The time is taken before the wait: it is that of the opening, not of the writing.
  std::u16string line = LineHeader();
  line += text;
  // The name is spelled as the first program of the suite spelled it; all must use the same one.
  const CLogMutex mutex(u"Global\\KvOpnePrinterLogMutex");
  if (!mutex) return;
  CLogStream stream;
  if (stream.Open(m_csPath.c_str(), CLogStream::Sharing::DenyWriters)) stream.Write(line);
}

}  // namespace vgl
