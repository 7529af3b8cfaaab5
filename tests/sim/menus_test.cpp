// Menus of the simulated machine: the person before one that is shown, the trace, the ledger.
#include <functional>
#include <string>
#include <vector>

#include "platform/owned.h"
#include "platform/sim/machine.h"
#include "tests/sim/resource_file.h"

namespace sim {
namespace {

using namespace platform;

// A program with a hidden window that shows a menu when it gets WM_USER: its sub-menu 0, or the
// menu of number 802 for wParam 802. What it does with what it gets is `handler`'s.
class SimulatedMenus : public testing::Test {
 protected:
  SimulatedMenus() {
    machine.files().WriteFile(u"C:\\K_X.DLL", ResourceFile());
    Start();
  }

  Process& Start() {
    Process& process = machine.StartProcess(u"C:\\agent.exe", u"", [](const char16_t*) {
      Os().windowing.RegisterClassW({.procedure = Procedure, .className = u"Agent"});
      Os().windowing.CreateWindowExW(0, u"Agent", u"", 0, HMODULE{});
      for (Message message; Os().windowing.GetMessageW(&message) > 0;)
        Os().windowing.DispatchMessageW(message);
      return 0u;
    });
    machine.Settle();
    return process;
  }

  static LRESULT Procedure(HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
    Machine& here = RunningProcess().machine();
    if (message >= WM_USER || message == WM_COMMAND) {
      here.Trace(u"handled " + std::u16string(message == WM_COMMAND ? u"command" : u"message"));
    }
    if (message == WM_USER) Show(window, wParam);
    if (message == WM_USER + 1) Os().menus.DestroyMenu(HMENU{static_cast<std::uint64_t>(lParam)});
    return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
  }

  static void Show(HWND window, WPARAM id) {
    const OwnedModule library(Os().modules.LoadLibraryW(u"C:\\K_X.DLL"));
    const OwnedMenu menu(Os().resources.LoadMenuW(library.get(), static_cast<std::uint16_t>(id)));
    const HMENU shown = id == 802 ? menu.get() : Os().menus.GetSubMenu(menu.get(), 0);
    Os().menus.TrackPopupMenu(shown, TPM_RIGHTBUTTON, 30, 40, window);
  }

  OpenMenu& Open(std::uint16_t id = 801) {
    machine.desktop().Post(Agent().handle, WM_USER, id);
    machine.Settle();
    return *machine.desktop().menus().List().at(0);
  }
  Window& Agent() { return *machine.desktop().Find(u"Agent", nullptr); }
  bool IsOpen() { return !machine.desktop().menus().List().empty(); }

  // The trace's last lines.
  std::vector<std::u16string> Told(std::size_t lines) {
    std::vector<std::u16string> told;
    for (const Event& event : machine.trace()) told.push_back(event.text);
    return {told.end() - static_cast<std::ptrdiff_t>(lines), told.end()};
  }

