#include "Common/fatal_error.h"

#include <cstdlib>

#include "platform/platform.h"

namespace vgl {

void FatalError() {
  platform::Os().process.ExitProcess(3);
  std::abort();  // never comes to it; a compiler can't always see that through a virtual call
}

}  // namespace vgl
