// Utilities in whole agents: an entry of the menu runs one, the checks stand aside meanwhile, and
// the agent's end waits for it.
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "Common/CVglLog.h"
#include "app/agent_messages.h"
#include "desk/utility_library.h"
#include "menu/uty_call.h"
#include "platform/owned.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Names = std::vector<std::string>;
using Texts = std::vector<std::u16string>;

constexpr char16_t kSemaphore[] = u"VGL_UtyCall_OBJ_Studio 7200";
constexpr WPARAM kNozzleCheck = 920;
constexpr WPARAM kCleaning = 921;

// Gives the driver set two entries that are utilities.
void PutUtilities(SimDesk& desk) {
  desk::AddUtilityLibrary(desk.machine, u"C:\\D\\K_UTIL.DLL");
  desk.AddToProfile("UTILITY=K_UTIL.DLL");
  desk.SetMenuValue("920", "C:\\D\\K_UTIL.DLL /U1");
  desk.SetMenuValue("921", "C:\\D\\K_UTIL.DLL /U2");
}

class UtilitySession : public testing::Test {
 protected:
  UtilitySession() { PutUtilities(desk); }

  desk::UtilityLibrary& Utility() { return desk::UtilityLibraryOf(desk.machine); }
  std::ptrdiff_t Logged(const std::string& text) {
    const Names lines = desk.LogTexts();
    return std::count(lines.begin(), lines.end(), text);
  }
  static std::u16string ThreadOf(const SimAgent& agent) {
    return u"thread of " + agent.process().imagePath();
  }

  SimDesk desk;
};

// --- The entry

TEST_F(UtilitySession, AnEntryRunsItsUtilityAndCountsIt) {
  Utility().milliseconds = 5000;
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, kCleaning);
  ASSERT_EQ(Utility().calls.size(), 1U);
  EXPECT_EQ(Utility().calls[0].name, "UtCleanHeadW");
  EXPECT_EQ(Utility().calls[0].texts,
            (std::array<std::u16string, 4>{u"Studio 7200", u"", u"", u""}));
  desk.RunFor(4999);
  EXPECT_EQ(agent.Counts(), (std::vector<std::uint32_t>{0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  desk.RunFor(1);
  EXPECT_EQ(agent.Counts(), (std::vector<std::uint32_t>{0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(UtilitySession, TheMenuOpensWhileAUtilityRuns) {
  Utility().milliseconds = 5000;
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, kCleaning);
  agent.Click();
  desk.RunFor(1000);  // it can't become a double click any more
  EXPECT_TRUE(agent.MenuIsOpen());
  agent.DismissMenu();
  EXPECT_EQ(Utility().ended, 0U);
}

TEST_F(UtilitySession, OfTwoQuickClicksTheFirstCounts) {
  Utility().milliseconds = 5000;
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, kCleaning);
  agent.Post(WM_COMMAND, kNozzleCheck);
  desk.RunFor(6000);
  ASSERT_EQ(Utility().calls.size(), 1U);
  EXPECT_EQ(Utility().calls[0].name, "UtCleanHeadW");
  agent.Post(WM_COMMAND, kNozzleCheck);
  EXPECT_EQ(Utility().calls.size(), 2U);
}

TEST_F(UtilitySession, AgentsOfTwoPrintersRunTheirUtilitiesAtOnce) {
  Utility().milliseconds = 5000;
  const std::u16string options = desk.AddPrinter(u"Studio 2");
  const SimAgent first = desk.StartedAgent();
  const SimAgent second = desk.StartedAgent(options);
  first.Post(WM_COMMAND, kCleaning);
  second.Post(WM_COMMAND, kCleaning);
  ASSERT_EQ(Utility().calls.size(), 2U);
  EXPECT_EQ(Utility().calls[1].texts[0], u"Studio 2");
}

TEST_F(UtilitySession, AnotherProgramsUtilityKeepsOursAwayAndTheChecksToo) {
  desk.machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    const OwnedObject semaphore(Os().objects.CreateSemaphoreW(1, 1, kSemaphore));
    Os().objects.WaitForSingleObject(semaphore.get(), INFINITE);
    Os().process.Sleep(20000);
    Os().objects.ReleaseSemaphore(semaphore.get(), 1, nullptr);
    return 0U;
  });
  const SimAgent agent = desk.StartedAgent();
  desk.RunFor(3000);
  EXPECT_EQ(Logged("Utility executing"), 0);  // before its own first call it knows nothing of it
  agent.Post(WM_COMMAND, kCleaning);
  EXPECT_TRUE(Utility().calls.empty());
  desk.RunFor(3000);
  EXPECT_EQ(Logged("return utility executing"), 1);
  desk.RunFor(20000);
  agent.Post(WM_COMMAND, kCleaning);
  EXPECT_EQ(Utility().calls.size(), 1U);
}

// --- The checks

TEST_F(UtilitySession, TheMaskCheckStandsAsideAndGoesOn) {
  Utility().milliseconds = 10000;
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, kCleaning);
  desk.SetMask(1);
  desk.RunFor(9999);
  EXPECT_FALSE(agent.HasEnded());
  EXPECT_EQ(Logged("return utility executing"), 3);
  EXPECT_EQ(Logged("CMainFrame::OnTimer : Mask check"), 0);
  EXPECT_EQ(agent.PeriodOf(TMID_MASKCHECK), 3000U);
  EXPECT_TRUE(desk.machine.RunUntilEnded(agent.process(), 3001));
  EXPECT_EQ(Logged("Utility not executing"), 2);  // by the gate, and by the look for the printer
}

TEST_F(UtilitySession, TheMaskCheckGoesOnEveryThreeSecondsAfterAUtility) {
  Utility().milliseconds = 10000;
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, kCleaning);
  desk.RunFor(10000 + 9000);
  EXPECT_EQ(Logged("return utility executing"), 3);
  EXPECT_EQ(Logged("CMainFrame::OnTimer : Mask check"), 3);
  EXPECT_FALSE(agent.HasEnded());
}

