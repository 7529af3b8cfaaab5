// The print spooler of Windows.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

#include <winspool.h>

namespace platform {
namespace {

BYTE* byte_cast(void* buffer) { return static_cast<BYTE*>(buffer); }

class SpoolerOfWindows final : public Spooler {
 public:
  bool OpenPrinterW(const char16_t* name, HPRINTER* printer,
                    const PrinterDefaults* defaults) override {
    // Windows takes pointers to what it doesn't change.
    auto* nameOfTheirs = const_cast<wchar_t*>(text_cast(name));
    auto* defaultsOfTheirs =
        reinterpret_cast<PRINTER_DEFAULTSW*>(const_cast<PrinterDefaults*>(defaults));
    auto handle = handle_cast<::HANDLE>(*printer);
    const bool opened = ::OpenPrinterW(nameOfTheirs, &handle, defaultsOfTheirs) != FALSE;
    *printer = handle_cast<HPRINTER>(handle);
    return opened;
  }

  bool ClosePrinter(HPRINTER printer) override {
    return ::ClosePrinter(handle_cast<::HANDLE>(printer)) != FALSE;
  }

  bool GetPrinterW(HPRINTER printer, std::uint32_t level, void* buffer, std::uint32_t bytes,
                   std::uint32_t* needed) override {
    return ::GetPrinterW(handle_cast<::HANDLE>(printer), level, byte_cast(buffer), bytes,
                         dword_cast(needed)) != FALSE;
  }

  bool GetPrinterDriverW(HPRINTER printer, std::uint32_t level, void* buffer, std::uint32_t bytes,
                         std::uint32_t* needed) override {
    return ::GetPrinterDriverW(handle_cast<::HANDLE>(printer), nullptr, level, byte_cast(buffer),
                               bytes, dword_cast(needed)) != FALSE;
  }

  bool EnumPrinterDriversW(std::uint32_t level, void* buffer, std::uint32_t bytes,
                           std::uint32_t* needed, std::uint32_t* count) override {
    return ::EnumPrinterDriversW(nullptr, nullptr, level, byte_cast(buffer), bytes,
                                 dword_cast(needed), dword_cast(count)) != FALSE;
  }

  bool GetPrinterDriverA(HPRINTER printer, std::uint32_t level, void* buffer, std::uint32_t bytes,
                         std::uint32_t* needed) override {
    return ::GetPrinterDriverA(handle_cast<::HANDLE>(printer), nullptr, level, byte_cast(buffer),
                               bytes, dword_cast(needed)) != FALSE;
  }

  bool EnumPrinterDriversA(std::uint32_t level, void* buffer, std::uint32_t bytes,
                           std::uint32_t* needed, std::uint32_t* count) override {
    return ::EnumPrinterDriversA(nullptr, nullptr, level, byte_cast(buffer), bytes,
                                 dword_cast(needed), dword_cast(count)) != FALSE;
  }

  std::int32_t GetPrinterDataW(HPRINTER printer, const char16_t* name, std::uint32_t* type,
                               void* data, std::uint32_t bytes, std::uint32_t* needed) override {
    return static_cast<std::int32_t>(
        ::GetPrinterDataW(handle_cast<::HANDLE>(printer), const_cast<wchar_t*>(text_cast(name)),
                          dword_cast(type), byte_cast(data), bytes, dword_cast(needed)));
  }

  std::int32_t GetPrinterDataExW(HPRINTER printer, const char16_t* key, const char16_t* name,
                                 std::uint32_t* type, void* data, std::uint32_t bytes,
                                 std::uint32_t* needed) override {
    return static_cast<std::int32_t>(
        ::GetPrinterDataExW(handle_cast<::HANDLE>(printer), text_cast(key), text_cast(name),
                            dword_cast(type), byte_cast(data), bytes, dword_cast(needed)));
  }
};

}  // namespace

Spooler& Win32Spooler() { return *new SpoolerOfWindows; }

}  // namespace platform
