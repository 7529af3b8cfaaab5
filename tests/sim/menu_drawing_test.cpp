// A menu that is shown on the simulated machine: its sizes, and what its owner draws of it. What
// Windows does as well is in tests/platform/owner_draw_test.cpp.
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/owned.h"
#include "platform/owner_draw.h"
#include "platform/sim/machine.h"
#include "tests/sim/resource_file.h"
#include "tests/support/drawn_texts.h"

namespace sim {
namespace {

using namespace platform;

using Lines = std::vector<std::string>;

// A program that shows menu 801 ("Name" and "&Monitoring Preferences") with a separator and the
// items 920 and 921 behind it, which it draws: as often as it gets WM_USER.
class SimulatedMenuDrawing : public testing::Test {
 protected:
  SimulatedMenuDrawing() {
    s_current = this;
    machine.files().WriteFile(u"C:\\K_X.DLL", ResourceFile());
    machine.StartProcess(u"C:\\agent.exe", u"", [](const char16_t*) {
      Os().windowing.RegisterClassW({.procedure = Procedure, .className = u"Agent"});
      Os().windowing.CreateWindowExW(0, u"Agent", u"", 0, HMODULE{});
      for (Message message; Os().windowing.GetMessageW(&message) > 0;)
        Os().windowing.DispatchMessageW(message);
      return 0u;
    });
    machine.Settle();
  }
  ~SimulatedMenuDrawing() override { s_current = nullptr; }

  static LRESULT Procedure(HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_USER) Show(window);
    if (message == WM_MEASUREITEM) {
      auto& item = *reinterpret_cast<MeasureItem*>(lParam);
      ++s_current->measures;
      item.width = s_current->itemSize.width;
      item.height = s_current->itemSize.height;
      if (s_current->whenMeasuring) s_current->whenMeasuring(window, item);
    }
    if (message == WM_DRAWITEM) {
      const auto& item = *reinterpret_cast<const DrawItem*>(lParam);
      s_current->draws.push_back(item);
      if (s_current->whenDrawing) s_current->whenDrawing(window, item);
    }
    return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
  }

  static void Show(HWND window) {
    const OwnedModule library(Os().modules.LoadLibraryW(u"C:\\K_X.DLL"));
    const OwnedMenu menu(Os().resources.LoadMenuW(library.get(), 801));
    const HMENU popup = Os().menus.GetSubMenu(menu.get(), 0);
    Os().menus.AppendMenuW(popup, MF_SEPARATOR, 0, nullptr);
    Os().menus.AppendMenuW(popup, MF_OWNERDRAW, 920, nullptr);
    Os().menus.AppendMenuW(popup, MF_OWNERDRAW, 921, nullptr);
    Os().menus.TrackPopupMenu(popup, TPM_RIGHTBUTTON, 30, 40, window);
  }

  void Ask() {
    machine.desktop().Post(machine.desktop().Find(u"Agent", nullptr)->handle, WM_USER);
    machine.Settle();
  }
  OpenMenu& Open() {
    Ask();
    return *machine.desktop().menus().List().at(0);
  }
  bool IsOpen() { return !machine.desktop().menus().List().empty(); }
  void PointAt(OpenMenu& open, std::uint32_t id) {
    machine.desktop().menus().PointAt(open, id);
    machine.Settle();
  }
  void Dismiss() {
    machine.desktop().menus().Dismiss(*machine.desktop().menus().List().at(0));
    machine.Settle();
  }
  static const ShownItem& ItemOf(const OpenMenu& open, std::uint32_t id) {
    for (const ShownItem& shown : open.shown)
      if (shown.item.id == id) return shown;
    throw std::out_of_range("the menu has no such item");
  }
  static Lines LinesOf(const OpenMenu& open, std::uint32_t id) {
    return vgl::TextsOf(ItemOf(open, id).drawn);
  }
  Process& Agent() { return *machine.processes().at(0); }

  struct ItemSize {
    std::uint32_t width = 50;
    std::uint32_t height = 21;
  };

