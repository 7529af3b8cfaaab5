#include "desk/soak.h"

#include <algorithm>
#include <ostream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "Common/target_records.h"
#include "Common/text_conversion.h"
#include "Common/wide_format.h"
#include "app/agent_messages.h"
#include "desk/default_machine.h"
#include "desk/run_helper.h"
#include "desk/script.h"
#include "desk/utility_library.h"
#include "desk/whole_set.h"
#include "platform/sim/machine.h"

namespace desk {

namespace {

using namespace platform;
using vgl::WideFormat;

constexpr char16_t kRunKey[] = u"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr char16_t kInstallerPath[] = u"C:\\KAVRO\\SETUP.EXE";

// An agent goes with its printer at the next mask check.
constexpr std::uint64_t kMaskCheckPeriod = 3000;
// The longest start: the wait for a predecessor.
constexpr std::uint64_t kLongestStart = 1600;
// An agent waits for its utility to end.
constexpr std::uint64_t kLongestUtility = 20000;

const std::u16string kInvitationLibraryHeld =
    u"library C:\\Windows\\system32\\spool\\drivers\\x64\\3\\K_PARLOS.DLL";

struct Stopped : std::runtime_error {
  using runtime_error::runtime_error;
};

struct SoakPrinter {
  std::u16string name;
  std::u16string paramFile;
  bool isThere = false;
  bool isMasked = false;
  sim::Process* agent = nullptr;  // the one that ran last
  std::uint64_t startedAt = 0;
  bool isWounded = false;       // one of its calls failed: it needn't be whole any more
  std::uint64_t goneSince = 0;  // printer removed or masked
  std::size_t heldAtStart = 0;  // handles of the agent once it stood
  bool startedAlone = false;    // no installer was at work meanwhile
};

// A start for a printer that has an agent, which is to give way.
struct SecondStart {
  SoakPrinter* printer;
  sim::Process* process;
  std::uint64_t startedAt;
};

class SoakRun {
 public:
  SoakRun(const SoakOptions& options, std::ostream& out)
      : m_options(options), m_out(out), m_random(options.seed) {}

  void Run() {
    SetUp();
    const std::uint64_t end = m_options.hours * 3600 * 1000;
    while (m_machine.now() < end) {
      m_machine.RunFor(1 + Random(2 * m_options.meanPause));
      CheckAll();
      DoSomething();
      m_options.disturb(m_machine);
      ++m_events;
    }
    Finish();
  }

  // Virtual milliseconds since the beginning.
  std::uint64_t now() const { return m_machine.now(); }

 private:
  void SetUp() {
    m_machine.KeepTrace(false);
    SetUpDefaultMachine(m_machine);
    MakeDriverSetWhole(m_machine);
    m_machine.desktop().AnswerBoxesAtOnce();
    m_machine.programs().Add(kRunHelperPath, RunHelperMain);
    for (int i = 0; i < m_options.printers; ++i) {
      SoakPrinter printer;
      printer.name = WideFormat(u"Printer %d", i);
      printer.paramFile = m_machine.system().tempFolder + WideFormat(u"K_Q%04X.tmp", i);
      m_printers.push_back(printer);
    }
    for (SoakPrinter& printer : m_printers) Install(printer);
  }

  std::uint64_t Random(std::uint64_t below) { return m_random() % below; }
  SoakPrinter& AnyPrinter() { return m_printers[Random(m_printers.size())]; }

  // --- what happens

  void DoSomething() {
    SoakPrinter& printer = AnyPrinter();
    const std::uint64_t dice = Random(100);
    if (!printer.isThere) return Install(printer);
    if (printer.isMasked) return Unmask(printer);
    if (!IsRunning(printer)) return Start(printer);
    if (dice < 6) return Remove(printer);
    if (dice < 10) return Mask(printer);
    if (dice < 14) return RunInstaller();
    if (dice < 18) return Start(printer);  // a second one, which gives way
    if (dice < 20) return m_machine.EndProcess(*printer.agent);
    if (dice < 25) return SelectIcon(printer);
    if (dice < 32 && m_options.withFaults) return Wound(printer);
    Click(printer);
  }

  static bool IsRunning(const SoakPrinter& printer) {
    return printer.agent != nullptr && !printer.agent->ended();
  }

