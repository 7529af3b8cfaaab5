// Default machines whose driver set names an invitation library.
#pragma once

#include <string>

#include "platform/sim/machine.h"

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

}  // namespace vgl
