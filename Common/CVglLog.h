// The usage log: how often the functions of the suite are used, for each printer.
//
// A log counts in memory and from time to time hands its counts to the log library of the driver
// set (Common/log_library_exports.h), which keeps them in a file that is named by the printer's
// serial number. A model is counted when its section of the profile has VGL_LOG = 1.
//
// No failure is told to the user: at worst it costs counts. What happened stands in the nest log,
// in the texts that the suite's programs have for it.
//
// Two threads may use a log at once, and a library may have messages handled while an operation is
// in it, which brings its thread back here. An operation that finds another one at work does
// nothing and gives kVglLogFailed: nobody ever waits here, and at worst a count is lost.
//
// Results are 0 or a code of the log library, or one of the negative ones below. A call that breaks
// what is required of it ends the process; so does a count of a log that is of no kind, which other
// programs of the suite know as -96.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/process_wide.h"

namespace vgl {

class CNestLog;

// The kinds of logs: one for each of three programs of the suite. The agent has the last one. (The
// suite writes them with an underscore in front, which C++ keeps for itself.)
enum VglLogKindNumber : std::int32_t {
  VGLLOG_DETAIL = 1,                // 57 counters
  VGLLOG_MONITORINGPREFERENCE = 2,  // 24
  VGLLOG_TRAYICON = 3,              // 14
};

// The counters of VGLLOG_TRAYICON.
enum TrayIconCounter : std::int32_t {
  kCountOldLogReplaced = 0,  // counted by the log itself
  kCountAgentStart = 1,
  kCountStatusWindow = 2,
  kCountPreferences = 3,
  kCountNozzleTest = 4,  // these three: the utility call came back
  kCountCleanHead = 5,
  kCountAlignGap = 6,
  kCountMenuDp = 7,  // these five: a menu command with that option
  kCountMenuAsmrt = 8,
  kCountMenuDrvUpdate = 9,
  kCountMenuUpPilot = 10,
  kCountMenuLmOrCissValid = 11,
  kCountNetPilotKick = 12,
  kCountInvitation = 13,
};

inline constexpr std::int32_t kVglLogFailed = -99;                 // what isn't told more precisely
inline constexpr std::int32_t FATAL_SERIALID_UNAVAILABLE = -98;    // the printer has no good number
inline constexpr std::int32_t FATAL_EMBERDAT_NOT_DESCRIBED = -97;  // the model isn't counted

class CVglLog {
 public:
  CVglLog() = default;
  virtual ~CVglLog() = default;
  CVglLog(const CVglLog&) = delete;
  CVglLog& operator=(const CVglLog&) = delete;

  // Counts one more use of `index`, or stores `value` there. `kind` is one of the three, and the
  // first one that is counted stays the log's; `printer` is not null. Negative: nothing was
  // counted. An index that the log's kind hasn't is passed over.
  //
  // The first count finds the driver, the device id, and whether the model is counted; so does each
  // one after a failure. Later ones ask nobody.
  std::int32_t Increment(std::int32_t kind, std::int32_t index, const char16_t* printer);
  std::int32_t SetValue(std::int32_t kind, std::int32_t index, std::uint32_t value,
                        const char16_t* printer);

  // Hands the counts to the log library. The last code reached: 1 where the library made a file, 0
  // where it added to one, and also where it isn't available; kVglLogFailed where nothing was
  // counted since the last Clear, and where there is no serial number, no library or no export. The
  // counts stay as they are in any case: who goes on counting calls Clear. Only the first write
  // after a Clear may come upon the file of a later version.
  std::int32_t WriteVglLogFile();

  // Forgets everything, counts that never reached the library included.
  void Clear();

  // WriteVglLogFile and then Clear, in one: either both or none of them. What the write gave.
  std::int32_t FlushVglLog();

  // The path of the log library, which the printer's VIF names and which lies beside it. 0, or
  // kVglLogFailed, which leaves `*out` as it was. There must be a driver name, and `out` not null.
  std::int32_t GetLogRuFileName(std::u16string* out);

  std::int32_t m_nLogKind = 0;                    // 0 until the first count
  std::unique_ptr<std::uint32_t[]> m_pnLogData;   // m_nLogCount counters
  std::unique_ptr<std::uint32_t[]> m_pnReadData;  // m_nReadCount counters of the file, for a merge
  std::unique_ptr<char16_t[]> m_pszVersion;       // what the counters' meaning is: "1.0.0.0"
  std::u16string m_csLogFileName;                 // without folder: that is the library's
  std::u16string m_csSerialID;
  std::u16string m_csPrinterName;
  std::u16string m_csDriverName;
  std::u16string m_csDeviceID;  // also the id of the model, and so its section in the profile
  std::int32_t m_nLogCount = 0;
  std::int32_t m_nMergeCount = 0;  // since the last Clear
  std::int32_t m_bKeyChecked = 0;  // 1: VGL_LOG was found to be 1
  std::u16string m_csLogRuFullPath;
  std::int32_t m_nReadCount = 0;

 private:
  // Whoever calls one of these has the log to itself.

  // Counting (CVglLog.cpp).
  std::int32_t Count(std::int32_t kind, std::int32_t index, const char16_t* printer);
  void Forget();
  std::int32_t InitializeLogBuffer(std::int32_t kind, const char16_t* printer);
  std::int32_t CheckEmberDatKey();
  std::uint32_t* CounterAt(std::int32_t index);

  // The log library (vgl_log_library.cpp).
  std::int32_t FindLogRuFile(std::u16string* out);
  std::u16string GetVifName(const char16_t* printer);
  std::u16string GetInstallPath(const char16_t* printer);
  std::u16string GetAppLogModule(const char16_t* section, const std::u16string& vif);
  std::int32_t GetEscapeDeviceID();
  std::int32_t IncrementMultiVglFile();
  std::int32_t SetMultiVglFile();
  std::int32_t CreateLogVglFile();
  std::int32_t ReadLogVglFile(char16_t* versionOut);
  template <class Function, class Use>
  std::int32_t WithExport(const char* name, const Use& use);
  template <class ReadLog>
  std::int32_t ReadEntries(ReadLog readLog, std::int32_t count, char16_t* versionOut,
                           const CNestLog& scope);

  // The serial number and the file's name (vgl_log_serial.cpp).
  std::int32_t InitializeLogFile();
  std::int32_t FetchSerialID(const CNestLog& scope);
  std::int32_t TakeSerialID(std::int32_t bytes, std::int32_t cache, const CNestLog& scope);
  std::int32_t PrGetSerialID2Private(const char16_t* printer, char* buffer, std::int32_t* size,
                                     std::int32_t* flag, std::int32_t cache);

  // The flush (vgl_log_flush.cpp).
  std::int32_t Write();
  std::int32_t FinishWrite(std::int32_t code, const CNestLog& scope);
  std::int32_t ReplaceMissingFile(const CNestLog& scope);
  std::int32_t MergeExistReadDataAndLatestData();

  std::atomic<bool> m_bIsAtWork{false};  // an operation is
};

// The program's one log.
extern platform::ProcessWide<CVglLog> g_VglLog;

}  // namespace vgl
