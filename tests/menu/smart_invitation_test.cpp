// Invitations: the parameter text, the library and where it is looked for, what is asked of it, and
// the start of the dependent program.
#include "menu/smart_invitation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>

#include "Common/CVglLog.h"
#include "Common/text_conversion.h"
#include "Common/tray_log.h"
#include "desk/default_machine.h"
#include "tests/app/invitation_set.h"
#include "tests/support/log_texts.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;
using Lines = std::vector<std::string>;

constexpr char kTimer[] = "FY08ParlosIsInvitationTimerW";
constexpr char kAllow[] = "FY08ParlosIsAllowInvitationW";
// With the line end that both have in them.
const Lines kDescribed = {"GetSmartParlosLibrary() Dat reading base Ember", ""};
const Lines kInRegistry = {"GetSmartParlosLibrary() Registry Ember", ""};
constexpr PrinterIdentity kPrinter{.printerName = desk::kPrinterName,
                                   .driverName = desk::kDriverName,
                                   .modelId = desk::kModelId,
                                   .portName = desk::kPortName};

// --- The parameter text

TEST(InvitationParameter, HasALineForEachNameAndNoLineFeedAtItsEnd) {
  const PrinterIdentity names{
      .printerName = u"P1", .driverName = u"D", .modelId = u"M", .portName = u"USB001"};
  EXPECT_EQ(MakeInvitationParameter(3, names),
            u" /ASMRT\n /T \"INVITE3\"\n /P \"P1\"\n /D \"D\"\n /M \"M\"\n /O \"USB001\"");
}

TEST(InvitationParameter, LeavesOutNamesThatAreEmpty) {
  const struct {
    PrinterIdentity names;
    const char16_t* text;
  } cases[] = {
      {{u"", u"D", u"M", u"O"}, u" /ASMRT\n /T \"INVITE1\"\n /D \"D\"\n /M \"M\"\n /O \"O\""},
      {{u"P", u"", u"M", u"O"}, u" /ASMRT\n /T \"INVITE1\"\n /P \"P\"\n /M \"M\"\n /O \"O\""},
      {{u"P", u"D", u"", u"O"}, u" /ASMRT\n /T \"INVITE1\"\n /P \"P\"\n /D \"D\"\n /O \"O\""},
      {{u"", u"", u"", u"O"}, u" /ASMRT\n /T \"INVITE1\"\n /O \"O\""},
  };
  for (const auto& each : cases) EXPECT_EQ(MakeInvitationParameter(1, each.names), each.text);
}

// The line feeds belong to the pieces in front of the last one.
TEST(InvitationParameter, WithoutAPortEndsInALineFeed) {
  EXPECT_EQ(MakeInvitationParameter(1, {u"P", u"D", u"M", u""}),
            u" /ASMRT\n /T \"INVITE1\"\n /P \"P\"\n /D \"D\"\n /M \"M\"\n");
  EXPECT_EQ(MakeInvitationParameter(1, {}), u" /ASMRT\n /T \"INVITE1\"\n");
}

TEST(InvitationParameter, OfLevelZeroIsEmpty) {
  EXPECT_EQ(MakeInvitationParameter(0, {u"P", u"D", u"M", u"O"}), u"");
}

TEST(InvitationParameter, TellsEveryOtherLevelWithItsSign) {
  EXPECT_EQ(MakeInvitationParameter(2147483647, {}), u" /ASMRT\n /T \"INVITE2147483647\"\n");
  EXPECT_EQ(MakeInvitationParameter(-1, {}), u" /ASMRT\n /T \"INVITE-1\"\n");
  EXPECT_EQ(MakeInvitationParameter(-2147483647 - 1, {}), u" /ASMRT\n /T \"INVITE-2147483648\"\n");
}

TEST(InvitationParameter, TakesNamesAsTheyAre) {
  EXPECT_EQ(MakeInvitationParameter(1, {u"A \"B\" %s %d", u"\u05D0", u" ", u"\\\\host\\q"}),
            u" /ASMRT\n /T \"INVITE1\"\n /P \"A \"B\" %s %d\"\n /D \"\u05D0\"\n /M \" \"\n"
            u" /O \"\\\\host\\q\"");
  const std::u16string longest(259, u'n');
  EXPECT_EQ(MakeInvitationParameter(1, {.portName = longest.c_str()}),
            u" /ASMRT\n /T \"INVITE1\"\n /O \"" + longest + u"\"");
}

// --- On a machine whose driver set names a library

class SmartInvitation : public testing::Test {
 protected:
  SmartInvitation() {
    desk::SetUpDefaultMachine(machine);
    desk::EnableTrayLog(machine);
    TrayLogInit(TrayLogPath().c_str());
    NameInvitationLibrary(machine);
  }

