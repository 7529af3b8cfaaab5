// The files that a printer's driver is registered with; the data file is the VIF of the suite's
// driver sets.
#pragma once

#include <string>

#include "platform/spooler.h"

namespace vgl {

// As the spooler gives them at level 2: the files with or without a folder. What it leaves out is
// empty.
struct DriverFiles {
  std::u16string name;  // the driver's
  std::u16string driverPath;
  std::u16string dataFile;
};

// Of a printer that is open and stays so. All empty when the handle is null, and when the spooler
// doesn't tell.
DriverFiles DriverFilesOf(platform::HPRINTER printer);

// The data file alone.
std::u16string DataFileOfDriver(platform::HPRINTER printer);

}  // namespace vgl
