// Where Windows enters the program.
#include <string>
#include <string_view>

#include "platform/program_main.h"
#include "platform/win32/conversion.h"

int WINAPI wWinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, LPWSTR commandLine,
                    int /*show*/) {
  const std::wstring_view native(commandLine);
  const std::u16string text(native.begin(), native.end());
  return platform::ProgramMain(text.c_str());
}
