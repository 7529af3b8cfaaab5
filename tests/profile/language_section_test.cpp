// Languages of a profile: the section for the user, its keys.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Common/fixed_text.h"
#include "platform/sim/machine.h"
#include "profile/language_selection.h"

namespace vgl {
namespace {

constexpr char16_t kProfile[] = u"C:\\Set\\M1.INI";

class LanguageSection : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  PathText out;
  std::uint32_t size = 0;

  LanguageSection() { machine.files().MakeFolder(u"C:\\Set"); }
  ~LanguageSection() override { EXPECT_TRUE(inside.process().Ledger().empty()); }

  void WriteProfile(std::string_view bytes) { machine.files().WriteFile(kProfile, bytes); }
  // A list with these lines, and for each "NAME=..." a section whose library is NAME.dll.
  void WriteLanguages(const std::vector<std::string>& lines) {
    std::string list = "[Language]\n";
    std::string sections;
    for (const std::string& line : lines) {
      const std::string name = line.substr(0, line.find('='));
      list += line + "\n";
      sections.append("[").append(name).append("]\nResDll=").append(name).append(".dll\n");
    }
    WriteProfile(list + sections);
  }
  // Puts a library beside the profile.
  void Install(std::u16string_view name) {
    machine.files().WriteFile(u"C:\\Set\\" + std::u16string(name), "");
  }

