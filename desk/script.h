// Session scripts: what happens to agents on a machine, step by step. The same script is played on
// the simulated machine (vgldesk) and against the real .EXE (tests/windows/driver).
//
// A script is UTF-8 text of lines; a # at a line's start makes it a comment. The commands are told
// in docs/sessions.md. In front of them the script may name the sample on whose machine it is
// played; a start without a command line then takes that sample's own.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace desk {

// The longest time that a script may name, some 24 days.
inline constexpr std::uint64_t kMostMilliseconds = 0x7FFFFFFF;

// Exit code of whoever plays a session that couldn't be played to its end. An agent itself ends
// with 0, 3 (a fatal error) or 1 (ended by force), unless a script posts it something else.
inline constexpr int kSessionFailed = 4;

// What the installer of a session holds while it is at work.
inline constexpr char16_t kInstallerMutex[] = u"Global\\KavroPrinterInstaller";

struct Command {
  enum class Kind {
    // The machine and its agents.
    Param,
    Start,
    Wait,
    AwaitReady,
    Post,
    Kill,
    AwaitEnd,
    // What a person does.
    Click,
    DoubleClick,
    RightClick,
    Choose,
    Dismiss,
    Answer,
    Hold,
    Release,
    // What other programs do.
    AddPrinter,
    DeletePrinter,
    Mask,
    SetData,
    SelectIcon,
    SetValue,
    SetTime,
    Autostart,
    InstallerStarts,
    InstallerEnds,
    // What is to be seen.
    Map,
    Menu,
    Show,
    Picture,
  };

  Kind kind;
  int line = 0;  // of the script, from 1
  // Param, Autostart: name of the file; Start: command line; AddPrinter, DeletePrinter, Mask,
  // SetData: the printer; SelectIcon: the printer or port; SetValue, SetTime: the key; Picture: its
  // name. (UTF-8)
  std::string text;
  std::string content;  // Param: the file's text (UTF-8), each line ended by a line feed
  std::string name;     // Autostart, SetData, SetValue, SetTime: of the value
  std::string port;     // AddPrinter
  std::string driver;   // AddPrinter
  std::string value;    // SetValue, if it is a text
  bool isText = false;  // SetValue: else `number` is the value
  int agent = 0;        // 0: the one that was started last
  std::uint64_t milliseconds = 0;
  std::uint32_t message = 0;
  std::uint64_t wParam = 0;
  std::int64_t lParam = 0;
  // Choose: the entry's id; Mask, SetData, SelectIcon, SetValue: the value; SetTime: how many
  // seconds ago
  std::uint32_t number = 0;
  std::vector<std::uint32_t> keys;  // Hold: VK_...
};

struct Script {
  std::string sample;  // a name as of SampleFolder; empty when none is named
  std::vector<Command> commands;
  std::string error;  // empty, or "line 3: ..." telling the mistake and what would be right
};

// Reads a whole script. On a mistake `error` is set and `commands` holds what stands in front of
// it.
Script ParseScript(std::string_view text);

// Whether some agent is started without a command line.
bool HasBareStart(const Script& script);

// The agent's command line from the text of a sample's file `options`; empty when that isn't one
// line.
std::string OptionsLine(std::string_view text);

// The names that scripts may use for numbers: for messages and timers alike, and for keys.
struct NamedNumber {
  const char* name;
  std::uint32_t number;
};
const std::vector<NamedNumber>& KnownMessages();
const std::vector<NamedNumber>& KnownTimers();
const std::vector<NamedNumber>& KnownKeys();

}  // namespace desk
