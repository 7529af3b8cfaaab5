// Profile files: files of [sections] with key=value lines, read one key at a time.
//
// Section and key names ignore case and outer blanks, and the first of several equal ones counts; a
// section's name ends at the first "]" or with its line. A file is in the system's code page, or in
// UTF-16 when it begins with FF FE. A file that can't be opened for reading, because it is missing
// or a handle doesn't share it, counts as missing. Nothing is kept between two reads. A path
// without a folder is looked for in the Windows folder. The agent never writes profile files. Sizes
// are in characters.
#pragma once

#include "platform/types.h"

namespace platform {

class ProfileFiles {
 public:
  virtual ~ProfileFiles() = default;

  // The value of `key` in `section`, without outer blanks and without one pair of surrounding " or
  // '. `fallback` (null counts as empty) without trailing blanks when file, section or key is
  // missing. `chars` is the room at `value` with the terminator; what doesn't fit is cut. The
  // result is the length written without terminator: `chars` - 1 when it was cut. A null `key`
  // lists the section's key names (of the lines with "="), a null `section` the section names: each
  // with its terminator and one more at the end. The result is the length without the last
  // terminator: `chars` - 2 when the list was cut, and also when it took the whole room.
  virtual std::uint32_t GetPrivateProfileStringW(const char16_t* section, const char16_t* key,
                                                 const char16_t* fallback, char16_t* value,
                                                 std::uint32_t chars, const char16_t* path) = 0;

  // GetPrivateProfileStringW with texts in the system's code page; `chars` and the result are in
  // bytes. `section` and `key` may not be null.
  virtual std::uint32_t GetPrivateProfileStringA(const char* section, const char* key,
                                                 const char* fallback, char* value,
                                                 std::uint32_t chars, const char* path) = 0;

  // The value as a number: decimal digits after an optional sign, or 0x and hexadecimal digits, up
  // to the first other character. `fallback` when the key is missing, 0 when it has no digits.
  virtual std::uint32_t GetPrivateProfileIntW(const char16_t* section, const char16_t* key,
                                              std::int32_t fallback, const char16_t* path) = 0;

  // All "key=value" lines of a section as they stand (outer blanks, blank lines and comment lines
  // gone, quotes kept), each with its terminator and one more at the end. The result is the length
  // without the last terminator: `chars` - 2 when the list was cut or took the whole room, 0 when
  // there is no such section.
  virtual std::uint32_t GetPrivateProfileSectionW(const char16_t* section, char16_t* lines,
                                                  std::uint32_t chars, const char16_t* path) = 0;
};

}  // namespace platform
