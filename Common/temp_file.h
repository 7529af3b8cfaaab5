// New files in the user's temp folder, by which a program of the suite hands a text to another.
#pragma once

#include <string>
#include <string_view>

#include "platform/types.h"

namespace vgl {

// Three letters in front of the names of all such files; the suite's cleaner knows them by that.
inline constexpr char16_t kTempFilePrefix[] = u"K_Q";

// Makes an empty file of a new name in the temp folder. Its path, which has no bound; empty when
// that fails.
std::u16string NewTempFile(const char16_t* prefix);

void DeleteIfThere(const std::u16string& path);

// Writes all of `text` at an open file's position. False when less arrives.
bool WriteText(platform::HANDLE file, std::u16string_view text);

// The parameter file of one launch: made, written and closed here, then the started program's,
// which reads and removes it.
class CTempFileHolder {
 public:
  // Writes the text with its terminator, as UTF-16 without byte-order mark, into a new file. False
  // when that fails; no file is left then.
  bool Write(std::u16string_view text);

  // Of the file that was written last; empty before.
  const std::u16string& path() const { return m_csPath; }

 private:
  std::u16string m_csPath;
};

}  // namespace vgl
