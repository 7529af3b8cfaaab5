// The platform's calls that only tell: system, language.
#pragma once

#include "platform/nls.h"
#include "platform/system_info.h"

namespace sim {

class Machine;

class SystemCalls final : public platform::SystemInfo {
 public:
  explicit SystemCalls(Machine& machine) : m_machine(machine) {}
  std::uint32_t GetTickCount() override;
  void GetLocalTime(platform::LocalTime* time) override;
  std::int64_t time() override;
  bool GetVersionExW(platform::OsVersion* version) override;
  std::uint32_t GetSystemDirectoryW(char16_t* path, std::uint32_t chars) override;

 private:
  Machine& m_machine;
};

class LanguageCalls final : public platform::NationalLanguage {
 public:
  explicit LanguageCalls(Machine& machine) : m_machine(machine) {}
  std::uint32_t GetSystemDefaultLCID() override;
  std::uint16_t GetUserDefaultLangID() override;
  bool GetStringTypeExW(std::uint32_t locale, std::uint32_t infoType, const char16_t* text,
                        std::int32_t chars, std::uint16_t* types) override;
  std::int32_t lstrcmpiW(const char16_t* left, const char16_t* right) override;
  std::int32_t WideCharToMultiByte(std::uint32_t codePage, const char16_t* text, std::int32_t chars,
                                   char* out, std::int32_t bytes) override;
  std::int32_t MultiByteToWideChar(std::uint32_t codePage, const char* text, std::int32_t bytes,
                                   char16_t* out, std::int32_t chars) override;

 private:
  Machine& m_machine;
};

}  // namespace sim
