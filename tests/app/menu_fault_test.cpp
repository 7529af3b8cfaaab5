// Opening the menu, drawing it, choosing each kind of entry, and the two kicks, while each platform
// call of the agent fails once: the agent goes on, after a failed opening the next one shows the
// whole menu, and nothing is left in hand but what is named here.
//
// One agent serves all runs of an act; where a failure ends it, the next one takes its place.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <set>

#include "Common/wide_format.h"
#include "app/agent_messages.h"
#include "desk/utility_library.h"
#include "desk/whole_set.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;

constexpr std::uint32_t kUtilityTime = 50;
constexpr std::uint32_t kInvitationPeriod = 90000;

// What stays with the process by the suite's ways: a shield for each time that it was drawn, the
// thread of each utility call, and from the first call and the first invitation on, semaphore and
// library.
bool StaysByDesign(const std::u16string& held) {
  return held == u"stock icon 77" || held.starts_with(u"thread of ") ||
         held == u"semaphore VGL_UtyCall_OBJ_Studio 7200" || held.ends_with(u"\\K_PARLOS.DLL");
}

class MenuFaults : public testing::Test {
 protected:
  using Act = std::function<void(const SimAgent&)>;

  MenuFaults() {
    desk::MakeDriverSetWhole(m_desk.machine);
    desk::SetUpPrinterOfWholeSet(m_desk.machine, desk::kPrinterName, kUtilityTime,
                                 kInvitationPeriod, 3);
    m_desk.machine.registry().SetDword(HKEY_CURRENT_USER, u"SOFTWARE\\KAVRO\\VGL3", u"K_QTR", 0);
    m_desk.machine.KeepTrace(false);
    m_desk.machine.desktop().AnswerBoxesAtOnce();
    StartAgent();
    m_wholeMenu = LinesOfMenu();
    m_heldAtRest = HeldAtRest();
  }

  // Fails the calls of `act` one after the other: all of them, or, where it makes very many, those
  // that `isTried` holds for.
  void FailEachCallOf(
      const Act& act,
      const std::function<bool(std::uint64_t number, std::uint64_t calls)>& isTried =
          [](std::uint64_t, std::uint64_t) { return true; }) {
    const std::uint64_t before = m_agent->process().calls();
    act(*m_agent);
    const std::uint64_t calls = m_agent->process().calls() - before;
    for (std::uint64_t number = 1; number <= calls && !HasFailure(); ++number)
      if (isTried(number, calls)) FailCallOf(act, number);
    EXPECT_EQ(LinesOfMenu(), m_wholeMenu);
  }

  // What fails to give something back keeps it; nothing else is left over.
  void FailByName(const char* operation, std::uint64_t after) {
    SCOPED_TRACE(operation);
    m_agent->process().FailNext(operation, ERROR_NOT_ENOUGH_MEMORY, after);
    OpenAndPoint(*m_agent);
    ASSERT_FALSE(m_agent->HasEnded());
    EXPECT_EQ(LinesOfMenu(), m_wholeMenu);
    Texts more = HeldAtRest();
    for (const std::u16string& held : m_heldAtRest)
      if (const auto found = std::find(more.begin(), more.end(), held); found != more.end())
        more.erase(found);
    // A font that can't be taken out of its context can't be deleted either.
    const std::string_view name = operation;
    const bool givesBack =
        name.starts_with("De") || name.starts_with("Free") || name == "SelectObject";
    EXPECT_LE(more.size(), givesBack ? 1U : 0U) << testing::PrintToString(more);
    m_heldAtRest = HeldAtRest();
  }

  // What failed at least once, and what ended an agent.
  std::set<std::string> m_failed;
  std::set<std::string> m_ended;
  // What failed where a parameter file was left that nobody reads.
  std::set<std::string> m_leftFile;

  // --- acts

  void OpenAndPoint(const SimAgent& agent) {
    agent.RightClick();
    m_desk.RunFor(10);
    if (!agent.HasEnded() && agent.MenuIsOpen()) {
      PointAt(agent, 930);
      PointAt(agent, 920);
      agent.DismissMenu();
    }
    m_desk.RunFor(10);
  }
  // A chosen entry, as its message comes, whatever the menu holds.
  Act Choosing(std::uint32_t id) {
    return [this, id](const SimAgent& agent) {
      agent.Post(WM_COMMAND, id);
      m_desk.RunFor(2 * kUtilityTime);
    };
  }
  Act Getting(std::uint32_t message) {
    return [this, message](const SimAgent& agent) {
      agent.Post(message);
      m_desk.RunFor(10);
    };
  }

  SimDesk m_desk;

 private:
  void StartAgent() { m_agent.emplace(m_desk.StartedAgent()); }

  void PointAt(const SimAgent& agent, std::uint32_t id) {
    for (sim::OpenMenu* menu : m_desk.machine.desktop().menus().List())
      if (menu->thread->process() == &agent.process())
        m_desk.machine.desktop().menus().PointAt(*menu, id);
    m_desk.RunFor(10);
  }

  Texts LinesOfMenu() {
    m_agent->RightClick();
    m_desk.RunFor(10);
    Texts lines;
    if (!m_agent->MenuIsOpen()) return lines;
    for (const sim::MenuItem& item : m_agent->MenuItems())
      lines.push_back(item.IsSeparator() ? u"----" : WideFormat(u"%u %s", item.id, item.text));
    m_agent->DismissMenu();
    m_desk.RunFor(10);
    return lines;
  }

  Texts HeldAtRest() const {
    Texts held = m_agent->Ledger();
    std::erase_if(held, StaysByDesign);
    return held;
  }

