// What takes monitored-printer records away: the two sweeps, single records, whole trees of keys.
#include "Common/target_sweep.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/owned.h"
#include "tests/Common/target_records_fixture.h"

namespace vgl {
namespace {

using namespace platform;
using testing::IsEmpty;

constexpr char16_t kInstaller[] = u"Global\\KavroPrinterInstaller";

class TargetSweep : public TargetRecordTest {
 protected:
  TargetSweep() { machine.spooler().AddDriver({.name = u"D"}); }

  // Living records, numbered from 0.
  void AddLiving(int count) {
    for (int number = 0; number < count; ++number) {
      const std::u16string name{static_cast<char16_t>(u'A' + number)};
      AddPrinter(name);
      AddRecord(kPrinterBranch,
                std::u16string(u"P000000000000000") + static_cast<char16_t>(u'0' + number), name);
    }
  }
  // Whether the agent has set "Setting" of that record to 255.
  bool HasBeenMarked(const std::u16string& record) {
    const std::u16string event = u"set HKCU\\" + record + u"\\Setting = 255";
    return std::any_of(machine.trace().begin(), machine.trace().end(),
                       [&](const sim::Event& happened) { return happened.text == event; });
  }
};

// --- The printer records

class PrinterSweep : public TargetSweep {
 protected:
  // So that the sweep of the port records does nothing: there are as many.
  PrinterSweep() {
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
      AddRecord(kPortBranch, std::u16string(u"P000000000000000") + digit, u"port");
  }
};

TEST_F(PrinterSweep, ARecordOfALivingPrinterStays) {
  AddLiving(3);
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_EQ(Records(kPrinterBranch), (Names{kFirst, kSecond, kThird}));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(PrinterSweep, ARecordOfARemovedPrinterGoes) {
  AddRecord(kPrinterBranch, kFirst, u"removed printer");
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(PrinterSweep, ItGoesWithAllThatItHolds) {
  AddRecord(kPrinterBranch, kFirst, u"removed printer");
  registry().SetDword(kUser, RecordPath(kPrinterBranch, kFirst) + u"\\Notify", u"012", 1);
  registry().MakeKey(kUser, RecordPath(kPrinterBranch, kFirst) + u"\\Other\\Deep");
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
}

TEST_F(PrinterSweep, ItIsMarkedBeforeItGoes) {
  AddRecord(kPrinterBranch, kFirst, u"removed printer");
  PurgeTargetRecords();
  EXPECT_TRUE(HasBeenMarked(RecordPath(kPrinterBranch, kFirst)));  // which made no new key
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
}

TEST_F(PrinterSweep, ARecordWithoutANameOrWithAnEmptyOneGoes) {
  registry().MakeKey(kUser, RecordPath(kPrinterBranch, kFirst));
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
  AddRecord(kPrinterBranch, kFirst, u"");
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
}

TEST_F(PrinterSweep, ARecordWhoseNameCantBeReadGoes) {
  AddLiving(1);
  inside.process().FailNext("RegQueryValueExW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
}

TEST_F(PrinterSweep, NamesUpTo260CharactersKeepTheirRecordAndLongerOnesDont) {
  for (const std::size_t length : {259U, 260U, 261U}) {
    const std::u16string name(length, u'n');
    AddPrinter(name);
    const Names expected = length <= 260 ? Names{kFirst} : Names{};
    AddRecord(kPrinterBranch, kFirst, name);
    EXPECT_EQ(PurgeTargetRecords(), 0);
    EXPECT_EQ(Records(kPrinterBranch), expected) << length;
    AddUnterminatedRecord(kPrinterBranch, kFirst, name);
    EXPECT_EQ(PurgeTargetRecords(), 0);
    EXPECT_EQ(Records(kPrinterBranch), expected) << length << " unterminated";
  }
}

TEST_F(PrinterSweep, APrinterWithoutADriverOrAPrintProcessorLosesItsRecord) {
  AddLiving(1);
  machine.spooler().At(u"A").driver = std::nullopt;
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());

  machine.spooler().At(u"A").driver = u"D";
  machine.spooler().At(u"A").printProcessor = std::nullopt;
  AddRecord(kPrinterBranch, kFirst, u"A");
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
}

TEST_F(PrinterSweep, APrinterOfWhichTheSpoolerDoesntTellKeepsItsRecord) {
  AddLiving(1);
  machine.spooler().At(u"A").driver = std::nullopt;
  for (const std::uint64_t call : {0U, 1U}) {  // the size, the structure
    inside.process().FailNext("GetPrinterW", ERROR_NOT_ENOUGH_MEMORY, call);
    EXPECT_EQ(PurgeTargetRecords(), 0);
    EXPECT_EQ(Records(kPrinterBranch), Names{kFirst}) << "call " << call;
  }
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(PrinterSweep, ARecordThatDoesntOpenIsPassedOver) {
  AddRecord(kPrinterBranch, kFirst, u"removed printer");
  registry().Deny(kUser, RecordPath(kPrinterBranch, kFirst), false);
  AddRecord(kPrinterBranch, kSecond, u"another removed printer");
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_EQ(Records(kPrinterBranch), Names{kFirst});
}

TEST_F(PrinterSweep, AnInstallerAtWorkMakesEveryPrinterSeemDead) {
  AddLiving(1);
  const OwnedObject installer(Os().objects.CreateMutexW(nullptr, false, kInstaller));
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
}

TEST_F(PrinterSweep, OfTwoAdjacentDeadRecordsTheSecondWaitsForTheNextSweep) {
  AddRecord(kPrinterBranch, kFirst, u"removed");
  AddRecord(kPrinterBranch, kSecond, u"removed, too");
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_EQ(Records(kPrinterBranch), Names{kSecond});
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
}

TEST_F(PrinterSweep, OfAllDeadRecordsEverySecondOneGoes) {
  const char16_t* const numbers[] = {u"P0000000000000000", u"P0000000000000001",
                                     u"P0000000000000002", u"P0000000000000003",
                                     u"P0000000000000004"};
  for (const char16_t* number : numbers) AddRecord(kPrinterBranch, number, u"removed");
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_EQ(Records(kPrinterBranch), (Names{u"P0000000000000001", u"P0000000000000003"}));
}

TEST_F(PrinterSweep, ARecordNeedntHaveANumberForAName) {
  AddRecord(kPrinterBranch, u"anything", u"removed");
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
}

TEST_F(PrinterSweep, ARecordWhosePathDoesntFitStaysUntouched) {
  const std::u16string key(255, u'k');  // of a path of 297 characters
  AddRecord(kPrinterBranch, key, u"removed");
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_EQ(registry().ValueNames(kUser, RecordPath(kPrinterBranch, key)), Names{u"Name"});
}

TEST_F(PrinterSweep, AnEnumerationThatFailsEndsIt) {
  AddRecord(kPrinterBranch, kFirst, u"removed");
  inside.process().FailNext("RegEnumKeyExW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(PurgeTargetRecords(), 0);
  EXPECT_EQ(Records(kPrinterBranch), Names{kFirst});
}

// --- The branches

TEST_F(TargetSweep, WithoutPrinterRecordsThereIsNoSweepAtAll) {
  AddRecord(kPortBranch, kFirst, u"");
  EXPECT_EQ(PurgeTargetRecords(), -1);
  EXPECT_EQ(Records(kPortBranch), Names{kFirst});
}

TEST_F(TargetSweep, WithoutPortRecordsThePrinterRecordsAreSweptAllTheSame) {
  AddRecord(kPrinterBranch, kFirst, u"removed");
  EXPECT_EQ(PurgeTargetRecords(), -1);
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(TargetSweep, ABranchThatMayntBeWrittenIsntSwept) {
  AddRecord(kPrinterBranch, kFirst, u"removed");
  AddRecord(kPortBranch, kFirst, u"USB001");
  AddRecord(kPortBranch, kSecond, u"USB002");
  registry().Deny(kUser, kPortBranch, false);
  EXPECT_EQ(PurgeTargetRecords(), -1);
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
  AddRecord(kPrinterBranch, kFirst, u"removed");
  registry().Deny(kUser, kPrinterBranch, false);
  EXPECT_EQ(PurgeTargetRecords(), -1);
  EXPECT_EQ(Records(kPrinterBranch), Names{kFirst});
}

// --- The port records. The sweep begins at the index at which that of the printer records ended.

class PortSweep : public TargetSweep {
 protected:
  // Runs the sweep under a bound of calls: false when it came to its end by itself.
  bool HasToBeStopped() {
    inside.process().StopAfterCalls(20000);
    return inside.EndsProcess([] { PurgeTargetRecords(); });
  }
};

TEST_F(PortSweep, DoesNothingWhereThereIsAPortRecordAtTheIndex) {
  AddLiving(1);
  AddRecord(kPortBranch, kFirst, u"");
  AddRecord(kPortBranch, kSecond, u"");
  EXPECT_FALSE(HasToBeStopped());
  EXPECT_EQ(Records(kPortBranch), (Names{kFirst, kSecond}));
}

TEST_F(PortSweep, DoesntEndWhereThereAreFewerPortRecordsThanTheIndex) {
  AddLiving(2);
  AddRecord(kPortBranch, kFirst, u"USB001");
  EXPECT_TRUE(HasToBeStopped());
  EXPECT_EQ(inside.process().exitCode(), sim::kStoppedExitCode);
  EXPECT_EQ(Records(kPortBranch), Names{kFirst});
}

TEST_F(PortSweep, DoesntEndWhereThereAreJustAsMany) {
  AddLiving(1);
  AddRecord(kPortBranch, kFirst, u"USB001");
  EXPECT_TRUE(HasToBeStopped());
}

TEST_F(PortSweep, DoesntEndOnEmptyBranches) {
  registry().MakeKey(kUser, kPrinterBranch);
  registry().MakeKey(kUser, kPortBranch);
  EXPECT_TRUE(HasToBeStopped());
  EXPECT_TRUE(registry().HasKey(kUser, kPortBranch));
}

TEST_F(PortSweep, TheIndexCountsDeletedRecordsToo) {
  AddRecord(kPrinterBranch, kFirst, u"removed");
  AddRecord(kPortBranch, kFirst, u"USB001");
  EXPECT_TRUE(HasToBeStopped());
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
}

TEST_F(PortSweep, ThereItDeletesARecordWithAnEmptyNameThatIsCalledAsTheLastPrinterRecord) {
  AddLiving(2);
  AddRecord(kPortBranch, kSecond, u"");
  registry().MakeKey(kUser, RecordPath(kPortBranch, kSecond) + u"\\Notify");
  EXPECT_TRUE(HasToBeStopped());
  EXPECT_THAT(Records(kPortBranch), IsEmpty());
  EXPECT_FALSE(HasBeenMarked(RecordPath(kPortBranch, kSecond)));
}

TEST_F(PortSweep, AndLeavesARecordWithAnEmptyNameThatIsCalledOtherwise) {
  AddLiving(2);
  AddRecord(kPortBranch, kFirst, u"");
  EXPECT_TRUE(HasToBeStopped());
  EXPECT_EQ(Records(kPortBranch), Names{kFirst});
}

TEST_F(PortSweep, AndLeavesThatRecordWhereItHasAName) {
  AddLiving(2);
  AddRecord(kPortBranch, kSecond, u"USB001");
  EXPECT_TRUE(HasToBeStopped());
  EXPECT_EQ(Records(kPortBranch), Names{kSecond});
}

TEST_F(PortSweep, AndLeavesThatRecordWhereItsNameCantBeRead) {
  AddLiving(2);
  registry().MakeKey(kUser, RecordPath(kPortBranch, kSecond));
  EXPECT_TRUE(HasToBeStopped());
  EXPECT_EQ(Records(kPortBranch), Names{kSecond});
}

// --- Single records

TEST_F(TargetSweep, AMarkedRecordIsDeleted) {
  AddRecord(kPrinterBranch, kFirst, u"P");
  EXPECT_EQ(MarkTargetDeleted(RecordPath(kPrinterBranch, kFirst).c_str()), 0);
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
  EXPECT_TRUE(HasBeenMarked(RecordPath(kPrinterBranch, kFirst)));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(TargetSweep, ARecordThatCantBeDeletedStaysMarked) {
  AddRecord(kPrinterBranch, kFirst, u"P");
  registry().Deny(kUser, RecordPath(kPrinterBranch, kFirst) + u"\\Notify", false);
  EXPECT_EQ(MarkTargetDeleted(RecordPath(kPrinterBranch, kFirst).c_str()), 0);
  EXPECT_EQ(registry().Dword(kUser, RecordPath(kPrinterBranch, kFirst), u"Setting"), 255U);
}

TEST_F(TargetSweep, ARecordThatIsntThereCantBeMarked) {
  EXPECT_EQ(MarkTargetDeleted(RecordPath(kPrinterBranch, kFirst).c_str()), -1);
}

TEST_F(TargetSweep, AnEmptyPathIsRefusedAsItWouldBeAllOfTheUsersRegistry) {
  for (const char16_t* none : {u"", static_cast<const char16_t*>(nullptr)}) {
    EXPECT_EQ(MarkTargetDeleted(none), -1);
    EXPECT_EQ(DeleteKeyTree(none), -1);
  }
  EXPECT_TRUE(registry().HasKey(kUser, u"Software\\Microsoft\\Windows\\CurrentVersion\\Run"));
  EXPECT_THAT(registry().ValueNames(kUser, u""), IsEmpty());
}

// --- Trees

class KeyTree : public TargetRecordTest {
 protected:
  static constexpr char16_t kTop[] = u"Software\\Top";
};

TEST_F(KeyTree, IsDeletedWithAllBelowIt) {
  registry().SetDword(kUser, u"Software\\Top\\a\\b\\c", u"value", 1);
  registry().SetDword(kUser, u"Software\\Top\\d", u"value", 1);
  registry().SetDword(kUser, kTop, u"value", 1);
  registry().MakeKey(kUser, u"Software\\Topmost");
  EXPECT_EQ(DeleteKeyTree(kTop), 0);
  EXPECT_FALSE(registry().HasKey(kUser, kTop));
  EXPECT_TRUE(registry().HasKey(kUser, u"Software\\Topmost"));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(KeyTree, ThatIsntThereGivesMinusOne) { EXPECT_EQ(DeleteKeyTree(kTop), -1); }

TEST_F(KeyTree, StaysFromTheFirstKeyOnThatDoesntOpen) {
  registry().MakeKey(kUser, u"Software\\Top\\a");
  registry().MakeKey(kUser, u"Software\\Top\\c");
  registry().Deny(kUser, u"Software\\Top\\b\\deep", false);
  EXPECT_EQ(DeleteKeyTree(kTop), -1);
  EXPECT_EQ(registry().SubKeys(kUser, kTop), (Names{u"b", u"c"}));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(KeyTree, AKeyThatCantBeDeletedEndsItAtOnce) {
  registry().MakeKey(kUser, u"Software\\Top\\a");
  inside.process().FailNext("RegDeleteKeyW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(DeleteKeyTree(kTop), -1);
  EXPECT_TRUE(registry().HasKey(kUser, u"Software\\Top\\a"));
}

TEST_F(KeyTree, APathOf259CharactersFitsAndOneOf260Doesnt) {
  const std::u16string fits(259 - std::u16string_view(kTop).size() - 1, u'k');
  registry().MakeKey(kUser, std::u16string(kTop) + u"\\" + fits);
  EXPECT_EQ(DeleteKeyTree(kTop), 0);
  registry().MakeKey(kUser, std::u16string(kTop) + u"\\" + fits + u"k");
  EXPECT_EQ(DeleteKeyTree(kTop), -1);
  EXPECT_EQ(registry().SubKeys(kUser, kTop), Names{fits + u"k"});
}

// A loop of the suite that is reached when the list of sub-keys came back empty and then isn't.
TEST_F(KeyTree, OneThatStillHasSubKeysLosesTheValuesThatBearTheirNames) {
  for (const char16_t* subKey : {u"Software\\Top\\a", u"Software\\Top\\b", u"Software\\Top\\c"})
    registry().MakeKey(kUser, subKey);
  for (const char16_t* value : {u"A", u"c", u"other"}) registry().SetDword(kUser, kTop, value, 1);
  inside.process().FailNext("RegEnumKeyExW", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_EQ(DeleteKeyTree(kTop), -1);
  EXPECT_EQ(registry().ValueNames(kUser, kTop), Names{u"other"});
  EXPECT_EQ(registry().SubKeys(kUser, kTop), (Names{u"a", u"b", u"c"}));
}

TEST_F(KeyTree, NoFailureOfACallLeavesAnythingOpenOrAnUnknownResult) {
  std::string lastFailed;
  for (std::uint64_t number = 1; number <= 30; ++number) {
    registry().SetDword(kUser, u"Software\\Top\\a\\b", u"value", 1);
    inside.process().FailCall(number);
    const int result = DeleteKeyTree(kTop);
    EXPECT_EQ(result == 0, !registry().HasKey(kUser, kTop)) << "call " << number;
    EXPECT_TRUE(inside.process().Ledger().empty()) << "call " << number;
    if (!inside.process().failedOperation().empty())
      lastFailed = inside.process().failedOperation();
  }
  EXPECT_EQ(lastFailed, "RegDeleteKeyW");
}

}  // namespace
}  // namespace vgl
