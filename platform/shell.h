// The shell: special folders and the notification area.
#pragma once

#include "platform/types.h"

namespace platform {

inline constexpr std::int32_t CSIDL_COMMON_APPDATA = 35;

inline constexpr std::int32_t SW_SHOWNORMAL = 1;

inline constexpr std::uint32_t NIM_ADD = 0;
inline constexpr std::uint32_t NIM_MODIFY = 1;
inline constexpr std::uint32_t NIM_DELETE = 2;

inline constexpr std::uint32_t NIF_MESSAGE = 1;
inline constexpr std::uint32_t NIF_ICON = 2;
inline constexpr std::uint32_t NIF_TIP = 4;

// An icon in the notification area. Window and id together name it. When a person uses the mouse on
// it, the shell sends the callback message to the window without waiting for the answer (so
// GetMessageW doesn't give it): wParam is the id, lParam the mouse message. A click is told as a
// press and a release, a double click as WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK,
// WM_LBUTTONUP; moves come between.
struct NotifyIconData {
  HWND window{};  // gets the callback messages
  std::uint32_t id = 0;
  std::uint32_t flags = 0;  // NIF_...: which of the following are given
  std::uint32_t callbackMessage = 0;
  HICON icon{};  // the shell keeps a copy
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

  // Has the shell do to `file`, a program, a document or an address, what `verb` says (null: open
  // it); a program gets `parameters` behind its name. `file` is one name, of which quotes around it
  // are no part; a program's may lack ".exe", and one of the system its folder. Null counts as
  // nothing given. Above 32 on success, else the reason: 2 no such file, 3 no such folder, 5 not
  // allowed, 8 no memory, 31 nothing knows what to do with it.
  virtual std::int64_t ShellExecuteW(HWND owner, const char16_t* verb, const char16_t* file,
                                     const char16_t* parameters, const char16_t* directory,
                                     std::int32_t show) = 0;

  // Adds (NIM_ADD), changes (NIM_MODIFY) or takes away (NIM_DELETE) an icon. False when the shell
  // refuses, among others to add one that is there, or to change or take away one that isn't. An
  // icon whose window is gone goes too, when the shell finds out.
  virtual bool Shell_NotifyIconW(std::uint32_t message, const NotifyIconData& data) = 0;
};

}  // namespace platform
