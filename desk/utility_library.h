// A utility library for the simulated machine, in place of the closed library of a driver set.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sim/library.h"

namespace sim {
class Machine;
}

namespace desk {

// A line for each call of an export as it begins, and one as it ends, in UTF-8:
//   begin UtCleanHeadW: "Studio 7200" "" "" ""
//   end UtCleanHeadW
inline constexpr char16_t kUtilityLog[] = u"C:\\ProgramData\\KAVRO\\VGL3\\UTILITY.LOG";

// The face of all utility libraries of one machine: how long they take, and what was called.
struct UtilityLibrary {
  // How long a call takes, in virtual milliseconds. Where none is set: the number
  // "UtilityMilliseconds" among the printer's data, 0 where that is missing.
  std::optional<std::uint32_t> milliseconds;

  struct Call {
    std::string name;
    std::array<std::u16string, 4> texts;
    std::uint32_t threadId = 0;
  };
  std::vector<Call> calls;  // as they began
  std::size_t ended = 0;    // how many of them came to their end
};

// The library under that path, with its thirteen exports by name.
sim::Library& AddUtilityLibrary(sim::Machine& machine, std::u16string_view path);
UtilityLibrary& UtilityLibraryOf(sim::Machine& machine);

}  // namespace desk
