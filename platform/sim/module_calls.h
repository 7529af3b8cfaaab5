// The platform's calls on the running program and its libraries.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/modules.h"
#include "platform/sim/library.h"
#include "platform/sim/process.h"

namespace sim {

class Machine;

// A library that a process has loaded. Its handle is the module's.
class LoadedLibrary final : public HandleBody {
 public:
  explicit LoadedLibrary(Library& library) : m_library(library) {}
  std::u16string Describe() const override { return u"library " + m_library.path(); }
  bool IsKernelObject() const override { return false; }

  Library& library() const { return m_library; }
  void AddLoad() { ++m_loads; }
  // False when that was the last one.
  bool DropLoad() { return --m_loads != 0; }

 private:
  Library& m_library;
  std::uint32_t m_loads = 1;
};

class ModuleCalls final : public platform::Modules {
 public:
  explicit ModuleCalls(Machine& machine) : m_machine(machine) {}

  platform::HMODULE GetModuleHandleW(const char16_t* name) override;
  std::uint32_t GetModuleFileNameW(platform::HMODULE module, char16_t* path,
                                   std::uint32_t chars) override;
  platform::HMODULE LoadLibraryW(const char16_t* path) override;
  platform::HMODULE LoadLibraryA(const char* path) override;
  bool FreeLibrary(platform::HMODULE module) override;
  platform::ExportedFunction GetProcAddress(platform::HMODULE library, const char* name) override;
  platform::ExportedFunction GetProcAddress(platform::HMODULE library,
                                            std::uint16_t ordinal) override;

 private:
  platform::HMODULE Load(const Call& call, std::u16string_view given);
  // The whole path of what is to be loaded; empty when there is nothing of that name.
  std::u16string WholePath(const Process& process, const std::u16string& path) const;

  Machine& m_machine;
};

}  // namespace sim
