// What a log library does, whatever system it runs on: the rules of the exports that
// Common/log_library_exports.h tells of, over a store of files.
//
// The rules that are the library's own: a file's version is compared number by number; a file that
// is no log, or one of another device, counts as not being there; one that can't be opened or
// written isn't available, and neither is anything to a caller who breaks the contract. A log of
// fewer entries grows with what it is given.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace desk {

// Larger files are no logs; they count as not available.
inline constexpr std::uint32_t kMostUsageLogBytes = 1U << 20;

// The files, and the exclusion of all who use them. Names have no folder.
class UsageLogStore {
 public:
  virtual ~UsageLogStore() = default;

  // AL_SUCCESS, and Unlock gives it back; AL_ERROR_TIMEOUT when another one has it for longer than
  // that; AL_ERROR_NOT_AVAILABLE.
  virtual std::int32_t Lock(std::uint32_t milliseconds) = 0;
  virtual void Unlock() = 0;
  virtual bool HasFolder() = 0;
  // The whole file: AL_SUCCESS, AL_ERROR_FILE_NOT_EXIST, AL_ERROR_NOT_AVAILABLE.
  virtual std::int32_t Read(const std::u16string& name, std::string* bytes) = 0;
  // Writes from the file's beginning, by one call that does it or leaves the file as it is; makes
  // one that isn't there. What the file has behind that stays.
  virtual bool Write(const std::u16string& name, const std::string& bytes) = 0;
};

std::int32_t IncrementUsageLog(UsageLogStore& store, const char16_t* deviceId,
                               const char16_t* fileName, std::int32_t count,
                               const std::uint32_t* values, const char16_t* version,
                               std::int32_t waitLimit);
// Entry n of the array is stored as counter n: callers pass all that they have.
std::int32_t SetUsageLogValues(UsageLogStore& store, const char16_t* deviceId,
                               const char16_t* fileName, std::int32_t first, std::int32_t number,
                               const std::uint32_t* values, const char16_t* version,
                               std::int32_t waitLimit);
std::int32_t CreateUsageLog(UsageLogStore& store, const char16_t* deviceId,
                            const char16_t* fileName, std::int32_t count,
                            const std::uint32_t* values, const char16_t* version,
                            std::int32_t waitLimit);
std::int32_t ReadUsageLog(UsageLogStore& store, const char16_t* deviceId, const char16_t* fileName,
                          std::int32_t* count, std::uint32_t* buffer, char16_t* version,
                          std::int32_t waitLimit);

// A text into the room of a caller, who may not have any.
std::int32_t GiveUsageLogText(std::u16string_view text, char16_t* buffer, std::int32_t* chars);

}  // namespace desk