  void Install(SoakPrinter& printer) {
    if (IsRunning(printer)) return;  // the last one is still on its way out
    AddPrinterOfDefaultDriver(m_machine, printer.name, u"USB001");
    constexpr std::uint32_t kMinute = 60000;
    SetUpPrinterOfWholeSet(m_machine, printer.name,
                           static_cast<std::uint32_t>(Random(kLongestUtility)),
                           static_cast<std::uint32_t>((1 + Random(120)) * kMinute),
                           static_cast<std::uint32_t>(Random(4)));
    printer.isThere = true;
    printer.isMasked = false;
    Start(printer);
  }

  // The Run value that starts the agent at logon, with its parameter file, and the icon: a start
  // while an installer is at work finds no driver set and takes all of them back, and the user asks
  // for them again.
  void SwitchOn(const SoakPrinter& printer) {
    m_machine.files().WriteUtf16(
        printer.paramFile,
        WideFormat(u"/P \"%s\"\n/D \"%s\"\n/O \"USB001\"\n/M \"%s\"\n/EF \"HKCU\"\n", printer.name,
                   kDriverName, kModelId));
    m_machine.registry().SetString(HKEY_CURRENT_USER, kRunKey, printer.name,
                                   WideFormat(u"\"%s\" /FU \"%s\"", kAgentPath, printer.paramFile));
    SetInRecord(printer, u"TrayIconEnable", 1);
  }

  void Start(SoakPrinter& printer) {
    const bool isFirst = !IsRunning(printer);
    if (isFirst) SwitchOn(printer);
    sim::Process& agent = StartAgent(m_machine, WideFormat(u"/FU \"%s\"", printer.paramFile));
    ++m_starts;
    if (!isFirst) {
      m_seconds.push_back({&printer, &agent, m_machine.now()});
      return;
    }
    Adopt(printer, agent, m_machine.now());
  }

  static void Adopt(SoakPrinter& printer, sim::Process& agent, std::uint64_t startedAt) {
    printer.agent = &agent;
    printer.startedAt = startedAt;
    printer.isWounded = false;
    printer.heldAtStart = 0;
    printer.startedAlone = false;
  }

  void Remove(SoakPrinter& printer) {
    m_machine.spooler().RemovePrinter(printer.name);
    printer.isThere = false;
    printer.goneSince = m_machine.now();
    ++m_removals;
  }

  void SetMask(const SoakPrinter& printer, char value) {
    m_machine.spooler().SetData(printer.name, u"PrinterDriverData", u"VGLSetting", REG_DWORD,
                                std::string({value, 0, 0, 0}));
  }
  void Mask(SoakPrinter& printer) {
    SetMask(printer, 1);
    printer.isMasked = true;
    printer.goneSince = m_machine.now();
  }
  void Unmask(SoakPrinter& printer) {
    if (IsRunning(printer)) return;
    SetMask(printer, 0);
    printer.isMasked = false;
    Start(printer);
  }

  void RunInstaller() {
    if (m_installer != nullptr && !m_installer->ended()) return;
    const auto time = static_cast<std::uint32_t>(1000 + Random(600000));
    m_installer = &m_machine.StartProcess(kInstallerPath, u"", [this, time](const char16_t*) {
      const HANDLE mutex = Os().objects.CreateMutexW(nullptr, false, kInstallerMutex);
      Os().process.Sleep(time);
      Os().objects.CloseHandle(mutex);
      m_installerUntil = m_machine.now();
      return 0U;
    });
  }

  // Writes a number into the printer's record, if there is one.
  void SetInRecord(const SoakPrinter& printer, const char16_t* value, std::uint32_t number) {
    for (const std::u16string& key :
         m_machine.registry().SubKeys(HKEY_CURRENT_USER, vgl::kPrinterBranch)) {
      const std::u16string path = std::u16string(vgl::kPrinterBranch) + u"\\" + key;
      if (m_machine.registry().String(HKEY_CURRENT_USER, path, u"Name") == printer.name)
        m_machine.registry().SetDword(HKEY_CURRENT_USER, path, value, number);
    }
  }

  void SelectIcon(const SoakPrinter& printer) {
    SetInRecord(printer, u"TrayIconSelected", static_cast<std::uint32_t>(Random(3)));
    if (const sim::Window* window = WindowOf(printer))
      m_machine.desktop().Post(window->handle, vgl::WM_VGL3_UPDATE_ICON);
  }

