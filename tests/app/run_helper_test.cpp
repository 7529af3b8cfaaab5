// The start of the run helper: its parameter file to the byte, its command line, its failures.
#include <gtest/gtest.h>

#include <string>

#include "Common/CVglLog.h"
#include "Common/tray_log.h"
#include "app/cmd_line_info.h"
#include "tests/support/frame_fixture.h"
#include "tests/support/log_texts.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Texts = std::vector<std::u16string>;

constexpr char16_t kHelper[] = u"C:\\Tools\\HELPER.EXE";
constexpr char16_t kCommand[] = u"C:\\Tools\\HELPER.EXE /FU \"";

// UTF-16 little-endian of a text in ASCII, with its terminator.
std::string Wide(const std::string& ascii) {
  std::string bytes;
  for (const char c : ascii + '\0') bytes += {c, '\0'};
  return bytes;
}

class RunHelper : public FrameTest {
 protected:
  RunHelper() {
    machine.files().WriteFile(kHelper, "");
    machine.files().MakeFolder(machine.system().tempFolder);
    g_bTrayLogEnabled = 0;  // its files would be counted with the others
  }

  const std::vector<sim::Programs::Start>& Starts() { return machine.programs().Starts(); }
  std::int32_t Start(bool withE = false) { return frame->StartVGLExe(kHelper, withE); }
  // The path of the parameter file of the last start.
  std::u16string FileOfLastStart() {
    const std::u16string& line = Starts().back().commandLine;
    EXPECT_TRUE(line.starts_with(kCommand) && line.ends_with(u'"'));
    const std::size_t begin = std::size(kCommand) - 1;
    return line.substr(begin, line.size() - begin - 1);
  }
  std::string BytesOfLastStart() {
    return machine.files().ReadFile(FileOfLastStart()).value_or("(no file)");
  }
  Texts TempFiles() { return TempFilesOf(machine); }
  void SetPrinter(const std::u16string& name, const std::u16string& port) {
    desk::AddPrinterOfDefaultDriver(machine, name, port);
    EXPECT_TRUE(frame->m_szPrinterName.Assign(name));
  }
};

// --- The parameter file

TEST_F(RunHelper, GetsAFileInUtf16WithItsTerminatorAndWithoutAMark) {
  EXPECT_EQ(Start(), 1);
  EXPECT_EQ(BytesOfLastStart(), Wide("/P11 \"Studio 7200\"\n/O6 \"USB001\"\n/M5 \"S7200\"\n"));
  EXPECT_EQ(BytesOfLastStart().substr(0, 6), std::string("/\0P\0"
                                                         "1\0",
                                                         6));
  EXPECT_TRUE(inside.process().Ledger() == Texts{u"window TrayIconWClass"});
}

TEST_F(RunHelper, GetsAnEAtTheEndForThePreferences) {
  EXPECT_EQ(Start(true), 1);
  EXPECT_EQ(BytesOfLastStart(), Wide("/P11 \"Studio 7200\"\n/O6 \"USB001\"\n/M5 \"S7200\"\n/E"));
}

TEST_F(RunHelper, GetsANewFileOfTheTempFolder) {
  EXPECT_EQ(Start(), 1);
  const std::u16string file = FileOfLastStart();
  EXPECT_EQ(TempFiles(), Texts{file});
  const std::u16string folder = machine.system().tempFolder;
  ASSERT_TRUE(file.starts_with(folder + u"K_Q")) << file.size();
  const std::u16string digits = file.substr(folder.size() + 3, file.size() - folder.size() - 7);
  EXPECT_LE(digits.size(), 4U);
  EXPECT_EQ(digits.find_first_not_of(u"0123456789ABCDEF"), std::u16string::npos);
  EXPECT_TRUE(file.ends_with(u".tmp"));
  EXPECT_EQ(Starts().back().commandLine, kCommand + file + u"\"");
}

TEST_F(RunHelper, GetsThePortAsItIsNow) {
  machine.spooler().At(desk::kPrinterName).port = u"USB009:";
  EXPECT_EQ(Start(), 1);
  EXPECT_EQ(BytesOfLastStart(), Wide("/P11 \"Studio 7200\"\n/O7 \"USB009:\"\n/M5 \"S7200\"\n"));
  EXPECT_EQ(frame->m_szPortName.view(), u"USB001");
}

