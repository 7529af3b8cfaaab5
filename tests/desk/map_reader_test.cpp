// The instance map in words.
#include "desk/map_reader.h"

#include <gtest/gtest.h>

#include "platform/sim/machine.h"
#include "tests/support/map_fixture.h"

namespace desk {
namespace {

using vgl::V5Map;
using vgl::V7Map;
using Lines = std::vector<std::string>;

std::string Number(std::uint64_t window) { return "window " + std::to_string(window); }

class MapInWords : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
};

TEST_F(MapInWords, WithoutASectionThereAreNoLines) {
  EXPECT_EQ(ReadMap(kMapForms[0], Number), Lines{});
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(MapInWords, OfNeitherSectionItIsToldThatThereIsNoMap) {
  EXPECT_EQ(ReadMaps(Number), Lines{"no map"});
}

TEST_F(MapInWords, BothMapsStandOneBehindTheOther) {
  V7Map seven;
  seven.Write16(V7Map::Slot(0), 0x00FF);
  EXPECT_EQ(ReadMaps(Number), Lines{"VglV7MapFile_Ink 0: end"});
  V5Map five;
  five.Write16(V5Map::Slot(0), 0x00FF);
  EXPECT_EQ(ReadMaps(Number), (Lines{"VglV5MapFile_Ink 0: end", "VglV7MapFile_Ink 0: end"}));
}

TEST_F(MapInWords, ASectionThatCantBeSeenWholeIsToldWithTheError) {
  const vgl::MapBytes small(u"VglV5MapFile_Ink", 1066);
  EXPECT_EQ(ReadMaps(Number), Lines{"VglV5MapFile_Ink can't be seen, error 5"});
  EXPECT_EQ(inside.process().Ledger().size(), 2U);  // handle and view of `small`
}

TEST_F(MapInWords, ANameOfSomethingElseIsToldWithTheError) {
  const platform::OwnedObject mutex(
      platform::Os().objects.CreateMutexW(nullptr, false, u"VglV7MapFile_Ink"));
  EXPECT_EQ(ReadMaps(Number), Lines{"VglV7MapFile_Ink can't be opened, error 6"});
}

TEST_F(MapInWords, ASlotIsItsNameAndItsWindows) {
  V5Map map;
  map.WriteName(V5Map::Slot(0), u"St\u00FCdio");
  map.Write64(V5Map::Slot(0) + vgl::kSel3At, 7);
  map.Write64(V5Map::Slot(0) + vgl::kSel12At, 12);
  map.WriteName(V5Map::Slot(1), u"Gone");
  map.Write16(V5Map::Slot(1), 0);
  map.WriteName(V5Map::Slot(2), u"Starting");
  map.Write64(V5Map::Slot(2) + vgl::kSel3At, vgl::kClaimed);
  map.Write64(V5Map::Slot(2) + vgl::kSel0At, 0x1234567890);
  map.Write16(V5Map::Slot(3), 0x00FF);
  map.WriteName(V5Map::Slot(4), u"behind the end");
  EXPECT_EQ(ReadMap(kMapForms[0], Number),
            (Lines{"VglV5MapFile_Ink 0: St\xC3\xBC"
                   "dio, window 7, Sel12 window 12",
                   "VglV5MapFile_Ink 1: free",
                   "VglV5MapFile_Ink 2: Starting, starting, Sel0 window 78187493520",
                   "VglV5MapFile_Ink 3: end"}));
}

TEST_F(MapInWords, AV7SlotHasAFourthWindow) {
  V7Map map;
  map.WriteName(V7Map::Slot(0), u"Studio");
  map.Write64(V7Map::Slot(0) + vgl::kSel5At, 5);
  map.Write16(V7Map::Slot(1), 0x00FF);
  EXPECT_EQ(ReadMap(kMapForms[1], Number),
            (Lines{"VglV7MapFile_Ink 0: Studio, Sel5 window 5", "VglV7MapFile_Ink 1: end"}));
}

TEST_F(MapInWords, WithoutAnEndMarkerItEndsWithItsLastSlot) {
  EXPECT_EQ(MapLines(kMapForms[0], {}, Number).size(), 500U);
  EXPECT_EQ(MapLines(kMapForms[0], {}, Number).back(), "VglV5MapFile_Ink 499: free");
}

}  // namespace
}  // namespace desk
