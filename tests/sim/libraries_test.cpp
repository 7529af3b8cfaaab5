// Libraries of the simulated machine: their files, their loads, their exports, their calls.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "platform/owned.h"
#include "platform/sim/machine.h"
#include "platform/sim/registry_library.h"

namespace sim {
namespace {

using namespace platform;

using Ledger = std::vector<std::u16string>;

constexpr char16_t kPath[] = u"C:\\Drivers\\STATUS.DLL";

// A library as a test would write one: what it is told stays on the machine.
struct StatusState {
  std::vector<std::uint32_t> asked;
  std::uint32_t answer = 42;
};

StatusState& Status() { return RunningProcess().machine().libraries().State<StatusState>(); }

std::uint32_t TellStatus(std::uint32_t device) {
  Status().asked.push_back(device);
  return Status().answer;
}

void TakeAWhile(std::uint32_t milliseconds) { Os().process.Sleep(milliseconds); }

std::uint64_t WhoAsks() { return Os().process.GetCurrentProcessId(); }

Library& AddStatusLibrary(Machine& machine) {
  Library& library = machine.libraries().Add(kPath);
  library.Export<&TellStatus>(1, "TellStatus");
  library.Export<&TakeAWhile>(2, "TakeAWhile");
  library.Export<&WhoAsks>(5, nullptr);
  return library;
}

OwnedModule Load(const char16_t* path = kPath) {
  return OwnedModule(Os().modules.LoadLibraryW(path));
}

template <class Function>
Function* Get(const OwnedModule& library, std::uint16_t ordinal) {
  return reinterpret_cast<Function*>(Os().modules.GetProcAddress(library.get(), ordinal));
}

std::int32_t LastError() { return Os().process.GetLastError(); }

// --- The file

TEST(SimulatedLibraries, ALibraryHasAFile) {
  Machine machine;
  machine.libraries().Add(kPath);
  EXPECT_TRUE(machine.files().Exists(kPath));
}

TEST(SimulatedLibraries, AFileThatIsThereStaysAsItIs) {
  Machine machine;
  machine.files().WriteFile(kPath, "content");
  machine.libraries().Add(kPath);
  EXPECT_EQ(machine.files().ReadFile(kPath), "content");
}

TEST(SimulatedLibraries, WithoutItsFileItCannotBeLoaded) {
  Machine machine;
  AddStatusLibrary(machine);
  const Inside inside(machine);
  machine.files().Remove(kPath);
  EXPECT_FALSE(Load());
  EXPECT_EQ(LastError(), ERROR_MOD_NOT_FOUND);
  machine.files().WriteFile(kPath, "");
  EXPECT_TRUE(Load());
}

TEST(SimulatedLibraries, AFileThatCannotBeReadCannotBeLoaded) {
  Machine machine;
  AddStatusLibrary(machine);
  const Inside inside(machine);
  machine.files().MakeUnreadable(kPath);
  EXPECT_FALSE(Load());
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);
}

TEST(SimulatedLibraries, APathHasOneLibrary) {
  Machine machine;
  Library& library = machine.libraries().Add(kPath);
  EXPECT_THROW(machine.libraries().Add(u"c:\\drivers\\status.dll"), std::invalid_argument);
  EXPECT_EQ(&machine.libraries().At(u"C:\\DRIVERS\\.\\Status.dll"), &library);
  EXPECT_THROW(machine.libraries().At(u"C:\\Drivers\\OTHER.DLL"), std::invalid_argument);
}

// --- Where a name is looked for

TEST(SimulatedLibraries, ANameIsLookedForInTheProgramsFolderAndThenInTheSystems) {
  Machine machine;
  machine.libraries().Add(u"C:\\Windows\\System32\\X.DLL");
  Inside inside(machine, u"C:\\App\\a.exe");
  char16_t path[MAX_PATH] = {};
  const auto loadedPath = [&] {
    const OwnedModule library = Load(u"x.dll");
    EXPECT_TRUE(library);
    Os().modules.GetModuleFileNameW(library.get(), path, MAX_PATH);
    return std::u16string(path);
  };
  EXPECT_EQ(loadedPath(), u"C:\\Windows\\System32\\X.DLL");
  machine.libraries().Add(u"C:\\App\\X.DLL");
  EXPECT_EQ(loadedPath(), u"C:\\App\\X.DLL");
}

TEST(SimulatedLibraries, TheFirstFileOfTheNameCountsAlsoWhenItIsNoLibrary) {
  Machine machine;
  machine.libraries().Add(u"C:\\Windows\\system32\\X.DLL");
  machine.files().WriteFile(u"C:\\App\\X.DLL", "text");
  Inside inside(machine, u"C:\\App\\a.exe");
  EXPECT_FALSE(Load(u"X.DLL"));
  EXPECT_EQ(LastError(), ERROR_BAD_EXE_FORMAT);
}

TEST(SimulatedLibraries, ANameFindsWhatTheProcessHasLoadedFromAnywhere) {
  Machine machine;
  AddStatusLibrary(machine);
  const Inside inside(machine);
  EXPECT_FALSE(Load(u"STATUS.DLL"));
  const OwnedModule library = Load();
  EXPECT_EQ(Load(u"status").get(), library.get());
}

TEST(SimulatedLibraries, LibrariesOfOneNameInTwoFoldersAreTwo) {
  Machine machine;
  AddStatusLibrary(machine);
  machine.libraries().Add(u"C:\\Other\\STATUS.DLL");
  const Inside inside(machine);
  const OwnedModule one = Load();
  const OwnedModule other = Load(u"C:\\Other\\STATUS.DLL");
  EXPECT_TRUE(other);
  EXPECT_NE(one.get(), other.get());
}

// --- Loads

TEST(SimulatedLibraries, ALoadedOneStandsInTheLedgerOnce) {
  Machine machine;
  AddStatusLibrary(machine);
  Inside inside(machine);
  OwnedModule first = Load();
  OwnedModule second = Load(u"c:\\drivers\\status.dll");
  EXPECT_EQ(first.get(), second.get());
  EXPECT_EQ(inside.process().Ledger(), Ledger{u"library C:\\Drivers\\STATUS.DLL"});
  first.Reset();
  EXPECT_EQ(inside.process().Ledger(), Ledger{u"library C:\\Drivers\\STATUS.DLL"});
  second.Reset();
  EXPECT_EQ(inside.process().Ledger(), Ledger{});
}

TEST(SimulatedLibraries, OnlyTheFirstLoadAndTheLastFreeAreTraced) {
  Machine machine;
  AddStatusLibrary(machine);
  const Inside inside(machine);
  {
    const OwnedModule first = Load();
    const OwnedModule second = Load();
  }
  std::vector<std::u16string> events;
  for (const Event& event : machine.trace()) events.push_back(event.text);
  EXPECT_EQ(events, (std::vector<std::u16string>{u"loaded library C:\\Drivers\\STATUS.DLL",
                                                 u"freed library C:\\Drivers\\STATUS.DLL"}));
}

TEST(SimulatedLibraries, ProcessesLoadEachForItself) {
  Machine machine;
  AddStatusLibrary(machine);
  Inside inside(machine);
  const OwnedModule library = Load();
  HMODULE seen{1};
  bool freed = true;
  machine.StartProcess(u"C:\\other.exe", u"", [&](const char16_t*) {
    seen = Os().modules.GetModuleHandleW(kPath);
    freed = Os().modules.FreeLibrary(library.get());
    return 0U;
  });
  Os().process.Sleep(1);
  EXPECT_EQ(seen, HMODULE{});
  EXPECT_FALSE(freed);
  EXPECT_EQ(Os().modules.GetModuleHandleW(kPath), library.get());
}

TEST(SimulatedLibraries, AProcessThatEndsDropsItsLibraries) {
  Machine machine;
  AddStatusLibrary(machine);
  Process& process = machine.StartProcess(u"C:\\a.exe", u"", [](const char16_t*) {
    Load().Release();
    return 0U;
  });
  machine.Settle();
  EXPECT_EQ(process.Ledger(), Ledger{u"library C:\\Drivers\\STATUS.DLL"});
}

TEST(SimulatedLibraries, LoadingAndLookingUpCanFail) {
  Machine machine;
  AddStatusLibrary(machine);
  Inside inside(machine);
  inside.process().FailNext("LoadLibraryW", ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_FALSE(Load());
  EXPECT_EQ(LastError(), ERROR_NOT_ENOUGH_MEMORY);
  inside.process().FailNext("LoadLibraryA", ERROR_ACCESS_DENIED);
  EXPECT_EQ(Os().modules.LoadLibraryA("C:\\Drivers\\STATUS.DLL"), HMODULE{});
  EXPECT_EQ(LastError(), ERROR_ACCESS_DENIED);

  inside.process().FailCall(1);
  EXPECT_FALSE(Load());
  EXPECT_EQ(LastError(), ERROR_MOD_NOT_FOUND);

  const OwnedModule library = Load();
  inside.process().FailCall(2);
  EXPECT_NE(Os().modules.GetProcAddress(library.get(), "TellStatus"), nullptr);
  EXPECT_EQ(Os().modules.GetProcAddress(library.get(), "TellStatus"), nullptr);
  EXPECT_EQ(LastError(), ERROR_PROC_NOT_FOUND);
  EXPECT_EQ(inside.process().failedOperation(), "GetProcAddress");
}

// --- Exports

TEST(SimulatedLibraries, AnExportIsCalledAndItsCallsAreCounted) {
  Machine machine;
  Library& status = AddStatusLibrary(machine);
  const Inside inside(machine);
  const OwnedModule library = Load();
  EXPECT_EQ(status.Calls(1), 0U);
  EXPECT_EQ(Get<std::uint32_t(std::uint32_t)>(library, 1)(7), 42U);
  machine.libraries().State<StatusState>().answer = 9;
  EXPECT_EQ(Get<std::uint32_t(std::uint32_t)>(library, 1)(8), 9U);
  EXPECT_EQ(machine.libraries().State<StatusState>().asked, (std::vector<std::uint32_t>{7, 8}));
  EXPECT_EQ(status.Calls(1), 2U);
  EXPECT_EQ(status.Calls("TellStatus"), 2U);
  EXPECT_EQ(status.Calls(5), 0U);
}

TEST(SimulatedLibraries, MachinesKeepAndCountEachForItself) {
  Machine one;
  Machine other;
  AddStatusLibrary(one);
  AddStatusLibrary(other);
  {
    const Inside inside(one);
    const OwnedModule library = Load();
    Get<std::uint32_t(std::uint32_t)>(library, 1)(7);
  }
  EXPECT_EQ(one.libraries().At(kPath).Calls(1), 1U);
  EXPECT_EQ(other.libraries().At(kPath).Calls(1), 0U);
  EXPECT_EQ(other.libraries().State<StatusState>().asked.size(), 0U);
}

TEST(SimulatedLibraries, AnExportRunsInTheProcessThatCallsItAndMayTakeItsTime) {
  Machine machine;
  AddStatusLibrary(machine);
  std::uint64_t asking = 0;
  Process& process = machine.StartProcess(u"C:\\a.exe", u"", [&](const char16_t*) {
    const OwnedModule library = Load();
    Get<void(std::uint32_t)>(library, 2)(300);
    asking = Get<std::uint64_t()>(library, 5)();
    return 0U;
  });
  machine.RunFor(299);
  EXPECT_FALSE(process.ended());
  machine.RunFor(1);
  EXPECT_TRUE(process.ended());
  EXPECT_EQ(asking, process.id());
}

TEST(SimulatedLibraries, AnExportThatIsTakenAwayCannotBeAskedForAnyMore) {
  Machine machine;
  Library& status = AddStatusLibrary(machine);
  const Inside inside(machine);
  const OwnedModule library = Load();
  auto* const tell = Get<std::uint32_t(std::uint32_t)>(library, 1);
  status.RemoveExport("TellStatus");
  EXPECT_EQ(Os().modules.GetProcAddress(library.get(), "TellStatus"), nullptr);
  EXPECT_EQ(Os().modules.GetProcAddress(library.get(), std::uint16_t{1}), nullptr);
  status.RemoveExport(5);
  EXPECT_EQ(Os().modules.GetProcAddress(library.get(), std::uint16_t{5}), nullptr);
  EXPECT_EQ(tell(3), 42U);  // who has it may still call it
  EXPECT_EQ(status.Calls(1), 1U);
  status.Export<&WhoAsks>(1, "TellStatus");  // its place is free
  EXPECT_NE(Os().modules.GetProcAddress(library.get(), "TellStatus"), nullptr);
}

TEST(SimulatedLibraries, AnOrdinalOrNameIsGivenOnce) {
  Machine machine;
  Library& status = AddStatusLibrary(machine);
  EXPECT_THROW(status.Export<&WhoAsks>(1, "Other"), std::invalid_argument);
  EXPECT_THROW(status.Export<&WhoAsks>(9, "TellStatus"), std::invalid_argument);
  EXPECT_THROW(static_cast<void>(status.Calls(9)), std::invalid_argument);
  EXPECT_THROW(static_cast<void>(status.Calls("Other")), std::invalid_argument);
  EXPECT_THROW(status.RemoveExport(9), std::invalid_argument);
}

TEST(SimulatedLibraries, AFunctionOfALibraryThatIsGoneCannotBeCalled) {
  Machine machine;
  AddStatusLibrary(machine);
  const Inside inside(machine);
  OwnedModule library = Load();
  auto* const tell = Get<std::uint32_t(std::uint32_t)>(library, 1);
  library.Reset();
  EXPECT_THROW(tell(7), std::logic_error);
}

TEST(SimulatedLibraries, CallsOfAProcessThatIsTakenDownHaveNoEffect) {
  struct AsksWhenItGoes {
    std::uint32_t (*tell)(std::uint32_t);
    std::uint32_t& answer;
    ~AsksWhenItGoes() { answer = tell(7); }
  };
  Machine machine;
  Library& status = AddStatusLibrary(machine);
  std::uint32_t answer = 77;
  Process& process = machine.StartProcess(u"C:\\a.exe", u"", [&](const char16_t*) {
    const OwnedModule library = Load();
    const AsksWhenItGoes asker{Get<std::uint32_t(std::uint32_t)>(library, 1), answer};
    Os().process.Sleep(INFINITE);
    return 0U;
  });
  machine.Settle();
  machine.EndProcess(process);
  EXPECT_EQ(answer, 0U);
  EXPECT_EQ(status.Calls(1), 0U);
}

// --- The registry library

TEST(SimulatedRegistryLibrary, ItAnswersFromTheRegistryOfTheMachine) {
  Machine machine;
  Library& registry = AddRegistryLibrary(machine, u"C:\\Drivers\\K_WRDEF1.DLL");
  machine.registry().SetDword(HKEY_LOCAL_MACHINE, u"Software\\KAVRO", u"Number", 42);
  Inside inside(machine);
  const OwnedModule library = Load(u"C:\\Drivers\\K_WRDEF1.DLL");
  ASSERT_TRUE(library);
  HKEY key{};
  auto* const open =
      Get<std::int32_t(HKEY, const char16_t*, std::uint32_t, std::uint32_t, HKEY*)>(library, 4);
  EXPECT_EQ(open(HKEY_LOCAL_MACHINE, u"Software\\KAVRO", 0, KEY_READ, &key), ERROR_SUCCESS);
  EXPECT_EQ(inside.process().Ledger(),
            (Ledger{u"library C:\\Drivers\\K_WRDEF1.DLL", u"key HKLM\\Software\\KAVRO"}));
  EXPECT_EQ(Get<std::int32_t(HKEY)>(library, 7)(key), ERROR_SUCCESS);
  EXPECT_EQ(registry.Calls(4), 1U);
  EXPECT_EQ(registry.Calls(7), 1U);
  EXPECT_EQ(registry.Calls(11), 0U);
}

TEST(SimulatedRegistryLibrary, ItsCallsFailAsTheSystemsDo) {
  Machine machine;
  AddRegistryLibrary(machine, u"C:\\Drivers\\K_WRDEF1.DLL");
  Inside inside(machine);
  const OwnedModule library = Load(u"C:\\Drivers\\K_WRDEF1.DLL");
  inside.process().FailNext("RegDeleteValueW", ERROR_ACCESS_DENIED);
  auto* const remove = Get<std::int32_t(HKEY, const char16_t*)>(library, 13);
  EXPECT_EQ(remove(HKEY_LOCAL_MACHINE, u"Missing"), ERROR_ACCESS_DENIED);
  EXPECT_EQ(remove(HKEY_LOCAL_MACHINE, u"Missing"), ERROR_FILE_NOT_FOUND);
}

}  // namespace
}  // namespace sim
