// The driver package's registry library, ready for any test: exports by ordinal only, of the shape
// of the system's registry functions, which answer from the registry of the calling process's
// machine.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/sim/library.h"
#include "platform/types.h"

namespace sim {

class Machine;

// With all the exports below.
Library& AddRegistryLibrary(Machine& machine, std::u16string_view path);

// Each does what the system's function of its shape does. Keys have no class, no security and no
// time: what is asked of those is empty or 0.
namespace registry_exports {

// Ordinal 2
std::int32_t CreateKey(platform::HKEY parent, const char16_t* subKey, std::uint32_t reserved,
                       char16_t* keyClass, std::uint32_t options, std::uint32_t access,
                       void* security, platform::HKEY* key, std::uint32_t* disposition);
// Ordinal 4
std::int32_t OpenKey(platform::HKEY parent, const char16_t* subKey, std::uint32_t options,
                     std::uint32_t access, platform::HKEY* key);
// Ordinal 6
std::int32_t DeleteKey(platform::HKEY parent, const char16_t* subKey);
// Ordinal 7
std::int32_t CloseKey(platform::HKEY key);
// Ordinal 9
std::int32_t EnumKey(platform::HKEY key, std::uint32_t index, char16_t* name, std::uint32_t* chars,
                     std::uint32_t* reserved, char16_t* keyClass, std::uint32_t* classChars,
                     void* time);
// Ordinal 11
std::int32_t QueryValue(platform::HKEY key, const char16_t* name, std::uint32_t* reserved,
                        std::uint32_t* type, void* data, std::uint32_t* bytes);
// Ordinal 13
std::int32_t DeleteValue(platform::HKEY key, const char16_t* name);
// Ordinal 15
std::int32_t SetValue(platform::HKEY key, const char16_t* name, std::uint32_t reserved,
                      std::uint32_t type, const void* data, std::uint32_t bytes);
// Ordinal 17
std::int32_t EnumValue(platform::HKEY key, std::uint32_t index, char16_t* name,
                       std::uint32_t* chars, std::uint32_t* reserved, std::uint32_t* type,
                       void* data, std::uint32_t* bytes);
// Ordinal 19: RegQueryInfoKeyW
std::int32_t QueryInfo(platform::HKEY key, char16_t* keyClass, std::uint32_t* classChars,
                       std::uint32_t* reserved, std::uint32_t* subKeys,
                       std::uint32_t* longestSubKey, std::uint32_t* longestClass,
                       std::uint32_t* values, std::uint32_t* longestValueName,
                       std::uint32_t* mostValueBytes, std::uint32_t* securityBytes, void* time);
// Ordinal 20, of which nothing is known but its shape: answers 0.
std::int32_t Unknown(std::int32_t number);

}  // namespace registry_exports

}  // namespace sim
