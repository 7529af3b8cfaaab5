#include "Common/temp_file.h"

#include <cstddef>
#include <cstdint>
#include <utility>

#include "Common/path_lookup.h"
#include "Common/text_conversion.h"
#include "platform/owned.h"

namespace vgl {

using namespace platform;

std::u16string NewTempFile(const char16_t* prefix) {
  const std::uint32_t room = Os().files.GetTempPathW(0, nullptr);
  if (room == 0) return {};
  std::u16string folder(room, u'\0');
  const std::uint32_t length = Os().files.GetTempPathW(room, folder.data());
  if (length == 0 || length >= room) return {};
  std::u16string path(length + MAX_PATH, u'\0');
  if (Os().files.GetTempFileNameW(folder.c_str(), prefix, 0, path.data()) == 0) return {};
  path.resize(path.find(u'\0'));
  return path;
}

void DeleteIfThere(const std::u16string& path) {
  if (FileExists(path.c_str())) Os().files.DeleteFileW(path.c_str());
}

bool WriteText(HANDLE file, std::u16string_view text) {
  const std::string bytes = Utf16LeFromText(text);
  const auto size = static_cast<std::uint32_t>(bytes.size());
  std::uint32_t written = 0;
  return Os().files.WriteFile(file, bytes.data(), size, &written) && written == size;
}

bool CTempFileHolder::Write(std::u16string_view text) {
  m_csPath.clear();
  std::u16string path = NewTempFile(kTempFilePrefix);
  if (path.empty()) return false;
  std::u16string whole(text);
  whole += u'\0';
  const bool isWritten = [&] {
    const OwnedFile file(Os().files.CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                                                CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL));
    return file && WriteText(file.get(), whole);
  }();
  if (!isWritten) {
    DeleteIfThere(path);
    return false;
  }
  m_csPath = std::move(path);
  return true;
}

}  // namespace vgl