  Texts Held() { return inside.process().Ledger(); }
  Texts HeldLibrary(std::u16string_view path = kInvitations) {
    return {u"library " + std::u16string(path)};
  }
  Lines Logged() { return TextsOfLog(machine.files().ReadFile(desk::kTrayLogFile).value_or("")); }
  std::ptrdiff_t Loads() {
    return std::count_if(machine.trace().begin(), machine.trace().end(), [](const auto& event) {
      return event.text.starts_with(u"loaded library") && event.text.ends_with(u"\\KVPARLOS.DLL");
    });
  }
  void SetProfile(const std::string& lines) {
    machine.files().WriteFile(desk::kProfilePath, "[S7200]\r\n" + lines);
  }
  void NameInRegistry(std::u16string_view value) {
    machine.registry().SetString(HKEY_LOCAL_MACHINE, kDriverKey, u"SMRT_PARLOS", value);
  }

  sim::Machine machine;
  sim::Inside inside{machine};
  sim::Library& library = desk::AddInvitationLibrary(machine, kInvitations);
  desk::InvitationLibrary& face = desk::InvitationLibraryOf(machine);
  CSmartInvitation asker;
};

// --- Where the library is

TEST_F(SmartInvitation, FindsTheLibraryInTheInstallDescriptionByTheDriver) {
  EXPECT_EQ(asker.GetSmartParlosLibrary(desk::kDriverName), kInvitations);
  EXPECT_EQ(Logged(), kDescribed);
  machine.spooler().RemovePrinter(desk::kPrinterName);
  asker.strPrinterName = desk::kPrinterName;
  asker.strModelId = desk::kModelId;
  EXPECT_EQ(asker.GetSmartParlosLibrary(desk::kDriverName), kInvitations);
}

TEST_F(SmartInvitation, FindsNoLibraryWithoutADriver) {
  EXPECT_EQ(asker.GetSmartParlosLibrary(u""), u"");
  EXPECT_EQ(asker.GetSmartParlosLibrary(nullptr), u"");
  EXPECT_EQ(Logged(), Lines{});
  EXPECT_EQ(asker.GetSmartParlosLibrary(u"Another"), u"");
}

class RegistryBasedInvitation : public SmartInvitation {
 protected:
  RegistryBasedInvitation() {
    SetProfile("RegistryBaseVGL=1\r\n");
    asker.strPrinterName = desk::kPrinterName;
    asker.strModelId = desk::kModelId;
  }
  std::u16string FoundFor(std::uint32_t type, std::string_view bytes) {
    machine.registry().SetBytes(HKEY_LOCAL_MACHINE, kDriverKey, u"SMRT_PARLOS", type, bytes);
    return asker.GetSmartParlosLibrary(desk::kDriverName);
  }
};

TEST_F(RegistryBasedInvitation, LibraryIsNamedByTheRegistry) {
  NameInRegistry(u"C:\\Own\\P.DLL");
  EXPECT_EQ(asker.GetSmartParlosLibrary(desk::kDriverName), u"C:\\Own\\P.DLL");
  EXPECT_EQ(Logged(), kInRegistry);
}

// Whatever the value's type: its bytes up to the first U+0000.
TEST_F(RegistryBasedInvitation, LibraryIsTheValuesText) {
  EXPECT_EQ(FoundFor(REG_SZ, std::string("A\0B\0\0\0", 6)), u"AB");
  EXPECT_EQ(FoundFor(REG_SZ, std::string("A\0B\0", 4)), u"AB");
  EXPECT_EQ(FoundFor(REG_MULTI_SZ, std::string("A\0\0\0B\0\0\0\0\0", 10)), u"A");
  EXPECT_EQ(FoundFor(REG_BINARY, std::string("A\0B", 3)), u"AB");
  EXPECT_EQ(FoundFor(REG_SZ, std::string("\0\0", 2)), u"");
  EXPECT_EQ(FoundFor(REG_SZ, ""), u"");
}

// Unlike that of the goodbye to a printer, which takes 260 characters at most.
TEST_F(RegistryBasedInvitation, LibrarysPathMayBeOfAnyLength) {
  const std::u16string path = u"C:\\" + std::u16string(40000, u'p');
  NameInRegistry(path);
  EXPECT_EQ(asker.GetSmartParlosLibrary(desk::kDriverName), path);
}

