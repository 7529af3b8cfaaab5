// The platform's calls on the shell of the simulated machine.
#pragma once

#include "platform/shell.h"

namespace sim {

class Machine;

class ShellCalls final : public platform::Shell {
 public:
  explicit ShellCalls(Machine& machine) : m_machine(machine) {}
  std::int32_t SHGetSpecialFolderPathW(char16_t* path, std::int32_t folder, bool create) override;
  std::int64_t ShellExecuteW(platform::HWND owner, const char16_t* verb, const char16_t* file,
                             const char16_t* parameters, const char16_t* directory,
                             std::int32_t show) override;
  bool Shell_NotifyIconW(std::uint32_t message, const platform::NotifyIconData& data) override;

 private:
  Machine& m_machine;
};

}  // namespace sim
