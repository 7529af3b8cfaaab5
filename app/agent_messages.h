// The agent's window, as other programs of the suite meet it. These numbers and texts are fixed by
// the suite: its programs post the messages to the window that the instance map names.
#pragma once

#include "platform/windowing.h"

namespace vgl {

inline constexpr char16_t kTrayWindowClass[] = u"TrayIconWClass";
inline constexpr char16_t kTrayWindowTitle[] = u"VGL3 TrayIcon";

// wParam: icon id; lParam: a mouse message
inline constexpr std::uint32_t WM_VGL3_TRAYICON = platform::WM_USER + 100;
// "TrayIconSelected" has changed; both arguments are ignored
inline constexpr std::uint32_t WM_VGL3_UPDATE_ICON = platform::WM_USER + 200;
// The three kinds of work that timers find due; no arguments
inline constexpr std::uint32_t WM_VGL3_KICK_INVITATION = platform::WM_USER + 300;
inline constexpr std::uint32_t WM_VGL3_CHECK_NETPILOT = platform::WM_USER + 400;
inline constexpr std::uint32_t WM_VGL3_FLUSH_VGLLOG = platform::WM_USER + 500;

inline constexpr std::uint64_t TMID_PRINTERCHECK = 2;
inline constexpr std::uint64_t TMID_MASKCHECK = 4;
inline constexpr std::uint64_t TMID_INVITATION = 10;
inline constexpr std::uint64_t TMID_NETPILOT = 20;
inline constexpr std::uint64_t TMID_FLUSHLOG = 30;
inline constexpr std::uint64_t TMID_CLICK = 513;

}  // namespace vgl
