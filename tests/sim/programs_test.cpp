// The programs of the simulated machine: which file a command line starts, and what comes of it.
#include <gtest/gtest.h>

#include <string>

#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace sim {
namespace {

using namespace platform;

constexpr char16_t kTool[] = u"C:\\Drivers\\TOOL.EXE";

class SimulatedPrograms : public testing::Test {
 protected:
  struct Opened {
    OwnedObject process;
    OwnedObject thread;
    ProcessInformation told;
  };

  // Empty owners on failure.
  static Opened Start(std::u16string commandLine) {
    Opened opened;
    Os().process.SetLastError(0);
    if (Os().process.CreateProcessW(commandLine.data(), &opened.told)) {
      opened.process = OwnedObject(opened.told.process);
      opened.thread = OwnedObject(opened.told.thread);
    }
    return opened;
  }

  static bool Starts(const std::u16string& commandLine) { return bool(Start(commandLine).process); }

  // The path of what that starts; empty when it starts nothing.
  std::u16string PathOf(const std::u16string& commandLine) {
    return Starts(commandLine) ? machine.programs().Starts().back().path : u"";
  }

  // Why that starts nothing.
  static std::int32_t ErrorOf(const std::u16string& commandLine) {
    return Starts(commandLine) ? ERROR_SUCCESS : Os().process.GetLastError();
  }

  static std::uint32_t Wait(const OwnedObject& object, std::uint32_t milliseconds = INFINITE) {
    return Os().objects.WaitForSingleObject(object.get(), milliseconds);
  }

