// Command texts: what the driver set says that an entry of the menu is to run.
//
// Which of the forms here a text takes goes by the entry's id. Texts, markers and the command lines
// that come out are fixed by the driver sets and by the programs that they name. Nothing here has a
// limit of length of its own, and no text does harm, whatever it holds.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "menu/printer_identity.h"

namespace vgl {

// Entries from this id up have plain command texts, which the shell carries out; those below have
// texts with markers.
inline constexpr std::uint32_t kFirstPlainCommandId = 950;

// Options that say how a text is meant. Each counts wherever it stands in the text, with its blank,
// exact in case, and also as the beginning of a longer word.
inline constexpr std::u16string_view kMarkerLm = u" /LM";
inline constexpr std::u16string_view kMarkerCissValid = u" /CISSVALID";
inline constexpr std::u16string_view kMarkerDp = u" /DP";        // these two are counted, and
inline constexpr std::u16string_view kMarkerAsmrt = u" /ASMRT";  // don't say how it is run
inline constexpr std::u16string_view kMarkerDrvUpdate = u" /DRVUPDATE";
inline constexpr std::u16string_view kMarkerUpPilot = u" /UPPILOT";

bool HoldsMarker(std::u16string_view text, std::u16string_view marker);

// How a text with markers is run.
enum class LaunchForm {
  Lm,             // the program, with the printer's name
  CissValid,      // the ink change program, in the folder that the text gives
  DrvUpdate,      // NetPilot in that folder, to update the driver
  UpPilot,        // NetPilot in that folder, to be set up
  ParameterFile,  // the program, with its arguments and the printer's in a parameter file
  Program,        // the whole text as a command line
};
// Of the markers in a text the first one in the order of these forms counts.
LaunchForm LaunchFormOf(std::u16string_view text);

// The text up to its first blank, whether that stands in quotes or not, and what is behind it. A
// text without a blank is a program without arguments.
std::u16string_view ProgramPart(std::u16string_view text);
std::u16string_view ArgumentPart(std::u16string_view text);

// The command lines of the forms, each of a whole command text. The programs' names are put behind
// the text's program part, which ends in a separator where it is a folder.
std::u16string LmCommandLine(std::u16string_view text, std::u16string_view printer);
std::u16string CissValidCommandLine(std::u16string_view text, std::u16string_view inkChangeName,
                                    std::u16string_view printer);
std::u16string DrvUpdateCommandLine(std::u16string_view text, std::u16string_view netPilotName,
                                    std::u16string_view printer);
std::u16string UpPilotCommandLine(std::u16string_view text, std::u16string_view netPilotName,
                                  std::u16string_view printer);
std::u16string ParameterFileCommandLine(std::u16string_view text, std::u16string_view filePath);

// What stands in the parameter file. `port` is the printer's at this moment; the identity's isn't
// used.
std::u16string ParameterText(std::u16string_view text, const PrinterIdentity& identity,
                             std::u16string_view port);

// What the shell is to run.
struct ShellCommand {
  std::u16string program;
  std::u16string arguments;
  bool operator==(const ShellCommand&) const = default;
};

// A plain text: "program|arguments"; without "|", from the first "/" on it is arguments. White
// space around either is cut off.
ShellCommand SplitPlainCommand(std::u16string_view text);

// A driver update: in the text "%%" stands for "%" and the first "%s" for `folder`, which ends in a
// separator. From the first "/" of what comes out it is arguments; blanks in front of them are cut
// off.
ShellCommand SplitDriverUpdateCommand(std::u16string_view text, std::u16string_view folder);

}  // namespace vgl
