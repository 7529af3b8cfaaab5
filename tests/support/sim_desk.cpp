#include "tests/support/sim_desk.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

#include "Common/CVglLog.h"
#include "Common/text_conversion.h"
#include "Common/wide_format.h"
#include "app/agent_messages.h"
#include "desk/usage_log_file.h"
#include "tests/support/log_texts.h"

namespace vgl {

namespace {

constexpr char16_t kRunKey[] = u"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr char16_t kVifPath[] = u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\KS7200.VIF";
constexpr char16_t kInstallDescription[] =
    u"C:\\Windows\\system32\\spool\\drivers\\x64\\3\\KS7200.DAT";
// By the serial number that the printer library tells where a test doesn't say otherwise.
constexpr char16_t kUsageLogFile[] =
    u"C:\\ProgramData\\KAVRO\\VGL3\\LOG\\VGL_TrayIcon_K7200A0001.xml";

// A process's copy of a process-wide variable, seen from outside.
template <class T>
T& CopyOf(sim::Process& process, platform::ProcessWide<T>& variable) {
  return *static_cast<T*>(process.Copy(
      &variable, [] { return static_cast<void*>(new T{}); },
      [](void* value) { delete static_cast<T*>(value); }));
}

// Adds lines behind the line `section` of a file that has it.
void AddToSection(sim::FileTree& files, std::u16string_view path, std::string_view section,
                  std::string_view lines) {
  std::string text = files.ReadFile(path).value();
  const std::size_t at = text.find(std::string(section) + "\r\n");
  if (at == std::string::npos) throw std::logic_error("no such section");
  text.insert(at + section.size() + 2, std::string(lines) + "\r\n");
  files.WriteFile(path, text);
}

// The menu's key has a path of its own in the description, which is added when it is first needed.
void SetDescribed(sim::FileTree& files, std::string_view tag, std::string_view name,
                  std::string_view value) {
  constexpr std::string_view kMenuPath =
      "REGPATH=MNU,\"HKEY_LOCAL_MACHINE\\Software\\KAVRO\\VGL3\\Driver\\KAVRO Studio "
      "7200\\Menu\"\r\n";
  std::string text = files.ReadFile(kInstallDescription).value();
  if (tag == "MNU" && text.find(kMenuPath) == std::string::npos) text += kMenuPath;
  const std::string begin = "REGENTER=" + std::string(tag) + ",\"" + std::string(name) + "\",";
  if (const std::size_t at = text.find(begin); at != std::string::npos)
    text.erase(at, text.find("\r\n", at) + 2 - at);
  files.WriteFile(kInstallDescription, text + begin + "\"" + std::string(value) + "\"\r\n");
}

}  // namespace

void AddToProfile(sim::Machine& machine, std::string_view line) {
  AddToSection(machine.files(), desk::kProfilePath, "[S7200]", line);
}

void AddToVif(sim::Machine& machine, std::string_view lines) {
  machine.files().WriteFile(
      kVifPath, machine.files().ReadFile(kVifPath).value() + std::string(lines) + "\r\n");
}

void SetDriverValue(sim::Machine& machine, std::string_view name, std::string_view value) {
  SetDescribed(machine.files(), "DRV", name, value);
}

void SetMenuValue(sim::Machine& machine, std::string_view name, std::string_view value) {
  SetDescribed(machine.files(), "MNU", name, value);
}

std::vector<std::u16string> TempFilesOf(sim::Machine& machine) {
  std::vector<std::u16string> paths = machine.files().List();
  std::erase_if(paths, [&](const std::u16string& path) {
    return !path.starts_with(machine.system().tempFolder);
  });
  return paths;
}

std::vector<std::u16string> SimAgent::Ledger() const {
  std::vector<std::u16string> held = m_process.Ledger();
  std::sort(held.begin(), held.end());
  return held;
}

sim::Window* SimAgent::Window() const {
  return m_machine.desktop().FindOf(m_process, kTrayWindowClass);
}

std::vector<std::uint64_t> SimAgent::Timers() const {
  std::vector<std::uint64_t> ids;
  const sim::Window* window = Window();
  if (window == nullptr) return ids;
  for (const sim::Timer& timer : m_machine.desktop().TimersOf(window->handle))
    ids.push_back(timer.id);
  std::sort(ids.begin(), ids.end());
  return ids;
}

std::uint32_t SimAgent::PeriodOf(std::uint64_t timer) const {
  const sim::Window* window = Window();
  if (window == nullptr) return 0;
  for (const sim::Timer& each : m_machine.desktop().TimersOf(window->handle))
    if (each.id == timer) return each.period;
  return 0;
}

void SimAgent::Post(std::uint32_t message, platform::WPARAM wParam, platform::LPARAM lParam) const {
  m_machine.desktop().Post(Window()->handle, message, wParam, lParam);
  m_machine.Settle();
}

std::uint32_t SimAgent::Close() const {
  Post(platform::WM_CLOSE);
  m_machine.RunUntilEnded(m_process, 60000);
  return m_process.exitCode();
}

const sim::TrayIcon* SimAgent::Icon() const { return m_machine.tray().FindOf(m_process); }

void SimAgent::Click() const {
  m_machine.tray().Click(*Icon());
  m_machine.Settle();
}

void SimAgent::DoubleClick() const {
  m_machine.tray().DoubleClick(*Icon());
  m_machine.Settle();
}

void SimAgent::RightClick() const {
  m_machine.tray().RightClick(*Icon());
  m_machine.Settle();
}

sim::OpenMenu* SimAgent::OpenMenu() const {
  for (sim::OpenMenu* open : m_machine.desktop().menus().List())
    if (open->thread->process() == &m_process) return open;
  return nullptr;
}

bool SimAgent::MenuIsOpen() const { return OpenMenu() != nullptr; }

std::vector<sim::MenuItem> SimAgent::MenuItems() const {
  return m_machine.desktop().menus().ItemsOf(*OpenMenu());
}

void SimAgent::Choose(std::uint32_t id) const {
  m_machine.desktop().menus().Choose(*OpenMenu(), id);
  m_machine.Settle();
}

void SimAgent::DismissMenu() const {
  m_machine.desktop().menus().Dismiss(*OpenMenu());
  m_machine.Settle();
}

std::vector<std::uint32_t> SimAgent::Counts() const {
  const CVglLog& log = CopyOf(m_process, g_VglLog);
  if (log.m_pnLogData == nullptr) return {};
  return {log.m_pnLogData.get(), log.m_pnLogData.get() + log.m_nLogCount};
}

SimDesk::SimDesk(std::uint64_t seed) : machine(seed) {
  desk::SetUpDefaultMachine(machine);
  desk::EnableTrayLog(machine);
}

SimAgent SimDesk::StartAgent(std::u16string commandLine) {
  SimAgent agent(machine, desk::StartAgent(machine, std::move(commandLine)));
  machine.Settle();
  return agent;
}

SimAgent SimDesk::StartedAgent(std::u16string commandLine) {
  SimAgent agent = StartAgent(std::move(commandLine));
  // The longest wait for a predecessor.
  machine.RunFor(2000);
  return agent;
}

std::u16string SimDesk::AddPrinter(const std::u16string& name, const std::u16string& port) {
  desk::AddPrinterOfDefaultDriver(machine, name, port);
  return WideFormat(u"/P \"%s\" /D \"%s\" /O \"%s\" /M \"%s\"", name, desk::kDriverName, port,
                    desk::kModelId);
}

void SimDesk::SetMask(std::uint32_t value) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes += static_cast<char>(value >> 8 * i & 0xFF);
  machine.spooler().SetData(desk::kPrinterName, u"PrinterDriverData", u"VGLSetting",
                            platform::REG_DWORD, bytes);
}

