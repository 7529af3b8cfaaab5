// One agent for each printer: what a second start does, and what the instance map shows meanwhile.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>

#include "Common/instance_map.h"
#include "tests/support/frame_fixture.h"
#include "tests/support/map_fixture.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char16_t kMap[] = u"VglV5MapFile_Ink";

// --- DuplicationChk, called straight away

class DuplicationCheck : public FrameTest {
 protected:
  // Puts "Studio 7200" with that window into a new map.
  void PutAgent(V5Map& map, std::uint64_t window) {
    map.WriteName(0, u"Studio 7200");
    map.Write64(kSel3At, window);
    map.Write16(V5Map::Slot(1), 0x00FF);
  }
  int CountEvents(std::u16string_view text) {
    return static_cast<int>(
        std::count_if(machine.trace().begin(), machine.trace().end(),
                      [text](const sim::Event& event) { return event.text == text; }));
  }
  // What was posted to the frame's own window, which stands for another agent's.
  std::vector<Message> Posted() { return Pump(); }
};

TEST_F(DuplicationCheck, TheFirstAgentPublishesItsWindow) {
  EXPECT_EQ(frame->DuplicationChk(), 1);
  EXPECT_NE(frame->m_hMapFile, HANDLE{});
  {
    V5Map map;
    EXPECT_EQ(map.ReadName(0), u"Studio 7200");
    EXPECT_EQ(map.Read64(kSel3At), static_cast<std::uint64_t>(frame->m_hWnd));
    EXPECT_EQ(map.Read16(V5Map::Slot(1)), 0x00FF);
  }
  EXPECT_TRUE(HasLogged("CMainFrame::DuplicationChk : start"));
  EXPECT_TRUE(HasLogged("enter : MultiExecuteCheck"));
  EXPECT_TRUE(HasLogged("exit  : MultiExecuteCheck"));
  EXPECT_TRUE(HasLogged("exit : MultiExecuteCheck"));
  EXPECT_TRUE(HasLogged("enter : SethWindow"));
  EXPECT_TRUE(HasLogged("exit : SethWindow : 0"));
  EXPECT_TRUE(HasLogged("CMainFrame::DuplicationChk : end"));
  frame->DestroyWindow();
}

TEST_F(DuplicationCheck, AnotherAgentIsToldToShowItsIconAnew) {
  V5Map map;
  PutAgent(map, static_cast<std::uint64_t>(frame->m_hWnd));
  frame->m_nIconSelected = 2;
  EXPECT_EQ(frame->DuplicationChk(), 0);
  EXPECT_EQ(frame->m_hMapFile, HANDLE{});
  const std::vector<Message> posted = Posted();
  ASSERT_EQ(posted.size(), 1U);
  EXPECT_EQ(posted[0].message, WM_VGL3_UPDATE_ICON);
  EXPECT_EQ(posted[0].wParam, 0U);
  EXPECT_EQ(posted[0].lParam, 2);
  EXPECT_TRUE(HasLogged("CMainFrame::DuplicationChk : end2"));
}

TEST_F(DuplicationCheck, AnotherAgentIsClosedByARemovingStart) {
  V5Map map;
  PutAgent(map, static_cast<std::uint64_t>(frame->m_hWnd));
  frame->m_fRemove = 1;
  EXPECT_EQ(frame->DuplicationChk(), 0);
  const std::vector<Message> posted = Posted();
  ASSERT_FALSE(posted.empty());
  EXPECT_EQ(posted[0].message, WM_CLOSE);
  EXPECT_EQ(posted[0].wParam, 0U);
  EXPECT_EQ(posted[0].lParam, 0);
  EXPECT_TRUE(HasLogged("Post WM_CLOSE"));
}

