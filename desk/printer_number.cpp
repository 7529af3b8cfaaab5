#include "desk/printer_number.h"

#include <memory>
#include <string>

namespace desk {

std::uint32_t PrinterNumber(sim::Machine& machine, std::u16string_view printer,
                            std::u16string_view name, std::uint32_t fallback) {
  const std::shared_ptr<sim::SpooledPrinter> spooled = machine.spooler().FindPrinter(printer);
  if (spooled == nullptr) return fallback;
  const auto found = spooled->data.find(sim::PrinterDataName(u"PrinterDriverData", name));
  if (found == spooled->data.end() || found->second.type != platform::REG_DWORD ||
      found->second.bytes.size() != sizeof(std::uint32_t))
    return fallback;
  std::uint32_t number = 0;
  for (int index = 3; index >= 0; --index)
    number = number << 8 | static_cast<std::uint8_t>(found->second.bytes[index]);
  return number;
}

}  // namespace desk
