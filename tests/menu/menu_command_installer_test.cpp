// Entries of the menu while a driver installer is at work.
#include "tests/menu/menu_command_fixture.h"

namespace vgl {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;

using MenuCommandBesideAnInstaller = MenuCommand;

TEST_F(MenuCommandBesideAnInstaller, IsRefusedInABoxWhereAnInstallerIsAtWork) {
  // An agent that knows no printer's name is told its texts all the same.
  context.identity.printerName = u"";
  const OwnedObject installer(
      Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller"));
  RunFromRegistry(u"C:\\Tools\\x.exe /A");
  EXPECT_EQ(desk.BoxesShown(), Texts{u"caption: busy"});
  EXPECT_THAT(CommandLines(), IsEmpty());
  EXPECT_THAT(desk.TempFiles(), IsEmpty());

  // The others don't ask.
  RunFromRegistry(u"C:\\Tools\\x.exe");
  RunFromRegistry(u"C:\\Tools\\x.exe /LM");
  RunFromRegistry(u"C:\\Tools\\ /CISSVALID");
  RunFromRegistry(u"C:\\Tools\\ /DRVUPDATE");
  RunFromRegistry(u"C:\\Tools\\ /UPPILOT");
  EXPECT_THAT(
      CommandLines(),
      ElementsAre(u"C:\\Tools\\x.exe", u"C:\\Tools\\x.exe \"\"", u"C:\\Tools\\ic.exe /P \"\"",
                  u"C:\\Tools\\np.exe /RUN /MANUAL /P \"\"", u"C:\\Tools\\np.exe /SETUP /P \"\""));
  EXPECT_EQ(desk.BoxesShown().size(), 1U);
}

TEST_F(MenuCommandBesideAnInstaller, IsCountedAlsoWhereItIsRefused) {
  // The first count asks who the printer is; an installer would keep that back.
  Run("C:\\Tools\\x.exe /DP");
  RemoveParameterFiles();
  context.identity.printerName = u"";
  const OwnedObject installer(
      Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller"));
  RunFromRegistry(u"C:\\Tools\\x.exe /DP /ASMRT");
  EXPECT_EQ(desk.BoxesShown().size(), 1U);
  EXPECT_EQ(TakeCounts(), (Counts{{7, 2}, {8, 1}}));
}

// Where the printer must be asked for the text, an installer keeps that back too, so that there is
// none. Only one that comes a moment later is told.
TEST_F(MenuCommandBesideAnInstaller, IsRefusedInABoxFromTheMomentOnThatItsTextIsKnown) {
  const OwnedObject installer(
      Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller"));
  desk.SetMenuValue("920", "C:\\Tools\\x.exe /A");
  std::string outcomes;
  for (int unseen = 0; unseen < 100 && !outcomes.ends_with('s'); ++unseen) {
    const std::size_t boxes = desk.BoxesShown().size();
    for (int i = 0; i < unseen; ++i) inside.process().FailNext("OpenMutexW", ERROR_FILE_NOT_FOUND);
    RunMenuCommand(context, 920);
    const bool hasBox = desk.BoxesShown().size() > boxes;
    outcomes += !Starts().empty() ? 's' : hasBox ? 'b' : 'n';
    EXPECT_EQ(desk.TempFiles().size(), Starts().size()) << outcomes;
  }
  // Nothing, then boxes, and in the end a start.
  EXPECT_THAT(outcomes, testing::MatchesRegex("n+bb+s"));
}

}  // namespace
}  // namespace vgl
