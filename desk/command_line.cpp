#include "desk/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fstream>
#include <istream>
#include <iterator>
#include <optional>
#include <ostream>

#include "desk/player.h"
#include "desk/sample.h"

namespace desk {

namespace {

constexpr char kFooter[] =
    "SAMPLE is a folder (told by a slash in it) or the name of one below samples/. Its machine is\n"
    "taken in place of the one that the script names; without both there is a machine with the\n"
    "printer \"Studio 7200\", of whose driver set only the registry library is there.\n"
    "Without a script one agent runs for ten seconds (--for) and is closed by WM_CLOSE. Its "
    "command\n"
    "line stands behind \"--\", or is the sample's own:\n"
    "  vgldesk run studio-7200\n"
    "  vgldesk run --log -- /P \"Studio 7200\" /D \"KAVRO Studio 7200\" /O USB001 /M S7200\n"
    "Exit code: that of the first agent; 1 when the session couldn't be played to its end;\n"
    "2 for a mistake in the command line, in the script or in the sample.";

std::string ReadAll(std::istream& in) {
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string SessionOf(const std::string& commandLine, std::uint64_t milliseconds) {
  return "start " + commandLine + "\nwait " + std::to_string(milliseconds) +
         "\npost WM_CLOSE\nawait-end 60000\n";
}

// What the command line tells of the session to play.
struct GivenSession {
  std::string scriptFile;            // empty when none is given
  std::optional<std::string> agent;  // the command line behind --
  std::uint64_t milliseconds = 10000;
};

// The script's text. False when there is none; what is wrong goes to `err`.
bool ReadSession(const GivenSession& given, const std::string& sample, std::istream& in,
                 std::string& text, std::ostream& err) {
  std::string mistake;
  if (given.agent && !given.scriptFile.empty()) {
    mistake = "a script starts its agents itself; give either --script or a command line behind --";
  } else if (given.agent) {
    text = SessionOf(*given.agent, given.milliseconds);
  } else if (given.scriptFile == "-") {
    text = ReadAll(in);
  } else if (!given.scriptFile.empty()) {
    std::ifstream file(given.scriptFile, std::ios::binary);
    if (file)
      text = ReadAll(file);
    else
      mistake = "the script " + given.scriptFile + " can't be read";
  } else if (!sample.empty()) {
    std::string line;
    if (ReadSampleOptions(SampleFolder(sample), line, mistake))
      text = SessionOf(line, given.milliseconds);
  } else {
    mistake =
        "there is nothing to run; give a sample, --script FILE, or an agent's command line behind "
        "--";
  }
  if (!mistake.empty()) err << "vgldesk run: " << mistake << '\n';
  return mistake.empty();
}

}  // namespace

std::string AgentCommandLine(const std::vector<std::string>& words) {
  if (words.size() == 1) return words.front();
  std::string line;
  for (const std::string& word : words) {
    if (!line.empty()) line += ' ';
    const bool option = word.starts_with('/');
    const bool quoted = word.find('"') != std::string::npos;
    line += option || quoted ? word : '"' + word + '"';
  }
  return line;
}

int RunVgldesk(const std::vector<std::string>& words, std::istream& in, std::ostream& out,
               std::ostream& err) {
  const auto separator = std::find(words.begin(), words.end(), "--");
  const std::vector<std::string> own(words.begin(), separator);
  const bool hasAgent = separator != words.end();

  const std::string verb = own.empty() ? "" : own.front();
  if (verb != "run" && !verb.starts_with('-')) {
    err << "vgldesk: \"" << verb
        << "\" is no command; the command is run, as in: vgldesk run --script FILE\n";
    return kUsageError;
  }
  CLI::App app{"The tray agent of KAVRO Vigil 3 on a simulated machine.", "vgldesk"};
  app.footer(kFooter);
  app.require_subcommand(1);
  CLI::App* run = app.add_subcommand("run", "Plays a session and shows what happens.");
  PlayOptions options;
  GivenSession given;
  run->add_option("sample", options.sample, "play on the machine of this sample")
      ->type_name("SAMPLE");
  run->add_flag("--log", options.showTrayLog, "switch the tray log on and show its lines");
  run->add_option("--seed", options.seed,
                  "let this seed choose which process goes on at each platform call");
  run->add_option("--script", given.scriptFile,
                  "play the session script in FILE (- for standard input)")
      ->type_name("FILE");
  run->add_option("--for", given.milliseconds, "without a script: virtual time until WM_CLOSE")
      ->check(CLI::Range(std::uint64_t{0}, kMostMilliseconds))
      ->type_name("MS");
  try {
    std::vector<std::string> reversed(own.rbegin(), own.rend());
    app.parse(std::move(reversed));
  } catch (const CLI::ParseError& mistake) {
    return app.exit(mistake, out, err) == 0 ? 0 : kUsageError;
  }
  std::string text;
  if (hasAgent) given.agent = AgentCommandLine({separator + 1, words.end()});
  if (!ReadSession(given, options.sample, in, text, err)) return kUsageError;
  const Script script = ParseScript(text);
  if (!script.error.empty()) {
    err << "vgldesk run: " << (given.scriptFile.empty() ? "" : given.scriptFile + ": ")
        << script.error << '\n';
    return kUsageError;
  }
  return Play(script, options, out, err);
}

}  // namespace desk
