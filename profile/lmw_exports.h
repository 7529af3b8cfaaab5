// The language manager: a closed library of newer driver sets, which knows the resource library,
// the help files and the web addresses that fit a printer and a region. Its exports are found by
// their names; names, numbers and layouts here are the library's own. Texts end in their terminator
// and stay the caller's.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/spooler.h"

namespace vgl {

// How the library is told what it is to speak for, and the block that goes with it.
inline constexpr std::uint32_t kLmwModeFile = 1;     // LMWParamFile
inline constexpr std::uint32_t kLmwModePrinter = 2;  // LMWParamPrinter

inline constexpr std::uint16_t kLmwParamMark = 0xFFFF;

struct LMWParamFile {
  const char16_t* driverName;
  const char16_t* vifName;
  std::uint16_t mark;       // kLmwParamMark
  std::uint16_t unused[3];  // whatever they are
};
static_assert(sizeof(LMWParamFile) == 24);
static_assert(offsetof(LMWParamFile, driverName) == 0);
static_assert(offsetof(LMWParamFile, vifName) == 8);
static_assert(offsetof(LMWParamFile, mark) == 16);
static_assert(offsetof(LMWParamFile, unused) == 18);

struct LMWParamPrinter {
  const char16_t* driverName;
  const char16_t* vifName;
  std::uint64_t mark;  // kLmwParamMark
  const char16_t* printerName;
  platform::HPRINTER printer;  // open; stays the caller's
};
static_assert(sizeof(LMWParamPrinter) == 40);
static_assert(offsetof(LMWParamPrinter, driverName) == 0);
static_assert(offsetof(LMWParamPrinter, vifName) == 8);
static_assert(offsetof(LMWParamPrinter, mark) == 16);
static_assert(offsetof(LMWParamPrinter, printerName) == 24);
static_assert(offsetof(LMWParamPrinter, printer) == 32);

// What the exports give when they did what was asked, and when the room at the output is too small,
// which sets the size that is needed.
inline constexpr std::int32_t kLmwSuccess = 1;
inline constexpr std::int32_t kLmwNoRoom = -6;

// Gives a context for the other calls, which LMWUnInitialize takes back. `block` is that of `mode`.
inline constexpr char kLMWInitialize[] = "LMWInitialize";
using LMWInitializeFunction = std::int32_t (*)(std::uint32_t mode, const void* block,
                                               std::uint64_t* context);

inline constexpr char kLMWUnInitialize[] = "LMWUnInitialize";
using LMWUnInitializeFunction = std::int32_t (*)(std::uint64_t context);

// The path of a library or file that stands under `key` in that section of the VIF; `*chars` is the
// room in characters.
inline constexpr char kLMWGetLibraryPath[] = "LMWGetLibraryPath";
using LMWGetLibraryPathFunction = std::int32_t (*)(std::uint64_t context, const char16_t* section,
                                                   const char16_t* key, char16_t* path,
                                                   std::uint32_t* chars);

// What the library knows under one of the codes. What `input`, `out` and the sizes are depends on
// the code.
inline constexpr char kLMWGetInformation[] = "LMWGetInformation";
using LMWGetInformationFunction = std::int32_t (*)(std::uint64_t context, std::uint32_t code,
                                                   const void* input, std::uint32_t inputSize,
                                                   void* out, std::uint32_t* size);

inline constexpr std::uint32_t kLmwInkCode = 2;  // input: text, its size in characters
inline constexpr std::uint32_t kLmwUrl = 3;      // input: two numbers of 64 bits; sizes of the
                                                 // output in characters
inline constexpr std::uint32_t kLmwRid = 6;      // no input
inline constexpr std::uint32_t kLmwRegion = 7;   // no input

}  // namespace vgl
