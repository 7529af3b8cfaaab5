// The log library: where it is, and each of its exports in one load.
#include <algorithm>
#include <cstddef>

#include "Common/CVglLog.h"
#include "Common/driver_data_file.h"
#include "Common/fatal_error.h"
#include "Common/kv_open_printer.h"
#include "Common/log_library_exports.h"
#include "Common/nest_log.h"
#include "Common/path_lookup.h"
#include "Common/vgl_log_parts.h"
#include "Common/wide_format.h"
#include "platform/owned.h"
#include "profile/profile_keys.h"

namespace vgl {

using namespace platform;

namespace {

// The printer's data file as it is registered; empty when that can't be told.
std::u16string DataFileOf(const char16_t* printer) {
  CKvOpenPrinter open;
  HPRINTER handle{};
  if (open.KvOpenPrinter(printer, &handle, nullptr) != CKvOpenPrinter::kOpened) return {};
  std::u16string file = DataFileOfDriver(handle);
  open.KvClosePrinter(handle);
  return file;
}

}  // namespace

std::int32_t CVglLog::GetLogRuFileName(std::u16string* out) {
  const CVglLogTurn turn(m_bIsAtWork);
  return turn ? FindLogRuFile(out) : kVglLogFailed;
}

std::int32_t CVglLog::FindLogRuFile(std::u16string* out) {
  const CNestLog scope(u"GetLogRuFileName()\r\n");
  if (FindVglLogKind(m_nLogKind) == nullptr || m_csDriverName.empty() || out == nullptr)
    FatalError();  // "0"
  if (!m_csLogRuFullPath.empty()) {
    *out = m_csLogRuFullPath;
    return 0;
  }
  const std::u16string vif = GetVifName(m_csPrinterName.c_str());
  if (vif.empty()) {
    scope.Print(u"GetVifName() return Err\n");
    return kVglLogFailed;
  }
  const std::u16string folder = GetInstallPath(m_csPrinterName.c_str());
  std::u16string module = GetAppLogModule(u"User Mode Printer Driver Information", vif);
  if (module.empty()) {
    scope.Print(u"GetLogRuFileName <VIF description of LogRuDLL not found HLN ,Try OLN>\r\n");
    module = GetAppLogModule(u"CommonDrvInfo", vif);
  }
  if (module.empty()) return kVglLogFailed;
  const std::u16string path = WideFormat(u"%s\\%s", folder, module);
  if (!FileExists(path.c_str())) {
    scope.Print(u"GetLogRuFileName() <LogRuDLL not found>\r\n");
    return kVglLogFailed;
  }
  m_csLogRuFullPath = path;
  *out = path;
  return 0;
}

std::u16string CVglLog::GetVifName(const char16_t* printer) {
  const CNestLog scope(u"GetVifName()\r\n");
  return DataFileOf(printer);
}

// The folder of the VIF, without a backslash at its end. Of a data file that is registered without
// a folder the first character is left, so that no library is found; that is kept.
std::u16string CVglLog::GetInstallPath(const char16_t* printer) {
  const CNestLog scope(u"GetInstallPath()\r\n");
  const std::u16string file = DataFileOf(printer);
  const std::size_t end = file.rfind(u'\\');
  return file.substr(0, end == std::u16string::npos ? 1 : end);
}

std::u16string CVglLog::GetAppLogModule(const char16_t* section, const std::u16string& vif) {
  const CNestLog scope(u"GetAppLogModule()\r\n");
  return ReadVifKey({section, u"AppLogModule", PathText::capacity()}, vif.c_str());
}

// Loads the library, has `use` call the export, frees the library.
template <class Function, class Use>
std::int32_t CVglLog::WithExport(const char* name, const Use& use) {
  std::u16string path;
  if (FindLogRuFile(&path) == kVglLogFailed) return kVglLogFailed;
  const OwnedModule library(Os().modules.LoadLibraryW(path.c_str()));
  if (!library) return kVglLogFailed;
  const auto function =
      reinterpret_cast<Function>(Os().modules.GetProcAddress(library.get(), name));
  return function == nullptr ? kVglLogFailed : use(function);
}

std::int32_t CVglLog::GetEscapeDeviceID() {
  const CNestLog scope(u"GetEscapeDeviceID()\r\n");
  const auto ask = [&](GetExtEscapeDeviceIDFunction getDeviceId) {
    std::int32_t chars = 0;
    const std::int32_t size = getDeviceId(m_csPrinterName.c_str(), nullptr, &chars);
    if (size != AL_ERROR_BUFFER_SHORT) return size;
    // One character more, so that the text ends whatever is written.
    const auto text = chars < 0 ? nullptr : ZeroedArray<char16_t>(std::int64_t{chars} + 1);
    if (text == nullptr) return kVglLogFailed;
    const std::int32_t result = getDeviceId(m_csPrinterName.c_str(), text.get(), &chars);
    m_csDeviceID = text.get();
    return result;
  };
  return WithExport<GetExtEscapeDeviceIDFunction>(kGetExtEscapeDeviceID, ask);
}

std::int32_t CVglLog::IncrementMultiVglFile() {
  const CNestLog scope(u"IncrementMultiVglFile()\r\n");
  const VglLogKind* const kind = FindVglLogKind(m_nLogKind);
  const auto sent = ZeroedArray<std::uint32_t>(m_nLogCount);
  std::int32_t result = kVglLogFailed;
  if (kind != nullptr && sent != nullptr) {
    for (std::int32_t index = 0; index < m_nLogCount; ++index) {
      const auto at = static_cast<std::size_t>(index);
      if (kind->IsSentByIncrement(index)) sent[at] = m_pnLogData[at];
    }
    const auto increment = [&](IncrementMultiLogFunction incrementMultiLog) {
      return incrementMultiLog(m_csDeviceID.c_str(), m_csLogFileName.c_str(), m_nLogCount,
                               sent.get(), m_pszVersion.get(), kLogWaitLimit);
    };
    result = WithExport<IncrementMultiLogFunction>(kIncrementMultiLog, increment);
  }
  scope.Print(u"IncrementMultiVglFile() nRet: =%d \r\n", result);
  return result;
}

std::int32_t CVglLog::SetMultiVglFile() {
  const CNestLog scope(u"SetMultiVglFile()\r\n");
  const auto set = [&](SetMultiLogValueFunction setMultiLogValue) {
    const VglLogKind* const kind = FindVglLogKind(m_nLogKind);
    // A kind without such counters has the library loaded all the same: nothing is to be done.
    if (kind == nullptr || kind->countByValue == 0) return 0;
    return setMultiLogValue(m_csDeviceID.c_str(), m_csLogFileName.c_str(), kind->firstByValue,
                            kind->countByValue, m_pnLogData.get(), m_pszVersion.get(),
                            kLogWaitLimit);
  };
  return WithExport<SetMultiLogValueFunction>(kSetMultiLogValue, set);
}

std::int32_t CVglLog::CreateLogVglFile() {
  const CNestLog scope(u"CreateLogVglFile()\r\n");
  const auto create = [&](CreateLogFileFunction createLogFile) {
    return createLogFile(m_csDeviceID.c_str(), m_csLogFileName.c_str(), m_nLogCount,
                         m_pnLogData.get(), m_pszVersion.get(), kLogWaitLimit, 0);
  };
  return WithExport<CreateLogFileFunction>(kCreateLogFile, create);
}

std::int32_t CVglLog::ReadLogVglFile(char16_t* versionOut) {
  const CNestLog scope(u"ReadLogVglFile()\r\n");
  if (m_csDeviceID.empty() || m_csLogFileName.empty() || FindVglLogKind(m_nLogKind) == nullptr)
    FatalError();  // "0"
  const auto read = [&](ReadLogFunction readLog) {
    std::int32_t count = 0;
    const std::int32_t result = readLog(m_csDeviceID.c_str(), m_csLogFileName.c_str(), &count,
                                        nullptr, versionOut, kLogWaitLimit);
    switch (result) {
      case AL_ERROR_DIR_NOT_EXIST:
      case AL_ERROR_FILE_NOT_EXIST:
        scope.Print(u"pfnReadLog() return error\r\n");
        return result;
      case AL_ERROR_BUFFER_SHORT:
        return ReadEntries(readLog, count, versionOut, scope);
      case AL_ERROR_TIMEOUT:
        scope.Print(u"AL_ERROR_TIMEOUT error\r\n");
        return result;
      default:
        scope.Print(u"other error\r\n");
        return kVglLogFailed;
    }
  };
  return WithExport<ReadLogFunction>(kReadLog, read);
}

// The second of the two calls, with room for `count` entries. The two lines stand there whatever
// came of it.
template <class ReadLog>
std::int32_t CVglLog::ReadEntries(ReadLog readLog, std::int32_t count, char16_t* versionOut,
                                  const CNestLog& scope) {
  // What an earlier write left is taken again unless the file has become larger than that.
  if (m_pnReadData == nullptr || count < 0 || count > m_nReadCount) {
    m_pnReadData = ZeroedArray<std::uint32_t>(count);
    m_nReadCount = m_pnReadData == nullptr ? 0 : count;
  }
  if (m_pnReadData == nullptr) return AL_ERROR_BUFFER_SHORT;
  std::fill_n(m_pnReadData.get(), m_nReadCount, 0U);
  const std::int32_t result = readLog(m_csDeviceID.c_str(), m_csLogFileName.c_str(), &count,
                                      m_pnReadData.get(), versionOut, kLogWaitLimit);
  scope.Print(u"ReadLog()\r\n");
  scope.Print(u"AL_SUCCESS success!\r\n");
  return result;
}

}  // namespace vgl
