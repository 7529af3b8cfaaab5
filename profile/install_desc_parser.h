// The reading of a SADat file's section [Install]. docs/driver-set.md tells the form of its lines.
//
// A line that doesn't fit is dropped, and nothing tells of it. Lines of the sections behind
// [Install] are read as if they stood in it (see CDatTextFile::FindKey).
#pragma once

#include <string>
#include <string_view>

#include "profile/dat_text_file.h"
#include "profile/install_desc_entries.h"

namespace vgl {

// Appends the file's REGPATH lines to the list, in their order and also when they say the same.
// 1 when the list holds anything after that, otherwise 0.
int ParsePaths(CDatTextFile& file, CRegPathList& list);

// Appends those REGENTER lines to the list whose conditions hold here. A line with the tag and name
// of the one that was appended just before takes its place; further back nothing is replaced.
// `driverDir` is what DRIVERDIR stands for; while it is empty every string is dropped. 1 when the
// list holds anything after that, otherwise 0.
int ParseEntries(CDatTextFile& file, std::u16string_view driverDir, CRegEnterList& list);

// The same for one question, which costs a fraction: the lists, which must be empty, get what
// answers it, one entry at most, and the rest of the file is passed over. Names ignore the case of
// A to Z.
//
// The first key of that path. The result is that of ParsePaths: 1 also when only other keys are
// described.
int ParsePathFor(std::u16string_view keyPath, CDatTextFile& file, CRegPathList& list);
// The first of the values that ParseEntries leaves with that tag and name; 1 when there is one.
int ParseEntryFor(std::u16string_view tag, std::u16string_view valueName, CDatTextFile& file,
                  std::u16string_view driverDir, CRegEnterList& list);

// The text that a string's field stands for: the text between its quotes; the driver's folder for
// DRIVERDIR, the system's folder for SYSTEMDIR, either with a text behind it as in
// DRIVERDIR+"\x.exe". Empty for anything else, and for an empty folder of the driver; where the
// system doesn't tell its folder, the text behind the word stands alone. `value` has no outer
// blanks.
std::u16string ExpandValue(std::u16string_view value, std::u16string_view driverDir);

}  // namespace vgl
