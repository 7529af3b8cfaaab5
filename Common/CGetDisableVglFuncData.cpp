#include "Common/CGetDisableVglFuncData.h"

#include <algorithm>
#include <iterator>

#include "Common/printer_data.h"
#include "Common/text_conversion.h"

namespace vgl {

using namespace platform;

namespace {

constexpr std::uint8_t kNewestVersion = 1;
constexpr std::uint32_t kFirstSwitch = 1;
constexpr std::uint32_t kNotifyByte = 6;
// The last byte that is ever looked at. The suite looks at it in a record of 9 bytes, too.
constexpr std::uint32_t kInkOrderByte = 9;
constexpr std::uint32_t kLongForm = 9;

}  // namespace

std::int32_t CGetDisableVglFuncData::GetDisableData(const char16_t* printer, void* buffer,
                                                    std::uint32_t size,
                                                    std::uint32_t* needed) const {
  if (IsMissing(printer)) return kFailed;
  const CPrinterForData open(printer);
  if (open.handle() == HPRINTER{}) return open.openResult();
  return Os().spooler.GetPrinterDataW(open.handle(), u"KV_DISABLE_VGLFUNC", nullptr, buffer, size,
                                      needed);
}

std::int32_t CGetDisableVglFuncData::GetUpdateData(const char16_t* printer, std::uint32_t* value,
                                                   std::uint32_t* needed) const {
  if (IsMissing(printer)) return kFailed;
  const CPrinterForData open(printer);
  if (open.handle() == HPRINTER{}) return open.openResult();
  return Os().spooler.GetPrinterDataExW(open.handle(), u"PrinterDriverData", u"KV_DISABLE_UPDATE",
                                        nullptr, value, sizeof *value, needed);
}

std::int32_t CGetDisableVglFuncData::LoadDisableRecord(const char16_t* printer) {
  if (printer == nullptr) return kFailed;
  std::int32_t status = ERROR_SUCCESS;
  std::uint32_t size = 0;
  if (pRecord == nullptr) {
    status = GetDisableData(printer, nullptr, 0, &size);
    if (status == ERROR_SUCCESS) return status;
    if (status != ERROR_MORE_DATA) return kFailed;
    // Behind a short record stand zeros.
    pRecord = std::make_unique<std::uint8_t[]>(std::max(size, kInkOrderByte + 1));
    std::uint32_t needed = 0;
    // When this fails the zeros are taken for the record all the same; the status tells the caller.
    status = GetDisableData(printer, pRecord.get(), size, &needed);
  }
  if (bLoaded != 0) return status;
  // A refused record stays, and is refused again.
  if (pRecord[0] > kNewestVersion) return kFailed;
  Decode(size);
  bLoaded = 1;
  return status;
}

void CGetDisableVglFuncData::Decode(std::uint32_t size) {
  std::int32_t* const switches[] = {&bNoNetPilot, &bNoInvitation, &bFunc3, &bFunc4, &bNoIoPopup};
  for (std::uint32_t index = 0; index < std::size(switches); ++index) {
    const std::uint32_t at = kFirstSwitch + index;
    if (at < size && pRecord[at] == 0) *switches[index] = 1;
  }
  for (std::uint32_t index = 0; index < std::size(bNotify); ++index)
    bNotify[index] = pRecord[kNotifyByte + index / 8] >> (index & 7) & 1;
  if (size < kLongForm) return;
  if (pRecord[8] == 0) bByte8 = 1;
  if (pRecord[kInkOrderByte] == 0) bNoInkOrder = 1;
}

std::int32_t CGetDisableVglFuncData::LoadUpdateLock(const char16_t* printer) {
  if (printer == nullptr) return kFailed;
  if (bUpdateRead != 0) return 0;
  std::uint32_t value = 0;
  std::uint32_t needed = 0;
  if (GetUpdateData(printer, &value, &needed) != ERROR_SUCCESS) return kFailed;
  if (value != 0) bDisableUpdate = 1;
  bUpdateRead = 1;
  return 0;
}

}  // namespace vgl
