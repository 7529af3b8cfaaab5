// The printer's record in the user's registry, as the frame reads and writes it.
#include "Common/target_records.h"
#include "app/main_frame.h"
#include "platform/owned.h"

namespace vgl {

using namespace platform;

std::int32_t CMainFrame::DisableIconReg() {
  PathText path;
  if (FindTargetKey(PrinterOrPort().c_str(), m_szPrinterName.empty(), path) != 0) return 0;
  OwnedKey record;
  if (Os().registry.RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), KEY_ALL_ACCESS, record.Out()) !=
      ERROR_SUCCESS)
    return 0;
  const std::uint32_t disabled = 0;
  return Os().registry.RegSetValueExW(record.get(), u"TrayIconEnable", REG_DWORD, &disabled,
                                      sizeof disabled) == ERROR_SUCCESS
             ? 1
             : 0;
}

}  // namespace vgl
