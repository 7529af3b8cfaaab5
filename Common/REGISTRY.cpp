#include "Common/REGISTRY.h"

#include "Common/registry_operations.h"
#include "platform/platform.h"

namespace vgl {

platform::Registry& SystemRegistry() { return platform::Os().registry; }

template class RegistryOperations<SystemRegistry, RegistryFields>;

}  // namespace vgl
