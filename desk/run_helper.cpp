#include "desk/run_helper.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Common/wide_format.h"
#include "app/param_file.h"
#include "desk/program_parts.h"

namespace desk {

namespace {

std::u16string LineOf(std::u16string_view text) {
  return vgl::WideFormat(
      u"%s window: printer \"%s\", port \"%s\", model \"%s\"\n",
      OptionValue(text, u"E") ? u"preferences" : u"status", OptionValue(text, u"P").value_or(u""),
      OptionValue(text, u"O").value_or(u""), OptionValue(text, u"M").value_or(u""));
}

}  // namespace

std::uint32_t RunHelperMain(const char16_t* commandLine) {
  std::optional<vgl::ParamFile> file =
      vgl::ReadParamFile(OptionValue(commandLine, u"FU").value_or(u""));
  const std::u16string line =
      file ? LineOf(file->text) : vgl::WideFormat(u"no parameter file: %s\n", commandLine);
  const bool hasFile = file.has_value();
  if (file) vgl::DeleteAfterUse(*std::move(file));
  if (!AppendToLog(kRunHelperLog, line)) return 2;
  return hasFile ? 0 : 1;
}

}  // namespace desk
