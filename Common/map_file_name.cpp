// Which instance map a printer is in.
#include "Common/instance_map_layout.h"
#include "Common/printer_lookup.h"
#include "profile/drv_info_reader.h"

namespace vgl {

std::int32_t GetMapFileName(const char16_t* printer, PathText* outName) {
  if (outName == nullptr) return 0;
  if (GetMapFileNameNoDefault(printer, outName) == 0 && !outName->Assign(kMapV5.sectionName))
    return 0;
  return static_cast<std::int32_t>(outName->length());
}

std::int32_t GetMapFileNameNoDefault(const char16_t* printer, PathText* outName) {
  if (outName == nullptr) return 0;
  outName->Clear();
  std::u16string driver;
  if (GetDriverName(printer, driver) == 0) return 0;
  const std::u16string name =
      CDrvInfoReader().GetString(printer, DriverKeyPath(driver).c_str(), u"MapFileName");
  return !name.empty() && outName->Assign(name) ? 1 : 0;
}

}  // namespace vgl
