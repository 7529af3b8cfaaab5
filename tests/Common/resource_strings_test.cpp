#include "Common/resource_strings.h"

#include <gtest/gtest.h>

#include <string>

#include "desk/resource_library.h"
#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace vgl {
namespace {

using namespace platform;

class ResourceStrings : public testing::Test {
 protected:
  // That string is number 1100 of the resource library.
  void Load(const std::u16string& string) {
    desk::ResourceLibrary resources;
    resources.strings[1100] = string;
    library.Reset();
    machine.files().WriteFile(u"C:\\K_R.DLL", desk::BytesOf(resources));
    library = OwnedModule(Os().modules.LoadLibraryW(u"C:\\K_R.DLL"));
    ASSERT_TRUE(library);
    g_hResDll = library.get();
  }

  sim::Machine machine;
  sim::Inside inside{machine};
  OwnedModule library;
  std::u16string target = u"before";
};

TEST_F(ResourceStrings, AStringIsTaken) {
  Load(u"Offers");
  EXPECT_TRUE(LoadResString(&target, 1100));
  EXPECT_EQ(target, u"Offers");
}

TEST_F(ResourceStrings, AStringThatIsMissingLeavesTheTarget) {
  Load(u"Offers");
  EXPECT_FALSE(LoadResString(&target, 1101));
  EXPECT_EQ(target, u"before");
}

TEST_F(ResourceStrings, WithoutALibraryTheProgramIsAskedWhichHasNone) {
  EXPECT_EQ(g_hResDll.get(), HMODULE{});
  EXPECT_FALSE(LoadResString(&target, 1100));
  EXPECT_EQ(target, u"before");
}

TEST_F(ResourceStrings, OneOf510CharactersIsTheLongestThatIsTaken) {
  Load(std::u16string(510, u'x'));
  EXPECT_TRUE(LoadResString(&target, 1100));
  EXPECT_EQ(target, std::u16string(510, u'x'));
}

TEST_F(ResourceStrings, ALongerOneIsFoundButNotTaken) {
  for (const std::size_t length : {511u, 512u, 600u}) {
    Load(std::u16string(length, u'x'));
    EXPECT_TRUE(LoadResString(&target, 1100)) << length;
    EXPECT_EQ(target, u"before") << length;
  }
}

TEST_F(ResourceStrings, ALoadThatFailsLeavesTheTarget) {
  Load(u"Offers");
  inside.process().FailNext("LoadStringW", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_FALSE(LoadResString(&target, 1100));
  EXPECT_EQ(target, u"before");
}

}  // namespace
}  // namespace vgl
