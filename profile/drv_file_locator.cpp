#include "profile/drv_file_locator.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "Common/kv_open_printer.h"
#include "Common/text_conversion.h"
#include "platform/platform.h"
#include "profile/os_identification.h"
#include "profile/profile_keys.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::uint32_t kRecordLevel = 3;

// What the spooler tells of a driver. Fields that it leaves out are empty.
struct DriverRecord {
  std::u16string name;
  std::u16string driverPath;
  std::u16string dataFile;
};

// A printer by its name, and one that is open. Either has a driver record.
struct NamedPrinter {
  const char16_t* name;
};
struct OpenedPrinter {
  HPRINTER handle;
};

DriverRecord RecordOf(const DriverInfo3& told) {
  return {OrEmpty(told.name), OrEmpty(told.driverPath), OrEmpty(told.dataFile)};
}

// Room for whole structures, so that the first one is aligned, of at least `bytes` zeroed bytes.
std::vector<DriverInfo3> RoomFor(std::uint32_t bytes) {
  return std::vector<DriverInfo3>(bytes / sizeof(DriverInfo3) + 1);
}

DriverRecord RecordOf(OpenedPrinter printer) {
  std::uint32_t needed = 0;
  // A spooler may clear a whole structure even when it is told of one byte.
  DriverInfo3 tooLittle{};
  Os().spooler.GetPrinterDriverW(printer.handle, kRecordLevel, &tooLittle, 1, &needed);
  if (needed < sizeof(DriverInfo3)) return {};
  std::vector<DriverInfo3> buffer = RoomFor(needed);
  const bool told =
      Os().spooler.GetPrinterDriverW(printer.handle, kRecordLevel, buffer.data(), needed, &needed);
  return told ? RecordOf(buffer.front()) : DriverRecord();
}

DriverRecord RecordOf(NamedPrinter printer) {
  const PrinterDefaults defaults{.desiredAccess = PRINTER_ACCESS_USE};
  CKvOpenPrinter open;
  HPRINTER handle{};
  if (open.KvOpenPrinter(printer.name, &handle, &defaults) != CKvOpenPrinter::kOpened) return {};
  DriverRecord record = RecordOf(OpenedPrinter{handle});
  open.KvClosePrinter(handle);
  return record;
}

std::u16string FolderOf(std::u16string_view path) {
  return std::u16string(path.substr(0, path.rfind(u'\\')));
}

std::u16string InFolder(const std::u16string& folder, const std::u16string& file) {
  return folder.empty() ? file : folder + u"\\" + file;
}

bool HasFolder(std::u16string_view path) { return path.find(u'\\') != std::u16string_view::npos; }

// The data file's name for systems that aren't of the NT family. A driver without a name has no
// section of its own.
std::u16string NonNtDataFile(const std::u16string& driver, const std::u16string& vif) {
  return driver.empty() ? u"" : ReadNonNtDataFile(driver.c_str(), vif.c_str());
}

template <class Printer>
std::u16string DriverDirOf(Printer printer) {
  return FolderOf(RecordOf(printer).driverPath);
}

template <class Printer>
std::u16string VifPathOf(Printer printer) {
  std::u16string file = RecordOf(printer).dataFile;
  if (file.empty() || HasFolder(file)) return file;
  return InFolder(DriverDirOf(printer), file);
}

template <class Printer>
std::u16string SADatPathOf(Printer printer) {
  const std::u16string vif = VifPathOf(printer);
  if (vif.empty()) return {};
  const std::u16string file = IsNtFamily() ? ReadVifKey(kVifSADat, vif.c_str())
                                           : NonNtDataFile(RecordOf(printer).name, vif);
  return file.empty() ? file : InFolder(DriverDirOf(printer), file);
}

// The record of the first driver of that name; empty when there is none.
DriverRecord InstalledDriver(std::u16string_view name) {
  std::uint32_t needed = 0;
  std::uint32_t count = 0;
  Os().spooler.EnumPrinterDriversW(kRecordLevel, nullptr, 0, &needed, &count);
  if (needed == 0) return {};
  std::vector<DriverInfo3> buffer = RoomFor(needed);
  if (!Os().spooler.EnumPrinterDriversW(kRecordLevel, buffer.data(), needed, &needed, &count))
    return {};
  const std::span told(buffer.data(), std::min<std::size_t>(count, buffer.size()));
  const auto found = std::find_if(told.begin(), told.end(), [name](const DriverInfo3& driver) {
    return driver.name != nullptr && driver.name == name;
  });
  return found == told.end() ? DriverRecord() : RecordOf(*found);
}

