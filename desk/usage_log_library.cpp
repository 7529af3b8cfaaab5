#include "desk/usage_log_library.h"

#include <optional>
#include <utility>

#include "Common/log_library_exports.h"
#include "desk/usage_log_file.h"
#include "desk/usage_log_rules.h"
#include "platform/owned.h"

namespace desk {

using namespace platform;
using namespace vgl;

namespace {

class SimulatedStore final : public UsageLogStore {
 public:
  std::int32_t Lock(std::uint32_t milliseconds) override {
    m_mutex = OwnedObject(Os().objects.CreateMutexW(nullptr, false, kUsageLogMutex));
    if (!m_mutex) return AL_ERROR_NOT_AVAILABLE;
    switch (Os().objects.WaitForSingleObject(m_mutex.get(), milliseconds)) {
      case WAIT_OBJECT_0:
      case WAIT_ABANDONED:
        return AL_SUCCESS;
      case WAIT_TIMEOUT:
        return AL_ERROR_TIMEOUT;
      default:
        return AL_ERROR_NOT_AVAILABLE;
    }
  }

  void Unlock() override { Os().objects.ReleaseMutex(m_mutex.get()); }

  bool HasFolder() override {
    const std::uint32_t attributes = Os().files.GetFileAttributesW(kUsageLogFolder);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  }

  std::int32_t Read(const std::u16string& name, std::string* bytes) override {
    const OwnedFile file = Open(name, GENERIC_READ, OPEN_EXISTING);
    if (!file) {
      const bool isMissing = Os().process.GetLastError() == ERROR_FILE_NOT_FOUND;
      return isMissing ? AL_ERROR_FILE_NOT_EXIST : AL_ERROR_NOT_AVAILABLE;
    }
    const std::uint32_t size = Os().files.GetFileSize(file.get(), nullptr);
    if (size > kMostUsageLogBytes) return AL_ERROR_NOT_AVAILABLE;
    bytes->resize(size);
    for (std::uint32_t at = 0; at < size;) {
      std::uint32_t read = 0;
      if (!Os().files.ReadFile(file.get(), bytes->data() + at, size - at, &read) || read == 0)
        return AL_ERROR_NOT_AVAILABLE;
      at += read;
    }
    return AL_SUCCESS;
  }

  bool Write(const std::u16string& name, const std::string& bytes) override {
    const OwnedFile file = Open(name, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS);
    std::uint32_t written = 0;
    return file && Os().files.WriteFile(file.get(), bytes.data(),
                                        static_cast<std::uint32_t>(bytes.size()), &written);
  }

 private:
  static OwnedFile Open(const std::u16string& name, std::uint32_t access,
                        std::uint32_t disposition) {
    const std::u16string path = std::u16string(kUsageLogFolder) + u"\\" + name;
    return OwnedFile(Os().files.CreateFileW(path.c_str(), access, FILE_SHARE_READ, disposition,
                                            FILE_ATTRIBUTE_NORMAL));
  }

