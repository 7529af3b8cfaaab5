#include "Common/open_printer_log.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace vgl {
namespace {

constexpr char16_t kFile[] = u"C:\\ProgramData\\KAVRO\\KVOPENPRINTER.log";
constexpr char16_t kMutex[] = u"Global\\KvOpnePrinterLogMutex";
constexpr char16_t kAgent[] = u"C:\\Program Files\\KAVRO\\K_QD21TR.EXE";
// Process 4096, thread 8192, on the morning that every machine starts on.
constexpr char kHeader[] = "2026/01/05 09:00:00 PrcID=00004096 ThrID=00008192 MName=K_QD21TR.EXE: ";

class OpenPrinterLog : public testing::Test {
 protected:
  OpenPrinterLog() { machine.files().WriteFile(kFile, ""); }

  std::string Log() { return machine.files().ReadFile(kFile).value_or("(no file)"); }

  sim::Machine machine;
  sim::Inside inside{machine, kAgent};
};

TEST_F(OpenPrinterLog, AnEmptyFileInPlaceGetsALineForEachPrint) {
  const CKvOpenPrinterLog log;
  log.Print(u"OpenPriner PrnName[%s] hPrn[%ld]\n", u"Kavro 3", 68);
  log.Print(u"ClosePriner hPrinter[%ld]\n", 68);
  EXPECT_EQ(Log(), std::string(kHeader) + "OpenPriner PrnName[Kavro 3] hPrn[68]\r\n" + kHeader +
                       "ClosePriner hPrinter[68]\r\n");
}

TEST_F(OpenPrinterLog, WithoutTheFileNothingIsWritten) {
  machine.files().Remove(kFile);
  const CKvOpenPrinterLog log;
  log.Print(u"a\n");
  EXPECT_EQ(Log(), "(no file)");
}

TEST_F(OpenPrinterLog, OnceTheFileIsGoneTheNextObjectIsSilent) {
  { CKvOpenPrinterLog().Print(u"a\n"); }
  EXPECT_EQ(Log(), std::string(kHeader) + "a\r\n");
  machine.files().Remove(kFile);
  { CKvOpenPrinterLog().Print(u"b\n"); }
  EXPECT_EQ(Log(), "(no file)");
}

TEST_F(OpenPrinterLog, OnceTheFileIsThereTheNextObjectWrites) {
  machine.files().Remove(kFile);
  { CKvOpenPrinterLog().Print(u"a\n"); }
  machine.files().WriteFile(kFile, "");
  { CKvOpenPrinterLog().Print(u"b\n"); }
  EXPECT_EQ(Log(), std::string(kHeader) + "b\r\n");
}

TEST_F(OpenPrinterLog, AnObjectThatFoundTheFileMakesItAnewWhenItHasGone) {
  const CKvOpenPrinterLog log;
  machine.files().Remove(kFile);
  log.Print(u"a\n");
  EXPECT_EQ(Log(), std::string(kHeader) + "a\r\n");
}

TEST_F(OpenPrinterLog, AnObjectThatFoundNoFileStaysSilent) {
  machine.files().Remove(kFile);
  const CKvOpenPrinterLog log;
  machine.files().WriteFile(kFile, "");
  log.Print(u"a\n");
  EXPECT_EQ(Log(), "");
}

TEST_F(OpenPrinterLog, NoCallIsMadeForALineThatIsNotWritten) {
  machine.files().Remove(kFile);
  const CKvOpenPrinterLog log;
  const auto calls = inside.process().calls();
  log.Print(u"%s\n", u"a");
  EXPECT_EQ(inside.process().calls(), calls);
}

TEST_F(OpenPrinterLog, AnUnknownFolderLeavesItOff) {
  machine.files().WriteFile(u"\\KAVRO\\KVOPENPRINTER.log", "");
  inside.process().FailNext("SHGetSpecialFolderPathW", platform::ERROR_ACCESS_DENIED);
  const CKvOpenPrinterLog log;
  EXPECT_EQ(inside.process().calls(), 1u);  // nothing to look for
  log.Print(u"a\n");
  EXPECT_EQ(inside.process().calls(), 1u);
}

TEST_F(OpenPrinterLog, TheCommonDataFolderIsMadeWhenItIsMissing) {
  machine.system().commonAppData = u"D:\\Common";
  const CKvOpenPrinterLog log;
  EXPECT_TRUE(machine.files().Exists(u"D:\\Common"));
  EXPECT_FALSE(machine.files().Exists(u"D:\\Common\\KAVRO"));
}

TEST_F(OpenPrinterLog, AFolderOfTheFilesNameSwitchesItOnInVain) {
  machine.files().Remove(kFile);
  machine.files().MakeFolder(kFile);
  const CKvOpenPrinterLog log;
  const auto calls = inside.process().calls();
  log.Print(u"a\n");
  EXPECT_GT(inside.process().calls(), calls);
  EXPECT_EQ(Log(), "(no file)");
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(OpenPrinterLog, ALineGoesBehindWhatTheFileHolds) {
  machine.files().WriteFile(kFile, "older\r\n");
  CKvOpenPrinterLog().Print(u"a\n");
  EXPECT_EQ(Log(), std::string("older\r\n") + kHeader + "a\r\n");
}

TEST_F(OpenPrinterLog, NoNewlineIsAdded) {
  const CKvOpenPrinterLog log;
  log.Print(u"a");
  log.Print(u"b\n");
  EXPECT_EQ(Log(), std::string(kHeader) + "a" + kHeader + "b\r\n");
}

TEST_F(OpenPrinterLog, APrintersNameIsNoTemplate) {
  CKvOpenPrinterLog().Print(u"PrnName=[%s]\n", u"100% %d %s");
  EXPECT_EQ(Log(), std::string(kHeader) + "PrnName=[100% %d %s]\r\n");
}

TEST_F(OpenPrinterLog, ANullPrinterNameIsShownAsSuch) {
  const char16_t* const name = nullptr;
  CKvOpenPrinterLog().Print(u"PrnName=[%s]\n", name);
  EXPECT_EQ(Log(), std::string(kHeader) + "PrnName=[(null)]\r\n");
}

TEST_F(OpenPrinterLog, TheDateIsTheLocalOneWithLeadingZeros) {
  machine.system().startTime = {2024, 5, 7, 3, 4, 5, 999};
  CKvOpenPrinterLog().Print(u"a\n");
  EXPECT_EQ(Log(), "2024/05/07 03:04:05 PrcID=00004096 ThrID=00008192 MName=K_QD21TR.EXE: a\r\n");
}

TEST(OpenPrinterLogModule, AProgramPathWithoutAFolderGivesNoName) {
  sim::Machine machine;
  machine.files().WriteFile(kFile, "");
  sim::Inside inside(machine, u"K_QD21TR.EXE");
  CKvOpenPrinterLog().Print(u"a\n");
  EXPECT_EQ(machine.files().ReadFile(kFile),
            "2026/01/05 09:00:00 PrcID=00004096 ThrID=00008192 MName=: a\r\n");
}

TEST_F(OpenPrinterLog, AnUnknownProgramPathGivesNoName) {
  const CKvOpenPrinterLog log;
  inside.process().FailNext("GetModuleFileNameW", platform::ERROR_ACCESS_DENIED);
  log.Print(u"a\n");
  EXPECT_EQ(Log(), "2026/01/05 09:00:00 PrcID=00004096 ThrID=00008192 MName=: a\r\n");
}

TEST_F(OpenPrinterLog, TheMutexGoesWithTheLine) {
  bool wasThere = false;
  machine.files().OnAppend([&](std::uint32_t, const std::u16string&, std::string_view) {
    wasThere = machine.objects().Exists(kMutex);
  });
  const CKvOpenPrinterLog log;
  log.Print(u"a\n");
  EXPECT_EQ(Log(), std::string(kHeader) + "a\r\n");
  EXPECT_TRUE(wasThere);
  EXPECT_FALSE(machine.objects().Exists(kMutex));
  EXPECT_TRUE(inside.process().Ledger().empty());
}

TEST_F(OpenPrinterLog, WithoutTheMutexNothingIsWritten) {
  const CKvOpenPrinterLog log;
  inside.process().FailNext("CreateMutexW", platform::ERROR_ACCESS_DENIED);
  log.Print(u"a\n");
  EXPECT_EQ(Log(), "");
}

TEST_F(OpenPrinterLog, AWaitThatFailsCostsNothing) {
  const CKvOpenPrinterLog log;
  inside.process().FailNext("WaitForSingleObject", platform::ERROR_INVALID_HANDLE);
  log.Print(u"a\n");
  EXPECT_EQ(Log(), std::string(kHeader) + "a\r\n");
}

TEST_F(OpenPrinterLog, AFileThatCantBeOpenedCostsTheLineAndNotTheNext) {
  const CKvOpenPrinterLog log;
  inside.process().FailNext("CreateFileW", platform::ERROR_ACCESS_DENIED);
  log.Print(u"a\n");
  EXPECT_FALSE(machine.objects().Exists(kMutex));
  log.Print(u"b\n");
  EXPECT_EQ(Log(), std::string(kHeader) + "b\r\n");
}

TEST_F(OpenPrinterLog, AFileThatAnotherProgramWritesIsLeftAlone) {
  const CKvOpenPrinterLog log;
  platform::OwnedFile writer(platform::Os().files.CreateFileW(
      kFile, platform::GENERIC_WRITE, platform::FILE_SHARE_READ | platform::FILE_SHARE_WRITE,
      platform::OPEN_EXISTING, platform::FILE_ATTRIBUTE_NORMAL));
  ASSERT_TRUE(writer);
  log.Print(u"a\n");
  EXPECT_EQ(Log(), "");
  writer.Reset();
  log.Print(u"b\n");
  EXPECT_EQ(Log(), std::string(kHeader) + "b\r\n");
}

TEST_F(OpenPrinterLog, AnotherProcessWaitsItsTurnAndKeepsItsTime) {
  machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    const platform::OwnedObject mutex(platform::Os().objects.CreateMutexW(nullptr, true, kMutex));
    platform::Os().process.Sleep(5000);
    platform::Os().objects.ReleaseMutex(mutex.get());
    return 0u;
  });
  machine.Settle();
  const CKvOpenPrinterLog log;
  log.Print(u"a\n");
  EXPECT_EQ(machine.now(), 5000u);
  EXPECT_EQ(Log(), std::string(kHeader) + "a\r\n");  // 09:00:00, as it was before the wait
}

