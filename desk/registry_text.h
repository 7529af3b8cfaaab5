// Reader of the registry's own text export, as regedit writes it and takes it in.
//
// A file is UTF-16 little-endian with its mark, or ASCII. Its first line is "Windows Registry
// Editor Version 5.00" or "REGEDIT4"; then:
//   [HKEY_LOCAL_MACHINE\path]   makes a key, to which the lines below belong
//   [-HKEY_CURRENT_USER\path]   removes one with all below it
//   "name"=VALUE  @=VALUE       sets a value, @ the key's default; "name"=- removes it
// with VALUE one of "text", dword:0000001f, hex:01,02 (REG_BINARY) and hex(N):01,02 (of the type N,
// in hexadecimal). Hexadecimal data goes on in the next line behind a comma and a backslash. In
// texts a backslash stands in front of a backslash and of a quote, and nowhere else. A line that
// begins with ; is a comment.
//
// What different readers of this form take differently is refused: characters beyond ASCII in an
// ASCII file; texts in hexadecimal (the types 1, 2 and 7) in an ASCII file, or without their
// closing zero character, which some readers add.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"
#include "platform/sim/registry_tree.h"

namespace desk {

struct RegistryChange {
  enum class Kind { MakeKey, RemoveKey, SetValue, RemoveValue };

  Kind kind;
  platform::HKEY hive;
  std::u16string path;     // of the key, below its hive
  std::u16string name;     // of the value; empty for the default one
  std::uint32_t type = 0;  // of the value, as its data
  std::string bytes;       // texts with their terminator
};

struct RegistryText {
  std::vector<RegistryChange> changes;
  std::string error;  // empty, or "line 3: ..." telling the mistake and what would be right
};

// Reads a whole file. On a mistake `error` is set and `changes` holds what stands in front of it.
RegistryText ParseRegistryText(std::string_view bytes);

// Carries them out in their order. Removing what isn't there does nothing.
void ApplyChanges(const std::vector<RegistryChange>& changes, sim::RegistryTree& registry);

}  // namespace desk