TEST_F(UtilitySession, ADeletedPrinterIsNoticedWhenTheUtilityIsDone) {
  Utility().milliseconds = 10000;
  desk.AddToProfile("TrayIconEndTime=1000");
  const SimAgent agent = desk.StartedAgent();
  const std::ptrdiff_t before = Logged("CMainFrame::OnTimer : Printer check");
  agent.Post(WM_COMMAND, kCleaning);
  desk.DeletePrinter();
  desk.RunFor(9999);
  EXPECT_FALSE(agent.HasEnded());
  EXPECT_EQ(Logged("CMainFrame::OnTimer : Printer check"), before);
  EXPECT_TRUE(desk.machine.RunUntilEnded(agent.process(), 1001));
  EXPECT_EQ(agent.ExitCode(), 0U);
}

TEST_F(UtilitySession, ADeletedPrintersMenuOpensAsLongAsItsUtilityRuns) {
  Utility().milliseconds = 2000;
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, kCleaning);
  desk.DeletePrinter();
  agent.RightClick();
  EXPECT_TRUE(agent.MenuIsOpen());
  agent.DismissMenu();
  desk.RunFor(2000);
  agent.RightClick();
  EXPECT_FALSE(agent.MenuIsOpen());
}

// --- The end

TEST_F(UtilitySession, ClosingWaitsForTheUtilityWithTheIconStillShown) {
  Utility().milliseconds = 5000;
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, kNozzleCheck);
  desk.RunFor(1000);
  agent.Post(WM_CLOSE);
  desk.RunFor(3999);
  EXPECT_FALSE(agent.HasEnded());
  EXPECT_TRUE(desk.HasLogged("WM_DESTROY"));
  EXPECT_NE(agent.Icon(), nullptr);
  EXPECT_TRUE(desk.CountsInFile().empty());
  desk.RunFor(1);
  EXPECT_EQ(Utility().ended, 1U);
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.ExitCode(), 0U);
  EXPECT_TRUE(desk.machine.tray().Icons().empty());
  EXPECT_EQ(desk.CountsInFile(),
            (std::vector<std::uint32_t>{0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(agent.Ledger(), Texts{ThreadOf(agent)});
}

// Which leaves the loop with the window still there.
TEST_F(UtilitySession, AMessageThatQuitsWaitsForTheUtilityToo) {
  Utility().milliseconds = 5000;
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, kNozzleCheck);
  agent.Post(WM_QUIT, 7);
  desk.RunFor(4999);
  EXPECT_FALSE(agent.HasEnded());
  desk.RunFor(1);
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(agent.ExitCode(), 7U);
  EXPECT_EQ(Utility().ended, 1U);
}

TEST_F(UtilitySession, ClosingWaitsForNothingAfterAUtility) {
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, kNozzleCheck);
  agent.Post(WM_COMMAND, kCleaning);
  const std::uint64_t before = desk.machine.now();
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_EQ(desk.machine.now(), before);
  EXPECT_EQ(agent.Ledger(), (Texts{ThreadOf(agent), ThreadOf(agent)}));
}

TEST_F(UtilitySession, AnAgentThatCalledNoneDoesntWaitForAnotherProgramsUtility) {
  desk.machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    const OwnedObject semaphore(Os().objects.CreateSemaphoreW(0, 1, kSemaphore));
    Os().process.Sleep(INFINITE);
    return 0U;
  });
  const SimAgent agent = desk.StartedAgent();
  const std::uint64_t before = desk.machine.now();
  EXPECT_EQ(agent.Close(), 0U);
  EXPECT_EQ(desk.machine.now(), before);
}

