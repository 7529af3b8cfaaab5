// Session scripts: what happens to agents on a machine, step by step. The same script is played on
// the simulated machine (vgldesk) and against the real .EXE (tests/windows/session_driver).
//
// A script is UTF-8 text of lines; a # at a line's start makes it a comment. The commands are told
// in docs/sessions.md: param, start, wait, post, kill, await-end, map. In front of them the script
// may name the sample on whose machine it is played; a start without a command line then takes that
// sample's own.
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

struct Command {
  enum class Kind { Param, Start, Wait, Post, Kill, AwaitEnd, Map };

  Kind kind;
  int line = 0;         // of the script, from 1
  std::string text;     // Param: name of the file; Start: command line (UTF-8)
  std::string content;  // Param: the file's text (UTF-8), each line ended by a line feed
  int agent = 0;        // 0: the one that was started last
  std::uint64_t milliseconds = 0;
  std::uint32_t message = 0;
  std::uint64_t wParam = 0;
  std::int64_t lParam = 0;
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

// The names that scripts may use for numbers, for messages and timers alike.
struct NamedNumber {
  const char* name;
  std::uint32_t number;
};
const std::vector<NamedNumber>& KnownMessages();
const std::vector<NamedNumber>& KnownTimers();

}  // namespace desk
