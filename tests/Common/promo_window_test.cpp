#include "Common/promo_window.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Common/resource_strings.h"
#include "desk/resource_library.h"
#include "platform/owned.h"
#include "platform/sim/machine.h"
#include "platform/sim/text.h"

namespace vgl {
namespace {

using namespace platform;

constexpr std::uint16_t kNaTitle = 500;
constexpr std::uint16_t kWwTitle = 501;
constexpr char16_t kPrinter[] = u"Studio 7200";

// A resource library with both titles is loaded.
class PromoWindow : public testing::Test {
 protected:
  PromoWindow() {
    Os().windowing.RegisterClassW({.procedure = Procedure, .className = u"Promo"});
    LoadStrings({{kNaTitle, u"Offers"}, {kWwTitle, u"News"}});
  }

  void LoadStrings(const std::map<std::uint16_t, std::u16string>& strings) {
    desk::ResourceLibrary resources;
    resources.strings = strings;
    library.Reset();
    machine.files().WriteFile(u"C:\\K_R.DLL", desk::BytesOf(resources));
    library = OwnedModule(Os().modules.LoadLibraryW(u"C:\\K_R.DLL"));
    ASSERT_TRUE(library);
    g_hResDll = library.get();
  }

  static LRESULT Procedure(HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
    return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
  }
  static HWND Make(const std::u16string& title) {
    return Os().windowing.CreateWindowExW(0, u"Promo", title.c_str(), WS_OVERLAPPEDWINDOW,
                                          HMODULE{});
  }
  void SetProperty(HWND window, const char16_t* name, HWND value) {
    machine.desktop().Find(window)->properties[sim::FoldCase(name)] =
        static_cast<std::uint64_t>(value);
  }
  // A window with that title and, of another one, the property that names it.
  HWND MakePromo(const char16_t* property, const std::u16string& title) {
    const HWND titled = Make(title);
    SetProperty(Make(u"holder"), property, titled);
    return titled;
  }

  // The places that windows were given by SetWindowPos, in order.
  std::vector<std::u16string> Placements() {
    std::vector<std::u16string> found;
    for (const sim::Event& event : machine.trace())
      if (event.text.starts_with(u"placed window ")) found.push_back(event.text);
    return found;
  }
  HWND Foreground() { return machine.desktop().foreground(); }

