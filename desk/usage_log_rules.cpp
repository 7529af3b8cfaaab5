#include "desk/usage_log_rules.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

#include "Common/log_library_exports.h"
#include "desk/usage_log_file.h"

namespace desk {

using namespace vgl;

namespace {

// How many entries a log has at least, by its kind, which the file's name tells.
std::size_t EntriesOfKind(std::u16string_view fileName) {
  if (fileName.starts_with(u"VGL_Detail_")) return 57;
  if (fileName.starts_with(u"VGL_Preferences_")) return 24;
  if (fileName.starts_with(u"VGL_TrayIcon_")) return 14;
  return 0;
}

// With the folder and a backslash it is a path, which has room for 260 characters.
bool IsBareName(std::u16string_view name) {
  return !name.empty() && std::size(kUsageLogFolder) + name.size() < 260 &&
         name.find_first_of(u"\\/:*?\"<>|") == std::u16string_view::npos;
}

bool IsNumberOfEntries(std::int64_t number) {
  return number >= 0 && number <= std::int64_t{kMostUsageCounters};
}

// One log, held from all others while it lives.
class HeldLog {
 public:
  HeldLog(UsageLogStore& store, const char16_t* deviceId, const char16_t* fileName,
          std::int32_t waitLimit)
      : m_store(store) {
    if (deviceId == nullptr || fileName == nullptr || !IsBareName(fileName)) return;
    m_deviceId = deviceId;
    m_fileName = fileName;
    m_state = store.Lock(static_cast<std::uint32_t>(std::max(waitLimit, 0)));
    m_isLocked = m_state == AL_SUCCESS;
    if (m_isLocked && !store.HasFolder()) m_state = AL_ERROR_DIR_NOT_EXIST;
  }
  ~HeldLog() {
    if (m_isLocked) m_store.Unlock();
  }
  HeldLog(const HeldLog&) = delete;
  HeldLog& operator=(const HeldLog&) = delete;

  // AL_SUCCESS where the files can be asked.
  std::int32_t state() const { return m_state; }
  const std::u16string& fileName() const { return m_fileName; }

  std::int32_t Read(UsageLog* log) {
    std::string bytes;
    const std::int32_t result = m_store.Read(m_fileName, &bytes);
    if (result != AL_SUCCESS) return result;
    m_bytesInFile = bytes.size();
    std::optional<UsageLog> found = ParseUsageLog(bytes);
    if (!found || found->deviceId != m_deviceId) return AL_ERROR_FILE_NOT_EXIST;
    *log = std::move(*found);
    return AL_SUCCESS;
  }

  // The same for a caller whose counters have that version.
  std::int32_t ReadOfVersion(const char16_t* version, UsageLog* log) {
    const std::int32_t result = Read(log);
    if (result != AL_SUCCESS) return result;
    const int order = CompareUsageLogVersions(log->version, version);
    if (order == 0) return AL_SUCCESS;
    return order < 0 ? AL_ERROR_WRONG_VERSION_OLD : AL_ERROR_WRONG_VERSION_LATE;
  }

  // In place of the file that Read has found, if there is one. Blanks take up what that one has
  // more, as a file that is cut first would be lost with the write that fails.
  std::int32_t Write(UsageLog log) {
    log.deviceId = m_deviceId;
    std::string text = FormatUsageLog(log);
    text.resize(std::max(text.size(), m_bytesInFile), '\n');
    return m_store.Write(m_fileName, text) ? AL_SUCCESS : AL_ERROR_NOT_AVAILABLE;
  }

