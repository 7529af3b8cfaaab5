// The clock, version and own folder of Windows.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

#include <ctime>

namespace platform {
namespace {

class SystemInfoOfWindows final : public SystemInfo {
 public:
  std::uint32_t GetTickCount() override { return ::GetTickCount(); }

  void GetLocalTime(LocalTime* time) override {
    SYSTEMTIME native{};
    ::GetLocalTime(&native);
    *time = {.year = native.wYear,
             .month = native.wMonth,
             .day = native.wDay,
             .hour = native.wHour,
             .minute = native.wMinute,
             .second = native.wSecond,
             .milliseconds = native.wMilliseconds};
  }

  std::int64_t time() override { return ::_time64(nullptr); }

  bool GetVersionExW(OsVersion* version) override {
    OSVERSIONINFOEXW native{};
    native.dwOSVersionInfoSize = sizeof(native);
    // Deprecated because it answers by the program's manifest; ours names the versions we know, and
    // that answer is the one we want.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    if (::GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&native)) == FALSE) return false;
#pragma GCC diagnostic pop
    *version = {.majorVersion = native.dwMajorVersion,
                .minorVersion = native.dwMinorVersion,
                .platformId = native.dwPlatformId,
                .productType = native.wProductType};
    return true;
  }

  std::uint32_t GetSystemDirectoryW(char16_t* path, std::uint32_t chars) override {
    return ::GetSystemDirectoryW(text_cast(path), chars);
  }
};

}  // namespace

SystemInfo& Win32SystemInfo() { return *new SystemInfoOfWindows; }

}  // namespace platform
