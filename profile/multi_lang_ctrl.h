// What the agent and the suite's other programs ask a printer's language manager.
#pragma once

#include <cstdint>

#include "profile/lmw.h"

namespace vgl {

// As CLmw a stack object, which has found its library by the time it is made, or hasn't
// (IsInitialized). Then every question gives 0, and nothing is asked.
//
// Sizes go in and out as the library has them (profile/lmw_exports.h): `*chars` is the room at a
// path or text in characters. Only the library knows what is in `out` of the last three.
class CMultiLangCtrl : public CLmw {
 public:
  using CLmw::CLmw;
  ~CMultiLangCtrl() override;

  bool IsInitialized() const { return m_fInitialized != 0; }

  // 1 when the library answered 1, else 0.
  //
  // The language resource library that fits the printer.
  std::int32_t GetUiResourcePath(char16_t* path, std::uint32_t* chars);
  // A help file, under a key that the library knows.
  std::int32_t GetHelpPath(const char16_t* key, char16_t* path, std::uint32_t* chars);
  // A web address, by two numbers that the library knows. `capacity` is the room at `url` in
  // characters with the terminator; an address that doesn't fit gives 0. The output is emptied
  // first.
  std::int32_t GetUrl(std::uint64_t first, std::uint64_t second, char16_t* url,
                      std::uint32_t capacity);
  // The code of the ink of that name.
  std::int32_t GetInkCode(const char16_t* text, void* out, std::uint32_t* size);

  // What the library answered, unchanged.
  std::int32_t GetRID(void* out, std::uint32_t* size);
  std::int32_t GetREGION(void* out, std::uint32_t* size);

 private:
  bool AskUrl(std::uint64_t first, std::uint64_t second, char16_t* url, std::uint32_t capacity);
};

}  // namespace vgl