  void FailCallOf(const Act& act, std::uint64_t number) {
    m_agent->process().FailCall(number);
    act(*m_agent);
    const std::string failed = m_agent->process().failedOperation();
    if (failed.empty()) return;
    m_failed.insert(failed);
    if (m_agent->HasEnded()) {
      m_ended.insert(failed);
      StartAgent();
    }
    // The printer's semaphore stays taken, so that agent calls no utility any more.
    if (failed == "CreateThread") {
      m_desk.machine.EndProcess(m_agent->process());
      StartAgent();
    }
    const std::string name = "call " + std::to_string(number) + ", " + failed;
    // An opening that failed may have left the agent without a menu, until the next one.
    if (HeldAtRest() != m_heldAtRest) {
      EXPECT_EQ(LinesOfMenu(), m_wholeMenu) << name;
      EXPECT_EQ(HeldAtRest(), m_heldAtRest) << name;
    }
    for (const std::u16string& file : m_desk.TempFiles()) {
      m_leftFile.insert(failed);
      m_desk.machine.files().Remove(file);
    }
  }

  std::optional<SimAgent> m_agent;
  Texts m_wholeMenu;
  Texts m_heldAtRest;
};

using Names = std::set<std::string>;

// The whole opening makes many thousand calls, as each value is looked for anew. Those of the first
// values, those at the end, and every 151st between are tried.
TEST_F(MenuFaults, OpeningTheMenu) {
  FailEachCallOf([this](const SimAgent& agent) { OpenAndPoint(agent); },
                 [](std::uint64_t number, std::uint64_t calls) {
                   return number < 150 || number + 50 > calls || number % 151 == 0;
                 });
  // The click's gate takes a printer that doesn't open for gone.
  for (const std::string& operation : m_ended)
    EXPECT_THAT(operation, testing::AnyOf("CreateMutexW", "OpenPrinterW", "GetMessageW"));
  EXPECT_EQ(m_leftFile, Names{});
}

// By their names: the first call of each, and a later one of those that each entry makes.
TEST_F(MenuFaults, WhatBuildsTheMenu) {
  for (const char* operation : {"LoadLibraryW", "LoadMenuW", "GetSubMenu", "GetMenuItemInfoW",
                                "SetMenuItemInfoW", "ModifyMenuW", "AppendMenuW", "LoadStringW",
                                "LoadBitmapW", "TrackPopupMenu", "SetForegroundWindow", "SetFocus",
                                "GetCursorPos", "DrawMenuBar", "DestroyMenu", "FreeLibrary"})
    FailByName(operation, 0);
}

TEST_F(MenuFaults, WhatMeasuresAndDrawsTheEntries) {
  for (const char* operation :
       {"CreateICW", "SystemParametersInfoW", "CreateFontIndirectW", "SelectObject",
        "GetTextExtentPoint32W", "CreateSolidBrush", "FillRect", "GetObjectW", "CreateCompatibleDC",
        "BitBlt", "SetTextColor", "SetBkColor", "TextOutW", "GetModuleHandleW", "GetProcAddress",
        "DrawIconEx", "DeleteObject", "DeleteDC"})
    for (const std::uint64_t after : {0U, 1U}) FailByName(operation, after);
}

TEST_F(MenuFaults, ChoosingEachKindOfEntry) {
  for (const desk::WholeSetEntry& entry : desk::EntriesOfWholeSet()) {
    SCOPED_TRACE(entry.command);
    FailEachCallOf(Choosing(entry.id));
  }
  for (const char* operation :
       {"CreateThread", "LoadLibraryW", "ShellExecuteW", "CreateProcessW", "WriteFile"})
    EXPECT_TRUE(m_failed.contains(operation)) << operation;
  EXPECT_EQ(m_ended, Names{"GetMessageW"});
  // Its program couldn't be started; or what says that the entry is a utility's couldn't be looked
  // up, so that the library's name went for a program's.
  EXPECT_TRUE(m_leftFile.contains("CreateProcessW"));
  EXPECT_GT(desk::UtilityLibraryOf(m_desk.machine).calls.size(), 100U);
}

TEST_F(MenuFaults, AnInvitation) {
  FailEachCallOf(Getting(WM_VGL3_KICK_INVITATION));
  EXPECT_EQ(m_ended, Names{"GetMessageW"});
  // It was the started program's to remove.
  EXPECT_EQ(m_leftFile, Names{"CreateProcessW"});
}

TEST_F(MenuFaults, ANetPilotCheckOfEachKind) {
  constexpr std::uint64_t kDay = 24ULL * 60 * 60 * 1000;
  for (const bool isFirst : {true, false}) {
    SCOPED_TRACE(isFirst);
    FailEachCallOf([this, isFirst](const SimAgent& agent) {
      if (isFirst)
        m_desk.machine.registry().RemoveValue(HKEY_CURRENT_USER, desk::kRecordPath,
                                              u"LastKickNetPilot");
      else
        m_desk.machine.registry().SetBytes(HKEY_CURRENT_USER, desk::kRecordPath,
                                           u"LastKickNetPilot", REG_BINARY, std::string(8, '\0'));
      m_desk.machine.system().startSeconds = static_cast<std::int64_t>(kDay / 1000) -
                                             static_cast<std::int64_t>(m_desk.machine.now() / 1000);
      Getting(WM_VGL3_CHECK_NETPILOT)(agent);
    });
  }
  EXPECT_EQ(m_ended, Names{"GetMessageW"});
  EXPECT_EQ(m_leftFile, Names{});
}

}  // namespace
}  // namespace vgl
