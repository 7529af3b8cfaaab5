#include "desk/script.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <sstream>

namespace desk {

namespace {

constexpr char kBlanks[] = " \t";

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

std::string Trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string::npos) return "";
  return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

// "a", "a and b", "a, b and c"
std::string Listed(const std::vector<std::string>& words) {
  std::string list;
  for (std::size_t i = 0; i < words.size(); ++i)
    list += (i == 0 ? "" : i + 1 == words.size() ? " and " : ", ") + words[i];
  return list;
}

using Words = std::istringstream;

class Reader {
 public:
  explicit Reader(std::string_view text) : m_lines(std::string(text)) {}

  Script Read() {
    std::string line;
    while (m_script.error.empty() && NextLine(line)) ReadCommand(line);
    return std::move(m_script);
  }

 private:
  // How a line begins, and who reads the rest of it.
  struct Verb {
    const char* name;
    Command::Kind kind;
    void (Reader::*read)(Words& words);  // null: nothing more may stand there
    bool hasAgent = false;               // it may name one in front of all else
  };

  static const std::vector<Verb>& Verbs() {
    using Kind = Command::Kind;
    static const std::vector<Verb> kVerbs = {
        {"param", Kind::Param, &Reader::ReadParam},
        {"start", Kind::Start, &Reader::ReadStart},
        {"wait", Kind::Wait, &Reader::ReadMilliseconds},
        {"await-ready", Kind::AwaitReady, nullptr, true},
        {"post", Kind::Post, &Reader::ReadMessage, true},
        {"kill", Kind::Kill, nullptr, true},
        {"await-end", Kind::AwaitEnd, &Reader::ReadMilliseconds, true},
        {"click", Kind::Click, nullptr, true},
        {"double-click", Kind::DoubleClick, nullptr, true},
        {"right-click", Kind::RightClick, nullptr, true},
        {"choose", Kind::Choose, &Reader::ReadEntry, true},
        {"dismiss", Kind::Dismiss, nullptr, true},
        {"answer", Kind::Answer, nullptr, true},
        {"hold", Kind::Hold, &Reader::ReadKeys},
        {"release", Kind::Release, nullptr},
        {"add-printer", Kind::AddPrinter, &Reader::ReadNewPrinter},
        {"delete-printer", Kind::DeletePrinter, &Reader::ReadPrinter},
        {"mask", Kind::Mask, &Reader::ReadNameAndNumber},
        {"set-data", Kind::SetData, &Reader::ReadData},
        {"select-icon", Kind::SelectIcon, &Reader::ReadNameAndNumber, true},
        {"set-value", Kind::SetValue, &Reader::ReadValue},
        {"set-time", Kind::SetTime, &Reader::ReadTime},
        {"autostart", Kind::Autostart, &Reader::ReadAutostart},
        {"installer", Kind::InstallerStarts, &Reader::ReadInstaller},
        {"map", Kind::Map, nullptr},
        {"menu", Kind::Menu, nullptr, true},
        {"show", Kind::Show, nullptr},
        {"picture", Kind::Picture, &Reader::ReadPicture},
    };
    return kVerbs;
  }

  bool NextLine(std::string& line) {
    if (!std::getline(m_lines, line)) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    ++m_line;
    return true;
  }

  void Fail(const std::string& what) {
    if (m_script.error.empty()) m_script.error = "line " + std::to_string(m_line) + ": " + what;
  }

  void ReadCommand(const std::string& line) {
    Words words(line);
    std::string name;
    if (!(words >> name) || name.front() == '#') return;
    if (name == "sample") return ReadSample(words);
    const auto verb = std::find_if(Verbs().begin(), Verbs().end(),
                                   [&](const Verb& known) { return name == known.name; });
    if (verb == Verbs().end()) return FailForVerb(name);
    m_command = Command{};
    m_command.line = m_line;
    m_command.kind = verb->kind;
    m_verb = verb->name;
    if (verb->hasAgent) ReadAgent(words);
    if (verb->read != nullptr && m_script.error.empty()) (this->*verb->read)(words);
    ExpectEnd(words);
    if (m_script.error.empty()) m_script.commands.push_back(m_command);
  }

