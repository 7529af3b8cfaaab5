// A printer whose driver set names what the menu is to run, for tests that choose entries.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Common/CVglLog.h"
#include "Common/tray_log.h"
#include "menu/menu_command.h"
#include "platform/owned.h"
#include "tests/support/sim_desk.h"

namespace vgl {

inline constexpr char16_t kVif[] = u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\KS7200.VIF";
// Behind the arguments in the parameter file.
inline constexpr char kParameters[] =
    "\n/P \"P1\"\n/M \"S7200\"\n/D \"KAVRO Studio 7200\"\n/O \"USB007\"";

// UTF-16 little-endian of a text in ASCII, with its terminator.
inline std::string Wide(const std::string& ascii) {
  std::string bytes;
  for (const char c : ascii + '\0') bytes += {c, '\0'};
  return bytes;
}

// The printer is "P1" at USB007; in C:\Tools are x.exe, the ink change program ic.exe and NetPilot,
// np.exe.
class MenuCommand : public testing::Test {
 protected:
  using Texts = std::vector<std::u16string>;
  using Counts = std::map<int, std::uint32_t>;

  SimDesk desk;
  sim::Inside inside{desk.machine};
  CUtyCall utyCall;
  MenuCommandContext context{.identity = {.printerName = u"P1",
                                          .driverName = desk::kDriverName,
                                          .modelId = desk::kModelId,
                                          .portName = u"OLD001"},
                             .netPilotName = u"np.exe",
                             .vifName = kVif,
                             .busyText = u"busy",
                             .busyCaption = u"caption",
                             .utyCall = utyCall};
  Texts held;  // at the end

  MenuCommand() {
    desk.AddPrinter(u"P1", u"USB007");
    desk.AddToVif("[InkChg]\r\nINKCHGEXE=ic.exe");
    for (const char16_t* program : {u"x.exe", u"ic.exe", u"np.exe"})
      desk.machine.files().WriteFile(std::u16string(u"C:\\Tools\\") + program, "");
    desk.machine.files().MakeFolder(desk.machine.system().tempFolder);
    desk.machine.desktop().AnswerBoxesAtOnce();
    TrayLogInit(TrayLogPath().c_str());
  }
  ~MenuCommand() override {
    EXPECT_EQ(inside.process().Ledger(), held);
    EXPECT_EQ(g_pTrayLogFile.get(), nullptr);
  }

  // Has the set say so, in its description or in the registry, and chooses the entry.
  void Run(const std::string& text, std::uint32_t id = 920) {
    desk.SetMenuValue(std::to_string(id), text);
    RunMenuCommand(context, id);
  }
  void RunFromRegistry(const std::u16string& text) {
    desk.AddToProfile("RegistryBaseVGL=1");
    desk.machine.registry().SetString(platform::HKEY_LOCAL_MACHINE,
                                      u"Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200\\Menu",
                                      u"920", text);
    RunMenuCommand(context, 920);
  }

  const std::vector<sim::Programs::Start>& Starts() { return desk.machine.programs().Starts(); }
  Texts CommandLines() {
    Texts lines;
    for (const sim::Programs::Start& start : Starts()) lines.push_back(start.commandLine);
    return lines;
  }
  std::u16string LastCommandLine() {
    return Starts().empty() ? u"(none)" : Starts().back().commandLine;
  }
  // What the shell was asked for, as "program|arguments"; nothing else may have been said to it.
  Texts ShellCommands() {
    Texts commands;
    for (const sim::Programs::ShellExecution& one : desk.machine.programs().ShellExecutions()) {
      EXPECT_TRUE(one.verb == u"open" && one.directory.empty() && one.show == 1);
      commands.push_back(one.file + u"|" + one.parameters);
    }
    return commands;
  }
  std::u16string LastShellCommand() {
    const Texts commands = ShellCommands();
    return commands.empty() ? u"(none)" : commands.back();
  }
  // The command line that was asked for last, whether there is such a program or not.
  std::string LastAskedFor() {
    constexpr std::string_view kLabel = "CMainFrame::StartExe : lpszCmdLine : ";
    std::string last = "(none)";
    for (const std::string& line : desk.LogTexts())
      if (line.starts_with(kLabel)) last = line.substr(kLabel.size());
    return last;
  }
  // The path of the one parameter file, and its bytes.
  std::u16string FileName() {
    const Texts files = desk.TempFiles();
    return files.size() == 1 ? files[0] : u"(not one file)";
  }
  std::string ParameterFile() {
    const Texts files = desk.TempFiles();
    if (files.size() != 1) return "(" + std::to_string(files.size()) + " files)";
    return desk.machine.files().ReadFile(files[0]).value();
  }
  void RemoveParameterFiles() {
    for (const std::u16string& file : desk.TempFiles()) desk.machine.files().Remove(file);
  }
  // The counters that aren't 0, since the last asking.
  static Counts TakeCounts() {
    Counts counts;
    CVglLog& log = g_VglLog.get();
    for (int i = 0; log.m_pnLogData != nullptr && i < log.m_nLogCount; ++i)
      if (log.m_pnLogData[i] != 0) counts[i] = log.m_pnLogData[i];
    log.Clear();
    return counts;
  }
  void ExpectNothingDone() {
    EXPECT_THAT(CommandLines(), testing::IsEmpty());
    EXPECT_THAT(ShellCommands(), testing::IsEmpty());
    EXPECT_THAT(desk.TempFiles(), testing::IsEmpty());
    EXPECT_THAT(desk.BoxesShown(), testing::IsEmpty());
    EXPECT_EQ(utyCall.hSemaphore, platform::HANDLE{});
  }
};

}  // namespace vgl
