// What code costs in platform calls, operation by operation.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/sim/process.h"

namespace vgl {

// The operations that `body` carries out in that process, in their order, with "-" for one that
// gives something back or can't fail. It runs once whole, and then once for each operation, which
// fails: it must put back by itself what it needs to take the same way again.
inline std::vector<std::string> OperationsOf(sim::Process& process,
                                             const std::function<void()>& body) {
  const std::uint64_t before = process.calls();
  body();
  const std::uint64_t count = process.calls() - before;
  std::vector<std::string> operations;
  for (std::uint64_t number = 1; number <= count; ++number) {
    process.FailCall(number);
    body();
    const std::string& failed = process.failedOperation();
    operations.push_back(failed.empty() ? "-" : failed);
  }
  return operations;
}

}  // namespace vgl
