// The driver package's registry library, ready for any test: exports by ordinal only, of the shape
// of the system's registry functions, which answer from the registry of the calling process's
// machine.
#pragma once

#include <string_view>

#include "platform/sim/library.h"

namespace sim {

class Machine;

// Ordinals 2 RegCreateKeyExW, 4 RegOpenKeyExW, 6 RegDeleteKeyW, 7 RegCloseKey, 9 RegEnumKeyExW,
// 11 RegQueryValueExW, 13 RegDeleteValueW, 15 RegSetValueExW, 17 RegEnumValueW, 19
// RegQueryInfoKeyW, and 20, which takes a 32-bit number and answers 0. Keys have no class, no
// security and no time: what is asked of those is empty or 0.
Library& AddRegistryLibrary(Machine& machine, std::u16string_view path);

}  // namespace sim
