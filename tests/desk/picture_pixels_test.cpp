// The pixels of pictures, as resource libraries have them and as they may be
// spoilt.
#include "desk/paint/picture_pixels.h"

#include <gtest/gtest.h>

#include <random>

namespace desk {
namespace {

std::string Bytes(std::uint32_t number, std::size_t count) {
  std::string bytes;
  for (; bytes.size() < count; number >>= 8) bytes += static_cast<char>(number & 0xFF);
  return bytes;
}

// A bitmap without file header, and what may be wrong with it.
struct Dib {
  std::uint32_t headerSize = 40;
  std::int32_t width = 2;
  std::int32_t height = 1;
  std::uint16_t bits = 24;
  std::uint32_t compression = 0;
  std::uint32_t coloursUsed = 0;
  std::string behindHeader;  // masks, palette
  std::string rows;

  std::string Header() const {
    std::string bytes = Bytes(headerSize, 4);
    if (headerSize == 12) {
      return bytes + Bytes(static_cast<std::uint32_t>(width), 2) +
             Bytes(static_cast<std::uint32_t>(height), 2) + Bytes(1, 2) + Bytes(bits, 2);
    }
    return bytes + Bytes(static_cast<std::uint32_t>(width), 4) +
           Bytes(static_cast<std::uint32_t>(height), 4) + Bytes(1, 2) + Bytes(bits, 2) +
           Bytes(compression, 4) + std::string(12, '\0') + Bytes(coloursUsed, 4) + Bytes(0, 4);
  }
  std::string Whole() const { return Header() + behindHeader + rows; }
};

std::optional<Image> Pixels(const std::string& bytes, PictureUse use = PictureUse::kBitmap) {
  return PixelsOf({.bytes = bytes}, use);
}

using Row = std::vector<std::uint32_t>;

Row PixelsOfGood(const Dib& dib, PictureUse use = PictureUse::kBitmap) {
  const std::optional<Image> image = Pixels(dib.Whole(), use);
  EXPECT_TRUE(image);
  return image ? image->pixels : Row{};
}

constexpr std::uint32_t kBlack = 0xFF000000;
constexpr std::uint32_t kWhite = 0xFFFFFFFF;
constexpr std::uint32_t kRed = 0xFFFF0000;
constexpr std::uint32_t kGreen = 0xFF00FF00;
constexpr std::uint32_t kBlue = 0xFF0000FF;

// As a palette has them: blue, green, red, nothing.
const std::string kPaletteRed = Bytes(0xFF0000, 4);
const std::string kPaletteGreen = Bytes(0x00FF00, 4);

// --- One of each kind

// Nine pixels a row take two bytes and are filled up to four.
Dib OneBit() {
  return {.width = 9,
          .height = 1,
          .bits = 1,
          .behindHeader = kPaletteRed + kPaletteGreen,
          .rows = std::string("\x41\x80\0\0", 4)};
}
Dib FourBits() {
  return {.width = 3,
          .height = 1,
          .bits = 4,
          .coloursUsed = 2,
          .behindHeader = kPaletteRed + kPaletteGreen,
          .rows = std::string("\x01\x10\0\0", 4)};
}
Dib EightBits() {
  return {.width = 3,
          .height = 1,
          .bits = 8,
          .coloursUsed = 2,
          .behindHeader = kPaletteRed + kPaletteGreen,
          .rows = std::string("\1\0\1\0", 4)};
}
// Two rows, of which the lower one stands in front.
Dib TwentyFourBits() {
  return {.width = 2,
          .height = 2,
          .bits = 24,
          .rows = std::string("\0\0\xFF"
                              "\0\xFF\0"
                              "\0\0"
                              "\xFF\0\0"
                              "\xFF\xFF\xFF"
                              "\0\0",
                              16)};
}
Dib ThirtyTwoBits() {
  return {.width = 2,
          .height = 1,
          .bits = 32,
          .rows = std::string("\xFF\0\0\0"
                              "\0\0\xFF\x80",
                              8)};
}

TEST(PicturePixels, OfOneBitAreNumbersOfThePalette) {
  const Row expected = {kRed, kGreen, kRed, kRed, kRed, kRed, kRed, kGreen, kGreen};
  EXPECT_EQ(PixelsOfGood(OneBit()), expected);
}

TEST(PicturePixels, OfFourBitsHaveTheirFirstInTheUpperHalfOfAByte) {
  EXPECT_EQ(PixelsOfGood(FourBits()), (Row{kRed, kGreen, kGreen}));
}

TEST(PicturePixels, OfEightBitsAreAByteEach) {
  EXPECT_EQ(PixelsOfGood(EightBits()), (Row{kGreen, kRed, kGreen}));
}

TEST(PicturePixels, OfSixteenBitsHaveFiveForEachColour) {
  const Dib dib{.width = 3,
                .height = 1,
                .bits = 16,
                .rows = std::string("\x00\x7C"
                                    "\xE0\x03"
                                    "\x1F\x80"
                                    "\0\0",
                                    8)};
  EXPECT_EQ(PixelsOfGood(dib), (Row{kRed, kGreen, kBlue}));
}

TEST(PicturePixels, OfTwentyFourBitsStandFromTheLowestRowOn) {
  EXPECT_EQ(PixelsOfGood(TwentyFourBits()), (Row{kBlue, kWhite, kRed, kGreen}));
}

TEST(PicturePixels, OfANegativeHeightStandFromTheUppermostRowOn) {
  Dib dib = TwentyFourBits();
  dib.height = -2;
  EXPECT_EQ(PixelsOfGood(dib), (Row{kRed, kGreen, kBlue, kWhite}));
}

TEST(PicturePixels, OfABitmapOfThirtyTwoBitsAreOpaqueWhateverTheFourthByteIs) {
  EXPECT_EQ(PixelsOfGood(ThirtyTwoBits()), (Row{kBlue, kRed}));
}

TEST(PicturePixels, AreWhereTheMasksSay) {
  const std::string masks = Bytes(0xF800, 4) + Bytes(0x07E0, 4) + Bytes(0x001F, 4);
  Dib dib{.width = 2,
          .height = 1,
          .bits = 16,
          .compression = 3,
          .behindHeader = masks,
          .rows = std::string("\x00\xF8"
                              "\xE0\x07",
                              4)};
  EXPECT_EQ(PixelsOfGood(dib), (Row{kRed, kGreen}));
  // A longer header has them itself.
  dib.headerSize = 56;
  dib.behindHeader = masks + Bytes(0, 4);
  EXPECT_EQ(PixelsOfGood(dib), (Row{kRed, kGreen}));
  // Where there is no mask there is no colour.
  dib.behindHeader = masks.substr(0, 4) + Bytes(0, 8) + Bytes(0, 4);
  EXPECT_EQ(PixelsOfGood(dib), (Row{kRed, kBlack}));
}

TEST(PicturePixels, OfTheOldHeaderHaveAPaletteOfThreeBytesAColour) {
  const Dib dib{.headerSize = 12,
                .width = 2,
                .height = 1,
                .bits = 1,
                .behindHeader = std::string("\0\0\xFF"
                                            "\0\xFF\0",
                                            6),
                .rows = std::string("\x40\0\0\0", 4)};
  EXPECT_EQ(PixelsOfGood(dib), (Row{kRed, kGreen}));
}

TEST(PicturePixels, ThatThePaletteDoesntHaveAreBlack) {
  Dib dib = EightBits();
  dib.rows = std::string("\1\2\xFF\0", 4);
  EXPECT_EQ(PixelsOfGood(dib), (Row{kGreen, kBlack, kBlack}));
}

TEST(PicturePixels, StandBehindAPaletteThatNobodyNeeds) {
  Dib dib = ThirtyTwoBits();
  dib.coloursUsed = 2;
  dib.behindHeader = kPaletteRed + kPaletteGreen;
  EXPECT_EQ(PixelsOfGood(dib), (Row{kBlue, kRed}));
}

// --- Icons

// The icon's height counts the rows of its mask, too.
Dib Icon(Dib dib, const std::string& mask) {
  dib.height *= 2;
  dib.rows += mask;
  return dib;
}

TEST(PicturePixels, OfAnIconAreNotThereWhereItsMaskSaysSo) {
  const Dib dib = Icon(FourBits(), std::string("\x40\0\0\0", 4));
  EXPECT_EQ(PixelsOfGood(dib, PictureUse::kIcon), (Row{kRed, 0, kGreen}));
}

TEST(PicturePixels, OfAnIconOfThirtyTwoBitsAreAsMuchThereAsTheFourthByteSays) {
  const Dib dib = Icon(ThirtyTwoBits(), std::string("\xFF\0\0\0", 4));
  EXPECT_EQ(PixelsOfGood(dib, PictureUse::kIcon), (Row{0, 0x80800000}));
}

TEST(PicturePixels, OfAnIconWhoseFourthBytesAreAllZeroGoByTheMask) {
  Dib dib = ThirtyTwoBits();
  dib.rows[7] = '\0';
  dib = Icon(dib, std::string("\x80\0\0\0", 4));
  EXPECT_EQ(PixelsOfGood(dib, PictureUse::kIcon), (Row{0, kRed}));
}

TEST(PicturePixels, OfAnIconWithoutItsMaskAreNone) {
  Dib dib = FourBits();
  dib.height = 2;
  EXPECT_FALSE(Pixels(dib.Whole(), PictureUse::kIcon));
  dib.height = 1;  // no row is left for the picture
  EXPECT_FALSE(Pixels(dib.Whole(), PictureUse::kIcon));
}

// --- PNG files

TEST(PicturePixels, OfAPngFileAreItsOwn) {
  const Image image{.width = 2, .height = 2, .pixels = {kRed, 0, 0x80800000, kBlue}};
  const std::string file = EncodePng(image);
  const auto read = PixelsOf({.isPng = true, .bytes = file}, PictureUse::kIcon);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->width, 2);
  EXPECT_EQ(read->height, 2);
  EXPECT_EQ(read->pixels, image.pixels);
}

TEST(PicturePixels, OfAnOpaquePngFileAreOpaque) {
  const Image image{.width = 2, .height = 1, .pixels = {kRed, kBlue}};
  const auto read = DecodePng(EncodePng(image));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->pixels, image.pixels);
}

