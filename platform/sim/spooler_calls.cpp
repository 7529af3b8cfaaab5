#include "platform/sim/spooler_calls.h"

#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/sim/code_page.h"
#include "platform/sim/machine.h"
#include "platform/sim/text.h"

namespace sim {

using namespace platform;

namespace {

class OpenPrinter final : public HandleBody {
 public:
  explicit OpenPrinter(std::shared_ptr<SpooledPrinter> printer) : m_printer(std::move(printer)) {}
  std::u16string Describe() const override { return u"printer " + m_printer->told.name; }
  bool IsKernelObject() const override { return false; }
  const std::shared_ptr<SpooledPrinter>& printer() const { return m_printer; }

 private:
  std::shared_ptr<SpooledPrinter> m_printer;
};

// The printer behind a handle, or the error.
struct PrinterOrError {
  std::shared_ptr<SpooledPrinter> printer;
  std::int32_t error = ERROR_SUCCESS;
};

PrinterOrError Look(const Call& call, HPRINTER handle) {
  const auto open = call.process().FindHandle<OpenPrinter>(static_cast<std::uint64_t>(handle));
  if (open == nullptr) return {nullptr, ERROR_INVALID_HANDLE};
  if (open->printer()->isRemoved) return {nullptr, ERROR_PRINTER_DELETED};
  return {open->printer()};
}

bool Fail(const Call& call, std::int32_t error) {
  call.SetLastError(error);
  return false;
}

// A structure to be laid into the caller's buffer, and the texts that its fields are to point to:
// in UTF-16, or for the structures of char in the code page.
template <class Info, class Char = char16_t>
struct Row {
  using Field = const Char* Info::*;

  Info info{};
  std::vector<std::pair<Field, std::u16string_view>> texts;

