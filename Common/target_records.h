// The monitored-printer records: numbered keys below HKEY_CURRENT_USER, one for each printer that
// the suite watches for the user.
//
// A record's path, "Software\KAVRO\VGL3\VGLData\KVLTarget\P0000000000000000", is what all functions
// here and in record_defaults.h mean by one; its number has no meaning and is never given anew
// while the key is there. Nothing is locked: which process a new number belongs to is settled by
// the registry alone. A null text counts as empty.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Common/fixed_text.h"
#include "platform/registry.h"

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

// Finds the record of a printer, or makes one. A port record is meant (`outIsPort`) where there is
// a port but no printer name, else a printer record. 0 when it was found, else the result of
// CreateTargetRecord.
int EnsureTargetRecord(const char16_t* printer, const char16_t* port, const char16_t* modelId,
                       bool& outIsPort, PathText& outKey);

// Sweeps the dead records away, adds one for the port (`isPort`) or the printer, and has the
// printer library of the driver set fill it with the model's settings. 1: no record could be added.
// 4: the library can't be found or loaded. 5: it lacks the export. Otherwise what the library gave,
// 0 for success. After all but 1 the record stays and `outKey` is its path: a later start finds it
// and doesn't fill it again.
//
// Beware of the sweep, which may not end (target_sweep.h).
int CreateTargetRecord(const char16_t* printer, const char16_t* port, const char16_t* modelId,
                       bool isPort, PathText& outKey);

// Adds a record under the lowest number that is free, with "Name" `name`, "Setting" 0 and "Timer"
// 10. 0: it is ready. 1: "Setting" doesn't read back as 0, or all numbers are taken. 2: "Name"
// couldn't be written. 3: the record couldn't be made. 4: nor the branch. 6: the path didn't fit.
// What was made until then stays. `outKey` is the record's path after 0 and where "Setting" doesn't
// read back, else empty.
int AddTargetKey(const char16_t* name, bool isPort, PathText& outKey);

// The value "Name" of an open record. False when it can't be read or is longer than a name may be,
// 260 characters; programs of the suite store it with or without its terminator.
using TargetName = FixedText<261>;
bool ReadTargetName(platform::HKEY record, TargetName& outName);

// The name under which the Run key may hold a record's agent: the record's path without the data
// branch and the backslash behind it. Empty for an empty path.
std::u16string RunValueNameOfRecord(std::u16string_view recordPath);

}  // namespace vgl
