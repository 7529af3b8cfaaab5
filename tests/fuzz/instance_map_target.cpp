#include <cstring>
#include <string>

#include "Common/instance_map.h"
#include "platform/owned.h"
#include "platform/sim/machine.h"
#include "tests/fuzz/targets.h"

namespace vgl::fuzz {

using namespace platform;

namespace {

// A map of either generation, as far as the operations differ in it.
struct Map {
  const char16_t* name;
  std::uint32_t slotBytes;
  decltype(&CreateMapV5) create;
  decltype(&CheckMapPrinterV5) check;
  decltype(&SethWindowSubV5) publish;
  decltype(&ReleaseMapSlotV5) release;
  decltype(&GetMapWindowV5) window;
  decltype(&CloseMapWindowsV5) close;
  decltype(&CloseAllMapWindowsV5) closeAll;
};

const Map kMaps[] = {
    {u"VglV5MapFile_Ink", 1066, CreateMapV5, CheckMapPrinterV5, SethWindowSubV5, ReleaseMapSlotV5,
     GetMapWindowV5, CloseMapWindowsV5, CloseAllMapWindowsV5},
    {u"VglV7MapFile_Ink", 1094, CreateMapV7, CheckMapPrinterV7, SethWindowSubV7, ReleaseMapSlotV7,
     GetMapWindowV7, CloseMapWindowsV7, CloseAllMapWindowsV7},
};

// The section's bytes up to its last page.
class Bytes {
 public:
  explicit Bytes(const Map& map)
      : m_section(Os().sections.CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                                   map.slotBytes * 500, map.name)),
        m_bytes(static_cast<unsigned char*>(
            Os().sections.MapViewOfFile(m_section.get(), FILE_MAP_ALL_ACCESS, 0))),
        m_size((map.slotBytes * 500 + 4095) / 4096 * 4096) {
    VGL_FUZZ_REQUIRE(m_bytes != nullptr);
  }
  ~Bytes() { Os().sections.UnmapViewOfFile(m_bytes); }
  Bytes(const Bytes&) = delete;
  Bytes& operator=(const Bytes&) = delete;

  // The input over and over, each time in the slot behind, so that a short one fills names as well
  // as a long one.
  void Fill(const std::uint8_t* data, std::size_t size, std::size_t stride, std::size_t slots) {
    for (std::size_t slot = 0; slot < slots && size != 0; ++slot) {
      const std::size_t at = slot * stride;
      if (at >= m_size) return;
      std::memcpy(m_bytes + at, data, std::min(size, m_size - at));
      // Slots that begin alike are not all one printer.
      m_bytes[at] = static_cast<unsigned char>(m_bytes[at] + slot);
    }
  }
  void Put(std::size_t at, HWND window) { std::memcpy(m_bytes + at, &window, sizeof window); }
  void MarkEnd(std::size_t at) {
    m_bytes[at] = 0xFF;
    m_bytes[at + 1] = 0;
  }
  std::string Copy() const { return {reinterpret_cast<const char*>(m_bytes), m_size}; }

