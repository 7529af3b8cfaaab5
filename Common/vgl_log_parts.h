// What the source files of CVglLog share: whose turn it is, the kinds of logs, and arrays that may
// not be had.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#include "Common/CVglLog.h"

namespace vgl {

// The turn of one operation with a log, to the end of the scope. False while another operation, of
// whichever thread, has it.
class CVglLogTurn {
 public:
  explicit CVglLogTurn(std::atomic<bool>& isAtWork)
      : m_bIsAtWork(isAtWork), m_bTaken(!isAtWork.exchange(true)) {}
  ~CVglLogTurn() {
    if (m_bTaken) m_bIsAtWork = false;
  }
  CVglLogTurn(const CVglLogTurn&) = delete;
  CVglLogTurn& operator=(const CVglLogTurn&) = delete;

  explicit operator bool() const { return m_bTaken; }

 private:
  std::atomic<bool>& m_bIsAtWork;
  bool m_bTaken;
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
