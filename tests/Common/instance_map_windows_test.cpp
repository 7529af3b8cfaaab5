// Windows in the instance map: published, taken back, found, closed.
#include "Common/instance_map.h"
#include "tests/support/map_fixture.h"

namespace vgl {
namespace {

using namespace platform;

constexpr HWND kWindow{0x123456789ABCDEF0};  // of more than 32 bits

class MapWindows : public InstanceMapTest {
 protected:
  // "First", "Studio", "V7 Studio" in both maps, then the end marker.
  MapWindows() {
    const char16_t* names[] = {u"First", u"Studio", u"V7 Studio"};
    for (std::size_t i = 0; i < 3; ++i) {
      v5.WriteName(V5Map::Slot(i), names[i]);
      v7.WriteName(V7Map::Slot(i), names[i]);
    }
    v5.Write16(V5Map::Slot(3), 0x00FF);
    v7.Write16(V7Map::Slot(3), 0x00FF);
  }

  V5Map v5;
  V7Map v7;
};

// --- SethWindow

TEST_F(MapWindows, AWindowOf64BitsIsPublishedWhole) {
  EXPECT_EQ(SethWindow(u"Studio", u"", kWindow), 0);
  EXPECT_EQ(SethWindow(u"V7 Studio", u"", kWindow), 0);
  const std::string bytes("\xF0\xDE\xBC\x9A\x78\x56\x34\x12", 8);
  EXPECT_EQ(v5.Read(V5Map::Slot(1) + kSel3At, 8), bytes);
  EXPECT_EQ(v7.Read(V7Map::Slot(2) + kSel3At, 8), bytes);
}

TEST_F(MapWindows, PublishingStoresNothingElse) {
  std::string before = v7.Read(0, 547000);
  EXPECT_EQ(SethWindowSubV7(u"", u"STUDIO", kWindow, 0, u"VglV7MapFile_Ink"), 0);
  before.replace(1094 + 1058, 8, "\xF0\xDE\xBC\x9A\x78\x56\x34\x12");
  EXPECT_TRUE(v7.Read(0, 547000) == before);
}

TEST_F(MapWindows, PublishingWithoutASlotIsMinusTwo) {
  EXPECT_EQ(SethWindow(u"Missing", u"", kWindow), -2);
}

TEST_F(MapWindows, PublishingWithoutAKnownMapIsMinusOne) {
  EXPECT_EQ(SethWindow(u"Odd Studio", u"", kWindow), -1);
}

TEST_F(MapWindows, PublishingWithoutTheSectionIsMinusOne) {
  EXPECT_EQ(SethWindowSubV5(u"Studio", u"", kWindow, 0, u"Missing"), -1);
}

TEST_F(MapWindows, PublishingWithoutAViewIsMinusOneAndClosesTheSection) {
  const std::vector<std::u16string> before = inside.process().Ledger();
  inside.process().FailNext("MapViewOfFile", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_EQ(SethWindow(u"Studio", u"", kWindow), -1);
  EXPECT_EQ(inside.process().Ledger(), before);
}

TEST_F(MapWindows, PublishingInAFullMapWithoutTheNameIsOne) {
  for (std::size_t i = 0; i < 500; ++i) v5.WriteName(V5Map::Slot(i), u"Other");
  EXPECT_EQ(SethWindow(u"Studio", u"", kWindow), 1);
}

TEST_F(MapWindows, PublishingReachesTheFiveHundredthSlot) {
  for (std::size_t i = 0; i < 499; ++i) v7.WriteName(V7Map::Slot(i), u"Other");
  v7.WriteName(V7Map::Slot(499), u"V7 Studio");
  EXPECT_EQ(SethWindow(u"V7 Studio", u"", kWindow), 0);
  EXPECT_EQ(v7.Read64(V7Map::Slot(499) + kSel3At), 0x123456789ABCDEF0U);
}

TEST_F(MapWindows, NothingBehindTheEndMarkerIsLookedAt) {
  v5.Write16(V5Map::Slot(1), 0x00FF);
  EXPECT_EQ(SethWindowSubV5(u"V7 Studio", u"", kWindow, 0, u"VglV5MapFile_Ink"), -2);
}

// --- ReleaseMapSlot

class MapRelease : public MapWindows {
 protected:
  const HANDLE section5 = CreateMapV5(u"VglV5MapFile_Ink");
  const HANDLE section7 = CreateMapV7(u"VglV7MapFile_Ink");
  ~MapRelease() override {
    Os().objects.CloseHandle(section5);
    Os().objects.CloseHandle(section7);
  }
};

TEST_F(MapRelease, ASlotWithoutAnotherWindowIsFreedByItsFirstCharacterAlone) {
  v5.Write64(V5Map::Slot(1) + kSel3At, 5);
  EXPECT_TRUE(ReleaseMapSlot(section5, u"studio", u""));
  EXPECT_EQ(v5.Read(V5Map::Slot(1), 14), std::string("\0\0t\0u\0d\0i\0o\0\0\0", 14));
  EXPECT_EQ(v5.Read64(V5Map::Slot(1) + kSel3At), 0U);
}

TEST_F(MapRelease, ASlotWithAnotherProgramsWindowStaysInUse) {
  for (const std::size_t field : {kSel0At, kSel12At, kSel5At}) {
    v7.Write64(V7Map::Slot(2) + field, 0x8000000000000000);
    v7.Write64(V7Map::Slot(2) + kSel3At, 5);
    EXPECT_TRUE(ReleaseMapSlot(section7, u"V7 Studio", u""));
    EXPECT_EQ(v7.ReadName(V7Map::Slot(2)), u"V7 Studio");
    EXPECT_EQ(v7.Read64(V7Map::Slot(2) + kSel3At), 0U);
    v7.Write64(V7Map::Slot(2) + field, 0);
  }
}

TEST_F(MapRelease, WhereAV7SlotHasItsFourthWindowAV5SlotHasTheNextName) {
  EXPECT_TRUE(ReleaseMapSlotV5(section5, u"First"));
  EXPECT_EQ(v5.Read16(0), 0);
  EXPECT_EQ(v5.ReadName(V5Map::Slot(1)), u"Studio");
}

TEST_F(MapRelease, AnUnknownNameOrMapChangesNothing) {
  const std::string before5 = v5.Read(0, 533000);
  const std::string before7 = v7.Read(0, 547000);
  EXPECT_TRUE(ReleaseMapSlot(section5, u"Missing", u""));
  EXPECT_TRUE(ReleaseMapSlot(section5, u"Odd Studio", u""));
  EXPECT_TRUE(ReleaseMapSlotV7(section7, u"Missing"));
  EXPECT_TRUE(v5.Read(0, 533000) == before5);
  EXPECT_TRUE(v7.Read(0, 547000) == before7);
}

TEST_F(MapRelease, ThePortIsReleasedInTheV5Map) {
  v5.WriteName(V5Map::Slot(1), u"USB001");
  EXPECT_TRUE(ReleaseMapSlot(section5, u"", u"USB001"));
  EXPECT_EQ(v5.Read16(V5Map::Slot(1)), 0);
}

TEST_F(MapRelease, TheNextNewPrinterTakesTheFreedSlot) {
  ReleaseMapSlot(section5, u"Studio", u"");
  HWND other{};
  EXPECT_EQ(CheckMapPrinterV5(section5, u"New", 0, 0, &other), 0);
  EXPECT_EQ(v5.ReadName(V5Map::Slot(1)), u"New");
}

// The map is looked up anew at the end, and a printer that can't be opened is in V5.
TEST_F(MapRelease, AV7AgentWhosePrinterIsGoneLeavesASlotBehindTheFirstAsItIs) {
  v7.Write64(V7Map::Slot(2) + kSel3At, 5);
  const std::string before = v7.Read(0, 547000);
  machine.spooler().RemovePrinter(u"V7 Studio");
  EXPECT_TRUE(ReleaseMapSlot(section7, u"V7 Studio", u""));
  EXPECT_TRUE(v7.Read(0, 547000) == before);
}

TEST_F(MapRelease, AV7AgentWhosePrinterIsGoneFreesTheFirstSlotWhateverItsFourthWindow) {
  v7.WriteName(0, u"V7 Studio");
  v7.Write64(kSel5At, 7);
  v7.Write64(kSel3At, 5);
  machine.spooler().RemovePrinter(u"V7 Studio");
  EXPECT_TRUE(ReleaseMapSlot(section7, u"V7 Studio", u""));
  EXPECT_EQ(v7.Read16(0), 0);
  EXPECT_EQ(v7.Read64(kSel3At), 0U);
  EXPECT_EQ(v7.Read64(kSel5At), 7U);
}

TEST_F(MapRelease, AFailedViewClosesTheSection) {
  const HANDLE open = CreateMapV5(u"VglV5MapFile_Ink");
  inside.process().FailNext("MapViewOfFile", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_FALSE(ReleaseMapSlot(open, u"Studio", u""));
  EXPECT_FALSE(Os().objects.CloseHandle(open));
}

// --- GetMapWindow

TEST_F(MapWindows, EachAppSelHasItsField) {
  const HWND windows[] = {MakeWindow(), MakeWindow(), MakeWindow(), MakeWindow()};
  const auto number = [&](int i) { return static_cast<std::uint64_t>(windows[i]); };
  v7.Write64(V7Map::Slot(2) + kSel12At, number(0));
  v7.Write64(V7Map::Slot(2) + kSel0At, number(1));
  v7.Write64(V7Map::Slot(2) + kSel3At, number(2));
  v7.Write64(V7Map::Slot(2) + kSel5At, number(3));
  EXPECT_EQ(GetMapWindow(u"V7 Studio", u"", 1), windows[0]);
  EXPECT_EQ(GetMapWindow(u"V7 Studio", u"", 2), windows[0]);
  EXPECT_EQ(GetMapWindow(u"V7 Studio", u"", 0), windows[1]);
  EXPECT_EQ(GetMapWindow(u"V7 Studio", u"", 3), windows[2]);
  EXPECT_EQ(GetMapWindow(u"V7 Studio", u"", 5), windows[3]);
  for (const AppSel app : {-1, 4, 6}) EXPECT_EQ(GetMapWindow(u"V7 Studio", u"", app), HWND{});
}

TEST_F(MapWindows, AppSelFiveHasNoFieldInAV5Map) {
  const HWND window = MakeWindow();
  v5.Write64(V5Map::Slot(1) + kSel5At, static_cast<std::uint64_t>(window));  // the next slot
  EXPECT_EQ(GetMapWindowV5(u"Studio", u"", 5, u"VglV5MapFile_Ink"), HWND{});
}

TEST_F(MapWindows, ADeadWindowIsNone) {
  v5.Write64(V5Map::Slot(1) + kSel3At, 0x1234);
  EXPECT_EQ(GetMapWindow(u"Studio", u"", 3), HWND{});
  v5.Write64(V5Map::Slot(1) + kSel3At, kClaimed);
  EXPECT_EQ(GetMapWindow(u"Studio", u"", 3), HWND{});
}

TEST_F(MapWindows, AWindowIsFoundByItsNameIgnoringTheCaseOfPlainLetters) {
  const HWND window = MakeWindow();
  v5.WriteName(V5Map::Slot(1), u"stÜdio");
  v5.Write64(V5Map::Slot(1) + kSel3At, static_cast<std::uint64_t>(window));
  EXPECT_EQ(GetMapWindow(u"STÜDIO", u"", 3), window);
  EXPECT_EQ(GetMapWindow(u"stüdio", u"", 3), HWND{});
}

TEST_F(MapWindows, AWindowOfAPortIsFoundWithoutAPrintersName) {
  const HWND window = MakeWindow();
  v5.WriteName(V5Map::Slot(1), u"USB001");
  v5.Write64(V5Map::Slot(1) + kSel3At, static_cast<std::uint64_t>(window));
  EXPECT_EQ(GetMapWindow(nullptr, u"usb001", 3), window);
  EXPECT_EQ(GetMapWindow(u"", u"USB001", 3), window);
}

TEST_F(MapWindows, WithoutAViewThereIsNoWindowAndNothingStaysOpen) {
  const HWND window = MakeWindow();
  v5.Write64(V5Map::Slot(1) + kSel3At, static_cast<std::uint64_t>(window));
  const std::vector<std::u16string> before = inside.process().Ledger();
  inside.process().FailNext("MapViewOfFile", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_EQ(GetMapWindow(u"Studio", u"", 3), HWND{});
  EXPECT_EQ(inside.process().Ledger(), before);
}

TEST_F(MapWindows, WithoutSectionOrSlotOrMapThereIsNoWindow) {
  EXPECT_EQ(GetMapWindowV7(u"V7 Studio", u"", 3, u"Missing"), HWND{});
  EXPECT_EQ(GetMapWindow(u"Missing", u"", 3), HWND{});
  EXPECT_EQ(GetMapWindow(u"Odd Studio", u"", 3), HWND{});
  for (std::size_t i = 0; i < 500; ++i) v5.WriteName(V5Map::Slot(i), u"Other");
  EXPECT_EQ(GetMapWindow(u"Missing", u"", 3), HWND{});
}

// --- Closing

class MapClose : public MapWindows {
 protected:
  // Puts four new windows into a slot; those, in the order in which they are to be closed.
  std::vector<HWND> FillSlot(MapBytes& map, std::size_t slot, bool hasSel5) {
    std::vector<HWND> windows;
    for (const std::size_t field : {kSel0At, kSel12At, kSel3At, kSel5At}) {
      if (field == kSel5At && !hasSel5) break;
      windows.push_back(MakeWindow());
      map.Write64(slot + field, static_cast<std::uint64_t>(windows.back()));
    }
    return windows;
  }
};

TEST_F(MapClose, AV7SlotsWindowsAreClosedInTheirOrder) {
  const std::vector<HWND> windows = FillSlot(v7, V7Map::Slot(2), true);
  CloseMapWindows(u"v7 studio", u"");
  EXPECT_EQ(ClosedWindows(), windows);
  EXPECT_EQ(windows.size(), 4U);
  EXPECT_FALSE(Os().windowing.IsWindow(windows[0]));
}

TEST_F(MapClose, AV5SlotHasThreeWindows) {
  const std::vector<HWND> windows = FillSlot(v5, V5Map::Slot(1), false);
  CloseMapWindows(u"", u"STUDIO");
  EXPECT_EQ(ClosedWindows(), windows);
  EXPECT_EQ(windows.size(), 3U);
}

TEST_F(MapClose, EverySlotOfThePrinterIsMeantAndNoOther) {
  const std::vector<HWND> first = FillSlot(v5, V5Map::Slot(0), false);
  v5.WriteName(V5Map::Slot(2), u"STUDIO");
  const std::vector<HWND> third = FillSlot(v5, V5Map::Slot(2), false);
  CloseMapWindowsV5(u"Studio", u"", u"VglV5MapFile_Ink");
  EXPECT_EQ(ClosedWindows(), third);
  EXPECT_TRUE(Os().windowing.IsWindow(first[0]));
}

// What is sent to all ones goes to every top-level window, whose ever it is.
TEST_F(MapClose, AClaimIsSentToLikeAnyWindow) {
  const HWND inNoSlot = MakeWindow();
  v5.Write64(V5Map::Slot(1) + kSel3At, kClaimed);
  CloseMapWindows(u"Studio", u"");
  EXPECT_EQ(ClosedWindows(), std::vector<HWND>{inNoSlot});
}

TEST_F(MapClose, AWindowThatIsGoneIsPassedBy) {
  const std::vector<HWND> windows = FillSlot(v5, V5Map::Slot(1), false);
  Os().windowing.DestroyWindow(windows[0]);
  CloseMapWindows(u"Studio", u"");
  EXPECT_EQ(ClosedWindows(), (std::vector<HWND>{windows[1], windows[2]}));
}

TEST_F(MapClose, APrintersSlotsBehindTheEndMarkerStayOpen) {
  v5.WriteName(V5Map::Slot(2), u"Studio");
  FillSlot(v5, V5Map::Slot(2), false);
  const std::vector<HWND> before = FillSlot(v5, V5Map::Slot(0), false);
  v5.WriteName(V5Map::Slot(0), u"Studio");
  v5.Write16(V5Map::Slot(1), 0x00FF);
  CloseMapWindows(u"Studio", u"");
  EXPECT_EQ(ClosedWindows(), before);
}

TEST_F(MapClose, AWindowThatHangsHoldsUpTheRest) {
  sim::Process& hanging = machine.StartProcess(u"C:\\hanging.exe", u"", [](const char16_t*) {
    WindowClass windowClass;
    windowClass.className = u"Hanging";
    windowClass.procedure = [](HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
      if (message == WM_CLOSE) Os().process.Sleep(5000);
      if (message == WM_DESTROY) Os().windowing.PostQuitMessage(0);
      return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
    };
    Os().windowing.RegisterClassW(windowClass);
    Os().windowing.CreateWindowExW(0, u"Hanging", u"", WS_OVERLAPPEDWINDOW, HMODULE{});
    Message message;
    while (Os().windowing.GetMessageW(&message) == 1) Os().windowing.DispatchMessageW(message);
    return 0U;
  });
  Os().process.Sleep(1);
  const std::vector<HWND> windows = FillSlot(v5, V5Map::Slot(1), false);
  v5.Write64(V5Map::Slot(1) + kSel0At,
             static_cast<std::uint64_t>(machine.desktop().FindOf(hanging, u"Hanging")->handle));
  const std::uint64_t start = machine.now();
  CloseMapWindows(u"Studio", u"");
  EXPECT_EQ(machine.now() - start, 5000U);
  EXPECT_EQ(ClosedWindows(), (std::vector<HWND>{windows[1], windows[2]}));
}

TEST_F(MapClose, AllPrintersOfBothMapsAreClosedV7First) {
  std::vector<HWND> expected = FillSlot(v7, V7Map::Slot(1), true);
  for (const HWND window : FillSlot(v5, V5Map::Slot(0), false)) expected.push_back(window);
  for (const HWND window : FillSlot(v5, V5Map::Slot(2), false)) expected.push_back(window);
  CloseAllMapWindows();
  EXPECT_EQ(ClosedWindows(), expected);
}

TEST_F(MapClose, AFreeSlotAndWhatIsBehindTheEndMarkerStayOpen) {
  FillSlot(v5, V5Map::Slot(0), false);
  v5.Write16(V5Map::Slot(0), 0);
  v5.Write16(V5Map::Slot(2), 0x00FF);
  FillSlot(v5, V5Map::Slot(2), false);
  CloseAllMapWindowsV5();
  EXPECT_TRUE(ClosedWindows().empty());
}

TEST_F(MapClose, WithoutASectionOrAViewNothingIsClosed) {
  FillSlot(v5, V5Map::Slot(1), false);
  CloseMapWindowsV5(u"Studio", u"", u"Missing");
  CloseMapWindows(u"Odd Studio", u"");
  inside.process().FailNext("MapViewOfFile", ERROR_NOT_ENOUGH_MEMORY);
  CloseMapWindows(u"Studio", u"");
  inside.process().FailNext("OpenFileMappingW", ERROR_ACCESS_DENIED);
  CloseAllMapWindowsV5();
  EXPECT_TRUE(ClosedWindows().empty());
}

TEST_F(MapClose, NoViewOrSectionIsLeftOpen) {
  FillSlot(v5, V5Map::Slot(1), false);
  FillSlot(v7, V7Map::Slot(2), true);
  // The windows go, and with them their part of the ledger.
  CloseAllMapWindows();
  const std::vector<std::u16string> expected{
      u"section VglV5MapFile_Ink", u"view of VglV5MapFile_Ink", u"section VglV7MapFile_Ink",
      u"view of VglV7MapFile_Ink"};
  EXPECT_EQ(inside.process().Ledger(), expected);
}

// --- Names of maps

TEST_F(InstanceMapTest, TheDriverDataNamesTheMap) {
  PathText name;
  EXPECT_EQ(GetMapFileNameNoDefault(u"V7 Studio", &name), 1);
  EXPECT_EQ(name.view(), u"VglV7MapFile_Ink");
  EXPECT_EQ(GetMapFileName(u"Odd Studio", &name), 16);
  EXPECT_EQ(name.view(), u"VglV6MapFile_Ink");
}

TEST_F(InstanceMapTest, WithoutANameInTheDriverDataItIsV5s) {
  PathText name;
  for (const char16_t* printer : {u"Plain Studio", u"Missing", u""}) {
    EXPECT_EQ(GetMapFileName(printer, &name), 16);
    EXPECT_EQ(name.view(), u"VglV5MapFile_Ink");
    EXPECT_EQ(GetMapFileNameNoDefault(printer, &name), 0);
    EXPECT_TRUE(name.empty());
  }
  EXPECT_EQ(GetMapFileName(nullptr, &name), 16);
}

TEST_F(InstanceMapTest, WhileAnInstallerIsAtWorkEveryPrinterIsInV5s) {
  const OwnedObject installer(
      Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller"));
  PathText name;
  EXPECT_EQ(GetMapFileName(u"V7 Studio", &name), 16);
  EXPECT_EQ(name.view(), u"VglV5MapFile_Ink");
}

TEST_F(InstanceMapTest, ANullOutputGivesZero) {
  EXPECT_EQ(GetMapFileName(u"V7 Studio", nullptr), 0);
  EXPECT_EQ(GetMapFileNameNoDefault(u"V7 Studio", nullptr), 0);
}

TEST_F(InstanceMapTest, AMapNameOf260CharactersIsNone) {
  machine.files().WriteFile(u"C:\\Drivers\\V7 Studio\\A.DAT",
                            "[Install]\nREGPATH=D,\"HKEY_LOCAL_"
                            "MACHINE\\Software\\KAVRO\\VGL3\\Driver\\KAVRO V7 Studio\"\n"
                            "REGENTER=D,\"MapFileName\",\"" +
                                std::string(260, 'm') + "\"\n");
  PathText name;
  EXPECT_EQ(GetMapFileNameNoDefault(u"V7 Studio", &name), 0);
  EXPECT_EQ(GetMapFileName(u"V7 Studio", &name), 16);
}

TEST_F(InstanceMapTest, AMapNameInAnotherCaseIsKnownButIsAnotherSection) {
  machine.files().WriteFile(u"C:\\Drivers\\V7 Studio\\A.DAT",
                            "[Install]\nREGPATH=D,\"HKEY_LOCAL_"
                            "MACHINE\\Software\\KAVRO\\VGL3\\Driver\\KAVRO V7 Studio\"\n"
                            "REGENTER=D,\"MapFileName\",\"VGLV7MAPFILE_INK\"\n");
  HWND other{};
  HANDLE section{};
  EXPECT_EQ(MultiExecuteCheck(u"V7 Studio", u"", 0, 0, &other, &section), 0);
  EXPECT_TRUE(machine.objects().Exists(u"VGLV7MAPFILE_INK"));
  EXPECT_FALSE(machine.objects().Exists(u"VglV7MapFile_Ink"));
  Os().objects.CloseHandle(section);
}

// --- A section for everybody

TEST_F(InstanceMapTest, ASecuredSectionLetsTheSystemAndEveryoneDoEverything) {
  const OwnedObject section(
      CreateSecuredMapping(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 1000, u"Secured"));
  ASSERT_TRUE(section);
  EXPECT_EQ(inside.process().Ledger(), std::vector<std::u16string>{u"section Secured"});
  // A list of two entries, each allowing 0xF003F: first to the system, then to everyone.
  const std::string list(
      "\x02\x00\x30\x00\x02\x00\x00\x00"
      "\x00\x00\x14\x00\x3F\x00\x0F\x00\x01\x01\x00\x00\x00\x00\x00\x05\x12\x00\x00\x00"
      "\x00\x00\x14\x00\x3F\x00\x0F\x00\x01\x01\x00\x00\x00\x00\x00\x01\x00\x00\x00\x00",
      48);
  EXPECT_EQ(machine.objects().DaclOf(u"Secured"), list);
}

TEST_F(InstanceMapTest, TheAgentsOwnSectionHasDefaultSecurity) {
  const OwnedObject section(CreateMapV5(u"VglV5MapFile_Ink"));
  EXPECT_EQ(machine.objects().DaclOf(u"VglV5MapFile_Ink"), std::nullopt);
}

// How many calls it took; the `failing`th fails.
std::uint64_t MakeSecuredSection(std::uint64_t failing, int& failures) {
  sim::Machine machine;
  sim::Inside inside(machine);
  inside.process().FailCall(failing);
  const OwnedObject section(
      CreateSecuredMapping(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 1000, u"Secured"));
  const std::string& failed = inside.process().failedOperation();
  EXPECT_EQ(!section, !failed.empty()) << failed;
  EXPECT_EQ(inside.process().Ledger().size(), failed.empty() ? 1U : 0U) << failed;
  failures += failed.empty() ? 0 : 1;
  return inside.process().calls();
}

TEST(SecuredSection, IsNoneWhereAnyStepFails) {
  int failures = 0;
  const std::uint64_t calls = MakeSecuredSection(0, failures);
  for (std::uint64_t failing = 1; failing <= calls; ++failing)
    MakeSecuredSection(failing, failures);
  // Two identities, a list with two entries, a descriptor with its list, the section.
  EXPECT_EQ(failures, 8);
}

}  // namespace
}  // namespace vgl
