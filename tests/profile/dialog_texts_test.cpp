#include "profile/dialog_texts.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/platform.h"
#include "platform/sim/machine.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char16_t kTable[] = u"C:\\Driver\\texts.dat";
constexpr std::int32_t kControl = 1001;

// A dialog with one control, which has a text.
class DialogTexts : public testing::Test {
 protected:
  DialogTexts() {
    Os().windowing.RegisterClassW({.procedure = Procedure, .className = u"Window"});
    dialog = Make();
    control = Make();
    sim::Window& child = *machine.desktop().Find(control);
    child.style = WS_CHILD;
    child.owner = dialog;
    child.controlId = kControl;
    child.title = u"before";
    EXPECT_TRUE(g_szUtTablePath.get().Assign(kTable));
  }

  static LRESULT Procedure(HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
    return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
  }
  static HWND Make() {
    return Os().windowing.CreateWindowExW(0, u"Window", u"", WS_OVERLAPPEDWINDOW, HMODULE{});
  }

  void Write(const std::string& lines) { machine.files().WriteFile(kTable, "[UT]\r\n" + lines); }
  std::u16string ControlText() { return machine.desktop().Find(control)->title; }

  sim::Machine machine;
  sim::Inside inside{machine};
  HWND dialog{};
  HWND control{};
};

TEST_F(DialogTexts, AControlGetsTheTextOfItsKey) {
  Write("\"k\"=\"Order ink\";\r\n");
  SetDlgItemUtText(dialog, u"k", kControl);
  EXPECT_EQ(ControlText(), u"Order ink");
}

TEST_F(DialogTexts, EscapesStandForWhatTheyMean) {
  Write("\"k\"=\"a\\r\\nb \\\"c\\\" \"\"d\"\"\";\r\n");
  SetDlgItemUtText(dialog, u"k", kControl);
  EXPECT_EQ(ControlText(), u"a\r\nb \"c\" \"d\"");
}

TEST_F(DialogTexts, AKeyWithoutAValueEmptiesTheControl) {
  Write("\"other\"=\"a\";\r\n");
  SetDlgItemUtText(dialog, u"k", kControl);
  EXPECT_EQ(ControlText(), u"");
}

TEST_F(DialogTexts, AValueWithoutItsQuotesCountsAsNone) {
  Write("\"k\"=Order ink;\r\n");
  SetDlgItemUtText(dialog, u"k", kControl);
  EXPECT_EQ(ControlText(), u"");
}

TEST_F(DialogTexts, ANullOrEmptyKeyEmptiesTheControl) {
  for (const char16_t* key : {static_cast<const char16_t*>(nullptr), u""}) {
    machine.desktop().Find(control)->title = u"before";
    Write("\"\"=\"a\";\r\n");
    SetDlgItemUtText(dialog, key, kControl);
    EXPECT_EQ(ControlText(), u"");
  }
}

TEST_F(DialogTexts, WithoutATableEveryControlIsEmptied) {
  g_szUtTablePath.get().Clear();
  Write("\"k\"=\"Order ink\";\r\n");
  SetDlgItemUtText(dialog, u"k", kControl);
  EXPECT_EQ(ControlText(), u"");
}

TEST_F(DialogTexts, ATableOfNoFileEmptiesTheControl) {
  SetDlgItemUtText(dialog, u"k", kControl);
  EXPECT_EQ(ControlText(), u"");
}

TEST_F(DialogTexts, InADialogWithoutThatControlNothingHappens) {
  Write("\"k\"=\"Order ink\";\r\n");
  SetDlgItemUtText(dialog, u"k", kControl + 1);
  SetDlgItemUtText(HWND{}, u"k", kControl);
  EXPECT_EQ(ControlText(), u"before");
  EXPECT_EQ(machine.desktop().Find(dialog)->title, u"");
}

TEST_F(DialogTexts, AnotherProcessHasATableOfItsOwn) {
  std::u16string path = u"not asked";
  machine.StartProcess(u"C:\\other.exe", u"", [&](const char16_t*) {
    path = g_szUtTablePath.get().view();
    return 0u;
  });
  Os().process.Sleep(1);
  EXPECT_EQ(path, u"");
}

}  // namespace
}  // namespace vgl
