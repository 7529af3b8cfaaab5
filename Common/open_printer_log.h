// The open-printer log: every guarded opening and closing of a printer, in "KVOPENPRINTER.log".
//
// There is no switch but the file: who wants the log makes an empty file of that name in "\KAVRO"
// below the common application data folder, and ends it by removing the file. Every program of the
// suite writes to the one file; a named mutex keeps their lines apart.
//
// A line: "2024/05/07 09:03:01 PrcID=00002620 ThrID=00008192 MName=K_QD21TR.EXE: ", then the text,
// which brings its own newline.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Common/wide_format.h"

namespace vgl {

class CKvOpenPrinterLog {
 public:
  // Looks for the file, so that each guarded open finds out anew whether it is to be logged.
  CKvOpenPrinterLog();
  virtual ~CKvOpenPrinterLog() = default;
  CKvOpenPrinterLog(const CKvOpenPrinterLog&) = delete;
  CKvOpenPrinterLog& operator=(const CKvOpenPrinterLog&) = delete;

  // One line, when the file was there as the object was made. A file that has gone meanwhile is
  // made anew. Waits while another process writes.
  template <class... Args>
  void Print(std::u16string_view format, const Args&... args) const {
    if (m_bEnabled == 1 && !m_csPath.empty()) PrintText(WideFormat(format, args...));
  }

 private:
  void PrintText(std::u16string_view text) const;

  std::u16string m_csPath;  // empty when the system doesn't tell the folder
  std::int32_t m_bEnabled = 0;
};

}  // namespace vgl
