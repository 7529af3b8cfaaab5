#include "Common/nest_log.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace vgl {
namespace {

constexpr char16_t kFile[] = u"C:\\ProgramData\\KAVRO\\VGL3\\VGL4.LOG";
constexpr char16_t kMutex[] = u"Global\\VGLNestLog";

// The low byte first, as the file has it.
std::string Utf16(std::u16string_view text) {
  std::string bytes;
  for (const char16_t character : text) {
    bytes += static_cast<char>(character & 0xFF);
    bytes += static_cast<char>(character >> 8);
  }
  return bytes;
}

std::string Marked(std::u16string_view text) { return "\xFF\xFE" + Utf16(text); }

// A machine whose first process is 1000, its thread 2000, ten minutes after the system's start.
class NestLog : public testing::Test {
 protected:
  NestLog() {
    machine.files().MakeFolder(u"C:\\ProgramData\\KAVRO\\VGL3");
    SetNestLogEnabled(1);
  }

  std::string Log() { return machine.files().ReadFile(kFile).value_or("(no file)"); }
  // Takes away what a scope's own entry has written.
  void Forget() { machine.files().Remove(kFile); }

  sim::Machine machine;
  sim::Inside inside{machine};
};

TEST(NestLogSwitch, IsOffInANewProcessAndNothingIsDone) {
  sim::Machine machine;
  machine.files().MakeFolder(u"C:\\ProgramData\\KAVRO\\VGL3");
  sim::Inside inside(machine);
  {
    const CNestLog scope(u"Increment()");
    scope.Print(u"%d\n", 1);
  }
  EXPECT_EQ(inside.process().calls(), 0u);
  EXPECT_EQ(g_nNestDepth.get()[0], 0u);
  EXPECT_FALSE(machine.files().Exists(kFile));
}

TEST_F(NestLog, TheSwitchHoldsWhatItIsSetTo) {
  SetNestLogEnabled(-7);
  EXPECT_EQ(g_bNestLogEnabled.get(), -7);
  SetNestLogEnabled(0);
  EXPECT_EQ(g_bNestLogEnabled.get(), 0);
}

TEST_F(NestLog, ANewFileStartsWithTheMarkAndTheScopesThreeLines) {
  const CNestLog scope(u"Increment()");
  EXPECT_EQ(Log(), Marked(u"1000;2000;   10:00.000; \n"
                          u"1000;2000;   10:00.000; ---\n"
                          u"1000;2000;   10:00.000; Increment()\n"));
}

TEST_F(NestLog, AnEmptyFileIsMarkedLikeANewOne) {
  machine.files().WriteFile(kFile, "");
  const CNestLog scope(nullptr);
  EXPECT_EQ(Log().substr(0, 2), "\xFF\xFE");
}

TEST_F(NestLog, WithoutATextAScopePrintsTwoLines) {
  const CNestLog scope(nullptr);
  EXPECT_EQ(Log(), Marked(u"1000;2000;   10:00.000; \n"
                          u"1000;2000;   10:00.000; ---\n"));
}

TEST_F(NestLog, AnEmptyTextIsALineOfItsOwn) {
  const CNestLog scope(u"");
  EXPECT_EQ(Log(), Marked(u"1000;2000;   10:00.000; \n"
                          u"1000;2000;   10:00.000; ---\n"
                          u"1000;2000;   10:00.000; \n"));
}

TEST_F(NestLog, NewlinesStayAsTheTextHasThem) {
  const CNestLog scope(u"WriteVglLogFile()\r\n");
  EXPECT_EQ(Log(), Marked(u"1000;2000;   10:00.000; \n"
                          u"1000;2000;   10:00.000; ---\n"
                          u"1000;2000;   10:00.000; WriteVglLogFile()\r\n\n"));
}

TEST_F(NestLog, AScopesTextIsNoTemplate) {
  const CNestLog scope(u"100%% %s");
  EXPECT_EQ(Log(), Marked(u"1000;2000;   10:00.000; \n"
                          u"1000;2000;   10:00.000; ---\n"
                          u"1000;2000;   10:00.000; 100%% %s\n"));
}

TEST_F(NestLog, AScopesOwnLinesStandOneLevelIn) {
  const CNestLog scope(nullptr);
  Forget();
  scope.Print(u"End WriteVglLogFile >nRet: =%d \r\n", -99);
  EXPECT_EQ(Log(), Marked(u"1000;2000;   10:00.000;   End WriteVglLogFile >nRet: =-99 \r\n"));
}

TEST_F(NestLog, AnInnerScopeEntersAtTheOuterDepthAndPrintsTwoBlanksFurtherIn) {
  const CNestLog outer(u"outer");
  {
    const CNestLog inner(u"inner");
    inner.Print(u"deep\n");
  }
  outer.Print(u"back\n");
  EXPECT_EQ(Log(), Marked(u"1000;2000;   10:00.000; \n"
                          u"1000;2000;   10:00.000; ---\n"
                          u"1000;2000;   10:00.000; outer\n"
                          u"1000;2000;   10:00.000;   \n"
                          u"1000;2000;   10:00.000;   ---\n"
                          u"1000;2000;   10:00.000;   inner\n"
                          u"1000;2000;   10:00.000;     deep\n"
                          u"1000;2000;   10:00.000;   back\n"));
}

TEST_F(NestLog, TheOuterScopePrintsAtTheDepthOfTheProcess) {
  const CNestLog outer(nullptr);
  const CNestLog inner(nullptr);
  Forget();
  outer.Print(u"a\n");
  EXPECT_EQ(Log(), Marked(u"1000;2000;   10:00.000;     a\n"));
}

TEST_F(NestLog, TheCounterIsBackAtZeroBehindAllScopes) {
  {
    const CNestLog outer(nullptr);
    const CNestLog inner(nullptr);
    EXPECT_EQ(g_nNestDepth.get()[0], 2u);
  }
  EXPECT_EQ(g_nNestDepth.get()[0], 0u);
}

TEST_F(NestLog, AScopeThatEndsWhileTheLogIsOffLeavesItsLevel) {
  {
    const CNestLog scope(nullptr);
    SetNestLogEnabled(0);
  }
  EXPECT_EQ(g_nNestDepth.get()[0], 1u);
}

TEST_F(NestLog, AScopeMadeWhileTheLogWasOffTakesTheCounterBelowZeroAndNothingIsIndented) {
  SetNestLogEnabled(0);
  {
    const CNestLog scope(u"a");
    SetNestLogEnabled(1);
  }
  EXPECT_EQ(g_nNestDepth.get()[0], 0xFFFFFFFFu);
  const CNestLog scope(u"b");
  scope.Print(u"c\n");
  EXPECT_EQ(Log(), Marked(u"1000;2000;   10:00.000; \n"
                          u"1000;2000;   10:00.000; ---\n"
                          u"1000;2000;   10:00.000; b\n"
                          u"1000;2000;   10:00.000; c\n"));
}

TEST_F(NestLog, AScopeMadeWhileTheLogWasOffHasNoFileToPrintTo) {
  SetNestLogEnabled(0);
  const CNestLog scope(u"a");
  SetNestLogEnabled(1);
  scope.Print(u"b\n");
  EXPECT_EQ(Log(), "(no file)");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(NestLog, NothingIsPrintedOnceTheLogIsOff) {
  const CNestLog scope(nullptr);
  Forget();
  SetNestLogEnabled(0);
  const auto calls = inside.process().calls();
  scope.Print(u"a\n");
  EXPECT_EQ(inside.process().calls(), calls);
  EXPECT_EQ(Log(), "(no file)");
}

TEST_F(NestLog, TheCountersOfTwoProcessesAreTheirOwn) {
  const CNestLog scope(nullptr);
  std::optional<std::uint32_t> others;
  machine.StartProcess(u"C:\\other.exe", u"", [&](const char16_t*) {
    others = g_nNestDepth.get()[0];
    return 0u;
  });
  machine.Settle();
  EXPECT_EQ(others, 0u);
}

TEST_F(NestLog, ASecondProcessAppendsWithoutASecondMark) {
  const CNestLog scope(nullptr);
  Forget();
  scope.Print(u"first\n");
  machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    SetNestLogEnabled(1);
    const CNestLog other(u"second");
    return 0u;
  });
  machine.RunFor(250);
  scope.Print(u"third\n");
  EXPECT_EQ(Log(), Marked(u"1000;2000;   10:00.000;   first\n"
                          u"1004;2004;   10:00.000; \n"
                          u"1004;2004;   10:00.000; ---\n"
                          u"1004;2004;   10:00.000; second\n"
                          u"1000;2000;   10:00.250;   third\n"));
}

