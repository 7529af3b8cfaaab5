// The functions of the suite that a printer's driver has switched off for one printer, by values in
// the printer's own data in the spooler. The driver package writes them and fixes their form.
//
// "KV_DISABLE_VGLFUNC" is a record of bytes, here the function-disable record:
//   0     version; above 1 the record is refused
//   1..5  0 switches a function off, any other number leaves it on
//   6, 7  one bit a notification, set where it stays on; ten are in use, from bit 0 of byte 6 on
//   8, 9  as 1..5; looked at only where the record has 9 bytes or more
// What a shorter record doesn't have stays as it was. "KV_DISABLE_UPDATE" in the key
// "PrinterDriverData" is a number: not 0 locks updates of driver and programs.
#pragma once

#include <cstdint>
#include <memory>

namespace vgl {

// A stack object for one question, or for a few about one printer: what was read is kept. All that
// can't be read leaves its members at 0, and so every function on.
//
// Errors are numbers of the system. kFailed stands for a bad argument and a refused record, and
// where told for everything else. A guarded open that gives no printer gives its own result instead
// of an error: 0 for a printer that can't be opened, -1 and -2 as CKvOpenPrinter has them.
class CGetDisableVglFuncData {
 public:
  static constexpr std::int32_t kFailed = -99;

  CGetDisableVglFuncData() = default;
  virtual ~CGetDisableVglFuncData() = default;
  CGetDisableVglFuncData(const CGetDisableVglFuncData&) = delete;
  CGetDisableVglFuncData& operator=(const CGetDisableVglFuncData&) = delete;

  // Reads the function-disable record and sets the members by it, once: a second call asks nobody
  // and changes nothing. 0 when that is done, and also when the printer can't be opened, with
  // nothing set; kFailed for a null or empty name, a record that is refused, and what can't be
  // read.
  //
  // Any other number: the record was there, but couldn't be read any more once its size was known.
  // The members then speak for a record of zeros, all functions off: they are not to be looked at.
  // (0 comes with such members where the printer itself was gone by then, which ends an agent.)
  std::int32_t LoadDisableRecord(const char16_t* printer);

  // Reads the lock of updates, once. 0 when that is done, and also when the printer can't be
  // opened, which counts as read and leaves updates open; kFailed for a null or empty name and for
  // a value that can't be read.
  std::int32_t LoadUpdateLock(const char16_t* printer);

  // The bytes of the function-disable record into `size` bytes at `buffer`, which may be null for a
  // size of 0. `*needed` is set as GetPrinterDataW does. Its error, ERROR_MORE_DATA for too small a
  // room; kFailed for a null or empty name.
  std::int32_t GetDisableData(const char16_t* printer, void* buffer, std::uint32_t size,
                              std::uint32_t* needed) const;
  // The number of the lock of updates likewise, of which there are four bytes.
  std::int32_t GetUpdateData(const char16_t* printer, std::uint32_t* value,
                             std::uint32_t* needed) const;

  // In the suite's order, behind the pointer to the virtual functions. 1 where switched off.
  std::int32_t bNoNetPilot = 0;
  std::int32_t bNoInvitation = 0;
  std::int32_t bFunc3 = 0;  // nobody in the agent asks for these two
  std::int32_t bFunc4 = 0;
  std::int32_t bNoIoPopup = 0;
  std::int32_t bByte8 = 0;  // nor for this one
  std::int32_t bNoInkOrder = 0;
  std::int32_t bDisableUpdate = 0;
  std::int32_t bNotify[10] = {};            // 1 where the notification stays on
  std::unique_ptr<std::uint8_t[]> pRecord;  // the bytes of the record, null until it is read
  std::int32_t bLoaded = 0;                 // 1: the members above speak for the record
  std::int32_t bUpdateRead = 0;             // 1: bDisableUpdate speaks for the value

 private:
  // Sets the members by a record of `size` bytes.
  void Decode(std::uint32_t size);
};

}  // namespace vgl
