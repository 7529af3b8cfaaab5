// What an opening of the menu costs in platform calls. On Windows each look into the driver set
// opens the printer three times, so a look more for each of 79 values is felt.
#include <gtest/gtest.h>

#include "menu/driver_value.h"
#include "profile/drv_info_reader.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

// The place of the settings, which is one look into the install description and a key of the
// profile, and the value, which is another look.
TEST(MenuCost, OfAValueIsTwoLooksIntoTheDriverSetAtMost) {
  SimDesk desk;
  sim::Inside inside(desk.machine);
  const PrinterIdentity identity{.printerName = desk::kPrinterName,
                                 .driverName = desk::kDriverName,
                                 .modelId = desk::kModelId,
                                 .portName = desk::kPortName};
  const auto callsOf = [&inside](const auto& body) {
    const std::uint64_t before = inside.process().calls();
    body();
    return inside.process().calls() - before;
  };
  const auto look = [] {
    CDrvInfoReader().GetString(desk::kPrinterName,
                               u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200", u"Profile");
  };
  const std::uint64_t lookCalls = callsOf(look);
  const std::uint64_t value = callsOf([&] { ReadMenuCommand(identity, 920, u"OnAux"); });
  constexpr std::uint64_t kFileIsThereAndTheProfilesKey = 5;
  EXPECT_GT(value, lookCalls);
  EXPECT_LE(value, 2 * lookCalls + kFileIsThereAndTheProfilesKey);
}

}  // namespace
}  // namespace vgl
