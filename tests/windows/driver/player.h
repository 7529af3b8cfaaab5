// Plays a session script on the built .EXE.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "desk/script.h"
#include "tests/windows/driver/hands.h"

namespace driver {

struct PlayOptions {
  std::wstring agentPath;
  std::string sampleOptions;     // for a start without a command line
  std::wstring pictureRequests;  // the folder for them, with its backslash; empty: no pictures
};

class Player {
 public:
  explicit Player(PlayOptions options) : m_options(std::move(options)) {}
  // Ends the agents that still run.
  ~Player();
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  // What happens is printed. False when a command couldn't be carried out, or an agent still runs
  // at the end.
  bool Play(const desk::Script& script);
  int ExitCodeOfFirst() const;

 private:
  const PROCESS_INFORMATION& AgentOf(const desk::Command& command) const;
  std::string NameOf(const desk::Command& command) const;
  bool Fail(const desk::Command& command, const std::string& what);
  // A command was carried out, or failed for that.
  bool Done(const desk::Command& command, bool done, const std::string& mistake);

  bool Do(const desk::Command& command);
  bool DoAsPerson(const desk::Command& command);
  bool DoAsProgram(const desk::Command& command);

  bool WriteParam(const desk::Command& command);
  bool Start(const desk::Command& command);
  bool Post(const desk::Command& command);
  bool Click(const desk::Command& command, MouseUse use);
  bool Choose(const desk::Command& command);
  bool AddPrinter(const desk::Command& command);
  bool SelectIcon(const desk::Command& command);
  bool SetValue(const desk::Command& command);
  bool Autostart(const desk::Command& command);
  bool StartInstaller(const desk::Command& command);
  bool SetTime(const desk::Command& command);
  bool Read(const desk::Command& command, const wchar_t* what);
  bool ShowMenu(const desk::Command& command);
  bool TakePicture(const desk::Command& command);
  bool AllEnded() const;

  PlayOptions m_options;
  std::vector<PROCESS_INFORMATION> m_agents;
  std::vector<std::uint32_t> m_heldKeys;
  HANDLE m_installer = nullptr;
};

}  // namespace driver
