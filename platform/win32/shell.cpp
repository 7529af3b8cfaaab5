// The shell of Windows.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <iterator>

namespace platform {
namespace {

class ShellOfWindows final : public Shell {
 public:
  std::int32_t SHGetSpecialFolderPathW(char16_t* path, std::int32_t folder, bool create) override {
    return ::SHGetSpecialFolderPathW(nullptr, text_cast(path), folder, create);
  }

  std::int64_t ShellExecuteW(HWND owner, const char16_t* verb, const char16_t* file,
                             const char16_t* parameters, const char16_t* directory,
                             std::int32_t show) override {
    return reinterpret_cast<std::intptr_t>(
        ::ShellExecuteW(handle_cast<::HWND>(owner), text_cast(verb), text_cast(file),
                        text_cast(parameters), text_cast(directory), show));
  }

  bool Shell_NotifyIconW(std::uint32_t message, const NotifyIconData& data) override {
    NOTIFYICONDATAW native{};
    static_assert(sizeof(native) == 976 && sizeof(native.szTip) == sizeof(data.tip));
    native.cbSize = sizeof(native);
    native.hWnd = handle_cast<::HWND>(data.window);
    native.uID = data.id;
    native.uFlags = data.flags;
    native.uCallbackMessage = data.callbackMessage;
    native.hIcon = handle_cast<::HICON>(data.icon);
    std::copy(std::begin(data.tip), std::end(data.tip), std::begin(native.szTip));
    return ::Shell_NotifyIconW(message, &native) != FALSE;
  }
};

}  // namespace

Shell& Win32Shell() { return *new ShellOfWindows; }

}  // namespace platform
