// The utility library of the simulated machine.
#include "desk/utility_library.h"

#include <gtest/gtest.h>

#include "menu/utility_library_exports.h"
#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace desk {
namespace {

using namespace platform;

constexpr char16_t kPath[] = u"C:\\Drv\\K_UTIL.DLL";
constexpr char16_t kPrinter[] = u"Studio 7200";

class UtilityLibraryStandIn : public testing::Test {
 protected:
  sim::Machine machine;
  sim::Inside inside{machine};
  sim::Library& library = AddUtilityLibrary(machine, kPath);
  UtilityLibrary& face = UtilityLibraryOf(machine);

  // What a program does that loads the library for one call.
  static void Call(const char* name, const char16_t* printer = kPrinter) {
    const OwnedModule module(Os().modules.LoadLibraryW(kPath));
    const auto call =
        reinterpret_cast<vgl::UtilityFunction>(Os().modules.GetProcAddress(module.get(), name));
    ASSERT_NE(call, nullptr) << name;
    call(printer, u"2", u"3", u"\u05D0");
  }
  void AddPrinter(std::uint32_t type, std::string_view bytes) {
    machine.spooler().AddPrinter({.name = kPrinter, .port = u"LPT1:"});
    machine.spooler().SetData(kPrinter, u"PrinterDriverData", u"UtilityMilliseconds", type, bytes);
  }
};

TEST_F(UtilityLibraryStandIn, ACallIsKeptAndWrittenDownAsItBeginsAndAsItEnds) {
  Call("UtCleanHeadW");
  ASSERT_EQ(face.calls.size(), 1U);
  EXPECT_EQ(face.calls[0].name, "UtCleanHeadW");
  EXPECT_EQ(face.calls[0].texts,
            (std::array<std::u16string, 4>{u"Studio 7200", u"2", u"3", u"\u05D0"}));
  EXPECT_EQ(face.calls[0].threadId, Os().process.GetCurrentThreadId());
  EXPECT_EQ(face.ended, 1U);
  EXPECT_EQ(machine.files().ReadFile(kUtilityLog),
            "begin UtCleanHeadW: \"Studio 7200\" \"2\" \"3\" \"\xD7\x90\"\nend UtCleanHeadW\n");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(UtilityLibraryStandIn, HasTheThirteenExports) {
  const char* names[] = {"UtPrintNozzleTestPatternW",
                         "UtCleanHeadW",
                         "UtAlignGapW",
                         "WndInkReplacementW",
                         "UtInkReplacementW",
                         "UtSetupW",
                         "UtAbsInkRepW",
                         "UtSetupfromVglW",
                         "UtAlignCutterW",
                         "UtCleanCutterW",
                         "UtAutoCleanHeadW",
                         "UtSetupAutoCleanHeadW",
                         "WndMaintenanceTankReplacementW"};
  for (const char* name : names) {
    Call(name);
    EXPECT_EQ(face.calls.back().name, name);
    EXPECT_EQ(library.Calls(name), 1U);
  }
  EXPECT_EQ(face.calls.size(), 13U);
}

TEST_F(UtilityLibraryStandIn, TakesNoTimeAndMakesNoCallOfTheProgramWhereNothingIsSaid) {
  const OwnedModule module(Os().modules.LoadLibraryW(kPath));
  const auto call =
      reinterpret_cast<vgl::UtilityFunction>(Os().modules.GetProcAddress(module.get(), "UtSetupW"));
  const std::uint64_t before = inside.process().calls();
  call(kPrinter, u"", u"", u"");
  EXPECT_EQ(inside.process().calls(), before);
  EXPECT_EQ(machine.now(), 0U);
}

TEST_F(UtilityLibraryStandIn, TakesThePrintersMilliseconds) {
  AddPrinter(REG_DWORD, std::string("\xE8\x03\0\0", 4));
  Call("UtAlignGapW");
  EXPECT_EQ(machine.now(), 1000U);
  Call("UtAlignGapW", u"Another");
  EXPECT_EQ(machine.now(), 1000U);
}

TEST_F(UtilityLibraryStandIn, WhatTheTestSaysGoesBeforeThePrinters) {
  AddPrinter(REG_DWORD, std::string("\xE8\x03\0\0", 4));
  face.milliseconds = 7;
  Call("UtAlignGapW");
  EXPECT_EQ(machine.now(), 7U);
  face.milliseconds = 0;
  Call("UtAlignGapW");
  EXPECT_EQ(machine.now(), 7U);
}

TEST_F(UtilityLibraryStandIn, ACallThatIsAtWorkHasntEnded) {
  face.milliseconds = 1000;
  sim::Process& other = machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    Call("UtCleanHeadW", u"P");
    return 0U;
  });
  Os().process.Sleep(500);
  EXPECT_EQ(face.calls.size(), 1U);
  EXPECT_EQ(face.ended, 0U);
  EXPECT_EQ(machine.files().ReadFile(kUtilityLog),
            "begin UtCleanHeadW: \"P\" \"2\" \"3\" \"\xD7\x90\"\n");
  // And never will where its process goes meanwhile.
  other.BeginEnd(1);
  Os().process.Sleep(1000);
  EXPECT_EQ(face.ended, 0U);
}

TEST_F(UtilityLibraryStandIn, TheTraceTellsOfIt) {
  Call("UtCleanHeadW");
  std::vector<std::u16string> told;
  for (const sim::Event& event : machine.trace())
    if (event.text.starts_with(u"utility library: ")) told.push_back(event.text);
  EXPECT_EQ(told,
            (std::vector<std::u16string>{
                u"utility library: begin UtCleanHeadW: \"Studio 7200\" \"2\" \"3\" \"\u05D0\"",
                u"utility library: end UtCleanHeadW"}));
}

}  // namespace
}  // namespace desk
