// Profile files: lists of sections, of keys, and whole sections.
#include "tests/platform/profile_fixture.h"

namespace platform {
namespace {

using namespace std::string_literals;

class ProfileLists : public ProfileContract {
 protected:
  struct List {
    std::uint32_t result = 0;
    std::u16string text;  // the result's characters and the one behind, which ends the list
  };

  List SectionNames() { return Read(nullptr, nullptr, 1000); }
  List KeyNames(const char16_t* section, std::uint32_t room = 1000) {
    return Read(section, nullptr, room);
  }

  List Section(const char16_t* section, std::uint32_t room = 1000) {
    std::u16string buffer(room + 1, u'?');
    const std::uint32_t result =
        os.profiles.GetPrivateProfileSectionW(section, buffer.data(), room, path.c_str());
    EXPECT_EQ(buffer[room], u'?') << "written behind the room";
    return {result, buffer.substr(0, result + 1)};
  }

 private:
  List Read(const char16_t* section, const char16_t* key, std::uint32_t room) {
    std::u16string buffer(room + 1, u'?');
    const std::uint32_t result =
        os.profiles.GetPrivateProfileStringW(section, key, u"", buffer.data(), room, path.c_str());
    EXPECT_EQ(buffer[room], u'?') << "written behind the room";
    return {result, buffer.substr(0, result + 1)};
  }
};

// --- Sections

TEST_F(ProfileLists, EverySectionIsNamedInOrder) {
  Write("[Two]\r\na=1\r\n\r\n[one]\r\n[Three]\r\nb=2\r\n");
  const List names = SectionNames();
  EXPECT_EQ(names.result, 14u);
  EXPECT_EQ(names.text, u"Two\0one\0Three\0\0"s);
}

TEST_F(ProfileLists, AFileWithoutSectionsNamesNone) {
  Write("; nothing here\r\n");
  const List names = SectionNames();
  EXPECT_EQ(names.result, 0u);
  EXPECT_EQ(names.text, u"\0"s);
}

TEST_F(ProfileLists, AMissingFileNamesNoSections) {
  const List names = SectionNames();
  EXPECT_EQ(names.result, 0u);
  EXPECT_EQ(names.text, u"\0"s);
}

TEST_F(ProfileLists, ASectionThatIsThereTwiceIsNamedTwice) {
  Write("[one]\r\n[two]\r\n[one]\r\n");
  EXPECT_EQ(SectionNames().text, u"one\0two\0one\0\0"s);
}

TEST_F(ProfileLists, SectionNamesThatDoNotFitAreCutWithTwoTerminators) {
  Write("[first]\r\n[second]\r\n");
  std::u16string buffer(10, u'?');
  EXPECT_EQ(
      os.profiles.GetPrivateProfileStringW(nullptr, nullptr, u"", buffer.data(), 9, path.c_str()),
      7u);
  EXPECT_EQ(buffer, u"first\0s\0\0?"s);
}

// --- Keys

TEST_F(ProfileLists, EveryKeyOfASectionIsNamedInOrder) {
  Write("[s]\r\nTwo=2\r\n; remark=0\r\n  one = 1\r\n[other]\r\nx=1\r\n");
  const List names = KeyNames(u"S");
  EXPECT_EQ(names.result, 8u);
  EXPECT_EQ(names.text, u"Two\0one\0\0"s);
}

TEST_F(ProfileLists, AKeyThatIsThereTwiceIsNamedTwice) {
  Write("[s]\r\none=1\r\ntwo=2\r\none=3\r\n");
  EXPECT_EQ(KeyNames(u"s").text, u"one\0two\0one\0\0"s);
}

TEST_F(ProfileLists, InRoomForTheTerminatorsAloneNothingIsListed) {
  Write("[s]\r\none=1\r\n");
  EXPECT_EQ(KeyNames(u"s", 2).result, 0u);
  EXPECT_EQ(KeyNames(u"s", 1).result, 0u);
}

TEST_F(ProfileLists, KeysOfAMissingSectionAreNone) {
  Write("[s]\r\na=1\r\n");
  const List names = KeyNames(u"missing");
  EXPECT_EQ(names.result, 0u);
  EXPECT_EQ(names.text, u"\0"s);
}

TEST_F(ProfileLists, KeyNamesThatDoNotFitAreCutWithTwoTerminators) {
  Write("[s]\r\nfirst=1\r\nsecond=2\r\n");
  std::u16string buffer(10, u'?');
  EXPECT_EQ(
      os.profiles.GetPrivateProfileStringW(u"s", nullptr, u"", buffer.data(), 9, path.c_str()), 7u);
  EXPECT_EQ(buffer, u"first\0s\0\0?"s);
}

TEST_F(ProfileLists, ALineWithoutAnEqualsSignIsNoKey) {
  Write("[s]\r\none=1\r\nalone\r\nempty=\r\n");
  EXPECT_EQ(KeyNames(u"s").text, u"one\0empty\0\0"s);
}

// A list that needs the whole room is there, but the result tells it from a cut one no more.
TEST_F(ProfileLists, AListThatJustFitsIsWholeAndCountsAsCut) {
  Write("[ab]\r\nab=1\r\n[cd]\r\n");
  std::u16string buffer(7, u'?');
  EXPECT_EQ(
      os.profiles.GetPrivateProfileStringW(nullptr, nullptr, u"", buffer.data(), 7, path.c_str()),
      5u);
  EXPECT_EQ(buffer, u"ab\0cd\0\0"s);

  buffer.assign(6, u'?');
  EXPECT_EQ(os.profiles.GetPrivateProfileSectionW(u"ab", buffer.data(), 6, path.c_str()), 4u);
  EXPECT_EQ(buffer, u"ab=1\0\0"s);

  const List names = KeyNames(u"ab", 4);
  EXPECT_EQ(names.result, 2u);
  EXPECT_EQ(names.text, u"ab\0"s);
}

TEST_F(ProfileLists, AListWithOneCharacterOfRoomLeftIsToldWhole) {
  Write("[s]\r\nab=1\r\ncd=2\r\n");
  const List names = KeyNames(u"s", 8);
  EXPECT_EQ(names.result, 6u);
  EXPECT_EQ(names.text, u"ab\0cd\0\0"s);
  const List lines = Section(u"s", 12);
  EXPECT_EQ(lines.result, 10u);
  EXPECT_EQ(lines.text, u"ab=1\0cd=2\0\0"s);
}

// --- Whole sections

TEST_F(ProfileLists, ASectionIsItsLines) {
  Write("[other]\r\nx=1\r\n[s]\r\none=1\r\ntwo=2\r\n[last]\r\ny=1\r\n");
  const List lines = Section(u"S");
  EXPECT_EQ(lines.result, 12u);
  EXPECT_EQ(lines.text, u"one=1\0two=2\0\0"s);
}

TEST_F(ProfileLists, ASectionKeepsQuotesAndRepeatedKeys) {
  Write("[s]\r\na=\"x\"\r\na='y'\r\n");
  EXPECT_EQ(Section(u"s").text, u"a=\"x\"\0a='y'\0\0"s);
}

TEST_F(ProfileLists, ASectionDropsRemarksAndBlankLines) {
  Write("[s]\r\n\r\n;remark\r\n  ; another\r\na=1\r\n   \r\nb=2\r\n\r\n");
  EXPECT_EQ(Section(u"s").text, u"a=1\0b=2\0\0"s);
}

TEST_F(ProfileLists, ASectionDropsOuterBlanks) {
  Write("[s]\r\n  a=1  \r\n\tb=2\t\r\n");
  EXPECT_EQ(Section(u"s").text, u"a=1\0b=2\0\0"s);
}

TEST_F(ProfileLists, ASectionKeepsBlanksWithinAValue) {
  Write("[s]\r\na=1  2 ; 3\r\n");
  EXPECT_EQ(Section(u"s").text, u"a=1  2 ; 3\0\0"s);
}

TEST_F(ProfileLists, ASectionKeepsALineWithoutAnEqualsSign) {
  Write("[s]\r\nalone\r\na=1\r\nempty=\r\n");
  EXPECT_EQ(Section(u"s").text, u"alone\0a=1\0empty=\0\0"s);
}

TEST_F(ProfileLists, AnEmptyAndAMissingSectionHaveNoLines) {
  Write("[s]\r\n[next]\r\na=1\r\n");
  for (const char16_t* section : {u"s", u"missing"}) {
    const List lines = Section(section);
    EXPECT_EQ(lines.result, 0u);
    EXPECT_EQ(lines.text, u"\0"s);
  }
}

TEST_F(ProfileLists, ASectionOfAMissingFileHasNoLines) { EXPECT_EQ(Section(u"s").result, 0u); }

TEST_F(ProfileLists, ASectionThatDoesNotFitIsCutWithTwoTerminators) {
  Write("[s]\r\na=1\r\nbb=22\r\n");
  std::u16string buffer(9, u'?');
  EXPECT_EQ(os.profiles.GetPrivateProfileSectionW(u"s", buffer.data(), 8, path.c_str()), 6u);
  EXPECT_EQ(buffer, u"a=1\0bb\0\0?"s);
}

}  // namespace
}  // namespace platform
