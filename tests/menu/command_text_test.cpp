// Command texts: their forms, their parts, and the command lines that are made of them.
#include "menu/command_text.h"

#include <gtest/gtest.h>

#include <string>

#include "Common/text_conversion.h"

namespace vgl {
namespace {

constexpr PrinterIdentity kPrinter = {
    .printerName = u"P1", .driverName = u"D1", .modelId = u"M1", .portName = u"OLD001"};

std::string Told(std::u16string_view text) { return Utf8FromText(text); }

// --- The form of a text with markers

TEST(CommandTextForm, GoesByTheMarkersThatTheTextHolds) {
  const std::pair<std::u16string, LaunchForm> texts[] = {
      {u"C:\\T\\x.exe /LM", LaunchForm::Lm},
      {u"C:\\T\\ /CISSVALID", LaunchForm::CissValid},
      {u"C:\\T\\ /DRVUPDATE", LaunchForm::DrvUpdate},
      {u"C:\\T\\ /UPPILOT", LaunchForm::UpPilot},
      {u"C:\\T\\x.exe /DP /Q", LaunchForm::ParameterFile},
      {u"C:\\T\\x.exe /ASMRT", LaunchForm::ParameterFile},
      {u"C:\\T\\x.exe /Q", LaunchForm::ParameterFile},
      {u"C:\\T\\x.exe ", LaunchForm::ParameterFile},
      {u"C:\\T\\x.exe", LaunchForm::Program},
      // Wherever they stand, also in front of other letters and in quotes.
      {u"x /A /B /LM /C", LaunchForm::Lm},
      {u"x /LMNOP", LaunchForm::Lm},
      {u"\"x /LM\"", LaunchForm::Lm},
      {u" /UPPILOT", LaunchForm::UpPilot},
      // As they are written, with their blank in front.
      {u"C:\\T\\x.exe/LM", LaunchForm::Program},
      {u"C:\\T\\x.exe\t/LM", LaunchForm::Program},
      {u"x /lm", LaunchForm::ParameterFile},
      {u"x  / LM", LaunchForm::ParameterFile},
      {u"x -LM", LaunchForm::ParameterFile},
      {u"x  /LM", LaunchForm::Lm},
      // No text of this kind is split at a bar.
      {u"C:\\a.exe|/x", LaunchForm::Program},
      {u"C:\\a.exe|/x /y", LaunchForm::ParameterFile},
      {u"  ", LaunchForm::ParameterFile},
      {u"", LaunchForm::Program},
  };
  for (const auto& [text, form] : texts) EXPECT_EQ(LaunchFormOf(text), form) << Told(text);
}

TEST(CommandTextForm, IsOfTheFirstMarkerInTheOrderOfTheFormsWhateverTheirOrderInTheText) {
  const std::pair<std::u16string, LaunchForm> texts[] = {
      {u"x /UPPILOT /DRVUPDATE /CISSVALID /LM", LaunchForm::Lm},
      {u"x /UPPILOT /DRVUPDATE /CISSVALID", LaunchForm::CissValid},
      {u"x /UPPILOT /DRVUPDATE", LaunchForm::DrvUpdate},
      {u"x /ASMRT /DP /UPPILOT", LaunchForm::UpPilot},
      {u"x /DP /ASMRT /LM", LaunchForm::Lm},
  };
  for (const auto& [text, form] : texts) EXPECT_EQ(LaunchFormOf(text), form) << Told(text);
}

TEST(CommandTextForm, HoldsAMarkerWithItsBlank) {
  EXPECT_TRUE(HoldsMarker(u"x /DP /ASMRT", u" /DP"));
  EXPECT_TRUE(HoldsMarker(u"x /DP /ASMRT", u" /ASMRT"));
  EXPECT_TRUE(HoldsMarker(u"x /DPI", u" /DP"));
  EXPECT_FALSE(HoldsMarker(u"x/DP", u" /DP"));
  EXPECT_FALSE(HoldsMarker(u"x /dp", u" /DP"));
  EXPECT_FALSE(HoldsMarker(u" /D", u" /DP"));
  EXPECT_FALSE(HoldsMarker(u"", u" /DP"));
}

// --- Its parts

TEST(CommandTextParts, AreDividedAtTheFirstBlankInQuotesOrNot) {
  struct Row {
    std::u16string text, program, arguments;
  };
  const Row rows[] = {
      {u"x.exe /DP /Q", u"x.exe", u"/DP /Q"},
      {u"x.exe  /Q", u"x.exe", u" /Q"},
      {u"\"C:\\Program Files\\x.exe\" /Q", u"\"C:\\Program", u"Files\\x.exe\" /Q"},
      {u"x.exe\t/A /Q", u"x.exe\t/A", u"/Q"},
      {u"x.exe\u3000/A", u"x.exe\u3000/A", u""},
      {u"x.exe ", u"x.exe", u""},
      {u" x.exe", u"", u"x.exe"},
      {u"   ", u"", u"  "},
      {u"x.exe", u"x.exe", u""},
      {u"", u"", u""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(ProgramPart(row.text), row.program) << Told(row.text);
    EXPECT_EQ(ArgumentPart(row.text), row.arguments) << Told(row.text);
  }
}

// --- Command lines

TEST(CommandLineOfAnEntry, IsTheOneOfItsForm) {
  EXPECT_EQ(LmCommandLine(u"C:\\Tools\\x.exe /LM", u"P1"), u"C:\\Tools\\x.exe \"P1\"");
  EXPECT_EQ(CissValidCommandLine(u"C:\\Tools\\ /CISSVALID", u"ic.exe", u"P1"),
            u"C:\\Tools\\ic.exe /P \"P1\"");
  EXPECT_EQ(DrvUpdateCommandLine(u"C:\\Tools\\ /DRVUPDATE", u"np.exe", u"P1"),
            u"C:\\Tools\\np.exe /RUN /MANUAL /P \"P1\"");
  EXPECT_EQ(UpPilotCommandLine(u"C:\\Tools\\ /UPPILOT", u"np.exe", u"P1"),
            u"C:\\Tools\\np.exe /SETUP /P \"P1\"");
  EXPECT_EQ(ParameterFileCommandLine(u"C:\\Tools\\x.exe /DP /Q", u"C:\\Temp\\K_Q1.tmp"),
            u"C:\\Tools\\x.exe /FU \"C:\\Temp\\K_Q1.tmp\"");
}

TEST(CommandLineOfAnEntry, IsCutAtTheFirstBlankOfTheText) {
  EXPECT_EQ(LmCommandLine(u"\"C:\\My Tools\\x.exe\" /LM", u"P1"), u"\"C:\\My \"P1\"");
  EXPECT_EQ(LmCommandLine(u" /LM", u"P1"), u" \"P1\"");
  EXPECT_EQ(CissValidCommandLine(u"C:\\My Tools\\ /CISSVALID", u"ic.exe", u"P1"),
            u"C:\\Myic.exe /P \"P1\"");
  EXPECT_EQ(DrvUpdateCommandLine(u" /DRVUPDATE", u"np.exe", u"P1"),
            u"np.exe /RUN /MANUAL /P \"P1\"");
  EXPECT_EQ(UpPilotCommandLine(u"C:\\T /UPPILOT", u"np.exe", u"P1"),
            u"C:\\Tnp.exe /SETUP /P \"P1\"");
  EXPECT_EQ(ParameterFileCommandLine(u"   ", u"C:\\K_Q1.tmp"), u" /FU \"C:\\K_Q1.tmp\"");
}

TEST(CommandLineOfAnEntry, GoesOnWithoutAProgramOrAPrinterThatHasNoName) {
  EXPECT_EQ(UpPilotCommandLine(u"C:\\T\\ /UPPILOT", u"", u""), u"C:\\T\\ /SETUP /P \"\"");
  EXPECT_EQ(DrvUpdateCommandLine(u"C:\\T\\ /DRVUPDATE", u"", u"P1"),
            u"C:\\T\\ /RUN /MANUAL /P \"P1\"");
}

// Nothing that is put in is looked at: no quote is doubled, no directive is one.
TEST(CommandLineOfAnEntry, HoldsEveryNameAsItIs) {
  EXPECT_EQ(LmCommandLine(u"%s%n%1000000d /LM", u"a \"b\" %s %%"),
            u"%s%n%1000000d \"a \"b\" %s %%\"");
  EXPECT_EQ(CissValidCommandLine(u"%s /CISSVALID", u"%d", u"%s"), u"%s%d /P \"%s\"");
  EXPECT_EQ(DrvUpdateCommandLine(u"%s /DRVUPDATE", u"%d", u"%n"), u"%s%d /RUN /MANUAL /P \"%n\"");
  EXPECT_EQ(UpPilotCommandLine(u"%s /UPPILOT", u"%d", u"%n"), u"%s%d /SETUP /P \"%n\"");
  EXPECT_EQ(ParameterFileCommandLine(u"%s %d", u"C:\\%s.tmp"), u"%s /FU \"C:\\%s.tmp\"");
}

TEST(CommandLineOfAnEntry, HasNoLimitOfItsOwn) {
  const std::u16string program(250, u'p');
  const std::u16string name(259, u'n');
  const std::u16string line = DrvUpdateCommandLine(program + u" /DRVUPDATE", name, name);
  EXPECT_EQ(line, program + name + u" /RUN /MANUAL /P \"" + name + u"\"");
  EXPECT_EQ(line.size(), 250U + 259 + 18 + 259 + 1);
}

// --- The parameter file

TEST(ParameterTextOfAnEntry, HasTheArgumentsAndTheNamesOfThePrinterInLines) {
  EXPECT_EQ(ParameterText(u"C:\\Tools\\x.exe /DP /Q", kPrinter, u"USB001"),
            u"/DP /Q\n/P \"P1\"\n/M \"M1\"\n/D \"D1\"\n/O \"USB001\"");
}

TEST(ParameterTextOfAnEntry, HasEmptyNamesAndArgumentsAsSuch) {
  EXPECT_EQ(ParameterText(u"x.exe ", {}, u""), u"\n/P \"\"\n/M \"\"\n/D \"\"\n/O \"\"");
}

TEST(ParameterTextOfAnEntry, HasEachNameAsItIs) {
  const PrinterIdentity odd = {
      .printerName = u"a \"b\"", .driverName = u"%d\n", .modelId = u"%s", .portName = u""};
  EXPECT_EQ(ParameterText(u"x %s%n%1000000d", odd, u"c:\\%"),
            u"%s%n%1000000d\n/P \"a \"b\"\"\n/M \"%s\"\n/D \"%d\n\"\n/O \"c:\\%\"");
}

// --- Plain texts

TEST(PlainCommandText, IsDividedAtABarElseAtASlash) {
  const std::pair<std::u16string, ShellCommand> texts[] = {
      {u"C:\\a.exe|/x /y", {u"C:\\a.exe", u"/x /y"}},
      {u"C:\\a.exe /x", {u"C:\\a.exe", u"/x"}},
      {u"x:/y/z", {u"x:", u"/y/z"}},
      {u"C:\\a.exe", {u"C:\\a.exe", u""}},
      {u"C:\\My Tools\\a.exe", {u"C:\\My Tools\\a.exe", u""}},
      {u"C:\\My Tools\\a.exe /x", {u"C:\\My Tools\\a.exe", u"/x"}},
      // Only by a bar an address stays whole.
      {u"https://a.example/b", {u"https:", u"//a.example/b"}},
      {u"https://a.example/b|", {u"https://a.example/b", u""}},
      // The first of them divides, and the bar goes before the slash wherever it stands.
      {u"a|b|c", {u"a", u"b|c"}},
      {u"a /x|b", {u"a /x", u"b"}},
      {u"a|b /x", {u"a", u"b /x"}},
      // Markers and directives say nothing here.
      {u"C:\\T\\ /DRVUPDATE", {u"C:\\T\\", u"/DRVUPDATE"}},
      {u"%s%n|%1000000d", {u"%s%n", u"%1000000d"}},
      {u"|", {u"", u""}},
      {u"|/x", {u"", u"/x"}},
      {u"/x", {u"", u"/x"}},
      {u"/", {u"", u"/"}},
      {u"", {u"", u""}},
  };
  for (const auto& [text, parts] : texts) {
    const ShellCommand command = SplitPlainCommand(text);
    EXPECT_EQ(command.program, parts.program) << Told(text);
    EXPECT_EQ(command.arguments, parts.arguments) << Told(text);
  }
}

TEST(PlainCommandText, LosesTheWhiteSpaceAroundBothParts) {
  const std::pair<std::u16string, ShellCommand> texts[] = {
      {u" \t a.exe \r\n| \v/x  /y\f ", {u"a.exe", u"/x  /y"}},
      {u"  a.exe \t /x \t ", {u"a.exe", u"/x"}},
      {u" a b ", {u"a b", u""}},
      {u" \t ", {u"", u""}},
      {u" | ", {u"", u""}},
      {u"\u3000a\u00A0|\u00A0b", {u"\u3000a\u00A0", u"\u00A0b"}},
  };
  for (const auto& [text, parts] : texts) EXPECT_EQ(SplitPlainCommand(text), parts) << Told(text);
}

// --- Driver updates

TEST(DriverUpdateText, GetsTheFolderAndIsDividedAtTheFirstSlash) {
  const std::pair<std::u16string, ShellCommand> texts[] = {
      {u"%sUPD.EXE /a /b", {u"C:\\Up\\UPD.EXE", u"/a /b"}},
      {u"%sUPD.EXE   /a ", {u"C:\\Up\\UPD.EXE", u"/a "}},
      {u"%sUPD.EXE", {u"C:\\Up\\UPD.EXE", u""}},
      {u"%sUPD.EXE ", {u"C:\\Up\\UPD.EXE ", u""}},  // blanks go only in front of a slash
      {u"%sUPD.EXE\t/a", {u"C:\\Up\\UPD.EXE\t", u"/a"}},
      {u"C:\\Own\\UPD.EXE /a", {u"C:\\Own\\UPD.EXE", u"/a"}},
      {u"%sUPD.EXE -a", {u"C:\\Up\\UPD.EXE -a", u""}},
      {u"UPD.EXE /in %s", {u"UPD.EXE", u"/in C:\\Up\\"}},
      {u"%sUPD.EXE|/a", {u"C:\\Up\\UPD.EXE|", u"/a"}},
      {u"/UPD.EXE", {u"", u"/UPD.EXE"}},
      {u"   /UPD.EXE", {u"", u"/UPD.EXE"}},
      {u"", {u"", u""}},
  };
  for (const auto& [text, parts] : texts) {
    const ShellCommand command = SplitDriverUpdateCommand(text, u"C:\\Up\\");
    EXPECT_EQ(command.program, parts.program) << Told(text);
    EXPECT_EQ(command.arguments, parts.arguments) << Told(text);
  }
}

TEST(DriverUpdateText, OfAFolderWithASlashIsDividedThere) {
  EXPECT_EQ(SplitDriverUpdateCommand(u"%sUPD.EXE /a", u"C:/Up/"),
            (ShellCommand{u"C:", u"/Up/UPD.EXE /a"}));
}

TEST(DriverUpdateText, OfAPathWithoutAFolderHasTheNameAlone) {
  EXPECT_EQ(SplitDriverUpdateCommand(u"%sUPD.EXE /a", u""), (ShellCommand{u"UPD.EXE", u"/a"}));
}

TEST(DriverUpdateText, TakesTheFolderOnceAndKeepsEveryOtherDirective) {
  const std::pair<std::u16string, std::u16string> texts[] = {
      {u"%s%s%s", u"F\\%s%s"},
      {u"%n", u"%n"},
      {u"%n%s", u"%nF\\"},
      {u"%d%s", u"%dF\\"},
      {u"%1000000d", u"%1000000d"},
      {u"%1000000s", u"%1000000s"},
      {u"%5s%.1s%-9s%ls%hs%S", u"%5s%.1s%-9s%ls%hs%S"},
      {u"%*d%c%x%s", u"%*d%c%xF\\"},
      {u"100%%", u"100%"},
      {u"%%s", u"%s"},
      {u"%%%s", u"%F\\"},
      {u"%%%%s", u"%%s"},
      {u"%s%%s", u"F\\%s"},
      {u"%", u"%"},
      {u"a%", u"a%"},
      {u"%%%", u"%%"},
      {u"% s", u"% s"},
  };
  for (const auto& [text, program] : texts)
    EXPECT_EQ(SplitDriverUpdateCommand(text, u"F\\"), (ShellCommand{program, u""})) << Told(text);
}

// What is put in for the directive isn't looked through for directives again.
TEST(DriverUpdateText, TakesAFolderWithPercentSignsAsItIs) {
  EXPECT_EQ(SplitDriverUpdateCommand(u"%sU.EXE", u"C:\\%s\\%%\\"),
            (ShellCommand{u"C:\\%s\\%%\\U.EXE", u""}));
}

TEST(DriverUpdateText, HasNoLimitOfItsOwn) {
  const std::u16string folder = std::u16string(258, u'f') + u"\\";
  const std::u16string rest(257, u'x');
  EXPECT_EQ(SplitDriverUpdateCommand(u"%s" + rest, folder), (ShellCommand{folder + rest, u""}));
}

}  // namespace
}  // namespace vgl
