// What a printer answers on Windows, as the stand-ins for closed libraries have it: values of the
// printer's data in the spooler.
#pragma once

// clang-format off
#include <windows.h>
#include <winspool.h>
// clang-format on

namespace stub {

inline const wchar_t* Wide(const char16_t* text) { return reinterpret_cast<const wchar_t*>(text); }

// A value as it stands there, at most `bytes` of it; false when there is none.
inline bool ReadPrinterData(const char16_t* printer, const wchar_t* name, void* data, DWORD bytes) {
  HANDLE handle = nullptr;
  if (!OpenPrinterW(const_cast<wchar_t*>(Wide(printer)), &handle, nullptr)) return false;
  DWORD type = 0;
  DWORD needed = 0;
  const DWORD error = GetPrinterDataW(handle, const_cast<wchar_t*>(name), &type,
                                      static_cast<BYTE*>(data), bytes, &needed);
  ClosePrinter(handle);
  return error == ERROR_SUCCESS;
}

// A number; `otherwise` when there is none.
inline DWORD PrinterNumber(const char16_t* printer, const wchar_t* name, DWORD otherwise) {
  DWORD number = 0;
  return ReadPrinterData(printer, name, &number, sizeof number) ? number : otherwise;
}

}  // namespace stub
