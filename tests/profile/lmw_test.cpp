#include "profile/lmw.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "tests/profile/lmw_fixture.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char16_t kHeldLibrary[] = u"library C:\\Set\\LMW.DLL";
constexpr char16_t kHeldPrinter[] = u"printer Studio";

// With its fields in the open.
class OpenLmw : public CLmw {
 public:
  using CLmw::CLmw;
  using CLmw::InitializeInEitherMode;
  using CLmw::m_csLibraryPath;
  using CLmw::m_csVifName;
  using CLmw::m_fInitialized;
  using CLmw::m_hContext;
  using CLmw::m_hModule;
  using CLmw::m_hPrinter;
  using CLmw::m_PrinterGuard;
};

class Lmw : public LmwTest {
 protected:
  using Blocks = std::vector<desk::LanguageManager::Block>;

  Blocks::value_type PrinterBlock(HPRINTER handle) {
    return {2, kDriver, kVif, 0xFFFF, kPrinter, static_cast<std::uint64_t>(handle)};
  }
  static Blocks::value_type FileBlock() { return {1, kDriver, kVif, 0xFFFF, u"", 0}; }

  // Whether one that is made now is initialised.
  bool IsInitialized() { return OpenLmw(kPrinter, kDriver, kModel).m_fInitialized == 1; }
  bool LoadedALibrary() {
    return std::any_of(machine.trace().begin(), machine.trace().end(), [](const sim::Event& event) {
      return event.text.starts_with(u"loaded library");
    });
  }
};

// --- Construction

TEST_F(Lmw, FindsAndLoadsTheLibraryAndBeginsAContextForThePrinter) {
  AddManager();
  const OpenLmw lmw(kPrinter, kDriver, kModel);
  EXPECT_EQ(lmw.m_fInitialized, 1);
  EXPECT_EQ(lmw.m_csVifName, kVif);
  EXPECT_EQ(lmw.m_csLibraryPath, kLibrary);
  EXPECT_TRUE(Holds(kHeldLibrary));
  EXPECT_TRUE(Holds(kHeldPrinter));
  EXPECT_EQ(Manager().blocks, Blocks{PrinterBlock(lmw.m_hPrinter)});
  EXPECT_EQ(Manager().openContexts.size(), 1U);
  EXPECT_TRUE(Manager().openContexts.contains(lmw.m_hContext));
}

