// What stands in for the programs of a driver set that entries of the menu start: the dependent
// program, the driver update, the web guide, the manual and so on. One program under all their
// names, which writes down what it was given. The same on the simulated machine and, as a program
// of its own, under Wine.
#pragma once

#include <cstdint>

namespace desk {

// For each start its own file name and what stands behind it in the command line; and if that names
// a parameter file by /FU, the size of the file and its lines, two blanks in front of each. UTF-8:
//   K_S72LM.EXE "Studio 7200"
//   K_S72MAN.EXE /FU "C:\Users\User\AppData\Local\Temp\K_Q1.tmp"
//     parameter file of 138 bytes:
//     /HELP
//     /P "Studio 7200"
//     ...
inline constexpr char16_t kProgramsLog[] = u"C:\\ProgramData\\KAVRO\\VGL3\\PROGRAMS.LOG";

// Writes that and removes the parameter file, as readers of such files do. The exit code: 0; 1 when
// a file is named that can't be read, which is written down in place of its size; 2 when nothing
// could be written.
std::uint32_t StartedProgramMain(const char16_t* commandLine);

}  // namespace desk
