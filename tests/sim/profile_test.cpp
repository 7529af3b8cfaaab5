// Profile files on the simulated machine, as far as no other system reads them so: faults, files
// that can't be read, where a bare name is looked for.
#include <gtest/gtest.h>

#include <string>

#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace sim {
namespace {

using namespace platform;
using namespace std::string_literals;

constexpr const char16_t* kPath = u"C:\\Work\\x.ini";

class SimProfiles : public testing::Test {
 protected:
  SimProfiles() { machine.files().WriteFile(kPath, "[s]\r\nkey=value\r\nnumber=7\r\n"); }

  std::u16string Value(const char16_t* path, const char16_t* key = u"key") {
    Os().process.SetLastError(ERROR_SUCCESS);
    char16_t value[20] = {};
    Os().profiles.GetPrivateProfileStringW(u"s", key, u"fallback", value, 20, path);
    return value;
  }
  std::uint32_t Number() { return Os().profiles.GetPrivateProfileIntW(u"s", u"number", 99, kPath); }
  std::u16string Section() {
    char16_t lines[50] = {};
    const std::uint32_t length = Os().profiles.GetPrivateProfileSectionW(u"s", lines, 50, kPath);
    return {lines, length};
  }
  std::int32_t LastError() { return Os().process.GetLastError(); }

  Machine machine;
  Inside inside{machine, u"C:\\Work\\test.exe"};
};

TEST_F(SimProfiles, ABareNameIsLookedForInTheWindowsFolder) {
  EXPECT_EQ(Value(u"x.ini"), u"fallback");
  machine.files().WriteFile(u"C:\\Windows\\x.ini", "[s]\nkey=windows");
  EXPECT_EQ(Value(u"x.ini"), u"windows");
  EXPECT_EQ(Value(u".\\x.ini"), u"value");
  EXPECT_EQ(Value(u"C:x.ini"), u"value");
}

TEST_F(SimProfiles, TheLastErrorTellsWhatIsMissing) {
  EXPECT_EQ(Value(kPath), u"value");
  EXPECT_EQ(LastError(), ERROR_SUCCESS);
  EXPECT_EQ(Value(kPath, u"missing"), u"fallback");
  EXPECT_EQ(LastError(), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Value(u"C:\\Work\\missing.ini"), u"fallback");
  EXPECT_EQ(LastError(), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Value(u"C:\\missing\\x.ini"), u"fallback");
  EXPECT_EQ(LastError(), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(Value(u"C:\\Work"), u"fallback");
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
  EXPECT_EQ(Value(u"C:\\Work\\a*.ini"), u"fallback");
  EXPECT_EQ(LastError(), ERROR_INVALID_NAME);
  EXPECT_EQ(Value(nullptr), u"fallback");
}

TEST_F(SimProfiles, AnUnreadableFileIsAsOneThatIsMissing) {
  machine.files().MakeUnreadable(kPath);
  EXPECT_EQ(Value(kPath), u"fallback");
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
  EXPECT_EQ(Number(), 99u);
  EXPECT_EQ(Section(), u"");
}

TEST_F(SimProfiles, AFileThatSomebodyKeepsToHimselfIsAsOneThatIsMissing) {
  OwnedFile file(Os().files.CreateFileW(kPath, GENERIC_WRITE, 0, OPEN_EXISTING, 0));
  ASSERT_TRUE(file);
  EXPECT_EQ(Value(kPath), u"fallback");
  EXPECT_EQ(LastError(), ERROR_SHARING_VIOLATION);
  file = OwnedFile(Os().files.CreateFileW(kPath, GENERIC_WRITE, FILE_SHARE_READ, OPEN_EXISTING, 0));
  EXPECT_EQ(Value(kPath), u"value");
}

TEST_F(SimProfiles, AReadThatIsToFailFindsNothing) {
  inside.process().FailCall(1);
  EXPECT_EQ(Section(), u"");
  EXPECT_EQ(inside.process().failedOperation(), "GetPrivateProfileSectionW");
  inside.process().FailCall(1);
  EXPECT_EQ(Number(), 99u);
  EXPECT_EQ(inside.process().failedOperation(), "GetPrivateProfileIntW");
  inside.process().FailNext("GetPrivateProfileStringW", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_EQ(Value(kPath), u"fallback");
  EXPECT_EQ(LastError(), ERROR_NOT_ENOUGH_MEMORY);
}

TEST_F(SimProfiles, ReadingIsNeitherTracedNorHeld) {
  EXPECT_EQ(Value(kPath), u"value");
  EXPECT_EQ(Number(), 7u);
  EXPECT_EQ(Section(), u"key=value\0number=7\0"s);
  EXPECT_TRUE(machine.trace().empty());
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(SimProfiles, NoRoomGetsNothing) {
  EXPECT_EQ(Os().profiles.GetPrivateProfileStringW(u"s", u"key", u"", nullptr, 0, kPath), 0u);
  EXPECT_EQ(Os().profiles.GetPrivateProfileSectionW(u"s", nullptr, 0, kPath), 0u);
}

TEST_F(SimProfiles, HalfACharacterAtTheEndOfAWideFileIsIgnored) {
  machine.files().WriteFile(kPath, "\xFF\xFE[\0s\0]\0\n\0k\0=\0v\0x"s);
  char16_t value[20] = {};
  EXPECT_EQ(Os().profiles.GetPrivateProfileStringW(u"s", u"k", u"", value, 20, kPath), 1u);
  EXPECT_EQ(std::u16string(value), u"v");
}

TEST_F(SimProfiles, TheCharactersOfTheCodePageThatAreNotLatin1) {
  machine.files().WriteFile(kPath, "[s]\nkey=\x80\x8A\x9F\xA0\xFF|");
  EXPECT_EQ(Value(kPath), u"\u20AC\u0160\u0178\u00A0\u00FF|");
}

}  // namespace
}  // namespace sim
