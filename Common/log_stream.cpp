#include "Common/log_stream.h"

#include <algorithm>
#include <array>

#include "Common/wide_format.h"

namespace vgl {

using platform::Os;

namespace {

// No system code page needs more for one UTF-16 unit.
constexpr std::size_t kBytesPerCharacter = 4;

std::u16string WithCarriageReturns(std::u16string_view text) {
  std::u16string out;
  out.reserve(text.size() + 2);  // nearly every line has its one newline at the end
  for (const char16_t character : text) {
    if (character == u'\n') out += u'\r';
    out += character;
  }
  return out;
}

std::string InSystemCodePage(std::u16string_view text) {
  if (text.size() > INT32_MAX / kBytesPerCharacter) return {};
  std::string bytes(text.size() * kBytesPerCharacter, '\0');
  const std::int32_t written = Os().nls.WideCharToMultiByte(
      platform::CP_ACP, text.data(), static_cast<std::int32_t>(text.size()), bytes.data(),
      static_cast<std::int32_t>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(std::max(written, 0)));
  return bytes;
}

}  // namespace

std::optional<std::u16string> CommonDataFolder(bool create) {
  // One more than the system fills. The suite's programs agree on this size: a result that doesn't
  // end within it is none.
  std::array<char16_t, platform::MAX_PATH + 1> folder{};
  if (Os().shell.SHGetSpecialFolderPathW(folder.data(), platform::CSIDL_COMMON_APPDATA, create) !=
      1) {
    return std::nullopt;
  }
  const auto end = std::find(folder.begin(), folder.end(), u'\0');
  if (end == folder.end()) return std::nullopt;
  return std::u16string(folder.begin(), end);
}

std::u16string VglLogPath(std::u16string_view fileName) {
  const std::optional<std::u16string> folder = CommonDataFolder(false);
  std::u16string path = folder ? *folder + u"\\KAVRO\\VGL3\\" : u"C:\\";
  path += fileName;
  return path;
}

std::u16string TickColumn(std::uint32_t ticks) {
  return WideFormat(u"%5u:%02u.%03u; ", ticks / 60000, ticks / 1000 % 60, ticks % 1000);
}

bool CLogStream::Open(const char16_t* path, Sharing sharing) {
  Close();
  const std::uint32_t share = sharing == Sharing::DenyWriters
                                  ? platform::FILE_SHARE_READ
                                  : platform::FILE_SHARE_READ | platform::FILE_SHARE_WRITE;
  // Without the right to write anywhere else, the system itself puts each write at the end.
  m_file = platform::OwnedFile(
      Os().files.CreateFileW(path, platform::GENERIC_READ | platform::FILE_APPEND_DATA, share,
                             platform::OPEN_ALWAYS, platform::FILE_ATTRIBUTE_NORMAL));
  return IsOpen();
}

void CLogStream::Write(std::u16string_view text) {
  if (!IsOpen() || text.empty()) return;
  const std::string bytes = InSystemCodePage(WithCarriageReturns(text));
  WriteBytes(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

void CLogStream::WriteBytes(const void* data, std::uint32_t bytes) {
  if (!IsOpen() || bytes == 0) return;
  std::uint32_t written = 0;
  Os().files.WriteFile(m_file.get(), data, bytes, &written);
}

CLogMutex::CLogMutex(const char16_t* name)
    : m_mutex(Os().objects.CreateMutexW(nullptr, false, name)) {
  if (m_mutex) Os().objects.WaitForSingleObject(m_mutex.get(), platform::INFINITE);
}

CLogMutex::~CLogMutex() {
  if (m_mutex) Os().objects.ReleaseMutex(m_mutex.get());
}

}  // namespace vgl
