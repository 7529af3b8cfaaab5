// The guarded open: the suite's one way to the print spooler.
//
// Two named mutexes, whose existence alone is the signal (nobody ever waits for them or owns them):
// while the driver installer holds "Global\KavroPrinterInstaller", the guarded open keeps its hands
// off the printer; while any program of the suite has a printer open, "Global\KavroOmataseMutex"
// exists, which the installer can see. Both names are fixed by the suite.
#pragma once

#include <cstdint>
#include <string_view>

#include "Common/open_printer_log.h"
#include "platform/platform.h"

namespace vgl {

// A stack object for one printer handle: open, read, close, all within one function. It doesn't
// close by itself; who opened calls KvClosePrinter.
class CKvOpenPrinter {
 public:
  static constexpr std::int32_t kOpened = 1;
  static constexpr std::int32_t kFailed = 0;
  static constexpr std::int32_t kInstallerActive = -1;
  static constexpr std::int32_t kNoMutex = -2;
  static constexpr std::int32_t kNoName = -3;  // the narrow name can't be converted

  CKvOpenPrinter() = default;
  CKvOpenPrinter(const CKvOpenPrinter&) = delete;
  CKvOpenPrinter& operator=(const CKvOpenPrinter&) = delete;

  // Opens a printer by name; `defaults` may be null. kOpened: `*outHandle` is the caller's, to be
  // closed by KvClosePrinter of this object. Any other result: nothing is open, and `*outHandle` is
  // as it was, or null after kFailed. In plain mode installers are not looked for, and only kOpened
  // and kFailed come back.
  std::int32_t KvOpenPrinter(const char16_t* name, platform::HPRINTER* outHandle,
                             const platform::PrinterDefaults* defaults);

  // The same as a yes or no.
  bool KvOpenPrinterBool(const char16_t* name, platform::HPRINTER* outHandle,
                         const platform::PrinterDefaults* defaults);
  // Sets the mode first.
  bool KvOpenPrinterMode(const char16_t* name, platform::HPRINTER* outHandle,
                         const platform::PrinterDefaults* defaults, std::int32_t mode);
  // With a name in the system's code page, and null defaults.
  bool KvOpenPrinterA(const char* name, platform::HPRINTER* outHandle);
  std::int32_t KvOpenPrinterAResult(const char* name, platform::HPRINTER* outHandle);

  // Closes the printer, unless the handle is null, and gives the mutex back. 1 or 0 as ClosePrinter
  // says, 1 for a null handle.
  std::int32_t KvClosePrinter(platform::HPRINTER printer);

  std::int32_t m_nMode = 0;     // 0 guarded, anything else plain
  platform::HANDLE m_hMutex{};  // "Global\KavroOmataseMutex", while this object has it

 private:
  std::int32_t OpenGuarded(const char16_t* name, platform::HPRINTER* outHandle,
                           const platform::PrinterDefaults* defaults);
  // Closes the mutex; when that fails the field stays, and `failure` is logged with the handle.
  void GiveUpMutex(std::u16string_view failure);

  CKvOpenPrinterLog m_Log;
};

// Whether an installer is at work, as a guarded open of that printer finds it. A printer that can't
// be opened for another reason is no installer's.
bool IsInstallerActive(const char16_t* name);

}  // namespace vgl
