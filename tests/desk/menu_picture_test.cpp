// vgldesk menu: the menus of the samples as pictures.
#include "desk/menu_picture.h"

#include <gtest/gtest.h>

#include "desk/paint/image.h"
#include "desk/whole_file.h"
#include "tests/desk/scratch_folder.h"
#include "tests/desk/vgldesk_run.h"

namespace desk {
namespace {

constexpr std::uint32_t kMenu = 0xFFF0F0F0;
constexpr std::uint32_t kHighlight = 0xFF0078D7;

class MenuPicture : public testing::Test {
 protected:
  const ScratchFolder folder;
  const std::string file = (folder.path() / "menu.png").string();

  Outcome Run(std::vector<std::string> words) const {
    words.insert(words.begin(), "menu");
    words.insert(words.end(), {"--png", file});
    return RunWords(words);
  }
  // Of no size when there is none.
  Image Draw(const std::vector<std::string>& words) const {
    const Outcome outcome = Run(words);
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "");
    return DecodePng(ReadWholeFile(file).value_or("")).value_or(Image{});
  }
  // That the command gives this, and leaves no file.
  void ExpectRefused(const std::vector<std::string>& words, int code,
                     const std::string& mistake) const {
    const Outcome outcome = Run(words);
    EXPECT_EQ(outcome.code, code) << mistake;
    EXPECT_EQ(outcome.err, "vgldesk menu: " + mistake + "\n");
    EXPECT_EQ(outcome.out, "");
    EXPECT_FALSE(std::filesystem::exists(file)) << mistake;
  }
};

// Columns of a band of rows in which something stands in front of the menu's
// colour: the first one, and the one behind the last.
std::pair<int, int> InkOf(const Image& image, int top, int bottom) {
  std::pair<int, int> ink{image.width, 0};
  for (int y = top; y < bottom; ++y)
    for (int x = 3; x < image.width - 3; ++x) {
      if (image.At(x, y) == kMenu) continue;
      ink.first = std::min(ink.first, x);
      ink.second = std::max(ink.second, x + 1);
    }
  return ink;
}

// Twenty lines of 19 pixels, four separators of 9, and the border.
TEST_F(MenuPicture, IsAsHighAsTheMenuIsLong) {
  EXPECT_EQ(Draw({"studio-7200"}).height, 20 * 19 + 4 * 9 + 2 * 3);
}

// The head takes 38 pixels, the separator below it 9: the first entry begins
// at 50. Its picture is 24 by 16 pixels, 4 from the left, in the middle: the
// first dot of ink is at 1,1 in it.
TEST_F(MenuPicture, HasThePicturesAndTextsWhereTheAgentDrawsThem) {
  const Image image = Draw({"studio-7200"});
  EXPECT_EQ(image.At(7, 51), kMenu);
  EXPECT_EQ(image.At(8, 52), 0xFF0098D8);
  EXPECT_EQ(image.At(9, 52), 0xFF0098D8);
  EXPECT_EQ(image.At(10, 52), kMenu);
  // A text begins 10 pixels behind what is 4 wider than the picture, and 30
  // from the edge where there is none. The first has a picture of 24, the
  // second of 16, the fourth has none; that of the fifth, below a separator, is
  // 10 wide.
  const auto textOf = [&](int top, int behind) {
    int x = behind;
    while (InkOf(image, top, top + 19).second > x) {
      for (int y = top; y < top + 19; ++y)
        if (image.At(x, y) != kMenu) return x - 3;
      ++x;
    }
    return 0;
  };
  EXPECT_NEAR(textOf(50, 7 + 24), 38, 2);
  EXPECT_NEAR(textOf(69, 7 + 16), 30, 2);
  EXPECT_NEAR(textOf(107, 3), 30, 2);
  EXPECT_NEAR(textOf(135, 7 + 10), 24, 2);
}

TEST_F(MenuPicture, HasTheEntryBelowTheMouseSelected) {
  const Image plain = Draw({"studio-7200"});
  const Image image = Draw({"studio-7200", "--selected", "920"});
  const int right = image.width - 4;
  EXPECT_EQ(plain.At(right, 50), kMenu);
  EXPECT_EQ(image.At(right, 49), kMenu);
  EXPECT_EQ(image.At(right, 50), kHighlight);
  EXPECT_EQ(image.At(right, 68), kHighlight);
  EXPECT_EQ(image.At(right, 69), kMenu);
  EXPECT_EQ(image.At(8, 52), 0xFF0098D8);
}

TEST_F(MenuPicture, HasAnEntryOfTheHeadSelected) {
  const Image image = Draw({"studio-7200", "--selected", "901"});
  EXPECT_EQ(image.At(3, 22), kHighlight);
  EXPECT_EQ(image.At(3, 41), kMenu);
}

// "Driver Update" has a shield on the arrow that "Software Update" below it has
// alone.
TEST_F(MenuPicture, HasTheShieldOnTheDriverUpdate) {
  const Image image = Draw({"studio-7200"});
  constexpr int kDriverUpdate = 50 + 6 * 19 + 2 * 9;
  int differing = 0;
  for (int y = kDriverUpdate; y < kDriverUpdate + 19; ++y)
    for (int x = 3; x < 25; ++x)
      if (image.At(x, y) != image.At(x, y + 19)) ++differing;
  EXPECT_GT(differing, 80);
}

TEST_F(MenuPicture, OfARightToLeftSetStandsOnTheRight) {
  const Image image = Draw({"panorama-9900"});
  const int right = image.width - 3;
  // Title and preferences end 30 from the edge, as do the entries.
  for (const int top : {3, 22}) {
    const auto [first, behind] = InkOf(image, top, top + 19);
    EXPECT_LE(behind, right - 30);
    EXPECT_GT(behind, right - 34);
    EXPECT_GT(first, 15);
  }
  // The picture of the first entry stands 4 from the right, its last column is empty.
  EXPECT_EQ(image.At(right - 4 - 16 + 1, 52), 0xFF0098D8);
  EXPECT_EQ(InkOf(image, 50, 69).second, right - 4 - 1);
}

TEST_F(MenuPicture, IsInTheUsersLanguage) {
  const Image english = Draw({"studio-7200"});
  EXPECT_EQ(Draw({"studio-7200", "--language", "09,01"}).pixels, english.pixels);
  const Image german = Draw({"studio-7200", "--language", "07,01"});
  EXPECT_GT(german.width, english.width);
  EXPECT_EQ(german.height, english.height);
  // Nobody has Swedish: English it is.
  EXPECT_EQ(Draw({"studio-7200", "--language", "1D,1"}).pixels, english.pixels);
}

TEST_F(MenuPicture, IsLargerByItsScale) {
  const Image plain = Draw({"panorama-9900"});
  const Image large = Draw({"panorama-9900", "--scale", "2"});
  EXPECT_EQ(large.width, 2 * plain.width);
  EXPECT_EQ(large.height, 2 * plain.height);
}

TEST_F(MenuPicture, TakesThePlaceOfTheFileThatIsThere) {
  folder.Write("menu.png", std::string(100000, 'x'));
  EXPECT_GT(Draw({"atelier-4400"}).width, 0);
}

TEST_F(MenuPicture, AnEntryThatIsntThereCantBeSelected) {
  const std::string behind = " that can be chosen";
  ExpectRefused({"studio-7200", "--selected", "954"}, 2, "the menu has no entry 954" + behind);
  ExpectRefused({"studio-7200", "--selected", "0"}, 2, "the menu has no entry 0" + behind);
  ExpectRefused({"studio-7200", "--selected", "4294967295"}, 2,
                "the menu has no entry 4294967295" + behind);
  // Offered by the set, hidden for this printer.
  ExpectRefused({"panorama-9900", "--selected", "925"}, 2, "the menu has no entry 925" + behind);
}

TEST_F(MenuPicture, WithoutAMenuIsNone) {
  ExpectRefused({"sketch-1100"}, 1,
                "no menu opens; there is a message box instead: Could not find "
                "specified file.");
}

TEST_F(MenuPicture, OfASampleThatIsntThereIsNone) {
  ExpectRefused({"no-such"}, 2,
                "there is no sample samples/no-such; names without a slash are "
                "looked for below "
                "samples/ in the current folder");
}

TEST_F(MenuPicture, ALanguageTakesTwoNumbers) {
  for (const std::string language : {"7", "07,", ",01", "07,01,", "07 01", "0407x", "x,1", "07,1x",
                                     "0,1", "400,1", "7,40", "-7,1", "100000000,1", " 7,1"})
    ExpectRefused({"studio-7200", "--language", language}, 2,
                  '"' + language +
                      "\" is no language; it takes its two numbers as a "
                      "profile has them, as in "
                      "07,01");
}

TEST_F(MenuPicture, AFileThatCantBeWrittenIsTold) {
  const Outcome outcome = RunWords({"menu", "atelier-4400", "--png", "no/such/menu.png"});
  EXPECT_EQ(outcome.code, 2);
  EXPECT_EQ(outcome.err, "vgldesk menu: no/such/menu.png can't be written\n");
}

TEST_F(MenuPicture, AMistakeOfTheCommandLineIsNamed) {
  const struct {
    std::vector<std::string> words;
    std::string part;
  } cases[] = {
      {{"menu", "studio-7200"}, "--png"},
      {{"menu", "--png", file}, "sample"},
      {{"menu", "studio-7200", "--png", file, "--selected", "first"}, "--selected"},
      {{"menu", "studio-7200", "--png", file, "--selected", "4294967296"}, "--selected"},
      {{"menu", "studio-7200", "--png", file, "--scale", "0"}, "--scale"},
      {{"menu", "studio-7200", "--png", file, "--scale", "9"}, "--scale"},
      {{"menu", "studio-7200", "--png", file, "--", "/R"},
       "vgldesk menu: there is no agent's command line to give behind --"},
  };
  for (const auto& [words, part] : cases) {
    const Outcome outcome = RunWords(words);
    EXPECT_EQ(outcome.code, 2) << part;
    EXPECT_TRUE(Holds(outcome.err, part)) << outcome.err;
    EXPECT_FALSE(std::filesystem::exists(file));
  }
}

}  // namespace
}  // namespace desk
