#include "desk/player.h"

#include <ostream>
#include <vector>

#include "Common/text_conversion.h"
#include "app/agent_messages.h"
#include "desk/deeds.h"
#include "desk/default_machine.h"
#include "desk/event_printer.h"
#include "desk/map_reader.h"
#include "desk/sample.h"
#include "desk/suite_reader.h"

namespace desk {

namespace {

constexpr char16_t kReaderPath[] = u"C:\\Program Files\\KAVRO\\VGL3\\session_reader.exe";

class Player {
 public:
  Player(const PlayOptions& options, std::ostream& out, std::ostream& err)
      : m_options(options),
        m_err(err),
        m_machine(options.seed),
        m_deeds(m_machine),
        m_printer(m_machine, options.showTrayLog, out) {}

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
    if (m_options.showTrayLog) EnableTrayLog(m_machine);
    return true;
  }

  sim::Process& AgentOf(const Command& command) {
    return *(command.agent == 0 ? m_agents.back()
                                : m_agents[static_cast<std::size_t>(command.agent) - 1]);
  }
  std::string NameOf(const Command& command) { return m_printer.NameOf(AgentOf(command).id()); }

  bool Fail(const Command& command, const std::string& what) {
    m_err << "vgldesk: line " << command.line << ": " << what << '\n';
    return false;
  }

  // Something was done, or `mistake` tells why not.
  bool Done(const Command& command, const std::string& mistake, const std::string& what) {
    if (!mistake.empty()) return Fail(command, mistake);
    m_printer.Line(0, what);
    m_machine.Settle();
    return true;
  }
  // The same for what was done to an agent.
  bool DoneTo(const Command& command, const std::string& mistake, const std::string& what) {
    const std::string name = NameOf(command);
    return Done(command, mistake.empty() ? "" : name + " " + mistake, what + " " + name);
  }

  bool Do(const Command& command) {
    using Kind = Command::Kind;
    switch (command.kind) {
      case Kind::Param:
        m_machine.files().WriteUtf16(
            m_machine.system().tempFolder + vgl::TextFromUtf8(command.text),
            vgl::TextFromUtf8(command.content));
        return Done(command, "", "wrote parameter file " + command.text);
      case Kind::Start:
        m_agents.push_back(&StartAgent(
            m_machine, vgl::TextFromUtf8(command.text.empty() ? m_sampleOptions : command.text)));
        m_printer.AddAgent(*m_agents.back());
        m_machine.Settle();
        return true;
      case Kind::Wait:
        m_machine.RunFor(command.milliseconds);
        return true;
      case Kind::AwaitReady:
        return AwaitReady(command);
      case Kind::Post:
        return Post(command);
      case Kind::Kill:
        m_printer.Line(0, "kills " + NameOf(command));
        m_machine.EndProcess(AgentOf(command));
        return true;
      case Kind::AwaitEnd:
        if (m_machine.RunUntilEnded(AgentOf(command), command.milliseconds)) return true;
        return Fail(command, NameOf(command) + " still runs");
      case Kind::Map:
        return Show("map| ", Inside([&] {
                      return ReadMaps(
                          [this](std::uint64_t window) { return OwnerOf(platform::HWND{window}); });
                    }));
      case Kind::Menu:
        return ShowMenu(command);
      case Kind::Show:
        return Show("show| ", Inside(ReadSuite));
      case Kind::Picture:
        m_printer.Line(0, "picture " + command.text + " (taken under Wine only)");
        return true;
      default:
        return DoAsPerson(command);
    }
  }

  bool DoAsPerson(const Command& command) {
    using Kind = Command::Kind;
    switch (command.kind) {
      case Kind::Click:
      case Kind::DoubleClick:
      case Kind::RightClick:
        return DoneTo(command, m_deeds.UseMouse(AgentOf(command), command.kind),
                      (command.kind == Kind::Click         ? "clicks the icon of"
                       : command.kind == Kind::DoubleClick ? "double-clicks the icon of"
                                                           : "right-clicks the icon of"));
      case Kind::Choose:
        return DoneTo(command, m_deeds.Choose(AgentOf(command), command.number),
                      "chooses " + std::to_string(command.number) + " in the menu of");
      case Kind::Dismiss:
        return DoneTo(command, m_deeds.Dismiss(AgentOf(command)), "dismisses the menu of");
      case Kind::Answer:
        return DoneTo(command, m_deeds.Answer(AgentOf(command)), "answers the message box of");
      case Kind::Hold:
        m_deeds.Hold(command.keys);
        return Done(command, "", "holds keys down");
      case Kind::Release:
        m_deeds.Release();
        return Done(command, "", "releases the keys");
      default:
        return DoAsProgram(command);
    }
  }

