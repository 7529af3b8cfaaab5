// Menus that are shown, and what is chosen from them.
#include <vector>

#include "tests/platform/menu_fixture.h"

namespace platform {
namespace {

constexpr HMENU kNone{};
constexpr HMENU kGarbage{0x12345678};

class ShownMenus : public MenuContract {
 protected:
  using Deed = std::function<void(HWND owner)>;

  // A window whose timer 1 does `deed` once a menu is shown, and not again.
  HWND MakeOwner(const Deed& deed) {
    const HWND window = MakeWindow([=, this](HWND w, std::uint32_t message, WPARAM id, LPARAM) {
      if (message == WM_TIMER && id == 1 && IsMenuShown()) {
        windowing.KillTimer(w, 1);
        deed(w);
      }
      return std::nullopt;
    });
    windowing.SetTimer(window, 1, 50);
    return window;
  }

  bool Track(HWND owner) { return menus.TrackPopupMenu(popup, TPM_RIGHTBUTTON, 100, 100, owner); }

  // That a command was posted to the window and waits to be handled, and is the only one.
  void ExpectPosted(HWND window, WPARAM command) {
    EXPECT_EQ(ReceivedOf(window, WM_COMMAND), std::vector<Received>{});
    EXPECT_EQ(HandleNext().message, WM_COMMAND);
    EXPECT_EQ(ReceivedOf(window, WM_COMMAND), (std::vector<Received>{{WM_COMMAND, command, 0}}));
  }
  void ExpectNothingPosted(HWND window) {
    windowing.PostMessageW(window, WM_USER, 0, 0);
    EXPECT_EQ(HandleNext().message, WM_USER);
    EXPECT_EQ(ReceivedOf(window, WM_COMMAND), std::vector<Received>{});
  }

