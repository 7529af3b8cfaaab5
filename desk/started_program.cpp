#include "desk/started_program.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Common/fixed_text.h"
#include "Common/wide_format.h"
#include "app/param_file.h"
#include "desk/program_parts.h"
#include "platform/platform.h"

namespace desk {

using namespace platform;

namespace {

std::u16string OwnName() {
  vgl::PathText path;
  Os().modules.GetModuleFileNameW(HMODULE{}, path.buffer(), vgl::PathText::capacity());
  const std::u16string_view whole = path.view();
  return std::u16string(whole.substr(whole.rfind(u'\\') + 1));
}

// What a parameter file holds, a line each, indented.
std::u16string LinesOf(const vgl::ParamFile& file) {
  std::u16string lines = vgl::WideFormat(u"  parameter file of %u bytes:\n",
                                         Os().files.GetFileSize(file.file.get(), nullptr));
  std::u16string_view rest = file.text;
  while (!rest.empty()) {
    const std::size_t end = rest.find(u'\n');
    lines += u"  " + std::u16string(rest.substr(0, end)) + u'\n';
    rest.remove_prefix(end == std::u16string_view::npos ? rest.size() : end + 1);
  }
  return lines;
}

}  // namespace

std::uint32_t StartedProgramMain(const char16_t* commandLine) {
  const std::u16string given = commandLine;
  std::u16string text = OwnName() + (given.empty() ? u"" : u" ") + given + u'\n';
  bool isMissing = false;
  if (const std::optional<std::u16string> path = OptionValue(given, u"FU")) {
    std::optional<vgl::ParamFile> file = vgl::ReadParamFile(*path);
    isMissing = !file;
    text += file ? LinesOf(*file) : u"  no parameter file\n";
    if (file) vgl::DeleteAfterUse(*std::move(file));
  }
  if (!AppendToLog(kProgramsLog, text)) return 2;
  return isMissing ? 1 : 0;
}

}  // namespace desk
