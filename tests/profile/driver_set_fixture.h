// A machine with one printer and the driver set of its model, for tests of what the set says.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace vgl {

// The printer "Studio" has the driver "Sample" in C:\Set, whose data file SAMPLE.VIF is registered
// without a folder. The VIF names sample.sad, which isn't there until a test writes it.
class DriverSetTest : public testing::Test {
 protected:
  static constexpr char16_t kPrinter[] = u"Studio";
  static constexpr char16_t kDriver[] = u"Sample";
  static constexpr char16_t kVif[] = u"C:\\Set\\SAMPLE.VIF";
  static constexpr char16_t kSADat[] = u"C:\\Set\\sample.sad";
  // Where a program of this machine finds a file that is named without a folder.
  static constexpr char16_t kBareSADat[] = u"C:\\Program Files\\KAVRO\\sample.sad";

  sim::Machine machine;
  sim::Inside inside{machine};

  DriverSetTest() {
    SetDriver(u"C:\\Set\\sample.dll", u"SAMPLE.VIF");
    machine.spooler().AddPrinter({.name = kPrinter, .port = u"USB001", .driver = kDriver});
    WriteVif("[CommonDrvInfo]\nSADat=sample.sad\n");
  }

  // What the driver is registered with.
  void SetDriver(std::optional<std::u16string> path, std::optional<std::u16string> dataFile) {
    machine.spooler().AddDriver(
        {.name = kDriver, .driverPath = std::move(path), .dataFile = std::move(dataFile)});
  }
  void WriteVif(std::string_view bytes) { machine.files().WriteFile(kVif, bytes); }
  void WriteSADat(std::string_view bytes) { machine.files().WriteFile(kSADat, bytes); }
  // The SADat file's section [Install]; empty lines in it don't count.
  void Describe(std::string_view lines) { WriteSADat("[Install]\n" + std::string(lines)); }

  // A system that isn't of the NT family.
  void BeWindows9x() { machine.system().version = {4, 90, 1, 1}; }

  // A handle to the printer, closed by Close.
  platform::HPRINTER Open() {
    platform::HPRINTER handle{};
    EXPECT_TRUE(platform::Os().spooler.OpenPrinterW(kPrinter, &handle, nullptr));
    return handle;
  }
  static void Close(platform::HPRINTER handle) {
    EXPECT_TRUE(platform::Os().spooler.ClosePrinter(handle));
  }

  // How often the guarded open opens a printer in `body`.
  std::size_t OpeningsOf(const std::function<void()>& body) {
    constexpr char16_t kLog[] = u"C:\\ProgramData\\KAVRO\\KVOPENPRINTER.log";
    machine.files().WriteFile(kLog, "");
    body();
    const std::string log = machine.files().ReadFile(kLog).value_or("");
    machine.files().Remove(kLog);
    std::size_t count = 0;
    for (std::size_t at = log.find("OpenPriner "); at != std::string::npos;
         at = log.find("OpenPriner ", at + 1))
      ++count;
    return count;
  }

  // The platform calls that `body` makes.
  std::uint64_t CallsOf(const std::function<void()>& body) {
    const std::uint64_t before = inside.process().calls();
    body();
    return inside.process().calls() - before;
  }

  // Carries `body` out with each of its platform calls failing once, and has `check` look at what
  // came out. Nothing may be left open. `number` is that of the call.
  void WithEachCallFailing(const std::function<void()>& body,
                           const std::function<void(std::uint64_t number)>& check) {
    const std::vector<std::u16string> held = inside.process().Ledger();
    const std::uint64_t calls = CallsOf(body);
    ASSERT_GT(calls, 0U);
    for (std::uint64_t number = 1; number <= calls; ++number) {
      inside.process().FailCall(number);
      body();
      SCOPED_TRACE("call " + std::to_string(number) +
                   ", last failed: " + inside.process().failedOperation());
      EXPECT_EQ(inside.process().Ledger(), held);
      check(number);
    }
  }
};

}  // namespace vgl
