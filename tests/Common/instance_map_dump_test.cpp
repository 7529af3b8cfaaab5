// The whole section after a script of programs coming and going, against bytes written by hand.
#include "Common/instance_map.h"
#include "tests/support/map_fixture.h"

namespace vgl {
namespace {

using namespace platform;

using MapDump = InstanceMapTest;

std::string Wide(std::string_view ascii) {
  std::string bytes;
  for (const char letter : ascii) bytes += {letter, '\0'};
  return bytes;
}

std::string Zeros(std::size_t count) { return std::string(count, '\0'); }

// What happens to printers "Alpha", "Beta", "Gamma" and "Dee":
//   Alpha's agent starts and publishes its window;
//   Beta's agent starts, publishes, and another program of AppSel 1 sets its own;
//   Gamma's agent starts and hasn't published yet;
//   Alpha's agent ends and frees its slot;
//   Beta's agent ends, and the other program keeps the slot;
//   Dee's agent starts and takes the free slot, behind whose name the end of Alpha's stays.
template <class Claim, class Publish, class Release>
void PlayScript(HANDLE section, const Claim& claim, const Publish& publish, const Release& release,
                MapBytes& map, std::size_t slotBytes, const char16_t* mapName) {
  HWND other{};
  EXPECT_EQ(claim(section, u"Alpha", 0, 0, &other), 0);
  EXPECT_EQ(publish(u"Alpha", u"", HWND{0x0102030405060708}, 0, mapName), 0);
  EXPECT_EQ(claim(section, u"Beta", 0, 0, &other), 0);
  EXPECT_EQ(publish(u"", u"Beta", HWND{0x1112131415161718}, 0, mapName), 0);
  map.Write64(slotBytes + kSel12At, 0x2122232425262728);
  EXPECT_EQ(claim(section, u"Gamma", 0, 0, &other), 0);
  EXPECT_TRUE(release(section, u"ALPHA"));
  EXPECT_TRUE(release(section, u"Beta"));
  EXPECT_EQ(claim(section, u"Dee", 0, 0, &other), 0);
}

TEST_F(MapDump, OfV5) {
  V5Map map;
  map.Write16(0, 0x00FF);
  const OwnedObject section(CreateMapV5(u"VglV5MapFile_Ink"));
  PlayScript(section.get(), CheckMapPrinterV5, SethWindowSubV5, ReleaseMapSlotV5, map, 1066,
             u"VglV5MapFile_Ink");
  const std::string slot0 = Wide("Dee") + Zeros(2) + Wide("a") + Zeros(1030) +  // 1040
                            Zeros(2) + Zeros(8) + Zeros(8) + std::string(8, '\xFF');
  const std::string slot1 =
      Wide("Beta") + Zeros(1034) + std::string("\x28\x27\x26\x25\x24\x23\x22\x21") + Zeros(16);
  const std::string slot2 = Wide("Gamma") + Zeros(1030) + Zeros(18) + std::string(8, '\xFF');
  const std::string expected = slot0 + slot1 + slot2 + "\xFF" + Zeros(533000 - 3 * 1066 - 1);
  ASSERT_EQ(expected.size(), 533000U);
  EXPECT_TRUE(map.Read(0, 533000) == expected);
}

TEST_F(MapDump, OfV7) {
  V7Map map;
  map.Write16(0, 0x00FF);
  const OwnedObject section(CreateMapV7(u"VglV7MapFile_Ink"));
  PlayScript(section.get(), CheckMapPrinterV7, SethWindowSubV7, ReleaseMapSlotV7, map, 1094,
             u"VglV7MapFile_Ink");
  const std::string slot0 = Wide("Dee") + Zeros(2) + Wide("a") + Zeros(1030) +  // 1040
                            Zeros(2) + Zeros(16) + std::string(8, '\xFF') + Zeros(8) + Zeros(20);
  const std::string slot1 = Wide("Beta") + Zeros(1034) +
                            std::string("\x28\x27\x26\x25\x24\x23\x22\x21") + Zeros(24) + Zeros(20);
  const std::string slot2 =
      Wide("Gamma") + Zeros(1030) + Zeros(18) + std::string(8, '\xFF') + Zeros(28);
  const std::string expected = slot0 + slot1 + slot2 + "\xFF" + Zeros(547000 - 3 * 1094 - 1);
  ASSERT_EQ(expected.size(), 547000U);
  EXPECT_TRUE(map.Read(0, 547000) == expected);
}

}  // namespace
}  // namespace vgl
