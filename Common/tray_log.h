// The tray log: what the agent does, line by line, in "K_QD41TR.LOG".
//
// A user switches it on by the value K_QTR of HKEY_CURRENT_USER "SOFTWARE\KAVRO\VGL3": four bytes
// of any type that aren't all 0. The switch is read once, at start-up. The file is opened anew for
// each line, so it can be read, moved and removed while the agent runs; it is never rotated or
// shortened. There is no lock: each line is appended whole in one write, and lines of several
// agents stand in the order of their writing.
//
// A line: "<process id>;<minutes>:<seconds>.<milliseconds>; <body>", as
// "0A3C;   12:03.250; CMainFrame::StartUp".
#pragma once

#include <cstdint>
#include <string>

#include "Common/fixed_text.h"
#include "platform/process_wide.h"

namespace vgl {

class CLogStream;

extern platform::ProcessWideValue<std::int32_t> g_bTrayLogEnabled;  // 0 or 1
extern platform::ProcessWide<PathText> g_szTrayLogPath;
// The stream that a line is being written to; null between lines. Not an owner.
extern platform::ProcessWideValue<CLogStream*> g_pTrayLogFile;

// Where the log goes: "\KAVRO\VGL3\K_QD41TR.LOG" in the common application data folder, or
// "C:\K_QD41TR.LOG" when the system doesn't tell that folder.
std::u16string TrayLogPath();

// Sets up the log for this process: forgets what was, takes `path`, reads the switch. 1 when the
// log is on now, else 0. A path that is null, empty, or of 260 characters or more leaves it off
// without a look at the switch.
std::int32_t TrayLogInit(const char16_t* path);

// Each appends one line: "<text>", "<name> : <value>", "<name> : <number>". 1 when the file could
// be opened; 0 when not, when the log is off, or when a text is null. While the log is off a call
// does nothing at all.
std::int32_t TrayLogText(const char16_t* text);
std::int32_t TrayLogPair(const char16_t* name, const char16_t* value);
std::int32_t TrayLogInt(const char16_t* name, std::int32_t number);

// For the end of a run whose log is off, where no last line closes it: closes the stream of a line
// that was never finished, if there is one.
void TrayLogCloseStray();

}  // namespace vgl
