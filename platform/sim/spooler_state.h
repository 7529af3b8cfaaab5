// The spooler of the simulated machine: its printers, their drivers and their data.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sim {

// Fields that are not set are null in what the spooler tells.
struct PrinterDriver {
  std::u16string name;
  std::uint32_t version = 3;
  std::u16string environment = u"Windows x64";
  std::optional<std::u16string> driverPath;
  std::optional<std::u16string> dataFile;  // told as it stands here, with or without a folder
  std::optional<std::u16string> configFile;
  std::optional<std::u16string> helpFile;
};

struct Printer {
  std::u16string name;
  std::u16string port;
  std::optional<std::u16string> driver;  // by its name; there needn't be one of that name
  std::uint32_t attributes = 0;
  std::optional<std::u16string> printProcessor = u"WinPrint";
  std::optional<std::u16string> serverName;
  std::optional<std::u16string> shareName;
};

struct PrinterData {
  std::uint32_t type = 0;
  std::string bytes;
};

// A printer in the spooler. It lives while it is there or open; of one that was removed only the
// name is left.
struct SpooledPrinter {
  Printer told;
  bool isRemoved = false;
  bool deniesAdministering = false;
  std::map<std::u16string, PrinterData> data;  // by key and name, without their case
};

// Printers, drivers, keys and data are found by name without regard to case. Naming a printer that
// isn't there is a mistake of the test and throws.
class SpoolerState {
 public:
  // The machine's own environment; drivers of others are not told.
  std::u16string environment = u"Windows x64";
  // What the last opening asked for; 0 without a record of defaults.
  std::uint32_t lastDesiredAccess = 0;

  // In place of the one of that name and environment, if there is one.
  void AddDriver(PrinterDriver driver);
  void RemoveDriver(std::u16string_view name);
  // Throws when there is one of that name.
  void AddPrinter(Printer printer);
  // Handles to it stay, but calls on them fail.
  void RemovePrinter(std::u16string_view name);
  bool HasPrinter(std::u16string_view name) const { return FindPrinter(name) != nullptr; }
  // What is told of a printer, to be looked at or changed.
  Printer& At(std::u16string_view name) { return Get(name).told; }

  // `key` is "PrinterDriverData" for what GetPrinterDataW reads.
  void SetData(std::u16string_view printer, std::u16string_view key, std::u16string_view name,
               std::uint32_t type, std::string_view bytes);
  void RemoveData(std::u16string_view printer, std::u16string_view key, std::u16string_view name);
  // From now on the printer can't be opened with PRINTER_ACCESS_ADMINISTER, which
  // PRINTER_ALL_ACCESS has in it.
  void MakeAccessDenied(std::u16string_view printer);

  // --- for the simulation ---

  // Null when there is none.
  std::shared_ptr<SpooledPrinter> FindPrinter(std::u16string_view name) const;
  // Of the machine's own environment; null when there is none.
  const PrinterDriver* FindDriver(std::u16string_view name) const;
  // Of the machine's own environment, in the order of their names.
  std::vector<const PrinterDriver*> Drivers() const;

 private:
  SpooledPrinter& Get(std::u16string_view name) const;

  std::map<std::u16string, std::shared_ptr<SpooledPrinter>> m_printers;  // by name without case
  // By environment and name without case.
  std::map<std::pair<std::u16string, std::u16string>, PrinterDriver> m_drivers;
};

// The name under which a printer keeps a data value.
std::u16string PrinterDataName(std::u16string_view key, std::u16string_view name);

}  // namespace sim