TEST_F(NestLog, AFileWithoutAMarkGetsNone) {
  machine.files().WriteFile(kFile, "ab");
  const CNestLog scope(nullptr);
  EXPECT_EQ(Log(), "ab" + Utf16(u"1000;2000;   10:00.000; \n"
                                u"1000;2000;   10:00.000; ---\n"));
}

TEST_F(NestLog, LiesInTheRootOfCWhenTheFolderIsUnknown) {
  inside.process().FailNext("SHGetSpecialFolderPathW", platform::ERROR_ACCESS_DENIED);
  const CNestLog scope(nullptr);
  EXPECT_TRUE(machine.files().Exists(u"C:\\VGL4.LOG"));
  EXPECT_EQ(Log(), "(no file)");
}

TEST_F(NestLog, EveryScopeFindsItsFileAnew) {
  machine.files().MakeFolder(u"D:\\Common\\KAVRO\\VGL3");
  const CNestLog outer(nullptr);
  machine.system().commonAppData = u"D:\\Common";
  const CNestLog inner(nullptr);
  Forget();
  outer.Print(u"a\n");
  EXPECT_EQ(Log(), Marked(u"1000;2000;   10:00.000;     a\n"));
  EXPECT_TRUE(machine.files().Exists(u"D:\\Common\\KAVRO\\VGL3\\VGL4.LOG"));
}