// Hands a text over; the result of an operation.
int Give(std::u16string text, std::u16string* out) {
  *out = std::move(text);
  return out->empty() ? 0 : 1;
}

// Empties the output. Whether the operation can be carried out: there is an output, and an input.
bool Begin(bool hasInput, std::u16string* out) {
  if (out != nullptr) out->clear();
  return hasInput && out != nullptr;
}

bool Begin(const char16_t* input, std::u16string* out) { return Begin(!IsMissing(input), out); }

bool Begin(HPRINTER handle, const char16_t* printer, std::u16string* out) {
  return Begin(handle != HPRINTER{} && !IsMissing(printer), out);
}

}  // namespace

std::u16string FolderOfVif(std::u16string_view vifPath) {
  const bool isVif = vifPath.find(u".VIF") != std::u16string_view::npos;
  return isVif && HasFolder(vifPath) ? FolderOf(vifPath) : std::u16string();
}

int CDrvFileLocator::GetDriverDir(const char16_t* printer, std::u16string* out) const {
  return Begin(printer, out) ? Give(DriverDirOf(NamedPrinter{printer}), out) : 0;
}

int CDrvFileLocator::GetDriverDirByHandle(HPRINTER handle, const char16_t* printer,
                                          std::u16string* out) const {
  return Begin(handle, printer, out) ? Give(DriverDirOf(OpenedPrinter{handle}), out) : 0;
}

int CDrvFileLocator::GetDriverName(const char16_t* printer, std::u16string* out) const {
  return Begin(printer, out) ? Give(RecordOf(NamedPrinter{printer}).name, out) : 0;
}

int CDrvFileLocator::GetVifPath(const char16_t* printer, std::u16string* out) const {
  return Begin(printer, out) ? Give(VifPathOf(NamedPrinter{printer}), out) : 0;
}

int CDrvFileLocator::GetVifPathByHandle(HPRINTER handle, const char16_t* printer,
                                        std::u16string* out) const {
  return Begin(handle, printer, out) ? Give(VifPathOf(OpenedPrinter{handle}), out) : 0;
}

int CDrvFileLocator::GetSADatPath(const char16_t* printer, std::u16string* out) const {
  return Begin(printer, out) ? Give(SADatPathOf(NamedPrinter{printer}), out) : 0;
}

int CDrvFileLocator::GetSADatPathByHandle(HPRINTER handle, const char16_t* printer,
                                          std::u16string* out) const {
  return Begin(handle, printer, out) ? Give(SADatPathOf(OpenedPrinter{handle}), out) : 0;
}

int CDrvFileLocator::GetDriverNameOfVif(const char16_t* vifPath, std::u16string* out) const {
  return Begin(vifPath, out) ? Give(ReadVifKey(kVifDriverName, vifPath), out) : 0;
}

int CDrvFileLocator::GetSADatPathOfVif(const char16_t* vifPath, std::u16string* out) const {
  if (!Begin(vifPath, out)) return 0;
  const std::u16string file = IsNtFamily()
                                  ? ReadVifKey(kVifSADat, vifPath)
                                  : NonNtDataFile(ReadVifKey(kVifDriverName, vifPath), vifPath);
  return file.empty() ? 0 : Give(InFolder(FolderOfVif(vifPath), file), out);
}

int CDrvFileLocator::FindDriverFiles(const char16_t* driver, std::u16string* outVif,
                                     std::u16string* outDir) const {
  const bool hasVif = Begin(driver, outVif);
  if (!Begin(driver, outDir) || !hasVif) return 0;
  const DriverRecord record = InstalledDriver(driver);
  *outDir = FolderOf(record.driverPath);
  *outVif = record.dataFile;
  if (!outVif->empty() && !HasFolder(*outVif)) *outVif = InFolder(*outDir, record.dataFile);
  return outVif->empty() && outDir->empty() ? 0 : 1;
}

int CDrvFileLocator::GetSADatPathOfDriver(const char16_t* driver, std::u16string* out) const {
  if (!Begin(driver, out)) return 0;
  std::u16string vif;
  std::u16string folder;
  FindDriverFiles(driver, &vif, &folder);
  if (vif.empty()) return 0;
  const std::u16string file =
      IsNtFamily() ? ReadVifKey(kVifSADat, vif.c_str()) : NonNtDataFile(driver, vif);
  return file.empty() ? 0 : Give(InFolder(folder, file), out);
}

}  // namespace vgl
