// The system's clock, version and own folder.
#pragma once

#include "platform/types.h"

namespace platform {

inline constexpr std::uint32_t VER_PLATFORM_WIN32_NT = 2;

struct LocalTime {
  std::uint16_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, milliseconds = 0;
};

struct OsVersion {
  std::uint32_t majorVersion = 0;
  std::uint32_t minorVersion = 0;
  std::uint32_t platformId = 0;
  std::uint8_t productType = 0;  // 1 workstation, 2 domain controller, 3 server
};

class SystemInfo {
 public:
  virtual ~SystemInfo() = default;

  // Milliseconds since the system started; wraps after 49.7 days.
  virtual std::uint32_t GetTickCount() = 0;
  virtual void GetLocalTime(LocalTime* time) = 0;

  // Seconds since the beginning of 1970, in universal time.
  virtual std::int64_t time() = 0;

  // False when the system doesn't tell; `*version` is untouched then.
  virtual bool GetVersionExW(OsVersion* version) = 0;

  // The folder of the system's own libraries, without closing backslash. The length without
  // terminator when it fits into `chars` characters; otherwise the room needed with terminator, and
  // the buffer is undefined (`path` may be null when `chars` is 0). 0 on failure.
  virtual std::uint32_t GetSystemDirectoryW(char16_t* path, std::uint32_t chars) = 0;
};

}  // namespace platform
