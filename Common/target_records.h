// The monitored-printer records: numbered keys below HKEY_CURRENT_USER, one for each printer that
// the suite watches for the user.
#pragma once

#include <string>
#include <string_view>

#include "Common/fixed_text.h"

namespace vgl {

// The data branch, and the two branches of records below it: of printers known by their name, and
// of devices known only by a port.
inline constexpr char16_t kDataBranch[] = u"Software\\KAVRO\\VGL3\\VGLData";
inline constexpr char16_t kPrinterBranch[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget";
inline constexpr char16_t kPortBranch[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVNTarget";

// Finds the record whose value "Name" is `name`, without regard to case, among the port records
// (`isPort`) or the printer records; the first one counts. 0: `outKey` is the record's path below
// HKEY_CURRENT_USER. 1: there is none, or the path doesn't fit. 4: the branch doesn't open.
// In both of these `outKey` is empty.
int FindTargetKey(const char16_t* name, bool isPort, PathText& outKey);

// The name under which the Run key may hold a record's agent: the record's path without the data
// branch and the backslash behind it. Empty for an empty path.
std::u16string RunValueNameOfRecord(std::u16string_view recordPath);

}  // namespace vgl
