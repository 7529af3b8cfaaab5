#include "Common/KVRDEFREGISTRY.h"

#include "Common/reg_library.h"
#include "platform/platform.h"

namespace vgl {

using namespace platform;

namespace {

// The registry library in the place of the system's registry. What the classes do with a registry
// is in Common/REGISTRY.cpp.
class LibraryRegistry final : public Registry {
 public:
  std::int32_t RegOpenKeyExW(HKEY parent, const char16_t* subKey, std::uint32_t access,
                             HKEY* key) override {
    return CRegLibrary::RegOpenKeyExW(parent, subKey, access, key);
  }

  // The library is always handed a place for the disposition.
  std::int32_t RegCreateKeyExW(HKEY parent, const char16_t* subKey, std::uint32_t access, HKEY* key,
                               std::uint32_t* disposition) override {
    std::uint32_t unasked = 0;
    return CRegLibrary::RegCreateKeyExW(parent, subKey, access, key,
                                        disposition == nullptr ? &unasked : disposition);
  }

  std::int32_t RegQueryValueExW(HKEY key, const char16_t* name, std::uint32_t* type, void* data,
                                std::uint32_t* bytes) override {
    return CRegLibrary::RegQueryValueExW(key, name, type, data, bytes);
  }

  std::int32_t RegSetValueExW(HKEY key, const char16_t* name, std::uint32_t type, const void* data,
                              std::uint32_t bytes) override {
    return CRegLibrary::RegSetValueExW(key, name, type, data, bytes);
  }

  std::int32_t RegDeleteValueW(HKEY key, const char16_t* name) override {
    return CRegLibrary::RegDeleteValueW(key, name);
  }

  std::int32_t RegDeleteKeyW(HKEY parent, const char16_t* subKey) override {
    return CRegLibrary::RegDeleteKeyW(parent, subKey);
  }

  std::int32_t RegEnumKeyExW(HKEY key, std::uint32_t index, char16_t* name, std::uint32_t* chars,
                             char16_t* keyClass, std::uint32_t* classChars) override {
    std::uint64_t written = 0;  // a FILETIME
    return CRegLibrary::RegEnumKeyExW(key, index, name, chars, keyClass, classChars, &written);
  }

  // The suite hands ordinal 17 no room for type and data, only for the name; those are asked for by
  // that name, of ordinal 11.
  std::int32_t RegEnumValueW(HKEY key, std::uint32_t index, char16_t* name, std::uint32_t* chars,
                             std::uint32_t* type, void* data, std::uint32_t* bytes) override {
    const std::int32_t error = CRegLibrary::RegEnumValueW(key, index, name, chars);
    if (error != ERROR_SUCCESS || (type == nullptr && bytes == nullptr)) return error;
    return CRegLibrary::RegQueryValueExW(key, name, type, data, bytes);
  }

  std::int32_t RegCloseKey(HKEY key) override { return CRegLibrary::RegCloseKey(key); }
};

}  // namespace

Registry& RegistryInUse() {
  static LibraryRegistry library;
  return g_bRegLibraryMode != 0 ? library : SystemRegistry();
}

}  // namespace vgl
