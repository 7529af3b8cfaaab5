// The report of what was read from an install description: a diagnostic facility that has no part
// in any result.
#pragma once

#include <string>

#include "platform/process_wide.h"
#include "platform/types.h"
#include "profile/install_desc_entries.h"

namespace vgl {

// The diagnostic window, to whose caption each report is appended. The agent never sets it: while
// there is none, no report is composed. The window must belong to the calling thread or to a thread
// that handles its messages.
extern platform::ProcessWideValue<platform::HWND> g_hInstallReportWnd;

// A list line by line and with running numbers, in the suite's own form; lines end in CR LF.
std::u16string PathsReport(const CRegPathList::Entries& entries);
std::u16string EntriesReport(const CRegEnterList::Entries& entries);

// Tells the window. Of the caption that was there at most 1023 characters are kept; what the window
// refuses is lost.
void ReportPaths(const CRegPathList::Entries& entries);
void ReportEntries(const CRegEnterList::Entries& entries);

}  // namespace vgl
