// Adding a monitored-printer record, having it filled, and finding or making one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "platform/owned.h"
#include "tests/Common/target_records_fixture.h"

namespace vgl {
namespace {

using namespace platform;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char16_t kFirstPath[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget\\P0000000000000000";

// --- AddTargetKey

using AddTarget = TargetRecordTest;

TEST_F(AddTarget, TheFirstRecordHasTheNumberZero) {
  EXPECT_EQ(AddTargetKey(u"Studio", false, path), 0);
  EXPECT_EQ(path.view(), kFirstPath);
  EXPECT_EQ(registry().String(kUser, kFirstPath, u"Name"), u"Studio");
  EXPECT_EQ(registry().Dword(kUser, kFirstPath, u"Setting"), 0U);
  EXPECT_EQ(registry().Dword(kUser, kFirstPath, u"Timer"), 10U);
  EXPECT_EQ(registry().ValueNames(kUser, kFirstPath), (Names{u"Name", u"Setting", u"Timer"}));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(AddTarget, AHoleIsTheNextRecordsNumber) {
  AddRecord(kPrinterBranch, kFirst, u"a");
  AddRecord(kPrinterBranch, kThird, u"c");
  EXPECT_EQ(AddTargetKey(u"b", false, path), 0);
  EXPECT_EQ(path.view(), RecordPath(kPrinterBranch, kSecond));
  EXPECT_EQ(AddTargetKey(u"d", false, path), 0);
  EXPECT_EQ(path.view(), RecordPath(kPrinterBranch, u"P0000000000000003"));
}

TEST_F(AddTarget, NumbersAreDecimalWithSixteenDigits) {
  for (int number = 0; number < 12; ++number) ASSERT_EQ(AddTargetKey(u"a", false, path), 0);
  EXPECT_EQ(path.view(), RecordPath(kPrinterBranch, u"P0000000000000011"));
}

TEST_F(AddTarget, PortRecordsHaveNumbersOfTheirOwn) {
  AddRecord(kPrinterBranch, kFirst, u"a");
  EXPECT_EQ(AddTargetKey(u"USB001", true, path), 0);
  EXPECT_EQ(path.view(), RecordPath(kPortBranch, kFirst));
  EXPECT_EQ(registry().String(kUser, RecordPath(kPortBranch, kFirst), u"Name"), u"USB001");
}

TEST_F(AddTarget, ANameIsStoredWithItsTerminator) {
  for (const std::size_t length : {0U, 1U, 259U, 260U, 300U}) {
    const std::u16string name(length, u'n');
    ASSERT_EQ(AddTargetKey(name.c_str(), false, path), 0) << length;
    EXPECT_EQ(registry().Bytes(kUser, path.view(), u"Name")->size(), (length + 1) * 2);
    EXPECT_EQ(registry().String(kUser, path.view(), u"Name"), name);
  }
}

TEST_F(AddTarget, ANullNameIsAnEmptyOne) {
  EXPECT_EQ(AddTargetKey(nullptr, false, path), 0);
  EXPECT_EQ(registry().String(kUser, kFirstPath, u"Name"), u"");
}

TEST_F(AddTarget, FourWhereTheBranchCantBeMade) {
  registry().Deny(kUser, kDataBranch, false);
  ASSERT_TRUE(path.Assign(u"before"));
  EXPECT_EQ(AddTargetKey(u"a", false, path), 4);
  EXPECT_TRUE(path.empty());
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
}

TEST_F(AddTarget, ThreeWhereTheRecordCantBeMade) {
  inside.process().FailNext("RegCreateKeyExW", ERROR_ACCESS_DENIED, 1);
  EXPECT_EQ(AddTargetKey(u"a", false, path), 3);
  EXPECT_TRUE(path.empty());
  EXPECT_THAT(Records(kPrinterBranch), IsEmpty());
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(AddTarget, ThreeAlsoWhereARecordOfAnEarlierNumberDoesntOpen) {
  registry().Deny(kUser, kFirstPath, true);
  EXPECT_EQ(AddTargetKey(u"a", false, path), 3);
}

TEST_F(AddTarget, TwoWhereTheNameCantBeWritten) {
  inside.process().FailNext("RegSetValueExW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(AddTargetKey(u"a", false, path), 2);
  EXPECT_TRUE(path.empty());
  EXPECT_EQ(Records(kPrinterBranch), Names{kFirst});
  EXPECT_THAT(registry().ValueNames(kUser, kFirstPath), IsEmpty());
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(AddTarget, OneWhereSettingCantBeWritten) {
  inside.process().FailNext("RegSetValueExW", ERROR_ACCESS_DENIED, 1);
  EXPECT_EQ(AddTargetKey(u"a", false, path), 1);
  EXPECT_EQ(path.view(), kFirstPath);
  EXPECT_EQ(registry().Dword(kUser, kFirstPath, u"Timer"), 10U);
}

TEST_F(AddTarget, OneWhereSettingCantBeReadBack) {
  inside.process().FailNext("RegQueryValueExW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(AddTargetKey(u"a", false, path), 1);
  EXPECT_EQ(path.view(), kFirstPath);
}

TEST_F(AddTarget, OneWhereAnotherProgramHasSetSettingMeanwhile) {
  machine.Observe([&](const sim::Event& event) {
    if (event.text.starts_with(std::u16string(u"set HKCU\\") + kFirstPath + u"\\Timer"))
      machine.registry().SetDword(kUser, kFirstPath, u"Setting", 255);
  });
  EXPECT_EQ(AddTargetKey(u"a", false, path), 1);
  machine.Observe(nullptr);
}

TEST_F(AddTarget, ATimerThatCantBeWrittenDoesntMatter) {
  inside.process().FailNext("RegSetValueExW", ERROR_ACCESS_DENIED, 2);
  EXPECT_EQ(AddTargetKey(u"a", false, path), 0);
  EXPECT_EQ(registry().ValueNames(kUser, kFirstPath), (Names{u"Name", u"Setting"}));
}

TEST(AddTargetAtOnce, TwoProcessesTakeDifferentNumbers) {
  for (std::uint64_t seed = 1; seed <= 50; ++seed) {
    sim::Machine machine(seed);
    const auto add = [](const char16_t* name) {
      PathText path;
      return static_cast<std::uint32_t>(AddTargetKey(name, false, path));
    };
    const sim::Process& one = machine.StartProcess(u"C:\\one.exe", u"one", add);
    const sim::Process& two = machine.StartProcess(u"C:\\two.exe", u"two", add);
    machine.Settle();
    ASSERT_TRUE(one.ended() && two.ended());
    EXPECT_EQ(one.exitCode() + two.exitCode(), 0U) << "seed " << seed;
    std::set<std::u16string> names;
    for (const char16_t* record : {kFirst, kSecond})
      names.insert(machine.registry()
                       .String(HKEY_CURRENT_USER, RecordPath(kPrinterBranch, record), u"Name")
                       .value_or(u"none"));
    EXPECT_EQ(names, (std::set<std::u16string>{u"one", u"two"})) << "seed " << seed;
  }
}

// --- CreateTargetRecord

class CreateTarget : public TargetRecordTest {
 protected:
  CreateTarget() { AddPrinterWithLibrary(machine); }
  int Create() { return CreateTargetRecord(u"P", u"USB001", u"M", false, path); }
};

TEST_F(CreateTarget, TheRecordIsAddedAndThePrinterLibraryFillsIt) {
  EXPECT_EQ(Create(), 0);
  EXPECT_EQ(path.view(), kFirstPath);
  EXPECT_EQ(registry().String(kUser, kFirstPath, u"Name"), u"P");
  EXPECT_EQ(registry().Dword(kUser, kFirstPath, u"TrayIconEnable"), 1U);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(CreateTarget, TheLibraryIsCalledOnceWithTheFourTextsAndThreeZeros) {
  Create();
  EXPECT_EQ(library().defaultsCalls,
            (std::vector<desk::PrinterLibrary::DefaultsCall>{{u"P", u"D", u"USB001", u"M", true}}));
}

TEST_F(CreateTarget, TheLibrarysResultIsTheResultAndTheRecordStays) {
  for (const std::int32_t result : {1, 4, 7, -1, -99}) {
    library().defaultsResult = result;
    EXPECT_EQ(Create(), result);
    EXPECT_EQ(registry().String(kUser, path.view(), u"Name"), u"P");
  }
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(CreateTarget, OneWhereNoRecordCanBeAddedWhateverTheReason) {
  const struct {
    const char* operation;
    std::uint64_t after;
  } failures[] = {{"RegCreateKeyExW", 0},  // 4: no branch
                  {"RegCreateKeyExW", 1},  // 3: no record
                  {"RegSetValueExW", 0},   // 2: no name
                  {"RegSetValueExW", 1}};  // 1: no "Setting"
  for (const auto& failure : failures) {
    inside.process().FailNext(failure.operation, ERROR_ACCESS_DENIED, failure.after);
    EXPECT_EQ(Create(), 1) << failure.operation << " " << failure.after;
  }
  EXPECT_THAT(library().defaultsCalls, IsEmpty());
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(CreateTarget, FourWithoutALibraryAndTheRecordStays) {
  machine.files().Remove(kPrnDll);
  EXPECT_EQ(Create(), 4);
  EXPECT_EQ(path.view(), kFirstPath);
  EXPECT_EQ(registry().String(kUser, kFirstPath, u"Name"), u"P");
}

TEST_F(CreateTarget, FourForALibraryThatIsNone) {
  machine.files().WriteFile(u"C:\\Drivers\\A.INI", "[M]\r\nPrnDll=A.VIF\r\n");
  EXPECT_EQ(Create(), 4);
}

TEST_F(CreateTarget, FourWhereNoLibraryIsNamedAndNoneIsAskedFor) {
  for (const char* profile : {"", "[M]\r\nPrnDll=\r\n", "[Other]\r\nPrnDll=PR.DLL\r\n"}) {
    machine.files().WriteFile(u"C:\\Drivers\\A.INI", profile);
    inside.process().FailNext("LoadLibraryW", ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(Create(), 4);
    EXPECT_EQ(Os().modules.LoadLibraryW(kPrnDll), HMODULE{}) << "the fault was used up";
  }
}

TEST_F(CreateTarget, FourWithoutAModelOrADriver) {
  EXPECT_EQ(CreateTargetRecord(u"P", u"USB001", u"", false, path), 4);
  EXPECT_EQ(CreateTargetRecord(u"P", u"USB001", nullptr, false, path), 4);
  machine.spooler().At(u"P").driver = std::nullopt;
  EXPECT_EQ(Create(), 4);
  EXPECT_THAT(library().defaultsCalls, IsEmpty());
}

TEST_F(CreateTarget, FiveWithoutTheExportAndTheLibraryIsFreed) {
  machine.libraries().At(kPrnDll).RemoveExport("PrSetRegDefaultValue");
  EXPECT_EQ(Create(), 5);
  EXPECT_EQ(registry().String(kUser, kFirstPath, u"Name"), u"P");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(CreateTarget, APortsRecordIsMadeAndNotFilledAsItHasNoDriver) {
  EXPECT_EQ(CreateTargetRecord(u"", u"USB001", u"M", true, path), 4);
  EXPECT_EQ(path.view(), RecordPath(kPortBranch, kFirst));
  EXPECT_EQ(registry().String(kUser, path.view(), u"Name"), u"USB001");
  EXPECT_THAT(library().defaultsCalls, IsEmpty());
}

TEST_F(CreateTarget, APortsRecordOfAPrinterThatIsKnownIsFilledByItsDriver) {
  library().writesDefaults = false;
  EXPECT_EQ(CreateTargetRecord(u"P", u"USB001", u"M", true, path), 0);
  EXPECT_EQ(registry().String(kUser, RecordPath(kPortBranch, kFirst), u"Name"), u"USB001");
  EXPECT_THAT(library().defaultsCalls, SizeIs(1));
}

TEST_F(CreateTarget, APrinterThatDoesntOpenGetsARecordWithoutSettings) {
  EXPECT_EQ(CreateTargetRecord(u"missing", u"USB001", u"M", false, path), 4);
  EXPECT_EQ(registry().String(kUser, kFirstPath, u"Name"), u"missing");
}

TEST_F(CreateTarget, NullTextsReachTheLibraryAsEmptyOnes) {
  EXPECT_EQ(CreateTargetRecord(u"P", nullptr, u"M", false, path), 0);
  EXPECT_EQ(library().defaultsCalls.at(0).port, u"");
}

TEST_F(CreateTarget, DeadRecordsAreSweptFirstAndTheirNumberIsTheNewOnes) {
  AddRecord(kPrinterBranch, kFirst, u"removed printer");
  EXPECT_EQ(Create(), 0);
  EXPECT_EQ(path.view(), kFirstPath);
  EXPECT_EQ(registry().String(kUser, kFirstPath, u"Name"), u"P");
  EXPECT_EQ(Records(kPrinterBranch), Names{kFirst});
}

// --- EnsureTargetRecord

class EnsureTarget : public CreateTarget {
 protected:
  bool isPort = false;
  int Ensure(const char16_t* printer, const char16_t* port) {
    return EnsureTargetRecord(printer, port, u"M", isPort, path);
  }
};

TEST(EnsureTargetBranch, IsThatOfThePortOnlyWhereThereIsAPortButNoPrinter) {
  const char16_t* const null = nullptr;
  const struct {
    const char16_t* printer;
    const char16_t* port;
    bool isPort;
  } rows[] = {{u"P", u"USB001", false}, {u"P", u"", false},      {u"P", null, false},
              {u"", u"USB001", true},   {null, u"USB001", true}, {u"", u"", false},
              {null, null, false}};
  for (const auto& row : rows) {
    sim::Machine machine;
    sim::Inside inside{machine};
    PathText path;
    bool isPort = !row.isPort;
    EnsureTargetRecord(row.printer, row.port, u"M", isPort, path);
    EXPECT_EQ(isPort, row.isPort);
    EXPECT_EQ(path.view(), RecordPath(row.isPort ? kPortBranch : kPrinterBranch, kFirst));
  }
}

TEST_F(EnsureTarget, ARecordThatIsThereIsFoundAndNothingElseHappens) {
  AddRecord(kPrinterBranch, kFirst, u"removed printer");
  AddRecord(kPrinterBranch, kSecond, u"p");
  EXPECT_EQ(Ensure(u"P", u"USB001"), 0);
  EXPECT_EQ(path.view(), RecordPath(kPrinterBranch, kSecond));
  EXPECT_EQ(Records(kPrinterBranch), (Names{kFirst, kSecond}));  // no sweep
  EXPECT_THAT(library().defaultsCalls, IsEmpty());
}

TEST_F(EnsureTarget, ARecordOfARemovedPrinterGoesOnTheWayToANewOne) {
  AddRecord(kPrinterBranch, kFirst, u"removed printer");
  EXPECT_EQ(Ensure(u"P", u"USB001"), 0);
  EXPECT_EQ(Records(kPrinterBranch), Names{kFirst});
  EXPECT_EQ(registry().String(kUser, kFirstPath, u"Name"), u"P");
}

TEST_F(EnsureTarget, TheResultOfMakingOneIsTheResult) {
  library().defaultsResult = 12;
  EXPECT_EQ(Ensure(u"P", u"USB001"), 12);
}

TEST_F(EnsureTarget, ARecordThatCouldntBeFilledIsFoundTheNextTimeAndStaysEmpty) {
  machine.libraries().At(kPrnDll).RemoveExport("PrSetRegDefaultValue");
  EXPECT_EQ(Ensure(u"P", u"USB001"), 5);
  desk::AddPrinterLibrary(machine, u"C:\\Drivers\\OTHER.DLL");
  machine.files().WriteFile(u"C:\\Drivers\\A.INI", "[M]\r\nPrnDll=OTHER.DLL\r\n");
  EXPECT_EQ(Ensure(u"P", u"USB001"), 0);
  EXPECT_EQ(path.view(), kFirstPath);
  EXPECT_EQ(registry().Dword(kUser, kFirstPath, u"TrayIconEnable"), std::nullopt);
  EXPECT_THAT(library().defaultsCalls, IsEmpty());
}

TEST_F(EnsureTarget, OneNameInBothBranchesIsFoundByWhatWasGiven) {
  AddRecord(kPrinterBranch, kThird, u"Same");
  AddRecord(kPortBranch, kSecond, u"Same");
  EXPECT_EQ(Ensure(u"Same", u"Same"), 0);
  EXPECT_EQ(path.view(), RecordPath(kPrinterBranch, kThird));
  EXPECT_EQ(Ensure(u"", u"Same"), 0);
  EXPECT_EQ(path.view(), RecordPath(kPortBranch, kSecond));
}

// For every call that can fail: a result of the table, nothing left open, and no record but the
// printer's own, filled or not, or none.
TEST(EnsureTargetFaults, NoFailureOfACallLeavesAnythingOpenOrAnUnknownResult) {
  std::set<int> results;
  std::string lastFailed;
  std::uint64_t number = 0;
  for (bool reached = true; reached;) {
    sim::Machine machine;
    sim::Inside inside{machine};
    AddPrinterWithLibrary(machine);
    machine.registry().SetString(HKEY_CURRENT_USER, RecordPath(kPrinterBranch, kFirst), u"Name",
                                 u"removed printer");
    const std::uint64_t before = inside.process().calls();
    PathText path;
    bool isPort = false;
    inside.process().FailCall(++number);
    inside.process().StopAfterCalls(10000);  // none of them may lead into the sweep without an end
    const int result = EnsureTargetRecord(u"P", u"USB001", u"M", isPort, path);
    reached = inside.process().calls() - before >= number;
    results.insert(result);
    EXPECT_TRUE(inside.process().Ledger().empty()) << "call " << number;
    const std::string& failed = inside.process().failedOperation();
    if (!failed.empty()) lastFailed = failed;

    const std::optional<std::u16string> name =
        machine.registry().String(HKEY_CURRENT_USER, path.view(), u"Name");
    if (result == 1) {
      EXPECT_TRUE(path.empty() || name == u"P") << "call " << number;
    } else {
      EXPECT_EQ(name, u"P") << "call " << number << " " << failed;
    }
    // Whatever failed: the next one comes to a record.
    inside.process().FailCall(1000000);
    const int again = EnsureTargetRecord(u"P", u"USB001", u"M", isPort, path);
    EXPECT_EQ(again, 0) << "call " << number << " " << failed;
  }
  EXPECT_EQ(results, (std::set<int>{-1, 0, 1, 4, 5}));
  EXPECT_EQ(lastFailed, "RegSetValueExW");  // the library's last
}

}  // namespace
}  // namespace vgl
