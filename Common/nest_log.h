// The nest log: functions entering and leaving, lines indented by their depth, in "VGL4.LOG".
//
// Every program of the suite writes to the one file, which is UTF-16 with a byte-order mark. A
// named mutex keeps their lines apart. In this program nothing switches the log on; the driver
// utilities, which share the facility, do.
//
// A line: "<process id>;<thread id>;<minutes>:<seconds>.<milliseconds>; ", two blanks for each
// level, the text. No newline is added: the text brings its own.
//
// What fails costs the line and nothing more; but a failed allocation ends the process, as that of
// any other string does.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "Common/wide_format.h"
#include "platform/process_wide.h"

namespace vgl {

extern platform::ProcessWideValue<std::int32_t> g_bNestLogEnabled;  // 0: off, as at process start
// The levels that are open now, counted for the process as a whole: lines of two threads that nest
// at once indent each other. All scopes use the one counter.
extern platform::ProcessWide<std::array<std::uint32_t, 1>> g_nNestDepth;

// The log's switch.
void SetNestLogEnabled(std::int32_t value);

// A function's scope in the log: made on the stack where the function begins.
class CNestLog {
 public:
  // With the log on: an empty line, "---", `text` unless it is null, all three at the caller's
  // depth; what is printed from then on stands one level in. With the log off: nothing at all.
  explicit CNestLog(const char16_t* text);
  // Goes one level out, when the log is on at that moment.
  ~CNestLog();
  CNestLog(const CNestLog&) = delete;
  CNestLog& operator=(const CNestLog&) = delete;

  // One line, in the form told above. Nothing while the log is off, nor ever by a scope that was
  // made while it was off: such a scope knows no file. Waits, without limit, while another process
  // holds the log's mutex.
  template <class... Args>
  void Print(std::u16string_view format, const Args&... args) const {
    if (g_bNestLogEnabled != 0) PrintText(WideFormat(format, args...));
  }

  // Dumps a printer's status reply. With `mode` 1 as one line of hexadecimal digits; with any other
  // the raw bytes go to the end of a file of their own. Nothing while the log is off, nor when
  // `data` is null or `length` is under 1.
  void PrintBinaryStatus(const void* data, std::int32_t length, std::int32_t mode) const;

  // Appends the text alone, without mutex and line header, to any file; the file is treated as the
  // log's own is, byte-order mark and all. Doesn't ask for the log's switch.
  template <class... Args>
  static void AppendRaw(const char16_t* path, std::u16string_view format, const Args&... args) {
    AppendRawText(path, WideFormat(format, args...));
  }

  // Appends a table of the bytes to the file: 16 in a row, with offset, digits and characters,
  // below `title` unless that is null. Nothing while the log is off, nor when `data` is null or
  // `length` negative; without bytes there is only the table's head.
  static void DumpHexTable(const char16_t* path, const void* data, std::int32_t length,
                           const char16_t* title);

 private:
  void PrintText(std::u16string_view text) const;
  static void AppendRawText(const char16_t* path, std::u16string_view text);
  std::uint32_t& Depth() const { return g_nNestDepth.get()[m_nCounter]; }

  std::u16string m_csPath;
  std::uint32_t m_nCounter = 0;  // which of the counters this scope uses: always the first
  std::uint32_t m_uProcessId = 0;
  std::uint32_t m_uThreadId = 0;
};

}  // namespace vgl
