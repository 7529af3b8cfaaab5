// A machine with a printer, its driver set with a printer library, and the two branches of records.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "Common/target_records.h"
#include "desk/printer_library.h"
#include "platform/sim/machine.h"

namespace vgl {

inline constexpr char16_t kPrnDll[] = u"C:\\Drivers\\PR.DLL";
inline constexpr char16_t kFirst[] = u"P0000000000000000";
inline constexpr char16_t kSecond[] = u"P0000000000000001";
inline constexpr char16_t kThird[] = u"P0000000000000002";

// The printer "P" at USB001 with the driver "D", whose set names the model "M" and the library.
inline void AddPrinterWithLibrary(sim::Machine& machine) {
  machine.files().WriteFile(u"C:\\Drivers\\A.VIF", "[CommonDrvInfo]\r\nSADat=A.DAT\r\n");
  machine.files().WriteFile(
      u"C:\\Drivers\\A.DAT",
      "[Install]\r\n"
      "REGPATH = D, \"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Driver\\D\"\r\n"
      "REGENTER = D, \"InstallPath\", \"C:\\Drivers\"\r\n"
      "REGENTER = D, \"Profile\", \"C:\\Drivers\\A.INI\"\r\n");
  machine.files().WriteFile(u"C:\\Drivers\\A.INI", "[M]\r\nPrnDll=PR.DLL\r\n");
  machine.spooler().AddDriver(
      {.name = u"D", .driverPath = u"C:\\Drivers\\A.DLL", .dataFile = u"A.VIF"});
  machine.spooler().AddPrinter({.name = u"P", .port = u"USB001", .driver = u"D"});
  desk::AddPrinterLibrary(machine, kPrnDll);
}

inline std::u16string RecordPath(std::u16string_view branch, std::u16string_view subKey) {
  return std::u16string(branch) + u"\\" + std::u16string(subKey);
}

class TargetRecordTest : public testing::Test {
 protected:
  static constexpr platform::HKEY kUser = platform::HKEY_CURRENT_USER;

  sim::Machine machine;
  sim::Inside inside{machine};
  PathText path;

  sim::RegistryTree& registry() { return machine.registry(); }
  desk::PrinterLibrary& library() { return desk::PrinterLibraryOf(machine); }

  void AddRecord(std::u16string_view branch, std::u16string_view subKey, std::u16string_view name) {
    registry().SetString(kUser, RecordPath(branch, subKey), u"Name", name);
  }
  // With exactly these characters, without a terminator.
  void AddUnterminatedRecord(std::u16string_view branch, std::u16string_view subKey,
                             std::u16string_view name) {
    registry().SetBytes(kUser, RecordPath(branch, subKey), u"Name", platform::REG_SZ,
                        {reinterpret_cast<const char*>(name.data()), name.size() * 2});
  }
  void AddPrinter(std::u16string name) {
    machine.spooler().AddPrinter({.name = std::move(name), .port = u"USB009", .driver = u"D"});
  }
  std::vector<std::u16string> Records(std::u16string_view branch) {
    return registry().SubKeys(kUser, branch);
  }
};

using Names = std::vector<std::u16string>;

}  // namespace vgl
