// Which lines of an install description are taken, and what is taken of them.
#include "profile/install_desc_parser.h"

#include "Common/wide_format.h"
#include "platform/registry.h"
#include "tests/profile/driver_set_fixture.h"

namespace vgl {
namespace {

using namespace platform;
using Texts = std::vector<std::u16string>;

constexpr char16_t kFolder[] = u"C:\\Set";

class InstallLines : public DriverSetTest {
 protected:
  // The paths that section [Install] with these lines describes, each as "tag|path".
  Texts Paths(std::string_view lines) {
    Describe(lines);
    return PathsOfFile();
  }
  Texts PathsOfFile() {
    CDatTextFile file;
    EXPECT_EQ(file.Open(kSADat), 1);
    CRegPathList list;
    const int result = ParsePaths(file, list);
    Texts texts;
    for (const CRegPathEntry& entry : list.Access())
      texts.push_back(entry.m_csTag + u"|" + entry.m_csPath);
    EXPECT_EQ(result, texts.empty() ? 0 : 1);
    return texts;
  }

  // Likewise the values: "tag|name=12" for a number, "tag|name='text'" for a string.
  Texts Entries(std::string_view lines, std::u16string_view folder = kFolder) {
    Describe(lines);
    return EntriesOfFile(folder);
  }
  Texts EntriesOfFile(std::u16string_view folder = kFolder) {
    CDatTextFile file;
    EXPECT_EQ(file.Open(kSADat), 1);
    CRegEnterList list;
    const int result = ParseEntries(file, folder, list);
    Texts texts;
    for (const CRegEnterEntry& entry : list.Access()) texts.push_back(TextOf(entry));
    EXPECT_EQ(result, texts.empty() ? 0 : 1);
    return texts;
  }

