// A usage log's file: its text, as the log libraries here keep it. Nothing of the system is in it,
// so that the simulated machine's library, the stub for Windows and whoever shows counts share it.
//
//   <?xml version="1.0" encoding="UTF-8"?>
//   <UsageLog device="S7200" version="1.0.0.0">
//     <Counter index="0" value="0"/>
//     <Counter index="1" value="12"/>
//   </UsageLog>
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace desk {

// Where the log libraries here keep the files.
inline constexpr char16_t kUsageLogFolder[] = u"C:\\ProgramData\\KAVRO\\VGL3\\LOG";
// Who has this mutex has the files.
inline constexpr char16_t kUsageLogMutex[] = u"Global\\KavroUsageLogMutex";

inline constexpr std::size_t kMostUsageCounters = 4096;

struct UsageLog {
  std::u16string deviceId;
  std::u16string version;  // numbers with dots between them
  std::vector<std::uint32_t> counters;

  friend bool operator==(const UsageLog&, const UsageLog&) = default;
};

// In ASCII alone. Other characters of the device id are written as references; one that XML has no
// place for comes back all the same.
std::string FormatUsageLog(const UsageLog& log);

// The log of a file that is in the form above, give or take blanks; counters may be in any order,
// and those that are left out are 0. Nothing where the text is anything else.
std::optional<UsageLog> ParseUsageLog(std::string_view bytes);

// Whether a text is a version: one to four numbers of at most three digits.
bool IsUsageLogVersion(std::u16string_view text);

// Negative where `left` is the older of two versions, 0 where they are the same. Numbers that are
// left out at the end count as 0.
int CompareUsageLogVersions(std::u16string_view left, std::u16string_view right);

}  // namespace desk
