// Parameter files: small UTF-16 files in the temp folder that carry an option text to another
// program.
#pragma once

#include <optional>
#include <string>

#include "platform/owned.h"

namespace vgl {

// The temp folder with its closing backslash; ".\" when the system doesn't tell one that fits into
// 260 characters.
std::u16string TempFolder();

// A parameter file that has been read. It stays open, so that nobody changes it, until this is
// gone.
struct ParamFile {
  std::u16string path;  // as it was opened
  std::u16string text;  // up to its first U+0000
  platform::OwnedFile file;
};

// Reads a whole file. Nothing when it can't be opened, or gives fewer bytes than its size.
std::optional<ParamFile> ReadParamFile(const std::u16string& path);

// Closes a file that was read and deletes it if it is still there.
void DeleteAfterUse(ParamFile file);

// Whether a file can be opened for reading; it is closed again.
bool CanBeRead(const char16_t* path);

}  // namespace vgl
