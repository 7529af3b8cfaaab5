// The platform's calls on the running simulated process, and those that start others.
#pragma once

#include "platform/processes.h"

namespace sim {

class Machine;

class ProcessCalls final : public platform::Processes {
 public:
  explicit ProcessCalls(Machine& machine) : m_machine(machine) {}
  std::uint32_t GetCurrentProcessId() override;
  std::uint32_t GetCurrentThreadId() override;
  std::int32_t GetLastError() override;
  void SetLastError(std::int32_t error) override;
  void Sleep(std::uint32_t milliseconds) override;
  bool CreateProcessW(char16_t* commandLine, platform::ProcessInformation* started) override;
  platform::HANDLE CreateThread(platform::THREADPROC procedure, void* parameter) override;
  [[noreturn]] void ExitProcess(std::uint32_t code) override;

 private:
  Machine& m_machine;
};

}  // namespace sim
