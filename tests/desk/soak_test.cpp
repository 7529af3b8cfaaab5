#include "desk/soak.h"

#include <gtest/gtest.h>

#include <sstream>

#include "desk/default_machine.h"

namespace desk {
namespace {

struct Result {
  int code;
  std::string out;
  std::string err;
};

Result ResultOf(const SoakOptions& options) {
  std::ostringstream out, err;
  const int code = Soak(options, out, err);
  return {code, out.str(), err.str()};
}

// A day's work of a few printers, an hour of many. A long soak is run by hand.
TEST(Soak, PrintersComeAndGoAndTheirAgentsWithThem) {
  for (const SoakOptions& options : {SoakOptions{.seed = 1, .hours = 8, .printers = 3},
                                     SoakOptions{.seed = 2, .hours = 8, .printers = 2},
                                     SoakOptions{.seed = 3, .hours = 1, .printers = 20}}) {
    const Result result = ResultOf(options);
    EXPECT_EQ(result.code, 0) << result.err;
    for (const char* nothing :
         {" 0 events", " 0 removals", " 0 clicks", " 0 entries", " 0 faults", " 0 programs"})
      EXPECT_EQ(result.out.find(nothing), std::string::npos) << result.out;
  }
}

TEST(Soak, WithoutFaultsNoAgentBreaksOff) {
  const Result result = ResultOf({.seed = 4, .hours = 6, .printers = 3, .withFaults = false});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_NE(result.out.find(" 0 faults"), std::string::npos) << result.out;
}

TEST(Soak, TheSameSeedGivesTheSameRunAndAnotherAnother) {
  const SoakOptions options{.seed = 7, .hours = 2, .printers = 4};
  const std::string first = ResultOf(options).out;
  EXPECT_EQ(first, ResultOf(options).out);
  EXPECT_NE(first, ResultOf({.seed = 8, .hours = 2, .printers = 4}).out);
}

TEST(Soak, StopsWhereAnAgentEndsForNoReasonAndTellsTheSeed) {
  SoakOptions options{.seed = 5, .hours = 24, .printers = 3, .withFaults = false};
  options.disturb = [](sim::Machine& machine) {
    if (machine.now() > 3600000) machine.files().Remove(kResourceLibraryPath);
  };
  const Result result = ResultOf(options);
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(result.err.starts_with("soak: seed 5, at ")) << result.err;
  EXPECT_TRUE(result.err.ends_with("its agent ended for no reason\n")) << result.err;
}

TEST(Soak, StopsWhereAnAgentOutlivesItsPrinter) {
  SoakOptions options{.seed = 5, .hours = 24, .printers = 3, .withFaults = false};
  // What agents find there is another printer of that name.
  options.disturb = [](sim::Machine& machine) {
    for (int number = 0; number < 3; ++number) {
      const std::u16string name =
          u"Printer " + std::u16string(1, static_cast<char16_t>(u'0' + number));
      if (!machine.spooler().HasPrinter(name)) machine.spooler().AddPrinter({.name = name});
    }
  };
  const Result result = ResultOf(options);
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(result.err.ends_with("its agent outlives it\n")) << result.err;
}

constexpr char16_t kDescription[] = u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\KS7200.DAT";

TEST(Soak, StopsWhereAMenuIsntWhole) {
  SoakOptions options{.seed = 5, .hours = 24, .printers = 3, .withFaults = false};
  options.disturb = [](sim::Machine& machine) {
    std::string text = machine.files().ReadFile(kDescription).value();
    const std::size_t entry = text.find("REGENTER=MNU,\"935\"");
    if (entry == std::string::npos) return;
    text.erase(entry, text.find('\n', entry) + 1 - entry);
    machine.files().WriteFile(kDescription, text);
  };
  const Result result = ResultOf(options);
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(result.err.ends_with("its menu isn't whole\n")) << result.err;
}

TEST(Soak, StopsWhereAnEntryStartsNothing) {
  SoakOptions options{.seed = 5, .hours = 24, .printers = 3, .withFaults = false};
  options.disturb = [](sim::Machine& machine) {
    machine.files().Remove(u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\K_S72MAN.EXE");
  };
  const Result result = ResultOf(options);
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(result.err.ends_with(" starts nothing\n")) << result.err;
}

TEST(Soak, StopsWhereAParameterFileIsLeft) {
  SoakOptions options{.seed = 5, .hours = 1, .printers = 2, .withFaults = false};
  options.disturb = [](sim::Machine& machine) {
    machine.files().WriteFile(machine.system().tempFolder + u"K_QFFFF.tmp", "x");
  };
  const Result result = ResultOf(options);
  EXPECT_EQ(result.code, 1);
  EXPECT_TRUE(result.err.ends_with("K_QFFFF.tmp\n")) << result.err;
}

}  // namespace
}  // namespace desk
