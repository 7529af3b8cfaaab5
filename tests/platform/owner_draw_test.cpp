// Menu items that their owner draws: how it is asked for their sizes and for their looks.
#include "platform/owner_draw.h"

#include <algorithm>
#include <vector>

#include "tests/platform/input_fixture.h"
#include "tests/platform/menu_fixture.h"

namespace platform {
namespace {

constexpr std::uint32_t kFirst = 920;
constexpr std::uint32_t kSecond = 921;
constexpr std::uint32_t kHeight = 23;
constexpr std::uint32_t kWidth = 140;

// The menu of the agent's kind: a head, a text, a separator, two items that the owner draws.
class OwnerDrawnItems : public MenuContract {
 protected:
  using Step = std::function<void(HWND owner)>;
  struct Asked {
    std::uint32_t message = 0;
    WPARAM wParam = 0;
    MeasureItem measure{};  // as it came
    DrawItem draw{};
  };

  void SetUp() override {
    MoveMouse({0, 0});  // away from the menu
    AppendSeparator();
    AppendDrawn(kFirst, 0x1122334455667788);
    AppendDrawn(kSecond, 2);
  }

  void AppendSeparator() { EXPECT_TRUE(menus.AppendMenuW(popup, MF_SEPARATOR, 0, nullptr)); }
  void AppendDrawn(std::uint32_t id, std::uint64_t data) {
    EXPECT_TRUE(
        menus.AppendMenuW(popup, MF_OWNERDRAW, id, reinterpret_cast<const char16_t*>(data)));
  }

  // A window that answers what it is asked and keeps it. Once the menu is shown it does one of the
  // steps each tick.
  HWND MakeOwner(std::vector<Step> steps) {
    const HWND window = MakeWindow([=, this](HWND w, std::uint32_t message, WPARAM id,
                                             LPARAM argument) -> std::optional<LRESULT> {
      if (message == WM_TIMER && id == 1 && IsMenuShown() && stepsDone < steps.size())
        steps[stepsDone++](w);
      if (message == WM_MEASUREITEM) return Measure(id, *reinterpret_cast<MeasureItem*>(argument));
      if (message == WM_DRAWITEM) return Draw(id, *reinterpret_cast<DrawItem*>(argument));
      return std::nullopt;
    });
    windowing.SetTimer(window, 1, 50);
    return window;
  }
  // Shows the menu until the last step has closed it.
  HWND Show(std::vector<Step> steps) {
    const HWND owner = MakeOwner(std::move(steps));
    EXPECT_TRUE(menus.TrackPopupMenu(popup, TPM_RIGHTBUTTON, 100, 100, owner));
    windowing.KillTimer(owner, 1);
    return owner;
  }

  LRESULT Measure(WPARAM wParam, MeasureItem& item) {
    asked.push_back({.message = WM_MEASUREITEM, .wParam = wParam, .measure = item});
    item.width = kWidth;
    item.height = kHeight;
    return 1;
  }
  LRESULT Draw(WPARAM wParam, const DrawItem& item) {
    asked.push_back({.message = WM_DRAWITEM, .wParam = wParam, .draw = item});
    if (whenDrawing) whenDrawing(item);
    return 1;
  }

  std::vector<Asked> Of(std::uint32_t message, std::uint32_t id) {
    std::vector<Asked> found;
    std::ranges::copy_if(asked, std::back_inserter(found), [&](const Asked& one) {
      const std::uint32_t itemId =
          one.message == WM_MEASUREITEM ? one.measure.itemId : one.draw.itemId;
      return one.message == message && itemId == id;
    });
    return found;
  }
  std::vector<Asked> Draws(std::uint32_t id) { return Of(WM_DRAWITEM, id); }
  static bool IsSelected(const Asked& one) { return (one.draw.state & ODS_SELECTED) != 0; }

  static void Escape(HWND owner) { EscapeFromMenu(owner); }
  static void SelectNext(HWND owner) { SelectNextInMenu(owner); }

