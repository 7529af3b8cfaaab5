// The Run values by which Windows starts an agent at logon.
#include <algorithm>
#include <vector>

#include "Common/target_records.h"
#include "Common/tray_log.h"
#include "app/tray_app.h"
#include "platform/owned.h"

namespace vgl {

using namespace platform;

namespace {

constexpr char16_t kRunKey[] = u"software\\Microsoft\\Windows\\CurrentVersion\\Run";

struct RunValue {
  std::u16string name;
  std::u16string text;
};

// The value at `index`; one with empty text behind the last, and where it can't be read.
RunValue ReadRunValue(HKEY run, std::uint32_t index) {
  constexpr std::uint32_t kLongestName = 16384;
  std::vector<char16_t> name(kLongestName);
  std::vector<char16_t> data(MAX_PATH);
  for (;;) {
    auto chars = static_cast<std::uint32_t>(name.size());
    auto bytes = static_cast<std::uint32_t>((data.size() - 1) * sizeof(char16_t));
    const std::uint32_t room = bytes;
    const std::int32_t error =
        Os().registry.RegEnumValueW(run, index, name.data(), &chars, nullptr, data.data(), &bytes);
    if (error == ERROR_MORE_DATA && bytes > room) {
      data.assign(bytes / sizeof(char16_t) + 2, u'\0');
      continue;
    }
    if (error != ERROR_SUCCESS) return {};
    // The text may be stored without its terminator, or with half a character at its end.
    const std::u16string_view stored(data.data(), (bytes + 1) / sizeof(char16_t));
    return {std::u16string(name.data(), chars),
            std::u16string(stored.substr(0, stored.find(u'\0')))};
  }
}

void DeleteValueHolding(HKEY run, std::u16string_view fileName) {
  for (std::uint32_t index = 0;; ++index) {
    const RunValue value = ReadRunValue(run, index);
    if (value.text.empty()) return;
    if (value.text.find(fileName) == std::u16string::npos) continue;
    Os().registry.RegDeleteValueW(run, value.name.c_str());
    return;
  }
}

// An agent's value is named either after its printer or after the printer's record.
void DeleteValuesOfPrinter(HKEY run, const char16_t* printerName) {
  Os().registry.RegDeleteValueW(run, printerName);
  PathText record;
  FindTargetKey(printerName, false, record);
  const std::u16string valueName = RunValueNameOfRecord(record.view());
  if (!valueName.empty()) Os().registry.RegDeleteValueW(run, valueName.c_str());
}

}  // namespace

void CTrayIconApp::DeleteStartupReg(const char16_t* printerName, const char16_t* fileName) {
  TrayLogText(u"CTrayIconApp::DeleteStartupReg");
  OwnedKey run;
  if (Os().registry.RegOpenKeyExW(HKEY_CURRENT_USER, kRunKey, KEY_ALL_ACCESS, run.Out()) !=
      ERROR_SUCCESS)
    return;
  if (*printerName != u'\0')
    DeleteValuesOfPrinter(run.get(), printerName);
  else if (*fileName != u'\0')
    DeleteValueHolding(run.get(), fileName);
}

}  // namespace vgl
