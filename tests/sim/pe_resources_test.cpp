// What is found in the bytes of a program file, whole and tampered with.
#include "platform/sim/pe_resources.h"

#include "tests/sim/resource_file.h"

namespace sim {
namespace {

constexpr std::uint16_t kGerman = 0x0407;
constexpr std::uint16_t kEnglish = 0x0409;
constexpr std::uint16_t kBritish = 0x0809;
constexpr std::uint16_t kJapanese = 0x0411;
constexpr std::uint16_t kHebrew = 0x040D;

// Places in KVRES.DLL, as the linker made it.
constexpr std::size_t kHeaderPlace = 0x3C;  // holds where the header is
constexpr std::size_t kHeader = 0x80;
constexpr std::size_t kProcessor = kHeader + 4;
constexpr std::size_t kSectionCount = kHeader + 6;
constexpr std::size_t kOptionalSize = kHeader + 20;
constexpr std::size_t kCharacteristics = kHeader + 22;
constexpr std::size_t kMagic = kHeader + 24;
constexpr std::size_t kDirectoryCount = kMagic + 108;
constexpr std::size_t kResourceAddress = kMagic + 112 + 16;
constexpr std::size_t kResources = 0xA00;  // the directory in the file

std::u16string Text(const std::string& file, std::uint16_t id, std::uint16_t language = kEnglish) {
  const auto read = PeFile::Read(file);
  return read == nullptr ? u"no program file" : FindString(*read, id, language);
}

std::optional<Picture> Icon(const std::string& file, std::uint16_t id, std::uint32_t size) {
  return FindIcon(*PeFile::Read(file), id, size, size, kEnglish);
}
std::optional<Picture> Bitmap(const std::string& file, std::uint16_t id) {
  return FindBitmap(*PeFile::Read(file), id, kEnglish);
}

// --- The file

TEST(PeResources, TheFilesPlacesAreWhatThisTestTakesThemFor) {
  const std::string file = ResourceFile();
  EXPECT_EQ(file.substr(kHeaderPlace, 4), Bytes(kHeader));
  EXPECT_EQ(file.substr(kHeader, 4), std::string("PE\0\0", 4));
  EXPECT_EQ(file.substr(kProcessor, 2), Bytes(0x8664, 2));
  EXPECT_EQ(file.substr(kMagic, 2), Bytes(0x20B, 2));
  EXPECT_EQ(file.substr(kDirectoryCount, 4), Bytes(16));
  EXPECT_EQ(file.substr(kResources + 14, 2), Bytes(5, 2));  // types of resources
}

TEST(PeResources, AFileOfAnyProcessorIsRead) {
  EXPECT_EQ(Text(With(ResourceFile(), kProcessor, Bytes(0xAA64, 2)), 1100), u"First");
}

TEST(PeResources, AFileFor32BitsIsRead) {
  // Its table of directories begins 16 bytes earlier.
  std::string file = With(ResourceFile(), kMagic, Bytes(0x10B, 2));
  file = With(file, kDirectoryCount - 16, Bytes(16));
  file = With(file, kResourceAddress - 16, file.substr(kResourceAddress, 4));
  EXPECT_EQ(Text(file, 1100), u"First");
}

TEST(PeResources, WhatIsNoProgramFileIsNotRead) {
  const std::string file = ResourceFile();
  const std::string none[] = {
      "",
      "MZ",
      std::string(1000, 'M'),
      With(file, 0, "ZM"),
      With(file, kHeaderPlace, Bytes(0x7FFFFFFF)),
      With(file, kHeaderPlace, Bytes(0xFFFFFFFF)),
      With(file, kHeader, "NE"),
      With(file, kMagic, Bytes(0x107, 2)),
      With(file, kCharacteristics, Bytes(0x2000, 2)),  // not executable
      With(file, kSectionCount, Bytes(0xFFFF, 2)),
      With(file, kOptionalSize, Bytes(0xFFFF, 2)),
  };
  for (const std::string& bytes : none) EXPECT_EQ(PeFile::Read(bytes), nullptr);
}

TEST(PeResources, AFileThatIsCutIsReadWhenNoWholeSectorIsMissing) {
  const std::string file = ResourceFile();
  ASSERT_EQ(file.size() % 512, 0u);
  EXPECT_EQ(Text(file.substr(0, file.size() - 1), 1100), u"First");
  EXPECT_EQ(Text(file.substr(0, file.size() - 511), 1100), u"First");
  EXPECT_EQ(PeFile::Read(file.substr(0, file.size() - 512)), nullptr);
}

TEST(PeResources, AFileMayHaveNoResources) {
  const std::string file = ResourceFile();
  EXPECT_EQ(Text(With(file, kDirectoryCount, Bytes(2)), 1100), u"");
  EXPECT_EQ(Text(With(file, kResourceAddress, Bytes(0)), 1100), u"");
  EXPECT_EQ(Text(With(file, kResourceAddress, Bytes(0xFFFFFFF0)), 1100), u"");
}

// --- Its directory

TEST(PeResources, ADirectoryThatIsTamperedWithHoldsNothing) {
  const std::string file = ResourceFile();
  // Types of resources, one behind the other: bitmaps, icons, menus, texts.
  constexpr std::size_t kTexts = kResources + 16 + 24;
  ASSERT_EQ(file.substr(kTexts, 4), Bytes(6));
  for (const std::uint32_t target :
       {0x80000000u, 0xFFFFFFFFu, 0x80FFFFFFu, 0u, 0x20u, 0x7FFFFFFFu}) {
    EXPECT_EQ(Text(With(file, kTexts + 4, Bytes(target)), 1100), u"") << target;
  }
  EXPECT_EQ(Text(With(file, kTexts, Bytes(7)), 1100), u"");
  EXPECT_EQ(Text(With(file, kResources + 14, Bytes(0, 2)), 1100), u"");
  EXPECT_EQ(Text(With(file, kResources + 12, Bytes(0xFFFF, 2)), 1100), u"");
}

TEST(PeResources, DataOutsideTheFileIsNone) {
  const std::string file = ResourceFile();
  const auto read = PeFile::Read(file);
  const std::string_view menu = FindResource(*read, ResourceType::kMenu, 801, kEnglish);
  const auto address = static_cast<std::uint32_t>(0x4000 + (PlaceOf(file, menu) - kResources));
  const std::size_t entry =
      PlaceOf(file, Bytes(address) + Bytes(static_cast<std::uint32_t>(menu.size())));
  const auto find = [](const std::string& bytes) {
    return std::string(FindResource(*PeFile::Read(bytes), ResourceType::kMenu, 801, kEnglish));
  };
  EXPECT_EQ(find(file), menu);
  EXPECT_EQ(find(With(file, entry, Bytes(0xFFFFFFFF))), "");
  EXPECT_EQ(find(With(file, entry, Bytes(0))), "");
  EXPECT_EQ(find(With(file, entry + 4, Bytes(0xFFFFFFFF))), "");
  EXPECT_EQ(find(With(file, entry + 4, Bytes(0x10000))), "");
}

TEST(PeResources, OneWithANameIsPassedOver) {
  const auto read = PeFile::Read(ResourceFile());
  EXPECT_NE(FindResource(*read, ResourceType::kMenu, 801, kEnglish), "");
  EXPECT_EQ(FindResource(*read, ResourceType::kMenu, 0, kEnglish), "");
}

TEST(PeResources, TheLanguageIsTheNeutralOneThenTheUsersThenEnglishThenAny) {
  const std::string file = ResourceFile();
  struct Row {
    std::uint16_t id;
    std::uint16_t language;
    const char16_t* text;
  };
  for (const Row& row : {
           Row{2000, kGerman, u"neutral"},
           Row{2016, kGerman, u"deutsch"},
           Row{2016, kEnglish, u"English"},
           Row{2016, kHebrew, u"English"},
           Row{2048, kGerman, u"deutsch"},
           Row{2048, kBritish, u"English, wherever"},
           Row{2048, kHebrew, u"English, wherever"},  // the first, 0x0009
           Row{2032, kJapanese, u"\u65E5\u672C\u8A9E"},
           Row{2032, kHebrew, u"deutsch"},
       }) {
    EXPECT_EQ(Text(file, row.id, row.language), row.text) << row.id << " " << row.language;
  }
}

// --- Texts

TEST(PeResources, ATextThatIsLongerThanItsTableIsNone) {
  const std::string file = ResourceFile();
  const std::size_t place = PlaceOf(file, std::string("\5\0F\0i\0r\0s\0t\0", 12));
  EXPECT_EQ(Text(With(file, place, Bytes(4, 2)), 1100), u"Firs");
  EXPECT_EQ(Text(With(file, place, Bytes(0xFFFF, 2)), 1100), u"");
  EXPECT_EQ(Text(With(file, place, Bytes(0xFFFF, 2)), 1103), u"");
}

// --- Icons

TEST(PeResources, OfAnIconsPicturesTheNearestInSizeIsTaken) {
  const std::string file = ResourceFile();
  struct Row {
    std::uint32_t asked;
    std::uint32_t given;
    std::uint16_t bits;
  };
  for (const Row& row : {Row{16, 16, 32}, Row{1, 16, 32}, Row{20, 16, 32}, Row{30, 32, 8},
                         Row{32, 32, 8}, Row{48, 48, 32}, Row{256, 48, 32}}) {
    const auto icon = Icon(file, 700, row.asked);
    ASSERT_TRUE(icon) << row.asked;
    EXPECT_EQ(icon->width, row.given) << row.asked;
    EXPECT_EQ(icon->height, row.given) << row.asked;
    EXPECT_EQ(icon->bitsPerPixel, row.bits) << row.asked;
    EXPECT_EQ(icon->isPng, row.given == 48) << row.asked;
  }
}

TEST(PeResources, AnIconHasThePicturesBytes) {
  const std::string file = ResourceFile();
  EXPECT_EQ(Icon(file, 700, 48)->bytes.substr(1, 3), "PNG");
  EXPECT_EQ(Icon(file, 701, 16)->bitsPerPixel, 1);
  // A header, a palette of two, and 16 rows of 4 bytes for the picture and for its mask.
  EXPECT_EQ(Icon(file, 701, 16)->bytes.size(), 40u + 8 + 64 + 64);
  EXPECT_EQ(Icon(file, 702, 16)->bitsPerPixel, 24);
  EXPECT_EQ(Icon(file, 702, 16)->bytes.size(), 40u + 16 * 48 + 64);
}

TEST(PeResources, AnIconThatIsTamperedWithIsNone) {
  const std::string file = ResourceFile();
  const std::size_t header = PlaceOf(file, Icon(file, 702, 16)->bytes);
  EXPECT_FALSE(Icon(With(file, header, Bytes(16)), 702, 16));          // size of the header
  EXPECT_FALSE(Icon(With(file, header, Bytes(0xFFFFFFFF)), 702, 16));  //
  EXPECT_FALSE(Icon(With(file, header + 4, Bytes(0)), 702, 16));       // width
  EXPECT_FALSE(Icon(With(file, header + 4, Bytes(17)), 702, 16));      //
  EXPECT_FALSE(Icon(With(file, header + 4, Bytes(0x7FFFFFFF)), 702, 16));
  EXPECT_FALSE(Icon(With(file, header + 4, Bytes(0xFFFFFFFF)), 702, 16));
  EXPECT_FALSE(Icon(With(file, header + 8, Bytes(1)), 702, 16));  // height of both parts
  EXPECT_FALSE(Icon(With(file, header + 8, Bytes(0x80000000)), 702, 16));
  EXPECT_FALSE(Icon(With(file, header + 14, Bytes(25, 2)), 702, 16));  // bits
  const std::size_t png = PlaceOf(file, Icon(file, 700, 48)->bytes);
  EXPECT_FALSE(Icon(With(file, png + 16, Bytes(0)), 700, 48));     // width
  EXPECT_FALSE(Icon(With(file, png + 25, Bytes(9, 1)), 700, 48));  // type of colours
  EXPECT_FALSE(Icon(With(file, png + 25, Bytes(1, 1)), 700, 48));  // one that isn't there
  EXPECT_FALSE(Icon(With(file, png, Bytes(0)), 700, 48));          // neither kind
}

TEST(PeResources, AnIconWhosePictureIsMissingIsNone) {
  const std::string file = ResourceFile();
  const auto read = PeFile::Read(file);
  const std::string_view group = FindResource(*read, ResourceType::kIconGroup, 702, kEnglish);
  ASSERT_EQ(group.size(), 20u);
  const std::size_t place = PlaceOf(file, group);
  EXPECT_FALSE(Icon(With(file, place + 18, Bytes(999, 2)), 702, 16));
  EXPECT_FALSE(Icon(With(file, place + 4, Bytes(0, 2)), 702, 16));      // none in the group
  EXPECT_TRUE(Icon(With(file, place + 4, Bytes(0xFFFF, 2)), 702, 16));  // more than there are
}

// --- Bitmaps

TEST(PeResources, ABitmapHasItsSizeAndColors) {
  const std::string file = ResourceFile();
  const auto wide = Bitmap(file, 924);
  ASSERT_TRUE(wide);
  EXPECT_EQ(wide->width, 20u);
  EXPECT_EQ(wide->height, 9u);
  EXPECT_EQ(wide->bitsPerPixel, 4);
  EXPECT_EQ(Bitmap(file, 920)->bitsPerPixel, 1);
  EXPECT_EQ(Bitmap(file, 922)->bitsPerPixel, 8);
  EXPECT_EQ(Bitmap(file, 923)->bitsPerPixel, 24);
}

TEST(PeResources, ABitmapMayRunFromTopToBottom) {
  const std::string file = ResourceFile();
  const std::size_t header = PlaceOf(file, Bytes(40) + Bytes(20) + Bytes(9));
  const auto wide = Bitmap(With(file, header + 8, Bytes(0xFFFFFFF7)), 924);
  ASSERT_TRUE(wide);
  EXPECT_EQ(wide->height, 9u);
}

TEST(PeResources, ABitmapThatIsTamperedWithIsNone) {
  const std::string file = ResourceFile();
  const std::size_t header = PlaceOf(file, Bytes(40) + Bytes(20) + Bytes(9));
  EXPECT_FALSE(Bitmap(With(file, header, Bytes(39)), 924));
  EXPECT_FALSE(Bitmap(With(file, header, Bytes(0x7FFFFFFF)), 924));
  EXPECT_FALSE(Bitmap(With(file, header + 4, Bytes(0)), 924));
  EXPECT_FALSE(Bitmap(With(file, header + 8, Bytes(0)), 924));
  EXPECT_FALSE(Bitmap(With(file, header + 8, Bytes(10)), 924));
  EXPECT_FALSE(Bitmap(With(file, header + 14, Bytes(0, 2)), 924));
  EXPECT_FALSE(Bitmap(With(file, header + 14, Bytes(8, 2)), 924));
  EXPECT_FALSE(Bitmap(With(file, header + 32, Bytes(0xFFFFFFFF)), 924));  // colours
  // Sizes whose sum is more than 64 bits hold.
  const std::string sides = Bytes(0x7FFFFFFF) + Bytes(0x80000000) + Bytes(1, 2) + Bytes(32, 2);
  EXPECT_FALSE(Bitmap(With(With(file, header + 4, sides), header + 32, Bytes(0x7FFFFFFF)), 924));
}

}  // namespace
}  // namespace sim
