// In front of the Windows headers, whose macros rename its constants.
#include "app/agent_messages.h"

#include "tests/windows/driver/player.h"

#include <algorithm>
#include <ctime>

#include "tests/windows/driver/machine.h"
#include "tests/windows/driver/text.h"

namespace driver {

namespace {

// How long somebody is given to take a picture.
constexpr DWORD kPicturePatience = 10000;
constexpr DWORD kGlance = 20;
// The longest start.
constexpr DWORD kStartPatience = 60000;

bool HasEnded(const PROCESS_INFORMATION& agent) {
  return WaitForSingleObject(agent.hProcess, 0) == WAIT_OBJECT_0;
}

int ExitCodeOf(const PROCESS_INFORMATION& agent) {
  DWORD code = 0;
  GetExitCodeProcess(agent.hProcess, &code);
  return static_cast<int>(code);
}

std::string Refusal(const std::string& printer, DWORD error) {
  return "printer \"" + printer + "\" refuses that, error " + std::to_string(error);
}

}  // namespace

Player::~Player() {
  ReleaseKeys(m_heldKeys);
  if (m_installer != nullptr) CloseHandle(m_installer);
  for (const PROCESS_INFORMATION& agent : m_agents) {
    TerminateProcess(agent.hProcess, 1);
    CloseHandle(agent.hThread);
    CloseHandle(agent.hProcess);
  }
}

bool Player::Play(const desk::Script& script) {
  for (const desk::Command& command : script.commands)
    if (!Do(command)) return false;
  return AllEnded();
}

int Player::ExitCodeOfFirst() const { return m_agents.empty() ? 0 : ExitCodeOf(m_agents.front()); }

const PROCESS_INFORMATION& Player::AgentOf(const desk::Command& command) const {
  return command.agent == 0 ? m_agents.back()
                            : m_agents[static_cast<std::size_t>(command.agent) - 1];
}

std::string Player::NameOf(const desk::Command& command) const {
  return "agent " +
         std::to_string(command.agent == 0 ? static_cast<int>(m_agents.size()) : command.agent);
}

bool Player::Fail(const desk::Command& command, const std::string& what) {
  Say("session_driver: line " + std::to_string(command.line) + ": " + what);
  return false;
}

bool Player::Done(const desk::Command& command, bool done, const std::string& mistake) {
  return done || Fail(command, mistake);
}

bool Player::Do(const desk::Command& command) {
  using Kind = desk::Command::Kind;
  const PROCESS_INFORMATION* agent = m_agents.empty() ? nullptr : &AgentOf(command);
  switch (command.kind) {
    case Kind::Param:
      return WriteParam(command);
    case Kind::Start:
      return Start(command);
    case Kind::Wait:
      Sleep(static_cast<DWORD>(command.milliseconds));
      return true;
    case Kind::AwaitReady:
      return Done(command, WaitForInputIdle(agent->hProcess, kStartPatience) == 0,
                  NameOf(command) + " isn't ready");
    case Kind::Post:
      return Post(command);
    case Kind::Kill:
      TerminateProcess(agent->hProcess, 1);
      WaitForSingleObject(agent->hProcess, INFINITE);
      return true;
    case Kind::AwaitEnd:
      return Done(command,
                  WaitForSingleObject(agent->hProcess, static_cast<DWORD>(command.milliseconds)) ==
                      WAIT_OBJECT_0,
                  NameOf(command) + " still runs");
    case Kind::Map:
      return Read(command, L"map");
    case Kind::Menu:
      return ShowMenu(command);
    case Kind::Show:
      return Read(command, L"show");
    case Kind::Picture:
      return TakePicture(command);
    default:
      return DoAsPerson(command);
  }
}

bool Player::DoAsPerson(const desk::Command& command) {
  using Kind = desk::Command::Kind;
  switch (command.kind) {
    case Kind::Click:
      return Click(command, MouseUse::kClick);
    case Kind::DoubleClick:
      return Click(command, MouseUse::kDoubleClick);
    case Kind::RightClick:
      return Click(command, MouseUse::kRightClick);
    case Kind::Choose:
      return Choose(command);
    case Kind::Dismiss:
      return Done(command, EscapeFromMenu(AgentOf(command).dwProcessId),
                  NameOf(command) + " shows no menu");
    case Kind::Answer:
      return Done(command, AnswerBox(AgentOf(command).dwProcessId),
                  NameOf(command) + " shows no message box");
    case Kind::Hold:
      PressKeys(command.keys);
      m_heldKeys.insert(m_heldKeys.end(), command.keys.begin(), command.keys.end());
      return true;
    case Kind::Release:
      ReleaseKeys(m_heldKeys);
      m_heldKeys.clear();
      return true;
    default:
      return DoAsProgram(command);
  }
}

bool Player::DoAsProgram(const desk::Command& command) {
  using Kind = desk::Command::Kind;
  DWORD error = 0;
  switch (command.kind) {
    case Kind::AddPrinter:
      return AddPrinter(command);
    case Kind::DeletePrinter:
      error = TakePrinterAway(Wide(command.text));
      return Done(command, error == 0, Refusal(command.text, error));
    case Kind::Mask:
      error = SetPrinterNumber(Wide(command.text), L"VGLSetting", command.number);
      return Done(command, error == 0, Refusal(command.text, error));
    case Kind::SetData:
      error = SetPrinterNumber(Wide(command.text), Wide(command.name), command.number);
      return Done(command, error == 0, Refusal(command.text, error));
    case Kind::SelectIcon:
      return SelectIcon(command);
    case Kind::SetValue:
      return SetValue(command);
    case Kind::SetTime:
      return SetTime(command);
    case Kind::Autostart:
      return Autostart(command);
    case Kind::InstallerStarts:
      return StartInstaller(command);
    case Kind::InstallerEnds:
      CloseHandle(m_installer);
      m_installer = nullptr;
      return true;
    default:
      return Fail(command, "this command is not known here");
  }
}

bool Player::WriteParam(const desk::Command& command) {
  const std::wstring text = Wide(command.content);
  return Done(
      command,
      WriteWholeFile(TempFolder() + Wide(command.text), text.data(), text.size() * sizeof(wchar_t)),
      command.text + " can't be written");
}

bool Player::Start(const desk::Command& command) {
  std::wstring line = L"\"" + m_options.agentPath + L"\" " +
                      Wide(command.text.empty() ? m_options.sampleOptions : command.text);
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION agent = {};
  const auto start = [&] {
    return CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                          &startup, &agent) != FALSE;
  };
  // Once in some hundred starts Wine fails within itself, before there is a process.
  bool started = start();
  if (!started && GetLastError() == ERROR_INTERNAL_ERROR) {
    Say("Wine couldn't start a process; once more");
    started = start();
  }
  if (!started)
    return Fail(command, "the agent can't be started, error " + std::to_string(GetLastError()));
  m_agents.push_back(agent);
  Say("started agent " + std::to_string(m_agents.size()));
  return true;
}