TEST(PicturePixels, OfAPngFileThatIsCutOrTooLargeAreNone) {
  const std::string file = EncodePng({.width = 2, .height = 1, .pixels = {kRed, kBlue}});
  for (std::size_t size = 0; size < file.size(); ++size)
    EXPECT_FALSE(DecodePng(std::string_view(file).substr(0, size))) << size;
  std::string wide = file;
  wide.replace(16, 4, std::string("\0\0\x08\x01", 4));  // 2,049
  EXPECT_FALSE(DecodePng(wide));
  wide.replace(16, 4, std::string("\x7F\xFF\xFF\xFF", 4));
  EXPECT_FALSE(DecodePng(wide));
}

// --- Spoilt bitmaps

TEST(PicturePixels, OfABitmapThatIsOutOfFormAreNone) {
  constexpr std::int32_t kMost = 0x7FFFFFFF;
  constexpr std::int32_t kLeast = -kMost - 1;
  const std::string rows(64, '\0');
  const struct {
    const char* what;
    Dib dib;
  } cases[] = {
      {"no width", {.width = 0, .rows = rows}},
      {"negative width", {.width = -2, .rows = rows}},
      {"no height", {.height = 0, .rows = rows}},
      {"more rows than there are", {.width = 2, .height = 12, .rows = rows}},
      {"the same from the top", {.width = 2, .height = -12, .rows = rows}},
      {"as wide as can be", {.width = kMost, .rows = rows}},
      {"as high as can be", {.height = kMost, .rows = rows}},
      {"as low as can be", {.height = kLeast, .rows = rows}},
      {"both", {.width = kMost, .height = kLeast, .bits = 32, .rows = rows}},
      // Their sizes add up to more than 64 bits hold.
      {"all at once",
       {.headerSize = 0xFFFFFFFF,
        .width = kMost,
        .height = kLeast,
        .bits = 32,
        .coloursUsed = 0xFFFFFFFF,
        .rows = rows}},
      {"0 bits", {.bits = 0, .rows = rows}},
      {"2 bits", {.bits = 2, .rows = rows}},
      {"12 bits", {.bits = 12, .rows = rows}},
      {"64 bits", {.bits = 64, .rows = rows}},
      {"run lengths of 8 bits", {.bits = 8, .compression = 1, .rows = std::string(2048, '\0')}},
      {"run lengths of 4 bits", {.bits = 4, .compression = 2, .rows = std::string(2048, '\0')}},
      {"a JPEG file within", {.compression = 4, .rows = rows}},
      {"a PNG file within", {.compression = 5, .rows = rows}},
      {"masks for 8 bits", {.bits = 8, .compression = 3, .rows = std::string(2048, '\0')}},
      {"masks without room", {.bits = 32, .compression = 3, .rows = std::string(8, '\0')}},
      {"header of 0 bytes", {.headerSize = 0, .rows = rows}},
      {"header of 39 bytes", {.headerSize = 39, .rows = rows}},
      {"header larger than the file", {.headerSize = 4000, .rows = rows}},
      {"a whole palette missing", {.bits = 8, .rows = rows}},
      {"palette larger than the file", {.bits = 8, .coloursUsed = 17, .rows = rows}},
      {"palette as large as can be", {.bits = 8, .coloursUsed = 0xFFFFFFFF, .rows = rows}},
      {"old header of no width", {.headerSize = 12, .width = 0, .rows = rows}},
      {"old header without its palette", {.headerSize = 12, .bits = 8, .rows = rows}},
  };
  for (const auto& [what, dib] : cases) {
    EXPECT_FALSE(Pixels(dib.Whole())) << what;
    EXPECT_FALSE(Pixels(dib.Whole(), PictureUse::kIcon)) << what;
  }
}