TEST_F(OpenPrinterLog, TheWaitForTheMutexHasNoLimit) {
  machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    const platform::OwnedObject mutex(platform::Os().objects.CreateMutexW(nullptr, true, kMutex));
    platform::Os().process.Sleep(3600000);
    platform::Os().objects.ReleaseMutex(mutex.get());
    return 0u;
  });
  machine.Settle();
  CKvOpenPrinterLog().Print(u"a\n");
  EXPECT_EQ(machine.now(), 3600000u);
  EXPECT_EQ(Log(), std::string(kHeader) + "a\r\n");
}

TEST_F(OpenPrinterLog, AMutexLeftByADeadProcessHoldsNobodyUp) {
  sim::Process& dead = machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    const platform::OwnedObject mutex(platform::Os().objects.CreateMutexW(nullptr, true, kMutex));
    platform::Os().process.Sleep(platform::INFINITE);
    return 0u;
  });
  machine.Settle();
  const platform::OwnedObject keptAlive(
      platform::Os().objects.CreateMutexW(nullptr, false, kMutex));
  machine.EndProcess(dead);
  CKvOpenPrinterLog().Print(u"a\n");
  EXPECT_EQ(Log(), std::string(kHeader) + "a\r\n");
}

TEST_F(OpenPrinterLog, ALineCostsTwelveCalls) {
  const CKvOpenPrinterLog log;
  const auto calls = inside.process().calls();
  log.Print(u"a\n");
  // Time, process, thread, module; mutex made, taken, given back, closed; file opened, code page,
  // write, file closed.
  EXPECT_EQ(inside.process().calls() - calls, 12u);
}

