#include "profile/driver_key_names.h"

#include <string_view>

#include "Common/wide_format.h"
#include "profile/drv_file_locator.h"

namespace vgl {

namespace {

std::u16string KeyOfDriver(std::u16string_view format, const char16_t* printer) {
  std::u16string driver;
  if (CDrvFileLocator().GetDriverName(printer, &driver) != 1) return {};
  return WideFormat(format, driver);
}

}  // namespace

std::u16string GetDriverKey(const char16_t* printer) {
  return KeyOfDriver(u"Software\\Kavro\\Vgl3\\Driver\\%s", printer);
}

std::u16string GetMenuKey(const char16_t* printer) {
  return KeyOfDriver(u"Software\\Kavro\\Vgl3\\Driver\\%s\\Menu", printer);
}

std::u16string GetCommonKey() { return u"Software\\Kavro\\Vgl3\\VGLCommon"; }

}  // namespace vgl
