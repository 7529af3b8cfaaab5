// Whether a printer is masked, and what asking costs.
#include "Common/printer_mask.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace vgl {
namespace {

using namespace platform;

class PrinterMask : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};

  PrinterMask() {
    machine.spooler().AddDriver({.name = u"D"});
    machine.spooler().AddPrinter({.name = u"P", .port = u"USB001", .driver = u"D"});
  }

  void SetMask(std::string_view bytes) {
    machine.spooler().SetData(u"P", u"PrinterDriverData", u"VGLSetting", REG_DWORD, bytes);
  }

  // The operations that a mask check of that printer carries out, in their order, with "-" for one
  // that gives something back.
  std::vector<std::string> Operations(const char16_t* printer) {
    const std::uint64_t before = inside.process().calls();
    IsPrinterMasked(printer);
    const std::uint64_t count = inside.process().calls() - before;
    std::vector<std::string> operations;
    for (std::uint64_t number = 1; number <= count; ++number) {
      inside.process().FailCall(number);
      IsPrinterMasked(printer);
      const std::string& failed = inside.process().failedOperation();
      operations.push_back(failed.empty() ? "-" : failed);
    }
    return operations;
  }
};

TEST_F(PrinterMask, IsTheNumberThatThePrintersDataHas) {
  SetMask(std::string("\x01\0\0\0", 4));
  EXPECT_EQ(IsPrinterMasked(u"P"), 1);
  SetMask(std::string("\xFF\0\0\0", 4));
  EXPECT_EQ(IsPrinterMasked(u"P"), 255);
  SetMask(std::string("\0\0\0\x80", 4));
  EXPECT_NE(IsPrinterMasked(u"P"), 0);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(PrinterMask, APrinterWithZeroOrWithoutTheValueIsntMasked) {
  EXPECT_EQ(IsPrinterMasked(u"P"), 0);
  SetMask(std::string(4, '\0'));
  EXPECT_EQ(IsPrinterMasked(u"P"), 0);
}

TEST_F(PrinterMask, AValueOfMoreThanFourBytesCantBeReadAndDoesntMask) {
  SetMask(std::string("\x01\0\0\0\0", 5));
  EXPECT_EQ(IsPrinterMasked(u"P"), 0);
}

TEST_F(PrinterMask, AShorterValueCountsWithZerosBehindIt) {
  SetMask("\x02");
  EXPECT_EQ(IsPrinterMasked(u"P"), 2);
  SetMask("");
  EXPECT_EQ(IsPrinterMasked(u"P"), 0);
}

TEST_F(PrinterMask, EmptyAndNullNamesArentMaskedAndAskNobody) {
  const std::uint64_t calls = inside.process().calls();
  EXPECT_EQ(IsPrinterMasked(u""), 0);
  EXPECT_EQ(IsPrinterMasked(nullptr), 0);
  EXPECT_EQ(inside.process().calls(), calls);
}

TEST_F(PrinterMask, APrinterThatIsGoneIsMasked) {
  EXPECT_EQ(IsPrinterMasked(u"missing"), 1);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(PrinterMask, APrinterThatIsBeingInstalledIsntMasked) {
  SetMask(std::string("\x01\0\0\0", 4));
  const OwnedObject installer(
      Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller"));
  EXPECT_EQ(IsPrinterMasked(u"P"), 0);
  EXPECT_EQ(IsPrinterMasked(u"missing"), 0);
}

TEST_F(PrinterMask, WithoutTheMutexOfAnOpenPrinterItIsMasked) {
  inside.process().FailNext("CreateMutexW", ERROR_ACCESS_DENIED);
  inside.process().FailNext("CreateMutexW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(IsPrinterMasked(u"P"), 1);
}

// An installer that begins between the two tries has the last word: an opening fails first for want
// of a mutex, then for the installer.
TEST_F(PrinterMask, TheLastOpensResultCounts) {
  const OwnedObject installer(
      Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller"));
  inside.process().FailNext("OpenMutexW", ERROR_FILE_NOT_FOUND);  // not seen by the first try
  inside.process().FailNext("CreateMutexW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(IsPrinterMasked(u"P"), 0);

  inside.process().FailNext("CreateMutexW", ERROR_ACCESS_DENIED);
  inside.process().FailNext("OpenMutexW", ERROR_FILE_NOT_FOUND, 1);  // nor by the second
  EXPECT_EQ(IsPrinterMasked(u"P"), 1);
}

TEST_F(PrinterMask, AUserWithoutAllRightsIsAnsweredAsWell) {
  SetMask(std::string("\x03\0\0\0", 4));
  machine.spooler().MakeAccessDenied(u"P");
  EXPECT_EQ(IsPrinterMasked(u"P"), 3);
  EXPECT_EQ(machine.spooler().lastDesiredAccess, 0U);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(PrinterMask, AsksForAllRightsFirst) {
  IsPrinterMasked(u"P");
  EXPECT_EQ(machine.spooler().lastDesiredAccess, 0xF000CU);
}

TEST_F(PrinterMask, AReadThatFailsDoesntMask) {
  SetMask(std::string("\x01\0\0\0", 4));
  inside.process().FailNext("GetPrinterDataW", ERROR_PRINTER_DELETED);
  EXPECT_EQ(IsPrinterMasked(u"P"), 0);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

// The look for the open-printer log, one guarded open, one read, the closing of printer and mutex.
TEST_F(PrinterMask, ACheckCostsOneOpenAndOneReadAndNothingMore) {
  SetMask(std::string(4, '\0'));
  EXPECT_EQ(Operations(u"P"), (std::vector<std::string>{
                                  "SHGetSpecialFolderPathW", "GetFileAttributesW", "OpenMutexW",
                                  "InitializeSecurityDescriptor", "SetSecurityDescriptorDacl",
                                  "CreateMutexW", "OpenPrinterW", "GetPrinterDataW", "-", "-"}));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(PrinterMask, ACheckDoesntBecomeDearerWithTime) {
  const auto cost = [&] {
    const std::uint64_t before = inside.process().calls();
    IsPrinterMasked(u"P");
    return inside.process().calls() - before;
  };
  for (int check = 0; check < 1000; ++check) ASSERT_EQ(cost(), 10U);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

}  // namespace
}  // namespace vgl
