// One open key of the registry, reached through the driver package's registry library once that is
// in use.
#pragma once

#include "Common/REGISTRY.h"

namespace vgl {

// The registry as the process is to reach it now: the system's while g_bRegLibraryMode is 0, else
// the registry library (Common/reg_library.h). There a call that has no export to go to fails with
// 12; an empty sub-key or value name goes as null, which is what the library takes for none.
platform::Registry& RegistryInUse();

// As CRegistry, which it is one of; each call looks anew where to go. A key that was opened on one
// of the two roads and is used on the other is what that other makes of it.
using CKvRdefRegistry = RegistryOperations<RegistryInUse, CRegistry>;
extern template class RegistryOperations<RegistryInUse, CRegistry>;

}  // namespace vgl
