// The shell: special folders.
#pragma once

#include "platform/types.h"

namespace platform {

inline constexpr std::int32_t CSIDL_COMMON_APPDATA = 35;

// The icon in the notification area, as far as the agent fills it in.
struct NotifyIconData {
  HWND window{};  // gets the callback messages
  std::uint32_t id = 0;
  std::uint32_t flags = 0;
  std::uint32_t callbackMessage = 0;
  HICON icon{};
  char16_t tip[128] = {};
};

class Shell {
 public:
  virtual ~Shell() = default;

  // The path of a special folder without closing backslash, into MAX_PATH characters at `path`;
  // made when it is missing and `create` is set. 1 on success, 0 on failure, `path` is then
  // undefined.
  virtual std::int32_t SHGetSpecialFolderPathW(char16_t* path, std::int32_t folder,
                                               bool create) = 0;
};

}  // namespace platform
