// Whole sessions: the same seed twice.
#include <gtest/gtest.h>

#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

// Two agents for one printer, of which one may give way, and a third for another come and go;
// everything that happened.
std::vector<sim::Event> TraceOf(std::uint64_t seed) {
  SimDesk desk(seed);
  desk.WriteParamFile(u"K_Q0001.tmp", desk::OptionsOfDefaultPrinter());
  const SimAgent first = desk.StartAgent(u"/FU \"K_Q0001.tmp\"");
  const SimAgent second = desk.StartAgent();
  const SimAgent third = desk.StartAgent(desk.AddPrinter(u"Other"));
  desk.RunFor(7000);
  for (const SimAgent& agent : {first, second, third})
    if (!agent.HasEnded()) agent.Close();
  return desk.machine.trace();
}

TEST(Session, TheSameSeedGivesTheSameTrace) {
  for (const std::uint64_t seed : {0U, 1U, 2U, 77U}) EXPECT_EQ(TraceOf(seed), TraceOf(seed));
}

TEST(Session, AnotherSeedGivesAnotherTrace) { EXPECT_NE(TraceOf(1), TraceOf(2)); }

}  // namespace
}  // namespace vgl
