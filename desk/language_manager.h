// A language manager for the simulated machine, in place of the closed library of a driver set.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sim/library.h"

namespace desk {

// What a language manager of a machine answers, and what it was asked. A test sets the former and
// looks at the latter: machine.libraries().State<desk::LanguageManager>().
struct LanguageManager {
  // A parameter block, as the library finds it, byte for byte.
  struct Block {
    std::uint32_t mode = 0;
    std::u16string driver;
    std::u16string vif;
    std::uint64_t mark = 0;  // 16 bits of it in mode 1
    std::u16string printer;  // mode 2 only, as the handle
    std::uint64_t handle = 0;

    friend bool operator==(const Block&, const Block&) = default;
  };
  struct Request {
    std::uint32_t code = 0;
    std::string input;  // its bytes; for code 2 the size is in characters
    bool hasInput = false;
    bool hasRoom = false;
    std::uint32_t size = 0;  // as it came in

    friend bool operator==(const Request&, const Request&) = default;
  };

  // --- Answers
  bool takesPrinterMode = true;
  bool takesFileMode = true;
  std::u16string folder;  // the library's own
  // Paths by their keys. A key that isn't here is looked up in the context's VIF, in the section
  // that the caller names; a bare name there is in the library's folder.
  std::map<std::u16string, std::u16string> paths;
  // Texts by information code; a code without one gives 0.
  std::map<std::uint32_t, std::u16string> texts;
  // Given for every question of that kind, in place of an answer.
  std::optional<std::int32_t> pathResult;
  std::optional<std::int32_t> informationResult;
  std::optional<std::int32_t> informationResultWithRoom;  // where the caller has room for it

  // --- What was asked
  std::vector<Block> blocks;                             // of each LMWInitialize, refused or not
  std::map<std::uint64_t, std::u16string> openContexts;  // and the VIF of each
  std::vector<std::u16string> keys;                      // of LMWGetLibraryPath: "section/key"
  std::vector<Request> requests;                         // of LMWGetInformation
  int unknownContexts = 0;  // calls with a context that isn't open; each was answered 0
};

// With its four exports. There is one on a machine: another one's answers are the same, but for
// keys that are looked up in the VIF, which are in the folder of the one that was added last.
sim::Library& AddLanguageManager(sim::Machine& machine, std::u16string_view path);

}  // namespace desk
