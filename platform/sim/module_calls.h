// The platform's calls on the running program and its libraries.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/modules.h"
#include "platform/sim/library.h"
#include "platform/sim/pe_resources.h"
#include "platform/sim/process.h"

namespace sim {

class Machine;

// A library that a process has loaded. Its handle is the module's.
class LoadedLibrary final : public HandleBody {
 public:
  // `exports` is null for a library that has nothing but resources, `file` for one whose file holds
  // none.
  LoadedLibrary(std::u16string path, Library* exports, std::shared_ptr<const PeFile> file)
      : m_path(std::move(path)), m_exports(exports), m_file(std::move(file)) {}
  std::u16string Describe() const override { return u"library " + m_path; }
  bool IsKernelObject() const override { return false; }

  const std::u16string& path() const { return m_path; }
  Library* exports() const { return m_exports; }
  const PeFile* file() const { return m_file.get(); }
  void AddLoad() { ++m_loads; }
  // False when that was the last one.
  bool DropLoad() { return --m_loads != 0; }

 private:
  std::u16string m_path;
  Library* m_exports;
  std::shared_ptr<const PeFile> m_file;
  std::uint32_t m_loads = 1;
};

// Null for what isn't a library that the process has loaded.
std::shared_ptr<LoadedLibrary> FindLoadedLibrary(const Process& process, platform::HMODULE module);

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
