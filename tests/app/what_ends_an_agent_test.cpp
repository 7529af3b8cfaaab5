// What ends an agent that runs, in all: by which line of the tray log it shows, and that each goes
// the same road from there.
#include <gtest/gtest.h>

#include <algorithm>

#include "app/agent_messages.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Lines = std::vector<std::string>;
using Texts = std::vector<std::u16string>;

class WhatEndsAnAgent : public testing::Test {
 protected:
  WhatEndsAnAgent() { desk.SetRunValue(desk::kPrinterName, u"K_QD21TR.EXE"); }

  void HoldKeys(const std::vector<std::int32_t>& keys) {
    for (const std::int32_t key : keys) desk.machine.desktop().HoldKey(key);
  }
  std::ptrdiff_t CountInLog(const std::string& text) {
    const Lines lines = desk.LogTexts();
    return std::count(lines.begin(), lines.end(), text);
  }

  // It has ended in order, and `line` is the only one that says why; behind it comes the road of
  // WM_CLOSE. The printer was looked for so often, the last time at the end.
  void ExpectEndedBy(const std::string& line, const SimAgent& agent, int printerLookups) {
    desk.RunFor(1);
    ASSERT_TRUE(agent.HasEnded());
    EXPECT_EQ(agent.ExitCode(), 0U);
    EXPECT_EQ(agent.Ledger(), Texts{});
    EXPECT_TRUE(desk.machine.tray().Icons().empty());
    const Lines lines = desk.LogTexts();
    const Lines road = {line, "WM_CLOSE", "WM_DESTROY", "CMainFrame::DestroyWindow",
                        "CMainFrame::ChkDelPrn : start"};
    EXPECT_NE(std::search(lines.begin(), lines.end(), road.begin(), road.end()), lines.end());
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const std::string& each) { return each.starts_with("Post WM_"); }),
              1);
    EXPECT_EQ(CountInLog("CMainFrame::ChkDelPrn : start"), printerLookups);
  }
  void ExpectAutoStart(bool stays) {
    EXPECT_EQ(desk.RunValues(), stays ? Texts{desk::kPrinterName} : Texts{});
  }

  SimDesk desk;
};

// The line is the sender's: of what it does after that, the first agent's lines know nothing.
TEST_F(WhatEndsAnAgent, ARemovalFromASecondProcess) {
  const SimAgent agent = desk.StartedAgent();
  const SimAgent second = desk.StartedAgent(desk::OptionsOfDefaultPrinter() + u" /R");
  ASSERT_TRUE(agent.HasEnded());
  ASSERT_TRUE(second.HasEnded());
  EXPECT_EQ(agent.ExitCode(), 0U);
  EXPECT_EQ(agent.Ledger(), Texts{});
  const Lines ofSender = desk.LogTextsOf(second);
  EXPECT_EQ(std::count(ofSender.begin(), ofSender.end(), "Post WM_CLOSE"), 1);
  const Lines ofAgent = desk.LogTextsOf(agent);
  const Lines road = {"WM_CLOSE", "WM_DESTROY", "CMainFrame::DestroyWindow"};
  EXPECT_NE(std::search(ofAgent.begin(), ofAgent.end(), road.begin(), road.end()), ofAgent.end());
  EXPECT_EQ(std::count_if(ofAgent.begin(), ofAgent.end(),
                          [](const std::string& each) { return each.starts_with("Post WM_"); }),
            0);
  ExpectAutoStart(true);
}

TEST_F(WhatEndsAnAgent, AMaskThatTheMaskCheckFindsLeavesTheAutoStart) {
  const SimAgent agent = desk.StartedAgent();
  desk.SetMask(1);
  desk.RunFor(3000);
  ExpectEndedBy("Post WM_CLOSE(1)", agent, 2);
  ExpectAutoStart(true);
}

TEST_F(WhatEndsAnAgent, APrinterThatTheMaskCheckFindsGoneTakesTheAutoStartAlong) {
  const SimAgent agent = desk.StartedAgent();
  desk.DeletePrinter();
  desk.RunFor(3000);
  ExpectEndedBy("Post WM_CLOSE(1)", agent, 2);
  ExpectAutoStart(false);
}

TEST_F(WhatEndsAnAgent, ADoubleClickOnTheIconOfAPrinterThatIsGone) {
  const SimAgent agent = desk.StartedAgent();
  desk.DeletePrinter();
  agent.DoubleClick();
  ExpectEndedBy("Post WM_CLOSE(1)", agent, 2);
  EXPECT_TRUE(desk.machine.programs().Starts().empty());
  ExpectAutoStart(false);
}