TEST_F(NestLog, CharactersBeyondAsciiAreWrittenAsTheyAre) {
  const CNestLog scope(nullptr);
  Forget();
  scope.Print(u"%s\n", u"\u05D0\u30D7");
  EXPECT_EQ(Log(), Marked(u"1000;2000;   10:00.000;   \u05D0\u30D7\n"));
}

TEST_F(NestLog, WithoutTheMutexTheFileIsNotTouched) {
  const CNestLog scope(nullptr);
  Forget();
  inside.process().FailNext("CreateMutexW", platform::ERROR_ACCESS_DENIED);
  scope.Print(u"a\n");
  EXPECT_EQ(Log(), "(no file)");
}

TEST_F(NestLog, AWaitThatFailsCostsNothing) {
  const CNestLog scope(nullptr);
  Forget();
  inside.process().FailNext("WaitForSingleObject", platform::ERROR_INVALID_HANDLE);
  scope.Print(u"a\n");
  EXPECT_EQ(Log(), Marked(u"1000;2000;   10:00.000;   a\n"));
}

TEST_F(NestLog, AFileThatCantBeOpenedCostsTheLineAndNotTheNext) {
  const CNestLog scope(nullptr);
  Forget();
  inside.process().FailNext("CreateFileW", platform::ERROR_ACCESS_DENIED);
  scope.Print(u"a\n");
  EXPECT_TRUE(inside.process().Ledger().empty());
  EXPECT_FALSE(machine.objects().Exists(kMutex));
  scope.Print(u"b\n");
  EXPECT_EQ(Log(), Marked(u"1000;2000;   10:00.000;   b\n"));
}

TEST_F(NestLog, ASizeThatIsNotToldLeavesTheMarkOut) {
  const CNestLog scope(nullptr);
  Forget();
  inside.process().FailNext("GetFileSize", platform::ERROR_ACCESS_DENIED);
  scope.Print(u"a\n");
  EXPECT_EQ(Log(), Utf16(u"1000;2000;   10:00.000;   a\n"));
}

