// From WM_COMMAND to the program, in whole agents.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Common/text_conversion.h"
#include "platform/owned.h"
#include "tests/support/frame_fixture.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;

class MenuCommandOfAnAgent : public testing::Test {
 protected:
  MenuCommandOfAnAgent() {
    for (const char16_t* program : {u"x.exe", u"ic.exe", u"np.exe"})
      desk.machine.files().WriteFile(std::u16string(u"C:\\Tools\\") + program, "");
  }
  Texts CommandLines() {
    Texts lines;
    for (const sim::Programs::Start& start : desk.machine.programs().Starts())
      lines.push_back(start.commandLine);
    return lines;
  }

  SimDesk desk;
};

TEST_F(MenuCommandOfAnAgent, IsRunForItsPrinterAndCounted) {
  desk.SetMenuValue("930", "C:\\Tools\\x.exe /LM");
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, 930);
  EXPECT_EQ(CommandLines(), Texts{u"C:\\Tools\\x.exe \"Studio 7200\""});
  EXPECT_EQ(agent.Counts().at(11), 1U);
  EXPECT_EQ(agent.Close(), 0U);
}

TEST_F(MenuCommandOfAnAgent, GoesByTheProgramsOfThePrintersVif) {
  desk.AddToVif("[Download]\r\nUPPILOTEXE=np.exe\r\n[InkChg]\r\nINKCHGEXE=ic.exe");
  desk.SetMenuValue("921", "C:\\Tools\\ /UPPILOT");
  desk.SetMenuValue("922", "C:\\Tools\\ /CISSVALID");
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, 921);
  agent.Post(WM_COMMAND, 922);
  EXPECT_EQ(CommandLines(), (Texts{u"C:\\Tools\\np.exe /SETUP /P \"Studio 7200\"",
                                   u"C:\\Tools\\ic.exe /P \"Studio 7200\""}));
}

TEST_F(MenuCommandOfAnAgent, WritesAParameterFileForItsPrinter) {
  desk.SetMenuValue("930", "C:\\Tools\\x.exe /DP /Q");
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, 930);
  ASSERT_EQ(desk.TempFiles().size(), 1U);
  const std::u16string text =
      u"/DP /Q\n/P \"Studio 7200\"\n/M \"S7200\"\n/D \"KAVRO Studio 7200\"\n/O \"USB001\"";
  EXPECT_EQ(desk.machine.files().ReadFile(desk.TempFiles()[0]), Utf16LeFromText(text + u'\0'));
  EXPECT_EQ(agent.Counts().at(7), 1U);
}

TEST_F(MenuCommandOfAnAgent, IsToldByTheLowHalfOfTheMessagesParameter) {
  desk.SetMenuValue("950", "C:\\Tools\\x.exe|/x");
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, 0xFFFF0000 + 950);
  EXPECT_EQ(CommandLines(), Texts{u"\"C:\\Tools\\x.exe\" /x"});
}

TEST_F(MenuCommandOfAnAgent, OfTheHeadFollowsItsWindow) {
  desk.SetMenuValue("900", "C:\\Tools\\x.exe");
  desk.SetMenuValue("901", "C:\\Tools\\ic.exe");
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, 900);
  agent.Post(WM_COMMAND, 901);
  ASSERT_EQ(CommandLines().size(), 4U);
  EXPECT_TRUE(CommandLines()[0].starts_with(desk::kRunHelperPath));
  EXPECT_EQ(CommandLines()[1], u"C:\\Tools\\x.exe");
  EXPECT_TRUE(CommandLines()[2].starts_with(desk::kRunHelperPath));
  EXPECT_EQ(CommandLines()[3], u"C:\\Tools\\ic.exe");
  EXPECT_EQ(agent.Counts().at(2), 1U);
  EXPECT_EQ(agent.Counts().at(3), 1U);
}

TEST_F(MenuCommandOfAnAgent, OfTheHeadIsTheWindowAloneWhereTheSetSaysNothing) {
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, 900);
  ASSERT_EQ(CommandLines().size(), 1U);
  EXPECT_TRUE(CommandLines()[0].starts_with(desk::kRunHelperPath));
}

TEST_F(MenuCommandOfAnAgent, FollowsAlsoAWindowThatCantBeOpened) {
  desk.machine.desktop().AnswerBoxesAtOnce();
  desk.machine.files().Remove(desk::kRunHelperPath);
  desk.SetMenuValue("900", "C:\\Tools\\x.exe");
  desk.StartedAgent().Post(WM_COMMAND, 900);
  EXPECT_EQ(desk.BoxesShown().size(), 1U);
  EXPECT_EQ(CommandLines(), Texts{u"C:\\Tools\\x.exe"});
}

TEST_F(MenuCommandOfAnAgent, IsTheTextOfTheMomentNotThatOfTheMenu) {
  desk::ResourceLibrary library = desk::PlainResourceLibrary();
  library.strings[930] = u"Tool";
  desk.SetResourceLibrary(library);
  desk.SetMenuValue("930", "C:\\Tools\\x.exe");
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  desk.SetMenuValue("930", "C:\\Tools\\ic.exe");
  agent.Choose(930);
  EXPECT_EQ(CommandLines(), Texts{u"C:\\Tools\\ic.exe"});

  agent.RightClick();
  desk.SetMenuValue("930", "");
  agent.Choose(930);
  EXPECT_EQ(CommandLines().size(), 1U);
}

// --- The box

class MenuCommandOfAFrame : public FrameTest {};

TEST_F(MenuCommandOfAFrame, IsRefusedInTheWordsOfTheResourceLibrary) {
  machine.desktop().AnswerBoxesAtOnce();
  ASSERT_EQ(frame->StartUp(), 1);
  // Without a printer's name the text is found while an installer is at work.
  frame->m_szPrinterName.Clear();
  AddToProfile(machine, "RegistryBaseVGL=1");
  machine.registry().SetString(HKEY_LOCAL_MACHINE,
                               u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200\\Menu", u"930",
                               u"C:\\Tools\\x.exe /A");
  const OwnedObject installer(
      Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller"));
  Send(WM_COMMAND, 930);
  EXPECT_TRUE(std::ranges::any_of(machine.trace(), [](const sim::Event& event) {
    return event.text ==
           u"message box \"Printer Status\": A printer driver is being installed. Try again later.";
  }));
  EXPECT_TRUE(machine.programs().Starts().empty());
}

}  // namespace
}  // namespace vgl
