// The system's own pictures, of a function that is looked up at run time.
#include "platform/stock_icon.h"

#include "tests/platform/platform_test.h"

namespace platform {
namespace {

constexpr auto kInvalidArgument = static_cast<std::int32_t>(0x80070057);

class StockIcons : public PlatformTest {
 protected:
  SHGetStockIconInfoProc Find() {
    return reinterpret_cast<SHGetStockIconInfoProc>(os.modules.GetProcAddress(
        os.modules.GetModuleHandleW(u"Shell32.dll"), "SHGetStockIconInfo"));
  }
  // That an icon, if there is one, is the caller's to destroy.
  void ExpectMine(HICON icon) {
    EXPECT_TRUE(icon == HICON{} || os.resources.DestroyIcon(icon)) << "error " << LastError();
  }
};

TEST_F(StockIcons, TheShellsLibraryIsLoadedInEachProgram) {
  const HMODULE shell = os.modules.GetModuleHandleW(u"Shell32.dll");
  EXPECT_NE(shell, HMODULE{});
  EXPECT_EQ(os.modules.GetModuleHandleW(u"SHELL32"), shell);
}

TEST_F(StockIcons, WhatTheShellsLibraryLacksIsNotFound) {
  const HMODULE shell = os.modules.GetModuleHandleW(u"Shell32.dll");
  EXPECT_EQ(os.modules.GetProcAddress(shell, "PlatformTestMissing"), nullptr);
  EXPECT_EQ(LastError(), ERROR_PROC_NOT_FOUND);
}

TEST_F(StockIcons, TheShieldIsGiven) {
  const SHGetStockIconInfoProc tell = Find();
  ASSERT_NE(tell, nullptr);
  StockIconInfo info{.size = 544};
  EXPECT_EQ(tell(SIID_SHIELD, SHGSI_ICON | SHGSI_SMALLICON, &info), 0);
  // Wine knows in which file it is but gives none.
  EXPECT_TRUE(HoldsExcept(OnWine(), info.icon != HICON{}));
  ExpectMine(info.icon);
}

TEST_F(StockIcons, EachTimeANewOneIsGiven) {
  const SHGetStockIconInfoProc tell = Find();
  ASSERT_NE(tell, nullptr);
  StockIconInfo first{.size = 544};
  StockIconInfo second{.size = 544};
  EXPECT_EQ(tell(SIID_SHIELD, SHGSI_ICON | SHGSI_SMALLICON, &first), 0);
  EXPECT_EQ(tell(SIID_SHIELD, SHGSI_ICON | SHGSI_SMALLICON, &second), 0);
  EXPECT_TRUE(HoldsExcept(OnWine(), first.icon != second.icon));
  ExpectMine(first.icon);
  ExpectMine(second.icon);
}

TEST_F(StockIcons, WithoutItsFlagNoIconIsGiven) {
  const SHGetStockIconInfoProc tell = Find();
  ASSERT_NE(tell, nullptr);
  StockIconInfo info{.size = 544};
  EXPECT_EQ(tell(SIID_SHIELD, 0, &info), 0);
  EXPECT_EQ(info.icon, HICON{});
}

TEST_F(StockIcons, TheSizeOfTheRecordMustBeItsOwn) {
  const SHGetStockIconInfoProc tell = Find();
  ASSERT_NE(tell, nullptr);
  StockIconInfo info{.size = 543};
  EXPECT_EQ(tell(SIID_SHIELD, SHGSI_ICON, &info), kInvalidArgument);
  EXPECT_EQ(info.icon, HICON{});
  EXPECT_EQ(tell(SIID_SHIELD, SHGSI_ICON, nullptr), kInvalidArgument);
}

}  // namespace
}  // namespace platform
