// What agents leave on a machine, in words.
#include "desk/suite_reader.h"

#include <gtest/gtest.h>

#include "desk/default_machine.h"
#include "platform/sim/machine.h"

namespace desk {
namespace {

using platform::HKEY_CURRENT_USER;
using Lines = std::vector<std::string>;

constexpr char16_t kRunKey[] = u"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr char16_t kPrinters[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget";
constexpr char16_t kPorts[] = u"Software\\KAVRO\\VGL3\\VGLData\\KVNTarget";
constexpr char16_t kUsageLog[] = u"C:\\ProgramData\\KAVRO\\VGL3\\LOG\\VGL_TrayIcon_S1.xml";

class SuiteInWords : public testing::Test {
 protected:
  ~SuiteInWords() override { EXPECT_TRUE(inside.process().Ledger().empty()); }

  sim::Machine machine;
  sim::Inside inside{machine};
};

TEST_F(SuiteInWords, WhereThereIsNothingThatIsTold) { EXPECT_EQ(ReadSuite(), Lines{"nothing"}); }

TEST_F(SuiteInWords, EachLineOfTheLogsIsOne) {
  machine.files().WriteFile(u"C:\\ProgramData\\KAVRO\\VGL3\\RUNHELPER.LOG", "one\r\ntwo\nthree");
  machine.files().WriteFile(u"C:\\ProgramData\\KAVRO\\VGL3\\PARLOS.LOG", "close: \"\xD7\xA4\"\n");
  machine.files().WriteFile(u"C:\\ProgramData\\KAVRO\\VGL3\\UTILITY.LOG",
                            "begin UtCleanHeadW: \"A\" \"\" \"\" \"\"\nend UtCleanHeadW\n");
  machine.files().WriteFile(u"C:\\ProgramData\\KAVRO\\VGL3\\PROGRAMS.LOG", "A.EXE /X\n  /Y\n");
  EXPECT_EQ(ReadSuite(),
            (Lines{"run helper: one", "run helper: two", "run helper: three",
                   "invitation library: close: \"\xD7\xA4\"",
                   "utility library: begin UtCleanHeadW: \"A\" \"\" \"\" \"\"",
                   "utility library: end UtCleanHeadW", "program: A.EXE /X", "program:   /Y"}));
}

TEST_F(SuiteInWords, OfTheTempFolderTheParameterFilesAreToldInOrder) {
  const std::u16string folder = machine.system().tempFolder;
  for (const char16_t* name : {u"K_Q2.tmp", u"K_Q1.tmp", u"other.tmp"})
    machine.files().WriteFile(folder + name, "");
  EXPECT_EQ(ReadSuite(), (Lines{"temp folder: K_Q1.tmp", "temp folder: K_Q2.tmp"}));
}

TEST_F(SuiteInWords, RunValuesAreToldByName) {
  machine.registry().SetString(HKEY_CURRENT_USER, kRunKey, u"b", u"\"C:\\x y.exe\" /FU \"f\"");
  machine.registry().SetString(HKEY_CURRENT_USER, kRunKey, u"a", u"");
  machine.registry().SetDword(HKEY_CURRENT_USER, kRunKey, u"c", 7);
  EXPECT_EQ(ReadSuite(),
            (Lines{"Run \"a\": ", "Run \"b\": \"C:\\x y.exe\" /FU \"f\"", "Run \"c\": 7"}));
}

TEST_F(SuiteInWords, ARecordIsToldWithItsValuesAndTheKeysBelowIt) {
  const std::u16string record = std::u16string(kPrinters) + u"\\P0000000000000003";
  auto& registry = machine.registry();
  registry.SetDword(HKEY_CURRENT_USER, record, u"Timer", 10);
  registry.SetString(HKEY_CURRENT_USER, record, u"Name", u"A");
  registry.SetDword(HKEY_CURRENT_USER, record, u"Setting", 4294967295U);
  registry.SetBytes(HKEY_CURRENT_USER, record, u"LastKickNetPilot", platform::REG_BINARY,
                    "12345678");
  registry.SetDword(HKEY_CURRENT_USER, record + u"\\Notify", u"001", 1);
  registry.MakeKey(HKEY_CURRENT_USER, std::u16string(kPorts) + u"\\P0000000000000000");
  EXPECT_EQ(ReadSuite(), (Lines{"record KVLTarget\\P0000000000000003: LastKickNetPilot (8 bytes), "
                                "Name \"A\", Setting 4294967295, Timer 10",
                                "record KVLTarget\\P0000000000000003\\Notify: 001 1",
                                "record KVNTarget\\P0000000000000000:"}));
}

TEST_F(SuiteInWords, ValuesOfOddFormAreToldAsTheyAre) {
  const std::u16string record = std::u16string(kPrinters) + u"\\P1";
  auto& registry = machine.registry();
  registry.SetBytes(HKEY_CURRENT_USER, record, u"a", platform::REG_DWORD, "xy");
  registry.SetBytes(HKEY_CURRENT_USER, record, u"b", platform::REG_SZ, std::string("q\0r\0", 4));
  registry.SetBytes(HKEY_CURRENT_USER, record, u"c", platform::REG_SZ, "");
  registry.SetBytes(HKEY_CURRENT_USER, record, u"d", platform::REG_SZ,
                    std::string("q\0\0\0r\0", 6));
  EXPECT_EQ(ReadSuite(), (Lines{"record KVLTarget\\P1: a (2 bytes), b \"qr\", c \"\", d \"q\""}));
}

TEST_F(SuiteInWords, OfAUsageLogTheCountsThatArentZeroAreTold) {
  machine.files().WriteFile(kUsageLog,
                            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                            "<UsageLog device=\"S1\" version=\"1.0.0.0\">\n"
                            "  <Counter index=\"0\" value=\"0\"/>\n"
                            "  <Counter index=\"1\" value=\"12\"/>\n"
                            "  <Counter index=\"13\" value=\"4294967295\"/>\n"
                            "</UsageLog>\n");
  machine.files().WriteFile(u"C:\\ProgramData\\KAVRO\\VGL3\\LOG\\VGL_Detail_S1.xml", "<UsageLog>");
  EXPECT_EQ(ReadSuite(), (Lines{"usage log VGL_Detail_S1.xml: not in the form of one",
                                "usage log VGL_TrayIcon_S1.xml: counter 1 is 12",
                                "usage log VGL_TrayIcon_S1.xml: counter 13 is 4294967295"}));
}

TEST_F(SuiteInWords, WhatCantBeOpenedIsPassedOver) {
  machine.files().WriteFile(u"C:\\ProgramData\\KAVRO\\VGL3\\RUNHELPER.LOG", "one\n");
  machine.files().MakeUnreadable(u"C:\\ProgramData\\KAVRO\\VGL3\\RUNHELPER.LOG");
  machine.files().WriteFile(kUsageLog, "");
  machine.files().MakeUnreadable(kUsageLog);
  machine.registry().Deny(HKEY_CURRENT_USER, kRunKey, true);
  machine.registry().Deny(HKEY_CURRENT_USER, kPrinters, true);
  EXPECT_EQ(ReadSuite(), Lines{"usage log VGL_TrayIcon_S1.xml: not in the form of one"});
}

}  // namespace
}  // namespace desk
