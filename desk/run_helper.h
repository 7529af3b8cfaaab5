// What stands in for the suite's run helper, which shows the status window and the preferences: a
// program that writes down what it was given. The same on the simulated machine and, as a program
// of its own, under Wine.
#pragma once

#include <cstdint>

namespace desk {

// A line for each start, in UTF-8, with the texts as the parameter file gives them:
//   status window: printer "Studio 7200", port "USB001", model "S7200"
//   preferences window: printer "Studio 7200", port "USB001", model "S7200"
//   no parameter file: /FU "C:\gone.tmp"
inline constexpr char16_t kRunHelperLog[] = u"C:\\ProgramData\\KAVRO\\VGL3\\RUNHELPER.LOG";

// Reads the parameter file that /FU names and removes it, as readers of such files do. Looks
// nothing up, so that the line tells what came and not what should have come. `commandLine` is the
// text behind the program's name. The exit code: 1 when there was no file to read, 2 when the line
// couldn't be written.
std::uint32_t RunHelperMain(const char16_t* commandLine);

}  // namespace desk
