// Files, folders and temporary files.
//
// Paths are at most 259 characters; case is kept and ignored. A failure's reason is in GetLastError
// (processes.h). Sizes are in bytes unless they are called characters.
#pragma once

#include "platform/types.h"

namespace platform {

inline constexpr std::uint32_t GENERIC_READ = 0x80000000;
inline constexpr std::uint32_t GENERIC_WRITE = 0x40000000;
inline constexpr std::uint32_t FILE_APPEND_DATA = 0x0004;

inline constexpr std::uint32_t FILE_SHARE_READ = 1;
inline constexpr std::uint32_t FILE_SHARE_WRITE = 2;
inline constexpr std::uint32_t FILE_SHARE_DELETE = 4;

inline constexpr std::uint32_t CREATE_NEW = 1;
inline constexpr std::uint32_t CREATE_ALWAYS = 2;
inline constexpr std::uint32_t OPEN_EXISTING = 3;
inline constexpr std::uint32_t OPEN_ALWAYS = 4;

inline constexpr std::uint32_t FILE_ATTRIBUTE_READONLY = 0x01;
inline constexpr std::uint32_t FILE_ATTRIBUTE_DIRECTORY = 0x10;
inline constexpr std::uint32_t FILE_ATTRIBUTE_ARCHIVE = 0x20;
inline constexpr std::uint32_t FILE_ATTRIBUTE_NORMAL = 0x80;
inline constexpr std::uint32_t FILE_ATTRIBUTE_TEMPORARY = 0x100;
inline constexpr std::uint32_t INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;

inline constexpr std::uint32_t FILE_BEGIN = 0;
inline constexpr std::uint32_t FILE_CURRENT = 1;
inline constexpr std::uint32_t FILE_END = 2;
inline constexpr std::uint32_t INVALID_SET_FILE_POINTER = 0xFFFFFFFF;
inline constexpr std::uint32_t INVALID_FILE_SIZE = 0xFFFFFFFF;

// What a search found, as far as the agent looks at it.
struct FindData {
  std::uint32_t attributes = 0;
  std::uint64_t size = 0;
  char16_t name[MAX_PATH] = {};  // without its folder
};

// The same in the system's code page. A character that the code page lacks is its default
// character.
struct FindDataA {
  std::uint32_t attributes = 0;
  std::uint64_t size = 0;
  char name[MAX_PATH] = {};
};

class Files {
 public:
  virtual ~Files() = default;

  // Opens or makes a file. The handle is the caller's, closed by CloseHandle (kernel_objects.h);
  // INVALID_HANDLE_VALUE on failure: 2 no such file, 3 no such folder, 5 a folder or not permitted,
  // 32 shared differently by an open handle, 80 exists already (CREATE_NEW).
  // On success with CREATE_ALWAYS or OPEN_ALWAYS the last error is 183 when the file existed, else
  // 0.
  virtual HANDLE CreateFileW(const char16_t* path, std::uint32_t access, std::uint32_t share,
                             std::uint32_t disposition, std::uint32_t attributes) = 0;

  // Reads up to `bytes` bytes at the file's position. At the end: true with `*read` 0.
  virtual bool ReadFile(HANDLE file, void* data, std::uint32_t bytes, std::uint32_t* read) = 0;
  virtual bool WriteFile(HANDLE file, const void* data, std::uint32_t bytes,
                         std::uint32_t* written) = 0;

  // The low 32 bits of the size; the high ones in `*high` (may be null). INVALID_FILE_SIZE on
  // failure.
  virtual std::uint32_t GetFileSize(HANDLE file, std::uint32_t* high) = 0;

  // Moves the position by the 32-bit `distance`. The new position, INVALID_SET_FILE_POINTER on
  // failure.
  virtual std::uint32_t SetFilePointer(HANDLE file, std::int32_t distance,
                                       std::uint32_t method) = 0;

  // False with 2 or 3 when it isn't there, 5 when it is a folder or read-only, 32 while it is open
  // without FILE_SHARE_DELETE.
  virtual bool DeleteFileW(const char16_t* path) = 0;

  // The first match of a path whose last part may hold * and ?. The search is the caller's, closed
  // by FindClose. INVALID_FIND_HANDLE with 2 (nothing matches) or 3 (no such folder).
  virtual HFIND FindFirstFileW(const char16_t* pattern, FindData* data) = 0;
  // The same for a pattern in the system's code page.
  virtual HFIND FindFirstFileA(const char* pattern, FindDataA* data) = 0;
  // The next match; false with 18 behind the last.
  virtual bool FindNextFileW(HFIND search, FindData* data) = 0;
  virtual bool FindClose(HFIND search) = 0;

  // INVALID_FILE_ATTRIBUTES when there is neither file nor folder of that path.
  virtual std::uint32_t GetFileAttributesW(const char16_t* path) = 0;

  // The temp folder with its closing backslash. The length without terminator when it fits into
  // `chars` characters; otherwise the room needed with terminator, and the buffer is undefined.
  // 0 on failure.
  virtual std::uint32_t GetTempPathW(std::uint32_t chars, char16_t* path) = 0;

  // Makes an empty file of a new name in `folder`: the first three characters of `prefix`, up to
  // four hexadecimal digits, ".tmp" (`unique` 0). Another `unique` is itself the number, and
  // nothing is made. `name` has room for MAX_PATH characters and takes the whole path. 0 on failure
  // (267 when the folder isn't there), else the number in the name.
  virtual std::uint32_t GetTempFileNameW(const char16_t* folder, const char16_t* prefix,
                                         std::uint32_t unique, char16_t* name) = 0;
};

}  // namespace platform
