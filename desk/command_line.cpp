#include "desk/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fstream>
#include <istream>
#include <iterator>
#include <ostream>

#include "desk/player.h"

namespace desk {

namespace {

constexpr char kFooter[] =
    "The agent's command line stands behind \"--\":\n"
    "  vgldesk run --log -- /P \"Studio 7200\" /D \"KAVRO Studio 7200\" /O USB001 /M S7200\n"
    "Without a script that agent runs for ten seconds (--for) and is closed by WM_CLOSE.\n"
    "Exit code: that of the first agent; 1 when the session couldn't be played to its end;\n"
    "2 for a mistake in the command line or in the script.";

std::string ReadAll(std::istream& in) {
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string SessionOf(const std::string& commandLine, std::uint64_t milliseconds) {
  return "start " + commandLine + "\nwait " + std::to_string(milliseconds) +
         "\npost WM_CLOSE\nawait-end 60000\n";
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
  std::string scriptFile;
  std::uint64_t milliseconds = 10000;
  run->add_flag("--log", options.showTrayLog, "switch the tray log on and show its lines");
  run->add_option("--seed", options.seed,
                  "let this seed choose which process goes on at each platform call");
  run->add_option("--script", scriptFile, "play the session script in FILE (- for standard input)")
      ->type_name("FILE");
  run->add_option("--for", milliseconds, "without a script: virtual time until WM_CLOSE")
      ->check(CLI::Range(std::uint64_t{0}, kMostMilliseconds))
      ->type_name("MS");
  try {
    std::vector<std::string> reversed(own.rbegin(), own.rend());
    app.parse(std::move(reversed));
  } catch (const CLI::ParseError& mistake) {
    return app.exit(mistake, out, err) == 0 ? 0 : kUsageError;
  }
  if (scriptFile.empty() && !hasAgent) {
    err << "vgldesk run: there is nothing to run; give --script FILE, or an agent's command line "
           "behind --\n";
    return kUsageError;
  }
  if (hasAgent && !scriptFile.empty()) {
    err << "vgldesk run: a script starts its agents itself; give either --script or a command line "
           "behind --\n";
    return kUsageError;
  }

  std::string text;
  if (hasAgent) {
    text = SessionOf(AgentCommandLine({separator + 1, words.end()}), milliseconds);
  } else if (scriptFile == "-") {
    text = ReadAll(in);
  } else {
    std::ifstream file(scriptFile, std::ios::binary);
    if (!file) {
      err << "vgldesk run: the script " << scriptFile << " can't be read\n";
      return kUsageError;
    }
    text = ReadAll(file);
  }
  const Script script = ParseScript(text);
  if (!script.error.empty()) {
    err << "vgldesk run: " << (scriptFile.empty() ? "" : scriptFile + ": ") << script.error << '\n';
    return kUsageError;
  }
  return Play(script, options, out, err);
}

}  // namespace desk