TEST_F(Lmw, GivesEverythingBackAtItsEnd) {
  AddManager();
  { const CLmw lmw(kPrinter, kDriver, kModel); }
  EXPECT_TRUE(Manager().openContexts.empty());
  EXPECT_EQ(Library().Calls(kLMWUnInitialize), 1U);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(Lmw, AVifThatNamesNoLibraryLoadsNone) {
  AddManager();
  for (const char* vif :
       {"", "[CommonDrvInfo]\n", "[CommonDrvInfo]\nLMWModule=\n", "[Other]\nLMWModule=LMW.DLL\n"}) {
    WriteVif(vif);
    EXPECT_FALSE(IsInitialized()) << vif;
  }
  EXPECT_FALSE(LoadedALibrary());
  EXPECT_TRUE(Manager().blocks.empty());
}

TEST_F(Lmw, ALibraryThatIsntThereIsntLoaded) {
  EXPECT_FALSE(IsInitialized());
  AddManager();
  machine.files().Remove(kLibrary);
  EXPECT_FALSE(IsInitialized());
  EXPECT_FALSE(LoadedALibrary());
}

TEST_F(Lmw, AFileThatIsNoLibraryEndsConstruction) {
  AddFile(kLibrary);
  EXPECT_FALSE(IsInitialized());
  EXPECT_FALSE(LoadedALibrary());
}

TEST_F(Lmw, ALibraryWithoutOneOfItsExportsIsNotCalledAndFreedAtTheEnd) {
  const std::pair<std::string, const char*> cases[] = {{"C:\\A", kLMWInitialize},
                                                       {"C:\\B", kLMWUnInitialize},
                                                       {"C:\\C", kLMWGetLibraryPath},
                                                       {"C:\\D", kLMWGetInformation}};
  for (const auto& [folder, missing] : cases) {
    SCOPED_TRACE(missing);
    const std::u16string library = std::u16string(folder.begin(), folder.end()) + u"\\LMW.DLL";
    desk::AddLanguageManager(machine, library).RemoveExport(missing);
    DescribeSet({{"InstallPath", folder}});
    {
      const OpenLmw lmw(kPrinter, kDriver, kModel);
      EXPECT_EQ(lmw.m_fInitialized, 0);
      EXPECT_TRUE(Holds(u"library " + library));
    }
    EXPECT_TRUE(inside.process().Ledger().empty());
  }
  EXPECT_TRUE(Manager().blocks.empty());
}

TEST_F(Lmw, WhereThePrintersModeIsRefusedTheDriversDecides) {
  AddManager();
  Manager().takesPrinterMode = false;
  const OpenLmw lmw(kPrinter, kDriver, kModel);
  EXPECT_EQ(lmw.m_fInitialized, 1);
  EXPECT_EQ(Manager().blocks, (Blocks{PrinterBlock(lmw.m_hPrinter), FileBlock()}));
  EXPECT_EQ(Manager().openContexts.size(), 1U);
}

TEST_F(Lmw, WhereBothModesAreRefusedThereIsNoContextToEnd) {
  AddManager();
  Manager().takesPrinterMode = false;
  Manager().takesFileMode = false;
  {
    const OpenLmw lmw(kPrinter, kDriver, kModel);
    EXPECT_EQ(lmw.m_fInitialized, 0);
    EXPECT_EQ(lmw.m_hContext, 0U);  // though the library left something there
  }
  EXPECT_EQ(Manager().blocks.size(), 2U);
  EXPECT_EQ(Library().Calls(kLMWUnInitialize), 0U);
}

TEST_F(Lmw, WithoutAPrinterHandleTheDriversModeAloneIsTried) {
  AddManager();
  for (const bool taken : {true, false}) {
    OpenLmw lmw(kPrinter, kDriver, kModel);
    lmw.LMWUnInitialize();
    lmw.m_PrinterGuard.KvClosePrinter(lmw.m_hPrinter);
    lmw.m_hPrinter = HPRINTER{};
    Manager().blocks.clear();
    Manager().takesFileMode = taken;
    EXPECT_EQ(lmw.InitializeInEitherMode(), taken);
    EXPECT_EQ(Manager().blocks, Blocks{FileBlock()});
  }
}

TEST_F(Lmw, AnOpenThatFailsIsTriedOnceMore) {
  AddManager();
  inside.process().FailNext("OpenPrinterW", ERROR_ACCESS_DENIED);
  const OpenLmw lmw(kPrinter, kDriver, kModel);
  EXPECT_EQ(lmw.m_fInitialized, 1);
  EXPECT_EQ(Manager().blocks, Blocks{PrinterBlock(lmw.m_hPrinter)});
}

TEST_F(Lmw, WithoutThePrinterThereIsNoVifAndNoLibrary) {
  AddManager();
  inside.process().FailNext("OpenPrinterW", ERROR_ACCESS_DENIED);
  inside.process().FailNext("OpenPrinterW", ERROR_ACCESS_DENIED);
  {
    const OpenLmw lmw(kPrinter, kDriver, kModel);
    EXPECT_EQ(lmw.m_hPrinter, HPRINTER{});
    EXPECT_EQ(lmw.m_csVifName, u"");
    EXPECT_EQ(lmw.m_fInitialized, 0);
  }
  const OpenLmw missing(u"missing", kDriver, kModel);
  EXPECT_EQ(missing.m_fInitialized, 0);
  EXPECT_FALSE(LoadedALibrary());
}

TEST_F(Lmw, WhileAnInstallerIsAtWorkThePrinterIsLeftAlone) {
  AddManager();
  const OwnedObject installer = Installer();
  EXPECT_EQ(OpeningsOf([this] { EXPECT_FALSE(IsInitialized()); }), 0U);
  EXPECT_FALSE(LoadedALibrary());
}

TEST_F(Lmw, ADriverWithoutADataFileEndsConstruction) {
  AddManager();
  SetDriver(u"C:\\Set\\sample.dll", std::nullopt);
  EXPECT_FALSE(IsInitialized());
  SetDriver(u"C:\\Set\\sample.dll", u"");
  EXPECT_FALSE(IsInitialized());
  EXPECT_FALSE(LoadedALibrary());
}

TEST_F(Lmw, ABareVifIsLookedForInTheWindowsFolder) {
  AddManager();
  SetDriver(u"C:\\Set\\sample.dll", u"SAMPLE.VIF");
  EXPECT_FALSE(IsInitialized());
  machine.files().WriteFile(u"C:\\Windows\\SAMPLE.VIF", "[CommonDrvInfo]\nLMWModule=LMW.DLL\n");
  const OpenLmw lmw(kPrinter, kDriver, kModel);
  EXPECT_EQ(lmw.m_fInitialized, 1);
  EXPECT_EQ(lmw.m_csVifName, u"SAMPLE.VIF");
}

TEST_F(Lmw, WithoutTheDriversFolderTheLibrarysNameIsBare) {
  DescribeSet({{"InstallPath", "C:\\Gone"}});
  {
    const OpenLmw lmw(kPrinter, kDriver, kModel);
    EXPECT_EQ(lmw.m_csLibraryPath, u"LMW.DLL");
    EXPECT_EQ(lmw.m_fInitialized, 0);
  }
  desk::AddLanguageManager(machine, u"C:\\Program Files\\KAVRO\\LMW.DLL");  // the program's folder
  EXPECT_TRUE(IsInitialized());
}

TEST_F(Lmw, NullTextsCountAsEmpty) {
  AddManager();
  const OpenLmw lmw(nullptr, nullptr, nullptr);
  EXPECT_EQ(lmw.m_fInitialized, 0);
  EXPECT_EQ(lmw.m_csVifName, u"");
}

TEST_F(Lmw, TwoOfThemHaveTwoLoadsAndTwoContexts) {
  AddManager();
  {
    OpenLmw second(kPrinter, kDriver, kModel);
    {
      const OpenLmw first(kPrinter, kDriver, kModel);
      EXPECT_EQ(Manager().openContexts.size(), 2U);
      EXPECT_NE(first.m_hContext, second.m_hContext);
    }
    EXPECT_EQ(Manager().openContexts.size(), 1U);
    EXPECT_TRUE(Holds(kHeldLibrary));
    std::uint32_t chars = 0;
    EXPECT_EQ(second.LMWGetLibraryPath(u"LMWModule", nullptr, &chars), -6);
  }
  EXPECT_FALSE(Holds(kHeldLibrary));
}

// --- The end

struct OddManager {
  std::vector<std::u16string> heldAtUnInitialize;
  std::uint64_t context = 5;
};

OddManager& Odd() { return sim::RunningProcess().machine().libraries().State<OddManager>(); }

std::int32_t OddInitialize(std::uint32_t, const void*, std::uint64_t* context) {
  *context = Odd().context;
  return 1;
}
std::int32_t OddUnInitialize(std::uint64_t) {
  Odd().heldAtUnInitialize = sim::RunningProcess().Ledger();
  return 77;
}
std::int32_t OddGetLibraryPath(std::uint64_t, const char16_t*, const char16_t*, char16_t*,
                               std::uint32_t*) {
  return 78;
}
std::int32_t OddGetInformation(std::uint64_t, std::uint32_t, const void*, std::uint32_t, void*,
                               std::uint32_t*) {
  return 79;
}

class LmwOfOddManager : public Lmw {
 protected:
  LmwOfOddManager() {
    sim::Library& library = machine.libraries().Add(kLibrary);
    library.Export<&OddInitialize>(1, kLMWInitialize);
    library.Export<&OddUnInitialize>(2, kLMWUnInitialize);
    library.Export<&OddGetLibraryPath>(3, kLMWGetLibraryPath);
    library.Export<&OddGetInformation>(4, kLMWGetInformation);
  }
};

TEST_F(LmwOfOddManager, TheContextGoesFirstThenTheLibraryThenThePrinter) {
  bool heldPrinterAtFree = false;
  {
    const CLmw lmw(kPrinter, kDriver, kModel);
    machine.Observe([&](const sim::Event& event) {
      if (event.text.starts_with(u"freed library")) heldPrinterAtFree = Holds(kHeldPrinter);
    });
  }
  machine.Observe(nullptr);
  EXPECT_EQ(Odd().heldAtUnInitialize.size(), 3U);  // the library, the printer, the guard's mutex
  EXPECT_TRUE(heldPrinterAtFree);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(LmwOfOddManager, AnExportsResultComesBackUnchanged) {
  OpenLmw lmw(kPrinter, kDriver, kModel);
  std::uint32_t size = 0;
  EXPECT_EQ(lmw.LMWGetLibraryPath(u"X", nullptr, &size), 78);
  EXPECT_EQ(lmw.LMWGetInformation(2, nullptr, 0, nullptr, &size), 79);
  EXPECT_EQ(lmw.LMWUnInitialize(), 77);
}

TEST_F(LmwOfOddManager, ASuccessWithoutAContextLeavesNothingToAskAndNothingToEnd) {
  Odd().context = 0;
  {
    OpenLmw lmw(kPrinter, kDriver, kModel);
    EXPECT_EQ(lmw.m_fInitialized, 1);
    std::uint32_t size = 0;
    EXPECT_EQ(lmw.LMWGetLibraryPath(u"X", nullptr, &size), -1);
    EXPECT_EQ(lmw.LMWGetInformation(2, nullptr, 0, nullptr, &size), -1);
  }
  EXPECT_EQ(Library().Calls(kLMWUnInitialize), 0U);
}

TEST_F(Lmw, AContextThatTheCallerHasEndedIsntEndedAgain) {
  AddManager();
  {
    OpenLmw lmw(kPrinter, kDriver, kModel);
    EXPECT_EQ(lmw.LMWUnInitialize(), 1);
    EXPECT_EQ(lmw.LMWUnInitialize(), -1);
  }
  EXPECT_EQ(Library().Calls(kLMWUnInitialize), 1U);
  EXPECT_EQ(Manager().unknownContexts, 0);
}

// --- The operations

TEST_F(Lmw, TheVifNameIsThatOfTheOpenPrinter) {
  AddManager();
  CLmw lmw(kPrinter, kDriver, kModel);
  EXPECT_EQ(OpeningsOf([&] { EXPECT_EQ(lmw.GetVifName(u"another"), kVif); }), 0U);
}

TEST_F(Lmw, WhereNoneIsOpenThePrinterOfTheQuestionIsOpenedAndStaysSo) {
  CLmw lmw(u"missing", kDriver, kModel);
  EXPECT_EQ(lmw.GetVifName(u"missing"), u"");
  EXPECT_EQ(lmw.GetVifName(nullptr), u"");
  EXPECT_EQ(lmw.GetVifName(kPrinter), kVif);
  EXPECT_TRUE(Holds(kHeldPrinter));
  EXPECT_EQ(lmw.GetVifName(u"missing"), kVif);
}

TEST_F(Lmw, AKeyOfAVifHasAtMost259Characters) {
  const CLmw lmw(u"", u"", u"");
  WriteVif("[InkChg]\nINKCHGEXE=ink.exe\nLong=" + std::string(300, 'x') + "\n");
  EXPECT_EQ(lmw.GetVifDriverDataStr(u"InkChg", u"INKCHGEXE", kVif), u"ink.exe");
  EXPECT_EQ(lmw.GetVifDriverDataStr(u"InkChg", u"Long", kVif), std::u16string(259, u'x'));
  EXPECT_EQ(lmw.GetVifDriverDataStr(u"InkChg", u"Other", kVif), u"");
  EXPECT_EQ(lmw.GetVifDriverDataStr(u"Other", u"INKCHGEXE", kVif), u"");
  EXPECT_EQ(lmw.GetVifDriverDataStr(u"InkChg", u"INKCHGEXE", u"C:\\gone.vif"), u"");
  EXPECT_EQ(lmw.GetVifDriverDataStr(nullptr, u"INKCHGEXE", kVif), u"");
  EXPECT_EQ(lmw.GetVifDriverDataStr(u"InkChg", nullptr, kVif), u"");
  EXPECT_EQ(lmw.GetVifDriverDataStr(u"InkChg", u"INKCHGEXE", nullptr), u"");
}

TEST_F(Lmw, ALibraryPathIsAskedForInCommonDrvInfo) {
  AddManager();
  Manager().paths[u"HELP"] = u"C:\\help.chm";
  CLmw lmw(kPrinter, kDriver, kModel);
  std::uint32_t chars = 260;
  EXPECT_EQ(lmw.LMWGetLibraryPath(u"HELP", path.buffer(), &chars), 1);
  EXPECT_EQ(path.view(), u"C:\\help.chm");
  EXPECT_EQ(Manager().keys, std::vector<std::u16string>{u"CommonDrvInfo/HELP"});
}

TEST_F(Lmw, InformationIsAskedForAsTheCallerHasIt) {
  AddManager();
  Manager().texts[9] = u"nine";
  CLmw lmw(kPrinter, kDriver, kModel);
  std::uint32_t chars = 260;
  EXPECT_EQ(lmw.LMWGetInformation(9, "abc", 3, path.buffer(), &chars), 1);
  EXPECT_EQ(path.view(), u"nine");
  using Requests = std::vector<desk::LanguageManager::Request>;
  EXPECT_EQ(Manager().requests, (Requests{{9, "abc", true, true, 260}}));
}

TEST_F(Lmw, WithoutALibraryTheExportsGiveMinus1) {
  OpenLmw lmw(kPrinter, kDriver, kModel);
  std::uint32_t size = 260;
  EXPECT_EQ(lmw.LMWInitialize(1), -1);
  EXPECT_EQ(lmw.LMWInitialize(2), -1);
  EXPECT_EQ(lmw.LMWUnInitialize(), -1);
  EXPECT_EQ(lmw.LMWGetLibraryPath(u"X", path.buffer(), &size), -1);
  EXPECT_EQ(lmw.LMWGetInformation(2, nullptr, 0, path.buffer(), &size), -1);
}

TEST_F(Lmw, WithoutASizeTheExportsGiveMinus1) {
  AddManager();
  CLmw lmw(kPrinter, kDriver, kModel);
  EXPECT_EQ(lmw.LMWGetLibraryPath(u"X", path.buffer(), nullptr), -1);
  EXPECT_EQ(lmw.LMWGetInformation(2, nullptr, 0, path.buffer(), nullptr), -1);
  EXPECT_TRUE(Manager().keys.empty());
  EXPECT_TRUE(Manager().requests.empty());
}

TEST_F(Lmw, OnlyModes1And2AreHandedOn) {
  AddManager();
  OpenLmw lmw(kPrinter, kDriver, kModel);
  EXPECT_EQ(lmw.LMWUnInitialize(), 1);
  Manager().blocks.clear();
  for (const std::uint32_t mode : {0U, 3U, 0xFFFFFFFFU}) EXPECT_EQ(lmw.LMWInitialize(mode), -1);
  EXPECT_TRUE(Manager().blocks.empty());
  EXPECT_EQ(lmw.LMWInitialize(1), 1);
  EXPECT_EQ(Manager().blocks, Blocks{FileBlock()});
}

// --- The log, and failures

TEST_F(Lmw, EachOperationIsLoggedWhenItIsEnteredAndLeft) {
  AddManager();
  Manager().takesPrinterMode = false;
  const std::vector<std::string> log = TrayLogOf([this] {
    CLmw lmw(kPrinter, kDriver, kModel);
    lmw.LMWGetLibraryPath(u"X", nullptr, nullptr);
    lmw.LMWGetInformation(2, nullptr, 0, nullptr, nullptr);
  });
  EXPECT_EQ(log, (std::vector<std::string>{
                     "CLmw::CLmw Start", "CLmw::GetVifName Start", "CLmw::GetVifName End",
                     "CLmw::GetVifDriverDataStr Start", "CLmw::GetVifDriverDataStr End",
                     "CLmw::LMWInitialize Start", "CLmw::LMWInitialize End",
                     "CLmw::LMWInitialize Start", "CLmw::LMWInitialize End", "CLmw::CLmw End",
                     "CLmw::LMWGetLibraryPath Start", "CLmw::LMWGetLibraryPath End",
                     "CLmw::LMWGetInformation Start", "CLmw::LMWGetInformation End",
                     "CLmw::LMWUnInitialize Start", "CLmw::LMWUnInitialize End"}));
}

TEST_F(Lmw, ItsEndIsLoggedAlsoWithoutALibrary) {
  const std::vector<std::string> log =
      TrayLogOf([this] { const CLmw lmw(u"missing", kDriver, kModel); });
  EXPECT_EQ(log,
            (std::vector<std::string>{"CLmw::CLmw Start", "CLmw::GetVifName Start",
                                      "CLmw::GetVifName End", "CLmw::CLmw End",
                                      "CLmw::LMWUnInitialize Start", "CLmw::LMWUnInitialize End"}));
}

TEST_F(Lmw, AnyCallThatFailsLeavesNoContextAndNothingOpen) {
  AddManager();
  int initialized = 0;
  int runs = 0;
  WithEachCallFailing(
      [&] {
        ++runs;
        initialized += IsInitialized() ? 1 : 0;
      },
      [&](std::uint64_t) { EXPECT_TRUE(Manager().openContexts.empty()); });
  EXPECT_EQ(Library().Calls(kLMWUnInitialize), static_cast<std::uint64_t>(initialized));
  EXPECT_EQ(Manager().unknownContexts, 0);
  EXPECT_GT(initialized, 1);
  EXPECT_LT(initialized, runs);
}

}  // namespace
}  // namespace vgl
