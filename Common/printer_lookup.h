// What the system and the driver set tell of a printer by its name.
#pragma once

#include <string>
#include <string_view>

#include "platform/platform.h"

namespace vgl {

// The driver and the port of a printer, as the spooler knows them, through the guarded open.
// Outputs are emptied first. A text of 260 characters or more doesn't come through.
//
// 1 when it came through; 0 for an empty or null name, and for a printer that can't be opened or
// told of. GetDriverAndPort: 1 when at least one of the two did.
int GetDriverName(const char16_t* printer, std::u16string& outDriver);
int GetDriverAndPort(const char16_t* printer, std::u16string& outDriver, std::u16string& outPort);
// The same of a printer that is open, which stays open.
int GetDriverNameFromHandle(platform::HPRINTER printer, std::u16string& outDriver);

// Where a driver's settings stand, in the registry (below HKEY_LOCAL_MACHINE) and in install
// descriptions alike.
std::u16string DriverKeyPath(std::u16string_view driver);

// The id of a driver's model, as the install description of the printer names it, or that of the
// driver where no printer is given; empty when it names none. Always gives 1: the id alone tells
// whether there is one. `printer` and `driver` may be null.
int GetModelId(const char16_t* printer, const char16_t* driver, std::u16string& outModelId);

}  // namespace vgl
