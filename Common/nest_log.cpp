#include "Common/nest_log.h"

#include <algorithm>

#include "Common/log_stream.h"
#include "Common/text_conversion.h"
#include "platform/owned.h"

namespace vgl {

using platform::Os;

platform::ProcessWideValue<std::int32_t> g_bNestLogEnabled;
platform::ProcessWide<std::array<std::uint32_t, 1>> g_nNestDepth;

namespace {

void WriteText(const platform::OwnedFile& file, std::u16string_view text) {
  const std::string bytes = Utf16LeFromText(text);
  std::uint32_t written = 0;
  Os().files.WriteFile(file.get(), bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                       &written);
}

// The file, marked if it is new, ready for writing at its end. Empty when that can't be had.
platform::OwnedFile OpenAtEnd(const char16_t* path) {
  platform::OwnedFile file(Os().files.CreateFileW(
      path, platform::GENERIC_READ | platform::GENERIC_WRITE, platform::FILE_SHARE_READ,
      platform::OPEN_ALWAYS, platform::FILE_ATTRIBUTE_NORMAL));
  if (!file) return file;
  if (Os().files.GetFileSize(file.get(), nullptr) == 0) {
    WriteText(file, u"\uFEFF");  // the byte-order mark
  }
  if (Os().files.SetFilePointer(file.get(), 0, platform::FILE_END) ==
      platform::INVALID_SET_FILE_POINTER) {
    file.Reset();
  }
  return file;
}

// A scope that was made while the log was off, and ended while it was on, takes the counter below
// zero; lines aren't indented then.
std::u16string Indentation(std::uint32_t depth) {
  const auto levels = std::max(static_cast<std::int32_t>(depth), 0);
  return std::u16string(static_cast<std::size_t>(levels) * 2, u' ');
}

}  // namespace

void SetNestLogEnabled(std::int32_t value) { g_bNestLogEnabled = value; }

CNestLog::CNestLog(const char16_t* text) {
  if (g_bNestLogEnabled == 0) return;
  m_csPath = VglLogPath(u"VGL4.LOG");
  m_uProcessId = Os().process.GetCurrentProcessId();
  m_uThreadId = Os().process.GetCurrentThreadId();
  Print(u"\n");
  Print(u"---\n");
  if (text != nullptr) Print(u"%s\n", text);
  ++Depth();
}

CNestLog::~CNestLog() {
  if (g_bNestLogEnabled != 0) --Depth();
}

void CNestLog::PrintText(std::u16string_view text) const {
  const CLogMutex mutex(u"Global\\VGLNestLog");
  if (!mutex) return;
  const platform::OwnedFile file = OpenAtEnd(m_csPath.c_str());
  if (!file) return;
  std::u16string line = WideFormat(u"%04X;%04X;", m_uProcessId, m_uThreadId);
  line += TickColumn(Os().system.GetTickCount());
  line += Indentation(Depth());
  line += text;
  WriteText(file, line);
}

void CNestLog::AppendRawText(const char16_t* path, std::u16string_view text) {
  const platform::OwnedFile file = OpenAtEnd(path);
  if (file) WriteText(file, text);
}

}  // namespace vgl
