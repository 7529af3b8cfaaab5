// The registry library's exports, as the process calls them.
#include <string>

#include "Common/reg_library.h"

namespace vgl {

using namespace platform;

namespace {

template <class Char, RegExport Export, class... Arguments>
std::int32_t Call(std::int32_t notBound, Arguments... arguments) {
  if (g_pRegLibrary == nullptr) return notBound;
  const auto function = g_pRegLibrary->loader<Char>().table().template Get<Export>();
  return function == nullptr ? notBound : function(arguments...);
}

// Calls an export whose second argument is the name of a sub-key or value. This is the one place
// that settles how such a name gets to the library: in the width that the caller has it in (which
// is the wide one for all of this program), as a copy of its own, an empty one as null.
template <class Char, RegExport Export, class... Arguments>
std::int32_t CallWithName(HKEY key, const Char* name, Arguments... behind) {
  if (name == nullptr || *name == Char{})
    return Call<Char, Export>(kRegNotBound, key, static_cast<const Char*>(nullptr), behind...);
  const std::basic_string<Char> copy(name);
  return Call<Char, Export>(kRegNotBound, key, copy.c_str(), behind...);
}

}  // namespace

std::int32_t CRegLibrary::RegCreateKeyExW(HKEY key, const char16_t* subKey, std::uint32_t access,
                                          HKEY* result, std::uint32_t* disposition) {
  return CallWithName<char16_t, RegExport::CreateKeyEx>(key, subKey, 0U, nullptr, 0U, access,
                                                        nullptr, result, disposition);
}

std::int32_t CRegLibrary::RegOpenKeyExW(HKEY key, const char16_t* subKey, std::uint32_t access,
                                        HKEY* result) {
  return CallWithName<char16_t, RegExport::OpenKeyEx>(key, subKey, 0U, access, result);
}

std::int32_t CRegLibrary::RegDeleteKeyW(HKEY key, const char16_t* subKey) {
  return CallWithName<char16_t, RegExport::DeleteKey>(key, subKey);
}

std::int32_t CRegLibrary::RegEnumKeyExW(HKEY key, std::uint32_t index, char16_t* name,
                                        std::uint32_t* nameChars, char16_t* keyClass,
                                        std::uint32_t* classChars, void* written) {
  return Call<char16_t, RegExport::EnumKeyEx>(kRegNotBound, key, index, name, nameChars, nullptr,
                                              keyClass, classChars, written);
}

std::int32_t CRegLibrary::RegQueryValueExW(HKEY key, const char16_t* name, std::uint32_t* type,
                                           void* data, std::uint32_t* bytes) {
  return CallWithName<char16_t, RegExport::QueryValueEx>(key, name, nullptr, type, data, bytes);
}

std::int32_t CRegLibrary::RegDeleteValueW(HKEY key, const char16_t* name) {
  return CallWithName<char16_t, RegExport::DeleteValue>(key, name);
}

std::int32_t CRegLibrary::RegSetValueExW(HKEY key, const char16_t* name, std::uint32_t type,
                                         const void* data, std::uint32_t bytes) {
  return CallWithName<char16_t, RegExport::SetValueEx>(key, name, 0U, type, data, bytes);
}

std::int32_t CRegLibrary::RegEnumValueW(HKEY key, std::uint32_t index, char16_t* name,
                                        std::uint32_t* nameChars) {
  return Call<char16_t, RegExport::EnumValue>(kRegNotBound, key, index, name, nameChars, nullptr,
                                              nullptr, nullptr, nullptr);
}

std::int32_t CRegLibrary::RegQueryInfoKeyW(HKEY key, char16_t* keyClass, std::uint32_t* classChars,
                                           std::uint32_t* reserved, std::uint32_t* subKeys,
                                           std::uint32_t* longestSubKey,
                                           std::uint32_t* longestClass, std::uint32_t* values,
                                           std::uint32_t* longestName, std::uint32_t* longestData,
                                           std::uint32_t* securityBytes, void* written) {
  return Call<char16_t, RegExport::QueryInfoKey>(kRegNotBound, key, keyClass, classChars, reserved,
                                                 subKeys, longestSubKey, longestClass, values,
                                                 longestName, longestData, securityBytes, written);
}

std::int32_t CRegLibrary::RegCreateKeyExA(HKEY key, const char* subKey, std::uint32_t reserved,
                                          char* keyClass, std::uint32_t options,
                                          std::uint32_t access, void* security, HKEY* result,
                                          std::uint32_t* disposition) {
  return CallWithName<char, RegExport::CreateKeyEx>(key, subKey, reserved, keyClass, options,
                                                    access, security, result, disposition);
}

std::int32_t CRegLibrary::RegOpenKeyExA(HKEY key, const char* subKey, std::uint32_t options,
                                        std::uint32_t access, HKEY* result) {
  return CallWithName<char, RegExport::OpenKeyEx>(key, subKey, options, access, result);
}

std::int32_t CRegLibrary::RegDeleteKeyA(HKEY key, const char* subKey) {
  return CallWithName<char, RegExport::DeleteKey>(key, subKey);
}

std::int32_t CRegLibrary::RegEnumKeyExA(HKEY key, std::uint32_t index, char* name,
                                        std::uint32_t* nameChars, std::uint32_t* reserved,
                                        char* keyClass, std::uint32_t* classChars, void* written) {
  return Call<char, RegExport::EnumKeyEx>(kRegNotBound, key, index, name, nameChars, reserved,
                                          keyClass, classChars, written);
}

std::int32_t CRegLibrary::RegQueryValueExA(HKEY key, const char* name, std::uint32_t* reserved,
                                           std::uint32_t* type, void* data, std::uint32_t* bytes) {
  return CallWithName<char, RegExport::QueryValueEx>(key, name, reserved, type, data, bytes);
}

std::int32_t CRegLibrary::RegDeleteValueA(HKEY key, const char* name) {
  return CallWithName<char, RegExport::DeleteValue>(key, name);
}

std::int32_t CRegLibrary::RegSetValueExA(HKEY key, const char* name, std::uint32_t reserved,
                                         std::uint32_t type, const void* data,
                                         std::uint32_t bytes) {
  return CallWithName<char, RegExport::SetValueEx>(key, name, reserved, type, data, bytes);
}

std::int32_t CRegLibrary::RegEnumValueA(HKEY key, std::uint32_t index, char* name,
                                        std::uint32_t* nameChars, std::uint32_t* reserved,
                                        std::uint32_t* type, void* data, std::uint32_t* bytes) {
  return Call<char, RegExport::EnumValue>(kRegNotBound, key, index, name, nameChars, reserved, type,
                                          data, bytes);
}

std::int32_t CRegLibrary::RegQueryInfoKeyA(HKEY key, char* keyClass, std::uint32_t* classChars,
                                           std::uint32_t* reserved, std::uint32_t* subKeys,
                                           std::uint32_t* longestSubKey,
                                           std::uint32_t* longestClass, std::uint32_t* values,
                                           std::uint32_t* longestName, std::uint32_t* longestData,
                                           std::uint32_t* securityBytes, void* written) {
  return Call<char, RegExport::QueryInfoKey>(kRegNotBound, key, keyClass, classChars, reserved,
                                             subKeys, longestSubKey, longestClass, values,
                                             longestName, longestData, securityBytes, written);
}

std::int32_t CRegLibrary::RegCloseKey(HKEY key) {
  return Call<char, RegExport::CloseKey>(kRegNotBound, key);
}

std::int32_t CRegLibrary::Unknown20(std::int32_t argument) {
  return Call<char, RegExport::Unknown20>(kRegUnknown20NotBound, argument);
}

}  // namespace vgl
