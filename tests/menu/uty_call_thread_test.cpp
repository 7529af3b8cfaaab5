// What the thread of a utility call does: library, export, count, and how it ends.
#include <memory>
#include <new>
#include <optional>
#include <set>

#include "menu/utility_library_exports.h"
#include "platform/owned.h"
#include "tests/menu/uty_call_fixture.h"
#include "tests/support/sim_desk.h"

namespace vgl {
namespace {

using namespace platform;

using Names = std::vector<std::string>;
using Numbers = std::vector<std::uint32_t>;

class UtyCallThread : public UtyCallTest {
 protected:
  // The counters with 1 at one place.
  static Numbers OneAt(std::size_t index) {
    Numbers counters(14, 0);
    counters[index] = 1;
    return counters;
  }
  bool LibraryIsLoaded() {
    for (const std::u16string& held : inside.process().Ledger())
      if (held == u"library C:\\D\\u.dll") return true;
    return false;
  }
};

// --- The table of exports

TEST_F(UtyCallThread, CallsFourOfTheThirteenAndCountsThreeOfThose) {
  const struct {
    const char16_t* number;
    const char* name;
    bool isCalled;
    const char* logged;
    std::optional<std::size_t> counter;
  } rows[] = {
      {u"1", "UtPrintNozzleTestPatternW", true, "pfPrintNozzleW", 4},
      {u"2", "UtCleanHeadW", true, "pfCleaningW", 5},
      {u"3", "UtAlignGapW", true, "pfAlignGapW", 6},
      {u"4", "WndInkReplacementW", false, "default", {}},
      {u"5", "UtInkReplacementW", false, "default", {}},
      {u"6", "UtSetupW", false, "default", {}},
      {u"7", "UtAbsInkRepW", false, "default", {}},
      {u"8", "UtSetupfromVglW", false, "default", {}},
      {u"9", "UtAlignCutterW", false, "default", {}},
      {u"10", "UtCleanCutterW", false, "default", {}},
      {u"11", "UtAutoCleanHeadW", true, "pfAutoCleanHeadW", {}},
      {u"12", "UtSetupAutoCleanHeadW", false, "default", {}},
      {u"13", "WndMaintenanceTankReplacementW", false, "default", {}},
  };
  for (const auto& [number, name, isCalled, logged, counter] : rows) {
    SCOPED_TRACE(name);
    g_VglLog.get().Clear();
    machine.files().Remove(desk::kTrayLogFile);
    Run((std::u16string(kLibrary) + u" /U" + number).c_str());
    EXPECT_EQ(library.Calls(name), isCalled ? 1U : 0U);
    EXPECT_EQ(LogTexts(), Names{logged});
    EXPECT_EQ(Counts(), counter ? OneAt(*counter) : Numbers{});
    EXPECT_FALSE(LibraryIsLoaded());
    EXPECT_TRUE(SemaphoreIsFree());
  }
  EXPECT_EQ(Called(), (Names{"UtPrintNozzleTestPatternW", "UtCleanHeadW", "UtAlignGapW",
                             "UtAutoCleanHeadW"}));
}

TEST_F(UtyCallThread, LooksUpAlsoWhatItDoesntCall) {
  TrayLogInit(nullptr);  // whose calls would be counted too
  call->hSemaphore = Os().objects.CreateSemaphoreW(1, 1, kSemaphore);
  for (const char16_t* param : {u"C:\\D\\u.dll /U6", u"C:\\D\\u.dll /U13"}) {
    // The wait for the semaphore, CreateThread, the wait for the thread; LoadLibraryW, and then.
    inside.process().FailCall(5);
    Run(param);
    EXPECT_EQ(inside.process().failedOperation(), "GetProcAddress");
    EXPECT_TRUE(SemaphoreIsFree());
  }
}

TEST_F(UtyCallThread, LoadsTheLibraryAndCallsNothingForANumberOutsideTheTable) {
  TrayLogInit(nullptr);
  for (const char16_t* number : {u"0", u"14", u"99", u"-1", u"-2", u"99999999999", u""}) {
    SCOPED_TRACE(testing::PrintToString(std::u16string(number)));
    const std::uint64_t before = inside.process().calls();
    Start((std::u16string(kLibrary) + u" /U" + number).c_str());
    const std::uint64_t started = inside.process().calls();
    // Making the semaphore comes on top at the first.
    EXPECT_EQ(started - before, std::u16string_view(number) == u"0" ? 3U : 2U);
    AwaitThread();
    // LoadLibraryW, FreeLibrary, ReleaseSemaphore; and the wait for the thread.
    EXPECT_EQ(inside.process().calls() - started, 4U);
  }
  EXPECT_TRUE(Called().empty());
  EXPECT_TRUE(Counts().empty());
}

TEST_F(UtyCallThread, ANumberOutsideTheTableIsLoggedAsDefault) {
  Run(u"C:\\D\\u.dll /U99");
  EXPECT_EQ(LogTexts(), Names{"default"});
}

TEST_F(UtyCallThread, AMissingExportIsNeitherCalledNorCounted) {
  library.RemoveExport("UtCleanHeadW");
  Run(u"C:\\D\\u.dll /U2");
  EXPECT_TRUE(Called().empty());
  EXPECT_TRUE(Counts().empty());
  EXPECT_TRUE(LogTexts().empty());
  EXPECT_FALSE(LibraryIsLoaded());
  EXPECT_TRUE(SemaphoreIsFree());
}

TEST_F(UtyCallThread, AMissingExportDoesntHinderTheOthers) {
  library.RemoveExport("UtCleanHeadW");
  Run(u"C:\\D\\u.dll /U2");
  Run(u"C:\\D\\u.dll /U1");
  EXPECT_EQ(Called(), Names{"UtPrintNozzleTestPatternW"});
  EXPECT_EQ(Counts(), OneAt(4));
}

// --- The library

TEST_F(UtyCallThread, AMissingLibraryIsLoggedAndTheSemaphoreGivenBack) {
  machine.files().WriteFile(u"C:\\D\\text.dll", "no library");
  for (const char16_t* param :
       {u"C:\\D\\gone.dll /U2", u"C:\\D\\text.dll /U2", u"C:\\D /U2", u" /U2"}) {
    SCOPED_TRACE(testing::PrintToString(std::u16string(param)));
    machine.files().Remove(desk::kTrayLogFile);
    Run(param);
    EXPECT_EQ(LogTexts(), Names{"Error LoadLibrary"});
    EXPECT_TRUE(SemaphoreIsFree());
  }
  EXPECT_TRUE(Counts().empty());
}

TEST_F(UtyCallThread, TheLibraryIsLoadedOnlyForTheCall) {
  Utility().milliseconds = 1000;
  Start(u"C:\\D\\u.dll /U2");
  EXPECT_FALSE(LibraryIsLoaded());
  Os().process.Sleep(500);
  EXPECT_TRUE(LibraryIsLoaded());
  AwaitThread();
  EXPECT_FALSE(LibraryIsLoaded());
}

TEST_F(UtyCallThread, TheLibraryIsFreedBeforeTheSemaphoreIsGivenBack) {
  Utility().milliseconds = 1000;
  for (const char16_t* param : {u"C:\\D\\u.dll /U2", u"C:\\D\\u.dll /U6"}) {
    Start(param);
    EXPECT_EQ(Os().objects.WaitForSingleObject(call->hSemaphore, INFINITE), WAIT_OBJECT_0);
    EXPECT_FALSE(LibraryIsLoaded());
    Os().objects.ReleaseSemaphore(call->hSemaphore, 1, nullptr);
  }
}

TEST_F(UtyCallThread, AnExchangedLibraryCountsFromTheNextCallOn) {
  Run(u"C:\\D\\u.dll /U2");
  library.RemoveExport("UtCleanHeadW");
  Run(u"C:\\D\\u.dll /U2");
  EXPECT_EQ(library.Calls("UtCleanHeadW"), 1U);
}

// --- Counting

TEST_F(UtyCallThread, AUtilityCountsWhenItHasReturned) {
  Utility().milliseconds = 1000;
  Start(u"C:\\D\\u.dll /U1");
  Os().process.Sleep(999);
  EXPECT_TRUE(Counts().empty());
  AwaitThread();
  EXPECT_EQ(Counts(), OneAt(4));
}

TEST_F(UtyCallThread, AModelThatIsntCountedRunsItsUtilitiesAllTheSame) {
  machine.files().WriteFile(desk::kProfilePath, "[S7200]\r\nVGL_LOG=0\r\n");
  Run(u"C:\\D\\u.dll /U1");
  EXPECT_EQ(Called(), Names{"UtPrintNozzleTestPatternW"});
  EXPECT_TRUE(Counts().empty());
  EXPECT_TRUE(SemaphoreIsFree());
}

// --- The end

TEST_F(UtyCallThread, ItsExitCodeIsZero) {
  for (const char16_t* path : {kLibrary, u"C:\\gone.dll"}) {
    call->hSemaphore = Os().objects.CreateSemaphoreW(0, 1, nullptr);
    ASSERT_TRUE(call->szModulePath.Assign(path));
    call->nFunction = 2;
    EXPECT_EQ(CUtyCall::UtyCallMain(call.get()), 0U);
    EXPECT_TRUE(SemaphoreIsFree());
    Os().objects.CloseHandle(call->hSemaphore);
  }
  call->hSemaphore = HANDLE{};
}

void RunOutOfMemory(const char16_t*, const char16_t*, const char16_t*, const char16_t*) {
  throw std::bad_alloc();
}

TEST_F(UtyCallThread, WithoutMemoryTheProcessEnds) {
  library.RemoveExport("UtCleanHeadW");
  library.Export<&RunOutOfMemory>(99, "UtCleanHeadW");
  EXPECT_TRUE(inside.EndsProcess([this] { Run(u"C:\\D\\u.dll /U2"); }));
  EXPECT_EQ(inside.process().exitCode(), 3U);
}

TEST_F(UtyCallThread, DestroyingTheObjectWaitsForTheUtility) {
  Utility().milliseconds = 1000;
  Start(u"C:\\D\\u.dll /U2");
  Os().process.Sleep(100);
  call.reset();
  EXPECT_EQ(machine.now(), 1000U);
  EXPECT_EQ(Utility().ended, 1U);
  EXPECT_EQ(Counts(), OneAt(5));
}

TEST_F(UtyCallThread, DestroyingTheObjectDoesntWaitForAThreadThatDidntStart) {
  Run(u"C:\\D\\u.dll /U2");
  inside.process().FailNext("CreateThread", ERROR_NOT_ENOUGH_MEMORY);
  Start(u"C:\\D\\u.dll /U2");
  call.reset();
  EXPECT_EQ(machine.now(), 0U);
}

// Whoever has waited may destroy the object at once.
TEST(UtyCallThreads, TheObjectGoesWithNothingButItsThreadsHandleLeftWhateverTheInterleaving) {
  for (std::uint64_t seed = 0; seed <= 60; ++seed) {
    for (const char16_t* param : {u"C:\\D\\u.dll /U2", u"C:\\D\\gone.dll /U2"}) {
      sim::Machine machine(seed);
      sim::Inside inside(machine);
      desk::SetUpDefaultMachine(machine);
      desk::EnableTrayLog(machine);
      TrayLogInit(TrayLogPath().c_str());
      desk::AddUtilityLibrary(machine, u"C:\\D\\u.dll");
      auto call = std::make_unique<CUtyCall>();
      call->StartUtyCall(desk::kPrinterName, param);
      EXPECT_EQ(call->CheckUtyCall(1), 1);
      const HANDLE thread = call->hThread;
      call.reset();
      EXPECT_EQ(Os().objects.WaitForSingleObject(thread, 600000), WAIT_OBJECT_0);
      EXPECT_EQ(inside.process().Ledger(),
                std::vector<std::u16string>{u"thread of C:\\Program Files\\KAVRO\\test.exe"});
    }
  }
}

// Where a failed call leaves the semaphore given back, by the thread or by the start.
TEST(UtyCallThreads, AfterAnyFailedCallButTheThreadsStartThePrinterIsFree) {
  std::set<std::string> failed;
  for (std::uint64_t number = 1;; ++number) {
    sim::Machine machine;
    sim::Inside inside(machine);
    desk::SetUpDefaultMachine(machine);
    desk::AddUtilityLibrary(machine, u"C:\\D\\u.dll");
    CUtyCall call;
    const std::uint64_t before = inside.process().calls();
    inside.process().FailCall(number);
    call.StartUtyCall(desk::kPrinterName, u"C:\\D\\u.dll /U2");
    Os().process.Sleep(1000);
    const std::string operation = inside.process().failedOperation();
    const bool isDone = before + number > inside.process().calls();
    inside.process().FailCall(1000000);
    failed.insert(operation);
    EXPECT_EQ(call.CheckUtyCall(0), operation == "CreateThread" ? 0 : 1) << operation;
    if (isDone) break;
    ASSERT_LT(number, 1000U);
  }
  for (const char* operation : {"CreateSemaphoreW", "WaitForSingleObject", "CreateThread",
                                "LoadLibraryW", "GetProcAddress", "OpenPrinterW"})
    EXPECT_TRUE(failed.contains(operation)) << operation;
}

}  // namespace
}  // namespace vgl
