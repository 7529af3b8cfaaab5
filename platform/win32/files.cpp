// Files, folders and temporary files of Windows.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

#include <algorithm>
#include <iterator>

namespace platform {
namespace {

static_assert(std::extent_v<decltype(FindData::name)> ==
              std::extent_v<decltype(WIN32_FIND_DATAW::cFileName)>);

static_assert(std::extent_v<decltype(FindDataA::name)> ==
              std::extent_v<decltype(WIN32_FIND_DATAA::cFileName)>);

// WIN32_FIND_DATAW into FindData, WIN32_FIND_DATAA into FindDataA.
template <class Theirs, class Ours>
void TakeOver(const Theirs& found, Ours* data) {
  data->attributes = found.dwFileAttributes;
  data->size = (std::uint64_t{found.nFileSizeHigh} << 32) | found.nFileSizeLow;
  std::copy(std::begin(found.cFileName), std::end(found.cFileName), data->name);
}

class FilesOfWindows final : public Files {
 public:
  HANDLE CreateFileW(const char16_t* path, std::uint32_t access, std::uint32_t share,
                     std::uint32_t disposition, std::uint32_t attributes) override {
    return handle_cast<HANDLE>(
        ::CreateFileW(text_cast(path), access, share, nullptr, disposition, attributes, nullptr));
  }

  bool ReadFile(HANDLE file, void* data, std::uint32_t bytes, std::uint32_t* read) override {
    return ::ReadFile(handle_cast<::HANDLE>(file), data, bytes, dword_cast(read), nullptr) != FALSE;
  }

  bool WriteFile(HANDLE file, const void* data, std::uint32_t bytes,
                 std::uint32_t* written) override {
    return ::WriteFile(handle_cast<::HANDLE>(file), data, bytes, dword_cast(written), nullptr) !=
           FALSE;
  }

  std::uint32_t GetFileSize(HANDLE file, std::uint32_t* high) override {
    return ::GetFileSize(handle_cast<::HANDLE>(file), dword_cast(high));
  }

  std::uint32_t SetFilePointer(HANDLE file, std::int32_t distance, std::uint32_t method) override {
    return ::SetFilePointer(handle_cast<::HANDLE>(file), distance, nullptr, method);
  }

  bool DeleteFileW(const char16_t* path) override {
    return ::DeleteFileW(text_cast(path)) != FALSE;
  }

  HFIND FindFirstFileW(const char16_t* pattern, FindData* data) override {
    WIN32_FIND_DATAW found;
    const auto search = handle_cast<HFIND>(::FindFirstFileW(text_cast(pattern), &found));
    if (search != INVALID_FIND_HANDLE) TakeOver(found, data);
    return search;
  }

  HFIND FindFirstFileA(const char* pattern, FindDataA* data) override {
    WIN32_FIND_DATAA found;
    const auto search = handle_cast<HFIND>(::FindFirstFileA(pattern, &found));
    if (search != INVALID_FIND_HANDLE) TakeOver(found, data);
    return search;
  }

  bool FindNextFileW(HFIND search, FindData* data) override {
    WIN32_FIND_DATAW found;
    if (::FindNextFileW(handle_cast<::HANDLE>(search), &found) == FALSE) return false;
    TakeOver(found, data);
    return true;
  }

  bool FindClose(HFIND search) override {
    return ::FindClose(handle_cast<::HANDLE>(search)) != FALSE;
  }

  std::uint32_t GetFileAttributesW(const char16_t* path) override {
    return ::GetFileAttributesW(text_cast(path));
  }

  std::uint32_t GetTempPathW(std::uint32_t chars, char16_t* path) override {
    return ::GetTempPathW(chars, text_cast(path));
  }

  std::uint32_t GetTempFileNameW(const char16_t* folder, const char16_t* prefix,
                                 std::uint32_t unique, char16_t* name) override {
    return ::GetTempFileNameW(text_cast(folder), text_cast(prefix), unique, text_cast(name));
  }
};

}  // namespace

Files& Win32Files() { return *new FilesOfWindows; }

}  // namespace platform
