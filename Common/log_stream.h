// What the three debug logs have in common: the folder they live in, the column with the tick
// count, the stream that two of them write through, and the mutex that two of them write under.
//
// Nothing here reports a failure further than its own result: a log must never cost its caller more
// than the line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/owned.h"

namespace vgl {

// The common application data folder without closing backslash, made when it is missing and
// `create` is set. Nothing when the system doesn't tell it, or tells it without a terminator within
// 261 characters.
std::optional<std::u16string> CommonDataFolder(bool create);

// Where a log of this program goes: "\KAVRO\VGL3\<fileName>" in the common application data folder,
// the root of drive C when there is no such folder. Neither is checked for being writable.
std::u16string VglLogPath(std::u16string_view fileName);

// Minutes, seconds and milliseconds of a tick count: "    0:00.000; ". The count begins anew after
// 49.7 days, and so does the column.
std::u16string TickColumn(std::uint32_t ticks);

// A file that is appended to, of any size. Every write goes to the end that the file has at that
// moment; finding the end and writing there is one step of the system's, so that what others append
// at the same time is never written over.
class CLogStream {
 public:
  // Who may write to the file while it is open here; anybody may read it.
  enum class Sharing { Everybody, DenyWriters };

  CLogStream() = default;
  CLogStream(const CLogStream&) = delete;
  CLogStream& operator=(const CLogStream&) = delete;

  // Opens the file, made empty when it isn't there. A file that the stream had open is closed
  // first. False when it can't be opened: the stream is closed then.
  bool Open(const char16_t* path, Sharing sharing);

  // Appends a text as text mode has it: "\n" as "\r\n", characters as bytes of the system's code
  // page. One write for all of it, so that lines of several processes don't mix within. An empty
  // text, and a stream that isn't open, make no call.
  void Write(std::u16string_view text);

  // Appends bytes as they are, in one write. No bytes, and a stream that isn't open, make no call.
  void WriteBytes(const void* data, std::uint32_t bytes);

  bool IsOpen() const { return static_cast<bool>(m_file); }
  void Close() { m_file.Reset(); }

 private:
  platform::OwnedFile m_file;
};

// The named mutex of a log, held from here to the end of the scope. It is made and closed anew for
// each line, so that an idle process keeps no handle to it.
class CLogMutex {
 public:
  // Waits without limit. A wait that fails is passed over: a line out of turn is better than none.
  explicit CLogMutex(const char16_t* name);
  ~CLogMutex();
  CLogMutex(const CLogMutex&) = delete;
  CLogMutex& operator=(const CLogMutex&) = delete;

  // False when the mutex couldn't be made: nothing is to be written then.
  explicit operator bool() const { return static_cast<bool>(m_mutex); }

 private:
  platform::OwnedObject m_mutex;
};

}  // namespace vgl
