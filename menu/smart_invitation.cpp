#include "menu/smart_invitation.h"

#include "Common/CVglLog.h"
#include "Common/REGISTRY.h"
#include "Common/path_lookup.h"
#include "Common/printer_lookup.h"
#include "Common/start_program.h"
#include "Common/temp_file.h"
#include "Common/text_conversion.h"
#include "Common/tray_log.h"
#include "Common/wide_format.h"
#include "menu/driver_programs.h"
#include "platform/owned.h"
#include "profile/drv_info_reader.h"
#include "profile/profile_keys.h"

namespace vgl {

using namespace platform;

namespace {

// Null when the library lacks it.
template <class Function>
Function Export(HMODULE library, const char* name) {
  return reinterpret_cast<Function>(Os().modules.GetProcAddress(library, name));
}

void AddOption(std::u16string& text, std::u16string_view format, const char16_t* value) {
  if (*value != u'\0') text += WideFormat(format, value);
}

}  // namespace

std::u16string FindInvitationLibrary(const InvitationAsker& asker, const char16_t* driverName,
                                     const char16_t* modelId, const char16_t* printerName) {
  constexpr char16_t kValue[] = u"SMRT_PARLOS";
  const std::u16string key = DriverKeyPath(driverName);
  PathText profile;
  GetProfilePath(&profile, driverName, modelId, printerName);
  if (!SettingsAreInRegistry(modelId, profile.c_str())) {
    TrayLogText(WideFormat(u"%s() Dat reading base Ember\n", asker.logName).c_str());
    return CDrvInfoReader().GetStringOfDriver(driverName, key.c_str(), kValue);
  }
  TrayLogText(WideFormat(u"%s() Registry Ember\n", asker.logName).c_str());
  const CRegistry driver(HKEY_LOCAL_MACHINE, key.c_str(), false, KEY_READ);
  return driver.GetString(kValue, {}, asker.mostBytes);
}

CSmartInvitation::~CSmartInvitation() {
  if (m_hInstAllowInv == HMODULE{}) return;
  TrayLogText(u"::FreeLibrary(m_hInstAllowInv)");
  Os().modules.FreeLibrary(m_hInstAllowInv);
}

std::u16string CSmartInvitation::GetSmartParlosLibrary(const char16_t* driverName) const {
  if (IsMissing(driverName)) return {};
  return FindInvitationLibrary({.logName = u"GetSmartParlosLibrary", .mostBytes = 0}, driverName,
                               strModelId.c_str(), strPrinterName.c_str());
}

std::uint32_t CSmartInvitation::GetPeriodInvitation(const PrinterIdentity& identity) {
  strPrinterName = identity.printerName;
  strModelId = identity.modelId;
  const std::u16string path = GetSmartParlosLibrary(identity.driverName);
  if (path.empty()) return 0;
  const OwnedModule library(Os().modules.LoadLibraryW(path.c_str()));
  if (!library) return 0;
  const auto isInvitationTimer =
      Export<ParlosIsInvitationTimerFunction>(library.get(), kParlosIsInvitationTimer);
  return isInvitationTimer == nullptr
             ? 0
             : isInvitationTimer(identity.printerName, identity.driverName);
}

std::int32_t CSmartInvitation::GetInvitationLevel(const PrinterIdentity& identity) {
  if (IsMissing(identity.printerName)) return 0;
  const std::u16string path = GetSmartParlosLibrary(identity.driverName);
  if (path.empty()) return 0;
  if (m_hInstAllowInv == HMODULE{}) m_hInstAllowInv = Os().modules.LoadLibraryW(path.c_str());
  if (m_hInstAllowInv == HMODULE{}) return 0;
  const auto isAllowInvitation =
      Export<ParlosIsAllowInvitationFunction>(m_hInstAllowInv, kParlosIsAllowInvitation);
  return isAllowInvitation == nullptr ? 0
                                      : isAllowInvitation(identity.printerName, identity.driverName,
                                                          identity.modelId, 0, -1, 1);
}

std::u16string MakeInvitationParameter(std::int32_t level, const PrinterIdentity& identity) {
  if (level == 0) return {};
  std::u16string text = u" /ASMRT\n";
  text += WideFormat(u" /T \"%s%d\"\n", u"INVITE", level);
  AddOption(text, u" /P \"%s\"\n", identity.printerName);
  AddOption(text, u" /D \"%s\"\n", identity.driverName);
  AddOption(text, u" /M \"%s\"\n", identity.modelId);
  AddOption(text, u" /O \"%s\"", identity.portName);
  return text;
}

void StartInvitation(std::int32_t level, const PrinterIdentity& identity) {
  PathText program;
  if (GetDepExeName(identity, program) == 0) return;
  const std::u16string text = MakeInvitationParameter(level, identity);
  if (text.empty()) return;
  CTempFileHolder file;
  if (!file.Write(text)) return;
  // The name alone: the system finds the program, and the program removes the file.
  StartExe(WideFormat(u"%s /FU \"%s\"", program, file.path()).c_str());
  g_VglLog.get().Increment(VGLLOG_TRAYICON, kCountInvitation, identity.printerName);
}

}  // namespace vgl
