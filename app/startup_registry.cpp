// The Run values by which Windows starts an agent at logon.
#include <optional>

#include "Common/REGISTRY.h"
#include "Common/target_records.h"
#include "Common/temp_file.h"
#include "Common/tray_log.h"
#include "app/tray_app.h"

namespace vgl {

using namespace platform;

namespace {

constexpr char16_t kRunKey[] = u"software\\Microsoft\\Windows\\CurrentVersion\\Run";

// The search ends at a value with empty data. EnumValue gives empty data, too, for those that have
// more than 256 characters or stand under a name of more than 255: it ends there as well, and what
// lies behind isn't looked at.
void DeleteValueHolding(CRegistry& run, std::u16string_view fileName) {
  std::u16string name;
  std::u16string data = run.EnumValue(0, name);
  for (std::uint32_t index = 0; !data.empty(); data = run.EnumValue(++index, name)) {
    if (data.find(fileName) == std::u16string::npos) continue;
    run.DeleteValue(name.c_str());
    return;
  }
}

// The parameter file that an agent's command line names: what stands in quotes behind its "/F".
std::optional<std::u16string_view> ParamFileOf(std::u16string_view commandLine) {
  const auto npos = std::u16string_view::npos;
  std::size_t option = commandLine.find(u"/F");
  // Where that isn't, this can't be either; the suite looks all the same.
  if (option == npos) option = commandLine.find(u"/FU");
  if (option == npos) return std::nullopt;
  const std::size_t open = commandLine.find(u'"', option);
  if (open == npos) return std::nullopt;
  const std::size_t close = commandLine.find(u'"', open + 1);
  if (close == npos) return std::nullopt;
  return commandLine.substr(open + 1, close - open - 1);
}

void DeleteValuesOf(CRegistry& run, const char16_t* name, bool isPort) {
  run.DeleteValue(name);
  PathText record;
  FindTargetKey(name, isPort, record);
  const std::u16string valueName = RunValueNameOfRecord(record.view());
  if (!valueName.empty()) run.DeleteValue(valueName.c_str());
}

}  // namespace

void CTrayIconApp::DeleteStartupReg(const char16_t* printerName, const char16_t* fileName) {
  TrayLogText(u"CTrayIconApp::DeleteStartupReg");
  CRegistry run(HKEY_CURRENT_USER, kRunKey, false, KEY_ALL_ACCESS);
  if (run.m_IsOpen == 0) return;
  if (*printerName != u'\0')
    DeleteValuesOf(run, printerName, false);
  else if (*fileName != u'\0')
    DeleteValueHolding(run, fileName);
}

void CTrayIconApp::DeleteRunValues(const char16_t* name, bool isPort) {
  CRegistry run(HKEY_CURRENT_USER, kRunKey, false, KEY_ALL_ACCESS);
  if (run.m_IsOpen != 0) DeleteValuesOf(run, name, isPort);
}

void CTrayIconApp::DelOldIconRegFile(const char16_t* name) {
  TrayLogText(u"CTrayIconApp::DelOldIconRegFile");
  TrayLogPair(u"SubKey", kRunKey);
  TrayLogPair(u"Entry", name);
  constexpr std::uint32_t kMostBytes = PathText::capacity() * sizeof(char16_t);
  const CRegistry run(HKEY_CURRENT_USER, kRunKey, true, KEY_ALL_ACCESS);
  if (run.m_IsOpen == 0) return;
  const std::u16string commandLine = run.GetString(name, {}, kMostBytes);
  TrayLogPair(u"csParam", commandLine.c_str());
  const std::optional<std::u16string_view> named = ParamFileOf(commandLine);
  if (!named) return;
  const std::u16string path(*named);
  TrayLogPair(u"Path", path.c_str());
  DeleteIfThere(path);
}

}  // namespace vgl
