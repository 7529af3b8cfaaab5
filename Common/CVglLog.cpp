// Counting, and what has to be there for it.
#include "Common/CVglLog.h"

#include <cstddef>
#include <string_view>

#include "Common/fatal_error.h"
#include "Common/log_library_exports.h"
#include "Common/nest_log.h"
#include "Common/path_lookup.h"
#include "Common/printer_lookup.h"
#include "Common/vgl_log_parts.h"
#include "profile/profile_keys.h"

namespace vgl {

platform::ProcessWide<CVglLog> g_VglLog;

namespace {

constexpr std::u16string_view kVersion = u"1.0.0.0";
constexpr std::int64_t kVersionChars = 8;  // 16 bytes, with the terminator

}  // namespace

std::int32_t CVglLog::Increment(std::int32_t kind, std::int32_t index, const char16_t* printer) {
  const CVglLogTurn turn(m_bIsAtWork);
  return turn ? Count(kind, index, printer) : kVglLogFailed;
}

std::int32_t CVglLog::Count(std::int32_t kind, std::int32_t index, const char16_t* printer) {
  const std::int32_t result = InitializeLogBuffer(kind, printer);
  if (result < 0) return result;
  if (FindVglLogKind(m_nLogKind) == nullptr) FatalError();  // "0"
  if (std::uint32_t* const counter = CounterAt(index)) ++*counter;
  return result;
}

std::int32_t CVglLog::SetValue(std::int32_t kind, std::int32_t index, std::uint32_t value,
                               const char16_t* printer) {
  const CVglLogTurn turn(m_bIsAtWork);
  if (!turn) return kVglLogFailed;
  const std::int32_t result = InitializeLogBuffer(kind, printer);
  if (result < 0) return result;
  if (FindVglLogKind(m_nLogKind) == nullptr) FatalError();  // "0"
  if (std::uint32_t* const counter = CounterAt(index)) *counter = value;
  return result;
}

void CVglLog::Clear() {
  const CVglLogTurn turn(m_bIsAtWork);
  if (turn) Forget();
}

void CVglLog::Forget() {
  m_pnLogData.reset();
  m_pnReadData.reset();
  m_pszVersion.reset();
  for (std::u16string* text : {&m_csLogFileName, &m_csSerialID, &m_csPrinterName, &m_csDriverName,
                               &m_csDeviceID, &m_csLogRuFullPath})
    text->clear();
  for (std::int32_t* number :
       {&m_nLogKind, &m_nLogCount, &m_nMergeCount, &m_bKeyChecked, &m_nReadCount})
    *number = 0;
}

// Null for an index that the log hasn't: nobody tests it before, and what would be written to lies
// behind the counters. Null, too, while there are no counters at all: a library that isn't
// available tells so by 0 when it is asked for the device id, which ends the preparation without
// being a failure.
std::uint32_t* CVglLog::CounterAt(std::int32_t index) {
  const bool isThere = m_pnLogData != nullptr && index >= 0 && index < m_nLogCount;
  return isThere ? &m_pnLogData[static_cast<std::size_t>(index)] : nullptr;
}

std::int32_t CVglLog::InitializeLogBuffer(std::int32_t kind, const char16_t* printer) {
  const CNestLog scope(u"InitializeLogBuffer()\r\n");
  const VglLogKind* const wanted = FindVglLogKind(kind);
  if (wanted == nullptr || printer == nullptr) FatalError();  // "0"
  m_csPrinterName = printer;
  if (m_csDriverName.empty()) {
    GetDriverName(printer, m_csDriverName);
    if (m_csDriverName.empty()) {
      scope.Print(u"GetDriverName() Err \r\n");
      return kVglLogFailed;
    }
  }
  if (m_nLogKind == 0) {
    m_nLogKind = kind;
    m_nLogCount = wanted->counters;
  }
  if (m_csDeviceID.empty()) {
    const std::int32_t result = GetEscapeDeviceID();
    if (result == AL_ERROR_NOT_AVAILABLE || result == kVglLogFailed) {
      scope.Print(u"GetEscapeDeviceID() Err \r\n");
      return result;
    }
  }
  if (m_bKeyChecked != 1) {
    const std::int32_t result = CheckEmberDatKey();
    if (result == kVglLogFailed || result == FATAL_EMBERDAT_NOT_DESCRIBED) {
      scope.Print(u"CheckEmberDatKey() Err \r\n");
      return result;
    }
  }
  if (m_pnLogData == nullptr) m_pnLogData = ZeroedArray<std::uint32_t>(m_nLogCount);
  if (m_pszVersion == nullptr) {
    m_pszVersion = ZeroedArray<char16_t>(kVersionChars);
    if (m_pszVersion != nullptr) kVersion.copy(m_pszVersion.get(), kVersion.size());
  }
  return m_pnLogData == nullptr || m_pszVersion == nullptr ? kVglLogFailed : 0;
}

std::int32_t CVglLog::CheckEmberDatKey() {
  const CNestLog scope(u"CheckEmberDatKey()\r\n");
  if (FindVglLogKind(m_nLogKind) == nullptr || m_csDriverName.empty()) FatalError();  // "0"
  PathText profile;
  GetProfilePath(&profile, m_csDriverName.c_str(), m_csDeviceID.c_str(), m_csPrinterName.c_str());
  if (profile.empty()) {
    scope.Print(u"GetProfilePath() return Err\n");
    return kVglLogFailed;
  }
  if (ReadModelNumber(kProfileUsageLog, m_csDeviceID.c_str(), profile.c_str()) != 1) {
    scope.Print(u" CheckEmberDatKey <FATAL_EMBERDAT_NOT_DESCRIBED>\r\n");
    return FATAL_EMBERDAT_NOT_DESCRIBED;
  }
  m_bKeyChecked = 1;
  return 0;
}

}  // namespace vgl
