#include "platform/sim/registry_library.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "platform/platform.h"
#include "platform/sim/machine.h"

namespace sim {

using namespace platform;

namespace {

// Longer than any name of a key or value, with its terminator.
constexpr std::uint32_t kNameRoom = 16384;
constexpr std::size_t kTimeBytes = 8;

Registry& SystemRegistry() { return Os().registry; }

void TellNoClass(char16_t* keyClass, std::uint32_t* classChars) {
  if (keyClass != nullptr && classChars != nullptr && *classChars != 0) *keyClass = u'\0';
  if (classChars != nullptr) *classChars = 0;
}

void TellNoTime(void* time) {
  if (time != nullptr) std::memset(time, 0, kTimeBytes);
}

void Tell(std::uint32_t* where, std::uint32_t number) {
  if (where != nullptr) *where = number;
}

// How many of something there are, and the most that one takes.
struct Census {
  std::uint32_t count = 0;
  std::uint32_t longestName = 0;  // in characters
  std::uint32_t mostBytes = 0;
};

// Counts until `next` finds no more: it gives an error, a name's length and a size.
template <class Next>
std::int32_t Count(const Next& next, Census& census) {
  for (;;) {
    std::uint32_t chars = kNameRoom;
    std::uint32_t bytes = 0;
    const std::int32_t error = next(census.count, &chars, &bytes);
    if (error == ERROR_NO_MORE_ITEMS) return ERROR_SUCCESS;
    if (error != ERROR_SUCCESS) return error;
    ++census.count;
    census.longestName = std::max(census.longestName, chars);
    census.mostBytes = std::max(census.mostBytes, bytes);
  }
}

}  // namespace

namespace registry_exports {

std::int32_t CreateKey(HKEY parent, const char16_t* subKey, std::uint32_t /*reserved*/,
                       char16_t* /*keyClass*/, std::uint32_t /*options*/, std::uint32_t access,
                       void* /*security*/, HKEY* key, std::uint32_t* disposition) {
  return SystemRegistry().RegCreateKeyExW(parent, subKey, access, key, disposition);
}

std::int32_t OpenKey(HKEY parent, const char16_t* subKey, std::uint32_t /*options*/,
                     std::uint32_t access, HKEY* key) {
  return SystemRegistry().RegOpenKeyExW(parent, subKey, access, key);
}

std::int32_t DeleteKey(HKEY parent, const char16_t* subKey) {
  return SystemRegistry().RegDeleteKeyW(parent, subKey);
}

std::int32_t CloseKey(HKEY key) { return SystemRegistry().RegCloseKey(key); }

std::int32_t EnumKey(HKEY key, std::uint32_t index, char16_t* name, std::uint32_t* chars,
                     std::uint32_t* /*reserved*/, char16_t* keyClass, std::uint32_t* classChars,
                     void* time) {
  const std::int32_t error =
      SystemRegistry().RegEnumKeyExW(key, index, name, chars, keyClass, classChars);
  if (error == ERROR_SUCCESS) TellNoTime(time);
  return error;
}

std::int32_t QueryValue(HKEY key, const char16_t* name, std::uint32_t* /*reserved*/,
                        std::uint32_t* type, void* data, std::uint32_t* bytes) {
  return SystemRegistry().RegQueryValueExW(key, name, type, data, bytes);
}

std::int32_t DeleteValue(HKEY key, const char16_t* name) {
  return SystemRegistry().RegDeleteValueW(key, name);
}

std::int32_t SetValue(HKEY key, const char16_t* name, std::uint32_t /*reserved*/,
                      std::uint32_t type, const void* data, std::uint32_t bytes) {
  return SystemRegistry().RegSetValueExW(key, name, type, data, bytes);
}

std::int32_t EnumValue(HKEY key, std::uint32_t index, char16_t* name, std::uint32_t* chars,
                       std::uint32_t* /*reserved*/, std::uint32_t* type, void* data,
                       std::uint32_t* bytes) {
  return SystemRegistry().RegEnumValueW(key, index, name, chars, type, data, bytes);
}

std::int32_t QueryInfo(HKEY key, char16_t* keyClass, std::uint32_t* classChars,
                       std::uint32_t* /*reserved*/, std::uint32_t* subKeys,
                       std::uint32_t* longestSubKey, std::uint32_t* longestClass,
                       std::uint32_t* values, std::uint32_t* longestValueName,
                       std::uint32_t* mostValueBytes, std::uint32_t* securityBytes, void* time) {
  std::u16string name(kNameRoom, u'\0');
  Census keyCensus;
  Census valueCensus;
  std::int32_t error = Count(
      [&](std::uint32_t index, std::uint32_t* chars, std::uint32_t*) {
        return SystemRegistry().RegEnumKeyExW(key, index, name.data(), chars, nullptr, nullptr);
      },
      keyCensus);
  if (error != ERROR_SUCCESS) return error;
  error = Count(
      [&](std::uint32_t index, std::uint32_t* chars, std::uint32_t* bytes) {
        return SystemRegistry().RegEnumValueW(key, index, name.data(), chars, nullptr, nullptr,
                                              bytes);
      },
      valueCensus);
  if (error != ERROR_SUCCESS) return error;
  TellNoClass(keyClass, classChars);
  Tell(subKeys, keyCensus.count);
  Tell(longestSubKey, keyCensus.longestName);
  Tell(longestClass, 0);
  Tell(values, valueCensus.count);
  Tell(longestValueName, valueCensus.longestName);
  Tell(mostValueBytes, valueCensus.mostBytes);
  Tell(securityBytes, 0);
  TellNoTime(time);
  return ERROR_SUCCESS;
}

std::int32_t Unknown(std::int32_t /*number*/) { return 0; }

}  // namespace registry_exports

Library& AddRegistryLibrary(Machine& machine, std::u16string_view path) {
  using namespace registry_exports;
  Library& library = machine.libraries().Add(path);
  library.Export<&CreateKey>(2, nullptr);
  library.Export<&OpenKey>(4, nullptr);
  library.Export<&DeleteKey>(6, nullptr);
  library.Export<&CloseKey>(7, nullptr);
  library.Export<&EnumKey>(9, nullptr);
  library.Export<&QueryValue>(11, nullptr);
  library.Export<&DeleteValue>(13, nullptr);
  library.Export<&SetValue>(15, nullptr);
  library.Export<&EnumValue>(17, nullptr);
  library.Export<&QueryInfo>(19, nullptr);
  library.Export<&Unknown>(20, nullptr);
  return library;
}

}  // namespace sim
