#include "menu/command_text.h"

#include <algorithm>
#include <utility>

#include "Common/wide_format.h"
#include "profile/blanks.h"

namespace vgl {

namespace {

constexpr char16_t kBlank = u' ';

// Not the formatter: it would take any directive that it knows, and "%d" would use the folder up.
// The text is data of the driver set, and only the one directive is meant.
std::u16string PutFolder(std::u16string_view text, std::u16string_view folder) {
  std::u16string out;
  bool isPut = false;
  while (!text.empty()) {
    const bool isFolder = !isPut && text.starts_with(u"%s");
    if (isFolder)
      out.append(folder);
    else
      out.push_back(text.front());
    isPut = isPut || isFolder;
    text.remove_prefix(isFolder || text.starts_with(u"%%") ? 2 : 1);
  }
  return out;
}

}  // namespace

bool HoldsMarker(std::u16string_view text, std::u16string_view marker) {
  return text.find(marker) != std::u16string_view::npos;
}

LaunchForm LaunchFormOf(std::u16string_view text) {
  constexpr std::pair<std::u16string_view, LaunchForm> kForms[] = {
      {kMarkerLm, LaunchForm::Lm},
      {kMarkerCissValid, LaunchForm::CissValid},
      {kMarkerDrvUpdate, LaunchForm::DrvUpdate},
      {kMarkerUpPilot, LaunchForm::UpPilot},
  };
  for (const auto& [marker, form] : kForms)
    if (HoldsMarker(text, marker)) return form;
  return text.find(kBlank) == std::u16string_view::npos ? LaunchForm::Program
                                                        : LaunchForm::ParameterFile;
}

std::u16string_view ProgramPart(std::u16string_view text) {
  return text.substr(0, text.find(kBlank));
}

std::u16string_view ArgumentPart(std::u16string_view text) {
  return text.substr(std::min(ProgramPart(text).size() + 1, text.size()));
}

std::u16string LmCommandLine(std::u16string_view text, std::u16string_view printer) {
  return WideFormat(u"%s \"%s\"", ProgramPart(text), printer);
}

std::u16string CissValidCommandLine(std::u16string_view text, std::u16string_view inkChangeName,
                                    std::u16string_view printer) {
  return WideFormat(u"%s%s /P \"%s\"", ProgramPart(text), inkChangeName, printer);
}

std::u16string DrvUpdateCommandLine(std::u16string_view text, std::u16string_view netPilotName,
                                    std::u16string_view printer) {
  return WideFormat(u"%s%s /RUN /MANUAL /P \"%s\"", ProgramPart(text), netPilotName, printer);
}

std::u16string UpPilotCommandLine(std::u16string_view text, std::u16string_view netPilotName,
                                  std::u16string_view printer) {
  return WideFormat(u"%s%s /SETUP /P \"%s\"", ProgramPart(text), netPilotName, printer);
}

std::u16string ParameterFileCommandLine(std::u16string_view text, std::u16string_view filePath) {
  return WideFormat(u"%s /FU \"%s\"", ProgramPart(text), filePath);
}

std::u16string ParameterText(std::u16string_view text, const PrinterIdentity& identity,
                             std::u16string_view port) {
  return WideFormat(u"%s\n/P \"%s\"\n/M \"%s\"\n/D \"%s\"\n/O \"%s\"", ArgumentPart(text),
                    identity.printerName, identity.modelId, identity.driverName, port);
}

ShellCommand SplitPlainCommand(std::u16string_view text) {
  std::size_t end = text.find(u'|');
  std::size_t begin = end + 1;  // of the arguments
  if (end == std::u16string_view::npos) begin = end = std::min(text.find(u'/'), text.size());
  return {std::u16string(Trim(text.substr(0, end))), std::u16string(Trim(text.substr(begin)))};
}

ShellCommand SplitDriverUpdateCommand(std::u16string_view text, std::u16string_view folder) {
  std::u16string program = PutFolder(text, folder);
  const std::size_t slash = program.find(u'/');
  if (slash == std::u16string::npos) return {std::move(program), u""};
  std::u16string arguments = program.substr(slash);
  program.resize(slash);
  program.resize(program.find_last_not_of(kBlank) + 1);  // npos + 1 is 0
  return {std::move(program), std::move(arguments)};
}

}  // namespace vgl
