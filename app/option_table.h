// The options of the suite: one table for the reading of a record and for its writing.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "app/cmd_line_info.h"

namespace vgl {

enum class OptionKind {
  Text,           // the value goes to `readInto`
  Flag,           // the flag becomes 1, a value is ignored
  WindowHandle,   // /HWND: a number
  IconFrom,       // /EF: a keyword
  PrinterRecord,  // /KVT: the record that knows the printer's name
  FileName,       // /FU: as Text, and the file is read next
};

enum class Written {
  Never,
  WhenSet,  // a text that isn't empty, a number that isn't 0
  WhenOne,  // a number of exactly 1
};

// Which fields an option sets and is written from. Never null are: for Text, `readInto`, and
// `writtenFrom` unless `written` is Never; for FileName, `readInto`; for Flag, `flag`. All others
// are null: the remaining kinds have their fields by name.
struct OptionRow {
  std::u16string_view name;  // without the slash
  OptionKind kind;
  Written written;
  std::u16string CCmdLineInfo::*readInto = nullptr;
  std::u16string CCmdLineInfo::*writtenFrom = nullptr;
  std::int32_t CCmdLineInfo::*flag = nullptr;
};

// All options, in the order in which they are written.
std::span<const OptionRow> OptionTable();

// The row of a name, without regard to the case of A to Z; null for an unknown one.
const OptionRow* FindOption(std::u16string_view name);

}  // namespace vgl
