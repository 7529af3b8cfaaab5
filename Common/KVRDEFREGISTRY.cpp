#include "Common/KVRDEFREGISTRY.h"

#include "Common/reg_library.h"
#include "Common/registry_operations.h"
#include "platform/platform.h"

namespace vgl {

using namespace platform;

namespace {

// The registry library in the place of the system's registry.
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

  std::int32_t RegEnumKeyExW(HKEY key, std::uint32_t index, char16_t* name,
                             std::uint32_t* chars) override {
    EnumText keyClass;
    std::uint32_t classChars = EnumText::capacity();
    std::uint64_t written = 0;  // a FILETIME
    return CRegLibrary::RegEnumKeyExW(key, index, name, chars, keyClass.buffer(), &classChars,
                                      &written);
  }

  // The library is asked for the name alone when it enumerates; the rest is a query for that name.
  std::int32_t RegEnumValueW(HKEY key, std::uint32_t index, char16_t* name, std::uint32_t* chars,
                             std::uint32_t* type, void* data, std::uint32_t* bytes) override {
    const std::int32_t error = CRegLibrary::RegEnumValueW(key, index, name, chars);
    if (error != ERROR_SUCCESS || (type == nullptr && bytes == nullptr)) return error;
    return CRegLibrary::RegQueryValueExW(key, name, type, data, bytes);
  }

  std::int32_t RegCloseKey(HKEY key) override { return CRegLibrary::RegCloseKey(key); }
};

}  // namespace

Registry& KvRdefRegistry() {
  static LibraryRegistry library;
  return g_bRegLibraryMode != 0 ? library : SystemRegistry();
}

template class RegistryOperations<KvRdefRegistry, CRegistry>;

}  // namespace vgl
