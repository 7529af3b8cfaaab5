// The platform's calls on profile files.
#pragma once

#include "platform/profile_files.h"

namespace sim {

class Machine;

class ProfileCalls final : public platform::ProfileFiles {
 public:
  explicit ProfileCalls(Machine& machine) : m_machine(machine) {}

  std::uint32_t GetPrivateProfileStringW(const char16_t* section, const char16_t* key,
                                         const char16_t* fallback, char16_t* value,
                                         std::uint32_t chars, const char16_t* path) override;
  std::uint32_t GetPrivateProfileStringA(const char* section, const char* key, const char* fallback,
                                         char* value, std::uint32_t chars,
                                         const char* path) override;
  std::uint32_t GetPrivateProfileIntW(const char16_t* section, const char16_t* key,
                                      std::int32_t fallback, const char16_t* path) override;
  std::uint32_t GetPrivateProfileSectionW(const char16_t* section, char16_t* lines,
                                          std::uint32_t chars, const char16_t* path) override;

 private:
  Machine& m_machine;
};

}  // namespace sim
