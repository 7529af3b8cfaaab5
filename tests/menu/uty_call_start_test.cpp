// StartUtyCall: the printer's semaphore, the command text, the thread that is started.
#include <cstdint>
#include <limits>

#include "platform/owned.h"
#include "tests/menu/uty_call_fixture.h"

namespace vgl {
namespace {

using namespace platform;

using Names = std::vector<std::string>;
using Texts = std::vector<std::u16string>;

class StartUtyCall : public UtyCallTest {
 protected:
  // Nothing was started, and the next call is free to.
  void ExpectNothingStarted() {
    EXPECT_EQ(call->hThread, HANDLE{});
    EXPECT_TRUE(Utility().calls.empty());
    EXPECT_TRUE(SemaphoreIsFree());
    EXPECT_TRUE(LogTexts().empty());
  }
};

// --- The thread

TEST_F(StartUtyCall, ReturnsAtOnceAndCallsOnAThreadOfItsOwn) {
  Utility().milliseconds = 5000;
  const std::uint32_t ownThread = Os().process.GetCurrentThreadId();
  Start(u"C:\\D\\u.dll /U2");
  EXPECT_EQ(machine.now(), 0U);
  AwaitThread();
  EXPECT_EQ(machine.now(), 5000U);
  ASSERT_EQ(Called(), Names{"UtCleanHeadW"});
  EXPECT_NE(Utility().calls[0].threadId, ownThread);
}

TEST_F(StartUtyCall, TheLibraryGetsThePrinterAndThreeEmptyTexts) {
  Run(u"C:\\D\\u.dll /U3");
  ASSERT_EQ(Called(), Names{"UtAlignGapW"});
  EXPECT_EQ(Utility().calls[0].texts,
            (std::array<std::u16string, 4>{u"Studio 7200", u"", u"", u""}));
}

TEST_F(StartUtyCall, TheArgumentsGoInTheOrderThreeOneTwo) {
  ASSERT_TRUE(call->szArgument1.Assign(u"one"));
  ASSERT_TRUE(call->szArgument2.Assign(u"two"));
  ASSERT_TRUE(call->szArgument3.Assign(u"three"));
  Run(u"C:\\D\\u.dll /U1");
  EXPECT_EQ(Utility().calls.at(0).texts,
            (std::array<std::u16string, 4>{u"Studio 7200", u"three", u"one", u"two"}));
}

TEST_F(StartUtyCall, EachCallLeavesTheHandleOfItsThread) {
  const std::u16string thread = u"thread of C:\\Program Files\\KAVRO\\test.exe";
  Run(u"C:\\D\\u.dll /U1");
  EXPECT_EQ(inside.process().Ledger(), (Texts{u"semaphore " + std::u16string(kSemaphore), thread}));
  const HANDLE first = call->hThread;
  Run(u"C:\\D\\u.dll /U1");
  EXPECT_NE(call->hThread, first);
  EXPECT_EQ(inside.process().Ledger(),
            (Texts{u"semaphore " + std::u16string(kSemaphore), thread, thread}));
  call.reset();
  EXPECT_EQ(inside.process().Ledger(), (Texts{thread, thread}));
}

TEST_F(StartUtyCall, AThreadThatDoesntStartLeavesTheSemaphoreTakenForGood) {
  inside.process().FailNext("CreateThread", ERROR_NOT_ENOUGH_MEMORY);
  Start(u"C:\\D\\u.dll /U2");
  EXPECT_EQ(call->hThread, HANDLE{});
  Os().process.Sleep(3600000);
  EXPECT_EQ(call->CheckUtyCall(0), 0);
  Start(u"C:\\D\\u.dll /U2");
  EXPECT_EQ(call->hThread, HANDLE{});
  EXPECT_TRUE(Called().empty());
}

// --- The semaphore

TEST_F(StartUtyCall, TheSemaphoreIsNamedByThePrinterWithSlashes) {
  desk::AddPrinterOfDefaultDriver(machine, u"\\\\srv\\p", u"USB009");
  Run(u"C:\\D\\u.dll /U2", u"\\\\srv\\p");
  EXPECT_TRUE(machine.objects().Exists(u"VGL_UtyCall_OBJ_//srv/p"));
  EXPECT_EQ(Called(), Names{"UtCleanHeadW"});
  EXPECT_EQ(Utility().calls[0].texts[0], u"\\\\srv\\p");
  EXPECT_EQ(Counts(), (std::vector<std::uint32_t>{0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(StartUtyCall, TheSemaphoreIsMadeAtTheFirstCallAndKept) {
  EXPECT_FALSE(machine.objects().Exists(kSemaphore));
  Run(u"C:\\D\\u.dll /U2");
  EXPECT_TRUE(machine.objects().Exists(kSemaphore));
  const HANDLE semaphore = call->hSemaphore;
  inside.process().FailNext("CreateSemaphoreW", ERROR_NOT_ENOUGH_MEMORY);
  Run(u"C:\\D\\u.dll /U1");
  EXPECT_EQ(call->hSemaphore, semaphore);
  EXPECT_EQ(Called(), (Names{"UtCleanHeadW", "UtPrintNozzleTestPatternW"}));
}

TEST_F(StartUtyCall, OnlyOneCanHaveTheSemaphore) {
  Run(u"C:\\D\\u.dll /U2");
  EXPECT_FALSE(Os().objects.ReleaseSemaphore(call->hSemaphore, 1, nullptr));
  EXPECT_EQ(Os().process.GetLastError(), 298);
}

TEST_F(StartUtyCall, TwoQuickClicksRunOneUtilityAndTheSecondLeavesNoTrace) {
  Utility().milliseconds = 1000;
  Start(u"C:\\D\\u.dll /U2");
  const HANDLE thread = call->hThread;
  Os().process.Sleep(1);
  const Names logged = LogTexts();
  Start(u"C:\\Other\\v.dll /U3", u"Other");
  EXPECT_EQ(call->szPrinterName.view(), u"Studio 7200");
  EXPECT_EQ(call->szModulePath.view(), u"C:\\D\\u.dll");
  EXPECT_EQ(call->nFunction, 2);
  EXPECT_EQ(call->hThread, thread);
  EXPECT_EQ(LogTexts(), logged);
  AwaitThread();
  EXPECT_EQ(Called(), Names{"UtCleanHeadW"});
}

TEST_F(StartUtyCall, AnotherOneStartsWhenTheFirstIsDone) {
  Utility().milliseconds = 1000;
  Start(u"C:\\D\\u.dll /U2");
  Os().process.Sleep(999);
  Start(u"C:\\D\\u.dll /U3");
  Os().process.Sleep(2);
  Start(u"C:\\D\\u.dll /U1");
  AwaitThread();
  EXPECT_EQ(Called(), (Names{"UtCleanHeadW", "UtPrintNozzleTestPatternW"}));
}

TEST_F(StartUtyCall, AnotherProcessThatHasTheSemaphoreKeepsTheUtilityAway) {
  machine.StartProcess(u"C:\\other.exe", u"", [](const char16_t*) {
    const OwnedObject semaphore(Os().objects.CreateSemaphoreW(1, 1, kSemaphore));
    Os().objects.WaitForSingleObject(semaphore.get(), INFINITE);
    Os().process.Sleep(500);
    Os().objects.ReleaseSemaphore(semaphore.get(), 1, nullptr);
    return 0U;
  });
  Os().process.Sleep(100);
  EXPECT_EQ(call->CheckUtyCall(0), 1);  // no utility was ever started here
  Start(u"C:\\D\\u.dll /U2");
  EXPECT_EQ(call->hThread, HANDLE{});
  EXPECT_EQ(call->CheckUtyCall(0), 0);
  Os().process.Sleep(500);
  EXPECT_EQ(call->CheckUtyCall(0), 1);
  Run(u"C:\\D\\u.dll /U2");
  EXPECT_EQ(Called(), Names{"UtCleanHeadW"});
}

TEST_F(StartUtyCall, UtilitiesOfTwoPrintersRunAtOnce) {
  desk::AddPrinterOfDefaultDriver(machine, u"Studio 2", u"USB002");
  Utility().milliseconds = 1000;
  CUtyCall other;
  Start(u"C:\\D\\u.dll /U2");
  other.StartUtyCall(u"Studio 2", u"C:\\D\\u.dll /U1");
  Os().process.Sleep(1001);
  EXPECT_EQ(Utility().ended, 2U);
}

TEST_F(StartUtyCall, WithoutASemaphoreNothingHappens) {
  inside.process().FailNext("CreateSemaphoreW", ERROR_NOT_ENOUGH_MEMORY);
  Start(u"C:\\D\\u.dll /U2");
  EXPECT_EQ(call->hSemaphore, HANDLE{});
  EXPECT_EQ(call->hThread, HANDLE{});
  EXPECT_EQ(call->CheckUtyCall(0), 1);
  Run(u"C:\\D\\u.dll /U2");  // tries anew
  EXPECT_EQ(Called(), Names{"UtCleanHeadW"});
}

TEST_F(StartUtyCall, ANameThatBelongsToAnotherKindOfObjectEndsTheCall) {
  const OwnedObject mutex(Os().objects.CreateMutexW(nullptr, false, kSemaphore));
  Start(u"C:\\D\\u.dll /U2");
  EXPECT_EQ(call->hSemaphore, HANDLE{});
  EXPECT_EQ(call->hThread, HANDLE{});
}

// Only a semaphore that is taken ends the call.
TEST_F(StartUtyCall, AWaitThatFailsDoesntKeepTheUtilityAway) {
  inside.process().FailNext("WaitForSingleObject", ERROR_INVALID_HANDLE);
  Run(u"C:\\D\\u.dll /U2");
  EXPECT_EQ(Called(), Names{"UtCleanHeadW"});
  EXPECT_TRUE(SemaphoreIsFree());
}

// --- The command text

TEST_F(StartUtyCall, ATextWithoutTheMarkerDoesNothingAtAll) {
  for (const char16_t* param : {u"C:\\D\\u.dll", u"C:\\D\\u.dll/U2", u"C:\\D\\u.dll /u2",
                                u"C:\\D\\u.dll / U2", u"C:\\D\\u.dll\t/U2", u"", u" ", u" /"}) {
    SCOPED_TRACE(testing::PrintToString(std::u16string(param)));
    Start(param);
    ExpectNothingStarted();
  }
  Start(nullptr);
  ExpectNothingStarted();
}

TEST_F(StartUtyCall, TheFirstMarkerCountsWhateverFollows) {
  const struct {
    const char16_t* param;
    std::u16string_view path;
    std::int32_t function;
  } cases[] = {
      {u"C:\\D\\u.dll /U2", u"C:\\D\\u.dll", 2},
      {u"C:\\D\\u.dll  /U2", u"C:\\D\\u.dll ", 2},
      {u"C:\\D\\u.dll /U /U2", u"C:\\D\\u.dll", 0},
      {u"C:\\D\\u.dll /U1 /U2", u"C:\\D\\u.dll", 1},
      {u"C:\\My /UTIL\\u.dll /U2", u"C:\\My", 0},
      {u"C:\\D\\u.dll /UPPILOT", u"C:\\D\\u.dll", 0},
      {u"\"C:\\D\\u.dll\" /U2", u"\"C:\\D\\u.dll\"", 2},
      {u" /U2", u"", 2},
  };
  for (const auto& [param, path, function] : cases) {
    SCOPED_TRACE(testing::PrintToString(std::u16string(param)));
    Run(param);
    EXPECT_EQ(call->szModulePath.view(), path);
    EXPECT_EQ(call->nFunction, function);
  }
}

TEST_F(StartUtyCall, TheNumberIsDecimalAndEndsWhereItEnds) {
  constexpr std::int32_t kMost = 2147483647;
  constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
  const struct {
    const char16_t* number;
    std::int32_t function;
  } cases[] = {
      {u"2", 2},
      {u"13", 13},
      {u"02", 2},
      {u"00000000000000000002", 2},
      {u"2x", 2},
      {u"2 3", 2},
      {u"2.9", 2},
      {u" 2", 2},
      {u"\t \n2", 2},
      {u"+2", 2},
      {u" +2", 2},
      {u"-2", -2},
      {u"- 2", 0},
      {u"+-2", 0},
      {u"", 0},
      {u"x", 0},
      {u"0x2", 0},
      {u"\u0662", 0},
      {u"2147483647", kMost},
      {u"2147483648", kMost},
      {u"4294967298", kMost},
      {u"99999999999", kMost},
      {u"99999999999999999999999999999999999999999", kMost},
      {u"-2147483648", kLeast},
      {u"-99999999999", kLeast},
  };
  for (const auto& [number, function] : cases) {
    SCOPED_TRACE(testing::PrintToString(std::u16string(number)));
    Run((u"C:\\D\\u.dll /U" + std::u16string(number)).c_str());
    EXPECT_EQ(call->nFunction, function);
  }
}

TEST_F(StartUtyCall, AModulePathOf259CharactersFits) {
  const std::u16string path = u"C:\\" + std::u16string(252, u'm') + u".dll";
  desk::AddUtilityLibrary(machine, path);
  Run((path + u" /U2").c_str());
  EXPECT_EQ(call->szModulePath.length(), 259U);
  EXPECT_EQ(Called(), Names{"UtCleanHeadW"});
}

TEST_F(StartUtyCall, AModulePathOf260CharactersEndsTheCall) {
  Start((u"C:\\" + std::u16string(253, u'm') + u".dll /U2").c_str());
  ExpectNothingStarted();
  EXPECT_TRUE(call->szModulePath.empty());
}

TEST_F(StartUtyCall, APrintersNameOf259CharactersFits) {
  const std::u16string name(259, u'p');
  Run(u"C:\\D\\u.dll /U2", name.c_str());
  ASSERT_EQ(Called(), Names{"UtCleanHeadW"});
  EXPECT_EQ(Utility().calls[0].texts[0], name);
  EXPECT_TRUE(machine.objects().Exists(u"VGL_UtyCall_OBJ_" + name));
}

TEST_F(StartUtyCall, APrintersNameOf260CharactersEndsTheCall) {
  const std::u16string name(260, u'p');
  Start(u"C:\\D\\u.dll /U2", name.c_str());
  ExpectNothingStarted();
  EXPECT_TRUE(call->szPrinterName.empty());
}

TEST_F(StartUtyCall, WithoutAPrintersNameTheUtilityRunsAllTheSame) {
  for (const char16_t* name : {u"", static_cast<const char16_t*>(nullptr)}) {
    Run(u"C:\\D\\u.dll /U2", name);
    EXPECT_TRUE(machine.objects().Exists(u"VGL_UtyCall_OBJ_"));
    EXPECT_EQ(Utility().calls.back().texts[0], u"");
  }
  EXPECT_EQ(Utility().ended, 2U);
}

TEST_F(StartUtyCall, ATextThatWasRefusedLeavesThePrinterFreeForTheNextOne) {
  Start(u"C:\\D\\u.dll");
  Start((std::u16string(260, u'm') + u" /U2").c_str());
  Start(u"C:\\D\\u.dll /U2", std::u16string(300, u'p').c_str());
  Run(u"C:\\D\\u.dll /U2");
  EXPECT_EQ(Called(), Names{"UtCleanHeadW"});
}

}  // namespace
}  // namespace vgl
