// What processes of the simulated machine had the shell do. What Windows does as well is in
// tests/platform/shell_execute_test.cpp.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/platform.h"
#include "platform/sim/machine.h"

namespace sim {
namespace {

using namespace platform;

class SimulatedShell : public testing::Test {
 protected:
  static std::int64_t Open(const char16_t* file, const char16_t* parameters = nullptr) {
    return Os().shell.ShellExecuteW(HWND{}, u"open", file, parameters, nullptr, SW_SHOWNORMAL);
  }
  const std::vector<Programs::ShellExecution>& Done() {
    return machine.programs().ShellExecutions();
  }

  Machine machine;
  Inside inside{machine};
};

TEST_F(SimulatedShell, WhatWasDoneIsKept) {
  machine.files().WriteFile(u"C:\\Tools\\tool.exe", "");
  Os().process.Sleep(250);
  EXPECT_GT(Os().shell.ShellExecuteW(HWND{}, u"open", u"C:\\Tools\\tool.exe", u"/x \"y z\"",
                                     u"C:\\Tools", SW_SHOWNORMAL),
            32);
  ASSERT_EQ(Done().size(), 1u);
  EXPECT_EQ(Done()[0].time, 250u);
  EXPECT_EQ(Done()[0].starterId, inside.process().id());
  EXPECT_EQ(Done()[0].verb, u"open");
  EXPECT_EQ(Done()[0].file, u"C:\\Tools\\tool.exe");
  EXPECT_EQ(Done()[0].parameters, u"/x \"y z\"");
  EXPECT_EQ(Done()[0].directory, u"C:\\Tools");
  EXPECT_EQ(Done()[0].show, 1);
  EXPECT_GT(Done()[0].result, 32);
}

TEST_F(SimulatedShell, AProgramIsStartedToo) {
  std::u16string told;
  machine.programs().Add(u"C:\\Tools\\a tool.exe", [&](const char16_t* arguments) {
    told = arguments;
    return 0u;
  });
  Open(u"C:\\Tools\\a tool.exe", u"/x \"y z\"");
  Os().process.Sleep(1);
  EXPECT_EQ(told, u"/x \"y z\"");
  ASSERT_EQ(machine.programs().Starts().size(), 1u);
  EXPECT_EQ(machine.programs().Starts()[0].path, u"C:\\Tools\\a tool.exe");
  EXPECT_EQ(machine.programs().Starts()[0].commandLine, u"\"C:\\Tools\\a tool.exe\" /x \"y z\"");
}

TEST_F(SimulatedShell, NoHandleIsLeftWithTheCaller) {
  machine.files().WriteFile(u"C:\\Tools\\tool.exe", "");
  Open(u"C:\\Tools\\tool.exe");
  EXPECT_EQ(inside.process().Ledger(), std::vector<std::u16string>{});
}

TEST_F(SimulatedShell, WhatFailedIsKeptWithItsReason) {
  machine.files().WriteFile(u"C:\\Tools\\text.txt", "");
  machine.files().WriteFile(u"C:\\Tools\\locked.exe", "");
  machine.files().MakeUnreadable(u"C:\\Tools\\locked.exe");
  const struct {
    const char16_t* file;
    std::int64_t result;
  } cases[] = {
      {u"C:\\Tools\\missing.exe", 2},
      {u"C:\\Missing\\tool.exe", 3},
      {u"C:\\Tools", 5},
      {u"C:\\Tools\\locked.exe", 5},
      {u"C:\\Tools\\text.txt", 31},
      {u"", 2},
      {nullptr, 2},
      {u"\"", 2},
      {u"C:\\Tools\\a|b", 2},
      {u"https://kavro.example/", 2},
  };
  for (const auto& each : cases) {
    const std::u16string name = each.file == nullptr ? u"" : each.file;
    EXPECT_EQ(Open(each.file), each.result) << testing::PrintToString(name);
    EXPECT_EQ(Done().back().file, name);
    EXPECT_EQ(Done().back().result, each.result);
  }
  EXPECT_EQ(Done().size(), std::size(cases));
  EXPECT_TRUE(machine.programs().Starts().empty());
}

TEST_F(SimulatedShell, ItCanFailWithAnyReasonAndHasDoneNothingThen) {
  machine.files().WriteFile(u"C:\\Tools\\tool.exe", "");
  inside.process().FailNext("ShellExecuteW", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_EQ(Open(u"C:\\Tools\\tool.exe"), 8);
  EXPECT_TRUE(Done().empty());
}

TEST_F(SimulatedShell, ItIsTraced) {
  Open(u"C:\\Tools\\missing.exe", u"/x");
  EXPECT_EQ(machine.trace().back().text, u"shell: open C:\\Tools\\missing.exe /x");
}

}  // namespace
}  // namespace sim
