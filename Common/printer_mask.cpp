#include "Common/printer_mask.h"

#include "Common/printer_data.h"

namespace vgl {

using namespace platform;

std::int32_t IsPrinterMasked(const char16_t* printer) {
  if (printer == nullptr || *printer == u'\0') return 0;
  const CPrinterForData open(printer);
  if (open.handle() == HPRINTER{})
    return open.openResult() == CKvOpenPrinter::kInstallerActive ? 0 : 1;
  std::int32_t setting = 0;
  std::uint32_t needed = 0;
  const std::int32_t error = Os().spooler.GetPrinterDataW(open.handle(), u"VGLSetting", nullptr,
                                                          &setting, sizeof setting, &needed);
  return error == ERROR_SUCCESS ? setting : 0;
}

}  // namespace vgl
