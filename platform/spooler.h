// The print spooler: printers by name, what it tells of them and of their drivers, printer data.
//
// Calls that fill a buffer take its size in bytes and tell the size needed when they succeed and
// when the buffer is too small, which gives false with 122 (printer data: 234); after any other
// failure `*needed` says nothing. The texts that a filled structure points to lie in the same
// buffer; a field that the spooler leaves out is null. A failure's reason is in GetLastError;
// printer data gives it as the result. Calls fail with 6 on what isn't an open printer, and with
// 1905 on one that was removed while open.
#pragma once

#include "platform/types.h"

namespace platform {

enum class HPRINTER : std::uint64_t {};

inline constexpr std::uint32_t PRINTER_ACCESS_ADMINISTER = 0x4;
inline constexpr std::uint32_t PRINTER_ACCESS_USE = 0x8;
inline constexpr std::uint32_t PRINTER_ALL_ACCESS = 0xF000C;
inline constexpr std::uint32_t PRINTER_ATTRIBUTE_NETWORK = 0x10;

inline constexpr std::int32_t ERROR_INVALID_LEVEL = 124;
inline constexpr std::int32_t ERROR_UNKNOWN_PRINTER_DRIVER = 1797;
inline constexpr std::int32_t ERROR_INVALID_PRINTER_NAME = 1801;
inline constexpr std::int32_t ERROR_PRINTER_DELETED = 1905;

// How a printer is to be opened. The layout is Windows' own.
struct PrinterDefaults {
  const char16_t* datatype = nullptr;
  const void* devMode = nullptr;
  std::uint32_t desiredAccess = 0;
};

// The structures that the spooler fills, by their level. The layouts are Windows' own, for 64-bit
// programs.
struct PrinterInfo2 {
  const char16_t* serverName;
  const char16_t* printerName;
  const char16_t* shareName;
  const char16_t* portName;
  const char16_t* driverName;
  const char16_t* comment;
  const char16_t* location;
  const void* devMode;
  const char16_t* separatorFile;
  const char16_t* printProcessor;
  const char16_t* datatype;
  const char16_t* parameters;
  const void* securityDescriptor;
  std::uint32_t attributes;
  std::uint32_t priority;
  std::uint32_t defaultPriority;
  std::uint32_t startTime;
  std::uint32_t untilTime;
  std::uint32_t status;
  std::uint32_t jobs;
  std::uint32_t averagePagesPerMinute;
};

struct PrinterInfo4 {
  const char16_t* printerName;
  const char16_t* serverName;
  std::uint32_t attributes;
};

template <class Char>
struct DriverInfo2Of {
  std::uint32_t version;
  const Char* name;
  const Char* environment;
  const Char* driverPath;
  const Char* dataFile;
  const Char* configFile;
};

template <class Char>
struct DriverInfo3Of {
  std::uint32_t version;
  const Char* name;
  const Char* environment;
  const Char* driverPath;
  const Char* dataFile;
  const Char* configFile;
  const Char* helpFile;
  const Char* dependentFiles;  // each with its terminator, one more at the end; may be null
  const Char* monitorName;
  const Char* defaultDatatype;
};

using DriverInfo2 = DriverInfo2Of<char16_t>;
using DriverInfo3 = DriverInfo3Of<char16_t>;
// With texts in the system's code page.
using DriverInfo2A = DriverInfo2Of<char>;
using DriverInfo3A = DriverInfo3Of<char>;

class Spooler {
 public:
  virtual ~Spooler() = default;

  // Opens a printer by name, without regard to case; `defaults` may be null. On success `*printer`
  // is owned by the caller, to be closed by ClosePrinter; on failure it is null or left as it was.
  // False with 1801 when there is no such printer, 5 when `desiredAccess` isn't granted.
  virtual bool OpenPrinterW(const char16_t* name, HPRINTER* printer,
                            const PrinterDefaults* defaults) = 0;

  // False with 6 for what isn't an open printer; one that was removed is still to be closed.
  virtual bool ClosePrinter(HPRINTER printer) = 0;

  // Fills a PrinterInfo2 or PrinterInfo4 (`level` 2 or 4; a level that doesn't exist is 124).
  virtual bool GetPrinterW(HPRINTER printer, std::uint32_t level, void* buffer, std::uint32_t bytes,
                           std::uint32_t* needed) = 0;

  // Fills a DriverInfo2 or DriverInfo3 (`level` 2 or 3) of the printer's driver in the system's own
  // environment; false with 1797 when that driver isn't installed. (Wine clears a whole structure
  // whatever `bytes` says, so have that much room.)
  virtual bool GetPrinterDriverW(HPRINTER printer, std::uint32_t level, void* buffer,
                                 std::uint32_t bytes, std::uint32_t* needed) = 0;

  // Fills an array of DriverInfo2 or DriverInfo3, one for each driver of this machine's own
  // environment; on success `*count` tells how many. No driver: true, 0 bytes needed.
  virtual bool EnumPrinterDriversW(std::uint32_t level, void* buffer, std::uint32_t bytes,
                                   std::uint32_t* needed, std::uint32_t* count) = 0;

  // The same with texts in the system's code page, as DriverInfo2A or DriverInfo3A. The size told
  // as needed may be larger than what they take.
  virtual bool GetPrinterDriverA(HPRINTER printer, std::uint32_t level, void* buffer,
                                 std::uint32_t bytes, std::uint32_t* needed) = 0;
  virtual bool EnumPrinterDriversA(std::uint32_t level, void* buffer, std::uint32_t bytes,
                                   std::uint32_t* needed, std::uint32_t* count) = 0;

  // A printer's data value, from the key "PrinterDriverData". The result is an error number:
  // 2 when there is no such value, 234 when the room is too small (without any, `data` may be
  // null). `type` may be null. Names are found without regard to case.
  virtual std::int32_t GetPrinterDataW(HPRINTER printer, const char16_t* name, std::uint32_t* type,
                                       void* data, std::uint32_t bytes, std::uint32_t* needed) = 0;

  // The same from any key of the printer's data; 2 also when there is no such key.
  virtual std::int32_t GetPrinterDataExW(HPRINTER printer, const char16_t* key,
                                         const char16_t* name, std::uint32_t* type, void* data,
                                         std::uint32_t bytes, std::uint32_t* needed) = 0;
};

}  // namespace platform
