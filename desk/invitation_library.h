// An invitation library for the simulated machine, in place of the closed library of a driver set.
#pragma once

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

// A line for each call of the library, in UTF-8:
//   timer: "Studio 7200" "KAVRO Studio 7200"
//   allow: "Studio 7200" "KAVRO Studio 7200" "S7200" 0 -1 1
//   close: "Studio 7200"
inline constexpr char16_t kInvitationLog[] = u"C:\\ProgramData\\KAVRO\\VGL3\\PARLOS.LOG";

// The face of all invitation libraries of one machine: what they answer, and what they were told.
struct InvitationLibrary {
  // The milliseconds between two asks, and the level of an invitation. Where none is set: the
  // numbers "InvitationPeriod" and "InvitationLevel" among the printer's data, 0 where those are
  // missing.
  std::optional<std::uint32_t> period;
  std::optional<std::int32_t> level;

  struct TimerCall {  // of FY08ParlosIsInvitationTimerW
    std::u16string printer;
    std::u16string driver;

    friend bool operator==(const TimerCall&, const TimerCall&) = default;
  };
  std::vector<TimerCall> timerCalls;

  struct AllowCall {  // of FY08ParlosIsAllowInvitationW
    std::u16string printer;
    std::u16string driver;
    std::u16string modelId;
    std::int32_t last[3] = {};

    friend bool operator==(const AllowCall&, const AllowCall&) = default;
  };
  std::vector<AllowCall> allowCalls;

  std::vector<std::u16string> closedPrinters;  // by FY07ParlosCloseExW, in order
  std::int32_t closeResult = 1;                // what that answers
};

// The library under that path, with its exports by name.
sim::Library& AddInvitationLibrary(sim::Machine& machine, std::u16string_view path);
InvitationLibrary& InvitationLibraryOf(sim::Machine& machine);

}  // namespace desk