bool Player::Post(const desk::Command& command) {
  const PROCESS_INFORMATION& agent = AgentOf(command);
  if (HasEnded(agent))
    return Fail(command, NameOf(command) + " has ended already, with code " +
                             std::to_string(ExitCodeOf(agent)));
  const HWND window = TrayWindowOf(agent.dwProcessId);
  if (window == nullptr) return Fail(command, NameOf(command) + " has no window");
  Say("posted message " + std::to_string(command.message));
  return Done(command, PostMessageW(window, command.message, command.wParam, command.lParam) != 0,
              "this message can't be posted");
}

// The icons say nothing of whose they are: each agent that runs is taken to have one, in the order
// of their starts.
bool Player::Click(const desk::Command& command, MouseUse use) {
  std::size_t index = 0;
  std::size_t count = 0;
  for (const PROCESS_INFORMATION& agent : m_agents) {
    if (&agent == &AgentOf(command)) index = count;
    if (!HasEnded(agent)) ++count;
  }
  if (HasEnded(AgentOf(command))) return Fail(command, NameOf(command) + " has no icon");
  Say("uses the mouse on the icon of " + NameOf(command));
  return Done(command, UseMouseOnIcon(index, count, use),
              "there are not " + std::to_string(count) + " icons, one for each agent that runs");
}

bool Player::Choose(const desk::Command& command) {
  Say("chooses " + std::to_string(command.number) + " in the menu of " + NameOf(command));
  const std::string mistake = ChooseFromMenu(AgentOf(command).dwProcessId, command.number);
  return Done(command, mistake.empty(), NameOf(command) + " " + mistake);
}

