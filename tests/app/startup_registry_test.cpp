// The Run values by which Windows starts an agent at logon, and the parameter file that one of them
// keeps. What ends a start (DeleteStartupReg) is in start_result_test.cpp.
#include <gtest/gtest.h>

#include "Common/text_conversion.h"
#include "Common/tray_log.h"
#include "app/tray_app.h"
#include "desk/default_machine.h"
#include "platform/sim/machine.h"
#include "tests/support/log_texts.h"

namespace vgl {
namespace {

using namespace platform;
using namespace std::string_literals;

using Texts = std::vector<std::u16string>;

constexpr char16_t kRun[] = u"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr char16_t kKept[] = u"C:\\T\\kept.tmp";
constexpr char16_t kName[] = u"Studio 7200";

class StartupRegistry : public testing::Test {
 protected:
  StartupRegistry() {
    desk::SetUpSuite(machine);
    desk::EnableTrayLog(machine);
    TrayLogInit(TrayLogPath().c_str());
    machine.files().WriteFile(kKept, "x");
    machine.files().WriteFile(u"C:\\T\\other.tmp", "x");
  }

  void SetRunValue(std::u16string_view name, std::u16string_view text) {
    machine.registry().SetString(HKEY_CURRENT_USER, kRun, name, text);
  }
  Texts RunValues() { return machine.registry().ValueNames(HKEY_CURRENT_USER, kRun); }
  void AddRecord(std::u16string_view branch, std::u16string_view number, std::u16string_view name) {
    machine.registry().SetString(HKEY_CURRENT_USER,
                                 u"Software\\KAVRO\\VGL3\\VGLData\\" + std::u16string(branch) +
                                     u"\\" + std::u16string(number),
                                 u"Name", name);
  }
  // Whether the kept file went with that Run value, which stays.
  bool FileGoesWith(std::u16string_view commandLine) {
    SetRunValue(kName, commandLine);
    return FileGoes();
  }
  bool FileGoes() {
    const Texts values = RunValues();
    machine.files().WriteFile(kKept, "x");
    CTrayIconApp::DelOldIconRegFile(kName);
    EXPECT_EQ(RunValues(), values);
    EXPECT_TRUE(inside.process().Ledger().empty());
    return !machine.files().Exists(kKept);
  }
  bool OtherStands() { return machine.files().Exists(u"C:\\T\\other.tmp"); }
  std::string Log() { return machine.files().ReadFile(desk::kTrayLogFile).value_or(""); }
  bool HasLogged(const std::string& text) {
    return Log().find("; " + text + "\r\n") != std::string::npos;
  }

