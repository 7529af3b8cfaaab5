#include "profile/drv_info_reader.h"

#include "profile/install_desc.h"
#include "tests/profile/driver_set_fixture.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char16_t kKey[] = u"Software\\KAVRO\\VGL3\\Driver\\Sample";

const CDrvInfoReader kReader;

class DrvInfoReader : public DriverSetTest {
 protected:
  HPRINTER handle = Open();

  DrvInfoReader() {
    WriteSADat(R"([Install]
REGPATH  = DRV, "HKEY_LOCAL_MACHINE\Software\KAVRO\VGL3\Driver\Sample"
REGENTER = DRV, "DepExe", DRIVERDIR+"\tool.exe"
REGENTER = DRV, "QBAPI_VERSION", 0x100
[Tool]
Name = "a tool"
Number = 12
Hex = 0x1F
Negative = -5
Word = twelve
)");
  }
  ~DrvInfoReader() override { Close(handle); }

  // What every way to a string and to a number gives.
  std::vector<std::u16string> Strings(const char16_t* printer, const char16_t* keyPath,
                                      const char16_t* name) {
    const HPRINTER given = printer == nullptr || *printer == u'\0' ? HPRINTER{} : handle;
    const bool isEmpty = given == HPRINTER{};
    return {kReader.GetString(printer, keyPath, name),
            kReader.GetStringOfVif(isEmpty ? printer : kVif, keyPath, name),
            kReader.GetStringOfDriver(isEmpty ? printer : kDriver, keyPath, name),
            kReader.GetStringByHandle(given, kPrinter, keyPath, name),
            kReader.GetStringByHandle(handle, printer, keyPath, name)};
  }
  std::vector<std::int64_t> Dwords(const char16_t* printer, const char16_t* keyPath,
                                   const char16_t* name) {
    const HPRINTER given = printer == nullptr || *printer == u'\0' ? HPRINTER{} : handle;
    const bool isEmpty = given == HPRINTER{};
    return {kReader.GetDword(printer, keyPath, name),
            kReader.GetDwordOfVif(isEmpty ? printer : kVif, keyPath, name),
            kReader.GetDwordOfDriver(isEmpty ? printer : kDriver, keyPath, name),
            kReader.GetDwordByHandle(given, kPrinter, keyPath, name),
            kReader.GetDwordByHandle(handle, printer, keyPath, name)};
  }
};

using DatReader = DrvInfoReader;
using Texts = std::vector<std::u16string>;
using Numbers = std::vector<std::int64_t>;

// --- The install description

TEST_F(DrvInfoReader, EveryWayGivesTheValue) {
  EXPECT_EQ(Strings(kPrinter, kKey, u"DepExe"), Texts(5, u"C:\\Set\\tool.exe"));
  EXPECT_EQ(Dwords(kPrinter, kKey, u"QBAPI_VERSION"), Numbers(5, 256));
}

TEST_F(DrvInfoReader, AValueOfTheOtherKindIsAMiss) {
  EXPECT_EQ(Strings(kPrinter, kKey, u"QBAPI_VERSION"), Texts(5));
  EXPECT_EQ(Dwords(kPrinter, kKey, u"DepExe"), Numbers(5, -1));
}

TEST_F(DrvInfoReader, WhatIsntDescribedIsAMiss) {
  EXPECT_EQ(Strings(kPrinter, kKey, u"Other"), Texts(5));
  EXPECT_EQ(Dwords(kPrinter, kKey, u"Other"), Numbers(5, -1));
  machine.files().Remove(kSADat);
  EXPECT_EQ(Strings(kPrinter, kKey, u"DepExe"), Texts(5));
  EXPECT_EQ(Dwords(kPrinter, kKey, u"QBAPI_VERSION"), Numbers(5, -1));
}

TEST_F(DrvInfoReader, AMissingArgumentAsksNobody) {
  const char16_t* const none = nullptr;
  const struct {
    const char16_t* source;
    const char16_t* keyPath;
    const char16_t* name;
  } cases[] = {
      {u"", kKey, u"DepExe"},      {none, kKey, u"DepExe"}, {kPrinter, u"", u"DepExe"},
      {kPrinter, none, u"DepExe"}, {kPrinter, kKey, u""},   {kPrinter, kKey, none},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CallsOf([&] {
                EXPECT_EQ(Strings(c.source, c.keyPath, c.name), Texts(5));
                EXPECT_EQ(Dwords(c.source, c.keyPath, c.name), Numbers(5, -1));
              }),
              0U);
  }
}

