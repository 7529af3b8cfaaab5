// The way to the log library: the VIF that names it, its folder, its exports.
#include "tests/support/vgl_log_fixture.h"

namespace vgl {
namespace {

using namespace platform;

// What the printer's driver set must have for a path to be found, once a kind and a driver are
// known.
class VglLogPath : public VglLogTest {
 protected:
  std::u16string path = u"before";

  VglLogPath() {
    log.m_nLogKind = VGLLOG_TRAYICON;
    log.m_csPrinterName = kPrinter;
    log.m_csDriverName = kDriver;
  }
  std::int32_t Find() { return log.GetLogRuFileName(&path); }
  void AddFile(std::u16string_view name) { machine.files().WriteFile(name, ""); }
};

TEST_F(VglLogPath, TheVifNamesTheLibraryThatLiesBesideIt) {
  EXPECT_EQ(Find(), 0);
  EXPECT_EQ(path, u"C:\\Set\\K_APLOG.DLL");
  EXPECT_EQ(log.m_csLogRuFullPath, u"C:\\Set\\K_APLOG.DLL");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(VglLogPath, TheSectionOfOldDriversIsAskedNext) {
  WriteVif("[CommonDrvInfo]\nAppLogModule=K_APLOG.DLL\n");
  SwitchNestLogOn();
  EXPECT_EQ(Find(), 0);
  EXPECT_EQ(path, u"C:\\Set\\K_APLOG.DLL");
  EXPECT_EQ(NestLines(),
            (std::vector<std::string>{
                "GetLogRuFileName()\r", "  GetVifName()\r", "  GetInstallPath()\r",
                "  GetAppLogModule()\r",
                "  GetLogRuFileName <VIF description of LogRuDLL not found HLN ,Try OLN>\r",
                "  GetAppLogModule()\r"}));
}

TEST_F(VglLogPath, TheOtherSectionCountsWhereBothNameOne) {
  AddFile(u"C:\\Set\\NEW.DLL");
  WriteVif(
      "[CommonDrvInfo]\nAppLogModule=K_APLOG.DLL\n"
      "[User Mode Printer Driver Information]\nAppLogModule=NEW.DLL\n");
  EXPECT_EQ(Find(), 0);
  EXPECT_EQ(path, u"C:\\Set\\NEW.DLL");
}

TEST_F(VglLogPath, AVifThatNamesNoneGivesMinus99) {
  for (const char* vif : {"", "[CommonDrvInfo]\nAppLogModule=\n", "AppLogModule=K_APLOG.DLL\n"}) {
    WriteVif(vif);
    EXPECT_EQ(Find(), -99) << vif;
  }
  machine.files().Remove(kVif);
  EXPECT_EQ(Find(), -99);
  EXPECT_EQ(path, u"before");
  EXPECT_EQ(log.m_csLogRuFullPath, u"");
}

TEST_F(VglLogPath, ALibraryThatIsntThereGivesMinus99) {
  machine.files().Remove(kLogLibrary);
  SwitchNestLogOn();
  EXPECT_EQ(Find(), -99);
  EXPECT_EQ(NestLines().back(), "  GetLogRuFileName() <LogRuDLL not found>\r");
  EXPECT_EQ(path, u"before");
  EXPECT_EQ(log.m_csLogRuFullPath, u"");
}

TEST_F(VglLogPath, ADriverWithoutADataFileGivesMinus99) {
  SetDriver(u"C:\\Set\\sample.dll", std::nullopt);
  SwitchNestLogOn();
  EXPECT_EQ(Find(), -99);
  EXPECT_EQ(NestLines(), (std::vector<std::string>{"GetLogRuFileName()\r", "  GetVifName()\r",
                                                   "  GetVifName() return Err"}));
}

TEST_F(VglLogPath, APrinterThatIsGoneGivesMinus99) {
  machine.spooler().RemovePrinter(kPrinter);
  EXPECT_EQ(Find(), -99);
}

// A data file that is registered by its bare name is read in the Windows folder, and of its name
// one character is left for the folder.
TEST_F(VglLogPath, OfADataFileWithoutAFolderTheFirstCharacterIsTheFolder) {
  SetDriver(u"C:\\Set\\sample.dll", u"SAMPLE.VIF");
  machine.files().WriteFile(u"C:\\Windows\\SAMPLE.VIF", "[CommonDrvInfo]\nAppLogModule=A.DLL\n");
  AddFile(u"C:\\Set\\A.DLL");
  EXPECT_EQ(Find(), -99);
  AddFile(u"C:\\Program Files\\KAVRO\\S\\A.DLL");  // below the folder of this program
  EXPECT_EQ(Find(), 0);
  EXPECT_EQ(path, u"S\\A.DLL");
}

TEST_F(VglLogPath, TheFolderEndsAtTheLastBackslash) {
  SetDriver(u"C:\\Set\\sample.dll", u"C:\\Set\\Vifs\\9\\S.VIF");
  machine.files().WriteFile(u"C:\\Set\\Vifs\\9\\S.VIF", "[CommonDrvInfo]\nAppLogModule=A.DLL\n");
  AddFile(u"C:\\Set\\Vifs\\9\\A.DLL");
  EXPECT_EQ(Find(), 0);
  EXPECT_EQ(path, u"C:\\Set\\Vifs\\9\\A.DLL");
}

TEST_F(VglLogPath, AModuleInAFolderOfItsOwnIsFoundThere) {
  WriteVif("[CommonDrvInfo]\nAppLogModule=Sub\\A.DLL\n");
  AddFile(u"C:\\Set\\Sub\\A.DLL");
  EXPECT_EQ(Find(), 0);
  EXPECT_EQ(path, u"C:\\Set\\Sub\\A.DLL");
}

TEST_F(VglLogPath, APathThatWasFoundIsKeptUntilAClear) {
  Find();
  machine.files().Remove(kLogLibrary);
  path.clear();
  EXPECT_EQ(CallsOf([&] { EXPECT_EQ(Find(), 0); }), 0U);
  EXPECT_EQ(path, kLogLibrary);
  log.Clear();
  EXPECT_EQ(Count(1), -99);
}

TEST_F(VglLogPath, TheSpoolerIsAskedTwiceAndAFailureOfEitherGivesMinus99) {
  inside.process().FailNext("GetPrinterDriverW", ERROR_NOT_ENOUGH_MEMORY, 1);
  EXPECT_EQ(Find(), -99);
  inside.process().FailNext("GetPrinterDriverW", ERROR_NOT_ENOUGH_MEMORY, 3);
  EXPECT_EQ(Find(), -99);  // no folder: there is no such library in the root of the drive
  EXPECT_EQ(Find(), 0);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(VglLogPath, NoFailureOfACallLeavesAnythingOpenOrTellsAWrongPath) {
  WithEachCallFailing(
      [&] {
        log.m_csLogRuFullPath.clear();
        path = u"before";
        if (Find() == -99) path.clear();
      },
      [&](std::uint64_t) { EXPECT_TRUE(path.empty() || path == kLogLibrary); });
}

TEST_F(VglLogPath, WithoutAnOutputTheProcessEnds) {
  EXPECT_TRUE(inside.EndsProcess([&] { log.GetLogRuFileName(nullptr); }));
  EXPECT_EQ(inside.process().exitCode(), 3U);
}

TEST_F(VglLogPath, WithoutAKindTheProcessEnds) {
  log.m_nLogKind = 0;
  EXPECT_TRUE(inside.EndsProcess([&] { Find(); }));
}

TEST_F(VglLogPath, WithoutADriverTheProcessEndsEvenWhereThePathIsKnown) {
  Find();
  log.m_csDriverName.clear();
  EXPECT_TRUE(inside.EndsProcess([&] { Find(); }));
}

// --- The exports

class VglLogExports : public VglLogTest {};

TEST_F(VglLogExports, TheLibraryIsLoadedForEachUseAndFreedAtOnce) {
  Count(1);
  EXPECT_EQ(Os().modules.GetModuleHandleW(kLogLibrary), HMODULE{});
  log.WriteVglLogFile();
  EXPECT_EQ(Os().modules.GetModuleHandleW(kLogLibrary), HMODULE{});
  EXPECT_EQ(Os().modules.GetModuleHandleW(kPrinterLibrary), HMODULE{});
  EXPECT_TRUE(inside.process().Ledger().empty());
}

struct MissingExport {
  const char* name;
  std::int32_t answer;  // of IncrementMultiLog
};
class VglLogMissingExport : public VglLogTest, public testing::WithParamInterface<MissingExport> {};

TEST_P(VglLogMissingExport, GivesMinus99WhereItIsNeededAndTheCountsStay) {
  Count(1);
  Answer("IncrementMultiLog", GetParam().answer);
  LogLibrary().RemoveExport(GetParam().name);
  EXPECT_EQ(log.WriteVglLogFile(), -99);
  EXPECT_EQ(Counter(1), 1U);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

INSTANTIATE_TEST_SUITE_P(Exports, VglLogMissingExport,
                         testing::Values(MissingExport{"IncrementMultiLog", 1},
                                         MissingExport{"SetMultiLogValue", 1},
                                         MissingExport{"CreateLogFile", -1},
                                         MissingExport{"ReadLog", -4}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(VglLogExports, ALibraryThatIsGoneAtTheFlushGivesMinus99) {
  Count(1);
  machine.files().Remove(kLogLibrary);
  SwitchNestLogOn();
  EXPECT_EQ(log.WriteVglLogFile(), -99);
  EXPECT_TRUE(HasLogged("IncrementMultiVglFile() nRet: =-99 \r"));
}

}  // namespace
}  // namespace vgl
