// Whether a printer is masked: its driver, or a program of the suite, may say in the printer's own
// data (value "VGLSetting", a number) that it isn't to be monitored.
#pragma once

#include <cstdint>

namespace vgl {

// Not 0 when no agent has any business running for this printer: the number that the printer's data
// has, or 1 for a printer that can't be opened, because it is gone. 0 without that value, for a
// printer that an installer is working on, and for an empty or null name.
//
// Every agent asks this every three seconds for as long as it lives: it makes the calls of one
// guarded open, one read and the closing, and no other.
std::int32_t IsPrinterMasked(const char16_t* printer);

}  // namespace vgl
