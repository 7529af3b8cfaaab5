// What the source files of CVglLog share: its lock, the kinds of logs, and arrays that may not be
// had.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#include "Common/CVglLog.h"
#include "platform/platform.h"

namespace vgl {

// A thread's turn with a log, to the end of the scope; it waits for that of another thread. False
// where the thread has its turn already: it came back from within a library.
class CVglLogTurn {
 public:
  explicit CVglLogTurn(CVglLogLock& lock) : m_cLock(lock) {
    const std::uint32_t self = platform::Os().process.GetCurrentThreadId();
    m_bTaken = m_cLock.owner != self;
    if (!m_bTaken) return;
    platform::Os().objects.AcquireSRWLockExclusive(&m_cLock.lock);
    m_cLock.owner = self;
  }
  ~CVglLogTurn() {
    if (!m_bTaken) return;
    m_cLock.owner = 0;
    platform::Os().objects.ReleaseSRWLockExclusive(&m_cLock.lock);
  }
  CVglLogTurn(const CVglLogTurn&) = delete;
  CVglLogTurn& operator=(const CVglLogTurn&) = delete;

  explicit operator bool() const { return m_bTaken; }

 private:
  CVglLogLock& m_cLock;
  bool m_bTaken = false;
};

// Counters and file names of the kinds are fixed by the suite.
struct VglLogKind {
  std::int32_t kind;
  std::int32_t counters;
  const char16_t* fileName;  // as a template of the serial number
  // The counters whose values the log library stores as they are; all others it adds up.
  std::int32_t firstByValue;
  std::int32_t countByValue;

  constexpr bool IsSentByIncrement(std::int32_t index) const {
    return index < firstByValue || index >= firstByValue + countByValue;
  }
};

inline constexpr std::array<VglLogKind, 3> kVglLogKinds{{
    {VGLLOG_DETAIL, 57, u"VGL_Detail_%s.xml", 0, 0},
    {VGLLOG_MONITORINGPREFERENCE, 24, u"VGL_Preferences_%s.xml", 1, 16},
    {VGLLOG_TRAYICON, 14, u"VGL_TrayIcon_%s.xml", 0, 0},
}};

// Null when there is no such kind.
constexpr const VglLogKind* FindVglLogKind(std::int32_t number) {
  for (const VglLogKind& kind : kVglLogKinds)
    if (kind.kind == number) return &kind;
  return nullptr;
}

// `count` zeros; null when there isn't that much memory, or `count` is negative, as that of a
// library may be.
template <class T>
std::unique_ptr<T[]> ZeroedArray(std::int64_t count) {
  if (count < 0) return nullptr;
  return std::unique_ptr<T[]>(new (std::nothrow) T[static_cast<std::size_t>(count)]());
}

}  // namespace vgl