  void Wound(SoakPrinter& printer) {
    printer.agent->FailCall(1 + Random(400));
    printer.isWounded = true;
    ++m_wounds;
  }

  void Click(const SoakPrinter& printer) {
    for (sim::OpenMenu* menu : m_machine.desktop().menus().List()) {
      if (menu->thread->process() == printer.agent) return UseMenu(printer, *menu);
    }
    const sim::TrayIcon* icon = m_machine.tray().FindOf(*printer.agent);
    if (icon == nullptr) return;
    const std::uint64_t way = Random(3);
    if (way == 0) m_machine.tray().Click(*icon);
    if (way == 1) m_machine.tray().DoubleClick(*icon);
    if (way == 2) m_machine.tray().RightClick(*icon);
    ++m_clicks;
  }

  // A person reads, and chooses or goes away.
  void UseMenu(const SoakPrinter& printer, sim::OpenMenu& menu) {
    // No failure and no installer has come in the way of this menu and its entries.
    const bool isWhole =
        printer.startedAlone && !printer.isWounded && m_installerUntil < printer.startedAt;
    if (isWhole) CheckMenu(printer, menu);
    const std::vector<WholeSetEntry>& entries = EntriesOfWholeSet();
    const std::uint64_t which = Random(entries.size() + 6);
    std::uint32_t id = 0;
    if (which < entries.size()) id = entries[which].id;
    if (which == entries.size()) id = 900;
    if (which == entries.size() + 1) id = 901;
    m_machine.desktop().menus().PointAt(menu, id);
    m_machine.Settle();
    const bool utilityRuns = printer.agent->threads().size() > 1;
    const std::size_t before = StartedSoFar();
    if (id == 0 || !m_machine.desktop().menus().Choose(menu, id)) {
      m_machine.desktop().menus().Dismiss(menu);
      return;
    }
    ++m_choices;
    m_machine.Settle();
    // One utility at a time: a second one is dropped.
    if (isWhole && StartedSoFar() == before && !(IsUtility(id) && utilityRuns))
      Stop(printer, "its entry " + std::to_string(id) + " starts nothing");
  }

  static bool IsUtility(std::uint32_t id) { return id == 920 || id == 921; }
  std::size_t StartedSoFar() {
    return m_machine.programs().Starts().size() + UtilityLibraryOf(m_machine).calls.size();
  }

  void CheckMenu(const SoakPrinter& printer, const sim::OpenMenu& menu) {
    std::vector<std::uint32_t> wanted = {900, 901};
    for (const WholeSetEntry& entry : EntriesOfWholeSet()) wanted.push_back(entry.id);
    std::vector<std::uint32_t> shown;
    for (const sim::ShownItem& item : menu.shown)
      if (!item.item.IsSeparator()) shown.push_back(item.item.id);
    if (shown != wanted) Stop(printer, "its menu isn't whole");
  }

  const sim::Window* WindowOf(const SoakPrinter& printer) {
    return m_machine.desktop().FindOf(*printer.agent, vgl::kTrayWindowClass);
  }

  // --- what has to hold

  // What the system takes back at an orderly end, too: the views that the scan of the instance map
  // leaves mapped, and the window of a start that never came to its message loop.
  static std::vector<std::u16string> LeftBehind(const sim::Process& process) {
    std::vector<std::u16string> left = process.Ledger();
    std::erase(left, u"view of VglV5MapFile_Ink");
    std::erase(left, u"window TrayIconWClass");
    std::erase_if(left, StaysByDesign);
    return left;
  }
  // A shield for each time that one was drawn, the thread of each utility call.
  static bool StaysByDesign(const std::u16string& held) {
    return held == u"stock icon 77" || held.starts_with(u"thread of ");
  }

  [[noreturn]] void Stop(const SoakPrinter& printer, const std::string& what) {
    throw Stopped(vgl::Utf8FromText(printer.name) + ": " + what);
  }

  bool InstallerIsAtWork() const { return m_installer != nullptr && !m_installer->ended(); }

