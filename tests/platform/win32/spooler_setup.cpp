// Drivers and printers as records in the registry, where Wine's spooler looks at each call.
#include "tests/platform/registry_fixture.h"
#include "tests/platform/spooler_fixture.h"

namespace platform {
namespace {

const std::u16string kPrint = u"System\\CurrentControlSet\\Control\\Print";
const std::u16string kPrinters = kPrint + u"\\Printers";

std::u16string DriversKey() {
  return kPrint + u"\\Environments\\" + OwnEnvironment() + u"\\Drivers\\Version-3";
}

OwnedKey MakeKey(const std::u16string& path) {
  OwnedKey key;
  EXPECT_EQ(Os().registry.RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), KEY_ALL_ACCESS,
                                          key.Out(), nullptr),
            ERROR_SUCCESS);
  return key;
}

void SetValue(const OwnedKey& key, const char16_t* name, std::uint32_t type, const void* data,
              std::size_t bytes) {
  EXPECT_EQ(
      Os().registry.RegSetValueExW(key.get(), name, type, data, static_cast<std::uint32_t>(bytes)),
      ERROR_SUCCESS);
}

void SetText(const OwnedKey& key, const char16_t* name, const std::u16string& text) {
  SetValue(key, name, REG_SZ, text.c_str(), 2 * (text.size() + 1));
}

void SetIfThere(const OwnedKey& key, const char16_t* name,
                const std::optional<std::u16string>& text) {
  if (text) SetText(key, name, *text);
}

void SetNumber(const OwnedKey& key, const char16_t* name, std::uint32_t number) {
  SetValue(key, name, REG_DWORD, &number, sizeof(number));
}

void RemoveBelow(const std::u16string& path, const std::u16string& name) {
  OwnedKey key;
  if (Os().registry.RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), KEY_READ, key.Out()) ==
      ERROR_SUCCESS) {
    DeleteTree(Os().registry, key.get(), name);
  }
}

}  // namespace

void InstallDriver(const TestDriver& driver) {
  const OwnedKey key = MakeKey(DriversKey() + u"\\" + driver.name);
  SetIfThere(key, u"Driver", driver.driverPath);
  SetIfThere(key, u"Data File", driver.dataFile);
  SetIfThere(key, u"Configuration File", driver.configFile);
  SetIfThere(key, u"Help File", driver.helpFile);
  SetNumber(key, u"Version", 3);
}

void UninstallDriver(const std::u16string& name) { RemoveBelow(DriversKey(), name); }

void InstallPrinter(const TestPrinter& printer) {
  const OwnedKey key = MakeKey(kPrinters + u"\\" + printer.name);
  SetText(key, u"Name", printer.name);
  SetText(key, u"Port", printer.port);
  SetText(key, u"Printer Driver", printer.driver);
  SetText(key, u"Print Processor", printer.printProcessor);
  SetText(key, u"Datatype", std::u16string(u"RAW"));  // without it the printer can't be opened
  SetNumber(key, u"Attributes", printer.attributes);
  SetNumber(key, u"Status", 0);
}

void UninstallPrinter(const std::u16string& name) { RemoveBelow(kPrinters, name); }

void SetPrinterData(const std::u16string& printer, const std::u16string& key,
                    const std::u16string& name, std::uint32_t type, std::string_view bytes) {
  const OwnedKey place = MakeKey(kPrinters + u"\\" + printer + u"\\" + key);
  SetValue(place, name.c_str(), type, bytes.data(), bytes.size());
}

std::u16string OwnEnvironment() {
#if defined(__aarch64__)
  return u"Windows ARM64";
#else
  return u"Windows x64";
#endif
}

}  // namespace platform
