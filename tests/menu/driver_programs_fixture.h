// A driver set that names programs beside its menu.
#pragma once

#include <gtest/gtest.h>

#include <string_view>

#include "Common/reg_library.h"
#include "Common/text_conversion.h"
#include "desk/default_machine.h"
#include "menu/driver_programs.h"
#include "platform/sim/machine.h"
#include "tests/support/sim_desk.h"

namespace vgl {

// The default machine, whose driver set has its settings in its install description.
class DriverPrograms : public testing::Test {
 protected:
  static constexpr char16_t kDriverKey[] = u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200";
  static constexpr char16_t kMenuKey[] = u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200\\Menu";
  static constexpr std::uint32_t kEntry = 930;

  DriverPrograms() { desk::SetUpDefaultMachine(machine); }
  void TearDown() override {
    ReleaseRegLibrary();
    EXPECT_TRUE(inside.process().Ledger().empty());
  }

  // From now on the set's settings are in the registry.
  void MoveToRegistry() { AddToProfile(machine, "RegistryBaseVGL=1"); }
  void SetInRegistry(const char16_t* key, const char16_t* name, std::u16string_view text) {
    machine.registry().SetString(platform::HKEY_LOCAL_MACHINE, key, name, text);
  }
  // Without a terminator behind it, as a registry may have it.
  void SetBareInRegistry(const char16_t* key, const char16_t* name, std::u16string_view text) {
    machine.registry().SetBytes(platform::HKEY_LOCAL_MACHINE, key, name, platform::REG_SZ,
                                Utf16LeFromText(text));
  }

  sim::Machine machine;
  sim::Inside inside{machine};
  PrinterIdentity identity{.printerName = desk::kPrinterName,
                           .driverName = desk::kDriverName,
                           .modelId = desk::kModelId,
                           .portName = desk::kPortName};
};

}  // namespace vgl
