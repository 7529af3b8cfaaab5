// A machine whose driver set has a registry library, for both widths of text.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

#include "Common/reg_library.h"
#include "platform/sim/machine.h"
#include "platform/sim/registry_library.h"

namespace vgl {

using RegLibWidths = testing::Types<char, char16_t>;

struct RegLibWidthName {
  template <class Char>
  static std::string GetName(int) {
    return std::is_same_v<Char, char> ? "Narrow" : "Wide";
  }
};

// A text of characters below U+0100 in the width under test, and back; the narrow one is in the
// simulated machine's code page, which has those from U+00A0 on under their own numbers.
template <class Char>
std::basic_string<Char> TextOf(std::u16string_view text) {
  std::basic_string<Char> converted;
  for (const char16_t unit : text) converted.push_back(static_cast<Char>(unit));
  return converted;
}
inline std::u16string WideOf(const std::u16string& text) { return text; }
inline std::u16string WideOf(const std::string& text) {
  std::u16string wide;
  for (const char byte : text) wide.push_back(static_cast<unsigned char>(byte));
  return wide;
}

template <class Char>
class RegLibraryFixture : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};

  void TearDown() override {
    if (inside.process().ending()) return;
    ReleaseRegLibrary();
    EXPECT_TRUE(inside.process().Ledger().empty());
  }

  static constexpr bool kIsWide = std::is_same_v<Char, char16_t>;

  // The driver "KAVRO D" and the printer "P" that has it.
  void AddDriver(std::optional<std::u16string> driverPath, std::optional<std::u16string> dataFile) {
    machine.spooler().AddDriver(
        {.name = u"KAVRO D", .driverPath = std::move(driverPath), .dataFile = std::move(dataFile)});
    if (!machine.spooler().HasPrinter(u"P"))
      machine.spooler().AddPrinter({.name = u"P", .port = u"USB001", .driver = u"KAVRO D"});
  }
  void WriteVif(std::u16string_view path, const std::string& library) {
    machine.files().WriteFile(path, "[CommonDrvInfo]\r\nKVRDEF01=" + library + "\r\n");
  }
  // The whole set: the library R.DLL beside its driver.
  sim::Library& AddDriverSet() {
    AddDriver(u"C:\\Drv\\D.DLL", u"D.VIF");
    WriteVif(u"C:\\Drv\\D.VIF", "R.DLL");
    return sim::AddRegistryLibrary(machine, u"C:\\Drv\\R.DLL");
  }

  std::uint64_t calls() { return inside.process().calls(); }
  void FailNext(const std::string& operation, std::uint64_t after = 0) {
    inside.process().FailNext(operation, platform::ERROR_NO_SYSTEM_RESOURCES, after);
  }
  // How often the trace tells of something.
  int Traced(std::u16string_view text) {
    int count = 0;
    for (const sim::Event& event : machine.trace()) count += event.text == text ? 1 : 0;
    return count;
  }
};

}  // namespace vgl
