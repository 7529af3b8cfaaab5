// The platform's calls on the spooler.
#pragma once

#include "platform/spooler.h"

namespace sim {

class Machine;

class SpoolerCalls final : public platform::Spooler {
 public:
  explicit SpoolerCalls(Machine& machine) : m_machine(machine) {}

  bool OpenPrinterW(const char16_t* name, platform::HPRINTER* printer,
                    const platform::PrinterDefaults* defaults) override;
  bool ClosePrinter(platform::HPRINTER printer) override;
  bool GetPrinterW(platform::HPRINTER printer, std::uint32_t level, void* buffer,
                   std::uint32_t bytes, std::uint32_t* needed) override;
  bool GetPrinterDriverW(platform::HPRINTER printer, std::uint32_t level, void* buffer,
                         std::uint32_t bytes, std::uint32_t* needed) override;
  bool EnumPrinterDriversW(std::uint32_t level, void* buffer, std::uint32_t bytes,
                           std::uint32_t* needed, std::uint32_t* count) override;
  bool GetPrinterDriverA(platform::HPRINTER printer, std::uint32_t level, void* buffer,
                         std::uint32_t bytes, std::uint32_t* needed) override;
  bool EnumPrinterDriversA(std::uint32_t level, void* buffer, std::uint32_t bytes,
                           std::uint32_t* needed, std::uint32_t* count) override;
  std::int32_t GetPrinterDataW(platform::HPRINTER printer, const char16_t* name,
                               std::uint32_t* type, void* data, std::uint32_t bytes,
                               std::uint32_t* needed) override;
  std::int32_t GetPrinterDataExW(platform::HPRINTER printer, const char16_t* key,
                                 const char16_t* name, std::uint32_t* type, void* data,
                                 std::uint32_t bytes, std::uint32_t* needed) override;

 private:
  Machine& m_machine;
};

}  // namespace sim