  bool DoAsProgram(const Command& command) {
    using Kind = Command::Kind;
    const std::u16string text = vgl::TextFromUtf8(command.text);
    const std::string quoted = '"' + command.text + '"';
    const std::string number = std::to_string(command.number);
    switch (command.kind) {
      case Kind::AddPrinter:
        return Done(command, m_deeds.AddPrinter(command), "adds printer " + quoted);
      case Kind::DeletePrinter:
        return Done(command, m_deeds.DeletePrinter(text), "deletes printer " + quoted);
      case Kind::Mask:
        return Done(command, m_deeds.SetData(text, u"VGLSetting", command.number),
                    "sets VGLSetting of " + quoted + " to " + number);
      case Kind::SetData:
        return Done(command, m_deeds.SetData(text, vgl::TextFromUtf8(command.name), command.number),
                    "sets " + command.name + " of " + quoted + " to " + number);
      case Kind::SelectIcon:
        return Done(command, m_deeds.SelectIcon(AgentOf(command), text, command.number),
                    "selects icon " + number + " for " + quoted + " and tells " + NameOf(command));
      case Kind::SetValue:
        m_deeds.SetValue(command);
        return Done(command, "",
                    "sets HKCU\\" + command.text + "\\" + command.name + " = " +
                        (command.isText ? '"' + command.value + '"' : number));
      case Kind::SetTime:
        m_deeds.SetTime(command);
        return Done(command, "",
                    "sets HKCU\\" + command.text + "\\" + command.name + " to the time " + number +
                        " seconds ago");
      case Kind::Autostart:
        m_deeds.Autostart(text, vgl::TextFromUtf8(command.name));
        return Done(command, "", "sets Run value \"" + command.name + "\" for " + command.text);
      case Kind::InstallerStarts:
        m_deeds.StartInstaller();
        return Done(command, "", "starts an installer");
      case Kind::InstallerEnds:
        m_deeds.EndInstaller();
        return Done(command, "", "ends the installer");
      default:
        return false;
    }
  }

  // What `read` gives as another program of the suite sees it.
  template <class Read>
  std::vector<std::string> Inside(const Read& read) {
    const sim::Inside reader(m_machine, kReaderPath);
    return read();
  }

  bool Show(const std::string& mark, const std::vector<std::string>& lines) {
    for (const std::string& line : lines) m_printer.Line(0, mark + line);
    return true;
  }

  bool ShowMenu(const Command& command) {
    std::vector<MenuLine> entries;
    const std::string mistake = m_deeds.ReadMenu(AgentOf(command), entries);
    if (!mistake.empty()) return Fail(command, NameOf(command) + " " + mistake);
    return Show("menu| ", MenuInWords(entries));
  }

  std::string OwnerOf(platform::HWND handle) {
    const sim::Window* window = m_machine.desktop().Find(handle);
    if (window == nullptr) return "dead";
    const std::uint32_t process = window->thread->process()->id();
    return m_printer.IsAgent(process) ? m_printer.NameOf(process) : "other";
  }

  bool AwaitReady(const Command& command) {
    const std::string mistake = m_deeds.AwaitReady(AgentOf(command));
    return mistake.empty() || Fail(command, NameOf(command) + " " + mistake);
  }

  bool Post(const Command& command) {
    sim::Process& agent = AgentOf(command);
    const std::string name = NameOf(command);
    if (agent.ended())
      return Fail(command,
                  name + " has ended already, with code " + std::to_string(agent.exitCode()));
    sim::Window* window = m_machine.desktop().FindOf(agent, vgl::kTrayWindowClass);
    if (window == nullptr) return Fail(command, name + " has no window");
    m_printer.Line(0, "posts " + vgl::Utf8FromText(m_machine.desktop().NameOf(command.message)) +
                          " to " + name);
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
      m_err << "vgldesk: " << m_printer.NameOf(agent->id())
            << " still runs at the end of the script\n";
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
    m_printer.Line(0, "in the temp folder:" + (names.empty() ? " nothing" : names));
  }

  const PlayOptions& m_options;
  std::ostream& m_err;
  std::string m_sampleOptions;  // for a start without a command line
  std::vector<sim::Process*> m_agents;
  sim::Machine m_machine;
  Deeds m_deeds;
  EventPrinter m_printer;
};

}  // namespace

int Play(const Script& script, const PlayOptions& options, std::ostream& out, std::ostream& err) {
  return Player(options, out, err).Play(script);
}

}  // namespace desk
