// The invitation library of the simulated machine.
#include "desk/invitation_library.h"

#include <gtest/gtest.h>

#include "menu/smart_invitation.h"
#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace desk {
namespace {

using namespace platform;

constexpr char16_t kPath[] = u"C:\\Drv\\K_PARLOS.DLL";

class InvitationLibraryStandIn : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  sim::Library& library = AddInvitationLibrary(machine, kPath);

  // What an export answers to a program that loads the library for one call.
  template <class Function, class... Arguments>
  static auto Call(const char* name, Arguments... arguments) {
    const OwnedModule module(Os().modules.LoadLibraryW(kPath));
    return reinterpret_cast<Function>(Os().modules.GetProcAddress(module.get(), name))(
        arguments...);
  }
  static std::int32_t Close(const char16_t* printer) {
    return Call<std::int32_t (*)(const char16_t*)>("FY07ParlosCloseExW", printer);
  }
  static std::uint32_t Period() {
    return Call<vgl::ParlosIsInvitationTimerFunction>("FY08ParlosIsInvitationTimerW", u"P", u"D");
  }
  static std::int32_t Level() {
    return Call<vgl::ParlosIsAllowInvitationFunction>("FY08ParlosIsAllowInvitationW", u"P", u"D",
                                                      u"M", 0, -1, 1);
  }
};

TEST_F(InvitationLibraryStandIn, AGoodbyeIsKeptAndWrittenDown) {
  EXPECT_EQ(Close(u"Studio 7200"), 1);
  EXPECT_EQ(Close(u"\u05D0"), 1);
  EXPECT_EQ(InvitationLibraryOf(machine).closedPrinters,
            (std::vector<std::u16string>{u"Studio 7200", u"\u05D0"}));
  EXPECT_EQ(machine.files().ReadFile(kInvitationLog),
            "close: \"Studio 7200\"\nclose: \"\xD7\x90\"\n");
  EXPECT_EQ(library.Calls("FY07ParlosCloseExW"), 2U);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(InvitationLibraryStandIn, TheAnswerIsTheTests) {
  InvitationLibraryOf(machine).closeResult = -5;
  EXPECT_EQ(Close(u"A"), -5);
}

TEST_F(InvitationLibraryStandIn, PeriodAndLevelAreThePrintersUnlessATestSaysOtherwise) {
  EXPECT_EQ(Period(), 0U);
  EXPECT_EQ(Level(), 0);
  machine.spooler().AddPrinter({.name = u"P", .port = u"USB001"});
  EXPECT_EQ(Period(), 0U);
  machine.spooler().SetData(u"P", u"PrinterDriverData", u"InvitationPeriod", REG_DWORD,
                            std::string("\x78\x56\x34\xF2", 4));
  machine.spooler().SetData(u"P", u"PrinterDriverData", u"InvitationLevel", REG_DWORD,
                            std::string("\xFE\xFF\xFF\xFF", 4));
  EXPECT_EQ(Period(), 0xF2345678U);
  EXPECT_EQ(Level(), -2);
  InvitationLibraryOf(machine).period = 0;
  InvitationLibraryOf(machine).level = 7;
  EXPECT_EQ(Period(), 0U);
  EXPECT_EQ(Level(), 7);
}

TEST_F(InvitationLibraryStandIn, EachQuestionIsKeptAndWrittenDown) {
  Period();
  Level();
  EXPECT_EQ(InvitationLibraryOf(machine).timerCalls,
            (std::vector<InvitationLibrary::TimerCall>{{u"P", u"D"}}));
  EXPECT_EQ(InvitationLibraryOf(machine).allowCalls,
            (std::vector<InvitationLibrary::AllowCall>{{u"P", u"D", u"M", {0, -1, 1}}}));
  EXPECT_EQ(machine.files().ReadFile(kInvitationLog),
            "timer: \"P\" \"D\"\nallow: \"P\" \"D\" \"M\" 0 -1 1\n");
}

TEST_F(InvitationLibraryStandIn, ItsWritingIsNoCallOfTheProgram) {
  const OwnedModule module(Os().modules.LoadLibraryW(kPath));
  const auto close = reinterpret_cast<std::int32_t (*)(const char16_t*)>(
      Os().modules.GetProcAddress(module.get(), "FY07ParlosCloseExW"));
  const std::uint64_t before = inside.process().calls();
  close(u"A");
  EXPECT_EQ(inside.process().calls(), before);
}

TEST_F(InvitationLibraryStandIn, TheTraceTellsOfIt) {
  Close(u"A");
  bool told = false;
  for (const sim::Event& event : machine.trace())
    told = told || event.text == u"invitation library: close: \"A\"";
  EXPECT_TRUE(told);
}

}  // namespace
}  // namespace desk
