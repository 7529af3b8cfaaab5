#include "Common/target_records.h"

#include <limits>

#include "Common/path_lookup.h"
#include "Common/printer_library_exports.h"
#include "Common/printer_lookup.h"
#include "Common/target_sweep.h"
#include "Common/text_conversion.h"
#include "Common/wide_format.h"
#include "platform/owned.h"

namespace vgl {

using namespace platform;

namespace {

const char16_t* BranchPath(bool isPort) { return isPort ? kPortBranch : kPrinterBranch; }

bool RecordIsOf(HKEY branch, const char16_t* subKey, const char16_t* name) {
  OwnedKey record;
  TargetName stored;
  return Os().registry.RegOpenKeyExW(branch, subKey, KEY_READ, record.Out()) == ERROR_SUCCESS &&
         ReadTargetName(record.get(), stored) && Os().nls.lstrcmpiW(stored.c_str(), name) == 0;
}

// Makes the record of the lowest number that nobody has: the registry tells each process for itself
// whether the key is new, so two that add at once take different numbers. Results of AddTargetKey.
int ClaimNumber(const char16_t* branchPath, PathText& path, OwnedKey& record) {
  for (std::int32_t number = 0; number != std::numeric_limits<std::int32_t>::max(); ++number) {
    if (!FormatTo(path, u"%s\\P%016d", branchPath, number)) return 6;
    std::uint32_t disposition = 0;
    if (Os().registry.RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), KEY_ALL_ACCESS, record.Out(),
                                      &disposition) != ERROR_SUCCESS)
      return 3;
    if (disposition == REG_CREATED_NEW_KEY) return 0;
  }
  return 1;
}

void WriteNumber(HKEY record, const char16_t* name, std::uint32_t number) {
  Os().registry.RegSetValueExW(record, name, REG_DWORD, &number, sizeof number);
}

bool SettingIsZero(HKEY record) {
  std::uint32_t setting = 0;
  std::uint32_t bytes = sizeof setting;
  return Os().registry.RegQueryValueExW(record, u"Setting", nullptr, &setting, &bytes) ==
             ERROR_SUCCESS &&
         setting == 0;
}

// Has the driver set's printer library write the model's settings into the printer's new record.
// Results of CreateTargetRecord.
int FillRecord(const char16_t* printer, const char16_t* port, const char16_t* modelId) {
  std::u16string driver;
  GetDriverName(printer, driver);
  PathText path;
  if (GetPrnDllPath(&path, driver.c_str(), modelId, printer) == 0) return 4;
  const OwnedModule library(Os().modules.LoadLibraryW(path.c_str()));
  if (!library) return 4;
  const auto setDefaults = reinterpret_cast<PrSetRegDefaultValueFunction>(
      Os().modules.GetProcAddress(library.get(), kPrSetRegDefaultValue));
  if (setDefaults == nullptr) return 5;
  return setDefaults(printer, driver.c_str(), port, modelId, 0, 0, 0);
}

}  // namespace

bool ReadTargetName(HKEY record, TargetName& outName) {
  outName = TargetName();
  std::uint32_t bytes = TargetName::capacity() * sizeof(char16_t);
  return Os().registry.RegQueryValueExW(record, u"Name", nullptr, outName.buffer(), &bytes) ==
             ERROR_SUCCESS &&
         outName.length() < TargetName::capacity();
}

int FindTargetKey(const char16_t* name, bool isPort, PathText& outKey) {
  outKey.Clear();
  const char16_t* branchPath = BranchPath(isPort);
  OwnedKey branch;
  if (Os().registry.RegOpenKeyExW(HKEY_CURRENT_USER, branchPath, KEY_READ, branch.Out()) !=
      ERROR_SUCCESS)
    return 4;
  for (std::uint32_t index = 0;; ++index) {
    PathText subKey;
    std::uint32_t chars = PathText::capacity();
    Os().registry.RegEnumKeyExW(branch.get(), index, subKey.buffer(), &chars, nullptr, nullptr);
    if (subKey.empty()) return 1;
    if (RecordIsOf(branch.get(), subKey.c_str(), OrEmpty(name)))
      return FormatTo(outKey, u"%s\\%s", branchPath, subKey) ? 0 : 1;
  }
}

int EnsureTargetRecord(const char16_t* printer, const char16_t* port, const char16_t* modelId,
                       bool& outIsPort, PathText& outKey) {
  outIsPort = *OrEmpty(printer) == u'\0' && *OrEmpty(port) != u'\0';
  if (FindTargetKey(outIsPort ? port : printer, outIsPort, outKey) == 0) return 0;
  return CreateTargetRecord(printer, port, modelId, outIsPort, outKey);
}

int CreateTargetRecord(const char16_t* printer, const char16_t* port, const char16_t* modelId,
                       bool isPort, PathText& outKey) {
  PurgeTargetRecords();
  if (AddTargetKey(isPort ? port : printer, isPort, outKey) != 0) return 1;
  return FillRecord(OrEmpty(printer), OrEmpty(port), OrEmpty(modelId));
}

int AddTargetKey(const char16_t* name, bool isPort, PathText& outKey) {
  outKey.Clear();
  OwnedKey branch;
  if (Os().registry.RegCreateKeyExW(HKEY_CURRENT_USER, BranchPath(isPort), KEY_ALL_ACCESS,
                                    branch.Out(), nullptr) != ERROR_SUCCESS)
    return 4;
  PathText path;
  OwnedKey record;
  if (const int failure = ClaimNumber(BranchPath(isPort), path, record)) return failure;

  const std::u16string_view text = OrEmpty(name);
  const auto bytes = static_cast<std::uint32_t>((text.size() + 1) * sizeof(char16_t));
  if (Os().registry.RegSetValueExW(record.get(), u"Name", REG_SZ, text.data(), bytes) !=
      ERROR_SUCCESS)
    return 2;
  // Other programs of the suite give 5 for a path that their caller has no room for; here both
  // fields are of one size.
  outKey = path;
  WriteNumber(record.get(), u"Setting", 0);
  WriteNumber(record.get(), u"Timer", 10);
  return SettingIsZero(record.get()) ? 0 : 1;
}

std::u16string RunValueNameOfRecord(std::u16string_view recordPath) {
  const std::u16string_view branch(kDataBranch);
  std::u16string name(recordPath);
  for (std::size_t at = name.find(branch); at != std::u16string::npos; at = name.find(branch, at))
    name.erase(at, branch.size());
  return name.empty() ? name : name.substr(1);
}

}  // namespace vgl
