// The invitation library of the simulated machine.
#include "desk/invitation_library.h"

#include <gtest/gtest.h>

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

  // What the export answers to a program that loads the library for one call.
  static std::int32_t Close(const char16_t* printer) {
    const OwnedModule module(Os().modules.LoadLibraryW(kPath));
    const auto close = reinterpret_cast<std::int32_t (*)(const char16_t*)>(
        Os().modules.GetProcAddress(module.get(), "FY07ParlosCloseExW"));
    return close(printer);
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
