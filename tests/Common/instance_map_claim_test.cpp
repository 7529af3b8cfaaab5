// How an agent that starts finds another one or claims a slot, byte for byte.
#include "Common/instance_map.h"
#include "tests/support/map_fixture.h"

namespace vgl {
namespace {

using namespace platform;

class MapClaim : public InstanceMapTest {
 protected:
  // As an agent starts; its section stays open.
  std::int32_t Check(const char16_t* printer, const char16_t* port = u"") {
    HANDLE section{};
    const std::int32_t result = MultiExecuteCheck(printer, port, 0, 0, &other, &section);
    if (section != HANDLE{}) sections.emplace_back(section);
    return result;
  }

  HWND other{};
  std::vector<OwnedObject> sections;
};

TEST_F(MapClaim, TheFirstAgentOfTheMachineMakesTheSection) {
  EXPECT_EQ(Check(u"Studio", u"USB001"), 0);
  V5Map map;
  // Slot 0 has the name and the claim, slot 1 the end marker; the rest is zeros.
  std::string expected(533000, '\0');
  expected.replace(0, 12, std::string("S\0t\0u\0d\0i\0o\0", 12));
  expected.replace(1058, 8, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF");
  expected.replace(1066, 1, "\xFF");
  EXPECT_TRUE(map.Read(0, 533000) == expected);
}

TEST_F(MapClaim, ANewSectionIsOneEndMarker) {
  const OwnedObject section(CreateMapV5(u"VglV5MapFile_Ink"));
  V5Map map;
  EXPECT_TRUE(map.Read(0, 533000) == "\xFF" + std::string(532999, '\0'));
}

TEST_F(MapClaim, AnExistingSectionKeepsItsContents) {
  V7Map map;
  map.WriteName(V7Map::Slot(0), u"Other");
  const OwnedObject section(CreateMapV7(u"VglV7MapFile_Ink"));
  EXPECT_TRUE(section);
  EXPECT_EQ(map.ReadName(V7Map::Slot(0)), u"Other");
}

TEST_F(MapClaim, ThePrintersDriverDataChoosesTheMap) {
  EXPECT_EQ(Check(u"V7 Studio"), 0);
  EXPECT_EQ(Check(u"Plain Studio"), 0);
  V7Map v7;
  V5Map v5;
  EXPECT_EQ(v7.ReadName(V7Map::Slot(0)), u"V7 Studio");
  EXPECT_EQ(v7.Read16(V7Map::Slot(1)), 0x00FF);
  EXPECT_EQ(v5.ReadName(V5Map::Slot(0)), u"Plain Studio");
  EXPECT_EQ(v5.Read16(V5Map::Slot(1)), 0x00FF);
}

TEST_F(MapClaim, AnUnknownMapNameIsAFailureWithoutASection) {
  HANDLE section{77};
  EXPECT_EQ(MultiExecuteCheck(u"Odd Studio", u"", 0, 0, &other, &section), 2);
  EXPECT_EQ(section, HANDLE{});
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(MapClaim, WithoutAnOutputNothingIsLookedAt) {
  HANDLE section{77};
  const std::uint64_t calls = inside.process().calls();
  EXPECT_EQ(MultiExecuteCheck(u"Studio", u"", 0, 0, nullptr, &section), 2);
  EXPECT_EQ(MultiExecuteCheck(u"Studio", u"", 0, 0, &other, nullptr), 2);
  EXPECT_EQ(inside.process().calls(), calls);
  EXPECT_EQ(section, HANDLE{77});
}

TEST_F(MapClaim, AnEmptyOrNullPrinterNameGoesByThePort) {
  EXPECT_EQ(Check(u"", u"USB001"), 0);
  EXPECT_EQ(Check(nullptr, u"LPT1"), 0);
  V5Map map;
  EXPECT_EQ(map.ReadName(V5Map::Slot(0)), u"USB001");
  EXPECT_EQ(map.ReadName(V5Map::Slot(1)), u"LPT1");
}

TEST_F(MapClaim, ASlotWithoutAWindowIsClaimed) {
  V5Map map;
  map.WriteName(0, u"Studio");
  map.Write64(kSel0At, 0x1234);
  map.Write16(V5Map::Slot(1), 0x00FF);
  EXPECT_EQ(Check(u"Studio"), 0);
  EXPECT_EQ(map.Read64(kSel3At), kClaimed);
  EXPECT_EQ(map.Read64(kSel0At), 0x1234U);  // of another program
}

TEST_F(MapClaim, ADeadWindowIsTakenOver) {
  V5Map map;
  map.WriteName(0, u"Studio");
  map.Write16(V5Map::Slot(1), 0x00FF);
  map.Write64(kSel3At, 0x1234);
  EXPECT_EQ(Check(u"Studio"), 0);
  EXPECT_EQ(map.Read64(kSel3At), kClaimed);
}

TEST_F(MapClaim, AClaimLeftByACrashedAgentIsTakenOver) {
  V5Map map;
  map.WriteName(0, u"Studio");
  map.Write16(V5Map::Slot(1), 0x00FF);
  map.Write64(kSel3At, kClaimed);
  EXPECT_EQ(Check(u"Studio"), 0);
  EXPECT_EQ(map.Read64(kSel3At), kClaimed);
}

TEST_F(MapClaim, ALivingWindowIsTheOtherAgent) {
  const HWND window = MakeWindow();
  V7Map map;
  map.WriteName(0, u"V7 Studio");
  map.Write16(V7Map::Slot(1), 0x00FF);
  map.Write64(kSel3At, static_cast<std::uint64_t>(window));
  EXPECT_EQ(Check(u"V7 Studio"), 1);
  EXPECT_EQ(other, window);
  EXPECT_EQ(map.Read64(kSel3At), static_cast<std::uint64_t>(window));
}

TEST_F(MapClaim, NamesThatDifferInCaseAreTheSamePrinter) {
  const HWND window = MakeWindow();
  V5Map map;
  map.WriteName(0, u"STÜDIO a");
  map.Write16(V5Map::Slot(1), 0x00FF);
  map.Write64(kSel3At, static_cast<std::uint64_t>(window));
  EXPECT_EQ(Check(u"Stüdio A"), 1);
}

TEST_F(MapClaim, AFreeSlotIsTakenBeforeTheEndMarkerMoves) {
  V5Map map;
  map.WriteName(V5Map::Slot(0), u"First");
  map.WriteName(V5Map::Slot(1), u"Second");
  map.Write16(V5Map::Slot(1), 0);  // freed: the rest of the name stays in place
  map.Write16(V5Map::Slot(1) + kReservedAt, 0xABCD);
  map.Write64(V5Map::Slot(1) + kSel12At, 1);
  map.Write64(V5Map::Slot(1) + kSel0At, 2);
  map.WriteName(V5Map::Slot(2), u"Third");
  map.Write16(V5Map::Slot(3), 0x00FF);
  EXPECT_EQ(Check(u"New"), 0);
  EXPECT_EQ(map.ReadName(V5Map::Slot(1)), u"New");
  EXPECT_EQ(map.Read16(V5Map::Slot(1) + kReservedAt), 0);
  EXPECT_EQ(map.Read64(V5Map::Slot(1) + kSel12At), 0U);
  EXPECT_EQ(map.Read64(V5Map::Slot(1) + kSel0At), 0U);
  EXPECT_EQ(map.Read64(V5Map::Slot(1) + kSel3At), kClaimed);
  EXPECT_EQ(map.Read16(V5Map::Slot(3)), 0x00FF);
  EXPECT_EQ(map.Read16(V5Map::Slot(4)), 0);
}

TEST_F(MapClaim, WhatStoodBehindACopiedNameStays) {
  V5Map map;
  map.WriteName(0, u"Longer Name");
  map.Write16(0, 0);
  map.Write16(V5Map::Slot(1), 0x00FF);
  EXPECT_EQ(Check(u"New"), 0);
  EXPECT_EQ(map.Read(0, 24), std::string("N\0e\0w\0\0\0e\0r\0 \0N\0a\0m\0e\0\0\0", 24));
}

TEST_F(MapClaim, TheReservedBytesOfAV7SlotAreNeverTouched) {
  V7Map map;
  map.WriteName(0, u"Old");
  map.Write16(0, 0);
  map.Write(1042, std::string(52, '\x5A'));
  map.Write16(V7Map::Slot(1), 0x00FF);
  EXPECT_EQ(Check(u"V7 Studio"), 0);
  EXPECT_EQ(map.Read(1042, 52), std::string(16, '\0') + std::string(8, '\xFF') +
                                    std::string(8, '\0') + std::string(20, '\x5A'));
}

TEST_F(MapClaim, AV5ClaimClearsNothingBehindItsThreeWindows) {
  V5Map map;
  map.Write(1042, std::string(24, '\x5A'));
  map.Write16(0, 0x00FF);
  map.Write16(V5Map::Slot(1) + 2, 0x5A5A);  // behind the next slot's first character
  EXPECT_EQ(Check(u"Studio"), 0);
  EXPECT_EQ(map.Read(1042, 24), std::string(16, '\0') + std::string(8, '\xFF'));
  EXPECT_EQ(map.Read16(V5Map::Slot(1)), 0x00FF);
  EXPECT_EQ(map.Read16(V5Map::Slot(1) + 2), 0x5A5A);
}

TEST_F(MapClaim, ANameOf519CharactersFits) {
  const std::u16string name(519, u'n');
  EXPECT_EQ(Check(name.c_str()), 0);
  V5Map map;
  EXPECT_EQ(map.ReadName(0), name);
  EXPECT_EQ(map.Read16(1038), 0);
}

TEST_F(MapClaim, ANameOf520CharactersIsAFailureThatLeavesTheSlotAsItWas) {
  V5Map map;
  map.WriteName(0, u"Old");
  map.Write16(0, 0);
  map.Write64(kSel12At, 7);
  map.Write16(V5Map::Slot(1), 0x00FF);
  const std::string before = map.Read(0, 533000);
  const std::u16string name(520, u'n');
  HANDLE section{};
  EXPECT_EQ(MultiExecuteCheck(name.c_str(), u"", 0, 0, &other, &section), 2);
  EXPECT_NE(section, HANDLE{});
  EXPECT_FALSE(Os().objects.CloseHandle(section));  // it is closed already
  EXPECT_TRUE(map.Read(0, 533000) == before);
}

TEST_F(MapClaim, TheFiveHundredthSlotPutsTheEndMarkerOutsideTheDeclaredSection) {
  V5Map map;
  for (std::size_t i = 0; i < 499; ++i)
    map.WriteName(V5Map::Slot(i), u"Printer " + std::u16string(1, char16_t(0x4E00 + i)));
  map.Write16(V5Map::Slot(499), 0x00FF);
  EXPECT_EQ(Check(u"Last"), 0);
  EXPECT_EQ(map.ReadName(V5Map::Slot(499)), u"Last");
  EXPECT_EQ(map.Read64(V5Map::Slot(499) + kSel3At), kClaimed);
  // 533000 bytes are 131 pages and room for 536576: the marker stands in what is left of them.
  EXPECT_EQ(map.Read16(533000), 0x00FF);
}

TEST_F(MapClaim, TheFiveHundredthSlotIsAFailureWhereTheViewIsRefused) {
  V7Map map;
  for (std::size_t i = 0; i < 499; ++i)
    map.WriteName(V7Map::Slot(i), u"Printer " + std::u16string(1, char16_t(0x4E00 + i)));
  map.Write16(V7Map::Slot(499), 0x00FF);
  const HANDLE section = CreateMapV7(u"VglV7MapFile_Ink");
  // The scan: 500 views and 499 comparisons. The walk: 499 comparisons, the view given back, and
  // the one that is to reach further.
  inside.process().FailCall(500 + 499 + 499 + 1 + 1);
  EXPECT_EQ(CheckMapPrinterV7(section, u"Last", 0, 0, &other), 2);
  EXPECT_EQ(inside.process().failedOperation(), "MapViewOfFile");
  EXPECT_EQ(map.Read16(V7Map::Slot(499)), 0x00FF);
  EXPECT_FALSE(Os().objects.CloseHandle(section));
}

TEST_F(MapClaim, AFullMapClaimsNothingAndLetsTheAgentGoOn) {
  V5Map map;
  for (std::size_t i = 0; i < 500; ++i)
    map.WriteName(V5Map::Slot(i), u"Printer " + std::u16string(1, char16_t(0x4E00 + i)));
  const std::string before = map.Read(0, 533000);
  EXPECT_EQ(Check(u"One more"), 0);
  EXPECT_TRUE(map.Read(0, 533000) == before);
}

TEST_F(MapClaim, ANameThatDoesntFitLeavesTheEndMarkerWhereItIs) {
  V5Map map;
  map.Write16(0, 0x00FF);
  const std::string before = map.Read(0, 533000);
  const std::u16string name(520, u'n');
  EXPECT_EQ(CheckMapPrinterV5(CreateMapV5(u"VglV5MapFile_Ink"), name.c_str(), 0, 0, &other), 2);
  EXPECT_TRUE(map.Read(0, 533000) == before);
}

// A moment between a section's making and its first marker shows it so.
TEST_F(MapClaim, ASectionOfZerosHasNoSlotToClaim) {
  V5Map map;
  EXPECT_EQ(Check(u"Studio"), 0);
  EXPECT_TRUE(map.Read(0, 533000) == std::string(533000, '\0'));
  EXPECT_EQ(SethWindow(u"Studio", u"", HWND{5}), 1);
}

// A free slot has no name either: it is found, and claimed without being in use.
TEST_F(MapClaim, WithoutAnyNameAFreeSlotIsClaimedAndStaysFree) {
  V5Map map;
  map.Write16(V5Map::Slot(1), 0x00FF);
  EXPECT_EQ(Check(u"", u""), 0);
  EXPECT_EQ(map.Read16(0), 0);
  EXPECT_EQ(map.Read64(kSel3At), kClaimed);
  EXPECT_EQ(SethWindow(u"", nullptr, HWND{5}), 0);
  EXPECT_EQ(map.Read64(kSel3At), 5U);
  const HANDLE section = CreateMapV5(u"VglV5MapFile_Ink");
  EXPECT_TRUE(ReleaseMapSlot(section, nullptr, nullptr));
  EXPECT_EQ(map.Read64(kSel3At), 0U);
  Os().objects.CloseHandle(section);
}

TEST_F(MapClaim, ANullNameCountsAsEmptyAndANullOutputIsAFailure) {
  V5Map map;
  map.Write16(0, 0x00FF);
  const HANDLE section = CreateMapV5(u"VglV5MapFile_Ink");
  EXPECT_EQ(CheckMapPrinterV5(section, u"Studio", 0, 0, nullptr), 2);
  EXPECT_EQ(map.Read16(0), 0x00FF);
  EXPECT_EQ(CheckMapPrinterV5(section, nullptr, 0, 0, &other), 0);
  EXPECT_EQ(map.Read16(V5Map::Slot(1)), 0x00FF);
  Os().objects.CloseHandle(section);
}

// In a section of one page there are views of three slots, and no further.
TEST_F(MapClaim, ViewsReachTheSlotInHandAndNoFurther) {
  MapBytes small(u"VglV5MapFile_Ink", 4096);
  small.WriteName(0, u"First");
  small.Write16(V5Map::Slot(1), 0x00FF);
  const HANDLE section = CreateMapV5(u"VglV5MapFile_Ink");
  EXPECT_EQ(CheckMapPrinterV5(section, u"Second", 0, 0, &other), 0);
  EXPECT_EQ(small.Read16(V5Map::Slot(2)), 0x00FF);
  EXPECT_EQ(SethWindow(u"Second", u"", HWND{5}), 0);
  EXPECT_EQ(small.Read64(V5Map::Slot(1) + kSel3At), 5U);
  EXPECT_EQ(CheckMapPrinterV5(section, u"Third", 0, 0, &other), 2);
}

// Another program claims slots while this one looks, at every offset of the two.
TEST_F(MapClaim, AMarkerThatMovesMeanwhileEndsInAStatedResult) {
  int claimed = 0;
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    sim::Machine races(seed);
    std::int32_t result = -1;
    races.StartProcess(u"C:\\first.exe", u"", [&](const char16_t*) {
      const OwnedObject section(CreateMapV5(u"VglV5MapFile_Ink"));
      HWND window{};
      result = CheckMapPrinterV5(section.get(), u"Studio", 0, 0, &window);
      Os().process.Sleep(100);
      return 0U;
    });
    races.StartProcess(u"C:\\second.exe", u"", [&](const char16_t*) {
      const OwnedObject section(CreateMapV5(u"VglV5MapFile_Ink"));
      HWND window{};
      for (const char16_t* name : {u"A", u"B", u"C", u"D"})
        CheckMapPrinterV5(section.get(), name, 0, 0, &window);
      Os().process.Sleep(50);
      V5Map map;
      for (std::size_t slot = 0; slot < 5; ++slot)
        claimed += map.ReadName(V5Map::Slot(slot)) == u"Studio" ? 1 : 0;
      return 0U;
    });
    races.RunFor(1000);
    EXPECT_EQ(result, 0) << "seed " << seed;
  }
  // A claim may be lost to the other program's store; most are not.
  EXPECT_GT(claimed, 30);
}

TEST_F(MapClaim, EarlierViewsOfTheScanStayMapped) {
  V5Map map;
  for (std::size_t i = 0; i < 3; ++i)
    map.WriteName(V5Map::Slot(i), u"Printer " + std::u16string(1, char16_t(u'0' + i)));
  map.Write16(V5Map::Slot(3), 0x00FF);
  const std::size_t before = inside.process().Ledger().size();
  EXPECT_EQ(Check(u"Printer 2"), 0);
  // The section, and the views up to slots 0 and 1.
  EXPECT_EQ(inside.process().Ledger().size(), before + 3);
}

TEST_F(MapClaim, AFailedViewIsAFailureThatClosesTheSection) {
  V5Map map;
  map.WriteName(0, u"Other");
  map.Write16(V5Map::Slot(1), 0x00FF);
  const HANDLE section = CreateMapV5(u"VglV5MapFile_Ink");
  inside.process().FailNext("MapViewOfFile", ERROR_NOT_ENOUGH_MEMORY);
  other = HWND{5};
  EXPECT_EQ(CheckMapPrinterV5(section, u"Studio", 0, 0, &other), 2);
  EXPECT_EQ(other, HWND{});
  EXPECT_FALSE(Os().objects.CloseHandle(section));
}

TEST_F(MapClaim, WithoutAFirstViewThereIsNoSection) {
  inside.process().FailNext("MapViewOfFile", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_EQ(Check(u"Studio"), 2);
  EXPECT_TRUE(sections.empty());
  EXPECT_FALSE(machine.objects().Exists(u"VglV5MapFile_Ink"));
}

TEST_F(MapClaim, WithoutASectionItIsAFailure) {
  inside.process().FailNext("CreateFileMappingW", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_EQ(Check(u"Studio"), 2);
}

TEST_F(MapClaim, ASectionNameThatAnotherKindOfObjectHasIsAFailure) {
  const OwnedObject mutex(Os().objects.CreateMutexW(nullptr, false, u"VglV5MapFile_Ink"));
  EXPECT_EQ(Check(u"Studio"), 2);
}

// A name that begins with U+00FF looks like the end marker to every program of the suite.
TEST_F(MapClaim, ANameThatBeginsWithTheMarkersCharacterEndsTheMap) {
  EXPECT_EQ(Check(u"\u00FFprinter"), 0);
  V5Map map;
  EXPECT_EQ(map.Read64(kSel3At), kClaimed);
  EXPECT_EQ(Check(u"Studio"), 0);
  EXPECT_EQ(map.ReadName(0), u"Studio");
}

TEST_F(MapClaim, ANameWithoutATerminatorIsReadUpToItsField) {
  V5Map map;
  for (std::size_t i = 0; i < 521; ++i) map.Write16(2 * i, u'n');  // on into the reserved field
  map.Write16(V5Map::Slot(1), 0x00FF);
  const std::u16string name(520, u'n');
  EXPECT_EQ(CheckMapPrinterV5(CreateMapV5(u"VglV5MapFile_Ink"), name.c_str(), 0, 0, &other), 0);
  EXPECT_EQ(map.Read64(kSel3At), kClaimed);
}

TEST_F(MapClaim, ARandomSectionEndsInAStatedResult) {
  V5Map map;
  std::uint32_t state = 1;
  std::string noise(536576, '\0');  // to the end of the last page
  for (char& byte : noise) {
    state = state * 1664525 + 1013904223;
    byte = static_cast<char>(state >> 24);
  }
  map.Write(0, noise);
  EXPECT_EQ(Check(u"Studio"), 0);  // no marker, no free slot: full
  EXPECT_TRUE(map.Read(0, 536576) == noise);
}

}  // namespace
}  // namespace vgl
