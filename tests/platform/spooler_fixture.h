// A spooler with the drivers and printers that a test puts there, and short ways to ask it.
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tests/platform/platform_test.h"

namespace platform {

// Fields that are not set are left out of the spooler's records.
struct TestDriver {
  std::u16string name;
  std::optional<std::u16string> driverPath = u"C:\\Drivers\\kavro.dll";
  std::optional<std::u16string> dataFile = u"C:\\Drivers\\kavro.dat";
  std::optional<std::u16string> configFile = u"C:\\Drivers\\kavroui.dll";
  std::optional<std::u16string> helpFile = std::nullopt;
};

struct TestPrinter {
  std::u16string name;
  std::u16string port = u"USB001";
  std::u16string driver = u"KAVRO Test Driver";
  std::uint32_t attributes = 0x40;
  std::u16string printProcessor = u"WinPrint";  // without one, Wine opens no printer
};

// What only a backend can do. Each is live at once; sim/spooler_setup.cpp and
// win32/spooler_setup.cpp give them. Removing what isn't there is no failure.
void InstallDriver(const TestDriver& driver);
void UninstallDriver(const std::u16string& name);
void InstallPrinter(const TestPrinter& printer);
void UninstallPrinter(const std::u16string& name);
void SetPrinterData(const std::u16string& printer, const std::u16string& key,
                    const std::u16string& name, std::uint32_t type, std::string_view bytes);
// The name of the machine's own driver environment.
std::u16string OwnEnvironment();

class SpoolerContract : public PlatformTest {
 protected:
  void SetUp() override;
  ~SpoolerContract() override;

  // They go with the test.
  void AddDriver(const TestDriver& driver);
  void AddPrinter(const TestPrinter& printer);

  // Opens what must be there; it is closed with the test.
  HPRINTER Open(const char16_t* name);

  // What a call on a structure level fills: `ask` is called with a buffer and gives its result.
  using Ask = std::function<bool(void* buffer, std::uint32_t bytes, std::uint32_t* needed)>;
  // The filled buffer; empty, with the test failed, when the call fails.
  std::vector<std::uint64_t> Filled(const Ask& ask);
  // States what every such call does with buffers that are too small and with one that just fits.
  void ExpectSizesAreTold(const Ask& ask, std::size_t atLeast);

  Spooler& spooler = os.spooler;

 private:
  std::set<std::u16string> m_drivers;
  std::set<std::u16string> m_printers;
  std::vector<HPRINTER> m_open;
};

// A text of a structure; nothing when the field is null.
std::optional<std::u16string> TextOf(const char16_t* field);
std::optional<std::string> TextOf(const char* field);

}  // namespace platform
