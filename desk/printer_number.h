// What a printer of the simulated machine has among its data, as its closed libraries ask for it.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/sim/machine.h"

namespace desk {

// A number of the printer's key "PrinterDriverData"; `fallback` where there is no such printer, no
// value of that name, or one that isn't of type REG_DWORD with four bytes. Costs no platform call.
std::uint32_t PrinterNumber(sim::Machine& machine, std::u16string_view printer,
                            std::u16string_view name, std::uint32_t fallback);

}  // namespace desk
