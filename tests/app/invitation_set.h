// Default machines whose driver set has what is started unasked: invitations, NetPilot.
#pragma once

#include <string>

#include "desk/invitation_library.h"
#include "platform/sim/machine.h"
#include "tests/support/sim_desk.h"

namespace vgl {

inline constexpr char16_t kInvitations[] =
    u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\KVPARLOS.DLL";
// The same, as the install description has it.
inline constexpr char kInvitationsInDriverFolder[] = "DRIVERDIR+\"\\KVPARLOS.DLL\"";
// Where a driver set that keeps its settings in the registry has them.
inline constexpr char16_t kDriverKey[] = u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200";

// Has the install description of the default machine name a library, by a value as it stands there.
inline void NameInvitationLibrary(sim::Machine& machine,
                                  const std::string& value = kInvitationsInDriverFolder) {
  constexpr char16_t kInstallDescription[] =
      u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\KS7200.DAT";
  machine.files().WriteFile(kInstallDescription,
                            machine.files().ReadFile(kInstallDescription).value() +
                                "REGENTER=DRV,\"SMRT_PARLOS\"," + value + "\r\n");
}

// Whether the driver's ink-order service is offered.
inline constexpr char16_t kInkOrderKey[] = u"Software\\KAVRO\\KAVRO Studio 7200 IO_URL";

// Gives the default machine all that has an agent arm its two kicks: the ink-order service, an
// invitation library whose period is five minutes, and a VIF that names NetPilot.
inline void OfferKicks(sim::Machine& machine) {
  machine.registry().MakeKey(platform::HKEY_LOCAL_MACHINE, kInkOrderKey);
  desk::AddInvitationLibrary(machine, kInvitations);
  desk::InvitationLibraryOf(machine).period = 300000;
  NameInvitationLibrary(machine);
  AddToVif(machine, "[Download]\r\nUPPILOTEXE=NETPILOT.EXE");
}

}  // namespace vgl