  void FailForVerb(const std::string& name) {
    std::vector<std::string> known = {"sample"};
    for (const Verb& verb : Verbs()) known.emplace_back(verb.name);
    Fail("there is no command \"" + name + "\"; the commands are " + Listed(known));
  }

  void ExpectEnd(Words& words) {
    std::string rest;
    if (words >> rest) Fail("\"" + rest + "\" is one word too many for " + m_verb);
  }

  void ReadSample(Words& words) {
    m_verb = "sample";
    if (!m_script.sample.empty() || !m_script.commands.empty())
      return Fail("sample stands in front of all else, and once");
    if (!(words >> m_script.sample))
      return Fail("sample needs a name, as in \"sample studio-7200\"");
    ExpectEnd(words);
  }

  void ReadParam(Words& words) {
    if (!(words >> m_command.text)) return Fail("param needs the name of the file");
    std::string line;
    while (NextLine(line)) {
      const std::string option = Trimmed(line);
      if (option.empty()) continue;
      if (option == "end") return;
      m_command.content += line.substr(line.find_first_not_of(kBlanks)) + "\n";
    }
    Fail("param " + m_command.text + " has no line \"end\"");
  }

  void ReadStart(Words& words) {
    std::getline(words >> std::ws, m_command.text);
    ++m_agents;
  }

  void ReadAgent(Words& words) {
    if (m_agents == 0) return Fail("no agent has been started; put a start line in front");
    if ((words >> std::ws).peek() != '@') return;
    std::string word;
    words >> word;
    const auto agent = Number<int>(std::string_view(word).substr(1));
    if (!agent || *agent < 1 || *agent > m_agents)
      return Fail("\"" + word + "\" is no agent; they are @1 to @" + std::to_string(m_agents));
    m_command.agent = *agent;
  }

  void ReadMilliseconds(Words& words) {
    std::string word;
    words >> word;
    const auto number = Number<std::uint64_t>(word);
    if (!number || *number > kMostMilliseconds)
      return Fail("\"" + word + "\" is no number of milliseconds, as in \"wait 3000\"");
    m_command.milliseconds = *number;
  }

