// The data file that a printer's driver is registered with: the VIF of the suite's driver sets.
#pragma once

#include <string>

#include "platform/spooler.h"

namespace vgl {

// The name as the spooler gives it at level 2, with or without a folder, of a printer that is open
// and stays so. Empty when the handle is null, and when the spooler doesn't tell.
std::u16string DataFileOfDriver(platform::HPRINTER printer);

}  // namespace vgl
