#include "menu/driver_value.h"

#include "Common/REGISTRY.h"
#include "Common/path_lookup.h"
#include "Common/printer_lookup.h"
#include "Common/tray_log.h"
#include "Common/wide_format.h"
#include "profile/drv_info_reader.h"
#include "profile/profile_keys.h"

namespace vgl {

using namespace platform;

std::u16string ReadDriverValue(const PrinterIdentity& identity, const char16_t* keyPath,
                               const char16_t* valueName, const char16_t* reader) {
  PathText profile;
  GetProfilePath(&profile, identity.driverName, identity.modelId, identity.printerName);
  if (!SettingsAreInRegistry(identity.modelId, profile.c_str())) {
    TrayLogText(WideFormat(u"%s() Dat reading Ember", reader).c_str());
    return CDrvInfoReader().GetString(identity.printerName, keyPath, valueName);
  }
  TrayLogText(WideFormat(u"%s() Registry Ember", reader).c_str());
  constexpr std::uint32_t kMostBytes = PathText::capacity() * sizeof(char16_t);
  const CRegistry key(HKEY_LOCAL_MACHINE, keyPath, false, KEY_READ);
  return key.GetString(valueName, {}, kMostBytes);
}

std::u16string ReadDriverKeyValue(const PrinterIdentity& identity, const char16_t* valueName,
                                  const char16_t* reader) {
  PathText key;
  if (!key.Assign(DriverKeyPath(identity.driverName))) return {};
  return ReadDriverValue(identity, key.c_str(), valueName, reader);
}

std::optional<PathText> MenuKeyPath(const PrinterIdentity& identity) {
  PathText path;
  if (!FormatTo(path, u"%s\\Menu", DriverKeyPath(identity.driverName))) return std::nullopt;
  return path;
}

std::u16string ReadMenuValue(const PrinterIdentity& identity, const char16_t* valueName,
                             const char16_t* reader) {
  const std::optional<PathText> key = MenuKeyPath(identity);
  return key ? ReadDriverValue(identity, key->c_str(), valueName, reader) : std::u16string();
}

std::u16string ReadMenuCommand(const PrinterIdentity& identity, std::uint32_t id,
                               const char16_t* reader) {
  return ReadMenuValue(identity, WideFormat(u"%u", id).c_str(), reader);
}

}  // namespace vgl
