// The instance map byte for byte. The suite fixes the layout: other programs read and write it.
//
// The section has no header; its 500 slots follow one another. Numbers are little-endian and not
// aligned. docs/instance-map.md tells it to the authors of other programs.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "Common/instance_map.h"

namespace vgl {

inline constexpr std::uint32_t kMapSlots = 500;

// Offsets in a slot, in bytes.
inline constexpr std::size_t kSlotName = 0;  // PrnName: 520 characters with the terminator
inline constexpr std::size_t kSlotReserved = 1040;
inline constexpr std::size_t kSlotSel12 = 1042;
inline constexpr std::size_t kSlotSel0 = 1050;
inline constexpr std::size_t kSlotSel3 = 1058;  // the agent's window
inline constexpr std::size_t kSlotSel5 = 1066;  // V7 alone

inline constexpr std::size_t kSlotNameChars = 520;

// The first character of a name tells the slot's state. (A printer whose name begins with U+00FF
// therefore ends the map; that is so in every program of the suite.)
inline constexpr char16_t kSlotFree = 0x0000;
inline constexpr char16_t kSlotEnd = 0x00FF;  // the first position behind all used slots

// In kSlotSel3: an agent starts and has no window yet. No window's handle is that; a message that
// is sent there goes to all top-level windows.
inline constexpr platform::HWND kClaimedByStarting{~std::uint64_t{0}};

struct MapGeneration {
  const char16_t* sectionName;
  std::uint32_t slotBytes;
  std::size_t windowBytes;  // of the handle fields, from kSlotSel12 on

  bool hasSel5() const { return windowBytes > kSlotSel5 - kSlotSel12; }
  std::uint32_t sectionBytes() const { return slotBytes * kMapSlots; }
};
inline constexpr MapGeneration kMapV5{u"VglV5MapFile_Ink", 1066, 24};
inline constexpr MapGeneration kMapV7{u"VglV7MapFile_Ink", 1094, 32};

// The generation of a map's name; null for a name of neither. Case doesn't count.
const MapGeneration* GenerationOf(const char16_t* mapName);

// By what a slot is found; never null.
inline const char16_t* NameToMatch(const char16_t* printer, const char16_t* port) {
  if (printer != nullptr && *printer != u'\0') return printer;
  return port != nullptr ? port : u"";
}

// A slot's name, out of the reach of the programs that may be writing it.
struct SlotName {
  char16_t text[kSlotNameChars + 1] = {};
};

// One slot in a view. Loads and stores go straight to the shared bytes.
class CMapSlot {
 public:
  explicit CMapSlot(unsigned char* bytes) : m_bytes(bytes) {}

  bool IsEnd() const { return Load<char16_t>(kSlotName) == kSlotEnd; }
  bool IsFree() const { return Load<char16_t>(kSlotName) == kSlotFree; }
  // Without regard to case, as the system compares.
  bool IsNamed(const char16_t* name) const;
  SlotName Name() const;
  platform::HWND Window(std::size_t offset) const { return Load<platform::HWND>(offset); }

  void MarkEnd() { Store(kSlotName, kSlotEnd); }
  void MarkFree() { Store(kSlotName, kSlotFree); }
  // False when it doesn't fit with its terminator; the slot is as it was then. What stood behind
  // the terminator stays.
  bool SetName(std::u16string_view name);
  void ClearWindows(const MapGeneration& map) {
    std::memset(m_bytes + kSlotSel12, 0, map.windowBytes);
  }
  void ClearReserved() { Store(kSlotReserved, std::uint16_t{0}); }
  // Behind everything that was stored before.
  void SetWindow(std::size_t offset, platform::HWND window);

 private:
  static_assert(std::endian::native == std::endian::little);
  template <class T>
  T Load(std::size_t offset) const {
    T value;
    std::memcpy(&value, m_bytes + offset, sizeof value);
    return value;
  }
  template <class T>
  void Store(std::size_t offset, T value) {
    std::memcpy(m_bytes + offset, &value, sizeof value);
  }

  unsigned char* m_bytes;
};

// The slots of a section from the first one on, as far as the slot in hand and no further: a small
// map costs few pages.
class CMapView {
 public:
  CMapView(const MapGeneration& map, platform::HANDLE section) : m_map(map), m_section(section) {}
  ~CMapView() { Unmap(); }
  CMapView(const CMapView&) = delete;
  CMapView& operator=(const CMapView&) = delete;

  // Takes a view that reaches to the end of the slot at `index`; false when that can't be had, and
  // no view is held then. The view before is forgotten and stays mapped: unmap it first.
  bool MapUpTo(std::uint32_t index);
  void Unmap();

  // Whether the view reaches that slot.
  bool Reaches(std::uint32_t index) const { return index < m_slots; }
  CMapSlot Slot(std::uint32_t index) const {
    return CMapSlot(m_bytes + std::size_t{index} * m_map.slotBytes);
  }

 private:
  const MapGeneration& m_map;
  platform::HANDLE m_section;
  unsigned char* m_bytes = nullptr;
  std::uint32_t m_slots = 0;
};

// Calls `visit(slot)` for the slots in front of the end marker, each in a view of its own.
// `visit` gives false to stop there.
enum class MapWalk { Stopped, EndMarker, AllSlots, NoView };
template <class Visit>
MapWalk WalkMap(const MapGeneration& map, platform::HANDLE section, const Visit& visit) {
  CMapView view(map, section);
  for (std::uint32_t index = 0; index < kMapSlots; ++index) {
    view.Unmap();
    if (!view.MapUpTo(index)) return MapWalk::NoView;
    CMapSlot slot = view.Slot(index);
    if (slot.IsEnd()) return MapWalk::EndMarker;
    if (!visit(slot)) return MapWalk::Stopped;
  }
  return MapWalk::AllSlots;
}

}  // namespace vgl
