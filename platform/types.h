// The plain types that every platform service speaks in: opaque handles, message words, error
// numbers.
//
// Handles are 64-bit and typed, so that a key can't be closed as a file; `HWND{}` is the null
// window. The numbers in this file are fixed by Windows. Backends include this header before
// <windows.h>, whose macros carry the same names.
#pragma once

#include <cstdint>

namespace platform {

enum class HANDLE : std::uint64_t {
};  // kernel object: file, mutex, semaphore, section, process, thread
enum class HFIND : std::uint64_t {};  // a file search
enum class HKEY : std::uint64_t {};   // registry key
enum class HMODULE : std::uint64_t {
};  // loaded module; HMODULE{} where a call takes "this program"
enum class HWND : std::uint64_t {};
enum class HMENU : std::uint64_t {};
enum class HICON : std::uint64_t {};
enum class HBITMAP : std::uint64_t {};
enum class HFONT : std::uint64_t {};
enum class HBRUSH : std::uint64_t {};
enum class HGDIOBJ : std::uint64_t {};  // any of the three
enum class HDC : std::uint64_t {};      // what is drawn on

using WPARAM = std::uint64_t;
using LPARAM = std::int64_t;
using LRESULT = std::int64_t;
using WNDPROC = LRESULT (*)(HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam);

// What a failed CreateFileW gives, where other creating calls give HANDLE{}.
inline constexpr HANDLE INVALID_HANDLE_VALUE{~std::uint64_t{0}};
inline constexpr HFIND INVALID_FIND_HANDLE{~std::uint64_t{0}};

// Size of the buffers that hold paths and names, in characters with the terminator.
inline constexpr std::uint32_t MAX_PATH = 260;
inline constexpr std::uint32_t INFINITE = 0xFFFFFFFF;

// Error numbers, as registry calls return them and GetLastError gives them.
inline constexpr std::int32_t ERROR_SUCCESS = 0;
inline constexpr std::int32_t ERROR_FILE_NOT_FOUND = 2;
inline constexpr std::int32_t ERROR_PATH_NOT_FOUND = 3;
inline constexpr std::int32_t ERROR_ACCESS_DENIED = 5;
inline constexpr std::int32_t ERROR_INVALID_HANDLE = 6;
inline constexpr std::int32_t ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr std::int32_t ERROR_NO_MORE_FILES = 18;
inline constexpr std::int32_t ERROR_SHARING_VIOLATION = 32;
inline constexpr std::int32_t ERROR_NOT_SUPPORTED = 50;
inline constexpr std::int32_t ERROR_FILE_EXISTS = 80;
inline constexpr std::int32_t ERROR_INVALID_PARAMETER = 87;
inline constexpr std::int32_t ERROR_BUFFER_OVERFLOW = 111;
inline constexpr std::int32_t ERROR_DISK_FULL = 112;
inline constexpr std::int32_t ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr std::int32_t ERROR_MOD_NOT_FOUND = 126;
inline constexpr std::int32_t ERROR_PROC_NOT_FOUND = 127;
inline constexpr std::int32_t ERROR_NEGATIVE_SEEK = 131;
inline constexpr std::int32_t ERROR_BAD_PATHNAME = 161;
inline constexpr std::int32_t ERROR_INVALID_NAME = 123;
inline constexpr std::int32_t ERROR_ALREADY_EXISTS = 183;
inline constexpr std::int32_t ERROR_BAD_EXE_FORMAT = 193;
inline constexpr std::int32_t ERROR_MORE_DATA = 234;
inline constexpr std::int32_t ERROR_NO_MORE_ITEMS = 259;
inline constexpr std::int32_t ERROR_DIRECTORY = 267;
inline constexpr std::int32_t ERROR_NOT_OWNER = 288;
inline constexpr std::int32_t ERROR_TOO_MANY_POSTS = 298;
inline constexpr std::int32_t ERROR_KEY_DELETED = 1018;
inline constexpr std::int32_t ERROR_MESSAGE_SYNC_ONLY = 1159;
inline constexpr std::int32_t ERROR_UNKNOWN_REVISION = 1305;
inline constexpr std::int32_t ERROR_INVALID_WINDOW_HANDLE = 1400;
inline constexpr std::int32_t ERROR_CLASS_ALREADY_EXISTS = 1410;
inline constexpr std::int32_t ERROR_CANNOT_FIND_WND_CLASS = 1407;
inline constexpr std::int32_t ERROR_NO_SYSTEM_RESOURCES = 1450;

}  // namespace platform
