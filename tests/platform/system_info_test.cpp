// The system's clock, version and own folder, and the shell's folders.
#include "tests/platform/platform_test.h"

namespace platform {
namespace {

using SystemClock = PlatformTest;
using SystemVersion = PlatformTest;
using SystemFolder = PlatformTest;
using SpecialFolders = PlatformTest;

TEST_F(SystemClock, TheTickCountNeverGoesBack) {
  std::uint32_t last = os.system.GetTickCount();
  for (int i = 0; i < 20; ++i) {
    os.process.Sleep(1);
    const std::uint32_t now = os.system.GetTickCount();
    EXPECT_LT(now - last, 0x80000000u);
    last = now;
  }
}

TEST_F(SystemClock, TheTickCountIsInMilliseconds) {
  LocalTime before;
  os.system.GetLocalTime(&before);
  const std::uint32_t start = os.system.GetTickCount();
  os.process.Sleep(1200);
  const std::uint32_t passed = os.system.GetTickCount() - start;
  LocalTime after;
  os.system.GetLocalTime(&after);

  const auto milliseconds = [](const LocalTime& t) {
    return ((t.hour * 60 + t.minute) * 60 + t.second) * 1000 + t.milliseconds;
  };
  constexpr int kDay = 24 * 60 * 60 * 1000;
  const int byClock = (milliseconds(after) - milliseconds(before) + kDay) % kDay;
  EXPECT_GE(passed, 1184u);
  EXPECT_NEAR(byClock, static_cast<int>(passed), 100);
}

TEST_F(SystemClock, TheLocalTimeIsADateAndATimeOfDay) {
  LocalTime now;
  os.system.GetLocalTime(&now);
  EXPECT_GE(now.year, 1601);
  EXPECT_TRUE(now.month >= 1 && now.month <= 12) << now.month;
  EXPECT_TRUE(now.day >= 1 && now.day <= 31) << now.day;
  EXPECT_LE(now.hour, 23);
  EXPECT_LE(now.minute, 59);
  EXPECT_LE(now.second, 59);
  EXPECT_LE(now.milliseconds, 999);
}

TEST_F(SystemClock, TheTimeIsInSecondsSince1970) {
  const std::int64_t start = os.system.time();
  EXPECT_GT(start, 1577836800);  // the beginning of 2020
  EXPECT_LT(start, 4102444800);  // the beginning of 2100
  os.process.Sleep(1200);
  const std::int64_t passed = os.system.time() - start;
  EXPECT_GE(passed, 1);
  EXPECT_LE(passed, 6);
}

TEST_F(SystemVersion, ItTellsANewEnoughWindows) {
  OsVersion version;
  ASSERT_TRUE(os.system.GetVersionExW(&version));
  EXPECT_EQ(version.platformId, VER_PLATFORM_WIN32_NT);
  // A program whose manifest doesn't name a later version is told 6.2.
  EXPECT_GE(version.majorVersion * 100 + version.minorVersion, 602u);
  EXPECT_TRUE(version.productType >= 1 && version.productType <= 3) << int{version.productType};
}

TEST_F(SystemFolder, ItIsAFolderWithoutClosingBackslash) {
  char16_t path[MAX_PATH] = {};
  const std::uint32_t length = os.system.GetSystemDirectoryW(path, MAX_PATH);
  const std::u16string folder(path);
  EXPECT_EQ(folder.size(), length);
  ASSERT_GT(folder.size(), 3u);
  EXPECT_EQ(folder.substr(1, 2), u":\\");
  EXPECT_EQ(os.nls.lstrcmpiW(folder.substr(folder.rfind(u'\\')).c_str(), u"\\system32"), 0);
  const std::uint32_t attributes = os.files.GetFileAttributesW(path);
  ASSERT_NE(attributes, INVALID_FILE_ATTRIBUTES);
  EXPECT_NE(attributes & FILE_ATTRIBUTE_DIRECTORY, 0u);
}

TEST_F(SystemFolder, TooSmallARoomTellsTheNeededOneWithTerminator) {
  char16_t whole[MAX_PATH] = {};
  const std::uint32_t length = os.system.GetSystemDirectoryW(whole, MAX_PATH);
  ASSERT_GT(length, 3u);
  EXPECT_EQ(os.system.GetSystemDirectoryW(nullptr, 0), length + 1);
  char16_t path[MAX_PATH] = {};
  path[length] = u'?';
  EXPECT_EQ(os.system.GetSystemDirectoryW(path, 1), length + 1);
  EXPECT_EQ(os.system.GetSystemDirectoryW(path, length), length + 1);
  EXPECT_EQ(path[length], u'?');
}

TEST_F(SystemFolder, ARoomThatJustFitsIsEnough) {
  char16_t whole[MAX_PATH] = {};
  const std::uint32_t length = os.system.GetSystemDirectoryW(whole, MAX_PATH);
  ASSERT_GT(length, 3u);
  std::u16string path(length + 2, u'?');
  EXPECT_EQ(os.system.GetSystemDirectoryW(path.data(), length + 1), length);
  EXPECT_EQ(path, std::u16string(whole) + u'\0' + u'?');
}

TEST_F(SpecialFolders, TheCommonDataFolderExists) {
  char16_t path[MAX_PATH] = {};
  ASSERT_EQ(os.shell.SHGetSpecialFolderPathW(path, CSIDL_COMMON_APPDATA, false), 1);
  const std::u16string folder(path);
  ASSERT_GT(folder.size(), 3u);
  EXPECT_EQ(folder.substr(1, 2), u":\\");
  EXPECT_NE(folder.back(), u'\\');
  const std::uint32_t attributes = os.files.GetFileAttributesW(path);
  ASSERT_NE(attributes, INVALID_FILE_ATTRIBUTES);
  EXPECT_NE(attributes & FILE_ATTRIBUTE_DIRECTORY, 0u);
}

TEST_F(SpecialFolders, AskingForItToBeMadeChangesNothingWhenItExists) {
  char16_t found[MAX_PATH] = {};
  char16_t made[MAX_PATH] = {};
  ASSERT_EQ(os.shell.SHGetSpecialFolderPathW(found, CSIDL_COMMON_APPDATA, false), 1);
  ASSERT_EQ(os.shell.SHGetSpecialFolderPathW(made, CSIDL_COMMON_APPDATA, true), 1);
  EXPECT_EQ(std::u16string(made), std::u16string(found));
}

TEST_F(SpecialFolders, ANumberThatMeansNoFolderFails) {
  char16_t path[MAX_PATH] = {};
  EXPECT_EQ(os.shell.SHGetSpecialFolderPathW(path, 0xFF, false), 0);
}

}  // namespace
}  // namespace platform
