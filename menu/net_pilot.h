// The daily start of NetPilot, the suite's web guide program, while the printer can be reached.
//
// The time of the last start is the value "LastKickNetPilot" of the printer's record below
// HKEY_CURRENT_USER: REG_BINARY, 8 bytes, a signed count of seconds since 1970. All agents of one
// user and printer share it, and a new one goes on by it.
#pragma once

#include <cstdint>
#include <string>

#include "menu/printer_identity.h"

namespace vgl {

// From the one time to the other in whole seconds, 0 where that is no time forward, and the most
// that 32 bits hold where it is longer.
std::uint32_t SecondsFrom(std::int64_t then, std::int64_t now);

// Whether a start is due that long after the last one: by its milliseconds, of which there are 32
// bits. They wrap, so that from 4294968 seconds (49.7 days) on there are a few again, and the start
// can be late by one more day. The suite's other programs count alike.
bool IsNetPilotDue(std::uint32_t seconds);

// What is done at each check for the program of that name in the driver's folder; nothing for an
// empty name. Where no time was kept, or other than in 8 bytes, a printer that answers has the time
// kept and nothing is started; later, once a start is due and the printer answers, NetPilot is
// started and counted, and the time is kept if it did start.
//
// A printer without a record has its time at the root of HKEY_CURRENT_USER. No failure is told; the
// next check tries again.
void CheckNetPilot(const PrinterIdentity& identity, const std::u16string& program);

// Whether the printer answers now: 1, and 0 also where the driver set's printer library can't be
// asked. It may take as long as the printer does.
std::int32_t IsGetPrinterStatus(const PrinterIdentity& identity);

}  // namespace vgl