  OwnedMenu menu = LoadTestMenu(801);  // 900 and 901
  HMENU popup = menus.GetSubMenu(menu.get(), 0);
  std::vector<Asked> asked;
  std::size_t stepsDone = 0;
  std::function<void(const DrawItem&)> whenDrawing;
};

TEST_F(OwnerDrawnItems, EachIsMeasuredOnceBeforeItIsDrawn) {
  Show({Escape});
  for (const std::uint32_t id : {kFirst, kSecond}) {
    EXPECT_EQ(Of(WM_MEASUREITEM, id).size(), 1u) << id;
    EXPECT_GE(Of(WM_DRAWITEM, id).size(), 1u) << id;
  }
  ASSERT_GE(asked.size(), 4u);
  EXPECT_EQ(asked[0].message, WM_MEASUREITEM);
  EXPECT_EQ(asked[0].measure.itemId, kFirst);
  EXPECT_EQ(asked[1].message, WM_MEASUREITEM);
  EXPECT_EQ(asked[1].measure.itemId, kSecond);
  EXPECT_EQ(asked[2].message, WM_DRAWITEM);
}

TEST_F(OwnerDrawnItems, AMeasureTellsWhichItemIsMeant) {
  Show({Escape});
  const std::vector<Asked> measures = Of(WM_MEASUREITEM, kFirst);
  ASSERT_EQ(measures.size(), 1u);
  EXPECT_EQ(measures[0].wParam, 0u);
  EXPECT_EQ(measures[0].measure.controlType, ODT_MENU);
  EXPECT_EQ(measures[0].measure.itemData, 0x1122334455667788u);
}

TEST_F(OwnerDrawnItems, ADrawTellsWhichItemIsMeantInWhichMenu) {
  Show({Escape});
  const std::vector<Asked> draws = Draws(kFirst);
  ASSERT_GE(draws.size(), 1u);
  EXPECT_EQ(draws[0].wParam, 0u);
  EXPECT_EQ(draws[0].draw.controlType, ODT_MENU);
  EXPECT_EQ(draws[0].draw.action, ODA_DRAWENTIRE);
  EXPECT_FALSE(IsSelected(draws[0]));
  EXPECT_EQ(draws[0].draw.owner, HWND{static_cast<std::uint64_t>(popup)});
  EXPECT_EQ(draws[0].draw.itemData, 0x1122334455667788u);
  EXPECT_NE(draws[0].draw.deviceContext, HDC{});
}

TEST_F(OwnerDrawnItems, TheirAreasLieBelowOneAnotherAsHighAsMeasured) {
  Show({Escape});
  ASSERT_GE(Draws(kFirst).size(), 1u);
  ASSERT_GE(Draws(kSecond).size(), 1u);
  const Rect first = Draws(kFirst)[0].draw.area;
  const Rect second = Draws(kSecond)[0].draw.area;
  for (const Rect& area : {first, second}) {
    EXPECT_GE(area.left, 0);
    EXPECT_GE(area.right - area.left, static_cast<std::int32_t>(kWidth));
    EXPECT_EQ(area.bottom - area.top, static_cast<std::int32_t>(kHeight));
  }
  EXPECT_GT(first.top, 0);  // below the head, the text and the separator
  EXPECT_EQ(second.top, first.bottom);
  EXPECT_EQ(second.left, first.left);
  EXPECT_EQ(second.right, first.right);
}

TEST_F(OwnerDrawnItems, NothingElseIsAskedFor) {
  Show({SelectNext, SelectNext, SelectNext, SelectNext, Escape});
  for (const Asked& one : asked) {
    const std::uint32_t id = one.message == WM_MEASUREITEM ? one.measure.itemId : one.draw.itemId;
    EXPECT_TRUE(id == kFirst || id == kSecond) << id;
  }
}

TEST_F(OwnerDrawnItems, OneIsDrawnAnewWhenItIsSelectedAndWhenItIsLeft) {
  std::size_t draws = 0;
  // 900 and 901 come first.
  Show({SelectNext, SelectNext, [&](HWND) { draws = asked.size(); }, SelectNext,
        [&](HWND) {
          const std::vector<Asked> last(asked.begin() + static_cast<std::ptrdiff_t>(draws),
                                        asked.end());
          ASSERT_GE(last.size(), 1u);
          EXPECT_EQ(last.back().draw.itemId, kFirst);
          EXPECT_EQ(last.back().draw.action, ODA_SELECT);
          EXPECT_TRUE(IsSelected(last.back()));
          draws = asked.size();
        },
        SelectNext,
        [&](HWND) {
          const std::vector<Asked> left(Draws(kFirst));
          const std::vector<Asked> come(Draws(kSecond));
          EXPECT_GT(asked.size(), draws);
          EXPECT_FALSE(IsSelected(left.back()));
          EXPECT_EQ(left.back().draw.action, ODA_SELECT);
          EXPECT_TRUE(IsSelected(come.back()));
          EXPECT_EQ(come.back().draw.action, ODA_SELECT);
        },
        Escape});
  EXPECT_EQ(stepsDone, 8u);
}

TEST_F(OwnerDrawnItems, TheAreaIsTheSameSelectedOrNot) {
  Show({SelectNext, SelectNext, SelectNext, SelectNext, Escape});
  const std::vector<Asked> draws = Draws(kFirst);
  EXPECT_GE(draws.size(), 3u);
  for (const Asked& one : draws) EXPECT_EQ(one.draw.area, draws[0].draw.area);
}

TEST_F(OwnerDrawnItems, WhatIsGivenCanBeDrawnOn) {
  int drawn = 0;
  whenDrawing = [&](const DrawItem& item) {
    Drawing& drawing = os.drawing;
    const HDC context = item.deviceContext;
    const OwnedBrush brush(drawing.CreateSolidBrush(0x00FF0000));
    EXPECT_TRUE(drawing.FillRect(context, item.area, brush.get()));
    const std::uint32_t colour = drawing.SetTextColor(context, 0x00112233);
    const std::uint32_t background = drawing.SetBkColor(context, 0x00445566);
    EXPECT_NE(colour, CLR_INVALID);
    EXPECT_NE(background, CLR_INVALID);
    Size size;
    EXPECT_TRUE(drawing.GetTextExtentPoint32W(context, u"Ink", 3, &size));
    EXPECT_GT(size.width, 0);
    EXPECT_TRUE(drawing.TextOutW(context, item.area.left, item.area.top, u"Ink", 3));
    const std::uint32_t alignment = drawing.SetTextAlign(context, TA_RIGHT | TA_RTLREADING);
    EXPECT_NE(alignment, GDI_ERROR);
    EXPECT_TRUE(drawing.TextOutW(context, item.area.right, item.area.top, u"Ink", 3));
    const OwnedDC memory(drawing.CreateCompatibleDC(context));
    EXPECT_TRUE(
        drawing.BitBlt(context, item.area.left, item.area.top, 1, 1, memory.get(), 0, 0, SRCCOPY));
    EXPECT_EQ(drawing.SetTextAlign(context, alignment), TA_RIGHT | TA_RTLREADING);
    EXPECT_EQ(drawing.SetBkColor(context, background), 0x00445566u);
    EXPECT_EQ(drawing.SetTextColor(context, colour), 0x00112233u);
    ++drawn;
  };
  Show({Escape});
  EXPECT_GE(drawn, 2);
}

TEST_F(OwnerDrawnItems, TheContextGoesWithTheMenu) {
  HDC context{};
  whenDrawing = [&](const DrawItem& item) { context = item.deviceContext; };
  Show({Escape});
  ASSERT_NE(context, HDC{});
  EXPECT_EQ(os.drawing.SetTextColor(context, 0), CLR_INVALID);
}

TEST_F(OwnerDrawnItems, AChoiceIsPostedToTheOwner) {
  const HWND owner = Show({[](HWND w) { ChooseFromMenu(w, 3); }});
  EXPECT_FALSE(IsMenuShown());
  EXPECT_EQ(HandleNext().message, WM_COMMAND);
  EXPECT_EQ(ReceivedOf(owner, WM_COMMAND), (std::vector<Received>{{WM_COMMAND, kSecond, 0}}));
}

TEST_F(OwnerDrawnItems, OneOfNoSizeIsDrawnAllTheSame) {
  int drawn = 0;
  const HWND owner =
      MakeWindow([&](HWND w, std::uint32_t message, WPARAM, LPARAM) -> std::optional<LRESULT> {
        if (message == WM_TIMER && IsMenuShown()) EscapeFromMenu(w);
        if (message == WM_DRAWITEM) ++drawn;
        return std::nullopt;  // nobody fills in a size
      });
  windowing.SetTimer(owner, 1, 50);
  EXPECT_TRUE(menus.TrackPopupMenu(popup, TPM_RIGHTBUTTON, 100, 100, owner));
  EXPECT_EQ(drawn, 2);
}

TEST_F(OwnerDrawnItems, AMenuWhoseHeadReadsFromRightToLeftIsDrawnLikewise) {
  const MenuItemInfo info{.mask = MIIM_FTYPE, .type = MFT_RIGHTORDER | MFT_RIGHTJUSTIFY};
  for (const std::uint32_t id : {900u, 901u})
    EXPECT_TRUE(menus.SetMenuItemInfoW(popup, id, false, &info));
  Show({SelectNext, SelectNext, SelectNext, Escape});
  for (const std::uint32_t id : {kFirst, kSecond}) {
    ASSERT_GE(Draws(id).size(), 1u);
    const DrawItem item = Draws(id)[0].draw;
    EXPECT_GE(item.area.left, 0);
    EXPECT_GE(item.area.right - item.area.left, static_cast<std::int32_t>(kWidth));
    EXPECT_EQ(item.area.bottom - item.area.top, static_cast<std::int32_t>(kHeight));
  }
  EXPECT_TRUE(std::ranges::any_of(Draws(kFirst), IsSelected));
  EXPECT_EQ(asked.size(), Of(WM_MEASUREITEM, kFirst).size() + Of(WM_MEASUREITEM, kSecond).size() +
                              Draws(kFirst).size() + Draws(kSecond).size());
}

TEST_F(OwnerDrawnItems, AnItemMadeOfAnotherIsDrawn) {
  EXPECT_TRUE(menus.ModifyMenuW(popup, 901, MF_OWNERDRAW, 925, nullptr));
  Show({Escape});
  EXPECT_EQ(Of(WM_MEASUREITEM, 925).size(), 1u);
  EXPECT_GE(Draws(925).size(), 1u);
}

TEST_F(OwnerDrawnItems, TimersGoOnWhileTheyAreDrawn) {
  const HWND owner = Show({SelectNext, SelectNext, SelectNext, SelectNext, Escape});
  EXPECT_EQ(stepsDone, 5u);
  EXPECT_GE(ReceivedOf(owner, WM_TIMER).size(), 5u);
}

}  // namespace
}  // namespace platform
