// What the spooler tells of an open printer at level 2.
#pragma once

#include <memory>

#include "platform/spooler.h"

namespace vgl {

// Asks once, when it is made; the printer needn't be open any more afterwards. The texts stay good
// as long as this lives.
class CPrinterLevel2 {
 public:
  explicit CPrinterLevel2(platform::HPRINTER printer);

  // Null when the spooler didn't tell, or the memory for it was missing. What it leaves out is null
  // in here.
  const platform::PrinterInfo2* info() const { return m_told.get(); }

 private:
  std::unique_ptr<platform::PrinterInfo2[]> m_told;  // the texts lie behind the first one
};

}  // namespace vgl
