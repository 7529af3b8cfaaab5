// The exports of the usage log library that the agent calls. The library is a closed part of the
// driver set, found by CVglLog::GetLogRuFileName, loaded for one call and freed; names, numbers and
// argument orders are its own. It owns the log files, their folder and their form, keeps nothing
// from one load to the next, and does its own exclusion: several programs may call it for one file
// at once.
//
// A log is known by device id and file name; the name has no folder. Texts are wide, end in their
// terminator, stay the caller's, and are not kept. `version` is the version of the counters'
// meaning, as "1.0.0.0". `waitLimit` is the longest that a call may wait for another one, in ms.
// Each export gives one of the codes below.
#pragma once

#include <cstdint>

namespace vgl {

inline constexpr std::int32_t AL_SUCCESS = 1;
inline constexpr std::int32_t AL_ERROR_NOT_AVAILABLE = 0;
inline constexpr std::int32_t AL_ERROR_FILE_NOT_EXIST = -1;
inline constexpr std::int32_t AL_ERROR_TIMEOUT = -2;
inline constexpr std::int32_t AL_ERROR_DIR_NOT_EXIST = -3;
inline constexpr std::int32_t AL_ERROR_WRONG_VERSION_LATE = -4;  // the file's is later than ours
inline constexpr std::int32_t AL_ERROR_WRONG_VERSION_OLD = -5;   // the file's is older than ours
inline constexpr std::int32_t AL_ERROR_BUFFER_SHORT = -7;        // the size tells what is needed

inline constexpr std::int32_t kLogWaitLimit = 100;

// The version of a log in its file takes at most this many characters, with its terminator.
inline constexpr std::int32_t kLogVersionChars = 16;

// The device id of a printer, into a buffer of `*chars` characters. For a null buffer, or one that
// is too small, AL_ERROR_BUFFER_SHORT with the room needed, the terminator counted. Negative codes
// outside the table: the printer doesn't answer.
inline constexpr char kGetExtEscapeDeviceID[] = "GetExtEscapeDeviceID";
using GetExtEscapeDeviceIDFunction = std::int32_t (*)(const char16_t* printer, char16_t* buffer,
                                                      std::int32_t* chars);

// Adds each of `count` numbers to the stored counter of the same index. With any result but
// AL_SUCCESS the file is as it was.
inline constexpr char kIncrementMultiLog[] = "IncrementMultiLog";
using IncrementMultiLogFunction = std::int32_t (*)(const char16_t* deviceId,
                                                   const char16_t* fileName, std::int32_t count,
                                                   const std::uint32_t* values,
                                                   const char16_t* version, std::int32_t waitLimit);

// Stores `number` entries, from the index `first` on, in place of the stored ones. The suite's
// programs pass the whole array of their counters. Otherwise as IncrementMultiLog.
inline constexpr char kSetMultiLogValue[] = "SetMultiLogValue";
using SetMultiLogValueFunction = std::int32_t (*)(const char16_t* deviceId,
                                                  const char16_t* fileName, std::int32_t first,
                                                  std::int32_t number, const std::uint32_t* values,
                                                  const char16_t* version, std::int32_t waitLimit);

// Makes the file with these values; one of that name is replaced. The last argument is always 0;
// what it is for is the library's affair.
inline constexpr char kCreateLogFile[] = "CreateLogFile";
using CreateLogFileFunction = std::int32_t (*)(const char16_t* deviceId, const char16_t* fileName,
                                               std::int32_t count, const std::uint32_t* values,
                                               const char16_t* version, std::int32_t waitLimit,
                                               std::int32_t);

// The stored counters, into room for `*count` of them, and the file's version, into
// `kLogVersionChars` characters. For a null buffer AL_ERROR_BUFFER_SHORT and the number of entries,
// which is at least what a log of that kind has.
inline constexpr char kReadLog[] = "ReadLog";
using ReadLogFunction = std::int32_t (*)(const char16_t* deviceId, const char16_t* fileName,
                                         std::int32_t* count, std::uint32_t* buffer,
                                         char16_t* version, std::int32_t waitLimit);

}  // namespace vgl
