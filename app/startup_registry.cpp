// The Run values by which Windows starts an agent at logon.
#include "Common/REGISTRY.h"
#include "Common/target_records.h"
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

// An agent's value is named either after its printer or after the printer's record.
void DeleteValuesOfPrinter(CRegistry& run, const char16_t* printerName) {
  run.DeleteValue(printerName);
  PathText record;
  FindTargetKey(printerName, false, record);
  const std::u16string valueName = RunValueNameOfRecord(record.view());
  if (!valueName.empty()) run.DeleteValue(valueName.c_str());
}

}  // namespace

void CTrayIconApp::DeleteStartupReg(const char16_t* printerName, const char16_t* fileName) {
  TrayLogText(u"CTrayIconApp::DeleteStartupReg");
  CRegistry run(HKEY_CURRENT_USER, kRunKey, false, KEY_ALL_ACCESS);
  if (run.m_IsOpen == 0) return;
  if (*printerName != u'\0')
    DeleteValuesOfPrinter(run, printerName);
  else if (*fileName != u'\0')
    DeleteValueHolding(run, fileName);
}

}  // namespace vgl
