#include "desk/program_parts.h"

#include "Common/text_conversion.h"
#include "app/option_walker.h"
#include "platform/owned.h"

namespace desk {

using namespace platform;

std::optional<std::u16string> OptionValue(std::u16string_view text, std::u16string_view name) {
  std::optional<std::u16string> found;
  vgl::COptionWalker walker(text);
  while (const std::optional<vgl::SeenOption> option = walker.Next()) {
    const std::optional<std::u16string_view> value = walker.Value();
    if (!value) break;
    if (vgl::EqualsIgnoringAsciiCase(option->name, name)) found = *value;
  }
  return found;
}

bool AppendToLog(const char16_t* path, std::u16string_view text) {
  const OwnedFile log(Os().files.CreateFileW(path, FILE_APPEND_DATA,
                                             FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_ALWAYS,
                                             FILE_ATTRIBUTE_NORMAL));
  const std::string bytes = vgl::Utf8FromText(text);
  std::uint32_t written = 0;
  return log &&
         Os().files.WriteFile(log.get(), bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                              &written) &&
         written == bytes.size();
}

}  // namespace desk
