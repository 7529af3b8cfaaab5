#include "desk/event_printer.h"

#include <algorithm>
#include <iomanip>
#include <optional>
#include <ostream>
#include <span>

#include "Common/text_conversion.h"
#include "app/option_walker.h"
#include "desk/default_machine.h"

namespace desk {

namespace {

// An event is one line, whatever line ends its text has.
std::string OnOneLine(const std::string& text) {
  std::string line;
  for (const char c : text) {
    if (c == '\r')
      line += "\\r";
    else if (c == '\n')
      line += "\\n";
    else
      line += c;
  }
  return line;
}

// How the trace tells that a program was started: "started C:\x.exe: its command line".
constexpr std::u16string_view kProgramStarted = u"started ";
constexpr std::u16string_view kLoaded = u"loaded library ";
constexpr std::u16string_view kFreed = u"freed library ";
// And that a process began.
constexpr std::u16string_view kBegan = u"started: ";

}  // namespace

std::string ParamFileInWords(const sim::FileTree& files, std::u16string_view commandLine) {
  std::u16string path;
  vgl::COptionWalker given(commandLine);
  while (const std::optional<vgl::SeenOption> option = given.Next()) {
    const std::optional<std::u16string_view> value = given.Value();
    if (!value) break;
    if (vgl::EqualsIgnoringAsciiCase(option->name, u"FU")) path = *value;
  }
  const std::optional<std::string> bytes = path.empty() ? std::nullopt : files.ReadFile(path);
  if (!bytes) return "";
  const std::u16string text = vgl::TextFromUtf16Le(std::as_bytes(std::span(*bytes)));
  vgl::COptionWalker options(text);
  std::string words;
  while (const std::optional<vgl::SeenOption> option = options.Next()) {
    const std::optional<std::u16string_view> value = options.Value();
    if (!value) break;
    words += (words.empty() ? "/" : " /") + vgl::Utf8FromText(option->name);
    if (!value->empty()) words += " \"" + vgl::Utf8FromText(*value) + '"';
  }
  return words;
}

EventPrinter::EventPrinter(sim::Machine& machine, bool showTrayLog, std::ostream& out)
    : m_machine(machine), m_showTrayLog(showTrayLog), m_out(out) {
  if (showTrayLog) {
    machine.files().OnAppend(
        [this](std::uint32_t processId, const std::u16string& path, std::string_view bytes) {
          if (path == kTrayLogFile) ShowLogLines(processId, bytes);
        });
  }
  machine.Observe([this](const sim::Event& event) { ShowEvent(event); });
}

EventPrinter::~EventPrinter() {
  m_machine.Observe(nullptr);
  m_machine.files().OnAppend(nullptr);
}

void EventPrinter::AddAgent(const sim::Process& agent) { m_agents.push_back(agent.id()); }

bool EventPrinter::IsAgent(std::uint32_t processId) const {
  return std::find(m_agents.begin(), m_agents.end(), processId) != m_agents.end();
}

std::string EventPrinter::NameOf(std::uint32_t processId) const {
  for (std::size_t i = 0; i < m_agents.size(); ++i)
    if (m_agents[i] == processId) return "agent " + std::to_string(i + 1);
  for (const auto& process : m_machine.processes()) {
    if (process->id() != processId) continue;
    const std::u16string& path = process->imagePath();
    const std::u16string name = path.substr(path.rfind(u'\\') + 1);
    return vgl::Utf8FromText(name.substr(0, name.rfind(u'.')));
  }
  return "script";
}

void EventPrinter::Line(std::uint32_t processId, const std::string& text) {
  m_out << std::setw(9) << m_machine.now() / 1000 << '.' << std::setfill('0') << std::setw(3)
        << m_machine.now() % 1000 << std::setfill(' ') << "  " << std::left << std::setw(8)
        << NameOf(processId) << std::right << "  " << OnOneLine(text) << '\n';
}

void EventPrinter::ShowEvent(const sim::Event& event) {
  if (IsHidden(event)) return;
  Line(event.processId, vgl::Utf8FromText(event.text));
  if (!event.text.starts_with(kProgramStarted)) return;
  const std::string options =
      ParamFileInWords(m_machine.files(), event.text.substr(kProgramStarted.size()));
  if (!options.empty()) Line(event.processId, "with the parameters " + options);
}

bool EventPrinter::IsHidden(const sim::Event& event) {
  const std::u16string_view text = event.text;
  if (m_showTrayLog && text.ends_with(kTrayLogFile)) return true;
  if (text.starts_with(kFreed)) return true;
  if (text.starts_with(kLoaded))
    return !m_loadsTold.emplace(event.processId, text.substr(kLoaded.size())).second;
  // Whoever started it has told that.
  return text.starts_with(kBegan) && WasStartedByProgram(event.processId);
}

bool EventPrinter::WasStartedByProgram(std::uint32_t processId) const {
  return std::ranges::any_of(m_machine.programs().Starts(),
                             [&](const auto& start) { return start.process->id() == processId; });
}

void EventPrinter::ShowLogLines(std::uint32_t processId, std::string_view bytes) {
  std::string text(bytes);
  std::erase(text, '\r');
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    Line(processId, "log| " + text.substr(start, end - start));
    start = end + 1;
  }
}

}  // namespace desk
