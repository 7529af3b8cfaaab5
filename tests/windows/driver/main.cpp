// Plays a session script on the built .EXE, as a person and other programs would. Its exit code is
// that of the first agent, 4 when the session couldn't be played to its end, or 2 for a mistake in
// the command line or the script.
//
//   session_driver --agent PATH [--log] [--options FILE] [--pictures FOLDER] SCRIPT
//     --options   the sample's options, for a start without a command line
//     --pictures  where a picture of the display is asked for: by an empty file NAME.request, which
//                 whoever takes the picture removes; without it none is taken
#include <optional>

#include "tests/windows/driver/machine.h"
#include "tests/windows/driver/player.h"
#include "tests/windows/driver/text.h"

namespace driver {
namespace {

// What the command line tells.
struct Given {
  std::wstring agentPath;
  std::wstring optionsPath;
  std::wstring picturesFolder;
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
    } else if (word == L"--pictures" && i + 1 < count) {
      given.picturesFolder = words[++i];
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

int Run(int count, wchar_t** words) {
  Given given;
  if (!ReadCommandLine(count, words, given))
    return Mistake(
        "usage: session_driver --agent PATH [--log] [--options FILE] [--pictures FOLDER] SCRIPT");
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
  if (given.log && !SetNumber(HKEY_CURRENT_USER, L"SOFTWARE\\KAVRO\\VGL3", L"K_QTR", 1)) {
    Say("session_driver: the tray log can't be switched on");
    return desk::kSessionFailed;
  }
  if (!given.picturesFolder.empty()) given.picturesFolder += L'\\';
  Player player({given.agentPath, options, given.picturesFolder});
  return player.Play(script) ? player.ExitCodeOfFirst() : desk::kSessionFailed;
}

}  // namespace
}  // namespace driver

int wmain(int count, wchar_t** words) { return driver::Run(count, words); }
