// The simulated machine's spooler: what a test can set up there that the contract doesn't reach.
#include <gtest/gtest.h>

#include "platform/sim/machine.h"

namespace sim {
namespace {

using namespace platform;

constexpr const char16_t* kPrinter = u"Test Studio";

struct SimulatedSpooler : testing::Test {
  Machine machine;
  Inside inside{machine};
  Spooler& spooler = Os().spooler;
  HPRINTER printer{};
  std::uint64_t buffer[512] = {};
  std::uint32_t needed = 0;

  void OpenNew(Printer told) {
    machine.spooler().AddPrinter(told);
    ASSERT_TRUE(spooler.OpenPrinterW(told.name.c_str(), &printer, nullptr));
  }
  std::int32_t LastError() { return Os().process.GetLastError(); }
};

TEST_F(SimulatedSpooler, AccessCanBeDenied) {
  machine.spooler().AddPrinter({.name = kPrinter});
  machine.spooler().MakeAccessDenied(kPrinter);
  const PrinterDefaults all{.desiredAccess = PRINTER_ALL_ACCESS};
  EXPECT_FALSE(spooler.OpenPrinterW(kPrinter, &printer, &all));
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
  const PrinterDefaults use{.desiredAccess = PRINTER_ACCESS_USE};
  ASSERT_TRUE(spooler.OpenPrinterW(kPrinter, &printer, &use));
  EXPECT_TRUE(spooler.ClosePrinter(printer));
  ASSERT_TRUE(spooler.OpenPrinterW(kPrinter, &printer, nullptr));
  EXPECT_TRUE(spooler.ClosePrinter(printer));
}

TEST_F(SimulatedSpooler, AnOpenPrinterStandsInTheLedger) {
  OpenNew({.name = kPrinter});
  EXPECT_EQ(inside.process().Ledger(), std::vector<std::u16string>{u"printer Test Studio"});
  EXPECT_TRUE(spooler.ClosePrinter(printer));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(SimulatedSpooler, AHandleKnowsNoPrinterThatTookTheNameOfItsOwn) {
  OpenNew({.name = kPrinter});
  machine.spooler().RemovePrinter(kPrinter);
  machine.spooler().AddPrinter({.name = kPrinter});
  EXPECT_FALSE(spooler.GetPrinterW(printer, 4, buffer, sizeof(buffer), &needed));
  EXPECT_EQ(LastError(), ERROR_PRINTER_DELETED);
  EXPECT_FALSE(spooler.GetPrinterDriverW(printer, 3, buffer, sizeof(buffer), &needed));
  EXPECT_EQ(LastError(), ERROR_PRINTER_DELETED);
  EXPECT_EQ(spooler.GetPrinterDataW(printer, u"x", nullptr, buffer, sizeof(buffer), &needed),
            ERROR_PRINTER_DELETED);
  EXPECT_TRUE(spooler.ClosePrinter(printer));
}

TEST_F(SimulatedSpooler, APrinterOfAServerTellsIt) {
  OpenNew({.name = u"\\\\SERVER\\Studio",
           .attributes = PRINTER_ATTRIBUTE_NETWORK,
           .printProcessor = std::nullopt,
           .serverName = u"\\\\SERVER",
           .shareName = u"Studio"});
  ASSERT_TRUE(spooler.GetPrinterW(printer, 2, buffer, sizeof(buffer), &needed));
  const auto& info = *reinterpret_cast<const PrinterInfo2*>(buffer);
  EXPECT_EQ(std::u16string(info.printerName), u"\\\\SERVER\\Studio");
  EXPECT_EQ(std::u16string(info.serverName), u"\\\\SERVER");
  EXPECT_EQ(std::u16string(info.shareName), u"Studio");
  EXPECT_EQ(info.driverName, nullptr);
  EXPECT_EQ(info.printProcessor, nullptr);
  EXPECT_EQ(info.attributes, 0x10U);
}

TEST_F(SimulatedSpooler, TheSizeNeededIsTheStructureWithItsTexts) {
  OpenNew({.name = kPrinter});
  EXPECT_TRUE(spooler.GetPrinterW(printer, 4, buffer, sizeof(buffer), &needed));
  EXPECT_EQ(needed, 48U);  // 24, and eleven characters with their terminator
}

TEST_F(SimulatedSpooler, DriversOfAnotherEnvironmentAreNotTold) {
  machine.spooler().AddDriver({.name = u"Other", .environment = u"Windows ARM64"});
  machine.spooler().AddDriver({.name = u"Own"});
  OpenNew({.name = kPrinter, .driver = u"Other"});
  EXPECT_FALSE(spooler.GetPrinterDriverW(printer, 3, buffer, sizeof(buffer), &needed));
  EXPECT_EQ(LastError(), ERROR_UNKNOWN_PRINTER_DRIVER);
  std::uint32_t count = 0;
  ASSERT_TRUE(spooler.EnumPrinterDriversW(2, buffer, sizeof(buffer), &needed, &count));
  ASSERT_EQ(count, 1U);
  EXPECT_EQ(std::u16string(reinterpret_cast<const DriverInfo2*>(buffer)->name), u"Own");
  machine.spooler().environment = u"Windows ARM64";
  EXPECT_TRUE(spooler.GetPrinterDriverW(printer, 3, buffer, sizeof(buffer), &needed));
}

TEST_F(SimulatedSpooler, DataCanBeRemoved) {
  OpenNew({.name = kPrinter});
  machine.spooler().SetData(kPrinter, u"Key", u"Name", REG_BINARY, "ab");
  EXPECT_EQ(spooler.GetPrinterDataExW(printer, u"Key", u"Name", nullptr, buffer, 2, &needed), 0);
  machine.spooler().RemoveData(kPrinter, u"key", u"name");
  EXPECT_EQ(spooler.GetPrinterDataExW(printer, u"Key", u"Name", nullptr, buffer, 2, &needed),
            ERROR_FILE_NOT_FOUND);
}

TEST_F(SimulatedSpooler, CallsCanFailByName) {
  machine.spooler().AddPrinter({.name = kPrinter});
  inside.process().FailNext("OpenPrinterW", ERROR_ACCESS_DENIED);
  EXPECT_FALSE(spooler.OpenPrinterW(kPrinter, &printer, nullptr));
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
  EXPECT_EQ(printer, HPRINTER{});
}

}  // namespace
}  // namespace sim