  void CheckAll() {
    const std::uint64_t now = m_machine.now();
    if (InstallerIsAtWork()) m_installerUntil = now;
    for (SoakPrinter& printer : m_printers) Check(printer, now);
    for (const SecondStart& second : m_seconds) CheckSecond(second, now);
    std::erase_if(m_seconds, [now](const SecondStart& second) {
      return second.process->ended() || now > second.startedAt + kLongestStart;
    });
  }

  // It has given way, or the one that it was to give way to went meanwhile.
  void CheckSecond(const SecondStart& second, std::uint64_t now) {
    SoakPrinter& printer = *second.printer;
    if (second.process->ended()) {
      const std::vector<std::u16string> left = LeftBehind(*second.process);
      if (!left.empty())
        Stop(printer, "a start that gave way left behind: " + vgl::Utf8FromText(left.front()));
      return;
    }
    if (now <= second.startedAt + kLongestStart) return;
    if (IsRunning(printer)) Stop(printer, "it has two agents");
    Adopt(printer, *second.process, second.startedAt);
  }

  void Check(SoakPrinter& printer, std::uint64_t now) {
    if (printer.agent == nullptr) return;
    if (printer.agent->ended()) return CheckEnded(printer);
    if (now <= printer.startedAt + kLongestStart) return;
    if (printer.heldAtStart == 0) printer.startedAlone = m_installerUntil < printer.startedAt;
    if (!printer.isThere || printer.isMasked) return CheckGoing(printer, now);
    if (!printer.isWounded) CheckHealth(printer);
    CheckHandles(printer);
  }

  void CheckGoing(const SoakPrinter& printer, std::uint64_t now) {
    // An installer keeps agents from noticing.
    const std::uint64_t since =
        std::max({printer.goneSince, m_installerUntil, printer.startedAt + kLongestStart});
    if (now <= since + kMaskCheckPeriod + kLongestUtility) return;
    if (!printer.isWounded) Stop(printer, "its agent outlives it");
    // Its timers may have failed; a log-off ends it as any other, and also one that waits for a
    // utility that never began.
    const sim::Window* window = WindowOf(printer);
    if (window != nullptr && !window->destroying)
      m_machine.desktop().Post(window->handle, WM_CLOSE);
    else
      m_machine.EndProcess(*printer.agent);
  }

  void CheckHealth(const SoakPrinter& printer) {
    const sim::Window* window = WindowOf(printer);
    if (window == nullptr) Stop(printer, "its agent has no window");
    if (m_machine.tray().FindOf(*printer.agent) == nullptr) Stop(printer, "its agent has no icon");
    const std::vector<sim::Timer> timers = m_machine.desktop().TimersOf(window->handle);
    std::vector<std::uint64_t> wanted = {vgl::TMID_MASKCHECK, vgl::TMID_FLUSHLOG};
    // What they go by can't be read while an installer is at work.
    if (printer.startedAlone)
      wanted.insert(wanted.end(), {vgl::TMID_INVITATION, vgl::TMID_NETPILOT});
    for (const std::uint64_t id : wanted)
      if (std::none_of(timers.begin(), timers.end(),
                       [id](const sim::Timer& timer) { return timer.id == id; }))
        Stop(printer, "its agent lacks timer " + std::to_string(id));
  }

  void CheckHandles(SoakPrinter& printer) {
    if (IsBusy(printer)) return;
    std::vector<std::u16string> held = printer.agent->Ledger();
    std::erase_if(held, StaysByDesign);
    // From the first invitation and the first utility on.
    EraseOne(held, kInvitationLibraryHeld);
    EraseOne(held, u"semaphore VGL_UtyCall_OBJ_" + printer.name);
    if (printer.heldAtStart == 0) printer.heldAtStart = held.size();
    // A call that failed may have cost the agent its icon or its menu, never more handles.
    if (held.size() <= printer.heldAtStart) return;
    std::string list;
    for (const std::u16string& one : held) list += "\n  " + vgl::Utf8FromText(one);
    Stop(printer, "its agent holds more than at its start:" + list);
  }

  static void EraseOne(std::vector<std::u16string>& held, const std::u16string& what) {
    if (const auto found = std::find(held.begin(), held.end(), what); found != held.end())
      held.erase(found);
  }

