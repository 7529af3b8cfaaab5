// What the printer's driver set says under a key and a value's name. The names and what the values
// mean are the driver set's; docs/driver-set.md lists them.
//
// Every read looks anew for the place where the set keeps its settings, and for what stands there:
// a change of the set shows at the next read. A value that is missing, can't be read or is too long
// is an empty text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Common/fixed_text.h"
#include "menu/printer_identity.h"

namespace vgl {

// `reader` is the name of the operation that asks; the tray log tells by it where the value was
// looked for, as "OnAux() Registry Ember" and "OnAux() Dat reading Ember".

// The one rule for every driver value: from the registry, at most 260 characters, where the model's
// profile says "RegistryBaseVGL" 1; else from the printer's install description. `keyPath` is below
// HKEY_LOCAL_MACHINE.
std::u16string ReadDriverValue(const PrinterIdentity& identity, const char16_t* keyPath,
                               const char16_t* valueName, const char16_t* reader);

// A value of the driver's own key; empty also where the key's path takes 260 characters or more.
std::u16string ReadDriverKeyValue(const PrinterIdentity& identity, const char16_t* valueName,
                                  const char16_t* reader);

// The key of the driver's menu; nothing when its path takes 260 characters or more.
std::optional<PathText> MenuKeyPath(const PrinterIdentity& identity);
// A value of that key; the second one is the command text of an entry. Empty also where there is no
// such path.
std::u16string ReadMenuValue(const PrinterIdentity& identity, const char16_t* valueName,
                             const char16_t* reader);
std::u16string ReadMenuCommand(const PrinterIdentity& identity, std::uint32_t id,
                               const char16_t* reader);

}  // namespace vgl
