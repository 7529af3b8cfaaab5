#include "Common/printer_data.h"

namespace vgl {

using namespace platform;

CPrinterForData::CPrinterForData(const char16_t* printer) {
  const PrinterDefaults allRights{.desiredAccess = PRINTER_ALL_ACCESS};
  m_nResult = m_cOpen.KvOpenPrinter(printer, &m_hPrinter, &allRights);
  if (m_hPrinter == HPRINTER{}) m_nResult = m_cOpen.KvOpenPrinter(printer, &m_hPrinter, nullptr);
}

CPrinterForData::~CPrinterForData() {
  if (m_hPrinter != HPRINTER{}) m_cOpen.KvClosePrinter(m_hPrinter);
}

}  // namespace vgl