TEST_F(RegistryBasedInvitation, LibraryThatTheRegistryDoesntNameIsNone) {
  EXPECT_EQ(asker.GetSmartParlosLibrary(desk::kDriverName), u"");
  machine.registry().MakeKey(HKEY_LOCAL_MACHINE, kDriverKey);
  EXPECT_EQ(asker.GetSmartParlosLibrary(desk::kDriverName), u"");
  NameInRegistry(kInvitations);
  for (const std::uint64_t query : {0, 1}) {  // of its size, of itself
    inside.process().FailNext("RegQueryValueExW", ERROR_ACCESS_DENIED, query);
    EXPECT_EQ(asker.GetSmartParlosLibrary(desk::kDriverName), u"") << query;
  }
  machine.registry().Deny(HKEY_LOCAL_MACHINE, kDriverKey, true);
  EXPECT_EQ(asker.GetSmartParlosLibrary(desk::kDriverName), u"");
  EXPECT_EQ(Held(), Texts{});
}

TEST_F(RegistryBasedInvitation, MeansExactlyOne) {
  NameInRegistry(u"C:\\Own\\P.DLL");
  for (const char* base : {"0", "2", "-1", "11", "", "yes"}) {
    SetProfile("RegistryBaseVGL=" + std::string(base) + "\r\n");
    EXPECT_EQ(asker.GetSmartParlosLibrary(desk::kDriverName), kInvitations) << base;
  }
}

// The profile is found by the printer and read by the model.
TEST_F(RegistryBasedInvitation, GoesByTheDescriptionForAnObjectWithoutNames) {
  NameInRegistry(u"C:\\Own\\P.DLL");
  asker.strModelId.clear();
  EXPECT_EQ(asker.GetSmartParlosLibrary(desk::kDriverName), kInvitations);
  asker.strModelId = u"Another";
  EXPECT_EQ(asker.GetSmartParlosLibrary(desk::kDriverName), kInvitations);
}

TEST_F(RegistryBasedInvitation, AsksTheDescriptionsLibraryForALevelUntilItWasAskedForThePeriod) {
  constexpr char16_t kOther[] = u"C:\\Own\\P.DLL";
  desk::AddInvitationLibrary(machine, kOther);
  NameInRegistry(kOther);
  face.level = 1;
  {
    CSmartInvitation longLived;
    EXPECT_EQ(longLived.GetInvitationLevel(kPrinter), 1);
    EXPECT_EQ(Held(), HeldLibrary());
    EXPECT_EQ(longLived.strPrinterName, u"");
    EXPECT_EQ(longLived.strModelId, u"");
  }
  CSmartInvitation both;
  both.GetPeriodInvitation(kPrinter);
  EXPECT_EQ(both.GetInvitationLevel(kPrinter), 1);
  EXPECT_EQ(Held(), HeldLibrary(kOther));
}

// --- The period

TEST_F(SmartInvitation, PeriodIsTheLibrarysAnswerAndTheLibraryIsFreed) {
  for (const std::uint32_t period : {1U, 86400000U, 0xFFFFFFFFU, 0U}) {
    face.period = period;
    EXPECT_EQ(asker.GetPeriodInvitation(kPrinter), period);
    EXPECT_EQ(Held(), Texts{});
  }
  EXPECT_EQ(face.timerCalls.at(0),
            (desk::InvitationLibrary::TimerCall{u"Studio 7200", u"KAVRO Studio 7200"}));
  EXPECT_EQ(library.Calls(kTimer), 4U);
  EXPECT_EQ(library.Calls(kAllow), 0U);
  EXPECT_EQ(asker.m_hInstAllowInv, HMODULE{});
}