 private:
  static std::u16string TextOf(const CRegEnterEntry& entry) {
    const std::u16string front = entry.m_csTag + u"|" + entry.m_csName + u"=";
    if (entry.m_uType == REG_SZ) return front + u"'" + entry.m_csText + u"'";
    EXPECT_EQ(entry.m_uType, REG_DWORD);
    return front + WideFormat(u"%lld", entry.m_nNumber);
  }
};

using InstallPaths = InstallLines;
using InstallEntries = InstallLines;
using InstallConditions = InstallLines;
using InstallExpansion = InstallLines;

// --- REGPATH

TEST_F(InstallPaths, AnAcceptedLineGivesTagAndPathBehindTheHive) {
  const struct {
    const char* line;
    const char16_t* path;
  } cases[] = {
      {R"(REGPATH = DRV, "HKEY_LOCAL_MACHINE\Software\KAVRO\VGL3\Driver\Sample")",
       u"DRV|Software\\KAVRO\\VGL3\\Driver\\Sample"},
      {R"(regpath=A,"HKEY_LOCAL_MACHINE\X")", u"A|X"},
      {R"(REGPATH = A, "HKEY_LOCAL_MACHINE\X", more, "fields")", u"A|X"},
      {R"(REGPATH = A B , "HKEY_LOCAL_MACHINE\X" )", u"A B|X"},
      {R"(REGPATH = "A", "HKEY_LOCAL_MACHINE\X")", u"\"A\"|X"},
      {R"(REGPATH = A, "HKEY_LOCAL_MACHINE\X,Y")", u"A|X,Y"},
      {R"(REGPATH = A, "HKEY_LOCAL_MACHINE\ X ")", u"A| X "},
      {R"(REGPATH = A, "HKEY_LOCAL_MACHINE\X\")", u"A|X\\"},
      {R"(REGPATH = A, "HKEY_LOCAL_MACHINE\\X\\Y")", u"A|\\X\\\\Y"},
      {R"(REGPATH = A, "HKEY_LOCAL_MACHINE\X""Y""")", u"A|X\"Y\""},
      {R"(REGPATH = A, "what stands in front HKEY_LOCAL_MACHINE\X")", u"A|X"},
      {R"(REGPATH = A, "HKEY_LOCAL_MACHINE\HKEY_LOCAL_MACHINE\X")", u"A|HKEY_LOCAL_MACHINE\\X"},
  };
  for (const auto& c : cases) EXPECT_EQ(Paths(c.line), Texts{c.path}) << c.line;
}

TEST_F(InstallPaths, ALineThatDoesntFitIsDropped) {
  for (const char* line : {
           R"(REGPATH = A, Software\X)",
           R"(REGPATH = A, HKEY_LOCAL_MACHINE\X)",
           R"(REGPATH = A, 'HKEY_LOCAL_MACHINE\X')",
           R"(REGPATH = A, "HKEY_CURRENT_USER\X")",
           R"(REGPATH = A, "Software\X")",
           R"(REGPATH = A, "hkey_local_machine\X")",
           R"(REGPATH = A, "HKEY_LOCAL_MACHINE")",
           R"(REGPATH = A, "HKEY_LOCAL_MACHINE/X")",
           R"(REGPATH = A, "HKEY_LOCAL_MACHINE\")",
           R"(REGPATH = A, "HKLM\X")",
           R"(REGPATH = A, "")",
           R"(REGPATH = A, )",
           R"(REGPATH = A)",
           R"(REGPATH = , "HKEY_LOCAL_MACHINE\X")",
           R"(REGPATH = "HKEY_LOCAL_MACHINE\X")",
           R"(REGPATH = A, , "HKEY_LOCAL_MACHINE\X")",
           R"(REGPATH = A, "HKEY_LOCAL_MACHINE\X)",
           R"(REGPATH = A, HKEY_LOCAL_MACHINE\X")",
           R"(REGPATH = A, "HKEY_LOCAL_MACHINE\X;Y")",
           R"(REGPATH = A, "HKEY_LOCAL_MACHINE\X" Y)",
           R"(REGPATH = "A, "HKEY_LOCAL_MACHINE\X")",
           R"(;REGPATH = A, "HKEY_LOCAL_MACHINE\X")",
           R"(REGPATH A, "HKEY_LOCAL_MACHINE\X")",
           R"(REGPATHS = A, "HKEY_LOCAL_MACHINE\X")",
           R"(REGPATH =)",
       })
    EXPECT_EQ(Paths(line), Texts{}) << line;
}

TEST_F(InstallPaths, StandInTheOrderOfTheFileAndMayRepeat) {
  EXPECT_EQ(Paths(R"(
REGPATH = B, "HKEY_LOCAL_MACHINE\2"
REGENTER = A, "N", 12
REGPATH = A, nothing
REGPATH = A, "HKEY_LOCAL_MACHINE\1"
REGPATH = B, "HKEY_LOCAL_MACHINE\2"
)"),
            (Texts{u"B|2", u"A|1", u"B|2"}));
}

TEST_F(InstallPaths, OnlyLinesBehindTheFirstHeaderCount) {
  WriteSADat(R"(REGPATH = A, "HKEY_LOCAL_MACHINE\1"
[Other]
REGPATH = A, "HKEY_LOCAL_MACHINE\2"
[iNSTALL]
REGPATH = A, "HKEY_LOCAL_MACHINE\3"
[Other]
REGPATH = A, "HKEY_LOCAL_MACHINE\4"
[Install]
REGPATH = A, "HKEY_LOCAL_MACHINE\5"
)");
  EXPECT_EQ(PathsOfFile(), (Texts{u"A|3", u"A|4", u"A|5"}));
}

TEST_F(InstallPaths, WithoutTheSectionThereAreNone) {
  WriteSADat("[ Install ]\nREGPATH = A, \"HKEY_LOCAL_MACHINE\\1\"\n");
  EXPECT_EQ(PathsOfFile(), Texts{});
}

TEST_F(InstallPaths, ALineWithAnOpeningBracketAtBothEndsEndsThem) {
  EXPECT_EQ(Paths(R"(
REGPATH = A, "HKEY_LOCAL_MACHINE\1"
[end[
REGPATH = A, "HKEY_LOCAL_MACHINE\2"
)"),
            (Texts{u"A|1"}));
}

// --- REGENTER

TEST_F(InstallEntries, AnAcceptedLineGivesTagNameAndValue) {
  const struct {
    const char* line;
    const char16_t* entry;
  } cases[] = {
      {R"(REGENTER = DRV, "ModelID", "Sample")", u"DRV|ModelID='Sample'"},
      {R"(REGENTER = DRV, "InstallPath", DRIVERDIR)", u"DRV|InstallPath='C:\\Set'"},
      {R"(REGENTER = DRV, "DepExe", DRIVERDIR+"\tool.exe", WINNT)",
       u"DRV|DepExe='C:\\Set\\tool.exe'"},
      {R"(REGENTER = DRV, "QBAPI_VERSION", 0x100)", u"DRV|QBAPI_VERSION=256"},
      {R"(regenter=A,"N",12)", u"A|N=12"},
      {R"(REGENTER = A B , " N " , 12 )", u"A B| N =12"},
      {R"(REGENTER = A, "N", "a, b")", u"A|N='a, b'"},
      {R"(REGENTER = A, "N", " x ")", u"A|N=' x '"},
      {R"(REGENTER = A, "N", "   ")", u"A|N='   '"},
      {R"(REGENTER = A, "N", "say ""x"" now")", u"A|N='say \"x\" now'"},
      {R"(REGENTER = A, "N""M", 12)", u"A|N\"M=12"},
      {R"(REGENTER = A, "N", "12")", u"A|N='12'"},
      {R"(REGENTER = A, "N", "C:\\x")", u"A|N='C:\\\\x'"},
      {R"(REGENTER = A, "N", abc)", u"A|N=0"},
      {R"(REGENTER = A, "N", 12abc)", u"A|N=12"},
      {R"(REGENTER = A, "N", -1)", u"A|N=-1"},
      {R"(REGENTER = A, "N", 0XfF)", u"A|N=255"},
      {R"(REGENTER = A, "N", 0x)", u"A|N=0"},
      {R"(REGENTER = A, "N", 0x7FFFFFFF)", u"A|N=2147483647"},
      {R"(REGENTER = A, "N", 0xFFFFFFFF)", u"A|N=2147483647"},
      {R"(REGENTER = A, "N", 99999999999)", u"A|N=2147483647"},
      {R"(REGENTER = A, "N", -99999999999)", u"A|N=-2147483648"},
  };
  for (const auto& c : cases) EXPECT_EQ(Entries(c.line), Texts{c.entry}) << c.line;
}

TEST_F(InstallEntries, ALineThatDoesntFitIsDropped) {
  for (const char* line : {
           R"(REGENTER = A, N, 12)",
           R"(REGENTER = A, "", 12)",
           R"(REGENTER = A, "N)",
           R"(REGENTER = A, "N, 12)",
           R"(REGENTER = A, "N")",
           R"(REGENTER = A, "N",)",
           R"(REGENTER = A, "N", , 12)",
           R"(REGENTER = , "N", 12)",
           R"(REGENTER = "N", 12)",
           R"(REGENTER = A)",
           R"(REGENTER = A, "N", "")",
           R"(REGENTER = A, "N", "cut; here")",
           R"(REGENTER = A, "N", DRIVERDIR + "\x")",
           R"(REGENTER = A, "N", driverdir+"\x")",
           R"(REGENTER = A, "N", DRIVERDIR+x)",
           R"(REGENTER = A, "N", DRIVERDIR+"")",
           R"(REGENTER = A, "N", "DRIVERDIR")",
           R"(REGENTER = A, "N", xDRIVERDIR)",
           R"(REGENTERS = A, "N", 12)",
       })
    EXPECT_EQ(Entries(line), Texts{}) << line;
}

TEST_F(InstallEntries, ATextCutByACommentLeavesTheFieldBehindItsQuote) {
  // The quoted field without an end is empty; the fields behind it begin behind the quote.
  EXPECT_EQ(Entries(R"(REGENTER = A, "N", "x;y")"), Texts{});
  EXPECT_EQ(Entries(R"(REGENTER = A, "N", 12, "x;y")"), Texts{u"A|N=12"});
}

TEST_F(InstallEntries, StandInTheOrderOfTheFile) {
  EXPECT_EQ(Entries(R"(
REGENTER = B, "N", 1
REGPATH  = A, "HKEY_LOCAL_MACHINE\1"
REGENTER = A, "N", 2
REGENTER = A, N, 3
REGENTER = A, "M", 4
)"),
            (Texts{u"B|N=1", u"A|N=2", u"A|M=4"}));
}

TEST_F(InstallEntries, TheyAreLookedForFromTheTopOfTheSection) {
  WriteSADat(R"(REGENTER = A, "N", 1
[Install]
REGENTER = A, "N", 2
[Other]
REGENTER = A, "M", 3
)");
  CDatTextFile file;
  ASSERT_EQ(file.Open(kSADat), 1);
  CRegPathList paths;
  ParsePaths(file, paths);  // leaves the position at the file's end
  CRegEnterList list;
  ParseEntries(file, kFolder, list);
  EXPECT_EQ(list.Access().Count(), 2U);
}

TEST_F(InstallEntries, ALineWithAnOpeningBracketAtBothEndsEndsThem) {
  EXPECT_EQ(Entries("REGENTER = A, \"N\", 1\n[\nREGENTER = A, \"M\", 2\n"), Texts{u"A|N=1"});
}

TEST_F(InstallEntries, WithoutTheSectionThereAreNone) {
  WriteSADat("[Installation]\nREGENTER = A, \"N\", 1\n");
  EXPECT_EQ(EntriesOfFile(), Texts{});
}

TEST_F(InstallEntries, WithoutAFolderStringsAreDroppedAndNumbersKept) {
  EXPECT_EQ(Entries(R"(
REGENTER = A, "1", "text"
REGENTER = A, "2", 12
REGENTER = A, "3", DRIVERDIR
REGENTER = A, "4", SYSTEMDIR
)",
                    u""),
            Texts{u"A|2=12"});
}

// --- Lines for one value

TEST_F(InstallEntries, TheSecondOfTwoNeighboursWins) {
  EXPECT_EQ(Entries(R"(
REGENTER = A, "N", 1
REGENTER = A, "N", "two"
)"),
            Texts{u"A|N='two'"});
}

TEST_F(InstallEntries, TheLastOfThreeNeighboursWins) {
  EXPECT_EQ(Entries(R"(
REGENTER = A, "M", 0
REGENTER = A, "N", 1
REGENTER = A, "N", 2
REGENTER = A, "N", 3
)"),
            (Texts{u"A|M=0", u"A|N=3"}));
}

TEST_F(InstallEntries, WithAnotherInBetweenBothStay) {
  EXPECT_EQ(Entries(R"(
REGENTER = A, "N", 1
REGENTER = A, "M", 2
REGENTER = A, "N", 3
)"),
            (Texts{u"A|N=1", u"A|M=2", u"A|N=3"}));
}

TEST_F(InstallEntries, ADroppedLineDoesntStandInBetween) {
  EXPECT_EQ(Entries(R"(
REGENTER = A, "N", 1
REGENTER = A, "M", 2, WIN9X
REGENTER = A, M, 2
REGENTER = A, "N", 3
)"),
            Texts{u"A|N=3"});
}

TEST_F(InstallEntries, ADroppedLineReplacesNothing) {
  EXPECT_EQ(Entries(R"(
REGENTER = A, "N", 1
REGENTER = A, "N", 2, WIN9X
REGENTER = A, "N", ""
)"),
            Texts{u"A|N=1"});
}

TEST_F(InstallEntries, NeighboursInAnotherCaseOrOfAnotherTagBothStay) {
  EXPECT_EQ(Entries(R"(
REGENTER = A, "N", 1
REGENTER = a, "N", 2
REGENTER = a, "n", 3
REGENTER = B, "n", 4
)"),
            (Texts{u"A|N=1", u"a|N=2", u"a|n=3", u"B|n=4"}));
}

// --- Conditions, on version 10 of the NT family

TEST_F(InstallConditions, OneThatHoldsIsEnough) {
  for (const char* conditions : {"WINNT", "winnt", "ALL", " WINNT ", "WIN9X, WINNT", "WINNT, WIN9X",
                                 "WIN9X, WIN9X, WIN2000", "NoWord, BUILD64", "WINNT,"})
    EXPECT_EQ(Entries(R"(REGENTER = A, "N", 12, )" + std::string(conditions)), Texts{u"A|N=12"})
        << conditions;
}

TEST_F(InstallConditions, NoneAtAllKeepsTheLine) {
  for (const char* conditions : {"", ",", ",  ", ", , WIN9X", ",,WIN9X", ",;WIN9X"})
    EXPECT_EQ(Entries(R"(REGENTER = A, "N", 12)" + std::string(conditions)), Texts{u"A|N=12"})
        << conditions;
}

TEST_F(InstallConditions, WithoutOneThatHoldsTheLineIsDropped) {
  for (const char* conditions :
       {"WIN9X", "WIN9X, WINNT40", "NoWord", "\"WINNT\"", "WIN NT", "WIN9X, , WINNT", "WIN9X,"})
    EXPECT_EQ(Entries(R"(REGENTER = A, "N", 12, )" + std::string(conditions)), Texts{})
        << conditions;
}

TEST_F(InstallConditions, AreThoseOfTheSystemThatReads) {
  constexpr char kLines[] = R"(
REGENTER = A, "N", 1, WINNT
REGENTER = A, "M", 2, WIN9X
)";
  EXPECT_EQ(Entries(kLines), Texts{u"A|N=1"});
  BeWindows9x();
  EXPECT_EQ(Entries(kLines), Texts{u"A|M=2"});
}

TEST_F(InstallConditions, ChooseOneOfTwoNeighbours) {
  constexpr char kLines[] = R"(
REGENTER = A, "N", "old", WIN9X
REGENTER = A, "N", "new", WINNT
)";
  EXPECT_EQ(Entries(kLines), Texts{u"A|N='new'"});
  BeWindows9x();
  EXPECT_EQ(Entries(kLines), Texts{u"A|N='old'"});
}

// --- Strings

TEST_F(InstallExpansion, WordsStandForFolders) {
  const struct {
    const char16_t* value;
    const char16_t* text;
  } cases[] = {
      {u"\"text\"", u"text"},
      {u"\" text \"", u" text "},
      {u"DRIVERDIR", u"C:\\Set"},
      {u"driverDir", u"C:\\Set"},
      {u"SYSTEMDIR", u"C:\\Windows\\system32"},
      {u"systemdir", u"C:\\Windows\\system32"},
      {u"DRIVERDIR+\"\\x\"", u"C:\\Set\\x"},
      {u"SYSTEMDIR+\"\\x\"", u"C:\\Windows\\system32\\x"},
      {u"DRIVERDIR+\"x\"", u"C:\\Setx"},
      {u"DRIVERDIR+\" \\x y \"", u"C:\\Set\\x y"},
      {u"anything DRIVERDIR+\"\\x\"", u"C:\\Set\\x"},
      {u"SYSTEMDIR DRIVERDIR+\"\\x\"", u"C:\\Set\\x"},
      {u"DRIVERDIR+\"\\SYSTEMDIR\"", u"C:\\Set\\SYSTEMDIR"},
      {u"\"driverdir+x\"", u"driverdir+x"},
      {u"\"systemdir\"", u"systemdir"},
  };
  for (const auto& c : cases) EXPECT_EQ(ExpandValue(c.value, kFolder), c.text);
}

TEST_F(InstallExpansion, AnyOtherFormIsEmpty) {
  for (const char16_t* value : {u"",
                                u"text",
                                u"\"",
                                u"\"\"",
                                u"\"text",
                                u"text\"",
                                u"DRIVERDIR+",
                                u"DRIVERDIR+x",
                                u"DRIVERDIR+\"",
                                u"DRIVERDIR+\"\"",
                                u"DRIVERDIR+\"  \"",
                                u"DRIVERDIR +\"\\x\"",
                                u"DRIVERDIR+ \"\\x\"",
                                u"DRIVERDIR\"\\x\"",
                                u"DRIVERDIR ",
                                u"DRIVERDIRx",
                                u"driverdir+\"\\x\"",
                                u"systemdir+\"\\x\"",
                                u"\"DRIVERDIR\"",
                                u"\"DRIVERDIR+x\"",
                                u"SYSTEMDIR+\"\\DRIVERDIR\"",
                                u"DRIVERDIRDRIVERDIR"})
    EXPECT_EQ(ExpandValue(value, kFolder), u"") << testing::PrintToString(std::u16string(value));
}

TEST_F(InstallExpansion, WithoutAFolderOfTheDriverEverythingIsEmpty) {
  for (const char16_t* value : {u"\"text\"", u"DRIVERDIR", u"SYSTEMDIR", u"SYSTEMDIR+\"\\x\""})
    EXPECT_EQ(ExpandValue(value, u""), u"");
}

TEST_F(InstallExpansion, TheSystemsFolderMayBeLong) {
  for (const std::size_t length : {62U, 63U, 64U, 65U, 66U, 200U}) {
    const std::u16string folder = u"C:\\" + std::u16string(length - 3, u'w');
    machine.system().systemFolder = folder;
    EXPECT_EQ(ExpandValue(u"SYSTEMDIR", kFolder), folder) << length;
  }
}

TEST_F(InstallExpansion, AShortSystemsFolderTakesOneCallALongOneTwo) {
  EXPECT_EQ(CallsOf([] { ExpandValue(u"SYSTEMDIR", kFolder); }), 1U);
  machine.system().systemFolder = u"C:\\" + std::u16string(61, u'w');
  EXPECT_EQ(CallsOf([] { ExpandValue(u"SYSTEMDIR", kFolder); }), 2U);
  EXPECT_EQ(CallsOf([] { ExpandValue(u"DRIVERDIR+\"\\x\"", kFolder); }), 0U);
}

TEST_F(InstallExpansion, WithoutTheSystemsFolderOnlyTheTextBehindItIsLeft) {
  machine.system().systemFolder = u"";
  EXPECT_EQ(ExpandValue(u"SYSTEMDIR", kFolder), u"");
  EXPECT_EQ(ExpandValue(u"SYSTEMDIR+\"\\x\"", kFolder), u"\\x");
}

TEST_F(InstallExpansion, ALongSystemsFolderThatFailsTheSecondTimeIsNone) {
  machine.system().systemFolder = u"C:\\" + std::u16string(80, u'w');
  inside.process().FailCall(2);
  EXPECT_EQ(ExpandValue(u"SYSTEMDIR", kFolder), u"");
  EXPECT_EQ(inside.process().failedOperation(), "GetSystemDirectoryW");
}

}  // namespace
}  // namespace vgl
