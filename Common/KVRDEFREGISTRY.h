// One open key of the registry, reached through the driver package's registry library once that is
// in use.
#pragma once

#include "Common/REGISTRY.h"

namespace vgl {

// The registry as the process is to reach it now: the system's while g_bRegLibraryMode is 0, else
// the registry library (Common/reg_library.h). There a call that has no export to go to fails with
// 12; a text that is empty goes as null, so that the library can't be told to delete a key by way
// of an empty sub-key.
platform::Registry& KvRdefRegistry();

// As CRegistry, which it is one of; each call looks anew where to go. A key that was opened on one
// of the two roads and is used on the other is what that other makes of it.
using CKvRdefRegistry = RegistryOperations<KvRdefRegistry, CRegistry>;
extern template class RegistryOperations<KvRdefRegistry, CRegistry>;

}  // namespace vgl