TEST_F(SmartInvitation, PeriodIsZeroWhereAnythingFails) {
  face.period = 1000;
  for (const char* operation : {"LoadLibraryW", "GetProcAddress"}) {
    inside.process().FailNext(operation, ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(asker.GetPeriodInvitation(kPrinter), 0U) << operation;
  }
  EXPECT_EQ(asker.GetPeriodInvitation({.printerName = desk::kPrinterName}), 0U);  // no driver
  library.RemoveExport(kTimer);
  EXPECT_EQ(asker.GetPeriodInvitation(kPrinter), 0U);
  machine.files().Remove(kInvitations);
  EXPECT_EQ(asker.GetPeriodInvitation(kPrinter), 0U);
  SetDriverValue(machine, "SMRT_PARLOS", "C:\\Gone\\P.DLL");
  EXPECT_EQ(asker.GetPeriodInvitation(kPrinter), 0U);
  EXPECT_TRUE(face.timerCalls.empty());
  EXPECT_EQ(Held(), Texts{});
}

// Where only a port is known the library is asked for no printer.
TEST_F(SmartInvitation, PeriodIsAskedForWithoutAPrinterToo) {
  face.period = 1000;
  PrinterIdentity port = kPrinter;
  port.printerName = u"";
  EXPECT_EQ(asker.GetPeriodInvitation(port), 1000U);
  EXPECT_EQ(face.timerCalls.at(0), (desk::InvitationLibrary::TimerCall{u"", u"KAVRO Studio 7200"}));
}

TEST_F(SmartInvitation, PeriodTakesTheNamesOverWhateverComesOfIt) {
  asker.GetPeriodInvitation({.printerName = u"P", .driverName = u"", .modelId = u"M"});
  EXPECT_EQ(asker.strPrinterName, u"P");
  EXPECT_EQ(asker.strModelId, u"M");
  asker.GetPeriodInvitation({});
  EXPECT_EQ(asker.strPrinterName, u"");
  EXPECT_EQ(asker.strModelId, u"");
}

// --- The level

TEST_F(SmartInvitation, LevelIsTheLibrarysAnswer) {
  for (const std::int32_t level : {3, 0, -1, 2147483647}) {
    face.level = level;
    EXPECT_EQ(asker.GetInvitationLevel(kPrinter), level);
  }
  EXPECT_EQ(face.allowCalls.at(0),
            (desk::InvitationLibrary::AllowCall{
                u"Studio 7200", u"KAVRO Studio 7200", u"S7200", {0, -1, 1}}));
  EXPECT_EQ(library.Calls(kTimer), 0U);
}

TEST_F(SmartInvitation, LevelLoadsTheLibraryOnceAndKeepsIt) {
  face.level = 1;
  for (int kick = 0; kick < 3; ++kick) {
    EXPECT_EQ(asker.GetInvitationLevel(kPrinter), 1);
    EXPECT_EQ(Held(), HeldLibrary());
  }
  EXPECT_EQ(Loads(), 1);
}

TEST_F(SmartInvitation, LevelIsZeroWhereAnythingFails) {
  face.level = 1;
  PrinterIdentity port = kPrinter;
  port.printerName = u"";
  EXPECT_EQ(asker.GetInvitationLevel(port), 0);
  EXPECT_EQ(Logged(), Lines{});  // nothing was looked for
  EXPECT_EQ(asker.GetInvitationLevel({.printerName = desk::kPrinterName}), 0);  // no driver
  inside.process().FailNext("LoadLibraryW", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_EQ(asker.GetInvitationLevel(kPrinter), 0);
  EXPECT_EQ(Held(), Texts{});
  inside.process().FailNext("GetProcAddress", ERROR_PROC_NOT_FOUND);
  EXPECT_EQ(asker.GetInvitationLevel(kPrinter), 0);
  EXPECT_EQ(Held(), HeldLibrary());
  EXPECT_TRUE(face.allowCalls.empty());
  EXPECT_EQ(asker.GetInvitationLevel(kPrinter), 1);
}

TEST_F(SmartInvitation, LevelOfALibraryWithoutTheExportIsZeroAndTheLibraryStays) {
  library.RemoveExport(kAllow);
  EXPECT_EQ(asker.GetInvitationLevel(kPrinter), 0);
  EXPECT_EQ(Held(), HeldLibrary());
}

// The path is looked up at each call, but only the first one is loaded.
TEST_F(SmartInvitation, LevelIsAskedOfTheFirstLibraryWhileAnyIsNamed) {
  face.level = 1;
  EXPECT_EQ(asker.GetInvitationLevel(kPrinter), 1);
  SetDriverValue(machine, "SMRT_PARLOS", "C:\\Gone\\P.DLL");
  EXPECT_EQ(asker.GetInvitationLevel(kPrinter), 1);
  SetDriverValue(machine, "SMRT_PARLOS", "");
  EXPECT_EQ(asker.GetInvitationLevel(kPrinter), 0);
  EXPECT_EQ(face.allowCalls.size(), 2U);
}

TEST_F(SmartInvitation, FreesItsLibraryAtItsEndAndSaysSo) {
  face.level = 1;
  auto own = std::make_unique<CSmartInvitation>();
  own->GetInvitationLevel(kPrinter);
  EXPECT_EQ(Held(), HeldLibrary());
  own.reset();
  EXPECT_EQ(Held(), Texts{});
  EXPECT_EQ(Logged().back(), "::FreeLibrary(m_hInstAllowInv)");
}

TEST_F(SmartInvitation, ThatHasLoadedNothingSaysNothingAtItsEnd) {
  { CSmartInvitation().GetPeriodInvitation(kPrinter); }
  EXPECT_EQ(Logged(), kDescribed);
}

// --- The start of the dependent program

class InvitationStart : public SmartInvitation {
 protected:
  InvitationStart() {
    SetDriverValue(machine, "DepExe", "C:\\Drv\\k_dep.exe");
    machine.files().WriteFile(u"C:\\Windows\\system32\\K_DEP.EXE", "");
  }
  // The count of invitations; nothing where nothing was counted.
  std::optional<std::uint32_t> Counted() {
    const CVglLog& log = g_VglLog.get();
    if (log.m_pnLogData == nullptr) return std::nullopt;
    return log.m_pnLogData[13];
  }
  const std::vector<sim::Programs::Start>& Starts() { return machine.programs().Starts(); }
  void ExpectNothingDone() {
    EXPECT_TRUE(Starts().empty());
    EXPECT_EQ(TempFilesOf(machine), Texts{});
    EXPECT_EQ(Counted(), std::nullopt);
    EXPECT_EQ(Held(), Texts{});
  }
};

TEST_F(InvitationStart, HandsTheTextOverInAFileWithItsTerminatorAndNoMark) {
  StartInvitation(3, kPrinter);
  const Texts files = TempFilesOf(machine);
  ASSERT_EQ(files.size(), 1U);
  const std::u16string name = files[0].substr(files[0].rfind(u'\\') + 1);
  EXPECT_TRUE(name.starts_with(u"K_Q"));
  constexpr char16_t kText[] =
      u" /ASMRT\n /T \"INVITE3\"\n /P \"Studio 7200\"\n /D \"KAVRO Studio 7200\"\n /M \"S7200\"\n"
      u" /O \"USB001\"";
  const std::string bytes = machine.files().ReadFile(files[0]).value();
  EXPECT_EQ(bytes, Utf16LeFromText(std::u16string_view(kText, std::size(kText))));
  EXPECT_EQ(bytes.size(), 2 * std::size(kText));
  EXPECT_EQ(bytes.substr(0, 4), std::string(" \0/\0", 4));
  EXPECT_EQ(Held(), Texts{});
}

TEST_F(InvitationStart, StartsTheProgramByItsNameAloneAndCounts) {
  StartInvitation(1, kPrinter);
  ASSERT_EQ(Starts().size(), 1U);
  EXPECT_EQ(Starts()[0].path, u"C:\\Windows\\System32\\K_DEP.EXE");
  EXPECT_EQ(Starts()[0].commandLine, u"K_DEP.EXE /FU \"" + TempFilesOf(machine).at(0) + u"\"");
  EXPECT_EQ(Counted(), 1U);
}

TEST_F(InvitationStart, CountsAndLeavesTheFileAlsoWhereTheProgramIsntThere) {
  machine.files().Remove(u"C:\\Windows\\system32\\K_DEP.EXE");
  StartInvitation(1, kPrinter);
  EXPECT_TRUE(Starts().empty());
  EXPECT_EQ(TempFilesOf(machine).size(), 1U);
  EXPECT_EQ(Counted(), 1U);
}

// A value without a backslash gives an empty name and is a dependent program all the same.
TEST_F(InvitationStart, CountsAlsoWhereTheProgramHasNoName) {
  SetDriverValue(machine, "DepExe", "K_DEP.EXE");
  StartInvitation(1, kPrinter);
  EXPECT_TRUE(Starts().empty());
  EXPECT_EQ(Logged().back(), "CMainFrame::StartExe : lpszCmdLine :  /FU \"" +
                                 Utf8FromText(TempFilesOf(machine).at(0)) + "\"");
  EXPECT_EQ(Counted(), 1U);
}

TEST_F(InvitationStart, DoesNothingWithoutADependentProgram) {
  SetDriverValue(machine, "DepExe", "");
  StartInvitation(1, kPrinter);
  ExpectNothingDone();
}

TEST_F(InvitationStart, DoesNothingForLevelZero) {
  StartInvitation(0, kPrinter);
  ExpectNothingDone();
}

TEST_F(InvitationStart, DoesNothingAndLeavesNoFileWhereTheFileCantBeWritten) {
  for (const char* operation : {"GetTempPathW", "GetTempFileNameW", "CreateFileW", "WriteFile"}) {
    SCOPED_TRACE(operation);
    g_bTrayLogEnabled = 0;
    // The install description is a file as well, and read first.
    const std::uint64_t after = std::string(operation) == "CreateFileW" ? 1 : 0;
    inside.process().FailNext(operation, ERROR_DISK_FULL, after);
    StartInvitation(1, kPrinter);
    ExpectNothingDone();
  }
  StartInvitation(1, kPrinter);
  EXPECT_EQ(Starts().size(), 1U);
}

}  // namespace
}  // namespace vgl
