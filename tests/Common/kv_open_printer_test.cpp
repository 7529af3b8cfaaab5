#include "Common/kv_open_printer.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/sim/machine.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char16_t kInstaller[] = u"Global\\KavroPrinterInstaller";
constexpr char16_t kInUse[] = u"Global\\KavroOmataseMutex";
constexpr char16_t kLog[] = u"C:\\ProgramData\\KAVRO\\KVOPENPRINTER.log";

class GuardedOpen : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  HPRINTER printer{};

  GuardedOpen() {
    machine.spooler().AddDriver({.name = u"D"});
    machine.spooler().AddPrinter({.name = u"P", .port = u"USB001", .driver = u"D"});
    machine.files().WriteFile(kLog, "");
  }

  HANDLE StartInstaller() { return Os().objects.CreateMutexW(nullptr, false, kInstaller); }
  // Whether a line of the open-printer log ends in this text.
  bool HasLogged(const std::string& text) {
    return machine.files().ReadFile(kLog).value_or("").find(": " + text + "\r\n") !=
           std::string::npos;
  }
};

TEST_F(GuardedOpen, OpensThePrinterAndShowsThatItIsInUse) {
  CKvOpenPrinter open;
  EXPECT_EQ(open.KvOpenPrinter(u"P", &printer, nullptr), 1);
  EXPECT_NE(printer, HPRINTER{});
  EXPECT_TRUE(machine.objects().Exists(kInUse));
  EXPECT_EQ(open.KvClosePrinter(printer), 1);
  EXPECT_EQ(open.m_hMutex, HANDLE{});
  EXPECT_FALSE(machine.objects().Exists(kInUse));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(GuardedOpen, LogsOpeningAndClosing) {
  CKvOpenPrinter open;
  open.KvOpenPrinter(u"P", &printer, nullptr);
  const std::string number = std::to_string(static_cast<std::uint64_t>(printer));
  open.KvClosePrinter(printer);
  EXPECT_TRUE(HasLogged("OpenPriner PrnName[P] hPrn[" + number + "]"));
  EXPECT_TRUE(HasLogged("ClosePriner hPrinter[" + number + "]"));
}

TEST_F(GuardedOpen, AnInstallerKeepsItAwayWithoutAMutexOrAnOpen) {
  const HANDLE installer = StartInstaller();
  const std::vector<std::u16string> before = inside.process().Ledger();
  printer = HPRINTER{77};
  CKvOpenPrinter open;
  EXPECT_EQ(open.KvOpenPrinter(u"P", &printer, nullptr), -1);
  EXPECT_EQ(printer, HPRINTER{77});
  EXPECT_EQ(open.m_hMutex, HANDLE{});
  EXPECT_FALSE(machine.objects().Exists(kInUse));
  EXPECT_EQ(inside.process().Ledger(), before);
  EXPECT_TRUE(HasLogged("OpenPrinter fail [Install Right Now] PrnName=[P]"));
  Os().objects.CloseHandle(installer);
}

TEST_F(GuardedOpen, AFailedOpenGivesTheMutexBack) {
  CKvOpenPrinter open;
  EXPECT_EQ(open.KvOpenPrinter(u"missing", &printer, nullptr), 0);
  EXPECT_EQ(open.m_hMutex, HANDLE{});
  EXPECT_FALSE(machine.objects().Exists(kInUse));
  EXPECT_TRUE(HasLogged("OpenPrinter fail [API fail]"));
}

TEST_F(GuardedOpen, AFailedOpenWhoseMutexCantBeClosedKeepsIt) {
  machine.files().Remove(kLog);  // the log closes handles, too
  CKvOpenPrinter open;
  inside.process().FailNext("CloseHandle", ERROR_INVALID_HANDLE);
  EXPECT_EQ(open.KvOpenPrinter(u"missing", &printer, nullptr), 0);
  EXPECT_NE(open.m_hMutex, HANDLE{});
  EXPECT_TRUE(Os().objects.CloseHandle(open.m_hMutex));
}

TEST_F(GuardedOpen, WithoutAMutexNothingIsOpened) {
  CKvOpenPrinter open;
  inside.process().FailNext("CreateMutexW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(open.KvOpenPrinter(u"P", &printer, nullptr), -2);
  EXPECT_TRUE(HasLogged("OpenPrinter fail [Create Mutex Fail]"));
  EXPECT_EQ(printer, HPRINTER{});
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(GuardedOpen, WithoutASecurityDescriptorItOpensWithDefaultSecurity) {
  for (const char* operation : {"InitializeSecurityDescriptor", "SetSecurityDescriptorDacl"}) {
    CKvOpenPrinter open;
    inside.process().FailNext(operation, ERROR_INVALID_PARAMETER);
    EXPECT_EQ(open.KvOpenPrinter(u"P", &printer, nullptr), 1) << operation;
    EXPECT_EQ(machine.objects().DaclOf(kInUse), std::nullopt);
    EXPECT_EQ(open.KvClosePrinter(printer), 1);
  }
}

TEST_F(GuardedOpen, EverybodyMayOpenTheMutex) {
  CKvOpenPrinter open;
  open.KvOpenPrinter(u"P", &printer, nullptr);
  EXPECT_EQ(machine.objects().DaclOf(kInUse), "");  // a list that is there and null
  open.KvClosePrinter(printer);
}

TEST_F(GuardedOpen, TheDestructorClosesNothing) {
  HANDLE mutex{};
  {
    CKvOpenPrinter open;
    open.KvOpenPrinter(u"P", &printer, nullptr);
    mutex = open.m_hMutex;
  }
  EXPECT_TRUE(machine.objects().Exists(kInUse));
  EXPECT_TRUE(Os().spooler.ClosePrinter(printer));
  EXPECT_TRUE(Os().objects.CloseHandle(mutex));
}

TEST_F(GuardedOpen, ASecondOpenWithoutACloseLosesTheFirstMutexHandle) {
  CKvOpenPrinter open;
  HPRINTER second{};
  open.KvOpenPrinter(u"P", &printer, nullptr);
  const HANDLE first = open.m_hMutex;
  EXPECT_EQ(open.KvOpenPrinter(u"P", &second, nullptr), 1);
  EXPECT_NE(open.m_hMutex, first);
  open.KvClosePrinter(second);
  open.KvClosePrinter(printer);
  EXPECT_TRUE(Os().objects.CloseHandle(first));
}

TEST_F(GuardedOpen, ClosingWithANullHandleAfterAFailedOpenGivesOneAndAsksNobody) {
  CKvOpenPrinter open;
  open.KvOpenPrinter(u"missing", &printer, nullptr);
  const std::uint64_t calls = inside.process().calls();
  EXPECT_EQ(open.KvClosePrinter(HPRINTER{}), 1);
  EXPECT_EQ(open.m_hMutex, HANDLE{});
  EXPECT_EQ(inside.process().calls(), calls);
}

TEST_F(GuardedOpen, AFailedCloseOfTheMutexLeavesTheField) {
  machine.files().Remove(kLog);
  CKvOpenPrinter open;
  open.KvOpenPrinter(u"P", &printer, nullptr);
  inside.process().FailNext("CloseHandle", ERROR_INVALID_HANDLE);
  EXPECT_EQ(open.KvClosePrinter(printer), 1);
  EXPECT_NE(open.m_hMutex, HANDLE{});
  EXPECT_TRUE(Os().objects.CloseHandle(open.m_hMutex));
}

TEST_F(GuardedOpen, AFailedCloseOfThePrinterIsToldAndTheMutexGoes) {
  CKvOpenPrinter open;
  open.KvOpenPrinter(u"P", &printer, nullptr);
  inside.process().FailNext("ClosePrinter", ERROR_INVALID_HANDLE);
  EXPECT_EQ(open.KvClosePrinter(printer), 0);
  EXPECT_EQ(open.m_hMutex, HANDLE{});
  EXPECT_FALSE(HasLogged("ClosePriner hPrinter[" +
                         std::to_string(static_cast<std::uint64_t>(printer)) + "]"));
  EXPECT_TRUE(Os().spooler.ClosePrinter(printer));
}

TEST_F(GuardedOpen, PlainModeOpensDuringAnInstallationWithoutMutexOrLog) {
  const HANDLE installer = StartInstaller();
  CKvOpenPrinter open;
  EXPECT_TRUE(open.KvOpenPrinterMode(u"P", &printer, nullptr, 1));
  EXPECT_EQ(open.m_nMode, 1);
  EXPECT_FALSE(machine.objects().Exists(kInUse));
  EXPECT_EQ(open.KvClosePrinter(printer), 1);
  EXPECT_EQ(open.KvClosePrinter(HPRINTER{}), 1);
  EXPECT_EQ(machine.files().ReadFile(kLog), "");
  Os().objects.CloseHandle(installer);
}

TEST_F(GuardedOpen, AMutexThatCantBeClosedIsLoggedWithItsHandle) {
  // The log's own two closes stand in front of the one that fails: of its mutex and its file.
  CKvOpenPrinter open;
  inside.process().FailNext("CloseHandle", ERROR_INVALID_HANDLE, 2);
  EXPECT_EQ(open.KvOpenPrinter(u"missing", &printer, nullptr), 0);
  std::string number = std::to_string(static_cast<std::uint64_t>(open.m_hMutex));
  EXPECT_TRUE(HasLogged("!Close Mutex Fail hMutex=[" + number + "] "));
  Os().objects.CloseHandle(open.m_hMutex);
  open.m_hMutex = HANDLE{};

  open.KvOpenPrinter(u"P", &printer, nullptr);
  inside.process().FailNext("CloseHandle", ERROR_INVALID_HANDLE, 2);
  open.KvClosePrinter(printer);
  number = std::to_string(static_cast<std::uint64_t>(open.m_hMutex));
  EXPECT_TRUE(HasLogged("Close Mutex Fail hMutex=[" + number + "] "));
  EXPECT_FALSE(HasLogged("!Close Mutex Fail hMutex=[" + number + "] "));
  Os().objects.CloseHandle(open.m_hMutex);
}

TEST_F(GuardedOpen, AFailedCloseInPlainModeGivesZero) {
  CKvOpenPrinter open;
  open.KvOpenPrinterMode(u"P", &printer, nullptr, 1);
  inside.process().FailNext("ClosePrinter", ERROR_INVALID_HANDLE);
  EXPECT_EQ(open.KvClosePrinter(printer), 0);
  EXPECT_TRUE(Os().spooler.ClosePrinter(printer));
}

TEST_F(GuardedOpen, PlainModeOfAMissingPrinterFails) {
  CKvOpenPrinter open;
  EXPECT_FALSE(open.KvOpenPrinterMode(u"missing", &printer, nullptr, 2));
}

TEST_F(GuardedOpen, TheYesOrNoFormIsTrueForAnOpenPrinterOnly) {
  CKvOpenPrinter open;
  EXPECT_FALSE(open.KvOpenPrinterBool(u"missing", &printer, nullptr));
  EXPECT_TRUE(open.KvOpenPrinterBool(u"P", &printer, nullptr));
  open.KvClosePrinter(printer);
  const HANDLE installer = StartInstaller();
  EXPECT_FALSE(open.KvOpenPrinterBool(u"P", &printer, nullptr));
  Os().objects.CloseHandle(installer);
}

TEST_F(GuardedOpen, ANarrowNameIsInTheSystemsCodePage) {
  machine.spooler().AddPrinter({.name = u"Caf\u00E9", .port = u"USB002", .driver = u"D"});
  CKvOpenPrinter open;
  EXPECT_EQ(open.KvOpenPrinterAResult("Caf\xE9", &printer), 1);
  open.KvClosePrinter(printer);
  EXPECT_TRUE(open.KvOpenPrinterA("Caf\xE9", &printer));
  open.KvClosePrinter(printer);
  EXPECT_EQ(open.KvOpenPrinterAResult("missing", &printer), 0);
}

TEST_F(GuardedOpen, ANarrowNameThatCantBeConvertedGivesMinusThree) {
  CKvOpenPrinter open;
  inside.process().FailNext("MultiByteToWideChar", ERROR_INVALID_PARAMETER);
  EXPECT_EQ(open.KvOpenPrinterAResult("P", &printer), -3);
  inside.process().FailNext("MultiByteToWideChar", ERROR_INVALID_PARAMETER);
  EXPECT_FALSE(open.KvOpenPrinterA("P", &printer));
}

TEST_F(GuardedOpen, ManyProcessesMayHoldThePrinterAtATime) {
  CKvOpenPrinter first;
  CKvOpenPrinter second;
  HPRINTER other{};
  EXPECT_EQ(first.KvOpenPrinter(u"P", &printer, nullptr), 1);
  EXPECT_EQ(second.KvOpenPrinter(u"P", &other, nullptr), 1);
  first.KvClosePrinter(printer);
  EXPECT_TRUE(machine.objects().Exists(kInUse));
  second.KvClosePrinter(other);
  EXPECT_FALSE(machine.objects().Exists(kInUse));
}

// OpenMutexW, two for the descriptor, CreateMutexW, OpenPrinterW; ClosePrinter, CloseHandle. The
// log adds its two look-ups when the object is made.
TEST_F(GuardedOpen, CostsSevenCallsBesideTheLogsLook) {
  machine.files().Remove(kLog);
  const std::uint64_t start = inside.process().calls();
  CKvOpenPrinter open;
  const std::uint64_t made = inside.process().calls();
  open.KvOpenPrinter(u"P", &printer, nullptr);
  open.KvClosePrinter(printer);
  EXPECT_EQ(made - start, 2U);
  EXPECT_EQ(inside.process().calls() - made, 7U);
}

TEST_F(GuardedOpen, NoFailureOfACallLeavesAnythingOpen) {
  machine.files().Remove(kLog);
  std::string failed;
  for (std::uint64_t number = 1; number <= 9; ++number) {
    HPRINTER opened{};
    inside.process().FailCall(number);
    CKvOpenPrinter open;
    if (open.KvOpenPrinter(u"P", &opened, nullptr) == 1) open.KvClosePrinter(opened);
    EXPECT_TRUE(inside.process().Ledger().empty()) << "call " << number;
    if (!inside.process().failedOperation().empty()) failed = inside.process().failedOperation();
  }
  EXPECT_EQ(failed, "OpenPrinterW");  // the last that can fail; the two closes can't by number
}

TEST_F(GuardedOpen, TellsWhetherAnInstallerIsAtWorkAndLeavesNothingOpen) {
  EXPECT_FALSE(IsInstallerActive(u"P"));
  EXPECT_FALSE(IsInstallerActive(u"missing"));
  inside.process().FailNext("CreateMutexW", ERROR_ACCESS_DENIED);
  EXPECT_FALSE(IsInstallerActive(u"P"));
  EXPECT_TRUE(inside.process().Ledger().empty());

  const HANDLE installer = StartInstaller();
  EXPECT_TRUE(IsInstallerActive(u"P"));
  EXPECT_TRUE(IsInstallerActive(u"missing"));
  EXPECT_TRUE(IsInstallerActive(u""));
  EXPECT_EQ(inside.process().Ledger().size(), 1U);
  Os().objects.CloseHandle(installer);
  EXPECT_FALSE(IsInstallerActive(u"P"));
}

}  // namespace
}  // namespace vgl
