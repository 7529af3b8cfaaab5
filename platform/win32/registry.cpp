// The registry of Windows.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

namespace platform {
namespace {

class RegistryOfWindows final : public Registry {
 public:
  std::int32_t RegOpenKeyExW(HKEY parent, const char16_t* subKey, std::uint32_t access,
                             HKEY* key) override {
    ::HKEY opened = nullptr;
    const LSTATUS status =
        ::RegOpenKeyExW(handle_cast<::HKEY>(parent), text_cast(subKey), 0, access, &opened);
    *key = handle_cast<HKEY>(opened);
    return status;
  }

  std::int32_t RegCreateKeyExW(HKEY parent, const char16_t* subKey, std::uint32_t access, HKEY* key,
                               std::uint32_t* disposition) override {
    ::HKEY opened = nullptr;
    const LSTATUS status = ::RegCreateKeyExW(handle_cast<::HKEY>(parent), text_cast(subKey), 0,
                                             nullptr, REG_OPTION_NON_VOLATILE, access, nullptr,
                                             &opened, dword_cast(disposition));
    *key = handle_cast<HKEY>(opened);
    return status;
  }

  std::int32_t RegQueryValueExW(HKEY key, const char16_t* name, std::uint32_t* type, void* data,
                                std::uint32_t* bytes) override {
    return ::RegQueryValueExW(handle_cast<::HKEY>(key), text_cast(name), nullptr, dword_cast(type),
                              static_cast<BYTE*>(data), dword_cast(bytes));
  }

  std::int32_t RegSetValueExW(HKEY key, const char16_t* name, std::uint32_t type, const void* data,
                              std::uint32_t bytes) override {
    return ::RegSetValueExW(handle_cast<::HKEY>(key), text_cast(name), 0, type,
                            static_cast<const BYTE*>(data), bytes);
  }

  std::int32_t RegDeleteValueW(HKEY key, const char16_t* name) override {
    return ::RegDeleteValueW(handle_cast<::HKEY>(key), text_cast(name));
  }

  std::int32_t RegDeleteKeyW(HKEY parent, const char16_t* subKey) override {
    return ::RegDeleteKeyW(handle_cast<::HKEY>(parent), text_cast(subKey));
  }

  std::int32_t RegEnumKeyExW(HKEY key, std::uint32_t index, char16_t* name, std::uint32_t* chars,
                             char16_t* keyClass, std::uint32_t* classChars) override {
    return ::RegEnumKeyExW(handle_cast<::HKEY>(key), index, text_cast(name), dword_cast(chars),
                           nullptr, text_cast(keyClass), dword_cast(classChars), nullptr);
  }

  std::int32_t RegEnumValueW(HKEY key, std::uint32_t index, char16_t* name, std::uint32_t* chars,
                             std::uint32_t* type, void* data, std::uint32_t* bytes) override {
    return ::RegEnumValueW(handle_cast<::HKEY>(key), index, text_cast(name), dword_cast(chars),
                           nullptr, dword_cast(type), static_cast<BYTE*>(data), dword_cast(bytes));
  }

  std::int32_t RegCloseKey(HKEY key) override { return ::RegCloseKey(handle_cast<::HKEY>(key)); }
};

}  // namespace

Registry& Win32Registry() { return *new RegistryOfWindows; }

}  // namespace platform