TEST_F(DuplicationCheck, AMapFailureShowsThatMemoryIsInsufficientAndEndsQuietly) {
  machine.desktop().AnswerBoxesAtOnce();
  for (const char* operation : {"CreateFileMappingW", "MapViewOfFile"}) {
    inside.process().FailNext(operation, ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(frame->StartUp(), 0) << operation;
    EXPECT_EQ(frame->m_hMapFile, HANDLE{});
  }
  EXPECT_EQ(CountEvents(u"message box \"KAVRO Vigil 3\": Insufficient memory."), 2);
}

TEST_F(DuplicationCheck, ACheckThatFailedHasItsSectionClosedOnce) {
  machine.desktop().AnswerBoxesAtOnce();
  V5Map map;
  map.WriteName(0, u"Another");
  map.Write16(V5Map::Slot(1), 0x00FF);
  const std::size_t before = inside.process().Ledger().size();
  // The view at the making of the section and that of the first slot are had.
  inside.process().FailNext("MapViewOfFile", ERROR_NOT_ENOUGH_MEMORY, 2);
  EXPECT_EQ(frame->DuplicationChk(), 0);
  frame->DestroyWindow();
  EXPECT_EQ(CountEvents(u"closed what is no open handle"), 0);
  EXPECT_EQ(inside.process().Ledger().size(), before + 1);  // the first slot's view
}

TEST_F(DuplicationCheck, AMapThatNobodyKnowsIsAMapFailure) {
  machine.desktop().AnswerBoxesAtOnce();
  AddPrintersOfBothMaps(machine);
  ASSERT_TRUE(frame->m_szPrinterName.Assign(u"Odd Studio"));
  EXPECT_EQ(frame->StartUp(), 0);
  EXPECT_EQ(CountEvents(u"message box \"KAVRO Vigil 3\": Insufficient memory."), 1);
}

TEST_F(DuplicationCheck, AStoreThatFailsKeepsNoAgentFromRunning) {
  inside.process().FailNext("OpenFileMappingW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(frame->DuplicationChk(), 1);
  EXPECT_TRUE(HasLogged("exit : SethWindow : -1"));
  V5Map map;
  EXPECT_EQ(map.Read64(kSel3At), kClaimed);
  frame->DestroyWindow();
}

TEST_F(DuplicationCheck, AnAgentOfAPortIsKnownByItsPort) {
  frame->m_szPrinterName.Clear();
  EXPECT_EQ(frame->DuplicationChk(), 1);
  V5Map map;
  EXPECT_EQ(map.ReadName(0), u"USB001");
  frame->DestroyWindow();
}

TEST_F(DuplicationCheck, TheOrderlyEndFreesTheSlotAndClosesTheSection) {
  frame->StartUp();
  V5Map map;
  frame->DestroyWindow();
  EXPECT_EQ(frame->m_hMapFile, HANDLE{});
  EXPECT_EQ(map.Read16(0), 0);
  EXPECT_EQ(map.Read64(kSel3At), 0U);
}

TEST_F(DuplicationCheck, AnEndThatLostTheCheckLeavesTheOthersSlotAlone) {
  V5Map map;
  PutAgent(map, static_cast<std::uint64_t>(frame->m_hWnd));
  EXPECT_EQ(frame->StartUp(), 0);
  frame->DestroyWindow();
  EXPECT_EQ(map.ReadName(0), u"Studio 7200");
  EXPECT_EQ(map.Read64(kSel3At), static_cast<std::uint64_t>(frame->m_hWnd));
}

TEST_F(DuplicationCheck, AViewThatFailsAtTheEndClosesTheSectionOnce) {
  frame->StartUp();
  inside.process().FailNext("MapViewOfFile", ERROR_NOT_ENOUGH_MEMORY);
  frame->DestroyWindow();
  EXPECT_FALSE(machine.objects().Exists(kMap));
  EXPECT_EQ(frame->m_hMapFile, HANDLE{});
  EXPECT_EQ(CountEvents(u"closed what is no open handle"), 0);
}

TEST_F(DuplicationCheck, ARemovingStartWithoutAnAgentGivesItsSectionBack) {
  frame->m_fRemove = 1;
  EXPECT_EQ(frame->StartUp(), 0);
  EXPECT_EQ(frame->m_hMapFile, HANDLE{});
  frame->DestroyWindow();
  EXPECT_EQ(CountEvents(u"closed what is no open handle"), 0);
  EXPECT_FALSE(machine.objects().Exists(kMap));
}

TEST_F(DuplicationCheck, TheSlotIsFreedBeforeThePrinterIsLookedFor) {
  frame->StartUp();
  std::optional<bool> sectionStood;
  machine.files().OnAppend([&](std::uint32_t, const std::u16string&, std::string_view bytes) {
    if (bytes.find("CMainFrame::ChkDelPrn : start") != bytes.npos)
      sectionStood = machine.objects().Exists(kMap);
  });
  frame->DestroyWindow();
  EXPECT_EQ(sectionStood, false);
}

TEST_F(DuplicationCheck, EachWayOutOfTheCheckHasItsLogLine) {
  const struct {
    std::uint64_t window;
    std::string line;
  } cases[] = {
      {0, "exit : CheckMapPrinter(0)[1]"},
      {0x1234, "exit : CheckMapPrinter(0)[2]"},
      {static_cast<std::uint64_t>(frame->m_hWnd), "exit : CheckMapPrinter(1)"},
  };
  for (const auto& each : cases) {
    machine.files().Remove(desk::kTrayLogFile);
    V5Map map;
    PutAgent(map, each.window);
    frame->DuplicationChk();
    EXPECT_TRUE(HasLogged("enter : CheckMapPrinter"));
    EXPECT_TRUE(HasLogged(each.line)) << each.line;
    if (frame->m_hMapFile != HANDLE{}) frame->DestroyWindow();
  }
}

TEST_F(DuplicationCheck, AFullMapIsLoggedByTheStoreAlone) {
  V5Map map;
  for (std::size_t i = 0; i < 500; ++i) map.WriteName(V5Map::Slot(i), u"Another");
  EXPECT_EQ(frame->DuplicationChk(), 1);
  EXPECT_FALSE(HasLogged("exit : CheckMapPrinter(0)[3]"));
  EXPECT_TRUE(HasLogged("exit : SethWindowSub"));
  EXPECT_TRUE(HasLogged("exit : SethWindow : 1"));
  frame->DestroyWindow();
}

TEST_F(DuplicationCheck, TheStoresOtherWaysOutAreNotLogged) {
  frame->DuplicationChk();
  EXPECT_TRUE(HasLogged("MapName : VglV5MapFile_Ink"));
  EXPECT_TRUE(HasLogged("PrnName : Studio 7200"));
  EXPECT_TRUE(HasLogged("PortName : USB001"));
  EXPECT_TRUE(HasLogged("AppSel : 3"));
  EXPECT_FALSE(HasLogged("exit : SethWindowSub"));
  frame->DestroyWindow();
}

// --- Whole agents

// Looks into the map from a process of its own.
template <class Look>
void LookIntoMap(sim::Machine& machine, const Look& look) {
  const sim::Inside inside(machine, u"C:\\Program Files\\KAVRO\\reader.exe");
  V5Map map;
  look(map);
}

std::uint64_t PublishedWindow(sim::Machine& machine) {
  std::uint64_t window = 0;
  LookIntoMap(machine, [&](V5Map& map) { window = map.Read64(kSel3At); });
  return window;
}

TEST(SingleInstance, ASecondStartEndsWithZeroAndTheFirstShowsItsIconAnew) {
  SimDesk desk;
  const SimAgent first = desk.StartedAgent();
  const SimAgent second = desk.StartedAgent();
  EXPECT_TRUE(second.HasEnded());
  EXPECT_EQ(second.ExitCode(), 0U);
  EXPECT_FALSE(first.HasEnded());
  EXPECT_EQ(PublishedWindow(desk.machine), static_cast<std::uint64_t>(first.Window()->handle));
  EXPECT_TRUE(desk.HasLogged("CMainFrame::DuplicationChk : end2"));
  const auto got = std::find_if(
      desk.machine.trace().begin(), desk.machine.trace().end(), [&](const sim::Event& event) {
        return event.processId == first.process().id() && event.text == u"got WM_VGL3_UPDATE_ICON";
      });
  EXPECT_NE(got, desk.machine.trace().end());
}

TEST(SingleInstance, ARemovingStartEndsTheRunningAgentAndItself) {
  SimDesk desk;
  const SimAgent first = desk.StartedAgent();
  const SimAgent second = desk.StartedAgent(desk::OptionsOfDefaultPrinter() + u" /R");
  EXPECT_TRUE(second.HasEnded());
  EXPECT_TRUE(first.HasEnded());
  EXPECT_EQ(first.ExitCode(), 0U);
  EXPECT_FALSE(desk.machine.objects().Exists(kMap));
}

TEST(SingleInstance, ARemovingStartWithoutAnAgentLeavesNoTrace) {
  SimDesk desk;
  LookIntoMap(desk.machine, [&](V5Map& map) {
    map.Write16(0, 0x00FF);
    const SimAgent agent = desk.StartedAgent(desk::OptionsOfDefaultPrinter() + u" /R");
    EXPECT_TRUE(agent.HasEnded());
    EXPECT_EQ(map.Read16(0), 0);  // free again
    EXPECT_EQ(map.Read64(kSel3At), 0U);
  });
}

TEST(SingleInstance, TheSectionGoesWithTheLastAgent) {
  SimDesk desk;
  const SimAgent first = desk.StartedAgent();
  const SimAgent other = desk.StartedAgent(desk.AddPrinter(u"Other"));
  first.Close();
  EXPECT_TRUE(desk.machine.objects().Exists(kMap));
  other.Close();
  EXPECT_FALSE(desk.machine.objects().Exists(kMap));
}

TEST(SingleInstance, AnAgentThatCrashedIsReplaced) {
  SimDesk desk;
  LookIntoMap(desk.machine, [&](V5Map& map) {
    map.Write16(0, 0x00FF);
    const SimAgent first = desk.StartedAgent();
    desk.machine.EndProcess(first.process());
    EXPECT_NE(map.Read64(kSel3At), 0U);  // a dead window
    const SimAgent second = desk.StartedAgent();
    ASSERT_FALSE(second.HasEnded());
    EXPECT_EQ(map.Read64(kSel3At), static_cast<std::uint64_t>(second.Window()->handle));
    EXPECT_EQ(map.Read16(V5Map::Slot(1)), 0x00FF);
  });
}

TEST(SingleInstance, AnotherProgramsWindowKeepsTheSlotForTheNextStart) {
  SimDesk desk;
  LookIntoMap(desk.machine, [&](V5Map& map) {
    map.Write16(0, 0x00FF);
    const SimAgent first = desk.StartedAgent();
    map.Write64(kSel12At, 0x1234567890);
    first.Close();
    EXPECT_EQ(map.ReadName(0), u"Studio 7200");
    EXPECT_EQ(map.Read64(kSel3At), 0U);
    const SimAgent second = desk.StartedAgent();
    EXPECT_EQ(map.Read64(kSel3At), static_cast<std::uint64_t>(second.Window()->handle));
    EXPECT_EQ(map.Read64(kSel12At), 0x1234567890U);
    EXPECT_EQ(map.Read16(V5Map::Slot(1)), 0x00FF);
  });
}

// --- Two agents of one printer that start at once

// When an agent checked and when it had published, as places in the order of everything logged.
struct StartOfAgent {
  std::size_t checks = 0;
  std::size_t hasPublished = 0;  // 0: never
  bool runs = false;
};

constexpr std::size_t kNever = 0;

// Notes the agents' log lines as they are written.
class StartRecorder {
 public:
  explicit StartRecorder(sim::Machine& machine) {
    machine.files().OnAppend([this](std::uint32_t process, const std::u16string&,
                                    std::string_view bytes) {
      ++m_place;
      StartOfAgent& start = m_starts[process];
      const std::string line(bytes);
      if (line.find("; enter : MultiExecuteCheck") != std::string::npos && start.checks == kNever)
        start.checks = m_place;
      if (line.find("; exit : SethWindow") != std::string::npos) start.hasPublished = m_place;
    });
  }
  StartOfAgent Of(const SimAgent& agent) {
    StartOfAgent start = m_starts[agent.process().id()];
    start.runs = !agent.HasEnded();
    return start;
  }

 private:
  std::size_t m_place = 0;
  std::map<std::uint32_t, StartOfAgent> m_starts;
};

bool ChecksBehind(const StartOfAgent& later, const StartOfAgent& earlier) {
  return earlier.hasPublished != kNever && later.checks > earlier.hasPublished;
}

// At least one runs; both do only where each checked before the other had published.
void ExpectOneAgentOrAnOverlap(const StartOfAgent& first, const StartOfAgent& second) {
  EXPECT_TRUE(first.runs || second.runs);
  if (ChecksBehind(second, first)) {
    EXPECT_TRUE(first.runs && !second.runs);
  }
  if (ChecksBehind(first, second)) {
    EXPECT_TRUE(second.runs && !first.runs);
  }
}

std::uint64_t WindowOf(const SimAgent& agent) {
  return static_cast<std::uint64_t>(agent.Window()->handle);
}

// The map has one slot for the printer, with the window of one that runs. Of two it is the one that
// stored last, which their logs don't tell: another thread may come between a store and its line.
void ExpectOneSlotWithARunningWindow(sim::Machine& machine, const std::vector<SimAgent>& agents) {
  std::vector<std::uint64_t> running;
  for (const SimAgent& agent : agents)
    if (!agent.HasEnded()) running.push_back(WindowOf(agent));
  LookIntoMap(machine, [&](V5Map& map) {
    EXPECT_EQ(map.ReadName(0), u"Studio 7200");
    EXPECT_EQ(std::count(running.begin(), running.end(), map.Read64(kSel3At)), 1);
    EXPECT_EQ(map.Read16(V5Map::Slot(1)), 0x00FF);
    EXPECT_EQ(map.Read16(V5Map::Slot(2)), 0);
  });
}

TEST(SingleInstance, TwoStartsAtOnceClaimTwiceOnlyWhereTheyOverlap) {
  int doubleClaims = 0;
  int singleClaims = 0;
  for (std::uint64_t seed = 1; seed <= 100; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    SimDesk desk(seed);
    StartRecorder recorder(desk.machine);
    const SimAgent first(desk.machine,
                         desk::StartAgent(desk.machine, desk::OptionsOfDefaultPrinter()));
    const SimAgent second(desk.machine,
                          desk::StartAgent(desk.machine, desk::OptionsOfDefaultPrinter()));
    desk.RunFor(2000);
    const StartOfAgent one = recorder.Of(first);
    const StartOfAgent two = recorder.Of(second);
    ExpectOneAgentOrAnOverlap(one, two);
    ExpectOneSlotWithARunningWindow(desk.machine, {first, second});
    (one.runs && two.runs ? doubleClaims : singleClaims) += 1;
    for (const SimAgent& agent : {first, second})
      if (!agent.HasEnded()) agent.Close();
    EXPECT_FALSE(desk.machine.objects().Exists(kMap));
  }
  // Both happen, or the sweep would show nothing.
  EXPECT_GT(doubleClaims, 0);
  EXPECT_GT(singleClaims, 0);
}

// The check and the store of two agents, each behind that many other platform calls.
struct ClaimsAtOffset {
  std::uint64_t calls = 0;  // of the first agent
  StartOfAgent first;
  StartOfAgent second;
};

ClaimsAtOffset ClaimAtOffset(std::uint64_t firstDelay, std::uint64_t secondDelay,
                             std::uint64_t seed) {
  sim::Machine machine(seed);
  std::size_t place = 0;
  const auto claim = [&place](StartOfAgent& start, std::uint64_t wait) {
    for (std::uint64_t i = 0; i < wait; ++i) Os().system.GetTickCount();
    CMainFrame frame;
    EXPECT_TRUE(frame.m_szPortName.Assign(u"USB001"));
    WindowClass windowClass;
    windowClass.procedure = [](HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
      return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
    };
    windowClass.className = kTrayWindowClass;
    Os().windowing.RegisterClassW(windowClass);
    frame.m_hWnd =
        Os().windowing.CreateWindowExW(0, kTrayWindowClass, u"", WS_OVERLAPPEDWINDOW, HMODULE{});
    start.checks = ++place;
    start.runs = frame.DuplicationChk() == 1;
    if (start.runs) start.hasPublished = ++place;
    Os().process.Sleep(1000);  // as long as it runs it keeps window and section
    frame.DestroyWindow();
    return 0U;
  };
  ClaimsAtOffset result;
  const sim::Process& first = machine.StartProcess(
      u"C:\\a.exe", u"", [&](const char16_t*) { return claim(result.first, firstDelay); });
  machine.StartProcess(u"C:\\b.exe", u"",
                       [&](const char16_t*) { return claim(result.second, secondDelay); });
  machine.RunFor(500);
  result.calls = first.calls();
  machine.RunFor(1000);
  return result;
}

TEST(SingleInstance, ClaimsAtEveryOffsetAreDoubleOnlyWhereTheyOverlap) {
  const std::uint64_t calls = ClaimAtOffset(0, 0, 0).calls;
  ASSERT_GT(calls, 10U);
  int doubleClaims = 0;
  int singleClaims = 0;
  for (std::uint64_t seed = 1; seed <= 8; ++seed)
    for (std::uint64_t delay = 0; delay <= calls + 5; ++delay)
      for (const bool isFirstDelayed : {false, true}) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", delay " + std::to_string(delay) +
                     (isFirstDelayed ? " of the first" : " of the second"));
        const ClaimsAtOffset claims =
            isFirstDelayed ? ClaimAtOffset(delay, 0, seed) : ClaimAtOffset(0, delay, seed);
        ExpectOneAgentOrAnOverlap(claims.first, claims.second);
        (claims.first.runs && claims.second.runs ? doubleClaims : singleClaims) += 1;
      }
  EXPECT_GT(doubleClaims, 0);
  EXPECT_GT(singleClaims, 0);
}

TEST(SingleInstance, WhereNoThreadIsInterruptedTheFirstOneHasThePrinter) {
  const ClaimsAtOffset claims = ClaimAtOffset(0, 0, 0);
  EXPECT_TRUE(claims.first.runs);
  EXPECT_FALSE(claims.second.runs);
}

}  // namespace
}  // namespace vgl