  Machine machine;
};

TEST_F(SimulatedMenus, WhatIsShownCanBeLookedAt) {
  const OpenMenu& open = Open();
  EXPECT_EQ(open.owner, Agent().handle);
  EXPECT_EQ(open.x, 30);
  EXPECT_EQ(open.y, 40);
  EXPECT_EQ(open.flags, TPM_RIGHTBUTTON);
  const std::vector<MenuItem> items = machine.desktop().menus().ItemsOf(open);
  ASSERT_EQ(items.size(), 2u);
  EXPECT_EQ(items[0].text, u"Name");
  EXPECT_EQ(items[0].id, 900u);
  EXPECT_EQ(items[1].text, u"&Monitoring Preferences");
  EXPECT_TRUE(items[1].CanBeChosen());
}

TEST_F(SimulatedMenus, ShowingAndChoosingAreTraced) {
  OpenMenu& open = Open();
  EXPECT_EQ(Told(1)[0], u"popup menu: Name | &Monitoring Preferences");
  EXPECT_TRUE(machine.desktop().menus().Choose(open, 901));
  EXPECT_FALSE(IsOpen());
  machine.Settle();
  EXPECT_EQ(Told(4), (std::vector<std::u16string>{u"chose 901", u"freed library C:\\K_X.DLL",
                                                  u"got message 273", u"handled command"}));
}

TEST_F(SimulatedMenus, SeparatorsSubMenusAndDrawnItemsAreTracedAsWhatTheyAre) {
  const Inside inside(machine);
  const OwnedModule library(Os().modules.LoadLibraryW(u"C:\\K_X.DLL"));
  const OwnedMenu menu(Os().resources.LoadMenuW(library.get(), 802));
  const HMENU outer = Os().menus.GetSubMenu(menu.get(), 1);
  Os().menus.AppendMenuW(outer, MF_OWNERDRAW, 921, u"Ink");
  Os().windowing.RegisterClassW({.procedure = Procedure, .className = u"Mine"});
  const HWND window = Os().windowing.CreateWindowExW(0, u"Mine", u"", 0, HMODULE{});
  Os().windowing.PostQuitMessage(0);
  Os().menus.TrackPopupMenu(outer, TPM_RIGHTBUTTON, 0, 0, window);
  EXPECT_EQ(Told(2),
            (std::vector<std::u16string>{
                u"popup menu: Grayed | Checked | ---- | Inner > | Behind | #921", u"menu closed"}));
}

TEST_F(SimulatedMenus, OneThatIsDismissedGivesNoCommand) {
  machine.desktop().menus().Dismiss(Open());
  machine.Settle();
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(Told(2).front(), u"menu closed");
}

TEST_F(SimulatedMenus, WhatIsNotThereOrDisabledCannotBeChosen) {
  OpenMenu& open = Open(802);
  // Not there, grayed, a separator.
  for (const std::uint32_t id : {999u, 911u, 0u}) {
    EXPECT_FALSE(machine.desktop().menus().Choose(open, id)) << id;
  }
  machine.Settle();
  EXPECT_TRUE(IsOpen());
}

TEST_F(SimulatedMenus, AnItemOfASubMenuCanBeChosen) {
  EXPECT_TRUE(machine.desktop().menus().Choose(Open(802), 920));
  machine.Settle();
  EXPECT_EQ(Told(4).front(), u"chose 920");
}

TEST_F(SimulatedMenus, WhatWasPostedBeforeAChoiceIsHandledBeforeIt) {
  OpenMenu& open = Open();
  machine.desktop().Post(Agent().handle, WM_USER + 5);
  machine.desktop().menus().Choose(open, 901);
  machine.Settle();
  const auto told = Told(4);
  EXPECT_EQ(told[1], u"handled message");
  EXPECT_EQ(told[3], u"handled command");
}

TEST_F(SimulatedMenus, OneThatIsDestroyedWhileItIsShownCloses) {
  const OpenMenu& open = Open();
  machine.desktop().Post(Agent().handle, WM_USER + 1, 0,
                         static_cast<LPARAM>(static_cast<std::uint64_t>(open.menu) & 0xFFFFFFFF));
  machine.Settle();
  EXPECT_FALSE(IsOpen());
}

TEST_F(SimulatedMenus, ItGoesWithItsProcess) {
  Open();
  machine.EndProcess(*machine.processes().at(0));
  EXPECT_FALSE(IsOpen());
}

TEST_F(SimulatedMenus, ALedgerOfAProcessThatShowsOneNamesIt) {
  Open();
  machine.EndProcess(*machine.processes().at(0));
  EXPECT_EQ(machine.processes().at(0)->Ledger(),
            (std::vector<std::u16string>{u"library C:\\K_X.DLL", u"menu 801 of C:\\K_X.DLL",
                                         u"window Agent"}));
}

TEST_F(SimulatedMenus, TwoProcessesShowOneEach) {
  Open();
  const Process& second = Start();
  machine.desktop().Post(machine.desktop().FindOf(second, u"Agent")->handle, WM_USER, 802);
  machine.Settle();
  const std::vector<OpenMenu*> shown = machine.desktop().menus().List();
  ASSERT_EQ(shown.size(), 2u);
  EXPECT_EQ(machine.desktop().menus().ItemsOf(*shown[0]).size(), 2u);
  EXPECT_EQ(machine.desktop().menus().ItemsOf(*shown[1]).size(), 4u);
}

TEST_F(SimulatedMenus, ShowingOneCanFail) {
  machine.processes().at(0)->FailNext("TrackPopupMenu", ERROR_NOT_ENOUGH_MEMORY);
  machine.desktop().Post(Agent().handle, WM_USER, 801);
  machine.Settle();
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(machine.processes().at(0)->Ledger(), (std::vector<std::u16string>{u"window Agent"}));
}

}  // namespace
}  // namespace sim
