// A stand-in for the driver package's usage log library, for tests on Windows: K_APLOG.DLL. It
// keeps its files by the rules of the simulated machine's library (desk/usage_log_rules.h). A
// printer's device id is the text "DeviceID" in its data.
#include <string>
#include <type_traits>

#include "Common/log_library_exports.h"
#include "desk/usage_log_file.h"
#include "desk/usage_log_rules.h"

// clang-format off
#include <windows.h>
#include <winspool.h>
// clang-format on

namespace {

using namespace vgl;

constexpr std::int32_t kPrinterDoesntAnswer = -10;

const wchar_t* Wide(const char16_t* text) { return reinterpret_cast<const wchar_t*>(text); }

// A handle, closed at its scope's end.
class Handle {
 public:
  explicit Handle(HANDLE handle = nullptr) : m_handle(handle) {}
  ~Handle() { Take(nullptr); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  void Take(HANDLE handle) {
    if (*this) CloseHandle(m_handle);
    m_handle = handle;
  }
  explicit operator bool() const { return m_handle != nullptr && m_handle != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return m_handle; }

 private:
  HANDLE m_handle;
};

class WindowsStore final : public desk::UsageLogStore {
 public:
  std::int32_t Lock(std::uint32_t milliseconds) override {
    m_mutex.Take(CreateMutexW(nullptr, FALSE, Wide(desk::kUsageLogMutex)));
    if (!m_mutex) return AL_ERROR_NOT_AVAILABLE;
    switch (WaitForSingleObject(m_mutex.get(), milliseconds)) {
      case WAIT_OBJECT_0:
      case WAIT_ABANDONED:
        return AL_SUCCESS;
      case WAIT_TIMEOUT:
        return AL_ERROR_TIMEOUT;
      default:
        return AL_ERROR_NOT_AVAILABLE;
    }
  }

  void Unlock() override { ReleaseMutex(m_mutex.get()); }

  bool HasFolder() override {
    const DWORD attributes = GetFileAttributesW(Wide(desk::kUsageLogFolder));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  }

  std::int32_t Read(const std::u16string& name, std::string* bytes) override {
    const Handle file(Open(name, GENERIC_READ, OPEN_EXISTING));
    if (!file)
      return GetLastError() == ERROR_FILE_NOT_FOUND ? AL_ERROR_FILE_NOT_EXIST
                                                    : AL_ERROR_NOT_AVAILABLE;
    const DWORD size = GetFileSize(file.get(), nullptr);
    if (size > desk::kMostUsageLogBytes) return AL_ERROR_NOT_AVAILABLE;
    bytes->resize(size);
    for (DWORD at = 0; at < size;) {
      DWORD read = 0;
      if (!ReadFile(file.get(), bytes->data() + at, size - at, &read, nullptr) || read == 0)
        return AL_ERROR_NOT_AVAILABLE;
      at += read;
    }
    return AL_SUCCESS;
  }

  bool Write(const std::u16string& name, const std::string& bytes) override {
    const Handle file(Open(name, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS));
    DWORD written = 0;
    return file && WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written,
                             nullptr) != FALSE;
  }

 private:
  static HANDLE Open(const std::u16string& name, DWORD access, DWORD disposition) {
    const std::u16string path = std::u16string(desk::kUsageLogFolder) + u"\\" + name;
    return CreateFileW(Wide(path.c_str()), access, FILE_SHARE_READ, nullptr, disposition,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
  }

  Handle m_mutex;
};

// False when the printer doesn't tell.
bool ReadDeviceId(const char16_t* printer, std::u16string* id) {
  HANDLE handle = nullptr;
  if (!OpenPrinterW(const_cast<wchar_t*>(Wide(printer)), &handle, nullptr)) return false;
  char16_t text[MAX_PATH] = {};
  DWORD type = 0;
  DWORD needed = 0;
  wchar_t name[] = L"DeviceID";
  const DWORD error = GetPrinterDataW(handle, name, &type, reinterpret_cast<BYTE*>(text),
                                      sizeof(text) - sizeof(char16_t), &needed);
  ClosePrinter(handle);
  *id = text;
  return error == ERROR_SUCCESS;
}

}  // namespace

extern "C" {

std::int32_t GetExtEscapeDeviceID(const char16_t* printer, char16_t* buffer, std::int32_t* chars) {
  std::u16string id;
  return ReadDeviceId(printer, &id) ? desk::GiveUsageLogText(id, buffer, chars)
                                    : kPrinterDoesntAnswer;
}

std::int32_t IncrementMultiLog(const char16_t* deviceId, const char16_t* fileName,
                               std::int32_t count, const std::uint32_t* values,
                               const char16_t* version, std::int32_t waitLimit) {
  WindowsStore store;
  return desk::IncrementUsageLog(store, deviceId, fileName, count, values, version, waitLimit);
}

std::int32_t SetMultiLogValue(const char16_t* deviceId, const char16_t* fileName,
                              std::int32_t first, std::int32_t number, const std::uint32_t* values,
                              const char16_t* version, std::int32_t waitLimit) {
  WindowsStore store;
  return desk::SetUsageLogValues(store, deviceId, fileName, first, number, values, version,
                                 waitLimit);
}

std::int32_t CreateLogFile(const char16_t* deviceId, const char16_t* fileName, std::int32_t count,
                           const std::uint32_t* values, const char16_t* version,
                           std::int32_t waitLimit, std::int32_t /*last*/) {
  WindowsStore store;
  return desk::CreateUsageLog(store, deviceId, fileName, count, values, version, waitLimit);
}

std::int32_t ReadLog(const char16_t* deviceId, const char16_t* fileName, std::int32_t* count,
                     std::uint32_t* buffer, char16_t* version, std::int32_t waitLimit) {
  WindowsStore store;
  return desk::ReadUsageLog(store, deviceId, fileName, count, buffer, version, waitLimit);
}

}  // extern "C"

static_assert(std::is_same_v<decltype(&GetExtEscapeDeviceID), GetExtEscapeDeviceIDFunction>);
static_assert(std::is_same_v<decltype(&IncrementMultiLog), IncrementMultiLogFunction>);
static_assert(std::is_same_v<decltype(&SetMultiLogValue), SetMultiLogValueFunction>);
static_assert(std::is_same_v<decltype(&CreateLogFile), CreateLogFileFunction>);
static_assert(std::is_same_v<decltype(&ReadLog), ReadLogFunction>);
