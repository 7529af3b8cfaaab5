// What the simulated system tells of itself: clock base, version, folders, language. A test sets
// it.
#pragma once

#include <cstdint>
#include <string>

#include "platform/system_info.h"

namespace sim {

struct SystemState {
  // GetTickCount when the machine is made; it goes on with virtual time.
  std::uint32_t bootTicks = 600000;
  // Local time when the machine is made. Days are counted on within the month: a machine that runs
  // past its end shows days that no calendar has.
  platform::LocalTime startTime{2026, 1, 5, 9, 0, 0, 0};
  // Seconds since the beginning of 1970 when the machine is made, in universal time.
  std::int64_t startSeconds = 1767603600;
  platform::OsVersion version{10, 0, platform::VER_PLATFORM_WIN32_NT, 1};
  bool versionIsKnown = true;
  std::uint32_t systemLocale = 0x0409;
  std::uint16_t userLanguage = 0x0409;
  std::u16string commonAppData = u"C:\\ProgramData";  // empty: SHGetSpecialFolderPathW fails
  std::u16string tempFolder =
      u"C:\\Users\\User\\AppData\\Local\\Temp\\";  // empty: GetTempPathW fails
  std::u16string windowsFolder = u"C:\\Windows";
  std::u16string systemFolder = u"C:\\Windows\\system32";  // empty: GetSystemDirectoryW fails
  std::uint32_t doubleClickTime = 500;
};

}  // namespace sim
