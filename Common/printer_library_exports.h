// The exports of the printer library that the agent calls. The library is a closed part of the
// driver set, found by GetPrnDllPath, loaded for one use and freed; names, numbers and argument
// orders are its own. Results are signed 32-bit numbers; texts end in their terminator, stay the
// caller's, and are not kept.
#pragma once

#include <cstdint>

namespace vgl {

// Writes the model's default settings into the record of a printer, or of a port where `printer` is
// empty; the record is there already. 0 when it did. The caller of a new record hands on any other
// number as it is. The last three are always 0, in their whole width: what they are for, numbers or
// pointers, is the library's affair.
inline constexpr char kPrSetRegDefaultValue[] = "PrSetRegDefaultValue";
using PrSetRegDefaultValueFunction = std::int32_t (*)(const char16_t* printer,
                                                      const char16_t* driver, const char16_t* port,
                                                      const char16_t* modelId, std::uint64_t,
                                                      std::uint64_t, std::uint64_t);

// Gives the printer's serial number as narrow text of digits and capital letters, into a buffer of
// `*bytes` bytes, the terminator counted. Not negative: it did. kPrSerialNeedsRoom for a null
// buffer: `*bytes` is then the size needed. kPrSerialNotCached: `cache` was kPrSerialCached and
// nothing is known. Any other negative number is a failure. `*flag`, which may not be null, is set
// to what the agent doesn't read.
inline constexpr char kPrGetSerialID2[] = "PrGetSerialID2";
using PrGetSerialID2Function = std::int32_t (*)(const char16_t* printer, char* buffer,
                                                std::int32_t* bytes, std::int32_t* flag,
                                                std::int32_t cache);

// The cache argument: ask the printer, or answer from what is known without asking it.
inline constexpr std::int32_t kPrSerialFromPrinter = 0;
inline constexpr std::int32_t kPrSerialCached = 1;

inline constexpr std::int32_t kPrSerialNeedsRoom = -59;
inline constexpr std::int32_t kPrSerialNotCached = -65;

// Asks the printer for its status, which takes as long as the printer does. Not negative: it
// answered. `*status` and `*second` are null before; a `*status` that isn't null afterwards,
// whatever the result, is the library's block and to be given back by the other export. Nobody in
// the agent looks into either.
inline constexpr char kPrGetPrinterStatus2[] = "PrGetPrinterStatus2";
using PrGetPrinterStatus2Function = std::int32_t (*)(const char16_t* printer, void** status,
                                                     void** second);
inline constexpr char kPrReleasePrinterStatus[] = "PrReleasePrinterStatus";
using PrReleasePrinterStatusFunction = void (*)(void* status);

}  // namespace vgl
