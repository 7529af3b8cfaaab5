// Default settings that are written into a record: notifications, popup, tray icon.
#include "Common/record_defaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/Common/target_records_fixture.h"

namespace vgl {
namespace {

using namespace platform;
using testing::IsEmpty;

constexpr char16_t kRecord[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget\\P0000000000000000";
constexpr char16_t kNotify[] =
    u"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget\\P0000000000000000\\Notify";
constexpr char16_t kProfile[] = u"C:\\Drivers\\A.INI";

// --- Notifications by the profile

class NotifyDefaults : public TargetRecordTest {
 protected:
  bool changed = true;

  int Set(std::string_view profile) {
    machine.files().WriteFile(kProfile, std::string(profile));
    return SetNotifyDefaults(kRecord, u"Status", kProfile, changed);
  }
  std::optional<std::uint32_t> Switch(std::u16string_view name) {
    return registry().Dword(kUser, kNotify, name);
  }
};

TEST_F(NotifyDefaults, EachItemOfTheSectionIsASwitch) {
  EXPECT_EQ(Set("[Status]\r\nITEMNUM=3\r\nITEM009=1\r\nITEM012=0\r\nITEM501=7\r\n"), 1);
  EXPECT_TRUE(changed);
  EXPECT_EQ(registry().ValueNames(kUser, kNotify), (Names{u"009", u"012", u"501"}));
  EXPECT_EQ(Switch(u"009"), 1U);
  EXPECT_EQ(Switch(u"012"), 0U);
  EXPECT_EQ(Switch(u"501"), 7U);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(NotifyDefaults, OneThatIsThereStaysWhereNotifyWasThereBefore) {
  registry().SetDword(kUser, kNotify, u"009", 5);
  EXPECT_EQ(Set("[Status]\r\nITEMNUM=2\r\nITEM009=1\r\nITEM012=1\r\n"), 1);
  EXPECT_TRUE(changed);
  EXPECT_EQ(Switch(u"009"), 5U);
  EXPECT_EQ(Switch(u"012"), 1U);
}

TEST_F(NotifyDefaults, NothingHasChangedWhereAllAreThere) {
  registry().SetDword(kUser, kNotify, u"009", 5);
  EXPECT_EQ(Set("[Status]\r\nITEMNUM=1\r\nITEM009=1\r\n"), 1);
  EXPECT_FALSE(changed);
}

TEST_F(NotifyDefaults, OneThatIsThereCountsTowardsItemnumToo) {
  registry().SetDword(kUser, kNotify, u"009", 5);
  EXPECT_EQ(Set("[Status]\r\nITEMNUM=1\r\nITEM009=1\r\nITEM012=1\r\n"), 1);
  EXPECT_EQ(Switch(u"012"), std::nullopt);
}

TEST_F(NotifyDefaults, OfTwoLinesOfOneCodeTheSecondCountsInANewKeyAndTheFirstInAnOldOne) {
  constexpr char kTwice[] = "[Status]\r\nITEMNUM=2\r\nITEM009=1\r\nITEM009=2\r\n";
  EXPECT_EQ(Set(kTwice), 1);
  EXPECT_EQ(Switch(u"009"), 2U);
  registry().RemoveValue(kUser, kNotify, u"009");
  EXPECT_EQ(Set(kTwice), 1);
  EXPECT_EQ(Switch(u"009"), 1U);
}

TEST_F(NotifyDefaults, NoMoreLinesCountThanItemnumSays) {
  EXPECT_EQ(Set("[Status]\r\nITEM001=1\r\nITEM002=1\r\nITEM003=1\r\nITEMNUM=2\r\n"), 1);
  EXPECT_EQ(registry().ValueNames(kUser, kNotify), (Names{u"001", u"002"}));
}

TEST_F(NotifyDefaults, TheSectionMayHaveLessThanItemnumSays) {
  EXPECT_EQ(Set("[Status]\r\nITEMNUM=100\r\nITEM001=1\r\n[Other]\r\nITEM002=1\r\n"), 1);
  EXPECT_EQ(registry().ValueNames(kUser, kNotify), Names{u"001"});
}

TEST_F(NotifyDefaults, LinesOfAnotherFormArePassedOverAndDontCount) {
  EXPECT_EQ(Set("[Status]\r\nITEMNUM=2\r\nITEM01=1\r\nITEM0123=1\r\nITEM01x=1\r\nitem014=1\r\n"
                "ITEM=1\r\nITEM015\r\nITEM 16=1\r\nName=ITEM\r\nITEM017=1\r\n; ITEM018=1\r\n"
                "ITEM019=1\r\nITEM020=1\r\n"),
            1);
  EXPECT_EQ(registry().ValueNames(kUser, kNotify), (Names{u"017", u"019"}));
}

TEST_F(NotifyDefaults, AnItemMayStandAnywhereInItsLineAndTheFirstOneCounts) {
  EXPECT_EQ(Set("[Status]\r\nITEMNUM=5\r\nxITEM001=1\r\nKey=ITEM002=3\r\nITEMITEM003=1\r\n"), 1);
  EXPECT_EQ(registry().ValueNames(kUser, kNotify), (Names{u"001", u"002"}));
  EXPECT_EQ(Switch(u"002"), 3U);
}

TEST_F(NotifyDefaults, TheNumberIsDecimalAndEndsWithItsDigits) {
  EXPECT_EQ(Set("[Status]\r\nITEMNUM=9\r\nITEM001=010\r\nITEM002=0x10\r\nITEM003=12ab\r\n"
                "ITEM004=\r\nITEM005=on\r\nITEM006=-1\r\nITEM007= 8 \r\n"),
            1);
  EXPECT_EQ(Switch(u"001"), 10U);
  EXPECT_EQ(Switch(u"002"), 0U);
  EXPECT_EQ(Switch(u"003"), 12U);
  EXPECT_EQ(Switch(u"004"), 0U);
  EXPECT_EQ(Switch(u"005"), 0U);
  EXPECT_EQ(Switch(u"006"), 0xFFFFFFFFU);
  EXPECT_EQ(Switch(u"007"), 8U);
}

TEST_F(NotifyDefaults, WithoutItemnumNotifyIsMadeAndStaysEmpty) {
  for (const char* profile : {"", "[Status]\r\nITEM001=1\r\n", "[Status]\r\nITEMNUM=0\r\n",
                              "[Status]\r\nITEMNUM=none\r\nITEM001=1\r\n"}) {
    changed = true;
    EXPECT_EQ(Set(profile), 0);
    EXPECT_FALSE(changed);
  }
  EXPECT_TRUE(registry().HasKey(kUser, kNotify));
  EXPECT_THAT(registry().ValueNames(kUser, kNotify), IsEmpty());
}

TEST_F(NotifyDefaults, AFileThatIsntThereGivesZero) {
  EXPECT_EQ(SetNotifyDefaults(kRecord, u"Status", u"C:\\missing.ini", changed), 0);
}

TEST_F(NotifyDefaults, ZeroWhereNotifyCantBeMade) {
  registry().Deny(kUser, kRecord, false);
  EXPECT_EQ(Set("[Status]\r\nITEMNUM=1\r\nITEM001=1\r\n"), 0);
  EXPECT_FALSE(changed);
}

TEST_F(NotifyDefaults, ZeroWhereItsPathDoesntFit) {
  machine.files().WriteFile(kProfile, "[Status]\r\nITEMNUM=1\r\nITEM001=1\r\n");
  // "a\" and "\Notify" make 260 with 251 characters, which don't fit, and 259 with 250.
  const std::u16string fits = u"a\\" + std::u16string(250, u'k');
  EXPECT_EQ(SetNotifyDefaults((fits + u"k").c_str(), u"Status", kProfile, changed), 0);
  EXPECT_FALSE(registry().HasKey(kUser, fits + u"k"));
  EXPECT_EQ(SetNotifyDefaults(fits.c_str(), u"Status", kProfile, changed), 1);
  EXPECT_EQ(registry().Dword(kUser, fits + u"\\Notify", u"001"), 1U);
}

TEST_F(NotifyDefaults, ASectionOf32764CharactersIsReadAndALongerOneIsnt) {
  // Each line counts with its terminator: "ITEMNUM=1" has 10, "ITEM001=1" 10, "x=" and its fill.
  const auto profile = [](std::size_t length) {
    return "[Status]\r\nITEMNUM=1\r\nITEM001=1\r\nx=" + std::string(length - 20 - 3, 'y') + "\r\n";
  };
  EXPECT_EQ(Set(profile(32765)), 0);
  EXPECT_FALSE(changed);
  EXPECT_EQ(Set(profile(40000)), 0);
  EXPECT_EQ(Set(profile(32764)), 1);
  EXPECT_TRUE(changed);
}

TEST_F(NotifyDefaults, ASwitchThatCantBeWrittenCountsAsAChangeAndTheNextOneFollows) {
  inside.process().FailNext("RegSetValueExW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(Set("[Status]\r\nITEMNUM=1\r\nITEM001=1\r\n"), 1);
  EXPECT_TRUE(changed);
  EXPECT_THAT(registry().ValueNames(kUser, kNotify), IsEmpty());
  inside.process().FailNext("RegSetValueExW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(Set("[Status]\r\nITEMNUM=2\r\nITEM001=1\r\nITEM002=1\r\n"), 1);
  EXPECT_EQ(registry().ValueNames(kUser, kNotify), Names{u"002"});
  EXPECT_TRUE(inside.process().Ledger().empty());
}

// --- What the function-disable flags say

class DisabledDefaults : public TargetRecordTest {
 protected:
  CGetDisableVglFuncData flags;

  DisabledDefaults() {
    flags.bLoaded = 1;
    std::fill(std::begin(flags.bNotify), std::end(flags.bNotify), 1);
  }
};

TEST_F(DisabledDefaults, EachFlagOfTheTenBelongsToItsCode) {
  const char16_t* const codes[] = {u"012", u"011", u"009", u"501", u"015",
                                   u"016", u"013", u"017", u"502", u"503"};
  for (std::size_t flag = 0; flag < 10; ++flag) {
    registry().RemoveKey(kUser, kNotify);
    registry().MakeKey(kUser, kNotify);
    flags.bNotify[flag] = 0;
    EXPECT_EQ(SetNotifyDisabled(flags, kRecord), 0);
    EXPECT_EQ(registry().ValueNames(kUser, kNotify), Names{codes[flag]});
    EXPECT_EQ(registry().Dword(kUser, kNotify, codes[flag]), 0U);
    flags.bNotify[flag] = 1;
  }
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(DisabledDefaults, TheTenAreWrittenInTheOrderOfTheirCodesButFor501) {
  registry().MakeKey(kUser, kNotify);
  std::fill(std::begin(flags.bNotify), std::end(flags.bNotify), 0);
  const std::size_t before = machine.trace().size();
  EXPECT_EQ(SetNotifyDisabled(flags, kRecord), 0);
  std::vector<std::u16string> written;
  for (std::size_t i = before; i < machine.trace().size(); ++i)
    written.push_back(machine.trace()[i].text);
  std::vector<std::u16string> expected;
  for (const char16_t* code :
       {u"009", u"011", u"012", u"013", u"015", u"016", u"501", u"017", u"502", u"503"})
    expected.push_back(u"set HKCU\\" + std::u16string(kNotify) + u"\\" + code + u" = 0");
  EXPECT_EQ(written, expected);
}

TEST_F(DisabledDefaults, ASwitchThatWasOnGoesOffAndOthersStay) {
  registry().SetDword(kUser, kNotify, u"012", 1);
  registry().SetDword(kUser, kNotify, u"011", 1);
  flags.bNotify[0] = 0;
  EXPECT_EQ(SetNotifyDisabled(flags, kRecord), 0);
  EXPECT_EQ(registry().Dword(kUser, kNotify, u"012"), 0U);
  EXPECT_EQ(registry().Dword(kUser, kNotify, u"011"), 1U);
}

TEST_F(DisabledDefaults, ANewNotifyStaysEmpty) {
  flags.bNotify[0] = 0;
  EXPECT_EQ(SetNotifyDisabled(flags, kRecord), 0);
  EXPECT_TRUE(registry().HasKey(kUser, kNotify));
  EXPECT_THAT(registry().ValueNames(kUser, kNotify), IsEmpty());
}

TEST_F(DisabledDefaults, ANotifyWhosePathDoesntFitGivesMinus99) {
  EXPECT_EQ(SetNotifyDisabled(flags, (u"a\\" + std::u16string(251, u'k')).c_str()), -99);
  EXPECT_EQ(SetNotifyDisabled(flags, (u"a\\" + std::u16string(250, u'k')).c_str()), 0);
}

TEST_F(DisabledDefaults, ThePopupIsSwitchedOffByItsFlagInARecordThatWasThere) {
  registry().MakeKey(kUser, kRecord);
  EXPECT_EQ(SetIoPopupDefault(flags, kRecord), 0);
  EXPECT_THAT(registry().ValueNames(kUser, kRecord), IsEmpty());
  flags.bNoIoPopup = 1;
  EXPECT_EQ(SetIoPopupDefault(flags, kRecord), 0);
  EXPECT_EQ(registry().Dword(kUser, kRecord, u"IoEnablePopup"), 0U);
}

TEST_F(DisabledDefaults, TheTrayIconIsSwitchedOffInARecordThatWasThere) {
  registry().SetDword(kUser, kRecord, u"TrayIconEnable", 1);
  EXPECT_EQ(SetTrayIconDefault(flags, kRecord), 0);
  EXPECT_EQ(registry().Dword(kUser, kRecord, u"TrayIconEnable"), 0U);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(DisabledDefaults, ARecordThatIsMadeByTheCallStaysEmpty) {
  flags.bNoIoPopup = 1;
  EXPECT_EQ(SetIoPopupDefault(flags, kRecord), 0);
  EXPECT_TRUE(registry().HasKey(kUser, kRecord));
  EXPECT_THAT(registry().ValueNames(kUser, kRecord), IsEmpty());
  registry().RemoveKey(kUser, kRecord);
  EXPECT_EQ(SetTrayIconDefault(flags, kRecord), 0);
  EXPECT_TRUE(registry().HasKey(kUser, kRecord));
  EXPECT_THAT(registry().ValueNames(kUser, kRecord), IsEmpty());
}

class DisabledDefaultsFailures : public DisabledDefaults,
                                 public testing::WithParamInterface<decltype(&SetNotifyDisabled)> {
 protected:
  DisabledDefaultsFailures() {
    std::fill(std::begin(flags.bNotify), std::end(flags.bNotify), 0);
    flags.bNoIoPopup = 1;
  }
  std::int32_t Set(const char16_t* keyPath) { return GetParam()(flags, keyPath); }
};

INSTANTIATE_TEST_SUITE_P(All, DisabledDefaultsFailures,
                         testing::Values(SetNotifyDisabled, SetIoPopupDefault, SetTrayIconDefault));

TEST_P(DisabledDefaultsFailures, FlagsThatArentLoadedGiveMinus99AndChangeNothing) {
  flags.bLoaded = 0;
  EXPECT_EQ(Set(kRecord), -99);
  EXPECT_FALSE(registry().HasKey(kUser, kRecord));
  registry().MakeKey(kUser, kNotify);
  EXPECT_EQ(Set(kRecord), -99);
  EXPECT_THAT(registry().ValueNames(kUser, kRecord), IsEmpty());
  EXPECT_THAT(registry().ValueNames(kUser, kNotify), IsEmpty());
}

TEST_P(DisabledDefaultsFailures, ANullOrEmptyPathGivesMinus99AndChangesNothing) {
  EXPECT_EQ(Set(nullptr), -99);
  EXPECT_EQ(Set(u""), -99);
  EXPECT_THAT(registry().ValueNames(kUser, u""), IsEmpty());
  EXPECT_FALSE(registry().HasKey(kUser, u"Notify"));
}

TEST_P(DisabledDefaultsFailures, AKeyThatCantBeMadeGivesMinus99) {
  inside.process().FailNext("RegCreateKeyExW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(Set(kRecord), -99);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_P(DisabledDefaultsFailures, AValueThatCantBeWrittenIsPassedOver) {
  registry().MakeKey(kUser, kNotify);
  inside.process().FailNext("RegSetValueExW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(Set(kRecord), 0);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

}  // namespace
}  // namespace vgl
