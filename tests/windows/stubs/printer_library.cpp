// A stand-in for a model's printer library, for tests on Windows: KVPRN.DLL. A printer's serial
// number is the text "SerialID" in its data; the number "SerialCached", when it is 1, tells that
// the library knows it without asking. Its status is given unless the number "PrinterAnswers" is 0.
#include "Common/printer_library_exports.h"

#include <string>
#include <type_traits>

#include "tests/windows/stubs/printer_data.h"

namespace {

using namespace vgl;

constexpr std::int32_t kOtherFailure = -1;
constexpr DWORD kNameChars = 260;

using stub::Wide;

// --- Records

bool SetNumber(HKEY record, const wchar_t* name, DWORD number) {
  return RegSetValueExW(record, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number),
                        sizeof(number)) == ERROR_SUCCESS;
}

bool SetText(HKEY record, const wchar_t* name, const char16_t* text) {
  const auto bytes = static_cast<DWORD>((lstrlenW(Wide(text)) + 1) * sizeof(wchar_t));
  return RegSetValueExW(record, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), bytes) ==
         ERROR_SUCCESS;
}

bool IsNamed(HKEY record, const char16_t* name) {
  wchar_t text[kNameChars + 1] = {};
  DWORD bytes = kNameChars * sizeof(wchar_t);
  return RegQueryValueExW(record, L"Name", nullptr, nullptr, reinterpret_cast<BYTE*>(text),
                          &bytes) == ERROR_SUCCESS &&
         lstrcmpiW(text, Wide(name)) == 0;
}

// The first record of that name in the branch, opened; null when there is none.
HKEY OpenRecord(HKEY branch, const char16_t* name) {
  wchar_t subKey[kNameChars] = {};
  for (DWORD index = 0;; ++index) {
    DWORD chars = kNameChars;
    if (RegEnumKeyExW(branch, index, subKey, &chars, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS)
      return nullptr;
    HKEY record = nullptr;
    if (RegOpenKeyExW(branch, subKey, 0, KEY_READ | KEY_WRITE, &record) != ERROR_SUCCESS) continue;
    if (IsNamed(record, name)) return record;
    RegCloseKey(record);
  }
}

bool IsMissing(const char16_t* text) { return text == nullptr || *text == u'\0'; }

// --- Serial numbers

bool IsSerialCached(const char16_t* printer) {
  return stub::PrinterNumber(printer, L"SerialCached", 0) == 1;
}

// Characters outside ASCII become a "?".
bool ReadSerial(const char16_t* printer, std::string* serial) {
  char16_t text[1024] = {};
  if (!stub::ReadPrinterData(printer, L"SerialID", text, sizeof(text) - sizeof(char16_t)))
    return false;
  for (const char16_t* at = text; *at != u'\0'; ++at)
    *serial += *at < 0x80 ? static_cast<char>(*at) : '?';
  return true;
}

// --- Status

// What a caller gets and gives back. Only that it does is of interest.
char statusBlock[16];

}  // namespace

extern "C" {

std::int32_t PrSetRegDefaultValue(const char16_t* printer, const char16_t* driver,
                                  const char16_t* port, const char16_t* modelId,
                                  std::uint64_t /*zero1*/, std::uint64_t /*zero2*/,
                                  std::uint64_t /*zero3*/) {
  const bool isPort = IsMissing(printer);
  const wchar_t* const path = isPort ? L"Software\\KAVRO\\VGL3\\VGLData\\KVNTarget"
                                     : L"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget";
  HKEY branch = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, &branch) != ERROR_SUCCESS)
    return kOtherFailure;
  HKEY record = OpenRecord(branch, isPort ? port : printer);
  RegCloseKey(branch);
  if (record == nullptr) return kOtherFailure;
  const bool written =
      SetNumber(record, L"TrayIconEnable", 1) && SetNumber(record, L"TrayIconSelected", 0) &&
      SetText(record, L"ModelID", modelId) && SetText(record, L"DriverName", driver);
  RegCloseKey(record);
  return written ? 0 : kOtherFailure;
}

std::int32_t PrGetSerialID2(const char16_t* printer, char* buffer, std::int32_t* bytes,
                            std::int32_t* flag, std::int32_t cache) {
  *flag = 1;
  if (cache == kPrSerialCached && !IsSerialCached(printer)) return kPrSerialNotCached;
  std::string serial;
  if (!ReadSerial(printer, &serial)) return kOtherFailure;
  const auto needed = static_cast<std::int32_t>(serial.size()) + 1;
  const bool hasRoom = buffer != nullptr && *bytes >= needed;
  *bytes = needed;
  if (!hasRoom) return kPrSerialNeedsRoom;
  buffer[serial.copy(buffer, serial.size())] = '\0';
  return 0;
}

std::int32_t PrGetPrinterStatus2(const char16_t* printer, void** status, void** second) {
  *second = nullptr;
  if (stub::PrinterNumber(printer, L"PrinterAnswers", 1) == 0) return kOtherFailure;
  *status = statusBlock;
  return 0;
}

void PrReleasePrinterStatus(void* /*status*/) {}

}  // extern "C"

static_assert(std::is_same_v<decltype(&PrSetRegDefaultValue), PrSetRegDefaultValueFunction>);
static_assert(std::is_same_v<decltype(&PrGetSerialID2), PrGetSerialID2Function>);
static_assert(std::is_same_v<decltype(&PrGetPrinterStatus2), PrGetPrinterStatus2Function>);
static_assert(std::is_same_v<decltype(&PrReleasePrinterStatus), PrReleasePrinterStatusFunction>);
