// Paths as the simulated machine reads them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace sim {

class Process;

// A path with everything worked out that a caller may leave open: it begins with a drive or a
// share, its names are separated by one "\" each and hold no "." or "..".
struct FilePath {
  std::u16string text;
  std::size_t rootLength = 0;    // of "C:\" or "\\server\share\"
  bool endsInSeparator = false;  // as it was given, and no root
  std::int32_t error = 0;        // why what was given is no path; all else is empty then

  bool IsRoot() const { return text.size() == rootLength; }
  // The last name; empty for a root.
  std::u16string_view Name() const;
  // The folder that holds it; a root is its own.
  std::u16string_view Folder() const;
};

enum class Wildcards { kInvalid, kInLastName };

FilePath ResolvePath(std::u16string_view given, std::u16string_view currentFolder,
                     Wildcards wildcards = Wildcards::kInvalid);

// A path that a process gives: relative ones are from the folder of its program.
FilePath ResolvePath(const char16_t* given, const Process& process,
                     Wildcards wildcards = Wildcards::kInvalid);

// A folder with a "\" behind it, as a root has one already.
std::u16string WithSeparator(std::u16string_view folder);

bool HasWildcards(std::u16string_view name);

// Whether a name fits a pattern in which * stands for any text and ? for one character. Both are to
// be folded. "*.*" fits names without a dot, too.
bool FitsPattern(std::u16string_view name, std::u16string_view pattern);

}  // namespace sim
