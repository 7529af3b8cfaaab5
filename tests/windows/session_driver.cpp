// Plays a session script on the built .EXE: starts it, posts to its window, waits for its end. Its
// exit code is that of the first agent, 4 when the session couldn't be played to its end, or 2 for
// a mistake in the command line or the script.
//
//   session_driver --agent PATH [--log] [--options FILE] SCRIPT
//     --options  the sample's options, for a start without a command line
#include <cstdio>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "app/agent_messages.h"
#include "desk/script.h"

// Behind the headers whose constants its macros rename.
#include <windows.h>

namespace {

std::wstring Wide(const std::string& utf8) {
  const int size = static_cast<int>(utf8.size());
  std::wstring text(
      static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0)),
      L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, text.data(), static_cast<int>(text.size()));
  return text;
}

const wchar_t* Native(const char16_t* text) { return reinterpret_cast<const wchar_t*>(text); }

// Flushed at once, so that what happened last stands there even when the driver is killed.
void Say(const std::string& text) {
  std::printf("%s\n", text.c_str());
  std::fflush(stdout);
}

bool WriteWholeFile(const std::wstring& path, const void* data, std::size_t bytes) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const bool done = WriteFile(file, data, static_cast<DWORD>(bytes), &written, nullptr) != 0;
  CloseHandle(file);
  return done && written == bytes;
}

std::optional<std::string> ReadWholeFile(const std::wstring& path) {
  std::ifstream file(path.c_str(), std::ios::binary);
  if (!file) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::wstring TempFolder() {
  wchar_t path[MAX_PATH + 1] = {};
  GetTempPathW(MAX_PATH + 1, path);
  return path;
}

struct WindowSearch {
  DWORD processId;
  HWND found;
};

BOOL CALLBACK TakeTrayWindow(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<WindowSearch*>(parameter);
  DWORD processId = 0;
  GetWindowThreadProcessId(window, &processId);
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  if (processId != search.processId || std::wstring(name) != Native(vgl::kTrayWindowClass))
    return TRUE;
  search.found = window;
  return FALSE;
}

class Driver {
 public:
  // `options` are for a start without a command line.
  Driver(std::wstring agentPath, std::string options)
      : m_agentPath(std::move(agentPath)), m_options(std::move(options)) {}

  ~Driver() {
    for (const PROCESS_INFORMATION& agent : m_agents) {
      TerminateProcess(agent.hProcess, 1);
      CloseHandle(agent.hThread);
      CloseHandle(agent.hProcess);
    }
  }

  bool Play(const desk::Script& script) {
    for (const desk::Command& command : script.commands)
      if (!Do(command)) return false;
    return AllEnded();
  }

  int ExitCodeOfFirst() const { return m_agents.empty() ? 0 : ExitCodeOf(m_agents.front()); }

 private:
  static int ExitCodeOf(const PROCESS_INFORMATION& agent) {
    DWORD code = 0;
    GetExitCodeProcess(agent.hProcess, &code);
    return static_cast<int>(code);
  }

  const PROCESS_INFORMATION& AgentOf(const desk::Command& command) const {
    return command.agent == 0 ? m_agents.back()
                              : m_agents[static_cast<std::size_t>(command.agent) - 1];
  }

  std::string NameOf(const desk::Command& command) const {
    return "agent " +
           std::to_string(command.agent == 0 ? static_cast<int>(m_agents.size()) : command.agent);
  }

  bool Fail(const desk::Command& command, const std::string& what) {
    Say("session_driver: line " + std::to_string(command.line) + ": " + what);
    return false;
  }

  bool Do(const desk::Command& command) {
    switch (command.kind) {
      case desk::Command::Kind::Param: {
        const std::wstring text = Wide(command.content);
        if (WriteWholeFile(TempFolder() + Wide(command.text), text.data(),
                           text.size() * sizeof(wchar_t)))
          return true;
        return Fail(command, command.text + " can't be written");
      }
      case desk::Command::Kind::Start:
        return Start(command);
      case desk::Command::Kind::Wait:
        Sleep(static_cast<DWORD>(command.milliseconds));
        return true;
      case desk::Command::Kind::Post:
        return Post(command);
      case desk::Command::Kind::Kill:
        TerminateProcess(AgentOf(command).hProcess, 1);
        WaitForSingleObject(AgentOf(command).hProcess, INFINITE);
        return true;
      case desk::Command::Kind::AwaitEnd:
        if (WaitForSingleObject(AgentOf(command).hProcess,
                                static_cast<DWORD>(command.milliseconds)) == WAIT_OBJECT_0)
          return true;
        return Fail(command, NameOf(command) + " still runs");
      case desk::Command::Kind::Map:
        return ShowMaps(command);
    }
    return false;
  }

  // By a program of its own, which is told the agents' processes.
  bool ShowMaps(const desk::Command& command) {
    std::wstring line = L"map_reader.exe";
    for (const PROCESS_INFORMATION& agent : m_agents)
      line += L" " + std::to_wstring(agent.dwProcessId);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION reader = {};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &reader))
      return Fail(command, "the map can't be read, error " + std::to_string(GetLastError()));
    WaitForSingleObject(reader.hProcess, INFINITE);
    DWORD code = 1;
    GetExitCodeProcess(reader.hProcess, &code);
    CloseHandle(reader.hThread);
    CloseHandle(reader.hProcess);
    return code == 0 || Fail(command, "the reader of the map ended with " + std::to_string(code));
  }

  bool Start(const desk::Command& command) {
    std::wstring line =
        L"\"" + m_agentPath + L"\" " + Wide(command.text.empty() ? m_options : command.text);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION agent = {};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &agent))
      return Fail(command, "the agent can't be started, error " + std::to_string(GetLastError()));
    m_agents.push_back(agent);
    Say("started agent " + std::to_string(m_agents.size()));
    return true;
  }

  bool Post(const desk::Command& command) {
    const PROCESS_INFORMATION& agent = AgentOf(command);
    if (WaitForSingleObject(agent.hProcess, 0) == WAIT_OBJECT_0)
      return Fail(command, NameOf(command) + " has ended already, with code " +
                               std::to_string(ExitCodeOf(agent)));
    WindowSearch search = {agent.dwProcessId, nullptr};
    EnumWindows(TakeTrayWindow, reinterpret_cast<LPARAM>(&search));
    if (search.found == nullptr) return Fail(command, NameOf(command) + " has no window");
    Say("posted message " + std::to_string(command.message));
    if (PostMessageW(search.found, command.message, command.wParam, command.lParam)) return true;
    return Fail(command, "this message can't be posted");
  }

  bool AllEnded() const {
    bool allEnded = true;
    for (std::size_t i = 0; i < m_agents.size(); ++i) {
      if (WaitForSingleObject(m_agents[i].hProcess, 0) == WAIT_OBJECT_0) continue;
      Say("session_driver: agent " + std::to_string(i + 1) +
          " still runs at the end of the script");
      allEnded = false;
    }
    return allEnded;
  }

  std::wstring m_agentPath;
  std::string m_options;
  std::vector<PROCESS_INFORMATION> m_agents;
};

