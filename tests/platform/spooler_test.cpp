// The print spooler: opening printers, what is told of them and of their drivers, printer data.
#include <algorithm>
#include <cstring>

#include "tests/platform/spooler_fixture.h"

namespace platform {
namespace {

constexpr const char16_t* kPrinter = u"Test Studio";
constexpr const char16_t* kDriver = u"KAVRO Test Driver";
constexpr const char16_t* kDataKey = u"PrinterDriverData";
constexpr HPRINTER kGarbage{0x12345678};

class Printers : public SpoolerContract {
 protected:
  Ask Printer(HPRINTER printer, std::uint32_t level) {
    return [this, printer, level](void* buffer, std::uint32_t bytes, std::uint32_t* needed) {
      return spooler.GetPrinterW(printer, level, buffer, bytes, needed);
    };
  }
};

class PrinterDrivers : public SpoolerContract {
 protected:
  Ask Driver(HPRINTER printer, std::uint32_t level) {
    return [this, printer, level](void* buffer, std::uint32_t bytes, std::uint32_t* needed) {
      return spooler.GetPrinterDriverW(printer, level, buffer, bytes, needed);
    };
  }
  Ask AllDrivers(std::uint32_t level, std::uint32_t* count) {
    return [this, level, count](void* buffer, std::uint32_t bytes, std::uint32_t* needed) {
      return spooler.EnumPrinterDriversW(level, buffer, bytes, needed, count);
    };
  }
  // What the printer of a driver with that data file tells as its data file.
  std::optional<std::u16string> ToldDataFile(const std::optional<std::u16string>& dataFile) {
    AddDriver({.name = kDriver, .dataFile = dataFile});
    AddPrinter({.name = kPrinter, .driver = kDriver});
    const std::vector<std::uint64_t> buffer = Filled(Driver(Open(kPrinter), 3));
    if (buffer.empty()) return std::nullopt;
    return TextOf(reinterpret_cast<const DriverInfo3*>(buffer.data())->dataFile);
  }
};

class PrinterDataValues : public SpoolerContract {
 protected:
  HPRINTER OpenWithData(const char16_t* key) {
    AddPrinter({.name = kPrinter});
    SetPrinterData(kPrinter, key, u"Model", REG_SZ, std::string_view("S\0007\0\0\0", 6));
    return Open(kPrinter);
  }