  void Add(Field field, std::u16string_view text) { texts.emplace_back(field, text); }
  void AddIfSet(Field field, const std::optional<std::u16string>& text) {
    if (text) texts.emplace_back(field, *text);
  }
};

// In bytes. The spooler's own texts are UTF-16, so that is what it asks room for.
template <class Info, class Char>
std::size_t SizeOf(const std::vector<Row<Info, Char>>& rows) {
  std::size_t size = rows.size() * sizeof(Info);
  for (const Row<Info, Char>& row : rows)
    for (const auto& [field, text] : row.texts) size += (text.size() + 1) * sizeof(char16_t);
  return size;
}

// The text with its terminator; what is behind it.
char16_t* LayText(std::u16string_view text, char16_t* at) {
  at[text.copy(at, text.size())] = u'\0';
  return at + text.size() + 1;
}
char* LayText(std::u16string_view text, char* at) {
  at[ToCodePage(text).copy(at, text.size())] = '\0';
  return at + text.size() + 1;
}

// Lays all structures into the buffer, their texts behind the last of them.
template <class Info, class Char>
bool Lay(const Call& call, const std::vector<Row<Info, Char>>& rows, void* buffer,
         std::uint32_t bytes, std::uint32_t* needed) {
  const std::size_t size = SizeOf(rows);
  *needed = static_cast<std::uint32_t>(size);
  if (size == 0) return true;
  if (buffer == nullptr || bytes < size) return Fail(call, ERROR_INSUFFICIENT_BUFFER);
  auto* structure = static_cast<char*>(buffer);
  auto* behind = reinterpret_cast<Char*>(structure + rows.size() * sizeof(Info));
  for (const Row<Info, Char>& row : rows) {
    Info info = row.info;
    for (const auto& [field, text] : row.texts) {
      info.*field = behind;
      behind = LayText(text, behind);
    }
    std::memcpy(structure, &info, sizeof(info));
    structure += sizeof(info);
  }
  return true;
}

Row<PrinterInfo2> PrinterRow2(const Printer& printer) {
  Row<PrinterInfo2> row;
  row.AddIfSet(&PrinterInfo2::serverName, printer.serverName);
  row.Add(&PrinterInfo2::printerName, printer.name);
  row.AddIfSet(&PrinterInfo2::shareName, printer.shareName);
  row.Add(&PrinterInfo2::portName, printer.port);
  row.AddIfSet(&PrinterInfo2::driverName, printer.driver);
  row.AddIfSet(&PrinterInfo2::printProcessor, printer.printProcessor);
  row.Add(&PrinterInfo2::datatype, u"RAW");
  row.info.attributes = printer.attributes;
  return row;
}

Row<PrinterInfo4> PrinterRow4(const Printer& printer) {
  Row<PrinterInfo4> row;
  row.Add(&PrinterInfo4::printerName, printer.name);
  row.AddIfSet(&PrinterInfo4::serverName, printer.serverName);
  row.info.attributes = printer.attributes;
  return row;
}

template <class Info, class Char>  // DriverInfo3 begins as DriverInfo2 does
Row<Info, Char> DriverRow(const PrinterDriver& driver) {
  Row<Info, Char> row;
  row.info.version = driver.version;
  row.Add(&Info::name, driver.name);
  row.Add(&Info::environment, driver.environment);
  row.AddIfSet(&Info::driverPath, driver.driverPath);
  row.AddIfSet(&Info::dataFile, driver.dataFile);
  row.AddIfSet(&Info::configFile, driver.configFile);
  if constexpr (requires { &Info::helpFile; }) row.AddIfSet(&Info::helpFile, driver.helpFile);
  return row;
}

using DriverList = std::vector<const PrinterDriver*>;

template <class Info, class Char>
bool LayDrivers(const Call& call, const DriverList& drivers, void* buffer, std::uint32_t bytes,
                std::uint32_t* needed) {
  std::vector<Row<Info, Char>> rows;
  for (const PrinterDriver* driver : drivers) rows.push_back(DriverRow<Info, Char>(*driver));
  return Lay(call, rows, buffer, bytes, needed);
}

template <class Info2, class Info3, class Char>
bool LayDrivers(const Call& call, std::uint32_t level, const DriverList& drivers, void* buffer,
                std::uint32_t bytes, std::uint32_t* needed) {
  if (level == 2) return LayDrivers<Info2, Char>(call, drivers, buffer, bytes, needed);
  if (level == 3) return LayDrivers<Info3, Char>(call, drivers, buffer, bytes, needed);
  return Fail(call, ERROR_INVALID_LEVEL);
}

// GetPrinterDriver with those structures.
template <class Info2, class Info3, class Char>
bool GiveDriver(Call& call, HPRINTER handle, std::uint32_t level, void* buffer, std::uint32_t bytes,
                std::uint32_t* needed) {
  *needed = 0;
  if (call.Failure(ERROR_INVALID_HANDLE)) return false;
  const PrinterOrError looked = Look(call, handle);
  if (looked.error != ERROR_SUCCESS) return Fail(call, looked.error);
  const std::optional<std::u16string>& name = looked.printer->told.driver;
  const PrinterDriver* driver = name ? call.machine().spooler().FindDriver(*name) : nullptr;
  if (driver == nullptr) return Fail(call, ERROR_UNKNOWN_PRINTER_DRIVER);
  return LayDrivers<Info2, Info3, Char>(call, level, {driver}, buffer, bytes, needed);
}

// EnumPrinterDrivers with those structures.
template <class Info2, class Info3, class Char>
bool GiveAllDrivers(Call& call, std::uint32_t level, void* buffer, std::uint32_t bytes,
                    std::uint32_t* needed, std::uint32_t* count) {
  *needed = 0;
  *count = 0;
  if (call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return false;
  const DriverList drivers = call.machine().spooler().Drivers();
  if (!LayDrivers<Info2, Info3, Char>(call, level, drivers, buffer, bytes, needed)) return false;
  *count = static_cast<std::uint32_t>(drivers.size());
  return true;
}

std::int32_t GiveData(const Call& call, HPRINTER handle, std::u16string_view key,
                      std::u16string_view name, std::uint32_t* type, void* data,
                      std::uint32_t bytes, std::uint32_t* needed) {
  const PrinterOrError looked = Look(call, handle);
  if (looked.error != ERROR_SUCCESS) return looked.error;
  const auto found = looked.printer->data.find(PrinterDataName(key, name));
  if (found == looked.printer->data.end()) return ERROR_FILE_NOT_FOUND;
  const PrinterData& value = found->second;
  if (type != nullptr) *type = value.type;
  *needed = static_cast<std::uint32_t>(value.bytes.size());
  if (data == nullptr || bytes < value.bytes.size()) return ERROR_MORE_DATA;
  value.bytes.copy(static_cast<char*>(data), value.bytes.size());
  return ERROR_SUCCESS;
}

}  // namespace

bool SpoolerCalls::OpenPrinterW(const char16_t* name, HPRINTER* handle,
                                const PrinterDefaults* defaults) {
  Call call("OpenPrinterW");
  *handle = HPRINTER{};
  if (call.Failure(ERROR_INVALID_PRINTER_NAME)) return false;
  std::shared_ptr<SpooledPrinter> printer = m_machine.spooler().FindPrinter(View(name));
  if (printer == nullptr) return Fail(call, ERROR_INVALID_PRINTER_NAME);
  const std::uint32_t access = defaults == nullptr ? 0 : defaults->desiredAccess;
  m_machine.spooler().lastDesiredAccess = access;
  if (printer->deniesAdministering && (access & PRINTER_ACCESS_ADMINISTER) != 0) {
    return Fail(call, ERROR_ACCESS_DENIED);
  }
  *handle = HPRINTER{call.process().AddHandle(std::make_shared<OpenPrinter>(std::move(printer)))};
  return true;
}

bool SpoolerCalls::ClosePrinter(HPRINTER handle) {
  Call call("ClosePrinter", Call::kRelease);
  if (call.Inert()) return true;
  if (call.Failure(ERROR_INVALID_HANDLE)) return false;
  const auto number = static_cast<std::uint64_t>(handle);
  if (call.process().FindHandle<OpenPrinter>(number) == nullptr) {
    return Fail(call, ERROR_INVALID_HANDLE);
  }
  return call.process().CloseHandle(number);
}

bool SpoolerCalls::GetPrinterW(HPRINTER handle, std::uint32_t level, void* buffer,
                               std::uint32_t bytes, std::uint32_t* needed) {
  Call call("GetPrinterW");
  *needed = 0;
  if (call.Failure(ERROR_INVALID_HANDLE)) return false;
  const PrinterOrError looked = Look(call, handle);
  if (looked.error != ERROR_SUCCESS) return Fail(call, looked.error);
  const Printer& printer = looked.printer->told;
  if (level == 2) return Lay(call, std::vector{PrinterRow2(printer)}, buffer, bytes, needed);
  if (level == 4) return Lay(call, std::vector{PrinterRow4(printer)}, buffer, bytes, needed);
  return Fail(call, ERROR_INVALID_LEVEL);
}

bool SpoolerCalls::GetPrinterDriverW(HPRINTER printer, std::uint32_t level, void* buffer,
                                     std::uint32_t bytes, std::uint32_t* needed) {
  Call call("GetPrinterDriverW");
  return GiveDriver<DriverInfo2, DriverInfo3, char16_t>(call, printer, level, buffer, bytes,
                                                        needed);
}

bool SpoolerCalls::GetPrinterDriverA(HPRINTER printer, std::uint32_t level, void* buffer,
                                     std::uint32_t bytes, std::uint32_t* needed) {
  Call call("GetPrinterDriverA");
  return GiveDriver<DriverInfo2A, DriverInfo3A, char>(call, printer, level, buffer, bytes, needed);
}

bool SpoolerCalls::EnumPrinterDriversW(std::uint32_t level, void* buffer, std::uint32_t bytes,
                                       std::uint32_t* needed, std::uint32_t* count) {
  Call call("EnumPrinterDriversW");
  return GiveAllDrivers<DriverInfo2, DriverInfo3, char16_t>(call, level, buffer, bytes, needed,
                                                            count);
}

bool SpoolerCalls::EnumPrinterDriversA(std::uint32_t level, void* buffer, std::uint32_t bytes,
                                       std::uint32_t* needed, std::uint32_t* count) {
  Call call("EnumPrinterDriversA");
  return GiveAllDrivers<DriverInfo2A, DriverInfo3A, char>(call, level, buffer, bytes, needed,
                                                          count);
}

std::int32_t SpoolerCalls::GetPrinterDataW(HPRINTER printer, const char16_t* name,
                                           std::uint32_t* type, void* data, std::uint32_t bytes,
                                           std::uint32_t* needed) {
  Call call("GetPrinterDataW");
  if (const std::int32_t error = call.Failure(ERROR_INVALID_HANDLE)) return error;
  return GiveData(call, printer, u"PrinterDriverData", View(name), type, data, bytes, needed);
}

std::int32_t SpoolerCalls::GetPrinterDataExW(HPRINTER printer, const char16_t* key,
                                             const char16_t* name, std::uint32_t* type, void* data,
                                             std::uint32_t bytes, std::uint32_t* needed) {
  Call call("GetPrinterDataExW");
  if (const std::int32_t error = call.Failure(ERROR_INVALID_HANDLE)) return error;
  return GiveData(call, printer, View(key), View(name), type, data, bytes, needed);
}

}  // namespace sim
