#include "Common/printer_lookup.h"

#include <gtest/gtest.h>

#include "app/cmd_line_info.h"
#include "platform/sim/machine.h"

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
  for (std::uint64_t number = 1; number <= 20; ++number) {
    inside.process().FailCall(number);
    GetDriverAndPort(u"P", driver, port);
    EXPECT_TRUE(inside.process().Ledger().empty()) << "call " << number;
  }
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