TEST_F(NestLog, ASeekThatFailsLeavesTheMarkAndNoLine) {
  const CNestLog scope(nullptr);
  Forget();
  inside.process().FailNext("SetFilePointer", platform::ERROR_ACCESS_DENIED);
  scope.Print(u"a\n");
  EXPECT_EQ(Log(), "\xFF\xFE");
  EXPECT_TRUE(inside.process().Ledger().empty());
  EXPECT_FALSE(machine.objects().Exists(kMutex));
}

TEST_F(NestLog, AFileThatAnotherProgramWritesIsLeftAlone) {
  machine.files().WriteFile(kFile, "ab");
  platform::OwnedFile writer(platform::Os().files.CreateFileW(
      kFile, platform::GENERIC_WRITE, platform::FILE_SHARE_READ | platform::FILE_SHARE_WRITE,
      platform::OPEN_EXISTING, platform::FILE_ATTRIBUTE_NORMAL));
  ASSERT_TRUE(writer);
  const CNestLog scope(u"a");
  EXPECT_EQ(Log(), "ab");
  writer.Reset();
  scope.Print(u"b\n");
  EXPECT_EQ(Log(), "ab" + Utf16(u"1000;2000;   10:00.000;   b\n"));
}

TEST_F(NestLog, TheMutexGoesWithTheLine) {
  int lines = 0;
  int guarded = 0;
  machine.files().OnAppend([&](std::uint32_t, const std::u16string&, std::string_view) {
    ++lines;
    guarded += machine.objects().Exists(kMutex) ? 1 : 0;
  });
  const CNestLog scope(u"a");
  EXPECT_EQ(lines, 3);
  EXPECT_EQ(guarded, 3);
  EXPECT_FALSE(machine.objects().Exists(kMutex));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(NestLog, TheFileIsClosedBeforeTheMutex) {
  const CNestLog scope(nullptr);
  inside.process().FailNext("CloseHandle", platform::ERROR_INVALID_HANDLE);
  scope.Print(u"a\n");
  // The first closing of the line failed: what is left over is what was closed first.
  const auto left = inside.process().Ledger();
  ASSERT_EQ(left.size(), 1u);
  EXPECT_EQ(left[0].substr(0, 5), u"file ");
}

TEST_F(NestLog, AProcessWaitsItsTurnAndTellsTheTimeOfItsWriting) {
  const CNestLog scope(nullptr);
  Forget();
  machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    const platform::OwnedObject mutex(platform::Os().objects.CreateMutexW(nullptr, true, kMutex));
    platform::Os().process.Sleep(5000);
    platform::Os().objects.ReleaseMutex(mutex.get());
    return 0u;
  });
  machine.Settle();
  scope.Print(u"a\n");
  EXPECT_EQ(Log(), Marked(u"1000;2000;   10:05.000;   a\n"));
}

TEST_F(NestLog, TheWaitForTheMutexHasNoLimit) {
  const CNestLog scope(nullptr);
  Forget();
  machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    const platform::OwnedObject mutex(platform::Os().objects.CreateMutexW(nullptr, true, kMutex));
    platform::Os().process.Sleep(3600000);
    platform::Os().objects.ReleaseMutex(mutex.get());
    return 0u;
  });
  machine.Settle();
  scope.Print(u"a\n");
  EXPECT_EQ(machine.now(), 3600000u);
  EXPECT_EQ(Log(), Marked(u"1000;2000;   70:00.000;   a\n"));
}

TEST_F(NestLog, AProcessThatIsEndedWhileItWaitsLeavesNoLine) {
  sim::Process& waiting = machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    SetNestLogEnabled(1);
    const CNestLog scope(u"never entered");
    return 0u;
  });
  const platform::OwnedObject mutex(platform::Os().objects.CreateMutexW(nullptr, true, kMutex));
  machine.Settle();
  EXPECT_FALSE(waiting.ended());
  machine.EndProcess(waiting);
  platform::Os().objects.ReleaseMutex(mutex.get());
  EXPECT_TRUE(waiting.ended());
  EXPECT_EQ(Log(), "(no file)");
}

