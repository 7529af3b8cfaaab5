// Kernel objects of Windows, waiting for them, closing handles.
#include "platform/win32/conversion.h"
#include "platform/win32/services.h"

namespace platform {
namespace {

class KernelObjectsOfWindows final : public KernelObjects {
 public:
  HANDLE CreateMutexW(const SecurityAttributes* attributes, bool initialOwner,
                      const char16_t* name) override {
    return handle_cast<HANDLE>(
        ::CreateMutexW(attributes_cast(attributes), initialOwner, text_cast(name)));
  }

  HANDLE OpenMutexW(std::uint32_t access, const char16_t* name) override {
    return handle_cast<HANDLE>(::OpenMutexW(access, FALSE, text_cast(name)));
  }

  bool ReleaseMutex(HANDLE mutex) override {
    return ::ReleaseMutex(handle_cast<::HANDLE>(mutex)) != FALSE;
  }

  HANDLE CreateSemaphoreW(std::int32_t initialCount, std::int32_t maximumCount,
                          const char16_t* name) override {
    return handle_cast<HANDLE>(
        ::CreateSemaphoreW(nullptr, initialCount, maximumCount, text_cast(name)));
  }

  bool ReleaseSemaphore(HANDLE semaphore, std::int32_t count, std::int32_t* previous) override {
    return ::ReleaseSemaphore(handle_cast<::HANDLE>(semaphore), count, long_cast(previous)) !=
           FALSE;
  }

  std::uint32_t WaitForSingleObject(HANDLE object, std::uint32_t milliseconds) override {
    return ::WaitForSingleObject(handle_cast<::HANDLE>(object), milliseconds);
  }

  bool CloseHandle(HANDLE handle) override {
    return ::CloseHandle(handle_cast<::HANDLE>(handle)) != FALSE;
  }
};

}  // namespace

KernelObjects& Win32KernelObjects() { return *new KernelObjectsOfWindows; }

}  // namespace platform