  sim::Machine machine;
  sim::Inside inside{machine};
};

// --- DelOldIconRegFile

TEST_F(StartupRegistry, TheFileInQuotesBehindTheFirstSlashFGoes) {
  const struct {
    const char16_t* commandLine;
    bool goes;
  } cases[] = {
      {u"\"C:\\P F\\K_QD21TR.EXE\" /FU \"C:\\T\\kept.tmp\"", true},
      {u"agent /F \"C:\\T\\kept.tmp\"", true},
      {u"agent /FU\"C:\\T\\kept.tmp\"", true},
      {u"agent /FU \"c:\\t\\KEPT.TMP\"", true},
      {u"agent /FU \"C:\\T\\kept.tmp\" /EF \"HKCU\"", true},
      // Whatever else begins with these two characters, and wherever it stands.
      {u"agent /FOO /X \"C:\\T\\kept.tmp\"", true},
      {u"C:/F/agent.exe \"C:\\T\\kept.tmp\"", true},
      {u"agent /FU and more text \"C:\\T\\kept.tmp\"", true},
      // Small letters are others.
      {u"agent /fu \"C:\\T\\kept.tmp\"", false},
      {u"agent \"C:\\T\\kept.tmp\"", false},
      {u"agent -FU \"C:\\T\\kept.tmp\"", false},
      {u"agent / FU \"C:\\T\\kept.tmp\"", false},
      // In front of it there may be quotes, which don't count.
      {u"\"C:\\T\\kept.tmp\" /FU", false},
      {u"\"C:\\T\\kept.tmp\" /FU \"", false},
      {u"agent /FU C:\\T\\kept.tmp", false},
      {u"agent /FU \"C:\\T\\kept.tmp", false},
      {u"agent /FU C:\\T\\kept.tmp\"", false},
      // One that is inside quotes has its end for the beginning.
      {u"agent /P \"a/F\" \"C:\\T\\kept.tmp\"", false},
      // The first path counts, be it empty or missing.
      {u"agent /FU \"\" \"C:\\T\\kept.tmp\"", false},
      {u"agent /FU \"C:\\T\\gone.tmp\" \"C:\\T\\kept.tmp\"", false},
      {u"agent /FU \" C:\\T\\kept.tmp\"", false},
      {u"agent /FU \"C:\\T\\k*.tmp\"", false},  // found, but no name that can be deleted
      {u"agent /FU \"C:\\T\"", false},          // a folder
      {u"/F", false},
      {u"/", false},
      {u"", false},
  };
  for (const auto& each : cases)
    EXPECT_EQ(FileGoesWith(each.commandLine), each.goes) << Utf8FromText(each.commandLine);
  EXPECT_TRUE(OtherStands());
}

TEST_F(StartupRegistry, OnlyTheFirstFileOfTwoGoes) {
  EXPECT_TRUE(FileGoesWith(u"agent /FU \"C:\\T\\kept.tmp\" /FU \"C:\\T\\other.tmp\""));
  EXPECT_TRUE(OtherStands());
}

TEST_F(StartupRegistry, ARunValueOfMoreThan260CharactersCountsAsMissing) {
  const std::u16string end = u" /FU \"C:\\T\\kept.tmp\"";
  const auto line = [&](std::size_t chars) {
    return std::u16string(chars - end.size(), u'a') + end;
  };
  EXPECT_TRUE(FileGoesWith(line(259)));  // and the terminator
  EXPECT_FALSE(FileGoesWith(line(260)));
  EXPECT_TRUE(HasLogged("csParam : "));
  // Stored without a terminator it fits.
  machine.registry().SetBytes(HKEY_CURRENT_USER, kRun, kName, REG_SZ, Utf16LeFromText(line(260)));
  EXPECT_TRUE(FileGoes());
  machine.registry().SetBytes(HKEY_CURRENT_USER, kRun, kName, REG_SZ, Utf16LeFromText(line(261)));
  EXPECT_FALSE(FileGoes());
}

TEST_F(StartupRegistry, ARunValueOfAnotherTypeIsReadAsTheTextThatItsBytesAre) {
  const auto set = [this](std::uint32_t type, const std::string& bytes) {
    machine.registry().SetBytes(HKEY_CURRENT_USER, kRun, kName, type, bytes);
  };
  set(REG_DWORD, std::string("/\0F\0", 4));
  EXPECT_FALSE(FileGoes());
  set(REG_DWORD, std::string(4, '\0'));
  EXPECT_FALSE(FileGoes());
  set(REG_EXPAND_SZ, Utf16LeFromText(u"a /FU \"C:\\T\\kept.tmp\""));
  EXPECT_TRUE(FileGoes());
  set(REG_BINARY, Utf16LeFromText(u"a /FU \"C:\\T\\kept.tmp\"") + "x");  // an odd byte more
  EXPECT_TRUE(FileGoes());
  set(REG_MULTI_SZ, Utf16LeFromText(u"agent\0/FU \"C:\\T\\kept.tmp\"\0\0"s));
  EXPECT_FALSE(FileGoes());
  set(REG_NONE, "");
  EXPECT_FALSE(FileGoes());
}

TEST_F(StartupRegistry, WithoutARunValueOfThatNameNoFileGoes) {
  SetRunValue(u"Studio 7300", u"agent /FU \"C:\\T\\kept.tmp\"");
  SetRunValue(u"", u"agent /FU \"C:\\T\\kept.tmp\"");
  EXPECT_FALSE(FileGoes());
}

TEST_F(StartupRegistry, ARunValueIsFoundWithoutRegardToCase) {
  SetRunValue(u"STUDIO 7200", u"agent /FU \"C:\\T\\kept.tmp\"");
  EXPECT_TRUE(FileGoes());
}

// Looking for the file opens the key as if to write it.
TEST_F(StartupRegistry, ARunKeyThatIsMissingIsMade) {
  machine.registry().RemoveKey(HKEY_CURRENT_USER, kRun);
  CTrayIconApp::DelOldIconRegFile(kName);
  EXPECT_TRUE(machine.registry().HasKey(HKEY_CURRENT_USER, kRun));
  EXPECT_TRUE(RunValues().empty());
}

TEST_F(StartupRegistry, ARunKeyThatMayNotBeWrittenKeepsItsFile) {
  SetRunValue(kName, u"agent /FU \"C:\\T\\kept.tmp\"");
  machine.registry().Deny(HKEY_CURRENT_USER, kRun, false);
  EXPECT_FALSE(FileGoes());
  EXPECT_TRUE(HasLogged("Entry : Studio 7200"));
  EXPECT_FALSE(HasLogged("csParam : agent /FU \"C:\\T\\kept.tmp\""));
}

TEST_F(StartupRegistry, AFileThatIsOpenOrReadOnlyStays) {
  machine.files().MakeReadOnly(u"C:\\T\\other.tmp");
  EXPECT_FALSE(FileGoesWith(u"agent /FU \"C:\\T\\other.tmp\""));
  EXPECT_TRUE(OtherStands());
}

TEST_F(StartupRegistry, TheSearchForTheFileIsLogged) {
  using Lines = std::vector<std::string>;
  const auto logged = [&](const char16_t* commandLine) {
    machine.files().Remove(desk::kTrayLogFile);
    FileGoesWith(commandLine);
    return TextsOfLog(Log());
  };
  const auto expected = [](const Lines& lines) {
    Lines all = {"CTrayIconApp::DelOldIconRegFile",
                 "SubKey : software\\Microsoft\\Windows\\CurrentVersion\\Run",
                 "Entry : Studio 7200"};
    all.insert(all.end(), lines.begin(), lines.end());
    return all;
  };
  EXPECT_EQ(logged(u"agent /FU \"C:\\T\\gone.tmp\""),
            expected({"csParam : agent /FU \"C:\\T\\gone.tmp\"", "Path : C:\\T\\gone.tmp"}));
  EXPECT_EQ(logged(u"agent /FU \"\""), expected({"csParam : agent /FU \"\"", "Path : "}));
  EXPECT_EQ(logged(u"agent /FU \""), expected({"csParam : agent /FU \""}));
  EXPECT_EQ(logged(u""), expected({"csParam : "}));
}

// --- DeleteRunValues

TEST_F(StartupRegistry, TheValuesOfAPrinterAndOfItsRecordGo) {
  AddRecord(u"KVLTarget", u"P0000000000000000", u"Other");
  AddRecord(u"KVLTarget", u"P0000000000000003", u"STUDIO 7200");
  AddRecord(u"KVNTarget", u"P0000000000000005", kName);
  for (const char16_t* name :
       {u"studio 7200", u"KVLTarget\\P0000000000000003", u"KVLTarget\\P0000000000000000",
        u"KVNTarget\\P0000000000000005", u"Studio 72000", u""})
    SetRunValue(name, u"agent");
  CTrayIconApp::DeleteRunValues(kName, false);
  EXPECT_EQ(RunValues(), (Texts{u"KVLTarget\\P0000000000000000", u"KVNTarget\\P0000000000000005",
                                u"Studio 72000", u""}));
}

TEST_F(StartupRegistry, TheValuesOfAPortAndOfItsRecordGo) {
  AddRecord(u"KVLTarget", u"P0000000000000003", u"LPT2");
  AddRecord(u"KVNTarget", u"P0000000000000005", u"lpt2");
  for (const char16_t* name :
       {u"LPT2", u"KVLTarget\\P0000000000000003", u"KVNTarget\\P0000000000000005"})
    SetRunValue(name, u"agent");
  CTrayIconApp::DeleteRunValues(u"LPT2", true);
  EXPECT_EQ(RunValues(), Texts{u"KVLTarget\\P0000000000000003"});
}

TEST_F(StartupRegistry, WithoutARecordOnlyTheValueOfThePrinterGoes) {
  SetRunValue(kName, u"agent");
  SetRunValue(u"", u"the default value");
  SetRunValue(u"KVLTarget\\P0000000000000000", u"agent");
  CTrayIconApp::DeleteRunValues(kName, false);
  EXPECT_EQ(RunValues(), (Texts{u"", u"KVLTarget\\P0000000000000000"}));
}

TEST_F(StartupRegistry, TheRecordsValueGoesAlsoWhereThePrinterHasNone) {
  AddRecord(u"KVLTarget", u"P0000000000000003", kName);
  SetRunValue(u"KVLTarget\\P0000000000000003", u"agent");
  CTrayIconApp::DeleteRunValues(kName, false);
  EXPECT_TRUE(RunValues().empty());
}

TEST_F(StartupRegistry, ARunKeyThatIsMissingOrMayNotBeWrittenIsLeftAlone) {
  machine.registry().RemoveKey(HKEY_CURRENT_USER, kRun);
  CTrayIconApp::DeleteRunValues(kName, false);
  EXPECT_FALSE(machine.registry().HasKey(HKEY_CURRENT_USER, kRun));
  SetRunValue(kName, u"agent");
  machine.registry().Deny(HKEY_CURRENT_USER, kRun, false);
  CTrayIconApp::DeleteRunValues(kName, false);
  EXPECT_EQ(RunValues(), Texts{kName});
  EXPECT_TRUE(inside.process().Ledger().empty());
}

}  // namespace
}  // namespace vgl