std::vector<std::string> GoodBitmaps() {
  std::vector<std::string> all;
  for (const Dib& dib : {OneBit(), FourBits(), EightBits(), TwentyFourBits(), ThirtyTwoBits()})
    all.push_back(dib.Whole());
  return all;
}

TEST(PicturePixels, OfABitmapThatIsCutAnywhereAreNone) {
  for (const std::string& whole : GoodBitmaps())
    for (std::size_t size = 0; size < whole.size(); ++size)
      EXPECT_FALSE(Pixels(whole.substr(0, size))) << size << " of " << whole.size();
}

// Whatever is in the bytes: nothing outside them is read, and there are as many
// pixels as the picture says.
TEST(PicturePixels, OfASpoiltBitmapAreAllThereOrNone) {
  std::mt19937 random(7);
  int decoded = 0;
  for (const std::string& whole : GoodBitmaps()) {
    for (int round = 0; round < 2000; ++round) {
      std::string spoilt = whole;
      for (auto change = random() % 3 + 1; change > 0; --change)
        spoilt[random() % spoilt.size()] = static_cast<char>(random());
      for (const PictureUse use : {PictureUse::kBitmap, PictureUse::kIcon}) {
        const std::optional<Image> image = Pixels(spoilt, use);
        if (!image) continue;
        ++decoded;
        ASSERT_GT(image->width, 0);
        ASSERT_GT(image->height, 0);
        ASSERT_EQ(image->pixels.size(),
                  static_cast<std::size_t>(image->width) * static_cast<std::size_t>(image->height));
      }
    }
  }
  EXPECT_GT(decoded, 1000);
}

TEST(PicturePixels, OfALargeBitmapAreAllThere) {
  Dib dib{.width = 4096, .height = 4096, .bits = 1, .behindHeader = kPaletteRed + kPaletteGreen};
  dib.rows.assign(4096 * 512, '\0');
  dib.rows.front() = '\x80';  // lower left
  const std::optional<Image> image = Pixels(dib.Whole());
  ASSERT_TRUE(image);
  EXPECT_EQ(image->At(0, 4095), kGreen);
  EXPECT_EQ(image->At(1, 4095), kRed);
  EXPECT_EQ(image->At(4095, 0), kRed);
}

}  // namespace
}  // namespace desk