  OwnedMenu menu = LoadTestMenu(801);
  HMENU popup = menus.GetSubMenu(menu.get(), 0);
};

TEST_F(ShownMenus, AChoiceIsPostedToTheOwner) {
  const HWND owner = MakeOwner([](HWND w) { ChooseFromMenu(w, 1); });
  EXPECT_TRUE(Track(owner));
  EXPECT_FALSE(IsMenuShown());
  ExpectPosted(owner, 901);
}

TEST_F(ShownMenus, WhatWasAddedCanBeChosen) {
  menus.ModifyMenuW(popup, 0, MF_BYPOSITION, 900, u"Studio 7200");
  menus.AppendMenuW(popup, MF_SEPARATOR, 0, nullptr);
  menus.AppendMenuW(popup, MF_STRING, 922, u"Ink");
  const HWND owner = MakeOwner([](HWND w) { ChooseFromMenu(w, 2); });
  EXPECT_TRUE(Track(owner));
  ExpectPosted(owner, 922);
}

TEST_F(ShownMenus, EscapeChoosesNothing) {
  const HWND owner = MakeOwner([](HWND w) { EscapeFromMenu(w); });
  EXPECT_TRUE(Track(owner));
  EXPECT_FALSE(IsMenuShown());
  ExpectNothingPosted(owner);
}

TEST_F(ShownMenus, TheSameMenuIsShownAgain) {
  const HWND owner = MakeOwner([](HWND w) { EscapeFromMenu(w); });
  EXPECT_TRUE(Track(owner));
  windowing.SetTimer(owner, 1, 50);
  EXPECT_TRUE(Track(owner));
}

TEST_F(ShownMenus, TimersGoOnAndPostedMessagesAreDispatched) {
  const HWND other = MakeWindow();
  const HWND owner = MakeWindow([&](HWND w, std::uint32_t message, WPARAM id, LPARAM) {
    if (message == WM_TIMER && id == 2 && ReceivedOf(w, WM_TIMER).size() == 4) {
      windowing.KillTimer(w, 2);
      EscapeFromMenu(w);
    }
    return std::nullopt;
  });
  windowing.SetTimer(owner, 2, 50);
  windowing.PostMessageW(other, WM_USER, 1, 2);
  EXPECT_TRUE(Track(owner));
  EXPECT_EQ(ReceivedOf(owner, WM_TIMER).size(), 4u);
  EXPECT_EQ(ReceivedOf(other, WM_USER), (std::vector<Received>{{WM_USER, 1, 2}}));
}

TEST_F(ShownMenus, AMenuClosesWhenItsOwnerGoes) {
  const HWND owner = MakeOwner([&](HWND w) { windowing.DestroyWindow(w); });
  Track(owner);
  EXPECT_FALSE(windowing.IsWindow(owner));
  EXPECT_FALSE(IsMenuShown());
}

TEST_F(ShownMenus, AMenuIsCancelledByAMessage) {
  const HWND owner = MakeOwner([&](HWND w) { windowing.SendMessageW(w, WM_CANCELMODE, 0, 0); });
  EXPECT_TRUE(Track(owner));
  EXPECT_FALSE(IsMenuShown());
  ExpectNothingPosted(owner);
}

TEST_F(ShownMenus, QuittingClosesAMenuAndIsSeenOutside) {
  bool closedByQuitting = true;
  const HWND owner = MakeWindow([&](HWND w, std::uint32_t message, WPARAM id, LPARAM) {
    if (message == WM_TIMER && id == 1) windowing.PostQuitMessage(3);
    if (message == WM_TIMER && id == 2 && IsMenuShown()) {
      closedByQuitting = false;
      EscapeFromMenu(w);
    }
    return std::nullopt;
  });
  windowing.SetTimer(owner, 1, 50);
  windowing.SetTimer(owner, 2, 500);
  EXPECT_TRUE(Track(owner));
  // Wine takes WM_QUIT for any other message: the menu stays, and nobody sees it any more.
  EXPECT_TRUE(HoldsExcept(OnWine(), closedByQuitting));
  windowing.PostMessageW(owner, WM_USER, 0, 0);
  EXPECT_EQ(HandleNext().message, WM_USER);
  if (closedByQuitting) {
    const Message quit = HandleNext();
    EXPECT_EQ(quit.message, WM_QUIT);
    EXPECT_EQ(quit.wParam, 3u);
  }
}

TEST_F(ShownMenus, AnOwnerThatQuitsWhenItGoesIsHeardOutside) {
  const HWND owner = MakeWindow([&](HWND w, std::uint32_t message, WPARAM, LPARAM) {
    if (message == WM_TIMER && IsMenuShown()) windowing.DestroyWindow(w);
    if (message == WM_DESTROY) windowing.PostQuitMessage(4);
    return std::nullopt;
  });
  windowing.SetTimer(owner, 1, 50);
  Track(owner);
  EXPECT_FALSE(IsMenuShown());
  const Message quit = HandleNext();
  EXPECT_EQ(quit.message, WM_QUIT);
  EXPECT_EQ(quit.wParam, 4u);
}

TEST_F(ShownMenus, AMenuNeedsAnOwner) {
  const HWND gone = MakeWindow();
  windowing.DestroyWindow(gone);
  for (const HWND none : {HWND{}, gone}) {
    os.process.SetLastError(7777);
    EXPECT_FALSE(Track(none));
    EXPECT_EQ(LastError(), ERROR_INVALID_WINDOW_HANDLE);
  }
}

TEST_F(ShownMenus, WhatIsNoMenuIsNotShown) {
  const HWND owner = MakeWindow();
  for (const HMENU none : {kNone, kGarbage}) {
    os.process.SetLastError(7777);
    EXPECT_FALSE(menus.TrackPopupMenu(none, TPM_RIGHTBUTTON, 0, 0, owner));
    EXPECT_EQ(LastError(), ERROR_INVALID_MENU_HANDLE);
  }
}

TEST_F(ShownMenus, AMenuWithinAMenuIsNotShown) {
  bool shown = true;
  std::int32_t error = 0;
  const HWND owner = MakeOwner([&](HWND w) {
    shown = Track(w);
    error = LastError();
    EscapeFromMenu(w);
  });
  EXPECT_TRUE(Track(owner));
  EXPECT_FALSE(shown);
  EXPECT_EQ(error, ERROR_POPUP_ALREADY_ACTIVE);
}

TEST_F(ShownMenus, AMenuWithinTheHandlingOfAChoiceIsShown) {
  int choices = 0;
  const HWND owner = MakeWindow([&](HWND w, std::uint32_t message, WPARAM id, LPARAM) {
    if (message == WM_TIMER && id == 1 && IsMenuShown()) {
      windowing.KillTimer(w, 1);
      ChooseFromMenu(w, 0);
    }
    if (message == WM_COMMAND && ++choices == 1) {
      windowing.SetTimer(w, 1, 50);
      EXPECT_TRUE(Track(w));
    }
    return std::nullopt;
  });
  windowing.SetTimer(owner, 1, 50);
  EXPECT_TRUE(Track(owner));
  HandleNext();
  HandleNext();
  EXPECT_EQ(choices, 2);
}

TEST_F(ShownMenus, TheBarOfAWindowWithoutOneIsDrawn) {
  const HWND window = MakeWindow();
  EXPECT_TRUE(menus.DrawMenuBar(window));
  windowing.DestroyWindow(window);
  EXPECT_FALSE(menus.DrawMenuBar(window));
  EXPECT_EQ(LastError(), ERROR_INVALID_WINDOW_HANDLE);
}

}  // namespace
}  // namespace platform
