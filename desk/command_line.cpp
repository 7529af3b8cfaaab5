#include "desk/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <istream>
#include <iterator>
#include <optional>
#include <ostream>

#include "desk/describe.h"
#include "desk/menu_picture.h"
#include "desk/player.h"
#include "desk/soak.h"
#include "desk/whole_file.h"

namespace desk {

namespace {

constexpr char kRunFooter[] =
    R"(SAMPLE is a folder (told by a slash in it) or the name of one below samples/ in the current
folder. Its machine is taken in place of the one that the script names; without both there is a
machine with the printer "Studio 7200" and the smallest driver set that an agent stands up with.
Without a script one agent runs for ten seconds (--for) and is closed by WM_CLOSE. Its command line
stands behind "--", or is the sample's own:
  vgldesk run studio-7200
  vgldesk run --log -- /P "Studio 7200" /D "KAVRO Studio 7200" /O USB001 /M S7200
Exit code: that of the first agent, which is 0, 1 when it was killed, or 3 for a fatal error; 4 when
the session couldn't be played to its end; 2 for a mistake in the command line, in the script or in
the sample.)";

constexpr char kDescribeFooter[] =
    R"(SAMPLE is a folder (told by a slash in it) or the name of one below samples/ in the current
folder.
Exit code: 0; 1 when something wasn't found; 2 for a mistake in the command line or in the sample.)";

constexpr char kMenuFooter[] =
    R"(SAMPLE is a folder (told by a slash in it) or the name of one below samples/ in the current
folder. Its agent is started, and its icon is clicked with the right button; what opens is painted.
  vgldesk menu studio-7200 --png menu.png --selected 921 --language 07,01
Exit code: 0; 1 when no menu opens; 2 for a mistake in the command line or in the sample, for a FILE
that can't be written, and for an entry that isn't in the menu.)";

constexpr char kSoakFooter[] =
    R"(Printers come and go, installers are at work, icons are clicked, calls fail, all at random from
the seed; what has to hold all the time is looked at all the time.
Exit code: 0; 1 when something didn't hold, with its time and the seed, which leads there again; 2 for a
mistake in the command line.)";

constexpr char kFooter[] =
    "\"vgldesk run --help\" tells the rest of run, and so on with the other commands.";

std::string SessionOf(const std::string& commandLine, std::uint64_t milliseconds) {
  return "start " + commandLine + "\nwait " + std::to_string(milliseconds) +
         "\npost WM_CLOSE\nawait-end 60000\n";
}

// What the command line tells of the session to play.
struct GivenSession {
  PlayOptions options;
  std::string scriptFile;            // empty when none is given
  std::optional<std::string> agent;  // the command line behind --
  std::uint64_t milliseconds = 10000;
};

