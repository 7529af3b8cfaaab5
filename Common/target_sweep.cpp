#include "Common/target_sweep.h"

#include <cstdint>

#include "Common/kv_open_printer.h"
#include "Common/printer_level2.h"
#include "Common/target_records.h"
#include "Common/wide_format.h"
#include "platform/owned.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::uint32_t kOnItsWayOut = 255;

bool OpenUserKey(const char16_t* path, OwnedKey& key) {
  return Os().registry.RegOpenKeyExW(HKEY_CURRENT_USER, path, KEY_ALL_ACCESS, key.Out()) ==
         ERROR_SUCCESS;
}

// The name of the sub-key at `index`, empty when the registry doesn't give one.
PathText SubKeyAt(HKEY key, std::uint32_t index) {
  PathText name;
  std::uint32_t chars = PathText::capacity();
  if (Os().registry.RegEnumKeyExW(key, index, name.buffer(), &chars, nullptr, nullptr) !=
      ERROR_SUCCESS)
    name.Clear();
  return name;
}

// Whether the spooler knows of a driver and a print processor. It counts as knowing when it doesn't
// tell at all.
bool IsUsable(HPRINTER printer) {
  const CPrinterLevel2 told(printer);
  return told.info() == nullptr ||
         (told.info()->driverName != nullptr && told.info()->printProcessor != nullptr);
}

bool PrinterLives(const char16_t* printer) {
  CKvOpenPrinter open;
  HPRINTER handle{};
  if (open.KvOpenPrinter(printer, &handle, nullptr) != CKvOpenPrinter::kOpened) return false;
  const bool usable = IsUsable(handle);
  open.KvClosePrinter(handle);
  return usable;
}

void Retire(HKEY record, const char16_t* path) {
  Os().registry.RegSetValueExW(record, u"Setting", REG_DWORD, &kOnItsWayOut, sizeof kOnItsWayOut);
  DeleteKeyTree(path);
}

void SweepPrinterRecord(HKEY branch, const PathText& subKey) {
  OwnedKey record;
  if (Os().registry.RegOpenKeyExW(branch, subKey.c_str(), KEY_ALL_ACCESS, record.Out()) !=
      ERROR_SUCCESS)
    return;
  TargetName name;
  if (ReadTargetName(record.get(), name) && !name.empty() && PrinterLives(name.c_str())) return;
  PathText path;
  if (FormatTo(path, u"%s\\%s", kPrinterBranch, subKey)) Retire(record.get(), path.c_str());
}

// Where the sweep of the printer records ended: what that of the port records begins with.
struct SweepEnd {
  std::uint32_t index = 0;
  PathText lastSubKey;  // the last one that was seen; empty when there was none
};

// The index goes up behind a deletion, too, and so passes over the record that moved into its
// place: that is how all programs of the suite sweep.
SweepEnd SweepPrinterRecords(HKEY branch) {
  SweepEnd end;
  for (;; ++end.index) {
    const PathText subKey = SubKeyAt(branch, end.index);
    if (subKey.empty()) return end;
    end.lastSubKey = subKey;
    SweepPrinterRecord(branch, subKey);
  }
}

void SweepPortRecord(HKEY branch, const PathText& subKey) {
  if (subKey.empty()) return;  // would be the whole branch
  OwnedKey record;
  TargetName name;
  if (Os().registry.RegOpenKeyExW(branch, subKey.c_str(), KEY_ALL_ACCESS, record.Out()) !=
          ERROR_SUCCESS ||
      !ReadTargetName(record.get(), name) || !name.empty())
    return;
  PathText path;
  if (FormatTo(path, u"%s\\%s", kPortBranch, subKey)) DeleteKeyTree(path.c_str());
}

// A known property of the suite: the sense of this test is the wrong way round. The sweep does
// nothing where the registry gives a port record at the index that the printer records ended with.
// Where it gives none, it looks at one and the same name again and again, and ends only when port
// records come to stand at the index that it has reached: as a rule never. All programs of the
// suite do so, and nothing here limits it.
void SweepPortRecords(HKEY branch, const SweepEnd& end) {
  for (std::uint32_t index = end.index; SubKeyAt(branch, index).empty(); ++index)
    SweepPortRecord(branch, end.lastSubKey);
}

// A loop of the suite for a key that still has sub-keys: it takes away values that bear their
// names.
void DeleteValuesNamedAsSubKeys(HKEY key) {
  std::uint32_t index = 0;
  for (PathText name = SubKeyAt(key, index); !name.empty(); name = SubKeyAt(key, index))
    if (Os().registry.RegDeleteValueW(key, name.c_str()) != ERROR_SUCCESS) ++index;
}

}  // namespace

int PurgeTargetRecords() {
  OwnedKey printers;
  if (!OpenUserKey(kPrinterBranch, printers)) return -1;
  const SweepEnd end = SweepPrinterRecords(printers.get());
  OwnedKey ports;
  if (!OpenUserKey(kPortBranch, ports)) return -1;
  SweepPortRecords(ports.get(), end);
  return 0;
}

int MarkTargetDeleted(const char16_t* keyPath) {
  OwnedKey record;
  if (keyPath == nullptr || *keyPath == u'\0' || !OpenUserKey(keyPath, record)) return -1;
  Retire(record.get(), keyPath);
  return 0;
}

int DeleteKeyTree(const char16_t* keyPath) {
  OwnedKey key;
  if (keyPath == nullptr || *keyPath == u'\0' || !OpenUserKey(keyPath, key)) return -1;
  for (PathText name = SubKeyAt(key.get(), 0); !name.empty(); name = SubKeyAt(key.get(), 0)) {
    PathText path;
    if (!FormatTo(path, u"%s\\%s", keyPath, name) || DeleteKeyTree(path.c_str()) != 0) return -1;
  }
  DeleteValuesNamedAsSubKeys(key.get());
  return Os().registry.RegDeleteKeyW(HKEY_CURRENT_USER, keyPath) == ERROR_SUCCESS ? 0 : -1;
}

}  // namespace vgl
