// What a start costs in platform calls, and which of them it never makes.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Lines = std::vector<std::string>;

// A machine on which the tray log is off, and an agent that hasn't made its first call.
class NewAgent {
 public:
  explicit NewAgent(std::u16string commandLine) : m_process(SetUp(std::move(commandLine))) {
    m_desk.machine.Observe([this](const sim::Event& event) {
      if (event.processId == m_process.id()) m_marks.emplace_back(event.text, m_process.calls());
    });
  }
  ~NewAgent() { m_desk.machine.Observe(nullptr); }
  NewAgent(const NewAgent&) = delete;
  NewAgent& operator=(const NewAgent&) = delete;

  sim::Process& process() { return m_process; }
  void Run() { m_desk.RunFor(2000); }
  // The number of the call in which the first event of that kind happened; 0 where none has.
  std::uint64_t CallOf(std::u16string_view event) const {
    for (const auto& [text, call] : m_marks)
      if (text.starts_with(event)) return call;
    return 0;
  }

 private:
  sim::Process& SetUp(std::u16string commandLine) {
    m_desk.machine.registry().SetDword(HKEY_CURRENT_USER, u"SOFTWARE\\KAVRO\\VGL3", u"K_QTR", 0);
    return desk::StartAgent(m_desk.machine, std::move(commandLine));
  }

  SimDesk m_desk;
  sim::Process& m_process;
  std::vector<std::pair<std::u16string, std::uint64_t>> m_marks;
};

// The operations up to the call that makes the window, "-" for one that can't fail.
Lines OperationsToWindow(const std::u16string& commandLine) {
  NewAgent whole(commandLine);
  whole.Run();
  const std::uint64_t count = whole.CallOf(u"made window");
  EXPECT_GT(count, 0U);
  Lines operations;
  for (std::uint64_t number = 1; number <= count; ++number) {
    NewAgent agent(commandLine);
    agent.process().FailCall(number);
    agent.process().StopAfterCalls(number + 1);
    agent.Run();
    const std::string& failed = agent.process().failedOperation();
    operations.push_back(failed.empty() ? "-" : failed);
  }
  return operations;
}

std::ptrdiff_t LooksForAWindow(const std::u16string& moreOptions) {
  const Lines operations = OperationsToWindow(desk::OptionsOfDefaultPrinter() + moreOptions);
  EXPECT_EQ(operations.back(), "CreateWindowExW");
  return std::count(operations.begin(), operations.end(), "FindWindowW");
}

TEST(StartCalls, LookForAPredecessorOnce) {
  EXPECT_EQ(LooksForAWindow(u""), 1);
  EXPECT_EQ(LooksForAWindow(u" /EF \"HKCU\""), 1);
}

TEST(StartCalls, NeverLookForOneAtAStartByTheMachinesRunKey) {
  EXPECT_EQ(LooksForAWindow(u" /EF \"HKLM\""), 0);
}

TEST(StartCalls, NeverLookForOneToRemoveIt) { EXPECT_EQ(LooksForAWindow(u" /R"), 0); }

// With the tray log off. A budget, not a fact: most of a start is the driver set's data, read anew
// for each question, and a start that has come to ask more of them is to be noticed.
TEST(StartCost, UntilItsIconStandsIsWithin520CallsWithEverythingPresent) {
  NewAgent agent(desk::OptionsOfDefaultPrinter());
  agent.Run();
  const std::uint64_t calls = agent.CallOf(u"icon added");
  RecordProperty("calls", std::to_string(calls));
  EXPECT_GT(calls, 0U);
  EXPECT_LE(calls, 520U);
}

}  // namespace
}  // namespace vgl
