// What agents leave on a machine for a person and for other programs to see, in words: for a
// session's output, the same on the simulated machine and under Wine.
#pragma once

#include <string>
#include <vector>

namespace desk {

// Lines of UTF-8, in this order, of
//   the starts of the run helper, what the invitation library and the utility library were told,
//   and the starts of other programs with what they were given:
//     run helper: status window: printer "Studio 7200", port "USB001", model "S7200"
//     invitation library: close: "Studio 7200"
//     utility library: begin UtCleanHeadW: "Studio 7200" "" "" ""
//     utility library: end UtCleanHeadW
//     program: K_S72LM.EXE "Studio 7200"
//   parameter files in the temp folder:
//     temp folder: K_Q0001.tmp
//   the values by which Windows starts programs when this user logs on:
//     Run "Studio 7200": "...\K_QD21TR.EXE" /FU "...\K_Q0001.tmp"
//   the records of printers and ports, with their values in the order of their names:
//     record KVLTarget\P0000000000000000: Name "Studio 7200", Setting 0, Timer 10
//     record KVLTarget\P0000000000000000\Notify: 001 1
//   and the counts of usage logs that aren't 0:
//     usage log VGL_TrayIcon_S72K004711.xml: counter 1 is 2
// Where there is nothing of a kind it has no line; "nothing" when there are none at all. A log that
// isn't in the form of desk/usage_log_file.h, and a registry value of another kind than text and
// number, are told as what they are. Called inside a process, which is left as it was.
std::vector<std::string> ReadSuite();

}  // namespace desk
