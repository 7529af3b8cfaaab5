// The platform's calls on the registry.
#pragma once

#include "platform/registry.h"

namespace sim {

class Machine;

class RegistryCalls final : public platform::Registry {
 public:
  explicit RegistryCalls(Machine& machine) : m_machine(machine) {}

  std::int32_t RegOpenKeyExW(platform::HKEY parent, const char16_t* subKey, std::uint32_t access,
                             platform::HKEY* key) override;
  std::int32_t RegCreateKeyExW(platform::HKEY parent, const char16_t* subKey, std::uint32_t access,
                               platform::HKEY* key, std::uint32_t* disposition) override;
  std::int32_t RegQueryValueExW(platform::HKEY key, const char16_t* name, std::uint32_t* type,
                                void* data, std::uint32_t* bytes) override;
  std::int32_t RegSetValueExW(platform::HKEY key, const char16_t* name, std::uint32_t type,
                              const void* data, std::uint32_t bytes) override;
  std::int32_t RegDeleteValueW(platform::HKEY key, const char16_t* name) override;
  std::int32_t RegDeleteKeyW(platform::HKEY parent, const char16_t* subKey) override;
  std::int32_t RegEnumKeyExW(platform::HKEY key, std::uint32_t index, char16_t* name,
                             std::uint32_t* chars, char16_t* keyClass,
                             std::uint32_t* classChars) override;
  std::int32_t RegEnumValueW(platform::HKEY key, std::uint32_t index, char16_t* name,
                             std::uint32_t* chars, std::uint32_t* type, void* data,
                             std::uint32_t* bytes) override;
  std::int32_t RegCloseKey(platform::HKEY key) override;

 private:
  Machine& m_machine;
};

}  // namespace sim
