// /KVT: the printer's name taken from its monitored-printer record.
#include <gtest/gtest.h>

#include <string>

#include "platform/owned.h"
#include "tests/app/record_fixture.h"

namespace vgl::test {
namespace {

using platform::HKEY_CURRENT_USER;
using platform::HKEY_LOCAL_MACHINE;

class PrinterRecordOption : public RecordTest {
 protected:
  const std::u16string key = u"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget\\P0000000000000000";
  const std::u16string option = u"/KVT \"KVLTarget\\P0000000000000000\"";

  std::u16string NameBehind(const std::u16string& text) {
    return CCmdLineInfo(text.c_str()).m_szPrinterName;
  }
};

TEST_F(PrinterRecordOption, TheRecordsNameReplacesThePrinterName) {
  machine.registry().SetString(HKEY_CURRENT_USER, key, u"Name", u"Office");
  EXPECT_EQ(NameBehind(option), u"Office");
  EXPECT_EQ(NameBehind(u"/P \"old\" " + option), u"Office");
}

TEST_F(PrinterRecordOption, APrinterNameBehindItReplacesTheRecordsName) {
  machine.registry().SetString(HKEY_CURRENT_USER, key, u"Name", u"Office");
  EXPECT_EQ(NameBehind(option + u" /P \"new\""), u"new");
}

TEST_F(PrinterRecordOption, AMissingRecordLeavesThePrinterName) {
  EXPECT_EQ(NameBehind(u"/P \"old\" " + option), u"old");
}

TEST_F(PrinterRecordOption, ARecordOfTheMachineBranchIsNotLookedAt) {
  machine.registry().SetString(HKEY_LOCAL_MACHINE, key, u"Name", u"Office");
  EXPECT_EQ(NameBehind(u"/P \"old\" " + option), u"old");
}

TEST_F(PrinterRecordOption, ARecordThatMayNotBeReadLeavesThePrinterName) {
  machine.registry().SetString(HKEY_CURRENT_USER, key, u"Name", u"Office");
  machine.registry().Deny(HKEY_CURRENT_USER, key, true);
  EXPECT_EQ(NameBehind(u"/P \"old\" " + option), u"old");
}

TEST_F(PrinterRecordOption, ARecordThatMayOnlyBeReadIsEnough) {
  machine.registry().SetString(HKEY_CURRENT_USER, key, u"Name", u"Office");
  machine.registry().Deny(HKEY_CURRENT_USER, key, false);
  EXPECT_EQ(NameBehind(option), u"Office");
}

TEST_F(PrinterRecordOption, ARecordWithoutANameEmptiesThePrinterName) {
  machine.registry().MakeKey(HKEY_CURRENT_USER, key);
  EXPECT_EQ(NameBehind(u"/P \"old\" " + option), u"");
}

TEST_F(PrinterRecordOption, AnEmptyNameEmptiesThePrinterName) {
  machine.registry().SetString(HKEY_CURRENT_USER, key, u"Name", u"");
  EXPECT_EQ(NameBehind(u"/P \"old\" " + option), u"");
  machine.registry().SetBytes(HKEY_CURRENT_USER, key, u"Name", platform::REG_SZ, "");
  EXPECT_EQ(NameBehind(u"/P \"old\" " + option), u"");
}

TEST_F(PrinterRecordOption, ANameStoredWithoutTerminatorIsReadWhole) {
  machine.registry().SetBytes(HKEY_CURRENT_USER, key, u"Name", platform::REG_SZ,
                              std::string("O\0f\0f\0", 6));
  EXPECT_EQ(NameBehind(option), u"Off");
}

TEST_F(PrinterRecordOption, ANameOfAnOddNumberOfBytesIsReadWithAZeroByteBehindIt) {
  machine.registry().SetBytes(HKEY_CURRENT_USER, key, u"Name", platform::REG_SZ,
                              std::string("O\0f\0f", 5));
  EXPECT_EQ(NameBehind(option), u"Off");
}

TEST_F(PrinterRecordOption, ANameEndsAtItsFirstNul) {
  machine.registry().SetBytes(HKEY_CURRENT_USER, key, u"Name", platform::REG_SZ,
                              std::string("O\0\0\0f\0\0\0", 8));
  EXPECT_EQ(NameBehind(option), u"O");
}

TEST_F(PrinterRecordOption, AValueOfAnotherTypeIsTakenAsTextToo) {
  // 0x00420041: the characters A and B.
  machine.registry().SetDword(HKEY_CURRENT_USER, key, u"Name", 0x00420041);
  EXPECT_EQ(NameBehind(option), u"AB");
}

TEST_F(PrinterRecordOption, ANameMayBeLongerThanAnOptionsValue) {
  const std::u16string name(1000, u'n');
  machine.registry().SetString(HKEY_CURRENT_USER, key, u"Name", name);
  EXPECT_EQ(NameBehind(option), name);
}

TEST_F(PrinterRecordOption, ANameThatCanNotBeReadAfterAllEmptiesThePrinterName) {
  machine.registry().SetString(HKEY_CURRENT_USER, key, u"Name", u"Office");
  inside.process().FailNext("RegQueryValueExW", platform::ERROR_MORE_DATA);
  EXPECT_EQ(NameBehind(u"/P \"old\" " + option), u"");
}

TEST_F(PrinterRecordOption, ARecordPathThatDoesNotFitLeavesThePrinterName) {
  // With the branch in front and its backslash, 231 characters are the most.
  const std::u16string most(231, u'k');
  const std::u16string branch = u"Software\\KAVRO\\VGL3\\VGLData\\";
  machine.registry().SetString(HKEY_CURRENT_USER, branch + most, u"Name", u"Office");
  machine.registry().SetString(HKEY_CURRENT_USER, branch + most + u"k", u"Name", u"Workshop");
  EXPECT_EQ(NameBehind(u"/KVT \"" + most + u"\""), u"Office");
  EXPECT_EQ(NameBehind(u"/P \"old\" /KVT \"" + most + u"k\""), u"old");
}

TEST_F(PrinterRecordOption, NoKeyIsLeftOpen) {
  machine.registry().SetString(HKEY_CURRENT_USER, key, u"Name", u"Office");
  EXPECT_EQ(NameBehind(option), u"Office");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

}  // namespace
}  // namespace vgl::test
