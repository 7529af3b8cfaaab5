// The printer's serial number, and with it the name of the log's file.
#include <algorithm>
#include <cstddef>
#include <string>

#include "Common/CVglLog.h"
#include "Common/code_page.h"
#include "Common/fatal_error.h"
#include "Common/nest_log.h"
#include "Common/path_lookup.h"
#include "Common/printer_library_exports.h"
#include "Common/printer_lookup.h"
#include "Common/vgl_log_parts.h"
#include "platform/owned.h"

namespace vgl {

using namespace platform;

namespace {

bool IsGoodSerialByte(char byte) {
  return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z');
}

// What the printer library answers; kVglLogFailed when it can't be asked.
std::int32_t AskPrinterLibrary(const char16_t* printer, const char16_t* deviceId, char* buffer,
                               std::int32_t* size, std::int32_t* flag, std::int32_t cache,
                               const CNestLog& scope) {
  std::u16string driver;
  if (GetDriverName(printer, driver) == 0) {
    scope.Print(u"Err GetDriverName() %d\n", kVglLogFailed);
    return kVglLogFailed;
  }
  PathText path;
  GetPrnDllPath(&path, driver.c_str(), deviceId, printer);
  if (path.empty()) {
    scope.Print(u"Err GetProcPath() %d\n", kVglLogFailed);
    return kVglLogFailed;
  }
  const OwnedModule library(Os().modules.LoadLibraryW(path.c_str()));
  if (!library) return kVglLogFailed;
  const auto getSerialId = reinterpret_cast<PrGetSerialID2Function>(
      Os().modules.GetProcAddress(library.get(), kPrGetSerialID2));
  if (getSerialId == nullptr) return kVglLogFailed;
  return getSerialId(printer, buffer, size, flag, cache);
}

}  // namespace

// The number is asked for at each write: the printer behind a name may have been exchanged.
std::int32_t CVglLog::InitializeLogFile() {
  const CNestLog scope(u"InitializeLogFile()\r\n");
  const VglLogKind* const kind = FindVglLogKind(m_nLogKind);
  if (m_csPrinterName.empty() || kind == nullptr) FatalError();  // "0"
  const std::int32_t result = FetchSerialID(scope);
  if (result != 0) return result;
  if (m_csSerialID.empty()) {
    scope.Print(u"InitializeLogFile() <FATAL_SERIALID_UNAVAILABLE>\r\n");
    return FATAL_SERIALID_UNAVAILABLE;
  }
  scope.Print(u"InitializeLogFile() m_csLogFileName Sakusei start<m_nLogKind> %d\r\n", m_nLogKind);
  m_csLogFileName = WideFormat(kind->fileName, m_csSerialID);
  scope.Print(u"InitializeLogFile() m_csLogFileName Sakusei End<m_csLogFileName> %s\r\n",
              m_csLogFileName);
  scope.Print(u"InitializeLogFile() End %d\r\n", result);
  return result;
}

// Not 0 when the library had a number and it couldn't be taken. Where it has none, an earlier one
// stays.
std::int32_t CVglLog::FetchSerialID(const CNestLog& scope) {
  std::int32_t size = 0;
  const auto askSize = [&](std::int32_t cache) {
    std::int32_t flag = 0;
    size = 0;
    const std::int32_t result =
        PrGetSerialID2Private(m_csPrinterName.c_str(), nullptr, &size, &flag, cache);
    scope.Print(u"InitializeLogFile() PrGetSerialID2Private Cash End<nRet> %d\r\n", result);
    return result;
  };
  std::int32_t cache = kPrSerialCached;
  std::int32_t result = askSize(cache);
  if (result == kPrSerialNotCached) {
    cache = kPrSerialFromPrinter;
    result = askSize(cache);
  }
  return result == kPrSerialNeedsRoom ? TakeSerialID(size, cache, scope) : 0;
}

std::int32_t CVglLog::TakeSerialID(std::int32_t bytes, std::int32_t cache, const CNestLog& scope) {
  // One byte more, so that the text ends whatever is written.
  const auto text = bytes < 0 ? nullptr : ZeroedArray<char>(std::int64_t{bytes} + 1);
  if (text == nullptr) return kVglLogFailed;
  std::int32_t size = bytes;
  std::int32_t flag = 0;
  const std::int32_t result =
      PrGetSerialID2Private(m_csPrinterName.c_str(), text.get(), &size, &flag, cache);
  scope.Print(u"InitializeLogFile() PrGetSerialID2Private NonCash End<m_nLogKind> %d\r\n",
              m_nLogKind);
  if (result < 0) {
    scope.Print(u"InitializeLogFile() PrGetSerialID2Private NonCash Modorichi End<nRet> %d\r\n",
                result);
    return result;
  }
  scope.Print(u"InitializeLogFile() PrGetSerialID2Private NonCash TadashikuToreta End<nRet> %d\r\n",
              0);
  // A size beyond the room that there was goes over the zero behind it, which is no good byte.
  const std::int64_t room = std::int64_t{bytes} + 1;
  const std::int64_t audited = std::clamp<std::int64_t>(std::int64_t{size} - 1, 0, room);
  if (!std::all_of(text.get(), text.get() + audited, IsGoodSerialByte)) {
    scope.Print(u"InitializeLogFile() <FATAL_SERIALID_UNAVAILABLE:SerialID Audit check error>\r\n");
    return FATAL_SERIALID_UNAVAILABLE;
  }
  m_csSerialID = FromCodePage(text.get());
  return 0;
}

std::int32_t CVglLog::PrGetSerialID2Private(const char16_t* printer, char* buffer,
                                            std::int32_t* size, std::int32_t* flag,
                                            std::int32_t cache) {
  const CNestLog scope(u"PrGetSerialID2Private()\r\n");
  if (printer == nullptr || *printer == u'\0' || FindVglLogKind(m_nLogKind) == nullptr)
    FatalError();  // "0"
  const std::int32_t result =
      AskPrinterLibrary(printer, m_csDeviceID.c_str(), buffer, size, flag, cache, scope);
  if (result < 0) {
    scope.Print(u"Catch()End <m_nLogKind> %d\r\n", m_nLogKind);
    scope.Print(u"Catch()End <bEx> %d\r\n", result);
  }
  scope.Print(u"PrGetSerialID2Private()Exit In <nRet> %d\r\n", result);
  return result;
}

}  // namespace vgl