  // A menu is open, or a utility runs.
  bool IsBusy(const SoakPrinter& printer) {
    if (printer.agent->threads().size() > 1) return true;
    const auto menus = m_machine.desktop().menus().List();
    return std::any_of(menus.begin(), menus.end(), [&](const sim::OpenMenu* menu) {
      return menu->thread->process() == printer.agent;
    });
  }

  void CheckEnded(SoakPrinter& printer) {
    const sim::Process& agent = *printer.agent;
    printer.agent = nullptr;
    ++m_ends;
    m_calls += agent.calls();
    const bool wasKilled = agent.exitCode() == 1;
    // Where no message can be had, the loop ends with the word of the last one.
    if (!wasKilled && !printer.isWounded && agent.exitCode() != 0)
      Stop(printer, "its agent ended with code " + std::to_string(agent.exitCode()));
    // An agent that was clicked, or started, while an installer was at work takes its printer for
    // gone.
    const bool hasReason = !printer.isThere || printer.isMasked || printer.isWounded || wasKilled ||
                           m_installerUntil >= printer.startedAt;
    if (!hasReason) Stop(printer, "its agent ended for no reason");
    const std::vector<std::u16string> left = LeftBehind(agent);
    const bool brokeOff = agent.failedOperation() == "GetMessageW";
    if (!wasKilled && !brokeOff && !left.empty())
      Stop(printer, "its agent left behind: " + vgl::Utf8FromText(left.front()));
    if (m_machine.tray().FindOf(agent) != nullptr) Stop(printer, "its icon outlives its agent");
    if (printer.isThere || wasKilled || printer.isWounded) return;
    if (m_machine.registry().String(HKEY_CURRENT_USER, kRunKey, printer.name))
      Stop(printer, "its Run value outlives it");
    if (m_machine.files().Exists(printer.paramFile))
      Stop(printer, "its parameter file outlives it");
  }

  // Every printer goes, and every agent with it.
  void Finish() {
    for (SoakPrinter& printer : m_printers)
      if (printer.isThere) Remove(printer);
    if (m_installer != nullptr && !m_installer->ended()) m_machine.EndProcess(*m_installer);
    for (int i = 0; i < 3; ++i) {
      m_machine.RunFor(kLongestStart + kMaskCheckPeriod + kLongestUtility + 1);
      CheckAll();
    }
    for (const SoakPrinter& printer : m_printers)
      if (IsRunning(printer)) Stop(printer, "its agent hangs");
    if (!m_machine.tray().Icons().empty())
      throw Stopped("an icon is left in the notification area");
    if (m_machine.desktop().Find(vgl::kTrayWindowClass, nullptr) != nullptr)
      throw Stopped("a window is left");
    // What a program was to read, and what couldn't be started, is left only where a call failed.
    for (const std::u16string& path : m_machine.files().List())
      if (!m_options.withFaults && path.starts_with(m_machine.system().tempFolder))
        throw Stopped("a file is left in the temp folder: " + vgl::Utf8FromText(path));
    m_out << m_options.hours << " hours, " << m_options.printers << " printers, seed "
          << m_options.seed << ": " << m_events << " events, " << m_starts << " starts, " << m_ends
          << " ends, " << m_removals << " removals, " << m_clicks << " clicks, " << m_choices
          << " entries chosen, " << m_wounds << " faults, " << m_machine.programs().Starts().size()
          << " programs started, " << m_calls << " platform calls\n";
  }

  const SoakOptions& m_options;
  std::ostream& m_out;
  std::mt19937_64 m_random;
  std::vector<SoakPrinter> m_printers;
  std::vector<SecondStart> m_seconds;
  sim::Process* m_installer = nullptr;
  std::uint64_t m_installerUntil = 0;  // when one was last at work
  std::uint64_t m_events = 0, m_starts = 0, m_ends = 0, m_removals = 0, m_clicks = 0, m_choices = 0,
                m_wounds = 0, m_calls = 0;
  sim::Machine m_machine;
};

}  // namespace

int Soak(const SoakOptions& options, std::ostream& out, std::ostream& err) {
  SoakRun run(options, out);
  try {
    run.Run();
    return 0;
  } catch (const Stopped& stopped) {
    err << "soak: seed " << options.seed << ", at " << run.now() / 1000 << " s: " << stopped.what()
        << '\n';
    return kSoakFailed;
  }
}

}  // namespace desk
