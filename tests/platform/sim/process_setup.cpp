// Programs of the simulated machine.
#include <cstdlib>

#include "platform/sim/machine.h"
#include "tests/platform/process_fixture.h"

namespace platform {
namespace {

constexpr std::u16string_view kMark = u"/child";

std::uint32_t NumberAt(std::u16string_view text) {
  std::uint32_t number = 0;
  for (; !text.empty() && text[0] >= u'0' && text[0] <= u'9'; text.remove_prefix(1))
    number = number * 10 + (text[0] - u'0');
  return number;
}

LRESULT LeaveToTheSystem(HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
  return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

void MakeProgram(const std::u16string& path) {
  sim::Machine& machine = sim::RunningProcess().machine();
  machine.programs().Add(path, [&machine, path](const char16_t* arguments) {
    const std::u16string_view text(arguments);
    const std::u16string_view told = text.substr(std::min(text.find(kMark), text.size()));
    machine.files().WriteUtf16(path + u".txt", told);
    Windowing& windowing = Os().windowing;
    windowing.RegisterClassW({.procedure = LeaveToTheSystem, .className = u"Child"});
    windowing.CreateWindowExW(0, u"Child", path.c_str(), WS_OVERLAPPEDWINDOW, HMODULE{});
    if (told.size() > kMark.size()) Os().process.Sleep(NumberAt(told.substr(kMark.size() + 1)));
    return 0U;
  });
}

std::u16string SystemCommand() {
  sim::Machine& machine = sim::RunningProcess().machine();
  machine.files().WriteFile(machine.system().systemFolder + u"\\cmd.exe", "");
  return u"cmd.exe /c exit";
}

}  // namespace platform
