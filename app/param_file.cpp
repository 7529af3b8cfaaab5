#include "app/param_file.h"

#include <cstddef>
#include <vector>

#include "Common/fixed_text.h"
#include "Common/temp_file.h"
#include "Common/text_conversion.h"

namespace vgl {

using namespace platform;

std::u16string TempFolder() {
  PathText folder;
  const std::uint32_t length = Os().files.GetTempPathW(PathText::capacity(), folder.buffer());
  if (length == 0 || length >= PathText::capacity()) return u".\\";
  return std::u16string(folder.view());
}

std::optional<ParamFile> ReadParamFile(const std::u16string& path) {
  OwnedFile file(Os().files.CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING,
                                        FILE_ATTRIBUTE_TEMPORARY));
  if (!file) return std::nullopt;
  const std::uint32_t size = Os().files.GetFileSize(file.get(), nullptr);
  if (size == INVALID_FILE_SIZE) return std::nullopt;

  std::vector<std::byte> bytes(std::size_t{size} + 2);  // with a terminator
  std::uint32_t read = 0;
  if (!Os().files.ReadFile(file.get(), bytes.data(), size, &read) || read < size)
    return std::nullopt;
  std::u16string text = TextFromUtf16Le(bytes);
  text.resize(text.find(u'\0'));
  return ParamFile{path, std::move(text), std::move(file)};
}

void DeleteAfterUse(ParamFile file) {
  file.file.Reset();
  DeleteIfThere(file.path);
}

bool CanBeRead(const char16_t* path) {
  return static_cast<bool>(
      OwnedFile(Os().files.CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                       OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL)));
}

}  // namespace vgl
