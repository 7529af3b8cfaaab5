// The machine that vgldesk starts from when no sample is named, and the tests: the suite is
// installed, with one printer. samples/studio-7200 has the same printer with its driver set.
#pragma once

#include <string>

#include "platform/sim/machine.h"

namespace desk {

inline constexpr char16_t kAgentPath[] = u"C:\\Program Files\\KAVRO\\VGL3\\K_QD21TR.EXE";
inline constexpr char16_t kLogFolder[] = u"C:\\ProgramData\\KAVRO\\VGL3";
inline constexpr char16_t kTrayLogFile[] = u"C:\\ProgramData\\KAVRO\\VGL3\\K_QD41TR.LOG";

inline constexpr char16_t kPrinterName[] = u"Studio 7200";
inline constexpr char16_t kDriverName[] = u"KAVRO Studio 7200";
inline constexpr char16_t kPortName[] = u"USB001";
inline constexpr char16_t kModelId[] = u"S7200";
// Where the spooler keeps the files of drivers.
inline constexpr char16_t kDriverFolder[] = u"C:\\Windows\\system32\\spool\\drivers\\x64\\3";
inline constexpr char16_t kProfilePath[] =
    u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\KS7200.INI";
inline constexpr char16_t kResourceLibraryPath[] =
    u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\K_S72EN.DLL";
inline constexpr char16_t kRunHelperPath[] =
    u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\K_QD21RX.EXE";
// The printer's record, below HKEY_CURRENT_USER.
inline constexpr char16_t kRecordPath[] =
    u"Software\\KAVRO\\VGL3\\VGLData\\KVLTarget\\P0000000000000000";

// Installs the suite on a new machine, without any printer, and teaches the trace the agent's
// names.
void SetUpSuite(sim::Machine& machine);

// The suite and the printer, with a driver set that has all that the agent needs to stand there: no
// menu entries of its own, no invitations, no NetPilot.
void SetUpDefaultMachine(sim::Machine& machine);

// One more printer of the same driver.
void AddPrinterOfDefaultDriver(sim::Machine& machine, const std::u16string& name,
                               const std::u16string& port);

// Switches the tray log of agents on that start from now on.
void EnableTrayLog(sim::Machine& machine);

// Starts an agent; it runs when the machine does.
sim::Process& StartAgent(sim::Machine& machine, std::u16string commandLine);

// The options that name the default printer: /P, /D, /O and /M.
std::u16string OptionsOfDefaultPrinter();

}  // namespace desk