  OwnedObject m_mutex;
};

std::u16string TextOrEmpty(const char16_t* text) { return text == nullptr ? u"" : text; }

// Keeps the call. What a test wants it to give.
std::optional<UsageLogAnswer> Note(UsageLogCall call) {
  UsageLogLibraryState& state = UsageLogLibraryOf(sim::RunningProcess().machine());
  std::deque<UsageLogAnswer>& answers = state.answers[call.name];
  state.calls.push_back(std::move(call));
  if (answers.empty()) return std::nullopt;
  const UsageLogAnswer answer = answers.front();
  answers.pop_front();
  return answer;
}

// None where a caller breaks the contract.
std::vector<std::uint32_t> Copy(const std::uint32_t* values, std::int32_t first,
                                std::int32_t count) {
  const bool isGood = values != nullptr && first >= 0 && count >= 0 &&
                      std::int64_t{first} + count <= std::int64_t{kMostUsageCounters};
  if (!isGood) return {};
  return {values + first, values + first + count};
}

// Nothing when the printer doesn't tell.
std::optional<std::u16string> DeviceIdOf(const std::u16string& printer) {
  const auto& known = UsageLogLibraryOf(sim::RunningProcess().machine()).deviceIds;
  const auto found = known.find(printer);
  if (found != known.end()) return found->second;
  HPRINTER handle{};
  if (!Os().spooler.OpenPrinterW(printer.c_str(), &handle, nullptr)) return std::nullopt;
  char16_t text[MAX_PATH] = {};
  std::uint32_t needed = 0;
  const std::int32_t error = Os().spooler.GetPrinterDataW(
      handle, u"DeviceID", nullptr, text, sizeof(text) - std::uint32_t{sizeof(char16_t)}, &needed);
  Os().spooler.ClosePrinter(handle);
  if (error != ERROR_SUCCESS) return std::nullopt;
  return text;
}

std::int32_t GetExtEscapeDeviceID(const char16_t* printer, char16_t* buffer, std::int32_t* chars) {
  const auto answer = Note({.name = kGetExtEscapeDeviceID,
                            .deviceId = TextOrEmpty(printer),
                            .count = *chars,
                            .hasBuffer = buffer != nullptr});
  if (answer) {
    *chars = answer->size;
    return answer->code;
  }
  const std::optional<std::u16string> id = DeviceIdOf(TextOrEmpty(printer));
  return id ? GiveUsageLogText(*id, buffer, chars) : kPrinterDoesntAnswer;
}

std::int32_t IncrementMultiLog(const char16_t* deviceId, const char16_t* fileName,
                               std::int32_t count, const std::uint32_t* values,
                               const char16_t* version, std::int32_t waitLimit) {
  const auto answer = Note({kIncrementMultiLog, TextOrEmpty(deviceId), TextOrEmpty(fileName), 0,
                            count, Copy(values, 0, count), TextOrEmpty(version), waitLimit, true});
  if (answer) return answer->code;
  SimulatedStore store;
  return IncrementUsageLog(store, deviceId, fileName, count, values, version, waitLimit);
}

std::int32_t SetMultiLogValue(const char16_t* deviceId, const char16_t* fileName,
                              std::int32_t first, std::int32_t number, const std::uint32_t* values,
                              const char16_t* version, std::int32_t waitLimit) {
  const auto answer =
      Note({kSetMultiLogValue, TextOrEmpty(deviceId), TextOrEmpty(fileName), first, number,
            Copy(values, first, number), TextOrEmpty(version), waitLimit, true});
  if (answer) return answer->code;
  SimulatedStore store;
  return SetUsageLogValues(store, deviceId, fileName, first, number, values, version, waitLimit);
}

std::int32_t CreateLogFile(const char16_t* deviceId, const char16_t* fileName, std::int32_t count,
                           const std::uint32_t* values, const char16_t* version,
                           std::int32_t waitLimit, std::int32_t last) {
  // The last argument is kept as `first`, which this export hasn't.
  const auto answer = Note({kCreateLogFile, TextOrEmpty(deviceId), TextOrEmpty(fileName), last,
                            count, Copy(values, 0, count), TextOrEmpty(version), waitLimit, true});
  if (answer) return answer->code;
  SimulatedStore store;
  return CreateUsageLog(store, deviceId, fileName, count, values, version, waitLimit);
}

std::int32_t ReadLog(const char16_t* deviceId, const char16_t* fileName, std::int32_t* count,
                     std::uint32_t* buffer, char16_t* version, std::int32_t waitLimit) {
  const auto answer = Note({.name = kReadLog,
                            .deviceId = TextOrEmpty(deviceId),
                            .fileName = TextOrEmpty(fileName),
                            .count = *count,
                            .waitLimit = waitLimit,
                            .hasBuffer = buffer != nullptr});
  if (answer) {
    *count = answer->size;
    return answer->code;
  }
  SimulatedStore store;
  return ReadUsageLog(store, deviceId, fileName, count, buffer, version, waitLimit);
}

}  // namespace

UsageLogLibraryState& UsageLogLibraryOf(sim::Machine& machine) {
  return machine.libraries().State<UsageLogLibraryState>();
}

sim::Library& AddUsageLogLibrary(sim::Machine& machine, std::u16string_view path) {
  machine.files().MakeFolder(kUsageLogFolder);
  sim::Library& library = machine.libraries().Add(path);
  library.Export<&GetExtEscapeDeviceID>(1, kGetExtEscapeDeviceID);
  library.Export<&IncrementMultiLog>(2, kIncrementMultiLog);
  library.Export<&SetMultiLogValue>(3, kSetMultiLogValue);
  library.Export<&CreateLogFile>(4, kCreateLogFile);
  library.Export<&ReadLog>(5, kReadLog);
  return library;
}

}  // namespace desk
