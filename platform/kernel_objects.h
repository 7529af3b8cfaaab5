// Kernel objects that processes share by name, waiting for them, and closing handles of any kind.
//
// An object lives while any process holds a handle to it. Names are told apart by case. A name that
// begins with "Global\" is the whole machine's and another name than the session's own, which may
// begin with "Local\".
#pragma once

#include "platform/security.h"
#include "platform/types.h"

namespace platform {

inline constexpr std::uint32_t SYNCHRONIZE = 0x00100000;

inline constexpr std::uint32_t WAIT_OBJECT_0 = 0;
inline constexpr std::uint32_t WAIT_ABANDONED = 0x80;
inline constexpr std::uint32_t WAIT_TIMEOUT = 258;
inline constexpr std::uint32_t WAIT_FAILED = 0xFFFFFFFF;

class KernelObjects {
 public:
  virtual ~KernelObjects() = default;

  // Makes a mutex or opens the one of that name (a null name makes an unnamed one). With
  // `initialOwner` a newly made one belongs to the calling thread. HANDLE{} on failure; on success
  // the last error is 183 when it existed, else 0. `attributes` tell who may open a newly made one;
  // null stands for default security.
  virtual HANDLE CreateMutexW(const SecurityAttributes* attributes, bool initialOwner,
                              const char16_t* name) = 0;

  // HANDLE{} with 2 when there is no mutex of that name.
  virtual HANDLE OpenMutexW(std::uint32_t access, const char16_t* name) = 0;

  // Gives one ownership back; false with 288 when the calling thread isn't the owner.
  virtual bool ReleaseMutex(HANDLE mutex) = 0;

  // As CreateMutexW, for a semaphore; the counts apply to a newly made one. HANDLE{} with 6 when
  // the name belongs to an object of another kind (so do the mutex calls).
  virtual HANDLE CreateSemaphoreW(std::int32_t initialCount, std::int32_t maximumCount,
                                  const char16_t* name) = 0;

  // Gives `count` back; false with 298 when that would pass the maximum. `*previous` may be null.
  virtual bool ReleaseSemaphore(HANDLE semaphore, std::int32_t count, std::int32_t* previous) = 0;

  // Waits until the object is free, `milliseconds` at most, and takes it. A thread that owns a
  // mutex takes it again at once. WAIT_ABANDONED when the last owner ended without giving it back.
  virtual std::uint32_t WaitForSingleObject(HANDLE object, std::uint32_t milliseconds) = 0;

  // Closes a file or kernel object handle. False with 6 for what isn't one.
  virtual bool CloseHandle(HANDLE handle) = 0;
};

}  // namespace platform
