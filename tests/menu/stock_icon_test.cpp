#include "menu/stock_icon.h"

#include "platform/sim/system_libraries.h"
#include "platform/stock_icon.h"
#include "tests/support/drawing_fixture.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char kExport[] = "SHGetStockIconInfo";

// What a Shell32.dll of the test was asked, and what it answers; it gives no icon.
struct OwnShell {
  std::uint32_t id = 0;
  std::uint32_t flags = 0;
  StockIconInfo info;
  std::int32_t result = 0;
};

std::int32_t AnswerOfOwnShell(std::uint32_t id, std::uint32_t flags, StockIconInfo* info) {
  OwnShell& shell = sim::RunningProcess().machine().libraries().State<OwnShell>();
  shell.id = id;
  shell.flags = flags;
  shell.info = *info;
  return shell.result;
}

class StockIcon : public DrawingTest {
 protected:
  sim::Library& Shell() { return machine.libraries().At(sim::kShell32); }
  OwnShell& UseOwnShell() {
    constexpr std::uint16_t kOwnOrdinal = 2;
    Shell().RemoveExport(kExport);
    Shell().Export<&AnswerOfOwnShell>(kOwnOrdinal, kExport);
    return machine.libraries().State<OwnShell>();
  }
  std::int32_t Draw() { return Kv_SHGetStockSmallIconInfo(context, 100, 40, 24, 20); }
};

TEST_F(StockIcon, ShieldStandsFivePixelsInsideThePictureAndIsFourSmaller) {
  EXPECT_EQ(Draw(), 0);
  EXPECT_EQ(TakeDrawn(), Lines{"105,45-125,61 stock icon 77"});
}

TEST_F(StockIcon, ShieldOfASmallPictureHasNoSizeOrLess) {
  Kv_SHGetStockSmallIconInfo(context, -9, -5, 4, 1);
  EXPECT_EQ(TakeDrawn(), Lines{"-4,0--4,-3 stock icon 77"});
}

TEST_F(StockIcon, TheShellIsAskedForASmallShieldIntoAnEmptyRecordOfItsSize) {
  const OwnShell& shell = UseOwnShell();
  Draw();
  EXPECT_EQ(shell.id, 77U);
  EXPECT_EQ(shell.flags, 257U);
  EXPECT_EQ(shell.info.size, 544U);
  EXPECT_EQ(shell.info.icon, HICON{});
  EXPECT_EQ(shell.info.systemImage, 0);
  EXPECT_EQ(shell.info.index, 0);
  EXPECT_EQ(std::u16string_view(shell.info.path, MAX_PATH), std::u16string(MAX_PATH, u'\0'));
}

TEST_F(StockIcon, ResultIsTheShells) {
  OwnShell& shell = UseOwnShell();
  for (const std::int32_t result : {0, 1, -1, static_cast<std::int32_t>(0x80070057)}) {
    shell.result = result;
    EXPECT_EQ(Draw(), result);
  }
}

// The shell's error is no reason not to try.
TEST_F(StockIcon, WhatTheShellRefusesIsDrawnInVain) {
  UseOwnShell().result = static_cast<std::int32_t>(0x80004005);
  const std::uint64_t before = inside.process().calls();
  EXPECT_EQ(Draw(), static_cast<std::int32_t>(0x80004005));
  EXPECT_EQ(inside.process().calls() - before, 3U);  // the library, its function, the drawing
  EXPECT_EQ(TakeDrawn(), Lines{});
  EXPECT_EQ(IconsHeld(), 0);
}

TEST_F(StockIcon, WithoutTheLibraryNothingIsDrawn) {
  FailNext("GetModuleHandleW");
  const std::uint64_t before = inside.process().calls();
  EXPECT_EQ(Draw(), -1);
  EXPECT_EQ(inside.process().calls() - before, 1U);
  EXPECT_EQ(TakeDrawn(), Lines{});
  EXPECT_EQ(Shell().Calls(kExport), 0U);
}

TEST_F(StockIcon, OnASystemWithoutTheFunctionNothingIsDrawn) {
  Shell().RemoveExport(kExport);
  EXPECT_EQ(Draw(), -1);
  EXPECT_EQ(TakeDrawn(), Lines{});
  EXPECT_EQ(IconsHeld(), 0);
}

TEST_F(StockIcon, EachDrawingLeavesOneMoreIconToTheShell) {
  Draw();
  EXPECT_EQ(IconsHeld(), 1);
  Draw();
  EXPECT_EQ(IconsHeld(), 2);
}

TEST_F(StockIcon, StaysAlsoWhereItCantBeDrawn) {
  FailNext("DrawIconEx");
  EXPECT_EQ(Draw(), 0);
  EXPECT_EQ(TakeDrawn(), Lines{});
  EXPECT_EQ(IconsHeld(), 1);
}

// The library is looked for anew each time.
TEST_F(StockIcon, IsDrawnAgainAfterAFailure) {
  for (const char* operation : {"GetModuleHandleW", "GetProcAddress"}) {
    FailNext(operation);
    EXPECT_EQ(Draw(), -1) << operation;
    EXPECT_EQ(Draw(), 0) << operation;
    EXPECT_EQ(TakeDrawn().size(), 1U) << operation;
  }
}

}  // namespace
}  // namespace vgl
