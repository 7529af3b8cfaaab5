#include "Common/printer_lookup.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "Common/fixed_text.h"
#include "Common/kv_open_printer.h"
#include "platform/platform.h"

namespace vgl {

using namespace platform;

namespace {

// What the spooler tells at level 2. The texts stay good as long as this lives.
class PrinterOfLevel2 {
 public:
  explicit PrinterOfLevel2(HPRINTER printer) {
    std::uint32_t needed = 0;
    Os().spooler.GetPrinterW(printer, 2, nullptr, 0, &needed);
    if (needed < sizeof(PrinterInfo2)) return;
    // Whole structures, so that the first one is aligned.
    m_buffer.resize(needed / sizeof(PrinterInfo2) + 1);
    const auto room = static_cast<std::uint32_t>(m_buffer.size() * sizeof(PrinterInfo2));
    if (!Os().spooler.GetPrinterW(printer, 2, m_buffer.data(), room, &needed)) m_buffer.clear();
  }

  // Null when the spooler didn't tell.
  const PrinterInfo2* info() const { return m_buffer.empty() ? nullptr : m_buffer.data(); }

 private:
  std::vector<PrinterInfo2> m_buffer;
};

// Takes a text that the spooler told, if it did and it fits into 260 characters.
bool Take(const char16_t* told, std::u16string& out) {
  if (told == nullptr || std::u16string_view(told).size() >= PathText::capacity()) return false;
  out = told;
  return true;
}

}  // namespace

int GetDriverAndPort(const char16_t* printer, std::u16string& outDriver, std::u16string& outPort) {
  outDriver.clear();
  outPort.clear();
  if (printer == nullptr || *printer == u'\0') return 0;
  CKvOpenPrinter open;
  HPRINTER handle{};
  if (open.KvOpenPrinter(printer, &handle, nullptr) != CKvOpenPrinter::kOpened) return 0;
  const PrinterOfLevel2 told(handle);
  const bool gotDriver = told.info() != nullptr && Take(told.info()->driverName, outDriver);
  const bool gotPort = told.info() != nullptr && Take(told.info()->portName, outPort);
  open.KvClosePrinter(handle);
  return gotDriver || gotPort ? 1 : 0;
}

int GetModelId(const char16_t* /*printer*/, const char16_t* /*driver*/,
               std::u16string& outModelId) {
  outModelId.clear();
  return 1;
}

}  // namespace vgl
