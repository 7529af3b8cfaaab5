#include "desk/run_helper.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Common/text_conversion.h"
#include "Common/wide_format.h"
#include "app/option_walker.h"
#include "app/param_file.h"
#include "platform/owned.h"

namespace desk {

using namespace platform;

namespace {

// The value of an option's last appearance; nothing when the text hasn't that option.
std::optional<std::u16string> ValueOf(std::u16string_view text, std::u16string_view name) {
  std::optional<std::u16string> found;
  vgl::COptionWalker walker(text);
  while (const std::optional<vgl::SeenOption> option = walker.Next()) {
    const std::optional<std::u16string_view> value = walker.Value();
    if (!value) break;
    if (vgl::EqualsIgnoringAsciiCase(option->name, name)) found = *value;
  }
  return found;
}

std::u16string LineOf(std::u16string_view text) {
  return vgl::WideFormat(u"%s window: printer \"%s\", port \"%s\", model \"%s\"\n",
                         ValueOf(text, u"E") ? u"preferences" : u"status",
                         ValueOf(text, u"P").value_or(u""), ValueOf(text, u"O").value_or(u""),
                         ValueOf(text, u"M").value_or(u""));
}

bool WriteLine(const std::u16string& line) {
  const OwnedFile log(Os().files.CreateFileW(kRunHelperLog, FILE_APPEND_DATA,
                                             FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_ALWAYS,
                                             FILE_ATTRIBUTE_NORMAL));
  const std::string bytes = vgl::Utf8FromText(line);
  std::uint32_t written = 0;
  return log &&
         Os().files.WriteFile(log.get(), bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                              &written) &&
         written == bytes.size();
}

}  // namespace

std::uint32_t RunHelperMain(const char16_t* commandLine) {
  std::optional<vgl::ParamFile> file =
      vgl::ReadParamFile(ValueOf(commandLine, u"FU").value_or(u""));
  const std::u16string line =
      file ? LineOf(file->text) : vgl::WideFormat(u"no parameter file: %s\n", commandLine);
  const bool hasFile = file.has_value();
  if (file) vgl::DeleteAfterUse(*std::move(file));
  if (!WriteLine(line)) return 2;
  return hasFile ? 0 : 1;
}

}  // namespace desk
