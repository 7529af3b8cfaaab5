// The services of the Windows backend, each made in the file of its name. They hold nothing and are
// never destroyed, so that whatever is still alive at the end of the program may call them.
#pragma once

#include "platform/platform.h"

namespace platform {

Registry& Win32Registry();
Files& Win32Files();
ProfileFiles& Win32ProfileFiles();
KernelObjects& Win32KernelObjects();
Processes& Win32Processes();
Modules& Win32Modules();
Windowing& Win32Windowing();
Shell& Win32Shell();
SystemInfo& Win32SystemInfo();
NationalLanguage& Win32NationalLanguage();
Sections& Win32Sections();
Spooler& Win32Spooler();
Security& Win32Security();
Resources& Win32Resources();
Menus& Win32Menus();
Drawing& Win32Drawing();

}  // namespace platform
