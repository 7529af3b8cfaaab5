// What the agent asks about the operating system. The system is asked anew each time; one that
// doesn't tell its version counts as none of the families, with version 0.0.
#pragma once

#include <string_view>

namespace vgl {

// Whether a condition word of an install description's line holds on this system, without regard to
// case: 1 or 0.
//   ALL, or no word  always
//   WIN9X            the Windows 9x family
//   WINNT            the NT family
//   WINNT40          the NT family, version 4
//   WIN2000          the NT family, version 5.0 or any later one
//   WIN2KLATER       the NT family, later than version 5.0
//   BUILD64, BUILD32 in a 64-bit build of the agent, in a 32-bit build
// Any other word holds nowhere. Blanks around the word are not taken off.
int TestCondition(std::u16string_view word);

// Whether this is the NT family. A driver set names files of its own for systems that aren't.
bool IsNtFamily();
// The NT family from version 5.0 on: where the registry library applies.
bool IsWin2000OrLater();
// A version below 5, of whatever family: where the utility module has its older key.
bool IsBeforeVersion5();

}  // namespace vgl
