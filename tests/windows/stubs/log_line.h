// How the stand-ins for closed libraries write down what they were told: a line each, in UTF-8.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace stub {

inline std::string Utf8(const char16_t* text) {
  const auto* wide = reinterpret_cast<const wchar_t*>(text);
  const int bytes = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide, -1, utf8.data(), bytes, nullptr, nullptr);
  utf8.resize(utf8.find('\0'));
  return utf8;
}

// In quotes; what stands for a null pointer has none.
inline std::string Quoted(const char16_t* text) {
  return text == nullptr ? "null" : '"' + Utf8(text) + '"';
}

// False when the file can't be written.
inline bool AppendLine(const wchar_t* path, std::string_view text) {
  const HANDLE log = CreateFileW(path, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                 nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (log == INVALID_HANDLE_VALUE) return false;
  const std::string line = std::string(text) + '\n';
  DWORD written = 0;
  WriteFile(log, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
  CloseHandle(log);
  return written == line.size();
}

}  // namespace stub