  Machine machine;
  Inside inside{machine, u"C:\\Own\\test.exe"};
  FileTree& files = machine.files();
  Programs& programs = machine.programs();
};

// --- What is recorded

TEST_F(SimulatedPrograms, AStartIsRecorded) {
  files.WriteFile(kTool, "");
  Os().process.Sleep(250);
  EXPECT_TRUE(Starts(u"\"c:\\drivers\\tool.exe\"  /FU \"C:\\x y\" "));
  ASSERT_EQ(programs.Starts().size(), 1U);
  const Programs::Start& start = programs.Starts()[0];
  EXPECT_EQ(start.time, 250U);
  EXPECT_EQ(start.starterId, inside.process().id());
  EXPECT_EQ(start.path, kTool);
  EXPECT_EQ(start.commandLine, u"\"c:\\drivers\\tool.exe\"  /FU \"C:\\x y\" ");
  EXPECT_EQ(start.arguments, u"/FU \"C:\\x y\" ");
}

TEST_F(SimulatedPrograms, ArgumentsStandBehindTheProgramAndItsBlanks) {
  files.WriteFile(kTool, "");
  const std::vector<std::pair<std::u16string, std::u16string>> cases = {
      {u"", u""},
      {u" ", u""},
      {u" \t /R", u"/R"},
      {u" a  b ", u"a  b "},
  };
  for (const auto& [behind, arguments] : cases) {
    EXPECT_TRUE(Starts(kTool + behind));
    EXPECT_EQ(programs.Starts().back().arguments, arguments);
    EXPECT_TRUE(Starts(u"\"" + std::u16string(kTool) + u"\"" + behind));
    EXPECT_EQ(programs.Starts().back().arguments, arguments);
  }
  EXPECT_TRUE(Starts(u"\"" + std::u16string(kTool) + u"\"/R"));
  EXPECT_EQ(programs.Starts().back().arguments, u"/R");
}

TEST_F(SimulatedPrograms, TheTraceTellsOfAStart) {
  files.WriteFile(kTool, "");
  Starts(u"C:\\Drivers\\tool /R");
  ASSERT_FALSE(machine.trace().empty());
  EXPECT_EQ(
      machine.trace().back(),
      (Event{0, inside.process().id(), u"started C:\\Drivers\\TOOL.EXE: C:\\Drivers\\tool /R"}));
}

TEST_F(SimulatedPrograms, WhatFailsIsNotRecorded) {
  files.WriteFile(kTool, "");
  inside.process().FailNext("CreateProcessW", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_EQ(ErrorOf(kTool), ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_EQ(ErrorOf(u"C:\\Drivers\\none.exe"), ERROR_FILE_NOT_FOUND);
  EXPECT_TRUE(programs.Starts().empty());
  EXPECT_EQ(machine.processes().size(), 1U);
}

// --- What runs

TEST_F(SimulatedPrograms, ABodyRunsAsAProcessWithItsArguments) {
  std::u16string told;
  std::u16string image;
  programs.Add(kTool, [&](const char16_t* arguments) {
    told = arguments;
    image = RunningProcess().imagePath();
    return 5U;
  });
  const Opened tool = Start(u"C:\\Drivers\\TOOL.EXE /FU x");
  EXPECT_EQ(told, u"");  // it runs when the others wait
  EXPECT_EQ(Wait(tool.process), WAIT_OBJECT_0);
  EXPECT_EQ(told, u"/FU x");
  EXPECT_EQ(image, kTool);
  const Process& process = *programs.Starts()[0].process;
  EXPECT_TRUE(process.ended());
  EXPECT_EQ(process.exitCode(), 5U);
  EXPECT_EQ(process.commandLine(), u"/FU x");
  EXPECT_EQ(process.id(), tool.told.processId);
}

TEST_F(SimulatedPrograms, AProgramWithoutBodyEndsAtOnce) {
  files.WriteFile(kTool, "");
  const Opened tool = Start(kTool);
  const Process& process = *programs.Starts()[0].process;
  EXPECT_TRUE(process.ended());
  EXPECT_EQ(process.exitCode(), 0U);
  EXPECT_EQ(process.imagePath(), kTool);
  EXPECT_EQ(Wait(tool.process, 0), WAIT_OBJECT_0);
  EXPECT_EQ(Wait(tool.thread, 0), WAIT_OBJECT_0);
  EXPECT_NE(tool.told.threadId, Os().process.GetCurrentThreadId());
}

TEST_F(SimulatedPrograms, AStartedProgramMayStartAnotherAndEndBeforeIt) {
  programs.Add(u"C:\\inner.exe", [](const char16_t*) {
    Os().process.Sleep(100);
    return 2U;
  });
  programs.Add(u"C:\\outer.exe", [](const char16_t*) {
    Start(u"C:\\inner.exe");
    return 1U;
  });
  const Opened outer = Start(u"C:\\outer.exe");
  EXPECT_EQ(Wait(outer.process), WAIT_OBJECT_0);
  ASSERT_EQ(programs.Starts().size(), 2U);
  const Programs::Start& inner = programs.Starts()[1];
  EXPECT_EQ(inner.starterId, outer.told.processId);
  EXPECT_FALSE(inner.process->ended());
  Os().process.Sleep(100);
  EXPECT_EQ(inner.process->exitCode(), 2U);
}

TEST_F(SimulatedPrograms, AddingMakesAFileUnlessOneIsThere) {
  files.WriteFile(u"C:\\there.exe", "content");
  const auto body = [](const char16_t*) { return 0U; };
  programs.Add(u"C:\\there.exe", body);
  programs.Add(u"C:\\new\\new.exe", body);
  EXPECT_EQ(files.ReadFile(u"C:\\there.exe"), "content");
  EXPECT_TRUE(files.Exists(u"C:\\new\\new.exe"));
}

TEST_F(SimulatedPrograms, ABodyTakesThePlaceOfAnEarlierOne) {
  programs.Add(kTool, [](const char16_t*) { return 1U; });
  programs.Add(u"c:\\DRIVERS\\tool.exe", [](const char16_t*) { return 2U; });
  EXPECT_EQ(Wait(Start(kTool).process), WAIT_OBJECT_0);
  EXPECT_EQ(programs.Starts()[0].process->exitCode(), 2U);
}

TEST_F(SimulatedPrograms, WithoutItsFileABodyIsNotStarted) {
  programs.Add(kTool, [](const char16_t*) { return 1U; });
  files.Remove(kTool);
  EXPECT_EQ(ErrorOf(kTool), ERROR_FILE_NOT_FOUND);
}

TEST_F(SimulatedPrograms, AFileOfAnyNameIsAProgramWithABodyAndNoneWithout) {
  files.WriteFile(u"C:\\script.run", "");
  EXPECT_EQ(ErrorOf(u"C:\\script.run"), ERROR_BAD_EXE_FORMAT);
  programs.Add(u"C:\\script.run", [](const char16_t*) { return 0U; });
  EXPECT_TRUE(Starts(u"C:\\script.run"));
}

TEST_F(SimulatedPrograms, AFileThatMayNotBeReadIsNotStarted) {
  files.WriteFile(kTool, "");
  files.MakeUnreadable(kTool);
  EXPECT_EQ(ErrorOf(kTool), ERROR_ACCESS_DENIED);
}

// --- Handles

TEST_F(SimulatedPrograms, TheHandlesAreInTheLedgerUntilTheyAreClosed) {
  files.WriteFile(kTool, "");
  Opened tool = Start(kTool);
  EXPECT_EQ(inside.process().Ledger(),
            (std::vector<std::u16string>{u"process C:\\Drivers\\TOOL.EXE",
                                         u"thread of C:\\Drivers\\TOOL.EXE"}));
  tool.process.Reset();
  tool.thread.Reset();
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(SimulatedPrograms, AWaitEndsWhenTheProcessDoes) {
  programs.Add(kTool, [](const char16_t*) {
    Os().process.Sleep(400);
    return 0U;
  });
  const Opened tool = Start(kTool);
  EXPECT_EQ(Wait(tool.process, 100), WAIT_TIMEOUT);
  EXPECT_EQ(machine.now(), 100U);
  EXPECT_EQ(Wait(tool.thread), WAIT_OBJECT_0);
  EXPECT_EQ(machine.now(), 400U);
}

TEST_F(SimulatedPrograms, AWaitEndsWhenTheProcessIsEndedByForce) {
  programs.Add(kTool, [](const char16_t*) {
    Os().process.Sleep(INFINITE);
    return 0U;
  });
  const Opened tool = Start(kTool);
  machine.StartProcess(u"C:\\killer.exe", u"", [this](const char16_t*) {
    Os().process.Sleep(70);
    machine.processes()[1]->BeginEnd(9);
    return 0U;
  });
  EXPECT_EQ(Wait(tool.process), WAIT_OBJECT_0);
  EXPECT_EQ(machine.now(), 70U);
  EXPECT_EQ(programs.Starts()[0].process->exitCode(), 9U);
}

TEST_F(SimulatedPrograms, EverybodyWhoWaitsGoesOn) {
  programs.Add(kTool, [](const char16_t*) {
    Os().process.Sleep(30);
    return 0U;
  });
  const Opened tool = Start(kTool);
  int awake = 0;
  for (int i = 0; i < 2; ++i) {
    machine.StartThread(inside.process(), [&] {
      EXPECT_EQ(Wait(tool.process), WAIT_OBJECT_0);
      ++awake;
    });
  }
  EXPECT_EQ(Wait(tool.process), WAIT_OBJECT_0);
  Os().process.Sleep(1);
  EXPECT_EQ(awake, 2);
}

// --- Which file is meant

TEST_F(SimulatedPrograms, ANameWithoutFolderIsLookedForInFourFolders) {
  const std::vector<std::u16string> folders = {u"C:\\Windows", u"C:\\Windows\\system",
                                               u"C:\\Windows\\System32", u"C:\\Own"};
  EXPECT_EQ(PathOf(u"tool.exe /R"), u"");
  for (const std::u16string& folder : folders) {  // each comes before those above it
    files.WriteFile(folder + u"\\tool.exe", "");
    EXPECT_EQ(PathOf(u"tool.exe /R"), folder + u"\\tool.exe");
    EXPECT_EQ(PathOf(u"\"tool\" /R"), folder + u"\\tool.exe");
  }
}

TEST_F(SimulatedPrograms, ANameThatSaysItsPlaceIsLookedForThere) {
  files.WriteFile(u"C:\\Own\\tool.exe", "");
  files.WriteFile(u"C:\\up.exe", "");
  files.WriteFile(u"C:\\Own\\sub\\below.exe", "");
  files.WriteFile(u"C:\\Windows\\win.exe", "");
  const std::vector<std::pair<std::u16string, std::u16string>> cases = {
      {u".\\tool.exe", u"C:\\Own\\tool.exe"},
      {u"..\\up.exe", u"C:\\up.exe"},
      {u"\\up.exe", u"C:\\up.exe"},
      {u"/up.exe", u"C:\\up.exe"},
      {u"C:up.exe", u""},
      {u"C:tool.exe", u"C:\\Own\\tool.exe"},
      {u"sub\\below.exe", u"C:\\Own\\sub\\below.exe"},
      {u".\\win.exe", u""},
  };
  for (const auto& [name, path] : cases) EXPECT_EQ(PathOf(name), path);
}

TEST_F(SimulatedPrograms, EachBlankMayEndThePath) {
  files.WriteFile(u"C:\\Program Files\\My Tools\\a b.exe", "");
  const std::u16string whole = u"C:\\Program Files\\My Tools\\a b.exe /R x";
  const std::vector<std::u16string> nearer = {u"C:\\Program Files\\My Tools\\a.exe",
                                              u"C:\\Program Files\\My.exe", u"C:\\Program.exe"};
  EXPECT_EQ(PathOf(whole), u"C:\\Program Files\\My Tools\\a b.exe");
  EXPECT_EQ(programs.Starts().back().arguments, u"/R x");
  for (const std::u16string& path : nearer) {
    files.WriteFile(path, "");
    EXPECT_EQ(PathOf(whole), path);
  }
  EXPECT_EQ(programs.Starts().back().arguments, u"Files\\My Tools\\a b.exe /R x");
}

TEST_F(SimulatedPrograms, ANameWithAPointGetsNoExtension) {
  files.WriteFile(u"C:\\tool.v2.exe", "");
  files.WriteFile(u"C:\\some.folder\\tool.exe", "");
  EXPECT_EQ(PathOf(u"C:\\tool.v2"), u"");
  EXPECT_EQ(PathOf(u"C:\\some.folder\\tool"), u"C:\\some.folder\\tool.exe");
}

TEST_F(SimulatedPrograms, AQuoteThatIsNotClosedReachesToTheEnd) {
  files.WriteFile(u"C:\\a b.exe", "");
  EXPECT_EQ(PathOf(u"\"C:\\a b.exe"), u"C:\\a b.exe");
  EXPECT_EQ(programs.Starts().back().arguments, u"");
  EXPECT_EQ(PathOf(u"\"C:\\a b.exe /R"), u"");
}

TEST_F(SimulatedPrograms, WhatIsNoPathStartsNothing) {
  EXPECT_EQ(ErrorOf(u""), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(ErrorOf(u"\""), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(ErrorOf(u"C:\\a|b.exe"), ERROR_INVALID_NAME);
  EXPECT_EQ(ErrorOf(u"C:\\" + std::u16string(300, u'x')), ERROR_PATH_NOT_FOUND);
  ProcessInformation started;
  EXPECT_FALSE(Os().process.CreateProcessW(nullptr, &started));
}

TEST_F(SimulatedPrograms, ACommandLineHas32766CharactersAtMost) {
  files.WriteFile(u"C:\\a.exe", "");
  std::u16string line = u"C:\\a.exe ";
  line.append(32766 - line.size(), u'x');
  EXPECT_TRUE(Starts(line));
  EXPECT_EQ(ErrorOf(line + u"x"), ERROR_FILENAME_EXCED_RANGE);
}

}  // namespace
}  // namespace sim
