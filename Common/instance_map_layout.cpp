#include "Common/instance_map_layout.h"

#include <atomic>

namespace vgl {

using namespace platform;

const MapGeneration* GenerationOf(const char16_t* mapName) {
  for (const MapGeneration* map : {&kMapV7, &kMapV5})
    if (Os().nls.lstrcmpiW(mapName, map->sectionName) == 0) return map;
  return nullptr;
}

bool CMapSlot::IsNamed(const char16_t* name) const {
  return Os().nls.lstrcmpiW(Name().text, name) == 0;
}

SlotName CMapSlot::Name() const {
  // The terminator may be missing: it is another program's, or not written yet.
  SlotName name;
  std::memcpy(name.text, m_bytes + kSlotName, kSlotNameChars * sizeof(char16_t));
  return name;
}

bool CMapSlot::SetName(std::u16string_view name) {
  if (name.size() >= kSlotNameChars) return false;
  std::memcpy(m_bytes + kSlotName, name.data(), name.size() * sizeof(char16_t));
  Store(kSlotName + name.size() * sizeof(char16_t), char16_t{0});
  return true;
}

// The other programs read on other processors: a window must not show in front of its slot's name.
void CMapSlot::SetWindow(std::size_t offset, HWND window) {
  std::atomic_thread_fence(std::memory_order_release);
  Store(offset, window);
}

bool CMapView::MapUpTo(std::uint32_t index) {
  const std::uint64_t bytes = (std::uint64_t{index} + 1) * m_map.slotBytes;
  m_bytes = static_cast<unsigned char*>(
      Os().sections.MapViewOfFile(m_section, FILE_MAP_ALL_ACCESS, bytes));
  m_slots = m_bytes == nullptr ? 0 : index + 1;
  return m_bytes != nullptr;
}

void CMapView::Unmap() {
  if (m_bytes != nullptr) Os().sections.UnmapViewOfFile(m_bytes);
  m_bytes = nullptr;
  m_slots = 0;
}

}  // namespace vgl