 private:
  UsageLogStore& m_store;
  std::u16string m_deviceId;
  std::u16string m_fileName;
  std::int32_t m_state = AL_ERROR_NOT_AVAILABLE;
  bool m_isLocked = false;
  std::size_t m_bytesInFile = 0;
};

bool AreGood(std::int64_t count, const std::uint32_t* values, const char16_t* version) {
  return IsNumberOfEntries(count) && values != nullptr && version != nullptr &&
         IsUsageLogVersion(version);
}

// Reads the log, has `change` change the counters, of which there are at least `entries`, and
// writes it.
template <class Change>
std::int32_t ChangeUsageLog(HeldLog& held, const char16_t* version, std::int32_t entries,
                            const Change& change) {
  if (held.state() != AL_SUCCESS) return held.state();
  UsageLog log;
  const std::int32_t result = held.ReadOfVersion(version, &log);
  if (result != AL_SUCCESS) return result;
  log.counters.resize(std::max(log.counters.size(), static_cast<std::size_t>(entries)));
  change(log.counters);
  return held.Write(std::move(log));
}

}  // namespace

std::int32_t IncrementUsageLog(UsageLogStore& store, const char16_t* deviceId,
                               const char16_t* fileName, std::int32_t count,
                               const std::uint32_t* values, const char16_t* version,
                               std::int32_t waitLimit) {
  if (!AreGood(count, values, version)) return AL_ERROR_NOT_AVAILABLE;
  HeldLog held(store, deviceId, fileName, waitLimit);
  return ChangeUsageLog(held, version, count, [&](std::vector<std::uint32_t>& counters) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) counters[i] += values[i];
  });
}

std::int32_t SetUsageLogValues(UsageLogStore& store, const char16_t* deviceId,
                               const char16_t* fileName, std::int32_t first, std::int32_t number,
                               const std::uint32_t* values, const char16_t* version,
                               std::int32_t waitLimit) {
  if (first < 0 || number < 0) return AL_ERROR_NOT_AVAILABLE;
  const std::int64_t end = std::int64_t{first} + number;
  if (!AreGood(end, values, version)) return AL_ERROR_NOT_AVAILABLE;
  HeldLog held(store, deviceId, fileName, waitLimit);
  return ChangeUsageLog(held, version, static_cast<std::int32_t>(end),
                        [&](std::vector<std::uint32_t>& counters) {
                          std::copy(values + first, values + end, counters.begin() + first);
                        });
}

std::int32_t CreateUsageLog(UsageLogStore& store, const char16_t* deviceId,
                            const char16_t* fileName, std::int32_t count,
                            const std::uint32_t* values, const char16_t* version,
                            std::int32_t waitLimit) {
  if (!AreGood(count, values, version)) return AL_ERROR_NOT_AVAILABLE;
  HeldLog held(store, deviceId, fileName, waitLimit);
  if (held.state() != AL_SUCCESS) return held.state();
  UsageLog replaced;
  if (held.Read(&replaced) == AL_ERROR_NOT_AVAILABLE) return AL_ERROR_NOT_AVAILABLE;
  return held.Write({.deviceId = {}, .version = version, .counters = {values, values + count}});
}

std::int32_t ReadUsageLog(UsageLogStore& store, const char16_t* deviceId, const char16_t* fileName,
                          std::int32_t* count, std::uint32_t* buffer, char16_t* version,
                          std::int32_t waitLimit) {
  if (count == nullptr || version == nullptr) return AL_ERROR_NOT_AVAILABLE;
  HeldLog held(store, deviceId, fileName, waitLimit);
  if (held.state() != AL_SUCCESS) return held.state();
  UsageLog log;
  const std::int32_t result = held.Read(&log);
  if (result != AL_SUCCESS) return result;
  log.counters.resize(std::max(log.counters.size(), EntriesOfKind(held.fileName())));
  const auto entries = static_cast<std::int32_t>(log.counters.size());
  const bool hasRoom = buffer != nullptr && *count >= entries;
  *count = entries;
  if (!hasRoom) return AL_ERROR_BUFFER_SHORT;
  std::copy(log.counters.begin(), log.counters.end(), buffer);
  version[log.version.copy(version, kLogVersionChars - 1)] = u'\0';
  return AL_SUCCESS;
}

std::int32_t GiveUsageLogText(std::u16string_view text, char16_t* buffer, std::int32_t* chars) {
  if (chars == nullptr) return AL_ERROR_NOT_AVAILABLE;
  const auto needed = static_cast<std::int32_t>(text.size()) + 1;
  const bool hasRoom = buffer != nullptr && *chars >= needed;
  *chars = needed;
  if (!hasRoom) return AL_ERROR_BUFFER_SHORT;
  buffer[text.copy(buffer, text.size())] = u'\0';
  return AL_SUCCESS;
}

}  // namespace desk
