// Sections of the simulated machine, and the platform's calls on them. A view is memory of the host
// program: views of one section alias truly, and what reads or writes past a view's last page
// faults, as long as there are no thousands of views. Every section is backed by the page file, for
// reading and writing, and smaller than 4 GiB: anything else is refused with 50
// (ERROR_NOT_SUPPORTED).
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "platform/sections.h"

namespace sim {

class Machine;
class Process;

class SectionCalls final : public platform::Sections {
 public:
  explicit SectionCalls(Machine& machine) : m_machine(machine) {}
  ~SectionCalls() override;
  SectionCalls(const SectionCalls&) = delete;
  SectionCalls& operator=(const SectionCalls&) = delete;

  platform::HANDLE CreateFileMappingW(platform::HANDLE file,
                                      const platform::SecurityAttributes* attributes,
                                      std::uint32_t protection, std::uint32_t sizeHigh,
                                      std::uint32_t sizeLow, const char16_t* name) override;
  platform::HANDLE OpenFileMappingW(std::uint32_t access, const char16_t* name) override;
  void* MapViewOfFile(platform::HANDLE section, std::uint32_t access, std::uint64_t bytes) override;
  bool UnmapViewOfFile(const void* view) override;

 private:
  class View;

  // Memory of the host program: a view's pages, and mostly one behind them that can't be touched.
  struct Region {
    void* address;
    std::size_t bytes;     // of the view
    std::size_t reserved;  // of all
  };

  struct LeftBehind {
    const Process* process;
    Region region;
  };

  static void Free(const Region& region);
  void FreeOfEndedProcesses();

  Machine& m_machine;
  std::map<const void*, std::uint64_t> m_views;  // each view's handle in the ledger of its process
  // Of processes that ended with the view in their hands: until their threads are gone, they may
  // still look there while their stacks are unwound.
  std::vector<LeftBehind> m_leftBehind;
};

}  // namespace sim