// The agent keeps its turn when it ends, and nobody gives it back: whoever has the semaphore open
// at that time finds it taken from then on.
TEST_F(UtilitySession, TheTurnThatTheEndTakesIsNeverGivenBack) {
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, kCleaning);
  const sim::Inside inside(desk.machine);
  const OwnedObject semaphore(Os().objects.CreateSemaphoreW(1, 1, kSemaphore));
  desk.machine.desktop().Post(agent.Window()->handle, WM_CLOSE, 0, 0);
  Os().process.Sleep(10000);
  ASSERT_TRUE(agent.HasEnded());
  EXPECT_EQ(Os().objects.WaitForSingleObject(semaphore.get(), 0), WAIT_TIMEOUT);
}

// Nothing is left that could give the semaphore back: such an agent ends with its session, or when
// it is ended by force.
TEST_F(UtilitySession, AThreadThatDidntStartKeepsTheAgentFromEnding) {
  const SimAgent agent = desk.StartedAgent();
  agent.process().FailNext("CreateThread", ERROR_NOT_ENOUGH_MEMORY);
  agent.Post(WM_COMMAND, kCleaning);
  EXPECT_TRUE(Utility().calls.empty());
  desk.RunFor(60000);
  EXPECT_EQ(Logged("return utility executing"), 20);
  agent.Post(WM_CLOSE);
  desk.RunFor(3600000);
  EXPECT_FALSE(agent.HasEnded());
  EXPECT_NE(agent.Icon(), nullptr);

  desk.machine.EndProcess(agent.process());
  EXPECT_TRUE(agent.HasEnded());
  const SimAgent next = desk.StartedAgent();
  next.Post(WM_COMMAND, kCleaning);
  EXPECT_EQ(Utility().ended, 1U);
  EXPECT_EQ(next.Close(), 0U);
}

TEST_F(UtilitySession, AnAgentThatIsEndedByForceTakesItsUtilityWithIt) {
  Utility().milliseconds = 5000;
  const SimAgent agent = desk.StartedAgent();
  agent.Post(WM_COMMAND, kCleaning);
  desk.machine.EndProcess(agent.process());
  EXPECT_TRUE(agent.HasEnded());
  EXPECT_FALSE(desk.machine.objects().Exists(kSemaphore));
  desk.RunFor(10000);
  EXPECT_EQ(Utility().calls.size(), 1U);
  EXPECT_EQ(Utility().ended, 0U);
}

// --- The usage log

// A flush that is posted at the moment in which the utility returns and counts.
TEST(UtilitySeeds, AFlushAtTheSameMomentCostsAUtilitysCountAtWorst) {
  std::uint32_t counted = 0;
  for (std::uint64_t seed = 0; seed <= 30; ++seed) {
    SCOPED_TRACE(seed);
    SimDesk desk(seed);
    PutUtilities(desk);
    desk::UtilityLibraryOf(desk.machine).milliseconds = 5;
    const SimAgent agent = desk.StartedAgent();
    const HWND window = agent.Window()->handle;
    for (int i = 0; i < 5; ++i) {
      desk.machine.StartProcess(u"C:\\other.exe", u"", [window](const char16_t*) {
        Os().windowing.PostMessageW(window, WM_COMMAND, kCleaning, 0);
        Os().process.Sleep(5);
        Os().windowing.PostMessageW(window, WM_VGL3_FLUSH_VGLLOG, 0, 0);
        return 0U;
      });
      desk.RunFor(20);
    }
    EXPECT_EQ(agent.Close(), 0U);
    std::vector<std::uint32_t> counts = desk.CountsInFile();
    ASSERT_EQ(counts.size(), 14U);
    EXPECT_LE(counts[kCountCleanHead], 5U);
    counted += std::exchange(counts[kCountCleanHead], 0);
    EXPECT_EQ(counts, (std::vector<std::uint32_t>{0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  }
  EXPECT_GT(counted, 155U - 31U);  // a bound of choice: most of 155 come through
}

// What happens at one virtual time, the seeds put into many orders.
TEST(UtilitySeeds, AnEndAtTheMomentOfTheUtilitysEndIsAnOrderlyOne) {
  for (std::uint64_t seed = 0; seed <= 30; ++seed) {
    SCOPED_TRACE(seed);
    SimDesk desk(seed);
    PutUtilities(desk);
    desk::UtilityLibraryOf(desk.machine).milliseconds = 5;
    const SimAgent agent = desk.StartedAgent();
    desk.machine.desktop().Post(agent.Window()->handle, WM_COMMAND, kCleaning, 0);
    desk.machine.desktop().Post(agent.Window()->handle, WM_CLOSE, 0, 0);
    EXPECT_TRUE(desk.machine.RunUntilEnded(agent.process(), 1000));
    EXPECT_EQ(agent.ExitCode(), 0U);
    EXPECT_EQ(desk.CountsInFile(),
              (std::vector<std::uint32_t>{0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(agent.Ledger(), Texts{u"thread of " + agent.process().imagePath()});
  }
}

}  // namespace
}  // namespace vgl