  static inline SimulatedMenuDrawing* s_current = nullptr;
  Machine machine;
  ItemSize itemSize;
  int measures = 0;
  std::vector<DrawItem> draws;
  std::function<void(HWND, MeasureItem&)> whenMeasuring;
  std::function<void(HWND, const DrawItem&)> whenDrawing;
};

// What an item is selected for is its text.
void DrawState(HWND, const DrawItem& item) {
  const bool isSelected = (item.state & ODS_SELECTED) != 0;
  Os().drawing.TextOutW(item.deviceContext, item.area.left, item.area.top,
                        isSelected ? u"on" : u"off", isSelected ? 2 : 3);
}

// --- Sizes

TEST_F(SimulatedMenuDrawing, ItemsStandBelowOneAnotherInsideABorderOf3) {
  const OpenMenu& open = Open();
  // As wide as the widest: two check marks of 15, 23 characters of 6, two margins of 8.
  const std::vector<Rect> expected = {
      {3, 3, 187, 22}, {3, 22, 187, 41}, {3, 41, 187, 50}, {3, 50, 187, 71}, {3, 71, 187, 92}};
  ASSERT_EQ(open.shown.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(open.shown[i].area, expected[i]) << i;
  EXPECT_EQ(open.size, (Size{190, 95}));
}

TEST_F(SimulatedMenuDrawing, AnItemOfItsOwnersIsTwoCharactersWiderThanTold) {
  itemSize.width = 400;
  EXPECT_EQ(ItemOf(Open(), 920).area, (Rect{3, 50, 415, 71}));
}

TEST_F(SimulatedMenuDrawing, ATextThatIsHigherThanALineMakesTheLineHigher) {
  machine.drawing().measure = [](std::u16string_view, const LogFont&) { return Size{10, 40}; };
  EXPECT_EQ(ItemOf(Open(), 900).area.bottom, 3 + 40 + 2 * 2);
}

TEST_F(SimulatedMenuDrawing, SizesThatNoScreenHasAreBounded) {
  itemSize = {.width = 0xFFFFFFFF, .height = 0x80000000};
  const OpenMenu& open = Open();
  EXPECT_EQ(ItemOf(open, 920).area, (Rect{3, 50, 3 + 32767 + 12, 50 + 32767}));
  EXPECT_EQ(ItemOf(open, 921).area.top, 50 + 32767);
}

TEST_F(SimulatedMenuDrawing, AnItemOfNoSizeHasAnEmptyHeight) {
  itemSize = {.width = 0, .height = 0};
  EXPECT_EQ(ItemOf(Open(), 920).area, (Rect{3, 50, 187, 50}));
}

TEST_F(SimulatedMenuDrawing, EachShowingMeasuresAnew) {
  Open();
  EXPECT_EQ(measures, 2);
  Dismiss();
  itemSize.height = 30;
  EXPECT_EQ(ItemOf(Open(), 920).area, (Rect{3, 50, 187, 80}));
  EXPECT_EQ(measures, 4);
}

// --- Looks

TEST_F(SimulatedMenuDrawing, WhatItsOwnerDrewLastIsKeptWithEachItem) {
  whenDrawing = DrawState;
  OpenMenu& open = Open();
  EXPECT_EQ(LinesOf(open, 920), (Lines{"3,50 \"off\" in 000000 on FFFFFF"}));
  EXPECT_EQ(LinesOf(open, 921), (Lines{"3,71 \"off\" in 000000 on FFFFFF"}));
  EXPECT_EQ(LinesOf(open, 900), Lines{});
  PointAt(open, 920);
  EXPECT_EQ(LinesOf(open, 920), (Lines{"3,50 \"on\" in 000000 on FFFFFF"}));
  EXPECT_TRUE(ItemOf(open, 920).isSelected);
  PointAt(open, 921);
  EXPECT_EQ(LinesOf(open, 920), (Lines{"3,50 \"off\" in 000000 on FFFFFF"}));
  EXPECT_EQ(LinesOf(open, 921), (Lines{"3,71 \"on\" in 000000 on FFFFFF"}));
}

TEST_F(SimulatedMenuDrawing, TheContextBeginsWithTheMenusFont) {
  std::u16string face;
  whenDrawing = [&](HWND, const DrawItem& item) {
    Size size;
    machine.drawing().measure = [&](std::u16string_view, const LogFont& font) {
      face = font.faceName;
      return Size{1, 1};
    };
    Os().drawing.GetTextExtentPoint32W(item.deviceContext, u"x", 1, &size);
  };
  Open();
  EXPECT_EQ(face, u"Segoe UI");
}

TEST_F(SimulatedMenuDrawing, PointingAtTheSameItemAgainDrawsNothing) {
  OpenMenu& open = Open();
  PointAt(open, 920);
  const std::size_t before = draws.size();
  PointAt(open, 920);
  EXPECT_EQ(draws.size(), before);
}

TEST_F(SimulatedMenuDrawing, WhatCannotBeChosenIsNotSelected) {
  OpenMenu& open = Open();
  PointAt(open, 920);
  const std::size_t before = draws.size();
  PointAt(open, 0);  // the separator
  EXPECT_EQ(draws.size(), before + 1);
  EXPECT_EQ(draws.back().itemId, 920u);
  EXPECT_EQ(draws.back().state, 0u);
  for (const ShownItem& shown : open.shown) EXPECT_FALSE(shown.isSelected);
}

TEST_F(SimulatedMenuDrawing, AnItemWithATextIsSelectedWithoutItsOwner) {
  OpenMenu& open = Open();
  const std::size_t before = draws.size();
  PointAt(open, 901);
  EXPECT_TRUE(ItemOf(open, 901).isSelected);
  EXPECT_EQ(draws.size(), before);
}

// --- Owners that do something else

TEST_F(SimulatedMenuDrawing, TheContextIsGoneWhenTheItemIsDrawn) {
  Open();
  for (const std::u16string& held : Agent().Ledger()) EXPECT_NE(held, u"device context");
  EXPECT_EQ(Agent().FindHandle<HandleBody>(static_cast<std::uint64_t>(draws.at(0).deviceContext)),
            nullptr);
}

TEST_F(SimulatedMenuDrawing, TheContextIsNotItsOwnersToDelete) {
  bool isDeleted = true;
  whenDrawing = [&](HWND, const DrawItem& item) {
    isDeleted = Os().drawing.DeleteDC(item.deviceContext);
  };
  Open();
  EXPECT_FALSE(isDeleted);
}

TEST_F(SimulatedMenuDrawing, AnOwnerThatGoesWhileItMeasuresClosesTheMenu) {
  whenMeasuring = [](HWND owner, MeasureItem&) { Os().windowing.DestroyWindow(owner); };
  Ask();
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(measures, 1);
  EXPECT_TRUE(draws.empty());
}

TEST_F(SimulatedMenuDrawing, AnOwnerThatGoesWhileItDrawsClosesTheMenu) {
  whenDrawing = [](HWND owner, const DrawItem&) { Os().windowing.DestroyWindow(owner); };
  Ask();
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(draws.size(), 1u);
}

TEST_F(SimulatedMenuDrawing, AProcessMayEndWhileItDraws) {
  whenDrawing = [](HWND, const DrawItem&) { Os().process.ExitProcess(5); };
  Ask();
  EXPECT_TRUE(Agent().ended());
  EXPECT_EQ(Agent().exitCode(), 5u);
  EXPECT_FALSE(IsOpen());
}

TEST_F(SimulatedMenuDrawing, AnOwnerMayCloseTheMenuWhileItDraws) {
  whenDrawing = [](HWND owner, const DrawItem&) {
    Os().windowing.SendMessageW(owner, WM_CANCELMODE, 0, 0);
  };
  Ask();
  EXPECT_FALSE(IsOpen());
  EXPECT_FALSE(Agent().ended());
}

TEST_F(SimulatedMenuDrawing, AnOwnerMayDestroyTheMenuWhileItDraws) {
  whenDrawing = [](HWND, const DrawItem& item) {
    Os().menus.DestroyMenu(HMENU{static_cast<std::uint64_t>(item.owner)});
  };
  Ask();
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(draws.size(), 2u);
}

}  // namespace
}  // namespace sim