TEST_F(RunHelper, GetsAnEmptyPortWhereNoneCanBeHad) {
  const std::string expected = Wide("/P11 \"Studio 7200\"\n/O0 \"\"\n/M5 \"S7200\"\n");
  for (const char* operation : {"CreateMutexW", "OpenPrinterW", "GetPrinterW"}) {
    inside.process().FailNext(operation, ERROR_ACCESS_DENIED);
    EXPECT_EQ(Start(), 1);
    EXPECT_EQ(BytesOfLastStart(), expected) << operation;
  }
  machine.spooler().At(desk::kPrinterName).port = std::u16string(260, u'o');
  EXPECT_EQ(Start(), 1);
  EXPECT_EQ(BytesOfLastStart(), expected);
  machine.spooler().RemovePrinter(desk::kPrinterName);
  EXPECT_EQ(Start(), 1);
  EXPECT_EQ(BytesOfLastStart(), expected);
}

TEST_F(RunHelper, GetsNeitherNameNorPortWhereThereIsNoPrintersName) {
  frame->m_szPrinterName.Clear();
  EXPECT_EQ(Start(), 1);
  EXPECT_EQ(BytesOfLastStart(), Wide("/P0 \"\"\n/O0 \"\"\n/M5 \"S7200\"\n"));
}

TEST_F(RunHelper, GetsAnEmptyModelIdAsSuch) {
  frame->m_szModelID.Clear();
  EXPECT_EQ(Start(true), 1);
  EXPECT_EQ(BytesOfLastStart(), Wide("/P11 \"Studio 7200\"\n/O6 \"USB001\"\n/M0 \"\"\n/E"));
}

// Each text comes with its length, so nothing in it ends it or counts as an option.
TEST_F(RunHelper, ReadsEveryNameWhole) {
  const std::u16string names[] = {
      u"A \"quoted\" one",
      u"\"",
      u"a/b /E /R /X \"y\"",
      u"/FU \"C:\\other.tmp\"",
      u"line\nfeed\r\n/E",
      u" blanks around ",
      u"tab\there",
      u"backslash\\",
      u"\\\\server\\printer",
      u"100 %s %d",
      u"\u30D7\u30EA\u30F3\u30BF \u05DE\u05D3\u05E4\u05E1\u05EA \U0001F5A8",
      std::u16string(255, u'n'),
      std::u16string(258, u'n') + u"\"",
      u"1",
      u"12 \"x",
  };
  for (const std::u16string& name : names) {
    // Ports hold what printers' names hold.
    const std::u16string port = name.substr(0, 200) + u":";
    SetPrinter(name, port);
    ASSERT_EQ(Start(true), 1);
    const CCmdLineInfo read(Starts().back().arguments.c_str());
    EXPECT_EQ(read.m_szPrinterName, name);
    EXPECT_EQ(read.m_szPortName, port);
    EXPECT_EQ(read.m_szModelID, u"S7200");
    EXPECT_EQ(read.m_fE, 1);
    EXPECT_EQ(read.m_fRemove, 0);
    EXPECT_TRUE(TempFiles().empty());  // the reader removes it
  }
}

TEST_F(RunHelper, ReadsTheStatusWindowAsNoPreferences) {
  ASSERT_EQ(Start(), 1);
  EXPECT_EQ(CCmdLineInfo(Starts().back().arguments.c_str()).m_fE, 0);
}

// --- Starting it

TEST_F(RunHelper, IsStartedByAPathWithBlanksWithoutQuotes) {
  machine.files().WriteFile(u"C:\\Program Files\\K X\\HELPER.EXE", "");
  EXPECT_EQ(frame->StartVGLExe(u"C:\\Program Files\\K X\\HELPER.EXE", false), 1);
  EXPECT_TRUE(
      Starts().back().commandLine.starts_with(u"C:\\Program Files\\K X\\HELPER.EXE /FU \"C:\\"));
  EXPECT_EQ(Starts().back().path, u"C:\\Program Files\\K X\\HELPER.EXE");
}

TEST_F(RunHelper, FindsItsFileClosedAndReadable) {
  bool readable = false;
  machine.programs().Add(kHelper, [&](const char16_t* arguments) {
    const std::u16string text(arguments);
    const std::u16string path = text.substr(5, text.size() - 6);
    // As nobody else may have it open.
    const OwnedFile file(
        Os().files.CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, OPEN_EXISTING, 0));
    readable = static_cast<bool>(file);
    return 0U;
  });
  EXPECT_EQ(Start(), 1);
  machine.Settle();
  EXPECT_TRUE(readable);
}

