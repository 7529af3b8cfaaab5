// The names of the registry keys below HKEY_LOCAL_MACHINE under which a driver package keeps its
// settings.
//
// Other places write the same keys as "Software\KAVRO\VGL3\...": the registry doesn't tell case
// apart. Who compares such a name without the registry has to ignore case, too.
#pragma once

#include <string>

namespace vgl {

// "Software\Kavro\Vgl3\Driver\" and the name of the printer's driver, and the same with "\Menu"
// behind it. Empty when the driver's name can't be found (CDrvFileLocator::GetDriverName).
std::u16string GetDriverKey(const char16_t* printer);
std::u16string GetMenuKey(const char16_t* printer);

// "Software\Kavro\Vgl3\VGLCommon".
std::u16string GetCommonKey();

}  // namespace vgl