  sim::Machine machine;
  sim::Inside inside{machine};
  OwnedModule library;
};

std::u16string Placed(HWND window, const char16_t* where) {
  return u"placed window " + sim::Hex(static_cast<std::uint64_t>(window), 8) + where;
}

// --- A step of the search

TEST_F(PromoWindow, AStepWithoutARecordEndsTheSearch) {
  EXPECT_EQ(EnumPropWindowProc(Make(u"a"), 0), 0);
}

TEST_F(PromoWindow, AStepWithoutAWindowGoesOn) {
  PropWindowSearch search{.propertyName = kPromoPropertyNa};
  EXPECT_EQ(EnumPropWindowProc(HWND{}, reinterpret_cast<LPARAM>(&search)), 1);
  EXPECT_EQ(search.found, HWND{});
}

TEST_F(PromoWindow, AStepAtAWindowWithoutThePropertyGoesOn) {
  PropWindowSearch search{.propertyName = kPromoPropertyNa};
  EXPECT_EQ(EnumPropWindowProc(Make(u"a"), reinterpret_cast<LPARAM>(&search)), 1);
  EXPECT_EQ(search.found, HWND{});
}

TEST_F(PromoWindow, AStepThatFindsTakesThePropertysValueAndEndsTheSearch) {
  const HWND holder = Make(u"holder");
  const HWND titled = Make(u"Offers");
  SetProperty(holder, kPromoPropertyNa, titled);
  PropWindowSearch search{.propertyName = kPromoPropertyNa, .title = u"Offers"};
  EXPECT_EQ(EnumPropWindowProc(holder, reinterpret_cast<LPARAM>(&search)), 0);
  EXPECT_EQ(search.found, titled);
}

TEST_F(PromoWindow, AStepAtAnotherTitleGoesOn) {
  const HWND holder = Make(u"Offers");
  SetProperty(holder, kPromoPropertyNa, Make(u"Other"));
  PropWindowSearch search{.propertyName = kPromoPropertyNa, .title = u"Offers"};
  EXPECT_EQ(EnumPropWindowProc(holder, reinterpret_cast<LPARAM>(&search)), 1);
  EXPECT_EQ(search.found, HWND{});
}

// --- The search

TEST_F(PromoWindow, AWindowWithAnotherTitleIsPassedOver) {
  MakePromo(kPromoPropertyNa, u"Offers : Studio 7100");
  const HWND second = MakePromo(kPromoPropertyNa, u"Offers : Studio 7200");
  EXPECT_EQ(FindPropWindow(kPromoPropertyNa, u"Offers : Studio 7200"), second);
}

TEST_F(PromoWindow, OfSeveralThatFitTheFirstIsFound) {
  const HWND first = MakePromo(kPromoPropertyNa, u"t");
  MakePromo(kPromoPropertyNa, u"t");
  EXPECT_EQ(FindPropWindow(kPromoPropertyNa, u"t"), first);
}

TEST_F(PromoWindow, ATitleIsComparedExactlyInCase) {
  MakePromo(kPromoPropertyNa, u"Offers : studio 7200");
  EXPECT_EQ(FindPropWindow(kPromoPropertyNa, u"Offers : Studio 7200"), HWND{});
}

TEST_F(PromoWindow, ATitleIsComparedToItsEnd) {
  MakePromo(kPromoPropertyNa, u"Offers : Studio 7200 (2)");
  MakePromo(kPromoPropertyNa, u"Offers : Studio");
  EXPECT_EQ(FindPropWindow(kPromoPropertyNa, u"Offers : Studio 7200"), HWND{});
}

TEST_F(PromoWindow, WithoutATitleThePropertyAloneCounts) {
  const HWND any = MakePromo(kPromoPropertyNa, u"whatever");
  EXPECT_EQ(FindPropWindow(kPromoPropertyNa, nullptr), any);
}

TEST_F(PromoWindow, TheNameOfThePropertyHasNoCase) {
  const HWND window = MakePromo(u"kvso_promodlg_na", u"t");
  EXPECT_EQ(FindPropWindow(kPromoPropertyNa, u"t"), window);
}

TEST_F(PromoWindow, TheOtherVariantsWindowIsNotFound) {
  MakePromo(kPromoPropertyWw, u"t");
  EXPECT_EQ(FindPropWindow(kPromoPropertyNa, u"t"), HWND{});
}

TEST_F(PromoWindow, WithoutAnyWindowNothingIsFound) {
  EXPECT_EQ(FindPropWindow(kPromoPropertyNa, nullptr), HWND{});
}

TEST_F(PromoWindow, AWindowThatIsGoneHasNoTitle) {
  const HWND titled = MakePromo(kPromoPropertyNa, u"t");
  Os().windowing.DestroyWindow(titled);
  EXPECT_EQ(FindPropWindow(kPromoPropertyNa, u"t"), HWND{});
  EXPECT_EQ(FindPropWindow(kPromoPropertyNa, nullptr), titled);
}

TEST_F(PromoWindow, OfAWindowsTextTheFirst259CharactersCount) {
  const std::u16string text(259, u'x');
  const HWND window = MakePromo(kPromoPropertyNa, text + u"and more");
  EXPECT_EQ(FindPropWindow(kPromoPropertyNa, text.c_str()), window);
  EXPECT_EQ(FindPropWindow(kPromoPropertyNa, (text + u"a").c_str()), HWND{});
}

TEST_F(PromoWindow, AWindowOfAnotherProcessIsFound) {
  machine.StartProcess(u"C:\\promo.exe", u"", [this](const char16_t*) {
    Os().windowing.RegisterClassW({.procedure = Procedure, .className = u"Promo"});
    MakePromo(kPromoPropertyNa, u"Offers : Studio 7200");
    Os().process.Sleep(1000);
    return 0u;
  });
  Os().process.Sleep(1);
  const HWND found = FindPropWindow(kPromoPropertyNa, u"Offers : Studio 7200");
  ASSERT_NE(found, HWND{});
  EXPECT_NE(machine.desktop().Find(found)->thread->process(), &inside.process());
}

TEST_F(PromoWindow, AnEnumerationThatFailsFindsNothing) {
  MakePromo(kPromoPropertyNa, u"t");
  inside.process().FailNext("EnumWindows", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_EQ(FindPropWindow(kPromoPropertyNa, u"t"), HWND{});
}

// --- Bringing it to the front

TEST_F(PromoWindow, ThePrintersWindowComesToTheFront) {
  MakePromo(kPromoPropertyNa, u"Offers : Studio 7100");
  const HWND window = MakePromo(kPromoPropertyNa, u"Offers : Studio 7200");
  ActivatePromoWindow(kNaTitle, kWwTitle, kPrinter);
  EXPECT_EQ(Foreground(), window);
  EXPECT_EQ(Placements(), std::vector<std::u16string>{});
}

TEST_F(PromoWindow, WithBothVariantsOpenTheFirstOneWins) {
  MakePromo(kPromoPropertyWw, u"News : Studio 7200");
  const HWND na = MakePromo(kPromoPropertyNa, u"Offers : Studio 7200");
  ActivatePromoWindow(kNaTitle, kWwTitle, kPrinter);
  EXPECT_EQ(Foreground(), na);
}

TEST_F(PromoWindow, TheSecondVariantIsFoundByItsOwnTitle) {
  MakePromo(kPromoPropertyNa, u"News : Studio 7200");
  MakePromo(kPromoPropertyWw, u"Offers : Studio 7200");
  ActivatePromoWindow(kNaTitle, kWwTitle, kPrinter);
  EXPECT_EQ(Foreground(), HWND{});
  const HWND ww = MakePromo(kPromoPropertyWw, u"News : Studio 7200");
  ActivatePromoWindow(kNaTitle, kWwTitle, kPrinter);
  EXPECT_EQ(Foreground(), ww);
}

TEST_F(PromoWindow, WithoutOneNothingComesToTheFront) {
  MakePromo(kPromoPropertyNa, u"Offers : Studio 7100");
  ActivatePromoWindow(kNaTitle, kWwTitle, kPrinter);
  EXPECT_EQ(Foreground(), HWND{});
  EXPECT_EQ(Placements(), std::vector<std::u16string>{});
}

TEST_F(PromoWindow, WhereTheSystemRefusesItIsForcedToTheFront) {
  const HWND window = MakePromo(kPromoPropertyNa, u"Offers : Studio 7200");
  inside.process().FailNext("SetForegroundWindow", ERROR_ACCESS_DENIED);
  ActivatePromoWindow(kNaTitle, kWwTitle, kPrinter);
  EXPECT_EQ(Foreground(), HWND{});
  EXPECT_EQ(Placements(),
            (std::vector<std::u16string>{Placed(window, u" in front for good, flags 83"),
                                         Placed(window, u" among the others, flags 83")}));
}

TEST_F(PromoWindow, APrinterWithoutANameHasATitleThatEndsBehindTheColon) {
  const HWND window = MakePromo(kPromoPropertyNa, u"Offers : ");
  ActivatePromoWindow(kNaTitle, kWwTitle, nullptr);
  EXPECT_EQ(Foreground(), window);
}

TEST_F(PromoWindow, ATitleThatTheLibraryLacksIsEmpty) {
  LoadStrings({{kWwTitle, u"News"}});
  const HWND window = MakePromo(kPromoPropertyNa, u" : Studio 7200");
  ActivatePromoWindow(kNaTitle, kWwTitle, kPrinter);
  EXPECT_EQ(Foreground(), window);
}

TEST_F(PromoWindow, ATitleOf259CharactersIsTheLongestThatIsFound) {
  const std::u16string string(245, u'x');
  LoadStrings({{kNaTitle, string + u"x"}, {kWwTitle, string}});
  MakePromo(kPromoPropertyNa, string + u"x : Studio 7200");
  const HWND ww = MakePromo(kPromoPropertyWw, string + u" : Studio 7200");
  ActivatePromoWindow(kNaTitle, kWwTitle, kPrinter);
  EXPECT_EQ(Foreground(), ww);
}

TEST_F(PromoWindow, AStringThatFillsTheRoomMakesATitleThatNoWindowHas) {
  for (const std::size_t length : {511u, 512u, 600u}) {
    const std::u16string string(length, u'x');
    LoadStrings({{kNaTitle, string}, {kWwTitle, string}});
    MakePromo(kPromoPropertyNa, string + u" : Studio 7200");
    MakePromo(kPromoPropertyNa, string.substr(0, 511) + u" : Studio 7200");
    MakePromo(kPromoPropertyNa, u" : Studio 7200");
    ActivatePromoWindow(kNaTitle, kWwTitle, kPrinter);
    EXPECT_EQ(Foreground(), HWND{}) << length;
  }
}

}  // namespace
}  // namespace vgl
