#include <limits>
#include <string>

#include "platform/sim/machine.h"
#include "profile/drv_info_reader.h"
#include "profile/install_desc.h"
#include "tests/fuzz/targets.h"

namespace vgl::fuzz {

namespace {

const char16_t* const kPaths[] = {u"X", u"Software\\KAVRO\\VGL3\\Driver\\D"};
const char16_t* const kNames[] = {u"N", u"M", u"N\"M", u"N,M", u" N"};

void CheckNumber(std::int64_t number) {
  VGL_FUZZ_REQUIRE(number >= std::numeric_limits<std::int32_t>::min());
  VGL_FUZZ_REQUIRE(number <= std::numeric_limits<std::int32_t>::max());
}

// One question by every road, against the description that was read whole.
void CheckAnswers(const CInstallDesc& whole, bool hasFolder, const char16_t* path,
                  const char16_t* name) {
  const CDrvInfoReader reader;
  const std::u16string text = whole.GetRegString(path, name);
  const std::int64_t number = whole.GetRegDword(path, name);
  CheckNumber(number);
  VGL_FUZZ_REQUIRE(text.empty() || number == -1);
  VGL_FUZZ_REQUIRE(reader.GetString(u"P", path, name) == text);
  VGL_FUZZ_REQUIRE(reader.GetDword(u"P", path, name) == number);
  VGL_FUZZ_REQUIRE(reader.GetStringOfDriver(u"D", path, name) == text);
  VGL_FUZZ_REQUIRE(reader.GetDwordOfDriver(u"D", path, name) == number);
  if (!hasFolder) return;  // a VIF has a folder of its own
  VGL_FUZZ_REQUIRE(reader.GetStringOfVif(u"C:\\d\\D.VIF", path, name) == text);
  VGL_FUZZ_REQUIRE(reader.GetDwordOfVif(u"C:\\d\\D.VIF", path, name) == number);
}

}  // namespace

void InstallDescription(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return;
  // Without the driver's main file there is no folder, and the data file is found all the same.
  const bool hasFolder = data[0] % 4 != 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
  sim::Machine machine;
  sim::Inside inside(machine);
  sim::PrinterDriver driver{.name = u"D", .dataFile = u"C:\\d\\D.VIF"};
  if (hasFolder) driver.driverPath = u"C:\\d\\D.DLL";
  machine.spooler().AddDriver(driver);
  machine.spooler().AddPrinter({.name = u"P", .port = u"USB001", .driver = u"D"});
  machine.files().WriteFile(u"C:\\d\\D.VIF", "[CommonDrvInfo]\r\nSADat=D.DAT\r\n");
  machine.files().WriteFile(u"C:\\d\\D.DAT", bytes);
  machine.files().WriteFile(u"C:\\Program Files\\KAVRO\\D.DAT", bytes);

  {
    CInstallDesc whole;
    const bool isDescribed = whole.LoadByPrinter(u"P") == 1;
    VGL_FUZZ_REQUIRE(hasFolder || !isDescribed);
    VGL_FUZZ_REQUIRE((CDrvInfoReader().IsDescribed(u"P") == 1) == isDescribed);
    for (const char16_t* path : kPaths)
      for (const char16_t* name : kNames) CheckAnswers(whole, hasFolder, path, name);
  }
  VGL_FUZZ_REQUIRE(CDrvInfoReader().GetDatString(u"P", u"Install", u"N").size() <= 127);
  VGL_FUZZ_REQUIRE(inside.process().Ledger().empty());
}

}  // namespace vgl::fuzz
