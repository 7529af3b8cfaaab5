// The system's own libraries, as far as the agent looks something up in them: Shell32.dll with
// SHGetStockIconInfo, whose icons stay in the process that got them until it destroys them.
#pragma once

namespace sim {

class Libraries;

inline constexpr char16_t kShell32[] = u"C:\\Windows\\system32\\shell32.dll";

void AddSystemLibraries(Libraries& libraries);

}  // namespace sim