  char data[16] = {};
  std::uint32_t type = 77;
  std::uint32_t needed = 77;
};

// --- Opening and closing

TEST_F(Printers, OneThatIsThereCanBeOpenedAndClosed) {
  AddPrinter({.name = kPrinter});
  HPRINTER printer{};
  ASSERT_TRUE(spooler.OpenPrinterW(kPrinter, &printer, nullptr));
  EXPECT_NE(printer, HPRINTER{});
  EXPECT_TRUE(spooler.ClosePrinter(printer));
}

TEST_F(Printers, ANameIsFoundWithoutRegardToCase) {
  AddPrinter({.name = kPrinter});
  const std::vector<std::uint64_t> buffer = Filled(Printer(Open(u"tEST sTUDIO"), 4));
  ASSERT_FALSE(buffer.empty());
  const auto& info = *reinterpret_cast<const PrinterInfo4*>(buffer.data());
  EXPECT_EQ(TextOf(info.printerName), u"Test Studio");  // as it was given to the printer
}

TEST_F(Printers, OneThatIsNotThereCannotBeOpened) {
  HPRINTER printer{};
  EXPECT_FALSE(spooler.OpenPrinterW(u"No Such Printer", &printer, nullptr));
  EXPECT_EQ(LastError(), ERROR_INVALID_PRINTER_NAME);
  EXPECT_EQ(printer, HPRINTER{});
}

TEST_F(Printers, AnEmptyNameOpensNothing) {
  AddPrinter({.name = kPrinter});
  HPRINTER printer{};
  EXPECT_FALSE(spooler.OpenPrinterW(u"", &printer, nullptr));
  EXPECT_EQ(printer, HPRINTER{});
}

TEST_F(Printers, OneCanBeOpenedForEverything) {
  AddPrinter({.name = kPrinter});
  const PrinterDefaults defaults{.desiredAccess = PRINTER_ALL_ACCESS};
  HPRINTER printer{};
  ASSERT_TRUE(spooler.OpenPrinterW(kPrinter, &printer, &defaults));
  EXPECT_TRUE(spooler.ClosePrinter(printer));
}

TEST_F(Printers, OneOpenedTwiceIsClosedTwice) {
  AddPrinter({.name = kPrinter});
  HPRINTER first{};
  HPRINTER second{};
  ASSERT_TRUE(spooler.OpenPrinterW(kPrinter, &first, nullptr));
  ASSERT_TRUE(spooler.OpenPrinterW(kPrinter, &second, nullptr));
  EXPECT_NE(first, second);
  EXPECT_TRUE(spooler.ClosePrinter(first));
  std::uint32_t needed = 0;
  EXPECT_FALSE(spooler.GetPrinterW(second, 4, nullptr, 0, &needed));
  EXPECT_EQ(LastError(), ERROR_INSUFFICIENT_BUFFER);  // it is still open
  EXPECT_TRUE(spooler.ClosePrinter(second));
}

TEST_F(Printers, WhatIsNoOpenPrinterCannotBeClosed) {
  AddPrinter({.name = kPrinter});
  HPRINTER closed{};
  ASSERT_TRUE(spooler.OpenPrinterW(kPrinter, &closed, nullptr));
  ASSERT_TRUE(spooler.ClosePrinter(closed));
  for (const HPRINTER none : {HPRINTER{}, kGarbage, closed}) {
    os.process.SetLastError(7777);
    EXPECT_FALSE(spooler.ClosePrinter(none));
    EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
  }
}

TEST_F(Printers, APrinterHandleIsNoKernelObject) {
  AddPrinter({.name = kPrinter});
  const HPRINTER printer = Open(kPrinter);
  EXPECT_FALSE(os.objects.CloseHandle(HANDLE{static_cast<std::uint64_t>(printer)}));
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
}

TEST_F(Printers, WhatIsNoOpenPrinterIsToldNothingOf) {
  std::uint64_t buffer[64];
  std::uint32_t needed = 0;
  EXPECT_FALSE(spooler.GetPrinterW(kGarbage, 2, buffer, sizeof(buffer), &needed));
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
  EXPECT_FALSE(spooler.GetPrinterDriverW(kGarbage, 2, buffer, sizeof(buffer), &needed));
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
  EXPECT_EQ(spooler.GetPrinterDataW(kGarbage, u"Model", nullptr, buffer, sizeof(buffer), &needed),
            ERROR_INVALID_HANDLE);
  EXPECT_EQ(spooler.GetPrinterDataExW(kGarbage, kDataKey, u"Model", nullptr, buffer, sizeof(buffer),
                                      &needed),
            ERROR_INVALID_HANDLE);
}

TEST_F(Printers, OneThatIsRemovedWhileOpenIsOnlyToBeClosed) {
  AddPrinter({.name = kPrinter});
  HPRINTER printer{};
  ASSERT_TRUE(spooler.OpenPrinterW(kPrinter, &printer, nullptr));
  UninstallPrinter(kPrinter);

  std::uint64_t buffer[64];
  std::uint32_t needed = 0;
  EXPECT_FALSE(spooler.GetPrinterW(printer, 2, buffer, sizeof(buffer), &needed));
  // Wine no longer finds the name: 1801.
  EXPECT_TRUE(HoldsExcept(OnWine(), LastError() == ERROR_PRINTER_DELETED)) << LastError();
  // Wine opens it once more, as long as it is open.
  HPRINTER again{};
  const bool opened = spooler.OpenPrinterW(kPrinter, &again, nullptr);
  EXPECT_TRUE(HoldsExcept(OnWine(), !opened && LastError() == ERROR_INVALID_PRINTER_NAME));
  if (opened) {
    EXPECT_TRUE(spooler.ClosePrinter(again));
  }
  EXPECT_TRUE(spooler.ClosePrinter(printer));
}

// --- What is told of a printer

TEST_F(Printers, Level2TellsPortDriverProcessorAndAttributes) {
  AddPrinter({.name = kPrinter,
              .port = u"USB004",
              .driver = u"Some Driver",
              .attributes = 0x240,
              .printProcessor = u"KavroProc"});
  const std::vector<std::uint64_t> buffer = Filled(Printer(Open(kPrinter), 2));
  ASSERT_FALSE(buffer.empty());
  const auto& info = *reinterpret_cast<const PrinterInfo2*>(buffer.data());
  EXPECT_EQ(TextOf(info.serverName), std::nullopt);  // this machine's own
  EXPECT_EQ(TextOf(info.printerName), u"Test Studio");
  EXPECT_EQ(TextOf(info.portName), u"USB004");
  EXPECT_EQ(TextOf(info.driverName), u"Some Driver");
  EXPECT_EQ(TextOf(info.printProcessor), u"KavroProc");
  EXPECT_EQ(info.attributes, 0x240u);
}

TEST_F(Printers, Level4TellsNameAndAttributes) {
  AddPrinter({.name = kPrinter, .attributes = 0x50});
  const std::vector<std::uint64_t> buffer = Filled(Printer(Open(kPrinter), 4));
  ASSERT_FALSE(buffer.empty());
  const auto& info = *reinterpret_cast<const PrinterInfo4*>(buffer.data());
  EXPECT_EQ(TextOf(info.printerName), u"Test Studio");
  EXPECT_EQ(TextOf(info.serverName), std::nullopt);
  EXPECT_EQ(info.attributes, 0x40u | PRINTER_ATTRIBUTE_NETWORK);
}

TEST_F(Printers, WhatThePrinterHasNotIsNull) {
  AddPrinter({.name = kPrinter});
  const std::vector<std::uint64_t> buffer = Filled(Printer(Open(kPrinter), 2));
  ASSERT_FALSE(buffer.empty());
  EXPECT_EQ(reinterpret_cast<const PrinterInfo2*>(buffer.data())->shareName, nullptr);
}

TEST_F(Printers, TheTextsLieInTheCallersBuffer) {
  AddPrinter({.name = kPrinter});
  const std::vector<std::uint64_t> buffer = Filled(Printer(Open(kPrinter), 2));
  ASSERT_FALSE(buffer.empty());
  const auto* begin = reinterpret_cast<const char*>(buffer.data());
  const auto& info = *reinterpret_cast<const PrinterInfo2*>(buffer.data());
  for (const char16_t* text : {info.printerName, info.portName, info.driverName}) {
    const auto* place = reinterpret_cast<const char*>(text);
    EXPECT_GE(place, begin + sizeof(PrinterInfo2));
    EXPECT_LT(place, begin + buffer.size() * 8);
  }
}

TEST_F(Printers, TheSizeNeededIsTold) {
  AddPrinter({.name = kPrinter, .port = u"USB001", .driver = kDriver});
  const HPRINTER printer = Open(kPrinter);
  // The structure, and "Test Studio", "USB001", "KAVRO Test Driver" with their terminators.
  ExpectSizesAreTold(Printer(printer, 2), 136 + 24 + 14 + 36);
  ExpectSizesAreTold(Printer(printer, 4), 24 + 24);
}

TEST_F(Printers, ALevelThatDoesNotExistIsRefused) {
  AddPrinter({.name = kPrinter});
  std::uint64_t buffer[512];
  std::uint32_t needed = 0;
  EXPECT_FALSE(spooler.GetPrinterW(Open(kPrinter), 77, buffer, sizeof(buffer), &needed));
  EXPECT_EQ(LastError(), ERROR_INVALID_LEVEL);
}

// --- Drivers

TEST_F(PrinterDrivers, Level2TellsTheFilesOfThePrintersDriver) {
  AddDriver({.name = u"Another Driver", .driverPath = u"C:\\Drivers\\other.dll"});
  AddDriver({.name = kDriver});
  AddPrinter({.name = kPrinter, .driver = kDriver});
  const std::vector<std::uint64_t> buffer = Filled(Driver(Open(kPrinter), 2));
  ASSERT_FALSE(buffer.empty());
  const auto& info = *reinterpret_cast<const DriverInfo2*>(buffer.data());
  EXPECT_EQ(info.version, 3u);
  EXPECT_EQ(TextOf(info.name), u"KAVRO Test Driver");
  EXPECT_EQ(TextOf(info.environment), OwnEnvironment());
  EXPECT_EQ(TextOf(info.driverPath), u"C:\\Drivers\\kavro.dll");
  EXPECT_EQ(TextOf(info.dataFile), u"C:\\Drivers\\kavro.dat");
  EXPECT_EQ(TextOf(info.configFile), u"C:\\Drivers\\kavroui.dll");
}

TEST_F(PrinterDrivers, Level3TellsTheHelpFileToo) {
  AddDriver({.name = kDriver, .helpFile = u"C:\\Drivers\\kavro.hlp"});
  AddPrinter({.name = kPrinter, .driver = kDriver});
  const std::vector<std::uint64_t> buffer = Filled(Driver(Open(kPrinter), 3));
  ASSERT_FALSE(buffer.empty());
  const auto& info = *reinterpret_cast<const DriverInfo3*>(buffer.data());
  EXPECT_EQ(info.version, 3u);
  EXPECT_EQ(TextOf(info.name), u"KAVRO Test Driver");
  EXPECT_EQ(TextOf(info.driverPath), u"C:\\Drivers\\kavro.dll");
  EXPECT_EQ(TextOf(info.dataFile), u"C:\\Drivers\\kavro.dat");
  EXPECT_EQ(TextOf(info.configFile), u"C:\\Drivers\\kavroui.dll");
  EXPECT_EQ(TextOf(info.helpFile), u"C:\\Drivers\\kavro.hlp");
}

TEST_F(PrinterDrivers, WhatTheDriverHasNotIsNull) {
  AddDriver({.name = kDriver});
  AddPrinter({.name = kPrinter, .driver = kDriver});
  const std::vector<std::uint64_t> buffer = Filled(Driver(Open(kPrinter), 3));
  ASSERT_FALSE(buffer.empty());
  const auto& info = *reinterpret_cast<const DriverInfo3*>(buffer.data());
  EXPECT_EQ(info.helpFile, nullptr);
  EXPECT_EQ(info.dependentFiles, nullptr);
}

TEST_F(PrinterDrivers, AnAbsoluteDataFileComesBackAsItIs) {
  EXPECT_EQ(ToldDataFile(u"D:\\Set\\model.dat"), u"D:\\Set\\model.dat");
}

// A record in the spooler may name its data file with or without its folder.
TEST_F(PrinterDrivers, ABareDataFileComesBackBare) {
  const std::optional<std::u16string> told = ToldDataFile(u"model.dat");
  ASSERT_TRUE(told.has_value());
  // Wine puts the folder of the spooler's drivers in front.
  EXPECT_TRUE(HoldsExcept(OnWine(), *told == u"model.dat")) << testing::PrintToString(*told);
  EXPECT_TRUE(told->ends_with(u"model.dat")) << testing::PrintToString(*told);
}

TEST_F(PrinterDrivers, ADriverThatIsNotInstalledIsUnknown) {
  AddPrinter({.name = kPrinter, .driver = u"No Such Driver"});
  std::uint64_t buffer[512];
  std::uint32_t needed = 0;
  EXPECT_FALSE(spooler.GetPrinterDriverW(Open(kPrinter), 3, buffer, sizeof(buffer), &needed));
  EXPECT_EQ(LastError(), ERROR_UNKNOWN_PRINTER_DRIVER);
}

TEST_F(PrinterDrivers, TheSizeNeededIsTold) {
  AddDriver({.name = kDriver});
  AddPrinter({.name = kPrinter, .driver = kDriver});
  const HPRINTER printer = Open(kPrinter);
  // The structure, and the name, driver, data and configuration file with their terminators.
  constexpr std::size_t kTexts = 2 * (18 + 21 + 21 + 23);
  ExpectSizesAreTold(Driver(printer, 2), 48 + kTexts);
  ExpectSizesAreTold(Driver(printer, 3), 80 + kTexts);
}

// Wine clears a whole structure whatever room it is told: what asks with a byte of room has to have
// that much.
TEST_F(PrinterDrivers, ABufferOfOneByteIsNotWrittenPastItsEnd) {
  AddDriver({.name = kDriver});
  AddPrinter({.name = kPrinter, .driver = kDriver});
  alignas(DriverInfo3) unsigned char buffer[sizeof(DriverInfo3)];
  std::memset(buffer, 0x5A, sizeof buffer);
  std::uint32_t needed = 0;
  EXPECT_FALSE(spooler.GetPrinterDriverW(Open(kPrinter), 3, buffer, 1, &needed));
  EXPECT_EQ(LastError(), ERROR_INSUFFICIENT_BUFFER);
  const bool isUntouched = std::count(buffer + 1, buffer + sizeof buffer, 0x5A) ==
                           static_cast<std::ptrdiff_t>(sizeof buffer) - 1;
  EXPECT_TRUE(HoldsExcept(OnWine(), isUntouched));
}

TEST_F(PrinterDrivers, ALevelThatDoesNotExistIsRefused) {
  AddDriver({.name = kDriver});
  AddPrinter({.name = kPrinter, .driver = kDriver});
  std::uint64_t buffer[512];
  std::uint32_t needed = 0;
  std::uint32_t count = 0;
  EXPECT_FALSE(spooler.GetPrinterDriverW(Open(kPrinter), 77, buffer, sizeof(buffer), &needed));
  EXPECT_EQ(LastError(), ERROR_INVALID_LEVEL);
  EXPECT_FALSE(spooler.EnumPrinterDriversW(77, buffer, sizeof(buffer), &needed, &count));
  EXPECT_EQ(LastError(), ERROR_INVALID_LEVEL);
}

// --- All drivers

TEST_F(PrinterDrivers, WithoutAnyDriverTheListIsEmptyAndNeedsNoBuffer) {
  std::uint32_t needed = 77;
  std::uint32_t count = 77;
  EXPECT_TRUE(spooler.EnumPrinterDriversW(3, nullptr, 0, &needed, &count));
  EXPECT_EQ(needed, 0u);
  EXPECT_EQ(count, 0u);
}

TEST_F(PrinterDrivers, TheListTellsTheSizeNeeded) {
  AddDriver({.name = kDriver});
  AddDriver({.name = u"Another Driver"});
  std::uint32_t count = 0;
  ExpectSizesAreTold(AllDrivers(2, &count), 2 * 48);
  EXPECT_EQ(count, 2u);
  ExpectSizesAreTold(AllDrivers(3, &count), 2 * 80);
  EXPECT_EQ(count, 2u);
}

TEST_F(PrinterDrivers, TheListHasEachDriverWithItsFiles) {
  AddDriver({.name = u"First Driver", .configFile = u"C:\\Drivers\\first.dll"});
  AddDriver({.name = u"Second Driver", .configFile = u"C:\\Drivers\\second.dll"});
  std::uint32_t count = 0;
  const std::vector<std::uint64_t> buffer = Filled(AllDrivers(3, &count));
  ASSERT_FALSE(buffer.empty());
  ASSERT_EQ(count, 2u);
  const auto* infos = reinterpret_cast<const DriverInfo3*>(buffer.data());
  std::vector<std::u16string> told;
  for (std::uint32_t i = 0; i < count; ++i) {
    told.push_back(TextOf(infos[i].name).value_or(u"") + u"|" +
                   TextOf(infos[i].configFile).value_or(u""));
  }
  std::sort(told.begin(), told.end());
  EXPECT_EQ(told, (std::vector<std::u16string>{u"First Driver|C:\\Drivers\\first.dll",
                                               u"Second Driver|C:\\Drivers\\second.dll"}));
}

// --- Printer data

TEST_F(PrinterDataValues, AValueComesWithTypeAndSize) {
  const HPRINTER printer = OpenWithData(kDataKey);
  EXPECT_EQ(spooler.GetPrinterDataW(printer, u"Model", &type, data, sizeof(data), &needed), 0);
  EXPECT_EQ(type, REG_SZ);
  EXPECT_EQ(needed, 6u);
  EXPECT_EQ(std::string_view(data, 6), std::string_view("S\0007\0\0\0", 6));
}

TEST_F(PrinterDataValues, TheTypeNeedNotBeAskedFor) {
  const HPRINTER printer = OpenWithData(kDataKey);
  EXPECT_EQ(spooler.GetPrinterDataW(printer, u"Model", nullptr, data, 6, &needed), 0);
  EXPECT_EQ(data[2], '7');
}

TEST_F(PrinterDataValues, ANumberComesAsItIsStored) {
  AddPrinter({.name = kPrinter});
  SetPrinterData(kPrinter, kDataKey, u"Count", REG_DWORD, std::string_view("\x01\x02\x00\x80", 4));
  EXPECT_EQ(spooler.GetPrinterDataW(Open(kPrinter), u"Count", &type, data, 4, &needed), 0);
  EXPECT_EQ(type, REG_DWORD);
  EXPECT_EQ(needed, 4u);
  std::uint32_t number = 0;
  std::memcpy(&number, data, sizeof(number));
  EXPECT_EQ(number, 0x80000201u);
}

TEST_F(PrinterDataValues, AMissingValueIsNotFound) {
  const HPRINTER printer = OpenWithData(kDataKey);
  EXPECT_EQ(spooler.GetPrinterDataW(printer, u"Missing", &type, data, sizeof(data), &needed),
            ERROR_FILE_NOT_FOUND);
}

TEST_F(PrinterDataValues, APrinterWithoutAnyDataHasNoValue) {
  AddPrinter({.name = kPrinter});
  EXPECT_EQ(spooler.GetPrinterDataW(Open(kPrinter), u"Model", &type, data, sizeof(data), &needed),
            ERROR_FILE_NOT_FOUND);
}

TEST_F(PrinterDataValues, ABufferThatIsTooSmallIsToldTheSize) {
  const HPRINTER printer = OpenWithData(kDataKey);
  EXPECT_EQ(spooler.GetPrinterDataW(printer, u"Model", &type, data, 5, &needed), ERROR_MORE_DATA);
  EXPECT_EQ(needed, 6u);
  needed = 77;
  EXPECT_EQ(spooler.GetPrinterDataW(printer, u"Model", &type, nullptr, 0, &needed),
            ERROR_MORE_DATA);
  EXPECT_EQ(needed, 6u);
}

TEST_F(PrinterDataValues, AnyKeyCanBeNamed) {
  const HPRINTER printer = OpenWithData(u"KavroSettings");
  EXPECT_EQ(spooler.GetPrinterDataExW(printer, u"KavroSettings", u"Model", &type, data,
                                      sizeof(data), &needed),
            0);
  EXPECT_EQ(type, REG_SZ);
  EXPECT_EQ(needed, 6u);
  EXPECT_EQ(data[0], 'S');
  EXPECT_EQ(spooler.GetPrinterDataW(printer, u"Model", &type, data, sizeof(data), &needed),
            ERROR_FILE_NOT_FOUND);  // that is another key
}

TEST_F(PrinterDataValues, TheDriversKeyCanBeNamedToo) {
  const HPRINTER printer = OpenWithData(kDataKey);
  EXPECT_EQ(
      spooler.GetPrinterDataExW(printer, kDataKey, u"Model", nullptr, data, sizeof(data), &needed),
      0);
  EXPECT_EQ(needed, 6u);
}

TEST_F(PrinterDataValues, KeysAndNamesAreFoundWithoutRegardToCase) {
  const HPRINTER printer = OpenWithData(u"KavroSettings");
  EXPECT_EQ(spooler.GetPrinterDataExW(printer, u"KAVROSETTINGS", u"mODEL", nullptr, data,
                                      sizeof(data), &needed),
            0);
}

TEST_F(PrinterDataValues, AMissingKeyOrValueIsNotFound) {
  const HPRINTER printer = OpenWithData(u"KavroSettings");
  EXPECT_EQ(
      spooler.GetPrinterDataExW(printer, u"Missing", u"Model", &type, data, sizeof(data), &needed),
      ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(spooler.GetPrinterDataExW(printer, u"KavroSettings", u"Missing", &type, data,
                                      sizeof(data), &needed),
            ERROR_FILE_NOT_FOUND);
}

TEST_F(PrinterDataValues, ANamedKeysValueTellsItsSizeToo) {
  const HPRINTER printer = OpenWithData(u"KavroSettings");
  EXPECT_EQ(spooler.GetPrinterDataExW(printer, u"KavroSettings", u"Model", &type, data, 5, &needed),
            ERROR_MORE_DATA);
  EXPECT_EQ(needed, 6u);
}

}  // namespace
}  // namespace platform
