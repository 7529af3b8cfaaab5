// Gathers the services of the Windows backend.
#include "platform/win32/services.h"

namespace platform {

const Platform& Os() {
  static const Platform& system = *new Platform{
      .registry = Win32Registry(),
      .files = Win32Files(),
      .profiles = Win32ProfileFiles(),
      .objects = Win32KernelObjects(),
      .process = Win32Processes(),
      .modules = Win32Modules(),
      .windowing = Win32Windowing(),
      .shell = Win32Shell(),
      .system = Win32SystemInfo(),
      .nls = Win32NationalLanguage(),
      .sections = Win32Sections(),
      .spooler = Win32Spooler(),
      .security = Win32Security(),
      .resources = Win32Resources(),
      .menus = Win32Menus(),
      .drawing = Win32Drawing(),
  };
  return system;
}

}  // namespace platform
