// Texts of the language resource library that is loaded.
#pragma once

#include <cstdint>
#include <string>

#include "platform/process_wide.h"
#include "platform/types.h"

namespace vgl {

// The module that strings load from: the resource library while it is loaded, else null, which
// stands for the program itself.
extern platform::ProcessWideValue<platform::HMODULE> g_hResDll;

// Room for a string in characters, with its terminator.
inline constexpr std::uint32_t kResStringRoom = 512;

// Whether g_hResDll has a string of that number that isn't empty. `*target` takes it, unless it is
// so long that it may have been cut (511 characters and more): the target keeps its text then,
// though the string was found. `target` isn't null.
bool LoadResString(std::u16string* target, std::uint32_t id);

}  // namespace vgl