bool Player::AddPrinter(const desk::Command& command) {
  const std::wstring printer = Wide(command.text);
  if (HasPrinter(printer))
    return Fail(command, "there is a printer \"" + command.text + "\" already");
  return Done(command,
              PutPrinter(printer, Wide(command.port), Wide(command.driver)) && HasPrinter(printer),
              "printer \"" + command.text + "\" can't be added");
}

bool Player::SelectIcon(const desk::Command& command) {
  const std::wstring record = RecordOf(Wide(command.text));
  if (record.empty()) return Fail(command, "there is no record of \"" + command.text + "\"");
  const HWND window = TrayWindowOf(AgentOf(command).dwProcessId);
  if (window == nullptr) return Fail(command, NameOf(command) + " has no window");
  return Done(command,
              SetNumber(HKEY_CURRENT_USER, record, L"TrayIconSelected", command.number) &&
                  PostMessageW(window, vgl::WM_VGL3_UPDATE_ICON, 0, 0) != 0,
              "the icon can't be selected");
}

bool Player::SetValue(const desk::Command& command) {
  const std::wstring key = Wide(command.text);
  const std::wstring name = Wide(command.name);
  return Done(command,
              command.isText ? SetText(HKEY_CURRENT_USER, key, name, Wide(command.value))
                             : SetNumber(HKEY_CURRENT_USER, key, name, command.number),
              "the value can't be set");
}

bool Player::SetTime(const desk::Command& command) {
  const std::int64_t then = std::int64_t{std::time(nullptr)} - command.number;
  return Done(
      command,
      SetBytes(HKEY_CURRENT_USER, Wide(command.text), Wide(command.name), &then, sizeof then),
      "the value can't be set");
}

bool Player::Autostart(const desk::Command& command) {
  const std::wstring line =
      L"\"" + m_options.agentPath + L"\" /FU \"" + TempFolder() + Wide(command.text) + L"\"";
  return Done(command,
              SetText(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Run",
                      Wide(command.name), line),
              "the Run value can't be set");
}

bool Player::StartInstaller(const desk::Command& command) {
  m_installer = CreateMutexW(nullptr, FALSE, Native(desk::kInstallerMutex));
  return Done(command, m_installer != nullptr, "the installer's mutex can't be made");
}

// By a program of its own, which is told the agents' processes.
bool Player::Read(const desk::Command& command, const wchar_t* what) {
  std::wstring line = std::wstring(L"session_reader.exe ") + what;
  for (const PROCESS_INFORMATION& agent : m_agents)
    line += L" " + std::to_wstring(agent.dwProcessId);
  const std::optional<DWORD> code = RunToItsEnd(line);
  return Done(command, code == 0U,
              code ? "the reader ended with " + std::to_string(*code)
                   : "the reader can't be started, error " + std::to_string(GetLastError()));
}

bool Player::ShowMenu(const desk::Command& command) {
  const std::optional<std::vector<ShownEntry>> menu = LookAtMenu(AgentOf(command).dwProcessId);
  if (!menu) return Fail(command, NameOf(command) + " shows no menu, or it can't be read");
  std::vector<desk::MenuLine> entries;
  for (const ShownEntry& shown : *menu) entries.push_back(shown.entry);
  for (const std::string& line : desk::MenuInWords(entries)) Say("menu| " + line);
  return true;
}

// No Windows program sees the whole display: somebody outside takes the picture and then removes
// the request for it.
bool Player::TakePicture(const desk::Command& command) {
  if (m_options.pictureRequests.empty()) return true;
  const std::wstring request = m_options.pictureRequests + Wide(command.text) + L".request";
  if (!WriteWholeFile(request, "", 0)) return Fail(command, "the picture can't be asked for");
  for (DWORD waited = 0; IsFile(request) && waited < kPicturePatience; waited += kGlance)
    Sleep(kGlance);
  return Done(command, !IsFile(request), "nobody took the picture");
}

bool Player::AllEnded() const {
  bool allEnded = true;
  for (std::size_t i = 0; i < m_agents.size(); ++i) {
    if (HasEnded(m_agents[i])) continue;
    Say("session_driver: agent " + std::to_string(i + 1) + " still runs at the end of the script");
    allEnded = false;
  }
  return allEnded;
}

}  // namespace driver