// The script's text. False when there is none; what is wrong goes to `err`.
bool ReadSession(const GivenSession& given, std::istream& in, std::string& text,
                 std::ostream& err) {
  std::string mistake;
  if (given.agent && !given.scriptFile.empty()) {
    mistake = "a script starts its agents itself; give either --script or a command line behind --";
  } else if (given.agent) {
    text = SessionOf(*given.agent, given.milliseconds);
  } else if (given.scriptFile == "-") {
    text = {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  } else if (!given.scriptFile.empty()) {
    if (std::optional<std::string> whole = ReadWholeFile(given.scriptFile))
      text = std::move(*whole);
    else
      mistake = "the script " + given.scriptFile + " can't be read";
  } else if (!given.options.sample.empty()) {
    text = SessionOf("", given.milliseconds);
  } else {
    mistake =
        "there is nothing to run; give a sample, --script FILE, or an agent's command line behind "
        "--";
  }
  if (!mistake.empty()) err << "vgldesk run: " << mistake << '\n';
  return mistake.empty();
}

int RunSession(const GivenSession& given, std::istream& in, std::ostream& out, std::ostream& err) {
  std::string text;
  if (!ReadSession(given, in, text, err)) return kUsageError;
  const Script script = ParseScript(text);
  if (!script.error.empty()) {
    err << "vgldesk run: " << (given.scriptFile.empty() ? "" : given.scriptFile + ": ")
        << script.error << '\n';
    return kUsageError;
  }
  return Play(script, given.options, out, err);
}

void AddRun(CLI::App& app, GivenSession& given) {
  CLI::App* run = app.add_subcommand("run", "Plays a session and shows what happens.");
  run->footer(kRunFooter);
  run->add_option("sample", given.options.sample, "play on the machine of this sample")
      ->type_name("SAMPLE");
  run->add_flag("--log", given.options.showTrayLog, "switch the tray log on and show its lines");
  run->add_option("--seed", given.options.seed,
                  "let this seed choose which process goes on at each platform call");
  run->add_option("--script", given.scriptFile,
                  "play the session script in FILE (- for standard input)")
      ->type_name("FILE");
  run->add_option("--for", given.milliseconds, "without a script: virtual time until WM_CLOSE")
      ->check(CLI::Range(std::uint64_t{0}, kMostMilliseconds))
      ->type_name("MS");
}

CLI::App* AddDescribe(CLI::App& app, std::string& sample) {
  CLI::App* describe = app.add_subcommand(
      "describe", "Tells what the agent finds of the driver set of a sample's printers.");
  describe->footer(kDescribeFooter);
  describe->add_option("sample", sample, "the sample whose printers are told of")
      ->required()
      ->type_name("SAMPLE");
  return describe;
}

CLI::App* AddMenu(CLI::App& app, MenuPictureOptions& options) {
  CLI::App* menu =
      app.add_subcommand("menu", "Draws the context menu of a sample's printer as a picture.");
  menu->footer(kMenuFooter);
  menu->add_option("sample", options.sample, "the sample whose menu it is")
      ->required()
      ->type_name("SAMPLE");
  menu->add_option("--png", options.file, "write the picture to FILE")
      ->required()
      ->type_name("FILE");
  menu->add_option("--selected", options.selected, "with the mouse on the entry of this id")
      ->type_name("ID");
  menu->add_option(
          "--language", options.language,
          "for a user of this language: its two numbers as a profile has them, as in 07,01 "
          "(without it US English, 09,01)")
      ->type_name("PRIMARY,SUB");
  constexpr int kMostScale = 8;
  menu->add_option("--scale", options.scale, "each pixel as so many, both ways")
      ->check(CLI::Range(1, kMostScale))
      ->type_name("N");
  return menu;
}

CLI::App* AddSoak(CLI::App& app, SoakOptions& options) {
  CLI::App* soak =
      app.add_subcommand("soak", "Runs many agents on one machine for a long virtual time.");
  soak->footer(kSoakFooter);
  constexpr std::uint64_t kMostHours = 24 * 365;
  soak->add_option("--hours", options.hours, "of virtual time")
      ->check(CLI::Range(std::uint64_t{1}, kMostHours))
      ->capture_default_str();
  constexpr int kMostPrinters = 400;  // the instance map has 500 slots
  soak->add_option("--printers", options.printers, "each with its agent while it is there")
      ->check(CLI::Range(1, kMostPrinters))
      ->capture_default_str();
  soak->add_option("--seed", options.seed, "from which everything follows")->capture_default_str();
  return soak;
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

  const std::string verb = own.empty() ? "" : own.front();
  if (verb != "run" && verb != "describe" && verb != "menu" && verb != "soak" &&
      !verb.starts_with('-')) {
    err << "vgldesk: \"" << verb
        << "\" is no command; the commands are run, describe, menu and soak, as in: vgldesk run "
           "--script FILE\n";
    return kUsageError;
  }
  CLI::App app{"The tray agent of KAVRO Vigil 3 on a simulated machine.", "vgldesk"};
  app.footer(kFooter);
  app.require_subcommand(1);
  GivenSession given;
  std::string described;
  AddRun(app, given);
  const CLI::App* describe = AddDescribe(app, described);
  MenuPictureOptions pictured;
  const CLI::App* menu = AddMenu(app, pictured);
  SoakOptions soakOptions;
  const CLI::App* soak = AddSoak(app, soakOptions);
  try {
    std::vector<std::string> reversed(own.rbegin(), own.rend());
    app.parse(std::move(reversed));
  } catch (const CLI::ParseError& mistake) {
    return app.exit(mistake, out, err) == 0 ? 0 : kUsageError;
  }
  if (separator != words.end()) given.agent = AgentCommandLine({separator + 1, words.end()});
  const bool isSession = !describe->parsed() && !menu->parsed() && !soak->parsed();
  if (isSession) return RunSession(given, in, out, err);
  if (given.agent) {
    err << "vgldesk " << verb << ": there is no agent's command line to give behind --\n";
    return kUsageError;
  }
  if (soak->parsed()) return Soak(soakOptions, out, err);
  return menu->parsed() ? DrawMenu(pictured, err) : Describe(described, out, err);
}

}  // namespace desk
