#include "platform/sim/spooler_state.h"

#include <stdexcept>

#include "platform/sim/text.h"

namespace sim {

void SpoolerState::AddDriver(PrinterDriver driver) {
  std::pair key{FoldCase(driver.environment), FoldCase(driver.name)};
  m_drivers.insert_or_assign(std::move(key), std::move(driver));
}

void SpoolerState::RemoveDriver(std::u16string_view name) {
  std::erase_if(m_drivers, [folded = FoldCase(name)](const auto& driver) {
    return driver.first.second == folded;
  });
}

void SpoolerState::AddPrinter(Printer printer) {
  auto& place = m_printers[FoldCase(printer.name)];
  if (place != nullptr) throw std::invalid_argument("there is a printer of that name");
  place = std::make_shared<SpooledPrinter>();
  place->told = std::move(printer);
}

void SpoolerState::RemovePrinter(std::u16string_view name) {
  Get(name).isRemoved = true;
  m_printers.erase(FoldCase(name));
}

void SpoolerState::SetData(std::u16string_view printer, std::u16string_view key,
                           std::u16string_view name, std::uint32_t type, std::string_view bytes) {
  Get(printer).data[PrinterDataName(key, name)] = {type, std::string(bytes)};
}

void SpoolerState::RemoveData(std::u16string_view printer, std::u16string_view key,
                              std::u16string_view name) {
  Get(printer).data.erase(PrinterDataName(key, name));
}

void SpoolerState::MakeAccessDenied(std::u16string_view printer) {
  Get(printer).deniesAdministering = true;
}

std::shared_ptr<SpooledPrinter> SpoolerState::FindPrinter(std::u16string_view name) const {
  const auto found = m_printers.find(FoldCase(name));
  return found == m_printers.end() ? nullptr : found->second;
}

const PrinterDriver* SpoolerState::FindDriver(std::u16string_view name) const {
  const auto found = m_drivers.find({FoldCase(environment), FoldCase(name)});
  return found == m_drivers.end() ? nullptr : &found->second;
}

std::vector<const PrinterDriver*> SpoolerState::Drivers() const {
  std::vector<const PrinterDriver*> drivers;
  for (const auto& [key, driver] : m_drivers)
    if (key.first == FoldCase(environment)) drivers.push_back(&driver);
  return drivers;
}

SpooledPrinter& SpoolerState::Get(std::u16string_view name) const {
  const std::shared_ptr<SpooledPrinter> printer = FindPrinter(name);
  if (printer == nullptr) throw std::invalid_argument("no such printer on the simulated machine");
  return *printer;
}

std::u16string PrinterDataName(std::u16string_view key, std::u16string_view name) {
  return FoldCase(key) + u'\\' + FoldCase(name);
}

}  // namespace sim
