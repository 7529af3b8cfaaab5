// The flush: what is done with each code of the log library.
#include <array>

#include "Common/CVglLog.h"
#include "Common/fatal_error.h"
#include "Common/log_library_exports.h"
#include "Common/nest_log.h"
#include "Common/vgl_log_parts.h"

namespace vgl {

std::int32_t CVglLog::WriteVglLogFile() {
  const CVglLogTurn turn(m_bIsAtWork);
  return turn ? Write() : kVglLogFailed;
}

std::int32_t CVglLog::FlushVglLog() {
  const CVglLogTurn turn(m_bIsAtWork);
  if (!turn) return kVglLogFailed;
  const std::int32_t result = Write();
  Forget();
  return result;
}

std::int32_t CVglLog::Write() {
  const CNestLog scope(u"WriteVglLogFile()\r\n");
  if (m_csDeviceID.empty() || m_nLogCount == 0 || m_pnLogData == nullptr || m_nLogKind == 0) {
    scope.Print(u"WriteVglLogFile() aussumption check error()\r\n");
    return kVglLogFailed;
  }
  if (InitializeLogFile() != 0) {
    scope.Print(u"WriteVglLogFile() InitializeLogFile() return error()\r\n");
    return kVglLogFailed;
  }
  // A profile that can't be found any more doesn't keep the counts from being written.
  if (CheckEmberDatKey() == FATAL_EMBERDAT_NOT_DESCRIBED) {
    scope.Print(u"WriteVglLogFile() CheckEmberDatKey return error()\r\n");
    return FATAL_EMBERDAT_NOT_DESCRIBED;
  }
  const std::int32_t result = FinishWrite(IncrementMultiVglFile(), scope);
  scope.Print(u"End WriteVglLogFile >nRet: =%d \r\n", result);
  return result;
}

// What follows the library's answer to the counts. The final code.
std::int32_t CVglLog::FinishWrite(std::int32_t code, const CNestLog& scope) {
  switch (code) {
    case AL_SUCCESS: {
      const std::int32_t result = SetMultiVglFile();
      scope.Print(u"_case AL_SUCCESS:\r\n");
      return result;
    }
    case AL_ERROR_NOT_AVAILABLE:
      scope.Print(u"_case AL_ERROR_NOT_AVAILABLE;\r\n");
      return code;
    case AL_ERROR_FILE_NOT_EXIST:
      return ReplaceMissingFile(scope);
    case AL_ERROR_TIMEOUT:
      scope.Print(u"_case AL_ERROR_TIMEOUT;\r\n");
      return code;
    case AL_ERROR_DIR_NOT_EXIST:
      scope.Print(u"_case AL_ERROR_DIR_NOT_EXIST;\r\n");
      return code;
    case AL_ERROR_WRONG_VERSION_LATE: {
      // The file's counts are carried over into the one that takes its place.
      std::int32_t result = MergeExistReadDataAndLatestData();
      if (result == AL_SUCCESS) result = CreateLogVglFile();
      scope.Print(u"_case AL_ERROR_WRONG_VERSION_LATE: nRet=%d \r\n", result);
      return result;
    }
    case AL_ERROR_WRONG_VERSION_OLD: {
      // The file's counts are given up, and that is counted.
      const std::int32_t counted = Count(m_nLogKind, kCountOldLogReplaced, m_csPrinterName.c_str());
      if (counted < 0) {
        scope.Print(u"_case AL_ERROR_WRONG_VERSION_OLD Increment() return error:\r\n");
        return counted;
      }
      scope.Print(u"_case AL_ERROR_WRONG_VERSION_OLD:\r\n");
      return ReplaceMissingFile(scope);
    }
    default:
      scope.Print(u"_case default; (Must not reach)\r\n");
      return code;
  }
}

std::int32_t CVglLog::ReplaceMissingFile(const CNestLog& scope) {
  const std::int32_t result = CreateLogVglFile();
  scope.Print(u"_case AL_ERROR_FILE_NOT_EXIST: nRet=%d \r\n", result);
  if (result != AL_SUCCESS)
    scope.Print(u"_case AL_ERROR_FILE_NOT_EXIST: CreateLogVglFile() return error \r\n");
  return result;
}

// Adds the file's counts to those in memory: once, or they would count twice.
std::int32_t CVglLog::MergeExistReadDataAndLatestData() {
  const CNestLog scope(u"MergeExistReadDataAndLatestData()\r\n");
  const VglLogKind* const kind = FindVglLogKind(m_nLogKind);
  if (kind == nullptr || m_nMergeCount != 0) FatalError();  // "0"
  std::array<char16_t, kLogVersionChars> version{};         // nobody reads it
  const std::int32_t result = ReadLogVglFile(version.data());
  if (result != AL_SUCCESS) {
    scope.Print(u"ReadLogVglFile() return error\n");
    return result;
  }
  // A library that told of fewer entries than the log has gave zeros for the rest.
  for (std::int32_t index = 0; index < m_nLogCount && index < m_nReadCount; ++index) {
    const auto at = static_cast<std::size_t>(index);
    if (kind->IsSentByIncrement(index)) m_pnLogData[at] += m_pnReadData[at];
  }
  ++m_nMergeCount;
  return result;
}

}  // namespace vgl
