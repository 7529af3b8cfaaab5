#include "desk/script.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <sstream>

#include "app/agent_messages.h"

namespace desk {

const std::vector<NamedNumber>& KnownMessages() {
  static const std::vector<NamedNumber> kNames = {
      {"WM_DESTROY", platform::WM_DESTROY},
      {"WM_CLOSE", platform::WM_CLOSE},
      {"WM_COMMAND", platform::WM_COMMAND},
      {"WM_TIMER", platform::WM_TIMER},
      {"WM_VGL3_TRAYICON", vgl::WM_VGL3_TRAYICON},
      {"WM_VGL3_UPDATE_ICON", vgl::WM_VGL3_UPDATE_ICON},
      {"WM_VGL3_KICK_INVITATION", vgl::WM_VGL3_KICK_INVITATION},
      {"WM_VGL3_CHECK_NETPILOT", vgl::WM_VGL3_CHECK_NETPILOT},
      {"WM_VGL3_FLUSH_VGLLOG", vgl::WM_VGL3_FLUSH_VGLLOG},
      {"WM_LBUTTONDOWN", platform::WM_LBUTTONDOWN},
      {"WM_LBUTTONDBLCLK", platform::WM_LBUTTONDBLCLK},
      {"WM_RBUTTONDOWN", platform::WM_RBUTTONDOWN},
  };
  return kNames;
}

const std::vector<NamedNumber>& KnownTimers() {
  static const std::vector<NamedNumber> kNames = {
      {"TMID_PRINTERCHECK", vgl::TMID_PRINTERCHECK}, {"TMID_MASKCHECK", vgl::TMID_MASKCHECK},
      {"TMID_INVITATION", vgl::TMID_INVITATION},     {"TMID_NETPILOT", vgl::TMID_NETPILOT},
      {"TMID_FLUSHLOG", vgl::TMID_FLUSHLOG},         {"TMID_CLICK", vgl::TMID_CLICK},
  };
  return kNames;
}

namespace {

template <class T>
std::optional<T> Number(std::string_view word) {
  T value{};
  const char* end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

using Names = std::vector<NamedNumber>;

std::optional<std::int64_t> NumberOrName(std::string_view word,
                                         std::initializer_list<const Names*> lists) {
  for (const Names* names : lists)
    for (const NamedNumber& known : *names)
      if (word == known.name) return known.number;
  return Number<std::int64_t>(word);
}

class Reader {
 public:
  explicit Reader(std::string_view text) : m_lines(std::string(text)) {}

  Script Read() {
    std::string line;
    while (m_script.error.empty() && NextLine(line)) ReadCommand(line);
    return std::move(m_script);
  }

 private:
  bool NextLine(std::string& line) {
    if (!std::getline(m_lines, line)) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    ++m_line;
    return true;
  }

  void Fail(const std::string& what) {
    m_script.error = "line " + std::to_string(m_line) + ": " + what;
  }

  void ReadCommand(const std::string& line) {
    std::istringstream words(line);
    std::string verb;
    if (!(words >> verb) || verb.front() == '#') return;
    m_command = Command{};
    m_command.line = m_line;
    if (verb == "sample") {
      ReadSample(words);
      return;
    }
    if (verb == "param") {
      ReadParam(words);
    } else if (verb == "start") {
      m_command.kind = Command::Kind::Start;
      std::getline(words >> std::ws, m_command.text);
      ++m_agents;
    } else if (verb == "wait") {
      m_command.kind = Command::Kind::Wait;
      ReadMilliseconds(words);
    } else if (verb == "post") {
      m_command.kind = Command::Kind::Post;
      if (ReadAgent(words)) ReadMessage(words);
    } else if (verb == "kill") {
      m_command.kind = Command::Kind::Kill;
      ReadAgent(words);
    } else if (verb == "await-end") {
      m_command.kind = Command::Kind::AwaitEnd;
      if (ReadAgent(words)) ReadMilliseconds(words);
    } else if (verb == "map") {
      m_command.kind = Command::Kind::Map;
    } else {
      Fail("there is no command \"" + verb +
           "\"; the commands are sample, param, start, wait, post, kill, await-end and map");
    }
    ExpectEnd(words, verb);
    if (m_script.error.empty()) m_script.commands.push_back(m_command);
  }

  void ExpectEnd(std::istringstream& words, const std::string& verb) {
    std::string rest;
    if (m_script.error.empty() && words >> rest)
      Fail("\"" + rest + "\" is one word too many for " + verb);
  }

  void ReadSample(std::istringstream& words) {
    if (!m_script.sample.empty() || !m_script.commands.empty())
      return Fail("sample stands in front of all else, and once");
    if (!(words >> m_script.sample))
      return Fail("sample needs a name, as in \"sample studio-7200\"");
    ExpectEnd(words, "sample");
  }

  void ReadParam(std::istringstream& words) {
    m_command.kind = Command::Kind::Param;
    if (!(words >> m_command.text)) return Fail("param needs the name of the file");
    std::string line;
    while (NextLine(line)) {
      const std::size_t start = line.find_first_not_of(" \t");
      if (start == std::string::npos) continue;
      if (line.substr(start) == "end") return;
      m_command.content += line.substr(start) + "\n";
    }
    Fail("param " + m_command.text + " has no line \"end\"");
  }

  bool ReadAgent(std::istringstream& words) {
    if (m_agents == 0) {
      Fail("no agent has been started; put a start line in front");
      return false;
    }
    if ((words >> std::ws).peek() != '@') return true;
    std::string word;
    words >> word;
    const auto agent = Number<int>(std::string_view(word).substr(1));
    if (!agent || *agent < 1 || *agent > m_agents) {
      Fail("\"" + word + "\" is no agent; they are @1 to @" + std::to_string(m_agents));
      return false;
    }
    m_command.agent = *agent;
    return true;
  }

  void ReadMilliseconds(std::istringstream& words) {
    std::string word;
    words >> word;
    const auto number = Number<std::uint64_t>(word);
    if (!number || *number > kMostMilliseconds)
      return Fail("\"" + word + "\" is no number of milliseconds, as in \"wait 3000\"");
    m_command.milliseconds = *number;
  }

  void ReadMessage(std::istringstream& words) {
    std::string word;
    if (!(words >> word)) return Fail("post needs a message, as in \"post WM_CLOSE\"");
    const auto message = NumberOrName(word, {&KnownMessages()});
    if (!message || *message < 0 || *message > 0xFFFF)
      return Fail("\"" + word + "\" is no message; use a name as WM_CLOSE or a number");
    m_command.message = static_cast<std::uint32_t>(*message);
    std::int64_t arguments[2] = {};
    for (std::int64_t& argument : arguments) {
      if (!(words >> word)) break;
      const auto number = NumberOrName(word, {&KnownMessages(), &KnownTimers()});
      if (!number) return Fail("\"" + word + "\" is neither a number nor the name of one");
      argument = *number;
    }
    m_command.wParam = static_cast<std::uint64_t>(arguments[0]);
    m_command.lParam = arguments[1];
  }

  std::istringstream m_lines;
  int m_line = 0;
  int m_agents = 0;
  Command m_command{};
  Script m_script;
};

}  // namespace

Script ParseScript(std::string_view text) { return Reader(text).Read(); }

bool HasBareStart(const Script& script) {
  return std::any_of(script.commands.begin(), script.commands.end(), [](const Command& command) {
    return command.kind == Command::Kind::Start && command.text.empty();
  });
}

std::string OptionsLine(std::string_view text) {
  std::istringstream lines{std::string(text)};
  std::string options;
  std::getline(lines, options);
  if (options.ends_with('\r')) options.pop_back();
  std::string more;
  return lines >> more ? "" : options;
}

}  // namespace desk
