// The printer's record in the user's registry, as the frame reads and writes it.
#include "Common/path_lookup.h"
#include "Common/target_records.h"
#include "Common/tray_log.h"
#include "app/main_frame.h"
#include "platform/owned.h"
#include "profile/profile_keys.h"

namespace vgl {

using namespace platform;

namespace {

constexpr char16_t kTrayIconEnable[] = u"TrayIconEnable";
constexpr char16_t kTrayIconSelected[] = u"TrayIconSelected";

// Leaves `number` as it is when the value can't be read into its four bytes. A shorter value leaves
// its upper bytes.
bool ReadNumber(HKEY key, const char16_t* name, std::uint32_t& number) {
  std::uint32_t read = number;
  std::uint32_t bytes = sizeof read;
  if (Os().registry.RegQueryValueExW(key, name, nullptr, &read, &bytes) != ERROR_SUCCESS)
    return false;
  number = read;
  return true;
}

}  // namespace

std::int32_t CMainFrame::LoadRegSet() {
  TrayLogText(u"CMainFrame::LoadRegSet");
  FindOrMakeRecord();
  std::uint32_t enabled = 0;
  if (!ReadIconChoice(enabled)) {
    // No record to be read: the profile tells, as far as there is one.
    if (!m_szDatPath.empty()) {
      m_nIconSelected =
          ReadModelNumber(kProfileTrayIconSelected, m_szModelID.c_str(), m_szDatPath.c_str());
      enabled = ReadModelNumber(kProfileTrayIconEnable, m_szModelID.c_str(), m_szDatPath.c_str());
    } else {
      enabled = 1;
    }
  }
  if (enabled == 0) return 0;
  GetResPath(&m_szResDll, m_szDriverName.c_str(), m_szModelID.c_str(), m_szPrinterName.c_str());
  return 1;
}

void CMainFrame::FindOrMakeRecord() {
  const bool isPort = m_szPrinterName.empty() && !m_szPortName.empty();
  PathText path;
  if (FindTargetKey(isPort ? m_szPortName.c_str() : m_szPrinterName.c_str(), isPort, path) != 0)
    CreateTargetRecord(m_szPrinterName.c_str(), m_szPortName.c_str(), m_szModelID.c_str(), isPort,
                       path);
  if (!path.empty()) m_szRegKey = path;
}

// Where no record could be found or made the path is empty, which opens the user's registry itself:
// that says nothing of an icon, and the start ends instead of going by the profile.
bool CMainFrame::ReadIconChoice(std::uint32_t& enabled) {
  OwnedKey record;
  if (Os().registry.RegOpenKeyExW(HKEY_CURRENT_USER, m_szRegKey.c_str(), KEY_READ, record.Out()) !=
      ERROR_SUCCESS)
    return false;
  ReadNumber(record.get(), kTrayIconSelected, m_nIconSelected);
  ReadNumber(record.get(), kTrayIconEnable, enabled);
  return true;
}

std::int32_t CMainFrame::DisableIconReg() {
  PathText path;
  if (FindTargetKey(PrinterOrPort().c_str(), m_szPrinterName.empty(), path) != 0) return 0;
  OwnedKey record;
  if (Os().registry.RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), KEY_ALL_ACCESS, record.Out()) !=
      ERROR_SUCCESS)
    return 0;
  const std::uint32_t disabled = 0;
  return Os().registry.RegSetValueExW(record.get(), kTrayIconEnable, REG_DWORD, &disabled,
                                      sizeof disabled) == ERROR_SUCCESS
             ? 1
             : 0;
}

void CMainFrame::OnIconUpdate() {
  OwnedKey record;
  if (Os().registry.RegOpenKeyExW(HKEY_CURRENT_USER, m_szRegKey.c_str(), KEY_READ, record.Out()) !=
      ERROR_SUCCESS)
    return;
  if (ReadNumber(record.get(), kTrayIconSelected, m_nIconSelected))
    UpdateTrayIcon(m_nIconSelected, IconChange::Modify);
  Os().windowing.UpdateWindow(m_hWnd);
}

}  // namespace vgl