TEST_F(OpenPrinterLog, AnObjectThatWritesNothingCostsTwoCalls) {
  const CKvOpenPrinterLog log;
  EXPECT_EQ(inside.process().calls(), 2u);  // the folder and the file's existence
}

TEST_F(OpenPrinterLog, IsDestroyedThroughItsBase) {
  struct Derived : CKvOpenPrinterLog {
    explicit Derived(bool& flag) : gone(flag) {}
    ~Derived() override { gone = true; }
    bool& gone;
  };
  bool gone = false;
  std::unique_ptr<CKvOpenPrinterLog> log = std::make_unique<Derived>(gone);
  log.reset();
  EXPECT_TRUE(gone);
}

TEST(OpenPrinterLogTurns, LinesOfTwoProcessesAtOnceAreAllThereAndWhole) {
  // Every seed lets the processes take turns differently, between any two calls.
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    sim::Machine machine(seed);
    machine.files().WriteFile(kFile, "");
    const auto body = [](const char16_t*) {
      CKvOpenPrinterLog().Print(u"a\n");
      return 0u;
    };
    machine.StartProcess(u"C:\\x.exe", u"", body);
    machine.StartProcess(u"C:\\x.exe", u"", body);
    machine.Settle();
    const std::string first =
        "2026/01/05 09:00:00 PrcID=00004096 ThrID=00008196 MName=x.exe: a\r\n";
    const std::string second =
        "2026/01/05 09:00:00 PrcID=00004100 ThrID=00008200 MName=x.exe: a\r\n";
    const std::string log = machine.files().ReadFile(kFile).value_or("(no file)");
    EXPECT_TRUE(log == first + second || log == second + first) << "seed " << seed << ": " << log;
  }
}

TEST(OpenPrinterLogFaults, NoFailingCallLeaks) {
  for (std::uint64_t number = 1;; ++number) {
    sim::Machine machine;
    machine.files().WriteFile(kFile, "");
    sim::Inside inside(machine, kAgent);
    inside.process().FailCall(number);
    const CKvOpenPrinterLog log;
    log.Print(u"a\n");
    log.Print(u"b\n");
    EXPECT_TRUE(inside.process().Ledger().empty()) << "call " << number;
    EXPECT_FALSE(machine.objects().Exists(kMutex)) << "call " << number;
    if (inside.process().calls() < number) {
      EXPECT_GT(number, 20u);  // the loop did reach both lines
      break;
    }
  }
}

}  // namespace
}  // namespace vgl