TEST_F(RunHelper, IsNoLongerWatchedOnceItIsStarted) {
  machine.programs().Add(kHelper, [](const char16_t*) { return 1U; });
  EXPECT_EQ(Start(), 1);
  machine.Settle();
  EXPECT_EQ(TempFiles().size(), 1U);  // the file is the started program's to remove
}

TEST_F(RunHelper, IsLoggedStepByStep) {
  g_bTrayLogEnabled = 1;
  EXPECT_EQ(Start(true), 1);
  std::string command;
  for (const char16_t c : Starts().back().commandLine) command += static_cast<char>(c);
  EXPECT_EQ(TextsOfLog(machine.files().ReadFile(desk::kTrayLogFile).value()),
            (std::vector<std::string>{
                "CMainFrame::StartVGLExe",
                "CMainFrame::StartVGLExe : printer name : Studio 7200",
                "CMainFrame::StartVGLExe : port name : USB001",
                "CMainFrame::StartVGLExe : model id : S7200",
                "CMainFrame::StartVGLExe : command line : /P11 \"Studio 7200\"",
                "/O6 \"USB001\"",
                "/M5 \"S7200\"",
                "/E",
                "CMainFrame::StartExe : lpszCmdLine : " + command,
            }));
}

// --- Failures

TEST_F(RunHelper, ThatCantBeStartedLeavesNoFileAndNoHandleBehind) {
  const std::pair<const char*, std::uint64_t> faults[] = {
      {"GetTempPathW", 0}, {"GetTempPathW", 1}, {"GetTempFileNameW", 0},
      {"CreateFileW", 0},  {"WriteFile", 0},    {"CreateProcessW", 0}};
  const Texts held = inside.process().Ledger();
  for (const auto& [operation, after] : faults) {
    inside.process().FailNext(operation, ERROR_DISK_FULL, after);
    EXPECT_EQ(Start(), 0) << operation << after;
    EXPECT_TRUE(TempFiles().empty()) << operation << after;
    EXPECT_EQ(inside.process().Ledger(), held) << operation << after;
  }
  EXPECT_TRUE(Starts().empty());
  EXPECT_EQ(g_VglLog.get().m_pnLogData, nullptr);  // nothing was counted
  EXPECT_EQ(Start(), 1);
}

TEST_F(RunHelper, CantBeStartedWithoutATempFolder) {
  machine.system().tempFolder = u"";
  EXPECT_EQ(Start(), 0);
  machine.system().tempFolder = u"C:\\Gone\\";
  EXPECT_EQ(Start(), 0);
  EXPECT_TRUE(Starts().empty());
}

TEST_F(RunHelper, CantBeStartedWhereItIsNot) {
  EXPECT_EQ(frame->StartVGLExe(u"C:\\Tools\\GONE.EXE", false), 0);
  EXPECT_EQ(frame->StartVGLExe(u"", true), 0);
  EXPECT_TRUE(TempFiles().empty());
}

// Whatever fails: either it runs and has its file, or there is neither.
TEST_F(RunHelper, RunsWithItsFileOrLeavesNoneWhateverFails) {
  const std::uint64_t before = inside.process().calls();
  EXPECT_EQ(Start(), 1);
  const std::uint64_t calls = inside.process().calls() - before;
  ASSERT_GT(calls, 15U);
  const Texts held = inside.process().Ledger();
  g_VglLog.get().Clear();
  for (std::uint64_t number = 1; number <= calls; ++number) {
    for (const std::u16string& file : TempFiles()) machine.files().Remove(file);
    const std::size_t starts = Starts().size();
    inside.process().FailCall(number);
    const std::int32_t result = Start();
    SCOPED_TRACE(std::to_string(number) + " " + inside.process().failedOperation());
    EXPECT_EQ(Starts().size(), starts + static_cast<std::size_t>(result));
    EXPECT_EQ(TempFiles().size(), static_cast<std::size_t>(result));
    EXPECT_EQ(inside.process().Ledger(), held);
    g_VglLog.get().Clear();
  }
}

// --- Counts

TEST_F(RunHelper, CountsTheStatusWindowItselfAndThePreferencesNot) {
  EXPECT_EQ(Start(true), 1);
  EXPECT_EQ(g_VglLog.get().m_pnLogData, nullptr);
  EXPECT_EQ(Start(), 1);
  ASSERT_NE(g_VglLog.get().m_pnLogData, nullptr);
  EXPECT_EQ(g_VglLog.get().m_pnLogData[2], 1U);
  EXPECT_EQ(g_VglLog.get().m_pnLogData[3], 0U);
}

}  // namespace
}  // namespace vgl
