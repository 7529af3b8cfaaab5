#include "desk/player.h"

#include <algorithm>
#include <iomanip>
#include <ostream>
#include <vector>

#include "Common/text_conversion.h"
#include "app/agent_messages.h"
#include "desk/default_machine.h"
#include "desk/map_reader.h"
#include "desk/sample.h"

namespace desk {

namespace {

class Player {
 public:
  Player(const PlayOptions& options, std::ostream& out, std::ostream& err)
      : m_options(options), m_out(out), m_err(err), m_machine(options.seed) {}

  int Play(const Script& script) {
    std::string error;
    if (!SetUp(m_options.sample.empty() ? script.sample : m_options.sample, script, error)) {
      m_err << "vgldesk: " << error << '\n';
      return kBadSample;
    }
    for (const Command& command : script.commands)
      if (!Do(command)) return kSessionFailed;
    return Finish();
  }

 private:
  bool SetUp(const std::string& sample, const Script& script, std::string& error) {
    if (sample.empty()) {
      SetUpDefaultMachine(m_machine);
    } else {
      SetUpSuite(m_machine);
      if (!LoadSample(m_machine, SampleFolder(sample), error)) return false;
      if (HasBareStart(script) && !ReadSampleOptions(SampleFolder(sample), m_sampleOptions, error))
        return false;
    }
    if (m_options.showTrayLog) {
      EnableTrayLog(m_machine);
      m_machine.files().OnAppend(
          [this](std::uint32_t processId, const std::u16string& path, std::string_view bytes) {
            if (path == kTrayLogFile) ShowLogLines(processId, bytes);
          });
    }
    m_machine.Observe([this](const sim::Event& event) { ShowEvent(event); });
    return true;
  }

  // An event is one line, whatever line ends its text has.
  static std::string OnOneLine(const std::string& text) {
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

  void Line(std::uint32_t processId, const std::string& text) {
    m_out << std::setw(9) << m_machine.now() / 1000 << '.' << std::setfill('0') << std::setw(3)
          << m_machine.now() % 1000 << std::setfill(' ') << "  " << std::left << std::setw(8)
          << NameOf(processId) << std::right << "  " << OnOneLine(text) << '\n';
  }

  std::string NameOf(std::uint32_t processId) const {
    for (std::size_t i = 0; i < m_agents.size(); ++i)
      if (m_agents[i]->id() == processId) return "agent " + std::to_string(i + 1);
    return "script";
  }

  void ShowEvent(const sim::Event& event) {
    // With the log shown, its lines stand for the writing of them.
    if (m_options.showTrayLog && event.text.ends_with(kTrayLogFile)) return;
    Line(event.processId, vgl::Utf8FromText(event.text));
  }

  void ShowLogLines(std::uint32_t processId, std::string_view bytes) {
    std::string text(bytes);
    std::erase(text, '\r');
    for (std::size_t start = 0; start < text.size();) {
      const std::size_t end = std::min(text.find('\n', start), text.size());
      Line(processId, "log| " + text.substr(start, end - start));
      start = end + 1;
    }
  }

  sim::Process& AgentOf(const Command& command) {
    return *(command.agent == 0 ? m_agents.back()
                                : m_agents[static_cast<std::size_t>(command.agent) - 1]);
  }

  bool Fail(const Command& command, const std::string& what) {
    m_err << "vgldesk: line " << command.line << ": " << what << '\n';
    return false;
  }

  bool Do(const Command& command) {
    switch (command.kind) {
      case Command::Kind::Param:
        m_machine.files().WriteUtf16(
            m_machine.system().tempFolder + vgl::TextFromUtf8(command.text),
            vgl::TextFromUtf8(command.content));
        Line(0, "wrote parameter file " + command.text);
        return true;
      case Command::Kind::Start:
        m_agents.push_back(&StartAgent(
            m_machine, vgl::TextFromUtf8(command.text.empty() ? m_sampleOptions : command.text)));
        m_machine.Settle();
        return true;
      case Command::Kind::Wait:
        m_machine.RunFor(command.milliseconds);
        return true;
      case Command::Kind::Post:
        return Post(command);
      case Command::Kind::Kill:
        Line(0, "kills " + NameOf(AgentOf(command).id()));
        m_machine.EndProcess(AgentOf(command));
        return true;
      case Command::Kind::AwaitEnd:
        if (m_machine.RunUntilEnded(AgentOf(command), command.milliseconds)) return true;
        return Fail(command, NameOf(AgentOf(command).id()) + " still runs");
      case Command::Kind::Map:
        for (const std::string& line : MapsOf(m_machine)) Line(0, "map| " + line);
        return true;
    }
    return false;
  }

  // As another program of the suite sees them.
  std::vector<std::string> MapsOf(sim::Machine& machine) {
    const sim::Inside reader(machine, u"C:\\Program Files\\KAVRO\\VGL3\\map_reader.exe");
    return ReadMaps([this](std::uint64_t window) { return OwnerOf(platform::HWND{window}); });
  }

  std::string OwnerOf(platform::HWND handle) {
    const sim::Window* window = m_machine.desktop().Find(handle);
    if (window == nullptr) return "dead";
    const std::string name = NameOf(window->thread->process()->id());
    return name == "script" ? "other" : name;
  }

  bool Post(const Command& command) {
    sim::Process& agent = AgentOf(command);
    const std::string name = NameOf(agent.id());
    if (agent.ended())
      return Fail(command,
                  name + " has ended already, with code " + std::to_string(agent.exitCode()));
    sim::Window* window = m_machine.desktop().FindOf(agent, vgl::kTrayWindowClass);
    if (window == nullptr) return Fail(command, name + " has no window");
    Line(0,
         "posts " + vgl::Utf8FromText(m_machine.desktop().NameOf(command.message)) + " to " + name);
    if (m_machine.desktop().Post(window->handle, command.message, command.wParam, command.lParam) !=
        platform::ERROR_SUCCESS)
      return Fail(command, "this message can't be posted");
    m_machine.Settle();
    return true;
  }

  int Finish() {
    if (m_agents.empty()) return 0;
    bool allEnded = true;
    for (sim::Process* agent : m_agents) {
      if (agent->ended()) continue;
      m_err << "vgldesk: " << NameOf(agent->id()) << " still runs at the end of the script\n";
      allEnded = false;
    }
    ShowParamFiles();
    return allEnded ? static_cast<int>(m_agents.front()->exitCode()) : kSessionFailed;
  }

  void ShowParamFiles() {
    std::string names;
    for (const std::u16string& path : m_machine.files().List())
      if (path.starts_with(m_machine.system().tempFolder))
        names += " " + vgl::Utf8FromText(path.substr(m_machine.system().tempFolder.size()));
    Line(0, "in the temp folder:" + (names.empty() ? " nothing" : names));
  }

  const PlayOptions& m_options;
  std::ostream& m_out;
  std::ostream& m_err;
  std::string m_sampleOptions;  // for a start without a command line
  std::vector<sim::Process*> m_agents;
  sim::Machine m_machine;
};

}  // namespace

int Play(const Script& script, const PlayOptions& options, std::ostream& out, std::ostream& err) {
  return Player(options, out, err).Play(script);
}

}  // namespace desk