TEST_F(NestLog, TwoProcessesThatPrintAtOnceKeepTheirLinesWhole) {
  // Every seed lets the processes take turns differently, between any two calls.
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    sim::Machine busy(seed);
    busy.files().MakeFolder(u"C:\\ProgramData\\KAVRO\\VGL3");
    const auto body = [](const char16_t*) {
      SetNestLogEnabled(1);
      const CNestLog scope(nullptr);
      return 0u;
    };
    busy.StartProcess(u"C:\\a.exe", u"", body);
    busy.StartProcess(u"C:\\b.exe", u"", body);
    busy.Settle();
    const std::string log = busy.files().ReadFile(kFile).value_or("");
    const std::size_t line = Utf16(u"1000;2000;   10:00.000; ").size();
    // One mark and four headers, two with an empty line, two with "---".
    EXPECT_EQ(log.size(), 2 + 4 * line + 2 * Utf16(u"\n").size() + 2 * Utf16(u"---\n").size())
        << "seed " << seed;
    EXPECT_EQ(log.substr(0, 2), "\xFF\xFE") << "seed " << seed;
    EXPECT_EQ(log.find("\xFF\xFE", 2), std::string::npos) << "seed " << seed;
  }
}

TEST_F(NestLog, AppendRawWritesTheTextAloneToAMarkedFile) {
  CNestLog::AppendRaw(u"C:\\raw.txt", u"%s=%d\n", u"a", 5);
  CNestLog::AppendRaw(u"C:\\raw.txt", u"b");
  EXPECT_EQ(machine.files().ReadFile(u"C:\\raw.txt"), Marked(u"a=5\nb"));
  EXPECT_EQ(Log(), "(no file)");
}

TEST_F(NestLog, AppendRawNeedsNoMutex) {
  const platform::OwnedObject mutex(platform::Os().objects.CreateMutexW(nullptr, false, kMutex));
  const auto calls = inside.process().calls();
  CNestLog::AppendRaw(u"C:\\raw.txt", u"a");
  // Opening, size, mark, seeking, writing, closing.
  EXPECT_EQ(inside.process().calls() - calls, 6u);
}

TEST_F(NestLog, AppendRawDoesNotAskForTheSwitch) {
  SetNestLogEnabled(0);
  CNestLog::AppendRaw(u"C:\\raw.txt", u"a");
  EXPECT_EQ(machine.files().ReadFile(u"C:\\raw.txt"), Marked(u"a"));
}

TEST_F(NestLog, AppendRawToNowhereIsSilent) {
  CNestLog::AppendRaw(u"C:\\nowhere\\raw.txt", u"a");
  EXPECT_FALSE(machine.files().Exists(u"C:\\nowhere\\raw.txt"));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(NestLog, ALineCostsTenCallsOnceTheFileIsThere) {
  const CNestLog scope(nullptr);
  const auto calls = inside.process().calls();
  scope.Print(u"a\n");
  // Mutex made, taken, given back, closed; file opened, size, seek, ticks, write, closed.
  EXPECT_EQ(inside.process().calls() - calls, 10u);
}

TEST(NestLogFaults, NoFailingCallLeaksOrShiftsTheDepth) {
  for (std::uint64_t number = 1;; ++number) {
    sim::Machine machine;
    machine.files().MakeFolder(u"C:\\ProgramData\\KAVRO\\VGL3");
    sim::Inside inside(machine);
    SetNestLogEnabled(1);
    inside.process().FailCall(number);
    {
      const CNestLog scope(u"a");
      scope.Print(u"b\n");
      scope.PrintBinaryStatus("\x01", 1, 1);
      scope.PrintBinaryStatus("\x01", 1, 2);
      CNestLog::DumpHexTable(u"C:\\table.txt", "\x01", 1, u"title\n");
    }
    EXPECT_EQ(g_nNestDepth.get()[0], 0u) << "call " << number;
    EXPECT_TRUE(inside.process().Ledger().empty()) << "call " << number;
    EXPECT_FALSE(machine.objects().Exists(kMutex)) << "call " << number;
    if (inside.process().calls() < number) {
      EXPECT_GT(number, 60u);  // the loop did reach the table
      break;
    }
  }
}

}  // namespace
}  // namespace vgl
