// The list of a profile's languages, and what is seen of one that is too long.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sim/machine.h"
#include "profile/language_selection.h"

namespace vgl {
namespace {

constexpr char16_t kProfile[] = u"C:\\Set\\M1.INI";

class LanguageList : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  std::u16string list = std::u16string(131, u'?');
  std::uint32_t count = 0;

  void WriteProfile(std::string_view bytes) { machine.files().WriteFile(kProfile, bytes); }
  // Reads a list of lines "X=" and more, that many characters with their terminators, into 260
  // bytes.
  std::int32_t Read(const std::vector<std::size_t>& lineChars) {
    std::string bytes = "[Language]\n";
    for (const std::size_t chars : lineChars) bytes += "X=" + std::string(chars - 3, '1') + "\n";
    WriteProfile(bytes);
    std::fill(list.begin(), list.end(), u'\0');
    list.back() = u'?';
    const std::int32_t result = ReadLanguageList(list.data(), 260, &count, kProfile);
    EXPECT_EQ(list.back(), u'?');
    return result;
  }
};

TEST_F(LanguageList, GivesTheLengthAndCountsTheLines) {
  WriteProfile("[Language]\nDEU=07,01\nENU=09,01\n");
  EXPECT_EQ(ReadLanguageList(list.data(), 260, &count, kProfile), 20);
  EXPECT_EQ(count, 2U);
  WriteProfile("[Language]\nDEU=07,01\n");
  EXPECT_EQ(ReadLanguageList(list.data(), 260, &count, kProfile), 10);
  EXPECT_EQ(count, 1U);
  WriteProfile("[language]\nA\nB\nC\nD\n");
  EXPECT_EQ(ReadLanguageList(list.data(), 260, &count, kProfile), 8);
  EXPECT_EQ(count, 4U);
}

TEST_F(LanguageList, Of127And128CharactersIsSeenWhole) {
  EXPECT_EQ(Read({100, 27}), 127);
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(Read({100, 28}), 128);
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(list[126], u'1');
  EXPECT_EQ(list[127], u'\0');
}

TEST_F(LanguageList, Of129CharactersIsCutAndItsLastLineCounts) {
  EXPECT_EQ(Read({100, 29}), 128);
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(list[127], u'1');
  EXPECT_EQ(list[128], u'\0');
}

TEST_F(LanguageList, Of5000CharactersIsCutAndItsLastLineCounts) {
  EXPECT_EQ(Read(std::vector<std::size_t>(200, 25)), 128);
  EXPECT_EQ(count, 6U);  // five of 25 characters, and three characters of the sixth
  EXPECT_EQ(list.substr(125, 4), u"X=1" + std::u16string(1, u'\0'));
}

TEST_F(LanguageList, WhereACutFallsBetweenTwoLinesTheNextOneIsntCounted) {
  EXPECT_EQ(Read({100, 28, 10}), 128);
  EXPECT_EQ(count, 2U);
}

TEST_F(LanguageList, WithoutAListTheCountIsTwo) {
  for (const char* profile : {"", "[Language]\n", "[Other]\nA=09,01\n"}) {
    WriteProfile(profile);
    count = 77;
    EXPECT_EQ(ReadLanguageList(list.data(), 260, &count, kProfile), 0);
    EXPECT_EQ(count, 2U);
  }
  machine.files().Remove(kProfile);
  count = 77;
  EXPECT_EQ(ReadLanguageList(list.data(), 260, &count, kProfile), 0);
  EXPECT_EQ(count, 2U);
}

TEST_F(LanguageList, AMissingArgumentGivesMinus1) {
  WriteProfile("[Language]\nDEU=07,01\n");
  count = 77;
  EXPECT_EQ(ReadLanguageList(nullptr, 260, &count, kProfile), -1);
  EXPECT_EQ(ReadLanguageList(list.data(), 260, nullptr, kProfile), -1);
  EXPECT_EQ(ReadLanguageList(list.data(), 260, &count, nullptr), -1);
  EXPECT_EQ(ReadLanguageList(list.data(), 260, &count, u""), -1);
  EXPECT_EQ(count, 2U);
}

TEST_F(LanguageList, RoomForNoCharacterGivesMinus4) {
  WriteProfile("[Language]\nDEU=07,01\n");
  for (const std::uint32_t bytes : {0U, 1U}) {
    count = 77;
    EXPECT_EQ(ReadLanguageList(list.data(), bytes, &count, kProfile), -4);
    EXPECT_EQ(count, 2U);
  }
  EXPECT_EQ(list.front(), u'?');
}

TEST_F(LanguageList, LittleRoomCutsTheList) {
  WriteProfile("[Language]\nDEU=07,01\nENU=09,01\n");
  EXPECT_EQ(ReadLanguageList(list.data(), 30, &count, kProfile), 13);  // 15 characters
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(list.substr(10, 4), u"ENU" + std::u16string(1, u'\0'));
}

}  // namespace
}  // namespace vgl
