// How long the context menu takes to open. Nothing is kept between two openings, and all 79 slots
// are asked for whether or not the driver set has values for them: it is its values' place and the
// length of its install description that count.
//
// OpenMenu is all that a person waits for, from the press of the button until the menu stands there
// drawn, in a whole agent on the simulated machine; AddExMenu is the building of the menu's tail
// alone. Where the set names a dependent program, which orders ink, the entry that runs it is
// looked for in all slots before they are read: that is the slowest.
//
// "times" is the time in times of that of a set of 79 entries and 1,000 lines of the same kind,
// measured in turns with it: growth in step with the lines gives 0.5, 1, 2, 4 for 500 to 4,000
// lines. "best_ms" is the time of processor that the quickest of them took. "calls" are platform
// calls; "files" the openings of files in AddExMenu, among them those of the install description
// ("descriptions"), and "bytes" what these files hold, counted at each opening.
#include <algorithm>
#include <ctime>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Common/text_conversion.h"
#include "desk/default_machine.h"
#include "desk/resource_library.h"
#include "menu/ex_menu.h"
#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace {

using namespace platform;

constexpr char16_t kDescription[] = u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\KS7200.DAT";
constexpr char16_t kVif[] = u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\KS7200.VIF";
constexpr char kDriverKey[] = "Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio 7200";

constexpr char kProgram[] = "C:\\Program Files\\KAVRO\\ORDER.EXE";

struct Set {
  int entries = 79;
  int lines = 1000;
  bool isInRegistry = false;
  bool namesProgram = true;
};

std::string CommandOf(int id) {
  return "C:\\Program Files\\KAVRO\\tool" + std::to_string(id) + ".exe /P " + std::to_string(id);
}

// The menu's values stand evenly among lines of another key, and the driver's own behind them, so
// that who looks for the profile passes over everything.
std::string Description(const Set& set) {
  const std::string root = std::string("HKEY_LOCAL_MACHINE\\") + kDriverKey;
  const std::vector<std::string> head = {
      "[Install]",
      "REGPATH=DRV,\"" + root + "\"",
      "REGPATH=MNU,\"" + root + "\\Menu\"",
      "REGPATH=OTHER,\"" + root + "\\Media\"",
  };
  const std::vector<std::string> tail = {
      "REGENTER=MNU,\"Separators\",\"5,20,40,60\"",
      "REGENTER=DRV,\"ModelID\",\"S7200\"",
      set.namesProgram ? "REGENTER=DRV,\"DepExe\",\"" + std::string(kProgram) + "\""
                       : std::string("; none"),
      "REGENTER=DRV,\"K_QRX\",DRIVERDIR+\"\\K_QD21RX.EXE\"",
      "REGENTER=DRV,\"InstallPath\",DRIVERDIR",
      "REGENTER=DRV,\"Profile\",DRIVERDIR+\"\\KS7200.INI\"",
  };
  const int others = set.lines - static_cast<int>(head.size() + tail.size()) - set.entries;
  std::string text;
  const auto add = [&text](const std::string& line) { text += line + "\r\n"; };
  for (const std::string& line : head) add(line);
  for (int entry = 0, other = 0; entry < set.entries; ++entry) {
    for (; other < others * (entry + 1) / set.entries; ++other) {
      const std::string number = std::to_string(other);
      add(other % 5 == 0 ? "; medium " + number
                         : "REGENTER=OTHER,\"" + number + "\",\"Medium " + number + "\"");
    }
    add("REGENTER=MNU,\"" + std::to_string(920 + entry) + "\",\"" + CommandOf(920 + entry) + "\"");
  }
  for (const std::string& line : tail) add(line);
  return text;
}

void PutInRegistry(sim::Machine& machine, const Set& set) {
  const std::u16string key = vgl::TextFromUtf8(kDriverKey);
  const auto put = [&](const std::u16string& path, const std::string& name,
                       const std::string& value) {
    machine.registry().SetString(HKEY_LOCAL_MACHINE, path, vgl::TextFromUtf8(name),
                                 vgl::TextFromUtf8(value));
  };
  if (set.namesProgram) put(key, "DepExe", kProgram);
  put(key + u"\\Menu", "Separators", "5,20,40,60");
  for (int id = 920; id < 920 + set.entries; ++id)
    put(key + u"\\Menu", std::to_string(id), CommandOf(id));
  std::string profile = machine.files().ReadFile(desk::kProfilePath).value();
  profile.insert(profile.find("TrayIconEnable"), "RegistryBaseVGL=1\r\n");
  machine.files().WriteFile(desk::kProfilePath, profile);
}

