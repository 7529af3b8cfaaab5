#include "Common/printer_lookup.h"

#include <gtest/gtest.h>

#include "app/cmd_line_info.h"
#include "platform/sim/machine.h"
#include "tests/support/map_fixture.h"

namespace vgl {
namespace {

using namespace platform;

class PrinterLookup : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  std::u16string driver = u"before";
  std::u16string port = u"before";

  PrinterLookup() {
    machine.spooler().AddDriver({.name = u"Driver of P"});
    machine.spooler().AddPrinter({.name = u"P", .port = u"USB001", .driver = u"Driver of P"});
  }
};

TEST_F(PrinterLookup, GivesDriverAndPortOfThePrinter) {
  EXPECT_EQ(GetDriverAndPort(u"p", driver, port), 1);
  EXPECT_EQ(driver, u"Driver of P");
  EXPECT_EQ(port, u"USB001");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(PrinterLookup, EmptiesBothForAPrinterThatIsntThere) {
  EXPECT_EQ(GetDriverAndPort(u"missing", driver, port), 0);
  EXPECT_EQ(driver + port, u"");
}

TEST_F(PrinterLookup, EmptyAndNullNamesAskNobody) {
  const std::uint64_t calls = inside.process().calls();
  EXPECT_EQ(GetDriverAndPort(u"", driver, port), 0);
  EXPECT_EQ(GetDriverAndPort(nullptr, driver, port), 0);
  EXPECT_EQ(driver + port, u"");
  EXPECT_EQ(inside.process().calls(), calls);
}

TEST_F(PrinterLookup, OneOfTheTwoIsEnough) {
  machine.spooler().AddPrinter({.name = u"Q", .port = u"LPT1", .driver = std::nullopt});
  EXPECT_EQ(GetDriverAndPort(u"Q", driver, port), 1);
  EXPECT_EQ(driver, u"");
  EXPECT_EQ(port, u"LPT1");
}

TEST_F(PrinterLookup, ATextOf260CharactersDoesntComeThrough) {
  machine.spooler().AddPrinter(
      {.name = u"Q", .port = u"LPT1", .driver = std::u16string(260, u'd')});
  EXPECT_EQ(GetDriverAndPort(u"Q", driver, port), 1);
  EXPECT_EQ(driver, u"");
}

TEST_F(PrinterLookup, AnInstallerAtWorkKeepsItAway) {
  const HANDLE installer =
      Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller");
  EXPECT_EQ(GetDriverAndPort(u"P", driver, port), 0);
  EXPECT_EQ(driver + port, u"");
  Os().objects.CloseHandle(installer);
}

TEST_F(PrinterLookup, NoFailureOfACallLeavesAnythingOpen) {
  std::string failed;
  for (std::uint64_t number = 1; number <= 11; ++number) {
    inside.process().FailCall(number);
    GetDriverAndPort(u"P", driver, port);
    EXPECT_TRUE(inside.process().Ledger().empty()) << "call " << number;
    if (!inside.process().failedOperation().empty()) failed = inside.process().failedOperation();
  }
  EXPECT_EQ(failed, "GetPrinterW");  // the last that can fail; the two closes can't by number
}

TEST_F(PrinterLookup, GivesTheDriverAlone) {
  EXPECT_EQ(GetDriverName(u"P", driver), 1);
  EXPECT_EQ(driver, u"Driver of P");
  EXPECT_EQ(GetDriverName(u"missing", driver), 0);
  EXPECT_EQ(driver, u"");
  driver = u"before";
  EXPECT_EQ(GetDriverName(nullptr, driver), 0);
  EXPECT_EQ(driver, u"");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(PrinterLookup, GivesTheDriverOfAnOpenPrinterWhichStaysOpen) {
  HPRINTER printer{};
  ASSERT_TRUE(Os().spooler.OpenPrinterW(u"P", &printer, nullptr));
  EXPECT_EQ(GetDriverNameFromHandle(printer, driver), 1);
  EXPECT_EQ(driver, u"Driver of P");
  inside.process().FailNext("GetPrinterW", ERROR_NOT_ENOUGH_MEMORY, 1);  // the filling call
  EXPECT_EQ(GetDriverNameFromHandle(printer, driver), 0);
  EXPECT_EQ(driver, u"");
  EXPECT_TRUE(Os().spooler.ClosePrinter(printer));
}

TEST_F(PrinterLookup, ANullHandleAsksNobody) {
  const std::uint64_t calls = inside.process().calls();
  EXPECT_EQ(GetDriverNameFromHandle(HPRINTER{}, driver), 0);
  EXPECT_EQ(driver, u"");
  EXPECT_EQ(inside.process().calls(), calls);
}

TEST_F(PrinterLookup, WhatThePrinterDoesntTellReplacesTheOneThatWasKnownToo) {
  machine.spooler().AddPrinter({.name = u"Q", .port = u"LPT1", .driver = std::nullopt});
  CCmdLineInfo info;
  info.m_szPrinterName = u"Q";
  info.m_szDriverName = u"other";
  EXPECT_EQ(info.ResolvePrinterInfo(), 1);
  EXPECT_EQ(info.m_szDriverName, u"");
  EXPECT_EQ(info.m_szPortName, u"LPT1");
}

// --- The model

class ModelLookup : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  std::u16string model = u"before";

  ModelLookup() { AddPrintersOfBothMaps(machine); }
};

TEST_F(ModelLookup, TheInstallDescriptionOfThePrinterNamesIt) {
  EXPECT_EQ(GetModelId(u"V7 Studio", u"KAVRO V7 Studio", model), 1);
  EXPECT_EQ(model, u"S1");
}

TEST_F(ModelLookup, WithoutAPrinterThatOfTheDriverDoes) {
  for (const char16_t* none : {u"", static_cast<const char16_t*>(nullptr)}) {
    model = u"before";
    EXPECT_EQ(GetModelId(none, u"KAVRO V7 Studio", model), 1);
    EXPECT_EQ(model, u"S1");
  }
}

TEST_F(ModelLookup, WithoutAnAnswerItIsEmptyAndTheResultOneAllTheSame) {
  const char16_t* const none = nullptr;
  EXPECT_EQ(GetModelId(u"missing", u"KAVRO V7 Studio", model), 1);
  EXPECT_EQ(model, u"");
  EXPECT_EQ(GetModelId(u"V7 Studio", u"another driver", model), 1);
  EXPECT_EQ(model, u"");
  for (const char16_t* driver : {u"", none}) {
    model = u"before";
    EXPECT_EQ(GetModelId(u"V7 Studio", driver, model), 1);
    EXPECT_EQ(model, u"");
  }
}

TEST_F(ModelLookup, ARecordFindsItsModelByThePrinterOrByTheDriver) {
  EXPECT_EQ(CCmdLineInfo(u"/P \"V7 Studio\"").m_szModelID, u"S1");
  EXPECT_EQ(CCmdLineInfo(u"/D \"KAVRO V7 Studio\" /O \"LPT1\"").m_szModelID, u"S1");
  EXPECT_EQ(CCmdLineInfo(u"/P \"V7 Studio\" /M \"given\"").m_szModelID, u"given");
}

TEST_F(PrinterLookup, ARecordTakesBothFromThePrinter) {
  const CCmdLineInfo info(u"/P \"P\"");
  EXPECT_EQ(info.m_szDriverName, u"Driver of P");
  EXPECT_EQ(info.m_szPortName, u"USB001");
}

TEST_F(PrinterLookup, WhatThePrinterTellsReplacesTheOneThatWasKnown) {
  const CCmdLineInfo info(u"/P \"P\" /D \"other\"");
  EXPECT_EQ(info.m_szDriverName, u"Driver of P");
  EXPECT_EQ(info.m_szPortName, u"USB001");
}

TEST_F(PrinterLookup, ARecordThatKnowsBothAsksNobody) {
  const std::uint64_t calls = inside.process().calls();
  CCmdLineInfo info;
  info.m_szPrinterName = u"P";
  info.m_szDriverName = u"d";
  info.m_szPortName = u"o";
  EXPECT_EQ(info.ResolvePrinterInfo(), 1);
  EXPECT_EQ(info.m_szDriverName, u"d");
  EXPECT_EQ(inside.process().calls(), calls);
}

TEST_F(PrinterLookup, NothingIsLookedUpAfterAFileThatCantBeRead) {
  const CCmdLineInfo info(u"/P \"P\" /FU \"missing.tmp\"");
  EXPECT_EQ(info.m_szDriverName, u"");
}

TEST_F(PrinterLookup, ARecordAsksAfterItsParameterFile) {
  machine.files().WriteUtf16(machine.system().tempFolder + u"K_Q1.tmp", u"/P \"P\"");
  const CCmdLineInfo info(u"/FU \"K_Q1.tmp\"");
  EXPECT_EQ(info.m_szPortName, u"USB001");
}

}  // namespace
}  // namespace vgl
