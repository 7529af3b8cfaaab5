#include "Common/printer_level2.h"

#include <cstddef>
#include <new>

#include "platform/platform.h"

namespace vgl {

using namespace platform;

CPrinterLevel2::CPrinterLevel2(HPRINTER printer) {
  std::uint32_t needed = 0;
  Os().spooler.GetPrinterW(printer, 2, nullptr, 0, &needed);
  if (needed < sizeof(PrinterInfo2)) return;
  // Whole structures, so that the first one is aligned.
  const std::size_t count = needed / sizeof(PrinterInfo2) + 1;
  m_told.reset(new (std::nothrow) PrinterInfo2[count]());
  if (m_told == nullptr) return;
  const auto room = static_cast<std::uint32_t>(count * sizeof(PrinterInfo2));
  if (!Os().spooler.GetPrinterW(printer, 2, m_told.get(), room, &needed)) m_told.reset();
}

}  // namespace vgl
