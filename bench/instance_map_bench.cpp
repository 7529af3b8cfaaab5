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
  FullMap() {
    if (!m_view.MapUpTo(vgl::kMapSlots - 1)) std::abort();
    for (std::uint32_t slot = 0; slot < vgl::kMapSlots; ++slot)
      if (!m_view.Slot(slot).SetName(NameOf(slot))) std::abort();
  }

  std::int32_t Scan() const {
    return vgl::SethWindowSubV5(m_name.c_str(), u"", HWND{5}, 0, vgl::kMapV5.sectionName);
  }
  int CompareInPlace() const {
    int equal = 0;
    for (std::uint32_t slot = 0; slot < vgl::kMapSlots; ++slot)
      equal += vgl::EqualsIgnoringAsciiCase(m_view.Slot(slot).Name().text, m_name) ? 1 : 0;
    return equal;
  }

 private:
  sim::Machine m_machine;
  sim::Inside m_inside{m_machine};
  OwnedObject m_section{vgl::CreateMapV5(vgl::kMapV5.sectionName)};
  vgl::CMapView m_view{vgl::kMapV5, m_section.get()};
  std::u16string m_name = NameOf(vgl::kMapSlots - 1);
};

void ScanFullMap(benchmark::State& state) {
  const FullMap map;
  if (map.Scan() != 0 || map.CompareInPlace() != 1) std::abort();
  bench::Measure(
      state, [&] { return map.Scan(); }, [&] { return map.CompareInPlace(); });
}
BENCHMARK(ScanFullMap);

}  // namespace
