// The program's own module.
#include "tests/platform/platform_test.h"

namespace platform {
namespace {

class RunningModule : public PlatformTest {
 protected:
  std::u16string FileName(HMODULE module) {
    char16_t path[MAX_PATH] = {};
    const std::uint32_t length = os.modules.GetModuleFileNameW(module, path, MAX_PATH);
    EXPECT_EQ(std::u16string(path).size(), length);
    return path;
  }
};

TEST_F(RunningModule, TheProgramHasAHandle) {
  const HMODULE program = os.modules.GetModuleHandleW(nullptr);
  EXPECT_NE(program, HMODULE{});
  EXPECT_EQ(os.modules.GetModuleHandleW(nullptr), program);
}

TEST_F(RunningModule, TheProgramsPathIsWholeAndNamesAFile) {
  const std::u16string path = FileName(HMODULE{});
  ASSERT_GT(path.size(), 3u);
  EXPECT_EQ(path.substr(1, 2), u":\\");
  EXPECT_EQ(path.back(), u'e');  // .exe
}

TEST_F(RunningModule, TheNullModuleIsTheProgram) {
  EXPECT_EQ(FileName(os.modules.GetModuleHandleW(nullptr)), FileName(HMODULE{}));
}

TEST_F(RunningModule, APathThatDoesNotFitIsCut) {
  const std::u16string whole = FileName(HMODULE{});
  char16_t path[6] = u"xxxxx";
  EXPECT_EQ(os.modules.GetModuleFileNameW(HMODULE{}, path, 5), 5u);
  EXPECT_EQ(LastError(), ERROR_INSUFFICIENT_BUFFER);
  // Wine leaves a cut path without its terminator.
  EXPECT_TRUE(HoldsExcept(OnWine(), std::u16string(path) == whole.substr(0, 4)));
}

TEST_F(RunningModule, APathNeedsRoomForItsTerminator) {
  const std::u16string whole = FileName(HMODULE{});
  const auto length = static_cast<std::uint32_t>(whole.size());
  std::u16string path(whole.size() + 1, u'x');
  EXPECT_EQ(os.modules.GetModuleFileNameW(HMODULE{}, path.data(), length), length);
  EXPECT_EQ(LastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(os.modules.GetModuleFileNameW(HMODULE{}, path.data(), length + 1), length);
  EXPECT_EQ(std::u16string(path.c_str()), whole);
}

TEST_F(RunningModule, ALibraryThatIsNotLoadedHasNoHandle) {
  EXPECT_EQ(os.modules.GetModuleHandleW(u"PlatformTestMissing.dll"), HMODULE{});
  EXPECT_EQ(LastError(), ERROR_MOD_NOT_FOUND);
}

}  // namespace
}  // namespace platform