  void ReadMessage(Words& words) {
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

  void ReadEntry(Words& words) {
    std::string word;
    words >> word;
    const auto id = Number<std::uint16_t>(word);
    if (!id) return Fail("\"" + word + "\" is no entry's number, as in \"choose 901\"");
    m_command.number = *id;
  }

  void ReadKeys(Words& words) {
    for (std::string word; words >> word;) {
      const auto known = std::find_if(KnownKeys().begin(), KnownKeys().end(),
                                      [&](const NamedNumber& key) { return word == key.name; });
      if (known == KnownKeys().end())
        return Fail("\"" + word + "\" is no key; the keys are ctrl, shift and space");
      m_command.keys.push_back(known->number);
    }
    if (m_command.keys.empty()) Fail("hold needs a key, as in \"hold ctrl shift space\"");
  }

  // What stands in quotes, or else a word. Nothing at the line's end and where the second quote is
  // missing.
  std::optional<std::string> TakeName(Words& words) {
    std::string name;
    if ((words >> std::ws).peek() != '"') return words >> name ? std::optional(name) : std::nullopt;
    words.get();
    if (!std::getline(words, name, '"') || words.eof()) return std::nullopt;
    return name;
  }

  void ReadPrinter(Words& words) {
    if ((words >> std::ws).peek() == '"')
      m_command.text = TakeName(words).value_or("");
    else
      std::getline(words, m_command.text);
    m_command.text = Trimmed(m_command.text);
    if (m_command.text.empty())
      Fail("delete-printer needs a printer, as in \"delete-printer Studio 7200\"");
  }

  void ReadNewPrinter(Words& words) {
    const auto printer = TakeName(words);
    const auto port = TakeName(words);
    const auto driver = TakeName(words);
    if (!driver || printer->empty())
      return Fail(
          "add-printer needs printer, port and driver, as in \"add-printer \"Studio 7200\" USB001 "
          "\"KAVRO Studio 7200\"\"");
    m_command.text = *printer;
    m_command.port = *port;
    m_command.driver = *driver;
  }

  void ReadNameAndNumber(Words& words) {
    const auto name = TakeName(words);
    std::string word;
    words >> word;
    const auto number = Number<std::uint32_t>(word);
    if (!name || name->empty() || !number)
      return Fail(m_verb + " needs a name and a number, as in \"" + m_verb +
                  " \"Studio 7200\" 1\"");
    m_command.text = *name;
    m_command.number = *number;
  }

  // Two names and a number; false when they aren't there.
  bool TakeNamedNumber(Words& words) {
    const auto owner = TakeName(words);
    const auto name = TakeName(words);
    std::string word;
    words >> word;
    const auto number = Number<std::uint32_t>(word);
    if (!owner || owner->empty() || !name || !number) return false;
    m_command.text = *owner;
    m_command.name = *name;
    m_command.number = *number;
    return true;
  }

  void ReadData(Words& words) {
    if (!TakeNamedNumber(words))
      Fail(
          "set-data needs a printer, the name of the value and a number, as in \"set-data \"Studio "
          "7200\" PrinterAnswers 0\"");
  }

  void ReadTime(Words& words) {
    if (!TakeNamedNumber(words))
      Fail(
          "set-time needs a key below HKEY_CURRENT_USER, a name and how many seconds ago, as in "
          "\"set-time Software\\KAVRO LastKickNetPilot 86400\"");
  }

  void ReadValue(Words& words) {
    const auto key = TakeName(words);
    const auto name = TakeName(words);
    m_command.isText = name && (words >> std::ws).peek() == '"';
    const auto value = TakeName(words);
    const auto number = Number<std::uint32_t>(value.value_or(""));
    if (!value || (!m_command.isText && !number))
      return Fail(
          "set-value needs a key below HKEY_CURRENT_USER, a name, and a text in quotes or a "
          "number, "
          "as in \"set-value Software\\KAVRO\\VGL3 K_QTR 1\"");
    m_command.text = *key;
    m_command.name = *name;
    if (m_command.isText)
      m_command.value = *value;
    else
      m_command.number = *number;
  }

  void ReadAutostart(Words& words) {
    const auto file = TakeName(words);
    const auto name = TakeName(words);
    if (!name || name->empty())
      return Fail(
          "autostart needs a parameter file and the name of the Run value, as in \"autostart "
          "K_Q0001.tmp \"Studio 7200\"\"");
    m_command.text = *file;
    m_command.name = *name;
  }

  void ReadInstaller(Words& words) {
    std::string word;
    words >> word;
    const bool starts = word == "starts";
    if (!starts && word != "ends") return Fail("an installer either starts or ends");
    if (starts && m_installerIsAtWork) return Fail("an installer is at work already");
    if (!starts && !m_installerIsAtWork) return Fail("no installer is at work");
    m_installerIsAtWork = starts;
    if (!starts) m_command.kind = Command::Kind::InstallerEnds;
  }

  void ReadPicture(Words& words) {
    words >> m_command.text;
    const bool isName = std::all_of(m_command.text.begin(), m_command.text.end(), [](char c) {
      return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
    });
    if (m_command.text.empty() || !isName)
      Fail("picture needs a name of small letters, digits, - and _, as in \"picture the-icon\"");
  }

  std::istringstream m_lines;
  int m_line = 0;
  int m_agents = 0;
  bool m_installerIsAtWork = false;
  std::string m_verb;
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
