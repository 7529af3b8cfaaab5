// Where Windows enters the agent.
#include <string>
#include <string_view>

#include "app/tray_app.h"
#include "platform/win32/conversion.h"

int WINAPI wWinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, LPWSTR commandLine,
                    int /*show*/) {
  const std::wstring_view native(commandLine);
  const std::u16string text(native.begin(), native.end());
  return vgl::TrayAgentMain(text.c_str());
}