  // The output held something before.
  void Begin(std::uint32_t bytes) {
    EXPECT_TRUE(out.Assign(u"before"));
    size = bytes;
  }
  std::int32_t Match(std::uint16_t language, std::uint32_t bytes = 520) {
    Begin(bytes);
    return MatchLanguageSection(out.buffer(), &size, kProfile, language);
  }
  std::int32_t First(std::uint32_t bytes = 520) {
    Begin(bytes);
    return FirstInstalledLanguage(out.buffer(), &size, kProfile);
  }
  std::int32_t Select(std::uint32_t bytes = 520) {
    Begin(bytes);
    return SelectLanguageSection(out.buffer(), &size, kProfile);
  }
  std::int32_t String(const char16_t* key, std::uint32_t bytes = 520) {
    Begin(bytes);
    return GetLanguageString(key, out.buffer(), &size, kProfile);
  }
};

using MatchedLanguage = LanguageSection;
using InstalledLanguage = LanguageSection;
using SelectedLanguage = LanguageSection;
using LanguageKeys = LanguageSection;
using ResourceFile = LanguageSection;

// --- MatchLanguageSection

TEST_F(MatchedLanguage, IsChosenWhetherItsLibraryIsThereOrNot) {
  WriteLanguages({"ENU=09,01", "JPN=11,01"});
  EXPECT_EQ(Match(0x0411), 0);
  EXPECT_EQ(out.view(), u"JPN");
  EXPECT_EQ(size, 4U);
}

TEST_F(MatchedLanguage, WithoutAListTheNameIsEmpty) {
  WriteProfile("[Other]\nA=1\n");
  EXPECT_EQ(Match(0x0409), 0);
  EXPECT_EQ(out.view(), u"");
  EXPECT_EQ(size, 1U);
  EXPECT_EQ(Match(0), 0);  // which an empty record has
  EXPECT_EQ(out.view(), u"");
}

TEST_F(MatchedLanguage, WithoutAProfileTheNameIsEmpty) {
  for (const char16_t* profile : {u"", static_cast<const char16_t*>(nullptr)}) {
    Begin(520);
    EXPECT_EQ(MatchLanguageSection(out.buffer(), &size, profile, 0x0409), 0);
    EXPECT_EQ(out.view(), u"");
  }
}

TEST_F(MatchedLanguage, ALineThatWasCutCountsWithWhatIsLeft) {
  // 118 characters stand in front of it, so ten of it are seen.
  const std::string filler = "F=" + std::string(115, '1');
  WriteLanguages({filler, "JPNX=11,012"});
  EXPECT_EQ(Match(0x0411), 0);
  EXPECT_EQ(out.view(), u"JPNX");          // read as 11,01
  WriteLanguages({filler, "JPNX=11,01"});  // nothing but its terminator is cut
  EXPECT_EQ(Match(0x0411), 0);
  EXPECT_EQ(out.view(), u"JPNX");
  WriteLanguages({filler, "JAPANESE=11,01"});
  EXPECT_EQ(Match(0x0411), 0);
  EXPECT_EQ(out.view(), u"F");  // read as primary 1
  WriteLanguages({filler, "JAPANE=11,01", "JPN=11,01"});
  EXPECT_EQ(Match(0x0411), 0);
  EXPECT_EQ(out.view(), u"JAPANE");  // read as 11 without a sublanguage
}

TEST_F(MatchedLanguage, TheTailOfALongListIsntSeen) {
  std::vector<std::string> lines(13, "DEU=07,01");  // 130 characters
  lines.emplace_back("JPN=11,01");
  WriteLanguages(lines);
  EXPECT_EQ(Match(0x0411), 0);
  EXPECT_EQ(out.view(), u"DEU");
}

TEST_F(MatchedLanguage, TheRoomInBytesIsHeldAgainstTheLengthInCharacters) {
  WriteLanguages({"ENU=09,01"});
  const struct {
    std::uint32_t bytes;
    std::int32_t result;
    std::uint32_t sizeAfter;
    std::u16string_view text;
  } cases[] = {
      {8, 0, 4, u"ENU"},                             // four characters with the terminator
      {7, -1, 7, u""},                               // not less than four, yet room for three only
      {4, -1, 4, u""},       {3, -4, 4, u""},        // less than four
      {2, -4, 4, u""},       {1, -4, 4, u"before"},  // not even room to empty it
      {0, -4, 4, u"before"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Match(0x0409, c.bytes), c.result) << c.bytes;
    EXPECT_EQ(size, c.sizeAfter) << c.bytes;
    EXPECT_EQ(out.view(), c.text) << c.bytes;
  }
}

TEST_F(MatchedLanguage, AMissingArgumentGivesMinus1) {
  WriteLanguages({"ENU=09,01"});
  size = 520;
  EXPECT_EQ(MatchLanguageSection(nullptr, &size, kProfile, 0x0409), -1);
  EXPECT_EQ(MatchLanguageSection(out.buffer(), nullptr, kProfile, 0x0409), -1);
}

// --- FirstInstalledLanguage

TEST_F(InstalledLanguage, IsTheFirstOfTheListWhoseLibraryIsThere) {
  WriteLanguages({"DEU=07,01", "FRA=0C,01", "ENU=09,01"});
  Install(u"ENU.dll");
  EXPECT_EQ(First(), 0);
  EXPECT_EQ(out.view(), u"ENU");
  EXPECT_EQ(size, 4U);
  Install(u"FRA.dll");
  EXPECT_EQ(First(), 0);
  EXPECT_EQ(out.view(), u"FRA");
}

TEST_F(InstalledLanguage, WhereNoneIsThereTheNameIsEmptyAndItsSize1) {
  WriteLanguages({"DEU=07,01", "ENU=09,01"});
  EXPECT_EQ(First(), 0);
  EXPECT_EQ(out.view(), u"");
  EXPECT_EQ(size, 1U);
}

TEST_F(InstalledLanguage, ASectionWithoutAKeyIsPassedOver) {
  WriteProfile("[Language]\nDEU=07,01\nENU=09,01\n[DEU]\nResDll=\n[ENU]\nResDll=x.dll\n");
  Install(u"x.dll");
  EXPECT_EQ(First(), 0);
  EXPECT_EQ(out.view(), u"ENU");
}

TEST_F(InstalledLanguage, TooLittleRoomGivesTheRoomNeeded) {
  WriteLanguages({"DEU=07,01"});
  Install(u"DEU.dll");
  EXPECT_EQ(First(3), -4);
  EXPECT_EQ(size, 4U);
  EXPECT_EQ(First(7), -1);
  EXPECT_EQ(First(8), 0);
  EXPECT_EQ(out.view(), u"DEU");
}

TEST_F(InstalledLanguage, AMissingArgumentGivesMinus1AndAMissingProfileAnEmptyName) {
  size = 520;
  EXPECT_EQ(FirstInstalledLanguage(nullptr, &size, kProfile), -1);
  EXPECT_EQ(FirstInstalledLanguage(out.buffer(), nullptr, kProfile), -1);
  Begin(520);
  EXPECT_EQ(FirstInstalledLanguage(out.buffer(), &size, nullptr), 0);
  EXPECT_EQ(out.view(), u"");
}

// --- SelectLanguageSection

TEST_F(SelectedLanguage, IsTheUsersWhereItsLibraryIsThere) {
  WriteLanguages({"ENU=09,01", "JPN=11,01", "DEU=07,01"});
  for (const char16_t* library : {u"ENU.dll", u"JPN.dll", u"DEU.dll"}) Install(library);
  machine.system().userLanguage = 0x0411;
  EXPECT_EQ(Select(), 7);  // the length of "JPN.dll"
  EXPECT_EQ(out.view(), u"JPN");
  EXPECT_EQ(size, 4U);
}

TEST_F(SelectedLanguage, IsUsEnglishWhereTheUsersLibraryIsMissing) {
  WriteLanguages({"DEU=07,01", "JPN=11,01", "ENU=09,01"});
  Install(u"ENU.dll");
  Install(u"DEU.dll");
  machine.system().userLanguage = 0x0411;
  EXPECT_EQ(Select(), 7);
  EXPECT_EQ(out.view(), u"ENU");
  EXPECT_EQ(size, 4U);
}

TEST_F(SelectedLanguage, IsTheFirstInFileOrderWhereTheLibrariesOfBothAreMissing) {
  WriteLanguages({"NLD=13,01", "JPN=11,01", "DEU=07,01", "ENU=09,01", "FRA=0C,01"});
  Install(u"DEU.dll");
  Install(u"FRA.dll");
  machine.system().userLanguage = 0x0411;
  EXPECT_EQ(Select(), 0);
  EXPECT_EQ(out.view(), u"DEU");
  EXPECT_EQ(size, 4U);
}

TEST_F(SelectedLanguage, IsAnEmptyNameAndSuccessWhereNoLibraryIsThere) {
  WriteLanguages({"JPN=11,01", "ENU=09,01"});
  EXPECT_EQ(Select(), 0);
  EXPECT_EQ(out.view(), u"");
  EXPECT_EQ(size, 1U);
}

TEST_F(SelectedLanguage, IsAnEmptyNameAndSuccessWithoutAList) {
  for (const char* profile : {"", "[ENU]\nResDll=ENU.dll\n"}) {
    WriteProfile(profile);
    Install(u"ENU.dll");
    EXPECT_EQ(Select(), 0);
    EXPECT_EQ(out.view(), u"");
    EXPECT_EQ(size, 1U);
  }
  machine.files().Remove(kProfile);
  EXPECT_EQ(Select(), 0);
  EXPECT_EQ(out.view(), u"");
}

TEST_F(SelectedLanguage, TooLittleRoomIsTold) {
  WriteLanguages({"ENU=09,01", "JAPANESE=11,01"});
  Install(u"JAPANESE.dll");
  machine.system().userLanguage = 0x0411;
  EXPECT_EQ(Select(8), -4);
  EXPECT_EQ(size, 9U);
  EXPECT_EQ(Select(17), -1);
  EXPECT_EQ(Select(18), 12);
  EXPECT_EQ(out.view(), u"JAPANESE");
  // The first try needs no more than "ENU" does; the second starts from the room that was given.
  machine.system().userLanguage = 0x0407;
  EXPECT_EQ(Select(18), 0);
  EXPECT_EQ(out.view(), u"JAPANESE");
  EXPECT_EQ(size, 9U);
}

TEST_F(SelectedLanguage, AMissingArgumentGivesMinus1AndAsksNobody) {
  const std::uint64_t calls = inside.process().calls();
  size = 520;
  EXPECT_EQ(SelectLanguageSection(nullptr, &size, kProfile), -1);
  EXPECT_EQ(SelectLanguageSection(out.buffer(), nullptr, kProfile), -1);
  EXPECT_EQ(SelectLanguageSection(out.buffer(), &size, nullptr), -1);
  EXPECT_EQ(SelectLanguageSection(out.buffer(), &size, u""), -1);
  EXPECT_EQ(inside.process().calls(), calls);
}

TEST_F(SelectedLanguage, ALongListSelectsWhatItsFirst128CharactersSay) {
  for (const std::size_t chars : {127U, 128U, 129U, 5000U}) {
    SCOPED_TRACE(chars);
    // "JPN=11,01" stands behind a line that fills up the rest.
    WriteLanguages({"F=" + std::string(chars - 13, '1'), "JPN=11,01"});
    Install(u"JPN.dll");
    machine.system().userLanguage = 0x0411;
    EXPECT_EQ(Select(), chars == 5000 ? 0 : 7);
    EXPECT_EQ(out.view(), chars == 5000 ? u"" : u"JPN");
  }
}

TEST_F(SelectedLanguage, AnyCallThatFailsGivesALanguageOrNone) {
  WriteLanguages({"ENU=09,01", "JPN=11,01"});
  Install(u"ENU.dll");
  Install(u"JPN.dll");
  machine.system().userLanguage = 0x0411;
  const std::uint64_t before = inside.process().calls();
  Select();
  const std::uint64_t calls = inside.process().calls() - before;
  ASSERT_GT(calls, 3U);
  int others = 0;
  for (std::uint64_t number = 1; number <= calls; ++number) {
    inside.process().FailCall(number);
    EXPECT_GE(Select(), 0);
    EXPECT_TRUE(out.view() == u"JPN" || out.view() == u"ENU" || out.empty());
    others += out.view() == u"JPN" ? 0 : 1;
    EXPECT_TRUE(inside.process().Ledger().empty());
  }
  EXPECT_GT(others, 0);
}

// --- ResFileExists

TEST_F(ResourceFile, IsLookedForBesideTheProfile) {
  Install(u"de.dll");
  EXPECT_EQ(ResFileExists(u"de.dll", kProfile), 1);
  EXPECT_EQ(ResFileExists(u"DE.DLL", u"C:\\Set\\gone.ini"), 1);
  EXPECT_EQ(ResFileExists(u"en.dll", kProfile), 0);
  EXPECT_EQ(ResFileExists(u"de.dll", u"C:\\Other\\M1.INI"), 0);
}

TEST_F(ResourceFile, WithoutANameIsAbsentThoughItsFolderIsThere) {
  EXPECT_EQ(ResFileExists(u"", kProfile), 0);
}

TEST_F(ResourceFile, OfAProfileWithoutAFolderIsAbsent) {
  machine.files().WriteFile(u"C:\\Program Files\\KAVRO\\de.dll", "");
  EXPECT_EQ(ResFileExists(u"de.dll", u"M1.INI"), 0);
  EXPECT_EQ(ResFileExists(u"de.dll", u""), 0);
}

TEST_F(ResourceFile, APathOf260CharactersIsAbsent) {
  const std::u16string longest(252, u'n');  // "C:\Set\" has seven
  Install(longest);
  EXPECT_EQ(ResFileExists(longest.c_str(), kProfile), 1);
  EXPECT_EQ(ResFileExists((longest + u"n").c_str(), kProfile), 0);
  Install(u"de.dll");
  const std::u16string profile = u"C:\\Set\\" + std::u16string(253, u'p');
  EXPECT_EQ(ResFileExists(u"de.dll", profile.substr(0, 259).c_str()), 1);
  EXPECT_EQ(ResFileExists(u"de.dll", profile.c_str()), 0);
}

TEST_F(ResourceFile, OfAMissingArgumentIsAbsent) {
  EXPECT_EQ(ResFileExists(nullptr, kProfile), 0);
  EXPECT_EQ(ResFileExists(u"de.dll", nullptr), 0);
}

// --- The keys of the section

TEST_F(LanguageKeys, AreThoseOfTheSelectedSection) {
  WriteProfile(
      "[Language]\nENU=09,01\nDEU=07,01\n"
      "[ENU]\nResDll=en.dll\nName=English\nNumber=1\n"
      "[DEU]\nResDll=de.dll\nName=Deutsch\nNumber=0x10\n");
  Install(u"de.dll");
  machine.system().userLanguage = 0x0407;
  EXPECT_EQ(String(u"Name"), 0);
  EXPECT_EQ(out.view(), u"Deutsch");
  EXPECT_EQ(size, 8U);
  Begin(520);
  EXPECT_EQ(GetLanguageResDll(out.buffer(), &size, kProfile), 0);
  EXPECT_EQ(out.view(), u"de.dll");
  EXPECT_EQ(size, 7U);
  EXPECT_EQ(GetLanguageInt(u"Number", 5, kProfile), 16);
}

TEST_F(LanguageKeys, AKeyThatIsMissingOrEmptyGivesMinus2OrTheDefault) {
  WriteProfile("[Language]\nENU=09,01\n[ENU]\nResDll=en.dll\nEmpty=\n");
  Install(u"en.dll");
  EXPECT_EQ(String(u"Missing"), -2);
  EXPECT_EQ(out.view(), u"");
  EXPECT_EQ(String(u"Empty"), -2);
  EXPECT_EQ(GetLanguageInt(u"Missing", 5, kProfile), 5);
  EXPECT_EQ(GetLanguageInt(u"ResDll", 5, kProfile), 0);  // a text without digits
}

TEST_F(LanguageKeys, WhereNoLibraryIsThereNothingIsToBeRead) {
  WriteLanguages({"ENU=09,01"});
  EXPECT_EQ(String(u"ResDll"), -2);
  EXPECT_EQ(out.view(), u"");
  Begin(520);
  EXPECT_EQ(GetLanguageResDll(out.buffer(), &size, kProfile), -2);
  EXPECT_EQ(GetLanguageInt(u"ResDll", 5, kProfile), 5);
}

TEST_F(LanguageKeys, WhereNoSectionCanBeSelectedTheResultIsMinus1) {
  WriteLanguages({std::string(100, 'n') + "=09,01"});
  Begin(520);
  EXPECT_EQ(GetLanguageString(u"ResDll", out.buffer(), &size, u""), -1);
  EXPECT_EQ(out.view(), u"");
  EXPECT_EQ(GetLanguageResDll(out.buffer(), &size, nullptr), -1);
  EXPECT_EQ(GetLanguageInt(u"ResDll", 5, u""), -1);
  EXPECT_EQ(GetLanguageInt(u"ResDll", 5, nullptr), -1);
}

TEST_F(LanguageKeys, TooLittleRoomIsTold) {
  WriteLanguages({"ENU=09,01"});
  Install(u"ENU.dll");
  EXPECT_EQ(String(u"ResDll", 7), -4);
  EXPECT_EQ(size, 8U);
  EXPECT_EQ(out.view(), u"");
  EXPECT_EQ(String(u"ResDll", 15), -1);
  EXPECT_EQ(String(u"ResDll", 16), 0);
  EXPECT_EQ(out.view(), u"ENU.dll");
}

TEST_F(LanguageKeys, ATextIsCutTo259Characters) {
  WriteProfile("[Language]\nENU=09,01\n[ENU]\nResDll=en.dll\nLong=" + std::string(300, 'x') + "\n");
  Install(u"en.dll");
  EXPECT_EQ(String(u"Long"), 0);
  EXPECT_EQ(out.view(), std::u16string(259, u'x'));
  EXPECT_EQ(size, 260U);
}

TEST_F(LanguageKeys, AMissingArgumentGivesMinus1) {
  WriteLanguages({"ENU=09,01"});
  Install(u"ENU.dll");
  size = 520;
  EXPECT_EQ(GetLanguageString(nullptr, out.buffer(), &size, kProfile), -1);
  EXPECT_EQ(GetLanguageString(u"", out.buffer(), &size, kProfile), -1);
  EXPECT_EQ(GetLanguageString(u"ResDll", nullptr, &size, kProfile), -1);
  EXPECT_EQ(GetLanguageString(u"ResDll", out.buffer(), nullptr, kProfile), -1);
  EXPECT_EQ(GetLanguageResDll(nullptr, &size, kProfile), -1);
  EXPECT_EQ(GetLanguageInt(nullptr, 5, kProfile), -1);
  EXPECT_EQ(GetLanguageInt(u"", 5, kProfile), -1);
}

}  // namespace
}  // namespace vgl