bool EnableTrayLog() {
  HKEY key = nullptr;
  if (RegCreateKeyExW(HKEY_CURRENT_USER, L"SOFTWARE\\KAVRO\\VGL3", 0, nullptr, 0, KEY_ALL_ACCESS,
                      nullptr, &key, nullptr) != ERROR_SUCCESS)
    return false;
  const DWORD on = 1;
  const LSTATUS status =
      RegSetValueExW(key, L"K_QTR", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&on), sizeof on);
  RegCloseKey(key);
  return status == ERROR_SUCCESS;
}

std::string Narrow(const std::wstring& text) {
  const int size = static_cast<int>(text.size());
  std::string utf8(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), size,
                                                                nullptr, 0, nullptr, nullptr)),
                   '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), size, utf8.data(), static_cast<int>(utf8.size()),
                      nullptr, nullptr);
  return utf8;
}

// What the command line tells.
struct Given {
  std::wstring agentPath;
  std::wstring optionsPath;
  std::wstring scriptPath;
  bool log = false;
};

bool ReadCommandLine(int count, wchar_t** words, Given& given) {
  for (int i = 1; i < count; ++i) {
    const std::wstring word = words[i];
    if (word == L"--agent" && i + 1 < count) {
      given.agentPath = words[++i];
    } else if (word == L"--options" && i + 1 < count) {
      given.optionsPath = words[++i];
    } else if (word == L"--log") {
      given.log = true;
    } else if (given.scriptPath.empty()) {
      given.scriptPath = word;
    } else {
      return false;
    }
  }
  return !given.agentPath.empty() && !given.scriptPath.empty();
}

int Mistake(const std::string& what) {
  Say("session_driver: " + what);
  return 2;
}

}  // namespace

int wmain(int count, wchar_t** words) {
  Given given;
  if (!ReadCommandLine(count, words, given))
    return Mistake("usage: session_driver --agent PATH [--log] [--options FILE] SCRIPT");
  const std::optional<std::string> text = ReadWholeFile(given.scriptPath);
  if (!text) return Mistake("the script " + Narrow(given.scriptPath) + " can't be read");
  const desk::Script script = desk::ParseScript(*text);
  if (!script.error.empty()) return Mistake(script.error);

  std::string options;
  if (desk::HasBareStart(script) && !given.optionsPath.empty()) {
    options = desk::OptionsLine(ReadWholeFile(given.optionsPath).value_or(""));
    if (options.empty())
      return Mistake(Narrow(given.optionsPath) + " has to be one line, the agent's options");
  }
  if (given.log && !EnableTrayLog()) {
    Say("session_driver: the tray log can't be switched on");
    return desk::kSessionFailed;
  }
  Driver driver(given.agentPath, options);
  return driver.Play(script) ? driver.ExitCodeOfFirst() : desk::kSessionFailed;
}
