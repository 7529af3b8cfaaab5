#include "platform/sim/spooler_calls.h"

#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

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

// A structure to be laid into the caller's buffer, and the texts that its fields are to point to.
template <class Info>
struct Row {
  using Field = const char16_t* Info::*;

  Info info{};
  std::vector<std::pair<Field, std::u16string_view>> texts;

  void Add(Field field, std::u16string_view text) { texts.emplace_back(field, text); }
  void AddIfSet(Field field, const std::optional<std::u16string>& text) {
    if (text) texts.emplace_back(field, *text);
  }
};

template <class Info>
std::size_t SizeOf(const std::vector<Row<Info>>& rows) {
  std::size_t size = rows.size() * sizeof(Info);
  for (const Row<Info>& row : rows)
    for (const auto& [field, text] : row.texts) size += (text.size() + 1) * sizeof(char16_t);
  return size;
}

// Lays all structures into the buffer, their texts behind the last of them.
template <class Info>
bool Lay(const Call& call, const std::vector<Row<Info>>& rows, void* buffer, std::uint32_t bytes,
         std::uint32_t* needed) {
  const std::size_t size = SizeOf(rows);
  *needed = static_cast<std::uint32_t>(size);
  if (size == 0) return true;
  if (buffer == nullptr || bytes < size) return Fail(call, ERROR_INSUFFICIENT_BUFFER);
  auto* structure = static_cast<char*>(buffer);
  char* behind = structure + rows.size() * sizeof(Info);
  for (const Row<Info>& row : rows) {
    Info info = row.info;
    for (const auto& [field, text] : row.texts) {
      info.*field = reinterpret_cast<const char16_t*>(behind);
      std::memcpy(behind, text.data(), text.size() * sizeof(char16_t));
      std::memset(behind + text.size() * sizeof(char16_t), 0, sizeof(char16_t));
      behind += (text.size() + 1) * sizeof(char16_t);
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

template <class Info>  // DriverInfo3 begins as DriverInfo2 does
Row<Info> DriverRow(const PrinterDriver& driver) {
  Row<Info> row;
  row.info.version = driver.version;
  row.Add(&Info::name, driver.name);
  row.Add(&Info::environment, driver.environment);
  row.AddIfSet(&Info::driverPath, driver.driverPath);
  row.AddIfSet(&Info::dataFile, driver.dataFile);
  row.AddIfSet(&Info::configFile, driver.configFile);
  if constexpr (std::is_same_v<Info, DriverInfo3>) row.AddIfSet(&Info::helpFile, driver.helpFile);
  return row;
}

template <class Info>
bool LayDrivers(const Call& call, const std::vector<const PrinterDriver*>& drivers, void* buffer,
                std::uint32_t bytes, std::uint32_t* needed) {
  std::vector<Row<Info>> rows;
  for (const PrinterDriver* driver : drivers) rows.push_back(DriverRow<Info>(*driver));
  return Lay(call, rows, buffer, bytes, needed);
}

bool LayDrivers(const Call& call, std::uint32_t level,
                const std::vector<const PrinterDriver*>& drivers, void* buffer, std::uint32_t bytes,
                std::uint32_t* needed) {
  if (level == 2) return LayDrivers<DriverInfo2>(call, drivers, buffer, bytes, needed);
  if (level == 3) return LayDrivers<DriverInfo3>(call, drivers, buffer, bytes, needed);
  return Fail(call, ERROR_INVALID_LEVEL);
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

bool SpoolerCalls::GetPrinterDriverW(HPRINTER handle, std::uint32_t level, void* buffer,
                                     std::uint32_t bytes, std::uint32_t* needed) {
  Call call("GetPrinterDriverW");
  *needed = 0;
  if (call.Failure(ERROR_INVALID_HANDLE)) return false;
  const PrinterOrError looked = Look(call, handle);
  if (looked.error != ERROR_SUCCESS) return Fail(call, looked.error);
  const std::optional<std::u16string>& name = looked.printer->told.driver;
  const PrinterDriver* driver = name ? m_machine.spooler().FindDriver(*name) : nullptr;
  if (driver == nullptr) return Fail(call, ERROR_UNKNOWN_PRINTER_DRIVER);
  return LayDrivers(call, level, {driver}, buffer, bytes, needed);
}

bool SpoolerCalls::EnumPrinterDriversW(std::uint32_t level, void* buffer, std::uint32_t bytes,
                                       std::uint32_t* needed, std::uint32_t* count) {
  Call call("EnumPrinterDriversW");
  *needed = 0;
  *count = 0;
  if (call.Failure(ERROR_NO_SYSTEM_RESOURCES)) return false;
  const std::vector<const PrinterDriver*> drivers = m_machine.spooler().Drivers();
  if (!LayDrivers(call, level, drivers, buffer, bytes, needed)) return false;
  *count = static_cast<std::uint32_t>(drivers.size());
  return true;
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