void SetUp(sim::Machine& machine, const Set& set) {
  machine.KeepTrace(false);
  desk::SetUpDefaultMachine(machine);
  machine.files().WriteFile(kDescription, Description(set));
  if (set.isInRegistry) PutInRegistry(machine, set);
  desk::ResourceLibrary library = desk::PlainResourceLibrary();
  for (std::uint16_t id = 920; id <= 998; ++id) {
    library.strings[id] = u"Entry " + vgl::TextFromUtf8(std::to_string(id));
    library.bitmaps[id] = id;
  }
  machine.files().WriteFile(desk::kResourceLibraryPath, desk::BytesOf(library));
}

// An agent that has come to wait for messages.
class Agent {
 public:
  explicit Agent(const Set& set) : m_set(set) {
    SetUp(m_machine, set);
    m_process = &desk::StartAgent(m_machine, desk::OptionsOfDefaultPrinter());
    m_machine.RunFor(2000);
  }

  std::size_t OpenMenu() {
    m_machine.tray().RightClick(*m_machine.tray().FindOf(*m_process));
    m_machine.Settle();
    sim::OpenMenu& open = *m_machine.desktop().menus().List().at(0);
    const std::size_t items = open.shown.size();
    // The head has two items; besides there are the separators, of which five can come.
    if (items < static_cast<std::size_t>(m_set.entries) + 3) std::abort();
    m_machine.desktop().menus().Dismiss(open);
    m_machine.Settle();
    return items;
  }
  std::uint64_t CallsOfOpening() {
    const std::uint64_t before = m_process->calls();
    OpenMenu();
    return m_process->calls() - before;
  }

 private:
  Set m_set;
  sim::Machine m_machine;
  sim::Process* m_process;
};

// The menu's tail alone, built by this thread.
class Tail {
 public:
  explicit Tail(const Set& set) : m_set(set), m_inside(Ready(m_machine, set)) {
    m_library = OwnedModule(Os().modules.LoadLibraryW(desk::kResourceLibraryPath));
  }
  ~Tail() { vgl::DeletePictures(m_slots); }
  Tail(const Tail&) = delete;
  Tail& operator=(const Tail&) = delete;

  void Build() {
    vgl::DeletePictures(m_slots);
    m_menu = OwnedMenu(Os().resources.LoadMenuW(m_library.get(), 801));
    vgl::AddExMenu(Os().menus.GetSubMenu(m_menu.get(), 0),
                   {.identity = {.printerName = desk::kPrinterName,
                                 .driverName = desk::kDriverName,
                                 .modelId = desk::kModelId,
                                 .portName = desk::kPortName},
                    .netPilot = {},
                    .texts = m_library.get(),
                    .pictures = m_library.get()},
                   m_slots);
  }
  std::size_t BuildAndCount() {
    Build();
    const auto used = static_cast<std::size_t>(
        std::count_if(std::begin(m_slots), std::end(m_slots),
                      [](const vgl::ExMenuItem& slot) { return slot.nID != 0; }));
    if (used != static_cast<std::size_t>(m_set.entries)) std::abort();
    return used;
  }

  std::uint64_t CallsOfBuilding() {
    const std::uint64_t before = m_inside.process().calls();
    Build();
    return m_inside.process().calls() - before;
  }
  // How often an operation is called meanwhile: of many calls one is to fail, and those that are
  // left until it does, `call` makes.
  template <class OneCall>
  std::uint64_t CallsOf(const char* operation, const OneCall& call) {
    constexpr std::int32_t kMark = 12345;
    constexpr std::uint64_t kMany = 10000;
    m_inside.process().FailNext(operation, kMark, kMany);
    Build();
    std::uint64_t left = 0;
    for (call(); Os().process.GetLastError() != kMark; call()) ++left;
    return kMany - left;
  }
  std::size_t SizeOf(const char16_t* path) { return m_machine.files().ReadFile(path)->size(); }

