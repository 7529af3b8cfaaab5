// Texts of the driver: UTF-8 in scripts and in what it prints, UTF-16 for Windows.
#pragma once

#include <string>

namespace driver {

std::wstring Wide(const std::string& utf8);
std::string Narrow(const std::wstring& text);
// A text of the agent's own headers.
inline const wchar_t* Native(const char16_t* text) {
  return reinterpret_cast<const wchar_t*>(text);
}

// Prints a line. Flushed at once, so that what happened last stands there even when the driver is
// killed.
void Say(const std::string& text);

}  // namespace driver
