// Drivers and printers of the simulated machine.
#include "platform/sim/machine.h"
#include "tests/platform/spooler_fixture.h"

namespace platform {
namespace {

sim::SpoolerState& State() { return sim::RunningProcess().machine().spooler(); }

}  // namespace

void InstallDriver(const TestDriver& driver) {
  State().AddDriver({.name = driver.name,
                     .driverPath = driver.driverPath,
                     .dataFile = driver.dataFile,
                     .configFile = driver.configFile,
                     .helpFile = driver.helpFile});
}

void UninstallDriver(const std::u16string& name) { State().RemoveDriver(name); }

void InstallPrinter(const TestPrinter& printer) {
  State().AddPrinter({.name = printer.name,
                      .port = printer.port,
                      .driver = printer.driver,
                      .attributes = printer.attributes,
                      .printProcessor = printer.printProcessor});
}

void UninstallPrinter(const std::u16string& name) {
  if (State().HasPrinter(name)) State().RemovePrinter(name);
}

void SetPrinterData(const std::u16string& printer, const std::u16string& key,
                    const std::u16string& name, std::uint32_t type, std::string_view bytes) {
  State().SetData(printer, key, name, type, bytes);
}

std::u16string OwnEnvironment() { return State().environment; }

}  // namespace platform
