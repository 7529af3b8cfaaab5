#include "Common/printer_lookup.h"

#include "Common/fixed_text.h"
#include "Common/kv_open_printer.h"
#include "Common/printer_level2.h"
#include "profile/drv_info_reader.h"

namespace vgl {

using namespace platform;

namespace {

// Takes a text that the spooler told, if it did and it fits into 260 characters.
bool Take(const char16_t* told, std::u16string& out) {
  if (told == nullptr || std::u16string_view(told).size() >= PathText::capacity()) return false;
  out = told;
  return true;
}

// Opens the printer, shows `read` what the spooler tells of it, and closes it.
template <class Read>
int AskSpooler(const char16_t* printer, const Read& read) {
  if (printer == nullptr || *printer == u'\0') return 0;
  CKvOpenPrinter open;
  HPRINTER handle{};
  if (open.KvOpenPrinter(printer, &handle, nullptr) != CKvOpenPrinter::kOpened) return 0;
  const int result = read(handle);
  open.KvClosePrinter(handle);
  return result;
}

}  // namespace

int GetDriverName(const char16_t* printer, std::u16string& outDriver) {
  outDriver.clear();
  return AskSpooler(printer,
                    [&](HPRINTER handle) { return GetDriverNameFromHandle(handle, outDriver); });
}

int GetDriverNameFromHandle(HPRINTER printer, std::u16string& outDriver) {
  outDriver.clear();
  if (printer == HPRINTER{}) return 0;
  const CPrinterLevel2 told(printer);
  return told.info() != nullptr && Take(told.info()->driverName, outDriver) ? 1 : 0;
}

int GetDriverAndPort(const char16_t* printer, std::u16string& outDriver, std::u16string& outPort) {
  outDriver.clear();
  outPort.clear();
  return AskSpooler(printer, [&](HPRINTER handle) {
    const CPrinterLevel2 told(handle);
    const bool gotDriver = told.info() != nullptr && Take(told.info()->driverName, outDriver);
    const bool gotPort = told.info() != nullptr && Take(told.info()->portName, outPort);
    return gotDriver || gotPort ? 1 : 0;
  });
}

std::u16string DriverKeyPath(std::u16string_view driver) {
  return u"Software\\KAVRO\\VGL3\\Driver\\" + std::u16string(driver);
}

int GetModelId(const char16_t* printer, const char16_t* driver, std::u16string& outModelId) {
  outModelId.clear();
  if (driver == nullptr || *driver == u'\0') return 1;
  const std::u16string key = DriverKeyPath(driver);
  const bool hasPrinter = printer != nullptr && *printer != u'\0';
  const CDrvInfoReader reader;
  outModelId = hasPrinter ? reader.GetString(printer, key.c_str(), u"ModelID")
                          : reader.GetStringOfDriver(driver, key.c_str(), u"ModelID");
  return 1;
}

}  // namespace vgl