TEST_F(DrvInfoReader, TellsWhetherAPrinterIsDescribed) {
  EXPECT_EQ(kReader.IsDescribed(kPrinter), 1);
  EXPECT_EQ(kReader.IsDescribed(u"missing"), 0);
  EXPECT_EQ(kReader.IsDescribed(u""), 0);
  EXPECT_EQ(kReader.IsDescribed(nullptr), 0);
  Describe("REGPATH = A, \"HKEY_LOCAL_MACHINE\\X\"\n");
  EXPECT_EQ(kReader.IsDescribed(kPrinter), 0);
}

TEST_F(DrvInfoReader, NothingIsKeptBetweenTwoReads) {
  EXPECT_EQ(kReader.GetDword(kPrinter, kKey, u"QBAPI_VERSION"), 256);
  Describe(R"(
REGPATH  = DRV, "HKEY_LOCAL_MACHINE\Software\KAVRO\VGL3\Driver\Sample"
REGENTER = DRV, "QBAPI_VERSION", 7
)");
  EXPECT_EQ(kReader.GetDword(kPrinter, kKey, u"QBAPI_VERSION"), 7);
}

TEST_F(DrvInfoReader, WhileAnInstallerIsAtWorkNothingIsReadByAPrintersName) {
  const OwnedObject installer(
      Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller"));
  EXPECT_EQ(kReader.GetString(kPrinter, kKey, u"DepExe"), u"");
  EXPECT_EQ(kReader.GetDword(kPrinter, kKey, u"QBAPI_VERSION"), -1);
  EXPECT_EQ(kReader.IsDescribed(kPrinter), 0);
  EXPECT_EQ(kReader.GetDatString(kPrinter, u"Tool", u"Name"), u"");
  EXPECT_EQ(kReader.GetDatInt(kPrinter, u"Tool", u"Number"), -1);
  EXPECT_EQ(kReader.GetStringByHandle(handle, kPrinter, kKey, u"DepExe"), u"C:\\Set\\tool.exe");
}

TEST_F(DrvInfoReader, EveryReadGivesEverythingBack) {
  const std::vector<std::u16string> before = inside.process().Ledger();
  Strings(kPrinter, kKey, u"DepExe");
  kReader.GetDatString(kPrinter, u"Tool", u"Name");
  kReader.GetDatInt(kPrinter, u"Tool", u"Number");
  EXPECT_EQ(inside.process().Ledger(), before);
}

TEST_F(DrvInfoReader, AnyCallThatFailsGivesTheValueOrNothing) {
  std::u16string text;
  int misses = 0;
  const auto check = [&](std::uint64_t) {
    EXPECT_TRUE(text.empty() || text == u"C:\\Set\\tool.exe");
    misses += text.empty() ? 1 : 0;
  };
  WithEachCallFailing([&] { text = kReader.GetString(kPrinter, kKey, u"DepExe"); }, check);
  EXPECT_GT(misses, 0);
  misses = 0;
  WithEachCallFailing([&] { text = kReader.GetStringOfDriver(kDriver, kKey, u"DepExe"); }, check);
  EXPECT_GT(misses, 0);
}

// --- Single keys of the SADat file

TEST_F(DatReader, ATextIsReadByNameAndByHandle) {
  EXPECT_EQ(kReader.GetDatString(kPrinter, u"Tool", u"Name"), u"a tool");
  EXPECT_EQ(kReader.GetDatStringByHandle(handle, kPrinter, u"tool", u"NAME"), u"a tool");
  EXPECT_EQ(
      OpeningsOf([this] { kReader.GetDatStringByHandle(handle, kPrinter, u"Tool", u"Name"); }), 0U);
}

TEST_F(DatReader, ATextIsCutTo127Characters) {
  WriteSADat("[Tool]\nName=" + std::string(128, 'n') + "\n");
  EXPECT_EQ(kReader.GetDatString(kPrinter, u"Tool", u"Name"), std::u16string(127, u'n'));
  EXPECT_EQ(kReader.GetDatStringByHandle(handle, kPrinter, u"Tool", u"Name"),
            std::u16string(127, u'n'));
}

TEST_F(DatReader, ANumberIsASignedOne) {
  EXPECT_EQ(kReader.GetDatInt(kPrinter, u"Tool", u"Number"), 12);
  EXPECT_EQ(kReader.GetDatInt(kPrinter, u"Tool", u"Hex"), 31);
  EXPECT_EQ(kReader.GetDatInt(kPrinter, u"Tool", u"Negative"), -5);
  EXPECT_EQ(kReader.GetDatInt(kPrinter, u"Tool", u"Word"), 0);
}

TEST_F(DatReader, NoInstallDescriptionIsNeeded) {
  WriteSADat("[Tool]\nName=x\nNumber=3\n");
  EXPECT_EQ(kReader.IsDescribed(kPrinter), 0);
  EXPECT_EQ(kReader.GetDatString(kPrinter, u"Tool", u"Name"), u"x");
  EXPECT_EQ(kReader.GetDatInt(kPrinter, u"Tool", u"Number"), 3);
}

TEST_F(DatReader, TheFileMayBeTheVifItself) {
  WriteVif("[CommonDrvInfo]\nSADat=SAMPLE.VIF\n");
  EXPECT_EQ(kReader.GetDatString(kPrinter, u"CommonDrvInfo", u"SADat"), u"SAMPLE.VIF");
}

TEST_F(DatReader, WhatIsMissingIsEmptyOrMinusOne) {
  const struct {
    const char16_t* printer;
    const char16_t* section;
    const char16_t* key;
  } cases[] = {{kPrinter, u"Tool", u"Other"},
               {kPrinter, u"Other", u"Number"},
               {u"missing", u"Tool", u"Number"}};
  for (const auto& c : cases) {
    EXPECT_EQ(kReader.GetDatString(c.printer, c.section, c.key), u"");
    EXPECT_EQ(kReader.GetDatInt(c.printer, c.section, c.key), -1);
  }
  machine.files().Remove(kSADat);
  EXPECT_EQ(kReader.GetDatString(kPrinter, u"Tool", u"Name"), u"");
  EXPECT_EQ(kReader.GetDatStringByHandle(handle, kPrinter, u"Tool", u"Name"), u"");
  EXPECT_EQ(kReader.GetDatInt(kPrinter, u"Tool", u"Number"), -1);
}

TEST_F(DatReader, AMissingArgumentAsksNobody) {
  const char16_t* const none = nullptr;
  const struct {
    const char16_t* printer;
    const char16_t* section;
    const char16_t* key;
  } cases[] = {
      {u"", u"Tool", u"Name"},   {none, u"Tool", u"Name"}, {kPrinter, u"", u"Name"},
      {kPrinter, none, u"Name"}, {kPrinter, u"Tool", u""}, {kPrinter, u"Tool", none},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CallsOf([&] {
                EXPECT_EQ(kReader.GetDatString(c.printer, c.section, c.key), u"");
                EXPECT_EQ(kReader.GetDatStringByHandle(handle, c.printer, c.section, c.key), u"");
                EXPECT_EQ(kReader.GetDatInt(c.printer, c.section, c.key), -1);
              }),
              0U);
  }
  EXPECT_EQ(CallsOf([] {
              EXPECT_EQ(kReader.GetDatStringByHandle(HPRINTER{}, kPrinter, u"Tool", u"Name"), u"");
            }),
            0U);
}

TEST_F(DatReader, AnyCallThatFailsGivesTheValueOrNothing) {
  std::u16string text;
  std::int32_t number = 0;
  int misses = 0;
  WithEachCallFailing(
      [&] {
        text = kReader.GetDatString(kPrinter, u"Tool", u"Name");
        number = kReader.GetDatInt(kPrinter, u"Tool", u"Number");
      },
      [&](std::uint64_t) {
        misses += text.empty() || number == -1 ? 1 : 0;
        EXPECT_TRUE(text.empty() || text == u"a tool");
        EXPECT_TRUE(number == -1 || number == 12);
        EXPECT_TRUE(text == u"a tool" || number == 12);  // a call is in one of the two alone
      });
  EXPECT_GT(misses, 10);
}

}  // namespace
}  // namespace vgl
