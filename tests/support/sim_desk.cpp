#include "tests/support/sim_desk.h"

#include <algorithm>
#include <sstream>

#include "app/agent_messages.h"

namespace vgl {

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

void SimAgent::Post(std::uint32_t message, platform::WPARAM wParam, platform::LPARAM lParam) const {
  m_machine.desktop().Post(Window()->handle, message, wParam, lParam);
  m_machine.Settle();
}

std::uint32_t SimAgent::Close() const {
  Post(platform::WM_CLOSE);
  m_machine.RunUntilEnded(m_process, 60000);
  return m_process.exitCode();
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

std::u16string SimDesk::WriteParamFile(std::u16string_view name, std::u16string_view text) {
  std::u16string path = machine.system().tempFolder + std::u16string(name);
  machine.files().WriteUtf16(path, text);
  return path;
}

std::vector<std::string> SimDesk::LogTexts() const {
  auto& files = const_cast<sim::Machine&>(machine).files();
  std::istringstream lines(files.ReadFile(desk::kTrayLogFile).value_or(""));
  std::vector<std::string> texts;
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    // "1000;   10:00.100; text"
    const std::size_t text = line.find("; ", line.find(';') + 1);
    texts.push_back(text == std::string::npos ? line : line.substr(text + 2));
  }
  return texts;
}

bool SimDesk::HasLogged(const std::string& text) const {
  const std::vector<std::string> texts = LogTexts();
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

}  // namespace vgl