sim::Process& SimDesk::StartInstaller() {
  sim::Process& installer = machine.StartProcess(u"C:\\setup.exe", u"", [](const char16_t*) {
    using platform::Os;
    Os().objects.CreateMutexW(nullptr, false, u"Global\\KavroPrinterInstaller");
    for (;;) Os().process.Sleep(60000);
    return 0U;
  });
  machine.Settle();
  return installer;
}

void SimDesk::SetResourceLibrary(const desk::ResourceLibrary& library) {
  machine.files().WriteFile(desk::kResourceLibraryPath, desk::BytesOf(library));
}

std::vector<std::u16string> SimDesk::RunValues() {
  return machine.registry().ValueNames(platform::HKEY_CURRENT_USER, kRunKey);
}

void SimDesk::SetRunValue(std::u16string_view name, std::u16string_view commandLine) {
  machine.registry().SetString(platform::HKEY_CURRENT_USER, kRunKey, name, commandLine);
}

std::u16string SimDesk::WriteParamFile(std::u16string_view name, std::u16string_view text) {
  std::u16string path = machine.system().tempFolder + std::u16string(name);
  machine.files().WriteUtf16(path, text);
  return path;
}

std::vector<std::u16string> SimDesk::BoxesShown() const {
  // "message box "caption": text"
  constexpr std::u16string_view kShown = u"message box \"";
  std::vector<std::u16string> boxes;
  for (const sim::Event& event : machine.trace()) {
    if (!event.text.starts_with(kShown)) continue;
    const std::size_t caption = event.text.find(u"\": ", kShown.size());
    boxes.push_back(event.text.substr(kShown.size(), caption - kShown.size()) +
                    event.text.substr(caption + 1));
  }
  return boxes;
}

std::vector<std::uint32_t> SimDesk::CountsInFile() {
  const std::optional<std::string> bytes = machine.files().ReadFile(kUsageLogFile);
  if (!bytes) return {};
  return desk::ParseUsageLog(*bytes).value().counters;
}

std::vector<std::string> SimDesk::LogTexts() const { return LogTextsThatBegin(""); }

std::vector<std::string> SimDesk::LogTextsOf(const SimAgent& agent) const {
  return LogTextsThatBegin(Utf8FromText(WideFormat(u"%04X;", agent.process().id())));
}

std::vector<std::string> SimDesk::LogTextsThatBegin(const std::string& begin) const {
  auto& files = const_cast<sim::Machine&>(machine).files();
  return TextsOfLog(files.ReadFile(desk::kTrayLogFile).value_or(""), begin);
}

bool SimDesk::HasLogged(const std::string& text) const {
  const std::vector<std::string> texts = LogTexts();
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

}  // namespace vgl
