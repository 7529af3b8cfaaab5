#include <limits>
#include <string>

#include "platform/sim/machine.h"
#include "profile/drv_info_reader.h"
#include "tests/fuzz/targets.h"

namespace vgl::fuzz {

namespace {

constexpr char16_t kKey[] = u"Software\\KAVRO\\VGL3\\Driver\\D";
constexpr char16_t kName[] = u"N";

void CheckNumber(std::int64_t number) {
  VGL_FUZZ_REQUIRE(number >= std::numeric_limits<std::int32_t>::min());
  VGL_FUZZ_REQUIRE(number <= std::numeric_limits<std::int32_t>::max());
}

}  // namespace

void InstallDescription(const std::uint8_t* data, std::size_t size) {
  sim::Machine machine;
  sim::Inside inside(machine);
  machine.spooler().AddDriver(
      {.name = u"D", .driverPath = u"C:\\d\\D.DLL", .dataFile = u"C:\\d\\D.VIF"});
  machine.spooler().AddPrinter({.name = u"P", .port = u"USB001", .driver = u"D"});
  machine.files().WriteFile(u"C:\\d\\D.VIF", "[CommonDrvInfo]\r\nSADat=D.DAT\r\n");
  machine.files().WriteFile(u"C:\\d\\D.DAT", {reinterpret_cast<const char*>(data), size});

  const CDrvInfoReader reader;
  const bool isDescribed = reader.IsDescribed(u"P") == 1;
  const std::u16string text = reader.GetString(u"P", kKey, kName);
  const std::int64_t number = reader.GetDword(u"P", kKey, kName);
  CheckNumber(number);
  VGL_FUZZ_REQUIRE(isDescribed || (text.empty() && number == -1));
  VGL_FUZZ_REQUIRE(text.empty() || number == -1);
  VGL_FUZZ_REQUIRE(text.size() <= size + 64);
  // The same folder, the same file: the same answers by every road.
  VGL_FUZZ_REQUIRE(reader.GetStringOfDriver(u"D", kKey, kName) == text);
  VGL_FUZZ_REQUIRE(reader.GetDwordOfDriver(u"D", kKey, kName) == number);
  VGL_FUZZ_REQUIRE(reader.GetStringOfVif(u"C:\\d\\D.VIF", kKey, kName) == text);
  VGL_FUZZ_REQUIRE(reader.GetDwordOfVif(u"C:\\d\\D.VIF", kKey, kName) == number);
  VGL_FUZZ_REQUIRE(reader.GetDatString(u"P", u"Install", u"N").size() <= 127);
  VGL_FUZZ_REQUIRE(inside.process().Ledger().empty());
}

}  // namespace vgl::fuzz
