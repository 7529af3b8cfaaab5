// The programs that the driver set names beside its menu, and which entries of the menu are theirs:
// the dependent program ("DepExe"), which orders ink and is invited; the driver-update program
// ("DriverUpdateName").
//
// Everything is read anew at each call (menu/driver_value.h). Results are 1 or 0.
#pragma once

#include <cstdint>
#include <string_view>

#include "Common/fixed_text.h"
#include "menu/printer_identity.h"

namespace vgl {

// The file name of the dependent program, A to Z in upper case. 1 when the set has a value of at
// most 259 characters; without a backslash in it the name is empty all the same. `outName` is
// emptied first.
int GetDepExeName(const PrinterIdentity& identity, PathText& outName);

// Whether the entry `id` orders ink: whether its command text holds the dependent program's file
// name and "MENU", both in any case. The registry's menu key is asked before anything else, also
// where the set's settings aren't in the registry: so this may speak of another text than the one
// that an entry is built from. An empty name is no entry's.
bool IsInkOrderMenu(const PrinterIdentity& identity, std::uint32_t id,
                    std::u16string_view depExeName);

// Whether the ink-order service is offered for the driver: whether there is its key
// "<driver name> IO_URL", for the system or for the registry library in use. 1 or 0.
int IsEnableInkOrder(const PrinterIdentity& identity);

// File name and folder of the driver-update program: the name with its extension, A to Z in upper
// case; drive and folder with the separator at its end, empty where the value has neither. 1 when
// the set has a value and each of the two fits; the name is empty for a value that ends in a
// separator. Otherwise 0 and both are empty. `outFolder` may be null.
int GetDriverUpdateExeName(const PrinterIdentity& identity, PathText& outName, PathText* outFolder);

// Whether the entry `id` runs that program: whether its command text holds the name, in any case.
// This is what decides on the shield.
bool IsDriverUpdateMenu(const PrinterIdentity& identity, std::uint32_t id,
                        std::u16string_view fileName);
// The same of a command text, exact in case: what decides on how a chosen entry is run. So a text
// that has the name in small letters has the shield, but isn't run as a driver update.
bool IsDriverUpdateMenu(std::u16string_view commandText, std::u16string_view fileName);

}  // namespace vgl
