#include "Common/driver_data_file.h"

#include <cstdint>
#include <vector>

#include "Common/text_conversion.h"
#include "platform/platform.h"

namespace vgl {

using namespace platform;

DriverFiles DriverFilesOf(HPRINTER printer) {
  if (printer == HPRINTER{}) return {};
  std::uint32_t needed = 0;
  // A spooler may clear a whole structure even when it is told of one byte.
  DriverInfo2 tooLittle{};
  Os().spooler.GetPrinterDriverW(printer, 2, &tooLittle, 1, &needed);
  if (needed < sizeof(DriverInfo2)) return {};
  // Whole structures, so that the first one is aligned.
  std::vector<DriverInfo2> buffer(needed / sizeof(DriverInfo2) + 1);
  if (!Os().spooler.GetPrinterDriverW(printer, 2, buffer.data(), needed, &needed)) return {};
  const DriverInfo2& told = buffer.front();
  return {OrEmpty(told.name), OrEmpty(told.driverPath), OrEmpty(told.dataFile)};
}

std::u16string DataFileOfDriver(HPRINTER printer) { return DriverFilesOf(printer).dataFile; }

}  // namespace vgl
