#include "tests/windows/driver/text.h"

#include <windows.h>

#include <cstdio>

namespace driver {

std::wstring Wide(const std::string& utf8) {
  const int size = static_cast<int>(utf8.size());
  std::wstring text(
      static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0)),
      L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, text.data(), static_cast<int>(text.size()));
  return text;
}

std::string Narrow(const std::wstring& text) {
  const int size = static_cast<int>(text.size());
  std::string utf8(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), size,
                                                                nullptr, 0, nullptr, nullptr)),
                   '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), size, utf8.data(), static_cast<int>(utf8.size()),
                      nullptr, nullptr);
  return utf8;
}

void Say(const std::string& text) {
  std::printf("%s\n", text.c_str());
  std::fflush(stdout);
}

}  // namespace driver
