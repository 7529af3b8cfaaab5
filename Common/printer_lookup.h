// What the system and the driver set tell of a printer by its name.
#pragma once

#include <string>

namespace vgl {

// The driver and the port of a printer, as the spooler knows them, through the guarded open. Both
// outputs are emptied first. 1 when at least one of the two came through (a text of 260 characters
// or more doesn't); 0 for an empty or null name, and for a printer that can't be opened or told of.
int GetDriverAndPort(const char16_t* printer, std::u16string& outDriver, std::u16string& outPort);

// The id of a driver's model, as the driver set names it; empty when it names none. Always gives 1:
// the id alone tells whether there is one. `printer` and `driver` may be null.
//
// For now the program doesn't read the driver set: the id is always empty.
int GetModelId(const char16_t* printer, const char16_t* driver, std::u16string& outModelId);

}  // namespace vgl
