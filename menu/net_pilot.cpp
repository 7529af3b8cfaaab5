#include "menu/net_pilot.h"

#include <algorithm>
#include <limits>

#include "Common/CVglLog.h"
#include "Common/path_lookup.h"
#include "Common/printer_library_exports.h"
#include "Common/start_program.h"
#include "Common/target_records.h"
#include "Common/tray_log.h"
#include "Common/wide_format.h"
#include "platform/owned.h"

namespace vgl {

using namespace platform;

namespace {

constexpr char16_t kLastKick[] = u"LastKickNetPilot";

// 0 when there is no such value.
std::uint32_t SizeOfLastKick(HKEY record) {
  std::uint32_t bytes = 0;
  const std::int32_t error =
      Os().registry.RegQueryValueExW(record, kLastKick, nullptr, nullptr, &bytes);
  return error == ERROR_SUCCESS ? bytes : 0;
}

bool ReadLastKick(HKEY record, std::int64_t* seconds) {
  std::uint32_t bytes = sizeof *seconds;
  return Os().registry.RegQueryValueExW(record, kLastKick, nullptr, seconds, &bytes) ==
         ERROR_SUCCESS;
}

void StoreLastKick(const char16_t* path, std::int64_t seconds) {
  OwnedKey record;
  if (Os().registry.RegOpenKeyExW(HKEY_CURRENT_USER, path, KEY_WRITE, record.Out()) ==
      ERROR_SUCCESS)
    Os().registry.RegSetValueExW(record.get(), kLastKick, REG_BINARY, &seconds, sizeof seconds);
}

// Whether it was started. A start that fails is counted, too.
bool Kick(const PrinterIdentity& identity, const std::u16string& commandLine) {
  TrayLogText(u"Kick NetPilot.");
  const bool isStarted = StartExe(commandLine.c_str()) == 1;
  g_VglLog.get().Increment(VGLLOG_TRAYICON, kCountNetPilotKick, identity.printerName);
  return isStarted;
}

// Does what is due by the open record. Whether `now` is to be kept.
bool KickIfDue(HKEY record, const PrinterIdentity& identity, const std::u16string& commandLine,
               std::int64_t now) {
  std::int64_t last = 0;
  // The first sight of a printer that answers only starts the clock.
  if (SizeOfLastKick(record) != sizeof last) return IsGetPrinterStatus(identity) == 1;
  if (!ReadLastKick(record, &last)) return false;
  const std::uint32_t seconds = SecondsFrom(last, now);
  TrayLogInt(u"DiffTime ", static_cast<std::int32_t>(seconds));
  return IsNetPilotDue(seconds) && IsGetPrinterStatus(identity) == 1 && Kick(identity, commandLine);
}

std::int32_t AskForStatus(PrGetPrinterStatus2Function getStatus,
                          PrReleasePrinterStatusFunction release, const char16_t* printer) {
  void* status = nullptr;
  void* second = nullptr;
  const std::int32_t result = getStatus(printer, &status, &second);
  TrayLogText(result < 0 ? u"Err PrGetPrinterStatus2()" : u"PrGetPrinterStatus2() OK.");
  if (status != nullptr && release != nullptr) release(status);
  return result;
}

}  // namespace

std::uint32_t SecondsFrom(std::int64_t then, std::int64_t now) {
  if (now <= then) return 0;
  // Two times may lie further apart than a signed number tells.
  const std::uint64_t seconds = static_cast<std::uint64_t>(now) - static_cast<std::uint64_t>(then);
  return static_cast<std::uint32_t>(
      std::min<std::uint64_t>(seconds, std::numeric_limits<std::uint32_t>::max()));
}

bool IsNetPilotDue(std::uint32_t seconds) {
  constexpr std::uint32_t kInterval = 86400000;
  return seconds * 1000U >= kInterval;
}

void CheckNetPilot(const PrinterIdentity& identity, const std::u16string& program) {
  const std::int64_t now = Os().system.time();
  PathText folder;
  GetProcPath(&folder, identity.driverName, identity.modelId, identity.printerName);
  if (program.empty()) return;
  const std::u16string commandLine =
      WideFormat(u"%s%s /RUN /P \"%s\"", folder, program, identity.printerName);

  const bool isPort = *identity.printerName == u'\0';
  // Without a record the path stays empty and stands for HKEY_CURRENT_USER itself.
  PathText path;
  FindTargetKey(identity.PrinterOrPort(), isPort, path);
  OwnedKey record;
  if (Os().registry.RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), KEY_READ, record.Out()) !=
      ERROR_SUCCESS)
    return;
  const bool isToBeKept = KickIfDue(record.get(), identity, commandLine, now);
  record.Reset();
  if (isToBeKept) StoreLastKick(path.c_str(), now);
}

std::int32_t IsGetPrinterStatus(const PrinterIdentity& identity) {
  PathText path;
  if (GetPrnDllPath(&path, identity.driverName, identity.modelId, identity.printerName) == 0) {
    TrayLogText(u"Err GetProcPath()");
    return 0;
  }
  const OwnedModule library(Os().modules.LoadLibraryW(path.c_str()));
  if (!library) {
    TrayLogText(u"Err LoadLibrary()");
    return 0;
  }
  const auto getStatus = reinterpret_cast<PrGetPrinterStatus2Function>(
      Os().modules.GetProcAddress(library.get(), kPrGetPrinterStatus2));
  const auto release = reinterpret_cast<PrReleasePrinterStatusFunction>(
      Os().modules.GetProcAddress(library.get(), kPrReleasePrinterStatus));
  if (getStatus == nullptr) {
    TrayLogText(u"Err GetProcAddress()");
    return 0;
  }
  return AskForStatus(getStatus, release, identity.printerName) >= 0 ? 1 : 0;
}

}  // namespace vgl