 private:
  static sim::Machine& Ready(sim::Machine& machine, const Set& set) {
    SetUp(machine, set);
    return machine;
  }

  Set m_set;
  sim::Machine m_machine;
  sim::Inside m_inside;
  OwnedModule m_library;
  OwnedMenu m_menu;
  vgl::ExMenuItem m_slots[vgl::kExMenuSlots];
};

Set SetOf(const benchmark::State& state) {
  return {.entries = static_cast<int>(state.range(0)),
          .lines = static_cast<int>(state.range(1)),
          .isInRegistry = state.range(2) != 0,
          .namesProgram = state.range(3) != 0};
}

Set WithUsualSize(Set set) {
  const Set usual;
  set.entries = usual.entries;
  set.lines = usual.lines;
  return set;
}

// Milliseconds of processor time that `work` takes, in all threads: what else the machine does
// doesn't count.
template <class Work>
double ProcessorTimeOf(const Work& work) {
  const std::clock_t start = std::clock();
  benchmark::DoNotOptimize(work());
  return 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// Measures `work`, with its time in times of `usual`: measured in turns, and the best of each.
template <class Work, class Usual>
void MeasureGrowth(benchmark::State& state, const Work& work, const Usual& usual) {
  for (auto _ : state) benchmark::DoNotOptimize(work());
  double best = 1e18;
  double bestUsual = 1e18;
  for (int turn = 0; turn < 30; ++turn) {
    best = std::min(best, ProcessorTimeOf(work));
    bestUsual = std::min(bestUsual, ProcessorTimeOf(usual));
  }
  state.counters["best_ms"] = best;
  state.counters["times"] = best / bestUsual;
}

void OpenMenu(benchmark::State& state) {
  const Set set = SetOf(state);
  Agent agent(set);
  Agent usual(WithUsualSize(set));
  MeasureGrowth(
      state, [&] { return agent.OpenMenu(); }, [&] { return usual.OpenMenu(); });
  state.counters["calls"] = static_cast<double>(agent.CallsOfOpening());
}

void AddExMenu(benchmark::State& state) {
  Tail tail(SetOf(state));
  for (auto _ : state) benchmark::DoNotOptimize(tail.BuildAndCount());
  // Descriptions are read by the agent itself, the VIF and the profile by the system's reader.
  const std::uint64_t descriptions = tail.CallsOf("CreateFileW", [] {
    OwnedFile(Os().files.CreateFileW(kDescription, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING,
                                     FILE_ATTRIBUTE_NORMAL));
  });
  const std::uint64_t vifs = tail.CallsOf("GetPrivateProfileStringW", [] {
    char16_t value[10];
    Os().profiles.GetPrivateProfileStringW(u"x", u"x", u"", value, 10, kVif);
  });
  const std::uint64_t profiles = tail.CallsOf("GetPrivateProfileIntW", [] {
    Os().profiles.GetPrivateProfileIntW(u"x", u"x", 0, desk::kProfilePath);
  });
  state.counters["calls"] = static_cast<double>(tail.CallsOfBuilding());
  state.counters["files"] = static_cast<double>(descriptions + vifs + profiles);
  state.counters["descriptions"] = static_cast<double>(descriptions);
  state.counters["bytes"] =
      static_cast<double>(descriptions * tail.SizeOf(kDescription) + vifs * tail.SizeOf(kVif) +
                          profiles * tail.SizeOf(desk::kProfilePath));
}

// Entries, lines; whether the set is in the registry, and whether it names a dependent program.
void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"entries", "lines", "registry", "program"})
      ->Unit(benchmark::kMillisecond)
      ->MeasureProcessCPUTime()
      ->UseRealTime();
  for (const int registry : {0, 1})
    for (const int program : {0, 1}) benchmark->Args({79, 1000, registry, program});
}
void Growth(benchmark::internal::Benchmark* benchmark) {
  Sizes(benchmark);
  for (const int registry : {0, 1}) {
    for (const int entries : {1, 20, 40}) benchmark->Args({entries, 1000, registry, 1});
    for (const int lines : {500, 2000, 4000}) benchmark->Args({79, lines, registry, 1});
  }
}
BENCHMARK(OpenMenu)->Apply(Growth);
BENCHMARK(AddExMenu)->Apply(Sizes);

}  // namespace
