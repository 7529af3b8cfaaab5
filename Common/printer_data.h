// The printer opened to read its data: the guarded open with all rights, else with whatever rights
// it is opened with by default.
#pragma once

#include <cstdint>

#include "Common/kv_open_printer.h"

namespace vgl {

// A stack object around one read or a few; it closes what it opened.
class CPrinterForData {
 public:
  // Opens at once, twice at most.
  explicit CPrinterForData(const char16_t* printer);
  ~CPrinterForData();
  CPrinterForData(const CPrinterForData&) = delete;
  CPrinterForData& operator=(const CPrinterForData&) = delete;

  // Null when it couldn't be opened.
  platform::HPRINTER handle() const { return m_hPrinter; }
  // The last result of the guarded open, as CKvOpenPrinter has them.
  std::int32_t openResult() const { return m_nResult; }

 private:
  CKvOpenPrinter m_cOpen;
  platform::HPRINTER m_hPrinter{};
  std::int32_t m_nResult;
};

}  // namespace vgl
