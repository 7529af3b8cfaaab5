#include "Common/reg_lib_text.h"

#include "Common/code_page.h"
#include "platform/owned.h"
#include "profile/profile_keys.h"

namespace vgl {

using namespace platform;

bool RegLibText<char>::OpenPrinter(CKvOpenPrinter& open, const char* name, HPRINTER* printer) {
  return open.KvOpenPrinterA(name, printer);
}

bool RegLibText<char>::GetDriver(HPRINTER printer, std::uint32_t level, void* buffer,
                                 std::uint32_t bytes, std::uint32_t* needed) {
  return Os().spooler.GetPrinterDriverA(printer, level, buffer, bytes, needed);
}

bool RegLibText<char>::EnumDrivers(std::uint32_t level, void* buffer, std::uint32_t bytes,
                                   std::uint32_t* needed, std::uint32_t* count) {
  return Os().spooler.EnumPrinterDriversA(level, buffer, bytes, needed, count);
}

// As the system compares narrow texts without regard to case: by what they are in UTF-16.
bool RegLibText<char>::IsSameName(const char* left, const char* right) {
  const std::u16string wideLeft = FromCodePage(left);
  const std::u16string wideRight = FromCodePage(right);
  return !wideLeft.empty() && !wideRight.empty() &&
         RegLibText<char16_t>::IsSameName(wideLeft.c_str(), wideRight.c_str());
}

std::string RegLibText<char>::ReadLibraryName(const char* vifPath) {
  if (*vifPath == '\0') return {};
  std::string name(kVifRegistryLibrary.chars, '\0');
  name.resize(Os().profiles.GetPrivateProfileStringA("CommonDrvInfo", "KVRDEF01", "", name.data(),
                                                     kVifRegistryLibrary.chars, vifPath));
  return name;
}

bool RegLibText<char>::FileExists(const char* path) {
  FindDataA found;
  return static_cast<bool>(OwnedFind(Os().files.FindFirstFileA(path, &found)));
}

HMODULE RegLibText<char>::Load(const char* path) { return Os().modules.LoadLibraryA(path); }

bool RegLibText<char16_t>::OpenPrinter(CKvOpenPrinter& open, const char16_t* name,
                                       HPRINTER* printer) {
  return open.KvOpenPrinterBool(name, printer, nullptr);
}

bool RegLibText<char16_t>::GetDriver(HPRINTER printer, std::uint32_t level, void* buffer,
                                     std::uint32_t bytes, std::uint32_t* needed) {
  return Os().spooler.GetPrinterDriverW(printer, level, buffer, bytes, needed);
}

bool RegLibText<char16_t>::EnumDrivers(std::uint32_t level, void* buffer, std::uint32_t bytes,
                                       std::uint32_t* needed, std::uint32_t* count) {
  return Os().spooler.EnumPrinterDriversW(level, buffer, bytes, needed, count);
}

bool RegLibText<char16_t>::IsSameName(const char16_t* left, const char16_t* right) {
  return Os().nls.lstrcmpiW(left, right) == 0;
}

std::u16string RegLibText<char16_t>::ReadLibraryName(const char16_t* vifPath) {
  return ReadVifKey(kVifRegistryLibrary, vifPath);
}

bool RegLibText<char16_t>::FileExists(const char16_t* path) {
  FindData found;
  return static_cast<bool>(OwnedFind(Os().files.FindFirstFileW(path, &found)));
}

HMODULE RegLibText<char16_t>::Load(const char16_t* path) { return Os().modules.LoadLibraryW(path); }

}  // namespace vgl
