#include "Common/start_program.h"

#include <gtest/gtest.h>

#include <string>

#include "Common/tray_log.h"
#include "desk/default_machine.h"
#include "platform/sim/machine.h"

namespace vgl {
namespace {

using namespace platform;

constexpr char16_t kTool[] = u"C:\\Tools\\TOOL.EXE";

class StartProgram : public testing::Test {
 protected:
  StartProgram() { machine.files().WriteFile(kTool, ""); }

  const std::vector<sim::Programs::Start>& Starts() { return machine.programs().Starts(); }

  sim::Machine machine;
  sim::Inside inside{machine};
};

TEST_F(StartProgram, HandsTheCommandLineOverAsItIs) {
  EXPECT_EQ(StartExe(u"C:\\Tools\\TOOL.EXE  /FU \"C:\\x y.tmp\" "), 1);
  ASSERT_EQ(Starts().size(), 1U);
  EXPECT_EQ(Starts()[0].path, kTool);
  EXPECT_EQ(Starts()[0].commandLine, u"C:\\Tools\\TOOL.EXE  /FU \"C:\\x y.tmp\" ");
  EXPECT_EQ(Starts()[0].arguments, u"/FU \"C:\\x y.tmp\" ");
}

TEST_F(StartProgram, KeepsNoHandleOfWhatItStarted) {
  EXPECT_EQ(StartExe(kTool), 1);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(StartProgram, GivesZeroForWhatCantBeStarted) {
  machine.files().WriteFile(u"C:\\Tools\\TEXT.TXT", "");
  const std::u16string commandLines[] = {
      u"",
      u"C:\\Tools\\GONE.EXE",
      u"C:\\Gone\\TOOL.EXE",
      u"C:\\Tools",
      u"C:\\Tools\\TEXT.TXT",
      u"\"C:\\Tools\\TOOL.EXE /X\"",
      std::u16string(kTool) + u" " + std::u16string(32767, u'x'),
  };
  for (const std::u16string& commandLine : commandLines) {
    EXPECT_EQ(StartExe(commandLine.c_str()), 0) << commandLine.size();
    EXPECT_TRUE(inside.process().Ledger().empty());
  }
  EXPECT_TRUE(Starts().empty());
}

TEST_F(StartProgram, ANullTextStartsNothing) { EXPECT_EQ(StartExe(nullptr), 0); }

TEST_F(StartProgram, GivesZeroWhereTheSystemRefuses) {
  inside.process().FailNext("CreateProcessW", ERROR_ACCESS_DENIED);
  EXPECT_EQ(StartExe(kTool), 0);
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(StartProgram, FindsAProgramWhosePathHasBlanksWithoutQuotes) {
  machine.files().WriteFile(u"C:\\Program Files\\K X\\HELPER.EXE", "");
  EXPECT_EQ(StartExe(u"C:\\Program Files\\K X\\HELPER.EXE /E"), 1);
  EXPECT_EQ(Starts().at(0).path, u"C:\\Program Files\\K X\\HELPER.EXE");
  EXPECT_EQ(Starts().at(0).arguments, u"/E");
}

TEST_F(StartProgram, DoesntWaitForWhatItStarted) {
  machine.programs().Add(kTool, [](const char16_t*) {
    Os().process.Sleep(3600000);
    return 7U;
  });
  EXPECT_EQ(StartExe(kTool), 1);
  EXPECT_EQ(machine.now(), 0U);
  EXPECT_FALSE(Starts().at(0).process->ended());
}

TEST_F(StartProgram, EachCallStartsOneMore) {
  EXPECT_EQ(StartExe(kTool), 1);
  EXPECT_EQ(StartExe(kTool), 1);
  EXPECT_EQ(Starts().size(), 2U);
}

TEST_F(StartProgram, LogsItsCommandLineWhateverBecomesOfIt) {
  desk::SetUpSuite(machine);
  desk::EnableTrayLog(machine);
  TrayLogInit(TrayLogPath().c_str());
  StartExe(u"C:\\Tools\\TOOL.EXE /A");
  StartExe(u"C:\\Tools\\GONE.EXE /B");
  const std::string log = machine.files().ReadFile(desk::kTrayLogFile).value();
  EXPECT_NE(log.find("; CMainFrame::StartExe : lpszCmdLine : C:\\Tools\\TOOL.EXE /A\r\n"),
            std::string::npos);
  EXPECT_NE(log.find("; CMainFrame::StartExe : lpszCmdLine : C:\\Tools\\GONE.EXE /B\r\n"),
            std::string::npos);
}

}  // namespace
}  // namespace vgl
