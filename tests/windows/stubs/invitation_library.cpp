// A stand-in for the invitation library of a driver set, for tests on Windows: writes down which
// printers it was told about, a line each, in UTF-8.
#include <windows.h>

#include <cstdint>

namespace {

constexpr wchar_t kLog[] = L"C:\\ProgramData\\KAVRO\\VGL3\\PARLOS.LOG";
constexpr int kMostBytes = 4 * 1024;

void Append(HANDLE log, const char* bytes, int count) {
  DWORD written = 0;
  WriteFile(log, bytes, static_cast<DWORD>(count), &written, nullptr);
}

}  // namespace

extern "C" {

std::int32_t FY07ParlosCloseExW(const wchar_t* printer) {
  char name[kMostBytes];
  const int bytes = WideCharToMultiByte(CP_UTF8, 0, printer, lstrlenW(printer), name, kMostBytes,
                                        nullptr, nullptr);
  const HANDLE log = CreateFileW(kLog, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                 nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (log == INVALID_HANDLE_VALUE) return 0;
  Append(log, "close: \"", 8);
  Append(log, name, bytes);
  Append(log, "\"\n", 2);
  CloseHandle(log);
  return 1;
}

}  // extern "C"
