// Calls whose texts are in the system's code page: they do what their wide namesakes do.
#include <algorithm>

#include "tests/platform/profile_fixture.h"
#include "tests/platform/spooler_fixture.h"

namespace platform {
namespace {

// What is ASCII, or of Latin-1, is the same number in the code page.
std::string Narrow(const std::u16string& text) {
  std::string narrow;
  for (const char16_t c : text) narrow += static_cast<char>(c);
  return narrow;
}

class NarrowProfileValues : public ProfileContract {
 protected:
  std::string NarrowValue(const char* section, const char* key, const char* fallback,
                          std::uint32_t chars = 100) {
    std::string value(100, '?');
    const std::uint32_t length = os.profiles.GetPrivateProfileStringA(
        section, key, fallback, value.data(), chars, Narrow(path).c_str());
    EXPECT_EQ(value[length], '\0');
    EXPECT_EQ(value[length + 1], '?') << "written past the end";
    value.resize(length);
    return value;
  }
};

using NarrowFiles = ScratchFolderTest;

class NarrowPrinterDrivers : public SpoolerContract {
 protected:
  static constexpr const char16_t* kPrinter = u"Test Studio";
  static constexpr const char16_t* kDriver = u"KAVRO Test Driver";

  Ask Driver(HPRINTER printer, std::uint32_t level) {
    return [this, printer, level](void* buffer, std::uint32_t bytes, std::uint32_t* needed) {
      return spooler.GetPrinterDriverA(printer, level, buffer, bytes, needed);
    };
  }
  Ask AllDrivers(std::uint32_t level, std::uint32_t* count) {
    return [this, level, count](void* buffer, std::uint32_t bytes, std::uint32_t* needed) {
      return spooler.EnumPrinterDriversA(level, buffer, bytes, needed, count);
    };
  }
};

// --- Profile values

TEST_F(NarrowProfileValues, AValueIsFoundBySectionAndKey) {
  Write("[One]\r\nkey=first\r\n[Two]\r\nKey= \"second\" \r\n");
  EXPECT_EQ(NarrowValue("one", "KEY", "x"), "first");
  EXPECT_EQ(NarrowValue("Two", "key", "x"), "second");
}

TEST_F(NarrowProfileValues, TheFallbackStandsForWhatIsMissing) {
  Write("[s]\r\nkey=value\r\n");
  EXPECT_EQ(NarrowValue("s", "missing", "fallback"), "fallback");
  EXPECT_EQ(NarrowValue("missing", "key", "fallback"), "fallback");
  EXPECT_EQ(NarrowValue("s", "missing", ""), "");
  EXPECT_EQ(NarrowValue("s", "missing", nullptr), "");
}

TEST_F(NarrowProfileValues, AFileThatIsNotThereGivesTheFallback) {
  EXPECT_EQ(NarrowValue("s", "key", "fallback"), "fallback");
}

TEST_F(NarrowProfileValues, WhatDoesNotFitIsCut) {
  Write("[s]\r\nkey=123456\r\n");
  EXPECT_EQ(NarrowValue("s", "key", "", 7), "123456");
  EXPECT_EQ(NarrowValue("s", "key", "", 6), "12345");
  EXPECT_EQ(NarrowValue("s", "key", "", 2), "1");
  EXPECT_EQ(NarrowValue("s", "key", "", 1), "");
  EXPECT_EQ(NarrowValue("s", "missing", "fallback", 5), "fall");
}

TEST_F(NarrowProfileValues, TextsAreInTheSystemsCodePage) {
  Write(
      "[\xE9t\xE9]\r\n\xFC"
      "ber=\x80 12 \xE4\r\n");
  EXPECT_EQ(NarrowValue("\xE9t\xE9",
                        "\xFC"
                        "ber",
                        ""),
            "\x80 12 \xE4");
  EXPECT_EQ(NarrowValue("\xE9t\xE9", "missing", "\xFC"), "\xFC");
}

TEST_F(NarrowProfileValues, AWideFileIsRead) {
  Write(std::string_view("\xFF\xFE[\0s\0]\0\r\0\n\0k\0=\0\xAC\x20\xE9\0", 20));
  EXPECT_EQ(NarrowValue("s", "k", ""), "\x80\xE9");
}

// --- Finding files

TEST_F(NarrowFiles, AFileIsFoundByItsName) {
  MakeFile(u"Driver.ini", "12345");
  FindDataA data;
  const OwnedFind search(os.files.FindFirstFileA(Narrow(Path(u"DRIVER.INI")).c_str(), &data));
  ASSERT_TRUE(search);
  EXPECT_EQ(std::string(data.name), "Driver.ini");
  EXPECT_EQ(data.size, 5u);
  EXPECT_EQ(data.attributes & FILE_ATTRIBUTE_DIRECTORY, 0u);
}

TEST_F(NarrowFiles, AFolderIsFoundByItsName) {
  machine.MakeFolder(Path(u"sub"));
  FindDataA data;
  const OwnedFind search(os.files.FindFirstFileA(Narrow(Path(u"sub")).c_str(), &data));
  ASSERT_TRUE(search);
  EXPECT_NE(data.attributes & FILE_ATTRIBUTE_DIRECTORY, 0u);
}

TEST_F(NarrowFiles, NamesAreInTheSystemsCodePage) {
  MakeFile(u"caf\u00E9 \u20AC.dll");
  FindDataA data;
  const OwnedFind search(os.files.FindFirstFileA(Narrow(Path(u"caf\u00E9*")).c_str(), &data));
  ASSERT_TRUE(search);
  EXPECT_EQ(std::string(data.name), "caf\xE9 \x80.dll");
  EXPECT_EQ(os.files.FindFirstFileA(Narrow(Path(u"caf\u00E8*")).c_str(), &data),
            INVALID_FIND_HANDLE);
}

TEST_F(NarrowFiles, ACharacterThatTheCodePageLacksIsAQuestionMark) {
  MakeFile(u"\u05D0.dll");
  FindDataA data;
  const OwnedFind search(os.files.FindFirstFileA(Narrow(Path(u"*.dll")).c_str(), &data));
  ASSERT_TRUE(search);
  EXPECT_EQ(std::string(data.name), "?.dll");
}

TEST_F(NarrowFiles, WhatIsNotThereIsNotFound) {
  FindDataA data;
  EXPECT_EQ(os.files.FindFirstFileA(Narrow(Path(u"missing")).c_str(), &data), INVALID_FIND_HANDLE);
  EXPECT_EQ(LastError(), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(os.files.FindFirstFileA(Narrow(Path(u"missing\\*")).c_str(), &data),
            INVALID_FIND_HANDLE);
  EXPECT_EQ(LastError(), ERROR_PATH_NOT_FOUND);
}

// --- Drivers

TEST_F(NarrowPrinterDrivers, Level2TellsTheFilesOfThePrintersDriver) {
  AddDriver({.name = kDriver, .dataFile = u"C:\\Drivers\\caf\u00E9 \u20AC.dat"});
  AddPrinter({.name = kPrinter, .driver = kDriver});
  const std::vector<std::uint64_t> buffer = Filled(Driver(Open(kPrinter), 2));
  ASSERT_FALSE(buffer.empty());
  const auto& info = *reinterpret_cast<const DriverInfo2A*>(buffer.data());
  EXPECT_EQ(info.version, 3u);
  EXPECT_EQ(TextOf(info.name), "KAVRO Test Driver");
  EXPECT_EQ(TextOf(info.environment), Narrow(OwnEnvironment()));
  EXPECT_EQ(TextOf(info.driverPath), "C:\\Drivers\\kavro.dll");
  EXPECT_EQ(TextOf(info.dataFile), "C:\\Drivers\\caf\xE9 \x80.dat");
  EXPECT_EQ(TextOf(info.configFile), "C:\\Drivers\\kavroui.dll");
}

TEST_F(NarrowPrinterDrivers, Level3TellsTheHelpFileToo) {
  AddDriver({.name = kDriver, .helpFile = u"C:\\Drivers\\kavro.hlp"});
  AddPrinter({.name = kPrinter, .driver = kDriver});
  const std::vector<std::uint64_t> buffer = Filled(Driver(Open(kPrinter), 3));
  ASSERT_FALSE(buffer.empty());
  const auto& info = *reinterpret_cast<const DriverInfo3A*>(buffer.data());
  EXPECT_EQ(info.version, 3u);
  EXPECT_EQ(TextOf(info.name), "KAVRO Test Driver");
  EXPECT_EQ(TextOf(info.driverPath), "C:\\Drivers\\kavro.dll");
  EXPECT_EQ(TextOf(info.dataFile), "C:\\Drivers\\kavro.dat");
  EXPECT_EQ(TextOf(info.configFile), "C:\\Drivers\\kavroui.dll");
  EXPECT_EQ(TextOf(info.helpFile), "C:\\Drivers\\kavro.hlp");
  EXPECT_EQ(info.dependentFiles, nullptr);
}

TEST_F(NarrowPrinterDrivers, TheSizeNeededIsTold) {
  AddDriver({.name = kDriver});
  AddPrinter({.name = kPrinter, .driver = kDriver});
  const HPRINTER printer = Open(kPrinter);
  // The structure, and the name, driver, data and configuration file with their terminators.
  constexpr std::size_t kTexts = 18 + 21 + 21 + 23;
  ExpectSizesAreTold(Driver(printer, 2), 48 + kTexts);
  ExpectSizesAreTold(Driver(printer, 3), 80 + kTexts);
}

TEST_F(NarrowPrinterDrivers, WhatThePrinterHasNotIsRefused) {
  AddPrinter({.name = kPrinter, .driver = u"No Such Driver"});
  std::uint64_t buffer[512];
  std::uint32_t needed = 0;
  std::uint32_t count = 0;
  EXPECT_FALSE(spooler.GetPrinterDriverA(Open(kPrinter), 3, buffer, sizeof(buffer), &needed));
  EXPECT_EQ(LastError(), ERROR_UNKNOWN_PRINTER_DRIVER);
  EXPECT_FALSE(spooler.GetPrinterDriverA(HPRINTER{0x12345678}, 3, buffer, sizeof(buffer), &needed));
  EXPECT_EQ(LastError(), ERROR_INVALID_HANDLE);
  EXPECT_FALSE(spooler.EnumPrinterDriversA(77, buffer, sizeof(buffer), &needed, &count));
  EXPECT_EQ(LastError(), ERROR_INVALID_LEVEL);
}

TEST_F(NarrowPrinterDrivers, WithoutAnyDriverTheListIsEmptyAndNeedsNoBuffer) {
  std::uint32_t needed = 77;
  std::uint32_t count = 77;
  EXPECT_TRUE(spooler.EnumPrinterDriversA(2, nullptr, 0, &needed, &count));
  EXPECT_EQ(needed, 0u);
  EXPECT_EQ(count, 0u);
}

TEST_F(NarrowPrinterDrivers, TheListIsTheWideOne) {
  AddDriver({.name = u"First Driver", .dataFile = u"C:\\Drivers\\first.dat"});
  AddDriver({.name = u"Second \u00E9", .dataFile = u"C:\\Drivers\\second.dat"});
  std::uint32_t count = 0;
  ExpectSizesAreTold(AllDrivers(2, &count), 2 * 48);
  const std::vector<std::uint64_t> narrow = Filled(AllDrivers(2, &count));
  ASSERT_EQ(count, 2u);
  const std::vector<std::uint64_t> wide =
      Filled([&](void* buffer, std::uint32_t bytes, std::uint32_t* needed) {
        return spooler.EnumPrinterDriversW(2, buffer, bytes, needed, &count);
      });
  ASSERT_EQ(count, 2u);
  const auto* narrowInfos = reinterpret_cast<const DriverInfo2A*>(narrow.data());
  const auto* wideInfos = reinterpret_cast<const DriverInfo2*>(wide.data());
  std::vector<std::string> names;
  for (std::uint32_t i = 0; i < count; ++i) {
    names.emplace_back(narrowInfos[i].name);
    EXPECT_EQ(names.back(), Narrow(wideInfos[i].name));
    EXPECT_EQ(std::string(narrowInfos[i].dataFile), Narrow(wideInfos[i].dataFile));
    EXPECT_EQ(std::string(narrowInfos[i].driverPath), Narrow(wideInfos[i].driverPath));
    EXPECT_EQ(narrowInfos[i].version, wideInfos[i].version);
  }
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"First Driver", "Second \xE9"}));
}

}  // namespace
}  // namespace platform