 private:
  OwnedObject m_section;
  unsigned char* m_bytes;
  std::size_t m_size;
};

// From the first byte that differs to the last, in the slot of the first; what is alike is passed
// over page by page.
struct Changed {
  std::size_t begin = 0;  // in the slot
  std::size_t length = 0;
};

Changed ChangesOf(const Map& map, const std::string& before, const std::string& after) {
  constexpr std::size_t kPage = 4096;
  std::size_t first = before.size();
  std::size_t last = 0;
  for (std::size_t page = 0; page < before.size(); page += kPage) {
    if (std::memcmp(before.data() + page, after.data() + page, kPage) == 0) continue;
    for (std::size_t i = page; i < page + kPage; ++i) {
      if (before[i] == after[i]) continue;
      first = std::min(first, i);
      last = i;
    }
  }
  if (first == before.size()) return {};
  return {first % map.slotBytes, last - first + 1};
}

// Whether only that part of one slot has changed.
bool IsWithin(const Changed& changed, std::size_t begin, std::size_t length) {
  return changed.length == 0 ||
         (changed.begin >= begin && changed.begin + changed.length <= begin + length);
}

// The 20 bytes at the end of each V7 slot.
std::string ReservedOfAll(const std::string& bytes) {
  std::string reserved;
  for (std::size_t slot = 0; slot < 500; ++slot) reserved += bytes.substr(slot * 1094 + 1074, 20);
  return reserved;
}

HWND MakeWindow() {
  WindowClass windowClass;
  windowClass.className = u"Fuzzed";
  windowClass.procedure = [](HWND window, std::uint32_t message, WPARAM wParam, LPARAM lParam) {
    return Os().windowing.DefWindowProcW(window, message, wParam, lParam);
  };
  Os().windowing.RegisterClassW(windowClass);
  return Os().windowing.CreateWindowExW(0, u"Fuzzed", u"", WS_OVERLAPPEDWINDOW, HMODULE{});
}

void CheckOperations(const Map& map, const char16_t* name, Bytes& bytes) {
  std::string before = bytes.Copy();
  HWND other{5};
  HANDLE section = map.create(map.name);
  VGL_FUZZ_REQUIRE(section != HANDLE{});
  const std::int32_t result = map.check(section, name, 0, 0, &other);
  VGL_FUZZ_REQUIRE(result == 0 || result == 1 || result == 2);
  VGL_FUZZ_REQUIRE((result == 1) == (other != HWND{}));
  // The name, the reserved field, the windows of one slot; the next one's first character.
  const std::string claimed = bytes.Copy();
  VGL_FUZZ_REQUIRE(IsWithin(ChangesOf(map, before, claimed), 0, map.slotBytes + 2));
  VGL_FUZZ_REQUIRE(result == 0 || before == claimed);
  VGL_FUZZ_REQUIRE(map.slotBytes == 1066 || ReservedOfAll(before) == ReservedOfAll(claimed));

  // Then it has closed the section.
  if (result == 2) {
    VGL_FUZZ_REQUIRE(!Os().objects.CloseHandle(section));
    section = map.create(map.name);
  }

  before = bytes.Copy();
  const std::int32_t published = map.publish(name, u"", HWND{0x1122334455667788}, 0, map.name);
  VGL_FUZZ_REQUIRE(published == 0 || published == -2 || published == 1);
  VGL_FUZZ_REQUIRE(IsWithin(ChangesOf(map, before, bytes.Copy()), 1058, 8));
  VGL_FUZZ_REQUIRE(published == 0 || before == bytes.Copy());
  const HWND found = map.window(name, u"", 3, map.name);
  VGL_FUZZ_REQUIRE(found == HWND{} || Os().windowing.IsWindow(found));

  map.close(name, u"", map.name);
  before = bytes.Copy();
  VGL_FUZZ_REQUIRE(map.release(section, name));
  VGL_FUZZ_REQUIRE(IsWithin(ChangesOf(map, before, bytes.Copy()), 0, 1066));
  map.closeAll();
  Os().objects.CloseHandle(section);
}

}  // namespace

void InstanceMap(const std::uint8_t* data, std::size_t size) {
  if (size < 4) return;
  const Map& map = kMaps[data[0] & 1];
  const std::size_t nameChars = (data[0] >> 1) * 5U;  // up to 635: some don't fit
  // Seldom the whole section: that takes a hundred times as long as a few slots.
  const std::size_t slots = data[1] == 0xFF && data[2] == 0xFF ? 500 : 1 + data[1] % 16U;
  const std::size_t stride = (data[2] & 1) != 0 ? map.slotBytes : 1 + data[3] * 5U;
  const bool hasWindow = (data[2] & 2) != 0;
  const std::size_t windowSlot = data[3];
  data += 4;
  size -= 4;

  sim::Machine machine;
  sim::Inside inside(machine);
  // The section has at most some thousand views to be asked for; what needs more goes on for ever.
  inside.process().StopAfterCalls(20000);
  std::u16string name;
  for (std::size_t i = 0; i < nameChars && 2 * i + 1 < size; ++i)
    name.push_back(static_cast<char16_t>(data[2 * i] | data[2 * i + 1] << 8));
  {
    Bytes bytes(map);
    bytes.Fill(data, size, stride, slots);
    // A window that stands, in some slot's field of the agent.
    if (hasWindow) bytes.Put(windowSlot % slots * map.slotBytes + 1058, MakeWindow());
    if (slots < 500) bytes.MarkEnd(slots * map.slotBytes);
    CheckOperations(map, name.c_str(), bytes);
  }
  // The views of the check, which stay, and a window that nobody closed.
  for (const std::u16string& held : inside.process().Ledger())
    VGL_FUZZ_REQUIRE(held.starts_with(u"view of ") || held == u"window Fuzzed");
}

}  // namespace vgl::fuzz
