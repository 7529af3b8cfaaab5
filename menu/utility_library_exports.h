// The shape of the exports of a driver set's utility library. The library is a closed part of the
// driver set, named by the command text of a menu entry, loaded for one call and freed; names,
// numbers and argument order are its own, and so is what it does to the printer, and for how long.
#pragma once

namespace vgl {

// Texts end in their terminator, stay the caller's, and are not kept. All but the printer's name
// are empty in every call: what they are for is the library's affair. So is what it may give back.
using UtilityFunction = void (*)(const char16_t* printer, const char16_t* argument3,
                                 const char16_t* argument1, const char16_t* argument2);

}  // namespace vgl
