// An invitation library for the simulated machine, in place of the closed library of a driver set.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sim/library.h"

namespace sim {
class Machine;
}

namespace desk {

// A line for each printer that the library was told about, in UTF-8, as in: close: "Studio 7200"
inline constexpr char16_t kInvitationLog[] = u"C:\\ProgramData\\KAVRO\\VGL3\\PARLOS.LOG";

// The face of all invitation libraries of one machine: what they answer, and what they were told.
struct InvitationLibrary {
  std::vector<std::u16string> closedPrinters;  // by FY07ParlosCloseExW, in order
  std::int32_t closeResult = 1;                // what that answers
};

// The library under that path, with its export by name.
sim::Library& AddInvitationLibrary(sim::Machine& machine, std::u16string_view path);
InvitationLibrary& InvitationLibraryOf(sim::Machine& machine);

}  // namespace desk
