// How long the scan of a full instance map takes: 500 names compared, each behind a view of its
// own.
//
// "ratio" is the time in bare loops that compare the same 500 names in place.
#include <string>

#include "Common/instance_map.h"
#include "Common/instance_map_layout.h"
#include "Common/text_conversion.h"
#include "bench/ratio.h"
#include "platform/owned.h"
#include "platform/sim/machine.h"

namespace {

using namespace platform;

std::u16string NameOf(std::uint32_t slot) {
  std::u16string name = u"KAVRO Studio 7200 in room ";
  for (const char digit : std::to_string(slot)) name.push_back(static_cast<char16_t>(digit));
  return name;
}

// A V5 map that is full, the last slot being that of the printer which is looked for.
class FullMap {
 public:
  FullMap() : m_inside(m_machine), m_section(vgl::CreateMapV5(vgl::kMapV5.sectionName)) {
    vgl::CMapView view(vgl::kMapV5, m_section.get());
    if (!view.MapUpTo(vgl::kMapSlots - 1)) std::abort();
    for (std::uint32_t slot = 0; slot < vgl::kMapSlots; ++slot)
      if (!view.Slot(slot).SetName(NameOf(slot))) std::abort();
  }

  std::size_t Scan() const {
    const std::u16string name = NameOf(vgl::kMapSlots - 1);
    return static_cast<std::size_t>(
        vgl::SethWindowSubV5(name.c_str(), u"", HWND{5}, 0, vgl::kMapV5.sectionName));
  }
  std::size_t CompareInPlace() const {
    const std::u16string name = NameOf(vgl::kMapSlots - 1);
    const vgl::CMapView& view = m_view;
    std::size_t equal = 0;
    for (std::uint32_t slot = 0; slot < vgl::kMapSlots; ++slot)
      equal += vgl::EqualsIgnoringAsciiCase(view.Slot(slot).Name().text, name) ? 1 : 0;
    return equal;
  }
  void KeepView() {
    if (!m_view.MapUpTo(vgl::kMapSlots - 1)) std::abort();
  }

 private:
  sim::Machine m_machine;
  sim::Inside m_inside;
  OwnedObject m_section;
  vgl::CMapView m_view{vgl::kMapV5, m_section.get()};
};

void ScanFullMap(benchmark::State& state) {
  FullMap map;
  map.KeepView();
  if (map.Scan() != 0 || map.CompareInPlace() != 1) std::abort();
  bench::Measure(
      state, [&] { return map.Scan(); }, [&] { return map.CompareInPlace(); });
}
BENCHMARK(ScanFullMap);

}  // namespace
