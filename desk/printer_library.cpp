#include "desk/printer_library.h"

#include <stdexcept>
#include <type_traits>

#include "Common/printer_library_exports.h"
#include "Common/target_records.h"
#include "desk/printer_number.h"
#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace desk {

using namespace platform;

namespace {

constexpr std::int32_t kOtherFailure = -1;

PrinterLibrary& Face() { return PrinterLibraryOf(sim::RunningProcess().machine()); }

bool SetNumber(HKEY record, const char16_t* name, std::uint32_t number) {
  return Os().registry.RegSetValueExW(record, name, REG_DWORD, &number, sizeof number) ==
         ERROR_SUCCESS;
}

bool SetText(HKEY record, const char16_t* name, std::u16string_view text) {
  const auto bytes = static_cast<std::uint32_t>((text.size() + 1) * sizeof(char16_t));
  return Os().registry.RegSetValueExW(record, name, REG_SZ, text.data(), bytes) == ERROR_SUCCESS;
}

// As a program of its own, by the record's name.
bool WriteDefaults(const PrinterLibrary::DefaultsCall& call) {
  const bool isPort = call.printer.empty();
  vgl::PathText path;
  OwnedKey record;
  return vgl::FindTargetKey(isPort ? call.port.c_str() : call.printer.c_str(), isPort, path) == 0 &&
         Os().registry.RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), KEY_ALL_ACCESS,
                                     record.Out()) == ERROR_SUCCESS &&
         SetNumber(record.get(), u"TrayIconEnable", 1) &&
         SetNumber(record.get(), u"TrayIconSelected", 0) &&
         SetText(record.get(), u"ModelID", call.modelId) &&
         SetText(record.get(), u"DriverName", call.driver);
}

std::int32_t SetRegDefaultValue(const char16_t* printer, const char16_t* driver,
                                const char16_t* port, const char16_t* modelId, std::uint64_t zero1,
                                std::uint64_t zero2, std::uint64_t zero3) {
  PrinterLibrary& face = Face();
  const bool zeros = zero1 == 0 && zero2 == 0 && zero3 == 0;
  const auto& call = face.defaultsCalls.emplace_back(
      PrinterLibrary::DefaultsCall{printer, driver, port, modelId, zeros});
  if (face.writesDefaults && !WriteDefaults(call)) return kOtherFailure;
  return face.defaultsResult;
}

std::int32_t GetSerialID2(const char16_t* printer, char* buffer, std::int32_t* bytes,
                          std::int32_t* flag, std::int32_t cache) {
  PrinterLibrary& face = Face();
  face.serialCalls.push_back({printer, buffer != nullptr, *bytes, cache});
  *flag = 1;
  if (!face.serialResults.empty()) {
    const std::int32_t result = face.serialResults.front();
    face.serialResults.pop_front();
    return result;
  }
  if (cache == vgl::kPrSerialCached && !face.serialIsCached) return vgl::kPrSerialNotCached;
  if (cache != vgl::kPrSerialCached && !face.printerAnswers) return kOtherFailure;
  const auto needed = static_cast<std::int32_t>(face.serial.size() + 1);
  const std::int32_t room = *bytes;
  *bytes = needed;
  if (buffer == nullptr || room < needed) return vgl::kPrSerialNeedsRoom;
  buffer[face.serial.copy(buffer, face.serial.size())] = '\0';
  return 0;
}

std::int32_t GetPrinterStatus2(const char16_t* printer, void** status, void** second) {
  PrinterLibrary& face = Face();
  face.statusCalls.push_back({printer, *status == nullptr && *second == nullptr});
  if (face.statusTakes != 0) Os().process.Sleep(face.statusTakes);
  if (face.givesStatus) {
    face.blocksHeld.push_back(std::make_unique<std::size_t>(++face.blocksGiven));
    *status = face.blocksHeld.back().get();
  }
  sim::Machine& machine = sim::RunningProcess().machine();
  const bool answers = PrinterNumber(machine, printer, u"PrinterAnswers", 1) != 0;
  return answers ? face.statusResult : kOtherFailure;
}

void ReleasePrinterStatus(void* status) {
  const auto isIt = [status](const auto& block) { return block.get() == status; };
  if (std::erase_if(Face().blocksHeld, isIt) != 1)
    throw std::logic_error("what came back is no status block");
}

}  // namespace

sim::Library& AddPrinterLibrary(sim::Machine& machine, std::u16string_view path) {
  static_assert(std::is_same_v<decltype(&SetRegDefaultValue), vgl::PrSetRegDefaultValueFunction>);
  static_assert(std::is_same_v<decltype(&GetSerialID2), vgl::PrGetSerialID2Function>);
  static_assert(std::is_same_v<decltype(&GetPrinterStatus2), vgl::PrGetPrinterStatus2Function>);
  static_assert(
      std::is_same_v<decltype(&ReleasePrinterStatus), vgl::PrReleasePrinterStatusFunction>);
  sim::Library& library = machine.libraries().Add(path);
  library.Export<&SetRegDefaultValue>(1, vgl::kPrSetRegDefaultValue);
  library.Export<&GetSerialID2>(2, vgl::kPrGetSerialID2);
  library.Export<&GetPrinterStatus2>(3, vgl::kPrGetPrinterStatus2);
  library.Export<&ReleasePrinterStatus>(4, vgl::kPrReleasePrinterStatus);
  return library;
}

PrinterLibrary& PrinterLibraryOf(sim::Machine& machine) {
  return machine.libraries().State<PrinterLibrary>();
}

}  // namespace desk
