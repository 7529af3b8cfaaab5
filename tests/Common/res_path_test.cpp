// GetResPath: the language manager first, the profile second.
#include "Common/path_lookup.h"

#include <algorithm>
#include <string>
#include <vector>

#include "desk/language_manager.h"
#include "tests/Common/path_lookup_fixture.h"

namespace vgl {
namespace {

using namespace platform;

class ResPath : public PathLookupTest {
 protected:
  static constexpr char16_t kManager[] = u"C:\\Set\\LMW.DLL";

  ResPath() {
    DescribeUsualSet();
    WriteProfile("[Language]\nDEU=07,01\nENU=09,01\n[DEU]\nResDll=de.dll\n[ENU]\nResDll=en.dll\n");
    AddFile(u"C:\\Set\\en.dll");
    AddFile(u"C:\\Set\\de.dll");
  }

  void AddManager() {
    SetDriver(u"C:\\Set\\sample.dll", kVif);
    WriteVif("[CommonDrvInfo]\nSADat=sample.sad\nLMWModule=LMW.DLL\n");
    desk::AddLanguageManager(machine, kManager);
  }
  desk::LanguageManager& Manager() { return machine.libraries().State<desk::LanguageManager>(); }
  void ManagerNames(std::u16string file) { Manager().paths[u"VGLUIRESModule"] = std::move(file); }
};

TEST_F(ResPath, TheLanguageManagersLibraryComesFirst) {
  AddManager();
  ManagerNames(u"C:\\Languages\\fr.dll");
  AddFile(u"C:\\Languages\\fr.dll");
  EXPECT_EQ(Find(GetResPath), 1);
  EXPECT_EQ(path.view(), u"C:\\Languages\\fr.dll");
  EXPECT_TRUE(Manager().openContexts.empty());
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(ResPath, TheLanguageManagerIsAskedForItsResourceModuleWithRoomFor260Characters) {
  AddManager();
  ManagerNames(u"C:\\" + std::u16string(256, u'f'));  // 259 characters
  EXPECT_EQ(Find(GetResPath), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\en.dll");  // as there is no such file
  EXPECT_EQ(Manager().keys, std::vector<std::u16string>{u"CommonDrvInfo/VGLUIRESModule"});
  AddFile(u"C:\\" + std::u16string(256, u'f'));
  EXPECT_EQ(Find(GetResPath), 1);
  EXPECT_EQ(path.length(), 259U);
}

TEST_F(ResPath, ALibraryThatIsntThereIsLoggedAndTheProfileCounts) {
  AddManager();
  ManagerNames(u"C:\\Languages\\gone.dll");
  const std::vector<std::string> log = TrayLogOf([this] { EXPECT_EQ(Find(GetResPath), 1); });
  EXPECT_EQ(path.view(), u"C:\\Set\\en.dll");
  EXPECT_EQ(std::count(log.begin(), log.end(), "error : UiResourcePath is not exist"), 1);
}

TEST_F(ResPath, AManagerWithoutAnAnswerIsNotLoggedAsAnErrorAndTheProfileCounts) {
  AddManager();  // neither the test nor the VIF names a path
  const std::vector<std::string> log = TrayLogOf([this] { EXPECT_EQ(Find(GetResPath), 1); });
  EXPECT_EQ(path.view(), u"C:\\Set\\en.dll");
  EXPECT_EQ(std::count(log.begin(), log.end(), "error : UiResourcePath is not exist"), 0);
  EXPECT_EQ(std::count(log.begin(), log.end(), "CMultiLangCtrl::GetUiResourcePath End"), 1);
}

TEST_F(ResPath, WithoutAManagerTheProfileCounts) {
  EXPECT_EQ(Find(GetResPath), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\en.dll");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(ResPath, TheUsersLanguageIsTaken) {
  machine.system().userLanguage = 0x0407;
  EXPECT_EQ(Find(GetResPath), 1);
  EXPECT_EQ(path.view(), u"C:\\Set\\de.dll");
}

TEST_F(ResPath, WithoutAFolderADotStandsRightInFrontOfTheName) {
  DescribeSet({{"Profile", "C:\\Set\\M1.INI"}});
  EXPECT_EQ(Find(GetResPath), 1);
  EXPECT_EQ(path.view(), u".en.dll");
}

TEST_F(ResPath, TheLibraryIsTestedBesideTheProfileAndNamedInTheDriversFolder) {
  DescribeSet({{"InstallPath", "C:\\Elsewhere"}, {"Profile", "C:\\Set\\M1.INI"}});
  machine.files().MakeFolder(u"C:\\Elsewhere");
  EXPECT_EQ(Find(GetResPath), 1);
  EXPECT_EQ(path.view(), u"C:\\Elsewhere\\en.dll");  // where there is none
}

TEST_F(ResPath, WithoutAProfileThereIsNone) {
  DescribeSet({{"InstallPath", "C:\\Set"}});
  EXPECT_EQ(Find(GetResPath), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(ResPath, AProfileThatPointsNowhereHasNone) {
  DescribeSet({{"InstallPath", "C:\\Set"}}, {{"M1", "C:\\Gone\\M1.INI"}});
  EXPECT_EQ(Find(GetResPath), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(ResPath, WhereNoLibraryIsThereThereIsNone) {
  machine.files().Remove(u"C:\\Set\\en.dll");
  machine.files().Remove(u"C:\\Set\\de.dll");
  EXPECT_EQ(Find(GetResPath), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(ResPath, APathOf260CharactersGives0) {
  // The longest folder with its backslash, and "en.dll": 253 + 6 characters fit.
  for (const std::size_t extra : {0U, 1U}) {
    const std::string folder = "C:\\" + std::string(200, 'a') + "\\" + std::string(48 + extra, 'b');
    machine.files().MakeFolder(std::u16string(folder.begin(), folder.end()));
    DescribeSet({{"InstallPath", folder}, {"Profile", "C:\\Set\\M1.INI"}});
    EXPECT_EQ(Find(GetResPath), extra == 0 ? 1 : 0);
    EXPECT_EQ(path.length(), extra == 0 ? 259U : 0U);
  }
}

TEST_F(ResPath, AMissingArgumentGives0) {
  EXPECT_EQ(GetResPath(nullptr, kDriver, kModel, kPrinter), 0);
  EXPECT_EQ(GetResPath(&path, nullptr, kModel, kPrinter), 0);
  EXPECT_EQ(path.view(), u"");
  EXPECT_TRUE(path.Assign(u"before"));
  EXPECT_EQ(GetResPath(&path, kDriver, nullptr, kPrinter), 0);
  EXPECT_EQ(path.view(), u"");
}

TEST_F(ResPath, WithoutAPrintersNameItGoesByTheDriver) {
  AddManager();
  ManagerNames(u"C:\\Set\\de.dll");
  for (const char16_t* printer : {u"", static_cast<const char16_t*>(nullptr)}) {
    EXPECT_EQ(Find(GetResPath, printer), 1);
    EXPECT_EQ(path.view(), u"C:\\Set\\en.dll");
  }
  EXPECT_TRUE(Manager().blocks.empty());
}

TEST_F(ResPath, AnyCallThatFailsGivesOneOfTheTwoPathsAndLeavesNoContext) {
  AddManager();
  ManagerNames(u"C:\\Set\\de.dll");
  int result = 0;
  int ofManager = 0;
  int ofProfile = 0;
  int runs = 0;
  WithEachCallFailing([&] { result = Find(GetResPath); },
                      [&](std::uint64_t) {
                        EXPECT_EQ(result, 1);
                        ofManager += path.view() == u"C:\\Set\\de.dll" ? 1 : 0;
                        ofProfile += path.view() == u"C:\\Set\\en.dll" ? 1 : 0;
                        ++runs;
                        EXPECT_TRUE(Manager().openContexts.empty());
                      });
  EXPECT_EQ(ofManager + ofProfile, runs);
  EXPECT_GT(ofManager, 0);
  EXPECT_GT(ofProfile, 0);
  EXPECT_EQ(Manager().unknownContexts, 0);
}

}  // namespace
}  // namespace vgl
