// A machine whose printer has all that a usage log needs: a driver set with the log library and the
// printer library, a profile in which its model is counted, a serial number and a device id.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Common/CVglLog.h"
#include "Common/log_library_exports.h"
#include "desk/printer_library.h"
#include "desk/usage_log_file.h"
#include "desk/usage_log_library.h"
#include "tests/profile/driver_set_fixture.h"

namespace vgl {

// The printer "Studio" is of the model "M1", its serial number is "K12".
class VglLogTest : public DriverSetTest {
 protected:
  static constexpr char16_t kLogLibrary[] = u"C:\\Set\\K_APLOG.DLL";
  static constexpr char16_t kPrinterLibrary[] = u"C:\\Set\\KVPRN.DLL";
  static constexpr char16_t kLogFile[] = u"C:\\ProgramData\\KAVRO\\VGL3\\LOG\\VGL_TrayIcon_K12.xml";

  VglLogTest();

  // The lines of the model's section of the profile.
  void WriteProfile(std::string_view lines);
  // The text "DeviceID" of the printer's data.
  void SetDeviceId(std::u16string_view id);

  sim::Library& LogLibrary() { return machine.libraries().At(kLogLibrary); }
  desk::UsageLogLibraryState& LogCalls() { return desk::UsageLogLibraryOf(machine); }
  desk::PrinterLibrary& PrinterLibrary() { return desk::PrinterLibraryOf(machine); }
  // The next call of an export, or the one behind those that have an answer, gives this.
  void Answer(const char* exported, std::int32_t code, std::int32_t size = 0) {
    LogCalls().answers[exported].push_back({code, size});
  }
  // The names of the log library's exports in the order in which they were called.
  std::vector<std::string> CalledExports();

  // A log with those first counters, the others 0.
  static desk::UsageLog LogOf(std::u16string version, std::vector<std::uint32_t> first,
                              std::size_t count = 14);
  void PutLogFile(const desk::UsageLog& stored) {
    machine.files().WriteFile(kLogFile, desk::FormatUsageLog(stored));
  }
  // Nothing when there is no such file or it is no log.
  std::optional<desk::UsageLog> LogFile(const char16_t* path = kLogFile);
  // The counters of the log's file; none when there is no such file.
  std::vector<std::uint32_t> StoredCounters();

  // Counts `index` for the printer.
  std::int32_t Count(std::int32_t index) { return log.Increment(VGLLOG_TRAYICON, index, kPrinter); }
  std::uint32_t Counter(std::size_t index) { return log.m_pnLogData[index]; }

  // The nest log on from now on.
  void SwitchNestLogOn();
  // Its lines since then or since the last asking, without process, thread, time and what follows
  // the text of a scope; the blanks that indent them stay, and so does a carriage return.
  std::vector<std::string> NestLines();
  // Whether one of those lines has that text.
  bool HasLogged(std::string_view text);

  CVglLog log;
};

}  // namespace vgl