TEST_F(WhatEndsAnAgent, APrinterThatThePrinterCheckFindsGone) {
  desk.AddToProfile("TrayIconEndTime=2500");
  const SimAgent agent = desk.StartedAgent();
  desk.DeletePrinter();
  desk.RunFor(1000);
  EXPECT_EQ(CountInLog("CMainFrame::OnTimer : Mask check"), 0);
  ExpectEndedBy("Post WM_CLOSE(2)", agent, 2);
  ExpectAutoStart(false);
}

TEST_F(WhatEndsAnAgent, ARightPressOnTheIconOfAPrinterThatIsGone) {
  const SimAgent agent = desk.StartedAgent();
  desk.DeletePrinter();
  agent.RightClick();
  ExpectEndedBy("Post WM_CLOSE(2)", agent, 2);
  ExpectAutoStart(false);
}

TEST_F(WhatEndsAnAgent, ASingleClickOnTheIconOfAPrinterThatIsGone) {
  const SimAgent agent = desk.StartedAgent();
  desk.DeletePrinter();
  agent.Click();
  desk.RunFor(500);
  EXPECT_EQ(CountInLog("CMainFrame::OnTimer : Mask check"), 0);
  ExpectEndedBy("Post WM_CLOSE(2)", agent, 2);
  ExpectAutoStart(false);
}

TEST_F(WhatEndsAnAgent, CtrlShiftAndSpaceHeldAtARightPress) {
  const SimAgent agent = desk.StartedAgent();
  HoldKeys({VK_CONTROL, VK_SHIFT, VK_SPACE});
  agent.RightClick();
  ExpectEndedBy("Post WM_CLOSE(3)", agent, 2);
  ExpectAutoStart(true);
}

// A printer that is gone tells no serial number any more, by which its counts would be filed.
TEST_F(WhatEndsAnAgent, APrinterThatIsGoneTakesTheCountsSinceTheLastFlushAlong) {
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_VGL3_FLUSH_VGLLOG);
  agent.DoubleClick();
  EXPECT_EQ(agent.Counts(), (std::vector<std::uint32_t>{0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  desk.DeletePrinter();
  desk.RunFor(3000);
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(desk.CountsInFile(),
            (std::vector<std::uint32_t>{0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

// --- What doesn't

TEST_F(WhatEndsAnAgent, IsNoSecondStart) {
  const SimAgent agent = desk.StartedAgent();
  desk.StartedAgent();
  EXPECT_FALSE(agent.HasEnded());
}

TEST_F(WhatEndsAnAgent, IsNoInstallerAtWork) {
  const SimAgent agent = desk.StartedAgent();
  desk.StartInstaller();
  desk.RunFor(60000);
  EXPECT_FALSE(agent.HasEnded());
  EXPECT_EQ(CountInLog("CMainFrame::OnTimer : Mask check"), 20);
}

TEST_F(WhatEndsAnAgent, IsNoMaskThatIsTakenAwayInTime) {
  const SimAgent agent = desk.StartedAgent();
  desk.SetMask(1);
  desk.RunFor(1000);
  desk.SetMask(0);
  desk.RunFor(60000);
  EXPECT_FALSE(agent.HasEnded());
}

TEST_F(WhatEndsAnAgent, IsNoPrinterThatComesBackInTime) {
  const SimAgent agent = desk.StartedAgent();
  desk.DeletePrinter();
  desk.RunFor(1000);
  desk.AddPrinter(desk::kPrinterName, desk::kPortName);
  desk.RunFor(60000);
  EXPECT_FALSE(agent.HasEnded());
  ExpectAutoStart(true);
}

// The menu closes with the window; nothing waits for its choice.
TEST_F(WhatEndsAnAgent, DoesSoAlsoWhileTheMenuIsOpen) {
  const SimAgent agent = desk.StartedAgent();
  agent.RightClick();
  ASSERT_TRUE(agent.MenuIsOpen());
  desk.DeletePrinter();
  desk.RunFor(3000);
  ExpectEndedBy("Post WM_CLOSE(1)", agent, 3);
  ExpectAutoStart(false);
}

TEST_F(WhatEndsAnAgent, DoesSoOnceWhereTwoOfThemComeTogether) {
  desk.AddToProfile("TrayIconEndTime=3000");
  const SimAgent agent = desk.StartedAgent();
  desk.DeletePrinter();
  desk.RunFor(3000);
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.Ledger(), Texts{});
  EXPECT_EQ(CountInLog("WM_DESTROY"), 1);
}

}  // namespace
}  // namespace vgl
