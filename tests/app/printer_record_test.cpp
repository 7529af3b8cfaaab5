// The printer's record as the frame reads it, the first start that makes it, and agents that are
// known by a port alone.
#include "desk/printer_library.h"
#include "tests/support/frame_fixture.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;

constexpr HKEY kUser = HKEY_CURRENT_USER;
constexpr char16_t kPortRecord[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVNTarget\\P0000000000000000";
constexpr char16_t kDataKey[] = u"Software\\KAVRO\\VGL3\\VGLData";

// --- LoadRegSet

class PrinterRecord : public FrameTest {
 protected:
  PrinterRecord() { EXPECT_TRUE(frame->m_szDatPath.Assign(desk::kProfilePath)); }

  void SetNumber(std::u16string_view name, std::uint32_t number) {
    machine.registry().SetDword(kUser, desk::kRecordPath, name, number);
  }
  void SetProfile(const std::string& lines) {
    machine.files().WriteFile(desk::kProfilePath, "[S7200]\r\n" + lines);
  }
  // The record is found (its branch and itself are opened), but can't be opened to be read.
  void LetReadingFail() { inside.process().FailNext("RegOpenKeyExW", ERROR_ACCESS_DENIED, 2); }
};

TEST_F(PrinterRecord, TellsWhichIconIsSelectedAndThatItShows) {
  SetNumber(u"TrayIconSelected", 2);
  EXPECT_EQ(frame->LoadRegSet(), 1);
  EXPECT_EQ(frame->m_nIconSelected, 2U);
  EXPECT_EQ(frame->m_szRegKey.view(), desk::kRecordPath);
  EXPECT_EQ(frame->m_szResDll.view(), desk::kResourceLibraryPath);
  EXPECT_TRUE(HasLogged("CMainFrame::LoadRegSet"));
}

TEST_F(PrinterRecord, WithAnyNumberButZeroShowsTheIcon) {
  for (const std::uint32_t number : {1U, 2U, 0x80000000U, 0xFFFFFFFFU}) {
    SetNumber(u"TrayIconEnable", number);
    EXPECT_EQ(frame->LoadRegSet(), 1) << number;
  }
}

TEST_F(PrinterRecord, ThatSwitchesTheIconOffLooksForNoLibrary) {
  SetNumber(u"TrayIconEnable", 0);
  EXPECT_EQ(frame->LoadRegSet(), 0);
  EXPECT_TRUE(frame->m_szResDll.empty());
}

TEST_F(PrinterRecord, WithoutTrayIconEnableShowsNoIconWhateverTheProfileSays) {
  machine.registry().RemoveValue(kUser, desk::kRecordPath, u"TrayIconEnable");
  SetProfile("TrayIconEnable=1\r\n");
  EXPECT_EQ(frame->LoadRegSet(), 0);
}

TEST_F(PrinterRecord, WhoseEnableIsNoNumberOfFourBytesIsReadAsFarAsItGoes) {
  const struct {
    std::string bytes;
    std::int32_t result;
  } cases[] = {
      {std::string(8, '\1'), 0},  // doesn't fit: not read
      {"", 0},
      {std::string(1, '\1'), 1},  // the lowest byte
      {std::string(2, '\0'), 0},
  };
  for (const auto& each : cases) {
    machine.registry().SetBytes(kUser, desk::kRecordPath, u"TrayIconEnable", REG_BINARY,
                                each.bytes);
    EXPECT_EQ(frame->LoadRegSet(), each.result) << each.bytes.size();
  }
}

TEST_F(PrinterRecord, WithoutASelectionLeavesTheOneOfBefore) {
  machine.registry().RemoveValue(kUser, desk::kRecordPath, u"TrayIconSelected");
  SetProfile("TrayIconSelected=2\r\n");
  frame->m_nIconSelected = 1;
  EXPECT_EQ(frame->LoadRegSet(), 1);
  EXPECT_EQ(frame->m_nIconSelected, 1U);
}

TEST_F(PrinterRecord, ThatCantBeOpenedLeavesItToTheProfile) {
  SetNumber(u"TrayIconEnable", 0);
  SetProfile("TrayIconEnable=1\r\nTrayIconSelected=2\r\n");
  LetReadingFail();
  EXPECT_EQ(frame->LoadRegSet(), 1);
  EXPECT_EQ(frame->m_nIconSelected, 2U);
}

TEST_F(PrinterRecord, ThatCantBeOpenedShowsNoIconWhereTheProfileDoesntAskForIt) {
  for (const char* lines : {"TrayIconEnable=0\r\n", "TrayIconSelected=2\r\n", ""}) {
    SetProfile(lines);
    LetReadingFail();
    EXPECT_EQ(frame->LoadRegSet(), 0) << lines;
  }
}

TEST_F(PrinterRecord, ThatCantBeOpenedShowsTheIconWithoutAProfile) {
  frame->m_szDatPath.Clear();
  frame->m_nIconSelected = 1;
  LetReadingFail();
  EXPECT_EQ(frame->LoadRegSet(), 1);
  EXPECT_EQ(frame->m_nIconSelected, 1U);
}

TEST_F(PrinterRecord, IsFoundWithoutRegardToCase) {
  machine.registry().SetString(kUser, desk::kRecordPath, u"Name", u"STUDIO 7200");
  EXPECT_EQ(frame->LoadRegSet(), 1);
  EXPECT_EQ(machine.registry().SubKeys(kUser, u"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget"),
            Texts{u"P0000000000000000"});
}

TEST_F(PrinterRecord, OfAPrinterIsMeantAlsoWhereThePortHasOne) {
  machine.registry().SetString(kUser, kPortRecord, u"Name", u"USB001");
  machine.registry().SetDword(kUser, kPortRecord, u"TrayIconEnable", 0);
  EXPECT_EQ(frame->LoadRegSet(), 1);
  EXPECT_EQ(frame->m_szRegKey.view(), desk::kRecordPath);
}

// --- The first start, which makes the record

class FirstStart : public testing::Test {
 protected:
  FirstStart() {
    desk.machine.registry().RemoveKey(kUser, kDataKey);
    desk.machine.desktop().AnswerBoxesAtOnce();
    desk.SetRunValue(desk::kPrinterName, u"K_QD21TR.EXE");
  }

  std::optional<std::uint32_t> Number(std::u16string_view name) {
    return desk.machine.registry().Dword(kUser, desk::kRecordPath, name);
  }
  std::vector<desk::PrinterLibrary::DefaultsCall>& DefaultsCalls() {
    return desk::PrinterLibraryOf(desk.machine).defaultsCalls;
  }
  void ExpectEndedWithMinusOne(const SimAgent& agent) {
    EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : -1"));
    EXPECT_TRUE(agent.HasEnded());
    EXPECT_EQ(agent.Ledger(), Texts{u"window TrayIconWClass"});
    EXPECT_EQ(desk.RunValues(), Texts{});
    EXPECT_EQ(desk.BoxesShown(), Texts{});
  }

  SimDesk desk;
};

TEST_F(FirstStart, MakesTheRecordHasItFilledAndShowsTheIcon) {
  const SimAgent agent = desk.StartedAgent();
  ASSERT_NE(agent.Icon(), nullptr);
  EXPECT_EQ(desk.machine.registry().String(kUser, desk::kRecordPath, u"Name"), u"Studio 7200");
  EXPECT_EQ(Number(u"Setting"), 0U);
  EXPECT_EQ(Number(u"Timer"), 10U);
  EXPECT_EQ(Number(u"TrayIconEnable"), 1U);
  EXPECT_EQ(Number(u"TrayIconSelected"), 0U);
  const desk::PrinterLibrary::DefaultsCall asked{.printer = u"Studio 7200",
                                                 .driver = u"KAVRO Studio 7200",
                                                 .port = u"USB001",
                                                 .modelId = u"S7200",
                                                 .zeros = true};
  EXPECT_EQ(DefaultsCalls(), std::vector{asked});
}

TEST_F(FirstStart, IsTheOnlyOneThatFillsTheRecord) {
  desk.StartedAgent().Close();
  desk.machine.registry().SetDword(kUser, desk::kRecordPath, u"TrayIconSelected", 2);
  const SimAgent second = desk.StartedAgent();
  EXPECT_NE(second.Icon(), nullptr);
  EXPECT_EQ(Number(u"TrayIconSelected"), 2U);
  EXPECT_EQ(DefaultsCalls().size(), 1U);
}

TEST_F(FirstStart, WithoutThePrinterLibraryMakesTheRecordAndEndsWithMinusOne) {
  const std::u16string library = std::u16string(desk::kDriverFolder) + u"\\K_S72PR.DLL";
  desk.machine.files().Remove(library);
  ExpectEndedWithMinusOne(desk.StartedAgent());
  EXPECT_EQ(desk.machine.registry().String(kUser, desk::kRecordPath, u"Name"), u"Studio 7200");
  EXPECT_EQ(Number(u"TrayIconSelected"), std::nullopt);
  EXPECT_EQ(Number(u"TrayIconEnable"), 0U);  // by the end, not by the filling
  // A later start finds that record, and that it is switched off.
  desk.machine.files().WriteFile(library, "");
  EXPECT_TRUE(desk.StartedAgent().HasEnded());
  EXPECT_EQ(DefaultsCalls().size(), 0U);
}

TEST_F(FirstStart, WithAPrinterLibraryThatLacksTheExportEndsWithMinusOne) {
  desk.machine.libraries()
      .At(std::u16string(desk::kDriverFolder) + u"\\K_S72PR.DLL")
      .RemoveExport("PrSetRegDefaultValue");
  ExpectEndedWithMinusOne(desk.StartedAgent());
  EXPECT_EQ(desk.machine.registry().String(kUser, desk::kRecordPath, u"Name"), u"Studio 7200");
}

TEST_F(FirstStart, WithAPrinterLibraryThatWritesNothingEndsWithMinusOne) {
  desk::PrinterLibraryOf(desk.machine).writesDefaults = false;
  ExpectEndedWithMinusOne(desk.StartedAgent());
  EXPECT_EQ(DefaultsCalls().size(), 1U);
}

// What counts is what stands in the record.
TEST_F(FirstStart, RunsWhereThePrinterLibraryWritesAndSaysThatItFailed) {
  desk::PrinterLibraryOf(desk.machine).defaultsResult = -7;
  EXPECT_NE(desk.StartedAgent().Icon(), nullptr);
}

TEST_F(FirstStart, ThatCantMakeTheRecordEndsWithMinusOne) {
  desk.machine.registry().Deny(kUser, kDataKey, false);
  ExpectEndedWithMinusOne(desk.StartedAgent());
  EXPECT_EQ(DefaultsCalls().size(), 0U);
  EXPECT_FALSE(desk.machine.registry().HasKey(kUser, desk::kRecordPath));
}

// --- Agents of a port alone

constexpr char16_t kPortOptions[] = u"/D \"KAVRO Studio 7200\" /O \"USB001\" /M \"S7200\"";

class PortOnlyStart : public FirstStart {
 protected:
  void PutPortRecord(std::uint32_t enable) {
    desk.machine.registry().SetString(kUser, kPortRecord, u"Name", u"usb001");
    desk.machine.registry().SetDword(kUser, kPortRecord, u"TrayIconEnable", enable);
  }
};

TEST_F(PortOnlyStart, WithARecordRunsUnderThePortsName) {
  PutPortRecord(1);
  const SimAgent agent = desk.StartedAgent(kPortOptions);
  EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : 1"));
  ASSERT_NE(agent.Icon(), nullptr);
  EXPECT_EQ(agent.Icon()->tip, u"USB001");
  // There is no printer to count for.
  EXPECT_EQ(agent.Counts(), std::vector<std::uint32_t>{});
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_EQ(agent.Ledger(), Texts{});
  EXPECT_EQ(DefaultsCalls().size(), 0U);
}

TEST_F(PortOnlyStart, WithARecordThatSwitchesTheIconOffEndsWithMinusOne) {
  PutPortRecord(0);
  const SimAgent agent = desk.StartedAgent(kPortOptions);
  EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : -1"));
  EXPECT_TRUE(agent.HasEnded());
}

// Without a printer there is no driver to ask the spooler for, and so no printer library.
TEST_F(PortOnlyStart, WithoutARecordMakesOneUnfilledAndEndsWithMinusOne) {
  const SimAgent agent = desk.StartedAgent(kPortOptions);
  EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : -1"));
  EXPECT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.Ledger(), Texts{u"window TrayIconWClass"});
  EXPECT_EQ(desk.machine.registry().String(kUser, kPortRecord, u"Name"), u"USB001");
  EXPECT_EQ(desk.machine.registry().Dword(kUser, kPortRecord, u"Setting"), 0U);
  EXPECT_EQ(desk.machine.registry().Dword(kUser, kPortRecord, u"TrayIconEnable"), 0U);
  EXPECT_FALSE(desk.machine.registry().HasKey(kUser, desk::kRecordPath));
  EXPECT_EQ(DefaultsCalls().size(), 0U);
}

TEST_F(PortOnlyStart, ThatEndsWithMinusOneLosesTheRunValueOfItsParameterFile) {
  PutPortRecord(0);
  desk.SetRunValue(u"of the port", u"K_QD21TR.EXE /FU \"K_Q0001.tmp\"");
  const std::u16string file =
      desk.WriteParamFile(u"K_Q0001.tmp", std::u16string(kPortOptions) + u" /EF \"HKLM\"");
  desk.StartedAgent(u"/FU \"K_Q0001.tmp\"");
  desk.RunFor(1000);
  EXPECT_TRUE(desk.HasLogged("MainFrame.StartUp() : Result : -1"));
  EXPECT_EQ(desk.RunValues(), Texts{desk::kPrinterName});
  EXPECT_FALSE(desk.machine.files().Exists(file));
}

}  // namespace
}  // namespace vgl
